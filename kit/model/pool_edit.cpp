// The editing operations. Everything is allocated before anything is linked or changed, so a failure leaves the tree as
// it was, except for new empty containers.
#include "kit/model/pool_edit.h"

#include <cstring>
#include <utility>

#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "kit/model/lookup.h"
#include "kit/model/pool_walk.h"
#include "kit/model/tables/tables.h"
#include "kit/model/text_scan.h"
#include "kit/model/value.h"

namespace {

constexpr char kIfdNamespace[] = "tiffh";

bool Same(const char* a, const char* b) noexcept {
  return std::strcmp(a, b) == 0;
}
bool Given(const char* text) noexcept {
  return text != nullptr && text[0] != 0;
}

LxMetadataItem* NewEmptyItem(std::uint32_t flags) noexcept {
  return LxNewMetadataItem("", "", flags, 0, kLxTypeNone, 0, nullptr);
}

// A TIFF header (TIFF 6.0, section 2: "II", 42, first directory at 8) with an empty directory as its child, unlinked.
LxMetadataItem* NewHeaderWithIfd() noexcept {
  constexpr std::uint8_t kHeader[] = {0x49, 0x49, 0x2A, 0x00, 0x08, 0x00, 0x00, 0x00};
  auto* bytes = static_cast<std::uint8_t*>(LxAlloc(sizeof(kHeader)));
  LxMetadataItem* header = bytes == nullptr ? nullptr
                                            : LxNewMetadataItem(kIfdNamespace, "IFDHeader", kLxOwnsValue, 0,
                                                                kLxTypeUndefined, sizeof(kHeader), bytes);
  if (header == nullptr) {
    LxFree(bytes);
    return nullptr;
  }
  std::memcpy(bytes, kHeader, sizeof(kHeader));
  header->firstChild = LxNewMetadataItem(kIfdNamespace, "IFD", 0, 0, kLxTypeUndefined, 0, nullptr);
  if (header->firstChild != nullptr) return header;
  LxFreeMetadataItems(header);
  return nullptr;
}

// A new item of the namespace with this name and an empty value. If it cannot be filled it remains as a deleted item,
// since items are never unlinked.
LxResult NewNamedItem(LxMetadataPool* pool, const char* nameSpace, const char* name, const char* typeName,
                      const char* text, LxMetadataItem** out) noexcept {
  LxMetadataItem* item = nullptr;
  LxResult result = LxNewItemInNamespace(pool, nameSpace, &item);
  if (result != kLxOk) return result;
  result = LxSetMetadataFromText(item, nameSpace, name, typeName, text);
  if (result != kLxOk) {
    item->flags |= kLxDeleted;
    return result;
  }
  *out = item;
  return kLxOk;
}

// A pointer entry: with the type "undef" it holds its structure itself; with "long" it is an offset of four bytes,
// still 0.
LxResult MakePointer(LxMetadataPool* pool, const LxStructureEntry* entry, const char* typeName,
                     LxMetadataItem** out) noexcept {
  const LxResult result = NewNamedItem(pool, entry->parent, entry->key, typeName, "", out);
  if (result == kLxOk && entry->kind == kLxContainerLongPointer) (*out)->valueLength = 4;
  return result;
}

// The value length of an application segment without payload: two bytes for the segment's length, the identifier with
// its zero byte, and the padding that some identifiers have. Exif 2.2, 4.7.2; ICC.1, annex B.4.
std::int32_t SegmentFiller(const char* identifier) noexcept {
  if (Same(identifier, "ICC_PROFILE")) return 2;
  constexpr const char* kPaddedOnce[] = {"Exif", "EXIF", "Meta", "META"};
  for (const char* padded : kPaddedOnce) {
    if (Same(identifier, padded)) return 1;
  }
  return 0;
}

LxResult MakeSegment(LxMetadataPool* pool, const LxStructureEntry* entry, LxMetadataItem** out) noexcept {
  const std::size_t keyLength = std::strlen(entry->key);
  const std::int32_t filler = SegmentFiller(entry->key);
  const std::size_t length = keyLength + 3 + static_cast<std::size_t>(filler);
  auto* bytes = static_cast<std::uint8_t*>(LxAlloc(length));
  if (bytes == nullptr) return kLxOutOfMemory;
  std::memset(bytes, 0, length);
  std::memcpy(bytes + 2, entry->key, keyLength);
  LxMetadataItem* header = filler != 0 ? NewHeaderWithIfd() : nullptr;

  LxMetadataItem* segment = nullptr;
  LxResult result = filler != 0 && header == nullptr
                        ? kLxOutOfMemory
                        : NewNamedItem(pool, "jpeg", entry->parent, LxTypeName(kLxTypeUndefined), "", &segment);
  if (result != kLxOk) {
    LxFreeMetadataItems(header);
    LxFree(bytes);
    return result;
  }
  LxFree(const_cast<std::uint8_t*>(segment->value));
  segment->value = bytes;
  segment->valueLength = static_cast<std::int32_t>(length);
  segment->firstChild = header;
  *out = header != nullptr ? header->firstChild : segment;
  return kLxOk;
}

LxResult MakeTiffRoot(LxMetadataPool* pool, LxMetadataItem** out) noexcept {
  LxMetadataItem* header = NewHeaderWithIfd();
  if (header == nullptr) return kLxOutOfMemory;
  header->next = pool->root;  // A root whose items of this namespace are all deleted keeps its place in the tree.
  pool->root = header;
  *out = header->firstChild;
  return kLxOk;
}

LxResult MakePsdExif(LxMetadataPool* pool, const LxStructureEntry* entry, LxMetadataItem** out) noexcept {
  *out = LxFindItemInTree(pool->root, kIfdNamespace, "IFD", nullptr);
  if (*out != nullptr) return kLxOk;
  LxMetadataItem* header = NewHeaderWithIfd();
  if (header == nullptr) return kLxOutOfMemory;
  LxMetadataItem* block = nullptr;
  const LxResult result = MakePointer(pool, entry, LxTypeName(kLxTypeUndefined), &block);
  if (result != kLxOk) {
    LxFreeMetadataItems(header);
    return result;
  }
  block->firstChild = header;
  *out = header->firstChild;
  return kLxOk;
}

// The structure table for the root's layout; null if a root of that layout cannot be edited.
const LxStructureEntry* StructureOf(const LxMetadataItem* root) noexcept {
  if (root == nullptr) return kLxTiffStructure;
  if (root->nameSpace == nullptr) return nullptr;
  if (Same(root->nameSpace, "jpegh")) return kLxJpegStructure;
  if (Same(root->nameSpace, "tiffh")) return kLxTiffStructure;
  return Same(root->nameSpace, "psdh") ? kLxPsdStructure : nullptr;
}

bool IsBlankText(const LxMetadataItem* item) noexcept {
  constexpr std::size_t kCharacterCode = 8;  // Exif 2.2, 4.6.5: UserComment begins with a character code.
  const std::size_t length = item->value != nullptr ? static_cast<std::size_t>(item->valueLength) : 0;
  if (item->typeCode == kLxTypeAscii) return LxIsBlank(item->value, length);
  if (item->typeCode != kLxTypeUndefined || item->nameSpace == nullptr) return false;
  if (!Same(item->nameSpace, "exif") || !Same(item->name, "UserComment")) return false;
  return length <= kCharacterCode || LxIsBlank(item->value + kCharacterCode, length - kCharacterCode);
}

bool MayBeText(const LxMetadataItem* item) noexcept {
  return item->typeCode == kLxTypeAscii || item->typeCode == kLxTypeUndefined;
}

}  // namespace

LxResult LxSetMetadataFromText(LxMetadataItem* item, const char* nameSpace, const char* name, const char* typeName,
                               const char* text) noexcept {
  if (item == nullptr) return kLxBadParameter;
  const LxNamespaceEntry* entry = LxFindNamespace(nameSpace, kLxNamespaces);
  const LxTagRecord* record = entry == nullptr ? nullptr : LxFindTagByName(name, entry->dictionary);
  const std::uint16_t typeCode = LxTypeCode(typeName);
  if (record == nullptr || typeCode == kLxNoTypeCode) return kLxBadParameter;

  const char* valueText = text != nullptr ? text : "";
  std::int32_t length = 0;
  std::uint8_t* bytes = nullptr;
  // IPTC-IIM 4: a dataset has a length and no terminator; Exif 2.2, 4.6.2: an ASCII value counts its terminator.
  const int withTerminator = Same(nameSpace, "iptc") ? 0 : 1;
  if (LxParseValueText(valueText, typeCode, LxItemOrder(item), &length, &bytes, withTerminator) != kLxOk) {
    return kLxBadParameter;
  }
  char* displayText = LxCopyText(valueText, std::strlen(valueText));
  if (displayText == nullptr) {
    LxFree(bytes);
    return kLxOutOfMemory;
  }
  LxReleaseOwned(item);
  item->nameSpace = nameSpace;
  item->name = name;
  item->label = record->label;
  item->typeName = typeName;
  item->displayText = displayText;
  item->valueLabel = nullptr;  // It named the old value.
  item->flags |= kLxOwnsDisplayText | kLxOwnsValue | kLxChanged;
  item->tagId = record->id;
  item->typeCode = typeCode;
  item->valueLength = length;
  item->value = bytes;
  return kLxOk;
}

LxResult LxNewItemInNamespace(LxMetadataPool* pool, const char* nameSpace, LxMetadataItem** out) noexcept {
  *out = nullptr;
  // A search for an empty namespace would find the header, and the new item would be placed above it.
  if (!Given(nameSpace)) return kLxBadParameter;
  LxMetadataItem* fresh = NewEmptyItem(0);
  if (fresh == nullptr) return kLxOutOfMemory;

  LxMetadataItem* first = LxFindItemInTree(pool->root, nameSpace, nullptr, nullptr);
  if (first != nullptr) {
    // Only the first item's record is known, not the link to it, so the record becomes the new item and its contents
    // move to another record.
    const std::uint32_t order = first->flags & kLxBigEndianValue;
    LxMetadataItem* moved = fresh;
    const LxMetadataItem empty = *fresh;
    *moved = *first;
    *first = empty;
    std::swap(moved->slab, first->slab);  // Each record stays in its slab.
    first->flags = order;
    first->next = moved;
    *out = first;
    return kLxOk;
  }

  LxMetadataItem* container = nullptr;
  const LxResult result = LxMakeNamespaceContainer(pool, nameSpace, &container);
  if (result != kLxOk) {
    LxFreeMetadataItems(fresh);
    return result;
  }
  fresh->flags = container->flags & kLxBigEndianValue;
  // An existing container may hold deleted items and items of other namespaces; they stay in the tree.
  fresh->next = container->firstChild;
  container->firstChild = fresh;
  container->flags |= kLxChanged;
  *out = fresh;
  return kLxOk;
}

LxResult LxMakeNamespaceContainer(LxMetadataPool* pool, const char* nameSpace, LxMetadataItem** out) noexcept {
  *out = nullptr;
  const LxStructureEntry* structure = StructureOf(pool->root);
  if (structure == nullptr) return kLxNotImplemented;
  const LxStructureEntry* entry = LxFindStructureEntry(nameSpace, structure);
  if (entry == nullptr) return kLxBadParameter;
  switch (entry->kind) {
    case kLxContainerJpegRoot:
    case kLxContainerPsdRoot:
      *out = pool->root;
      return kLxOk;
    case kLxContainerTiffRoot:
      return MakeTiffRoot(pool, out);
    case kLxContainerUndefPointer:
    case kLxContainerPsdPointer:
      return MakePointer(pool, entry, LxTypeName(kLxTypeUndefined), out);
    case kLxContainerLongPointer:
      return MakePointer(pool, entry, LxTypeName(kLxTypeLong), out);
    case kLxContainerJpegSegment:
      return MakeSegment(pool, entry, out);
    case kLxContainerPsdExif:
      return MakePsdExif(pool, entry, out);
    default:
      return kLxNotImplemented;
  }
}

LxResult LxPutMetadata(LxMetadataPool* pool, const char* nameSpace, const char* name, const char* typeName,
                       const char* text, std::int32_t mode) noexcept {
  if (mode < kLxPutAlways || mode > kLxPutIfMissing) return kLxNotImplemented;
  LxMetadataItem* item = mode == kLxPutAlways ? nullptr : LxFindItemInTree(pool->root, nameSpace, name, nullptr);
  if (item != nullptr) {
    if (mode == kLxPutIfMissing || !Given(name)) return kLxOk;
    return LxSetMetadataFromText(item, nameSpace, name, typeName, text);
  }
  if (mode == kLxPutReplaceOnly) return kLxNotFound;
  if (!Given(name)) return LxNewItemInNamespace(pool, nameSpace, &item);
  return NewNamedItem(pool, nameSpace, name, typeName, text, &item);
}

LxResult LxDeleteMetadata(LxMetadataPool* pool, const char* nameSpace, const char* name, const char*,
                          const char* displayText) noexcept {
  LxMetadataItem* item = LxFindItemInTree(pool->root, nameSpace, name, displayText);
  if (item == nullptr) return kLxNotFound;
  item->flags |= kLxDeleted;
  return kLxOk;
}

void LxDeleteLargeUnnamed(LxMetadataItem* first, std::int32_t limit) noexcept {
  LxMetadataItem* parents[kLxMaxTreeDepth];
  int depth = 0;
  for (LxMetadataItem* item = first;;) {
    while (item == nullptr) {
      if (depth == 0) return;
      item = parents[--depth]->next;
    }
    const bool unnamed = item->name == nullptr || item->name[0] == ' ';
    if (unnamed && item->valueLength > limit) item->flags |= kLxDeleted;
    if (item->firstChild != nullptr && depth < kLxMaxTreeDepth) {
      parents[depth++] = item;
      item = item->firstChild;
    } else {
      item = item->next;
    }
  }
}

void LxDeleteBlankText(LxMetadataPool* pool) noexcept {
  // Checked last whether the display walk returns the item: most items are numbers.
  LxMetadataItem* parents[kLxMaxWalkDepth];
  int depth = 0;
  for (LxMetadataItem* item = pool->root;;) {
    while (item == nullptr) {
      if (depth == 0) return;
      item = LxNextInRun(parents[--depth]);
    }
    if ((item->flags & kLxDeleted) != 0) {
      item = item->next;
    } else if (item->firstChild != nullptr && (item->flags & kLxClosed) == 0) {
      LxMetadataItem* child = item->firstChild;
      while (child != nullptr && (child->flags & kLxDeleted) != 0) child = child->next;
      if (child == nullptr) {
        item = LxNextInRun(item);
        continue;
      }
      if (depth + 1 >= kLxMaxWalkDepth) return;
      parents[depth++] = item;
      item = child;
    } else {
      if (MayBeText(item) && LxIsDisplayItem(item) && IsBlankText(item)) item->flags |= kLxDeleted;
      item = LxNextInRun(item);
    }
  }
}
