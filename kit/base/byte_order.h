// Reading and writing 16- and 32-bit numbers in a file's byte order, one byte at a time, independent of alignment and
// of the machine's byte order. Order 1 is big-endian ("MM"); every other value is little-endian ("II").
#ifndef LXBRIDGE_KIT_BASE_BYTE_ORDER_H_
#define LXBRIDGE_KIT_BASE_BYTE_ORDER_H_

#include <bit>
#include <cstdint>

inline constexpr int kLxLittleEndian = 0;
inline constexpr int kLxBigEndian = 1;

// REQUIRES: 2 readable bytes (4 for LxGet32).
[[nodiscard]] inline std::uint16_t LxGet16(const std::uint8_t* bytes, int order) noexcept {
  const unsigned a = bytes[0], b = bytes[1];
  return static_cast<std::uint16_t>(order == kLxBigEndian ? (a << 8) | b : (b << 8) | a);
}
[[nodiscard]] inline std::uint32_t LxGet32(const std::uint8_t* bytes, int order) noexcept {
  const std::uint32_t a = bytes[0], b = bytes[1], c = bytes[2], d = bytes[3];
  return order == kLxBigEndian ? (a << 24) | (b << 16) | (c << 8) | d : (d << 24) | (c << 16) | (b << 8) | a;
}

// REQUIRES: 2 writable bytes (4 for LxPut32).
inline void LxPut16(std::uint8_t* bytes, std::uint16_t value, int order) noexcept {
  const auto high = static_cast<std::uint8_t>(value >> 8), low = static_cast<std::uint8_t>(value & 0xFF);
  bytes[0] = order == kLxBigEndian ? high : low;
  bytes[1] = order == kLxBigEndian ? low : high;
}
inline void LxPut32(std::uint8_t* bytes, std::uint32_t value, int order) noexcept {
  for (int i = 0; i < 4; ++i) {
    const int shift = order == kLxBigEndian ? 24 - 8 * i : 8 * i;
    bytes[i] = static_cast<std::uint8_t>((value >> shift) & 0xFF);
  }
}

// Converts a number whose bytes were loaded in the machine's order to the given order.
[[nodiscard]] constexpr std::uint16_t LxSwap16(std::uint16_t value, int order) noexcept {
  const bool same = (std::endian::native == std::endian::big) == (order == kLxBigEndian);
  return same ? value : static_cast<std::uint16_t>((value >> 8) | (value << 8));
}
[[nodiscard]] constexpr std::uint32_t LxSwap32(std::uint32_t value, int order) noexcept {
  const bool same = (std::endian::native == std::endian::big) == (order == kLxBigEndian);
  return same ? value : (value >> 24) | ((value >> 8) & 0x0000FF00u) | ((value << 8) & 0x00FF0000u) | (value << 24);
}

#endif  // LXBRIDGE_KIT_BASE_BYTE_ORDER_H_
