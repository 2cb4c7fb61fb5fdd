// Compressed blocks: deflate (RFC 1950, RFC 1951) through zlib, and Brotli (RFC 7932) through libbrotlidec. If the
// build does not find a library, its blocks are skipped.
#ifndef LXBRIDGE_KIT_READERS_INFLATE_H_
#define LXBRIDGE_KIT_READERS_INFLATE_H_

#include <cstdint>

#include "kit/readers/dispatch.h"

enum LxCompressedForm : std::int32_t {
  kLxZlibStream,        // RFC 1950
  kLxRawDeflateStream,  // RFC 1951
  kLxBrotliStream,
};

// The maximum size of an inflated block. It is also limited to 1,032 times the compressed size, the best ratio of
// deflate.
inline constexpr std::int32_t kLxLargestInflated = 64 << 20;
inline constexpr std::int64_t kLxInflatedPerByte = 1032;

// Inflates the bytes into a detached block of the cache. Null: they are damaged or incomplete, the result exceeds the
// limits or the file's budget, there is no memory, or the build lacks the library. Bytes after the end of the
// compressed data are ignored.
[[nodiscard]] LxBlock* LxInflateBlock(LxBlockCache* cache, LxParseContext* context, LxCompressedForm form,
                                      const std::uint8_t* bytes, std::int32_t length) noexcept;

// Whether the build has the library.
[[nodiscard]] bool LxHasZlib() noexcept;
[[nodiscard]] bool LxHasBrotli() noexcept;

#endif  // LXBRIDGE_KIT_READERS_INFLATE_H_
