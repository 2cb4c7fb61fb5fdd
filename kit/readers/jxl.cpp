// JPEG XL files: metadata is in boxes of the file level, plain or compressed with Brotli (ISO/IEC 18181-2, 9); the
// codestream's headers have size, channels and depth (ISO/IEC 18181-1, annex D).
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/readers/boxes.h"
#include "kit/readers/file_readers.h"
#include "kit/readers/inflate.h"

namespace {

constexpr std::int32_t kTypeLength = 4;
// Size, depth and channels are within this length, unless extra channels have long names.
constexpr std::uint64_t kHeadersEnd = 256;

// Reads bits, lowest bit of each byte first. Reading past the end gives 0 and sets `hasEnded`.
struct BitReader {
  const std::uint8_t* bytes;
  std::uint32_t length;  // In bits.
  std::uint32_t at;
  bool hasEnded;
};

std::uint32_t TakeBits(BitReader* in, std::uint32_t count) noexcept {
  if (count > in->length - in->at) {
    in->hasEnded = true;
    in->at = in->length;
    return 0;
  }
  std::uint32_t value = 0;
  for (std::uint32_t i = 0; i < count; ++i, ++in->at) {
    value |= static_cast<std::uint32_t>(in->bytes[in->at / 8] >> (in->at % 8) & 1) << i;
  }
  return value;
}

bool TakeFlag(BitReader* in) noexcept {
  return TakeBits(in, 1) != 0;
}

// A number in one of four forms, selected by two bits: an offset, and the number of bits to add to it (B.2.3).
struct NumberForm {
  std::uint32_t offset, bits;
};
std::uint32_t TakeNumber(BitReader* in, const NumberForm (&forms)[4]) noexcept {
  const NumberForm& form = forms[TakeBits(in, 2)];
  return form.offset + TakeBits(in, form.bits);
}
constexpr NumberForm kEnumeration[] = {{0, 0}, {1, 0}, {2, 4}, {18, 6}};

// The width for a height and one of seven aspect ratios (D.2, table D.3).
std::uint32_t WidthOf(std::uint32_t height, std::uint32_t ratio) noexcept {
  constexpr struct {
    std::uint32_t width, height;
  } kRatios[] = {{0, 1}, {1, 1}, {12, 10}, {4, 3}, {3, 2}, {16, 9}, {5, 4}, {2, 1}};
  return static_cast<std::uint32_t>(std::uint64_t{height} * kRatios[ratio].width / kRatios[ratio].height);
}

struct Size {
  std::uint32_t width, height;
};

// A side of the image, in units of eight pixels or in pixels.
std::uint32_t TakeSide(BitReader* in, bool small) noexcept {
  constexpr NumberForm kSide[] = {{1, 9}, {1, 13}, {1, 18}, {1, 30}};
  return small ? 8 * (TakeBits(in, 5) + 1) : TakeNumber(in, kSide);
}

Size TakeSize(BitReader* in) noexcept {
  const bool small = TakeFlag(in);
  const std::uint32_t height = TakeSide(in, small);
  const std::uint32_t ratio = TakeBits(in, 3);
  return {ratio == 0 ? TakeSide(in, small) : WidthOf(height, ratio), height};
}

void SkipPreview(BitReader* in) noexcept {
  constexpr NumberForm kUnits[] = {{16, 0}, {32, 0}, {1, 5}, {33, 9}};
  constexpr NumberForm kPixels[] = {{1, 6}, {65, 8}, {321, 10}, {1345, 12}};
  const bool inUnits = TakeFlag(in);
  (void)TakeNumber(in, inUnits ? kUnits : kPixels);
  if (TakeBits(in, 3) == 0) (void)TakeNumber(in, inUnits ? kUnits : kPixels);
}

void SkipAnimation(BitReader* in) noexcept {
  constexpr NumberForm kTicks[] = {{100, 0}, {1000, 0}, {1, 10}, {1, 30}};
  constexpr NumberForm kSeconds[] = {{1, 0}, {1001, 0}, {1, 8}, {1, 10}};
  constexpr NumberForm kLoops[] = {{0, 0}, {0, 3}, {0, 16}, {0, 32}};
  (void)TakeNumber(in, kTicks);
  (void)TakeNumber(in, kSeconds);
  (void)TakeNumber(in, kLoops);
  (void)TakeFlag(in);  // Time codes.
}

// A sample's depth in bits, integer or floating-point.
std::uint32_t TakeDepth(BitReader* in) noexcept {
  constexpr NumberForm kIntegers[] = {{8, 0}, {10, 0}, {12, 0}, {1, 6}};
  constexpr NumberForm kFloats[] = {{32, 0}, {16, 0}, {24, 0}, {1, 6}};
  if (!TakeFlag(in)) return TakeNumber(in, kIntegers);
  const std::uint32_t depth = TakeNumber(in, kFloats);
  (void)TakeBits(in, 4);  // The exponent's bits.
  return depth;
}

void SkipExtraChannel(BitReader* in) noexcept {
  constexpr std::uint32_t kAlpha = 0, kSpotColour = 2, kFilterArray = 5;
  constexpr NumberForm kShifts[] = {{0, 0}, {3, 0}, {4, 0}, {1, 3}};
  constexpr NumberForm kNameLengths[] = {{0, 0}, {0, 4}, {16, 5}, {48, 10}};
  constexpr NumberForm kFilterChannels[] = {{1, 0}, {0, 2}, {3, 4}, {19, 8}};
  if (TakeFlag(in)) return;  // An 8-bit alpha channel.
  const std::uint32_t type = TakeNumber(in, kEnumeration);
  (void)TakeDepth(in);
  (void)TakeNumber(in, kShifts);
  for (std::uint32_t left = TakeNumber(in, kNameLengths); left > 0 && !in->hasEnded; --left) (void)TakeBits(in, 8);
  if (type == kAlpha) (void)TakeFlag(in);  // Premultiplied.
  for (int i = 0; type == kSpotColour && i < 4; ++i) (void)TakeBits(in, 16);
  if (type == kFilterArray) (void)TakeNumber(in, kFilterChannels);
}

struct Samples {
  std::uint32_t channels, depth;
};

// Reads the image's metadata, which follows the size header (D.3).
Samples TakeSamples(BitReader* in) noexcept {
  constexpr std::uint32_t kGray = 1;
  constexpr NumberForm kExtraChannels[] = {{0, 0}, {1, 0}, {2, 4}, {1, 12}};
  if (TakeFlag(in)) return {3, 8};  // All fields have their default values.
  if (TakeFlag(in)) {
    (void)TakeBits(in, 3);                 // Orientation.
    if (TakeFlag(in)) (void)TakeSize(in);  // The intrinsic size.
    if (TakeFlag(in)) SkipPreview(in);
    if (TakeFlag(in)) SkipAnimation(in);
  }
  const std::uint32_t depth = TakeDepth(in);
  (void)TakeFlag(in);  // 16-bit buffers are sufficient.
  const std::uint32_t extra = TakeNumber(in, kExtraChannels);
  for (std::uint32_t i = 0; i < extra && !in->hasEnded; ++i) SkipExtraChannel(in);
  (void)TakeFlag(in);  // XYB.
  const bool isUsual = TakeFlag(in);
  if (!isUsual) (void)TakeFlag(in);  // ICC profile.
  const bool isGray = !isUsual && TakeNumber(in, kEnumeration) == kGray;
  return {(isGray ? 1 : 3) + extra, depth};
}

// Reads the headers of the codestream that begins at `start`.
void ReadHeaders(LxContainer* container, std::uint64_t start, std::uint64_t end) noexcept {
  const std::uint64_t length = end - start < kHeadersEnd ? end - start : kHeadersEnd;
  const std::uint8_t* bytes = LxMapFileRange(container->pool->blocks, start, length);
  if (bytes == nullptr || length < 2 || bytes[0] != 0xFF || bytes[1] != 0x0A) return;
  LxMetadataPool* pool = container->pool;
  BitReader in = {bytes, static_cast<std::uint32_t>(8 * length), 16, false};
  const Size size = TakeSize(&in);
  if (in.hasEnded) return;
  LxSetAttribute(&pool->height, size.height);
  LxSetAttribute(&pool->width, size.width);
  const Samples samples = TakeSamples(&in);
  if (in.hasEnded) return;
  LxSetAttribute(&pool->samples, samples.channels);
  LxSetAttribute(&pool->bits, samples.depth);
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

// A compressed box: the type of the original box, then its compressed payload.
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
  constexpr std::uint64_t kPartIndex = 4;  // An index precedes each part of the codestream.
  bool hasHeaders = false;
  LxBoxWalk walk = LxWalkFile(container, window);
  for (LxBox box; LxNextBox(&walk, &box);) {
    switch (box.type) {
      case LxBoxType("jxlc"):
      case LxBoxType("jxlp"): {
        const std::uint64_t start = box.payload + (box.type == LxBoxType("jxlp") ? kPartIndex : 0);
        if (!hasHeaders && start < box.end) ReadHeaders(container, start, box.end);
        hasHeaders = true;
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
    ReadHeaders(&container, 0, static_cast<std::uint64_t>(fileSize));
  } else {
    LxFileWindow window;
    LxInitFileWindow(&window, stream, fileSize);
    ReadBoxes(&container, &window);
  }
  return LxFinishContainer(&container, "jxlh", "JXL", "jxl");
}
