// The kit's allocator, and its memory procedures on the C runtime.
#include "kit/base/memory.h"

#include <cstdlib>
#include <cstring>

namespace {

void* Allocate(LxMemProcs*, std::size_t size) {
  return std::malloc(size);
}
void* AllocateZeroed(LxMemProcs*, std::size_t count, std::size_t size) {
  // If the product wrapped, the block would be too short.
  if (size != 0 && count > SIZE_MAX / size) return nullptr;
  return std::calloc(count, size);
}
void Release(LxMemProcs*, void* block) {
  std::free(block);
}
void* Reallocate(LxMemProcs*, void* block, std::size_t size) {
  return std::realloc(block, size);
}
std::int32_t Unused(LxMemProcs*) {
  return 0;
}

constexpr LxMemProcTable kRuntimeTable = {
    Allocate, AllocateZeroed, Release, Allocate, AllocateZeroed, Reallocate, Reallocate, Unused, Unused,
};
constinit LxMemProcs runtimeProcs = {&kRuntimeTable};

constinit LxMemProcs* installedProcs = nullptr;
constinit thread_local std::uint32_t refusedAllocations = 0;

}  // namespace

LxMemProcs* LxRuntimeMemProcs() noexcept {
  return &runtimeProcs;
}

void LxInstallMemProcs(LxMemProcs* procs) noexcept {
  installedProcs = procs;
}

LxMemProcs* LxInstalledMemProcs() noexcept {
  return installedProcs;
}

void* LxAlloc(std::size_t size) noexcept {
  if (installedProcs == nullptr) return nullptr;
  // malloc(0) may return null, which callers would take for a lack of memory.
  void* block = installedProcs->table->allocate(installedProcs, size == 0 ? 1 : size);
  if (block == nullptr) [[unlikely]]
    LxNoteRefusedAllocation();
  return block;
}

std::uint32_t LxRefusedAllocations() noexcept {
  return refusedAllocations;
}

void LxNoteRefusedAllocation() noexcept {
  ++refusedAllocations;
}

void LxFree(void* block) noexcept {
  if (block != nullptr && installedProcs != nullptr) installedProcs->table->release(installedProcs, block);
}

char* LxCopyText(const void* bytes, std::size_t length) noexcept {
  if (length == SIZE_MAX) return nullptr;
  char* copy = static_cast<char*>(LxAlloc(length + 1));
  if (copy == nullptr) return nullptr;
  if (length != 0) std::memcpy(copy, bytes, length);
  copy[length] = 0;
  return copy;
}
