// The quality level of a JPEG: over a DQT segment, and by one quantisation table as TIFF files hold it.
#ifndef LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_
#define LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_

#include <cstdint>

// LxCompression by the table's first and its 64th entry.
[[nodiscard]] std::int32_t LxJpegQualityOfTable(std::uint8_t first, std::uint8_t last) noexcept;

// The quality level of a JPEG by its luminance quantisation table (LxCompression; 0 when it cannot be told). `payload`
// is the DQT segment after its length field.
[[nodiscard]] std::int32_t LxEstimateJpegQuality(const std::uint8_t* payload, std::int32_t length,
                                                 std::int32_t mcuWidth, std::int32_t mcuHeight) noexcept;

#endif  // LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_
