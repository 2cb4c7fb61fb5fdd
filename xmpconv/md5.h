// The MD5 message digest, RFC 1321.
#ifndef LXBRIDGE_XMPCONV_MD5_H_
#define LXBRIDGE_XMPCONV_MD5_H_

#include <array>
#include <cstddef>
#include <cstdint>

using LxMd5Digest = std::array<std::uint8_t, 16>;

// The digest of `length` bytes, in the byte order of RFC 1321, 3.5. `bytes` may be null if `length` is 0.
[[nodiscard]] LxMd5Digest LxMd5(const std::uint8_t* bytes, std::size_t length) noexcept;

#endif  // LXBRIDGE_XMPCONV_MD5_H_
