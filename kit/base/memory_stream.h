// A stream over bytes in memory, for files that the caller already holds. A block cache over such a stream maps the
// caller's bytes directly: nothing is copied.
#ifndef LXBRIDGE_KIT_BASE_MEMORY_STREAM_H_
#define LXBRIDGE_KIT_BASE_MEMORY_STREAM_H_

#include <cstdint>

#include "kit/base/stream.h"

struct LxMemoryStream : LxStream {
  const std::uint8_t* bytes;
  std::int32_t length;
  std::int32_t at;  // The position.
};

// Makes the record a stream over bytes that remain the caller's. It needs no closing. REQUIRES: `length` readable
// bytes, for as long as the stream or a block cache over it is used.
void LxInitMemoryStream(LxMemoryStream* stream, const std::uint8_t* bytes, std::int32_t length) noexcept;

// The bytes of a memory stream, or null for another kind of stream.
[[nodiscard]] const std::uint8_t* LxStreamMemory(const LxStream* stream) noexcept;

#endif  // LXBRIDGE_KIT_BASE_MEMORY_STREAM_H_
