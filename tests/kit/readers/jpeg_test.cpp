// The walk over JPEG segments and what their payloads become.
#include <gtest/gtest.h>

#include <vector>

#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/readers.h"
#include "tests/support/image_builders.h"
#include "tests/support/item_tree.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

Bytes SmallExif() {
  return TiffBuilder(kBig).Ifd0({Short(0x0112, 6)});
}
Bytes SmallResources() {
  return ResourceBuilder().Iptc(IptcBuilder().Add(25, "harbour"));
}

// The segments below the main image's SOI, as "APP1 DQT ...".
std::string SegmentsOf(const Bytes& file) {
  OpenedFile opened(file);
  const LxMetadataItem* root = opened.Parse(kLxJpegSpace);
  std::string out;
  for (const LxMetadataItem* item = root != nullptr ? root->firstChild : nullptr; item != nullptr; item = item->next) {
    out += (out.empty() ? "" : " ") + std::string(item->name);
  }
  EXPECT_TRUE(IsWellFormed(opened.pool()));
  return out;
}

TEST(Jpeg, EverySegmentIsAnItemWithItsPayloadBelowIt) {
  const Bytes file = JpegBuilder()
                         .App0Jfif()
                         .App1Exif(SmallExif())
                         .App1Xmp("<x:xmpmeta/>")
                         .App2FlashPix(Text("flash"))
                         .App2Icc(IccProfile("Wide"), 1, 2)
                         .App2Icc(Text("the second chunk"), 2, 2)
                         .App13(SmallResources())
                         .Comment("two\nlines");
  const PoolPtr pool = ReadPool(file);
  EXPECT_EQ(Shape(pool->root),
            "jpegh.SOI{jpeg.APP0{jfif.Data} jpeg.APP1{tiffh.IFDHeader{tiffh.IFD{tiff.Orientation}}} "
            "jpeg.APP1{xmp.XmpData} jpeg.APP2{fpxr.FpxrData} jpeg.APP2{icc.IccProfile} jpeg.APP2{icc.IccProfile} "
            "jpeg.APP13{ir.IptcNaa{iptc.Keywords}} jpeg.COM jpeg.DQT jpeg.SOF0 jpeg.DHT jpeg.SOS}");
  EXPECT_EQ(ValueOf(*Find(*pool, "xmp", "XmpData")), Text("<x:xmpmeta/>"));
  EXPECT_EQ(ValueOf(*Find(*pool, "fpxr", "FpxrData")), Text("flash"));
  EXPECT_EQ(ValueOf(*Find(*pool, "icc", "IccProfile")), IccProfile("Wide"));
  EXPECT_EQ(ValueOf(*Find(*pool, "jfif", "Data")).size(), 9u);
}

// The item covers the segment's header when a reader has read the rest, and never more than the segment.
enum Outcome { kRead, kDeleted, kUnread };

TEST(Jpeg, ARecognisedSegmentShrinksToItsHeader) {
  const struct {
    int app;
    const char* identifier;
    Bytes data;
    std::size_t length;
    Outcome outcome;
  } cases[] = {
      {1, "Exif", Filled(1) + SmallExif(), 4 + 4, kRead},
      {3, "Meta", Filled(1) + SmallExif(), 4 + 4, kRead},
      {1, "Exif", Filled(1) + Text("MM??"), 4 + 4, kDeleted},
      {1, "Exif", Bytes(), 7, kDeleted},  // No space for the padding: all 7 bytes are the header.
      {0, "JFIF", Filled(9), 4 + 3, kRead},
      {0, "JFIF", Filled(8), 4 + 3, kDeleted},
      {1, kLxXmpSegmentId, Text("<x/>"), 28 + 3, kRead},
      {1, kLxXmpSegmentId, Bytes(), 28 + 3, kRead},  // An empty packet is one.
      {2, "ICC_PROFILE", Hex("0101") + Text("x"), 11 + 5, kRead},
      {2, "ICC_PROFILE", Hex("0101"), 11 + 5, kDeleted},
      {13, "Picturist 3.0", SmallResources(), 13 + 3, kRead},
      {13, "Picturist 3.0", Text("not a block"), 13 + 3, kDeleted},
      {13, "Other", SmallResources(), 5 + 3, kRead},
      {13, "Other", Text("8BIM"), 5 + 3, kDeleted},
      // Named, but nothing reads them; or not named for that marker.
      {2, "Exif", Filled(1) + SmallExif(), 2 + 6 + SmallExif().size(), kUnread},
      {1, "exif", Filled(1) + SmallExif(), 2 + 6 + SmallExif().size(), kUnread},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.app << " " << c.identifier << " " << c.length);
    OpenedFile opened(JpegBuilder().App(c.app, c.identifier, c.data));
    const LxMetadataItem* segment = opened.Parse(kLxJpegSpace)->firstChild;
    EXPECT_STREQ(segment->displayText, c.identifier);
    EXPECT_EQ(segment->valueLength, static_cast<std::int32_t>(c.length));
    EXPECT_EQ((segment->flags & kLxDeleted) != 0, c.outcome == kDeleted);
    EXPECT_EQ(segment->firstChild != nullptr, c.outcome == kRead);
    EXPECT_EQ(segment->flags & (kLxClosed | kLxHidden), 0u);  // Records' flags are not the segments'.
    EXPECT_TRUE(IsWellFormed(opened.pool()));
  }
}

TEST(Jpeg, ImageResourcesAreReadUnderAnyUnnamedIdentifier) {
  const auto keywords = [](const Bytes& file) { return DumpPool(*ReadPool(file), "iptc"); };
  EXPECT_EQ(keywords(JpegBuilder().App(13, "Picturist 2.5", SmallResources())), "iptc Keywords ascii harbour\n");
  EXPECT_EQ(keywords(JpegBuilder().App(13, "x", SmallResources())), "iptc Keywords ascii harbour\n");
  // A signature that follows the segment is none of its own.
  OpenedFile opened(JpegBuilder().App(13, "abc", {}).Raw(Text("8BIM")).Bare());
  EXPECT_EQ(opened.Parse(kLxJpegSpace)->firstChild->flags & kLxDeleted, 0u);
  EXPECT_EQ(keywords(JpegBuilder().App(13, "Velto_CM", SmallResources())), "");
  EXPECT_EQ(keywords(JpegBuilder().App(12, "Picturist 2.5", SmallResources())), "");
  EXPECT_EQ(keywords(JpegBuilder().App(13, "Picturist 2.5", Text("x") + SmallResources())), "");
}

TEST(Jpeg, OfASegmentThatNoTableNamesTheConversionGetsTheHead) {
  const Bytes rest = Filled(60000, 'r');
  std::int64_t kept = 0;
  const PoolPtr pool = ReadPoolForConversion(JpegBuilder()
                                                 .App(4, "TEST", rest)
                                                 .Segment(0xE5, rest)
                                                 .App(1, kLxExtendedXmpSegmentId, rest)
                                                 .App(13, "x", SmallResources() + rest)
                                                 .App(15, std::string(256, 'i'), Filled(3))
                                                 .Comment("after")
                                                 .Build(),
                                             &kept);
  std::vector<std::int32_t> lengths;
  for (const LxMetadataItem* item = pool->root->firstChild; item != nullptr; item = item->next) {
    lengths.push_back(item->valueLength);
  }
  lengths.resize(6);
  EXPECT_EQ(lengths, (std::vector<std::int32_t>{263, 263, 2 + 35 + 60000, 2 + 2, 2 + 257 + 3, 2 + 5}));
  EXPECT_EQ(DumpPool(*pool, "iptc"), "iptc Keywords ascii harbour\n");
  EXPECT_LT(kept, 3 * 60000);
  // One that the file does not hold completely ends the walk, as in every pool.
  const Bytes whole = JpegBuilder().Dqt().Sof0().App(4, "TEST", rest).Bare();
  const PoolPtr cut = ReadPoolForConversion(Truncated(whole, whole.size() - 1), &kept);
  EXPECT_EQ(cut->root->firstChild->next->next, nullptr);
}

TEST(Jpeg, AnIdentifierIsOneTo256BytesBeforeAZeroByte) {
  const struct {
    const char* what;
    std::uint8_t marker;
    Bytes payload;
    std::int32_t length;
  } cases[] = {
      {"longest", 0xEF, Filled(256, 'a') + Filled(1), 256},
      {"too long", 0xEF, Filled(257, 'a') + Filled(1), 0},
      {"no zero byte", 0xE5, Text("abc"), 0},
      {"empty", 0xE5, Filled(1) + Text("abc"), 0},
      {"no payload", 0xE5, Bytes(), 0},
      {"not an APPn marker", 0xDB, Text("abc") + Filled(1), 0},
  };
  for (const auto& c : cases) {
    OpenedFile opened(JpegBuilder().Segment(c.marker, c.payload).Bare());
    LxJpegSegment segment = {};
    ASSERT_TRUE(LxReadJpegSegment(opened.cache(), 2, &segment)) << c.what;
    EXPECT_EQ(LxFindAppIdentifier(segment), c.length) << c.what;
  }
}

TEST(Jpeg, TheWalkGoesToTheScanAndKeepsWhatCameBeforeBadData) {
  const struct {
    const char* what;
    Bytes file;
    const char* segments;
  } cases[] = {
      {"the scan ends it", JpegBuilder().Sos().Comment("after").Bare(), "SOS"},
      {"an end of image does not", JpegBuilder().Eoi().Comment("after").Sos().Bare(), "EOI COM SOS"},
      {"restart markers have no length", JpegBuilder().Raw(Hex("FFD0FFD7")).Dqt().Bare(), "RST0 RST7 DQT"},
      {"no marker", JpegBuilder().Dqt().Raw(Hex("00FFDB0002")).Sos().Bare(), "DQT"},
      {"a marker that is none", JpegBuilder().Dqt().Raw(Hex("FFBF0002")).Sos().Bare(), "DQT"},
      {"a segment beyond the file's end", JpegBuilder().Dqt().Raw(Hex("FFE10003")).Bare(), "DQT"},
      {"one that ends with the file", JpegBuilder().Dqt().Raw(Hex("FFE1000341")).Bare(), "DQT APP1"},
      {"a length that counts less than itself", JpegBuilder().Raw(Hex("FFE10000")).Sos().Bare(), "APP1"},
      {"no start", Hex("FFD9FFDB0002"), ""},
  };
  for (const auto& c : cases) EXPECT_EQ(SegmentsOf(c.file), c.segments) << c.what;
}

TEST(Jpeg, SegmentsAreNamedAndCoverTheirBytesFromTheLengthFieldOn) {
  OpenedFile opened(JpegBuilder().Segment(0xFE, Text("com") + Filled(1) + Text("ment")).Raw(Hex("FFD0")).Bare());
  const LxMetadataItem* comment = opened.Parse(kLxJpegSpace)->firstChild;
  EXPECT_EQ(ValueOf(*comment), Put16(10) + Text("com") + Filled(1) + Text("ment"));
  EXPECT_EQ(comment->tagId, 0xFFFE);
  EXPECT_EQ(comment->typeCode, kLxTypeUndefined);
  EXPECT_NE(comment->flags & kLxBigEndianValue, 0u);
  EXPECT_STREQ(comment->displayText, "com");  // A text ends at its zero byte.
  EXPECT_EQ(comment->next->valueLength, 0);
}

TEST(Jpeg, AStreamBeyondItsRangeIsWalkedToTheScan) {
  // The thumbnail of IFD1 stands at the block's end and goes on after its segment.
  const Bytes tiff = TiffBuilder(kLittle).Ifd0({Short(0x0112, 1)}).Thumbnail(Hex("FFD8"));
  const PoolPtr pool = ReadPool(JpegBuilder().App1Exif(tiff).Comment("after"));
  EXPECT_EQ(DumpPool(*pool, "jpegt"),
            "jpegt COM undef after\njpegt DQT undef\njpegt SOF0 undef\njpegt DHT undef\n"
            "jpegt SOS undef\n");
}

}  // namespace
