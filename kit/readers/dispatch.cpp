// The base of all format readers: the switch over the reader codes, items within the file's budget, names and display
// texts from tag records, and the two reader codes that only store something in the context.
#include "kit/readers/dispatch.h"

#include <charconv>
#include <cstring>
#include <limits>

#include "kit/base/memory.h"
#include "kit/model/display.h"
#include "kit/model/new_item.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"

namespace {

// The value of Make or Model has no terminator, so the item is stored instead of its bytes.
void RememberMakeOrModel(LxParseContext* context, std::uint32_t variant) noexcept {
  if (context->currentItem == nullptr) return;
  (variant == 0 ? context->make : context->model) = context->currentItem;
}

void RememberThumbnailLength(LxBlockCache* cache, LxParseContext* context) noexcept {
  if (context->currentItem == nullptr) return;
  context->pendingThumbnailLength = LxGetFirstValue(context->currentItem);
  LxJoinPendingThumbnail(cache, context);
}

// " %04x" or " %d" of the tag id. Without memory the name does not change.
void GiveGeneratedName(LxMetadataItem* item, bool decimal) noexcept {
  constexpr std::size_t kSize = 8;
  char* name = LxNewItemText(item, kSize);
  if (name == nullptr) return;
  std::memset(name, 0, kSize);
  name[0] = ' ';
  if (decimal) {
    std::to_chars(name + 1, name + kSize - 1, item->tagId);
  } else {
    for (int i = 0; i < 4; ++i) name[1 + i] = "0123456789abcdef"[item->tagId >> (12 - 4 * i) & 0xF];
  }
  item->name = name;
  item->flags |= kLxOwnsName;
}

}  // namespace

void LxInitParseContext(LxParseContext* context, std::int32_t fileSize) noexcept {
  *context = LxParseContext{};
  context->budget.items = fileSize / kLxFileBytesPerItem + kLxItemsAtLeast;
  context->budget.valueBytes = kLxValueBytesPerFileByte * fileSize + kLxValueBytesAtLeast;
  context->budget.levels = kLxLevelsBelowRoot;
  context->budget.inflatedBytes = kLxInflatedPerFileByte * fileSize + kLxInflatedAtLeast;
}

LxMetadataItem* LxParseWithDescriptor(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                      const LxNamespaceDescriptor& descriptor) noexcept {
  if (!LxIsValidRange(range)) return nullptr;
  switch (descriptor.readerCode) {
    case kLxReadJpegStream:
      return LxReadJpegStream(cache, range, context, descriptor);
    case kLxReadTiffHeader:
      return LxReadTiffHeader(cache, range, context, descriptor);
    case kLxReadIfd:
      return LxReadIfd(cache, range, context, descriptor);
    case kLxReadMakeOrModel:
      RememberMakeOrModel(context, descriptor.variant);
      return nullptr;
    case kLxReadMakerVendor:
      return LxChooseMakerVendor(cache, range, context, descriptor);
    case kLxReadMakerNote:
      return LxReadMakerNote(cache, range, context, descriptor);
    case kLxReadExifSegment:
    case kLxReadResourceSegment:
    case kLxReadFlashPixSegment:
    case kLxReadXmpSegment:
      return LxReadSegmentPayload(cache, range, context, descriptor);
    case kLxReadImageResources:
      return LxReadImageResources(cache, range, context, descriptor);
    case kLxReadResourceThumbnail:
      return LxReadThumbnailResource(cache, range, context);
    case kLxReadIptc:
      return LxReadIptc(cache, range, context, descriptor);
    case kLxReadFlashPixData:
    case kLxReadXmpPacket:
      return LxReadWholeRange(cache, range, context, descriptor);
    case kLxReadJfifSegment:
      return LxReadJfif(cache, range, context);
    case kLxReadThumbnailLength:
      RememberThumbnailLength(cache, context);
      return nullptr;
    case kLxReadIccSegment:
      return LxReadIccProfile(cache, range, context);
    default:
      return nullptr;
  }
}

bool LxReadChildren(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context, LxMetadataItem* item,
                    const LxNamespaceDescriptor& descriptor) noexcept {
  if (!LxEnterLevel(context)) return false;
  context->currentItem = item;
  item->firstChild = LxParseWithDescriptor(cache, range, context, descriptor);
  LxLeaveLevel(context);
  return item->firstChild != nullptr;
}

LxResult LxReadWholeFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool,
                         const LxNamespaceDescriptor& descriptor) noexcept {
  pool->blocks = LxNewBlockCache(stream, fileSize);
  if (pool->blocks == nullptr) return kLxOutOfMemory;
  const auto size = static_cast<std::uint32_t>(fileSize);
  LxParseContext context;
  LxInitParseContext(&context, fileSize);
  context.readsForConversion = pool->readerOption == kLxReadForConversion;
  pool->root = LxParseWithDescriptor(pool->blocks, {0, 0, 0, size, size}, &context, descriptor);
  return kLxOk;
}

LxMetadataItem* LxAppendNewItem(LxParseContext* context, LxItemList* list, const char* nameSpace, const char* name,
                                std::uint32_t flags, std::uint16_t tagId, std::uint16_t typeCode,
                                std::int32_t valueLength, const std::uint8_t* value) noexcept {
  if (context->budget.items <= 0) return nullptr;
  LxMetadataItem* item = LxNewSlabItem(&context->slab, nameSpace, name, flags, tagId, typeCode, valueLength, value);
  if (item == nullptr) return nullptr;
  --context->budget.items;
  (list->last != nullptr ? list->last->next : list->first) = item;
  list->last = item;
  return item;
}

void LxAppendItems(LxItemList* list, LxMetadataItem* first) noexcept {
  if (first == nullptr) return;
  (list->last != nullptr ? list->last->next : list->first) = first;
  list->last = first;
  while (list->last->next != nullptr) list->last = list->last->next;
}

bool LxChargeValueBytes(LxParseContext* context, std::int64_t bytes) noexcept {
  if (bytes > context->budget.valueBytes) return false;
  context->budget.valueBytes -= bytes;
  return true;
}

bool LxEnterLevel(LxParseContext* context) noexcept {
  if (context->budget.levels <= 0) return false;
  --context->budget.levels;
  return true;
}

void LxLeaveLevel(LxParseContext* context) noexcept {
  ++context->budget.levels;
}

void LxApplyTagRecord(const LxParseContext* context, LxMetadataItem* item, const LxTagRecord* record,
                      bool decimalName) noexcept {
  if (record != nullptr) {
    item->name = record->name;
    item->label = record->label;
    item->flags |= record->flags;
    if (record->display != nullptr) {
      LxFormatTaggedValue(context->byteOrder, item, record->display);
      return;
    }
  } else {
    GiveGeneratedName(item, decimalName);
  }
  LxFormatValue(context->byteOrder, item);
}

void LxJoinPendingThumbnail(LxBlockCache* cache, LxParseContext* context) noexcept {
  if (context->pendingThumbnailStart == 0 || context->pendingThumbnailLength == 0 ||
      context->pendingThumbnailItem == nullptr) {
    return;
  }
  // A thumbnail that extends beyond the file keeps its length but gets no bytes.
  const std::uint32_t length = context->pendingThumbnailLength;
  LxMetadataItem* item = context->pendingThumbnailItem;
  constexpr std::uint32_t kLongest = std::numeric_limits<std::int32_t>::max();
  item->valueLength = static_cast<std::int32_t>(length < kLongest ? length : kLongest);
  item->value = LxChargeValueBytes(context, item->valueLength)
                    ? LxMapFileRange(cache, context->pendingThumbnailStart, length)
                    : nullptr;
  context->pendingThumbnailStart = 0;
  context->pendingThumbnailLength = 0;
  context->pendingThumbnailItem = nullptr;
}
