#include "tests/support/block_cases.h"

#include <cstring>

namespace lxtest {

std::string ShownBlocks(const LxMetadataPool& pool) {
  if (pool.root == nullptr) return pool.blocks == nullptr ? "nothing" : "a cache without items";
  std::string text = std::string(pool.root->nameSpace) + " " + pool.root->name + ":";
  for (const LxMetadataItem* block = pool.root->firstChild; block != nullptr; block = block->next) {
    const LxMetadataItem* item = std::strcmp(block->nameSpace, "xmp") == 0 ? block : block->firstChild;
    text += std::string(" ") + block->name + (block->displayText[0] != 0 ? " " : "") + block->displayText + "=";
    if (item == nullptr) continue;
    const LxMetadataItem* make = Find(pool, "tiff", "Make");
    const Bytes value = ValueOf(*item);
    text += std::strcmp(item->nameSpace, "tiffh") == 0 && make != nullptr ? make->displayText
            : std::strcmp(item->nameSpace, "xmp") == 0                    ? std::string(value.begin(), value.end())
                                                                          : std::string(item->name);
  }
  return text;
}

void CheckBlocks(const std::vector<BlockCase>& cases, std::string_view prefix, const char* size) {
  for (const BlockCase& c : cases) {
    LxResult status = -1;
    const PoolPtr pool = ReadPool(c.file, &status);
    EXPECT_EQ(status, kLxOk) << c.what;
    EXPECT_EQ(ShownBlocks(*pool), c.shown == "nothing" ? c.shown : std::string(prefix) + c.shown) << c.what;
    EXPECT_EQ(std::to_string(pool->width) + "x" + std::to_string(pool->height), size) << c.what;
    EXPECT_TRUE(IsWellFormed(*pool)) << c.what;
  }
}

}  // namespace lxtest
