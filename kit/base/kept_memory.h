// Memory that every file needs again: the blocks of its bytes, the slabs of its items, its stream. Between
// LxStartKeepingMemory and LxStopKeepingMemory the thread that frees such memory keeps it for the next file, up to 2
// MB, so that reading a file neither asks the system for fresh pages nor gives any back. Only memory of the C runtime's
// procedures is kept: others (of tests, of hosts that watch) see every request and every release.
#ifndef LXBRIDGE_KIT_BASE_KEPT_MEMORY_H_
#define LXBRIDGE_KIT_BASE_KEPT_MEMORY_H_

#include <cstddef>

#include "kit/base/memory.h"

// For the whole process, while no other thread uses the kit. Stopping gives back what all threads keep.
void LxStartKeepingMemory() noexcept;
void LxStopKeepingMemory() noexcept;

// Gives back what the calling thread keeps, as its end does.
void LxReleaseThreadMemory() noexcept;
[[nodiscard]] std::size_t LxKeptByThread() noexcept;  // Bytes.

// Memory of the procedures, or null: they have none, which is noted as LxAlloc's is. The contents are undefined.
// kLxPageAligned: the memory begins at a page, which lets the system copy a file's bytes into it at full speed.
enum LxAlignment { kLxUnaligned, kLxPageAligned };
[[nodiscard]] void* LxAllocKept(LxMemProcs* procs, std::size_t size, LxAlignment alignment) noexcept;

// Whether memory of these procedures is kept. Where it is not, each request and each release is to be seen.
[[nodiscard]] bool LxKeepsMemoryOf(const LxMemProcs* procs) noexcept;

// Before memory that begins at a page there is room for a record of its owner's, of up to so many bytes.
inline constexpr std::size_t kLxKeptFront = 128;
[[nodiscard]] void* LxFrontOfKept(void* memory) noexcept;

// In any thread. Takes null.
void LxFreeKept(void* memory) noexcept;

#endif  // LXBRIDGE_KIT_BASE_KEPT_MEMORY_H_
