// Giving items their display texts, and how much of a value is shown.
#include "kit/model/display_parts.h"

#include "kit/base/memory.h"
#include "kit/model/text_scan.h"

namespace {

constexpr std::int32_t kShownHidden = 24;

}  // namespace

void LxShowOwned(LxMetadataItem* item, char* text) noexcept {
  if (text != nullptr) LxSetDisplayText(item, text, true);
}

void LxShowBuffer(LxMetadataItem* item, const LxDisplayBuffer& buffer) noexcept {
  LxShowOwned(item, LxCopyText(buffer.bytes, buffer.length));
}

void LxShowCopy(LxMetadataItem* item, const std::uint8_t* bytes, std::size_t length) noexcept {
  LxShowOwned(item, LxCopyText(bytes, LxTextLength(bytes, length)));
}

LxShownPart LxShownPartOf(const LxMetadataItem* item) noexcept {
  const std::int32_t length = item->valueLength;
  const bool unseen = (item->flags & (kLxHidden | kLxClosed)) != 0;
  if (unseen && length > kShownHidden) return {kShownHidden, true};
  if (length > kLxShownPlain) return {kLxShownPlain, true};
  return {length, false};
}
