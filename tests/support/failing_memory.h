// Memory procedures whose nth allocation fails, and that count the blocks that are alive. Uses kit/base/memory.h.
#ifndef LXBRIDGE_TESTS_SUPPORT_FAILING_MEMORY_H_
#define LXBRIDGE_TESTS_SUPPORT_FAILING_MEMORY_H_

#include <cstdlib>

#include "kit/base/memory.h"

namespace lxtest {

enum class Failing { kOnce, kFromThenOn };

// Installed for the length of its life; then the procedures from before are. All blocks made under it have to be freed
// under it.
//
//   for (Failing failing : {Failing::kOnce, Failing::kFromThenOn}) {
//     for (int nth = 1;; ++nth) {
//       FailingMemory memory(nth, failing);
//       ...
//       EXPECT_EQ(memory.liveBlocks(), 0) << "allocation " << nth;
//       if (!memory.hasFailed()) break;
//     }
//   }
class FailingMemory : private LxMemProcs {
 public:
  // Counts only, when nth is 0.
  explicit FailingMemory(int nth = 0, Failing failing = Failing::kOnce)
      : LxMemProcs{&kTable}, nth_(nth), failing_(failing), former_(LxInstalledMemProcs()) {
    LxInstallMemProcs(this);
  }
  ~FailingMemory() { LxInstallMemProcs(former_); }
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  [[nodiscard]] int allocations() const { return allocations_; }
  [[nodiscard]] int liveBlocks() const { return liveBlocks_; }
  [[nodiscard]] bool hasFailed() const { return hasFailed_; }
  void stopFailing() { nth_ = 0; }
  [[nodiscard]] LxMemProcs* procs() { return this; }

 private:
  static FailingMemory* Of(LxMemProcs* procs) { return static_cast<FailingMemory*>(procs); }
  void* Count(void* block) {
    if (block != nullptr) ++liveBlocks_;
    return block;
  }
  bool Fails() {
    ++allocations_;
    const bool fails = nth_ != 0 && (failing_ == Failing::kOnce ? allocations_ == nth_ : allocations_ >= nth_);
    hasFailed_ = hasFailed_ || fails;
    return fails;
  }
  static void* Allocate(LxMemProcs* procs, std::size_t size) {
    return Of(procs)->Fails() ? nullptr : Of(procs)->Count(std::malloc(size));
  }
  static void* AllocateZeroed(LxMemProcs* procs, std::size_t count, std::size_t size) {
    return Of(procs)->Fails() ? nullptr : Of(procs)->Count(std::calloc(count, size));
  }
  static void Release(LxMemProcs* procs, void* block) {
    if (block != nullptr) --Of(procs)->liveBlocks_;
    std::free(block);
  }
  static void* Reallocate(LxMemProcs* procs, void* block, std::size_t size) {
    if (Of(procs)->Fails()) return nullptr;
    void* moved = std::realloc(block, size);
    return block == nullptr ? Of(procs)->Count(moved) : moved;
  }
  static std::int32_t Unused(LxMemProcs*) { return 0; }

  static constexpr LxMemProcTable kTable = {
      Allocate, AllocateZeroed, Release, Allocate, AllocateZeroed, Reallocate, Reallocate, Unused, Unused,
  };
  int nth_;
  Failing failing_;
  LxMemProcs* former_;
  int allocations_ = 0;
  int liveBlocks_ = 0;
  bool hasFailed_ = false;
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_FAILING_MEMORY_H_
