// Reads a file and checks its pool: well-formed, within the file's budget; searches find the items that the walks give
// out, and a container has one block of each kind.
#ifndef LXBRIDGE_FUZZ_FILE_CHECKS_H_
#define LXBRIDGE_FUZZ_FILE_CHECKS_H_

#include <string_view>

#include "fuzz/fuzz_target.h"
#include "kit/model/pool_walk.h"
#include "kit/readers/dispatch.h"

namespace lxfuzz {

// Items beyond the readers' budget: the file's header, and those added by post-processing for an orientation.
constexpr std::size_t kItemsBesideBudget = 64;

// A search for a walked item's namespace, name and text must find an equal item.
inline void RequireFindable(const LxMetadataPool& pool) {
  LxPoolIterator walk;
  LxStartPoolWalk(&walk, &pool);
  LxMetadataItem* shown = nullptr;
  for (int i = 0; i < 64 && LxNextDisplayItem(&walk, &shown) == kLxOk; ++i) {
    const LxMetadataItem* found = lxtest::Find(pool, shown->nameSpace, shown->name, shown->displayText);
    Require(found != nullptr && std::string(found->name) == shown->name &&
                std::string(found->displayText) == shown->displayText,
            "a display item is found");
  }
}

// PNG, WebP, GIF, HEIF, JPEG XL and JPEG 2000 files: at most a TIFF structure, a packet, resources and datasets, in
// this order, whatever the file repeats.
inline void RequireOneBlockOfEachKind(const LxMetadataPool& pool) {
  constexpr std::string_view kContainers = "pngh webph gifh heifh jxlh jp2h";
  if (kContainers.find(pool.root->nameSpace) == std::string_view::npos) return;
  const bool areNegative = pool.width < 0 || pool.height < 0 || pool.samples < 0 || pool.bits < 0;
  Require(!areNegative || pool.fileKind == kLxFilePng, "sizes");
  int last = -1, count = 0;
  for (const LxMetadataItem* block = pool.root->firstChild; block != nullptr; block = block->next) {
    Require(++count <= 4, "a block of each kind");
    if (block->firstChild == nullptr) continue;  // Its reader has found nothing in it.
    const std::string_view found = block->firstChild->nameSpace;
    const int kind = found == "tiffh" ? 0 : found == "xmp" ? 1 : 2;
    Require(kind > last || kind == 2, "blocks in their order");
    last = kind;
  }
}

// The kind of the file.
inline std::int32_t CheckFile(const lxtest::Bytes& bytes) {
  LxResult status = kLxOk;
  const lxtest::PoolPtr pool = lxtest::ParsePool(bytes, &status);
  RequireWellFormed(*pool);
  Require(status == kLxOk || pool->root == nullptr, "a failed reader leaves an empty pool");
  const std::size_t items = lxtest::AllItems(*pool).size();
  Require(items <= bytes.size() / kLxFileBytesPerItem + kLxItemsAtLeast + kItemsBesideBudget,
          "items within the budget");
  Require((pool->root == nullptr) == (pool->blocks == nullptr), "no blocks without items");
  if (pool->root != nullptr) RequireOneBlockOfEachKind(*pool);
  RequireFindable(*pool);
  return pool->fileKind;
}

}  // namespace lxfuzz

#endif  // LXBRIDGE_FUZZ_FILE_CHECKS_H_
