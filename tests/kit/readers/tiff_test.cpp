// The IFD reader, in both byte orders.
#include <gtest/gtest.h>

#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"
#include "tests/support/image_builders.h"
#include "tests/support/item_tree.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

class Tiff : public testing::TestWithParam<Order> {
 protected:
  static PoolPtr Read(const TiffBuilder& tiff) { return ReadPool(tiff.Build()); }
  static TiffBuilder Builder() { return TiffBuilder(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(BothOrders, Tiff, testing::Values(kLittle, kBig),
                         [](const auto& order) { return order.param == kBig ? "Big" : "Little"; });

// The names of the "tiff" entries of the first IFD, as they were read.
std::string EntriesOf(const LxMetadataPool& pool) {
  std::string out;
  const LxMetadataItem* ifd = pool.root != nullptr ? pool.root->firstChild : nullptr;
  for (const LxMetadataItem* item = ifd != nullptr ? ifd->firstChild : nullptr; item != nullptr; item = item->next) {
    out += (out.empty() ? "" : "|") + std::string(item->name);
  }
  return out;
}

TEST_P(Tiff, PointersLeadToTheIfdsBelowThem) {
  const PoolPtr pool = Read(Builder()
                                .Ifd0({Ascii(0x010F, "Example"), Short(0x0112, 6)})
                                .Gps({Ratl(0x0006, 25, 2)})
                                .Exif({Ratl(0x829A, 1, 250), Ascii(0x9003, "2024:06:21 18:30:05")})
                                .Interop({Ascii(0x0001, "R98")})
                                .Ifd1({Short(0x0112, 1)}));
  EXPECT_EQ(Shape(pool->root),
            "tiffh.IFDHeader{tiffh.IFD{tiff.Make tiff.Orientation tiff.GPSInfoIFD{gps.GPSAltitude} "
            "tiff.ExifOffset{exif.ExposureTime exif.DateTimeOriginal "
            "exif.InteroperabilityIFDPointer{interop.InteroperabilityIndex}}} tiffh.IFD{tiff.Orientation}}");
  for (const LxMetadataItem* item : AllItems(*pool)) {
    EXPECT_EQ(LxItemOrder(item), GetParam()) << item->name;
    EXPECT_EQ((item->flags & kLxEndOfRun) != 0, std::string("IFD") == item->name) << item->name;
  }
  // IFD1 is in the tree, but no search reaches it.
  EXPECT_STREQ(Find(*pool, "tiff", "Orientation")->displayText, "6");
  EXPECT_EQ(Find(*pool, "tiff", "Orientation", "1"), nullptr);
}

TEST_P(Tiff, ValuesOfEveryTypeAreTheFilesBytes) {
  const std::uint16_t kTag = 0xC123;  // No dictionary knows it.
  const struct {
    TiffEntry entry;
    std::size_t length;
    std::vector<std::uint32_t> elements;
  } cases[] = {
      {Byte(kTag, {1, 2, 3, 4, 5}), 5, {1, 2, 3, 4, 5}},
      {AsciiBytes(kTag, "abcdef"), 6, {'a', 'b', 'c', 'd', 'e', 'f'}},
      {Short(kTag, {0x0102, 0xFFFE}), 4, {0x0102, 0xFFFE}},
      {Short(kTag, {1, 2, 3}), 6, {1, 2, 3}},
      {Long(kTag, {1, 0xFFFFFFFF}), 8, {1, 0xFFFFFFFF}},
      {Ratl(kTag, {1, 2, 3, 4}), 16, {1, 2, 3, 4}},
      {Numbers(kTag, 6, {-1, 5}), 2, {255, 5}},
      {Numbers(kTag, 8, {-2}), 2, {0xFFFE}},
      {SRatl(kTag, -1, 3), 8, {0xFFFFFFFF, 3}},
      {Float(kTag, 1.5f), 4, {0x3FC00000}},
      {Double(kTag, 1.5), 8, {}},
      {Numbers(kTag, 13, {9}), 4, {9}},
      {Byte(kTag, {}), 0, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.entry.type << " x " << c.entry.count);
    const PoolPtr pool = Read(Builder().Ifd0({Short(0x0112, 1), c.entry, Short(0x0128, 2)}));
    EXPECT_EQ(EntriesOf(*pool), "Orientation| c123|ResolutionUnit");
    const LxMetadataItem* item = Find(*pool, "tiff", " c123");
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->typeCode, c.entry.type);
    EXPECT_EQ(item->valueLength, static_cast<std::int32_t>(c.length));
    EXPECT_NE(item->value, nullptr);
    for (std::size_t i = 0; i < c.elements.size(); ++i) {
      EXPECT_EQ(LxGetValueAt(item, static_cast<std::int32_t>(i)), c.elements[i]) << i;
    }
    EXPECT_TRUE(IsWellFormed(*pool));
  }
}

TEST_P(Tiff, OfALargeValueThatTheConversionDoesNotUseItGetsTheHead) {
  const Bytes large = Filled(100000, 'v');
  std::int64_t kept = 0;
  const PoolPtr pool = ReadPoolForConversion(
      Builder().Ifd0({Byte(0x010E, large), Undef(0x935C, large), Byte(0xFDE8, large), Byte(0xFDE9, Filled(4096))}),
      &kept);
  const LxMetadataItem* item = pool->root->firstChild->firstChild;
  for (const std::int32_t length : {100000, 512, 512, 4096}) {
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->valueLength, length);
    item = item->next;
  }
  EXPECT_EQ(pool->hasLayers, 1);
  EXPECT_LT(kept, 150000);
  // One that the file does not hold completely ends the IFD, as in every pool.
  const TiffBuilder beyond = Builder().Ifd0({Raw(0xFDE8, 7, 100000, 8), Short(0x0112, 6)});
  EXPECT_EQ(EntriesOf(*ReadPoolForConversion(beyond, &kept)), EntriesOf(*Read(beyond)));
}

TEST_P(Tiff, BadEntriesEndTheirIfdAndLeaveWhatCameBefore) {
  const TiffEntry first = Short(0x0112, 6), last = Short(0x0128, 2);
  const struct {
    const char* what;
    TiffEntry entry;
    const char* names;
  } cases[] = {
      {"control", Ascii(0x010E, "a description"), "Orientation|ImageDescription|ResolutionUnit"},
      {"type 0", Raw(0x010E, 0, 1, 0), "Orientation"},
      {"type 13 is the last", Raw(0x010E, 13, 1, 0), "Orientation|ImageDescription|ResolutionUnit"},
      {"type 14", Raw(0x010E, 14, 1, 0), "Orientation"},
      {"a value beyond the end", Raw(0x010E, 2, 100, 20000), "Orientation| 010e"},
      {"a value that ends beyond the end", Raw(0x010E, 2, 20000, 8), "Orientation| 010e"},
      {"an offset near 2^32", Raw(0x010E, 2, 5, 0xFFFFFFF8), "Orientation| 010e"},
      {"a count whose bytes wrap to 8", Raw(0x010E, 4, 0x40000002, 8), "Orientation| 010e"},
      {"a count whose bytes wrap to 0", Raw(0x010E, 5, 0x20000000, 8), "Orientation| 010e"},
  };
  for (const auto& c : cases) {
    const PoolPtr pool = ParsePool(Builder().Ifd0({first, c.entry, last}));
    EXPECT_EQ(EntriesOf(*pool), c.names) << c.what;
    EXPECT_TRUE(IsWellFormed(*pool)) << c.what;
    for (const LxMetadataItem* unnamed : AllItems(*pool, "tiff", " 010e")) EXPECT_EQ(unnamed->value, nullptr) << c.what;
  }
}

TEST_P(Tiff, AnIfdHasOneToAThousandEntries) {
  for (const std::size_t count : {std::size_t{1}, std::size_t{1000}, std::size_t{1001}}) {
    OpenedFile opened(Builder().Ifd0(TiffEntries(count, Short(0x0112, 1))).Build());
    const LxMetadataItem* ifd = opened.Parse(kLxTiffSpace)->firstChild;
    ASSERT_NE(ifd, nullptr);
    EXPECT_EQ(AllItems(opened.pool(), "tiff").size(), count <= 1000 ? count : 0);
    // One with a bad count stays, empty.
    EXPECT_EQ(ifd->valueLength, count <= 1000 ? static_cast<std::int32_t>(12 * count + 6) : 0);
    EXPECT_EQ(ifd->value != nullptr, count <= 1000);
  }
  OpenedFile empty(Builder().Ifd0({}).Build());
  EXPECT_EQ(empty.Parse(kLxTiffSpace)->firstChild->firstChild, nullptr);
}

TEST_P(Tiff, AChainEndsAtItsEndMarkOrAfterEightIfds) {
  const struct {
    const char* what;
    std::uint32_t next;
    std::size_t ifds;
  } cases[] = {{"none", 0, 1}, {"all bits", 0xFFFFFFFF, 1}, {"just after the file", 26, 1}, {"back to itself", 8, 8}};
  for (const auto& c : cases) {
    OpenedFile opened(Builder().Ifd0({Short(0x0112, 1)}).LastNext(c.next).Build());
    (void)opened.Parse(kLxTiffSpace);
    EXPECT_EQ(AllItems(opened.pool(), "tiffh", "IFD").size(), c.ifds) << c.what;
    EXPECT_EQ(AllItems(opened.pool(), "tiff").size(), c.ifds) << c.what;
  }
}

TEST_P(Tiff, AnIfdIsNotEnteredFromItselfAndReadTwiceWhereTwoPointersShareIt) {
  const PoolPtr own = Read(Builder().Ifd0({Raw(0x014A, 4, 1, 8), Raw(0x8769, 4, 1, 8)}));
  EXPECT_EQ(AllItems(*own, "tiff").size(), 2u);
  EXPECT_EQ(AllItems(*own, "exif").size(), 0u);
  const PoolPtr shared = Read(Builder().Ifd0({Raw(0x8769, 4, 1, 38), Raw(0x8825, 4, 1, 38)}).NextIfd({Short(1, 1)}));
  EXPECT_EQ(AllItems(*shared, "exif").size(), 1u);
  EXPECT_EQ(AllItems(*shared, "gps").size(), 1u);
}

TEST_P(Tiff, ABadHeaderGivesNothing) {
  const Bytes good = Builder().Ifd0({Short(0x0112, 1)});
  const auto read = [](const Bytes& file) {
    OpenedFile opened(file);
    return opened.Parse(kLxTiffSpace) != nullptr;
  };
  EXPECT_TRUE(read(good));
  EXPECT_TRUE(read(Truncated(good, 8)));  // The header alone is one.
  EXPECT_FALSE(read(Truncated(good, 7)));
  EXPECT_FALSE(read(WithByte(good, 0, 'I' ^ 'M' ^ good[0])));
  EXPECT_FALSE(read(WithBytes(good, 0, Text("XX"))));
  EXPECT_FALSE(read(WithBytes(good, 2, Put16(43, GetParam()))));
  // A first IFD that lies outside, or whose address would wrap to lie inside, is none.
  for (const std::uint32_t first : {0x00FFFFFFu, 0xFFFFFFFFu, 0xFFFFFFF8u}) {
    const Bytes bent = WithBytes(good, 4, Put32(first, GetParam()));
    EXPECT_EQ(AllItems(*ReadPool(JpegBuilder().Comment("in front").App1Exif(bent)), "tiffh").size(), 1u) << first;
  }
}

TEST_P(Tiff, ASegmentsBlockIsReadWithinItsLimits) {
  // IFDs lie within the block; values anywhere in the file, counted from the block's header.
  const Bytes tiff = Builder().Ifd0({Raw(0x010E, 2, 10, 38 + 4), Raw(0x8769, 4, 1, 38 + 4)});
  ASSERT_EQ(tiff.size(), 38u);
  const PoolPtr pool = ParsePool(JpegBuilder().App1Exif(tiff).Comment("far beyond"));
  ASSERT_NE(Find(*pool, "tiff", "ImageDescription"), nullptr);
  EXPECT_STREQ(Find(*pool, "tiff", "ImageDescription")->displayText, "far beyond");
  EXPECT_EQ(Find(*pool, "tiff", "ExifOffset"), nullptr);
}

TEST_P(Tiff, SubIfdsAreReadOneByOneAndSearchesDoNotEnterThem) {
  const TiffEntries one = {Short(0x0112, 3)}, two = {Short(0x0112, 8), Short(0x0103, 7)};
  const std::pair<std::vector<TiffEntries>, const char*> cases[] = {
      {{one}, "tiff.Orientation"},
      {{one, two}, "tiff.Orientation tiff.Orientation tiff.Compression"},
      {{two, {}, one}, "tiff.Orientation tiff.Compression tiff.Orientation"}};
  for (const auto& [ifds, children] : cases) {
    const PoolPtr pool = Read(Builder().Ifd0({SubIfds(0x014A, ifds), Short(0x0128, 2)}));
    const LxMetadataItem* pointer = Find(*pool, "tiff", "SubIFDs");
    ASSERT_NE(pointer, nullptr);
    EXPECT_EQ(Shape(pointer->firstChild), children);
    EXPECT_EQ(Find(*pool, "tiff", "Orientation"), nullptr);
    EXPECT_NE(Find(*pool, "tiff", "ResolutionUnit"), nullptr);
  }
  const PoolPtr nowhere = Read(Builder().Ifd0({Long(0x014A, {0x00FFFFFF, 0xFFFFFFFF}), Short(0x0128, 2)}));
  EXPECT_EQ(AllItems(*nowhere, "tiff", "SubIFDs")[0]->flags & kLxDeleted, kLxDeleted);
}

TEST_P(Tiff, AHeadersByteOrderStaysInForceAfterIt) {
  const TiffBuilder other = TiffBuilder(GetParam() == kBig ? kLittle : kBig).Ifd0({Ascii(0x010F, "inner")});
  const auto read = [](const Bytes& inner) {
    return ReadPool(Builder().Ifd0({Undef(0x8649, ResourceBuilder().Exif(inner)), Raw(0x0112, 0x0300, 1, 0)}));
  };
  // Seen from the other order, the last entry's type is SHORT; from the file's own it is none.
  EXPECT_EQ(EntriesOf(*read(other)), "PicturistMetadata| 1201");
  EXPECT_EQ(EntriesOf(*read(Builder().Ifd0({Ascii(0x010F, "inner")}))), "PicturistMetadata");
}

TEST_P(Tiff, EntriesOutOfOrderFindTheirRecords) {
  const PoolPtr pool = Read(Builder().Ifd0({Short(0x0128, 2), Short(0x0112, 6), Ascii(0xC4A5, "x"), Short(0x0112, 1),
                                            Short(0x00FE, 0), Short(0x0000, 0), Ascii(0x0110, "M")}));
  EXPECT_EQ(EntriesOf(*pool), "ResolutionUnit|Orientation|PrintIM|Orientation|NewSubfileType| 0000|Model");
}

// In these the reader goes on searching after the record found last, which finds the first record of an id only if
// there is just one.
TEST(TiffDictionaries, HoldEachIdOnce) {
  for (const LxTagRecord* dictionary : {kLxTiffTags, kLxExifTags, kLxGpsTags}) {
    for (const LxTagRecord* record = dictionary; record->name != nullptr; ++record) {
      EXPECT_EQ(LxFindTagById(record->id, dictionary), record) << record->name;
    }
  }
}

}  // namespace
