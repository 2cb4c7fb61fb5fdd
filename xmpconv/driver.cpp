#include "xmpconv/driver.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "kit/model/find_items.h"
#include "kit/model/lookup.h"
#include "kit/model/pool_edit.h"
#include "kit/model/pool_walk.h"
#include "xmpconv/iptc.h"
#include "xmpconv/md5.h"
#include "xmpconv/schemas.h"
#include "xmpconv/tiff_exif.h"

namespace {

constexpr char kIptcBlock[] = "IptcNaa";
constexpr char kImageDescription[] = "ImageDescription";

// The picturist properties that come from an IPTC block. If the block takes precedence, all of them are deleted, even
// those without a dataset: the block was changed after the packet, so a missing dataset was removed.
constexpr const char* kPicturistProperties[] = {
    "Caption",
    "Author",
    "Title",
    "Keywords",
    "Copyright",
    "CaptionWriter",
    "Headline",
    "Instructions",
    "AuthorsPosition",
    "Credit",
    "Source",
    "DateCreated",
    "City",
    "State",
    "Country",
    "TransmissionReference",
    "Category",
    "SupplementalCategories",
    "Urgency",
    "WebStatement",
    "Marked",
};
static_assert(std::size(kPicturistProperties) == 21);

const LxMetadataItem* Find(const LxMetadataPool& pool, const char* nameSpace, const char* name) noexcept {
  LxMetadataItem* found = nullptr;
  return LxFindMetadata(&pool, nameSpace, name, "", "", &found) == kLxOk ? found : nullptr;
}

bool Is(const char* text, const char* wanted) noexcept {
  return text && *text == *wanted && std::strcmp(text, wanted) == 0;
}

// The file's IPTC block that is used; the other is marked deleted.
struct IptcChoice {
  const LxMetadataItem* source;  // Null: none.
  bool isTiffTag;
  bool keepsDescription;  // Whether ("tiff", "ImageDescription") may be converted.
};

// In a TIFF file IPTC belongs in the tag, in every other file in the image resource. A tag in a JPEG file's Exif block
// is a stray copy and never used.
IptcChoice ChooseIptc(LxMetadataPool* pool) noexcept {
  LxWantedItem blocks[] = {{"tiff", kIptcBlock, nullptr}, {"ir", kIptcBlock, nullptr}};
  LxFindItems(pool->root, blocks, std::size(blocks));
  const LxMetadataItem* const tag = blocks[0].found;
  const LxMetadataItem* const resource = blocks[1].found;
  const bool isTiff = pool->fileKind == kLxFileTiff;
  if (tag && isTiff) {
    if (resource) LxDeleteMetadata(pool, "ir", kIptcBlock, "", "");
    return {tag, true, false};
  }
  if (tag) LxDeleteMetadata(pool, "tiff", kIptcBlock, "", "");
  if (resource) return {resource, false, isTiff};
  return {nullptr, false, isTiff || LxCountsAsJpeg(pool->fileKind)};
}

// Whether the stored digest, from when the packet was written, is that of the block.
bool IsDigestOf(const LxMetadataItem* stored, const IptcChoice& iptc) noexcept {
  LxMd5Digest digest{};  // Without a block: all zero.
  if (iptc.source) {
    auto length = static_cast<std::size_t>(iptc.source->valueLength);
    if (iptc.isTiffTag) {
      // The tag's value is often counted in four-byte words and padded with zeros.
      for (int padding = 0; padding < 3 && length > 0 && iptc.source->value[length - 1] == 0; ++padding) --length;
    }
    digest = LxMd5(iptc.source->value, length);
  }
  return std::equal(digest.begin(), digest.end(), stored->value);
}

bool IptcWins(const LxMetadataPool& pool, bool hasNativeXmp, const IptcChoice& iptc) noexcept {
  if (!hasNativeXmp) return true;
  const LxMetadataItem* const stored = Find(pool, "ir", "CaptionDigest");
  // A truncated digest is treated as missing. If it were treated as different, 21 properties of a probably current
  // packet would be removed, often without any block to replace them.
  if (!stored || !stored->value || stored->valueLength < static_cast<std::int32_t>(LxMd5Digest().size())) return false;
  return !IsDigestOf(stored, iptc);
}

std::int32_t ImportIptc(LxConversion& conversion, const LxMetadataItem* source) {
  for (const char* const property : kPicturistProperties) {
    conversion.Xmp().RemoveProperties(kLxPicturistSchema, property);
  }
  std::int32_t converted = 0;
  if (!source) return converted;
  for (const LxMetadataItem* dataset = source->firstChild; dataset; dataset = dataset->next) {
    if (LxConvertIptcItem(conversion, dataset)) ++converted;
  }
  return converted;
}

// The conversion for an item's namespace.
enum class Source { kTiff, kExif, kResources, kTiffHeader, kOther };

Source SourceOf(const char* nameSpace) noexcept {
  if (Is(nameSpace, LxNamespaceName(0))) return Source::kTiff;
  if (Is(nameSpace, LxNamespaceName(1)) || Is(nameSpace, LxNamespaceName(2))) return Source::kExif;
  if (Is(nameSpace, LxNamespaceName(4))) return Source::kResources;
  return Is(nameSpace, "tiffh") ? Source::kTiffHeader : Source::kOther;
}

std::int32_t WalkPool(LxConversion& conversion, const LxMetadataPool& pool) {
  std::int32_t converted = 0;
  LxPoolIterator iterator;
  LxStartPoolWalk(&iterator, &pool);
  bool isPastFirstIfd = false;
  bool skip = false;
  // The items of a directory share their namespace's text, so it is compared only once for them.
  const char* nameSpace = nullptr;
  Source source = Source::kOther;
  LxMetadataItem* item = nullptr;
  while (LxNextPoolItem(&iterator, &item, skip) == kLxOk) {
    skip = false;
    bool done = false;
    if (item->nameSpace != nameSpace) {
      nameSpace = item->nameSpace;
      source = SourceOf(nameSpace);
    }
    switch (source) {
      case Source::kTiff:
        skip = Is(item->name, "SubIFDs");  // Other images in the file.
        if (!skip) done = LxConvertTiffItem(conversion, item);
        break;
      case Source::kExif:
        done = LxConvertExifItem(conversion, item);
        break;
      case Source::kResources:
        done = LxConvertIrItem(conversion, item);
        break;
      case Source::kTiffHeader:
        if (!Is(item->name, "IFD")) break;
        skip = isPastFirstIfd;  // The thumbnail's directory, or another image's.
        isPastFirstIfd = true;
        break;
      case Source::kOther:
        break;
    }
    if (done) ++converted;
  }
  return converted;
}

}  // namespace

std::int32_t LxConvertPoolToXMP(LxMetadataPool* pool, XMPMetaHolder& xmp, bool hasNativeXmp) {
  LxConversion conversion(*pool, xmp);
  const IptcChoice iptc = ChooseIptc(pool);
  const bool iptcWins = IptcWins(*pool, hasNativeXmp, iptc);
  std::int32_t converted = 0;
  if (iptcWins) converted += ImportIptc(conversion, iptc.source);
  if (!iptcWins || !iptc.keepsDescription) LxDeleteMetadata(pool, "tiff", kImageDescription, "", "");
  return converted + WalkPool(conversion, *pool);
}
