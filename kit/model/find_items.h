// Several searches of a pool in one walk, with the same results as separate searches. About two dozen items of each
// file are searched for; most are missing, and a search for a missing item visits every item.
#ifndef LXBRIDGE_KIT_MODEL_FIND_ITEMS_H_
#define LXBRIDGE_KIT_MODEL_FIND_ITEMS_H_

#include <cstddef>
#include <cstdint>

#include "kit/model/pool.h"

struct LxWantedItem {
  const char* nameSpace;
  const char* name;         // Not empty.
  const char* displayText;  // Null: any.
  LxMetadataItem* found = nullptr;
  std::uint16_t letters = 0;  // Used by the search itself.
};

// Sets each `found` to the result of LxFindItemInTree (null: nothing).
void LxFindItems(LxMetadataItem* first, LxWantedItem* wanted, std::size_t count) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_FIND_ITEMS_H_
