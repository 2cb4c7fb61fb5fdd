// Scans over bytes that may be text.
#ifndef LXBRIDGE_KIT_MODEL_TEXT_SCAN_H_
#define LXBRIDGE_KIT_MODEL_TEXT_SCAN_H_

#include <cstddef>
#include <cstdint>
#include <cstring>

[[nodiscard]] constexpr bool LxIsPrintableByte(std::uint8_t byte) noexcept {
  return byte >= 0x20 && byte <= 0x7E;
}

// Printable ASCII, tab and line ends.
[[nodiscard]] constexpr bool LxIsTextByte(std::uint8_t byte) noexcept {
  return LxIsPrintableByte(byte) || byte == '\t' || byte == '\n' || byte == '\r';
}

// The number of leading bytes that are printable ASCII, tested eight at a time: most texts consist of nothing else, and
// a file may hold megabytes of them.
[[nodiscard]] inline std::size_t LxPrintableRun(const std::uint8_t* bytes, std::size_t length) noexcept {
  constexpr std::uint64_t kOnes = 0x0101010101010101u;
  std::size_t at = 0;
  for (; length - at >= sizeof(std::uint64_t); at += sizeof(std::uint64_t)) {
    std::uint64_t word;
    std::memcpy(&word, bytes + at, sizeof word);
    const std::uint64_t below = (word - kOnes * 0x20) & ~word;  // High bit of a byte below 0x20.
    const std::uint64_t above = (word + kOnes) | word;          // High bit of a byte above 0x7E.
    if (((below | above) & (kOnes * 0x80)) != 0) break;
  }
  while (at < length && LxIsPrintableByte(bytes[at])) ++at;
  return at;
}

[[nodiscard]] inline bool LxIsZeroFilled(const std::uint8_t* bytes, std::size_t length) noexcept {
  std::size_t at = 0;
  for (; length - at >= sizeof(std::uint64_t); at += sizeof(std::uint64_t)) {
    std::uint64_t word;
    std::memcpy(&word, bytes + at, sizeof word);
    if (word != 0) return false;
  }
  while (at < length && bytes[at] == 0) ++at;
  return at == length;
}

// Only zero bytes and spaces: cameras fill texts that were never set with these.
[[nodiscard]] inline bool LxIsBlank(const std::uint8_t* bytes, std::size_t length) noexcept {
  for (std::size_t i = 0; i < length; ++i) {
    if (bytes[i] != 0 && bytes[i] != ' ') return false;
  }
  return true;
}

// The number of bytes before the first zero byte, or all.
[[nodiscard]] inline std::size_t LxTextLength(const std::uint8_t* bytes, std::size_t length) noexcept {
  const void* zero = length != 0 ? std::memchr(bytes, 0, length) : nullptr;
  return zero != nullptr ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(zero) - bytes) : length;
}

#endif  // LXBRIDGE_KIT_MODEL_TEXT_SCAN_H_
