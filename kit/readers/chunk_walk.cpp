#include "kit/readers/chunk_walk.h"

#include <algorithm>

#include "kit/base/byte_order.h"

namespace {

constexpr std::uint32_t kHeaderLength = 8;
constexpr std::uint32_t kChecksumLength = 4;
constexpr std::uint32_t kBlockStart = 14;  // Enough to recognise a block.

}  // namespace

bool LxNextChunk(LxChunkWalk* walk, LxChunk* chunk) noexcept {
  const std::uint8_t* header = LxPeekRange(walk->window, walk->next, kHeaderLength);
  if (header == nullptr || !LxChargeEntries(walk->container, 1)) return false;
  const bool isPng = walk->form == kLxPngChunks;
  chunk->type = LxGet32(header + (isPng ? 4 : 0), kLxBigEndian);
  chunk->length = isPng ? LxGet32(header, kLxBigEndian) : LxGet32(header + 4, kLxLittleEndian);
  const std::uint64_t data = walk->next + kHeaderLength;
  if (chunk->length > static_cast<std::uint64_t>(walk->window->fileSize) - data) return false;
  chunk->data = static_cast<std::uint32_t>(data);
  walk->next = data + chunk->length + (isPng ? kChecksumLength : chunk->length % 2);
  return true;
}

void LxOfferChunk(LxChunkWalk* walk, const LxChunk& chunk, LxContainerBlockKind kind, const char* name) noexcept {
  if (!LxWantsBlock(*walk->container, kind, 0)) return;
  const auto length = static_cast<std::int32_t>(chunk.length);
  const std::uint32_t startLength = std::min(chunk.length, kBlockStart);
  const std::uint8_t* first = LxPeekRange(walk->window, chunk.data, startLength);
  if (first == nullptr || !LxIsBlock(kind, first, static_cast<std::int32_t>(startLength), length)) return;
  const std::uint8_t* bytes = LxMapFileRange(walk->container->pool->blocks, chunk.data, chunk.length);
  LxOfferBlock(walk->container, kind, {name, "", bytes, length, nullptr, 0});
}
