// The boxes of ISO base media files (ISO/IEC 14496-12, 4.2), which HEIF, AVIF, JPEG XL and JPEG 2000 files consist of:
// one walk over the boxes of a file or of a parent box. Only headers are read; a reader maps what it needs of a box. No
// reader follows boxes deeper than four levels, so that nested boxes cost nothing.
#ifndef LXBRIDGE_KIT_READERS_BOXES_H_
#define LXBRIDGE_KIT_READERS_BOXES_H_

#include <cstdint>

#include "kit/base/file_window.h"
#include "kit/readers/container.h"

// A box's type, a property's or an item's as a number: LxBoxType("meta").
[[nodiscard]] constexpr std::uint32_t LxBoxType(const char (&text)[5]) noexcept {
  std::uint32_t type = 0;
  for (int i = 0; i < 4; ++i) type = type << 8 | static_cast<std::uint8_t>(text[i]);
  return type;
}

// Offsets in the file. A box lies whole in its file and in its parent.
struct LxBox {
  std::uint32_t type;
  std::uint64_t payload;  // What follows the size and the type.
  std::uint64_t end;      // Exclusive.
};

struct LxBoxWalk {
  LxContainer* container;
  LxFileWindow* window;  // What headers are read through, or null: they are mapped.
  std::uint64_t at;      // Where the next box begins.
  std::uint64_t end;     // Of the parent.
};

// Over the boxes of the file.
[[nodiscard]] LxBoxWalk LxWalkFile(LxContainer* container, LxFileWindow* window) noexcept;
// Over the boxes in a box, `header` bytes after its payload's start. (4 in a box with version and flags.) Without a
// window for boxes that are small, or mapped already.
[[nodiscard]] LxBoxWalk LxWalkBox(LxContainer* container, LxFileWindow* window, const LxBox& box,
                                  std::uint64_t header) noexcept;

// The next box. False: the parent ends, a box does not lie whole in it, or the file's budget is used up.
[[nodiscard]] bool LxNextBox(LxBoxWalk* walk, LxBox* box) noexcept;

// The first `length` bytes of a box's payload, or null: it is shorter, or they cannot be read.
[[nodiscard]] const std::uint8_t* LxMapBox(const LxContainer& container, const LxBox& box,
                                           std::uint64_t length) noexcept;
// All bytes of a box's payload; null also for an empty one.
[[nodiscard]] const std::uint8_t* LxMapWholeBox(const LxContainer& container, const LxBox& box) noexcept;

// The bytes of an Exif item or box (ISO/IEC 23008-12, A.2.1): an offset of four bytes, then at that offset from its end
// the TIFF structure. Some writers leave the offset out. Shortens the block to the structure and offers it.
bool LxOfferExifItem(LxContainer* container, LxContainerBlock block) noexcept;

// Whether a text holds an element that only packets have. Boxes of XML serve for other things too.
[[nodiscard]] bool LxHoldsPacket(const std::uint8_t* text, std::int32_t length) noexcept;

// Gives an attribute of the pool a size that a file states in 32 bits; one beyond 2^31 - 1 leaves it as it is.
void LxSetAttribute(std::int32_t* attribute, std::uint32_t value) noexcept;

#endif  // LXBRIDGE_KIT_READERS_BOXES_H_
