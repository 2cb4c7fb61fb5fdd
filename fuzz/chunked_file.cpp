// The walks over chunks and blocks of PNG, WebP and GIF files, and side-cars. The first byte chooses the kind; a
// correct header precedes the rest, so that no input is lost for its first bytes.
#include "fuzz/file_checks.h"
#include "tests/support/chunk_builders.h"

using namespace lxtest;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lxfuzz::Input input(data, size);
  const std::uint8_t kind = input.Byte() % 4;
  const Bytes heads[] = {PngBuilder().Bare(), WebpBuilder(), GifBuilder().Bare(), Text("<x:xmpmeta ")};
  constexpr LxFileKind kKinds[] = {kLxFilePng, kLxFileWebp, kLxFileGif, kLxFileXmp};
  const Bytes file = heads[kind] + input.Rest();
  const std::int32_t found = lxfuzz::CheckFile(file);
  lxfuzz::Require(found == kKinds[kind] || file.size() < 16, "the kind of the header");
  return 0;
}
