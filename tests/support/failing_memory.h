// Memory procedures whose nth allocation fails, and that count the blocks that are alive.
#ifndef LXBRIDGE_TESTS_SUPPORT_FAILING_MEMORY_H_
#define LXBRIDGE_TESTS_SUPPORT_FAILING_MEMORY_H_

#include <gtest/gtest.h>

#include <cstdlib>

#include "kit/base/memory.h"

namespace lxtest {

enum class Failing { kOnce, kFromThenOn };

// Counts allocations and says of each whether it fails.
struct AllocationCount {
  int nth;  // 0: none fails.
  Failing failing;
  int allocations = 0;
  bool hasFailed = false;

  bool Fails() noexcept {
    ++allocations;
    const bool fails = nth != 0 && (failing == Failing::kOnce ? allocations == nth : allocations >= nth);
    hasFailed = hasFailed || fails;
    return fails;
  }
};

// Installed for the length of its life; then the procedures from before are. All blocks made under it have to be freed
// under it.
class FailingMemory : private LxMemProcs {
 public:
  // Counts only, when nth is 0.
  explicit FailingMemory(int nth = 0, Failing failing = Failing::kOnce)
      : LxMemProcs{&kTable}, count_{nth, failing}, former_(LxInstalledMemProcs()) {
    LxInstallMemProcs(this);
  }
  ~FailingMemory() { LxInstallMemProcs(former_); }
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  [[nodiscard]] int allocations() const { return count_.allocations; }
  [[nodiscard]] int liveBlocks() const { return liveBlocks_; }
  [[nodiscard]] bool hasFailed() const { return count_.hasFailed; }
  void stopFailing() { count_.nth = 0; }
  [[nodiscard]] LxMemProcs* procs() { return this; }

 private:
  static FailingMemory* Of(LxMemProcs* procs) { return static_cast<FailingMemory*>(procs); }
  void* Count(void* block) {
    if (block != nullptr) ++liveBlocks_;
    return block;
  }
  static void* Allocate(LxMemProcs* procs, std::size_t size) {
    return Of(procs)->count_.Fails() ? nullptr : Of(procs)->Count(std::malloc(size));
  }
  static void* AllocateZeroed(LxMemProcs* procs, std::size_t count, std::size_t size) {
    return Of(procs)->count_.Fails() ? nullptr : Of(procs)->Count(std::calloc(count, size));
  }
  static void Release(LxMemProcs* procs, void* block) {
    if (block != nullptr) --Of(procs)->liveBlocks_;
    std::free(block);
  }
  static void* Reallocate(LxMemProcs* procs, void* block, std::size_t size) {
    if (Of(procs)->count_.Fails()) return nullptr;
    void* moved = std::realloc(block, size);
    return block == nullptr ? Of(procs)->Count(moved) : moved;
  }
  static std::int32_t Unused(LxMemProcs*) { return 0; }

  static constexpr LxMemProcTable kTable = {
      Allocate, AllocateZeroed, Release, Allocate, AllocateZeroed, Reallocate, Reallocate, Unused, Unused,
  };
  AllocationCount count_;
  LxMemProcs* former_;
  int liveBlocks_ = 0;
};

// Calls `work` with a memory whose nth allocation fails, for every n from `first` on that there is: each alone, and all
// from it on. Memory: FailingMemory or FailingNew.
template <typename Memory, typename Work>
void FailEveryAllocation(Work work, int first = 1) {
  constexpr int kFarBeyondAnySweep = 1'000'000;
  for (const Failing failing : {Failing::kOnce, Failing::kFromThenOn}) {
    bool hasFailed = true;
    for (int nth = first; hasFailed; ++nth) {
      SCOPED_TRACE(testing::Message() << "allocation " << nth);
      ASSERT_LT(nth, kFarBeyondAnySweep);
      Memory memory(nth, failing);
      work(memory, nth);
      hasFailed = memory.hasFailed();
      ASSERT_FALSE(testing::Test::HasFatalFailure());
    }
  }
}

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_FAILING_MEMORY_H_
