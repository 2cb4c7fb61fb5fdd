// Texts: UTF-8 and what of it XML can carry, XML names, language tags.
#ifndef LXBRIDGE_OUTSIDE_XMP_TEXT_H_
#define LXBRIDGE_OUTSIDE_XMP_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velto {

// Decodes the code point at text[at] and moves `at` past it. False, and `at` unmoved, when the bytes there are no
// well-formed UTF-8 (Unicode table 3-7: no overlong forms, no surrogates, nothing above U+10FFFF). REQUIRES: at < size.
bool decodeUTF8(std::string_view text, std::size_t& at, std::uint32_t& codePoint) noexcept;
// Writes U+FFFD for a number that is no code point (a surrogate, above U+10FFFF).
void appendUTF8(std::string& text, std::uint32_t codePoint);
bool isUTF8(std::string_view text) noexcept;
// The code point of a byte in Windows-1252; the five bytes without one are taken as the C1 controls of the same number.
std::uint32_t fromWindows1252(std::uint8_t byte) noexcept;

// Whether XML 1.0 can carry the code point (production 2, Char).
bool isXMLChar(std::uint32_t codePoint) noexcept;
// Whether repairText would leave the text as it is.
bool isCleanText(std::string_view text) noexcept;
// The text as an object stores it: bytes that are no UTF-8 are taken as Windows-1252; characters that XML forbids
// (controls, U+FFFE, U+FFFF) becomes a space, a surrogate encoded in UTF-8 U+FFFD (a pair of them the code point that
// it means).
std::string repairText(std::string_view text);

// Namespaces in XML 1.0, production 4: a name without colon.
bool isXMLName(std::string_view text) noexcept;

// RFC 5646 as far as its syntax goes: subtags of one to eight letters and digits, the first of letters only.
bool isLanguageTag(std::string_view text) noexcept;
// Its case: language lower, script title, region upper, the rest lower ("zh-Hant-TW", "x-default").
std::string normalizeLanguage(std::string_view text);

// Whether escapeXML may change a text with this byte in it.
constexpr bool needsEscapeXML(char c) noexcept {
  return c == '&' || c == '<' || c == '>' || c == '"' || c == '\t' || c == '\n' || c == '\r' || c == '\x7F' ||
         c == '\xC2' || c == '\xD8' || c == '\xE2';
}
// & < > " as entities; tab, line ends and what a terminal or an editor would obey (DEL, C1 control characters, line and
// paragraph separators, bidirectional controls) as character references.
std::string escapeXML(std::string_view text);

std::string fromUTF16(std::string_view bytes, bool bigEndian);  // Lone surrogates and odd bytes become U+FFFD.
std::string fromUTF32(std::string_view bytes, bool bigEndian);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_TEXT_H_
