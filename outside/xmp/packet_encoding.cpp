// May use the texts only.
#include "outside/xmp/packet_encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

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

}  // namespace velto
