#include "kit/readers/container.h"

#include <cstring>

#include "kit/base/memory.h"
#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"

namespace {

constexpr std::int32_t kExifPrefixLength = 6;
constexpr std::int32_t kTiffHeaderLength = 8;
constexpr std::uint8_t kDatasetMarker = 0x1C;  // IPTC-IIM 4, 1.5
constexpr std::uint16_t kIptcResource = 0x0404;

// The length of "Exif" and two zero bytes, which Exif 2.2, 4.7.2 has before the TIFF structure in a JPEG segment, and
// many writers also elsewhere.
std::int32_t ExifPrefix(const std::uint8_t* bytes, std::int32_t length) noexcept {
  return length >= kExifPrefixLength && std::memcmp(bytes, "Exif\0\0", kExifPrefixLength) == 0 ? kExifPrefixLength : 0;
}

bool IsTiff(const std::uint8_t* bytes, std::int32_t length) noexcept {
  return length >= 4 && (std::memcmp(bytes, "II*\0", 4) == 0 || std::memcmp(bytes, "MM\0*", 4) == 0);
}

// The items of bare datasets: the image resource that holds them in a JPEG file, with the datasets as its children.
LxMetadataItem* ReadDatasets(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                             const LxContainerBlock& block) noexcept {
  LxItemList list;
  if (!LxChargeValueBytes(context, block.length)) return nullptr;
  const LxTagRecord* record = LxFindTagById(kIptcResource, kLxIrTags);
  LxMetadataItem* item = LxAppendNewItem(context, &list, kLxImageResourceSpace.nameSpace, "irtag", kLxBigEndianValue,
                                         kIptcResource, record->typeCode, block.length, block.bytes);
  if (item == nullptr) return nullptr;
  LxApplyTagRecord(context, item, record, /*decimalName=*/false);
  if (!LxReadChildren(cache, range, context, item, *record->subNamespace)) item->flags |= kLxDeleted;
  return list.first;
}

// The items of a block. Its reader treats it as a file: offsets count from its first byte and must stay inside it.
LxMetadataItem* ReadBlock(LxContainer* container, LxContainerBlockKind kind) noexcept {
  const LxContainerBlock& block = container->blocks[kind];
  LxParseContext* context = &container->context;
  LxBlockCache bytes;
  LxInitMemoryCache(&bytes, block.bytes, block.length);
  const auto length = static_cast<std::uint32_t>(block.length);
  const LxParseRange range = {0, 0, 0, length, length};
  // A thumbnail's offset and length belong to the same block.
  context->pendingThumbnailStart = context->pendingThumbnailLength = 0;
  context->pendingThumbnailItem = nullptr;
  context->currentItem = nullptr;
  switch (kind) {
    case kLxTiffBlock:
      return LxParseWithDescriptor(&bytes, range, context, kLxTiffSpace);
    case kLxPacketBlock:
      return LxParseWithDescriptor(&bytes, range, context, kLxXmpSpace);
    case kLxResourceBlock:
      return LxParseWithDescriptor(&bytes, range, context, kLxImageResourceSpace);
    case kLxDatasetBlock:
      return ReadDatasets(&bytes, range, context, block);
    default:
      return nullptr;
  }
}

// Appends the block's item with its children, or, without a block namespace, the children alone.
void AppendBlock(LxContainer* container, LxContainerBlockKind kind, const char* nameSpace, LxItemList* list) noexcept {
  LxParseContext* context = &container->context;
  if (nameSpace == nullptr) {
    LxAppendItems(list, ReadBlock(container, kind));
    return;
  }
  const LxContainerBlock& block = container->blocks[kind];
  LxMetadataItem* item =
      LxAppendNewItem(context, list, nameSpace, block.name, kLxBigEndianValue, 0, kLxTypeUndefined, 0, nullptr);
  if (item == nullptr) return;
  LxSetDisplayText(item, block.displayText, /*owned=*/false);
  if (LxEnterLevel(context)) {
    item->firstChild = ReadBlock(container, kind);
    LxLeaveLevel(context);
  }
  if (item->firstChild == nullptr) item->flags |= kLxDeleted;
}

}  // namespace

LxResult LxOpenContainer(LxContainer* container, LxStream* stream, std::int32_t fileSize,
                         LxMetadataPool* pool) noexcept {
  *container = LxContainer{};
  container->pool = pool;
  LxInitParseContext(&container->context, fileSize);
  pool->blocks = LxNewBlockCache(stream, fileSize);
  return pool->blocks != nullptr ? kLxOk : kLxOutOfMemory;
}

bool LxWantsBlock(const LxContainer& container, LxContainerBlockKind kind, std::int32_t rank) noexcept {
  const LxContainerBlock& block = container.blocks[kind];
  return block.bytes == nullptr || rank < block.rank;
}

bool LxIsBlock(LxContainerBlockKind kind, const std::uint8_t* bytes, std::int32_t available,
               std::int32_t length) noexcept {
  switch (kind) {
    case kLxTiffBlock: {
      const std::int32_t prefix = ExifPrefix(bytes, available);
      return length - prefix >= kTiffHeaderLength && IsTiff(bytes + prefix, available - prefix);
    }
    case kLxPacketBlock:
      return length > 0;
    case kLxResourceBlock:
      return available >= 4 && std::memcmp(bytes, "8BIM", 4) == 0;
    case kLxDatasetBlock:
      return available >= 1 && bytes[0] == kDatasetMarker;
    default:
      return false;
  }
}

bool LxOfferBlock(LxContainer* container, LxContainerBlockKind kind, const LxContainerBlock& block) noexcept {
  LxBlockCache* cache = container->pool->blocks;
  if (block.bytes == nullptr || !LxWantsBlock(*container, kind, block.rank) ||
      !LxIsBlock(kind, block.bytes, block.length, block.length)) {
    LxFreeDetachedBlock(cache, block.detached);
    return false;
  }
  LxContainerBlock* taken = &container->blocks[kind];
  LxFreeDetachedBlock(cache, taken->detached);
  *taken = block;
  const std::int32_t prefix = kind == kLxTiffBlock ? ExifPrefix(block.bytes, block.length) : 0;
  taken->bytes += prefix;
  taken->length -= prefix;
  return true;
}

bool LxChargeEntries(LxContainer* container, std::int64_t count) noexcept {
  if (count > container->context.budget.items) return false;
  container->context.budget.items -= count;
  return true;
}

LxResult LxFinishContainer(LxContainer* container, const char* headerSpace, const char* headerName,
                           const char* blockSpace) noexcept {
  bool any = false;
  for (const LxContainerBlock& block : container->blocks) any = any || block.bytes != nullptr;
  if (!any) {
    LxFreeBlockCache(container->pool->blocks);
    LxFree(container->pool->blocks);
    container->pool->blocks = nullptr;
    return kLxOk;
  }
  LxItemList root;
  LxMetadataItem* header =
      LxAppendNewItem(&container->context, &root, headerSpace, headerName, 0, 0, kLxTypeUndefined, 0, nullptr);
  if (header == nullptr) return kLxOutOfMemory;
  container->pool->root = header;
  if (!LxEnterLevel(&container->context)) return kLxOk;
  LxItemList list;
  for (std::int32_t kind = 0; kind < kLxContainerBlockKinds; ++kind) {
    if (container->blocks[kind].bytes == nullptr) continue;
    AppendBlock(container, static_cast<LxContainerBlockKind>(kind), blockSpace, &list);
  }
  header->firstChild = list.first;
  LxLeaveLevel(&container->context);
  return kLxOk;
}
