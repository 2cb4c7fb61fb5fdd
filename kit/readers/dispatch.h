// What all format readers share: the byte range they read, the context of one parsed file, the budget of that file,
// the making of items, and the one switch that calls the routine of a descriptor's reader code.
//
// A reader that meets bad data stops and returns the items that it has made; it reports nothing. Every byte of the file
// is reached through LxMapRange or LxMapFileRange of the block cache.
#ifndef LXBRIDGE_KIT_READERS_DISPATCH_H_
#define LXBRIDGE_KIT_READERS_DISPATCH_H_

#include <cstdint>

#include "kit/base/block_cache.h"
#include "kit/model/pool.h"
#include "kit/model/pool_walk.h"
#include "kit/model/tag_record.h"

// Absolute file offsets. Valid when lowLimit <= start <= end <= highLimit.
struct LxParseRange {
  std::uint32_t lowLimit;  // Lowest offset that the data may use.
  std::uint32_t base;      // Origin of offsets stored inside the data.
  std::uint32_t start;
  std::uint32_t end;        // Exclusive.
  std::uint32_t highLimit;  // Exclusive.
};

// What one file may cost. "Each IFD once on a path" still allows exponential work, so nesting, the number of items and
// the bytes that their values name are bounded, far above any ordinary file; at a bound a reader stops as on a failed
// allocation and keeps what it has.
// - Items: the smallest things that become items take 5 (an empty IPTC dataset) to 12 bytes (an IFD entry), and markers
//   of 2 bytes do not come in thousands, so an item for each 4 bytes of the file is out of reach; small files, whose
//   blocks may be read twice (IPTC in a TIFF tag and in a resource), have the constant.
// - Value bytes: a block is named by its segment, by the entry that holds it and by the entries inside; nested blocks
//   are named at most five times (Exif in a resource in a TIFF tag), and no file consists of those alone.
//   An inflated block adds to them as if the file were longer by it.
// - Inflated bytes: some blocks of the largest size that a single one may have, and a multiple of the file's size, so
// that
//   many small blocks that inflate to much cost no more than a long file.
// - Levels: a pool walk reaches 30. Honest nesting ends at 14 (a thumbnail's segments below a maker note's sub-IFD).
struct LxParseBudget {
  std::int64_t items;          // Items that may still be made.
  std::int64_t valueBytes;     // Value bytes that may still be named (or looked at to score a maker note).
  std::int32_t levels;         // Levels of the tree that may still be opened below the current one.
  std::int64_t inflatedBytes;  // Bytes that compressed blocks may still give, also those that do not count in the end.
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
  LxMetadataItem* currentItem;           // The item whose value is being read; set just before recursing for it.
  int byteOrder;                         // 0 little-endian, 1 big-endian.
  std::uint32_t pendingThumbnailStart;   // 0: none.
  std::uint32_t pendingThumbnailLength;  // 0: none.
  const LxMetadataItem* make;            // The most recent Make entry read, or null: its value is the text.
  const LxMetadataItem* model;
  LxMetadataItem* pendingThumbnailItem;
  LxItemSlab* slab;  // The block that the next item's record comes from. Readers never free an item.
  LxParseBudget budget;
  std::uint32_t ifdsOnPath[kLxMaxIfdsOnPath];  // Offsets of the IFDs being read, outermost first.
  std::int32_t ifdCount;
};

// Zeroes the context and gives it the budget of a file of that size.
void LxInitParseContext(LxParseContext* context, std::int32_t fileSize) noexcept;

// The file offset of an offset that the data holds, counted from the range's base; negative or large where it is
// outside any file: nothing wraps. A maker note that was moved can have a base before the file, which is then 2^31
// or more and counts as negative (no file reaches that far).
[[nodiscard]] inline std::int64_t LxAddressInFile(const LxParseRange& range, std::uint32_t offset) noexcept {
  return std::int64_t{static_cast<std::int32_t>(range.base)} + offset;
}

[[nodiscard]] inline bool LxIsValidRange(const LxParseRange& range) noexcept {
  return range.lowLimit <= range.start && range.start <= range.end && range.end <= range.highLimit;
}

// Reads the range with the descriptor's routine: the first item of a sibling list, or null. An invalid range gives
// null.
[[nodiscard]] LxMetadataItem* LxParseWithDescriptor(LxBlockCache* cache, const LxParseRange& range,
                                                    LxParseContext* context,
                                                    const LxNamespaceDescriptor& descriptor) noexcept;

// Reads the range as what lies below the item and hangs it there: opens a level, makes the item the current one. False
// when nothing was found.
bool LxReadChildren(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context, LxMetadataItem* item,
                    const LxNamespaceDescriptor& descriptor) noexcept;

// Makes the pool's block cache and reads the whole file with the descriptor; the items become the pool's root list.
// kLxOk, also when nothing was found; kLxOutOfMemory.
[[nodiscard]] LxResult LxReadWholeFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool,
                                       const LxNamespaceDescriptor& descriptor) noexcept;

// A sibling list being built.
struct LxItemList {
  LxMetadataItem* first = nullptr;
  LxMetadataItem* last = nullptr;
};

// Makes an item and appends it. Null when the budget is used up or there is no memory (which the first-error slot then
// notes): the reader stops.
[[nodiscard]] LxMetadataItem* LxAppendNewItem(LxParseContext* context, LxItemList* list, const char* nameSpace,
                                              const char* name, std::uint32_t flags, std::uint16_t tagId,
                                              std::uint16_t typeCode, std::int32_t valueLength,
                                              const std::uint8_t* value) noexcept;

// Appends a list that is there already (its first item, or null).
void LxAppendItems(LxItemList* list, LxMetadataItem* first) noexcept;

// Takes value bytes from the budget; false when it is used up.
[[nodiscard]] bool LxChargeValueBytes(LxParseContext* context, std::int64_t bytes) noexcept;

// Opens a level of the tree below the current one (false: too deep) and closes it again.
[[nodiscard]] bool LxEnterLevel(LxParseContext* context) noexcept;
void LxLeaveLevel(LxParseContext* context) noexcept;

// Gives an item its name, label, flags and display text: by the record when there is one, else by its type, with the
// generated name " %04x" of its tag id (`decimalName`: " %d"). The record's type code is not applied. The display text
// reads numbers in the context's byte order.
void LxApplyTagRecord(const LxParseContext* context, LxMetadataItem* item, const LxTagRecord* record,
                      bool decimalName) noexcept;

// Joins a thumbnail's start, length and item once all three are known: the item's value becomes the thumbnail's bytes.
void LxJoinPendingThumbnail(LxBlockCache* cache, LxParseContext* context) noexcept;

#endif  // LXBRIDGE_KIT_READERS_DISPATCH_H_
