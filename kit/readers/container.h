// Files that carry metadata blocks in a container of their own (boxes, chunks). A container's reader finds the blocks
// and offers each one here; what is inside is read by the readers that read the same blocks in a JPEG file.
//
// The invariant: the pool's items below the block items, and so the XMP object, are those of a JPEG file that holds the
// same blocks (the TIFF structure in an APP1 segment, the packet in the next one, image resources in APP13, bare IPTC
// datasets as the resource IptcNaa in another APP13), whatever their order in the container. Of each block the first
// one that is recognised counts.
#ifndef LXBRIDGE_KIT_READERS_CONTAINER_H_
#define LXBRIDGE_KIT_READERS_CONTAINER_H_

#include <cstdint>

#include "kit/readers/dispatch.h"

// In the order in which they are read.
enum LxContainerBlockKind : std::int32_t {
  kLxTiffBlock,      // A TIFF structure; "Exif" and two zero bytes may stand before it.
  kLxPacketBlock,    // An XMP packet.
  kLxResourceBlock,  // Image resources.
  kLxDatasetBlock,   // Bare IPTC datasets.
  kLxContainerBlockKinds
};

// One block that counts.
struct LxContainerBlock {
  const char* name;           // The box's or chunk's type.
  const char* displayText;    // What tells it from others of its type, or "".
  const std::uint8_t* bytes;  // In a block of the file's cache. Null: no such block.
  std::int32_t length;
  LxBlock* detached;  // The detached block that holds the bytes, or null.
  std::int32_t rank;
};

// A container that is being read. Its cache is the pool's.
struct LxContainer {
  LxMetadataPool* pool;
  LxParseContext context;
  LxContainerBlock blocks[kLxContainerBlockKinds];
};

// Makes the pool's block cache and the context. kLxOk; kLxOutOfMemory.
[[nodiscard]] LxResult LxOpenContainer(LxContainer* container, LxStream* stream, std::int32_t fileSize,
                                       LxMetadataPool* pool) noexcept;

// Whether a block of this kind and rank would count: there is none yet, or only one of a higher rank. Blocks of rank 0
// win over those of rank 1, wherever they stand. For readers that need not map or inflate what cannot count.
[[nodiscard]] bool LxWantsBlock(const LxContainer& container, LxContainerBlockKind kind, std::int32_t rank) noexcept;

// Whether `length` bytes that begin so are recognised as a block of this kind.
// REQUIRES: `available` readable bytes; 14 of them, or all that there are, settle it.
[[nodiscard]] bool LxIsBlock(LxContainerBlockKind kind, const std::uint8_t* bytes, std::int32_t available,
                             std::int32_t length) noexcept;

// Takes the block when it is wanted and recognised, else frees its detached block. `bytes` lie in the cache's blocks or
// in `detached` (null: none), name and display text are static. Returns whether it was taken.
bool LxOfferBlock(LxContainer* container, LxContainerBlockKind kind, const LxContainerBlock& block) noexcept;

// Counts a box, chunk, item or extent against the file's budget of items. False: used up, the walk ends.
[[nodiscard]] bool LxChargeEntries(LxContainer* container, std::int64_t count) noexcept;

// The pool's header item (namespace and name of the kind), below it an item for each block taken, below that the
// block's own items. With a null `blockSpace` these are the header's own children. Without any block the pool stays
// empty and loses its block cache. kLxOk; kLxOutOfMemory.
[[nodiscard]] LxResult LxFinishContainer(LxContainer* container, const char* headerSpace, const char* headerName,
                                         const char* blockSpace) noexcept;

#endif  // LXBRIDGE_KIT_READERS_CONTAINER_H_
