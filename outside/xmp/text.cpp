// Texts.
#include "outside/xmp/text.h"

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>

#include "kit/base/utf8.h"
#include "outside/xmp/errors.h"

namespace velto {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

// Unicode's mapping of code page 1252 for the bytes 0x80 to 0x9F.
constexpr std::uint16_t kWindows1252[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

std::uint8_t byteAt(std::string_view text, std::size_t at) noexcept {
  return static_cast<std::uint8_t>(text[at]);
}

bool isHighSurrogate(std::uint32_t unit) noexcept {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(std::uint32_t unit) noexcept {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendReference(std::uint32_t codePoint, std::string& text) {
  char digits[8];
  char* end = std::to_chars(digits, digits + sizeof digits, codePoint, 16).ptr;
  text.append("&#x").append(digits, static_cast<std::size_t>(end - digits)).append(";");
}

std::uint32_t joinSurrogates(std::uint32_t high, std::uint32_t low) noexcept {
  return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

// Whether each of the eight bytes is at least a space and below 0x80.
bool arePlain(const char* bytes) noexcept {
  constexpr std::uint64_t kEach = 0x0101010101010101u;
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return (word & 0x80 * kEach) == 0 && ((word + (0x80 - ' ') * kEach) & 0x80 * kEach) == 0x80 * kEach;
}

// A surrogate encoded in three bytes, as written by programs that take UTF-16 units for code points. 0: there is none.
std::uint32_t encodedSurrogate(std::string_view text, std::size_t at) noexcept {
  if (at + 2 >= text.size() || byteAt(text, at) != 0xED || byteAt(text, at + 1) < 0xA0) return 0;
  if (!LxIsUtf8Continuation(text[at + 1]) || !LxIsUtf8Continuation(text[at + 2])) return 0;
  return 0xD000u | ((byteAt(text, at + 1) & 0x3Fu) << 6) | (byteAt(text, at + 2) & 0x3Fu);
}

bool isASCIILetter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isASCIIDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}
char lower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
char upper(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

struct ParserCloser {
  void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

// Editions of XML differ in the name characters beyond ASCII, so the reader's own parser decides: a name that it
// refuses could be written but never read again. REQUIRES: the text consists of name characters and bytes beyond ASCII.
bool isNameForReader(std::string_view text) noexcept {
  const std::unique_ptr<XML_ParserStruct, ParserCloser> parser(XML_ParserCreate("UTF-8"));
  if (!parser || text.size() > 0xFFFF) return false;
  return XML_Parse(parser.get(), "<", 1, 0) == XML_STATUS_OK &&
         XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 0) == XML_STATUS_OK &&
         XML_Parse(parser.get(), "/>", 2, 1) == XML_STATUS_OK;
}

}  // namespace

bool decodeUTF8(std::string_view text, std::size_t& at, std::uint32_t& codePoint) noexcept {
  char32_t character = 0;
  const std::size_t length = LxDecodeUtf8(text, at, &character);
  if (length == 0) return false;
  codePoint = character;
  at += length;
  return true;
}

void appendUTF8(std::string& text, std::uint32_t codePoint) {
  if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) codePoint = kReplacement;
  char bytes[kLxUtf8Most];
  text.append(bytes, LxEncodeUtf8(codePoint, bytes));
}

std::uint32_t fromWindows1252(std::uint8_t byte) noexcept {
  return byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : byte;
}

bool isXMLChar(std::uint32_t codePoint) noexcept {
  if (codePoint < 0x20) return codePoint == '\t' || codePoint == '\n' || codePoint == '\r';
  return codePoint <= 0xD7FF || (codePoint >= 0xE000 && codePoint <= 0xFFFD) ||
         (codePoint >= 0x10000 && codePoint <= 0x10FFFF);
}

bool isCleanText(std::string_view text) noexcept {
  std::size_t at = 0;
  while (at + 8 <= text.size() && arePlain(text.data() + at)) at += 8;
  if (text.size() >= 8 && at + 8 > text.size() && arePlain(text.data() + text.size() - 8)) return true;
  while (at < text.size()) {
    const std::uint8_t byte = byteAt(text, at);
    if (byte >= 0x20 && byte < 0x80) {
      ++at;
      continue;
    }
    std::uint32_t codePoint = 0;
    if (!decodeUTF8(text, at, codePoint) || !isXMLChar(codePoint)) return false;
  }
  return true;
}

std::string repairText(std::string_view text) {
  if (isCleanText(text)) return std::string(text);
  std::string repaired;
  repaired.reserve(text.size() + text.size() / 8);
  for (std::size_t at = 0; at < text.size();) {
    std::uint32_t codePoint = 0;
    if (decodeUTF8(text, at, codePoint)) {
      if (isXMLChar(codePoint)) {
        appendUTF8(repaired, codePoint);
      } else {
        repaired += ' ';
      }
      continue;
    }
    const std::uint32_t unit = encodedSurrogate(text, at);
    if (unit == 0) {
      appendUTF8(repaired, fromWindows1252(byteAt(text, at)));
      ++at;
      continue;
    }
    at += 3;
    const std::uint32_t next = isHighSurrogate(unit) ? encodedSurrogate(text, at) : 0;
    if (!isLowSurrogate(next)) {
      appendUTF8(repaired, kReplacement);
      continue;
    }
    at += 3;
    const std::uint32_t joined = joinSurrogates(unit, next);
    appendUTF8(repaired, joined);
  }
  return repaired;
}

bool isXMLName(std::string_view text) noexcept {
  if (text.empty() || !(isASCIILetter(text[0]) || text[0] == '_' || byteAt(text, 0) >= 0x80)) return false;
  bool ascii = true;
  for (const char c : text) {
    if (isASCIILetter(c) || isASCIIDigit(c) || c == '_' || c == '-' || c == '.') continue;
    if (static_cast<std::uint8_t>(c) < 0x80) return false;
    ascii = false;
  }
  return ascii || (LxIsUtf8(text) && isNameForReader(text));
}

bool isLanguageTag(std::string_view text) noexcept {
  bool first = true;
  for (;;) {
    const std::size_t end = std::min(text.find('-'), text.size());
    const std::string_view subtag = text.substr(0, end);
    if (subtag.empty() || subtag.size() > 8) return false;
    for (const char c : subtag) {
      if (!isASCIILetter(c) && (first || !isASCIIDigit(c))) return false;
    }
    if (end == text.size()) return true;
    text.remove_prefix(end + 1);
    first = false;
  }
}

// RFC 5646, 2.1.1: subtags at the start and after a singleton are lower case; elsewhere two letters are a region, four
// a script.
std::string normalizeLanguage(std::string_view text) {
  std::string tag(text);
  bool fixed = true;
  for (std::size_t start = 0; start < tag.size();) {
    const std::size_t end = std::min(tag.find('-', start), tag.size());
    const std::size_t length = end - start;
    for (std::size_t at = start; at < end; ++at) {
      const bool capital = !fixed && (length == 2 || (length == 4 && at == start));
      tag[at] = capital ? upper(tag[at]) : lower(tag[at]);
    }
    fixed = length == 1;
    start = end + 1;
  }
  return tag;
}

std::string escapeXML(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size() + 16);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t from = at;
    std::uint32_t codePoint = kReplacement;
    if (!decodeUTF8(text, at, codePoint)) ++at;  // Cannot happen in stored texts, which are UTF-8.
    switch (codePoint) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\t':
        escaped += "&#x9;";
        break;
      case '\n':
        escaped += "&#xA;";
        break;
      case '\r':
        escaped += "&#xD;";
        break;
      default:
        if (LxIsTerminalControl(codePoint)) {
          appendReference(codePoint, escaped);
        } else {
          escaped += text.substr(from, at - from);
        }
    }
  }
  return escaped;
}

std::string fromUTF16(std::string_view bytes, bool bigEndian) {
  std::string text;
  text.reserve(bytes.size());
  const auto unitAt = [&](std::size_t at) -> std::uint32_t {
    const std::uint32_t first = byteAt(bytes, at);
    const std::uint32_t second = byteAt(bytes, at + 1);
    return bigEndian ? (first << 8) | second : (second << 8) | first;
  };
  std::size_t at = 0;
  while (bytes.size() - at >= 2) {
    const std::uint32_t unit = unitAt(at);
    at += 2;
    if (isHighSurrogate(unit) && bytes.size() - at >= 2 && isLowSurrogate(unitAt(at))) {
      appendUTF8(text, joinSurrogates(unit, unitAt(at)));
      at += 2;
    } else {
      appendUTF8(text, unit);
    }
  }
  if (at < bytes.size()) appendUTF8(text, kReplacement);
  return text;
}

std::string fromUTF32(std::string_view bytes, bool bigEndian) {
  std::string text;
  text.reserve(bytes.size() / 2);
  std::size_t at = 0;
  for (; bytes.size() - at >= 4; at += 4) {
    std::uint32_t codePoint = 0;
    for (std::size_t i = 0; i < 4; ++i) codePoint = (codePoint << 8) | byteAt(bytes, bigEndian ? at + i : at + 3 - i);
    appendUTF8(text, codePoint);
  }
  if (at < bytes.size()) appendUTF8(text, kReplacement);
  return text;
}

}  // namespace velto
