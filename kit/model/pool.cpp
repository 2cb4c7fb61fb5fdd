// Creating, freeing and searching items and pools.
#include "kit/model/pool.h"

#include <cstring>

#include "kit/base/kept_memory.h"
#include "kit/base/memory.h"
#include "kit/model/new_item.h"

namespace {

// Texts that items do not own are const; owned texts came from LxAlloc.
void FreeText(const char* text) noexcept {
  LxFree(const_cast<char*>(text));
}

bool IsInSlab(const LxItemSlab* slab, const char* text) noexcept {
  return slab != nullptr &&
         reinterpret_cast<std::uintptr_t>(text) - reinterpret_cast<std::uintptr_t>(slab->texts) < sizeof slab->texts;
}

// Frees a text that the item owns. A text in the item's slab is freed with the slab.
void FreeOwnText(const LxMetadataItem* item, const char* text) noexcept {
  if (!IsInSlab(item->slab, text)) FreeText(text);
}

void FreeOne(LxMetadataItem* item) noexcept {
  LxReleaseOwned(item);
  LxItemSlab* slab = item->slab;
  if (slab == nullptr) {
    LxFree(item);
  } else if (--slab->live == 0) {
    LxFreeKept(slab);
  }
}

bool Empty(const char* text) noexcept {
  return text == nullptr || text[0] == 0;
}

// The first bytes are compared first: most texts differ there, and a search visits every item of a file.
bool Matches(const char* wanted, const char* text) noexcept {
  if (wanted == text) return true;
  return text != nullptr && wanted[0] == text[0] && std::strcmp(wanted, text) == 0;
}

}  // namespace

void LxReleaseOwned(LxMetadataItem* item) noexcept {
  constexpr std::uint32_t kOwns = kLxOwnsNamespace | kLxOwnsName | kLxOwnsTypeName | kLxOwnsDisplayText | kLxOwnsValue;
  if ((item->flags & kOwns) == 0) return;
  if ((item->flags & kLxOwnsNamespace) != 0) FreeText(item->nameSpace);
  if ((item->flags & kLxOwnsName) != 0) FreeOwnText(item, item->name);
  if ((item->flags & kLxOwnsTypeName) != 0) FreeText(item->typeName);
  if ((item->flags & kLxOwnsDisplayText) != 0) FreeOwnText(item, item->displayText);
  if ((item->flags & kLxOwnsValue) != 0) LxFree(const_cast<std::uint8_t*>(item->value));
  item->flags &= ~kOwns;
}

LxMetadataItem* LxNewMetadataItem(const char* nameSpace, const char* name, std::uint32_t flags, std::uint16_t tagId,
                                  std::uint16_t typeCode, std::int32_t valueLength,
                                  const std::uint8_t* value) noexcept {
  auto* item = static_cast<LxMetadataItem*>(LxAlloc(sizeof(LxMetadataItem)));
  if (item != nullptr) LxFillItem(item, nullptr, nameSpace, name, flags, tagId, typeCode, valueLength, value);
  return item;
}

bool LxBeginSlab(LxItemSlab** slab) noexcept {
  auto* fresh = static_cast<LxItemSlab*>(LxAllocKept(LxInstalledMemProcs(), sizeof(LxItemSlab), kLxUnaligned));
  if (fresh == nullptr) return false;
  fresh->used = fresh->live = 0;
  fresh->textsUsed = 0;
  fresh->textsOffered = LxKeepsMemoryOf(LxInstalledMemProcs()) ? kLxSlabTextBytes : 0;
  *slab = fresh;
  return true;
}

char* LxNewItemText(LxMetadataItem* item, std::size_t size) noexcept {
  LxItemSlab* slab = item->slab;
  if (slab == nullptr || size > slab->textsOffered - slab->textsUsed) return static_cast<char*>(LxAlloc(size));
  char* text = slab->texts + slab->textsUsed;
  slab->textsUsed += static_cast<std::uint32_t>(size);
  return text;
}

void LxFreeMetadataItems(LxMetadataItem* item) noexcept {
  // The children of a freed item are put in front of the remaining list, so only one list has to be remembered. The end
  // of each list is searched for once, when its parent is freed.
  while (item != nullptr) {
    LxMetadataItem* rest = item->next;
    if (item->firstChild != nullptr) {
      LxMetadataItem* last = item->firstChild;
      while (last->next != nullptr) last = last->next;
      last->next = rest;
      rest = item->firstChild;
    }
    FreeOne(item);
    item = rest;
  }
}

LxMetadataPool* LxNewPool() noexcept {
  auto* pool = static_cast<LxMetadataPool*>(LxAlloc(sizeof(LxMetadataPool)));
  if (pool != nullptr) *pool = LxMetadataPool{};
  return pool;
}

void LxDeletePool(LxMetadataPool* pool) noexcept {
  if (pool == nullptr) return;
  LxFreeMetadataPool(pool);
  LxFree(pool);
}

void LxFreeMetadataPool(LxMetadataPool* pool) noexcept {
  LxFreeMetadataItems(pool->root);
  pool->root = nullptr;
  LxFreeBlockCache(pool->blocks);
  LxFree(pool->blocks);
  pool->blocks = nullptr;
}

LxMetadataItem* LxFindItemInTree(LxMetadataItem* first, const char* nameSpace, const char* name,
                                 const char* displayText) noexcept {
  const bool anyNamespace = Empty(nameSpace), anyName = Empty(name), anyText = Empty(displayText);
  LxMetadataItem* parents[kLxMaxTreeDepth];
  int depth = 0;
  for (LxMetadataItem* item = first;;) {
    // Up to the nearest parent that has a next sibling; a list also ends after an end of run.
    while (item == nullptr) {
      if (depth == 0) return nullptr;
      const LxMetadataItem* parent = parents[--depth];
      item = (parent->flags & kLxEndOfRun) != 0 ? nullptr : parent->next;
    }
    if ((item->flags & kLxDeleted) != 0) {  // A deleted item's own end of run does not count.
      item = item->next;
      continue;
    }
    // The name is compared first: it distinguishes more items than the namespace.
    if ((anyName || Matches(name, item->name)) && (anyNamespace || Matches(nameSpace, item->nameSpace)) &&
        (anyText || Matches(displayText, item->displayText))) {
      return item;
    }
    if (item->firstChild != nullptr && (item->flags & kLxClosed) == 0 && depth < kLxMaxTreeDepth) {
      parents[depth++] = item;
      item = item->firstChild;
    } else {
      item = (item->flags & kLxEndOfRun) != 0 ? nullptr : item->next;
    }
  }
}

LxResult LxFindMetadata(const LxMetadataPool* pool, const char* nameSpace, const char* name, const char*,
                        const char* displayText, LxMetadataItem** out) noexcept {
  *out = LxFindItemInTree(pool->root, nameSpace, name, displayText);
  return *out != nullptr ? kLxOk : kLxNotFound;
}

void LxSetDisplayText(LxMetadataItem* item, const char* text, bool owned) noexcept {
  if ((item->flags & kLxOwnsDisplayText) != 0) FreeOwnText(item, item->displayText);
  item->flags &= ~kLxOwnsDisplayText;
  item->displayText = text != nullptr ? text : "";
  if (text != nullptr && owned) item->flags |= kLxOwnsDisplayText;
}
