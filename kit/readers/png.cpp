// PNG files: the image attributes of the IHDR chunk (PNG third edition, 11.2.1).
#include "kit/base/byte_order.h"
#include "kit/readers/file_readers.h"

LxResult LxReadPngFile(LxStream* stream, std::int32_t, LxMetadataPool* pool) noexcept {
  std::uint8_t file[640];
  if (stream->methods->read(file, 1, sizeof(file), stream) <= 32) return kLxBadReadFormat;
  // PNG third edition, 5.6: IHDR comes first. Its name as a number.
  constexpr std::uint32_t kIhdr = 0x49484452;
  if (LxGet32(file + 8, kLxBigEndian) < 13 || LxGet32(file + 12, kLxBigEndian) != kIhdr) return kLxBadReadFormat;
  pool->width = static_cast<std::int32_t>(LxGet32(file + 16, kLxBigEndian));
  pool->height = static_cast<std::int32_t>(LxGet32(file + 20, kLxBigEndian));
  pool->bits = file[24];
  constexpr struct {
    std::uint8_t type;
    std::int32_t samples;
    LxColourModel model;
  } kColourTypes[] = {{0, 1, kLxColourGray},
                      {2, 3, kLxColourRgb},
                      {3, 1, kLxColourIndexedRgb},
                      {4, 2, kLxColourGrayAlpha},
                      {6, 4, kLxColourRgbAlpha}};
  for (const auto& row : kColourTypes) {
    if (row.type != file[25]) continue;
    pool->samples = row.samples;
    pool->colourModel = row.model;
  }
  pool->compression = kLxCompressionFlate;
  return kLxOk;
}
