// The tags of the interoperability directory (Exif 2.2, 4.6.7, and DCF). Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxInteropTags[] = {
  //id     flags    name                     type    n  display  leads to label
  {0x0001, kPlain,  "InteroperabilityIndex", kAscii, 0, nullptr, nullptr, "$$$/Exif/InteroperabilityIndex=Interoperability Index"},
  {0x0002, kHidden, "Version",               kUndef, 4, nullptr, nullptr, "$$$/Exif/InteropVersion=Version"},
  {0x1001, kHidden, "Width",                 kLong,  1, nullptr, nullptr, "$$$/Exif/InteropWidth=Width"},
  {0x1002, kHidden, "Height",                kLong,  1, nullptr, nullptr, "$$$/Exif/InteropHeight=Height"},
  kLxEndOfTags,
};
static_assert(std::size(kLxInteropTags) == 4 + 1 && IsDictionary(kLxInteropTags));
// clang-format on
