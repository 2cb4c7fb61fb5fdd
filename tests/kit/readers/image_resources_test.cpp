// Image resource blocks: where they begin and end, what each holds, and the same result from all three containers.
#include <gtest/gtest.h>

#include <algorithm>

#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/dispatch.h"
#include "tests/support/image_builders.h"
#include "tests/support/item_tree.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

std::string Resources(const Bytes& file) {
  const PoolPtr pool = ParsePool(file);
  EXPECT_TRUE(IsWellFormed(*pool));
  return DumpPool(*pool, "ir");
}

Bytes InPsd(const Bytes& blocks) {
  return PsdBuilder().Resources(blocks);
}

// A small JPEG stream that begins and ends as a thumbnail does.
Bytes Thumbnail() {
  return JpegBuilder().Comment("small").Sof0(16, 12).Sos().Eoi().Bare();
}

TEST(ImageResources, NamesAndDataOfEveryParityArePaddedToEvenLengths) {
  for (const Container& container : kResourceContainers) {
    for (const std::size_t nameLength : {0u, 1u, 2u, 254u, 255u}) {
      for (const std::size_t dataLength : {0u, 1u, 2u, 5000u}) {
        SCOPED_TRACE(std::string(container.name) + " " + std::to_string(nameLength) + " " + std::to_string(dataLength));
        const Bytes data = Filled(dataLength, 'd');
        const Bytes blocks =
            ResourceBuilder().Block(0x0FA0, data, std::string(nameLength, 'n')).Block(0x040B, Text("http://a.b/"));
        const PoolPtr pool = ParsePool(container.around(blocks + Filled(1)));
        EXPECT_TRUE(IsWellFormed(*pool));
        const auto items = AllItems(*pool, "ir");
        ASSERT_GE(items.size(), 2u);
        const LxMetadataItem& unknown = *items[items.size() - 2];
        EXPECT_STREQ(unknown.name, " 0fa0");
        EXPECT_EQ(ValueOf(unknown), data);
        EXPECT_EQ(unknown.flags & (kLxBigEndianValue | kLxOwnsName), kLxBigEndianValue | kLxOwnsName);
        EXPECT_STREQ(items.back()->name, "URL");
        EXPECT_STREQ(items.back()->displayText, "http://a.b/");
        EXPECT_EQ(items.back()->flags & kLxBigEndianValue, kLxBigEndianValue);
      }
    }
  }
}

TEST(ImageResources, ABlockIsReadWhileMoreThanTwelveBytesAreLeft) {
  const Bytes blocks = ResourceBuilder().Block(0x040A, {1}).Block(0x0FA0, {});
  for (const Container& container : kResourceContainers) {
    EXPECT_EQ(Resources(container.around(blocks)), "ir CopyrightFlag undef 1\n") << container.name;
    EXPECT_NE(Resources(container.around(blocks + Filled(1))).find(" 0fa0"), std::string::npos) << container.name;
  }
}

TEST(ImageResources, TheWalkEndsAtWhatIsNoBlock) {
  const Bytes first = ResourceBuilder().Block(0x040A, {1});
  const Bytes good = first + ResourceBuilder().Block(0x0FA0, Text("two")).Block(0x0FA1, Text("three")).Build();
  const std::size_t second = first.size();
  const std::string one = "ir CopyrightFlag undef 1\n";
  const std::string all = one + "ir  0fa0 undef 116 119 111\nir  0fa1 undef three\n";
  ASSERT_EQ(Resources(InPsd(good)), all);

  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(Resources(InPsd(WithByte(good, second + i, '?'))), one) << i;
  // Data up to the file's last byte is read, one byte more is not; sums that wrap are no way round that.
  const std::size_t sizeField = second + 8, dataStart = second + 12;
  const auto fits = static_cast<std::uint32_t>(InPsd(good).size() - (34 + dataStart));
  EXPECT_EQ(AllItems(*ParsePool(InPsd(WithBytes(good, sizeField, Put32(fits)))), "ir").back()->valueLength,
            static_cast<std::int32_t>(fits));
  for (const std::uint32_t size : {fits + 1, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFF0u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Resources(InPsd(WithBytes(good, sizeField, Put32(size)))), one) << size;
  }
  // A name that reaches beyond the file.
  EXPECT_EQ(Resources(InPsd(WithByte(Truncated(good, dataStart + 4), second + 6, 255))), one);
}

TEST(ImageResources, DataBeyondTheSegmentIsReadWhenTheFileHasIt) {
  // The size reaches over the segment's end into the following ones.
  const auto bent = [](const Bytes& block) { return WithBytes(block, 8, Put32(block.size() - 12 + 40)); };
  const Bytes caption = ResourceBuilder().Block(0x03F0, Text("plain")).Raw({});
  const PoolPtr whole = ParsePool(JpegBuilder().App13(caption));
  EXPECT_EQ(Find(*whole, "ir", "Caption")->valueLength, 5);
  const PoolPtr over = ParsePool(JpegBuilder().App13(bent(caption)));
  EXPECT_TRUE(IsWellFormed(*over));
  EXPECT_EQ(Find(*over, "ir", "Caption")->valueLength, 6 + 40);
  // Datasets are not read beyond the limit.
  const Bytes iptc = ResourceBuilder().Iptc(IptcBuilder().Add(25, "harbours"));
  EXPECT_EQ(Shape(AllItems(*ParsePool(JpegBuilder().App13(bent(iptc))), "ir")[0]), "-ir.IptcNaa");
}

TEST(ImageResources, WhatABlockHoldsStandsBelowIt) {
  for (const Order order : {kLittle, kBig}) {
    const Bytes blocks = ResourceBuilder()
                             .Iptc(IptcBuilder().Add(25, "harbour"))
                             .Exif(TiffBuilder(order).Ifd0({Short(0x0112, 6)}).Exif({Ratl(0x829A, 1, 250)}))
                             .Block(0x0423, TiffBuilder(order == kBig ? kLittle : kBig).Ifd0({Short(0x0112, 3)}))
                             .Xmp("<x/>")
                             .Thumbnail(Thumbnail())
                             .Block(0x0406, Hex("0006 0000 0000"));
    for (const Container& container : kResourceContainers) {
      SCOPED_TRACE(container.name);
      const PoolPtr pool = ParsePool(container.around(blocks));
      EXPECT_TRUE(IsWellFormed(*pool));
      EXPECT_EQ(Shape(Find(*pool, "ir", "")),
                "ir.IptcNaa{iptc.Keywords} "
                "ir.ExifData1{tiffh.IFDHeader{tiffh.IFD{tiff.Orientation tiff.ExifOffset{exif.ExposureTime}}}} "
                "ir.ExifData3{tiffh.IFDHeader{tiffh.IFD{tiff.Orientation}}} "
                "ir.XMPMetadata{xmp.XmpData} "
                "ir.Thumbnail{jpegh.SOI{jpegt.COM jpegt.SOF0 jpegt.SOS}} "
                "ir.JPEGQuality");
      EXPECT_STREQ(Find(*pool, "ir", "JPEGQuality")->displayText, "10");
      EXPECT_EQ(ValueOf(*Find(*pool, "xmp", "XmpData")), Text("<x/>"));
      // Searches do not enter a thumbnail, so its frame never passes for the image's.
      EXPECT_EQ(Find(*pool, "jpegt", ""), nullptr);
      // Each block in its own byte order; a search by name finds the first.
      EXPECT_EQ(ValueOf(*Find(*pool, "tiff", "Orientation")), Put16(6, order));
    }
  }
}

TEST(ImageResources, ABlockWithoutWhatItShouldHoldIsDeleted) {
  const Bytes exif = TiffBuilder(kBig).Ifd0({Short(0x0112, 6)});
  const struct {
    const char* what;
    std::uint16_t id;
    Bytes good, bad;
  } cases[] = {
      {"datasets", 0x0404, IptcBuilder().Add(25, "x"), IptcBuilder().Raw({0x1D}).Add(25, "x")},
      {"a TIFF header", 0x0422, exif, WithByte(exif, 1, 'I')},
      {"a JPEG stream", 0x040C, Filled(28) + Thumbnail(), Filled(27) + Thumbnail()},
      {"a thumbnail's header", 0x040C, Filled(28) + Thumbnail(), Filled(27)},
  };
  for (const auto& c : cases) {
    for (const Container& container : kResourceContainers) {
      SCOPED_TRACE(std::string(c.what) + " in " + container.name);
      const auto shape = [&](const Bytes& data) {
        const PoolPtr pool = ParsePool(container.around(ResourceBuilder().Block(c.id, data).Block(0x040A, {1})));
        EXPECT_TRUE(IsWellFormed(*pool));
        return Shape(AllItems(*pool, "ir")[0]);
      };
      EXPECT_NE(shape(c.good).find('{'), std::string::npos);
      EXPECT_EQ(shape(c.bad).substr(0, 4), "-ir.");
      EXPECT_EQ(shape(c.bad).find('{'), std::string::npos);
    }
  }
}

// A resource's own thumbnail has no length tag; it waits for one, until another stream takes its place.
TEST(ImageResources, AThumbnailOfExifInAResourceHasItsBytesAndTheResourcesOwnNone) {
  const Bytes jpeg = Thumbnail();
  const Bytes exif = TiffBuilder(kBig).Ifd0({Short(0x0112, 1)}).Thumbnail(jpeg);
  const struct {
    Bytes blocks, last;
  } cases[] = {{ResourceBuilder().Exif(exif), jpeg},
               {ResourceBuilder().Thumbnail(jpeg), Hex("FFD8")},
               {ResourceBuilder().Thumbnail(jpeg).Exif(exif), jpeg}};
  for (const auto& c : cases) {
    const PoolPtr pool = ParsePool(InPsd(c.blocks));
    EXPECT_TRUE(IsWellFormed(*pool));
    EXPECT_EQ(ValueOf(*AllItems(*pool, "jpegh", "SOI").back()), c.last);
  }
}

TEST(ImageResources, NestingEndsAtTheLastLevelThatWalksReach) {
  // Exif in a resource in a TIFF tag in Exif ...: four levels a turn. Beyond the bound the walk goes on where it can.
  for (const int turns : {6, 7, 8, 40}) {
    Bytes tiff = TiffBuilder(kBig).Ifd0({Short(0x0112, 1)});
    for (int i = 0; i < turns; ++i) {
      tiff = TiffBuilder(kBig).Ifd0({Undef(0x8649, ResourceBuilder().Exif(tiff)), Short(0x0128, 2)});
    }
    const PoolPtr pool = ParsePool(tiff);
    ASSERT_TRUE(IsWellFormed(*pool)) << turns;
    const auto reached = static_cast<std::size_t>(std::min(turns, 7));
    EXPECT_EQ(AllItems(*pool, "ir", "ExifData1").size(), reached) << turns;
    EXPECT_EQ(AllItems(*pool, "tiff", "ResolutionUnit").size(), reached) << turns;
  }
}

}  // namespace
