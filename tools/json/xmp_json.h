// An XMP object as a line of JSON.
#ifndef LXBRIDGE_TOOLS_JSON_XMP_JSON_H_
#define LXBRIDGE_TOOLS_JSON_XMP_JSON_H_

#include <string>
#include <string_view>

#include "host/include/lxbridge/xmp.hpp"
#include "tools/json/json_writer.h"

namespace lxbridge::json {

// Appends the object and a line end. `file` is the file name to write.
void WriteXmpJson(std::string* out, std::string_view file, const XmpView& xmp, Layout layout = Layout::kLine);

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_XMP_JSON_H_
