// The lists printed by `lxbridge fields`.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_FIELD_LISTING_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_FIELD_LISTING_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/lxbridge/options.h"

namespace lxbridge::command {

struct ListedField {
  std::string_view name;
  std::string_view type;  // "": unknown.
  std::string source;     // "": not shown.
  std::string_view example;
  std::uint64_t files = 0;  // The number of files that have it; 0: not shown.
};

// The list in columns, or as lines of JSON.
[[nodiscard]] std::string FieldListing(const std::vector<ListedField>& fields, const Options& options);
// The list of all known fields.
[[nodiscard]] std::string KnownFieldListing(const Options& options);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_FIELD_LISTING_H_
