// Payloads of recognised JPEG segments: each becomes one item, or is read by another reader. The range begins at the
// segment's length field, so offsets include its two bytes, the identifier with its zero byte and the padding.
#include <iterator>

#include "kit/base/memory.h"
#include "kit/model/display.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"

namespace {

constexpr std::uint32_t kExifPayload = 8;       // Exif 2.2, 4.7.2: "Exif", two zero bytes.
constexpr std::uint32_t kResourcePayload = 16;  // "Picturist 3.0"
constexpr std::uint32_t kFlashPixPayload = 7;   // "FPXR"
constexpr std::uint32_t kXmpPayload = 2 + std::size(kLxXmpSegmentId);
constexpr std::uint32_t kJfifPayload = 7;  // JFIF 1.02: "JFIF"; at least nine bytes follow.
constexpr std::uint32_t kJfifAtLeast = 16;
constexpr std::uint32_t kIccPayload = 16;  // ICC.1, annex B: "ICC_PROFILE", chunk number, number of chunks.
constexpr std::uint32_t kIccAtLeast = 17;

// One item whose value is the range's bytes from start to end.
LxMetadataItem* ReadOneItem(LxBlockCache* cache, std::uint32_t start, std::uint32_t end, LxParseContext* context,
                            const char* nameSpace, const char* name) noexcept {
  const std::uint8_t* bytes = LxMapFileRange(cache, start, end - start);
  // An empty payload at the end of the file has no byte to map.
  if (bytes == nullptr && start != end) return nullptr;
  if (!LxChargeValueBytes(context, end - start)) return nullptr;
  LxItemList list;
  return LxAppendNewItem(context, &list, nameSpace, name, 0, 0, kLxTypeUndefined,
                         static_cast<std::int32_t>(end - start), bytes);
}

}  // namespace

LxMetadataItem* LxReadSegmentPayload(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                     const LxNamespaceDescriptor& descriptor) noexcept {
  std::uint32_t header = 0;
  const LxNamespaceDescriptor* payload = nullptr;
  switch (descriptor.readerCode) {
    case kLxReadExifSegment:
      header = kExifPayload;
      payload = &kLxTiffSpace;
      break;
    case kLxReadResourceSegment:
      header = kResourcePayload;
      payload = &kLxImageResourceSpace;
      break;
    case kLxReadFlashPixSegment:
      header = kFlashPixPayload;
      payload = &kLxFlashPixSpace;
      break;
    case kLxReadXmpSegment:
      header = kXmpPayload;
      payload = &kLxXmpSpace;
      break;
    default:
      return nullptr;
  }
  if (range.end - range.start < header) return nullptr;
  LxParseRange rest = range;
  rest.start = range.start + header;
  rest.base = rest.start;
  context->currentItem = nullptr;
  return LxParseWithDescriptor(cache, rest, context, *payload);
}

LxMetadataItem* LxReadWholeRange(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                 const LxNamespaceDescriptor& descriptor) noexcept {
  const char* name = descriptor.readerCode == kLxReadFlashPixData ? "FpxrData" : "XmpData";
  return ReadOneItem(cache, range.start, range.end, context, descriptor.nameSpace, name);
}

LxMetadataItem* LxReadJfif(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context) noexcept {
  if (range.end - range.start < kJfifAtLeast) return nullptr;
  return ReadOneItem(cache, range.start + kJfifPayload, range.end, context, "jfif", "Data");
}

LxMetadataItem* LxReadIccProfile(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context) noexcept {
  if (range.end - range.start < kIccAtLeast) return nullptr;
  LxMetadataItem* item = ReadOneItem(cache, range.start + kIccPayload, range.end, context, "icc", "IccProfile");
  if (item == nullptr || !LxFindIccDescription(item->value, item->valueLength, nullptr, nullptr)) return item;
  // Shown by its description, like an InterColorProfile. If the description cannot be read, the text stays empty.
  if (char* description = LxIccDescription(item->value, item->valueLength)) LxSetDisplayText(item, description, true);
  return item;
}
