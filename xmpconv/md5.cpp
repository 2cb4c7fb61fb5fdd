// MD5 of a run of bytes: whole blocks directly from the caller's bytes, then the padded rest from a small buffer.
#include "xmpconv/md5.h"

#include <algorithm>
#include <bit>

#include "kit/base/byte_order.h"

namespace {

constexpr std::size_t kBlockSize = 64;

// RFC 1321, 3.4: the rotation of each step, by round and step modulo 4.
constexpr int kTurns[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

// RFC 1321, 3.4: T[i], the integer part of 4294967296 times abs(sin(i + 1)).
// clang-format off
constexpr std::uint32_t kSines[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391,
};
// clang-format on

using State = std::array<std::uint32_t, 4>;

// REQUIRES: kBlockSize readable bytes.
void AddBlock(State* state, const std::uint8_t* block) noexcept {
  std::uint32_t words[16];
  for (std::size_t i = 0; i < 16; ++i) words[i] = LxGet32(block + 4 * i, kLxLittleEndian);

  auto [a, b, c, d] = *state;
  for (std::size_t i = 0; i < 64; ++i) {
    std::uint32_t mixed = 0;
    std::size_t word = 0;
    switch (i / 16) {
      case 0:
        mixed = (b & c) | (~b & d);
        word = i;
        break;
      case 1:
        mixed = (b & d) | (c & ~d);
        word = (5 * i + 1) % 16;
        break;
      case 2:
        mixed = b ^ c ^ d;
        word = (3 * i + 5) % 16;
        break;
      default:
        mixed = c ^ (b | ~d);
        word = (7 * i) % 16;
        break;
    }
    const std::uint32_t turned = std::rotl(a + mixed + kSines[i] + words[word], kTurns[i / 16][i % 4]);
    a = d;
    d = c;
    c = b;
    b += turned;
  }
  (*state)[0] += a;
  (*state)[1] += b;
  (*state)[2] += c;
  (*state)[3] += d;
}

}  // namespace

LxMd5Digest LxMd5(const std::uint8_t* bytes, std::size_t length) noexcept {
  State state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
  std::size_t left = length;
  for (; left >= kBlockSize; left -= kBlockSize, bytes += kBlockSize) AddBlock(&state, bytes);

  // RFC 1321, 3.1 and 3.2: one set bit, zero bits, and the length in bits as the last eight bytes of the last block.
  std::uint8_t rest[2 * kBlockSize] = {};
  std::copy_n(bytes, left, rest);
  rest[left] = 0x80;
  const std::size_t padded = left + 1 + 8 <= kBlockSize ? kBlockSize : 2 * kBlockSize;
  const std::uint64_t bits = std::uint64_t{length} * 8;
  LxPut32(rest + padded - 8, static_cast<std::uint32_t>(bits & 0xFFFFFFFF), kLxLittleEndian);
  LxPut32(rest + padded - 4, static_cast<std::uint32_t>(bits >> 32), kLxLittleEndian);
  for (std::size_t at = 0; at < padded; at += kBlockSize) AddBlock(&state, rest + at);

  LxMd5Digest digest;
  for (std::size_t i = 0; i < 4; ++i) LxPut32(digest.data() + 4 * i, state[i], kLxLittleEndian);
  return digest;
}
