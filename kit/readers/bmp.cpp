// BMP files: the image attributes of the Windows and OS/2 1.x information headers.
#include "kit/base/byte_order.h"
#include "kit/readers/file_readers.h"

namespace {

std::int32_t Signed(std::uint32_t value) noexcept {
  return static_cast<std::int32_t>(value);
}

// A BMP file with an OS/2 1.x header.
void SetOldBmpAttributes(const std::uint8_t* file, LxMetadataPool* pool) noexcept {
  pool->width = LxGet16(file + 18, kLxLittleEndian);
  pool->height = LxGet16(file + 20, kLxLittleEndian);
  const std::int32_t bitCount = LxGet16(file + 24, kLxLittleEndian);
  if (bitCount == 1 || bitCount == 4 || bitCount == 8) {
    pool->samples = 1;
    pool->bits = bitCount;
  } else if (bitCount == 24) {
    pool->samples = 3;
    pool->bits = 8;
  }
  pool->colourModel = kLxColourRgb;
  pool->compression = kLxCompressionNone;
}

void SetBmpAttributes(const std::uint8_t* file, LxMetadataPool* pool) noexcept {
  pool->width = Signed(LxGet32(file + 18, kLxLittleEndian));
  // The height is negative if the first row is at the top; INT32_MIN has no positive counterpart and stays.
  const std::uint32_t height = LxGet32(file + 22, kLxLittleEndian);
  pool->height = Signed(height > 0x80000000u ? 0u - height : height);
  const std::int32_t bitCount = LxGet16(file + 28, kLxLittleEndian);
  switch (bitCount) {
    case 1:
    case 4:
    case 8:
      pool->samples = 1;
      pool->bits = bitCount;
      break;
    case 16:
      pool->samples = 3;
      pool->bits = 5;
      break;
    case 0:
    case 24:
      pool->samples = 3;
      pool->bits = 8;
      break;
    case 32:
      pool->samples = 4;
      pool->bits = 8;
      break;
    default:
      break;
  }
  const std::uint32_t method = LxGet32(file + 30, kLxLittleEndian);
  if (method > 3) return;
  pool->colourModel = kLxColourRgb;
  pool->compression = method == 1 || method == 2 ? kLxCompressionPack : kLxCompressionNone;
}

}  // namespace

LxResult LxReadBmpFile(LxStream* stream, std::int32_t, LxMetadataPool* pool) noexcept {
  std::uint8_t file[64];
  if (stream->methods->read(file, 1, sizeof(file), stream) < static_cast<std::int32_t>(sizeof(file)))
    return kLxBadReadFormat;
  constexpr std::uint32_t kOldHeaderSize = 12;
  if (LxGet32(file + 14, kLxLittleEndian) == kOldHeaderSize) {
    SetOldBmpAttributes(file, pool);
  } else {
    SetBmpAttributes(file, pool);
  }
  return kLxOk;
}
