// The columns of --fields: facts about files, and properties by namespace and name.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_COLUMNS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_COLUMNS_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/include/lxbridge/xmp.hpp"
#include "tools/json/file_facts.h"
#include "tools/json/known_fields.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

struct Column {
  struct Step {
    std::string schema;
    std::string name;
  };

  std::string label;
  std::optional<json::Fact> fact;           // Else a property:
  const json::KnownField* known = nullptr;  // Its table row, if there is one.
  bool whole = false;                       // Flat only: all properties of a schema, or (no path) of all.
  std::size_t property = 0;                 // The index of the property at the start of the path.
  std::vector<Step> path;
};

class Columns {
 public:
  // Resolves the options' fields. False: an unknown prefix, or no known names for an asterisk; `error` tells which.
  // Requires: the library and a session of the host are started.
  [[nodiscard]] bool Resolve(const Options& options, std::string* error);

  [[nodiscard]] const std::vector<Column>& all() const { return columns_; }
  [[nodiscard]] bool WantsFacts() const;
  [[nodiscard]] bool WantsImageFacts() const;
  // Whether some are in no table, so that a name may be misspelt.
  [[nodiscard]] bool HasUnknown() const;
  // Flat only: whether a column has this label; a whole schema is then printed without that property.
  [[nodiscard]] bool Has(const std::string& label) const { return labels_.contains(label); }

  // The properties of an object at which the columns' paths begin.
  class Found {
   public:
    Found(const Columns& columns, const XmpView& xmp);
    // The node of a property column; null: the object has none.
    [[nodiscard]] const XmpNode* At(const Column& column) const;

   private:
    std::vector<std::vector<XmpNode>> properties_;  // By schema.
    std::vector<const XmpNode*> nodes_;             // By index.
  };

 private:
  bool Add(std::string_view field, const Options& options, std::string* error);
  bool AddAll(std::string_view prefix, const Options& options, std::string* error);
  void AddFact(json::Fact fact);
  void LeaveOutRepeated();
  [[nodiscard]] std::size_t NumberOf(const Column::Step& first);

  struct Schema {
    std::string uri;
    std::unordered_map<std::string, std::size_t> numbers;  // By name.
  };
  std::vector<Column> columns_;
  std::vector<Schema> schemas_;  // Other schemas of an object are not examined.
  std::size_t properties_ = 0;
  std::unordered_set<std::string> labels_;
};

// The closest known name, for "did you mean"; "" if none is close.
[[nodiscard]] std::string_view NearestField(std::string_view label);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_COLUMNS_H_
