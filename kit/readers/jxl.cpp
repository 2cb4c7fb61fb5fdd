// JPEG XL files: metadata are boxes of the file level, as they are or compressed with Brotli (ISO/IEC 18181-2, 9); the
// codestream's size header gives the size (ISO/IEC 18181-1, D.2).
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/readers/boxes.h"
#include "kit/readers/file_readers.h"
#include "kit/readers/inflate.h"

namespace {

constexpr std::int32_t kTypeLength = 4;
// Signature and the longest size header: 1 + 2 + 30 + 3 + 2 + 30 bits.
constexpr std::uint64_t kSizeHeaderEnd = 11;

// Bits from the lowest of each byte on.
struct BitReader {
  const std::uint8_t* bytes;
  std::uint32_t length;  // In bits.
  std::uint32_t at;
};

std::uint32_t TakeBits(BitReader* in, std::uint32_t count) noexcept {
  std::uint32_t value = 0;
  for (std::uint32_t i = 0; i < count && in->at < in->length; ++i, ++in->at) {
    value |= static_cast<std::uint32_t>(in->bytes[in->at / 8] >> (in->at % 8) & 1) << i;
  }
  return value;
}

// A side of an image: in units of eight pixels, or in one of four lengths.
std::uint32_t TakeSide(BitReader* in, bool small) noexcept {
  constexpr std::uint32_t kLengths[] = {9, 13, 18, 30};
  if (small) return 8 * (TakeBits(in, 5) + 1);
  return TakeBits(in, kLengths[TakeBits(in, 2)]) + 1;
}

// The size header of the codestream that begins at `start`.
void ReadSize(LxContainer* container, std::uint64_t start, std::uint64_t end) noexcept {
  constexpr struct {
    std::uint32_t width, height;
  } kRatios[] = {{0, 1}, {1, 1}, {12, 10}, {4, 3}, {3, 2}, {16, 9}, {5, 4}, {2, 1}};
  const std::uint64_t length = end - start < kSizeHeaderEnd ? end - start : kSizeHeaderEnd;
  const std::uint8_t* bytes = LxMapFileRange(container->pool->blocks, start, length);
  if (bytes == nullptr || length < 4 || bytes[0] != 0xFF || bytes[1] != 0x0A) return;
  BitReader in = {bytes, static_cast<std::uint32_t>(8 * length), 16};
  const bool small = TakeBits(&in, 1) != 0;
  const std::uint32_t height = TakeSide(&in, small);
  const std::uint32_t ratio = TakeBits(&in, 3);
  const std::uint32_t width =
      ratio == 0 ? TakeSide(&in, small)
                 : static_cast<std::uint32_t>(std::uint64_t{height} * kRatios[ratio].width / kRatios[ratio].height);
  LxSetAttribute(&container->pool->height, height);
  LxSetAttribute(&container->pool->width, width);
}

void OfferBlock(LxContainer* container, std::uint32_t type, const LxContainerBlock& block) noexcept {
  if (type == LxBoxType("Exif")) {
    LxOfferExifItem(container, block);
  } else if (LxHoldsPacket(block.bytes, block.length)) {
    LxOfferBlock(container, kLxPacketBlock, block);
  } else {
    LxFreeDetachedBlock(container->pool->blocks, block.detached);
  }
}

bool Wants(const LxContainer& container, std::uint32_t type) noexcept {
  if (type == LxBoxType("Exif")) return LxWantsBlock(container, kLxTiffBlock, 0);
  return type == LxBoxType("xml ") && LxWantsBlock(container, kLxPacketBlock, 0);
}

void ReadBlock(LxContainer* container, const LxBox& box) noexcept {
  const std::uint8_t* bytes = Wants(*container, box.type) ? LxMapWholeBox(*container, box) : nullptr;
  if (bytes == nullptr) return;
  const char* name = box.type == LxBoxType("Exif") ? "Exif" : "xml ";
  OfferBlock(container, box.type, {name, "", bytes, static_cast<std::int32_t>(box.end - box.payload), nullptr, 0});
}

// A compressed box: the type of the box that it stands for, then that box's payload.
void ReadCompressed(LxContainer* container, const LxBox& box) noexcept {
  const std::uint8_t* head = LxMapBox(*container, box, kTypeLength);
  if (head == nullptr) return;
  const std::uint32_t type = LxGet32(head, kLxBigEndian);
  const std::uint8_t* bytes = Wants(*container, type) ? LxMapWholeBox(*container, box) : nullptr;
  if (bytes == nullptr) return;
  LxBlock* block = LxInflateBlock(container->pool->blocks, &container->context, kLxBrotliStream, bytes + kTypeLength,
                                  static_cast<std::int32_t>(box.end - box.payload) - kTypeLength);
  if (block == nullptr) return;
  const char* text = type == LxBoxType("Exif") ? "Exif" : "xml ";
  OfferBlock(container, type, {"brob", text, block->data, block->length, block, 0});
}

void ReadBoxes(LxContainer* container, LxFileWindow* window) noexcept {
  constexpr std::uint64_t kPartIndex = 4;  // A part of the codestream has its index in front.
  bool hasSize = false;
  LxBoxWalk walk = LxWalkFile(container, window);
  for (LxBox box; LxNextBox(&walk, &box);) {
    switch (box.type) {
      case LxBoxType("jxlc"):
      case LxBoxType("jxlp"): {
        const std::uint64_t start = box.payload + (box.type == LxBoxType("jxlp") ? kPartIndex : 0);
        if (!hasSize && start < box.end) ReadSize(container, start, box.end);
        hasSize = true;
        break;
      }
      case LxBoxType("Exif"):
      case LxBoxType("xml "):
        ReadBlock(container, box);
        break;
      case LxBoxType("brob"):
        ReadCompressed(container, box);
        break;
      default:
        break;
    }
  }
}

}  // namespace

LxResult LxReadJxlFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  LxContainer container;
  if (LxOpenContainer(&container, stream, fileSize, pool) != kLxOk) return kLxOutOfMemory;
  const std::uint8_t* start = LxMapFileRange(pool->blocks, 0, 2);
  if (start != nullptr && start[0] == 0xFF) {
    ReadSize(&container, 0, static_cast<std::uint64_t>(fileSize));
  } else {
    LxFileWindow window;
    LxInitFileWindow(&window, stream, fileSize);
    ReadBoxes(&container, &window);
  }
  return LxFinishContainer(&container, "jxlh", "JXL", "jxl");
}
