// The memory of an object's nodes and texts. Small blocks are cut from large ones, a freed block is reused for a
// request of the same size, and everything is freed with the object.
//
// Under AddressSanitizer every block is allocated separately, so that a use after free is detected.
#ifndef LXBRIDGE_OUTSIDE_XMP_STORAGE_H_
#define LXBRIDGE_OUTSIDE_XMP_STORAGE_H_

#include <cstddef>
#include <new>

namespace velto {

class Storage {
 public:
#if defined(__SANITIZE_ADDRESS__)
  static constexpr bool kPooled = false;
#elif defined(__has_feature)
  static constexpr bool kPooled = !__has_feature(address_sanitizer);
#else
  static constexpr bool kPooled = true;
#endif

  Storage() = default;
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;
  ~Storage();

  // Raises std::bad_alloc.
  void* take(std::size_t size) {
    void* block = tryTake(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
  }
  // Null: no memory.
  void* tryTake(std::size_t size) noexcept {
    if (!kPooled || size > kLargestSmall) return takeLarge(size);
    const std::size_t units = (size + kUnit - 1) / kUnit;
    Free*& first = free_[units];
    if (Free* block = first) {
      first = block->next;
      return block;
    }
    if (left_ < units * kUnit && !addChunk()) return nullptr;
    void* block = next_;
    next_ += units * kUnit;
    left_ -= units * kUnit;
    return block;
  }
  // `size` is the size taken. Null: nothing.
  void give(void* block, std::size_t size) noexcept {
    if (block == nullptr) return;
    if (!kPooled || size > kLargestSmall) {
      giveLarge(block);
      return;
    }
    Free*& first = free_[(size + kUnit - 1) / kUnit];
    first = new (block) Free{first};
  }

  // Frees the chunks that are kept for later objects.
  static void releaseSpares() noexcept;

 private:
  struct Free {
    Free* next;
  };
  // Precedes a chunk, and a block that is too large for a chunk.
  struct alignas(16) Chunk {
    Chunk* next;
  };
  struct alignas(16) Large {
    Large* previous;
    Large* next;
  };

  static constexpr std::size_t kUnit = 16;
  static constexpr std::size_t kLargestSmall = 512;

  bool addChunk() noexcept;
  void* takeLarge(std::size_t size) noexcept;
  void giveLarge(void* block) noexcept;

  char* next_ = nullptr;
  std::size_t left_ = 0;
  std::size_t lastSize_ = 0;  // Of the last chunk.
  Chunk* chunks_ = nullptr;
  Large* large_ = nullptr;
  Free* free_[kLargestSmall / kUnit + 1] = {};
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_STORAGE_H_
