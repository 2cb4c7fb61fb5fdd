// The memory of one object.
#include "outside/xmp/storage.h"

#include <algorithm>

#include "outside/xmp/spares.h"

namespace velto {
namespace {

// The first chunk suffices for the properties of a photograph without a packet. Later chunks double in size.
constexpr std::size_t kFirstChunk = 16 * 1024;
constexpr std::size_t kLargestChunk = 256 * 1024;

struct SpareChunk;
constinit Spares<SpareChunk> spareChunks;

}  // namespace

Storage::~Storage() {
  while (Chunk* chunk = chunks_) {
    chunks_ = chunk->next;
    // The first chunk is the last of the list.
    if (chunks_ != nullptr || !spareChunks.keep(reinterpret_cast<SpareChunk*>(chunk))) ::operator delete(chunk);
  }
  while (Large* block = large_) {
    large_ = block->next;
    ::operator delete(block);
  }
}

void Storage::releaseSpares() noexcept {
  while (SpareChunk* chunk = spareChunks.take()) ::operator delete(chunk);
}

bool Storage::addChunk() noexcept {
  const std::size_t size = chunks_ == nullptr ? kFirstChunk : std::min(lastSize_ * 2, kLargestChunk);
  void* memory = chunks_ == nullptr ? spareChunks.take() : nullptr;
  if (memory == nullptr) memory = ::operator new(size, std::nothrow);
  if (memory == nullptr) return false;
  chunks_ = new (memory) Chunk{chunks_};
  lastSize_ = size;
  next_ = static_cast<char*>(memory) + sizeof(Chunk);
  left_ = size - sizeof(Chunk);
  return true;
}

void* Storage::takeLarge(std::size_t size) noexcept {
  void* memory = ::operator new(sizeof(Large) + size, std::nothrow);
  if (memory == nullptr) return nullptr;
  Large* block = new (memory) Large{nullptr, large_};
  if (large_ != nullptr) large_->previous = block;
  large_ = block;
  return block + 1;
}

void Storage::giveLarge(void* memory) noexcept {
  Large* block = static_cast<Large*>(memory) - 1;
  (block->previous != nullptr ? block->previous->next : large_) = block->next;
  if (block->next != nullptr) block->next->previous = block->previous;
  ::operator delete(block);
}

}  // namespace velto
