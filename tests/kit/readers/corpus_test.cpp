// Real photographs: each reads into a sound pool.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

class Corpus : public testing::Test {
 protected:
  void SetUp() override {
    if (CorpusFiles().empty()) GTEST_SKIP() << "no photographs beside the source tree";
  }
  static std::string NameOf(const std::string& path) { return std::filesystem::path(path).filename().string(); }
};

TEST_F(Corpus, EveryFileReads) {
  for (const std::string& path : CorpusFiles()) {
    SCOPED_TRACE(NameOf(path));
    LxResult status = -1;
    const PoolPtr pool = ReadPoolFromPath(path, &status);
    // Two are bad: a segment whose length is wrong, so that no frame is found behind it; an image of no pixels.
    const bool noFrame = NameOf(path) == "suite-4838ece0.jpg", noPixels = NameOf(path) == "suite-4aae896b.png";
    EXPECT_EQ(status, noFrame ? kLxBadReadFormat : kLxOk);
    EXPECT_NE(pool->fileKind, kLxFileUnknown);
    EXPECT_EQ(pool->width > 0 && pool->height > 0, !noFrame && !noPixels);
    EXPECT_TRUE(IsWellFormed(*pool));
  }
}

}  // namespace
