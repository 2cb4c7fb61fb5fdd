// Maker-note tags of Pentax cameras. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxPentaxTags[] = {
  //id     flags    name               type     n  display  leads to                  label
  {0x0001, kPlain,  "Version",         kShort,  1, nullptr, nullptr,                  nullptr},
  {0x0002, kPlain,  "ThumbnailWH",     kShort,  2, nullptr, nullptr,                  nullptr},
  {0x0003, kHidden, "ThumbnailLength", kLong,   1, nullptr, &kLxThumbnailLengthSpace, nullptr},
  {0x0004, kHidden, "Thumbnail",       kOffset, 1, nullptr, &kLxThumbnailSpace,       nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxPentaxTags) == 4 + 1 && IsDictionary(kLxPentaxTags));
// clang-format on
