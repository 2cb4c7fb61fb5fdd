// The kit's allocator. Every block of the kit comes from the memory procedures that the process has installed, so tests
// and hosts can watch allocations or make them fail. The procedures are process-wide and do not change while threads
// use the kit.
#ifndef LXBRIDGE_KIT_BASE_MEMORY_H_
#define LXBRIDGE_KIT_BASE_MEMORY_H_

#include <cstddef>
#include <cstdint>

struct LxMemProcs;

// Nine procedures, each with its record as the first argument. Allocation returns null when there is no memory.
struct LxMemProcTable {
  void* (*allocate)(LxMemProcs* procs, std::size_t size);
  void* (*allocateZeroed)(LxMemProcs* procs, std::size_t count, std::size_t size);
  void (*release)(LxMemProcs* procs, void* block);
  void* (*allocateAgain)(LxMemProcs* procs, std::size_t size);                           // As allocate.
  void* (*allocateZeroedAgain)(LxMemProcs* procs, std::size_t count, std::size_t size);  // As allocateZeroed.
  void* (*reallocate)(LxMemProcs* procs, void* block, std::size_t size);
  void* (*reallocateAgain)(LxMemProcs* procs, void* block, std::size_t size);  // As reallocate.
  std::int32_t (*unused7)(LxMemProcs* procs);                                  // Always 0.
  std::int32_t (*unused8)(LxMemProcs* procs);                                  // Always 0.
};

struct LxMemProcs {
  const LxMemProcTable* table;
};

// The memory procedures of the C runtime: malloc, free and realloc.
[[nodiscard]] LxMemProcs* LxRuntimeMemProcs() noexcept;

// Installs the memory procedures of the process; null removes them (then nothing can be allocated). The caller keeps
// the record alive while blocks allocated through it exist.
void LxInstallMemProcs(LxMemProcs* procs) noexcept;
[[nodiscard]] LxMemProcs* LxInstalledMemProcs() noexcept;

// A block of `size` bytes, or null: no memory, or no procedures installed. LxFree takes null.
[[nodiscard]] void* LxAlloc(std::size_t size) noexcept;
void LxFree(void* block) noexcept;

// How many memory requests of this thread were refused: LxAlloc's, and those that other code reported here. A caller
// that compares the count before and after some work knows whether the result may be incomplete.
[[nodiscard]] std::uint32_t LxRefusedAllocations() noexcept;
void LxNoteRefusedAllocation() noexcept;

// A copy of `length` bytes followed by a zero byte, or null.
[[nodiscard]] char* LxCopyText(const void* bytes, std::size_t length) noexcept;

#endif  // LXBRIDGE_KIT_BASE_MEMORY_H_
