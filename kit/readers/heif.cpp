// HEIF and AVIF files (ISO/IEC 23008-12; ISO/IEC 14496-12, 8.11). Metadata is stored in items of the file's `meta` box.
// The item information box has the type of each item, the item location box the place of its bytes, the item reference
// box the image that it describes. The main image's size is among the item properties.
#include <algorithm>
#include <cstring>

#include "kit/base/byte_cursor.h"
#include "kit/base/memory.h"
#include "kit/readers/boxes.h"
#include "kit/readers/file_readers.h"
#include "kit/readers/inflate.h"

namespace {

constexpr std::uint64_t kFullBox = 4;  // Version and flags.
constexpr char kPacketType[] = "application/rdf+xml";

// The first box of each type in the `meta` box; `end` 0: none.
struct MetaBoxes {
  LxBox items, locations, data, references, properties;
  std::uint32_t primary;  // The item of the main image.
  bool hasPrimary;
};

// The start of an item's entry in the payload of the item location box.
struct Location {
  std::uint32_t item;
  std::uint32_t at;
};

// A `cdsc` reference: the item describes an image.
struct Description {
  std::uint32_t item;
  bool ofPrimary;
};

// Records sorted by item; records of the same item stay in file order.
template <typename Record>
struct Index {
  Record* records;
  std::size_t count;
};

bool Precedes(const Location& a, const Location& b) noexcept {
  return a.at < b.at;
}

bool Precedes(const Description& a, const Description& b) noexcept {
  return a.ofPrimary && !b.ofPrimary;  // It only matters whether any record describes the main image.
}

template <typename Record>
void Sort(Index<Record>* index) noexcept {
  std::sort(index->records, index->records + index->count,
            [](const Record& a, const Record& b) { return a.item != b.item ? a.item < b.item : Precedes(a, b); });
}

template <typename Record>
const Record* FindFirst(const Index<Record>& index, std::uint32_t item) noexcept {
  const Record* begin = index.records;
  const Record* end = begin + index.count;
  const Record* found = std::lower_bound(
      begin, end, item, [](const Record& record, std::uint32_t wanted) { return record.item < wanted; });
  return found != end && found->item == item ? found : nullptr;
}

struct HeifFile {
  LxContainer container;
  MetaBoxes boxes;
  // The item location box.
  const std::uint8_t* locationBytes;
  std::size_t locationLength;
  std::uint8_t locationVersion;
  std::uint8_t offsetSize, lengthSize, baseSize, indexSize;
  Index<Location> locations;
  Index<Description> descriptions;
};

bool TakeNumber(LxByteCursor* in, std::uint8_t size, std::uint64_t* out) noexcept {
  *out = 0;
  for (std::uint8_t i = 0; i < size; ++i) {
    std::uint8_t byte = 0;
    if (!LxTake8(in, &byte)) return false;
    *out = *out << 8 | byte;
  }
  return true;
}

bool TakeItemId(LxByteCursor* in, bool isLong, std::uint32_t* out) noexcept {
  std::uint64_t number = 0;
  if (!TakeNumber(in, isLong ? 4 : 2, &number)) return false;
  *out = static_cast<std::uint32_t>(number);
  return true;
}

// Opens a box with version and flags; the cursor is after these.
bool OpenFullBox(const LxContainer& container, const LxBox& box, LxByteCursor* in, std::uint8_t* version,
                 std::uint32_t* flags) noexcept {
  const std::uint8_t* bytes = box.end != 0 ? LxMapWholeBox(container, box) : nullptr;
  if (bytes == nullptr) return false;
  *in = {bytes, static_cast<std::size_t>(box.end - box.payload)};
  std::uint32_t head = 0;
  if (!LxTake32(in, kLxBigEndian, &head)) return false;
  *version = static_cast<std::uint8_t>(head >> 24);
  *flags = head & 0xFFFFFF;
  return true;
}

void ReadPrimary(const LxContainer& container, const LxBox& box, MetaBoxes* boxes) noexcept {
  LxByteCursor in;
  std::uint8_t version = 0;
  std::uint32_t flags = 0;
  if (!OpenFullBox(container, box, &in, &version, &flags)) return;
  boxes->hasPrimary = TakeItemId(&in, version > 0, &boxes->primary);
}

void FindMetaBoxes(LxContainer* container, LxFileWindow* window, const LxBox& meta, MetaBoxes* boxes) noexcept {
  const struct {
    std::uint32_t type;
    LxBox* box;
  } wanted[] = {{LxBoxType("iinf"), &boxes->items},
                {LxBoxType("iloc"), &boxes->locations},
                {LxBoxType("idat"), &boxes->data},
                {LxBoxType("iref"), &boxes->references},
                {LxBoxType("iprp"), &boxes->properties}};
  LxBox primary = {};
  LxBoxWalk walk = LxWalkBox(container, window, meta, kFullBox);
  for (LxBox box; LxNextBox(&walk, &box);) {
    for (const auto& row : wanted) {
      if (row.type == box.type && row.box->end == 0) *row.box = box;
    }
    if (box.type == LxBoxType("pitm") && primary.end == 0) primary = box;
  }
  ReadPrimary(*container, primary, boxes);
}

bool TakeLocationHeader(const HeifFile& file, LxByteCursor* in, std::uint32_t* item, std::uint32_t* method,
                        std::uint32_t* reference, std::uint64_t* base, std::uint16_t* extents) noexcept {
  std::uint16_t word = 0;
  *method = 0;
  if (!TakeItemId(in, file.locationVersion > 1, item)) return false;
  if (file.locationVersion > 0) {
    if (!LxTake16(in, kLxBigEndian, &word)) return false;
    *method = word & 0x0F;
  }
  if (!LxTake16(in, kLxBigEndian, &word)) return false;
  *reference = word;
  return TakeNumber(in, file.baseSize, base) && LxTake16(in, kLxBigEndian, extents);
}

bool IsNumberSize(std::uint8_t size) noexcept {
  return size == 0 || size == 4 || size == 8;
}

// Finds the start of each item's entry. The list ends at an entry that is not complete.
void IndexLocations(HeifFile* file) noexcept {
  LxByteCursor in;
  std::uint32_t flags = 0;
  if (!OpenFullBox(file->container, file->boxes.locations, &in, &file->locationVersion, &flags)) return;
  if (file->locationVersion > 2) return;
  std::uint16_t sizes = 0;
  std::uint32_t count = 0;
  if (!LxTake16(&in, kLxBigEndian, &sizes) || !TakeItemId(&in, file->locationVersion == 2, &count)) return;
  file->offsetSize = static_cast<std::uint8_t>(sizes >> 12);
  file->lengthSize = sizes >> 8 & 0x0F;
  file->baseSize = sizes >> 4 & 0x0F;
  file->indexSize = file->locationVersion > 0 ? sizes & 0x0F : 0;
  if (!IsNumberSize(file->offsetSize) || !IsNumberSize(file->lengthSize) || !IsNumberSize(file->baseSize) ||
      !IsNumberSize(file->indexSize)) {
    return;
  }
  file->locationBytes = in.at;
  file->locationLength = in.left;
  constexpr std::size_t kShortestEntry = 6;
  const std::size_t most = std::min<std::size_t>(count, in.left / kShortestEntry);
  file->locations.records = static_cast<Location*>(LxAlloc(most * sizeof(Location)));
  if (file->locations.records == nullptr) return;
  const std::size_t extentLength = std::size_t{file->offsetSize} + file->lengthSize + file->indexSize;
  while (file->locations.count < most && LxChargeEntries(&file->container, 1)) {
    const auto at = static_cast<std::uint32_t>(in.at - file->locationBytes);
    std::uint32_t item = 0, method = 0, reference = 0;
    std::uint64_t base = 0;
    std::uint16_t extents = 0;
    if (!TakeLocationHeader(*file, &in, &item, &method, &reference, &base, &extents) ||
        !LxSkip(&in, extents * extentLength)) {
      break;
    }
    file->locations.records[file->locations.count++] = {item, at};
  }
  Sort(&file->locations);
}

// Collects the `cdsc` references. If any reference of an item is to the main image, the item describes it.
void IndexDescriptions(HeifFile* file) noexcept {
  LxContainer* container = &file->container;
  const LxBox& box = file->boxes.references;
  LxByteCursor head;
  std::uint8_t version = 0;
  std::uint32_t flags = 0;
  if (!OpenFullBox(*container, box, &head, &version, &flags)) return;
  constexpr std::size_t kShortestBox = 12;  // Header, item, number of references.
  file->descriptions.records = static_cast<Description*>(LxAlloc((head.left / kShortestBox + 1) * sizeof(Description)));
  if (file->descriptions.records == nullptr) return;
  LxBoxWalk walk = LxWalkBox(container, nullptr, box, kFullBox);
  for (LxBox child; LxNextBox(&walk, &child);) {
    const std::uint8_t* bytes = child.type == LxBoxType("cdsc") ? LxMapWholeBox(*container, child) : nullptr;
    if (bytes == nullptr) continue;
    LxByteCursor in = {bytes, static_cast<std::size_t>(child.end - child.payload)};
    std::uint32_t from = 0, to = 0;
    std::uint16_t count = 0;
    if (!TakeItemId(&in, version > 0, &from) || !LxTake16(&in, kLxBigEndian, &count) || count == 0) continue;
    bool ofPrimary = false;
    for (std::uint16_t i = 0; i < count && TakeItemId(&in, version > 0, &to); ++i) {
      ofPrimary = ofPrimary || to == file->boxes.primary;
    }
    file->descriptions.records[file->descriptions.count++] = {from, ofPrimary};
  }
  Sort(&file->descriptions);
}

// Whether an item describes only images other than the main one, as the packet of a gain map does.
bool DescribesOthersOnly(const HeifFile& file, std::uint32_t item) noexcept {
  if (!file.boxes.hasPrimary) return false;
  const Description* description = FindFirst(file.descriptions, item);
  return description != nullptr && !description->ofPrimary;
}

struct Extent {
  std::uint64_t start;  // In the file.
  std::uint64_t length;
};

// The next extent of an item. False: it is not completely inside the item's range.
bool TakeExtent(const HeifFile& file, LxByteCursor* in, std::uint64_t base, const LxBox& range, Extent* out) noexcept {
  std::uint64_t ignored = 0, offset = 0;
  if (!TakeNumber(in, file.indexSize, &ignored) || !TakeNumber(in, file.offsetSize, &offset) ||
      !TakeNumber(in, file.lengthSize, &out->length)) {
    return false;
  }
  const std::uint64_t size = range.end - range.payload;
  if (base > size || offset > size - base) return false;
  const std::uint64_t start = base + offset;
  if (out->length == 0) out->length = size - start;  // Up to the end.
  out->start = range.payload + start;
  return out->length <= size - start;
}

// An item's bytes, mapped or joined from several extents. Null: they are not all in the file.
const std::uint8_t* ReadItem(HeifFile* file, std::uint32_t item, std::int32_t* length, LxBlock** detached) noexcept {
  *detached = nullptr;
  const Location* location = FindFirst(file->locations, item);
  if (location == nullptr) return nullptr;
  LxByteCursor in = {file->locationBytes + location->at, file->locationLength - location->at};
  std::uint32_t method = 0, reference = 0;
  std::uint64_t base = 0;
  std::uint16_t count = 0;
  if (!TakeLocationHeader(*file, &in, &item, &method, &reference, &base, &count)) return nullptr;
  LxBlockCache* cache = file->container.pool->blocks;
  const auto fileSize = static_cast<std::uint64_t>(cache->fileSize);
  const bool inBox = method == 1;
  if (reference != 0 || method > 1 || count == 0 || (inBox && file->boxes.data.end == 0)) return nullptr;
  const LxBox range = inBox ? file->boxes.data : LxBox{0, 0, fileSize};
  if (!LxChargeEntries(&file->container, count)) return nullptr;

  LxByteCursor first = in;
  std::uint64_t total = 0;
  Extent extent = {};
  for (std::uint16_t i = 0; i < count; ++i) {
    if (!TakeExtent(*file, &in, base, range, &extent)) return nullptr;
    total += extent.length;
    if (total > fileSize) return nullptr;
  }
  *length = static_cast<std::int32_t>(total);
  if (count == 1) return LxMapFileRange(cache, extent.start, extent.length);

  if (!LxChargeValueBytes(&file->container.context, *length)) return nullptr;
  LxBlock* block = LxNewDetachedBlock(cache, *length);
  if (block == nullptr) return nullptr;
  std::uint8_t* out = LxDetachedBytes(block);
  for (std::uint16_t i = 0; i < count; ++i) {
    const std::uint8_t* bytes =
        TakeExtent(*file, &first, base, range, &extent) ? LxMapFileRange(cache, extent.start, extent.length) : nullptr;
    if (bytes == nullptr) {
      LxFreeDetachedBlock(cache, block);
      return nullptr;
    }
    std::memcpy(out, bytes, static_cast<std::size_t>(extent.length));
    out += extent.length;
  }
  *detached = block;
  return block->data;
}

// Offers a packet that is compressed (content encoding "deflate"): with a zlib header, as in RFC 9110, 8.4.1.2, or
// without.
void OfferDeflated(HeifFile* file, const std::uint8_t* bytes, std::int32_t length) noexcept {
  LxParseContext* context = &file->container.context;
  LxBlockCache* cache = file->container.pool->blocks;
  // Several items may share their bytes, so each read counts.
  if (!LxChargeValueBytes(context, length)) return;
  LxBlock* block = LxInflateBlock(cache, context, kLxZlibStream, bytes, length);
  if (block == nullptr) block = LxInflateBlock(cache, context, kLxRawDeflateStream, bytes, length);
  if (block == nullptr) return;
  LxOfferBlock(&file->container, kLxPacketBlock, {"mime", kPacketType, block->data, block->length, block, 0});
}

// Takes a text of the item information: up to its zero byte or the end of the box.
LxByteCursor TakeText(LxByteCursor* in) noexcept {
  const void* end = in->left > 0 ? std::memchr(in->at, 0, in->left) : nullptr;
  LxByteCursor text = *in;
  if (end != nullptr) text.left = static_cast<std::size_t>(static_cast<const std::uint8_t*>(end) - in->at);
  (void)LxSkip(in, std::min(text.left + 1, in->left));
  return text;
}

bool Is(const LxByteCursor& text, const char* wanted) noexcept {
  const std::size_t length = std::strlen(wanted);
  return text.left == length && std::memcmp(text.at, wanted, length) == 0;
}

// One entry of the item information box.
void ReadItemInfo(HeifFile* file, const LxBox& box) noexcept {
  LxContainer* container = &file->container;
  LxByteCursor in;
  std::uint8_t version = 0;
  std::uint32_t flags = 0, item = 0, type = 0;
  std::uint16_t protection = 0;
  if (!OpenFullBox(*container, box, &in, &version, &flags) || version < 2 || version > 3) return;
  if (!TakeItemId(&in, version == 3, &item) || !LxTake16(&in, kLxBigEndian, &protection) ||
      !LxTake32(&in, kLxBigEndian, &type)) {
    return;
  }
  const LxContainerBlockKind kind = type == LxBoxType("Exif") ? kLxTiffBlock : kLxPacketBlock;
  if ((kind == kLxPacketBlock && type != LxBoxType("mime")) || !LxWantsBlock(*container, kind, 0)) return;
  bool isDeflated = false;
  if (kind == kLxPacketBlock) {
    (void)TakeText(&in);  // The item's name.
    if (!Is(TakeText(&in), kPacketType)) return;
    const LxByteCursor encoding = TakeText(&in);
    isDeflated = Is(encoding, "deflate");
    if (!isDeflated && encoding.left != 0) return;
  }
  if (DescribesOthersOnly(*file, item)) return;
  std::int32_t length = 0;
  LxBlock* detached = nullptr;
  const std::uint8_t* bytes = ReadItem(file, item, &length, &detached);
  if (bytes == nullptr) return;
  if (isDeflated) {
    OfferDeflated(file, bytes, length);
    LxFreeDetachedBlock(container->pool->blocks, detached);
  } else if (kind == kLxPacketBlock) {
    LxOfferBlock(container, kind, {"mime", kPacketType, bytes, length, detached, 0});
  } else {
    LxOfferExifItem(container, {"Exif", "", bytes, length, detached, 0});
  }
}

void ReadItems(HeifFile* file) noexcept {
  LxByteCursor in;
  std::uint8_t version = 0;
  std::uint32_t flags = 0;
  if (!OpenFullBox(file->container, file->boxes.items, &in, &version, &flags)) return;
  // The entries are boxes, so the count before them is not needed.
  LxBoxWalk walk = LxWalkBox(&file->container, nullptr, file->boxes.items, kFullBox + (version > 0 ? 4 : 2));
  for (LxBox box; LxNextBox(&walk, &box);) {
    if (box.type == LxBoxType("infe")) ReadItemInfo(file, box);
  }
}

// ISO/IEC 23008-12, 6.5.3 and 6.5.6.
void ReadProperty(LxContainer* container, const LxBox& box, bool* hasSize, bool* hasDepth) noexcept {
  LxMetadataPool* pool = container->pool;
  if (box.type == LxBoxType("ispe") && !*hasSize) {
    const std::uint8_t* size = LxMapBox(*container, box, kFullBox + 8);
    if (size == nullptr) return;
    LxSetAttribute(&pool->width, LxGet32(size + 4, kLxBigEndian));
    LxSetAttribute(&pool->height, LxGet32(size + 8, kLxBigEndian));
    *hasSize = true;
  } else if (box.type == LxBoxType("pixi") && !*hasDepth) {
    const std::uint8_t* depths = LxMapBox(*container, box, kFullBox + 2);
    if (depths == nullptr || depths[4] == 0) return;
    pool->samples = depths[4];
    pool->bits = depths[5];
    *hasDepth = true;
  }
}

// Finds the main image's associations in an `ipma` box. True: the cursor is at the first of `count` indexes.
bool FindAssociations(const HeifFile& file, const LxBox& box, LxByteCursor* in, bool* isLong,
                      std::uint8_t* count) noexcept {
  std::uint8_t version = 0;
  std::uint32_t flags = 0, items = 0;
  if (!OpenFullBox(file.container, box, in, &version, &flags) || !LxTake32(in, kLxBigEndian, &items)) return false;
  *isLong = (flags & 1) != 0;
  for (std::uint32_t i = 0; i < items; ++i) {
    std::uint32_t item = 0;
    if (!TakeItemId(in, version > 0, &item) || !LxTake8(in, count)) return false;
    if (item == file.boxes.primary) return true;
    if (!LxSkip(in, std::size_t{*count} * (*isLong ? 2 : 1))) return false;
  }
  return false;
}

// Reads the properties of an item; the indexes number the boxes of `ipco` from 1.
void ReadProperties(HeifFile* file, const LxBox& properties, LxByteCursor associations, bool isLong,
                    std::uint8_t count) noexcept {
  std::uint64_t numbers[255];
  for (std::uint8_t i = 0; i < count; ++i) {
    if (!TakeNumber(&associations, isLong ? 2 : 1, &numbers[i])) return;
    numbers[i] &= isLong ? 0x7FFF : 0x7F;  // The highest bit marks essential properties.
  }
  bool hasSize = false, hasDepth = false;
  std::uint64_t number = 1;
  LxBoxWalk walk = LxWalkBox(&file->container, nullptr, properties, 0);
  for (LxBox box; LxNextBox(&walk, &box); ++number) {
    if (std::find(numbers, numbers + count, number) != numbers + count) {
      ReadProperty(&file->container, box, &hasSize, &hasDepth);
    }
  }
}

void ReadAttributes(HeifFile* file) noexcept {
  if (!file->boxes.hasPrimary || file->boxes.properties.end == 0) return;
  LxBox properties = {};
  LxByteCursor associations = {};
  bool isLong = false, found = false;
  std::uint8_t count = 0;
  LxBoxWalk walk = LxWalkBox(&file->container, nullptr, file->boxes.properties, 0);
  for (LxBox box; LxNextBox(&walk, &box);) {
    if (box.type == LxBoxType("ipco") && properties.end == 0) properties = box;
    if (box.type == LxBoxType("ipma") && !found) found = FindAssociations(*file, box, &associations, &isLong, &count);
  }
  if (found && properties.end != 0) ReadProperties(file, properties, associations, isLong, count);
}

}  // namespace

LxResult LxReadHeifFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  HeifFile file = {};
  if (LxOpenContainer(&file.container, stream, fileSize, pool) != kLxOk) return kLxOutOfMemory;
  LxFileWindow window;
  LxInitFileWindow(&window, stream, fileSize);
  LxBoxWalk walk = LxWalkFile(&file.container, &window);
  for (LxBox box; LxNextBox(&walk, &box);) {
    if (box.type != LxBoxType("meta")) continue;
    FindMetaBoxes(&file.container, &window, box, &file.boxes);
    IndexLocations(&file);
    IndexDescriptions(&file);
    ReadItems(&file);
    ReadAttributes(&file);
    LxFree(file.descriptions.records);
    LxFree(file.locations.records);
    break;
  }
  return LxFinishContainer(&file.container, "heifh", "HEIF", "heif");
}
