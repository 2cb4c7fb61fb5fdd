// Image resource blocks ("8BIM") in APP13 segments, in a TIFF tag and in PSD files: one item per block.
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"

namespace {

// A block: signature, id, name (padded), data size, data (padded).
constexpr std::uint32_t kSmallestBlock = 12;
constexpr std::uint32_t kNameOffset = 6;
// The bytes before the JPEG stream in a thumbnail resource: format, sizes, bits, planes.
constexpr std::uint32_t kThumbnailHeader = 28;

}  // namespace

LxMetadataItem* LxReadImageResources(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                     const LxNamespaceDescriptor& descriptor) noexcept {
  LxItemList list;
  std::uint64_t position = range.start;
  // A block may begin only before the range's end, but its data may extend to the end of the file.
  while (position + kSmallestBlock < range.end) {
    const std::uint8_t* header = LxMapFileRange(cache, position, kSmallestBlock);
    if (header == nullptr || std::memcmp(header, "8BIM", 4) != 0) break;
    const std::uint16_t id = LxGet16(header + 4, kLxBigEndian);
    const std::uint32_t paddedName = (header[kNameOffset] + 2u) & ~1u;
    const std::uint32_t dataOffset = kNameOffset + paddedName + 4;
    header = LxMapFileRange(cache, position, dataOffset);
    if (header == nullptr) break;
    const std::uint32_t size = LxGet32(header + dataOffset - 4, kLxBigEndian);
    if (!LxChargeValueBytes(context, size)) break;
    const std::uint8_t* whole = LxMapFileRange(cache, position, std::uint64_t{dataOffset} + size);
    if (whole == nullptr) break;

    const LxTagRecord* tag = LxFindTagById(id, descriptor.dictionary);
    const std::uint16_t type = tag != nullptr ? tag->typeCode : std::uint16_t{kLxTypeUndefined};
    LxMetadataItem* item = LxAppendNewItem(context, &list, descriptor.nameSpace, "irtag", kLxBigEndianValue, id, type,
                                           static_cast<std::int32_t>(size), whole + dataOffset);
    if (item == nullptr) break;
    LxApplyTagRecord(context, item, tag, /*decimalName=*/false);
    if (tag != nullptr && tag->subNamespace != nullptr) {
      const auto start = static_cast<std::uint32_t>(position + dataOffset);
      const LxParseRange inner = {range.lowLimit, range.base, start, start + size, range.highLimit};
      if (!LxReadChildren(cache, inner, context, item, *tag->subNamespace)) item->flags |= kLxDeleted;
    }
    const std::uint64_t length = std::uint64_t{dataOffset} + size;
    position += length + (length & 1);
  }
  return list.first;
}

LxMetadataItem* LxReadThumbnailResource(LxBlockCache* cache, const LxParseRange& range,
                                        LxParseContext* context) noexcept {
  LxParseRange inner = range;
  inner.base = inner.start = range.start + kThumbnailHeader;  // After the end if the resource is too short.
  context->currentItem = nullptr;
  return LxParseWithDescriptor(cache, inner, context, kLxThumbnailSpace);
}
