// Memory that every file needs again: the blocks of its bytes, the slabs of its items, its stream. Between
// LxStartKeepingMemory and LxStopKeepingMemory, a thread that frees such memory keeps up to 2 MB of it for its next
// file, so reading a file neither requests fresh pages from the system nor returns any. Only memory of the C runtime's
// procedures is kept; other procedures (of tests, or of hosts that track memory) see every request and every release.
#ifndef LXBRIDGE_KIT_BASE_KEPT_MEMORY_H_
#define LXBRIDGE_KIT_BASE_KEPT_MEMORY_H_

#include <cstddef>

#include "kit/base/memory.h"

// For the whole process, while no other thread uses the kit. Stopping frees the memory that all threads keep.
void LxStartKeepingMemory() noexcept;
void LxStopKeepingMemory() noexcept;

// Frees the memory that the calling thread keeps; this also happens when the thread ends.
void LxReleaseThreadMemory() noexcept;
[[nodiscard]] std::size_t LxKeptByThread() noexcept;  // Bytes.

// Memory of the procedures, or null when they have none, which counts as a refusal like LxAlloc's. The contents are
// undefined. kLxPageAligned: the memory begins at a page, so the system can copy a file's bytes into it at full speed.
enum LxAlignment { kLxUnaligned, kLxPageAligned };
[[nodiscard]] void* LxAllocKept(LxMemProcs* procs, std::size_t size, LxAlignment alignment) noexcept;

// Whether memory of these procedures is kept. If not, the procedures must see each request and each release.
[[nodiscard]] bool LxKeepsMemoryOf(const LxMemProcs* procs) noexcept;

// Page-aligned memory has room before it for a record of its owner, up to this many bytes.
inline constexpr std::size_t kLxKeptFront = 128;
[[nodiscard]] void* LxFrontOfKept(void* memory) noexcept;

// May be called in any thread. Takes null.
void LxFreeKept(void* memory) noexcept;

#endif  // LXBRIDGE_KIT_BASE_KEPT_MEMORY_H_
