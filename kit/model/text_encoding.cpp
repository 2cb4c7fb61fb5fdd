// Guessing text encodings, and converting to UTF-8.
#include "kit/model/text_encoding.h"

#include <bit>
#include <cstddef>

#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "kit/base/utf8.h"
#include "kit/model/text_scan.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsBetween(std::uint8_t byte, std::uint8_t first, std::uint8_t last) noexcept {
  return byte >= first && byte <= last;
}

// The number of bytes that follow a UTF-8 lead byte; 0 if the byte is not a lead byte. Sequences of five and six bytes,
// which RFC 3629 withdrew, still count: they are valid in no other encoding.
std::size_t FollowingBytes(std::uint8_t lead) noexcept {
  const int ones = std::countl_one(lead);
  return ones >= 2 && ones <= 6 ? static_cast<std::size_t>(ones - 1) : 0;
}

constexpr bool IsFollowingByte(std::uint8_t byte) noexcept {
  return LxIsUtf8Continuation(static_cast<char>(byte));
}

// ---- Error scores: how many bytes of a value are invalid if it has that encoding. The scan covers [0, end) and stops
// at the first zero byte, even within a sequence. Bytes after the text count the same for all encodings: up to the
// value's length, every nonzero byte is an error.

struct Scan {
  const std::uint8_t* bytes;
  std::size_t end;
  std::size_t length;
};

std::int32_t ErrorsAfter(const Scan& scan, std::size_t zero) noexcept {
  std::int32_t errors = 0;
  for (std::size_t at = zero + 1; at < scan.length; ++at) errors += scan.bytes[at] != 0 ? 1 : 0;
  return errors;
}

std::int32_t ScoreUtf8(const Scan& scan) noexcept {
  std::int32_t errors = 0;
  std::size_t at = 0;
  while (at < scan.end) {
    at += LxPrintableRun(scan.bytes + at, scan.end - at);
    if (at == scan.end) break;
    const std::uint8_t byte = scan.bytes[at];
    if (byte == 0) return errors + ErrorsAfter(scan, at);
    const std::size_t following = FollowingBytes(byte);
    if (following == 0) {
      if (!LxIsTextByte(byte)) ++errors;
      ++at;
    } else if (following >= scan.end - at) {
      return errors + 1;  // Truncated: one error, however many bytes are left.
    } else {
      std::size_t zero = 0;
      for (std::size_t i = following; i >= 1; --i) {
        errors += IsFollowingByte(scan.bytes[at + i]) ? 0 : 1;
        if (scan.bytes[at + i] == 0) zero = at + i;
      }
      if (zero != 0) return errors + ErrorsAfter(scan, zero);
      at += following + 1;
    }
  }
  return errors;
}

std::int32_t ScoreLatin1(const Scan& scan) noexcept {
  std::int32_t errors = 0;
  for (std::size_t at = 0; at < scan.end; ++at) {
    at += LxPrintableRun(scan.bytes + at, scan.end - at);
    if (at == scan.end) break;
    const std::uint8_t byte = scan.bytes[at];
    if (byte == 0) return errors + ErrorsAfter(scan, at);
    if (!LxIsTextByte(byte) && byte < 0xA0) ++errors;
  }
  return errors;
}

bool IsEscape(const Scan& scan, std::size_t at, std::uint8_t second, std::uint8_t third,
              std::uint8_t orThird) noexcept {
  if (scan.end - at < 3) return false;
  const std::uint8_t* bytes = scan.bytes + at;
  return bytes[0] == 0x1B && bytes[1] == second && (bytes[2] == third || bytes[2] == orThird);
}

// RFC 1468: ESC $ @ and ESC $ B switch to two-byte characters, ESC ( B and ESC ( J back.
std::int32_t ScoreIso2022Jp(const Scan& scan) noexcept {
  std::int32_t errors = 0;
  std::size_t at = 0;
  bool inPairs = false;
  while (at < scan.end) {
    if (!inPairs) {
      at += LxPrintableRun(scan.bytes + at, scan.end - at);
      if (at == scan.end) break;
    }
    if (scan.bytes[at] == 0) return errors + ErrorsAfter(scan, at);
    if (inPairs ? IsEscape(scan, at, '(', 'B', 'J') : IsEscape(scan, at, '$', '@', 'B')) {
      inPairs = !inPairs;
      at += 3;
    } else if (!inPairs) {
      if (!LxIsTextByte(scan.bytes[at])) ++errors;
      ++at;
    } else if (scan.end - at < 2) {
      return errors + 1;  // Half a pair.
    } else {
      const bool valid = IsBetween(scan.bytes[at], 0x21, 0x7E) && IsBetween(scan.bytes[at + 1], 0x21, 0x7E);
      if (!valid) errors += 2;
      if (scan.bytes[at + 1] == 0) return errors + ErrorsAfter(scan, at + 1);
      at += 2;
    }
  }
  return errors;
}

// Shared by the two encodings in which a lead byte starts a pair. A valid pair is skipped as a whole.
template <typename IsSingle, typename IsLead, typename IsTrail>
std::int32_t ScorePairs(const Scan& scan, IsSingle isSingle, IsLead isLead, IsTrail isTrail) noexcept {
  std::int32_t errors = 0;
  std::size_t at = 0;
  while (at < scan.end) {
    at += LxPrintableRun(scan.bytes + at, scan.end - at);
    if (at == scan.end) break;
    const std::uint8_t byte = scan.bytes[at];
    if (byte == 0) return errors + ErrorsAfter(scan, at);
    if (!isLead(byte)) {
      if (!LxIsTextByte(byte) && !isSingle(byte)) ++errors;
      ++at;
    } else if (scan.end - at < 2) {
      return errors + 1;
    } else {
      if (!isTrail(byte, scan.bytes[at + 1])) errors += 2;
      if (scan.bytes[at + 1] == 0) return errors + ErrorsAfter(scan, at + 1);
      at += 2;
    }
  }
  return errors;
}

std::int32_t ScoreEucJp(const Scan& scan) noexcept {
  const auto inSet = [](std::uint8_t byte) noexcept { return IsBetween(byte, 0xA1, 0xFE); };
  return ScorePairs(
      scan, [](std::uint8_t) noexcept { return false; }, inSet,
      [inSet](std::uint8_t, std::uint8_t trail) noexcept { return inSet(trail); });
}

std::int32_t ScoreShiftJis(const Scan& scan) noexcept {
  return ScorePairs(
      scan, [](std::uint8_t byte) noexcept { return IsBetween(byte, 0xA0, 0xDF); },
      [](std::uint8_t byte) noexcept { return IsBetween(byte, 0x81, 0x9F) || IsBetween(byte, 0xE0, 0xEF); },
      [](std::uint8_t lead, std::uint8_t trail) noexcept {
        return IsBetween(trail, 0x40, 0x7E) || IsBetween(trail, 0x80, lead == 0xEF ? 0x9E : 0xFC);
      });
}

// Equal scores are decided by this order. A text cut by a length limit may end within a character: the last byte is
// then left out instead of counted.
struct Candidate {
  std::int32_t (*score)(const Scan& scan) noexcept;
  std::size_t slack;
  LxTextEncoding encoding;
};
constexpr Candidate kCandidates[] = {
    {ScoreUtf8, 1, kLxTextUtf8},         {ScoreUtf8, 0, kLxTextUtf8},           {ScoreLatin1, 1, kLxTextLatin1},
    {ScoreLatin1, 0, kLxTextLatin1},     {ScoreIso2022Jp, 0, kLxTextIso2022Jp}, {ScoreEucJp, 0, kLxTextEucJp},
    {ScoreShiftJis, 1, kLxTextShiftJis}, {ScoreShiftJis, 0, kLxTextShiftJis},
};

// ---- Conversions: each counts the output in a first pass and writes it in a second, so a text is allocated at its
// exact size.

struct Utf8Sink {
  char* out;  // Null: count only.
  std::uint64_t length;
};

void PutCharacter(Utf8Sink* sink, char32_t c) noexcept {
  char counted[kLxUtf8Most];
  sink->length += LxEncodeUtf8(c, sink->out != nullptr ? sink->out + sink->length : counted);
}

// No bytes, or a negative length: an empty text.
std::size_t SizeOf(const std::uint8_t* bytes, std::int32_t length) noexcept {
  return bytes != nullptr && length > 0 ? static_cast<std::size_t>(length) : 0;
}

template <typename Walk>
char* Convert(const Walk& walk) noexcept {
  Utf8Sink sink = {nullptr, 0};
  walk(&sink);
  if (sink.length >= SIZE_MAX) return nullptr;  // The size can reach six gigabytes, too large for a 32-bit machine.
  sink.out = static_cast<char*>(LxAlloc(static_cast<std::size_t>(sink.length) + 1));
  if (sink.out == nullptr) return nullptr;
  sink.length = 0;
  walk(&sink);
  sink.out[sink.length] = '\0';
  return sink.out;
}

// A lead byte without a trail byte gives one U+FFFD, and the following byte is read on its own, so that damage does not
// swallow the characters after it. 0xF0 to 0xFC lead pairs that vendors assigned to characters of their own, which no
// published table lists; 0x80 and bytes from 0xFD on lead nothing.
void WalkShiftJis(const std::uint8_t* bytes, std::size_t length, Utf8Sink* sink) noexcept {
  std::size_t at = 0;
  while (at < length) {
    const std::uint8_t byte = bytes[at++];
    if (byte < 0x80) {
      PutCharacter(sink, byte);
    } else if (IsBetween(byte, 0xA0, 0xDF)) {
      PutCharacter(sink, byte == 0xA0 ? 0xA0u : 0xFF61u + (byte - 0xA1u));  // Half-width katakana.
    } else {
      const bool isLead = byte != 0x80 && byte <= 0xFC;
      const std::uint8_t trail = at < length ? bytes[at] : std::uint8_t{0};
      if (!isLead || !(IsBetween(trail, 0x40, 0x7E) || IsBetween(trail, 0x80, 0xFC))) {
        PutCharacter(sink, kReplacement);
        continue;
      }
      ++at;
      const char16_t c = LxShiftJisPair(byte, trail);
      PutCharacter(sink, c != 0 ? char32_t{c} : kReplacement);
    }
  }
}

constexpr bool IsHighSurrogate(std::uint32_t unit) noexcept {
  return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(std::uint32_t unit) noexcept {
  return (unit & 0xFC00) == 0xDC00;
}

// Surrogates in the wrong order are read as a pair; a lone surrogate gives nothing.
void WalkUtf16(const std::uint8_t* bytes, std::size_t units, int order, Utf8Sink* sink) noexcept {
  for (std::size_t i = 0; i < units; ++i) {
    const std::uint32_t unit = LxGet16(bytes + 2 * i, order);
    if (unit == 0) return;
    if (!IsHighSurrogate(unit) && !IsLowSurrogate(unit)) {
      PutCharacter(sink, unit);
      continue;
    }
    const std::uint32_t next = i + 1 < units ? LxGet16(bytes + 2 * i + 2, order) : 0u;
    const bool inOrder = IsHighSurrogate(unit) && IsLowSurrogate(next);
    if (!inOrder && !(IsLowSurrogate(unit) && IsHighSurrogate(next))) continue;
    const std::uint32_t high = inOrder ? unit : next;
    const std::uint32_t low = inOrder ? next : unit;
    PutCharacter(sink, 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00));  // RFC 2781, 2.2
    ++i;
  }
}

// ---- The byte order of UTF-16

// Plain ASCII up to the first zero unit, followed only by zero units.
bool IsAsciiUtf16(const std::uint8_t* bytes, std::size_t units, int order) noexcept {
  std::size_t i = 0;
  for (; i < units; ++i) {
    const std::uint16_t unit = LxGet16(bytes + 2 * i, order);
    if (unit == 0) break;
    if (unit > 0xFF || !LxIsTextByte(static_cast<std::uint8_t>(unit))) return false;
  }
  return LxIsZeroFilled(bytes + 2 * i, 2 * (units - i));
}

// Ranges that occur in texts, ascending, with their scripts; 0 goes with every script. U+2000 and the first code points
// of the Indic blocks are left out: they hardly occur, and they are space and line ends in the wrong byte order.
struct ScriptRange {
  char16_t first;
  char16_t last;
  std::uint8_t script;
};
// clang-format off
constexpr ScriptRange kScripts[] = {
    {0x0020, 0x007E,  0}, {0x00A0, 0x024F,  0}, {0x0300, 0x036F,  0},  // Latin, accents
    {0x0370, 0x03FF,  1}, {0x0400, 0x052F,  2},                        // Greek, Cyrillic
    {0x0590, 0x05FF,  3}, {0x0600, 0x06FF,  4},                        // Hebrew, Arabic
    {0x0901, 0x097F,  5}, {0x0981, 0x09FE,  6}, {0x0A01, 0x0A76,  7},  // Devanagari to Malayalam, Thai
    {0x0A81, 0x0AFF,  8}, {0x0B01, 0x0B77,  9}, {0x0B82, 0x0BFA, 10},
    {0x0C01, 0x0C7F, 11}, {0x0C81, 0x0CF2, 12}, {0x0D01, 0x0D7F, 13}, {0x0E01, 0x0E5B, 14},
    {0x1E00, 0x1EFF,  0}, {0x2001, 0x206F,  0}, {0x20A0, 0x20BF,  0},  // More Latin, punctuation, currencies
    {0x2100, 0x214F,  0}, {0x2190, 0x22FF,  0}, {0x2460, 0x26FF,  0},  // Signs
    {0x3000, 0x30FF, 15}, {0x4E00, 0x9FFF, 15}, {0xAC00, 0xD7A3, 16},  // Kana, Han, Hangul
    {0xFF01, 0xFF9F, 15},                                              // Full and half width
};
// clang-format on

const ScriptRange* FindScript(std::uint16_t unit) noexcept {
  for (const ScriptRange& range : kScripts) {
    if (unit <= range.last) return unit >= range.first ? &range : nullptr;
  }
  return nullptr;
}

constexpr int kImpossible = 4;  // Does not occur in text.
constexpr int kRare = 2;

// How implausible the units are as text, by the characters themselves, by changes of script between adjacent units, and
// by adjacent units that share the low byte but not the high one: within a script's block it is the other way round.
std::int64_t Implausibility(const std::uint8_t* bytes, std::size_t units, int order) noexcept {
  std::int64_t score = 0;
  std::uint8_t script = 0;
  std::uint32_t before = 0;
  for (std::size_t i = 0; i < units; ++i) {
    const std::uint16_t unit = LxGet16(bytes + 2 * i, order);
    if (unit == 0) break;
    const ScriptRange* range = FindScript(unit);
    if (range != nullptr) {
      if (range->script != 0 && script != 0 && range->script != script) ++score;
      if (range->script != 0) script = range->script;
    } else if (IsHighSurrogate(unit) && i + 1 < units && IsLowSurrogate(LxGet16(bytes + 2 * i + 2, order))) {
      ++i;  // A character outside the BMP says nothing about the order.
    } else if (unit < 0xA0) {
      const bool isSpace = unit == '\t' || unit == '\n' || unit == '\r';
      score += isSpace ? 0 : kImpossible;
    } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit) || unit >= 0xFFFE) {
      score += kImpossible;
    } else {
      score += kRare;
    }
    const bool sameLow = (unit & 0xFF) == (before & 0xFF);
    if (i != 0 && sameLow && (unit >> 8) != (before >> 8)) ++score;
    before = unit;
  }
  return score;
}

}  // namespace

bool LxIsUtf8Value(const std::uint8_t* bytes, std::int32_t length) noexcept {
  if (bytes == nullptr || length < 1) return false;
  const auto size = static_cast<std::size_t>(length);
  const std::size_t last = size - 1;  // The terminator's place: no character extends into it.
  std::size_t at = 0;
  while (at < last) {
    at += LxPrintableRun(bytes + at, last - at);
    if (at == last || bytes[at] == 0) break;
    const std::size_t following = FollowingBytes(bytes[at]);
    if (following == 0 && !LxIsTextByte(bytes[at])) return false;
    if (following >= last - at) return false;
    for (std::size_t i = 1; i <= following; ++i) {
      if (!IsFollowingByte(bytes[at + i])) return false;
    }
    at += following + 1;
  }
  return LxIsZeroFilled(bytes + at, size - at);
}

LxTextEncoding LxGuessEncoding(const std::uint8_t* bytes, std::int32_t length) noexcept {
  if (bytes == nullptr || length < 1) return kLxTextUtf8;
  const auto size = static_cast<std::size_t>(length);
  LxTextEncoding best = kLxTextUtf8;
  std::int32_t fewest = INT32_MAX;
  for (const Candidate& candidate : kCandidates) {
    const std::int32_t errors = candidate.score({bytes, size - candidate.slack, size});
    if (errors >= fewest) continue;
    fewest = errors;
    best = candidate.encoding;
    if (fewest == 0) break;
  }
  return best;
}

char* LxTextToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept {
  switch (LxGuessEncoding(bytes, length)) {
    case kLxTextLatin1:
      return LxLatin1ToUtf8(bytes, length);
    case kLxTextShiftJis:
      return LxShiftJisToUtf8(bytes, length);
    case kLxTextUtf8:
    case kLxTextIso2022Jp:
    case kLxTextEucJp:
      break;
  }
  return LxCopyText(bytes, LxTextLength(bytes, SizeOf(bytes, length)));
}

char* LxLatin1ToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept {
  const std::size_t size = LxTextLength(bytes, SizeOf(bytes, length));
  return Convert([bytes, size](Utf8Sink* sink) noexcept {
    for (std::size_t at = 0; at < size; ++at) PutCharacter(sink, bytes[at]);
  });
}

char* LxShiftJisToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept {
  const std::size_t size = LxTextLength(bytes, SizeOf(bytes, length));
  return Convert([bytes, size](Utf8Sink* sink) noexcept { WalkShiftJis(bytes, size, sink); });
}

char* LxUtf16ToUtf8(const std::uint8_t* bytes, std::int32_t length, int order) noexcept {
  const std::size_t units = SizeOf(bytes, length) / 2;
  return Convert([bytes, units, order](Utf8Sink* sink) noexcept { WalkUtf16(bytes, units, order, sink); });
}

int LxGuessUtf16Order(const std::uint8_t* bytes, std::int32_t length) noexcept {
  if (bytes == nullptr || length < 2) return kLxLittleEndian;
  const auto units = static_cast<std::size_t>(length) / 2;
  if (IsAsciiUtf16(bytes, units, kLxLittleEndian)) return kLxLittleEndian;
  if (IsAsciiUtf16(bytes, units, kLxBigEndian)) return kLxBigEndian;
  const std::uint16_t first = LxGet16(bytes, kLxBigEndian);
  if (first == 0xFEFF) return kLxBigEndian;
  if (first == 0xFFFE) return kLxLittleEndian;
  const std::int64_t little = Implausibility(bytes, units, kLxLittleEndian);
  return Implausibility(bytes, units, kLxBigEndian) < little ? kLxBigEndian : kLxLittleEndian;
}
