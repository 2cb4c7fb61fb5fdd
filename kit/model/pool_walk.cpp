// The two walks over a pool. They share the stack of levels and differ in which items they enter and return.
#include "kit/model/pool_walk.h"

#include "kit/base/memory.h"

namespace {

LxMetadataItem* FirstLive(LxMetadataItem* item) noexcept {
  while (item != nullptr && (item->flags & kLxDeleted) != 0) item = item->next;
  return item;
}

LxMetadataItem* ChildToEnter(const LxMetadataItem* item, bool display) noexcept {
  return display && (item->flags & kLxClosed) != 0 ? nullptr : FirstLive(item->firstChild);
}

LxMetadataItem* SiblingToVisit(const LxMetadataItem* item, bool display) noexcept {
  return display && (item->flags & kLxEndOfRun) != 0 ? nullptr : FirstLive(item->next);
}

// Moves to the next live sibling of the current level, or of the nearest level above that has one; else to the end.
void GoOn(LxPoolIterator* iterator, bool display) noexcept {
  for (; iterator->depth >= 0; --iterator->depth) {
    LxMetadataItem* sibling = SiblingToVisit(iterator->stack[iterator->depth], display);
    if (sibling == nullptr) continue;
    iterator->stack[iterator->depth] = sibling;
    return;
  }
}

LxMetadataItem* Current(const LxPoolIterator* iterator) noexcept {
  return iterator->depth < 0 ? nullptr : iterator->stack[iterator->depth];
}

// Advances from the current item, which is not null.
LxResult Advance(LxPoolIterator* iterator, bool display) noexcept {
  LxMetadataItem* child = ChildToEnter(Current(iterator), display);
  iterator->wentDown = child != nullptr;
  if (child == nullptr) {
    GoOn(iterator, display);
    return kLxOk;
  }
  if (iterator->depth + 1 >= kLxMaxWalkDepth) {
    iterator->depth = -1;
    return kLxInternalError;
  }
  iterator->stack[++iterator->depth] = child;
  return kLxOk;
}

}  // namespace

void LxStartPoolWalk(LxPoolIterator* iterator, const LxMetadataPool* pool) noexcept {
  iterator->pool = pool;
  iterator->depth = 0;
  iterator->stack[0] = FirstLive(pool->root);
  iterator->wentDown = false;
}

LxPoolIterator* LxNewPoolIterator(const LxMetadataPool* pool) noexcept {
  auto* iterator = static_cast<LxPoolIterator*>(LxAlloc(sizeof(LxPoolIterator)));
  if (iterator != nullptr) LxStartPoolWalk(iterator, pool);
  return iterator;
}

void LxFreePoolIterator(LxPoolIterator* iterator) noexcept {
  LxFree(iterator);
}

LxResult LxNextPoolItem(LxPoolIterator* iterator, LxMetadataItem** out, bool skip) noexcept {
  if (skip && iterator->wentDown && iterator->depth >= 0) {
    --iterator->depth;  // Leaves the children of the item returned last, which is on the level above.
    GoOn(iterator, /*display=*/false);
  }
  iterator->wentDown = false;
  *out = Current(iterator);
  return *out == nullptr ? kLxEnd : Advance(iterator, /*display=*/false);
}

LxResult LxNextDisplayItem(LxPoolIterator* iterator, LxMetadataItem** out) noexcept {
  for (;;) {
    LxMetadataItem* item = Current(iterator);
    *out = nullptr;
    if (item == nullptr) return kLxEnd;
    const LxResult result = Advance(iterator, /*display=*/true);
    if (result != kLxOk) return result;
    if (!LxIsDisplayItem(item)) continue;
    *out = item;
    return kLxOk;
  }
}
