// Several searches in one walk of the pool.
#include "kit/model/find_items.h"

#include <cstring>

namespace {

// Two letters distinguish nearly all names without comparing texts.
std::uint16_t FirstLetters(const char* name) noexcept {
  if (name == nullptr) return 0;  // An item made by hand; no name that is searched for begins like this.
  const auto first = static_cast<std::uint8_t>(name[0]);
  const std::uint8_t second = first != 0 ? static_cast<std::uint8_t>(name[1]) : std::uint8_t{0};
  return static_cast<std::uint16_t>(first << 8 | second);
}

// A bit for each pair of letters: a set of bits tells for most items immediately that they are not wanted.
std::uint64_t BitOf(std::uint16_t letters) noexcept {
  return std::uint64_t{1} << ((letters * 0x61C9u >> 9) & 63);
}

bool Matches(const LxWantedItem& wanted, const LxMetadataItem* item) noexcept {
  return std::strcmp(wanted.name, item->name) == 0 && std::strcmp(wanted.nameSpace, item->nameSpace) == 0 &&
         (wanted.displayText == nullptr || std::strcmp(wanted.displayText, item->displayText) == 0);
}

// Assigns the item to the searches that want it and have found nothing yet. Returns their number.
std::size_t FindAmong(LxMetadataItem* item, std::uint16_t letters, LxWantedItem* wanted, std::size_t count) noexcept {
  std::size_t found = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (wanted[i].letters != letters || wanted[i].found != nullptr || !Matches(wanted[i], item)) continue;
    wanted[i].found = item;
    ++found;
  }
  return found;
}

}  // namespace

void LxFindItems(LxMetadataItem* first, LxWantedItem* wanted, std::size_t count) noexcept {
  std::size_t missing = count;
  std::uint64_t wantedLetters = 0;
  for (std::size_t i = 0; i < count; ++i) {
    wanted[i].found = nullptr;
    wanted[i].letters = FirstLetters(wanted[i].name);
    wantedLetters |= BitOf(wanted[i].letters);
  }

  // A list ends after an end of run; the search goes on after the parent.
  LxMetadataItem* parents[kLxMaxTreeDepth];
  std::int32_t depth = 0;
  LxMetadataItem* item = first;
  for (;;) {
    while (item == nullptr) {
      if (depth == 0) return;
      item = parents[--depth];
      item = (item->flags & kLxEndOfRun) != 0 ? nullptr : item->next;
    }
    if ((item->flags & kLxDeleted) != 0) {
      item = item->next;
      continue;
    }
    const std::uint16_t letters = FirstLetters(item->name);
    if ((wantedLetters & BitOf(letters)) != 0) [[unlikely]] {
      missing -= FindAmong(item, letters, wanted, count);
      if (missing == 0) return;
    }
    if (item->firstChild != nullptr && (item->flags & kLxClosed) == 0 && depth < kLxMaxTreeDepth) {
      parents[depth++] = item;
      item = item->firstChild;
    } else {
      item = (item->flags & kLxEndOfRun) != 0 ? nullptr : item->next;
    }
  }
}
