// Objects that are kept for reuse by any thread, because creating them costs as much as using them. Only a few are
// kept; releaseSpares frees them. Taking or keeping one is a single atomic exchange, so threads do not wait.
#ifndef LXBRIDGE_OUTSIDE_XMP_SPARES_H_
#define LXBRIDGE_OUTSIDE_XMP_SPARES_H_

#include <atomic>
#include <cstddef>

namespace velto {

// Threads are numbered in the order of their first call.
inline std::size_t threadNumber() noexcept {
  static constinit std::atomic<std::size_t> numbered{0};
  static constinit thread_local std::size_t number = 0;  // From 1. 0: none yet.
  if (number == 0) number = numbered.fetch_add(1, std::memory_order_relaxed) + 1;
  return number;
}

template <typename T>
class Spares {
 public:
  // A kept object, or null.
  T* take() noexcept {
    const std::size_t start = startSlot();
    for (std::size_t step = 0; step < kSlots; ++step) {
      std::atomic<T*>& kept = slots_[(start + step) % kSlots].kept;
      if (kept.load(std::memory_order_relaxed) == nullptr) continue;
      if (T* spare = kept.exchange(nullptr, std::memory_order_acquire)) return spare;
    }
    return nullptr;
  }

  // False: no slot is free, and the object remains the caller's.
  bool keep(T* spare) noexcept {
    const std::size_t start = startSlot();
    for (std::size_t step = 0; step < kSlots; ++step) {
      std::atomic<T*>& kept = slots_[(start + step) % kSlots].kept;
      T* none = nullptr;
      if (kept.load(std::memory_order_relaxed) == nullptr &&
          kept.compare_exchange_strong(none, spare, std::memory_order_release, std::memory_order_relaxed)) {
        return true;
      }
    }
    return false;
  }

 private:
  static constexpr std::size_t kSlots = 8;

  // A few threads start at different slots and take back what they kept, which is still in their processor's cache.
  static std::size_t startSlot() noexcept { return threadNumber() % kSlots; }

  struct alignas(64) Slot {
    std::atomic<T*> kept{nullptr};
  };
  Slot slots_[kSlots];
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_SPARES_H_
