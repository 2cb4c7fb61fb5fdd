#include "xmpconv/exif_structs.h"

#include <string>

#include "clients/xmp/xmp_utils.h"
#include "kit/base/byte_order.h"
#include "kit/model/value.h"
#include "xmpconv/number_text.h"
#include "xmpconv/schemas.h"
#include "xmpconv/setters.h"

namespace {

// Exif 2.2, tables 4, 5 and 12.
enum Tag : std::uint16_t {
  kGpsVersionId = 0x0000,
  kGpsProcessingMethod = 0x001B,
  kGpsAreaInformation = 0x001C,
  kOecf = 0x8828,
  kExifVersion = 0x9000,
  kComponentsConfiguration = 0x9101,
  kFlash = 0x9209,
  kMakerNote = 0x927C,
  kUserComment = 0x9286,
  kFlashPixVersion = 0xA000,
  kSpatialFrequencyResponse = 0xA20C,
  kFileSource = 0xA300,
  kSceneType = 0xA301,
  kCfaPattern = 0xA302,
  kDeviceSettingDescription = 0xA40B,
};

bool MapDisplayText(LxConversion& conversion, const LxMetadataItem* item, const char* schema) {
  return LxSetXMPText(conversion.Xmp(), schema, item->name, item->displayText, kLxTerminated);
}

bool MapGpsVersion(LxConversion& conversion, const LxMetadataItem* item, const char* schema) {
  if (item->valueLength < 4) return false;
  LxNumberText text;
  text.Number(item->value[0]);
  for (int i = 1; i < 4; ++i) text.Char('.').Number(item->value[i]);
  return LxSetXMPText(conversion.Xmp(), schema, item->name, text.Text(), kLxTerminated);
}

bool MapFourCharacters(LxConversion& conversion, const LxMetadataItem* item, const char* schema) {
  if (item->valueLength < 4) return false;
  return LxSetXMPText(conversion.Xmp(), schema, item->name, reinterpret_cast<const char*>(item->value), 4);
}

bool MapFirstByte(LxConversion& conversion, const LxMetadataItem* item, const char* schema) {
  if (item->valueLength < 1) return false;
  return LxSetXMPInteger(conversion.Xmp(), schema, item->name, item->value[0], false);
}

bool MapComponents(LxConversion& conversion, const LxMetadataItem* item, const char* schema) {
  if (item->valueLength < 4 || !conversion.TakeArrayItems(4)) return false;
  return LxSetXMPIntegerSeq(conversion.Xmp(), schema, item->name, item->value, 1, 4, false, kLxLittleEndian);
}

// Exif 2.2, 4.6.5, Flash: bit 0 fired, 1 and 2 return light, 3 and 4 mode, 5 no flash function, 6 red-eye reduction.
// The property of the item's own name is replaced. In the GPS directory the tag has no name that a property can have,
// so an entry there does not change the flash of the Exif directory.
bool MapFlash(LxConversion& conversion, const LxMetadataItem* item, const char* schema) {
  if (item->valueLength < 2) return false;
  const unsigned bits = LxGet16(item->value, LxItemOrder(item));
  const struct {
    const char* name;
    unsigned value;
    bool isBoolean;
  } fields[] = {
      {"Fired", bits & 1, true},           {"Return", (bits >> 1) & 3, false},    {"Mode", (bits >> 3) & 3, false},
      {"Function", (bits >> 5) & 1, true}, {"RedEyeMode", (bits >> 6) & 1, true},
  };

  conversion.Xmp().DeleteProperty(schema, item->name);
  bool all = true;
  for (const auto& field : fields) {
    const auto value = static_cast<std::uint8_t>(field.value);
    all &= LxSetXMPStructFlag(conversion.Xmp(), schema, item->name, field.name, value, field.isBoolean);
  }
  return all;
}

// A record that begins with two 16-bit numbers, columns and rows.
class Matrix {
 public:
  Matrix(LxConversion& conversion, const LxMetadataItem* item, const char* schema)
      : conversion_(conversion), item_(item), schema_(schema) {}

  // False: too short for its header.
  bool ReadHeader() noexcept {
    if (item_->valueLength < 4) return false;
    columns_ = LxGet16(item_->value, LxItemOrder(item_));
    rows_ = LxGet16(item_->value + 2, LxItemOrder(item_));
    at_ = item_->value + 4;
    end_ = item_->value + item_->valueLength;
    return true;
  }

  bool SetColumnsAndRows() {
    const bool columns = LxSetXMPInteger(conversion_.Xmp(), schema_, FieldPath("Columns"), columns_, false);
    const bool rows = LxSetXMPInteger(conversion_.Xmp(), schema_, FieldPath("Rows"), rows_, false);
    return columns && rows;
  }

  // One name per column. Each takes at least a byte, which bounds their number.
  bool SetNames() {
    if (columns_ > Left() || !conversion_.TakeArrayItems(columns_)) return false;
    return LxSetXMPTextSeq(conversion_.Xmp(), schema_, FieldPath("Names"), &at_, end_, columns_);
  }

  bool SetRationals(bool isSigned) {
    const std::uint64_t count = std::uint64_t{columns_} * rows_;
    if (count > Left() / 8 || !conversion_.TakeArrayItems(count)) return false;
    return LxSetXMPRationalSeq(conversion_.Xmp(), schema_, FieldPath("Values"), at_, static_cast<std::size_t>(count),
                               isSigned, LxItemOrder(item_));
  }

  bool SetBytes() {
    const std::uint64_t count = std::uint64_t{columns_} * rows_;
    if (count > Left() || !conversion_.TakeArrayItems(count)) return false;
    return LxSetXMPIntegerSeq(conversion_.Xmp(), schema_, FieldPath("Values"), at_, 1, static_cast<std::size_t>(count),
                              false, kLxLittleEndian);
  }

  // The number of settings is known only after reading; there are no more than units.
  bool SetSettings() {
    if (!conversion_.TakeArrayItems(Left() / 2)) return false;
    return LxSetXMPUnicodeSeq(conversion_.Xmp(), schema_, FieldPath("Settings"), at_, end_);
  }

 private:
  [[nodiscard]] std::size_t Left() const noexcept { return static_cast<std::size_t>(end_ - at_); }

  // Valid until the next call.
  const char* FieldPath(const char* field) {
    XMPUtils::ComposeStructFieldPath(schema_, item_->name, kLxExifSchema, field, &path_);
    return path_.c_str();
  }

  LxConversion& conversion_;
  const LxMetadataItem* item_;
  const char* schema_;
  std::uint32_t columns_ = 0;
  std::uint32_t rows_ = 0;
  const std::uint8_t* at_ = nullptr;
  const std::uint8_t* end_ = nullptr;
  std::string path_;
};

// Exif 2.2, 4.6.5, OECF and SpatialFrequencyResponse: the names of the columns, then the table by rows. The values
// follow the names, so they cannot be found if the names do not fit.
bool MapNamedTable(LxConversion& conversion, const LxMetadataItem* item, const char* schema, bool isSigned) {
  Matrix matrix(conversion, item, schema);
  if (!matrix.ReadHeader()) return false;
  const bool header = matrix.SetColumnsAndRows();
  const bool names = matrix.SetNames();
  return header && names && matrix.SetRationals(isSigned);
}

bool MapCfaPattern(LxConversion& conversion, const LxMetadataItem* item, const char* schema) {
  Matrix matrix(conversion, item, schema);
  if (!matrix.ReadHeader()) return false;
  const bool header = matrix.SetColumnsAndRows();
  return matrix.SetBytes() && header;
}

bool MapDeviceSettings(LxConversion& conversion, const LxMetadataItem* item, const char* schema) {
  Matrix matrix(conversion, item, schema);
  if (!matrix.ReadHeader()) return false;
  const bool header = matrix.SetColumnsAndRows();
  return matrix.SetSettings() && header;
}

}  // namespace

bool LxMapExifSpecial(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner) {
  if (!item->value) return false;
  switch (item->tagId) {
    case kGpsVersionId:
      return MapGpsVersion(conversion, item, schema);
    case kGpsProcessingMethod:
    case kGpsAreaInformation:
    case kMakerNote:
      return MapDisplayText(conversion, item, schema);
    case kOecf:
      return MapNamedTable(conversion, item, schema, true);
    case kSpatialFrequencyResponse:
      return MapNamedTable(conversion, item, schema, false);
    case kExifVersion:
    case kFlashPixVersion:
      return MapFourCharacters(conversion, item, schema);
    case kComponentsConfiguration:
      return MapComponents(conversion, item, schema);
    case kFlash:
      return MapFlash(conversion, item, schema);
    case kUserComment:
      return LxSetXMPLangAlt(conversion.Xmp(), schema, item->name, item->displayText, kLxTerminated);
    case kFileSource:
    case kSceneType:
      return MapFirstByte(conversion, item, schema);
    case kCfaPattern:
      return MapCfaPattern(conversion, item, schema);
    case kDeviceSettingDescription:
      return MapDeviceSettings(conversion, item, schema);
    default:
      return false;
  }
}
