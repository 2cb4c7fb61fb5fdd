// Maker-note tags of Minolta cameras. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxMinoltaTags[] = {
  //id     flags   name               type    n  display  leads to                  label
  {0x0000, kPlain, "Version",         kUndef, 0, nullptr, nullptr,                  nullptr},
  {0x0001, kPlain, "CameraSettings1", kUndef, 0, nullptr, nullptr,                  nullptr},
  {0x0003, kPlain, "CameraSettings3", kUndef, 0, nullptr, nullptr,                  nullptr},
  {0x0010, kPlain, "Autofocus",       kUndef, 0, nullptr, nullptr,                  nullptr},
  {0x0020, kPlain, " 0020",           kUndef, 0, nullptr, nullptr,                  nullptr},  // the form of generated names, so never a display item
  {0x0040, kPlain, "ImageSize",       kLong,  0, nullptr, nullptr,                  nullptr},
  {0x0081, kPlain, "Thumbnail",       kUndef, 0, nullptr, nullptr,                  nullptr},
  {0x0088, kPlain, "ThumbnailOffset", kLong,  0, nullptr, &kLxThumbnailSpace,       nullptr},
  {0x0089, kPlain, "ThumbnailLength", kLong,  0, nullptr, &kLxThumbnailLengthSpace, nullptr},
  {0x0100, kPlain, " 0100",           kLong,  0, nullptr, nullptr,                  nullptr},  // the form of generated names, so never a display item
  {0x0101, kPlain, "ColorMode",       kLong,  0, nullptr, nullptr,                  nullptr},
  {0x0102, kPlain, "ImageQuality",    kLong,  0, nullptr, nullptr,                  nullptr},
  {0x0103, kPlain, "ImageQuality2",   kLong,  0, nullptr, nullptr,                  nullptr},
  {0x0E00, kPlain, "PrintIM",         kUndef, 0, nullptr, nullptr,                  nullptr},
  {0x0F00, kPlain, "CameraSettings",  kUndef, 0, nullptr, nullptr,                  nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxMinoltaTags) == 15 + 1 && IsDictionary(kLxMinoltaTags));
// clang-format on
