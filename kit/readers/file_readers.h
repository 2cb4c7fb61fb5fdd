// The file readers, one for each kind of file. Each sets the image attributes that its format has and, if the format
// carries metadata, the pool's block cache and items.
//
// REQUIRES, for all: the pool is empty; the stream is open for reading at the file's start; `fileSize` is the stream's
// length. Result: kLxOk; kLxOutOfMemory; kLxBadReadFormat if the header is not of this kind.
#ifndef LXBRIDGE_KIT_READERS_FILE_READERS_H_
#define LXBRIDGE_KIT_READERS_FILE_READERS_H_

#include <cstdint>

#include "kit/base/stream.h"
#include "kit/model/pool.h"

[[nodiscard]] LxResult LxReadJpegFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadTiffFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadPsdFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadPngFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadBmpFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadGifFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadWebpFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadSidecarFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadHeifFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadJxlFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;
[[nodiscard]] LxResult LxReadJp2File(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept;

#endif  // LXBRIDGE_KIT_READERS_FILE_READERS_H_
