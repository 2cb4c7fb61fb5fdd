// Cases of files that hold metadata blocks in containers: which blocks of a file count, as one text.
#ifndef LXBRIDGE_TESTS_SUPPORT_BLOCK_CASES_H_
#define LXBRIDGE_TESTS_SUPPORT_BLOCK_CASES_H_

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/pool_support.h"

namespace lxtest {

// "pngh PNG: eXIf=A, iTXt XML:com.adobe.xmp=B, tEXt ...=IptcNaa": the blocks' items, with what is in them: of a TIFF
// structure the camera's make, of a packet its text, else the first item's name.
[[nodiscard]] std::string ShownBlocks(const LxMetadataPool& pool);

struct BlockCase {
  const char* what;
  Bytes file;
  std::string shown;  // Without the prefix; "nothing": no block.
};

// Reads each file and compares its blocks, and its image's size ("64x48").
void CheckBlocks(const std::vector<BlockCase>& cases, std::string_view prefix, const char* size);

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_BLOCK_CASES_H_
