// Bytes of all blocks of all heaps of the process.
#ifndef LXBRIDGE_TESTS_WINDOWS_HEAP_H_
#define LXBRIDGE_TESTS_WINDOWS_HEAP_H_

#include <windows.h>

#include <cstddef>

inline std::size_t BytesInUse() {
  HANDLE heaps[64];
  std::size_t bytes = 0;
  for (DWORD count = GetProcessHeaps(64, heaps); count > 0; --count) {
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(heaps[count - 1], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
  }
  return bytes;
}

#endif  // LXBRIDGE_TESTS_WINDOWS_HEAP_H_
