// The MD5 message digest, RFC 1321.
#ifndef LXBRIDGE_XMPCONV_MD5_H_
#define LXBRIDGE_XMPCONV_MD5_H_

#include <array>
#include <cstddef>
#include <cstdint>

using LxMd5Digest = std::array<std::uint8_t, 16>;

// The digest of `length` bytes, in the order in which RFC 1321, 3.5 prints it. Null bytes with length 0 are fine.
[[nodiscard]] LxMd5Digest LxMd5(const std::uint8_t* bytes, std::size_t length) noexcept;

#endif  // LXBRIDGE_XMPCONV_MD5_H_
