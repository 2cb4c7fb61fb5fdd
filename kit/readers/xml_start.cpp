#include "kit/readers/xml_start.h"

#include <cstring>

namespace {

// The text as ASCII: a character outside ASCII reads as 0x7F, which is neither white space nor markup. So UTF-16 and
// UTF-32 are searched like UTF-8.
struct Ascii {
  char text[kLxXmlStartSize];
  std::int32_t length;
};

struct Encoding {
  std::uint8_t mark[4];
  std::int32_t markLength;
  std::int32_t width;  // Bytes per character.
  std::int32_t low;    // Which of these holds an ASCII character.
};

// UTF-32 comes first: its little-endian byte-order mark begins with that of UTF-16.
constexpr Encoding kEncodings[] = {{{0xFF, 0xFE, 0, 0}, 4, 4, 0}, {{0, 0, 0xFE, 0xFF}, 4, 4, 3},
                                   {{0xFF, 0xFE}, 2, 2, 0},       {{0xFE, 0xFF}, 2, 2, 1},
                                   {{0xEF, 0xBB, 0xBF}, 3, 1, 0}, {{}, 0, 1, 0}};

const Encoding& EncodingOf(const std::uint8_t* bytes, std::int32_t length) noexcept {
  const Encoding* encoding = kEncodings;
  while (encoding->markLength > length ||
         std::memcmp(bytes, encoding->mark, static_cast<std::size_t>(encoding->markLength)) != 0) {
    ++encoding;
  }
  return *encoding;
}

void ToAscii(const std::uint8_t* bytes, std::int32_t length, Ascii* out) noexcept {
  const Encoding& encoding = EncodingOf(bytes, length);
  out->length = 0;
  for (std::int32_t at = encoding.markLength; at + encoding.width <= length; at += encoding.width) {
    std::uint8_t character = bytes[at + encoding.low];
    for (std::int32_t i = 0; i < encoding.width; ++i) {
      if (i != encoding.low && bytes[at + i] != 0) character = 0x7F;
    }
    out->text[out->length++] = static_cast<char>(character < 0x7F ? character : 0x7F);
  }
}

bool IsSpace(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Whether a name that extends to this position ends there; the end of the text also ends it.
bool NameEnds(const Ascii& in, std::int32_t at) noexcept {
  return at >= in.length || IsSpace(in.text[at]) || in.text[at] == '>' || in.text[at] == '/';
}

bool StartsWith(const Ascii& in, std::int32_t at, const char* text) noexcept {
  const std::size_t length = std::strlen(text);
  return length <= static_cast<std::size_t>(in.length - at) && std::memcmp(in.text + at, text, length) == 0;
}

std::int32_t SkipSpace(const Ascii& in, std::int32_t at) noexcept {
  while (at < in.length && IsSpace(in.text[at])) ++at;
  return at;
}

// The position after the next occurrence, or -1.
std::int32_t EndOfNext(const Ascii& in, std::int32_t at, const char* text) noexcept {
  for (; at < in.length; ++at) {
    if (StartsWith(in, at, text)) return at + static_cast<std::int32_t>(std::strlen(text));
  }
  return -1;
}

bool IsPacketAt(const Ascii& in, std::int32_t at) noexcept {
  if (StartsWith(in, at, "<?xpacket begin")) return true;
  constexpr const char* kElements[] = {"<x:xmpmeta", "<x:xapmeta", "<rdf:RDF"};
  for (const char* element : kElements) {
    if (StartsWith(in, at, element)) return NameEnds(in, at + static_cast<std::int32_t>(std::strlen(element)));
  }
  return false;
}

}  // namespace

bool LxMayStartXml(const std::uint8_t* bytes) noexcept {
  if (EncodingOf(bytes, 16).markLength > 0) return true;
  return bytes[0] == '<' || IsSpace(static_cast<char>(bytes[0]));
}

bool LxStartsPacket(const std::uint8_t* bytes, std::int32_t length) noexcept {
  Ascii in;
  ToAscii(bytes, length < kLxXmlStartSize ? length : kLxXmlStartSize, &in);
  std::int32_t at = SkipSpace(in, 0);
  const bool hasDeclaration = StartsWith(in, at, "<?xml");
  while (!IsPacketAt(in, at)) {
    if (!hasDeclaration) return false;
    if (StartsWith(in, at, "<!--")) {
      at = EndOfNext(in, at + 4, "-->");
    } else if (StartsWith(in, at, "<?")) {
      at = EndOfNext(in, at + 2, "?>");
    } else {
      return false;
    }
    if (at < 0) return false;
    at = SkipSpace(in, at);
  }
  return true;
}
