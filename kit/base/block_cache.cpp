// The block cache loads whole pages around each requested range and frees nothing before the cache itself, so values
// may overlap blocks, and blocks may overlap each other. Over bytes in memory, one block covers everything.
#include "kit/base/block_cache.h"

#include <algorithm>
#include <cstring>

#include "kit/base/kept_memory.h"
#include "kit/base/memory.h"
#include "kit/base/memory_stream.h"

namespace {

constexpr std::int64_t kPageSize = 4096;

// The total size of a file's blocks. A range that no single block covers loads a block of its own, and may do so just
// by crossing the end of one. An ordinary file does that once per segment or directory, and its blocks hold less than
// twice its metadata. A file that shifts a thousand overlapping values by a page would be read a thousand times; this
// bound stops it. The extra megabyte is for small files, whose ranges all touch the same few pages.
constexpr std::int64_t kLoadedPerFileByte = 4;
constexpr std::int64_t kLoadedAtLeast = 1 << 20;

// Files up to this length are read completely: one read costs less than several reads of pages.
constexpr std::int32_t kReadWhole = 16 << 10;

// From this number of blocks on, blocks are found by page. Photographs have fewer.
constexpr std::int32_t kBlocksWithoutPages = 16;

std::int64_t BlockEnd(const LxBlock* block) noexcept {
  return std::int64_t{block->start} + block->length;
}

void MakeCurrent(LxBlockCache* cache, LxBlock* block) noexcept {
  cache->current = block;
  cache->currentStart = block->start;
  cache->currentLength = block->length;
}

// Blocks begin at page boundaries, so a block that covers a range reaches the range's first page. If any block covers
// the range, the block that extends furthest from that page does. The page after a block counts as reached: the empty
// range at the block's end is covered by it.
void EnterIntoPages(LxBlockCache* cache, LxBlock* block) noexcept {
  const std::int64_t end = BlockEnd(block);
  for (std::int64_t page = block->start / kPageSize; page <= end / kPageSize; ++page) {
    if (cache->pages[page] == nullptr || BlockEnd(cache->pages[page]) < end) cache->pages[page] = block;
  }
}

// Enters all existing blocks by page. False: no memory.
bool MakePages(LxBlockCache* cache) noexcept {
  const auto bytes = static_cast<std::size_t>(cache->fileSize / kPageSize + 1) * sizeof(LxBlock*);
  cache->pages = static_cast<LxBlock**>(LxAlloc(bytes));
  if (cache->pages == nullptr) return false;
  std::memset(cache->pages, 0, bytes);
  for (LxBlock* block = cache->blocks; block != nullptr; block = block->next) EnterIntoPages(cache, block);
  return true;
}

// A block that covers the range, or null. If there are several, any will do: they hold the same bytes.
LxBlock* FindBlock(const LxBlockCache* cache, std::int64_t offset, std::int64_t end) noexcept {
  if (cache->pages != nullptr) {
    LxBlock* block = cache->pages[offset / kPageSize];
    return block != nullptr && end <= BlockEnd(block) ? block : nullptr;
  }
  for (LxBlock* block = cache->blocks; block != nullptr; block = block->next) {
    if (block->start <= offset && end <= BlockEnd(block)) return block;
  }
  return nullptr;
}

// Reads the block for an uncovered range inside the file, links it and makes it current.
LxResult LoadBlock(LxBlockCache* cache, std::int64_t offset, std::int64_t end) noexcept {
  const bool isWhole = cache->blocks == nullptr && cache->fileSize <= kReadWhole;
  const std::int64_t start = isWhole ? 0 : offset / kPageSize * kPageSize;
  const std::int64_t pagesEnd = ((isWhole ? cache->fileSize : end) + kPageSize - 1) / kPageSize * kPageSize;
  // The last page is read only up to the end of the file.
  const std::int64_t size = std::min<std::int64_t>(pagesEnd, cache->fileSize) - start;
  if (size > cache->loadBudget) return kLxOutOfMemory;
  if (cache->blockCount >= kBlocksWithoutPages && cache->pages == nullptr && !MakePages(cache)) return kLxOutOfMemory;

  auto* data =
      static_cast<std::uint8_t*>(LxAllocKept(LxInstalledMemProcs(), static_cast<std::size_t>(size), kLxPageAligned));
  if (data == nullptr) return kLxOutOfMemory;
  // A read that returns nothing counts as well: it costs as much time.
  cache->loadBudget -= size;
  const LxStreamMethods* methods = cache->stream->methods;
  std::int64_t got = 0;
  if (methods->seek(cache->stream, static_cast<std::int32_t>(start), SEEK_SET) == 0) {
    got = methods->read(data, 1, static_cast<std::int32_t>(size), cache->stream);
  }
  // The requested range lies inside the file, so a short read is a failure; the bytes read are kept.
  if (got < size) cache->stream->flags |= kLxStreamError;
  if (got <= 0) {
    LxFreeKept(data);
    return kLxReadError;
  }
  // The record shares the allocation with the bytes.
  static_assert(sizeof(LxBlock) <= kLxKeptFront);
  auto* block = static_cast<LxBlock*>(LxFrontOfKept(data));
  *block = {cache->blocks, static_cast<std::int32_t>(start), static_cast<std::int32_t>(std::min(got, size)), data};
  cache->blocks = block;
  ++cache->blockCount;
  if (cache->pages != nullptr) EnterIntoPages(cache, block);
  cache->highWater =
      static_cast<std::int32_t>(std::min<std::int64_t>(std::max<std::int64_t>(cache->highWater, pagesEnd), INT32_MAX));
  MakeCurrent(cache, block);
  return kLxOk;
}

}  // namespace

LxBlockCache* LxNewBlockCache(LxStream* stream, std::int32_t fileSize) noexcept {
  auto* cache = static_cast<LxBlockCache*>(LxAlloc(sizeof(LxBlockCache)));
  if (cache == nullptr) return nullptr;
  if (const std::uint8_t* bytes = LxStreamMemory(stream)) {
    LxInitMemoryCache(cache, bytes, std::max(fileSize, 0));
    return cache;
  }
  *cache = LxBlockCache{};
  cache->stream = stream;
  cache->fileSize = std::max(fileSize, 0);
  cache->loadBudget = kLoadedPerFileByte * cache->fileSize + kLoadedAtLeast;
  return cache;
}

void LxInitMemoryCache(LxBlockCache* cache, const std::uint8_t* bytes, std::int32_t length) noexcept {
  *cache = LxBlockCache{};
  cache->fileSize = length;
  cache->whole = {nullptr, 0, length, bytes};
  MakeCurrent(cache, &cache->whole);
}

LxBlock* LxNewDetachedBlock(LxBlockCache* cache, std::int32_t length) noexcept {
  auto* block = static_cast<LxBlock*>(LxAlloc(sizeof(LxBlock) + static_cast<std::size_t>(length)));
  if (block == nullptr) return nullptr;
  *block = {cache->detached, 0, length, LxDetachedBytes(block)};
  cache->detached = block;
  return block;
}

std::uint8_t* LxDetachedBytes(LxBlock* block) noexcept {
  return reinterpret_cast<std::uint8_t*>(block + 1);
}

void LxFreeDetachedBlock(LxBlockCache* cache, LxBlock* block) noexcept {
  for (LxBlock** link = &cache->detached; *link != nullptr; link = &(*link)->next) {
    if (*link != block) continue;
    *link = block->next;
    LxFree(block);
    return;
  }
}

LxResult LxLoadRange(LxBlockCache* cache, std::int32_t offset, std::int32_t length) noexcept {
  if (offset < 0 || length < 0 || offset > cache->fileSize || length > cache->fileSize - offset) {
    return kLxBadParameter;
  }
  const std::int64_t end = std::int64_t{offset} + length;
  if (LxCurrentBlockCovers(cache, offset, length)) return kLxOk;
  if (end <= cache->highWater) {
    if (LxBlock* block = FindBlock(cache, offset, end)) {
      MakeCurrent(cache, block);
      return kLxOk;
    }
  }
  return LoadBlock(cache, offset, end);
}

const std::uint8_t* LxLoadAndMapRange(LxBlockCache* cache, std::int32_t offset, std::int32_t length) noexcept {
  if (LxLoadRange(cache, offset, length) != kLxOk) return nullptr;
  // A range that has just been loaded may still be uncovered if the file was shorter than it promised. No other block
  // can cover it then, or nothing would have been loaded.
  if (!LxCurrentBlockCovers(cache, offset, length)) return nullptr;
  return cache->current->data + (offset - cache->currentStart);
}

void LxFreeBlockCache(LxBlockCache* cache) noexcept {
  if (cache == nullptr) return;
  while (LxBlock* block = cache->blocks) {
    cache->blocks = block->next;
    LxFreeKept(const_cast<std::uint8_t*>(block->data));
  }
  while (LxBlock* block = cache->detached) {
    cache->detached = block->next;
    LxFree(block);
  }
  LxFree(cache->pages);
  *cache = LxBlockCache{};
}
