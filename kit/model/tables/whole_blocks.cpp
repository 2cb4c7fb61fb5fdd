// The dictionaries of namespaces that hold a single block of bytes each. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxJfifTags[] = {
  {0x0001, kPlain, "Data", kUndef, 0, nullptr, nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxJfifTags) == 1 + 1 && IsDictionary(kLxJfifTags));

constexpr LxTagRecord kLxIccTags[] = {
  {0x0001, kPlain, "Data", kUndef, 0, nullptr, nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxIccTags) == 1 + 1 && IsDictionary(kLxIccTags));

constexpr LxTagRecord kLxPsdHeaderTags[] = {
  {0x0000, kPlain, "PSDHeader", kUndef, 0, nullptr, nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxPsdHeaderTags) == 1 + 1 && IsDictionary(kLxPsdHeaderTags));

constexpr LxTagRecord kLxXmpTags[] = {
  {0x0001, kPlain, "XmpData", kUndef, 0, nullptr, nullptr, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxXmpTags) == 1 + 1 && IsDictionary(kLxXmpTags));
// clang-format on
