// Chooses the treatment of an item's value by its tag's display descriptor, and shows what image resources hold.
#include "kit/model/display.h"

#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "kit/model/display_parts.h"
#include "kit/model/text_scan.h"
#include "kit/model/value.h"

namespace {

constexpr std::int32_t kShownHidden = 24;

// Image resource 0x0421: a version (4 bytes), a flag (1), then the names of the writing and of the reading program,
// each a big-endian 32-bit count and that many UTF-16 units. The second name is shown by the low bytes of its units.
void FormatVersionInfo(LxMetadataItem* item) noexcept {
  if (item->valueLength <= 9) return;
  const std::int64_t length = item->valueLength;
  const std::int64_t writerUnits = LxGet32(item->value + 5, kLxBigEndian);
  if (2 * writerUnits >= length) return;
  const std::int64_t first = 2 * writerUnits + 14;
  if (first >= length) return;
  std::int64_t last = first;  // Behind the last low byte that is shown.
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

// Image resource 0x0406 begins with the quality as a signed number from -4 on; people count it from 0.
void FormatJpegQuality(LxMetadataItem* item) noexcept {
  if (item->valueLength < 2) return;
  const auto quality = static_cast<std::int16_t>(LxGet16(item->value, kLxBigEndian));
  LxDisplayBuffer out;
  out.length = 0;
  LxAppendInteger(&out, quality + 4);
  LxShowBuffer(item, out);
}

void FormatByNames(int order, LxMetadataItem* item, const LxValueName* names) noexcept {
  switch (item->typeCode) {
    case kLxTypeByte:
    case kLxTypeSByte:
    case kLxTypeUndefined:
    case kLxTypeShort:
    case kLxTypeSShort:
    case kLxTypeLong:
    case kLxTypeSLong:
      LxFormatNamedValue(order, item, names);
      return;
    default:
      LxFormatGenericValue(order, item);  // Shows nothing for types without a text form.
  }
}

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

void LxFormatValue(int order, LxMetadataItem* item) noexcept {
  if (item == nullptr || !LxHasValue(item)) return;
  LxFormatGenericValue(order, item);
}

void LxFormatTaggedValue(int order, LxMetadataItem* item, const LxDisplayDescriptor* descriptor) noexcept {
  if (item == nullptr || !LxHasValue(item)) return;
  switch (descriptor != nullptr ? descriptor->format : static_cast<std::uint32_t>(kLxFormatGeneric6)) {
    case kLxFormatValueNames:
      FormatByNames(order, item, descriptor->valueNames);
      return;
    case kLxFormatNone:
      return;
    case kLxFormatIccProfile:
      if (!LxFormatIccProfile(item)) LxFormatGenericValue(order, item);
      return;
    case kLxFormatVersionInfo:
      FormatVersionInfo(item);
      return;
    case kLxFormatJpegQuality:
      FormatJpegQuality(item);
      return;
    case kLxFormatPhotoQuantity:
      LxFormatPhotoQuantity(order, item);
      return;
    case kLxFormatMakerSpecial:
      LxFormatMakerSpecial(order, item);
      return;
    case kLxFormatGpsQuantity:
      LxFormatGpsQuantity(order, item);
      return;
    case kLxFormatComment:
      LxFormatComment(order, item);
      return;
    default:
      LxFormatGenericValue(order, item);
  }
}
