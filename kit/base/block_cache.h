// Byte ranges of one open file, kept in memory so that values can point into them. Offsets and lengths are bytes from
// the start of the file. The cache borrows the stream and owns its blocks; a mapped pointer is valid until
// LxFreeBlockCache, also after later loads and after the stream is closed. Readers map here every byte that a value may
// point to. Three kinds of bytes are read without being kept: the first bytes of a file, which tell its kind
// (kit/readers/file_kind.cpp), the headers of BMP files, and the headers seen through a file window (file_window.h).
#ifndef LXBRIDGE_KIT_BASE_BLOCK_CACHE_H_
#define LXBRIDGE_KIT_BASE_BLOCK_CACHE_H_

#include <cstdint>

#include "kit/base/result.h"
#include "kit/base/stream.h"

struct LxBlock {
  LxBlock* next;
  std::int32_t start;   // A multiple of 4096.
  std::int32_t length;  // Bytes that were read.
  const std::uint8_t* data;
};

struct LxBlockCache {
  LxStream* stream;
  std::int32_t fileSize;
  std::int32_t highWater;  // No block ends after it (rounded up to whole pages).
  LxBlock* blocks;         // Most recently loaded first.
  LxBlock* current;
  std::int32_t currentStart;
  std::int32_t currentLength;
  // Bytes that may still be loaded, a small multiple of the file's size. Without this bound, a hostile file whose
  // values overlap, each shifted by a page, would load a block for every value. A load beyond it fails as if there were
  // no memory.
  std::int64_t loadBudget;
  std::int32_t blockCount;
  // By page number (offset / 4096): of the blocks that reach this page, the one that ends last. Null while there are so
  // few blocks that searching the list is cheaper.
  LxBlock** pages;
  // Owned blocks that are not a range of the file: joined extents, inflated bytes. Values may point into them.
  LxBlock* detached;
  // The only block of a cache over bytes in memory. It is current from the start and covers everything.
  LxBlock whole;
};

// A cache over an open stream, or directly over the bytes of a memory stream. Null: no memory.
[[nodiscard]] LxBlockCache* LxNewBlockCache(LxStream* stream, std::int32_t fileSize) noexcept;

// Makes the record a cache over bytes in memory, with offsets from the first byte. It owns nothing, so it need not be
// freed. REQUIRES: `length` readable bytes, for as long as the cache or a value mapped through it is used.
void LxInitMemoryCache(LxBlockCache* cache, const std::uint8_t* bytes, std::int32_t length) noexcept;

// A new block of `length` bytes that is not a range of the file, or null: no memory. The caller fills it through
// LxDetachedBytes. It is freed by LxFreeBlockCache, or earlier by LxFreeDetachedBlock.
[[nodiscard]] LxBlock* LxNewDetachedBlock(LxBlockCache* cache, std::int32_t length) noexcept;
[[nodiscard]] std::uint8_t* LxDetachedBytes(LxBlock* block) noexcept;
void LxFreeDetachedBlock(LxBlockCache* cache, LxBlock* block) noexcept;  // Takes null.

// Loads the range: kLxOk; kLxBadParameter if it is outside the file; kLxOutOfMemory; kLxReadError.
[[nodiscard]] LxResult LxLoadRange(LxBlockCache* cache, std::int32_t offset, std::int32_t length) noexcept;

[[nodiscard]] inline bool LxCurrentBlockCovers(const LxBlockCache* cache, std::int32_t offset,
                                               std::int32_t length) noexcept {
  return cache->current != nullptr && length >= 0 && cache->currentStart <= offset &&
         std::int64_t{offset} + length <= std::int64_t{cache->currentStart} + cache->currentLength;
}

// The first byte of [offset, offset + length), or null: the range is outside the file, there is no memory, or the file
// is shorter than it promised. A non-null result is followed by at least `length` readable bytes.
[[nodiscard]] const std::uint8_t* LxLoadAndMapRange(LxBlockCache* cache, std::int32_t offset,
                                                    std::int32_t length) noexcept;
[[nodiscard]] inline const std::uint8_t* LxMapRange(LxBlockCache* cache, std::int32_t offset,
                                                    std::int32_t length) noexcept {
  if (LxCurrentBlockCovers(cache, offset, length)) return cache->current->data + (offset - cache->currentStart);
  return LxLoadAndMapRange(cache, offset, length);
}

// The same for the unsigned 32-bit offsets and 64-bit lengths found in files: values that do not fit are outside the
// file.
[[nodiscard]] inline const std::uint8_t* LxMapFileRange(LxBlockCache* cache, std::uint64_t offset,
                                                        std::uint64_t length) noexcept {
  if (offset > INT32_MAX || length > INT32_MAX) return nullptr;
  return LxMapRange(cache, static_cast<std::int32_t>(offset), static_cast<std::int32_t>(length));
}

// Frees the blocks and clears the record. The owner frees the record itself with LxFree. Takes null.
void LxFreeBlockCache(LxBlockCache* cache) noexcept;

#endif  // LXBRIDGE_KIT_BASE_BLOCK_CACHE_H_
