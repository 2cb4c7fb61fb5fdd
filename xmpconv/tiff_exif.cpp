#include "xmpconv/tiff_exif.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

#include "kit/model/value.h"
#include "xmpconv/dates.h"
#include "xmpconv/exif_structs.h"
#include "xmpconv/gps.h"
#include "xmpconv/schemas.h"
#include "xmpconv/setters.h"

namespace {

constexpr std::int32_t kRationalSize = 8;
constexpr std::int32_t kDateTimeLength = 20;  // Exif 2.2, 4.6.4, DateTime: 19 characters and the zero byte.

bool IsIntegerType(std::uint16_t type) noexcept {
  return type == kLxTypeByte || type == kLxTypeShort || type == kLxTypeLong || type == kLxTypeSByte ||
         type == kLxTypeSShort || type == kLxTypeSLong;
}

bool IsRationalType(std::uint16_t type) noexcept {
  return type == kLxTypeRational || type == kLxTypeSRational;
}

bool IsSignedType(std::uint16_t type) noexcept {
  return type == kLxTypeSByte || type == kLxTypeSShort || type == kLxTypeSLong || type == kLxTypeSRational;
}

// The number of elements of `size` bytes; -1 if the value is not a whole number of them.
std::int32_t WholeElements(const LxMetadataItem* item, std::int32_t size) noexcept {
  return item->valueLength % size == 0 ? item->valueLength / size : -1;
}

bool MapText(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner) {
  if (item->typeCode != kLxTypeAscii) return false;
  const char* text = "";
  if (item->value) {
    if (!std::memchr(item->value, 0, static_cast<std::size_t>(item->valueLength))) return false;
    text = reinterpret_cast<const char*>(item->value);
  }
  return LxSetXMPText(conversion.Xmp(), schema, item->name, text, kLxTerminated);
}

// A text without a zero byte ends with the value: captions would otherwise be lost.
bool MapLangAlt(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner) {
  if (item->typeCode != kLxTypeAscii) return false;
  if (!item->value) return LxSetXMPLangAlt(conversion.Xmp(), schema, item->name, "", kLxTerminated);
  const char* const text = reinterpret_cast<const char*>(item->value);
  const auto length = static_cast<std::size_t>(item->valueLength);
  if (std::memchr(text, 0, length)) {
    return LxSetXMPLangAlt(conversion.Xmp(), schema, item->name, text, kLxTerminated);
  }
  return LxSetXMPLangAlt(conversion.Xmp(), schema, item->name, std::string(text, length).c_str(), kLxTerminated);
}

bool MapInteger(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner) {
  const auto size = static_cast<std::int32_t>(LxElementSize(item->typeCode));
  if (!item->value || !IsIntegerType(item->typeCode) || item->valueLength != size) return false;
  std::uint32_t value = LxGetFirstValue(item);
  const bool isSigned = IsSignedType(item->typeCode);
  // NOLINTNEXTLINE(bugprone-signed-char-misuse): the sign is to be extended.
  if (isSigned && size == 1) value = static_cast<std::uint32_t>(static_cast<std::int8_t>(value));
  if (isSigned && size == 2) value = static_cast<std::uint32_t>(static_cast<std::int16_t>(value));
  return LxSetXMPInteger(conversion.Xmp(), schema, item->name, value, isSigned);
}

bool MapIntegerSeq(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner) {
  if (!item->value || !IsIntegerType(item->typeCode)) return false;
  const auto size = static_cast<std::int32_t>(LxElementSize(item->typeCode));
  const std::int32_t count = WholeElements(item, size);
  if (count < 0 || !conversion.TakeArrayItems(static_cast<std::uint64_t>(count))) return false;
  return LxSetXMPIntegerSeq(conversion.Xmp(), schema, item->name, item->value, static_cast<std::size_t>(size),
                            static_cast<std::size_t>(count), IsSignedType(item->typeCode), LxItemOrder(item));
}

bool MapRational(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner) {
  if (!item->value || !IsRationalType(item->typeCode) || item->valueLength != kRationalSize) return false;
  return LxSetXMPRational(conversion.Xmp(), schema, item->name, item->value, IsSignedType(item->typeCode),
                          LxItemOrder(item));
}

bool MapRationalSeq(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner) {
  if (!item->value || !IsRationalType(item->typeCode)) return false;
  const std::int32_t count = WholeElements(item, kRationalSize);
  if (count < 0 || !conversion.TakeArrayItems(static_cast<std::uint64_t>(count))) return false;
  return LxSetXMPRationalSeq(conversion.Xmp(), schema, item->name, item->value, static_cast<std::size_t>(count),
                             IsSignedType(item->typeCode), LxItemOrder(item));
}

// The item with the zone of a date, by the item with its fraction of a second.
LxPartner OffsetOf(LxPartner subSeconds) noexcept {
  constexpr int kDistance = static_cast<int>(LxPartner::kOffsetTime) - static_cast<int>(LxPartner::kSubSecTime);
  return static_cast<LxPartner>(static_cast<int>(subSeconds) + kDistance);
}

// partner: the fraction of a second. Exif 2.2 has no zone, so the date is taken as the machine's local time, unless the
// camera gives its zone as in Exif 2.31. A date that denotes no instant ("0000:00:00", or blanks for an unset clock) is
// refused by the toolkit. That happens when the zone is determined, before a packet's own date is deleted.
bool MapDateTime(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner partner) {
  if (!item->value || item->typeCode != kLxTypeAscii || item->valueLength != kDateTimeLength) return false;
  XMPDateTime date{};
  LxParseExifDate(item->value, &date);
  LxParseExifTime(item->value + 11, &date);
  // The usual date of an unset clock, for which raising and catching the refusal would cost more than a whole file.
  if (date.month == 0 || date.day == 0) return false;
  if (!LxTryXMP([&] { conversion.SetTimeZone(&date); })) return false;
  const LxMetadataItem* const offset = conversion.Find(OffsetOf(partner));
  if (offset && offset->value && offset->typeCode == kLxTypeAscii) {
    (void)LxParseExifOffset(offset->value, static_cast<std::size_t>(offset->valueLength), &date);
  }
  if (const LxMetadataItem* const subSeconds = conversion.Find(partner)) {
    if (!subSeconds->value) return false;
    date.nanosecond = LxParseSubSeconds(subSeconds->value, static_cast<std::size_t>(subSeconds->valueLength));
  }
  return LxSetXMPDate(conversion.Xmp(), schema, item->name, date);
}

struct TagRow {
  std::uint16_t tag;
  LxMapRule rule;
  LxPartner partner = LxPartner::kNone;
};

// clang-format off
constexpr TagRow kTiffRows[] = {                                   // TIFF 6.0
    {0x0100, MapInteger},                                          // ImageWidth
    {0x0101, MapInteger},                                          // ImageLength
    {0x0102, MapIntegerSeq},                                       // BitsPerSample
    {0x0103, MapInteger},                                          // Compression
    {0x0106, MapInteger},                                          // PhotometricInterpretation
    {0x010E, MapLangAlt},                                          // ImageDescription
    {0x010F, MapText},                                             // Make
    {0x0110, MapText},                                             // Model
    {0x0112, MapInteger},                                          // Orientation
    {0x0115, MapInteger},                                          // SamplesPerPixel
    {0x011A, MapRational},                                         // XResolution
    {0x011B, MapRational},                                         // YResolution
    {0x011C, MapInteger},                                          // PlanarConfiguration
    {0x0128, MapInteger},                                          // ResolutionUnit
    {0x012D, MapIntegerSeq},                                       // TransferFunction
    {0x0131, MapText},                                             // Software
    {0x0132, MapDateTime,        LxPartner::kSubSecTime},          // DateTime
    {0x013B, MapText},                                             // Artist
    {0x013E, MapRationalSeq},                                      // WhitePoint
    {0x013F, MapRationalSeq},                                      // PrimaryChromaticities
    {0x0211, MapRationalSeq},                                      // YCbCrCoefficients
    {0x0212, MapIntegerSeq},                                       // YCbCrSubSampling
    {0x0213, MapInteger},                                          // YCbCrPositioning
    {0x0214, MapRationalSeq},                                      // ReferenceBlackWhite
    {0x8298, MapLangAlt},                                          // Copyright
};

constexpr TagRow kExifRows[] = {                                   // Exif 2.2, tables 12, then 4 and 5
    {0x0000, LxMapExifSpecial},                                    // GPSVersionID
    {0x0002, LxMapGPSCoordinate, LxPartner::kGpsLatitudeRef},      // GPSLatitude
    {0x0004, LxMapGPSCoordinate, LxPartner::kGpsLongitudeRef},     // GPSLongitude
    {0x0005, MapInteger},                                          // GPSAltitudeRef
    {0x0006, MapRational},                                         // GPSAltitude
    {0x0007, LxMapGPSTimeStamp,  LxPartner::kGpsDateStamp},        // GPSTimeStamp
    {0x0008, MapText},                                             // GPSSatellites
    {0x0009, MapText},                                             // GPSStatus
    {0x000A, MapText},                                             // GPSMeasureMode
    {0x000B, MapRational},                                         // GPSDOP
    {0x000C, MapText},                                             // GPSSpeedRef
    {0x000D, MapRational},                                         // GPSSpeed
    {0x000E, MapText},                                             // GPSTrackRef
    {0x000F, MapRational},                                         // GPSTrack
    {0x0010, MapText},                                             // GPSImgDirectionRef
    {0x0011, MapRational},                                         // GPSImgDirection
    {0x0012, MapText},                                             // GPSMapDatum
    {0x0014, LxMapGPSCoordinate, LxPartner::kGpsDestLatitudeRef},  // GPSDestLatitude
    {0x0016, LxMapGPSCoordinate, LxPartner::kGpsDestLongitudeRef}, // GPSDestLongitude
    {0x0017, MapText},                                             // GPSDestBearingRef
    {0x0018, MapRational},                                         // GPSDestBearing
    {0x0019, MapText},                                             // GPSDestDistanceRef
    {0x001A, MapRational},                                         // GPSDestDistance
    {0x001B, LxMapExifSpecial},                                    // GPSProcessingMethod
    {0x001C, LxMapExifSpecial},                                    // GPSAreaInformation
    {0x001E, MapInteger},                                          // GPSDifferential

    {0x829A, MapRational},                                         // ExposureTime
    {0x829D, MapRational},                                         // FNumber
    {0x8822, MapInteger},                                          // ExposureProgram
    {0x8824, MapText},                                             // SpectralSensitivity
    {0x8827, MapIntegerSeq},                                       // ISOSpeedRatings
    {0x8828, LxMapExifSpecial},                                    // OECF
    {0x9000, LxMapExifSpecial},                                    // ExifVersion
    {0x9003, MapDateTime,        LxPartner::kSubSecTimeOriginal},  // DateTimeOriginal
    {0x9004, MapDateTime,        LxPartner::kSubSecTimeDigitized}, // DateTimeDigitized
    {0x9101, LxMapExifSpecial},                                    // ComponentsConfiguration
    {0x9102, MapRational},                                         // CompressedBitsPerPixel
    {0x9201, MapRational},                                         // ShutterSpeedValue
    {0x9202, MapRational},                                         // ApertureValue
    {0x9203, MapRational},                                         // BrightnessValue
    {0x9204, MapRational},                                         // ExposureBiasValue
    {0x9205, MapRational},                                         // MaxApertureValue
    {0x9206, MapRational},                                         // SubjectDistance
    {0x9207, MapInteger},                                          // MeteringMode
    {0x9208, MapInteger},                                          // LightSource
    {0x9209, LxMapExifSpecial},                                    // Flash
    {0x920A, MapRational},                                         // FocalLength
    {0x9214, MapIntegerSeq},                                       // SubjectArea
    {0x927C, LxMapExifSpecial},                                    // MakerNote
    {0x9286, LxMapExifSpecial},                                    // UserComment
    {0xA000, LxMapExifSpecial},                                    // FlashPixVersion
    {0xA001, MapInteger},                                          // ColorSpace
    {0xA002, MapInteger},                                          // PixelXDimension
    {0xA003, MapInteger},                                          // PixelYDimension
    {0xA004, MapText},                                             // RelatedSoundFile
    {0xA20B, MapRational},                                         // FlashEnergy
    {0xA20C, LxMapExifSpecial},                                    // SpatialFrequencyResponse
    {0xA20E, MapRational},                                         // FocalPlaneXResolution
    {0xA20F, MapRational},                                         // FocalPlaneYResolution
    {0xA210, MapInteger},                                          // FocalPlaneResolutionUnit
    {0xA214, MapIntegerSeq},                                       // SubjectLocation
    {0xA215, MapRational},                                         // ExposureIndex
    {0xA217, MapInteger},                                          // SensingMethod
    {0xA300, LxMapExifSpecial},                                    // FileSource
    {0xA301, LxMapExifSpecial},                                    // SceneType
    {0xA302, LxMapExifSpecial},                                    // CFAPattern
    {0xA401, MapInteger},                                          // CustomRendered
    {0xA402, MapInteger},                                          // ExposureMode
    {0xA403, MapInteger},                                          // WhiteBalance
    {0xA404, MapRational},                                         // DigitalZoomRatio
    {0xA405, MapInteger},                                          // FocalLengthIn35mmFilm
    {0xA406, MapInteger},                                          // SceneCaptureType
    {0xA407, MapInteger},                                          // GainControl
    {0xA408, MapInteger},                                          // Contrast
    {0xA409, MapInteger},                                          // Saturation
    {0xA40A, MapInteger},                                          // Sharpness
    {0xA40B, LxMapExifSpecial},                                    // DeviceSettingDescription
    {0xA40C, MapInteger},                                          // SubjectDistanceRange
    {0xA420, MapText},                                             // ImageUniqueID
};

// Tags of a raw converter: each text begins with a label, the rest is the value.
struct RawRow {
  std::uint16_t tag;
  const char* schema;
  const char* property;
  const char* label;
};
constexpr RawRow kRawRows[] = {
    {0xFDE8, kLxTiffSchema,     "Artist",       "Owner's Name: "},
    {0xFDE9, kLxAuxSchema,      "SerialNumber", "Serial Number: "},
    {0xFDEA, kLxAuxSchema,      "Lens",         "Lens: "},
    {0xFE4C, kLxRawforgeSchema, "RawFileName",  "Raw File: "},
    {0xFE4D, kLxRawforgeSchema, "Version",      "Converter: Rawforge "},
    {0xFE4E, kLxRawforgeSchema, "WhiteBalance", "White Balance: "},
    {0xFE4F, kLxRawforgeSchema, "Temperature",  "Temperature: "},
    {0xFE50, kLxRawforgeSchema, "Tint",         "Tint: "},
    {0xFE51, kLxRawforgeSchema, "Exposure",     "Exposure: "},
    {0xFE52, kLxRawforgeSchema, "Shadows",      "Shadows: "},
    {0xFE53, kLxRawforgeSchema, "Brightness",   "Brightness: "},
    {0xFE54, kLxRawforgeSchema, "Contrast",     "Contrast: "},
    {0xFE55, kLxRawforgeSchema, "Saturation",   "Saturation: "},
    {0xFE56, kLxRawforgeSchema, "Sharpness",    "Sharpness: "},
    {0xFE57, kLxRawforgeSchema, "Smoothness",   "Smoothness: "},
    {0xFE58, kLxRawforgeSchema, "MoireFilter",  "Moire Filter: "},
};
// clang-format on

template <typename Row, std::size_t kCount>
constexpr bool IsSortedByTag(const Row (&rows)[kCount]) {
  return std::is_sorted(std::begin(rows), std::end(rows),
                        [](const Row& left, const Row& right) { return left.tag <= right.tag; });
}
static_assert(std::size(kTiffRows) == 25 && IsSortedByTag(kTiffRows));
static_assert(std::size(kExifRows) == 26 + 53 && IsSortedByTag(kExifRows));
static_assert(std::size(kRawRows) == 16 && IsSortedByTag(kRawRows));
static_assert(kExifRows[std::size(kExifRows) - 1].tag <
              kRawRows[0].tag);  // So only one of the tables has to be searched.

// The rows of a table by tag, built at compile time: a slot is a row's index plus 1, or 0.
class RowFinder {
 public:
  template <typename Row, std::size_t kCount>
  explicit constexpr RowFinder(const Row (&rows)[kCount]) {
    static_assert(kCount < kSlots / 2);
    for (std::size_t at = 0; at < kCount; ++at) {
      std::size_t slot = SlotOf(rows[at].tag);
      while (slots_[slot] != 0) slot = (slot + 1) % kSlots;
      slots_[slot] = static_cast<std::uint8_t>(at + 1);
    }
  }

  template <typename Row>
  const Row* Find(const Row* rows, std::uint16_t tag) const noexcept {
    for (std::size_t slot = SlotOf(tag); slots_[slot] != 0; slot = (slot + 1) % kSlots) {
      if (rows[slots_[slot] - 1].tag == tag) return &rows[slots_[slot] - 1];
    }
    return nullptr;
  }

 private:
  static constexpr std::size_t kSlots = 256;
  // The multiplier gives each tag of the two large tables a different slot.
  static constexpr std::size_t SlotOf(std::uint16_t tag) noexcept { return (tag * 315u >> 8) % kSlots; }

  std::uint8_t slots_[kSlots] = {};
};
constexpr RowFinder kFindTiffRow(kTiffRows);
constexpr RowFinder kFindExifRow(kExifRows);
constexpr RowFinder kFindRawRow(kRawRows);

bool MapByTag(const TagRow* rows, const RowFinder& finder, LxConversion& conversion, const LxMetadataItem* item,
              const char* schema) {
  if (item->valueLength == 0) {
    conversion.Xmp().DeleteProperty(schema, item->name);
    return false;
  }
  // A generated name begins with a space and cannot be an XML name (Namespaces in XML 1.0, 3). The toolkit would raise
  // an error for each such tag, which costs more than the rest of the conversion. For a struct, whose field paths are
  // composed unguarded, the error would even end the import.
  if (item->name[0] == ' ') return false;
  const TagRow* const row = finder.Find(rows, item->tagId);
  return row && row->rule(conversion, item, schema, row->partner);
}

}  // namespace

bool LxConvertTiffItem(LxConversion& conversion, const LxMetadataItem* item) {
  return MapByTag(kTiffRows, kFindTiffRow, conversion, item, kLxTiffSchema);
}

bool LxConvertExifItem(LxConversion& conversion, const LxMetadataItem* item) {
  if (item->tagId >= kRawRows[0].tag && item->valueLength != 0) {
    const RawRow* const raw = kFindRawRow.Find(kRawRows, item->tagId);
    if (!raw) return false;
    (void)LxSetXMPPrefixedText(conversion.Xmp(), raw->schema, raw->property, raw->label, item->displayText);
    return false;
  }
  return MapByTag(kExifRows, kFindExifRow, conversion, item, kLxExifSchema);
}
