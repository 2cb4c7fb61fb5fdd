// Maker-note tags of Canon cameras. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"
#include "kit/model/tables/value_names.h"

// clang-format off
constexpr LxTagRecord kLxCanonTags[] = {
  //id     flags   name                  type     n  display          leads to label
  {0x0006, kPlain, "ImageType",          kShort,  1, nullptr,         nullptr, nullptr},
  {0x0007, kPlain, "FirmwareVersion",    kShort,  1, nullptr,         nullptr, nullptr},
  {0x0008, kPlain, "ImageNumber",        kShort,  1, nullptr,         nullptr, nullptr},
  {0x000F, kPlain, "CustomFunctions",    kShort,  1, nullptr,         nullptr, nullptr},
  {0x0001, kPlain, "LensInfo",           kShort, 26, &kLxGenericText, nullptr, nullptr},
  {0x0004, kPlain, "WhiteBalance",       kShort,  8, nullptr,         nullptr, nullptr},
  {0x0009, kPlain, "OwnerName",          kAscii,  0, nullptr,         nullptr, "$$$/Exif/CameraOwnerId=Camera Owner ID"},
  {0x000C, kPlain, "CameraSerialNumber", kLong,   1, nullptr,         nullptr, "$$$/Exif/CameraSerial=Camera Serial Number"},
  {0x0081, kPlain, "LosslessJPEG",       kLong,   1, nullptr,         nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxCanonTags) == 9 + 1 && IsDictionary(kLxCanonTags));
// clang-format on
