// TIFF files: IFDs become items; tags of the first IFD determine the image attributes (TIFF 6.0, section 8).
#include <iterator>

#include "kit/model/find_items.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/dispatch.h"
#include "kit/readers/file_readers.h"
#include "kit/readers/jpeg_quality.h"

namespace {

std::int32_t Signed(std::uint32_t value) noexcept {
  return static_cast<std::int32_t>(value);
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

// JPEG in TIFF (TIFF 6.0, section 22): the level of the first quantisation table, which has no header.
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

}  // namespace

LxResult LxReadTiffFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  const LxResult result = LxReadWholeFile(stream, fileSize, pool, kLxTiffSpace);
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
