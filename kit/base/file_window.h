// A view of a few bytes of a file that are not kept. It serves walks over many small headers that lie far apart, whose
// pages would otherwise all stay in memory. Bytes that an item's value points to are mapped through the block cache
// instead.
#ifndef LXBRIDGE_KIT_BASE_FILE_WINDOW_H_
#define LXBRIDGE_KIT_BASE_FILE_WINDOW_H_

#include <cstdint>

#include "kit/base/stream.h"

inline constexpr std::int32_t kLxWindowPage = 4096;

struct LxFileWindow {
  LxStream* stream;
  std::int32_t fileSize;
  std::int32_t start;   // Of the bytes held: a multiple of the page size.
  std::int32_t length;  // Number of bytes held.
  std::uint8_t bytes[2 * kLxWindowPage];
};

// Opens the window, which holds nothing yet. It borrows the stream.
void LxInitFileWindow(LxFileWindow* window, LxStream* stream, std::int32_t fileSize) noexcept;

// The first byte of [offset, offset + length), or null: the range is not in the file, or the file cannot be read there.
// Valid until the next call. Reads the one or two pages that hold the range, unless the window holds them already.
// REQUIRES: length <= kLxWindowPage.
[[nodiscard]] const std::uint8_t* LxPeekRange(LxFileWindow* window, std::uint64_t offset,
                                              std::uint32_t length) noexcept;

#endif  // LXBRIDGE_KIT_BASE_FILE_WINDOW_H_
