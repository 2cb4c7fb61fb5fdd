// Display texts of comments: the EXIF UserComment with its character code, and the UTF-16 texts that a file manager
// leaves in TIFF tags.
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/model/display_parts.h"
#include "kit/model/text_encoding.h"
#include "kit/model/text_scan.h"

namespace {

constexpr std::int32_t kCodeLength = 8;

// Exif 2.2, table 6: the code is padded with zero bytes to 8. The bytes after the first zero byte are ignored.
bool HasCode(const LxMetadataItem* item, const char* code) noexcept {
  return std::strncmp(reinterpret_cast<const char*>(item->value), code, kCodeLength) == 0;
}

// Exif 2.2, 4.6.5: the first eight bytes of UserComment name its character code.
void FormatUserComment(int order, LxMetadataItem* item) noexcept {
  if (LxIsBlank(item->value, static_cast<std::size_t>(item->valueLength))) item->flags |= kLxDeleted;
  if (item->valueLength <= kCodeLength) {
    LxFormatGenericValue(order, item);
    return;
  }
  const std::uint8_t* text = item->value + kCodeLength;
  const std::int32_t length = item->valueLength - kCodeLength;
  const auto size = static_cast<std::size_t>(length);
  if (HasCode(item, "ASCII")) {
    if (LxTextLength(text, size) < size) {
      LxSetDisplayText(item, reinterpret_cast<const char*>(text), false);
    } else {
      LxShowCopy(item, text, size);  // The value has no terminator: another tag's bytes follow it.
    }
  } else if (HasCode(item, "UNICODE")) {
    LxShowOwned(item, LxUtf16ToUtf8(text, length, LxGuessUtf16Order(text, length)));
  } else if (HasCode(item, "JIS")) {
    LxShowCopy(item, text, size);
  } else {
    LxFormatGenericValue(order, item);
  }
}

}  // namespace

void LxFormatComment(int order, LxMetadataItem* item) noexcept {
  switch (item->tagId) {
    case 0x9286:  // UserComment
      FormatUserComment(order, item);
      return;
    case 0x9C9B:  // XPTitle
    case 0x9C9C:  // XPComment
    case 0x9C9D:  // XPAuthor
    case 0x9C9E:  // XPKeywords
    case 0x9C9F:  // XPSubject
      // Little-endian whatever the file's order: the tags have the type BYTE.
      LxShowOwned(item, LxUtf16ToUtf8(item->value, item->valueLength, kLxLittleEndian));
      return;
    default:
      return;
  }
}
