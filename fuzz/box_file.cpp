// The walk over boxes of HEIF, JPEG XL and JPEG 2000 files, and bare codestreams. The first byte chooses the kind; a
// correct beginning of a file precedes the rest, so that few inputs are lost for their first bytes.
#include "fuzz/file_checks.h"
#include "tests/support/box_builders.h"

using namespace lxtest;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lxfuzz::Input input(data, size);
  const std::uint8_t kind = input.Byte() % 5;
  const Bytes heads[] = {Box("ftyp", Text("mif1") + Filled(4) + Text("miaf")), Jxl({}), Jp2({}), Hex("FF0A"),
                         Hex("FF4FFF51")};
  constexpr LxFileKind kKinds[] = {kLxFileHeif, kLxFileJxl, kLxFileJp2};
  const Bytes file = heads[kind] + input.Rest();
  const std::int32_t found = lxfuzz::CheckFile(file);
  // The few bytes of a codestream may begin another kind.
  lxfuzz::Require(kind > 2 || found == kKinds[kind], "the kind of the header");
  return 0;
}
