// Formats an item's value as its tag's display descriptor says.
#include "kit/model/display.h"

#include "kit/model/display_parts.h"
#include "kit/model/value.h"

namespace {

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
      LxFormatVersionInfo(item);
      return;
    case kLxFormatJpegQuality:
      LxFormatResourceQuality(item);
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
