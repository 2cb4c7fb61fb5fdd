// The constant tables against lists typed from the published standards (TIFF 6.0, Exif 2.2, IPTC-IIM 4, ITU-T T.81),
// their order, and what all rows and all descriptors share.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"

namespace {

struct Dictionary {
  const char* title;
  const LxTagRecord* records;
};

// clang-format off
constexpr Dictionary kNamed[] = {
  {"tiff", kLxTiffTags},     {"exif", kLxExifTags},       {"gps", kLxGpsTags},       {"interop", kLxInteropTags},
  {"iptc", kLxIptcTags},     {"ir", kLxIrTags},           {"jpeg", kLxJpegMarkers},  {"segments", kLxJpegSegmentIds},
  {"jfif", kLxJfifTags},     {"icc", kLxIccTags},         {"psdh", kLxPsdHeaderTags}, {"xmp", kLxXmpTags},
  {"makers", kLxMakerSelector}, {"nikon A", kLxNikonATags}, {"nikon B", kLxNikonBTags}, {"nikon C", kLxNikonCTags},
  {"canon", kLxCanonTags},   {"fuji", kLxFujiTags},       {"olympus", kLxOlympusTags}, {"sigma", kLxSigmaTags},
  {"minolta", kLxMinoltaTags}, {"pentax", kLxPentaxTags}, {"none", kLxNoTags},
};
// clang-format on

std::vector<const LxTagRecord*> Records(const LxTagRecord* dictionary) {
  std::vector<const LxTagRecord*> records;
  for (const LxTagRecord* record = dictionary; record->name != nullptr; ++record) records.push_back(record);
  return records;
}

std::string TitleOf(const LxTagRecord* dictionary) {
  if (dictionary == nullptr) return "-";
  for (const Dictionary& known : kNamed) {
    if (known.records == dictionary) return known.title;
  }
  return "models";
}

// "ImageWidth", "Image Width", "Caption/Abstract" and "By-line" without what only separates words.
std::string Letters(std::string_view text) {
  std::string letters;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      letters.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    }
  }
  return letters;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : " ") + text;
  return joined;
}

template <typename Wanted>
std::string NamesWhere(const LxTagRecord* dictionary, Wanted wanted) {
  std::vector<std::string> names;
  for (const LxTagRecord* record : Records(dictionary)) {
    if (wanted(*record)) names.emplace_back(record->name);
  }
  return Joined(names);
}

struct StandardTag {
  std::uint16_t id;
  const char* name;
};

// clang-format off
// TIFF 6.0, appendix A, as printed there.
constexpr StandardTag kTiff60[] = {
  {254, "NewSubfileType"}, {255, "SubfileType"}, {256, "ImageWidth"}, {257, "ImageLength"}, {258, "BitsPerSample"},
  {259, "Compression"}, {262, "PhotometricInterpretation"}, {263, "Threshholding"}, {264, "CellWidth"},
  {265, "CellLength"}, {266, "FillOrder"}, {269, "DocumentName"}, {270, "ImageDescription"}, {271, "Make"},
  {272, "Model"}, {273, "StripOffsets"}, {274, "Orientation"}, {277, "SamplesPerPixel"}, {278, "RowsPerStrip"},
  {279, "StripByteCounts"}, {280, "MinSampleValue"}, {281, "MaxSampleValue"}, {282, "XResolution"},
  {283, "YResolution"}, {284, "PlanarConfiguration"}, {285, "PageName"}, {286, "XPosition"}, {287, "YPosition"},
  {288, "FreeOffsets"}, {289, "FreeByteCounts"}, {290, "GrayResponseUnit"}, {291, "GrayResponseCurve"},
  {292, "T4Options"}, {293, "T6Options"}, {296, "ResolutionUnit"}, {297, "PageNumber"}, {301, "TransferFunction"},
  {305, "Software"}, {306, "DateTime"}, {315, "Artist"}, {316, "HostComputer"}, {317, "Predictor"},
  {318, "WhitePoint"}, {319, "PrimaryChromaticities"}, {320, "ColorMap"}, {321, "HalftoneHints"}, {322, "TileWidth"},
  {323, "TileLength"}, {324, "TileOffsets"}, {325, "TileByteCounts"}, {332, "InkSet"}, {333, "InkNames"},
  {334, "NumberOfInks"}, {336, "DotRange"}, {337, "TargetPrinter"}, {338, "ExtraSamples"}, {339, "SampleFormat"},
  {340, "SMinSampleValue"}, {341, "SMaxSampleValue"}, {342, "TransferRange"}, {512, "JPEGProc"},
  {513, "JPEGInterchangeFormat"}, {514, "JPEGInterchangeFormatLength"}, {515, "JPEGRestartInterval"},
  {517, "JPEGLosslessPredictors"}, {518, "JPEGPointTransforms"}, {519, "JPEGQTables"}, {520, "JPEGDCTables"},
  {521, "JPEGACTables"}, {529, "YCbCrCoefficients"}, {530, "YCbCrSubSampling"}, {531, "YCbCrPositioning"},
  {532, "ReferenceBlackWhite"}, {33432, "Copyright"},
};
// TIFF/EP, table 1, and the tags that others registered.
constexpr StandardTag kTiffEp[] = {
  {330, "SubIFDs"}, {347, "JPEGTables"}, {33421, "CFARepeatPatternDim"}, {33422, "CFAPattern"},
  {33423, "BatteryLevel"}, {33434, "ExposureTime"}, {33437, "FNumber"}, {33723, "IPTC/NAA"},
  {34675, "InterColorProfile"}, {34850, "ExposureProgram"}, {34852, "SpectralSensitivity"}, {34853, "GPSInfoIFD"},
  {34855, "ISOSpeedRatings"}, {34856, "OECF"}, {34857, "Interlace"}, {34858, "TimeZoneOffset"},
  {34859, "SelfTimerMode"}, {36867, "DateTimeOriginal"}, {37122, "CompressedBitsPerPixel"},
  {37377, "ShutterSpeedValue"}, {37378, "ApertureValue"}, {37379, "BrightnessValue"}, {37380, "ExposureBiasValue"},
  {37381, "MaxApertureValue"}, {37382, "SubjectDistance"}, {37383, "MeteringMode"}, {37384, "LightSource"},
  {37385, "Flash"}, {37386, "FocalLength"}, {37387, "FlashEnergy"}, {37388, "SpatialFrequencyResponse"},
  {37389, "Noise"}, {37390, "FocalPlaneXResolution"}, {37391, "FocalPlaneYResolution"},
  {37392, "FocalPlaneResolutionUnit"}, {37393, "ImageNumber"}, {37394, "SecurityClassification"},
  {37395, "ImageHistory"}, {37397, "ExposureIndex"}, {37398, "TIFF/EPStandardID"}, {37399, "SensingMethod"},
  {40091, "XPTitle"}, {40092, "XPComment"}, {40093, "XPAuthor"}, {40094, "XPKeywords"}, {40095, "XPSubject"},
};
// Exif 2.2, tables 4 and 5; Gamma is of Exif 2.21.
constexpr StandardTag kExif22[] = {
  {36864, "ExifVersion"}, {40960, "FlashpixVersion"}, {40961, "ColorSpace"}, {37121, "ComponentsConfiguration"},
  {37122, "CompressedBitsPerPixel"}, {40962, "PixelXDimension"}, {40963, "PixelYDimension"}, {37500, "MakerNote"},
  {37510, "UserComment"}, {40964, "RelatedSoundFile"}, {36867, "DateTimeOriginal"}, {36868, "DateTimeDigitized"},
  {37520, "SubSecTime"}, {37521, "SubSecTimeOriginal"}, {37522, "SubSecTimeDigitized"}, {42016, "ImageUniqueID"},
  {33434, "ExposureTime"}, {33437, "FNumber"}, {34850, "ExposureProgram"}, {34852, "SpectralSensitivity"},
  {34855, "ISOSpeedRatings"}, {34856, "OECF"}, {37377, "ShutterSpeedValue"}, {37378, "ApertureValue"},
  {37379, "BrightnessValue"}, {37380, "ExposureBiasValue"}, {37381, "MaxApertureValue"}, {37382, "SubjectDistance"},
  {37383, "MeteringMode"}, {37384, "LightSource"}, {37385, "Flash"}, {37386, "FocalLength"}, {41483, "FlashEnergy"},
  {41484, "SpatialFrequencyResponse"}, {41486, "FocalPlaneXResolution"}, {41487, "FocalPlaneYResolution"},
  {41488, "FocalPlaneResolutionUnit"}, {41492, "SubjectLocation"}, {41493, "ExposureIndex"}, {41495, "SensingMethod"},
  {41728, "FileSource"}, {41729, "SceneType"}, {41730, "CFAPattern"}, {41985, "CustomRendered"},
  {41986, "ExposureMode"}, {41987, "WhiteBalance"}, {41988, "DigitalZoomRatio"}, {41989, "FocalLengthIn35mmFilm"},
  {41990, "SceneCaptureType"}, {41991, "GainControl"}, {41992, "Contrast"}, {41993, "Saturation"},
  {41994, "Sharpness"}, {41995, "DeviceSettingDescription"}, {41996, "SubjectDistanceRange"}, {42240, "Gamma"},
};
// Exif 2.2, table 6.
constexpr StandardTag kGps22[] = {
  {0, "GPSVersionID"}, {1, "GPSLatitudeRef"}, {2, "GPSLatitude"}, {3, "GPSLongitudeRef"}, {4, "GPSLongitude"},
  {5, "GPSAltitudeRef"}, {6, "GPSAltitude"}, {7, "GPSTimeStamp"}, {8, "GPSSatellites"}, {9, "GPSStatus"},
  {10, "GPSMeasureMode"}, {11, "GPSDOP"}, {12, "GPSSpeedRef"}, {13, "GPSSpeed"}, {14, "GPSTrackRef"}, {15, "GPSTrack"},
  {16, "GPSImgDirectionRef"}, {17, "GPSImgDirection"}, {18, "GPSMapDatum"}, {19, "GPSDestLatitudeRef"},
  {20, "GPSDestLatitude"}, {21, "GPSDestLongitudeRef"}, {22, "GPSDestLongitude"}, {23, "GPSDestBearingRef"},
  {24, "GPSDestBearing"}, {25, "GPSDestDistanceRef"}, {26, "GPSDestDistance"}, {27, "GPSProcessingMethod"},
  {28, "GPSAreaInformation"}, {29, "GPSDateStamp"}, {30, "GPSDifferential"},
};
// IPTC-IIM 4, section 6, titles of the datasets as printed there.
constexpr StandardTag kIim4[] = {
  {0, "Record Version"}, {3, "Object Type Reference"}, {4, "Object Attribute Reference"}, {5, "Object Name"},
  {7, "Edit Status"}, {8, "Editorial Update"}, {10, "Urgency"}, {12, "Subject Reference"}, {15, "Category"},
  {20, "Supplemental Category"}, {22, "Fixture Identifier"}, {25, "Keywords"}, {26, "Content Location Code"},
  {27, "Content Location Name"}, {30, "Release Date"}, {35, "Release Time"}, {37, "Expiration Date"},
  {38, "Expiration Time"}, {40, "Special Instructions"}, {42, "Action Advised"}, {45, "Reference Service"},
  {47, "Reference Date"}, {50, "Reference Number"}, {55, "Date Created"}, {60, "Time Created"},
  {62, "Digital Creation Date"}, {63, "Digital Creation Time"}, {65, "Originating Program"}, {70, "Program Version"},
  {75, "Object Cycle"}, {80, "By-line"}, {85, "By-line Title"}, {90, "City"}, {95, "Province/State"},
  {100, "Country/Primary Location Code"}, {101, "Country/Primary Location Name"},
  {103, "Original Transmission Reference"}, {105, "Headline"}, {110, "Credit"}, {115, "Source"},
  {116, "Copyright Notice"}, {118, "Contact"}, {120, "Caption/Abstract"}, {122, "Writer/Editor"},
  {125, "Rasterized Caption"}, {130, "Image Type"}, {131, "Image Orientation"}, {135, "Language Identifier"},
  {150, "Audio Type"}, {151, "Audio Sampling Rate"}, {152, "Audio Sampling Resolution"}, {153, "Audio Duration"},
  {154, "Audio Outcue"}, {200, "ObjectData Preview File Format"}, {201, "ObjectData Preview File Format Version"},
};
// clang-format on

// ITU-T T.81, table B.1; a marker FFFF, which it does not assign, is named as the last of its row.
std::string MarkerName(unsigned marker) {
  const unsigned low = marker & 0x0F;
  switch (marker) {
    case 0xFFC4:
      return "DHT";
    case 0xFFC8:
      return "JPG";
    case 0xFFCC:
      return "DAC";
    case 0xFFFE:
      return "COM";
    default:
      break;
  }
  static constexpr const char* kAfterRestarts[] = {"SOI", "EOI", "SOS", "DQT", "DNL", "DRI", "DHP", "EXP"};
  switch (marker & 0xFFF0) {
    case 0xFFC0:
      return "SOF" + std::to_string(low);
    case 0xFFD0:
      return low < 8 ? "RST" + std::to_string(low) : kAfterRestarts[low - 8];
    case 0xFFE0:
      return "APP" + std::to_string(low);
    default:
      return "JPG" + std::to_string(low);
  }
}

TEST(Dictionaries, NameTheTagsOfThePublishedStandards) {
  const auto check = [](const char* standard, const LxTagRecord* dictionary, const auto& tags) {
    for (const StandardTag& tag : tags) {
      SCOPED_TRACE(std::string(standard) + " " + std::to_string(tag.id) + " " + tag.name);
      const LxTagRecord* record = LxFindTagById(tag.id, dictionary);
      ASSERT_NE(record, nullptr);
      EXPECT_EQ(Letters(record->name), Letters(tag.name));
    }
  };
  check("TIFF 6.0", kLxTiffTags, kTiff60);
  check("TIFF/EP", kLxTiffTags, kTiffEp);
  check("Exif 2.2", kLxExifTags, kExif22);
  check("Exif 2.2 GPS", kLxGpsTags, kGps22);
  check("IIM 4", kLxIptcTags, kIim4);
  for (unsigned marker = 0xFFC0; marker <= 0xFFFF; ++marker) {
    const LxTagRecord* record = LxFindTagById(static_cast<std::uint16_t>(marker), kLxJpegMarkers);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->name, MarkerName(marker));
  }
  // An editing operation that names no marker still gets a record: the catch-all.
  ASSERT_NE(LxFindTagByName("APP16", kLxJpegMarkers), nullptr);
  EXPECT_STREQ(LxFindTagByName("APP16", kLxJpegMarkers)->name, "");
}

// First and last id of a run of consecutive ids.
using Runs = std::vector<std::pair<unsigned, unsigned>>;

TEST(Dictionaries, KeepTheirOrder) {
  struct Case {
    const char* title;
    const LxTagRecord* dictionary;
    std::size_t count;
    Runs runs;
  };
  // clang-format off
  const Case cases[] = {
    {"tiff", kLxTiffTags, 148,
     {{0xFE, 0x103}, {0x106, 0x10A}, {0x10D, 0x112}, {0x115, 0x125}, {0x128, 0x129}, {0x12D, 0x12D}, {0x131, 0x132},
      {0x13B, 0x145}, {0x14A, 0x14A}, {0x14C, 0x14E}, {0x150, 0x156}, {0x200, 0x203}, {0x205, 0x209}, {0x211, 0x214},
      {0x8298, 0x8298}, {0x8769, 0x8769}, {0x15B, 0x15B}, {0x828D, 0x828F}, {0x829A, 0x829A}, {0x829D, 0x829D},
      {0x83BB, 0x83BB}, {0x8773, 0x8773}, {0x8822, 0x8822}, {0x8824, 0x8825}, {0x8827, 0x882B}, {0x9003, 0x9003},
      {0x9102, 0x9102}, {0x9201, 0x9217}, {0xC350, 0xC352}, {0xC355, 0xC357}, {0xC359, 0xC366}, {0x9C9B, 0x9C9F},
      {0x2BC, 0x2BC}, {0x8649, 0x8649}, {0x935C, 0x935C}, {0xC44F, 0xC44F}, {0xA421, 0xA421}, {0xC4A5, 0xC4A5}}},
    {"exif", kLxExifTags, 73,
     {{0x829A, 0x829A}, {0x829D, 0x829D}, {0x8822, 0x8822}, {0x8824, 0x8824}, {0x8827, 0x8828}, {0x9000, 0x9000},
      {0x9003, 0x9004}, {0x9101, 0x9102}, {0x9201, 0x920A}, {0xA20B, 0xA20C}, {0xA20E, 0xA210}, {0xA214, 0xA215},
      {0xA217, 0xA217}, {0x927C, 0x927C}, {0x9286, 0x9286}, {0x9290, 0x9292}, {0xA000, 0xA005}, {0xA300, 0xA302},
      {0xA401, 0xA40C}, {0xA420, 0xA420}, {0xA500, 0xA500}, {0xFDE8, 0xFDEA}, {0xFE4C, 0xFE58}}},
    {"gps", kLxGpsTags, 31, {{0, 30}}},
    {"interop", kLxInteropTags, 4, {{1, 2}, {0x1001, 0x1002}}},
    {"iptc", kLxIptcTags, 56,
     {{0, 0}, {3, 5}, {7, 8}, {10, 10}, {12, 12}, {15, 15}, {20, 20}, {22, 22}, {25, 27}, {30, 30}, {35, 35}, {37, 38},
      {40, 40}, {42, 42}, {45, 45}, {47, 47}, {50, 50}, {55, 55}, {60, 60}, {62, 63}, {65, 65}, {70, 70}, {75, 75},
      {80, 80}, {85, 85}, {90, 90}, {95, 95}, {100, 101}, {103, 103}, {105, 105}, {110, 110}, {115, 116}, {118, 118},
      {120, 120}, {122, 122}, {125, 125}, {130, 131}, {135, 135}, {150, 154}, {200, 202}}},
    {"ir", kLxIrTags, 64,
     {{1000, 1030}, {1032, 1047}, {1049, 1054}, {1057, 1057}, {2999, 2999}, {10000, 10000}, {1058, 1065}}},
    {"jpeg", kLxJpegMarkers, 65, {{0xFFC0, 0xFFFF}, {0, 0}}},
    {"segments", kLxJpegSegmentIds, 13,
     {{0xFFE0, 0xFFE1}, {0xFFE1, 0xFFE1}, {0xFFE1, 0xFFE1}, {0xFFE1, 0xFFE2}, {0xFFE2, 0xFFE3}, {0xFFE3, 0xFFE3},
      {0xFFEC, 0xFFED}, {0xFFED, 0xFFEE}}},
    {"nikon A", kLxNikonATags, 17,
     {{2, 8}, {0x0F, 0x10}, {0x80, 0x80}, {0x82, 0x82}, {0x85, 0x86}, {0x88, 0x88}, {0x84, 0x84}, {0x8C, 0x8C},
      {0x96, 0x96}}},
    {"nikon B", kLxNikonBTags, 18,
     {{1, 9}, {0x11, 0x11}, {0x81, 0x81}, {0x8D, 0x8D}, {0x92, 0x92}, {0x84, 0x84}, {0x8C, 0x8C}, {0x96, 0x96},
      {0x95, 0x95}, {0xE01, 0xE01}}},
    {"nikon C", kLxNikonCTags, 19,
     {{1, 0x0B}, {0x11, 0x11}, {0x81, 0x81}, {0x8D, 0x8D}, {0x92, 0x92}, {0x84, 0x84}, {0x90, 0x90}, {0x95, 0x95},
      {0xE01, 0xE01}}},
    {"canon", kLxCanonTags, 9, {{6, 8}, {0x0F, 0x0F}, {1, 1}, {4, 4}, {9, 9}, {0x0C, 0x0C}, {0x81, 0x81}}},
    {"fuji", kLxFujiTags, 1, {{0x1002, 0x1002}}},
    {"olympus", kLxOlympusTags, 40,
     {{0x200, 0x202}, {0x204, 0x204}, {0x207, 0x209}, {0xF00, 0xF00}, {0x1012, 0x1012}, {0x1015, 0x1015},
      {0x1017, 0x1018}, {0x102C, 0x102C}, {0x102E, 0x102F}, {0x100, 0x100}, {0x20E, 0x210}, {0x213, 0x214},
      {0x216, 0x219}, {0x21B, 0x21B}, {0x21D, 0x21F}, {0x223, 0x225}, {0xE00, 0xE00}, {0x1012, 0x1012},
      {0x1015, 0x1015}, {0x1017, 0x1018}, {0x102C, 0x102C}, {0x102E, 0x102F}}},
    {"sigma", kLxSigmaTags, 23, {{2, 0x12}, {0x14, 0x19}}},
    {"minolta", kLxMinoltaTags, 15,
     {{0, 1}, {3, 3}, {0x10, 0x10}, {0x20, 0x20}, {0x40, 0x40}, {0x81, 0x81}, {0x88, 0x89}, {0x100, 0x103},
      {0xE00, 0xE00}, {0xF00, 0xF00}}},
    {"pentax", kLxPentaxTags, 4, {{1, 4}}},
    {"none", kLxNoTags, 0, {}},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.title);
    std::vector<unsigned> listed;
    for (const auto& [first, last] : c.runs) {
      for (unsigned id = first; id <= last; ++id) listed.push_back(id);
    }
    std::vector<unsigned> held;
    for (const LxTagRecord* record : Records(c.dictionary)) held.push_back(record->id);
    EXPECT_EQ(held.size(), c.count);
    EXPECT_EQ(held, listed);
  }
}

TEST(Dictionaries, NameATagTwiceOnlyWhereTheFirstRecordIsTheSame) {
  for (const Dictionary& dictionary : kNamed) {
    if (dictionary.records == kLxMakerSelector) continue;  // Matched by text; every id is 0.
    SCOPED_TRACE(dictionary.title);
    std::set<std::pair<unsigned, std::string>> seen;
    std::set<unsigned> ids;
    std::vector<std::string> again;
    for (const LxTagRecord* record : Records(dictionary.records)) {
      const bool sameId = !ids.insert(record->id).second;
      const bool sameRow = !seen.emplace(record->id, record->name).second;
      if (dictionary.records == kLxJpegSegmentIds ? sameRow : sameId) again.emplace_back(record->name);
    }
    EXPECT_EQ(Joined(again), dictionary.records == kLxOlympusTags
                                 ? "BlackLevels WhiteBalance RedWB BlueWB ValidBits FinalWidth FinalHeight"
                                 : "");
  }
  EXPECT_EQ(LxFindTagByName("WhiteBalance", kLxOlympusTags), &kLxOlympusTags[9]);
  EXPECT_EQ(LxFindTagById(0x1015, kLxOlympusTags), &kLxOlympusTags[9]);
}

// Names that look like mistakes are texts that pools and their readers already hold.
TEST(Dictionaries, KeepOddNamesToTheLetter) {
  const auto nameOf = [](std::uint16_t id, const LxTagRecord* dictionary) {
    return std::string(LxFindTagById(id, dictionary)->name);
  };
  EXPECT_EQ(nameOf(0xC359, kLxTiffTags), "ScanFram-SeqNum");
  EXPECT_EQ(nameOf(0xC35C, kLxTiffTags), "Scanner-Software");
  EXPECT_EQ(nameOf(0xC35F, kLxTiffTags), "SBAinputColorSpace");
  EXPECT_EQ(nameOf(0xC363, kLxTiffTags), "ImageRotation-Status");
  EXPECT_EQ(nameOf(1021, kLxIrTags), "EPSOptions.");
  EXPECT_EQ(nameOf(1023, kLxIrTags), "Obsolete03ff.");
  EXPECT_EQ(nameOf(1027, kLxIrTags), "Obsolete03ff");
  // In the form of generated names, which a display walk passes over.
  EXPECT_EQ(nameOf(0x20, kLxMinoltaTags), " 0020");
  EXPECT_EQ(nameOf(0x100, kLxMinoltaTags), " 0100");
}

TEST(Dictionaries, HideAndCloseExactlyTheirListedTags) {
  const auto flagged = [](const LxTagRecord* dictionary, std::uint16_t flag) {
    return NamesWhere(dictionary, [flag](const LxTagRecord& record) { return (record.flags & flag) != 0; });
  };
  const std::map<std::string, std::string> hidden = {
      {"tiff",
       "NewSubfileType SubfileType StripOffsets RowsPerStrip StripByteCounts FreeOffsets FreeByteCounts TileWidth "
       "TileLength TileOffsets TileByteCounts JPEGProc JPEGInterchangeFormat JPEGInterchangeFormatLength "
       "JPEGRestartInterval JPEGLosslessPredictors JPEGPointTransforms JPEGQTables JPEGDCTables JPEGACTables "
       "ExifOffset "
       "GPSInfoIFD XMPMetadata PicturistMetadata PicturistLayers PicturistAnnotations"},
      {"exif", "MakerNote InteroperabilityIFDPointer"},
      {"interop", "Version Width Height"},
      {"iptc",
       "RecordVersion RasterizedCaption ObjectDataPreviewFileFormat ObjectDataPreviewFileFormatVersion "
       "ObjectDataPreview"},
      {"pentax", "ThumbnailLength Thumbnail"},
  };
  const std::map<std::string, std::string> closed = {
      {"tiff", "SubIFDs"},        {"ir", "ThumbnailBGR Thumbnail"}, {"segments", "FPXR Velto_CM"},
      {"nikon B", "ThumbSubIFD"}, {"nikon C", "ThumbSubIFD"},
  };
  const auto listed = [](const std::map<std::string, std::string>& lists, const char* title) {
    const auto list = lists.find(title);
    return list == lists.end() ? std::string() : list->second;
  };
  for (const Dictionary& dictionary : kNamed) {
    SCOPED_TRACE(dictionary.title);
    EXPECT_EQ(flagged(dictionary.records, kLxRecordClosed), listed(closed, dictionary.title));
    if (dictionary.records != kLxIrTags) {
      EXPECT_EQ(flagged(dictionary.records, kLxRecordHidden), listed(hidden, dictionary.title));
    }
    for (const LxTagRecord* record : Records(dictionary.records)) {
      EXPECT_EQ(record->flags & ~(kLxRecordClosed | kLxRecordHidden), 0) << record->name;
    }
  }
  // Of image resources nearly all are an editor's own business.
  EXPECT_EQ(NamesWhere(kLxIrTags, [](const LxTagRecord& record) { return (record.flags & kLxRecordHidden) == 0; }),
            "Caption IptcNaa JPEGQuality ThumbnailBGR CopyrightFlag URL Thumbnail ICCProfile Watermark ICCUntagged "
            "WorkflowURL VersionInfo ExifData1 ExifData3");
}

// The type decides where the file carries none (datasets and resources), whether an item without children is deleted
// (offset), and how the text of an edit is read.
TEST(Dictionaries, GiveTheTypesThatReadersRelyOn) {
  const auto ofType = [](const LxTagRecord* dictionary, std::uint16_t type) {
    return NamesWhere(dictionary, [type](const LxTagRecord& record) { return record.typeCode == type; });
  };
  EXPECT_EQ(ofType(kLxIptcTags, kLxTypeUndefined),
            "RecordVersion RasterizedCaption ObjectDataPreviewFileFormat ObjectDataPreviewFileFormatVersion "
            "ObjectDataPreview");
  EXPECT_EQ(ofType(kLxIrTags, kLxTypeAscii), "URL");
  EXPECT_EQ(ofType(kLxTiffTags, kLxTypeOffset),
            "StripOffsets TileOffsets SubIFDs JPEGQTables JPEGDCTables JPEGACTables ExifOffset GPSInfoIFD");
  EXPECT_EQ(ofType(kLxTiffTags, kLxTypeNone), "SMinSampleValue SMaxSampleValue BatteryLevel IptcNaa");
  EXPECT_EQ(ofType(kLxTiffTags, kLxTypeByte), "CFAPattern TIFFEPStandardID XMPMetadata");
  EXPECT_EQ(ofType(kLxExifTags, kLxTypeOffset), "InteroperabilityIFDPointer");
  EXPECT_EQ(ofType(kLxExifTags, kLxTypeSRational), "ShutterSpeedValue BrightnessValue ExposureBiasValue");
  EXPECT_EQ(ofType(kLxGpsTags, kLxTypeByte), "GPSVersionID GPSAltitudeRef");
  EXPECT_EQ(ofType(kLxGpsTags, kLxTypeUndefined), "GPSProcessingMethod GPSAreaInformation");
  EXPECT_EQ(ofType(kLxTiffTags, kLxTypeRational),
            "XResolution YResolution XPosition YPosition WhitePoint PrimaryChromaticities YCbCrCoefficients "
            "ExposureTime FNumber CompressedBitsPerPixel ApertureValue MaxApertureValue "
            "SubjectDistance FocalLength FlashEnergy FocalPlaneXResolution FocalPlaneYResolution ExposureIndex");
  EXPECT_EQ(LxFindTagById(532, kLxTiffTags)->typeCode, kLxTypeLong);  // As in the list of tags of TIFF 6.0.
  for (const Dictionary& dictionary : kNamed) {
    for (const LxTagRecord* record : Records(dictionary.records)) {
      EXPECT_LT(record->typeCode, kLxTypeCount) << dictionary.title << " " << record->name;
      if (dictionary.records == kLxIptcTags || dictionary.records == kLxIrTags) {
        EXPECT_TRUE(record->typeCode == kLxTypeAscii || record->typeCode == kLxTypeUndefined) << record->name;
        EXPECT_EQ(record->count, 0) << record->name;
      }
      if (dictionary.records == kLxJpegMarkers || dictionary.records == kLxJpegSegmentIds) {
        EXPECT_EQ(record->typeCode, kLxTypeUndefined) << record->name;
      }
    }
  }
}

struct Label {
  std::string group;
  std::string key;
  std::string text;
};

// "$$$/Group/Key=Text", where the group may be a path; false for anything else.
bool SplitLabel(std::string_view label, Label* out) {
  const std::size_t equals = label.find('=');
  if (label.substr(0, 4) != "$$$/" || equals == std::string_view::npos) return false;
  const std::size_t slash = label.rfind('/', equals);
  if (slash <= 3 || slash + 1 == equals || equals + 1 == label.size()) return false;
  *out = {std::string(label.substr(4, slash - 4)), std::string(label.substr(slash + 1, equals - slash - 1)),
          std::string(label.substr(equals + 1))};
  const auto isKey = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
  return std::all_of(out->key.begin(), out->key.end(), isKey) && out->text.front() != ' ' && out->text.back() != ' ';
}

TEST(Dictionaries, LabelsSpellTheirTagsInTheirGroups) {
  const std::map<std::string, std::string> groups = {
      {"tiff", "Exif Exif2 Tiff6"},
      {"exif", "EXIF Exif Exif2 Exif21 Rawforge"},
      {"gps", "Exif Exif2"},
      {"interop", "Exif"},
      {"iptc", "IPTC Iptc"},
      {"ir", "IR"},
      {"nikon B", "Maker"},
      {"nikon C", "Maker"},
      {"canon", "Exif"},
  };
  // Texts that say more, or spell better, than the tag's name.
  const std::map<std::string, std::string> reworded = {
      {"Threshholding", "Thresholding"},    {"ScanFram-SeqNum", "Scan Frame Sequence Number"},
      {"VersionInfo", "Picturist Version"}, {"nikon Version", "MakerNote Version"},
      {"ThumbSubIFD", "Thumbnail IFD"},     {"OwnerName", "Camera Owner ID"},
  };
  const std::map<std::string, std::string> unlabelled = {
      {"ir", "Obsolete03fc Obsolete03ff. Obsolete03ff"},
      {"nikon B", "CompressionInfo140 CompressionInfo150"},
      {"canon", "ImageType FirmwareVersion ImageNumber CustomFunctions LensInfo WhiteBalance LosslessJPEG"},
  };
  std::map<std::string, std::string> texts;  // A key is translated once, so it has one text.
  for (const Dictionary& dictionary : kNamed) {
    std::set<std::string> used;
    for (const LxTagRecord* record : Records(dictionary.records)) {
      if (record->label == nullptr) continue;
      SCOPED_TRACE(record->label);
      Label label;
      ASSERT_TRUE(SplitLabel(record->label, &label));
      used.insert(label.group);
      const bool ofNikon = label.group == "Maker";
      const auto exception = reworded.find(ofNikon && label.key == "Version" ? "nikon Version" : record->name);
      if (exception != reworded.end()) {
        EXPECT_EQ(label.text, exception->second);
      } else {
        EXPECT_EQ(Letters(label.text), Letters(record->name));
      }
      EXPECT_EQ(texts.emplace(label.group + "/" + label.key, label.text).first->second, label.text);
    }
    const std::vector<std::string> sorted(used.begin(), used.end());
    const auto expected = groups.find(dictionary.title);
    EXPECT_EQ(Joined(sorted), expected == groups.end() ? "" : expected->second) << dictionary.title;
    const auto without = unlabelled.find(dictionary.title);
    if (expected != groups.end()) {
      EXPECT_EQ(NamesWhere(dictionary.records, [](const LxTagRecord& record) { return record.label == nullptr; }),
                without == unlabelled.end() ? "" : without->second)
          << dictionary.title;
    }
  }
  const auto labelOf = [](const char* name, const LxTagRecord* dictionary) {
    return std::string(LxFindTagByName(name, dictionary)->label);
  };
  EXPECT_EQ(labelOf("ExposureTime", kLxExifTags), "$$$/Exif/ExposureTime=Exposure Time");
  EXPECT_EQ(labelOf("RFOwnerName", kLxExifTags), "$$$/Rawforge/OwnerName=RF Owner Name");
  EXPECT_EQ(labelOf("CameraSerialNumber", kLxCanonTags), "$$$/Exif/CameraSerial=Camera Serial Number");
}

// The display formats that are not by type alone, and that only value names have a table.
TEST(Dictionaries, FormatTheListedTags) {
  const auto ofFormat = [](const LxTagRecord* dictionary, std::uint32_t format) {
    return NamesWhere(dictionary, [format](const LxTagRecord& record) {
      return record.display != nullptr && record.display->format == format;
    });
  };
  const std::string photo =
      "ExposureTime FNumber ShutterSpeedValue ApertureValue BrightnessValue ExposureBiasValue MaxApertureValue "
      "SubjectDistance FocalLength";
  const std::map<std::pair<std::string, std::uint32_t>, std::string> listed = {
      {{"tiff", kLxFormatValueNames},
       "Compression PhotometricInterpretation FillOrder Orientation PlanarConfiguration ResolutionUnit "
       "YCbCrPositioning ExposureProgram MeteringMode LightSource Flash"},
      {{"tiff", kLxFormatPhotoQuantity}, photo},
      {{"tiff", kLxFormatIccProfile}, "InterColorProfile"},
      {{"tiff", kLxFormatComment}, "XPTitle XPComment XPAuthor XPKeywords XPSubject"},
      {{"exif", kLxFormatValueNames},
       "ExposureProgram ComponentsConfiguration MeteringMode LightSource Flash FocalPlaneResolutionUnit SensingMethod "
       "ColorSpace FileSource SceneType CustomRendered ExposureMode WhiteBalance SceneCaptureType GainControl Contrast "
       "Saturation Sharpness SubjectDistanceRange"},
      {{"exif", kLxFormatPhotoQuantity}, photo + " FocalLengthIn35mmFilm"},
      {{"exif", kLxFormatComment}, "UserComment"},
      {{"gps", kLxFormatGpsQuantity}, "GPSLatitude GPSLongitude GPSAltitude GPSTimeStamp"},
      {{"gps", kLxFormatValueNames}, "GPSDifferential"},
      {{"ir", kLxFormatJpegQuality}, "JPEGQuality"},
      {{"ir", kLxFormatIccProfile}, "ICCProfile"},
      {{"ir", kLxFormatVersionInfo}, "VersionInfo"},
      {{"nikon A", kLxFormatMakerSpecial}, "LensInfo"},
      {{"nikon B", kLxFormatMakerSpecial}, "ISOSetting LensInfo NikonRotate"},
      {{"nikon C", kLxFormatMakerSpecial}, "ISOSetting LensInfo NikonRotate"},
      {{"canon", kLxFormatGeneric8}, "LensInfo"},
  };
  for (const Dictionary& dictionary : kNamed) {
    for (std::uint32_t format = kLxFormatValueNames; format <= kLxFormatComment; ++format) {
      const auto names = listed.find({dictionary.title, format});
      EXPECT_EQ(ofFormat(dictionary.records, format), names == listed.end() ? "" : names->second)
          << dictionary.title << ", format " << format;
    }
    for (const LxTagRecord* record : Records(dictionary.records)) {
      if (record->display == nullptr) continue;
      EXPECT_EQ(record->display->valueNames != nullptr, record->display->format == kLxFormatValueNames) << record->name;
    }
  }
}

const LxValueName* ValueNames(const char* tag, const LxTagRecord* dictionary) {
  const LxTagRecord* record = LxFindTagByName(tag, dictionary);
  return record == nullptr || record->display == nullptr ? nullptr : record->display->valueNames;
}

TEST(ValueNames, HoldTheValuesOfTheStandardsInTheirOrder) {
  struct Case {
    const char* tag;
    const LxTagRecord* dictionary;
    const char* values;
  };
  const Case cases[] = {
      {"PhotometricInterpretation", kLxTiffTags, "1 2 3 4 5 6 8 9 32803 0"},
      {"Compression", kLxTiffTags, "1 2 3 4 5 6 7 32773"},
      {"ResolutionUnit", kLxTiffTags, "1 2 3"},
      {"FillOrder", kLxTiffTags, "1 2"},
      {"Orientation", kLxTiffTags, "1 2 3 4 5 6 7 8"},
      {"PlanarConfiguration", kLxTiffTags, "1 2"},
      {"YCbCrPositioning", kLxTiffTags, "1 2"},
      {"ComponentsConfiguration", kLxExifTags, "1 2 3 4 5 6 0"},
      {"MeteringMode", kLxExifTags, "0 1 2 3 4 5 6 255"},
      {"LightSource", kLxExifTags, "0 1 2 3 4 9 10 11 12 13 14 15 17 18 19 20 21 22 23 24 255"},
      {"Flash", kLxExifTags, "0 1 5 7 9 13 15 16 24 25 29 31 32 65 69 71 73 77 79 80 88 89 93 95"},
      {"ExposureProgram", kLxExifTags, "0 1 2 3 4 5 6 7 8"},
      {"ColorSpace", kLxExifTags, "1 65535"},
      {"SensingMethod", kLxExifTags, "1 2 3 4 5 7 8"},
      {"FileSource", kLxExifTags, "0 1 2 3"},
      {"SceneType", kLxExifTags, "1"},
      {"CustomRendered", kLxExifTags, "0 1"},
      {"ExposureMode", kLxExifTags, "0 1 2"},
      {"WhiteBalance", kLxExifTags, "0 1"},
      {"SceneCaptureType", kLxExifTags, "0 1 2 3"},
      {"GainControl", kLxExifTags, "0 1 2 3 4"},
      {"Contrast", kLxExifTags, "0 1 2"},
      {"Saturation", kLxExifTags, "0 1 2"},
      {"Sharpness", kLxExifTags, "0 1 2"},
      {"SubjectDistanceRange", kLxExifTags, "0 1 2 3"},
      {"GPSDifferential", kLxGpsTags, "0 1"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tag);
    const LxValueName* names = ValueNames(c.tag, c.dictionary);
    ASSERT_NE(names, nullptr);
    std::vector<std::string> values;
    for (; names->name != nullptr; ++names) values.push_back(std::to_string(names->value));
    EXPECT_EQ(Joined(values), c.values);
  }
  EXPECT_EQ(ValueNames("FocalPlaneResolutionUnit", kLxExifTags), ValueNames("ResolutionUnit", kLxTiffTags));
  for (const char* shared : {"ExposureProgram", "MeteringMode", "LightSource", "Flash"}) {
    EXPECT_EQ(ValueNames(shared, kLxExifTags), ValueNames(shared, kLxTiffTags)) << shared;
  }
}

// Exif 2.2, 4.6.5, Flash: bit 0 fired, 1 and 2 the return light, 3 and 4 the mode, 5 no flash function, 6 red-eye mode.
std::string FlashText(std::uint32_t value) {
  if ((value & 0x20) != 0) return "No flash function";
  const bool fired = (value & 1) != 0;
  static constexpr const char* kModes[] = {"", "compulsory", "suppressed", "auto"};
  std::string mode = kModes[(value >> 3) & 3];
  if (fired && (value & 0x40) != 0) mode += mode.empty() ? "red-eye reduction" : " red-eye reduction";
  std::string text = fired ? "Fired" : "Did not fire";
  if (!mode.empty()) text += ", " + mode;
  const std::uint32_t returned = (value >> 1) & 3;
  if (returned != 0) text += returned == 2 ? ", return light not detected" : ", return light detected";
  return text;
}

TEST(ValueNames, FlashNamesFollowTheBitsOfTheValue) {
  for (const LxValueName* entry = ValueNames("Flash", kLxExifTags); entry->name != nullptr; ++entry) {
    EXPECT_EQ(entry->name, FlashText(entry->value)) << entry->value;
    EXPECT_EQ(entry->label, "$$$/Exif2/Flash" + std::to_string(entry->value) + "=" + FlashText(entry->value));
  }
}

TEST(ValueNames, EveryEntryHasADistinctKeyThatSpellsItsName) {
  // Names that are numbers or abbreviations, and misspelt ones that stay as they are while their texts are right.
  const std::set<std::string> reworded = {"CCITTG3Fax",
                                          "CCITTG4Fax",
                                          "TIFFJPEG",
                                          "DaylightFlourescent",
                                          "DayWhiteFlourescent",
                                          "CoolWhiteFlourescent",
                                          "WhiteFlourescent",
                                          "Without",
                                          "With"};
  std::set<const LxValueName*> tables;
  for (const Dictionary& dictionary : kNamed) {
    for (const LxTagRecord* record : Records(dictionary.records)) {
      if (record->display != nullptr && record->display->valueNames != nullptr) {
        tables.insert(record->display->valueNames);
      }
    }
  }
  EXPECT_EQ(tables.size(), 26U);
  std::set<std::string> keys;
  std::set<std::string> groups;
  std::size_t inLe = 0;
  for (const LxValueName* table : tables) {
    std::set<std::uint32_t> values;
    bool tableInLe = false;
    for (const LxValueName* entry = table; entry->name != nullptr; ++entry) {
      SCOPED_TRACE(entry->name);
      EXPECT_TRUE(values.insert(entry->value & 0xFFFF).second);
      if (table == ValueNames("ComponentsConfiguration", kLxExifTags)) {
        EXPECT_EQ(entry->label, nullptr);
        continue;
      }
      ASSERT_NE(entry->label, nullptr);
      Label label;
      ASSERT_TRUE(SplitLabel(entry->label, &label)) << entry->label;
      EXPECT_TRUE(keys.insert(label.group + "/" + label.key).second) << entry->label;
      groups.insert(label.group.substr(0, label.group.find_last_of('/')));
      tableInLe = tableInLe || label.group == "LE/Exif";
      if (reworded.count(entry->name) == 0 && table != ValueNames("Orientation", kLxTiffTags)) {
        EXPECT_EQ(Letters(label.text), Letters(entry->name));
      }
    }
    inLe += tableInLe ? 1 : 0;
  }
  EXPECT_EQ(groups, (std::set<std::string>{"Exif", "Exif2", "LE"}));
  EXPECT_EQ(inLe, 2U);

  const LxValueName* lights = ValueNames("LightSource", kLxExifTags);
  EXPECT_STREQ(LxFindValueName(12, lights)->name, "DaylightFlourescent");
  EXPECT_STREQ(LxFindValueName(13, lights)->name, "DayWhiteFlourescent");
  EXPECT_STREQ(LxFindValueName(14, lights)->name, "CoolWhiteFlourescent");
  EXPECT_STREQ(LxFindValueName(15, lights)->name, "WhiteFlourescent");
  EXPECT_STREQ(LxFindValueName(2, lights)->name, "Fluorescent");
  const auto labelOf = [](const char* tag, const LxTagRecord* dictionary, std::uint32_t value) {
    return std::string(LxFindValueName(value, ValueNames(tag, dictionary))->label);
  };
  EXPECT_EQ(labelOf("MeteringMode", kLxExifTags, 2), "$$$/Exif/MeteringMode2=Center Weighted Average");
  EXPECT_EQ(labelOf("Orientation", kLxTiffTags, 6), "$$$/Exif/Orientation/rightTop=Rotate 90");
  EXPECT_EQ(labelOf("Compression", kLxTiffTags, 7), "$$$/Exif2/Compression/TIFFJPEG=TIFF-EP JPEG");
  EXPECT_EQ(labelOf("ColorSpace", kLxExifTags, 1), "$$$/Exif/ColorSpacesRGB=sRGB");
  EXPECT_EQ(labelOf("YCbCrPositioning", kLxTiffTags, 2), "$$$/LE/Exif/cosited=Cosited");
}

std::string Line(const LxNamespaceDescriptor& space) {
  return std::string(space.nameSpace) + " " + std::to_string(space.readerCode) + " " + TitleOf(space.dictionary) + " " +
         std::to_string(space.variant);
}

// From the descriptors that the readers start from, over everything that a record leads to. A descriptor is looked into
// once, so that loops (sub-IFDs, thumbnails in thumbnails) end.
void Reach(const LxNamespaceDescriptor* space, std::set<const LxNamespaceDescriptor*>* reached) {
  if (!reached->insert(space).second || space->dictionary == nullptr) return;
  for (const LxTagRecord* record : Records(space->dictionary)) {
    if (record->subNamespace != nullptr) Reach(record->subNamespace, reached);
  }
}

std::set<const LxNamespaceDescriptor*> ReachedDescriptors() {
  std::set<const LxNamespaceDescriptor*> reached;
  for (const LxNamespaceDescriptor* root : {&kLxJpegSpace, &kLxTiffSpace, &kLxImageResourceSpace, &kLxFlashPixSpace}) {
    Reach(root, &reached);
  }
  return reached;
}

TEST(Descriptors, EveryWayThroughAFileIsReachedAndKnown) {
  // Namespace, reader code, dictionary, variant.
  const std::set<std::string> known = {
      "jpeg 1 segments 0",  "jpegt 1 segments 0",    "tiff 2 tiff 0",        "tiff 3 tiff 0",
      "exif 3 exif 0",      "gps 3 gps 0",           "interop 3 interop 0",  "jpegappexif 4 - 6",
      "make 5 - 0",         "model 5 - 1",           "makernote 6 makers 0", "jpegappir 9 - 0",
      "jpegappFpxr 10 - 0", "jpegappXmp 11 - 0",     "ir 12 ir 0",           "ir 13 - 0",
      "iptc 14 iptc 0",     "fpxr 15 - 0",           "xmp 16 - 0",           "jpegappjfif 17 - 0",
      "jinterl 20 - 0",     "jpegappIcc 21 - 0",     "nikon 6 models 1",     "canon 6 models 1",
      "fuji 6 models 1",    "olymp 6 models 1",      "sigma 6 models 1",     "foveon 6 models 1",
      "minolta 6 models 1", "pentax 6 models 1",     "generic 6 models 1",   "nikon 8 nikon A 0",
      "nikon 8 nikon B 0",  "nikon 8 nikon C 255",   "nikon 8 none 255",     "canon 8 canon 0",
      "canon 8 canon 255",  "fuji 8 fuji 255",       "olymp 8 olympus 255",  "sigma 8 sigma 255",
      "foveon 8 sigma 255", "minolta 8 minolta 255", "pentax 8 pentax 255",  "generic 8 none 255"};
  std::set<std::string> reached;
  for (const LxNamespaceDescriptor* space : ReachedDescriptors()) {
    reached.insert(Line(*space));
    const std::set<std::uint32_t> withDictionary = {kLxReadJpegStream,  kLxReadTiffHeader, kLxReadIfd,
                                                    kLxReadMakerVendor, kLxReadMakerNote,  kLxReadImageResources,
                                                    kLxReadIptc};
    EXPECT_EQ(space->dictionary != nullptr, withDictionary.count(space->readerCode) != 0) << Line(*space);
  }
  EXPECT_EQ(reached, known);
}

TEST(Descriptors, AreReachedFromTheListedTags) {
  const std::map<std::string, std::vector<std::string>> listed = {
      {"tiff",
       {"Make: make 5 - 0", "Model: model 5 - 1", "SubIFDs: tiff 3 tiff 0", "JPEGInterchangeFormat: jpegt 1 segments 0",
        "JPEGInterchangeFormatLength: jinterl 20 - 0", "ExifOffset: exif 3 exif 0", "IptcNaa: iptc 14 iptc 0",
        "GPSInfoIFD: gps 3 gps 0", "XMPMetadata: xmp 16 - 0", "PicturistMetadata: ir 12 ir 0"}},
      {"exif", {"MakerNote: makernote 6 makers 0", "InteroperabilityIFDPointer: interop 3 interop 0"}},
      {"ir",
       {"IptcNaa: iptc 14 iptc 0", "ThumbnailBGR: ir 13 - 0", "Thumbnail: ir 13 - 0", "ExifData1: tiff 2 tiff 0",
        "ExifData3: tiff 2 tiff 0", "XMPMetadata: xmp 16 - 0"}},
      {"segments",
       {"JFIF: jpegappjfif 17 - 0", "Meta: jpegappexif 4 - 6", "Exif: jpegappexif 4 - 6",
        std::string(kLxXmpSegmentId) + ": jpegappXmp 11 - 0", "FPXR: jpegappFpxr 10 - 0",
        "ICC_PROFILE: jpegappIcc 21 - 0", "Exif: jpegappexif 4 - 6", "Meta: jpegappexif 4 - 6",
        "Picturist 3.0: jpegappir 9 - 0"}},
      {"nikon B", {"ThumbSubIFD: tiff 3 tiff 0"}},
      {"nikon C", {"ThumbSubIFD: tiff 3 tiff 0"}},
      {"minolta", {"ThumbnailOffset: jpegt 1 segments 0", "ThumbnailLength: jinterl 20 - 0"}},
      {"pentax", {"ThumbnailLength: jinterl 20 - 0", "Thumbnail: jpegt 1 segments 0"}},
  };
  for (const Dictionary& dictionary : kNamed) {
    if (dictionary.records == kLxMakerSelector) continue;
    std::vector<std::string> lines;
    for (const LxTagRecord* record : Records(dictionary.records)) {
      if (record->subNamespace != nullptr)
        lines.push_back(std::string(record->name) + ": " + Line(*record->subNamespace));
    }
    const auto expected = listed.find(dictionary.title);
    EXPECT_EQ(lines, expected == listed.end() ? std::vector<std::string>() : expected->second) << dictionary.title;
  }
  // The payload readers know how long the identifier is.
  EXPECT_EQ(std::string_view(kLxXmpSegmentId).size(), 28U);
}

TEST(Descriptors, MakeAndModelChooseTheMakerNoteDictionary) {
  struct Case {
    const char* make;
    const char* model;
    const char* chosen;
  };
  const Case cases[] = {
      {"Nikon", "E990", "nikon 8 nikon A 0"},
      {"NIKON CORPORATION", "E700", "nikon 8 nikon A 0"},
      {"NIKON CORPORATION", "NIKON D1X", "nikon 8 nikon B 0"},
      {"NIKON CORPORATION", "NIKON D100 ", "nikon 8 nikon C 255"},
      {"NIKON CORPORATION", "NIKON D100", "nikon 8 none 255"},  // Without its space.
      {"NIKON", "NIKON D1X", "generic 8 none 255"},
      {"Canon", "Canon PowerShot S300", "canon 8 canon 0"},
      {"Canon", "Canon EOS-1DS", "generic 8 none 255"},
      {"Canon", "Canon EOS-1Ds", "canon 8 canon 255"},
      {"FUJIFILM", "FinePix6900ZOOM", "fuji 8 fuji 255"},
      {"OLYMPUS OPTICAL CO.,LTD", "C8080WZ", "olymp 8 olympus 255"},
      {"OLYMPUS IMAGING CORP.", "E-1", "generic 8 none 255"},
      {"SIGMA", "SIGMA SD9", "sigma 8 sigma 255"},
      {"SIGMA", "SIGMA SD10", "sigma 8 sigma 255"},
      {"SIGMA", "", "sigma 8 sigma 255"},
      {"FOVEON", "any", "foveon 8 sigma 255"},
      {"Foveon", "any", "foveon 8 sigma 255"},
      {"Minolta Co., Ltd.", "DiMAGE 7", "minolta 8 minolta 255"},
      {"PENTAX Corporation ", "PENTAX Optio S ", "pentax 8 pentax 255"},
      {"PENTAX Corporation ", "PENTAX Optio S4", "generic 8 none 255"},
      {"PENTAX Corporation", "PENTAX Optio S ", "generic 8 none 255"},
      {"SONY", "CYBERSHOT", "generic 8 none 255"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.make) + ", " + c.model);
    const LxTagRecord* vendor = LxFindTagByName(c.make, kLxMakerSelector);
    ASSERT_TRUE(vendor != nullptr && vendor->subNamespace != nullptr);
    const LxTagRecord* model = LxFindTagByName(c.model, vendor->subNamespace->dictionary);
    ASSERT_TRUE(model != nullptr && model->subNamespace != nullptr);
    EXPECT_EQ(Line(*model->subNamespace), c.chosen);
  }
}

TEST(Namespaces, LeadFromTheirNamesToTheDictionariesThatReadersUse) {
  std::vector<std::string> listed;
  for (const LxNamespaceEntry* entry = kLxNamespaces; entry->nameSpace != nullptr; ++entry) {
    EXPECT_EQ(TitleOf(entry->dictionary), entry->nameSpace);
    listed.emplace_back(entry->nameSpace);
  }
  EXPECT_EQ(Joined(listed), "tiff jpeg exif ir iptc gps interop jfif icc psdh xmp");
  // Whatever namespace an item can come to stand in has a display key, but for those that are structure only.
  std::map<std::string, std::string> labels;
  std::set<std::string> keys;
  for (const LxNamespaceLabel* entry = kLxNamespaceLabels; entry->nameSpace != nullptr; ++entry) {
    Label label;
    ASSERT_TRUE(SplitLabel(entry->label, &label));
    EXPECT_EQ(label.group, "Metadata/NameSpace");
    EXPECT_TRUE(labels.emplace(entry->nameSpace, label.text).second);
    keys.insert(label.key);
  }
  for (const LxNamespaceDescriptor* space : ReachedDescriptors()) {
    const std::string name = space->nameSpace;
    const bool structural =
        name == "jpegt" || name == "jinterl" || name == "make" || name == "model" || name.substr(0, 7) == "jpegapp";
    EXPECT_EQ(labels.count(name), structural ? 0U : 1U) << name;
  }
  EXPECT_EQ(labels.size(), 22U);
  EXPECT_EQ(labels["ir"], "PICTURIST");
  // A note of a maker without a dictionary is just a maker note; every other namespace has a key of its own.
  EXPECT_EQ(keys.size(), 21U);
  EXPECT_EQ(labels["generic"], labels["makernote"]);
}

// What a container is made from has to lead a reader back to the namespace that the container is for.
TEST(Structures, EveryKeyNamesARecordThatLeadsToItsNamespace) {
  struct Case {
    const LxStructureEntry* table;
    const char* rows;
  };
  const Case cases[] = {
      {kLxTiffStructure, "tiff:2 exif:9 ir:3 iptc:3 gps:9 interop:9 jpegt:5"},
      {kLxJpegStructure, "jpeg:1 tiff:4 exif:9 ir:4 jfif:4 icc:4 iptc:3 gps:9 interop:9 jpegt:5 xmp:4"},
      {kLxPsdStructure, "ir:6 tiff:8 exif:9 iptc:7 gps:9 interop:9 jpegt:5"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.rows);
    std::vector<std::string> rows;
    const LxStructureEntry* row = c.table;
    for (; row->nameSpace != nullptr; ++row) {
      SCOPED_TRACE(row->nameSpace);
      rows.push_back(std::string(row->nameSpace) + ":" + std::to_string(row->kind));
      if (row->parent == nullptr) {  // The layout's root.
        EXPECT_EQ(row->key, nullptr);
        continue;
      }
      if (row->kind == kLxContainerThumbnail) continue;
      if (row->kind == kLxContainerJpegSegment) {
        const LxTagRecord* marker = LxFindTagByName(row->parent, kLxJpegMarkers);
        const LxTagRecord* segment = LxFindTag(marker->id, row->key, kLxJpegSegmentIds);
        ASSERT_NE(segment, nullptr);
        EXPECT_NE(segment->subNamespace, nullptr);
        continue;
      }
      EXPECT_NE(LxFindStructureEntry(row->parent, c.table), nullptr);
      const LxTagRecord* record = LxFindTagByName(row->key, LxFindNamespace(row->parent, kLxNamespaces)->dictionary);
      ASSERT_TRUE(record != nullptr && record->subNamespace != nullptr);
      EXPECT_STREQ(record->subNamespace->nameSpace, row->nameSpace);
    }
    EXPECT_EQ(Joined(rows), c.rows);
    EXPECT_TRUE(row->parent == nullptr && row->key == nullptr && row->kind == kLxContainerUndefPointer);
  }
}

}  // namespace
