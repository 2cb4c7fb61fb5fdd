// Real photographs, whole and cut: each reads into a sound pool.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/image_builders.h"
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

TEST_F(Corpus, CutAnywhereTheyReadIntoASoundPool) {
  for (const std::string& path : CorpusFiles()) {
    SCOPED_TRACE(NameOf(path));
    const Bytes file = ReadWholeFile(path);
    // Every length near the start, where the headers are; then ever larger steps.
    for (std::size_t length = 0; length < file.size(); length += 1 + length / 24) {
      const PoolPtr pool = ParsePool(Truncated(file, length));
      ASSERT_TRUE(IsWellFormed(*pool)) << "cut to " << length;
    }
  }
}

TEST_F(Corpus, WithAByteChangedTheyReadIntoASoundPool) {
  for (const std::string& path : CorpusFiles()) {
    SCOPED_TRACE(NameOf(path));
    Bytes file = ReadWholeFile(path);
    file.resize(std::min<std::size_t>(file.size(), 20000));
    for (std::size_t at = 0; at < file.size(); at += 1 + at / 24) {
      const std::uint8_t before = file[at];
      for (const int value : {0x00, 0xFF, before ^ 0x01, before ^ 0x80}) {
        file[at] = static_cast<std::uint8_t>(value);
        ASSERT_TRUE(IsWellFormed(*ParsePool(file))) << "byte " << at << " to " << value;
      }
      file[at] = before;
    }
  }
}

}  // namespace
