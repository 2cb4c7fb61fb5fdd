// Walking a pool in tree order.
#ifndef LXBRIDGE_KIT_MODEL_POOL_WALK_H_
#define LXBRIDGE_KIT_MODEL_POOL_WALK_H_

#include <cstdint>

#include "kit/model/pool.h"

inline constexpr std::int32_t kLxMaxWalkDepth = 30;

struct LxPoolIterator {
  const LxMetadataPool* pool;
  std::int32_t depth;  // -1: failed or finished.
  LxMetadataItem* stack[kLxMaxWalkDepth];
  bool wentDown;  // Whether the last advance entered the children of the item returned last.
};

// Null: no memory. The iterator must not be used after the pool is freed. LxFreePoolIterator takes null.
[[nodiscard]] LxPoolIterator* LxNewPoolIterator(const LxMetadataPool* pool) noexcept;
void LxFreePoolIterator(LxPoolIterator* iterator) noexcept;

// The same for an iterator owned by the caller: needs no memory, so it cannot fail.
void LxStartPoolWalk(LxPoolIterator* iterator, const LxMetadataPool* pool) noexcept;

// Sets *out to the next live item, parents first: kLxOk; kLxEnd; kLxInternalError below 30 levels. With `skip`, the
// children of the item returned last are skipped.
[[nodiscard]] LxResult LxNextPoolItem(LxPoolIterator* iterator, LxMetadataItem** out, bool skip) noexcept;

// Sets *out to the next display item: live, childless, not hidden, with a display text and a name that is not
// generated. Closed items are not entered, and siblings after an end of run are not visited. kLxOk, kLxEnd,
// kLxInternalError.
[[nodiscard]] LxResult LxNextDisplayItem(LxPoolIterator* iterator, LxMetadataItem** out) noexcept;

// Whether the display walk returns the item when it visits it.
[[nodiscard]] inline bool LxIsDisplayItem(const LxMetadataItem* item) noexcept {
  return item->firstChild == nullptr && (item->flags & kLxHidden) == 0 && item->name != nullptr &&
         item->name[0] != ' ' && item->displayText != nullptr && item->displayText[0] != 0;
}

// The next sibling, deleted or not; null after an end of run.
[[nodiscard]] inline LxMetadataItem* LxNextInRun(const LxMetadataItem* item) noexcept {
  return (item->flags & kLxEndOfRun) != 0 ? nullptr : item->next;
}

#endif  // LXBRIDGE_KIT_MODEL_POOL_WALK_H_
