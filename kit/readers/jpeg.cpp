// JPEG streams: the marker segments up to the entropy-coded data (ISO/IEC 10918-1, B.1). APPn segments are
// distinguished by the identifier at their start.
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "kit/model/display.h"
#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"

namespace {

constexpr std::uint16_t kFirstMarker = 0xFFC0;
constexpr std::uint16_t kFirstBare = 0xFFD0;  // RST0 to EOI have no segment.
constexpr std::uint16_t kLastBare = 0xFFD9;
constexpr std::uint16_t kSoi = 0xFFD8;
constexpr std::uint16_t kSos = 0xFFDA;
constexpr std::uint16_t kFirstApp = 0xFFE0;
constexpr std::uint16_t kLastApp = 0xFFEF;
constexpr std::uint16_t kApp13 = 0xFFED;
constexpr std::uint16_t kComment = 0xFFFE;
constexpr std::uint32_t kMarkerLength = 2;
constexpr std::int32_t kLengthField = 2;
constexpr std::int32_t kLongestIdentifier = 256;
constexpr std::int32_t kSignatureLength = 4;  // "8BIM"
// The first bytes of an APPn segment, which tell how it is read.
constexpr std::int32_t kHeadLength = kLengthField + kLongestIdentifier + 1 + kSignatureLength;

const char* MarkerName(std::uint16_t marker) noexcept {
  const LxTagRecord* record = LxFindTagById(marker, kLxJpegMarkers);
  return record != nullptr ? record->name : "";
}

// Sets the item's own display text to a copy of the bytes. False: no memory.
bool CopyDisplayText(LxMetadataItem* item, const std::uint8_t* bytes, std::int32_t length) noexcept {
  char* text = LxCopyText(bytes, static_cast<std::size_t>(length));
  if (text == nullptr) return false;
  LxSetDisplayText(item, text, true);
  return true;
}

// The bytes between an identifier's zero byte and the payload, for the readers of recognised segments.
std::int32_t PadLength(const char* identifier) noexcept {
  if (std::strcmp(identifier, "Exif") == 0 || std::strcmp(identifier, "Meta") == 0) return 1;
  return std::strcmp(identifier, "ICC_PROFILE") == 0 ? 2 : 0;
}

// Reads the contents of a recognised segment; the item's value is then the segment's header only.
void ReadPayload(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context, LxMetadataItem* item,
                 std::int32_t headerLength, const LxNamespaceDescriptor& descriptor) noexcept {
  if (!LxReadChildren(cache, range, context, item, descriptor)) item->flags |= kLxDeleted;
  if (headerLength < item->valueLength) item->valueLength = headerLength;
}

// Editors have written image resources under several identifiers, of which the table has one. A payload that begins
// with the signature of a resource block is read as such, so that a file's IPTC is not lost because of the identifier.
bool HoldsResources(const LxJpegSegment& segment, std::int32_t identifierLength) noexcept {
  const std::int32_t header = kLengthField + identifierLength + 1;
  return segment.marker == kApp13 && segment.length >= header + kSignatureLength &&
         std::memcmp(segment.bytes + header, "8BIM", kSignatureLength) == 0;
}

// Whether the bytes after the head of an APPn segment have a reader, or the conversion's.
bool IsKnown(const LxJpegSegment& head, const LxNamespaceDescriptor& descriptor) noexcept {
  const std::int32_t length = LxFindAppIdentifier(head);
  if (length == 0) return false;
  const auto* identifier = reinterpret_cast<const char*>(head.bytes + kLengthField);
  return LxFindTag(head.marker, identifier, descriptor.dictionary) != nullptr ||
         std::strcmp(identifier, kLxExtendedXmpSegmentId) == 0 || HoldsResources(head, length);
}

// Reads only the head of a segment that lies in the file and is not known. False: it must be read completely.
bool ReadHeadOfUnknown(LxBlockCache* cache, std::uint32_t position, const LxNamespaceDescriptor& descriptor,
                       LxJpegSegment* segment, std::int32_t* stored) noexcept {
  const std::uint8_t* bytes = LxMapFileRange(cache, position, kMarkerLength + kLengthField);
  if (bytes == nullptr) return false;
  const std::uint16_t marker = LxGet16(bytes, kLxBigEndian);
  const std::uint16_t length = LxGet16(bytes + kMarkerLength, kLxBigEndian);
  if (marker < kFirstApp || marker > kLastApp || length <= kHeadLength) return false;
  if (std::uint64_t{position} + kMarkerLength + length > static_cast<std::uint64_t>(cache->fileSize)) return false;
  bytes = LxMapFileRange(cache, position, std::uint64_t{kMarkerLength} + kHeadLength);
  if (bytes == nullptr) return false;
  const LxJpegSegment head = {marker, kHeadLength, bytes + kMarkerLength};
  if (IsKnown(head, descriptor)) return false;
  *segment = head;
  *stored = length;
  return true;
}

// Reads an APPn segment with an identifier. False: no memory.
bool ReadAppSegment(LxBlockCache* cache, const LxParseRange& caller, std::uint32_t position, LxParseContext* context,
                    const LxNamespaceDescriptor& descriptor, const LxJpegSegment& segment,
                    std::int32_t identifierLength, LxMetadataItem* item) noexcept {
  if (!CopyDisplayText(item, segment.bytes + kLengthField, identifierLength)) return false;
  const std::uint32_t start = position + kMarkerLength;
  LxParseRange range = {caller.lowLimit, caller.base, start, start + segment.length, start + segment.length};
  const std::int32_t header = kLengthField + identifierLength + 1;
  const LxTagRecord* record = LxFindTag(segment.marker, item->displayText, descriptor.dictionary);
  if (record == nullptr) {
    if (!HoldsResources(segment, identifierLength)) return true;
    range.start += static_cast<std::uint32_t>(header);
    range.base = range.start;
    ReadPayload(cache, range, context, item, header, kLxImageResourceSpace);
  } else if (record->subNamespace != nullptr) {
    ReadPayload(cache, range, context, item, header + PadLength(record->name), *record->subNamespace);
  } else if (record->display != nullptr) {
    LxFormatTaggedValue(context->byteOrder, item, record->display);
  }
  return true;
}

}  // namespace

LxMetadataItem* LxReadJpegStream(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                 const LxNamespaceDescriptor& descriptor) noexcept {
  const std::uint8_t* marker = LxMapFileRange(cache, range.start, kMarkerLength);
  if (marker == nullptr || LxGet16(marker, kLxBigEndian) != kSoi) return nullptr;
  LxItemList list;
  LxMetadataItem* item = LxAppendNewItem(context, &list, "jpegh", MarkerName(kSoi), kLxBigEndianValue, kSoi,
                                         kLxTypeUndefined, static_cast<std::int32_t>(kMarkerLength), marker);
  if (item == nullptr) return nullptr;

  // Only thumbnails are pending: the main image begins at offset 0, which means none.
  context->pendingThumbnailStart = range.start;
  context->pendingThumbnailItem = item;
  LxJoinPendingThumbnail(cache, context);

  if (LxEnterLevel(context)) {
    item->firstChild = LxReadJpegSegments(cache, range, range.start + kMarkerLength, context, descriptor);
    LxLeaveLevel(context);
  }
  return item;
}

bool LxReadJpegSegment(LxBlockCache* cache, std::uint32_t position, LxJpegSegment* segment) noexcept {
  const std::uint8_t* bytes = LxMapFileRange(cache, position, kMarkerLength);
  if (bytes == nullptr) return false;
  segment->marker = LxGet16(bytes, kLxBigEndian);
  segment->length = 0;
  if (segment->marker < kFirstMarker) return false;
  if (segment->marker >= kFirstBare && segment->marker <= kLastBare) {
    segment->bytes = bytes + kMarkerLength;  // The marker has no bytes of its own.
    return true;
  }
  bytes = LxMapFileRange(cache, position, kMarkerLength + kLengthField);
  if (bytes == nullptr) return false;
  segment->length = LxGet16(bytes + kMarkerLength, kLxBigEndian);
  bytes = LxMapFileRange(cache, position, std::uint64_t{kMarkerLength} + segment->length);
  if (bytes == nullptr) return false;
  segment->bytes = bytes + kMarkerLength;
  return true;
}

std::int32_t LxFindAppIdentifier(const LxJpegSegment& segment) noexcept {
  if (segment.marker < kFirstApp || segment.marker > kLastApp || segment.length < kLengthField) return 0;
  // A text that is longer than the maximum is not an identifier, so its zero byte is not searched for.
  const std::int32_t payload = segment.length - kLengthField;
  const std::int32_t searched = payload <= kLongestIdentifier ? payload : kLongestIdentifier + 1;
  const std::uint8_t* text = segment.bytes + kLengthField;
  const void* end = searched > 0 ? std::memchr(text, 0, static_cast<std::size_t>(searched)) : nullptr;
  return end != nullptr ? static_cast<std::int32_t>(static_cast<const std::uint8_t*>(end) - text) : 0;
}

LxMetadataItem* LxReadJpegSegments(LxBlockCache* cache, const LxParseRange& range, std::uint32_t position,
                                   LxParseContext* context, const LxNamespaceDescriptor& descriptor) noexcept {
  LxItemList list;
  LxJpegSegment segment;
  std::int32_t stored = 0;
  for (;; position += kMarkerLength + static_cast<std::uint32_t>(stored)) {
    if (!context->readsForConversion || !ReadHeadOfUnknown(cache, position, descriptor, &segment, &stored)) {
      if (!LxReadJpegSegment(cache, position, &segment)) break;
      stored = segment.length;
    }
    if (!LxChargeValueBytes(context, stored)) break;
    LxMetadataItem* item =
        LxAppendNewItem(context, &list, descriptor.nameSpace, MarkerName(segment.marker), kLxBigEndianValue,
                        segment.marker, kLxTypeUndefined, segment.length, segment.bytes);
    if (item == nullptr || segment.marker == kSos) break;
    if (segment.marker == kComment && segment.length >= kLengthField &&
        !CopyDisplayText(item, segment.bytes + kLengthField, segment.length - kLengthField)) {
      break;
    }
    const std::int32_t identifierLength = LxFindAppIdentifier(segment);
    if (identifierLength > 0 &&
        !ReadAppSegment(cache, range, position, context, descriptor, segment, identifierLength, item)) {
      break;
    }
  }
  return list.first;
}
