// Makes the nth call of operator new fail, and counts the blocks that are alive. Replaces the global operators of the
// program, its shared libraries included, so exactly one file of a program includes this.
#ifndef LXBRIDGE_TESTS_SUPPORT_FAILING_NEW_H_
#define LXBRIDGE_TESTS_SUPPORT_FAILING_NEW_H_

#include <cstddef>
#include <cstdlib>
#include <new>

#include "tests/support/failing_memory.h"

namespace lxtest {

// Counts and fails from its making to Stop or its end. One at a time, one thread.
class FailingNew {
 public:
  explicit FailingNew(int nth = 0, Failing failing = Failing::kOnce) : count_{nth, failing} { active_ = this; }
  ~FailingNew() { Stop(); }
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;

  void Stop() { active_ = nullptr; }
  void stopFailing() { count_.nth = 0; }
  [[nodiscard]] bool hasFailed() const { return count_.hasFailed; }
  [[nodiscard]] int allocations() const { return count_.allocations; }
  // Blocks made less blocks freed in its time.
  [[nodiscard]] int liveBlocks() const { return liveBlocks_; }

  // Not inlined: the compiler would see free meet what operator new has given and warn of it.
  [[gnu::noinline]] static void* Allocate(std::size_t size) noexcept {
    FailingNew* const self = active_;
    if (self != nullptr && self->count_.Fails()) return nullptr;
    void* const block = std::malloc(size != 0 ? size : 1);
    if (self != nullptr && block != nullptr) ++self->liveBlocks_;
    return block;
  }
  [[gnu::noinline]] static void Free(void* block) noexcept {
    if (active_ != nullptr && block != nullptr) --active_->liveBlocks_;
    std::free(block);
  }

 private:
  static inline FailingNew* active_ = nullptr;
  AllocationCount count_;
  int liveBlocks_ = 0;
};

}  // namespace lxtest

void* operator new(std::size_t size) {
  if (void* const block = lxtest::FailingNew::Allocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return lxtest::FailingNew::Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return lxtest::FailingNew::Allocate(size);
}
void operator delete(void* block) noexcept {
  lxtest::FailingNew::Free(block);
}
void operator delete[](void* block) noexcept {
  lxtest::FailingNew::Free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  lxtest::FailingNew::Free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  lxtest::FailingNew::Free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  lxtest::FailingNew::Free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  lxtest::FailingNew::Free(block);
}

#endif  // LXBRIDGE_TESTS_SUPPORT_FAILING_NEW_H_
