// Maker-note tags of Sigma and Foveon cameras, all texts. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxSigmaTags[] = {
  //id     flags   name                  type    n  display  leads to label
  {0x0002, kPlain, "CameraSerialNumber", kAscii, 0, nullptr, nullptr, nullptr},
  {0x0003, kPlain, "DriveMode",          kAscii, 0, nullptr, nullptr, nullptr},
  {0x0004, kPlain, "ResolutionMode",     kAscii, 0, nullptr, nullptr, nullptr},
  {0x0005, kPlain, "AutofocusMode",      kAscii, 0, nullptr, nullptr, nullptr},
  {0x0006, kPlain, "FocusMode",          kAscii, 0, nullptr, nullptr, nullptr},
  {0x0007, kPlain, "WhiteBalanceMode",   kAscii, 0, nullptr, nullptr, nullptr},
  {0x0008, kPlain, "ExposureMode",       kAscii, 0, nullptr, nullptr, nullptr},
  {0x0009, kPlain, "MeteringMode",       kAscii, 0, nullptr, nullptr, nullptr},
  {0x000A, kPlain, "LensFocalLength",    kAscii, 0, nullptr, nullptr, nullptr},
  {0x000B, kPlain, "ColorSpace",         kAscii, 0, nullptr, nullptr, nullptr},
  {0x000C, kPlain, "Exposure",           kAscii, 0, nullptr, nullptr, nullptr},
  {0x000D, kPlain, "Contrast",           kAscii, 0, nullptr, nullptr, nullptr},
  {0x000E, kPlain, "Shadow",             kAscii, 0, nullptr, nullptr, nullptr},
  {0x000F, kPlain, "Highlight",          kAscii, 0, nullptr, nullptr, nullptr},
  {0x0010, kPlain, "Saturation",         kAscii, 0, nullptr, nullptr, nullptr},
  {0x0011, kPlain, "Sharpness",          kAscii, 0, nullptr, nullptr, nullptr},
  {0x0012, kPlain, "X3FillLight",        kAscii, 0, nullptr, nullptr, nullptr},
  {0x0014, kPlain, "ColorAdjustment",    kAscii, 0, nullptr, nullptr, nullptr},
  {0x0015, kPlain, "AdjustmentMode",     kAscii, 0, nullptr, nullptr, nullptr},
  {0x0016, kPlain, "Quality",            kAscii, 0, nullptr, nullptr, nullptr},
  {0x0017, kPlain, "Firmware",           kAscii, 0, nullptr, nullptr, nullptr},
  {0x0018, kPlain, "Software",           kAscii, 0, nullptr, nullptr, nullptr},
  {0x0019, kPlain, "AutoBracket",        kAscii, 0, nullptr, nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxSigmaTags) == 23 + 1 && IsDictionary(kLxSigmaTags));
// clang-format on
