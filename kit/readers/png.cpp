// PNG files (PNG third edition): the image attributes of the IHDR chunk, and the blocks in eXIf chunks and in texts. A
// text holds a packet as it is, and other blocks as "raw profiles" in hexadecimal digits, a convention of image
// converters.
#include <algorithm>
#include <cstring>

#include "kit/base/byte_cursor.h"
#include "kit/base/byte_order.h"
#include "kit/model/tables/tables.h"
#include "kit/readers/chunk_walk.h"
#include "kit/readers/file_readers.h"
#include "kit/readers/inflate.h"

namespace {

constexpr std::uint32_t kHeaderLength = 33;  // Signature and IHDR with its checksum.
constexpr std::uint64_t kFirstChunk = 8;
constexpr std::uint8_t kZlib = 0;  // The only compression method defined.

enum class Profile : std::uint8_t { kPacket, kExif, kApp1, kRawPacket, kIptc, kResources };

// The keywords of the texts that are read (PNG third edition, 11.3.3; XMP specification part 3, 1.1.5),
// zero-terminated.
struct Keyword {
  const char* text;
  Profile profile;
};
constexpr Keyword kKeywords[] = {
    {"XML:com.adobe.xmp", Profile::kPacket},   {"Raw profile type exif", Profile::kExif},
    {"Raw profile type APP1", Profile::kApp1}, {"Raw profile type xmp", Profile::kRawPacket},
    {"Raw profile type iptc", Profile::kIptc}, {"Raw profile type 8bim", Profile::kResources},
};
constexpr std::uint32_t kLongestKeyword = 22;  // With the zero byte.

// A dedicated chunk takes precedence over raw profiles, and an international text over others, regardless of order.
constexpr std::int32_t kOwnRank = 0;
constexpr std::int32_t kOtherRank = 1;

// The text of a chunk, mapped or inflated. `detached` holds the bytes, or is null.
struct Text {
  const std::uint8_t* bytes;
  std::int32_t length;
  LxBlock* detached;
};

const Keyword* FindKeyword(LxChunkWalk* walk, const LxChunk& chunk) noexcept {
  const std::uint32_t length = std::min(chunk.length, kLongestKeyword);
  const std::uint8_t* bytes = LxPeekRange(walk->window, chunk.data, length);
  if (bytes == nullptr) return nullptr;
  for (const Keyword& keyword : kKeywords) {
    const std::size_t size = std::strlen(keyword.text) + 1;
    if (size <= length && std::memcmp(bytes, keyword.text, size) == 0) return &keyword;
  }
  return nullptr;
}

// Whether a text with this keyword may hold a block that counts, and has to be mapped and inflated.
bool IsWanted(const LxContainer& container, Profile profile, std::int32_t rank) noexcept {
  switch (profile) {
    case Profile::kPacket:
    case Profile::kRawPacket:
      return LxWantsBlock(container, kLxPacketBlock, rank);
    case Profile::kExif:
      return LxWantsBlock(container, kLxTiffBlock, rank);
    case Profile::kApp1:
      return LxWantsBlock(container, kLxTiffBlock, rank) || LxWantsBlock(container, kLxPacketBlock, rank);
    case Profile::kIptc:
      return LxWantsBlock(container, kLxResourceBlock, rank) || LxWantsBlock(container, kLxDatasetBlock, rank);
    case Profile::kResources:
      return LxWantsBlock(container, kLxResourceBlock, rank);
  }
  return false;
}

// Skips a text and its zero byte.
bool SkipTerminated(LxByteCursor* in) noexcept {
  const void* zero = in->left > 0 ? std::memchr(in->at, 0, in->left) : nullptr;
  return zero != nullptr && LxSkip(in, static_cast<std::size_t>(static_cast<const std::uint8_t*>(zero) - in->at) + 1);
}

// Reads the part of a chunk after the keyword (PNG third edition, 11.3.3.2 to 11.3.3.4). False: it is incomplete.
bool ReadText(LxChunkWalk* walk, const LxChunk& chunk, Text* text) noexcept {
  LxBlockCache* cache = walk->container->pool->blocks;
  const std::uint8_t* bytes = LxMapFileRange(cache, chunk.data, chunk.length);
  if (bytes == nullptr) return false;
  LxByteCursor in = {bytes, chunk.length};
  if (!SkipTerminated(&in)) return false;
  bool isCompressed = chunk.type == LxChunkType("zTXt");
  std::uint8_t method = kZlib;
  if (chunk.type == LxChunkType("iTXt")) {
    std::uint8_t flag = 0;
    if (!LxTake8(&in, &flag) || flag > 1 || !LxTake8(&in, &method)) return false;
    isCompressed = flag == 1;
    if (!SkipTerminated(&in)) return false;  // Language tag.
    if (!SkipTerminated(&in)) return false;  // Translated keyword.
  } else if (isCompressed && !LxTake8(&in, &method)) {
    return false;
  }
  *text = {in.at, static_cast<std::int32_t>(in.left), nullptr};
  if (!isCompressed) return true;
  if (method != kZlib) return false;
  text->detached = LxInflateBlock(cache, &walk->container->context, kLxZlibStream, text->bytes, text->length);
  if (text->detached == nullptr) return false;
  text->bytes = text->detached->data;
  text->length = text->detached->length;
  return true;
}

int HexDigit(std::uint8_t character) noexcept {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return character >= 'a' && character <= 'f' ? character - 'a' + 10 : -1;
}

bool IsSpace(std::uint8_t character) noexcept {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

// Takes the lines before the digits of a raw profile: an empty line, the profile's name, its length. False: not a raw
// profile.
bool TakeProfileHeader(LxByteCursor* in, std::int64_t* length) noexcept {
  const std::uint8_t* feed = LxTakeBytes(in, 1);
  if (feed == nullptr || *feed != '\n' || in->left == 0) return false;
  const void* end = std::memchr(in->at, '\n', in->left);
  if (end == nullptr) return false;
  (void)LxSkip(in, static_cast<std::size_t>(static_cast<const std::uint8_t*>(end) - in->at) + 1);
  while (in->left > 0 && IsSpace(*in->at)) (void)LxSkip(in, 1);
  bool hasDigits = false;
  *length = 0;
  for (; in->left > 0 && *in->at >= '0' && *in->at <= '9'; (void)LxSkip(in, 1)) {
    *length = std::min<std::int64_t>(*length * 10 + (*in->at - '0'), INT32_MAX);
    hasDigits = true;
  }
  while (in->left > 0 && *in->at != '\n' && IsSpace(*in->at)) (void)LxSkip(in, 1);
  feed = LxTakeBytes(in, 1);
  return hasDigits && feed != nullptr && *feed == '\n';
}

// Replaces the text by a block of the bytes that its digits encode. They end at the stated length, at a character that
// is not a digit or at the text's end: some writers state too large a length. False: not a raw profile.
bool DecodeProfile(LxBlockCache* cache, Text* text) noexcept {
  LxByteCursor in = {text->bytes, static_cast<std::size_t>(text->length)};
  std::int64_t length = 0;
  if (!TakeProfileHeader(&in, &length)) return false;
  length = std::min(length, static_cast<std::int64_t>(in.left / 2));
  if (length == 0) return false;
  // Two digits become one byte, so the bytes of an inflated text can overwrite digits already read.
  if (text->detached == nullptr) text->detached = LxNewDetachedBlock(cache, static_cast<std::int32_t>(length));
  if (text->detached == nullptr) return false;
  std::uint8_t* bytes = LxDetachedBytes(text->detached);
  std::int32_t count = 0;
  int high = -1;
  for (const std::uint8_t* at = nullptr; count < length && (at = LxTakeBytes(&in, 1)) != nullptr;) {
    if (IsSpace(*at)) continue;
    const int digit = HexDigit(*at);
    if (digit < 0) break;
    if (high < 0) {
      high = digit;
      continue;
    }
    bytes[count++] = static_cast<std::uint8_t>(high << 4 | digit);
    high = -1;
  }
  text->bytes = bytes;
  text->length = count;
  return true;
}

// The kind of block in a decoded profile; from a packet, the segment's identifier is removed.
LxContainerBlockKind KindOf(Profile profile, Text* text) noexcept {
  constexpr std::int32_t kIdentifierLength = sizeof(kLxXmpSegmentId);
  switch (profile) {
    case Profile::kPacket:
    case Profile::kRawPacket:
      return kLxPacketBlock;
    case Profile::kExif:
      return kLxTiffBlock;
    case Profile::kApp1:
      if (text->length < kIdentifierLength || std::memcmp(text->bytes, kLxXmpSegmentId, kIdentifierLength) != 0) {
        const bool isExif = text->length >= 6 && std::memcmp(text->bytes, "Exif\0\0", 6) == 0;
        return isExif ? kLxTiffBlock : kLxContainerBlockKinds;
      }
      text->bytes += kIdentifierLength;
      text->length -= kIdentifierLength;
      return kLxPacketBlock;
    case Profile::kIptc:
      return LxIsBlock(kLxResourceBlock, text->bytes, text->length, text->length) ? kLxResourceBlock : kLxDatasetBlock;
    case Profile::kResources:
      return kLxResourceBlock;
  }
  return kLxContainerBlockKinds;
}

void ReadTextChunk(LxChunkWalk* walk, const LxChunk& chunk, const char* name) noexcept {
  const Keyword* keyword = FindKeyword(walk, chunk);
  if (keyword == nullptr) return;
  const bool isOwn = keyword->profile == Profile::kPacket && chunk.type == LxChunkType("iTXt");
  const std::int32_t rank = isOwn ? kOwnRank : kOtherRank;
  if (!IsWanted(*walk->container, keyword->profile, rank)) return;
  LxBlockCache* cache = walk->container->pool->blocks;
  Text text;
  if (!ReadText(walk, chunk, &text)) return;
  const bool isRaw = keyword->profile != Profile::kPacket;
  const bool isWhole = !isRaw || DecodeProfile(cache, &text);
  const LxContainerBlockKind kind = isWhole ? KindOf(keyword->profile, &text) : kLxContainerBlockKinds;
  if (kind == kLxContainerBlockKinds) {
    LxFreeDetachedBlock(cache, text.detached);
    return;
  }
  LxOfferBlock(walk->container, kind, {name, keyword->text, text.bytes, text.length, text.detached, rank});
}

void WalkChunks(LxContainer* container, LxFileWindow* window) noexcept {
  LxChunkWalk walk = {container, window, kLxPngChunks, kFirstChunk};
  for (LxChunk chunk; LxNextChunk(&walk, &chunk) && chunk.type != LxChunkType("IEND");) {
    switch (chunk.type) {
      case LxChunkType("eXIf"):
        LxOfferChunk(&walk, chunk, kLxTiffBlock, "eXIf");
        break;
      case LxChunkType("iTXt"):
        ReadTextChunk(&walk, chunk, "iTXt");
        break;
      case LxChunkType("tEXt"):
        ReadTextChunk(&walk, chunk, "tEXt");
        break;
      case LxChunkType("zTXt"):
        ReadTextChunk(&walk, chunk, "zTXt");
        break;
      default:
        break;
    }
  }
}

// PNG third edition, 11.2.1.
void SetAttributes(const std::uint8_t* file, LxMetadataPool* pool) noexcept {
  pool->width = static_cast<std::int32_t>(LxGet32(file + 16, kLxBigEndian));
  pool->height = static_cast<std::int32_t>(LxGet32(file + 20, kLxBigEndian));
  pool->bits = file[24];
  constexpr struct {
    std::uint8_t type;
    std::int32_t samples;
    LxColourModel model;
  } kColourTypes[] = {{0, 1, kLxColourGray},
                      {2, 3, kLxColourRgb},
                      {3, 1, kLxColourIndexedRgb},
                      {4, 2, kLxColourGrayAlpha},
                      {6, 4, kLxColourRgbAlpha}};
  for (const auto& row : kColourTypes) {
    if (row.type != file[25]) continue;
    pool->samples = row.samples;
    pool->colourModel = row.model;
  }
  pool->compression = kLxCompressionFlate;
}

}  // namespace

LxResult LxReadPngFile(LxStream* stream, std::int32_t fileSize, LxMetadataPool* pool) noexcept {
  LxFileWindow window;
  LxInitFileWindow(&window, stream, fileSize);
  const std::uint8_t* file = LxPeekRange(&window, 0, kHeaderLength);
  if (file == nullptr) return kLxBadReadFormat;
  // PNG third edition, 5.6: IHDR comes first.
  if (LxGet32(file + 8, kLxBigEndian) < 13 || LxGet32(file + 12, kLxBigEndian) != LxChunkType("IHDR")) {
    return kLxBadReadFormat;
  }
  SetAttributes(file, pool);
  LxContainer container;
  if (const LxResult result = LxOpenContainer(&container, stream, fileSize, pool); result != kLxOk) return result;
  WalkChunks(&container, &window);
  return LxFinishContainer(&container, "pngh", "PNG", "png");
}
