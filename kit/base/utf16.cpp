// The lenient UTF-8 to UTF-16 conversion of file paths.
#include "kit/base/utf16.h"

#include <cstddef>
#include <cstring>

#include "kit/base/memory.h"

namespace {

int TrailingBytes(std::uint8_t lead) noexcept {
  if (lead < 0xC0) return 0;
  if (lead < 0xE0) return 1;
  if (lead < 0xF0) return 2;
  if (lead < 0xF8) return 3;
  return lead < 0xFC ? 4 : 5;
}

// The sum of the marker bits of a sequence, by its number of trailing bytes.
constexpr std::uint32_t kMarkerSums[] = {0, 0x00003080, 0x000E2080, 0x03C82080, 0xFA082080, 0x82082080};

}  // namespace

char16_t* LxUtf8ToUtf16(const char* text) noexcept {
  if (text == nullptr) return nullptr;
  const std::size_t length = std::strlen(text);
  if (length > SIZE_MAX / 2 - 1) return nullptr;
  // A sequence never yields more units than it has bytes: a surrogate pair needs at least three bytes.
  auto* units = static_cast<char16_t*>(LxAlloc(2 * length + 2));
  if (units == nullptr) return nullptr;

  std::size_t used = 0;
  for (std::size_t at = 0; at < length;) {
    const int trailing = TrailingBytes(static_cast<std::uint8_t>(text[at]));
    if (static_cast<std::size_t>(trailing) > length - at - 1) {
      LxFree(units);
      return nullptr;
    }
    std::uint32_t value = 0;  // Wraps for invalid sequences, whose result is then beyond the last code point.
    for (int i = 0; i <= trailing; ++i) value = (value << 6) + static_cast<std::uint8_t>(text[at++]);
    value -= kMarkerSums[trailing];
    if (value < 0x10000) {
      units[used++] = static_cast<char16_t>(value);
    } else if (value < 0x110000) {  // RFC 2781, 2.1
      units[used++] = static_cast<char16_t>(0xD800 + ((value - 0x10000) >> 10));
      units[used++] = static_cast<char16_t>(0xDC00 + ((value - 0x10000) & 0x3FF));
    } else {
      units[used++] = 0xFFFD;
    }
  }
  units[used] = 0;
  return units;
}
