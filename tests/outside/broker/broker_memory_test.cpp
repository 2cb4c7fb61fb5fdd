// The broker when there is no memory: its own sources, with memory whose nth allocation fails.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <string>

#include "clients/broker/broker_abi.h"
#include "outside/broker/memory.h"
#include "tests/support/broker_procs.h"
#include "tests/support/failing_memory.h"

namespace {

lxtest::AllocationCount allocations = {0, lxtest::Failing::kOnce};
int liveBlocks = 0;

void* Counted(void* block) {
  if (block) ++liveBlocks;
  return block;
}

void ProcOne() {}

// Everything of the broker that allocates, each step with a result that is either right or "Out of memory". False when
// any step failed.
bool UseEverything(const BrokerProcs& broker) {
  bool whole = true;
  const auto succeeded = [&](TALErrorRef error) {
    const std::string message = broker.Take(error);
    EXPECT_TRUE(message.empty() || message == "Out of memory") << message;
    if (!message.empty()) whole = false;
    return message.empty();
  };

  const TALLookupProc lookUp = TALOrdinal5();
  const bool registered = succeeded(broker.core.registerProcAddress("Memory test", "A", "A_Static", ProcOne));
  EXPECT_EQ(lookUp("Memory test", "A", "A_Static"), registered ? ProcOne : nullptr);
  const bool second = succeeded(broker.core.registerProcAddress("Memory test", "B", "B_Static", ProcOne));

  TALKindRef kind = nullptr;
  if (succeeded(broker.containers.newKind(&kind, "Kind", nullptr))) {
    const bool hasMethod = succeeded(broker.containers.addMethod(kind, "Method", "Kind_Method", ProcOne));
    TALContainerRef container = nullptr;
    if (succeeded(broker.containers.newContainer(&container, kind, nullptr))) {
      const TALStringAtom shortName = broker.strings.newStringAtom("Method");
      const TALStringAtom qualifiedName = broker.strings.newStringAtom("Kind_Method");
      if (shortName && qualifiedName) {
        TALProc found = nullptr;
        EXPECT_EQ(broker.containers.getMethod(&found, container, shortName, qualifiedName, 1), nullptr);
        EXPECT_EQ(found, hasMethod ? ProcOne : nullptr);
      } else {
        whole = false;
      }
      broker.strings.deleteStringAtom(shortName);
      broker.strings.deleteStringAtom(qualifiedName);
      EXPECT_EQ(broker.containers.release(container), nullptr);
    } else {
      EXPECT_EQ(container, nullptr);
    }
    EXPECT_EQ(broker.containers.deleteKind(kind), nullptr);
  } else {
    EXPECT_EQ(kind, nullptr);
  }
  if (registered || second) {
    EXPECT_EQ(broker.core.unregisterInterface("Memory test"), nullptr);
  }
  EXPECT_EQ(lookUp("Memory test", "A", "A_Static"), nullptr);

  const TALErrorRef error = broker.errors.newError("message", "component", 5);
  EXPECT_NE(error, nullptr);
  if (broker.errors.getId(error) != 5) {
    whole = false;
    EXPECT_EQ(error, broker.errors.getCoreError(0));
  }
  broker.errors.release(error);
  return whole;
}

}  // namespace

void* BrokerAlloc(std::size_t size) noexcept {
  return allocations.Fails() ? nullptr : Counted(std::malloc(size));
}
void* BrokerAllocZeroed(std::size_t count, std::size_t size) noexcept {
  return allocations.Fails() ? nullptr : Counted(std::calloc(count, size));
}
void* BrokerRealloc(void* block, std::size_t size) noexcept {
  return allocations.Fails() ? nullptr : std::realloc(block, size);
}
void BrokerFree(void* block) noexcept {
  if (block) --liveBlocks;
  std::free(block);
}
constinit const TALMemoryProcs kMemoryProcs = {BrokerAlloc, BrokerAllocZeroed, BrokerRealloc, BrokerFree};

namespace {

TEST(BrokerMemory, EveryFailedAllocationIsAnErrorAndLosesNothing) {
  // The entry point gives no lookup procedure until the broker could register itself, and goes on where it stopped.
  int nth = 0;
  TALLookupProc lookUp = nullptr;
  while (!lookUp) {
    ASSERT_LT(nth, 1000);
    allocations = {++nth, lxtest::Failing::kOnce};
    lookUp = TALOrdinal5();
  }
  EXPECT_GT(nth, 2);

  const BrokerProcs broker(lookUp);
  for (const lxtest::Failing failing : {lxtest::Failing::kOnce, lxtest::Failing::kFromThenOn}) {
    allocations = {0, failing};
    ASSERT_TRUE(UseEverything(broker));  // The tables' buckets are there now, and stay.
    const int before = liveBlocks;
    nth = 0;
    do {
      allocations = {++nth, failing};
      const bool whole = UseEverything(broker);
      EXPECT_EQ(whole, !allocations.hasFailed) << "allocation " << nth;
      EXPECT_EQ(liveBlocks, before) << "allocation " << nth;
      EXPECT_EQ(broker.errors.getLiveCount(), 0u) << "allocation " << nth;
    } while (allocations.hasFailed);
    EXPECT_GT(nth, 8);
    allocations = {0, failing};
  }
}

}  // namespace
