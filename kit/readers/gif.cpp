// GIF files: the image attributes of the logical screen descriptor (GIF89a, 18).
#include "kit/base/byte_order.h"
#include "kit/readers/file_readers.h"

LxResult LxReadGifFile(LxStream* stream, std::int32_t, LxMetadataPool* pool) noexcept {
  std::uint8_t file[16];
  if (stream->methods->read(file, 1, sizeof(file), stream) < static_cast<std::int32_t>(sizeof(file)))
    return kLxBadReadFormat;
  pool->width = LxGet16(file + 6, kLxLittleEndian);
  pool->height = LxGet16(file + 8, kLxLittleEndian);
  pool->samples = 1;
  pool->bits = 8;
  pool->colourModel = kLxColourIndexedRgb;
  pool->compression = kLxCompressionLzw;
  return kLxOk;
}
