// Things that are kept for the next object, of whatever thread: making them costs as much as using them. At most a few
// are kept, and releaseSpares gives them back. Taking and keeping one is a single exchange, so threads do not wait.
#ifndef LXBRIDGE_OUTSIDE_XMP_SPARES_H_
#define LXBRIDGE_OUTSIDE_XMP_SPARES_H_

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace velto {

template <typename T>
class Spares {
 public:
  // A kept one, or null.
  T* take() noexcept {
    const std::size_t start = startSlot();
    for (std::size_t step = 0; step < kSlots; ++step) {
      std::atomic<T*>& kept = slots_[(start + step) % kSlots].kept;
      if (kept.load(std::memory_order_relaxed) == nullptr) continue;
      if (T* spare = kept.exchange(nullptr, std::memory_order_acquire)) return spare;
    }
    return nullptr;
  }

  // False: as many as may be are kept already, and the caller still has this one.
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

  // Threads have stacks of their own, so they mostly begin at different slots and get back what they gave.
  static std::size_t startSlot() noexcept {
    const char onStack = 0;
    const auto address = reinterpret_cast<std::uintptr_t>(&onStack);
    return static_cast<std::size_t>(((std::uint64_t{address} >> 16) * 0x9E3779B97F4A7C15u) >> 32) % kSlots;
  }

  struct alignas(64) Slot {
    std::atomic<T*> kept{nullptr};
  };
  Slot slots_[kSlots];
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_SPARES_H_
