// An XMP object as a line of JSON.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_XMP_JSON_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_XMP_JSON_H_

#include <string>

#include "host/include/lxbridge/xmp.hpp"

namespace lxbridge::command {

// Appends the line, with its end. `file` is the name that it tells.
void WriteXmpJson(std::string* out, const char* file, const XmpView& xmp);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_XMP_JSON_H_
