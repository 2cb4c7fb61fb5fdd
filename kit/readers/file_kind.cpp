// The checks of a file's first bytes, in order of precedence.
#include "kit/readers/file_kind.h"

#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/readers/xml_start.h"

namespace {

struct Signature {
  std::int32_t at;
  std::int32_t length;
  const char* bytes;
  LxFileKind kind;
};

// A RIFF file is determined by its form, whatever its later bytes are, so the RIFF rows are adjacent: a RIFF file of
// another form matches the row of the bare signature.
// clang-format off
constexpr Signature kSignatures[] = {
  {0, 4, "\x49\x49\x2A\x00",                  kLxFileTiff},  // TIFF 6.0, section 2
  {0, 4, "\x4D\x4D\x00\x2A",                  kLxFileTiff},
  {0, 8, "\x89\x50\x4E\x47\x0D\x0A\x1A\x0A",  kLxFilePng},
  {0, 6, "8BPS\x00\x01",                      kLxFilePsd},
  {0, 4, "%PDF",                              kLxFilePdf},
  {0, 4, "GIF8",                              kLxFileGif},
  {8, 4, "AVI ",                              kLxFileAvi},   // RIFF only
  {8, 4, "WAVE",                              kLxFileWav},   // RIFF only
  {8, 4, "WEBP",                              kLxFileWebp},  // RIFF only
  {0, 4, "RIFF",                              kLxFileUnknown},
  {0, 4, "ID3\x03",                           kLxFileMp3},
  {0, 2, "BM",                                kLxFileBmp},
  {4, 4, "pnot",                              kLxFileMov},
  {4, 4, "mdat",                              kLxFileMov},
  {4, 4, "moov",                              kLxFileMov},
  {4, 4, "skip",                              kLxFileMov},
  {4, 4, "free",                              kLxFileMov},
  {0, 4, "\x00\x00\x01\xBA",                  kLxFileMpeg},
  {0, 4, "\x30\x26\xB2\x75",                  kLxFileWmv},
  {0, 12, "\x00\x00\x00\x0CJXL \x0D\x0A\x87\x0A", kLxFileJxl},  // ISO/IEC 18181-2, 9.1
  {0, 2, "\xFF\x0A",                          kLxFileJxl},   // A bare codestream.
  {0, 12, "\x00\x00\x00\x0CjP  \x0D\x0A\x87\x0A", kLxFileJp2},  // ISO/IEC 15444-1, I.5.1
  {0, 4, "\xFF\x4F\xFF\x51",                  kLxFileJp2},   // A bare codestream.
};
// clang-format on

// ISO/IEC 23008-12, 10, and the brands of AVIF: files whose metadata is in items of a `meta` box.
constexpr const char* kImageBrands[] = {"heic", "heix", "heim", "heis", "hevc", "hevx", "hevm",
                                        "hevs", "mif1", "msf1", "mif2", "avif", "avis", "miaf"};
constexpr std::uint64_t kBoxHeader = 8;
constexpr std::uint64_t kLongBoxHeader = 16;  // Size 1: a 64-bit size follows the type.

bool Holds(const std::uint8_t* bytes, std::int32_t at, const char* expected, std::int32_t length) noexcept {
  return std::memcmp(bytes + at, expected, static_cast<std::size_t>(length)) == 0;
}

bool IsImageBrand(const std::uint8_t* brand) noexcept {
  for (const char* known : kImageBrands) {
    if (std::memcmp(brand, known, 4) == 0) return true;
  }
  return false;
}

// Reads bytes that the file is known to have. False: the read failed.
bool ReadAt(LxStream* stream, std::int64_t position, std::uint8_t* buffer, std::int32_t size) noexcept {
  if (position > INT32_MAX || !LxSeekTo(stream, static_cast<std::int32_t>(position))) return false;
  if (stream->methods->read(buffer, 1, size, stream) == size) return true;
  stream->flags |= kLxStreamError;
  return false;
}

// Whether the file type box at `start`, which begins with `header`, is complete and lists an image brand. (ISO/IEC
// 14496-12, 4.3: major brand, minor version, compatible brands.)
bool ListsImageBrand(LxStream* stream, std::int32_t start, const std::uint8_t* header) noexcept {
  const auto left = static_cast<std::uint64_t>(LxStreamLength(stream) - start);
  std::uint64_t size = LxGet32(header, kLxBigEndian);
  std::uint64_t at = kBoxHeader;
  if (size == 0) size = left;
  if (size == 1) {
    size = std::uint64_t{LxGet32(header + 8, kLxBigEndian)} << 32 | LxGet32(header + 12, kLxBigEndian);
    at = kLongBoxHeader;
  }
  if (size > left) return false;
  std::uint8_t brands[1024];
  for (bool first = true; at + 4 <= size; first = false) {
    const std::uint64_t want = size - at < sizeof(brands) ? (size - at) / 4 * 4 : sizeof(brands);
    if (!ReadAt(stream, static_cast<std::int64_t>(at) + start, brands, static_cast<std::int32_t>(want))) return false;
    for (std::uint64_t i = 0; i < want; i += 4) {
      const bool isMinorVersion = first && i == 4;
      if (!isMinorVersion && IsImageBrand(brands + i)) return true;
    }
    at += want;
  }
  return false;
}

LxFileKind DetectByBrandsOrText(LxStream* stream, std::int32_t start, const std::uint8_t* header) noexcept {
  if (Holds(header, 4, "ftyp", 4)) return ListsImageBrand(stream, start, header) ? kLxFileHeif : kLxFileUnknown;
  if (!LxMayStartXml(header)) return kLxFileUnknown;
  const std::int32_t left = LxStreamLength(stream) - start;
  if (left > kLxLargestSidecar) return kLxFileUnknown;
  std::uint8_t text[kLxXmlStartSize];
  const std::int32_t length = left < kLxXmlStartSize ? left : kLxXmlStartSize;
  if (length < 0 || !ReadAt(stream, start, text, length)) return kLxFileUnknown;
  return LxStartsPacket(text, length) ? kLxFileXmp : kLxFileUnknown;
}

}  // namespace

LxFileKind LxDetectFileKind(const std::uint8_t* bytes) noexcept {
  if (bytes[0] == 0xFF && bytes[1] == 0xD8 && bytes[2] == 0xFF && bytes[3] >= 0xC0) return kLxFileJpeg;
  const bool riff = Holds(bytes, 0, "RIFF", 4);
  for (const Signature& signature : kSignatures) {
    if (signature.at == 8 && !riff) continue;
    if (Holds(bytes, signature.at, signature.bytes, signature.length)) return signature.kind;
  }
  return Holds(bytes, 4, "ftyp", 4) && IsImageBrand(bytes + 8) ? kLxFileHeif : kLxFileUnknown;
}

LxFileKind LxDetectStreamKind(LxStream* stream) noexcept {
  const std::int32_t start = stream->methods->tell(stream);
  if (start < 0) {
    stream->flags |= kLxStreamError;
    return kLxFileUnknown;
  }
  std::uint8_t header[kLxFileHeaderSize];
  if (stream->methods->read(header, 1, sizeof(header), stream) != kLxFileHeaderSize) {
    if (LxStreamLength(stream) - start >= kLxFileHeaderSize) stream->flags |= kLxStreamError;
    (void)LxSeekTo(stream, start);
    return kLxFileUnknown;
  }
  LxFileKind kind = LxDetectFileKind(header);
  // A RIFF file is determined by its form.
  if (kind == kLxFileUnknown && !Holds(header, 0, "RIFF", 4)) kind = DetectByBrandsOrText(stream, start, header);
  return LxSeekTo(stream, start) ? kind : kLxFileUnknown;
}

bool LxHasFileReader(std::int32_t fileKind) noexcept {
  switch (fileKind) {
    case kLxFileJpeg:
    case kLxFileTiff:
    case kLxFilePsd:
    case kLxFilePng:
    case kLxFileBmp:
    case kLxFileGif:
    case kLxFileWebp:
    case kLxFileXmp:
    case kLxFileHeif:
    case kLxFileJxl:
    case kLxFileJp2:
      return true;
    default:
      return false;
  }
}
