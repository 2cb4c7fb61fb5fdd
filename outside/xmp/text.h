// Texts: UTF-8, the characters allowed in XML, XML names, language tags.
#ifndef LXBRIDGE_OUTSIDE_XMP_TEXT_H_
#define LXBRIDGE_OUTSIDE_XMP_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velto {

// Decodes the code point at text[at] and advances `at`. False, without advancing, if the bytes are not well-formed
// UTF-8 (Unicode table 3-7: no overlong forms, no surrogates, nothing above U+10FFFF). REQUIRES: at < size.
bool decodeUTF8(std::string_view text, std::size_t& at, std::uint32_t& codePoint) noexcept;
// Appends U+FFFD for a number that is not a code point (a surrogate, above U+10FFFF).
void appendUTF8(std::string& text, std::uint32_t codePoint);
// The code point of a Windows-1252 byte; the five undefined bytes become the C1 controls of the same number.
std::uint32_t fromWindows1252(std::uint8_t byte) noexcept;

// Whether XML 1.0 allows the character (production 2, Char).
bool isXMLChar(std::uint32_t codePoint) noexcept;
// Whether repairText would not change the text.
bool isCleanText(std::string_view text) noexcept;
// The text as an object stores it: bytes that are not UTF-8 are read as Windows-1252; characters that XML forbids
// (controls, U+FFFE, U+FFFF) become spaces; a surrogate encoded in UTF-8 becomes U+FFFD, a pair of them the code point
// that it represents.
std::string repairText(std::string_view text);

// Namespaces in XML 1.0, production 4: a name without colon.
bool isXMLName(std::string_view text) noexcept;

// Checks the syntax of RFC 5646: subtags of one to eight letters and digits, the first one letters only.
bool isLanguageTag(std::string_view text) noexcept;
// The usual case of a tag: language lower, script title, region upper, the rest lower ("zh-Hant-TW", "x-default").
std::string normalizeLanguage(std::string_view text);

// Whether escapeXML may change a text that contains this byte.
constexpr bool needsEscapeXML(char c) noexcept {
  return c == '&' || c == '<' || c == '>' || c == '"' || c == '\t' || c == '\n' || c == '\r' || c == '\x7F' ||
         c == '\xC2' || c == '\xD8' || c == '\xE2';
}
// Escapes & < > " as entities; as character references tab, line ends, and characters that terminals or editors act on
// (DEL, C1 control characters, line and paragraph separators, bidirectional controls).
std::string escapeXML(std::string_view text);

std::string fromUTF16(std::string_view bytes, bool bigEndian);  // Lone surrogates and odd bytes become U+FFFD.
std::string fromUTF32(std::string_view bytes, bool bigEndian);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_TEXT_H_
