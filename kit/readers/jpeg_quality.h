// The part of the JPEG quality estimate that TIFF files share: the level of one quantisation table. The estimate over a
// DQT segment is in attributes.h. Uses attributes.h.
#ifndef LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_
#define LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_

#include <cstdint>

#include "kit/readers/attributes.h"

// LxCompression by the table's first and its 64th entry.
[[nodiscard]] std::int32_t LxJpegQualityOfTable(std::uint8_t first, std::uint8_t last) noexcept;

#endif  // LXBRIDGE_KIT_READERS_JPEG_QUALITY_H_
