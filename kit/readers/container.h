// Files that carry metadata blocks in a container of their own (boxes, chunks). A container's reader finds the blocks
// and offers each one here; their contents are read by the readers of the same blocks in JPEG files.
//
// The invariant: below the block items, the pool is the same as for a JPEG file with the same blocks (the TIFF
// structure in an APP1 segment, the packet in the next one, image resources in APP13, bare IPTC datasets as the
// resource IptcNaa in another APP13), in whatever order the container has them; so the XMP object is the same, too. Of
// each kind of block, the first one recognised counts.
#ifndef LXBRIDGE_KIT_READERS_CONTAINER_H_
#define LXBRIDGE_KIT_READERS_CONTAINER_H_

#include <cstdint>

#include "kit/readers/dispatch.h"

// In the order in which they are read.
enum LxContainerBlockKind : std::int32_t {
  kLxTiffBlock,      // A TIFF structure, which "Exif" and two zero bytes may precede.
  kLxPacketBlock,    // An XMP packet.
  kLxResourceBlock,  // Image resources.
  kLxDatasetBlock,   // Bare IPTC datasets.
  kLxContainerBlockKinds
};

// A block that counts.
struct LxContainerBlock {
  const char* name;           // The box's or chunk's type.
  const char* displayText;    // Distinguishes it from others of its type, or "".
  const std::uint8_t* bytes;  // In a block of the file's cache. Null: no such block.
  std::int32_t length;
  LxBlock* detached;  // The detached block that holds the bytes, or null.
  std::int32_t rank;
};

// A container being read. Its cache is the pool's.
struct LxContainer {
  LxMetadataPool* pool;
  LxParseContext context;
  LxContainerBlock blocks[kLxContainerBlockKinds];
};

// Creates the pool's block cache and the context. kLxOk; kLxOutOfMemory.
[[nodiscard]] LxResult LxOpenContainer(LxContainer* container, LxStream* stream, std::int32_t fileSize,
                                       LxMetadataPool* pool) noexcept;

// Whether a block of this kind and rank would count: there is none yet, or only one of a higher rank. A block of rank 0
// replaces one of rank 1, regardless of their order. It saves readers from mapping or inflating blocks that cannot
// count.
[[nodiscard]] bool LxWantsBlock(const LxContainer& container, LxContainerBlockKind kind, std::int32_t rank) noexcept;

// Whether `length` bytes that begin with these are recognised as a block of this kind. REQUIRES: `available` readable
// bytes: at least 14, or all `length` bytes.
[[nodiscard]] bool LxIsBlock(LxContainerBlockKind kind, const std::uint8_t* bytes, std::int32_t available,
                             std::int32_t length) noexcept;

// Takes the block if it is wanted and recognised, else frees its detached block. `bytes` lies in the cache's blocks or
// in `detached` (null: none); name and display text are static. Returns whether the block was taken.
bool LxOfferBlock(LxContainer* container, LxContainerBlockKind kind, const LxContainerBlock& block) noexcept;

// Counts boxes, chunks, items or extents against the file's budget of items. False: it is used up, and the walk ends.
[[nodiscard]] bool LxChargeEntries(LxContainer* container, std::int64_t count) noexcept;

// Creates the pool's header item (namespace and name of the kind), in it an item for each block taken, and in that the
// block's own items. With a null `blockSpace`, the block's items are direct children of the header. Without any block,
// the pool stays empty and its block cache is freed. kLxOk; kLxOutOfMemory.
[[nodiscard]] LxResult LxFinishContainer(LxContainer* container, const char* headerSpace, const char* headerName,
                                         const char* blockSpace) noexcept;

#endif  // LXBRIDGE_KIT_READERS_CONTAINER_H_
