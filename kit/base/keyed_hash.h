// A keyed hash of texts, for tables of names that files determine: nobody can write a file whose names all collide.
// Header-only and without dependencies, so that the outside libraries can use it without linking the kit.
#ifndef LXBRIDGE_KIT_BASE_KEYED_HASH_H_
#define LXBRIDGE_KIT_BASE_KEYED_HASH_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

class LxKeyedHash {
 public:
  // The seed must not be known to the author of a file.
  explicit LxKeyedHash(std::uint64_t seed) noexcept
      : first_(seed ^ 0x9E3779B97F4A7C15u), second_(((seed * 0xD6E8FEB86659FD93u) ^ 0xA0761D6478BD642Fu) | 1) {}

  [[nodiscard]] std::uint32_t operator()(std::string_view text) const noexcept { return Narrow(Mix(text)); }
  // Of a text and a number. Even hashes of the same text with chosen numbers cannot be predicted.
  [[nodiscard]] std::uint32_t operator()(std::string_view text, std::uint32_t number) const noexcept {
    return Narrow(Fold(Mix(text) ^ number, second_));
  }

 private:
  [[nodiscard]] std::uint64_t Mix(std::string_view text) const noexcept {
    std::uint64_t hash = first_ ^ text.size();
    const char* bytes = text.data();
    std::size_t left = text.size();
    if (left <= 8) {
      hash = Fold(hash ^ LoadShort(bytes, left), second_);
    } else {
      for (; left > 8; bytes += 8, left -= 8) hash = Fold(hash ^ Load8(bytes), second_);
      hash = Fold(hash ^ Load8(bytes + left - 8), first_);
    }
    return hash;
  }

  static std::uint32_t Narrow(std::uint64_t hash) noexcept { return static_cast<std::uint32_t>(hash ^ (hash >> 32)); }

  // Combines the two halves of the 128-bit product.
#ifdef __SIZEOF_INT128__
  __extension__ using Wide = unsigned __int128;

  static std::uint64_t Fold(std::uint64_t left, std::uint64_t right) noexcept {
    const Wide product = static_cast<Wide>(left) * right;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  }
#else  // 32-bit processors lack the type.
  static std::uint64_t Fold(std::uint64_t left, std::uint64_t right) noexcept {
    constexpr std::uint64_t kLow = 0xFFFFFFFF;
    const std::uint64_t low = (left & kLow) * (right & kLow);
    const std::uint64_t cross = (left >> 32) * (right & kLow) + (low >> 32);
    const std::uint64_t otherCross = (left & kLow) * (right >> 32) + (cross & kLow);
    const std::uint64_t high = (left >> 32) * (right >> 32) + (cross >> 32) + (otherCross >> 32);
    return (otherCross << 32 | (low & kLow)) ^ high;
  }
#endif

  // Loads all bytes of a text of up to eight, some of them twice.
  static std::uint64_t LoadShort(const char* bytes, std::size_t length) noexcept {
    if (length >= 4) {
      std::uint32_t first = 0;
      std::uint32_t last = 0;
      std::memcpy(&first, bytes, 4);
      std::memcpy(&last, bytes + length - 4, 4);
      return (std::uint64_t{first} << 32) | last;
    }
    if (length == 0) return 0;
    const auto at = [bytes](std::size_t place) { return std::uint64_t{static_cast<std::uint8_t>(bytes[place])}; };
    return at(0) | (at(length / 2) << 8) | (at(length - 1) << 16);
  }

  static std::uint64_t Load8(const char* bytes) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, 8);
    return word;
  }

  std::uint64_t first_;
  std::uint64_t second_;
};

#endif  // LXBRIDGE_KIT_BASE_KEYED_HASH_H_
