// Shared by the display_*.cpp files only: the buffer in which a display text is built, the length limits, and one
// function for each group of display formats.
#ifndef LXBRIDGE_KIT_MODEL_DISPLAY_PARTS_H_
#define LXBRIDGE_KIT_MODEL_DISPLAY_PARTS_H_

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/model/pool.h"
#include "kit/model/tag_record.h"

// The maximum number of bytes of a value that are shown element by element.
inline constexpr std::int32_t kLxShownPlain = 256;

// The longest text of numbers: kLxShownPlain bytes, each as "-128 ", or 32 rationals as "-2147483648/2147483646(-1.00)
// ", and the mark "... ". Appending stops at the end of the buffer, so a text that is too long is cut.
inline constexpr std::size_t kLxDisplayBufferSize = 1536;

// A text under construction. Only `length` needs initialising. Numbers are written by std::to_chars, which is faster
// than printf and ignores the locale: a host's decimal comma must not reach the texts.
struct LxDisplayBuffer {
  std::size_t length;
  char bytes[kLxDisplayBufferSize];
};

inline void LxAppendChar(LxDisplayBuffer* out, char c) noexcept {
  if (out->length < kLxDisplayBufferSize) out->bytes[out->length++] = c;
}

inline void LxAppendText(LxDisplayBuffer* out, const char* text) noexcept {
  while (*text != '\0') LxAppendChar(out, *text++);
}

// The digits of the numbers below 1000, ready to be copied: most elements are such numbers, and a maker note has
// thousands of elements.
struct LxDigits {
  char text[3];
  std::uint8_t length;
};
inline constexpr std::array<LxDigits, 1000> kLxDigits = [] {
  std::array<LxDigits, 1000> all{};
  for (int i = 0; i < 1000; ++i) {
    LxDigits& digits = all[static_cast<std::size_t>(i)];
    for (int unit = i >= 100 ? 100 : i >= 10 ? 10 : 1; unit != 0; unit /= 10) {
      digits.text[digits.length++] = static_cast<char>('0' + i / unit % 10);
    }
  }
  return all;
}();

// "%d".
inline void LxAppendInteger(LxDisplayBuffer* out, std::int32_t value) noexcept {
  char* at = out->bytes + out->length;
  const std::size_t left = kLxDisplayBufferSize - out->length;
  if (value >= 0 && value < 1000 && left >= sizeof(LxDigits)) {
    const LxDigits& digits = kLxDigits[static_cast<std::size_t>(value)];
    std::memcpy(at, &digits,
                sizeof digits);  // A single store; the byte of the length is overwritten by the next append.
    out->length += digits.length;
    return;
  }
  const std::to_chars_result result = std::to_chars(at, at + left, value);
  if (result.ec == std::errc()) out->length += static_cast<std::size_t>(result.ptr - at);
}

// "%.<digits>f". REQUIRES: 1 to 3 digits.
void LxAppendFixed(LxDisplayBuffer* out, double value, int digits) noexcept;

// Sets the item's own display text to a copy of the buffer. Without memory the display text does not change.
void LxShowBuffer(LxMetadataItem* item, const LxDisplayBuffer& buffer) noexcept;
// Sets the item's own display text to a text from LxNewItemText or LxAlloc, which the item then owns; null (no memory)
// changes nothing.
void LxShowOwned(LxMetadataItem* item, char* text) noexcept;
// Sets the item's own display text to a copy of the bytes up to the first zero byte.
void LxShowCopy(LxMetadataItem* item, const std::uint8_t* bytes, std::size_t length) noexcept;

// The part of a value that is shown element by element. Values that are never displayed appear only in dumps, where a
// short part is enough.
struct LxShownPart {
  std::int32_t length;  // Bytes.
  bool shortened;
};
[[nodiscard]] LxShownPart LxShownPartOf(const LxMetadataItem* item) noexcept;

[[nodiscard]] inline bool LxHasValue(const LxMetadataItem* item) noexcept {
  return item->value != nullptr && item->valueLength >= 1;
}

// The rational at a byte offset as a number; a zero denominator counts as 1. REQUIRES: 8 bytes of the value from there
// on.
[[nodiscard]] inline double LxUnsignedQuotient(const LxMetadataItem* item, int order, std::int32_t offset) noexcept {
  const std::uint32_t numerator = LxGet32(item->value + offset, order);
  const std::uint32_t denominator = LxGet32(item->value + offset + 4, order);
  return static_cast<double>(numerator) / static_cast<double>(denominator != 0 ? denominator : 1);
}

// REQUIRES, for all of these: an item with a value.
void LxFormatGenericValue(int order, LxMetadataItem* item) noexcept;                          // display_generic
void LxFormatNamedValue(int order, LxMetadataItem* item, const LxValueName* names) noexcept;  // display_generic
void LxFormatPhotoQuantity(int order, LxMetadataItem* item) noexcept;                         // display_photo
void LxFormatGpsQuantity(int order, LxMetadataItem* item) noexcept;                           // display_photo
void LxFormatMakerSpecial(int order, LxMetadataItem* item) noexcept;                          // display_photo
void LxFormatComment(int order, LxMetadataItem* item) noexcept;                               // display_comment
void LxFormatVersionInfo(LxMetadataItem* item) noexcept;                                      // display_resources
void LxFormatResourceQuality(LxMetadataItem* item) noexcept;                                  // display_resources
[[nodiscard]] bool LxFormatIccProfile(LxMetadataItem* item) noexcept;  // display_icc. False: no readable description.

#endif  // LXBRIDGE_KIT_MODEL_DISPLAY_PARTS_H_
