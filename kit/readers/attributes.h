// One reader a file kind: what it sets of the image attributes, and for the kinds with metadata the block cache and
// the items. Each takes the stream, the file's size and the pool, and returns a status.
#ifndef LXBRIDGE_KIT_READERS_ATTRIBUTES_H_
#define LXBRIDGE_KIT_READERS_ATTRIBUTES_H_

#include <cstdint>

#include "kit/base/stream.h"
#include "kit/model/pool.h"

[[nodiscard]] LxResult LxReadJpegFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadTiffFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadPsdFile(LxStream* stream, std::int32_t fileSize,
                                     LxMetadataPool* pool) noexcept;  // psd.cpp
[[nodiscard]] LxResult LxReadPngFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadBmpFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadGifFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;

#endif  // LXBRIDGE_KIT_READERS_ATTRIBUTES_H_
