#include "kit/readers/boxes.h"

#include <algorithm>
#include <cstring>

#include "kit/base/byte_order.h"

namespace {

constexpr std::uint64_t kHeader = 8;       // Size and type.
constexpr std::uint64_t kLongHeader = 16;  // Size 1: a 64-bit size follows the type.
constexpr std::int32_t kExifOffset = 4;

}  // namespace

LxBoxWalk LxWalkFile(LxContainer* container, LxFileWindow* window) noexcept {
  return {container, window, 0, static_cast<std::uint64_t>(container->pool->blocks->fileSize)};
}

LxBoxWalk LxWalkBox(LxContainer* container, LxFileWindow* window, const LxBox& box, std::uint64_t header) noexcept {
  return {container, window, std::min(box.payload + header, box.end), box.end};
}

bool LxNextBox(LxBoxWalk* walk, LxBox* box) noexcept {
  const std::uint64_t left = walk->end - walk->at;
  if (left < kHeader || !LxChargeEntries(walk->container, 1)) return false;
  const auto wanted = static_cast<std::uint32_t>(std::min(left, kLongHeader));
  const std::uint8_t* header = walk->window != nullptr
                                   ? LxPeekRange(walk->window, walk->at, wanted)
                                   : LxMapFileRange(walk->container->pool->blocks, walk->at, wanted);
  if (header == nullptr) return false;
  std::uint64_t size = LxGet32(header, kLxBigEndian);
  std::uint64_t headerLength = kHeader;
  if (size == 0) size = left;  // Up to the end of the parent.
  if (size == 1) {
    if (left < kLongHeader) return false;
    size = std::uint64_t{LxGet32(header + 8, kLxBigEndian)} << 32 | LxGet32(header + 12, kLxBigEndian);
    headerLength = kLongHeader;
  }
  if (size < headerLength || size > left) return false;
  *box = {LxGet32(header + 4, kLxBigEndian), walk->at + headerLength, walk->at + size};
  walk->at += size;
  return true;
}

const std::uint8_t* LxMapBox(const LxContainer& container, const LxBox& box, std::uint64_t length) noexcept {
  return length <= box.end - box.payload ? LxMapFileRange(container.pool->blocks, box.payload, length) : nullptr;
}

const std::uint8_t* LxMapWholeBox(const LxContainer& container, const LxBox& box) noexcept {
  return box.end > box.payload ? LxMapBox(container, box, box.end - box.payload) : nullptr;
}

bool LxOfferExifItem(LxContainer* container, LxContainerBlock block) noexcept {
  const bool hasOffset =
      block.length >= kExifOffset && !LxIsBlock(kLxTiffBlock, block.bytes, block.length, block.length);
  if (hasOffset) {
    const std::uint32_t offset = LxGet32(block.bytes, kLxBigEndian);
    const std::int32_t rest = block.length - kExifOffset;
    const std::int32_t skipped = offset <= static_cast<std::uint32_t>(rest) ? static_cast<std::int32_t>(offset) : rest;
    block.bytes += kExifOffset + skipped;
    block.length = rest - skipped;
  }
  return LxOfferBlock(container, kLxTiffBlock, block);
}

bool LxHoldsPacket(const std::uint8_t* text, std::int32_t length) noexcept {
  constexpr const char* kElements[] = {"<x:xmpmeta", "<rdf:RDF"};
  const std::uint8_t* end = text + length;
  for (const std::uint8_t* at = text; at < end; ++at) {
    at = static_cast<const std::uint8_t*>(std::memchr(at, '<', static_cast<std::size_t>(end - at)));
    if (at == nullptr) return false;
    for (const char* element : kElements) {
      const std::size_t size = std::strlen(element);
      if (size <= static_cast<std::size_t>(end - at) && std::memcmp(at, element, size) == 0) return true;
    }
  }
  return false;
}

void LxSetAttribute(std::int32_t* attribute, std::uint32_t value) noexcept {
  if (value <= INT32_MAX) *attribute = static_cast<std::int32_t>(value);
}
