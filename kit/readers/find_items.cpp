// One walk in search order for several searches. Touches kit/model only.
#include "kit/readers/find_items.h"

#include <cstring>

namespace {

bool Matches(const LxWantedItem& wanted, const LxMetadataItem* item) noexcept {
  // Most names differ in the first letter.
  return wanted.name[0] == item->name[0] && std::strcmp(wanted.name, item->name) == 0 &&
         std::strcmp(wanted.nameSpace, item->nameSpace) == 0 &&
         (wanted.displayText == nullptr || std::strcmp(wanted.displayText, item->displayText) == 0);
}

}  // namespace

void LxFindItems(LxMetadataItem* first, LxWantedItem* wanted, std::size_t count) noexcept {
  std::size_t missing = count;
  for (std::size_t i = 0; i < count; ++i) wanted[i].found = nullptr;

  // A list ends behind an end of run; the search goes on behind the parent.
  LxMetadataItem* parents[kLxMaxTreeDepth];
  std::int32_t depth = 0;
  LxMetadataItem* item = first;
  while (missing > 0) {
    if (item == nullptr) {
      if (depth == 0) return;
      item = parents[--depth];
      item = (item->flags & kLxEndOfRun) != 0 ? nullptr : item->next;
      continue;
    }
    if ((item->flags & kLxDeleted) != 0) {
      item = item->next;
      continue;
    }
    for (std::size_t i = 0; i < count; ++i) {
      if (wanted[i].found == nullptr && Matches(wanted[i], item)) {
        wanted[i].found = item;
        --missing;
      }
    }
    if (item->firstChild != nullptr && (item->flags & kLxClosed) == 0 && depth < kLxMaxTreeDepth) {
      parents[depth++] = item;
      item = item->firstChild;
    } else {
      item = (item->flags & kLxEndOfRun) != 0 ? nullptr : item->next;
    }
  }
}
