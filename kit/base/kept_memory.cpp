#include "kit/base/kept_memory.h"

#include <pthread.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <mutex>

namespace {

constexpr std::size_t kPageSize = 4096;
constexpr std::size_t kKeptPerThread = std::size_t{2} << 20;

// Kept sizes are a page to 512 KiB, in four steps from each power of 2 to the next: a request that is rounded up
// further could leave half of a large file's memory unused.
constexpr int kSmallestShift = 12;
constexpr int kDoublings = 7;
constexpr std::uint32_t kClasses = 4 * kDoublings + 1;
constexpr std::size_t kLargestKept = std::size_t{1} << (kSmallestShift + kDoublings);

struct SizeClass {
  std::uint32_t number;  // Below kClasses.
  std::size_t size;
};

// REQUIRES: at most kLargestKept.
SizeClass ClassOf(std::size_t size) noexcept {
  if (size <= kPageSize) return {0, kPageSize};
  const int shift = static_cast<int>(std::bit_width(size - 1)) - 1;  // 2^shift < size.
  const std::size_t step = std::size_t{1} << (shift - 2);
  const std::size_t steps = (size + step - 1) / step;  // 5 to 8.
  return {static_cast<std::uint32_t>(4 * (shift - kSmallestShift)) + static_cast<std::uint32_t>(steps - 4),
          steps * step};
}

// AddressSanitizer must see the end of each block.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMayKeep = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kMayKeep = false;
#else
constexpr bool kMayKeep = true;
#endif
#else
constexpr bool kMayKeep = true;
#endif

// Precedes the memory that is handed out.
struct alignas(16) Header {
  void* raw;
  Header* next;  // While it is kept.
  LxMemProcs* procs;
  std::uint32_t capacity;  // Bytes requested from the procedures. 0: too large to be kept.
  std::uint32_t shape;     // Index of the list that keeps it.
};

// The memory that one thread keeps, by capacity and alignment.
struct Shelf {
  Header* lists[2 * kClasses];
  std::size_t bytes;
  Shelf* next;
  Shelf** link;
};

constinit bool isKeeping = false;
constinit pthread_key_t shelfKey{};
std::mutex lock;  // Of the list of shelves.
constinit Shelf* shelves = nullptr;

void Empty(Shelf* shelf) noexcept {
  for (Header*& list : shelf->lists) {
    while (Header* header = list) {
      list = header->next;
      header->procs->table->release(header->procs, header->raw);
    }
  }
  shelf->bytes = 0;
}

// At a thread's end.
extern "C" void DropShelf(void* dropped) {
  auto* shelf = static_cast<Shelf*>(dropped);
  const std::lock_guard<std::mutex> guard(lock);
  *shelf->link = shelf->next;
  if (shelf->next != nullptr) shelf->next->link = shelf->link;
  Empty(shelf);
  std::free(shelf);
}

Shelf* ShelfOfThread() noexcept {
  return static_cast<Shelf*>(pthread_getspecific(shelfKey));
}

// Null: no memory. Then nothing is kept.
Shelf* NewShelf() noexcept {
  auto* shelf = static_cast<Shelf*>(std::calloc(1, sizeof(Shelf)));
  if (shelf == nullptr || pthread_setspecific(shelfKey, shelf) != 0) {
    std::free(shelf);
    return nullptr;
  }
  const std::lock_guard<std::mutex> guard(lock);
  shelf->next = shelves;
  shelf->link = &shelves;
  if (shelves != nullptr) shelves->link = &shelf->next;
  shelves = shelf;
  return shelf;
}

Header* HeaderOf(void* memory) noexcept {
  return static_cast<Header*>(memory) - 1;
}

}  // namespace

void LxStartKeepingMemory() noexcept {
  if (kMayKeep && !isKeeping) isKeeping = pthread_key_create(&shelfKey, DropShelf) == 0;
}

void LxStopKeepingMemory() noexcept {
  if (!isKeeping) return;
  isKeeping = false;
  pthread_key_delete(shelfKey);
  while (Shelf* shelf = shelves) {
    shelves = shelf->next;
    Empty(shelf);
    std::free(shelf);
  }
}

void LxReleaseThreadMemory() noexcept {
  if (!isKeeping) return;
  if (Shelf* shelf = ShelfOfThread()) Empty(shelf);
}

std::size_t LxKeptByThread() noexcept {
  const Shelf* shelf = isKeeping ? ShelfOfThread() : nullptr;
  return shelf != nullptr ? shelf->bytes : 0;
}

bool LxKeepsMemoryOf(const LxMemProcs* procs) noexcept {
  return isKeeping && procs == LxRuntimeMemProcs();
}

void* LxAllocKept(LxMemProcs* procs, std::size_t size, LxAlignment alignment) noexcept {
  if (procs == nullptr) return nullptr;
  const bool aligned = alignment == kLxPageAligned;
  const std::size_t extra = sizeof(Header) + (aligned ? kLxKeptFront + kPageSize : 0);
  if (size > SIZE_MAX - extra) return nullptr;
  std::size_t asked = size + extra;
  std::uint32_t capacity = 0, shape = 0;
  if (LxKeepsMemoryOf(procs) && size <= kLargestKept) {
    const SizeClass sizeClass = ClassOf(size);
    asked = sizeClass.size + extra;
    capacity = static_cast<std::uint32_t>(asked);
    shape = 2 * sizeClass.number + (aligned ? 1 : 0);
    Shelf* shelf = ShelfOfThread();
    if (shelf != nullptr && shelf->lists[shape] != nullptr) {
      Header* header = shelf->lists[shape];
      shelf->lists[shape] = header->next;
      shelf->bytes -= header->capacity;
      return header + 1;
    }
  }
  void* raw = procs->table->allocate(procs, asked);
  if (raw == nullptr) {
    LxNoteRefusedAllocation();
    return nullptr;
  }
  auto* at = static_cast<std::uint8_t*>(raw) + extra - (aligned ? kPageSize : 0);
  if (aligned) at += -reinterpret_cast<std::uintptr_t>(at) % kPageSize;
  *HeaderOf(at) = {raw, nullptr, procs, capacity, shape};
  return at;
}

void* LxFrontOfKept(void* memory) noexcept {
  return reinterpret_cast<std::uint8_t*>(HeaderOf(memory)) - kLxKeptFront;
}

void LxFreeKept(void* memory) noexcept {
  if (memory == nullptr) return;
  Header* header = HeaderOf(memory);
  if (isKeeping && header->capacity != 0) {
    Shelf* shelf = ShelfOfThread();
    if (shelf == nullptr) shelf = NewShelf();
    if (shelf != nullptr && header->capacity <= kKeptPerThread - shelf->bytes) {
      header->next = shelf->lists[header->shape];
      shelf->lists[header->shape] = header;
      shelf->bytes += header->capacity;
      return;
    }
  }
  header->procs->table->release(header->procs, header->raw);
}
