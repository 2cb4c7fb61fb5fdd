// Walks over chunks and blocks of PNG, WebP and GIF files, and side-cars. The first byte selects the kind; the rest
// follows a valid header, so that no input is wasted on its first bytes.
#include <cstring>

#include "fuzz/fuzz_target.h"
#include "kit/readers/dispatch.h"
#include "tests/support/chunk_builders.h"

using namespace lxtest;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lxfuzz::Input input(data, size);
  const std::uint8_t kind = input.Byte() % 4;
  const Bytes heads[] = {PngBuilder().Bare(), WebpBuilder(), GifBuilder().Bare(), Text("<x:xmpmeta ")};
  const Bytes file = heads[kind] + input.Rest();
  LxResult status = kLxOk;
  const PoolPtr pool = ParsePool(file, &status);
  lxfuzz::Require(status == kLxOk, "a good header");
  lxfuzz::RequireWellFormed(*pool);
  constexpr LxFileKind kKinds[] = {kLxFilePng, kLxFileWebp, kLxFileGif, kLxFileXmp};
  lxfuzz::Require(pool->fileKind == kKinds[kind] || file.size() < 16, "the kind of the header");
  lxfuzz::Require((pool->root == nullptr) == (pool->blocks == nullptr), "no blocks without items");
  if (pool->root == nullptr) return 0;
  // At most one block of each kind, whatever the file repeats: a TIFF structure, a packet, then resources and datasets.
  int last = -1;
  int count = 0;
  for (const LxMetadataItem* block = pool->root->firstChild; block != nullptr; block = block->next) {
    lxfuzz::Require(++count <= 4, "a block of each sort");
    const LxMetadataItem* item = kind == 3 ? block : block->firstChild;
    if (item == nullptr) continue;  // A block in which its reader found nothing.
    const int sort = std::strcmp(item->nameSpace, "tiffh") == 0 ? 0 : std::strcmp(item->nameSpace, "xmp") == 0 ? 1 : 2;
    lxfuzz::Require(sort > last || sort == 2, "the blocks in their order");
    last = sort;
  }
  return 0;
}
