// Bad input is normal input: cut and bent files, graphs that lead back into themselves, work without end, failing
// memory. What is read always stands as a sound pool, and no file costs more than its size allows.
#include <gtest/gtest.h>

#include <chrono>

#include "kit/base/memory.h"
#include "kit/model/pool_walk.h"
#include "kit/readers/dispatch.h"
#include "kit/readers/read_file.h"
#include "tests/support/failing_memory.h"
#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

std::uint32_t Size(const Bytes& bytes) {
  return static_cast<std::uint32_t>(bytes.size());
}

// A JPEG file with everything that can be below everything else, small enough to bend each of its bytes.
Bytes RichJpeg(Order order) {
  const Bytes thumbnail = JpegBuilder().App1Exif(TiffBuilder(order).Ifd0({Short(0x0112, 3)})).Comment("t").Sos().Bare();
  const TiffBuilder tiff =
      TiffBuilder(order)
          .Ifd0({Ascii(0x010E, "a description"), Ascii(0x010F, "Canon"), Ascii(0x0110, "Canon EOS"), Short(0x0112, 6),
                 SubIfds(0x014A, {{Short(0x0103, 7)}, {Short(0x0103, 8)}}), Byte(0x02BC, Text("<x/>  ")),
                 Undef(0x83BB, IptcBuilder().Add(25, "tree"))})
          .Exif({Ratl(0x829A, 1, 250), UndefIfd(0x927C, Bytes(), {Short(1, {1, 2, 3}), Ascii(7, "firmware")}),
                 Undef(0x9286, Text("UNICODE") + Filled(1) + Hex("00410042")), SRatl(0x9204, -1, 3)})
          .Interop({Ascii(1, "R98")})
          .Gps({Ratl(2, {1, 1, 2, 1, 3, 1}), Ascii(3, "W")})
          .Ifd1({Short(0x0112, 1)})
          .Thumbnail(thumbnail);
  const ResourceBuilder resources = ResourceBuilder()
                                        .Iptc(IptcBuilder().Add(25, "harbour").Add(221, "unknown").Add(5, "\xE9t\xE9"))
                                        .Exif(TiffBuilder(order).Ifd0({Ascii(0x010F, "inner")}))
                                        .Thumbnail(thumbnail)
                                        .Xmp("<y/>");
  return JpegBuilder()
      .App0Jfif()
      .App1Exif(tiff)
      .App1Xmp("<x:xmpmeta/>")
      .App2Icc(IccProfile("Wide"))
      .App13(resources)
      .Comment("comment");
}

// A TIFF file with sub-IFDs and a block of the other byte order, which comes last: its order stays in force behind it.
Bytes RichTiff(Order order) {
  const TiffBuilder inner = TiffBuilder(order == kBig ? kLittle : kBig).Ifd0({Ascii(0x010F, "inner")});
  return TiffBuilder(order).Ifd0(
      {Short(0x0100, 4), Short(0x0101, 4), Short(0x0103, 6), Short(0x0106, 6), Long(0x0207, 8),
       SubIfd(0x014A, {SubIfd(0x014A, {Short(0x0103, 1)})}), Double(0xC001, 1.5), Float(0xC002, 2.5),
       Undef(0x8649, ResourceBuilder().Iptc(IptcBuilder().Add(120, "caption")).Exif(inner))});
}

TEST(Bounds, EveryPrefixReadsIntoASoundPool) {
  const Bytes files[] = {RichJpeg(kLittle), RichJpeg(kBig), RichTiff(kLittle), RichTiff(kBig)};
  for (const Bytes& file : files) {
    ASSERT_GT(AllItems(*ParsePool(file)).size(), 16u);
    for (std::size_t length = 0; length < file.size(); ++length) {
      ASSERT_TRUE(IsWellFormed(*ParsePool(Truncated(file, length)))) << "cut to " << length;
    }
  }
}

TEST(Bounds, EveryChangedByteReadsIntoASoundPool) {
  for (Bytes file : {RichJpeg(kLittle), RichJpeg(kBig), RichTiff(kLittle), RichTiff(kBig)}) {
    for (std::size_t at = 0; at < file.size(); ++at) {
      const std::uint8_t before = file[at];
      for (const int value : {0x00, 0x01, 0x7F, 0xFF, before ^ 0x10, before + 1}) {
        file[at] = static_cast<std::uint8_t>(value);
        ASSERT_TRUE(IsWellFormed(*ParsePool(file))) << "byte " << at << " to " << value;
      }
      file[at] = before;
    }
  }
}

TEST(Bounds, FailingMemoryLeavesASoundPoolAndNothingElse) {
  for (const Bytes& file : {RichJpeg(kLittle), RichTiff(kBig),
                            PsdBuilder().Resources(ResourceBuilder().Iptc(IptcBuilder().Add(25, "x"))).Build()}) {
    for (const Failing failing : {Failing::kOnce, Failing::kFromThenOn}) {
      for (int nth = 1;; ++nth) {
        SCOPED_TRACE(testing::Message() << "allocation " << nth);
        FailingMemory memory(nth, failing);
        {
          PoolPtr pool(LxNewPool());
          FailingStream stream(file);
          const LxResult status = pool != nullptr ? LxParseImageFile(&stream, pool.get()) : kLxOutOfMemory;
          if (pool != nullptr) {
            ASSERT_TRUE(IsWellFormed(*pool));
            ASSERT_TRUE(status == kLxOk || pool->root == nullptr);
          }
        }
        ASSERT_EQ(memory.liveBlocks(), 0);
        if (!memory.hasFailed()) break;
      }
    }
  }
}

// A reading of a hostile file: sound, within its budget, and fast even with sanitizers.
void ExpectBounded(const Bytes& file, const char* what) {
  const auto begin = std::chrono::steady_clock::now();
  const PoolPtr pool = ParsePool(file);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  EXPECT_TRUE(IsWellFormed(*pool)) << what;
  EXPECT_LE(AllItems(*pool).size(), file.size() / kLxFileBytesPerItem + kLxItemsAtLeast) << what;
  EXPECT_LT(took.count(), 0.5 + static_cast<double>(file.size()) * 4e-6) << what;
}

// 60 KB in which every IFD's pointers lead to every IFD: without a bound, width^depth paths.
Bytes IfdsThatPointAtEachOther(Order order, const std::vector<std::uint16_t>& pointers) {
  constexpr std::uint32_t kIfds = 50;
  const std::uint32_t length = 12 * kIfds + 6;
  Bytes file = Text(order == kBig ? "MM" : "II") + Put16(42, order) + Put32(8, order);
  for (std::uint32_t ifd = 0; ifd < kIfds; ++ifd) {
    TiffEntries entries;
    for (std::uint32_t i = 0; i < kIfds; ++i) {
      entries.push_back(Raw(pointers[i % pointers.size()], 4, 1, 8 + length * ((ifd + i) % kIfds)));
    }
    file += EncodeIfd(order, entries, Size(file), 8 + length * ((ifd + 1) % kIfds));
  }
  return file;
}

TEST(Bounds, IfdsThatLeadBackIntoThemselvesEnd) {
  for (const Order order : {kLittle, kBig}) {
    for (const std::vector<std::uint16_t>& pointers :
         {std::vector<std::uint16_t>{0x014A}, {0x8769}, {0x8825}, {0x8769, 0xA005, 0x014A, 0x8825}}) {
      ExpectBounded(IfdsThatPointAtEachOther(order, pointers), "a graph of IFDs");
    }
    // An IFD that is its own sub-IFD is not entered again; one that two pointers share is read twice.
    const PoolPtr own = ParsePool(TiffBuilder(order).Ifd0({Raw(0x014A, 4, 1, 8), Raw(0x8769, 4, 1, 8)}));
    EXPECT_EQ(AllItems(*own, "tiff").size(), 2u);
    EXPECT_EQ(AllItems(*own, "exif").size(), 0u);
    const PoolPtr shared =
        ParsePool(TiffBuilder(order).Ifd0({Raw(0x8769, 4, 1, 38), Raw(0x8825, 4, 1, 38)}).NextIfd({Short(0x0001, 1)}));
    EXPECT_EQ(AllItems(*shared, "exif").size(), 1u);
    EXPECT_EQ(AllItems(*shared, "gps").size(), 1u);
  }
}

TEST(Bounds, NestingEndsWhereWalksDo) {
  // A tower of sub-IFDs, each the only entry of the one above.
  TiffEntries tower = {Short(0x0103, 1)};
  for (int i = 0; i < 60; ++i) tower = {SubIfd(0x014A, tower)};
  const PoolPtr pool = ParsePool(TiffBuilder(kBig).Ifd0(tower));
  EXPECT_TRUE(IsWellFormed(*pool));
  EXPECT_EQ(AllItems(*pool).size(), static_cast<std::size_t>(kLxMaxWalkDepth));
  // Blocks within blocks: a resource with Exif with a resource with Exif ...
  Bytes block = TiffBuilder(kLittle).Ifd0({Short(0x0112, 1)});
  for (int i = 0; i < 12; ++i) {
    block = TiffBuilder(kLittle).Ifd0({Undef(0x8649, ResourceBuilder().Exif(block))});
  }
  EXPECT_TRUE(IsWellFormed(*ParsePool(block)));
}

TEST(Bounds, StreamsInSegmentsAreNotWalkedTwiceEach) {
  // Every segment's Exif block has a thumbnail that begins at the segment itself, and every such stream is walked to
  // the file's end: 2^n walks.
  JpegBuilder jpeg;
  for (int i = 0; i < 500; ++i) {
    const TiffBuilder tiff =
        TiffBuilder(kBig).Ifd0({Short(0x0112, 1)}).Ifd1({{0x0201, 4, 1, [](Order o, std::uint32_t at) {
                                                            return Put32(at, o) + Hex("FFD8");
                                                          }}});
    jpeg.App1Exif(tiff);
  }
  ExpectBounded(jpeg, "streams in segments");
  // The same with the streams all at the file's start.
  JpegBuilder again;
  for (int i = 0; i < 500; ++i) {
    Bytes resources = ResourceBuilder().Thumbnail(Hex("FFD8"));
    again.App13(resources);
  }
  ExpectBounded(again, "streams in resources");
}

TEST(Bounds, ValuesOverTheSameBytesEnd) {
  const std::uint32_t kLarge = 60000;
  for (const std::uint16_t type : {std::uint16_t{2}, std::uint16_t{3}, std::uint16_t{5}, std::uint16_t{7}}) {
    const std::uint32_t element = type == 3 ? 2 : type == 5 ? 8 : 1;
    TiffEntries entries;
    for (std::uint16_t i = 0; i < 1000; ++i) {
      const auto tag = static_cast<std::uint16_t>(i % 2 == 0 ? 0x010E : 0xC000 + i);
      entries.push_back(Raw(tag, type, kLarge / element, 20u + i));
    }
    ExpectBounded(TiffBuilder(kBig).Ifd0(entries).Build() + Filled(kLarge, 0xE9), "a thousand entries");
  }
  // Comments, each of which is copied, reached through many streams.
  JpegBuilder comments;
  for (int i = 0; i < 30; ++i) {
    comments.App1Exif(
        TiffBuilder(kBig).Ifd1({{0x0201, 4, 1, [](Order o, std::uint32_t at) { return Put32(at, o) + Hex("FFD8"); }}}));
  }
  ExpectBounded(comments.Comment(std::string(50000, 'x')), "comments");
}

TEST(Bounds, ManySmallThingsCostInProportion) {
  JpegBuilder segments;
  for (int i = 0; i < 20000; ++i) segments.Segment(0xE5, Text("id") + Filled(1));
  EXPECT_EQ(AllItems(*ParsePool(segments), "jpeg", "APP5").size(), 20000u);
  ExpectBounded(segments, "segments");
  ExpectBounded(
      Hex("FFD8FFD0") +
          [] {
            Bytes markers;
            for (int i = 0; i < 100000; ++i) markers += Hex("FFD1");
            return markers;
          }(),
      "restart markers");
  ExpectBounded(TiffBuilder(kBig).Ifd0({Long(0x014A, std::vector<std::int64_t>(15000, 8))}),
                "sub-IFDs by the thousand");
}

}  // namespace
