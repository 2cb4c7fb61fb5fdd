// Compressed blocks: zlib's deflate (RFC 1950, RFC 1951) and Brotli (RFC 7932), by the libraries of these names. Where
// the build has not found one of them, its blocks are passed over.
#ifndef LXBRIDGE_KIT_READERS_INFLATE_H_
#define LXBRIDGE_KIT_READERS_INFLATE_H_

#include <cstdint>

#include "kit/readers/dispatch.h"

enum LxCompressedForm : std::int32_t {
  kLxZlibStream,        // RFC 1950
  kLxRawDeflateStream,  // RFC 1951
  kLxBrotliStream,
};

// A compressed block holds at most this, and at most 1,032 bytes for each of its own: the most that deflate can give.
inline constexpr std::int32_t kLxLargestInflated = 64 << 20;
inline constexpr std::int64_t kLxInflatedPerByte = 1032;

// The bytes as a detached block of the cache, or null: they do not inflate to their end, to more than the bounds or
// beyond the file's budget; there is no memory; the library was not there to build with. Bytes that follow the end of
// the compressed data are not looked at.
[[nodiscard]] LxBlock* LxInflateBlock(LxBlockCache* cache, LxParseContext* context, LxCompressedForm form,
                                      const std::uint8_t* bytes, std::int32_t length) noexcept;

// Whether the library was there to build with.
[[nodiscard]] bool LxHasZlib() noexcept;
[[nodiscard]] bool LxHasBrotli() noexcept;

#endif  // LXBRIDGE_KIT_READERS_INFLATE_H_
