// Cases of files that hold metadata blocks in containers: which blocks of a file count, as one text.
#ifndef LXBRIDGE_TESTS_SUPPORT_BLOCK_CASES_H_
#define LXBRIDGE_TESTS_SUPPORT_BLOCK_CASES_H_

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/pool_support.h"

namespace lxtest {

// "pngh PNG: eXIf=A, iTXt XML:com.adobe.xmp=B, tEXt ...=IptcNaa": the blocks' items, with what is in them: of a TIFF
// structure the camera's make, of a packet its text, else the first item's name.
inline std::string ShownBlocks(const LxMetadataPool& pool) {
  if (pool.root == nullptr) return pool.blocks == nullptr ? "nothing" : "a cache without items";
  EXPECT_EQ(pool.root->tagId, 0);
  std::string text = std::string(pool.root->nameSpace) + " " + pool.root->name + ":";
  for (const LxMetadataItem* block = pool.root->firstChild; block != nullptr; block = block->next) {
    const LxMetadataItem* item = std::strcmp(block->nameSpace, "xmp") == 0 ? block : block->firstChild;
    if (item != block && block->valueLength != 0) text += " a length without bytes:";
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

struct BlockCase {
  const char* what;
  Bytes file;
  std::string shown;  // Without the prefix; "nothing": no block.
};

// Reads each file and compares its blocks, and its image's size ("64x48").
inline void CheckBlocks(const std::vector<BlockCase>& cases, std::string_view prefix, const char* size) {
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

#endif  // LXBRIDGE_TESTS_SUPPORT_BLOCK_CASES_H_
