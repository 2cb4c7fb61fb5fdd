// Estimates the quality level of a JPEG from a DQT segment, or from a quantisation table as TIFF files store it.
#ifndef LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_
#define LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_

#include <cstdint>

// The LxCompression for the first and the 64th entry of a table.
[[nodiscard]] std::int32_t LxJpegQualityOfTable(std::uint8_t first, std::uint8_t last) noexcept;

// The LxCompression for the luminance table of a DQT segment; 0 if it cannot be determined. `payload` is the segment
// after its length field.
[[nodiscard]] std::int32_t LxEstimateJpegQuality(const std::uint8_t* payload, std::int32_t length,
                                                 std::int32_t mcuWidth, std::int32_t mcuHeight) noexcept;

#endif  // LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_
