// Items: what frees what, and the order and limits of searches.
#include "kit/model/pool.h"

#include <gtest/gtest.h>

#include "tests/support/failing_memory.h"
#include "tests/support/failing_stream.h"
#include "tests/support/item_tree.h"

namespace {

using lxtest::FailingMemory;
using lxtest::Item;
using lxtest::Shown;
using lxtest::TreePool;

TEST(PoolItems, FreeWhatTheirFlagsSayTheyOwn) {
  FailingMemory memory;
  auto text = [] { return LxCopyText("text", 4); };
  LxMetadataItem* owner =
      LxNewMetadataItem(text(), text(), kLxOwnsNamespace | kLxOwnsName | kLxOwnsTypeName | kLxOwnsValue, 1, 2, 4,
                        reinterpret_cast<const std::uint8_t*>(text()));
  owner->typeName = text();
  LxSetDisplayText(owner, text(), true);
  LxSetDisplayText(owner, text(), true);  // The first one goes.
  owner->firstChild = lxtest::List({Item("a", "b", {Item("c", "d")}), Item("e", "f")});
  EXPECT_EQ(memory.liveBlocks(), 9);

  LxSetDisplayText(owner, "static", false);
  EXPECT_EQ(memory.liveBlocks(), 8);
  LxSetDisplayText(owner, nullptr, true);
  EXPECT_STREQ(owner->displayText, "");
  LxReleaseOwned(owner);
  EXPECT_EQ(memory.liveBlocks(), 4);
  EXPECT_EQ(owner->flags, 0u);
  LxFreeMetadataItems(owner);
  LxFreeMetadataItems(nullptr);
  EXPECT_EQ(memory.liveBlocks(), 0);
}

TEST(PoolItems, APoolFreesItsItemsAndItsBlocksButKeepsItsAttributes) {
  FailingMemory memory;
  LxMetadataPool* pool = LxNewPool();
  lxtest::FailingStream stream(std::vector<std::uint8_t>(5000));
  pool->blocks = LxNewBlockCache(&stream, 5000);
  EXPECT_NE(LxMapRange(pool->blocks, 0, 5000), nullptr);
  pool->root = Item("jpegh", "SOI", {Item("jpeg", "APP1")});
  pool->width = 640;
  LxFreeMetadataPool(pool);
  EXPECT_EQ(memory.liveBlocks(), 1);
  EXPECT_TRUE(pool->root == nullptr && pool->blocks == nullptr && pool->width == 640);
  LxDeletePool(pool);
  LxDeletePool(nullptr);
  EXPECT_EQ(memory.liveBlocks(), 0);
}

TEST(PoolItems, ATreeOfAnyDepthIsSearchedAndFreedOnALittleStack) {
  FailingMemory memory;
  LxMetadataItem* top = nullptr;
  for (int depth = 1'000'000; depth > 0; --depth) {
    LxMetadataItem* item = Item("ns", depth == 200 ? "near" : depth == 100'000 ? "far" : "level");
    item->firstChild = top;
    if (top != nullptr) top->next = depth % 1000 == 0 ? Item("ns", "sibling") : nullptr;
    top = item;
  }
  EXPECT_NE(LxFindItemInTree(top, "", "near", ""), nullptr);
  EXPECT_EQ(LxFindItemInTree(top, "", "far", ""), nullptr);
  LxFreeMetadataItems(top);
  EXPECT_EQ(memory.liveBlocks(), 0);
}

TEST(PoolSearch, FindsParentsFirstInFileOrderButNothingDeletedClosedOrAfterARunsEnd) {
  FailingMemory memory;
  TreePool pool(lxtest::List({
      Item("h", "Deleted", {Item("x", "InDeleted")}, kLxDeleted | kLxEndOfRun),
      Item("h", "Closed", {Item("x", "InClosed")}, kLxClosed),
      Item("h", "First", {Item("x", "Twice", {Item("x", "Same", {Item("x", "Same")})})}),
      Item("h", "Second",
           {Item("y", "Twice"), Item("h", "Run", {Item("x", "InRun")}, kLxEndOfRun), Item("x", "AfterRun")}),
      Item("h", "Last", {}, kLxEndOfRun),
      Item("h", "AfterLast"),
  }));
  for (const char* found : {"Closed", "First", "Twice", "InRun", "Last"}) {
    EXPECT_NE(pool.find("", found), nullptr) << found;
  }
  for (const char* missed : {"Deleted", "InDeleted", "InClosed", "AfterRun", "AfterLast", "closed", "Clos"}) {
    EXPECT_EQ(pool.find("", missed), nullptr) << missed;
  }
  EXPECT_STREQ(pool.find("", "Twice")->nameSpace, "x");
  EXPECT_STREQ(pool.find("y", "Twice")->nameSpace, "y");
  EXPECT_NE(pool.find("x", "Same")->firstChild, nullptr);  // The parent, not its child of the same name.
  EXPECT_STREQ(pool.find(nullptr, nullptr, nullptr)->name, "Closed");
  EXPECT_STREQ(pool.find("x", "")->name, "Twice");

  TreePool segments(lxtest::List({Item("jpeg", ""), Shown("jpeg", "APP1", "Exif"), Shown("jpeg", "APP1", "XMP")}));
  segments->root->name = segments->root->nameSpace = nullptr;
  EXPECT_EQ(segments.find("jpeg", "APP1", "XMP"), segments->root->next->next);
  EXPECT_EQ(segments.find("jpeg", "APP1", "xmp"), nullptr);

  LxMetadataItem* item = pool->root;
  EXPECT_EQ(LxFindMetadata(pool.get(), "y", "Same", "undef", "", &item), kLxNotFound);
  EXPECT_EQ(item, nullptr);
}

}  // namespace
