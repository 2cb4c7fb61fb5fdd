// TIFF structures (TIFF 6.0, section 2; Exif 2.2, 4.6): the header, chains of IFDs, the entries of an IFD and the
// values that they point to.
#include <cstring>
#include <limits>

#include "kit/base/byte_cursor.h"
#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"

namespace {

constexpr std::uint32_t kHeaderLength = 8;
constexpr std::uint16_t kTiffMagic = 42;
constexpr std::uint16_t kMaxEntries = 1000;
constexpr int kMaxIfdsOfChain = 8;
constexpr std::uint16_t kSubIfdsTag = 0x014A;
// Of a longer value that the conversion does not use, the head is read: more than the longest unnamed value that is
// kept (post_process.cpp).
constexpr std::uint64_t kLongestUnused = 4096;
constexpr std::uint64_t kUnusedHead = 512;

constexpr std::uint32_t IfdLength(std::uint16_t entries) noexcept {
  return 12u * entries + 6u;
}

std::uint32_t OrderFlag(const LxParseContext* context) noexcept {
  return context->byteOrder == kLxBigEndian ? kLxBigEndianValue : 0;
}

// An entry as stored in the file.
struct Entry {
  std::uint16_t tag;
  std::uint16_t type;
  std::uint32_t count;
  std::uint32_t field;  // The value field as a number.
  const std::uint8_t* fieldBytes;
  std::uint64_t length;  // Of the value, in bytes.
};

bool TakeEntry(LxByteCursor* in, int order, Entry* entry) noexcept {
  if (!LxTake16(in, order, &entry->tag) || !LxTake16(in, order, &entry->type) || !LxTake32(in, order, &entry->count)) {
    return false;
  }
  entry->fieldBytes = in->at;
  if (!LxTake32(in, order, &entry->field)) return false;
  entry->length = std::uint64_t{LxElementSize(entry->type)} * entry->count;
  return true;
}

// The first record of an id, for an IFD read in order. Entries and the records of the published dictionaries mostly
// ascend, and no id occurs twice in those dictionaries, so the search starts at the previous record and wraps around.
class RecordFinder {
 public:
  explicit RecordFinder(const LxTagRecord* dictionary) noexcept
      : dictionary_(dictionary),
        from_(dictionary),
        goesOn_(dictionary == kLxTiffTags || dictionary == kLxExifTags || dictionary == kLxGpsTags) {}

  const LxTagRecord* Find(std::uint16_t id) noexcept {
    if (!goesOn_) return dictionary_ != nullptr ? LxFindTagById(id, dictionary_) : nullptr;
    const LxTagRecord* record = from_;
    while (record->name != nullptr && record->id != id) ++record;
    if (record->name == nullptr) {
      record = dictionary_;
      while (record != from_ && record->id != id) ++record;
      if (record == from_) return nullptr;
    }
    from_ = record + 1;
    return record;
  }

 private:
  const LxTagRecord* dictionary_;
  const LxTagRecord* from_;
  bool goesOn_;
};

// Whether the conversion uses the value of an entry with this record: a name that is shown, or metadata below it.
bool IsUsed(const LxTagRecord* record) noexcept {
  return record != nullptr && ((record->flags & kLxHidden) == 0 || record->subNamespace != nullptr);
}

// The first `read` bytes of the value: in the entry if they fit, else at the offset in it, anywhere in the file. Null:
// the value is not in the file.
const std::uint8_t* MapValue(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                             const Entry& entry, std::uint64_t read) noexcept {
  if (entry.length <= 4) return entry.fieldBytes;
  if (entry.length > std::numeric_limits<std::int32_t>::max()) return nullptr;
  const std::int64_t address = LxAddressInFile(range, entry.field);
  if (address < 0 || !LxChargeValueBytes(context, static_cast<std::int64_t>(entry.length))) return nullptr;
  if (address + static_cast<std::int64_t>(entry.length) > cache->fileSize) return nullptr;
  return LxMapFileRange(cache, static_cast<std::uint64_t>(address), read);
}

// A range from an offset, counted from the base, up to the high limit. The range is invalid if no file reaches that
// far.
LxParseRange RangeAt(const LxParseRange& range, std::uint32_t offset) noexcept {
  const std::int64_t address = LxAddressInFile(range, offset);
  if (address < 0 || address > std::numeric_limits<std::uint32_t>::max()) return {1, range.base, 0, 0, 0};
  return {range.lowLimit, range.base, static_cast<std::uint32_t>(address), range.highLimit, range.highLimit};
}

// TIFF 6.0, supplement 1: SubIFDs may list several IFDs, which are read one after the other. In raw files, the
// full-size image is often the second one.
bool ListsSubIfds(const Entry& entry, const LxNamespaceDescriptor& descriptor) noexcept {
  return entry.tag == kSubIfdsTag && descriptor.readerCode == kLxReadIfd && entry.count > 1 &&
         (entry.type == kLxTypeLong || entry.type == kLxTypeOffset);
}

bool ReadListedSubIfds(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context, LxMetadataItem* item,
                       const LxNamespaceDescriptor& descriptor) noexcept {
  if (!LxEnterLevel(context)) return false;
  LxItemList list;
  for (std::int32_t i = 0; i < item->valueLength / 4; ++i) {
    const LxParseRange subIfd = RangeAt(range, LxGetValueAt(item, i));
    context->currentItem = item;
    LxAppendItems(&list, LxParseWithDescriptor(cache, subIfd, context, descriptor));
  }
  LxLeaveLevel(context);
  item->firstChild = list.first;
  return list.first != nullptr;
}

// Reads the metadata that an entry leads to: a short value is an offset to data that may extend to the high limit; a
// longer value is the data.
bool ReadEntryTarget(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context, LxMetadataItem* item,
                     const Entry& entry, const LxNamespaceDescriptor& descriptor) noexcept {
  if (ListsSubIfds(entry, descriptor)) return ReadListedSubIfds(cache, range, context, item, descriptor);
  LxParseRange target = RangeAt(range, entry.field);
  if (entry.length > 4) target.end = target.start + static_cast<std::uint32_t>(entry.length);  // Mapped: in the file.
  return LxReadChildren(cache, target, context, item, descriptor);
}

// False: reading of the IFD ends.
bool ReadEntry(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
               const LxNamespaceDescriptor& descriptor, const Entry& entry, RecordFinder* finder,
               LxItemList* list) noexcept {
  constexpr std::uint64_t kLongest = std::numeric_limits<std::int32_t>::max();
  const auto length = static_cast<std::int32_t>(entry.length < kLongest ? entry.length : kLongest);
  LxMetadataItem* item = LxAppendNewItem(context, list, descriptor.nameSpace, "", OrderFlag(context), entry.tag,
                                         entry.type, length, nullptr);
  if (item == nullptr) return false;
  const LxTagRecord* record = finder->Find(entry.tag);
  const bool isCut = context->readsForConversion && entry.length > kLongestUnused && !IsUsed(record);
  if (isCut) item->valueLength = kUnusedHead;
  item->value = MapValue(cache, range, context, entry, isCut ? kUnusedHead : entry.length);
  if (item->value == nullptr) {
    // Becomes an unnamed entry: without a value, the tag's name means nothing.
    LxApplyTagRecord(context, item, nullptr, false);
    return false;
  }
  LxApplyTagRecord(context, item, record, false);
  if (record == nullptr || record->subNamespace == nullptr) return true;
  if (!ReadEntryTarget(cache, range, context, item, entry, *record->subNamespace) &&
      record->typeCode == kLxTypeOffset) {
    item->flags |= kLxDeleted;
  }
  return true;
}

bool IsBeingRead(const LxParseContext* context, std::uint32_t ifd) noexcept {
  for (std::int32_t i = 0; i < context->ifdCount; ++i) {
    if (context->ifdsOnPath[i] == ifd) return true;
  }
  return false;
}

// The IFD's bytes from its count on, if the count is plausible and they are all in the file.
const std::uint8_t* MapIfd(LxBlockCache* cache, std::uint32_t at, int order, std::uint16_t* count) noexcept {
  const std::uint8_t* bytes = LxMapFileRange(cache, at, 2);
  if (bytes == nullptr) return nullptr;
  *count = LxGet16(bytes, order);
  if (*count == 0 || *count > kMaxEntries) return nullptr;
  return LxMapFileRange(cache, at, IfdLength(*count));
}

}  // namespace

LxMetadataItem* LxReadTiffHeader(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                 const LxNamespaceDescriptor& descriptor) noexcept {
  const std::uint8_t* header = LxMapFileRange(cache, range.start, kHeaderLength);
  if (header == nullptr) return nullptr;
  if (std::memcmp(header, "MM", 2) == 0) {
    context->byteOrder = kLxBigEndian;
  } else if (std::memcmp(header, "II", 2) == 0) {
    context->byteOrder = kLxLittleEndian;
  } else {
    return nullptr;
  }
  if (LxGet16(header + 2, context->byteOrder) != kTiffMagic) return nullptr;
  const std::uint32_t firstIfd = LxGet32(header + 4, context->byteOrder);

  LxItemList list;
  LxMetadataItem* item = LxAppendNewItem(context, &list, "tiffh", "IFDHeader", OrderFlag(context), 0, kLxTypeUndefined,
                                         kHeaderLength, header);
  if (item == nullptr || !LxEnterLevel(context)) return list.first;
  LxParseRange chain = range;
  chain.base = range.start;
  if (LxAddressInFile(chain, firstIfd) <= std::numeric_limits<std::uint32_t>::max()) {
    item->firstChild = LxReadIfdChain(firstIfd, cache, chain, context, descriptor);
  }
  LxLeaveLevel(context);
  return list.first;
}

LxMetadataItem* LxReadIfdChain(std::uint32_t offset, LxBlockCache* cache, const LxParseRange& range,
                               LxParseContext* context, const LxNamespaceDescriptor& descriptor) noexcept {
  LxItemList list;
  // Modulo 2^32: a maker note's shift may have moved the base to the other side of the file's start.
  std::int64_t address = range.base + offset;
  for (int i = 0; i < kMaxIfdsOfChain; ++i) {
    if (address < range.lowLimit || address >= range.highLimit) break;
    const auto at = static_cast<std::uint32_t>(address);
    // Every IFD of a chain ends the run: a search by name finds items of the first IFD, never of the thumbnail's.
    LxMetadataItem* item = LxAppendNewItem(context, &list, "tiffh", "IFD", OrderFlag(context) | kLxEndOfRun, 0,
                                           kLxTypeUndefined, 0, nullptr);
    if (item == nullptr) break;
    std::uint16_t count = 0;
    const std::uint8_t* ifd = MapIfd(cache, at, context->byteOrder, &count);
    if (ifd == nullptr) break;
    const std::uint32_t length = IfdLength(count);
    item->value = ifd;
    item->valueLength = static_cast<std::int32_t>(length);
    const std::uint32_t next = LxGet32(ifd + length - 4, context->byteOrder);

    const LxParseRange entries = {range.lowLimit, range.base, at, at + length, range.highLimit};
    if (LxIsValidRange(entries) && LxEnterLevel(context)) {
      item->firstChild = LxReadIfd(cache, entries, context, descriptor);
      LxLeaveLevel(context);
    }
    if (next == 0 || next >= 0xF0000000) break;
    address = LxAddressInFile(range, next);
  }
  return list.first;
}

LxMetadataItem* LxReadIfd(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                          const LxNamespaceDescriptor& descriptor) noexcept {
  if (IsBeingRead(context, range.start) || context->ifdCount >= kLxMaxIfdsOnPath) return nullptr;
  std::uint16_t count = 0;
  const std::uint8_t* ifd = MapIfd(cache, range.start, context->byteOrder, &count);
  if (ifd == nullptr || IfdLength(count) > range.end - range.start) return nullptr;

  context->ifdsOnPath[context->ifdCount++] = range.start;
  LxItemList list;
  RecordFinder finder(descriptor.dictionary);
  LxByteCursor in = {ifd + 2, std::size_t{12} * count};
  Entry entry;
  // Uses the context's byte order for each entry: a TIFF header read inside changes it for the following ones.
  while (TakeEntry(&in, context->byteOrder, &entry)) {
    if (entry.type == 0 || entry.type > kLxTypeOffset) break;
    if (!ReadEntry(cache, range, context, descriptor, entry, &finder, &list)) break;
  }
  --context->ifdCount;
  return list.first;
}
