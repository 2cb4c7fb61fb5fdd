// Several searches of a pool in one walk: what each would find alone. A finished pool is asked for two dozen items,
// most of which are not there, and a search for one of those looks at every item.
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
  std::uint16_t letters = 0;  // The search's own.
};

// Sets `found` of each to what LxFindItemInTree gives for it (null: nothing).
void LxFindItems(LxMetadataItem* first, LxWantedItem* wanted, std::size_t count) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_FIND_ITEMS_H_
