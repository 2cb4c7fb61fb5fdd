// Estimates the quality level of a JPEG from its luminance quantisation table. Encoders scale one table, so its first
// and last entries determine the level.
#include "kit/readers/jpeg_quality.h"

#include "kit/model/pool.h"

namespace {

constexpr std::int32_t kTableLength = 65;  // Precision and destination, 64 entries of 8 bits.

// Levels by the last entry or, if that is ambiguous, by the first.
// clang-format off
constexpr std::uint8_t kLevelByLast[64] = {
  12, 12, 12, 12, 12, 12, 12, 12, 11, 11, 11, 11, 10, 10, 10, 10,
  10, 10, 10, 10,  9,  9,  9,  9,  9,  9,  9,  9,  9,  9,  9,  8,
   8,  8,  8,  8,  8,  8,  8,  6,  6,  6,  6,  6,  6,  6,  6,  6,
   6,  6,  7,  7,  7,  7,  7,  7,  7,  7,  7,  5,  5,  5,  5,  5,
};
constexpr std::uint8_t kLevelByFirst[32] = {
  12, 11, 10, 10,  9,  9,  8,  8,  6,  6,  7,  7,  5,  5,  5,  5,
   4,  4,  3,  3,  2,  2,  2,  2,  2,  2,  2,  1,  1,  1,  1,  1,
};
// clang-format on

}  // namespace

std::int32_t LxJpegQualityOfTable(std::uint8_t first, std::uint8_t last) noexcept {
  if (last < 64 && last != 12) return kLevelByLast[last] + 1;
  return first >= 32 ? 1 : kLevelByFirst[first] + 1;
}

std::int32_t LxEstimateJpegQuality(const std::uint8_t* payload, std::int32_t length, std::int32_t mcuWidth,
                                   std::int32_t mcuHeight) noexcept {
  for (std::int32_t at = 0; at < length - 64; at += kTableLength) {
    const std::uint8_t* table = payload + at;
    if (table[0] >> 4 != 0) return kLxCompressionUnknown;  // 16-bit entries.
    if ((table[0] & 0x0F) != 0) continue;                  // Chrominance.
    const std::int32_t level = LxJpegQualityOfTable(table[1], table[64]);
    // Without chroma subsampling the same table is one level higher.
    return level == 7 && mcuWidth == 8 && mcuHeight == 8 ? 8 : level;
  }
  return kLxCompressionUnknown;
}
