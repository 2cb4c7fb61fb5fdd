// Maker-note tags of Nikon cameras, by generation. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"
#include "kit/model/tables/value_names.h"

// clang-format off
// E700 and E990.
constexpr LxTagRecord kLxNikonATags[] = {
  //id     flags   name                   type    n  display           leads to label
  {0x0002, kPlain, "ISOSetting",          kShort, 1, nullptr,          nullptr, nullptr},
  {0x0003, kPlain, "ColorMode",           kShort, 1, nullptr,          nullptr, nullptr},
  {0x0004, kPlain, "Quality",             kShort, 1, nullptr,          nullptr, nullptr},
  {0x0005, kPlain, "WhiteBalance",        kShort, 1, nullptr,          nullptr, nullptr},
  {0x0006, kPlain, "ImageSharpening",     kShort, 1, nullptr,          nullptr, nullptr},
  {0x0007, kPlain, "FocusMode",           kShort, 1, nullptr,          nullptr, nullptr},
  {0x0008, kPlain, "FlashSetting",        kShort, 1, nullptr,          nullptr, nullptr},
  {0x000F, kPlain, "ISOSelection",        kShort, 1, nullptr,          nullptr, nullptr},
  {0x0010, kPlain, "DataDump",            kShort, 1, nullptr,          nullptr, nullptr},
  {0x0080, kPlain, "ImageAdjustment",     kShort, 1, nullptr,          nullptr, nullptr},
  {0x0082, kPlain, "Adapter",             kShort, 1, nullptr,          nullptr, nullptr},
  {0x0085, kPlain, "ManualFocusDistance", kShort, 1, nullptr,          nullptr, nullptr},
  {0x0086, kPlain, "DigitalZoom",         kShort, 1, nullptr,          nullptr, nullptr},
  {0x0088, kPlain, "AFFocusPosition",     kShort, 1, nullptr,          nullptr, nullptr},
  {0x0084, kPlain, "LensInfo",            kRatl,  4, &kLxMakerSpecial, nullptr, nullptr},
  {0x008C, kPlain, "CompressionInfo140",  kUndef, 0, nullptr,          nullptr, nullptr},
  {0x0096, kPlain, "CompressionInfo150",  kUndef, 0, nullptr,          nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxNikonATags) == 17 + 1 && IsDictionary(kLxNikonATags));

// D1X.
constexpr LxTagRecord kLxNikonBTags[] = {
  //id     flags    name                  type     n  display           leads to         label
  {0x0001, kPlain,  "Version",            kUndef,  4, nullptr,          nullptr,         "$$$/Maker/Version=MakerNote Version"},
  {0x0002, kPlain,  "ISOSetting",         kShort,  2, &kLxMakerSpecial, nullptr,         "$$$/Maker/ISOSetting=ISO Setting"},
  {0x0003, kPlain,  "ImageType",          kAscii,  0, nullptr,          nullptr,         "$$$/Maker/ImageType=Image Type"},
  {0x0004, kPlain,  "QualityMode",        kAscii,  0, nullptr,          nullptr,         "$$$/Maker/QualityMode=Quality Mode"},
  {0x0005, kPlain,  "WhiteBalance",       kAscii,  0, nullptr,          nullptr,         "$$$/Maker/WhiteBalance=White Balance"},
  {0x0006, kPlain,  "Sharpening",         kAscii,  0, nullptr,          nullptr,         "$$$/Maker/Sharpening=Sharpening"},
  {0x0007, kPlain,  "AFMode",             kAscii,  1, nullptr,          nullptr,         "$$$/Maker/AFMode=AF Mode"},
  {0x0008, kPlain,  "FlashSync",          kAscii,  1, nullptr,          nullptr,         "$$$/Maker/FlashSync=Flash Sync"},
  {0x0009, kPlain,  "AutoFlash",          kAscii,  1, nullptr,          nullptr,         "$$$/Maker/AutoFlash=Auto Flash"},
  {0x0011, kClosed, "ThumbSubIFD",        kOffset, 1, nullptr,          &kLxSubIfdSpace, "$$$/Maker/ThumbSubIFD=Thumbnail IFD"},
  {0x0081, kPlain,  "ToneCompensation",   kAscii,  0, nullptr,          nullptr,         "$$$/Maker/ToneCompensation=Tone Compensation"},
  {0x008D, kPlain,  "ColorMode",          kAscii,  0, nullptr,          nullptr,         "$$$/Maker/ColorMode=Color Mode"},
  {0x0092, kPlain,  "HueAdjustment",      kSShort, 1, nullptr,          nullptr,         "$$$/Maker/HueAdjustment=Hue Adjustment"},
  {0x0084, kPlain,  "LensInfo",           kRatl,   4, &kLxMakerSpecial, nullptr,         "$$$/Maker/LensInfo=Lens Info"},
  {0x008C, kPlain,  "CompressionInfo140", kUndef,  0, nullptr,          nullptr,         nullptr},
  {0x0096, kPlain,  "CompressionInfo150", kUndef,  0, nullptr,          nullptr,         nullptr},
  {0x0095, kPlain,  "NoiseReduction",     kAscii,  0, nullptr,          nullptr,         "$$$/Maker/NoiseReduction=Noise Reduction"},
  {0x0E01, kPlain,  "NikonRotate",        kUndef,  0, &kLxMakerSpecial, nullptr,         "$$$/Maker/NikonRotate=Nikon Rotate"},
  kLxEndOfTags,
};
static_assert(std::size(kLxNikonBTags) == 18 + 1 && IsDictionary(kLxNikonBTags));

// D100.
constexpr LxTagRecord kLxNikonCTags[] = {
  //id     flags    name                type     n  display           leads to         label
  {0x0001, kPlain,  "Version",          kUndef,  4, nullptr,          nullptr,         "$$$/Maker/Version=MakerNote Version"},
  {0x0002, kPlain,  "ISOSetting",       kShort,  2, &kLxMakerSpecial, nullptr,         "$$$/Maker/ISOSetting=ISO Setting"},
  {0x0003, kPlain,  "ImageType",        kAscii,  0, nullptr,          nullptr,         "$$$/Maker/ImageType=Image Type"},
  {0x0004, kPlain,  "QualityMode",      kAscii,  0, nullptr,          nullptr,         "$$$/Maker/QualityMode=Quality Mode"},
  {0x0005, kPlain,  "WhiteBalance",     kAscii,  0, nullptr,          nullptr,         "$$$/Maker/WhiteBalance=White Balance"},
  {0x0006, kPlain,  "Sharpening",       kAscii,  0, nullptr,          nullptr,         "$$$/Maker/Sharpening=Sharpening"},
  {0x0007, kPlain,  "AFMode",           kAscii,  1, nullptr,          nullptr,         "$$$/Maker/AFMode=AF Mode"},
  {0x0008, kPlain,  "FlashSync",        kAscii,  1, nullptr,          nullptr,         "$$$/Maker/FlashSync=Flash Sync"},
  {0x0009, kPlain,  "AutoFlash",        kAscii,  1, nullptr,          nullptr,         "$$$/Maker/AutoFlash=Auto Flash"},
  {0x000A, kPlain,  "DigitalZoom",      kShort,  1, nullptr,          nullptr,         "$$$/Maker/DigitalZoom=Digital Zoom"},
  {0x000B, kPlain,  "Converter",        kShort,  1, nullptr,          nullptr,         "$$$/Maker/Converter=Converter"},
  {0x0011, kClosed, "ThumbSubIFD",      kOffset, 1, nullptr,          &kLxSubIfdSpace, "$$$/Maker/ThumbSubIFD=Thumbnail IFD"},
  {0x0081, kPlain,  "ToneCompensation", kAscii,  0, nullptr,          nullptr,         "$$$/Maker/ToneCompensation=Tone Compensation"},
  {0x008D, kPlain,  "ColorMode",        kAscii,  0, nullptr,          nullptr,         "$$$/Maker/ColorMode=Color Mode"},
  {0x0092, kPlain,  "HueAdjustment",    kSShort, 1, nullptr,          nullptr,         "$$$/Maker/HueAdjustment=Hue Adjustment"},
  {0x0084, kPlain,  "LensInfo",         kRatl,   4, &kLxMakerSpecial, nullptr,         "$$$/Maker/LensInfo=Lens Info"},
  {0x0090, kPlain,  "Lighting",         kUndef,  0, nullptr,          nullptr,         "$$$/Maker/Lighting=Lighting"},
  {0x0095, kPlain,  "NoiseReduction",   kAscii,  0, nullptr,          nullptr,         "$$$/Maker/NoiseReduction=Noise Reduction"},
  {0x0E01, kPlain,  "NikonRotate",      kUndef,  0, &kLxMakerSpecial, nullptr,         "$$$/Maker/NikonRotate=Nikon Rotate"},
  kLxEndOfTags,
};
static_assert(std::size(kLxNikonCTags) == 19 + 1 && IsDictionary(kLxNikonCTags));
// clang-format on
