// Sets display texts of items and limits the shown part of a value.
#include "kit/model/display_parts.h"

#include <bit>
#include <charconv>
#include <cstring>

#include "kit/model/text_scan.h"

namespace {

constexpr std::int32_t kShownHidden = 24;

void ShowCopy(LxMetadataItem* item, const void* bytes, std::size_t length) noexcept {
  char* text = LxNewItemText(item, length + 1);
  if (text == nullptr) return;
  std::memcpy(text, bytes, length);
  text[length] = '\0';
  LxShowOwned(item, text);
}

// The value times 10^digits as a whole number, rounded as printf does: exactly, and a half to the even one.
std::uint32_t Scaled(std::uint64_t bits, int digits) noexcept {
  // The value is significand / 2^shift. Below 2^20 the shift is at least 33, and the product is below 2^63.
  constexpr int kSignificandBits = 52;
  const auto exponent = static_cast<int>(bits >> kSignificandBits);
  std::uint64_t significand = bits & ((std::uint64_t{1} << kSignificandBits) - 1);
  if (exponent != 0) significand |= std::uint64_t{1} << kSignificandBits;
  const int shift = 1075 - (exponent != 0 ? exponent : 1);
  const std::uint64_t product = significand * (digits == 1 ? 10 : digits == 2 ? 100 : 1000);
  if (shift > 63) return 0;
  const std::uint64_t whole = product >> shift, rest = product - (whole << shift);
  const std::uint64_t half = std::uint64_t{1} << (shift - 1);
  return static_cast<std::uint32_t>(whole + (rest > half || (rest == half && whole % 2 != 0) ? 1 : 0));
}

}  // namespace

void LxAppendFixed(LxDisplayBuffer* out, double value, int digits) noexcept {
  char* at = out->bytes + out->length;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  // Nearly all values are small; std::to_chars, which handles any number, costs ten times as much.
  if (bits < std::bit_cast<std::uint64_t>(double{1 << 20}) && kLxDisplayBufferSize - out->length >= 16) {
    std::uint32_t scaled = Scaled(bits, digits);
    const std::uint32_t unit = digits == 1 ? 10 : digits == 2 ? 100 : 1000;
    LxAppendInteger(out, static_cast<std::int32_t>(scaled / unit));
    LxAppendChar(out, '.');
    scaled %= unit;
    for (std::uint32_t place = unit / 10; place != 0; place /= 10) {
      LxAppendChar(out, static_cast<char>('0' + scaled / place % 10));
    }
    return;
  }
  const std::to_chars_result result =
      std::to_chars(at, out->bytes + kLxDisplayBufferSize, value, std::chars_format::fixed, digits);
  if (result.ec == std::errc()) out->length += static_cast<std::size_t>(result.ptr - at);
}

void LxShowOwned(LxMetadataItem* item, char* text) noexcept {
  if (text != nullptr) LxSetDisplayText(item, text, true);
}

void LxShowBuffer(LxMetadataItem* item, const LxDisplayBuffer& buffer) noexcept {
  ShowCopy(item, buffer.bytes, buffer.length);
}

void LxShowCopy(LxMetadataItem* item, const std::uint8_t* bytes, std::size_t length) noexcept {
  ShowCopy(item, bytes, LxTextLength(bytes, length));
}

LxShownPart LxShownPartOf(const LxMetadataItem* item) noexcept {
  const std::int32_t length = item->valueLength;
  const bool unseen = (item->flags & (kLxHidden | kLxClosed)) != 0;
  if (unseen && length > kShownHidden) return {kShownHidden, true};
  if (length > kLxShownPlain) return {kLxShownPlain, true};
  return {length, false};
}
