// Finds blocks by address and by offset.
#include "tools/json/file_offsets.h"

#include <algorithm>

namespace lxbridge::json {

namespace {

std::uintptr_t AddressOf(const std::uint8_t* bytes) {
  return reinterpret_cast<std::uintptr_t>(bytes);
}

}  // namespace

FileOffsets::FileOffsets(const LxMetadataPool& pool) {
  const LxBlockCache* cache = pool.blocks;
  if (cache == nullptr) return;
  const auto add = [this](const LxBlock& block) {
    if (block.data != nullptr && block.length > 0)
      byAddress_.push_back({AddressOf(block.data), block.start, block.length});
  };
  for (const LxBlock* block = cache->blocks; block != nullptr; block = block->next) add(*block);
  if (cache->blocks != &cache->whole) add(cache->whole);
  byStart_ = byAddress_;
  std::sort(byAddress_.begin(), byAddress_.end(), [](const Block& a, const Block& b) { return a.address < b.address; });
  std::sort(byStart_.begin(), byStart_.end(), [](const Block& a, const Block& b) { return a.start < b.start; });
  for (std::size_t i = 0; i < byStart_.size(); ++i) {
    const auto end = [this](std::size_t n) { return byStart_[n].start + byStart_[n].length; };
    furthest_.push_back(i > 0 && end(furthest_.back()) >= end(i) ? furthest_.back() : i);
  }
}

std::optional<std::int64_t> FileOffsets::Of(const std::uint8_t* value, std::int32_t length) const {
  if (value == nullptr || length < 0) return std::nullopt;
  const std::uintptr_t address = AddressOf(value);
  const auto next = std::upper_bound(byAddress_.begin(), byAddress_.end(), address,
                                     [](std::uintptr_t wanted, const Block& block) { return wanted < block.address; });
  if (next == byAddress_.begin()) return std::nullopt;
  const Block& block = *(next - 1);
  const std::uintptr_t within = address - block.address;
  if (within > static_cast<std::uintptr_t>(block.length) ||
      static_cast<std::uintptr_t>(length) > static_cast<std::uintptr_t>(block.length) - within) {
    return std::nullopt;
  }
  return block.start + static_cast<std::int64_t>(within);
}

// The block that contains the byte and ends last, or null.
const FileOffsets::Block* FileOffsets::Holding(std::int64_t offset) const {
  const auto next = std::upper_bound(byStart_.begin(), byStart_.end(), offset,
                                     [](std::int64_t wanted, const Block& block) { return wanted < block.start; });
  if (next == byStart_.begin()) return nullptr;
  const Block& block = byStart_[furthest_[static_cast<std::size_t>(next - byStart_.begin()) - 1]];
  return offset < block.start + block.length ? &block : nullptr;
}

void FileOffsets::AppendBytes(std::int64_t offset, std::int64_t length, std::string* bytes) const {
  while (length > 0) {
    const Block* block = Holding(offset);
    if (block == nullptr) return;
    const std::int64_t within = offset - block->start;
    const std::int64_t count = std::min(length, block->length - within);
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    const char* from = reinterpret_cast<const char*>(block->address) + within;
    bytes->append(from, static_cast<std::size_t>(count));
    offset += count;
    length -= count;
  }
}

}  // namespace lxbridge::json
