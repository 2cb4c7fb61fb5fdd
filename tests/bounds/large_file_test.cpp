// Sizes, offsets and products at and beyond 2^31 and 2^32.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "kit/model/value.h"
#include "tests/faults/whole_road.h"
#include "tests/support/pool_support.h"

namespace lxtest {
namespace {

constexpr std::int64_t kGigabyte = std::int64_t{1} << 30;

// A file of that size, whose bytes behind the given ones are a hole.
class SparseFile {
 public:
  SparseFile(const Bytes& front, std::int64_t size) : file_(front) {
    hasRoom_ = truncate(file_.path().c_str(), size) == 0;
  }
  [[nodiscard]] const std::string& path() const { return file_.path(); }
  [[nodiscard]] bool hasRoom() const { return hasRoom_; }

 private:
  TempFile file_;
  bool hasRoom_;
};

TEST(LargeFile, MetadataInFrontIsReadWhateverTheSize) {
  const Clients clients;
  for (const NamedFile& file : RichFiles()) {
    if (std::string(file.name) == "side-car") continue;  // None is larger than 64 MiB.
    const TempFile small(file.bytes);
    const std::string expected = PacketOf(small.path());
    ASSERT_NE(expected.find("xmpmeta"), std::string::npos);
    for (const std::int64_t size : {2 * kGigabyte - 1, 2 * kGigabyte, 4 * kGigabyte, 5 * kGigabyte}) {
      const SparseFile large(file.bytes, size);
      if (!large.hasRoom()) GTEST_SKIP() << "no files of " << size << " bytes here";
      EXPECT_EQ(PacketOf(large.path()), expected) << file.name << " of " << size << " bytes";
    }
  }
}

TEST(LargeFile, WhatStandsBeyondTheReachableSizeIsNotThere) {
  const Clients clients;
  for (const std::uint32_t offset : {0x7FFFFFF0u, 0x80000000u, 0xFFFFFFF0u}) {
    const SparseFile large(TiffBuilder(kBig).Ifd0({Short(0x0112, 6), Raw(0x8769, 4, 1, offset)}), 5 * kGigabyte);
    if (!large.hasRoom()) GTEST_SKIP() << "no large files here";
    LxResult status = kLxOk;
    const PoolPtr pool = ReadPoolFromPath(large.path(), &status);
    EXPECT_EQ(status, kLxOk);
    EXPECT_NE(Find(*pool, "tiff", "Orientation"), nullptr);
    EXPECT_TRUE(IsWellFormed(*pool));
    EXPECT_TRUE(AllItems(*pool, "exif").empty());
  }
}

TEST(LargeFile, CountsAndOffsetsThatWrapNameNothing) {
  constexpr std::uint32_t kEdges[] = {0,          1,          4,          0x1FFFFFFF, 0x20000000,
                                      0x20000001, 0x3FFFFFFF, 0x40000000, 0x40000001, 0x7FFFFFFF,
                                      0x80000000, 0x80000001, 0xFFFFFFFC, 0xFFFFFFFF};
  for (const Order order : {kLittle, kBig}) {
    for (const std::uint16_t tag : std::initializer_list<std::uint16_t>{0x010F, 0x014A, 0x0201, 0x0202, 0x83BB, 0x8649,
                                                                        0x8769, 0x8825, 0x927C, 0xC000}) {
      for (std::uint16_t type = 0; type <= kLxTypeCount; ++type) {
        for (const std::uint32_t count : kEdges) {
          for (const std::uint32_t offset : kEdges) {
            // Each alone, since an entry that names nothing ends its directory.
            const Bytes file =
                TiffBuilder(order).Ifd0({Ascii(0x010F, "Canon"), Raw(tag, type, count, offset), Short(0x0112, 6)});
            ASSERT_TRUE(IsWellFormed(*ParsePool(file)))
                << "tag " << tag << ", type " << type << ", " << count << " at " << offset;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace lxtest
