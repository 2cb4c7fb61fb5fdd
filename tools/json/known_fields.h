// The known properties: those that LxBridge creates from tags and datasets (docs/mapping.md is checked against this
// table), and the usual ones of XMP packets.
#ifndef LXBRIDGE_TOOLS_JSON_KNOWN_FIELDS_H_
#define LXBRIDGE_TOOLS_JSON_KNOWN_FIELDS_H_

#include <cstdint>
#include <span>
#include <string_view>

namespace lxbridge::json {

enum class FieldType : std::uint8_t {
  kText,
  kTexts,      // An array.
  kLanguages,  // A language alternative.
  kInteger,
  kIntegers,  // An array.
  kReal,      // A decimal number.
  kRational,  // "1/250"
  kRationals,
  kDate,
  kCoordinate,  // "037,46.50N" (ISO 16684-2, GPSCoordinate)
  kBoolean,     // "True" or "False"
  kStruct,
};

// A row. A property with several source tags has a row for each.
struct KnownField {
  std::string_view name;  // "tiff:Make"; a field of a structure is "exif:Flash/exif:Fired".
  FieldType type;
  std::string_view block;  // The namespace of its pool item; "xmp": only in packets; "": a field.
  std::uint16_t tag;
  std::string_view item;  // The name of that item.
  std::string_view example;
};

[[nodiscard]] std::span<const KnownField> KnownFields();
// The first row of that name, or null.
[[nodiscard]] const KnownField* FindKnownField(std::string_view name);
[[nodiscard]] const char* FieldTypeName(FieldType type);

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_KNOWN_FIELDS_H_
