// Reads an open stream or a path into a pool: detects the kind, reads, post-processes.
#include "kit/readers/read_file.h"

#include <cstdio>

#include "kit/base/memory_stream.h"
#include "kit/readers/file_kind.h"
#include "kit/readers/file_readers.h"
#include "kit/readers/post_process.h"

namespace {

constexpr LxResult kPositionLost = 1;

LxResult ReadKind(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  switch (pool->fileKind) {
    case kLxFileJpeg:
      return LxReadJpegFile(stream, fileSize, pool);
    case kLxFileTiff:
      return LxReadTiffFile(stream, fileSize, pool);
    case kLxFilePsd:
      return LxReadPsdFile(stream, fileSize, pool);
    case kLxFilePng:
      return LxReadPngFile(stream, fileSize, pool);
    case kLxFileBmp:
      return LxReadBmpFile(stream, fileSize, pool);
    case kLxFileGif:
      return LxReadGifFile(stream, fileSize, pool);
    case kLxFileWebp:
      return LxReadWebpFile(stream, fileSize, pool);
    case kLxFileXmp:
      return LxReadSidecarFile(stream, fileSize, pool);
    case kLxFileHeif:
      return LxReadHeifFile(stream, fileSize, pool);
    case kLxFileJxl:
      return LxReadJxlFile(stream, fileSize, pool);
    case kLxFileJp2:
      return LxReadJp2File(stream, fileSize, pool);
    default:
      return kLxOk;  // Files of this kind are not read.
  }
}

}  // namespace

LxResult LxParseImageFile(LxStream* stream, LxMetadataPool* pool) noexcept {
  const std::int32_t position = stream->methods->tell(stream);
  if (position == -1) {
    LxFreeMetadataPool(pool);
    return kPositionLost;
  }
  const std::int32_t fileSize = LxStreamLength(stream);
  pool->fileKind = LxDetectStreamKind(stream);
  LxResult status = ReadKind(stream, fileSize, pool);
  LxPostProcessPool(pool);
  if (!LxSeekTo(stream, position)) status = kPositionLost;
  if (status != kLxOk) LxFreeMetadataPool(pool);
  return status;
}

LxResult LxParseImageBytes(const std::uint8_t* bytes, std::int32_t length, LxMetadataPool* pool) noexcept {
  const std::uint32_t refused = LxRefusedAllocations();
  LxMemoryStream stream;
  LxInitMemoryStream(&stream, bytes, length);
  const LxResult status = LxParseImageFile(&stream, pool);
  if (LxRefusedAllocations() != refused) pool->outcome = {kLxReadNoMemory, 0};
  return status;
}

LxResult LxReadFileIntoPool(LxMetadataPool* pool, const char* path) noexcept {
  const std::uint32_t refused = LxRefusedAllocations();
  LxStream* stream = nullptr;
  if (LxOpenFileStream(path, &stream, &pool->outcome) != kLxOk) return kLxNotFound;
  const LxResult status = LxParseImageFile(stream, pool);
  if ((stream->flags & kLxStreamError) != 0 || status == kPositionLost) {
    pool->outcome = {kLxReadBroken, stream->systemError};
  } else if (LxRefusedAllocations() != refused) {
    pool->outcome = {kLxReadNoMemory, 0};
  }
  LxCloseStream(stream);
  // The cache's blocks outlive the stream; nothing more is loaded.
  if (pool->blocks != nullptr) pool->blocks->stream = nullptr;
  return status;
}
