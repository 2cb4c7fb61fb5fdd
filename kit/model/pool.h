// The metadata pool: all metadata of one file as a tree of items, with the file's image attributes and the blocks that
// the values point into.
#ifndef LXBRIDGE_KIT_MODEL_POOL_H_
#define LXBRIDGE_KIT_MODEL_POOL_H_

#include <cstddef>
#include <cstdint>

#include "kit/base/block_cache.h"
#include "kit/base/read_outcome.h"
#include "kit/base/result.h"

// Item flags.
inline constexpr std::uint32_t kLxOwnsNamespace = 0x001;
inline constexpr std::uint32_t kLxOwnsName = 0x002;
inline constexpr std::uint32_t kLxOwnsTypeName = 0x004;
inline constexpr std::uint32_t kLxOwnsDisplayText = 0x008;
inline constexpr std::uint32_t kLxOwnsValue = 0x010;
inline constexpr std::uint32_t kLxEndOfRun = 0x020;  // Searches and display walks stop after this item.
inline constexpr std::uint32_t kLxClosed = 0x040;    // Searches and display walks do not enter its children.
inline constexpr std::uint32_t kLxBigEndianValue = 0x080;
inline constexpr std::uint32_t kLxChanged = 0x100;  // Made or changed after reading.
inline constexpr std::uint32_t kLxDeleted = 0x200;  // Stays in the tree; searches and walks skip it.
inline constexpr std::uint32_t kLxHidden = 0x400;   // Never a display item.

// One item. Texts that its flags do not mark as owned are static or the caller's, and outlive the pool. The value has
// `valueLength` bytes in the file's byte order and no terminator; unless owned, it points into the pool's block cache.
struct LxMetadataItem {
  const char* nameSpace;
  const char* name;
  const char* label;  // Display key, or null.
  const char* typeName;
  const char* displayText;  // Never null; "" until set. May point into the value (then zero-terminated within it).
  const char* valueLabel;   // Display key of a single named value, or null.
  LxMetadataItem* next;
  LxMetadataItem* firstChild;
  std::uint32_t flags;
  std::uint16_t tagId;
  std::uint16_t typeCode;
  std::int32_t valueLength;
  const std::uint8_t* value;  // Null: none.
  struct LxItemSlab* slab;    // The slab that contains the record, or null: allocated alone. Not copied with the item.
};

// Image attributes, as the readers set them.
enum LxColourModel : std::int32_t {
  kLxColourUnknown = 0,
  kLxColourGray,
  kLxColourRgb,
  kLxColourRgbIcc,
  kLxColourCmyk,
  kLxColourGrayAlpha,
  kLxColourRgbAlpha,
  kLxColourRgbIccAlpha,
  kLxColourCmykAlpha,
  kLxColourBitWhiteZero,
  kLxColourBitBlackZero,
  kLxColourIndexedRgb,
  kLxColourMask,
  kLxColourYCbCr,
  kLxColourCfa,
  kLxColourIccLab,
  kLxColourCieLab,
  kLxColourMulti,
  kLxColourDuo,
  kLxColourSrgb,
};
enum LxCompression : std::int32_t {
  kLxCompressionUnknown = 0,
  kLxCompressionJpeg0 = 1,
  kLxCompressionJpeg12 = 13,
  kLxCompressionFlate = 14,
  kLxCompressionLzw,
  kLxCompressionCcitt6,
  kLxCompressionCcitt4,
  kLxCompressionCcitt1d,
  kLxCompressionPack,
  kLxCompressionNone,
};
enum LxOrientation : std::int32_t {
  kLxRot0 = 0,
  kLxRot90Cw,
  kLxRot180,
  kLxRot270Cw,
  kLxRotM0,
  kLxRotM90Cw,
  kLxRotM180,
  kLxRotM270Cw,
};
enum LxFileKind : std::int32_t {
  kLxFileUnknown = 0,
  kLxFileAvi,
  kLxFileBmp,
  kLxFileGif,
  kLxFileJpeg,
  kLxFileMov,
  kLxFileMp3,
  kLxFileMpeg,
  kLxFilePdd,
  kLxFilePdf,
  kLxFilePng,
  kLxFilePsd,
  kLxFileTiff,
  kLxFileWav,
  kLxFileWma,
  kLxFileWmv,
  kLxFileHeif,  // HEIC, HEIF, AVIF
  kLxFileWebp,
  kLxFileJxl,
  kLxFileJp2,
  kLxFileXmp,  // Side-cars.
};

// How much of a file is read.
enum LxReaderOption : std::int32_t {
  kLxReadEverything = 0,
  // Of large values that the conversion never uses, only the first bytes, with which the item's value ends: JPEG
  // segments and entries that no table names, and hidden entries that lead nowhere. These may be megabytes of thermal
  // images, previews or layers.
  kLxReadForConversion,
};

struct LxMetadataPool {
  std::int32_t width;  // Pixels.
  std::int32_t height;
  std::int32_t samples;      // Per pixel.
  std::int32_t bits;         // Per sample.
  std::int32_t colourModel;  // LxColourModel
  std::int32_t mcuWidth;     // JPEG only: 8, 16 or 32.
  std::int32_t mcuHeight;
  std::int32_t hasLayers;             // 0 or 1.
  std::int32_t hasMetadata;           // 0 or 1: at least one display item exists.
  std::int32_t orientation;           // LxOrientation
  std::int32_t fileKind;              // LxFileKind
  std::int32_t compression;           // LxCompression
  std::int32_t furtherAttributes[3];  // Reserved: they keep the layout.
  std::int32_t readerOption;          // LxReaderOption, set before reading.
  LxBlockCache* blocks;               // Owned; null when nothing of the file is mapped.
  LxMetadataItem* root;               // First of the top-level list.
  LxReadOutcome outcome;              // Whether all of the file could be read.
};

// Whether the file's blocks are converted by the rules of JPEG files: JPEG, and every format that carries the same
// blocks in another container.
[[nodiscard]] bool LxCountsAsJpeg(std::int32_t fileKind) noexcept;

// Names of the four enumerations, as they are shown ("jpeg", "sRGB", "rot90cw", "jpeg8"); null outside the enumeration.
[[nodiscard]] const char* LxFileKindName(std::int32_t kind) noexcept;
[[nodiscard]] const char* LxColourModelName(std::int32_t model) noexcept;
[[nodiscard]] const char* LxOrientationName(std::int32_t orientation) noexcept;
[[nodiscard]] const char* LxCompressionName(std::int32_t compression) noexcept;

// A new unlinked item with these fields, its type's name and an empty display text; null: no memory.
[[nodiscard]] LxMetadataItem* LxNewMetadataItem(const char* nameSpace, const char* name, std::uint32_t flags,
                                                std::uint16_t tagId, std::uint16_t typeCode, std::int32_t valueLength,
                                                const std::uint8_t* value) noexcept;

// Frees the texts and the value that the item owns, and clears the ownership flags.
void LxReleaseOwned(LxMetadataItem* item) noexcept;

// Items are allocated in slabs, with most of their texts: a file has a hundred items or more, all freed together, and
// separate allocations would cost as much as reading the file. A slab is freed with its last item.
inline constexpr std::int32_t kLxItemsPerSlab = 64;
inline constexpr std::uint32_t kLxSlabTextBytes = 2032;
struct LxItemSlab {
  std::int32_t used;           // Items handed out, from the front.
  std::int32_t live;           // Of these, not yet freed.
  std::uint32_t textsUsed;     // Bytes, from the front.
  std::uint32_t textsOffered;  // 0: each text must be a separate request for memory.
  LxMetadataItem items[kLxItemsPerSlab];
  char texts[kLxSlabTextBytes];
};
static_assert(sizeof(LxItemSlab) <= 8192);

// Replaces *slab by a new slab. False: no memory.
[[nodiscard]] bool LxBeginSlab(LxItemSlab** slab) noexcept;

// Memory for a name or display text that the item will own: from its slab if there is space, else from LxAlloc. Null:
// no memory.
[[nodiscard]] char* LxNewItemText(LxMetadataItem* item, std::size_t size) noexcept;

// Frees the item, its following siblings, all their descendants and everything these own. Takes null. The stack used
// does not depend on the depth of the tree.
void LxFreeMetadataItems(LxMetadataItem* item) noexcept;

// A zero-filled pool record, or null: no memory. LxDeletePool frees its contents and the record; it takes null.
[[nodiscard]] LxMetadataPool* LxNewPool() noexcept;
void LxDeletePool(LxMetadataPool* pool) noexcept;

// Frees all items, then the block cache. The record and its attributes stay.
void LxFreeMetadataPool(LxMetadataPool* pool) noexcept;

// The first live item in tree order that matches; an empty or null text matches all. kLxOk, or kLxNotFound and null.
// The fourth argument, a type name in the editing functions, is ignored.
[[nodiscard]] LxResult LxFindMetadata(const LxMetadataPool* pool, const char* nameSpace, const char* name,
                                      const char* ignored, const char* displayText, LxMetadataItem** out) noexcept;

// How deep searches and deletions look. Readers nest far less; only a tree built by hand can be deeper. Deeper items
// are skipped, so neither memory nor stack depends on the depth.
inline constexpr std::int32_t kLxMaxTreeDepth = 256;

// The same search from an item on, over its following siblings and their descendants.
[[nodiscard]] LxMetadataItem* LxFindItemInTree(LxMetadataItem* first, const char* nameSpace, const char* name,
                                               const char* displayText) noexcept;

// Replaces the display text; a text owned before is freed. If `owned`, the item takes ownership of `text`.
void LxSetDisplayText(LxMetadataItem* item, const char* text, bool owned) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_POOL_H_
