// The tests on a file's first bytes, in the order in which they decide.
#include "kit/readers/file_kind.h"

#include <cstring>

namespace {

struct Signature {
  std::int32_t at;
  std::int32_t length;
  const char* bytes;
  LxFileKind kind;
};

// A RIFF file is decided by its form, whatever its later bytes look like, so the RIFF rows come as a block: a RIFF file
// of another form ends at the row of the bare signature.
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
};
// clang-format on

bool Holds(const std::uint8_t* bytes, std::int32_t at, const char* expected, std::int32_t length) noexcept {
  return std::memcmp(bytes + at, expected, static_cast<std::size_t>(length)) == 0;
}

}  // namespace

LxFileKind LxDetectFileKind(const std::uint8_t* bytes) noexcept {
  if (bytes[0] == 0xFF && bytes[1] == 0xD8 && bytes[2] == 0xFF && bytes[3] >= 0xC0) return kLxFileJpeg;
  const bool riff = Holds(bytes, 0, "RIFF", 4);
  for (const Signature& signature : kSignatures) {
    if (signature.at == 8 && !riff) continue;
    if (Holds(bytes, signature.at, signature.bytes, signature.length)) return signature.kind;
  }
  return kLxFileUnknown;
}
