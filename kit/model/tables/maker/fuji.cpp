// Maker-note tags of Fujifilm cameras. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxFujiTags[] = {
  //id     flags   name            type    n  display  leads to label
  {0x1002, kPlain, "WhiteBalance", kShort, 1, nullptr, nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxFujiTags) == 1 + 1 && IsDictionary(kLxFujiTags));
// clang-format on
