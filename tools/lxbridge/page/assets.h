// The script, style and body of the page printed by `lxbridge pool --format html`, embedded by the build from page.js,
// page.css and page.html.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_PAGE_ASSETS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_PAGE_ASSETS_H_

#include <string_view>

namespace lxbridge::command {

extern const std::string_view kPageScript;
extern const std::string_view kPageScriptHash;  // In the form used by Content-Security-Policy.
extern const std::string_view kPageStyle;
extern const std::string_view kPageStyleHash;
extern const std::string_view kPageBody;

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_PAGE_ASSETS_H_
