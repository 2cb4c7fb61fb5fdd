// Decoding the bytes of a packet.
#include "outside/xmp/packet_encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "kit/base/utf8.h"
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

// The first position that is not printable ASCII, tab or line end. Most of a packet is such text, so eight bytes are
// tested at once: a byte is special if its high bit is set or it is below 0x20.
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

// Whether text[at] starts a surrogate encoded as a character: ED A0 80 to ED BF BF.
bool isEncodedSurrogate(std::string_view text, std::size_t at, std::uint8_t low, std::uint8_t high) noexcept {
  return text.size() - at >= 3 && byteAt(text, at) == 0xED && byteAt(text, at + 1) >= low &&
         byteAt(text, at + 1) <= high && LxIsUtf8Continuation(text[at + 2]);
}

// The number of bytes at text[at], which cannot be decoded, that repairText replaces as one.
std::size_t brokenLength(std::string_view text, std::size_t at) noexcept {
  if (!isEncodedSurrogate(text, at, 0xA0, 0xBF)) return 1;
  const bool isPair =
      isEncodedSurrogate(text, at, 0xA0, 0xAF) && text.size() - at >= 6 && isEncodedSurrogate(text, at + 3, 0xB0, 0xBF);
  return isPair ? 6 : 3;
}

// The code unit at bytes[at], or 0 if there is none.
std::uint32_t unitAt(std::string_view bytes, std::size_t at, PacketEncoding encoding) noexcept {
  const std::size_t size = unitSize(encoding);
  if (bytes.size() < size || at > bytes.size() - size) return 0;
  std::uint32_t unit = 0;
  for (std::size_t byte = 0; byte < size; ++byte) {
    unit = (unit << 8) | byteAt(bytes, at + (isBigEndian(encoding) ? byte : size - 1 - byte));
  }
  return unit;
}

// Whether "<" and another ASCII character are at this position, with or without a byte-order mark before them.
bool startsPacket(std::string_view bytes, std::size_t at, PacketEncoding encoding) noexcept {
  const std::size_t size = unitSize(encoding);
  if (size > 1 && unitAt(bytes, at, encoding) == 0xFEFF) at += size;
  if (size == 1 && bytes.substr(at, 3) == kByteOrderMark) at += 3;
  if (unitAt(bytes, at, encoding) != '<') return false;
  const std::uint32_t second = unitAt(bytes, at + size, encoding);
  return second > ' ' && second < 0x7F;
}

// A numeric character reference (XML 1.0, production 66).
struct Reference {
  std::size_t length = 0;       // 0: there is none.
  bool isCut = false;           // The text ends within the reference.
  std::uint32_t codePoint = 0;  // Above U+10FFFF if it is not a character.
};

Reference referenceAt(std::string_view text, std::size_t at) noexcept {
  // Longer references have leading zeros and are left to the XML parser.
  constexpr std::size_t kLongest = 32;
  const std::string_view rest = text.substr(at, kLongest);
  Reference reference;
  const bool isWhole = rest.size() == kLongest;
  if (rest == "&" || rest == "&#" || rest == "&#x") {
    reference.isCut = true;
    return reference;
  }
  if (rest.substr(0, 2) != "&#") return reference;
  const bool isHex = rest[2] == 'x';
  const std::size_t first = isHex ? 3 : 2;
  std::size_t end = first;
  for (; end < rest.size(); ++end) {
    const char c = rest[end];
    const bool isLetter = isHex && (c | 0x20) >= 'a' && (c | 0x20) <= 'f';
    if (!isLetter && (c < '0' || c > '9')) break;
    const auto digit = static_cast<std::uint32_t>(isLetter ? (c | 0x20) - 'a' + 10 : c - '0');
    reference.codePoint = std::min<std::uint32_t>(reference.codePoint * (isHex ? 16 : 10) + digit, 0x110000);
  }
  if (end == rest.size()) {
    reference.isCut = !isWhole;
  } else if (end > first && rest[end] == ';') {
    reference.length = end + 1;
  }
  return reference;
}

bool isHighSurrogate(std::uint32_t codePoint) noexcept {
  return codePoint >= 0xD800 && codePoint <= 0xDBFF;
}

// The number of bytes at the end of the text that are an incomplete mark.
std::size_t startedLength(std::string_view text, std::string_view mark) noexcept {
  for (std::size_t length = std::min(text.size(), mark.size() - 1); length > 0; --length) {
    if (text.substr(text.size() - length) == mark.substr(0, length)) return length;
  }
  return 0;
}

constexpr std::string_view kCommentStart = "<!--";
constexpr std::string_view kCommentEnd = "-->";
constexpr std::string_view kCDataStart = "<![CDATA[";
constexpr std::string_view kCDataEnd = "]]>";

}  // namespace

PacketStart detectStart(std::string_view start) noexcept {
  constexpr PacketEncoding kAll[] = {PacketEncoding::kUTF8, PacketEncoding::kUTF16BE, PacketEncoding::kUTF16LE,
                                     PacketEncoding::kUTF32BE, PacketEncoding::kUTF32LE};
  for (std::size_t zeros = 0; zeros <= 3; ++zeros) {
    for (const PacketEncoding encoding : kAll) {
      if (startsPacket(start, zeros, encoding)) return {zeros, encoding};
    }
    if (byteAt(start, zeros) != 0) break;
  }
  // Something else precedes the first '<'.
  const std::uint8_t first = byteAt(start, 0);
  const std::uint8_t second = byteAt(start, 1);
  const std::uint8_t third = byteAt(start, 2);
  const std::uint8_t fourth = byteAt(start, 3);
  if (first == 0xFE && second == 0xFF) return {0, PacketEncoding::kUTF16BE};
  if (first == 0xFF && second == 0xFE) {
    return {0, third == 0 && fourth == 0 ? PacketEncoding::kUTF32LE : PacketEncoding::kUTF16LE};
  }
  if (first == 0 && second == 0) return {0, PacketEncoding::kUTF32BE};  // Also matches the mark 00 00 FE FF.
  if (first == 0) return {0, PacketEncoding::kUTF16BE};
  if (second == 0) return {0, third == 0 && fourth == 0 ? PacketEncoding::kUTF32LE : PacketEncoding::kUTF16LE};
  return {0, PacketEncoding::kUTF8};
}

void PacketDecoder::reset() noexcept {
  isDetected_ = hasStarted_ = isPrologDone_ = false;
  section_ = Section::kNone;
  encoding_ = PacketEncoding::kUTF8;
  droppedLines_ = droppedColumns_ = 0;
  sections_.clear();
  firstBytes_.clear();
  heldBytes_.clear();
  heldText_.clear();
  prolog_.clear();
}

std::string_view PacketDecoder::decode(std::string_view bytes, bool last) {
  if (!isDetected_ && !detect(bytes, last)) return {};
  if (encoding_ != PacketEncoding::kUTF8) {
    transcode(bytes, last);
    bytes = transcoded_;
  }
  std::string_view text = repairReferences(joinHeld(bytes), last);
  text = dropBeforeStart(clean(text, last));
  return isPrologDone_ || !hasStarted_ ? text : blankDeclaration(text, last);
}

// False while the first bytes are incomplete; else `bytes` becomes all bytes so far.
bool PacketDecoder::detect(std::string_view& bytes, bool last) {
  if (!firstBytes_.empty() || bytes.size() < kPacketStartBytes) {
    firstBytes_.append(bytes);
    if (firstBytes_.size() < kPacketStartBytes && !last) return false;
    bytes = firstBytes_;
  }
  const PacketStart start = detectStart(bytes.substr(0, kPacketStartBytes));
  bytes.remove_prefix(start.zeros);
  encoding_ = start.encoding;
  isDetected_ = true;
  return true;
}

// Appends only whole characters; a high surrogate waits for the low one.
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

std::string_view PacketDecoder::joinHeld(std::string_view text) {
  if (heldText_.empty()) return text;
  joined_ = heldText_;
  joined_.append(text);
  heldText_.clear();
  return joined_;
}

// Finds the comments and CDATA sections of the piece. Few packets have any, so the search is for '!'. `held` receives
// the number of bytes at the end that may begin or end a section.
void PacketDecoder::findSections(std::string_view text, bool last, std::size_t& held) {
  sections_.clear();
  std::size_t at = 0;
  for (;;) {
    if (section_ == Section::kNone) {
      const std::size_t mark = text.find('!', at);
      if (mark == std::string_view::npos) break;
      at = mark + 1;
      if (mark == 0 || text[mark - 1] != '<') continue;
      const std::string_view rest = text.substr(mark - 1);
      if (rest.substr(0, kCommentStart.size()) == kCommentStart) {
        section_ = Section::kComment;
        at = mark - 1 + kCommentStart.size();
      } else if (rest.substr(0, kCDataStart.size()) == kCDataStart) {
        section_ = Section::kCData;
        at = mark - 1 + kCDataStart.size();
      } else {
        continue;
      }
    }
    const std::string_view endMark = section_ == Section::kComment ? kCommentEnd : kCDataEnd;
    const std::size_t end = text.find(endMark, at);
    sections_.push_back({at, std::min(end, text.size())});
    if (end == std::string_view::npos) {
      if (!last) held = startedLength(text, endMark);
      return;
    }
    section_ = Section::kNone;
    at = end + endMark.size();
  }
  if (!last) held = std::max(startedLength(text, kCommentStart), startedLength(text, kCDataStart));
}

// Replaces each reference to a character that XML forbids by repairText's replacement for it, and two references to a
// surrogate pair by the pair's character.
std::string_view PacketDecoder::repairReferences(std::string_view text, bool last) {
  std::size_t held = 0;
  findSections(text, last, held);
  const auto* section = sections_.data();
  const auto* const sectionsEnd = section + sections_.size();
  repaired_.clear();
  std::size_t copied = 0;
  std::size_t end = text.size() - held;
  for (std::size_t at = text.find('&'); at < end; at = text.find('&', at)) {
    while (section != sectionsEnd && section->end <= at) ++section;
    if (section != sectionsEnd && section->start <= at) {
      at = section->end;
      continue;
    }
    const Reference reference = referenceAt(text, at);
    std::size_t length = reference.length;
    std::uint32_t codePoint = reference.codePoint;
    bool isCut = reference.isCut;
    if (length != 0 && isHighSurrogate(codePoint)) {
      const Reference low = referenceAt(text, at + length);
      isCut = low.isCut || at + length == text.size();
      if (low.length != 0 && low.codePoint >= 0xDC00 && low.codePoint <= 0xDFFF) {
        codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (low.codePoint - 0xDC00);
        length += low.length;
      }
    }
    if (isCut && !last) {
      end = at;
      break;
    }
    if (length == 0 || (isXMLChar(codePoint) && length == reference.length)) {
      at += std::max<std::size_t>(length, 1);
      continue;
    }
    repaired_.append(text.substr(copied, at - copied));
    if (codePoint < 0xD800 || codePoint == 0xFFFE || codePoint == 0xFFFF) {
      repaired_ += ' ';
    } else {
      appendUTF8(repaired_, codePoint);
    }
    at += length;
    copied = at;
  }
  if (end < text.size()) heldText_.assign(text.substr(end));
  text = text.substr(0, end);
  if (copied == 0) return text;
  repaired_.append(text.substr(copied));
  return repaired_;
}

// Copies clean stretches and repairs bad characters one by one, so the repair rules are in one place, and clean text
// costs one test per byte.
std::string_view PacketDecoder::clean(std::string_view text, bool last) {
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
      // A character may continue in the next piece; the longest sequence to be recognised is a surrogate pair of six
      // bytes.
      if (!last && text.size() - at < 6 && heldText_.empty()) {
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
    } else if (!LxIsUtf8Continuation(text[at]) && text.substr(at, 3) != kByteOrderMark) {
      droppedColumns_++;
    }
  }
  hasStarted_ = start < text.size();
  return text.substr(start);
}

// Looks through processing instructions, comments and a document type, up to the first element. Only the first
// instruction can be an XML declaration; some writers put one after the packet's header.
std::string_view PacketDecoder::blankDeclaration(std::string_view text, bool last) {
  constexpr std::size_t kLongest = 64 * 1024;
  if (!prolog_.empty()) {
    prolog_.append(text);
    text = prolog_;
  }
  std::size_t at = 0;
  while (true) {
    at = text.find_first_not_of(" \t\r\n", at);
    const std::string_view rest = at == std::string_view::npos ? std::string_view() : text.substr(at);
    const bool isInstruction = rest.substr(0, 2) == "<?";
    const bool isComment = rest.substr(0, 4) == kCommentStart;
    const bool isOther = rest.size() > 3 && !isComment && rest[1] == '!';
    if (rest.size() > 3 && !isInstruction && !isComment && !isOther) break;
    const std::string_view endMark = isInstruction ? "?>" : isComment ? kCommentEnd : ">";
    const std::size_t end = rest.size() > 3 ? rest.find(endMark) : std::string_view::npos;
    if (end == std::string_view::npos) {
      if (last || text.size() > kLongest) break;
      if (prolog_.empty()) prolog_.assign(text);
      return {};
    }
    const std::size_t length = end + endMark.size();
    if (at != 0 && isInstruction && rest.substr(0, 5) == "<?xml" &&
        (rest[5] == '?' || rest[5] == ' ' || rest[5] == '\t' || rest[5] == '\r' || rest[5] == '\n')) {
      if (prolog_.empty()) prolog_.assign(text);
      text = prolog_;
      for (std::size_t blank = at; blank < at + length; ++blank) {
        if (prolog_[blank] != '\n' && prolog_[blank] != '\r') prolog_[blank] = ' ';
      }
    }
    at += length;
  }
  isPrologDone_ = true;
  return text;
}

}  // namespace velto
