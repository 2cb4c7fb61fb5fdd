// UTF-8 (RFC 3629) in texts from files, and the characters that a terminal would act on.
#ifndef LXBRIDGE_TOOLS_JSON_UTF8_H_
#define LXBRIDGE_TOOLS_JSON_UTF8_H_

#include <cstddef>
#include <string_view>

namespace lxbridge::json {

// Decodes the first character of a text that is not empty. Returns its length in bytes; 0 if the bytes are not UTF-8,
// which includes overlong forms and surrogates.
[[nodiscard]] inline std::size_t DecodeUtf8(std::string_view text, char32_t* character) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) {
    *character = lead;
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() < length) return 0;
  char32_t c = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0) != 0x80) return 0;
    c = c << 6 | (next & 0x3F);
  }
  constexpr char32_t kLeastOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
  if (c < kLeastOfLength[length] || (c >= 0xD800 && c < 0xE000) || c > 0x10FFFF) return 0;
  *character = c;
  return length;
}

// Control characters (C0, DEL, C1), line and paragraph separators, and the bidirectional controls of Unicode Standard
// Annex 9, which can make a text look like another.
[[nodiscard]] constexpr bool IsTerminalControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x061C || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_UTF8_H_
