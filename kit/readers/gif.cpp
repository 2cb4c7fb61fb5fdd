// GIF files: the image attributes of the logical screen descriptor (GIF89a, 18), and the packet of an application
// extension "XMP Data" with the authentication code "XMP" (XMP specification part 3, 1.1.2).
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/base/file_window.h"
#include "kit/base/memory.h"
#include "kit/readers/container.h"
#include "kit/readers/file_readers.h"

namespace {

constexpr std::int32_t kHeaderLength = 13;  // Signature, version, logical screen descriptor.
constexpr std::uint8_t kExtension = 0x21;
constexpr std::uint8_t kApplication = 0xFF;
constexpr std::uint8_t kImage = 0x2C;
constexpr std::uint64_t kImageDescriptor = 10;
constexpr std::uint64_t kCodeSize = 1;
constexpr char kXmpApplication[] = "\x0BXMP DataXMP";
constexpr std::uint32_t kXmpApplicationLength = 12;
constexpr std::uint32_t kTrailerLength = 257;  // Without the zero byte that ends the sub-blocks.

// The size of the colour table in bytes, from the flags (GIF89a, 19 and 21).
std::uint64_t ColourTableLength(std::uint8_t flags) noexcept {
  return (flags & 0x80) != 0 ? std::uint64_t{3} << ((flags & 7) + 1) : 0;
}

// Skips sub-blocks up to the empty one that ends them (GIF89a, 15), and sets *end to its offset. False: there is none.
bool FindEnd(LxFileWindow* window, std::uint64_t at, std::uint64_t* end) noexcept {
  const std::uint8_t* length = LxPeekRange(window, at, 1);
  while (length != nullptr && *length != 0) {
    at += 1 + std::uint64_t{*length};
    length = LxPeekRange(window, at, 1);
  }
  *end = at;
  return length != nullptr;
}

// Whether the bytes before `end` are the trailer 01, FF, FE ... 00, which leads a reader of sub-blocks from any byte of
// a packet to its end.
bool HasTrailer(LxFileWindow* window, std::uint64_t start, std::uint64_t end) noexcept {
  if (end - start < kTrailerLength) return false;
  const std::uint8_t* trailer = LxPeekRange(window, end - kTrailerLength, kTrailerLength);
  if (trailer == nullptr || trailer[0] != 1) return false;
  for (std::uint32_t i = 1; i < kTrailerLength; ++i) {
    if (trailer[i] != kTrailerLength - 1 - i) return false;
  }
  return true;
}

// The packet is stored in one piece, not cut into sub-blocks.
void OfferPacket(LxContainer* container, LxFileWindow* window, std::uint64_t start, std::uint64_t end) noexcept {
  if (!LxWantsBlock(*container, kLxPacketBlock, 0)) return;
  if (HasTrailer(window, start, end)) end -= kTrailerLength;
  if (start == end) return;
  const std::uint8_t* bytes = LxMapFileRange(container->pool->blocks, start, end - start);
  LxOfferBlock(container, kLxPacketBlock,
               {"XMP Data", "XMP", bytes, static_cast<std::int32_t>(end - start), nullptr, 0});
}

// Reads an extension block from its label on. Sets *next to its end. False: damaged.
bool ReadExtension(LxContainer* container, LxFileWindow* window, std::uint64_t at, std::uint64_t* next) noexcept {
  const std::uint8_t* label = LxPeekRange(window, at, 1);
  if (label == nullptr) return false;
  const bool isApplication = *label == kApplication;
  std::uint64_t start = at + 1;
  const std::uint8_t* application = isApplication ? LxPeekRange(window, start, kXmpApplicationLength) : nullptr;
  const bool isXmp = application != nullptr && std::memcmp(application, kXmpApplication, kXmpApplicationLength) == 0;
  if (isXmp) start += kXmpApplicationLength;
  std::uint64_t end = 0;
  if (!FindEnd(window, start, &end)) return false;
  if (isXmp) OfferPacket(container, window, start, end);
  *next = end + 1;
  return true;
}

// Skips an image with its colour table and data. Sets *next to its end. False: damaged.
bool SkipImage(LxFileWindow* window, std::uint64_t at, std::uint64_t* next) noexcept {
  const std::uint8_t* descriptor = LxPeekRange(window, at, kImageDescriptor);
  if (descriptor == nullptr) return false;
  at += kImageDescriptor + ColourTableLength(descriptor[kImageDescriptor - 1]) + kCodeSize;
  if (!FindEnd(window, at, next)) return false;
  ++*next;
  return true;
}

// Walks over the blocks up to the trailer or an unknown byte.
void WalkBlocks(LxContainer* container, LxFileWindow* window, std::uint64_t at) noexcept {
  for (;;) {
    const std::uint8_t* introducer = LxPeekRange(window, at, 1);
    if (introducer == nullptr) return;
    if (*introducer == kExtension) {
      if (!ReadExtension(container, window, at + 1, &at)) return;
    } else if (*introducer == kImage) {
      if (!SkipImage(window, at, &at)) return;
    } else {
      return;
    }
  }
}

}  // namespace

LxResult LxReadGifFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  LxFileWindow window;
  LxInitFileWindow(&window, stream, fileSize);
  const std::uint8_t* file = LxPeekRange(&window, 0, 16);
  if (file == nullptr) return kLxBadReadFormat;
  pool->width = LxGet16(file + 6, kLxLittleEndian);
  pool->height = LxGet16(file + 8, kLxLittleEndian);
  pool->samples = 1;
  pool->bits = 8;
  pool->colourModel = kLxColourIndexedRgb;
  pool->compression = kLxCompressionLzw;

  const std::uint64_t blocks = kHeaderLength + ColourTableLength(file[10]);
  LxContainer container;
  if (const LxResult result = LxOpenContainer(&container, stream, fileSize, pool); result != kLxOk) return result;
  WalkBlocks(&container, &window, blocks);
  return LxFinishContainer(&container, "gifh", "GIF", "gif");
}
