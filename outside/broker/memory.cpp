// The broker's memory, from the C runtime.
#include "outside/broker/memory.h"

#include <cstdlib>

// A null result always means that there is no memory; malloc(0) may return null.
void* BrokerAlloc(std::size_t size) noexcept {
  return std::malloc(size ? size : 1);
}

void* BrokerAllocZeroed(std::size_t count, std::size_t size) noexcept {
  return count && size ? std::calloc(count, size) : std::calloc(1, 1);
}

void* BrokerRealloc(void* block, std::size_t size) noexcept {
  return std::realloc(block, size ? size : 1);
}

void BrokerFree(void* block) noexcept {
  std::free(block);
}

constinit const TALMemoryProcs kMemoryProcs = {BrokerAlloc, BrokerAllocZeroed, BrokerRealloc, BrokerFree};
