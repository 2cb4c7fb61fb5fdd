// The two walks: the items that they give out, their order and their ends.
#include "kit/model/pool_walk.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/failing_memory.h"
#include "tests/support/item_tree.h"

namespace {

using lxtest::FailingMemory;
using lxtest::Item;
using lxtest::List;
using lxtest::Shown;
using lxtest::TreePool;

// The names that a walk gives out, and the result that ends it. An item named `skipAfter` is followed by a skip.
std::string Walk(LxMetadataPool* pool, const std::string& skipAfter = "") {
  LxPoolIterator* iterator = LxNewPoolIterator(pool);
  std::string names;
  LxMetadataItem* item = nullptr;
  LxResult result = kLxOk;
  for (bool skip = false; (result = LxNextPoolItem(iterator, &item, skip)) == kLxOk; skip = item->name == skipAfter) {
    names += item->name;
  }
  EXPECT_EQ(item == nullptr, result == kLxEnd);
  EXPECT_EQ(LxNextPoolItem(iterator, &item, false), kLxEnd);  // A finished walk stays so.
  EXPECT_EQ(item, nullptr);
  LxFreePoolIterator(iterator);
  return names + ":" + std::to_string(result);
}

std::string DisplayWalk(LxMetadataPool* pool) {
  LxPoolIterator iterator;
  LxStartPoolWalk(&iterator, pool);
  std::string names;
  LxMetadataItem* item = nullptr;
  LxResult result = kLxOk;
  while ((result = LxNextDisplayItem(&iterator, &item)) == kLxOk) names += item->name;
  EXPECT_EQ(item, nullptr);
  return names + ":" + std::to_string(result);
}

TEST(PoolWalk, GivesAllLiveItemsParentsFirstAndSkipsTheChildrenOfTheOneGivenOutLast) {
  FailingMemory memory;
  TreePool pool(List({
      Item("n", "a", {Item("n", "b", {Item("n", "c", {Item("n", "d")})}), Item("n", "e")}),
      Item("n", "x", {Item("n", "y")}, kLxDeleted),
      Item("n", "f", {Item("n", "x", {}, kLxDeleted)}, kLxHidden),
      Item("n", "g", {Item("n", "h", {}, kLxEndOfRun), Item("n", "x", {}, kLxDeleted)}, kLxClosed),
  }));
  EXPECT_EQ(Walk(pool.get()), "abcdefgh:1");
  EXPECT_EQ(Walk(pool.get(), "a"), "afgh:1");
  EXPECT_EQ(Walk(pool.get(), "b"), "abefgh:1");
  EXPECT_EQ(Walk(pool.get(), "c"), "abcefgh:1");   // Without a sibling, on at the level above.
  EXPECT_EQ(Walk(pool.get(), "d"), "abcdefgh:1");  // Nothing to pass over.
  EXPECT_EQ(Walk(pool.get(), "f"), "abcdefgh:1");
  EXPECT_EQ(Walk(pool.get(), "g"), "abcdefg:1");
  TreePool empty, deleted(Item("n", "x", {}, kLxDeleted));
  EXPECT_EQ(Walk(empty.get()), ":1");
  EXPECT_EQ(Walk(deleted.get()), ":1");
}

TEST(PoolWalk, BreaksAfterThirtyLevels) {
  FailingMemory memory;
  for (const int levels : {30, 31}) {
    LxMetadataItem* top = nullptr;
    for (int level = levels; level > 0; --level) {
      LxMetadataItem* item = level == levels ? Shown("n", "z", "text") : Item("n", "a");
      item->firstChild = top;
      top = item;
    }
    top->next = Shown("n", "b", "text");
    TreePool pool(top);
    if (levels == 30) {
      EXPECT_EQ(Walk(pool.get()), std::string(29, 'a').append("zb:1"));
      EXPECT_EQ(DisplayWalk(pool.get()), "zb:1");
    } else {
      EXPECT_EQ(Walk(pool.get()), std::string(29, 'a').append(":-8"));
      EXPECT_EQ(DisplayWalk(pool.get()), ":-8");
    }
  }
}

TEST(DisplayWalk, GivesOutOnlyItemsWorthShowing) {
  FailingMemory memory;
  TreePool pool(List({
      Item("n", "noText"),
      Shown("n", " 9999", "text"),
      Shown("n", "hidden", "text", kLxHidden),
      Shown("n", "deleted", "text", kLxDeleted | kLxEndOfRun),
      Shown("n", "parent", "text"),
      Shown("n", "noName", "text"),
      Shown("n", "a", "text", kLxClosed),
  }));
  pool.find("n", "parent")->firstChild = Shown("n", "b", "text");
  pool.find("n", "noName")->name = nullptr;
  EXPECT_EQ(DisplayWalk(pool.get()), "ba:1");
}

TEST(DisplayWalk, PassesOverClosedItemsAndLeavesARunAtItsEnd) {
  FailingMemory memory;
  TreePool pool(List({
      Item("n", "closed", {Shown("n", "x", "text")}, kLxClosed),
      Item("n", "chain",
           {Item("n", "IFD", {Shown("n", "a", "text"), Shown("n", "b", "text", kLxEndOfRun), Shown("n", "x", "text")},
                 kLxEndOfRun),
            Item("n", "IFD", {Shown("n", "y", "text")})}),
      Shown("n", "c", "text"),
  }));
  EXPECT_EQ(DisplayWalk(pool.get()), "abc:1");
  EXPECT_EQ(Walk(pool.get()), "closedxchainIFDabxIFDyc:1");
}

}  // namespace
