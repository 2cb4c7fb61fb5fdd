// Maker notes (Exif 2.2, 4.6.5: tag 0x927C, with a layout of each maker's own): choosing the maker's dictionary,
// finding the layout and the origin of the value offsets, reading the IFDs.
#include <algorithm>
#include <cstring>

#include "kit/base/byte_cursor.h"
#include "kit/model/text_scan.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"

namespace {

// The variant of a maker note's descriptor: the header's length in the low byte, the layout in the next.
constexpr std::uint32_t kDetectLayout = 255;
constexpr std::uint32_t kOwnTiffHeader = 0x40;
constexpr std::uint32_t kForcedOrder = 0x80;  // The order in the low bits.

constexpr std::size_t kLongestSignature = 24;  // Headers are searched for at offsets below it.
constexpr std::size_t kEntrySize = 12;
constexpr std::size_t kSmallestIfd = 14;
constexpr std::size_t kSmallestTiff = 22;

constexpr std::uint16_t kFewestEntries = 2, kMostEntries = 255;  // Of an IFD whose place is only guessed.
constexpr std::size_t kLongestGuess = 2 + kEntrySize * kMostEntries;
constexpr std::uint16_t kMostChainEntries = 1000;  // Of an IFD at its expected place.
constexpr std::uint32_t kMostElements = 65536;

struct Layout {
  std::uint32_t headerLength;
  std::uint32_t flags;
};

bool LxIsPlausibleIfd(LxByteCursor in, int order) noexcept {
  std::uint16_t entries = 0;
  if (in.left < kSmallestIfd || !LxTake16(&in, order, &entries)) return false;
  if (entries < kFewestEntries || entries > kMostEntries || in.left < kEntrySize * entries) return false;
  for (std::uint16_t i = 0; i < entries; ++i) {
    std::uint16_t tag = 0, type = 0;
    std::uint32_t count = 0, field = 0;
    if (!LxTake16(&in, order, &tag) || !LxTake16(&in, order, &type) || !LxTake32(&in, order, &count) ||
        !LxTake32(&in, order, &field)) {
      return false;
    }
    if (type < kLxTypeByte || type > kLxTypeUnicode || count >= kMostElements) return false;
  }
  return true;
}

// A maker note during layout detection. Only the bytes that determine the layout are mapped, since a note may extend to
// the end of a large file.
struct Note {
  LxBlockCache* cache;
  std::uint32_t start;
  std::size_t size;
  const std::uint8_t* bytes;  // The first `mapped` bytes.
  std::size_t mapped;
};

bool IsTiffHeader(const Note& note, std::size_t at) noexcept {
  const std::size_t left = note.size - at;
  if (left < kSmallestTiff) return false;
  const std::uint8_t* header = note.bytes + at;
  int order = kLxLittleEndian;
  if (std::memcmp(header, "MM\0\x2A", 4) == 0) {
    order = kLxBigEndian;
  } else if (std::memcmp(header, "II\x2A\0", 4) != 0) {
    return false;
  }
  const std::uint32_t offset = LxGet32(header + 4, order);
  if ((offset & 1) != 0 || offset > left || left - offset < kSmallestIfd) return false;
  const std::size_t length = std::min(left - offset, kLongestGuess);
  const std::uint8_t* ifd = LxMapFileRange(note.cache, std::uint64_t{note.start} + at + offset, length);
  return ifd != nullptr && LxIsPlausibleIfd({ifd, length}, order);
}

// Finds the start and the byte order of a maker note's IFD or TIFF header. The header length stays kDetectLayout if
// neither is found.
Layout LxDetectMakerNoteLayout(const Note& note) noexcept {
  const std::size_t starts = std::min(note.size, kLongestSignature);
  for (std::size_t i = 0; i < starts; ++i) {
    if (IsTiffHeader(note, i)) return {static_cast<std::uint32_t>(i), kOwnTiffHeader};
  }
  for (std::size_t i = 0; i < starts; ++i) {
    const LxByteCursor ifd = {note.bytes + i, note.mapped - i};
    for (const int order : {kLxLittleEndian, kLxBigEndian}) {
      if (LxIsPlausibleIfd(ifd, order)) {
        return {static_cast<std::uint32_t>(i), kForcedOrder | static_cast<std::uint32_t>(order)};
      }
    }
  }
  return {kDetectLayout, 0};
}

// An IFD whose bytes are mapped, and the origin of its value offsets.
struct Ifd {
  const std::uint8_t* entries;
  std::uint16_t count;
  int order;
};

struct Value {
  std::uint16_t type;
  std::uint32_t count;
  std::uint32_t offset;
  std::uint64_t length;
};

// The value of entry `index` if it is stored out of line.
bool OutOfLineValue(const Ifd& ifd, std::uint16_t index, Value* value) noexcept {
  LxByteCursor in = {ifd.entries + kEntrySize * index, kEntrySize};
  std::uint16_t tag = 0;
  if (!LxTake16(&in, ifd.order, &tag) || !LxTake16(&in, ifd.order, &value->type) ||
      !LxTake32(&in, ifd.order, &value->count) || !LxTake32(&in, ifd.order, &value->offset)) {
    return false;
  }
  value->length = std::uint64_t{LxElementSize(value->type)} * value->count;
  return value->length > 4;
}

// Counts in runs whose result fits a byte, so that the compiler can vectorise: some notes are a single blob of tens of
// thousands of bytes, which is scanned for each origin.
std::uint64_t CountBytesBelow(const std::uint8_t* bytes, std::uint64_t count, std::uint8_t limit) noexcept {
  constexpr std::uint64_t kRun = 128;
  std::uint64_t below = 0;
  for (std::uint64_t done = 0; done < count; done += kRun) {
    const std::uint64_t run = std::min(kRun, count - done);
    std::uint8_t belowInRun = 0;
    for (std::uint64_t i = 0; i < run; ++i) {
      belowInRun = static_cast<std::uint8_t>(belowInRun + (bytes[done + i] < limit ? 1 : 0));
    }
    below += belowInRun;
  }
  return below;
}

// Counts elements of `size` bytes whose first number, of `width` bytes, has a zero upper half.
std::uint64_t CountUpperHalfZero(const std::uint8_t* bytes, std::uint64_t count, std::size_t size, std::size_t width,
                                 int order) noexcept {
  const std::uint8_t* upper = bytes + (order == kLxBigEndian ? 0 : width / 2);
  std::uint64_t zero = 0;
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint8_t* half = upper + size * i;
    if (half[0] == 0 && (width == 2 || half[1] == 0)) ++zero;
  }
  return zero;
}

// A text is plausible if only zero bytes follow it.
std::uint64_t CountTextBytes(const std::uint8_t* bytes, std::uint64_t count) noexcept {
  const auto length = static_cast<std::size_t>(count);
  const std::size_t text = LxTextLength(bytes, length);
  if (text == length || !LxIsZeroFilled(bytes + text, length - text)) return 0;
  return static_cast<std::uint64_t>(std::count_if(bytes, bytes + text, LxIsPrintableByte)) + (length - text);
}

// Counts the elements that look like values written by cameras; false for a type that cannot be judged.
bool CountPlausible(const Value& value, const std::uint8_t* bytes, int order, std::uint64_t* plausible) noexcept {
  *plausible = 0;
  switch (value.type) {
    case kLxTypeByte:
    case kLxTypeSByte:
      *plausible = CountBytesBelow(bytes, value.count, 16);
      return true;
    case kLxTypeUndefined:
      *plausible = CountBytesBelow(bytes, value.count, 127);
      return true;
    case kLxTypeAscii:
      *plausible = CountTextBytes(bytes, value.count);
      return true;
    case kLxTypeShort:
    case kLxTypeSShort:
      *plausible = CountUpperHalfZero(bytes, value.count, 2, 2, order);
      return true;
    case kLxTypeLong:
    case kLxTypeSLong:
    case kLxTypeRational:
    case kLxTypeSRational:
      *plausible = CountUpperHalfZero(bytes, value.count, LxElementSize(value.type), 4, order);
      return true;
    default:
      return false;
  }
}

std::int32_t LxScoreIfdValues(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context, const Ifd& ifd,
                              std::uint32_t shift) noexcept {
  LxParseRange shifted = range;
  shifted.base = range.base + shift;  // Modulo 2^32: LxAddressInFile treats a base before the file as negative.
  std::int32_t score = 0;
  for (std::uint16_t i = 0; i < ifd.count; ++i) {
    Value value;
    if (!OutOfLineValue(ifd, i, &value)) continue;
    const std::int64_t address = LxAddressInFile(shifted, value.offset);
    if (address < 0 || value.length > static_cast<std::uint64_t>(cache->fileSize)) continue;
    // Scanning values costs as much as reading them, so both share a budget.
    if (!LxChargeValueBytes(context, static_cast<std::int64_t>(value.length))) break;
    const std::uint8_t* bytes = LxMapFileRange(cache, static_cast<std::uint64_t>(address), value.length);
    std::uint64_t plausible = 0;
    if (bytes == nullptr || !CountPlausible(value, bytes, ifd.order, &plausible)) continue;
    score += plausible == value.count ? 3 : plausible + 1 == value.count ? 2 : plausible >= value.count / 2 ? 1 : 0;
  }
  return score;
}

// The distance from the range's base to the origin of the value offsets. Editors that move a maker note leave its
// offsets unchanged. The alternative, a shift that puts the lowest value right after the IFD, is chosen if it makes
// more values plausible.
std::uint32_t LxChooseMakerNoteBase(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                    std::uint32_t ifdOffset) noexcept {
  const std::int64_t address = LxAddressInFile(range, ifdOffset);
  if (address < range.lowLimit || address >= range.highLimit) return 0;
  const auto at = static_cast<std::uint64_t>(address);
  const int order = context->byteOrder;
  const std::uint8_t* bytes = LxMapFileRange(cache, at, 2);
  if (bytes == nullptr) return 0;
  const std::uint16_t count = LxGet16(bytes, order);
  if (count == 0 || count > kMostChainEntries) return 0;
  const std::uint32_t length = 12u * count + 6u;
  bytes = LxMapFileRange(cache, at, length);
  if (bytes == nullptr) return 0;

  const Ifd ifd = {bytes + 2, count, order};
  std::uint32_t lowest = 0xFFFFFFFF;
  for (std::uint16_t i = 0; i < count; ++i) {
    Value value;
    if (OutOfLineValue(ifd, i, &value)) lowest = std::min(lowest, value.offset);
  }
  const std::uint32_t shift = ifdOffset + length - lowest;  // Modulo 2^32: values may have moved in either direction.
  if (shift == 0) return 0;
  const std::int32_t shifted = LxScoreIfdValues(cache, range, context, ifd, shift);
  return shifted > LxScoreIfdValues(cache, range, context, ifd, 0) ? shift : 0;
}

// The text of a Make or Model item: up to its zero byte, or all of it.
bool TextOf(const LxMetadataItem* item, const char** text, std::size_t* length) noexcept {
  if (item == nullptr || item->value == nullptr || item->valueLength < 0) return false;
  *text = reinterpret_cast<const char*>(item->value);
  *length = LxTextLength(item->value, static_cast<std::size_t>(item->valueLength));
  return true;
}

// Like LxFindTagByName, for a text without terminator: an empty record name matches anything.
const LxTagRecord* MatchText(const char* text, std::size_t length, const LxTagRecord* selector) noexcept {
  for (const LxTagRecord* record = selector; record->name != nullptr; ++record) {
    const std::size_t nameLength = std::strlen(record->name);
    if (nameLength == 0 || (nameLength == length && std::memcmp(record->name, text, length) == 0)) return record;
  }
  return nullptr;
}

}  // namespace

LxMetadataItem* LxChooseMakerVendor(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                    const LxNamespaceDescriptor& descriptor) noexcept {
  const char* text = nullptr;
  std::size_t length = 0;
  if (!TextOf(descriptor.variant == 0 ? context->make : context->model, &text, &length)) return nullptr;
  const LxTagRecord* record = MatchText(text, length, descriptor.dictionary);
  if (record == nullptr || record->subNamespace == nullptr) return nullptr;
  return LxParseWithDescriptor(cache, range, context, *record->subNamespace);
}

LxMetadataItem* LxReadMakerNote(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                const LxNamespaceDescriptor& descriptor) noexcept {
  const std::size_t size = range.end - range.start;
  const std::size_t mapped = std::min(size, kLongestSignature + kLongestGuess);
  const std::uint8_t* bytes = LxMapFileRange(cache, range.start, mapped);
  if (bytes == nullptr || range.end > static_cast<std::uint32_t>(cache->fileSize)) return nullptr;
  Layout layout = {descriptor.variant & 0xFF, descriptor.variant >> 8 & 0xFF};
  if (layout.headerLength == kDetectLayout) {
    // Testing every offset costs far more than reading the entry, so it is charged.
    if (!LxChargeValueBytes(context, static_cast<std::int64_t>(mapped))) return nullptr;
    layout = LxDetectMakerNoteLayout({cache, range.start, size, bytes, mapped});
    if (layout.headerLength == kDetectLayout) return nullptr;
  }
  if (layout.headerLength > size) return nullptr;

  LxItemList list;
  const std::uint32_t orderFlag = context->byteOrder == kLxBigEndian ? kLxBigEndianValue : 0;
  LxMetadataItem* header = LxAppendNewItem(context, &list, "makerh", "MakerNoteHeader", orderFlag, 0, kLxTypeUndefined,
                                           static_cast<std::int32_t>(layout.headerLength), bytes);
  if (header == nullptr || !LxEnterLevel(context)) return list.first;

  if ((layout.flags & kOwnTiffHeader) != 0) {
    LxParseRange own = range;
    own.base += layout.headerLength;
    own.start += layout.headerLength;
    // Its byte order stays in effect afterwards, as for any TIFF header.
    header->firstChild = LxReadTiffHeader(cache, own, context, descriptor);
  } else {
    const int order = context->byteOrder;
    if ((layout.flags & kForcedOrder) != 0) context->byteOrder = static_cast<int>(layout.flags & 0x7F);
    const std::uint32_t offset = range.start - range.base + layout.headerLength;
    const std::uint32_t shift = LxChooseMakerNoteBase(cache, range, context, offset);
    LxParseRange chain = range;
    chain.base += shift;
    header->firstChild = LxReadIfdChain(offset - shift, cache, chain, context, descriptor);
    context->byteOrder = order;
  }
  LxLeaveLevel(context);
  return list.first;
}
