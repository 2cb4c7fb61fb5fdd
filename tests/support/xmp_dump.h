// An XMP object as text, one property a line, for comparing whole objects at once:
//   tiff:Make=Canon
//   exif:ISOSpeedRatings=seq[100, 200]
//   tiff:Copyright=alt[x-default: me]
//   exif:Flash={exif:Fired=True, exif:Return=0}
// A session must be there (lxbridge::HostSession).
#ifndef LXBRIDGE_TESTS_SUPPORT_XMP_DUMP_H_
#define LXBRIDGE_TESTS_SUPPORT_XMP_DUMP_H_

#include <string>
#include <string_view>

#include "host/include/lxbridge/xmp.hpp"

namespace lxtest {

inline std::string NodeText(const lxbridge::XmpNode& node) {
  std::string text;
  for (const lxbridge::XmpNode& qualifier : node.qualifiers) text += qualifier.value + ": ";
  if (!node.IsArray() && !node.IsStruct()) return text + node.value;
  if (node.IsArray()) text += node.IsAlternative() ? "alt" : node.IsOrdered() ? "seq" : "bag";
  text += node.IsStruct() ? "{" : "[";
  for (const lxbridge::XmpNode& child : node.children) {
    if (&child != &node.children.front()) text += ", ";
    if (node.IsStruct()) text += child.prefix + ":" + child.name + "=";
    text += NodeText(child);
  }
  return text + (node.IsStruct() ? "}" : "]");
}

// The properties whose "prefix:name" begins with `which`; "" is all.
inline std::string DumpXmp(CXMPMeta* meta, std::string_view which = "") {
  std::string text;
  for (const lxbridge::XmpNode& property : lxbridge::XmpView(meta).Properties()) {
    const std::string name = property.prefix + ":" + property.name;
    if (name.starts_with(which)) text += name + "=" + NodeText(property) + "\n";
  }
  return text;
}

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_XMP_DUMP_H_
