// Reads a file's bytes into a pool, which must be well-formed and within the file's budget; searches must find the
// items of walks.
#include "fuzz/fuzz_target.h"
#include "kit/model/pool_walk.h"
#include "kit/readers/dispatch.h"

namespace {

// Items beyond the readers' budget: the file's header, and those added by post-processing for an orientation.
constexpr std::size_t kItemsBesideBudget = 64;

// A search for a walked item's namespace, name and text must find an equal item.
void RequireFindable(const LxMetadataPool& pool) {
  LxPoolIterator walk;
  LxStartPoolWalk(&walk, &pool);
  LxMetadataItem* shown = nullptr;
  for (int i = 0; i < 64 && LxNextDisplayItem(&walk, &shown) == kLxOk; ++i) {
    const LxMetadataItem* found = lxtest::Find(pool, shown->nameSpace, shown->name, shown->displayText);
    lxfuzz::Require(found != nullptr && std::string(found->name) == shown->name &&
                        std::string(found->displayText) == shown->displayText,
                    "a display item is found");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  LxResult status = kLxOk;
  const lxtest::PoolPtr pool = lxtest::ParsePool(lxtest::Bytes(data, data + size), &status);
  lxfuzz::RequireWellFormed(*pool);
  lxfuzz::Require(status == kLxOk || pool->root == nullptr, "a failed reader leaves an empty pool");
  const std::size_t items = lxtest::AllItems(*pool).size();
  lxfuzz::Require(items <= size / kLxFileBytesPerItem + kLxItemsAtLeast + kItemsBesideBudget,
                  "items within the budget");
  RequireFindable(*pool);
  return 0;
}
