// JPEG 2000 files: metadata is in the file's `uuid` and `xml ` boxes (ISO/IEC 15444-1, I.7); the size is in the image
// header box or, in a bare codestream, in its SIZ segment (I.5.3.1; A.5.1).
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/readers/boxes.h"
#include "kit/readers/file_readers.h"

namespace {

constexpr std::int32_t kUuidLength = 16;
constexpr std::int32_t kUuidRank = 0;
constexpr std::int32_t kXmlRank = 1;  // Counts if there is no `uuid` packet.

constexpr struct {
  const char* uuid;
  const char* text;
  LxContainerBlockKind kind;
} kUuids[] = {{"JpgTiffExif->JP2", "JpgTiffExif->JP2", kLxTiffBlock},
              {"\x05\x37\xCD\xAB\x9D\x0C\x44\x31\xA7\x2A\xFA\x56\x1F\x2A\x11\x3E",
               "0537CDAB-9D0C-4431-A72A-FA561F2A113E", kLxTiffBlock},
              {"\xBE\x7A\xCF\xCB\x97\xA9\x42\xE8\x9C\x71\x99\x94\x91\xE3\xAF\xAC",
               "BE7ACFCB-97A9-42E8-9C71-999491E3AFAC", kLxPacketBlock},
              {"\x33\xC7\xA4\xD2\xB8\x1D\x47\x23\xA0\xBA\xF1\xA3\xE0\x97\xAD\x38",
               "33C7A4D2-B81D-4723-A0BA-F1A3E097AD38", kLxDatasetBlock},
              {"\x09\xA1\x4E\x97\xC0\xB4\x42\xE0\xBE\xBF\x36\xDF\x6F\x0C\xE3\x6F",
               "09A14E97-C0B4-42E0-BEBF-36DF6F0CE36F", kLxDatasetBlock},
              {"\x2C\x4C\x01\x00\x85\x04\x40\xB9\xA0\x3E\x56\x21\x48\xD6\xDF\xEB",
               "2C4C0100-8504-40B9-A03E-562148D6DFEB", kLxResourceBlock}};

void ReadUuid(LxContainer* container, const LxBox& box) noexcept {
  const std::uint8_t* uuid = LxMapBox(*container, box, kUuidLength);
  if (uuid == nullptr) return;
  for (const auto& known : kUuids) {
    if (std::memcmp(uuid, known.uuid, kUuidLength) != 0) continue;
    const std::uint8_t* bytes =
        LxWantsBlock(*container, known.kind, kUuidRank) ? LxMapWholeBox(*container, box) : nullptr;
    if (bytes == nullptr) return;
    const auto length = static_cast<std::int32_t>(box.end - box.payload) - kUuidLength;
    LxOfferBlock(container, known.kind, {"uuid", known.text, bytes + kUuidLength, length, nullptr, kUuidRank});
    return;
  }
}

void ReadXml(LxContainer* container, const LxBox& box) noexcept {
  if (!LxWantsBlock(*container, kLxPacketBlock, kXmlRank)) return;
  const std::uint8_t* bytes = LxMapWholeBox(*container, box);
  const auto length = static_cast<std::int32_t>(box.end - box.payload);
  if (bytes == nullptr || !LxHoldsPacket(bytes, length)) return;
  LxOfferBlock(container, kLxPacketBlock, {"xml ", "", bytes, length, nullptr, kXmlRank});
}

// A component's depth is stored minus one, with the sign in the highest bit. 255: the depths of the components differ.
void SetDepth(LxMetadataPool* pool, std::uint8_t depth) noexcept {
  if (depth != 0xFF) pool->bits = (depth & 0x7F) + 1;
}

void ReadHeader(LxContainer* container, const LxBox& box) noexcept {
  LxMetadataPool* pool = container->pool;
  LxBoxWalk walk = LxWalkBox(container, nullptr, box, 0);
  for (LxBox child; LxNextBox(&walk, &child);) {
    if (child.type == LxBoxType("ihdr")) {
      const std::uint8_t* header = LxMapBox(*container, child, 11);
      if (header == nullptr) return;
      LxSetAttribute(&pool->height, LxGet32(header, kLxBigEndian));
      LxSetAttribute(&pool->width, LxGet32(header + 4, kLxBigEndian));
      pool->samples = LxGet16(header + 8, kLxBigEndian);
      SetDepth(pool, header[10]);
    } else if (child.type == LxBoxType("bpcc") && pool->bits == 0) {
      if (const std::uint8_t* depths = LxMapBox(*container, child, 1)) SetDepth(pool, depths[0]);
    }
  }
}

// Reads the codestream's first two markers, SOC and SIZ, with the sizes and the first component's depth.
void ReadCodestream(LxContainer* container, std::uint64_t start) noexcept {
  constexpr std::uint64_t kLength = 43;
  const std::uint8_t* bytes = LxMapFileRange(container->pool->blocks, start, kLength);
  if (bytes == nullptr || std::memcmp(bytes, "\xFF\x4F\xFF\x51", 4) != 0) return;
  const std::uint32_t right = LxGet32(bytes + 8, kLxBigEndian), bottom = LxGet32(bytes + 12, kLxBigEndian);
  const std::uint32_t left = LxGet32(bytes + 16, kLxBigEndian), top = LxGet32(bytes + 20, kLxBigEndian);
  if (left > right || top > bottom) return;
  LxMetadataPool* pool = container->pool;
  LxSetAttribute(&pool->width, right - left);
  LxSetAttribute(&pool->height, bottom - top);
  pool->samples = LxGet16(bytes + 40, kLxBigEndian);
  SetDepth(pool, bytes[42]);
}

void ReadBoxes(LxContainer* container, LxFileWindow* window) noexcept {
  bool hasHeader = false;
  LxBoxWalk walk = LxWalkFile(container, window);
  for (LxBox box; LxNextBox(&walk, &box);) {
    switch (box.type) {
      case LxBoxType("jp2h"):
        if (!hasHeader) ReadHeader(container, box);
        hasHeader = true;
        break;
      case LxBoxType("uuid"):
        ReadUuid(container, box);
        break;
      case LxBoxType("xml "):
        ReadXml(container, box);
        break;
      default:
        break;
    }
  }
}

}  // namespace

LxResult LxReadJp2File(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  LxContainer container;
  if (LxOpenContainer(&container, stream, fileSize, pool) != kLxOk) return kLxOutOfMemory;
  const std::uint8_t* start = LxMapFileRange(pool->blocks, 0, 2);
  if (start != nullptr && start[0] == 0xFF) {
    ReadCodestream(&container, 0);
  } else {
    LxFileWindow window;
    LxInitFileWindow(&window, stream, fileSize);
    ReadBoxes(&container, &window);
  }
  return LxFinishContainer(&container, "jp2h", "JP2", "jp2");
}
