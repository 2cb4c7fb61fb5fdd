// The nodes of an XMP object as JSON.
#include "tools/json/xmp_json.h"

#include "tools/json/xmp_writer.h"

namespace lxbridge::json {

void WriteXmpJson(std::string* out, std::string_view file, const XmpView& xmp, Layout layout) {
  JsonWriter json(out, layout);
  XmpWriter(&json).Write(file, xmp.Properties());
  out->push_back('\n');
}

}  // namespace lxbridge::json
