// Maker-note tags of Olympus cameras. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxOlympusTags[] = {
  //id     flags   name                  type    n  display  leads to label
  {0x0200, kPlain, "SpecialMode",        kLong,  3, nullptr, nullptr, nullptr},
  {0x0201, kPlain, "JpegQual",           kShort, 1, nullptr, nullptr, nullptr},
  {0x0202, kPlain, "Macro",              kShort, 1, nullptr, nullptr, nullptr},
  {0x0204, kPlain, "DigiZoom",           kRatl,  1, nullptr, nullptr, nullptr},
  {0x0207, kPlain, "SoftwareRelease",    kAscii, 5, nullptr, nullptr, nullptr},
  {0x0208, kPlain, "PictInfo",           kAscii, 0, nullptr, nullptr, nullptr},
  {0x0209, kPlain, "CameraID",           kUndef, 0, nullptr, nullptr, nullptr},
  {0x0F00, kPlain, "DataDump",           kLong,  0, nullptr, nullptr, nullptr},
  {0x1012, kPlain, "BlackLevels",        kShort, 4, nullptr, nullptr, nullptr},
  {0x1015, kPlain, "WhiteBalance",       kShort, 2, nullptr, nullptr, nullptr},
  {0x1017, kPlain, "RedWB",              kShort, 2, nullptr, nullptr, nullptr},
  {0x1018, kPlain, "BlueWB",             kShort, 2, nullptr, nullptr, nullptr},
  {0x102C, kPlain, "ValidBits",          kLong,  1, nullptr, nullptr, nullptr},
  {0x102E, kPlain, "FinalWidth",         kLong,  1, nullptr, nullptr, nullptr},
  {0x102F, kPlain, "FinalHeight",        kLong,  1, nullptr, nullptr, nullptr},

  {0x0100, kPlain, "JPEGThumb",          kLong,  1, nullptr, nullptr, nullptr},
  {0x020E, kPlain, "SeqShotMethod",      kShort, 1, nullptr, nullptr, nullptr},
  {0x020F, kPlain, "WideRange",          kShort, 1, nullptr, nullptr, nullptr},
  {0x0210, kPlain, "ColorAdjustMode",    kShort, 1, nullptr, nullptr, nullptr},
  {0x0213, kPlain, "QuickShot",          kShort, 1, nullptr, nullptr, nullptr},
  {0x0214, kPlain, "SelfTimer",          kShort, 1, nullptr, nullptr, nullptr},
  {0x0216, kPlain, "VoiceMemo",          kShort, 1, nullptr, nullptr, nullptr},
  {0x0217, kPlain, "RecordShutterRel",   kShort, 1, nullptr, nullptr, nullptr},
  {0x0218, kPlain, "FlickerReduce",      kShort, 1, nullptr, nullptr, nullptr},
  {0x0219, kPlain, "OpticalZoom",        kShort, 1, nullptr, nullptr, nullptr},
  {0x021B, kPlain, "DigitalZoom",        kShort, 1, nullptr, nullptr, nullptr},
  {0x021D, kPlain, "LightSourceSpecial", kShort, 1, nullptr, nullptr, nullptr},
  {0x021E, kPlain, "ReSaved",            kShort, 1, nullptr, nullptr, nullptr},
  {0x021F, kPlain, "SceneSelect",        kShort, 1, nullptr, nullptr, nullptr},
  {0x0223, kPlain, "ManualFocusDist",    kShort, 1, nullptr, nullptr, nullptr},
  {0x0224, kPlain, "SeqShotInterval",    kShort, 1, nullptr, nullptr, nullptr},
  {0x0225, kPlain, "FlashMode",          kShort, 1, nullptr, nullptr, nullptr},

  {0x0E00, kPlain, "PrintIMFlags",       kShort, 1, nullptr, nullptr, nullptr},
  {0x1012, kPlain, "BlackLevels",        kShort, 4, nullptr, nullptr, nullptr},
  {0x1015, kPlain, "WhiteBalance",       kShort, 2, nullptr, nullptr, nullptr},
  {0x1017, kPlain, "RedWB",              kShort, 2, nullptr, nullptr, nullptr},
  {0x1018, kPlain, "BlueWB",             kShort, 2, nullptr, nullptr, nullptr},
  {0x102C, kPlain, "ValidBits",          kLong,  1, nullptr, nullptr, nullptr},
  {0x102E, kPlain, "FinalWidth",         kLong,  1, nullptr, nullptr, nullptr},
  {0x102F, kPlain, "FinalHeight",        kLong,  1, nullptr, nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxOlympusTags) == 40 + 1 && IsDictionary(kLxOlympusTags));
// clang-format on
