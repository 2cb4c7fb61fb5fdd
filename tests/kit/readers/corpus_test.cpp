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

TEST_F(Corpus, WhatAPersonCanReadInThemIsRead) {
  const struct {
    const char* file;
    const char *nameSpace, *name, *displayText;
  } cases[] = {
      {"Canon_40D.jpg", "tiff", "Model", "Canon EOS 40D"},
      {"Canon_40D.jpg", "exif", "ExposureTime", "1/160s"},
      {"Nikon_COOLPIX_P1.jpg", "tiff", "Make", "NIKON"},
      {"Olympus_C8080WZ.jpg", "tiff", "Model", "C8080WZ"},
      {"Sony_HDR-HC3.jpg", "exif", "DateTimeOriginal", "2007:06:15 04:42:32"},
      {"HTC_Desire.jpg", "tiff", "Model", "HTC Desire"},
      {"Pentax_Optio_S4.jpg", "exif", "ColorSpace", "sRGB"},
  };
  for (const auto& c : cases) {
    const PoolPtr pool = ReadPoolFromPath(CorpusFile(c.file));
    const LxMetadataItem* item = Find(*pool, c.nameSpace, c.name);
    EXPECT_STREQ(item != nullptr ? item->displayText : "(not there)", c.displayText) << c.file;
  }
}

}  // namespace
