// Display texts by a value's type alone, and by a table of value names.
#include <charconv>
#include <cstring>
#include <numeric>

#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "kit/model/display_parts.h"
#include "kit/model/lookup.h"
#include "kit/model/text_encoding.h"
#include "kit/model/text_scan.h"
#include "kit/model/value.h"

namespace {

// Versions are stored as four digits, "0220" for 2.2 (Exif 2.2, 4.6.5, ExifVersion and FlashpixVersion).
bool IsFourDigits(const LxMetadataItem* item) noexcept {
  if (item->valueLength != 4) return false;
  for (std::int32_t i = 0; i < 4; ++i) {
    if (item->value[i] < '0' || item->value[i] > '9') return false;
  }
  return true;
}

void ShowDottedDigits(LxMetadataItem* item) noexcept {
  LxDisplayBuffer out;
  out.length = 0;
  for (std::int32_t i = 0; i < 4; ++i) {
    if (i != 0) LxAppendChar(&out, '.');
    LxAppendChar(&out, static_cast<char>(item->value[i]));
  }
  LxShowBuffer(item, out);
}

// Whether opaque bytes are a text, with or without a terminator. Three bytes or fewer are too few to tell.
bool IsPlainText(const LxMetadataItem* item) noexcept {
  if (item->valueLength <= 3) return false;
  const auto length = static_cast<std::size_t>(item->valueLength);
  const std::size_t text = LxPrintableRun(item->value, length);
  return LxIsZeroFilled(item->value + text, length - text);
}

void ShowText(LxMetadataItem* item) noexcept {
  if (LxIsUtf8Value(item->value, item->valueLength)) {
    // The check has seen the terminating zero byte within the value, so the value is its own display text.
    LxSetDisplayText(item, reinterpret_cast<const char*>(item->value), false);
    return;
  }
  LxShowOwned(item, LxTextToUtf8(item->value, item->valueLength));
}

// "8", "5/0 ", "1/250(0.00)". A zero denominator is followed by two spaces, of which one remains at the end.
template <typename Part>
void AppendRational(LxDisplayBuffer* out, Part numerator, Part denominator) noexcept {
  if (numerator > 0 && denominator > 0) {  // Negative rationals are not reduced.
    const Part divisor = std::gcd(numerator, denominator);
    numerator /= divisor;
    denominator /= divisor;
  }
  if (numerator == 0) {
    LxAppendText(out, "0 ");
    return;
  }
  // Signed also for the unsigned type: numbers from 2^31 on show as negative.
  LxAppendInteger(out, static_cast<std::int32_t>(numerator));
  if (denominator != 1) {
    LxAppendChar(out, '/');
    LxAppendInteger(out, static_cast<std::int32_t>(denominator));
    if (denominator == 0) {
      LxAppendChar(out, ' ');
    } else {
      LxAppendChar(out, '(');
      LxAppendFixed(out, static_cast<double>(numerator) / static_cast<double>(denominator), 2);
      LxAppendChar(out, ')');
    }
  }
  LxAppendChar(out, ' ');
}

void AppendElement(LxDisplayBuffer* out, const std::uint8_t* at, std::uint16_t typeCode, int order) noexcept {
  switch (typeCode) {
    case kLxTypeSByte:
      LxAppendInteger(out, static_cast<std::int32_t>(static_cast<std::int8_t>(*at)));
      break;
    case kLxTypeSShort:
      LxAppendInteger(out, static_cast<std::int32_t>(static_cast<std::int16_t>(LxGet16(at, order))));
      break;
    case kLxTypeLong:  // As for rationals, numbers from 2^31 on show as negative.
    case kLxTypeSLong:
      LxAppendInteger(out, static_cast<std::int32_t>(LxGet32(at, order)));
      break;
    case kLxTypeRational:
      AppendRational(out, LxGet32(at, order), LxGet32(at + 4, order));
      return;
    case kLxTypeSRational:
      AppendRational(out, static_cast<std::int32_t>(LxGet32(at, order)),
                     static_cast<std::int32_t>(LxGet32(at + 4, order)));
      return;
    default:
      break;
  }
  LxAppendChar(out, ' ');
}

// Bytes and shorts make up the long values of maker notes and are written without a check for each element: the shown
// part is short enough to fit, with room for the extra bytes that the last copy writes.
constexpr std::size_t kSlack = sizeof(LxDigits);
static_assert(kLxShownPlain * (sizeof("255 ") - 1) + kSlack <= kLxDisplayBufferSize);
static_assert(kLxShownPlain / 2 * (sizeof("65535 ") - 1) + kSlack <= kLxDisplayBufferSize);

char* WriteSmall(char* at, std::uint32_t value) noexcept {
  std::uint32_t first = value;
  if (value >= 1000) first = value / 1000;
  const LxDigits& digits = kLxDigits[first];
  std::memcpy(at, &digits, sizeof digits);
  at += digits.length;
  if (value >= 1000) {
    const std::uint32_t rest = value % 1000;
    *at++ = static_cast<char>('0' + rest / 100);
    *at++ = static_cast<char>('0' + rest / 10 % 10);
    *at++ = static_cast<char>('0' + rest % 10);
  }
  *at++ = ' ';
  return at;
}

void WriteBytes(const std::uint8_t* value, std::int32_t length, LxDisplayBuffer* out) noexcept {
  char* at = out->bytes;
  for (std::int32_t i = 0; i < length; ++i) at = WriteSmall(at, value[i]);
  out->length = static_cast<std::size_t>(at - out->bytes);
}

void WriteShorts(const std::uint8_t* value, std::int32_t length, int order, LxDisplayBuffer* out) noexcept {
  char* at = out->bytes;
  for (std::int32_t i = 0; length - i >= 2; i += 2) at = WriteSmall(at, LxGet16(value + i, order));
  out->length = static_cast<std::size_t>(at - out->bytes);
}

void ShowElements(int order, LxMetadataItem* item) noexcept {
  const LxShownPart shown = LxShownPartOf(item);
  const auto size = static_cast<std::int32_t>(LxElementSize(item->typeCode));
  LxDisplayBuffer out;
  out.length = 0;
  if (item->typeCode == kLxTypeByte || item->typeCode == kLxTypeUndefined) {
    WriteBytes(item->value, shown.length, &out);
  } else if (item->typeCode == kLxTypeShort) {
    WriteShorts(item->value, shown.length, order, &out);
  } else {
    for (std::int32_t at = 0; shown.length - at >= size; at += size) {
      AppendElement(&out, item->value + at, item->typeCode, order);
    }
  }
  if (out.length == 0) return;  // Not even one whole element.
  if (shown.shortened) LxAppendText(&out, "... ");
  --out.length;  // The space after the last element.
  LxShowBuffer(item, out);
}

std::uint16_t LowBits(const std::uint8_t* at, std::int32_t size, int order) noexcept {
  if (size == 1) return *at;
  if (size == 2) return LxGet16(at, order);
  return static_cast<std::uint16_t>(LxGet32(at, order) & 0xFFFF);
}

// The name of an element, or its number.
struct ElementText {
  const LxValueName* entry;  // Null: shown as a number.
  const char* text;
  std::size_t length;
  char digits[8];
};

void NameElement(std::uint16_t value, const LxValueName* names, ElementText* out) noexcept {
  out->entry = names != nullptr ? LxFindValueName(value, names) : nullptr;
  if (out->entry != nullptr) {
    out->text = out->entry->name;
    out->length = std::strlen(out->text);
    return;
  }
  out->text = out->digits;
  out->length =
      static_cast<std::size_t>(std::to_chars(out->digits, out->digits + sizeof out->digits, value).ptr - out->digits);
}

}  // namespace

void LxFormatGenericValue(int order, LxMetadataItem* item) noexcept {
  switch (item->typeCode) {
    case kLxTypeUndefined:
      if (IsFourDigits(item)) {
        ShowDottedDigits(item);
        return;
      }
      [[fallthrough]];
    case kLxTypeByte:
      if (IsPlainText(item)) {
        LxShowCopy(item, item->value, static_cast<std::size_t>(item->valueLength));
        return;
      }
      ShowElements(order, item);
      return;
    case kLxTypeAscii:
      ShowText(item);
      return;
    case kLxTypeShort:
    case kLxTypeLong:
    case kLxTypeRational:
    case kLxTypeSByte:
    case kLxTypeSShort:
    case kLxTypeSLong:
    case kLxTypeSRational:
      ShowElements(order, item);
      return;
    default:
      return;
  }
}

void LxFormatNamedValue(int order, LxMetadataItem* item, const LxValueName* names) noexcept {
  const auto size = static_cast<std::int32_t>(LxElementSize(item->typeCode));
  const std::int32_t shown = LxShownPartOf(item).length;
  ElementText element;
  if (shown / size == 1) {
    NameElement(LowBits(item->value, size, order), names, &element);
    if (item->valueLength / size == 1) item->valueLabel = element.entry != nullptr ? element.entry->label : nullptr;
    LxShowCopy(item, reinterpret_cast<const std::uint8_t*>(element.text), element.length);
    return;
  }
  // Names can have any length, so the text is measured before it is written.
  std::size_t total = 0;
  for (std::int32_t at = 0; shown - at >= size; at += size) {
    NameElement(LowBits(item->value + at, size, order), names, &element);
    total += element.length + 1;
  }
  if (total == 0) return;
  char* text = LxNewItemText(item, total);
  if (text == nullptr) return;
  char* end = text;
  for (std::int32_t at = 0; shown - at >= size; at += size) {
    NameElement(LowBits(item->value + at, size, order), names, &element);
    std::memcpy(end, element.text, element.length);
    end += element.length;
    *end++ = ' ';
  }
  end[-1] = '\0';
  LxShowOwned(item, text);
}
