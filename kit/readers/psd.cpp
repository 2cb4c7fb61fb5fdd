// PSD files: the image attributes of the header, the image resource section, and whether there are layers.
#include <algorithm>
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/dispatch.h"
#include "kit/readers/file_readers.h"

namespace {

constexpr std::uint32_t kHeaderSize = 26;
constexpr std::uint32_t kLargestChannels = 24;
constexpr std::uint32_t kLargestSide = 30000;
constexpr std::uint32_t kLargestDepth = 16;
constexpr std::uint32_t kLargestMode = 9;
// A layer and mask section of up to this length has no layer.
constexpr std::uint32_t kEmptyLayerSection = 8;

bool IsWithin(std::uint32_t value, std::uint32_t smallest, std::uint32_t largest) noexcept {
  return smallest <= value && value <= largest;
}

// By colour mode: bitmap, grayscale, indexed, RGB, CMYK, two unused, multichannel, duotone, Lab.
constexpr LxColourModel kColourModels[kLargestMode + 1] = {
    kLxColourBitBlackZero, kLxColourGray,    kLxColourIndexedRgb, kLxColourRgb, kLxColourCmyk,
    kLxColourUnknown,      kLxColourUnknown, kLxColourMulti,      kLxColourDuo, kLxColourIccLab};

bool ReadHeader(LxBlockCache* cache, LxMetadataPool* pool) noexcept {
  const std::uint8_t* header = LxMapFileRange(cache, 0, kHeaderSize);
  if (header == nullptr || std::memcmp(header, "8BPS", 4) != 0 || LxGet16(header + 4, kLxBigEndian) != 1) return false;
  const std::uint32_t channels = LxGet16(header + 12, kLxBigEndian), height = LxGet32(header + 14, kLxBigEndian),
                      width = LxGet32(header + 18, kLxBigEndian), depth = LxGet16(header + 22, kLxBigEndian),
                      mode = LxGet16(header + 24, kLxBigEndian);
  if (!IsWithin(channels, 1, kLargestChannels) || !IsWithin(height, 1, kLargestSide) ||
      !IsWithin(width, 1, kLargestSide) || !IsWithin(depth, 1, kLargestDepth) || mode > kLargestMode) {
    return false;
  }
  pool->width = static_cast<std::int32_t>(width);
  pool->height = static_cast<std::int32_t>(height);
  pool->samples = static_cast<std::int32_t>(channels);
  pool->bits = static_cast<std::int32_t>(depth);
  pool->colourModel = kColourModels[mode];
  return true;
}

// Reads the 32-bit length of a section.
bool ReadLength(LxBlockCache* cache, std::uint64_t position, std::uint32_t* length) noexcept {
  const std::uint8_t* bytes = LxMapFileRange(cache, position, 4);
  if (bytes == nullptr) return false;
  *length = LxGet32(bytes, kLxBigEndian);
  return true;
}

}  // namespace

LxResult LxReadPsdFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  LxBlockCache* cache = LxNewBlockCache(stream, fileSize);
  if (cache == nullptr) return kLxOutOfMemory;
  pool->blocks = cache;
  if (!ReadHeader(cache, pool)) return kLxBadReadFormat;

  std::uint32_t colourLength = 0, resourceLength = 0, layerLength = 0;
  if (!ReadLength(cache, kHeaderSize, &colourLength)) return kLxBadReadFormat;
  const std::uint64_t resourceField = std::uint64_t{kHeaderSize} + 4 + colourLength;
  if (!ReadLength(cache, resourceField, &resourceLength)) return kLxBadReadFormat;
  const std::uint64_t resources = resourceField + 4;
  const std::uint64_t layerField = resources + resourceLength;

  LxParseContext context;
  LxInitParseContext(&context, fileSize);
  const auto start = static_cast<std::uint32_t>(resources);
  const auto end = static_cast<std::uint32_t>(std::min<std::uint64_t>(layerField, UINT32_MAX));
  LxMetadataItem* header = LxNewMetadataItem("psdh", "PSDHeader", 0, 0, kLxTypeUndefined, 0, nullptr);
  if (header == nullptr) return kLxOutOfMemory;
  pool->root = header;
  LxReadChildren(cache, {start, start, start, end, end}, &context, header, kLxImageResourceSpace);
  // The blocks are read first: if the file ends here, they determine the pool's attributes.
  if (!ReadLength(cache, layerField, &layerLength)) return kLxBadReadFormat;
  if (layerLength > kEmptyLayerSection) pool->hasLayers = 1;
  return kLxOk;
}
