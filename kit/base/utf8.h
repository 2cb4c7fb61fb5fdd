// UTF-8 (RFC 3629) for every folder of the tree. Header-only and without dependencies, so that the outside libraries
// and LxHost can use it without linking the kit.
#ifndef LXBRIDGE_KIT_BASE_UTF8_H_
#define LXBRIDGE_KIT_BASE_UTF8_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

// The longest character in bytes.
inline constexpr std::size_t kLxUtf8Most = 4;

// Whether the byte continues a character that began before it.
[[nodiscard]] constexpr bool LxIsUtf8Continuation(char byte) noexcept {
  return (static_cast<std::uint8_t>(byte) & 0xC0) == 0x80;
}

// Decodes the character at text[at] and returns its length in bytes. 0: the bytes are not well-formed (Unicode table
// 3-7: no overlong forms, no surrogates, nothing above U+10FFFF). REQUIRES: at < text.size().
[[nodiscard]] constexpr std::size_t LxDecodeUtf8(std::string_view text, std::size_t at, char32_t* character) noexcept {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[at + i]); };
  const std::size_t left = text.size() - at;
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) {
    *character = lead;
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4 || left < 2 || !LxIsUtf8Continuation(text[at + 1])) return 0;
  const std::uint8_t second = byte(1);
  if (lead < 0xE0) {
    *character = (lead & 0x1FU) << 6 | (second & 0x3FU);
    return 2;
  }
  if (left < 3 || !LxIsUtf8Continuation(text[at + 2])) return 0;
  if (lead < 0xF0) {
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F)) return 0;
    *character = (lead & 0x0FU) << 12 | (second & 0x3FU) << 6 | (byte(2) & 0x3FU);
    return 3;
  }
  if ((lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) return 0;
  if (left < 4 || !LxIsUtf8Continuation(text[at + 3])) return 0;
  *character = (lead & 0x07U) << 18 | (second & 0x3FU) << 12 | (byte(2) & 0x3FU) << 6 | (byte(3) & 0x3FU);
  return 4;
}

[[nodiscard]] constexpr bool LxIsUtf8(std::string_view text) noexcept {
  char32_t character = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = LxDecodeUtf8(text, at, &character);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

// Writes the character and returns its length in bytes. REQUIRES: at most U+10FFFF; writable bytes for all of it.
constexpr std::size_t LxEncodeUtf8(char32_t character, char* out) noexcept {
  if (character < 0x80) {
    *out = static_cast<char>(character);
    return 1;
  }
  const std::size_t length = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
  for (std::size_t i = length - 1; i > 0; --i) {
    out[i] = static_cast<char>(0x80 | (character & 0x3F));
    character >>= 6;
  }
  *out = static_cast<char>((0xF00U >> length & 0xFF) | character);
  return length;
}

// The length of the longest prefix of at most `most` bytes that does not end within a character.
[[nodiscard]] constexpr std::size_t LxUtf8PrefixLength(std::string_view text, std::size_t most) noexcept {
  if (text.size() <= most) return text.size();
  std::size_t end = most;
  while (end > 0 && most - end < kLxUtf8Most - 1 && LxIsUtf8Continuation(text[end])) --end;
  return end;
}

// Control characters (C0, DEL, C1), line and paragraph separators, and the bidirectional controls of Unicode Standard
// Annex 9: a terminal acts on them, or they make a text look like another.
[[nodiscard]] constexpr bool LxIsTerminalControl(char32_t c) noexcept {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x061C || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

#endif  // LXBRIDGE_KIT_BASE_UTF8_H_
