// The script, style and body of the page that `lxbridge pool --format html` prints, as the build has taken them from
// page.js, page.css and page.html.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_PAGE_ASSETS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_PAGE_ASSETS_H_

#include <string_view>

namespace lxbridge::command {

extern const std::string_view kPageScript;
extern const std::string_view kPageScriptHash;  // As a Content-Security-Policy names it.
extern const std::string_view kPageStyle;
extern const std::string_view kPageStyleHash;
extern const std::string_view kPageBody;

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_PAGE_ASSETS_H_
