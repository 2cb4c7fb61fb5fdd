// Sizes and offsets at and beyond 2^31 and 2^32.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "tests/faults/whole_pipeline.h"
#include "tests/support/pool_support.h"

namespace lxtest {
namespace {

constexpr std::int64_t kGigabyte = std::int64_t{1} << 30;

// A file of that size, whose bytes after the given ones are a hole; false where there is no space for it.
bool Extend(const TempFile& file, std::int64_t size) {
  return truncate(file.path().c_str(), size) == 0;
}

TEST(LargeFile, MetadataInFrontIsReadWhateverTheSize) {
  const Clients clients;
  for (const NamedFile& file : RichFiles()) {
    if (std::string(file.name) == "side-car") continue;  // None is larger than 64 MiB.
    if (std::string(file.name) == "WebP") continue;      // The hole is a quarter of a billion empty chunks, all read.
    const TempFile small(file.bytes);
    const std::string expected = PacketOf(small.path());
    ASSERT_NE(expected.find("xmpmeta"), std::string::npos);
    for (const std::int64_t size : {2 * kGigabyte - 1, 2 * kGigabyte, 4 * kGigabyte, 5 * kGigabyte}) {
      const TempFile large(file.bytes);
      if (!Extend(large, size)) GTEST_SKIP() << "no files of " << size << " bytes here";
      EXPECT_EQ(PacketOf(large.path()), expected) << file.name << " of " << size << " bytes";
    }
  }
}

TEST(LargeFile, WhatStandsBeyondTheReachableSizeIsNotThere) {
  const Clients clients;
  for (const std::uint32_t offset : {0x7FFFFFF0u, 0x80000000u, 0xFFFFFFF0u}) {
    const TempFile large(TiffBuilder(kBig).Ifd0({Short(0x0112, 6), Raw(0x8769, 4, 1, offset)}));
    if (!Extend(large, 5 * kGigabyte)) GTEST_SKIP() << "no large files here";
    LxResult status = kLxOk;
    const PoolPtr pool = ReadPoolFromPath(large.path(), &status);
    EXPECT_EQ(status, kLxOk);
    EXPECT_NE(Find(*pool, "tiff", "Orientation"), nullptr);
    EXPECT_TRUE(IsWellFormed(*pool));
    EXPECT_TRUE(AllItems(*pool, "exif").empty());
  }
}

}  // namespace
}  // namespace lxtest
