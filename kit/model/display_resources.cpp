// Display texts of image resources.
#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "kit/model/display_parts.h"

// Image resource 0x0421: a version (4 bytes), a flag (1), then the names of the writing and of the reading program,
// each a big-endian 32-bit count and that many UTF-16 units. Of the second name, the low bytes of the units are shown.
void LxFormatVersionInfo(LxMetadataItem* item) noexcept {
  if (item->valueLength <= 9) return;
  const std::int64_t length = item->valueLength;
  const std::int64_t writerUnits = LxGet32(item->value + 5, kLxBigEndian);
  if (2 * writerUnits >= length) return;
  const std::int64_t first = 2 * writerUnits + 14;
  if (first >= length) return;
  std::int64_t last = first;  // After the last low byte shown.
  while (last < length && item->value[last] != 0) last += 2;
  const auto count = static_cast<std::size_t>((last - first) / 2);
  auto* text = static_cast<char*>(LxAlloc(count + 1));
  if (text == nullptr) return;
  for (std::size_t i = 0; i < count; ++i) {
    text[i] = static_cast<char>(item->value[first + 2 * static_cast<std::int64_t>(i)]);
  }
  text[count] = '\0';
  LxShowOwned(item, text);
}

// Image resource 0x0406 begins with the quality as a signed number that starts at -4; it is shown counted from 0.
void LxFormatResourceQuality(LxMetadataItem* item) noexcept {
  if (item->valueLength < 2) return;
  const auto quality = static_cast<std::int16_t>(LxGet16(item->value, kLxBigEndian));
  LxDisplayBuffer out;
  out.length = 0;
  LxAppendInteger(&out, quality + 4);
  LxShowBuffer(item, out);
}
