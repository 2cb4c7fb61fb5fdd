// The file readers of JPEG, TIFF, PNG, BMP and GIF files: which bytes become items, and the image attributes that each
// kind gives.
#include "kit/readers/attributes.h"

#include <cstring>
#include <iterator>

#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "kit/model/find_items.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/dispatch.h"
#include "kit/readers/jpeg_quality.h"

namespace {

// Reads the whole file with the descriptor; the items become the pool's root list.
LxResult ReadWholeFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool,
                       const LxNamespaceDescriptor& descriptor) noexcept {
  pool->blocks = LxNewBlockCache(stream, fileSize);
  if (pool->blocks == nullptr) {
    LxNoteError(kLxOutOfMemory);
    return kLxOutOfMemory;
  }
  const auto size = static_cast<std::uint32_t>(fileSize);
  LxParseContext context;
  LxInitParseContext(&context, fileSize);
  pool->root = LxParseWithDescriptor(pool->blocks, {0, 0, 0, size, size}, &context, descriptor);
  return kLxOk;
}

std::int32_t ReadStart(LxStream* stream, std::uint8_t* buffer, std::int32_t size) noexcept {
  return stream->methods->read(buffer, 1, size, stream);
}

std::int32_t Signed(std::uint32_t value) noexcept {
  return static_cast<std::int32_t>(value);
}

// ISO/IEC 10918-1, B.2.2, from the segment's length field on.
constexpr std::int32_t kSofPrecision = 2;
constexpr std::int32_t kSofHeight = 3;
constexpr std::int32_t kSofWidth = 5;
constexpr std::int32_t kSofComponents = 7;
constexpr std::int32_t kSofHeader = 8;
constexpr std::int32_t kSofComponentLength = 3;

// The main image's segments are the items below its header, and no others are of namespace "jpeg".
const LxMetadataItem* FindSegment(const LxMetadataItem* header, const char* name) noexcept {
  for (const LxMetadataItem* item = header != nullptr ? header->firstChild : nullptr; item != nullptr;
       item = item->next) {
    if (std::strcmp(item->name, name) == 0 && (item->flags & kLxDeleted) == 0) return item;
  }
  return nullptr;
}

std::int32_t McuSize(std::int32_t before, std::int32_t factor) noexcept {
  if (factor == 4) return 32;
  return factor == 2 && before < 16 ? 16 : before;
}

void SetFrameAttributes(const LxMetadataItem& frame, LxMetadataPool* pool) noexcept {
  const std::uint8_t* sof = frame.value;
  pool->width = LxGet16(sof + kSofWidth, kLxBigEndian);
  pool->height = LxGet16(sof + kSofHeight, kLxBigEndian);
  pool->bits = sof[kSofPrecision];
  pool->samples = sof[kSofComponents];
  if (pool->samples == 1) pool->colourModel = kLxColourGray;
  if (pool->samples == 3) pool->colourModel = kLxColourRgb;
  if (pool->samples == 4) pool->colourModel = kLxColourCmyk;
  pool->mcuWidth = pool->mcuHeight = 8;
  for (std::int32_t i = 0; i < pool->samples; ++i) {
    const std::int32_t component = kSofHeader + kSofComponentLength * i;
    if (component + kSofComponentLength > frame.valueLength) break;
    pool->mcuWidth = McuSize(pool->mcuWidth, sof[component + 1] >> 4);
    pool->mcuHeight = McuSize(pool->mcuHeight, sof[component + 1] & 0x0F);
  }
  pool->hasLayers = 0;
  pool->orientation = kLxRot0;
}

// TIFF 6.0, section 8 and supplements.
std::int32_t ColourModelOfTiff(std::uint32_t photometric) noexcept {
  switch (photometric) {
    case 0:
      return kLxColourBitWhiteZero;
    case 1:
      return kLxColourBitBlackZero;
    case 2:
      return kLxColourRgb;
    case 3:
      return kLxColourIndexedRgb;
    case 4:
      return kLxColourMask;
    case 5:
      return kLxColourCmyk;
    case 6:
      return kLxColourYCbCr;
    case 8:
      return kLxColourCieLab;
    case 9:
      return kLxColourIccLab;
    case 32803:
      return kLxColourCfa;
    default:
      return kLxColourUnknown;
  }
}

// JPEG in TIFF (TIFF 6.0, section 22): the level of the first quantisation table, which stands without a header.
std::int32_t QualityOfTiff(LxBlockCache* cache, const LxMetadataItem* tables) noexcept {
  if (tables == nullptr || tables->valueLength < 4) return kLxCompressionJpeg0;
  const std::uint8_t* table = LxMapFileRange(cache, LxGetFirstValue(tables), 64);
  return table != nullptr ? LxJpegQualityOfTable(table[0], table[63]) : kLxCompressionJpeg0;
}

std::int32_t CompressionOfTiff(LxBlockCache* cache, const LxMetadataItem* compression,
                               const LxMetadataItem* tables) noexcept {
  if (compression == nullptr) return kLxCompressionNone;
  switch (LxGetFirstValue(compression)) {
    case 1:
      return kLxCompressionNone;
    case 2:
      return kLxCompressionCcitt1d;
    case 3:
      return kLxCompressionCcitt4;
    case 4:
      return kLxCompressionCcitt6;
    case 5:
      return kLxCompressionLzw;
    case 6:
      return QualityOfTiff(cache, tables);
    case 32773:
      return kLxCompressionPack;
    default:
      return kLxCompressionUnknown;
  }
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
  // Rows from the top have a negative height; the lowest number has no positive one and stays.
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

LxResult LxReadJpegFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  const LxResult result = ReadWholeFile(stream, fileSize, pool, kLxJpegSpace);
  if (result != kLxOk) return result;
  const LxMetadataItem* frame = FindSegment(pool->root, "SOF0");
  if (frame == nullptr) frame = FindSegment(pool->root, "SOF1");
  if (frame == nullptr) frame = FindSegment(pool->root, "SOF2");
  if (frame == nullptr || frame->value == nullptr || frame->valueLength < kSofHeader) return kLxBadReadFormat;
  SetFrameAttributes(*frame, pool);
  const LxMetadataItem* tables = FindSegment(pool->root, "DQT");
  if (tables == nullptr || tables->value == nullptr || tables->valueLength < 2) return kLxBadReadFormat;
  pool->compression =
      LxEstimateJpegQuality(tables->value + 2, tables->valueLength - 2, pool->mcuWidth, pool->mcuHeight);
  return kLxOk;
}

LxResult LxReadTiffFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  const LxResult result = ReadWholeFile(stream, fileSize, pool, kLxTiffSpace);
  if (result != kLxOk) return result;
  enum { kWidth, kLength, kSamples, kBits, kPhotometric, kCompression, kJpegTables, kCount };
  LxWantedItem wanted[kCount] = {{"tiff", "ImageWidth", nullptr},
                                 {"tiff", "ImageLength", nullptr},
                                 {"tiff", "SamplesPerPixel", nullptr},
                                 {"tiff", "BitsPerSample", nullptr},
                                 {"tiff", "PhotometricInterpretation", nullptr},
                                 {"tiff", "Compression", nullptr},
                                 {"tiff", "JPEGQTables", nullptr}};
  LxFindItems(pool->root, wanted, std::size(wanted));
  const auto first = [&wanted](int which, std::int32_t absent) noexcept {
    return wanted[which].found != nullptr ? Signed(LxGetFirstValue(wanted[which].found)) : absent;
  };
  pool->width = first(kWidth, pool->width);
  pool->height = first(kLength, pool->height);
  pool->samples = first(kSamples, 1);
  pool->bits = first(kBits, 1);
  if (wanted[kPhotometric].found != nullptr) {
    pool->colourModel = ColourModelOfTiff(LxGetFirstValue(wanted[kPhotometric].found));
  }
  pool->compression = CompressionOfTiff(pool->blocks, wanted[kCompression].found, wanted[kJpegTables].found);
  return kLxOk;
}

LxResult LxReadPngFile(LxStream* stream, std::int32_t, LxMetadataPool* pool) noexcept {
  std::uint8_t file[640];
  if (ReadStart(stream, file, sizeof(file)) <= 32) return kLxBadReadFormat;
  // ISO/IEC 15948, 11.2.2: IHDR comes first. Its name as a number.
  constexpr std::uint32_t kIhdr = 0x49484452;
  if (LxGet32(file + 8, kLxBigEndian) < 13 || LxGet32(file + 12, kLxBigEndian) != kIhdr) return kLxBadReadFormat;
  pool->width = Signed(LxGet32(file + 16, kLxBigEndian));
  pool->height = Signed(LxGet32(file + 20, kLxBigEndian));
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

LxResult LxReadBmpFile(LxStream* stream, std::int32_t, LxMetadataPool* pool) noexcept {
  std::uint8_t file[64];
  if (ReadStart(stream, file, sizeof(file)) < static_cast<std::int32_t>(sizeof(file))) return kLxBadReadFormat;
  constexpr std::uint32_t kOldHeaderSize = 12;
  if (LxGet32(file + 14, kLxLittleEndian) == kOldHeaderSize) {
    SetOldBmpAttributes(file, pool);
  } else {
    SetBmpAttributes(file, pool);
  }
  return kLxOk;
}

LxResult LxReadGifFile(LxStream* stream, std::int32_t, LxMetadataPool* pool) noexcept {
  std::uint8_t file[16];
  if (ReadStart(stream, file, sizeof(file)) < static_cast<std::int32_t>(sizeof(file))) return kLxBadReadFormat;
  pool->width = LxGet16(file + 6, kLxLittleEndian);
  pool->height = LxGet16(file + 8, kLxLittleEndian);
  pool->samples = 1;
  pool->bits = 8;
  pool->colourModel = kLxColourIndexedRgb;
  pool->compression = kLxCompressionLzw;
  return kLxOk;
}
