// Walks over boxes of HEIF, JPEG XL and JPEG 2000 files, and over bare codestreams. The first byte selects the kind;
// the rest follows a valid beginning, so that no input is wasted on its first bytes.
#include <cstring>

#include "fuzz/fuzz_target.h"
#include "kit/readers/dispatch.h"
#include "tests/support/box_builders.h"

using namespace lxtest;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lxfuzz::Input input(data, size);
  const std::uint8_t kind = input.Byte() % 5;
  const Bytes heads[] = {Box("ftyp", Text("mif1") + Filled(4) + Text("miaf")), Jxl({}), Hex("FF0A"), Jp2({}),
                         Hex("FF4FFF51")};
  constexpr LxFileKind kKinds[] = {kLxFileHeif, kLxFileJxl, kLxFileJxl, kLxFileJp2, kLxFileJp2};
  const Bytes file = heads[kind] + input.Rest();
  LxResult status = kLxOk;
  const PoolPtr pool = ParsePool(file, &status);
  lxfuzz::Require(status == kLxOk, "a good header");
  lxfuzz::RequireWellFormed(*pool);
  const bool isBare = file[0] == 0xFF;
  // The first bytes of a bare codestream are so few that the type of a film's box may follow them.
  lxfuzz::Require(pool->fileKind == kKinds[kind] || file.size() < 16 || (isBare && pool->fileKind == kLxFileMov),
                  "the kind of the header");
  lxfuzz::Require((pool->root == nullptr) == (pool->blocks == nullptr), "no blocks without items");
  lxfuzz::Require(pool->width >= 0 && pool->height >= 0 && pool->bits >= 0, "sizes");
  if (pool->root == nullptr) return 0;
  lxfuzz::Require(!isBare, "a bare codestream has no blocks");
  int count = 0;
  for (const LxMetadataItem* block = pool->root->firstChild; block != nullptr; block = block->next) {
    lxfuzz::Require(++count <= 4, "a block of each sort");
  }
  return 0;
}
