// The prefixes used by an object, for the table of its namespaces.
#ifndef LXBRIDGE_TOOLS_JSON_USED_PREFIXES_H_
#define LXBRIDGE_TOOLS_JSON_USED_PREFIXES_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/include/lxbridge/xmp.hpp"

namespace lxbridge::json {

// A node of each prefix, in the order of first use. From a few prefixes on, they have a table: open addressing, at most
// three quarters full, with the hashes inside so that a search reads few nodes.
class UsedPrefixes {
 public:
  // The node must stay unchanged.
  void Add(const XmpNode& node);
  [[nodiscard]] const std::vector<const XmpNode*>& InOrder() const { return nodes_; }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t place = 0;  // In `nodes_`, from 1; 0: free.
  };

  static void Enter(std::vector<Slot>& slots, Slot entry) noexcept;
  void Grow();

  std::vector<const XmpNode*> nodes_;
  std::vector<Slot> slots_;
};

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_USED_PREFIXES_H_
