// Walking a pool in tree order.
#ifndef LXBRIDGE_KIT_MODEL_POOL_WALK_H_
#define LXBRIDGE_KIT_MODEL_POOL_WALK_H_

#include <cstdint>

#include "kit/model/pool.h"

inline constexpr std::int32_t kLxMaxWalkDepth = 30;

struct LxPoolIterator {
  const LxMetadataPool* pool;
  std::int32_t depth;  // -1: broken or finished.
  LxMetadataItem* stack[kLxMaxWalkDepth];
  bool wentDown;  // Whether the last advance went into the children of the item given out last.
};

// Null: no memory. Not to be used after the pool is freed. The free takes null.
[[nodiscard]] LxPoolIterator* LxNewPoolIterator(const LxMetadataPool* pool) noexcept;
void LxFreePoolIterator(LxPoolIterator* iterator) noexcept;

// The same for an iterator that is its user's own record: needs no memory, so it cannot fail.
void LxStartPoolWalk(LxPoolIterator* iterator, const LxMetadataPool* pool) noexcept;

// The next live item, parents first: kLxOk; kLxEnd; kLxInternalError behind 30 levels. With `skip`, the children of the
// item given out last are passed over.
[[nodiscard]] LxResult LxNextPoolItem(LxPoolIterator* iterator, LxMetadataItem** out, bool skip) noexcept;

// The next display item: live, childless, not hidden, with a name that is not generated and a display text; closed
// items are not entered and siblings behind an end of run not visited. kLxOk, kLxEnd, kLxInternalError.
[[nodiscard]] LxResult LxNextDisplayItem(LxPoolIterator* iterator, LxMetadataItem** out) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_POOL_WALK_H_
