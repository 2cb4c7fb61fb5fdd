// Tables of the nodes of a long list. They are open hash tables with linear probing, at most three quarters full, in
// the storage of the object. None of their functions raises: a table that cannot grow is dropped.
#ifndef LXBRIDGE_OUTSIDE_XMP_NODE_TABLES_H_
#define LXBRIDGE_OUTSIDE_XMP_NODE_TABLES_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "outside/xmp/model.h"

namespace velto {

// Nodes by a hash. The hashes are apart from the nodes, so that a search for a name that is not there, and growing,
// read no nodes.
class NodeTable {
 public:
  explicit NodeTable(Storage& storage) noexcept : storage_(storage) {}

  bool isBuilt() const noexcept { return nodes_ != nullptr; }

  // To be called before the table gets its `count`th node. False: there is no memory, and no table.
  bool reserve(std::size_t count) noexcept {
    if (isBuilt() && count * 4 <= slots() * 3) return true;
    std::size_t slots = isBuilt() ? this->slots() * 2 : 64;
    while (slots * 3 < count * 4) slots *= 2;
    NodeTable grown(storage_);
    grown.nodes_ = static_cast<Node**>(storage_.tryTake(slots * kSlotSize));
    if (grown.isBuilt()) {
      grown.hashes_ = reinterpret_cast<std::uint32_t*>(grown.nodes_ + slots);
      grown.mask_ = slots - 1;
      std::memset(grown.hashes_, 0, slots * sizeof(std::uint32_t));
      for (std::size_t slot = 0; isBuilt() && slot <= mask_; ++slot) {
        if (hashes_[slot] != 0) grown.enter(nodes_[slot], hashes_[slot]);
      }
    }
    drop();
    nodes_ = grown.nodes_;
    hashes_ = grown.hashes_;
    mask_ = grown.mask_;
    return isBuilt();
  }

  void enter(Node* node, std::uint32_t hash) noexcept {
    std::size_t slot = hash & mask_;
    while (hashes_[slot] != 0) slot = (slot + 1) & mask_;
    hashes_[slot] = hash | kUsed;
    nodes_[slot] = node;
  }

  void leave(const Node* node) noexcept {
    std::size_t gap = node->hash & mask_;
    while (hashes_[gap] == 0 || nodes_[gap] != node) gap = (gap + 1) & mask_;
    // Nodes that were displaced past the gap move back into it, so that no search ends early.
    for (std::size_t slot = (gap + 1) & mask_; hashes_[slot] != 0; slot = (slot + 1) & mask_) {
      const std::size_t home = hashes_[slot] & mask_;
      if (((slot - home) & mask_) < ((slot - gap) & mask_)) continue;
      hashes_[gap] = hashes_[slot];
      nodes_[gap] = nodes_[slot];
      gap = slot;
    }
    hashes_[gap] = 0;
  }

  // The node of that hash for which `matches` is true, or null.
  template <typename Matches>
  Node* find(std::uint32_t hash, Matches matches) const noexcept {
    for (std::size_t slot = hash & mask_; hashes_[slot] != 0; slot = (slot + 1) & mask_) {
      if (hashes_[slot] == (hash | kUsed) && matches(nodes_[slot])) return nodes_[slot];
    }
    return nullptr;
  }

  void drop() noexcept {
    if (isBuilt()) storage_.give(nodes_, slots() * kSlotSize);
    nodes_ = nullptr;
  }

 private:
  static constexpr std::uint32_t kUsed = 0x80000000;  // Distinguishes every hash from that of a free slot, 0.
  static constexpr std::size_t kSlotSize = sizeof(Node*) + sizeof(std::uint32_t);

  std::size_t slots() const noexcept { return mask_ + 1; }

  Storage& storage_;
  Node** nodes_ = nullptr;  // Followed by the hashes.
  std::uint32_t* hashes_ = nullptr;
  std::size_t mask_ = 0;
};

// The items of a language alternative by each generic language that they are of: "de-CH-1996" is of itself, of "de-CH"
// and of "de".
class GenericTable {
 public:
  explicit GenericTable(Storage& storage) noexcept : storage_(storage) {}

  bool isBuilt() const noexcept { return slots_ != nullptr; }

  // To be called before the table gets another generic language. False: there is no memory, and no table.
  bool reserve() noexcept {
    if (isBuilt() && (count_ + 1) * 4 <= (mask_ + 1) * 3) return true;
    const std::size_t slots = isBuilt() ? (mask_ + 1) * 2 : 32;
    auto* grown = static_cast<Slot*>(storage_.tryTake(slots * sizeof(Slot)));
    if (grown != nullptr) {
      std::memset(static_cast<void*>(grown), 0, slots * sizeof(Slot));
      for (std::size_t old = 0; isBuilt() && old <= mask_; ++old) {
        if (slots_[old].items.first == nullptr) continue;
        std::size_t at = slots_[old].hash & (slots - 1);
        while (grown[at].items.first != nullptr) at = (at + 1) & (slots - 1);
        grown[at] = slots_[old];
      }
    }
    const std::uint32_t count = count_;
    drop();
    if (grown == nullptr) return false;
    slots_ = grown;
    mask_ = slots - 1;
    count_ = count;
    return true;
  }

  // To be called in the order of the items. False: there is no memory, and no table.
  bool enter(Node* item, std::string_view language) noexcept {
    std::uint32_t parent = 0;
    for (std::size_t end = 0, start = 0; end != language.size(); start = end + 1) {
      end = std::min(language.find('-', start), language.size());
      if (!reserve()) return false;
      const std::uint32_t hash = hashText(language.substr(start, end - start), parent);
      Slot& slot = slotOf(hash, parent, language, start, end);
      if (slot.items.first != nullptr) {
        slot.items.isMany = true;
      } else {
        slot = {{item, false}, hash, parent, ++count_, static_cast<std::uint32_t>(end)};
      }
      parent = slot.number;
    }
    return true;
  }

  // REQUIRES: the table is built.
  GenericItems find(std::string_view language) const noexcept {
    GenericItems found;
    std::uint32_t parent = 0;
    for (std::size_t end = 0, start = 0; end != language.size(); start = end + 1) {
      end = std::min(language.find('-', start), language.size());
      const std::uint32_t hash = hashText(language.substr(start, end - start), parent);
      const Slot& slot = slotOf(hash, parent, language, start, end);
      if (slot.items.first == nullptr) return {};
      found = slot.items;
      parent = slot.number;
    }
    return found;
  }

  void drop() noexcept {
    if (isBuilt()) storage_.give(slots_, (mask_ + 1) * sizeof(Slot));
    slots_ = nullptr;
    count_ = 0;
  }

 private:
  // A generic language is the one without its last subtag, its parent, and that subtag. So entering a language reads
  // each of its bytes only once or twice, however many subtags it has.
  struct Slot {
    GenericItems items;  // None: the slot is free.
    std::uint32_t hash;
    std::uint32_t parent;  // Its number; 0: there is none.
    std::uint32_t number;  // From 1.
    std::uint32_t end;     // In the language of the first item.
  };

  // Languages of the same parent begin with the same text, so only their subtags are compared.
  Slot& slotOf(std::uint32_t hash, std::uint32_t parent, std::string_view language, std::size_t start,
               std::size_t end) const noexcept {
    const std::string_view subtag = language.substr(start, end - start);
    std::size_t at = hash & mask_;
    for (; slots_[at].items.first != nullptr; at = (at + 1) & mask_) {
      const Slot& slot = slots_[at];
      if (slot.hash == hash && slot.parent == parent && slot.end == end &&
          languageOf(slot.items.first)->value().substr(start, subtag.size()) == subtag) {
        break;
      }
    }
    return slots_[at];
  }

  Storage& storage_;
  Slot* slots_ = nullptr;
  std::size_t mask_ = 0;
  std::uint32_t count_ = 0;
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_NODE_TABLES_H_
