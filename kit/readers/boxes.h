// The boxes of ISO base media files (ISO/IEC 14496-12, 4.2), of which HEIF, AVIF, JPEG XL and JPEG 2000 files consist:
// a walk over the boxes of a file or of a parent box. It reads headers only; a reader maps the parts of a box that it
// needs. No reader descends more than four levels, so deeply nested boxes cost nothing.
#ifndef LXBRIDGE_KIT_READERS_BOXES_H_
#define LXBRIDGE_KIT_READERS_BOXES_H_

#include <cstdint>

#include "kit/base/file_window.h"
#include "kit/readers/container.h"

// The type of a box, property or item as a number: LxBoxType("meta").
[[nodiscard]] constexpr std::uint32_t LxBoxType(const char (&text)[5]) noexcept {
  std::uint32_t type = 0;
  for (int i = 0; i < 4; ++i) type = type << 8 | static_cast<std::uint8_t>(text[i]);
  return type;
}

// Offsets in the file. A box lies completely in its file and in its parent.
struct LxBox {
  std::uint32_t type;
  std::uint64_t payload;  // The bytes after the size and the type.
  std::uint64_t end;      // Exclusive.
};

struct LxBoxWalk {
  LxContainer* container;
  LxFileWindow* window;  // The window through which headers are read, or null: they are mapped.
  std::uint64_t at;      // Start of the next box.
  std::uint64_t end;     // Of the parent.
};

// A walk over the boxes of the file.
[[nodiscard]] LxBoxWalk LxWalkFile(LxContainer* container, LxFileWindow* window) noexcept;
// A walk over the boxes in a box, from `header` bytes after the start of its payload (4 in a box with version and
// flags). Boxes that are small or already mapped need no window.
[[nodiscard]] LxBoxWalk LxWalkBox(LxContainer* container, LxFileWindow* window, const LxBox& box,
                                  std::uint64_t header) noexcept;

// The next box. False: the end of the parent, a box that is not completely inside it, or the file's budget is used up.
[[nodiscard]] bool LxNextBox(LxBoxWalk* walk, LxBox* box) noexcept;

// The first `length` bytes of a box's payload, or null: the payload is shorter, or cannot be read.
[[nodiscard]] const std::uint8_t* LxMapBox(const LxContainer& container, const LxBox& box,
                                           std::uint64_t length) noexcept;
// All bytes of a box's payload; null also if it is empty.
[[nodiscard]] const std::uint8_t* LxMapWholeBox(const LxContainer& container, const LxBox& box) noexcept;

// Offers the bytes of an Exif item or box (ISO/IEC 23008-12, A.2.1) as a block: a four-byte offset, then the TIFF
// structure, that many bytes after the offset field. Some writers omit the offset. Shortens the block to the structure
// first.
bool LxOfferExifItem(LxContainer* container, LxContainerBlock block) noexcept;

// Whether an XML text contains an element that occurs only in packets. XML boxes have other uses, too.
[[nodiscard]] bool LxHoldsPacket(const std::uint8_t* text, std::int32_t length) noexcept;

// Sets an attribute of the pool to a size that a file stores in 32 bits; a size beyond 2^31 - 1 is ignored.
void LxSetAttribute(std::int32_t* attribute, std::uint32_t value) noexcept;

#endif  // LXBRIDGE_KIT_READERS_BOXES_H_
