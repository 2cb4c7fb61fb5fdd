// Byte ranges of one open file, kept in memory so that values can point into them. Offsets and lengths are bytes from
// the start of the file. The cache borrows the stream and owns its blocks; a mapped pointer is valid until
// LxFreeBlockCache, also after later loads and after the stream is closed. Readers map everything here that a value is
// to point into. Only bytes that nobody keeps are read otherwise: the first ones, which tell the kind of the file
// (kit/readers/file_kind.cpp), the headers of BMP files, and those that a file window looks at (file_window.h).
#ifndef LXBRIDGE_KIT_BASE_BLOCK_CACHE_H_
#define LXBRIDGE_KIT_BASE_BLOCK_CACHE_H_

#include <cstdint>

#include "kit/base/result.h"
#include "kit/base/stream.h"

struct LxBlock {
  LxBlock* next;
  std::int32_t start;   // A multiple of 4096.
  std::int32_t length;  // Bytes really read.
  const std::uint8_t* data;
};

struct LxBlockCache {
  LxStream* stream;
  std::int32_t fileSize;
  std::int32_t highWater;  // No block ends beyond it (rounded up to whole pages).
  LxBlock* blocks;         // Most recently loaded first.
  LxBlock* current;
  std::int32_t currentStart;
  std::int32_t currentLength;
  // Bytes that may still be loaded. Ranges that overlap shifted by a page each load a block of their own; an honest
  // file does that at its segment borders only, a hostile one for every value, so what all blocks together hold is
  // bounded by a small multiple of the file's size. A load beyond it fails as one without memory does.
  std::int64_t loadBudget;
  std::int32_t blockCount;
  // By page number (offset / 4096): of the blocks that reach this page, the one that ends last. Null while blocks are
  // so few that looking through the list is cheaper.
  LxBlock** pages;
  // Owned blocks that are no range of the file: extents put together, inflated bytes. Values may point into them.
  LxBlock* detached;
  // The one block of a cache over bytes in memory. It is current from the start and covers everything.
  LxBlock whole;
};

// A cache over an open stream, or over the bytes of a memory stream themselves. Null: no memory.
[[nodiscard]] LxBlockCache* LxNewBlockCache(LxStream* stream, std::int32_t fileSize) noexcept;

// Makes the record a cache over bytes in memory, with offsets from the first of them. It owns nothing: such a record
// need not be freed. REQUIRES: `length` readable bytes, for as long as the cache and the values mapped through it are
// used.
void LxInitMemoryCache(LxBlockCache* cache, const std::uint8_t* bytes, std::int32_t length) noexcept;

// A new block of `length` bytes that is no range of the file, or null: no memory. LxFreeBlockCache frees it, or
// LxFreeDetachedBlock before. The caller fills it through LxDetachedBytes.
[[nodiscard]] LxBlock* LxNewDetachedBlock(LxBlockCache* cache, std::int32_t length) noexcept;
[[nodiscard]] std::uint8_t* LxDetachedBytes(LxBlock* block) noexcept;
void LxFreeDetachedBlock(LxBlockCache* cache, LxBlock* block) noexcept;  // Takes null.

// Makes the range resident: kLxOk; kLxBadParameter outside the file; kLxOutOfMemory; kLxReadError.
[[nodiscard]] LxResult LxLoadRange(LxBlockCache* cache, std::int32_t offset, std::int32_t length) noexcept;

// The first byte of [offset, offset + length), or null: range outside the file, no memory, or a file shorter than it
// promised. At least `length` bytes are readable behind a non-null result.
[[nodiscard]] const std::uint8_t* LxMapRange(LxBlockCache* cache, std::int32_t offset, std::int32_t length) noexcept;

// The same for the unsigned 32-bit offsets and 64-bit lengths that files hold: what does not fit is outside the file.
[[nodiscard]] const std::uint8_t* LxMapFileRange(LxBlockCache* cache, std::uint64_t offset,
                                                 std::uint64_t length) noexcept;

// Frees the blocks and clears the record; the record itself is its owner's to free with LxFree. Takes null.
void LxFreeBlockCache(LxBlockCache* cache) noexcept;

#endif  // LXBRIDGE_KIT_BASE_BLOCK_CACHE_H_
