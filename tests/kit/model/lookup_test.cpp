// Lookups over small tables: what counts as found, what ends a walk.
#include "kit/model/lookup.h"

#include <gtest/gtest.h>

#include "kit/model/pool.h"

namespace {

// clang-format off
constexpr LxTagRecord kTags[] = {
  {5, 0, "Five",  3, 1, nullptr, nullptr, nullptr},
  {7, 0, "Seven", 3, 1, nullptr, nullptr, nullptr},
  {5, 0, "Other", 3, 1, nullptr, nullptr, nullptr},
  {9, 0, "",      7, 0, nullptr, nullptr, nullptr},
  {8, 0, "Eight", 3, 1, nullptr, nullptr, nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kNoTags[] = {kLxEndOfTags};
// clang-format on

TEST(Lookup, TagsAreFoundByNameUpToACatchAll) {
  EXPECT_EQ(LxFindTagByName("Seven", kTags), &kTags[1]);
  EXPECT_EQ(LxFindTagByName("Other", kTags), &kTags[2]);
  EXPECT_EQ(LxFindTagByName("Eight", kTags), &kTags[3]);  // The catch-all stands in front of it.
  EXPECT_EQ(LxFindTagByName("five", kTags), &kTags[3]);
  EXPECT_EQ(LxFindTagByName("Eight", kTags + 4), &kTags[4]);
  EXPECT_EQ(LxFindTagByName("five", kTags + 4), nullptr);
  for (const LxTagRecord* none : {kNoTags, static_cast<const LxTagRecord*>(nullptr)}) {
    EXPECT_EQ(LxFindTagByName("Five", none), nullptr);
  }
  EXPECT_EQ(LxFindTagByName(nullptr, kTags), nullptr);
}

TEST(Lookup, TagsAreFoundByTheirFirstIdAndNotByTheEndRecords) {
  EXPECT_EQ(LxFindTagById(5, kTags), &kTags[0]);
  EXPECT_EQ(LxFindTagById(8, kTags), &kTags[4]);
  EXPECT_EQ(LxFindTagById(0, kTags), nullptr);  // The end record's own id.
  EXPECT_EQ(LxFindTagById(0, kNoTags), nullptr);
  EXPECT_EQ(LxFindTagById(5, nullptr), nullptr);
  EXPECT_EQ(LxFindTag(5, "Other", kTags), &kTags[2]);
  EXPECT_EQ(LxFindTag(7, "Other", kTags), nullptr);
  EXPECT_EQ(LxFindTag(5, "Missing", kTags), nullptr);  // No catch-all here.
  EXPECT_EQ(LxFindTag(0, nullptr, kTags), nullptr);
}

TEST(Lookup, NumberedNamesEndWithTheirEnumeration) {
  EXPECT_STREQ(LxFileKindName(kLxFileWmv), "wmv");
  EXPECT_STREQ(LxOrientationName(kLxRotM270Cw), "rotm270cw");
  EXPECT_STREQ(LxCompressionName(kLxCompressionJpeg12), "jpeg12");
  for (const auto name : {LxNamespaceName, LxFileKindName, LxColourModelName, LxOrientationName, LxCompressionName}) {
    EXPECT_NE(name(0), nullptr);
    for (const std::int32_t index : {-1, 21, INT32_MAX, INT32_MIN}) EXPECT_EQ(name(index), nullptr) << index;
  }
}

}  // namespace
