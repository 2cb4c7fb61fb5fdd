// See packet_encoding.h; and the two questions about packets among other bytes that rdf.h declares.
#include "outside/xmp/packet_encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

#include "outside/xmp/rdf.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::uint8_t byteAt(std::string_view bytes, std::size_t at) noexcept {
  return at < bytes.size() ? static_cast<std::uint8_t>(bytes[at]) : 1;
}

std::size_t unitSize(PacketEncoding encoding) noexcept {
  switch (encoding) {
    case PacketEncoding::kUTF8:
      return 1;
    case PacketEncoding::kUTF16BE:
    case PacketEncoding::kUTF16LE:
      return 2;
    case PacketEncoding::kUTF32BE:
    case PacketEncoding::kUTF32LE:
      return 4;
  }
  return 1;
}

bool isBigEndian(PacketEncoding encoding) noexcept {
  return encoding == PacketEncoding::kUTF16BE || encoding == PacketEncoding::kUTF32BE;
}

// The first position that is no printable ASCII and no tab or line end. Most of a packet is such text, so eight bytes
// are looked at in one go: a byte is special when its high bit is set or when it is below 0x20.
std::size_t skipPlain(std::string_view text, std::size_t at) noexcept {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  while (true) {
    while (text.size() - at >= 8) {
      std::uint64_t eight;
      std::memcpy(&eight, text.data() + at, 8);
      const std::uint64_t belowSpace = (eight | kHighBits) - 0x2020202020202020u;  // High bit clear: below 0x20.
      if (((eight | ~belowSpace) & kHighBits) != 0) break;
      at += 8;
    }
    const std::size_t stop = std::min(text.size(), at + 8);
    for (; at < stop; at++) {
      const auto byte = static_cast<std::uint8_t>(text[at]);
      if (byte >= 0x80 || (byte < 0x20 && byte != '\n' && byte != '\r' && byte != '\t')) return at;
    }
    if (at == text.size()) return at;
  }
}

// Whether a surrogate stands at text[at], encoded as if it were a character: ED A0 80 to ED BF BF.
bool isEncodedSurrogate(std::string_view text, std::size_t at, std::uint8_t low, std::uint8_t high) noexcept {
  return text.size() - at >= 3 && byteAt(text, at) == 0xED && byteAt(text, at + 1) >= low &&
         byteAt(text, at + 1) <= high && (byteAt(text, at + 2) & 0xC0) == 0x80;
}

// How many bytes at text[at], where no character could be decoded, repairText takes as one.
std::size_t brokenLength(std::string_view text, std::size_t at) noexcept {
  if (!isEncodedSurrogate(text, at, 0xA0, 0xBF)) return 1;
  const bool isPair =
      isEncodedSurrogate(text, at, 0xA0, 0xAF) && text.size() - at >= 6 && isEncodedSurrogate(text, at + 3, 0xB0, 0xBF);
  return isPair ? 6 : 3;
}

}  // namespace

PacketEncoding detectEncoding(std::string_view start) noexcept {
  const std::uint8_t first = byteAt(start, 0);
  const std::uint8_t second = byteAt(start, 1);
  const std::uint8_t third = byteAt(start, 2);
  const std::uint8_t fourth = byteAt(start, 3);
  if (first == 0xFE && second == 0xFF) return PacketEncoding::kUTF16BE;
  if (first == 0xFF && second == 0xFE) {
    return third == 0 && fourth == 0 ? PacketEncoding::kUTF32LE : PacketEncoding::kUTF16LE;
  }
  if (first == 0 && second == 0) return PacketEncoding::kUTF32BE;  // The mark 00 00 FE FF too.
  if (first == 0) return PacketEncoding::kUTF16BE;
  if (second == 0) return third == 0 && fourth == 0 ? PacketEncoding::kUTF32LE : PacketEncoding::kUTF16LE;
  return PacketEncoding::kUTF8;
}

std::string_view PacketDecoder::decode(std::string_view bytes, bool last) {
  if (!isDetected_ && !detect(bytes, last)) return {};
  if (encoding_ == PacketEncoding::kUTF8) return dropBeforeStart(clean(bytes, last));
  transcode(bytes, last);
  return dropBeforeStart(clean(transcoded_, last));
}

// False as long as the first bytes are not all there; then `bytes` become all bytes so far.
bool PacketDecoder::detect(std::string_view& bytes, bool last) {
  if (!firstBytes_.empty() || bytes.size() < 4) {
    firstBytes_.append(bytes);
    if (firstBytes_.size() < 4 && !last) return false;
    bytes = firstBytes_;
  }
  encoding_ = detectEncoding(bytes);
  isDetected_ = true;
  return true;
}

// Appends whole characters only; a high surrogate waits for the low one.
void PacketDecoder::transcode(std::string_view bytes, bool last) {
  const std::size_t unit = unitSize(encoding_);
  const bool bigEndian = isBigEndian(encoding_);
  heldBytes_.append(bytes);
  std::size_t whole = last ? heldBytes_.size() : heldBytes_.size() / unit * unit;
  if (unit == 2 && whole >= 2 && !last) {
    const std::uint8_t highByte = byteAt(heldBytes_, bigEndian ? whole - 2 : whole - 1);
    if ((highByte & 0xFC) == 0xD8) whole -= 2;
  }
  const std::string_view units = std::string_view(heldBytes_).substr(0, whole);
  transcoded_ = unit == 2 ? fromUTF16(units, bigEndian) : fromUTF32(units, bigEndian);
  heldBytes_.erase(0, whole);
}

// Where text is not clean, the clean stretches are copied and the broken characters repaired one by one; so how a
// character is repaired is said in one place, and text that needs no repair costs one look at each byte.
std::string_view PacketDecoder::clean(std::string_view text, bool last) {
  if (!heldText_.empty()) {
    joined_ = heldText_;
    joined_.append(text);
    heldText_.clear();
    text = joined_;
  }
  cleaned_.clear();
  std::size_t copied = 0;
  std::size_t at = 0;
  bool isChanged = false;
  while ((at = skipPlain(text, at)) < text.size()) {
    std::size_t end = at;
    std::uint32_t codePoint = 0;
    if (decodeUTF8(text, end, codePoint)) {
      if (isXMLChar(codePoint)) {
        at = end;
        continue;
      }
    } else {
      // A character may have begun whose end is in the next piece; the longest to be told apart are a surrogate pair's
      // six bytes.
      if (!last && text.size() - at < 6) {
        heldText_.assign(text.substr(at));
        text = text.substr(0, at);
        break;
      }
      end = at + brokenLength(text, at);
    }
    isChanged = true;
    cleaned_.append(text.substr(copied, at - copied));
    cleaned_.append(repairText(text.substr(at, end - at)));
    at = copied = end;
  }
  if (!isChanged) return text;
  cleaned_.append(text.substr(copied));
  return cleaned_;
}

std::string_view PacketDecoder::dropBeforeStart(std::string_view text) noexcept {
  if (hasStarted_) return text;
  const std::size_t start = std::min(text.find('<'), text.size());
  for (std::size_t at = 0; at < start; at++) {
    if (text[at] == '\n') {
      droppedLines_++;
      droppedColumns_ = 0;
    } else if ((byteAt(text, at) & 0xC0) != 0x80 && text.substr(at, 3) != kByteOrderMark) {
      droppedColumns_++;
    }
  }
  hasStarted_ = start < text.size();
  return text.substr(start);
}

// --- packets among other bytes ---------------------------------------------------------------------------------------

namespace {

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

constexpr std::size_t kNowhere = std::string_view::npos;

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
