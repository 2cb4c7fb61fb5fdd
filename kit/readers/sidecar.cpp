// Side-car files: files that consist of an XMP packet only (XMP specification part 3, 4.1).
#include "kit/readers/container.h"
#include "kit/readers/file_readers.h"

LxResult LxReadSidecarFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  LxContainer container;
  if (const LxResult result = LxOpenContainer(&container, stream, fileSize, pool); result != kLxOk) return result;
  const std::uint8_t* bytes = LxMapRange(pool->blocks, 0, fileSize);
  LxOfferBlock(&container, kLxPacketBlock, {"", "", bytes, fileSize, nullptr, 0});
  return LxFinishContainer(&container, "xmph", "XMP", nullptr);
}
