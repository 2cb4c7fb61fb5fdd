// The source of all memory of the broker, for its own records and for the memory interface.
#ifndef LXBRIDGE_OUTSIDE_BROKER_MEMORY_H_
#define LXBRIDGE_OUTSIDE_BROKER_MEMORY_H_

#include <cstddef>

#include "clients/broker/broker_abi.h"

// Null: no memory. A size of 0 gives a block that can be freed.
void* BrokerAlloc(std::size_t size) noexcept;
void* BrokerAllocZeroed(std::size_t count, std::size_t size) noexcept;
void* BrokerRealloc(void* block, std::size_t size) noexcept;
void BrokerFree(void* block) noexcept;

extern const TALMemoryProcs kMemoryProcs;

#endif  // LXBRIDGE_OUTSIDE_BROKER_MEMORY_H_
