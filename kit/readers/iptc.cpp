// IPTC-IIM 4: the datasets of the application record (record 2), one item each.
#include "kit/base/byte_order.h"
#include "kit/model/lookup.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"

namespace {

// IPTC-IIM 4, 1.5: tag marker, record number, dataset number, length.
constexpr std::uint32_t kHeaderSize = 5;
constexpr std::uint8_t kTagMarker = 0x1C;
constexpr std::uint8_t kApplicationRecord = 2;
constexpr std::uint32_t kLongestStandardLength = 0x7FFF;  // With the top bit set, it is the length of the length.

}  // namespace

LxMetadataItem* LxReadIptc(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                           const LxNamespaceDescriptor& descriptor) noexcept {
  LxItemList list;
  std::uint64_t position = range.start;
  // A dataset may begin only before the range's end, but its data may extend to the end of the file.
  while (position + kHeaderSize < range.end) {
    const std::uint8_t* header = LxMapFileRange(cache, position, kHeaderSize);
    if (header == nullptr || header[0] != kTagMarker) break;
    const std::uint8_t record = header[1], dataset = header[2];
    const std::uint32_t length = LxGet16(header + 3, kLxBigEndian);
    if (length > kLongestStandardLength) break;
    if (!LxChargeValueBytes(context, length)) break;
    const std::uint8_t* whole = LxMapFileRange(cache, position, kHeaderSize + length);
    if (whole == nullptr) break;

    if (record == kApplicationRecord) {
      const LxTagRecord* tag = LxFindTagById(dataset, descriptor.dictionary);
      const std::uint16_t type = tag != nullptr ? tag->typeCode : std::uint16_t{kLxTypeUndefined};
      LxMetadataItem* item = LxAppendNewItem(context, &list, descriptor.nameSpace, "iptctag", kLxBigEndianValue,
                                             dataset, type, static_cast<std::int32_t>(length), whole + kHeaderSize);
      if (item == nullptr) break;
      LxApplyTagRecord(context, item, tag, /*decimalName=*/true);
    }
    position += kHeaderSize + length;
  }
  return list.first;
}
