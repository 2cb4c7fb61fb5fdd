// The broker's memory: that of the C runtime.
#include "outside/broker/memory.h"

#include <cstdlib>

// A null result always means "no memory", so that nobody has to ask for the size again; malloc(0) may give null.
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
