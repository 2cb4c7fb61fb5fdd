// JPEG files: segments become items; the frame header and the first quantisation table determine the image attributes
// (ISO/IEC 10918-1, B.2.2 and B.2.4.1).
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/model/tables/tables.h"
#include "kit/readers/dispatch.h"
#include "kit/readers/file_readers.h"
#include "kit/readers/jpeg_quality.h"

namespace {

// ISO/IEC 10918-1, B.2.2, counted from the segment's length field.
constexpr std::int32_t kSofPrecision = 2;
constexpr std::int32_t kSofHeight = 3;
constexpr std::int32_t kSofWidth = 5;
constexpr std::int32_t kSofComponents = 7;
constexpr std::int32_t kSofHeader = 8;
constexpr std::int32_t kSofComponentLength = 3;

// The main image's segments are the children of its header, and the only items of namespace "jpeg".
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

}  // namespace

LxResult LxReadJpegFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  const LxResult result = LxReadWholeFile(stream, fileSize, pool, kLxJpegSpace);
  if (result != kLxOk) return result;
  const LxMetadataItem* frame = FindSegment(pool->root, "SOF0");
  if (frame == nullptr) frame = FindSegment(pool->root, "SOF1");
  if (frame == nullptr) frame = FindSegment(pool->root, "SOF2");
  if (frame == nullptr || frame->value == nullptr || frame->valueLength < kSofHeader) return kLxBadReadFormat;
  SetFrameAttributes(*frame, pool);
  const LxMetadataItem* tables = FindSegment(pool->root, "DQT");
  if (tables == nullptr || tables->value == nullptr) return kLxBadReadFormat;
  // A segment shorter than its length field has no table.
  pool->compression = tables->valueLength < 2 ? kLxCompressionUnknown
                                              : LxEstimateJpegQuality(tables->value + 2, tables->valueLength - 2,
                                                                      pool->mcuWidth, pool->mcuHeight);
  return kLxOk;
}
