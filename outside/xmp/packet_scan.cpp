// Packets among other bytes, and whether bytes are one.
#include <algorithm>
#include <cstdint>
#include <new>

#include "outside/xmp/packet_encoding.h"
#include "outside/xmp/rdf.h"

namespace velto {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kNowhere = std::string_view::npos;

std::uint8_t byteAt(std::string_view bytes, std::size_t at) noexcept {
  return at < bytes.size() ? static_cast<std::uint8_t>(bytes[at]) : 1;  // Behind the end stands no zero byte.
}

bool isSpace(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view withoutLeadingSpace(std::string_view text) noexcept {
  std::size_t at = 0;
  while (at < text.size() && isSpace(text[at])) at++;
  return text.substr(at);
}

// Whether the text starts with the tag of an element of one of these local names, whatever its prefix.
bool startsWithElement(std::string_view text) noexcept {
  if (text.empty() || text[0] != '<') return false;
  const std::string_view name = text.substr(1, text.find_first_of(" \t\r\n/>", 1) - 1);
  const std::string_view local = name.substr(name.find(':') + 1);
  return local == "xmpmeta" || local == "xapmeta" || local == "RDF";
}

// What tells the parts of a packet apart. The wrapper exists for scanners, so its form is fixed (ISO 16684-1, 7.3.2);
// of packets without one only those with the usual prefixes are found.
enum class Mark { kNone, kWrapperStart, kWrapperEnd, kMetaStart, kMetaEnd, kRDFStart, kRDFEnd };
constexpr struct {
  std::string_view text;
  Mark mark;
} kMarks[] = {
    // clang-format off
    {"<?xpacket begin=", Mark::kWrapperStart},
    {"<?xpacket end=",   Mark::kWrapperEnd},
    {"<x:xmpmeta",       Mark::kMetaStart},
    {"</x:xmpmeta>",     Mark::kMetaEnd},
    {"<x:xapmeta",       Mark::kMetaStart},
    {"</x:xapmeta>",     Mark::kMetaEnd},
    {"<rdf:RDF",         Mark::kRDFStart},
    {"</rdf:RDF>",       Mark::kRDFEnd},
    // clang-format on
};

// Whether ASCII text stands at bytes[at], its characters `width` bytes apart and zero bytes between them: in either
// byte order, since that shows only in where the first begins.
bool hasTextAt(std::string_view bytes, std::size_t at, std::size_t width, std::string_view text) noexcept {
  if (at > bytes.size() || bytes.size() - at < (text.size() - 1) * width + 1) return false;
  for (std::size_t i = 0; i < text.size(); i++) {
    if (bytes[at + i * width] != text[i]) return false;
    for (std::size_t zero = 1; zero < width && i + 1 < text.size(); zero++) {
      if (bytes[at + i * width + zero] != 0) return false;
    }
  }
  return true;
}

Mark markAt(std::string_view bytes, std::size_t at, std::size_t width) noexcept {
  for (const auto& row : kMarks) {
    if (hasTextAt(bytes, at, width, row.text)) return row.mark;
  }
  return Mark::kNone;
}

// Where the '>' of the processing instruction at bytes[at] stands. Its end is near, or it is none.
std::size_t closingBracket(std::string_view bytes, std::size_t at, std::size_t width) noexcept {
  constexpr std::size_t kLongest = 64;
  for (std::size_t i = 0; i < kLongest && at < bytes.size(); i++, at += width) {
    if (bytes[at] == '>') return at;
  }
  return kNowhere;
}

struct Range {
  std::size_t start = kNowhere;
  std::size_t end = kNowhere;
  bool isOpen() const noexcept { return start != kNowhere && end == kNowhere; }
  bool isWhole() const noexcept { return end != kNowhere; }
};

// The parts met so far of packets in characters of one width.
struct Scan {
  explicit Scan(std::size_t characterWidth) noexcept : width(characterWidth) {}

  std::size_t width;
  std::size_t bytesBefore = 0;  // Zero bytes before a character's own, in the wrapper at hand: its byte order.
  Range wrapper;
  Range meta;
  Range rdf;

  // A whole packet whose wrapper does not end, or that has none.
  const Range* inner() const noexcept {
    return meta.isWhole() ? &meta : rdf.isWhole() && !meta.isOpen() ? &rdf : nullptr;
  }
};

// Takes the next mark; the packet when that completes one for certain.
const Range* advance(Scan& scan, std::string_view bytes, std::size_t at, Mark mark) noexcept {
  switch (mark) {
    case Mark::kNone:
      return nullptr;
    case Mark::kWrapperStart: {
      if (scan.inner() != nullptr) return scan.inner();  // The wrapper before has lost its end.
      // The byte-order mark in begin="" is what tells the order; without it a packet is in UTF-8.
      const std::size_t bom = at + (sizeof("<?xpacket begin=\"") - 1) * scan.width;
      if (bom >= bytes.size()) return nullptr;
      const bool isLittle = scan.width > 1 && byteAt(bytes, bom) == 0xFF && byteAt(bytes, bom + 1) == 0xFE;
      const bool isBig =
          scan.width > 1 && at >= scan.width - 1 && byteAt(bytes, bom) == 0xFF && byteAt(bytes, bom - 1) == 0xFE;
      if (scan.width > 1 && !isLittle && !isBig) return nullptr;
      scan.bytesBefore = isBig ? scan.width - 1 : 0;
      scan.wrapper = {at - scan.bytesBefore, kNowhere};
      scan.meta = scan.rdf = {};
      return nullptr;
    }
    case Mark::kWrapperEnd: {
      if (!scan.wrapper.isOpen()) return nullptr;
      const std::size_t bracket = closingBracket(bytes, at, scan.width);
      if (bracket == kNowhere) return nullptr;
      scan.wrapper.end = std::min(bytes.size(), bracket + scan.width - scan.bytesBefore);
      return &scan.wrapper;
    }
    case Mark::kMetaStart:
      if (!scan.meta.isWhole()) scan.meta.start = at;
      return nullptr;
    case Mark::kRDFStart:
      if (!scan.rdf.isWhole()) scan.rdf.start = at;
      return nullptr;
    case Mark::kMetaEnd:
      if (scan.meta.isOpen()) scan.meta.end = at + sizeof("</x:xmpmeta>") - 1;
      break;
    case Mark::kRDFEnd:
      if (scan.rdf.isOpen()) scan.rdf.end = at + sizeof("</rdf:RDF>") - 1;
      break;
  }
  return scan.wrapper.isOpen() || scan.meta.isOpen() ? nullptr : scan.inner();
}

}  // namespace

bool isPacket(std::string_view bytes) noexcept {
  constexpr std::size_t kEnough = 1024;  // Bytes in which the first tag has begun.
  try {
    PacketDecoder decoder;
    // What does not change stays a view into the bytes, so a mark or a space before the '<' is looked at here.
    std::string_view text = decoder.decode(bytes.substr(0, kEnough), true);
    if (!decoder.hasStarted()) return false;
    if (detectEncoding(bytes) == PacketEncoding::kUTF8) {
      std::string_view before = bytes.substr(0, bytes.find('<'));
      if (before.substr(0, 3) == kByteOrderMark) before.remove_prefix(3);
      if (!withoutLeadingSpace(before).empty()) return false;
    }
    if (text.substr(0, 6) == "<?xml ")
      text = withoutLeadingSpace(text.substr(std::min(text.find('>'), text.size() - 1) + 1));
    return text.substr(0, 10) == "<?xpacket " || startsWithElement(text);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool findPacket(std::string_view bytes, std::size_t& offset, std::size_t& length) noexcept {
  Scan scans[] = {Scan(1), Scan(2), Scan(4)};
  const Range* found = nullptr;
  for (std::size_t at = bytes.find('<'); at != kNowhere && found == nullptr; at = bytes.find('<', at + 1)) {
    const std::size_t width = byteAt(bytes, at + 1) != 0 ? 1 : byteAt(bytes, at + 2) != 0 ? 2 : 4;
    for (Scan& scan : scans) {
      if (scan.width != width) continue;
      const Mark mark = markAt(bytes, at, width);
      // In wide characters only a wrapper tells the byte order.
      if (width == 1 || mark == Mark::kWrapperStart || mark == Mark::kWrapperEnd)
        found = advance(scan, bytes, at, mark);
    }
  }
  if (found == nullptr) found = scans[0].inner();
  if (found == nullptr) return false;
  offset = found->start;
  length = found->end - found->start;
  return true;
}

}  // namespace velto
