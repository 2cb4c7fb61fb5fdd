// The base of all format readers: the byte range to be read, the context and the budget of a parsed file, creating
// items, and the one switch that calls the routine of a descriptor's reader code.
//
// A reader that meets bad data stops and returns the items created so far; it reports nothing. Every byte of the file
// is accessed through LxMapRange or LxMapFileRange of the block cache.
#ifndef LXBRIDGE_KIT_READERS_DISPATCH_H_
#define LXBRIDGE_KIT_READERS_DISPATCH_H_

#include <cstdint>

#include "kit/base/block_cache.h"
#include "kit/model/pool.h"
#include "kit/model/pool_walk.h"
#include "kit/model/tag_record.h"

// Absolute file offsets. Valid when lowLimit <= start <= end <= highLimit.
struct LxParseRange {
  std::uint32_t lowLimit;  // Lowest offset that the data may refer to.
  std::uint32_t base;      // Origin of offsets stored inside the data.
  std::uint32_t start;
  std::uint32_t end;        // Exclusive.
  std::uint32_t highLimit;  // Exclusive.
};

// Limits on the cost of one file. Reading each IFD only once per path still allows exponential work, so nesting, the
// number of items and the number of value bytes are bounded, far above any ordinary file. At a bound, a reader stops as
// after a failed allocation and keeps what it has.
// - Items: the smallest entries that become items take 5 (an empty IPTC dataset) to 12 bytes (an IFD entry), and 2-byte
//   markers are few, so no valid file has an item for every 4 bytes. The constant is for small files, whose blocks may
//   be read twice (IPTC in a TIFF tag and in a resource).
// - Value bytes: a block is the value of its segment, of the entry that holds it and, in parts, of the entries inside.
//   Nested blocks count at most five times (Exif in a resource in a TIFF tag), and no file consists of those alone. An
//   inflated block raises the limit as if the file were longer by it.
// - Inflated bytes: a few blocks of the largest permitted size, and a multiple of the file's size, so that many small
//   blocks that inflate to much cost no more than a long file.
// - Levels: a pool walk reaches 30. Ordinary nesting ends at 14 (a thumbnail's segments in a maker note's sub-IFD).
struct LxParseBudget {
  std::int64_t items;          // Items that may still be created.
  std::int64_t valueBytes;     // Value bytes that may still be used (or scanned to score a maker note).
  std::int32_t levels;         // Tree levels that may still be opened below the current one.
  std::int64_t inflatedBytes;  // Bytes that may still be inflated, including those not used in the end.
};

inline constexpr std::int64_t kLxFileBytesPerItem = 4;
inline constexpr std::int64_t kLxItemsAtLeast = 1024;
inline constexpr std::int64_t kLxValueBytesPerFileByte = 6;
inline constexpr std::int64_t kLxValueBytesAtLeast = 1 << 20;
inline constexpr std::int64_t kLxInflatedPerFileByte = 4;
inline constexpr std::int64_t kLxInflatedAtLeast = 256 << 20;
inline constexpr std::int32_t kLxLevelsBelowRoot = kLxMaxWalkDepth - 1;
inline constexpr std::int32_t kLxMaxIfdsOnPath = 32;

// One per parsed file.
struct LxParseContext {
  LxMetadataItem* currentItem;           // The item whose value is being read; set before recursing into it.
  int byteOrder;                         // 0 little-endian, 1 big-endian.
  std::uint32_t pendingThumbnailStart;   // 0: none.
  std::uint32_t pendingThumbnailLength;  // 0: none.
  const LxMetadataItem* make;            // The most recent Make entry read, or null: its value is the text.
  const LxMetadataItem* model;
  LxMetadataItem* pendingThumbnailItem;
  bool readsForConversion;  // LxReaderOption
  LxItemSlab* slab;         // The slab for the next item. Readers never free an item.
  LxParseBudget budget;
  std::uint32_t ifdsOnPath[kLxMaxIfdsOnPath];  // Offsets of the IFDs being read, outermost first.
  std::int32_t ifdCount;
};

// Clears the context and sets the budget for a file of that size.
void LxInitParseContext(LxParseContext* context, std::int32_t fileSize) noexcept;

// The file offset for an offset in the data, which counts from the range's base. Nothing wraps: an offset outside any
// file gives a negative or large result. The base of a moved maker note can be before the file; it is then 2^31 or more
// and counts as negative (no file reaches that far).
[[nodiscard]] inline std::int64_t LxAddressInFile(const LxParseRange& range, std::uint32_t offset) noexcept {
  return std::int64_t{static_cast<std::int32_t>(range.base)} + offset;
}

[[nodiscard]] inline bool LxIsValidRange(const LxParseRange& range) noexcept {
  return range.lowLimit <= range.start && range.start <= range.end && range.end <= range.highLimit;
}

// Reads the range with the descriptor's routine. Returns the first item of a sibling list, or null: nothing was found,
// or the range is invalid.
[[nodiscard]] LxMetadataItem* LxParseWithDescriptor(LxBlockCache* cache, const LxParseRange& range,
                                                    LxParseContext* context,
                                                    const LxNamespaceDescriptor& descriptor) noexcept;

// Opens a level, reads the range with the item as the current one and links the items found as its children. False:
// nothing was found.
bool LxReadChildren(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context, LxMetadataItem* item,
                    const LxNamespaceDescriptor& descriptor) noexcept;

// Creates the pool's block cache and reads the whole file with the descriptor; the items become the pool's root list.
// kLxOk, even if nothing was found; kLxOutOfMemory.
[[nodiscard]] LxResult LxReadWholeFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool,
                                       const LxNamespaceDescriptor& descriptor) noexcept;

// A sibling list being built.
struct LxItemList {
  LxMetadataItem* first = nullptr;
  LxMetadataItem* last = nullptr;
};

// Creates an item and appends it. Null: the budget is used up, or there is no memory; the reader stops.
[[nodiscard]] LxMetadataItem* LxAppendNewItem(LxParseContext* context, LxItemList* list, const char* nameSpace,
                                              const char* name, std::uint32_t flags, std::uint16_t tagId,
                                              std::uint16_t typeCode, std::int32_t valueLength,
                                              const std::uint8_t* value) noexcept;

// Appends an existing list (its first item, or null).
void LxAppendItems(LxItemList* list, LxMetadataItem* first) noexcept;

// Takes value bytes from the budget; false if it is used up.
[[nodiscard]] bool LxChargeValueBytes(LxParseContext* context, std::int64_t bytes) noexcept;

// Opens a level of the tree below the current one (false: too deep); LxLeaveLevel closes it.
[[nodiscard]] bool LxEnterLevel(LxParseContext* context) noexcept;
void LxLeaveLevel(LxParseContext* context) noexcept;

// Sets the item's name, label, flags and display text from the record. Without a record, the name is generated from the
// tag id as " %04x" (`decimalName`: " %d"), and the text depends on the type. The record's type code is not used. The
// numbers of the value are in the context's byte order.
void LxApplyTagRecord(const LxParseContext* context, LxMetadataItem* item, const LxTagRecord* record,
                      bool decimalName) noexcept;

// Once a thumbnail's start, length and item are all known, sets the item's value to the thumbnail's bytes.
void LxJoinPendingThumbnail(LxBlockCache* cache, LxParseContext* context) noexcept;

#endif  // LXBRIDGE_KIT_READERS_DISPATCH_H_
