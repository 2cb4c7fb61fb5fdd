// WebP files: RIFF files of the form WEBP (RFC 9649, 2). Blocks are in chunks of their own, usually after the image.
// Neither the size in the RIFF header nor the flags of VP8X are trusted: programs that append a chunk often do not
// update them.
#include "kit/base/byte_order.h"
#include "kit/readers/chunk_walk.h"
#include "kit/readers/file_readers.h"

namespace {

constexpr std::uint64_t kFirstChunk = 12;
constexpr std::uint32_t kLongestImageHeader = 10;

void SetSize(std::uint32_t width, std::uint32_t height, bool hasAlpha, LxMetadataPool* pool) noexcept {
  pool->width = static_cast<std::int32_t>(width);
  pool->height = static_cast<std::int32_t>(height);
  pool->samples = hasAlpha ? 4 : 3;
  pool->bits = 8;
}

std::uint32_t Get24(const std::uint8_t* at) noexcept {
  return LxGet16(at, kLxLittleEndian) | std::uint32_t{at[2]} << 16;
}

// Reads the image attributes from the start of a chunk. The first chunk that has them counts, since a canvas (VP8X)
// precedes its images.
void ReadImageHeader(LxChunkWalk* walk, const LxChunk& chunk, LxMetadataPool* pool) noexcept {
  if (pool->width != 0 || chunk.length < 5) return;
  const std::uint32_t length = chunk.length < kLongestImageHeader ? chunk.length : kLongestImageHeader;
  const std::uint8_t* at = LxPeekRange(walk->window, chunk.data, length);
  if (at == nullptr) return;
  constexpr std::uint32_t kSide = 0x3FFF;
  if (chunk.type == LxChunkType("VP8X") && length >= 10) {  // RFC 9649, 2.7
    SetSize(Get24(at + 4) + 1, Get24(at + 7) + 1, (at[0] & 0x10) != 0, pool);
  } else if (chunk.type == LxChunkType("VP8L") && at[0] == 0x2F) {  // RFC 9649, 3.4
    const std::uint32_t bits = LxGet32(at + 1, kLxLittleEndian);
    SetSize((bits & kSide) + 1, (bits >> 14 & kSide) + 1, (bits >> 28 & 1) != 0, pool);
  } else if (chunk.type == LxChunkType("VP8 ") && length >= 10 && (at[0] & 1) == 0 && at[3] == 0x9D && at[4] == 0x01 &&
             at[5] == 0x2A) {  // RFC 6386, 9.1: a key frame.
    SetSize(LxGet16(at + 6, kLxLittleEndian) & kSide, LxGet16(at + 8, kLxLittleEndian) & kSide, false, pool);
  }
}

}  // namespace

LxResult LxReadWebpFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  LxContainer container;
  if (const LxResult result = LxOpenContainer(&container, stream, fileSize, pool); result != kLxOk) return result;
  LxFileWindow window;
  LxInitFileWindow(&window, stream, fileSize);
  LxChunkWalk walk = {&container, &window, kLxRiffChunks, kFirstChunk};
  for (LxChunk chunk; LxNextChunk(&walk, &chunk);) {
    switch (chunk.type) {
      case LxChunkType("EXIF"):
        LxOfferChunk(&walk, chunk, kLxTiffBlock, "EXIF");
        break;
      case LxChunkType("XMP "):
        LxOfferChunk(&walk, chunk, kLxPacketBlock, "XMP ");
        break;
      case LxChunkType("XMP\0"):
        LxOfferChunk(&walk, chunk, kLxPacketBlock, "XMP");
        break;
      default:
        ReadImageHeader(&walk, chunk, pool);
        break;
    }
  }
  return LxFinishContainer(&container, "webph", "WEBP", "webp");
}
