// Trees of items written as they look, and read back as one line.
#ifndef LXBRIDGE_TESTS_SUPPORT_ITEM_TREE_H_
#define LXBRIDGE_TESTS_SUPPORT_ITEM_TREE_H_

#include <initializer_list>
#include <string>

#include "kit/base/memory.h"
#include "kit/model/pool.h"

namespace lxtest {

// Siblings in this order; the first of them.
inline LxMetadataItem* List(std::initializer_list<LxMetadataItem*> items) {
  LxMetadataItem* first = nullptr;
  LxMetadataItem** link = &first;
  for (LxMetadataItem* item : items) {
    *link = item;
    link = &item->next;
  }
  return first;
}

// An item of type "undef" without a value. The texts are literals.
inline LxMetadataItem* Item(const char* nameSpace, const char* name,
                            std::initializer_list<LxMetadataItem*> children = {}, std::uint32_t flags = 0) {
  LxMetadataItem* item = LxNewMetadataItem(nameSpace, name, flags, 0, 7, 0, nullptr);
  item->firstChild = List(children);
  return item;
}

// An item that is shown: it has a display text.
inline LxMetadataItem* Shown(const char* nameSpace, const char* name, const char* displayText,
                             std::uint32_t flags = 0) {
  LxMetadataItem* item = Item(nameSpace, name, {}, flags);
  LxSetDisplayText(item, displayText, false);
  return item;
}

// "jpegh.SOI{jpeg.APP1{exif.Flash} -jpeg.DQT}": siblings with a space between, children in braces, a deleted item with
// a minus in front.
inline std::string Shape(const LxMetadataItem* first) {
  std::string shape;
  for (const LxMetadataItem* item = first; item != nullptr; item = item->next) {
    if (item != first) shape += ' ';
    if ((item->flags & kLxDeleted) != 0) shape += '-';
    shape += std::string(item->nameSpace) + "." + (item->name != nullptr ? item->name : "(null)");
    if (item->firstChild != nullptr) shape += "{" + Shape(item->firstChild) + "}";
  }
  return shape;
}

// A pool with these top-level items, freed at the end of its life.
class TreePool {
 public:
  explicit TreePool(LxMetadataItem* root = nullptr) { pool_.root = root; }
  ~TreePool() { LxFreeMetadataPool(&pool_); }
  TreePool(const TreePool&) = delete;
  TreePool& operator=(const TreePool&) = delete;

  LxMetadataPool* get() { return &pool_; }
  LxMetadataPool* operator->() { return &pool_; }
  [[nodiscard]] std::string shape() const { return Shape(pool_.root); }
  LxMetadataItem* find(const char* nameSpace, const char* name, const char* displayText = "") {
    LxMetadataItem* item = nullptr;
    (void)LxFindMetadata(&pool_, nameSpace, name, nullptr, displayText, &item);
    return item;
  }

 private:
  LxMetadataPool pool_ = {};
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_ITEM_TREE_H_
