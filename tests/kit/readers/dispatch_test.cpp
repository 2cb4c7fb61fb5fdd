// The dispatch of readers: valid ranges, the routines that only remember something, thumbnails that two tags describe.
#include "kit/readers/dispatch.h"

#include <gtest/gtest.h>

#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

constexpr std::uint16_t kThumbnailStart = 0x0201;
constexpr std::uint16_t kThumbnailLength = 0x0202;

Bytes SmallJpeg() {
  return JpegBuilder().Comment("small").Sos().Bare();
}

TEST(Dispatch, AnInvalidRangeGivesNothingForAnyReader) {
  const Bytes file = JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({Short(0x0112, 1)}));
  OpenedFile opened(file);
  ASSERT_NE(opened.Parse(kLxJpegSpace), nullptr);  // The control: the file itself can be read.
  const LxParseRange invalid[] = {{0, 0, 10, 9, 100}, {11, 0, 10, 20, 100}, {0, 0, 10, 101, 100}};
  LxMetadataItem current = {};
  for (const LxNamespaceDescriptor* space : {&kLxMakeSpace, &kLxModelSpace, &kLxThumbnailLengthSpace}) {
    EXPECT_EQ(opened.Parse(*space), nullptr);  // There is no current item to remember.
  }
  for (std::uint32_t code = 0; code <= 25; ++code) {
    for (const LxParseRange& range : invalid) {
      opened.context()->currentItem = &current;
      const LxNamespaceDescriptor descriptor = {"any", code, kLxTiffTags, 0};
      EXPECT_EQ(LxParseWithDescriptor(opened.cache(), range, opened.context(), descriptor), nullptr) << code;
      EXPECT_EQ(opened.context()->make, nullptr) << code;
      EXPECT_EQ(opened.context()->pendingThumbnailLength, 0u) << code;
    }
  }
}

// The start of a thumbnail, with its bytes.
TiffEntry Start(const Bytes& thumbnail = SmallJpeg()) {
  return {kThumbnailStart, 4, 1, [thumbnail](Order o, std::uint32_t at) { return Put32(at, o) + thumbnail; }};
}

TEST(Dispatch, AThumbnailsItemCarriesItsBytesWhicheverTagComesFirst) {
  const Bytes jpeg = SmallJpeg();
  for (const Order order : {kLittle, kBig}) {
    for (const bool lengthFirst : {false, true}) {
      SCOPED_TRACE(testing::Message() << order << lengthFirst);
      const TiffEntry length = Long(kThumbnailLength, static_cast<std::int64_t>(jpeg.size()));
      const PoolPtr pool = ReadPool(
          JpegBuilder().App1Exif(TiffBuilder(order)
                                     .Ifd0({Short(0x0112, 1)})
                                     .Ifd1(lengthFirst ? TiffEntries{length, Start()} : TiffEntries{Start(), length})));
      const auto streams = AllItems(*pool, "jpegh", "SOI");
      ASSERT_EQ(streams.size(), 2u) << DumpPool(*pool);
      const LxMetadataItem* thumbnail = streams[1];
      EXPECT_EQ(ValueOf(*thumbnail), jpeg);
      EXPECT_STREQ(thumbnail->firstChild->nameSpace, "jpegt");
      EXPECT_STREQ(thumbnail->firstChild->displayText, "small");
      // The main image's header stays as it is.
      EXPECT_EQ(ValueOf(*pool->root), Hex("FFD8"));
      EXPECT_TRUE(IsWellFormed(*pool));
    }
  }
}

// The second one has no length of its own, and the first one's is not its.
TEST(Dispatch, AThumbnailsLengthIsNotTheNextOnes) {
  const PoolPtr pool = ReadPool(TiffBuilder(kBig).Ifd0({Start(), Long(kThumbnailLength, 20)}).Ifd1({Start()}));
  const auto streams = AllItems(*pool, "jpegh", "SOI");
  ASSERT_EQ(streams.size(), 2u);
  EXPECT_EQ(streams[0]->valueLength, 20);
  EXPECT_EQ(streams[1]->valueLength, 2);
}

TEST(Dispatch, AThumbnailBeyondTheFileHasALengthAndNoBytes) {
  const auto file = [&](std::size_t length) {
    return TiffBuilder(kBig).Ifd0({Start(), Long(kThumbnailLength, static_cast<std::int64_t>(length))}).Build();
  };
  const std::size_t length = file(0).size() - 4;  // Below the file's size: a pointer that leads nowhere is not heeded.
  const PoolPtr pool = ReadPool(file(length));
  const auto streams = AllItems(*pool, "jpegh", "SOI");
  ASSERT_EQ(streams.size(), 1u);
  EXPECT_EQ(streams[0]->value, nullptr);
  EXPECT_GT(streams[0]->valueLength, 0);
}

TEST(Dispatch, WhatLeadsNowhereIsDeletedOnlyWhereItIsAnIfdPointer) {
  for (const Order order : {kLittle, kBig}) {
    const Bytes file = TiffBuilder(order).Ifd0({Raw(0x8769, 4, 1, 0x00FFFF00), Raw(0x8825, 4, 1, 0x00FFFF00),
                                                Undef(0x83BB, Text("no datasets")), Short(0x0112, 1)});
    const PoolPtr pool = ReadPool(file);
    EXPECT_EQ(DumpPool(*pool, "tiff"),
              "tiff ExifOffset long 16776960 (deleted)\n"
              "tiff GPSInfoIFD long 16776960 (deleted)\n"
              "tiff IptcNaa undef no datasets\n"
              "tiff Orientation short 1\n");
  }
}

}  // namespace
