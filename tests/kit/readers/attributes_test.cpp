// The image attributes of each file kind.
#include "kit/readers/file_readers.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

PoolPtr Read(const Bytes& file) {
  LxResult status = -1;
  PoolPtr pool = ParsePool(file, &status);
  EXPECT_EQ(status, kLxOk);
  return pool;
}

// "640x480 3x8 RGB none": size, samples of so many bits, colour model, compression.
std::string Attributes(const LxMetadataPool& pool) {
  return std::to_string(pool.width) + "x" + std::to_string(pool.height) + " " + std::to_string(pool.samples) + "x" +
         std::to_string(pool.bits) + " " + LxColourModelName(pool.colourModel) + " " +
         LxCompressionName(pool.compression);
}
std::string Attributes(const Bytes& file) {
  return Attributes(*Read(file));
}

void ExpectBadFormat(const Bytes& file, const char* what) {
  LxResult status = 0;
  const PoolPtr pool = ParsePool(file, &status);
  EXPECT_EQ(status, kLxBadReadFormat) << what;
  EXPECT_EQ(pool->root, nullptr) << what;
  EXPECT_EQ(pool->blocks, nullptr) << what;
}

TEST(JpegAttributes, ComeFromTheFrameHeader) {
  const struct {
    const char* what;
    JpegBuilder jpeg;
    std::int32_t mcuWidth, mcuHeight;
    const char* attributes;
  } cases[] = {
      {"4:2:0", JpegBuilder().Sof(0xC0, 640, 480, {0x22, 0x11, 0x11}), 16, 16, "640x480 3x8 RGB jpeg9"},
      {"4:2:2", JpegBuilder().Sof(0xC1, 640, 480, {0x21, 0x11, 0x11}), 16, 8, "640x480 3x8 RGB jpeg9"},
      {"4:1:1", JpegBuilder().Sof(0xC2, 640, 480, {0x41, 0x22, 0x11}), 32, 16, "640x480 3x8 RGB jpeg9"},
      {"4 after 2", JpegBuilder().Sof(0xC2, 640, 480, {0x22, 0x14, 0x11}), 16, 32, "640x480 3x8 RGB jpeg9"},
      {"four", JpegBuilder().Sof(0xC0, 640, 480, {0x11, 0x11, 0x11, 0x11}), 8, 8, "640x480 4x8 CMYK jpeg9"},
      {"more than bytes", JpegBuilder().Segment(0xC0, Hex("08 01E0 0280 FF 012200")), 16, 16,
       "640x480 255x8 unk jpeg9"},
      {"baseline before progressive", JpegBuilder().Sof2().Sof(0xC0, 640, 480, {0x11}), 8, 8, "640x480 1x8 gray jpeg9"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const PoolPtr pool = Read(c.jpeg);
    EXPECT_EQ(Attributes(*pool), c.attributes);
    EXPECT_EQ(pool->mcuWidth, c.mcuWidth);
    EXPECT_EQ(pool->mcuHeight, c.mcuHeight);
    EXPECT_EQ(pool->fileKind, kLxFileJpeg);
  }
}

TEST(JpegAttributes, WithoutAFrameOrATableTheFileIsBad) {
  (void)Read(JpegBuilder().Comment("the control"));
  ExpectBadFormat(JpegBuilder().Sof(0xC3, 8, 8, {0x11}), "a lossless frame");
  ExpectBadFormat(JpegBuilder().Sof0().Sos().Bare(), "no table");
  ExpectBadFormat(JpegBuilder().Dqt().Sos().Sof0().Bare(), "a frame after the scan");
  ExpectBadFormat(JpegBuilder().Segment(0xC0, Hex("08 01E0 0280")), "a cut frame");
  ExpectBadFormat(JpegBuilder().Raw(Hex("FFDB0000")), "a table without length");
  // A frame in a thumbnail is not the file's.
  const Bytes thumbnail = JpegBuilder().Dqt().Sof0().Sos().Bare();
  ExpectBadFormat(JpegBuilder().App1Exif(TiffBuilder(kBig).Thumbnail(thumbnail)).Dqt().Sos().Bare(), "a thumbnail's");
}

TEST(JpegAttributes, QualityIsToldFromTheLuminanceTable) {
  const Bytes k444 = {0x11, 0x11, 0x11};
  const struct {
    const char* what;
    JpegBuilder jpeg;
    const char* quality;
  } cases[] = {
      {"the last entry decides", JpegBuilder().Dqt(99, 7), "jpeg12"},
      {"a last entry of 12 does not", JpegBuilder().Dqt(2, 12), "jpeg10"},
      {"level 6 to its end", JpegBuilder().Dqt(1, 49), "jpeg6"},
      {"level 7 comes after level 6", JpegBuilder().Dqt(1, 50), "jpeg7"},
      {"and goes on", JpegBuilder().Dqt(1, 58), "jpeg7"},
      {"the last that decides", JpegBuilder().Dqt(1, 63), "jpeg5"},
      {"else the first", JpegBuilder().Dqt(16, 64), "jpeg4"},
      {"from 32 on the lowest", JpegBuilder().Dqt(32, 64), "jpeg0"},
      {"level 6 with subsampling", JpegBuilder().Dqt(1, 39), "jpeg6"},
      {"without, one more", JpegBuilder().Dqt(1, 39).Sof(0xC0, 8, 8, k444), "jpeg7"},
      {"a segment without its length", JpegBuilder().Sof(0xC0, 8, 8, k444).Raw(Hex("FFDB0001")), "unk"},
      {"16 bits", JpegBuilder().Dqt(1, 7, 0x10), "unk"},
      {"luminance in a second segment", JpegBuilder().Dqt(1, 7, 1).Dqt(1, 7, 0), "unk"},
      {"luminance as second table", JpegBuilder().Segment(0xDB, Hex("01") + Filled(64, 3) + Filled(65, 0)), "jpeg12"},
      {"a table cut by one", JpegBuilder().Segment(0xDB, Filled(64, 0)), "unk"},
      {"a second table cut by one", JpegBuilder().Segment(0xDB, Hex("01") + Filled(64, 3) + Filled(64, 0)), "unk"},
  };
  for (const auto& c : cases) {
    EXPECT_STREQ(LxCompressionName(Read(c.jpeg)->compression), c.quality) << c.what;
  }
}

TEST(TiffAttributes, ComeFromTheFirstIfd) {
  for (const Order order : {kLittle, kBig}) {
    EXPECT_EQ(Attributes(TiffBuilder(order)
                             .Ifd0({Short(0x0100, 640), Long(0x0101, 480), Short(0x0102, {16, 16, 16}),
                                    Short(0x0103, 5), Short(0x0106, 2), Short(0x0115, 3)})
                             .Ifd1({Short(0x0100, 8), Short(0x0106, 5)})),
              "640x480 3x16 RGB lzw");
  }
  // A file with a bad first IFD, or with a header of which only the marks are good, is an empty one and no failure.
  const PoolPtr bare = Read(Hex("49492A00 FFFFFF00 00000000 00000000"));
  EXPECT_EQ(AllItems(*bare).size(), 1u);
  EXPECT_EQ(Attributes(*bare), "0x0 1x1 unk none");
}

// TIFF 6.0, sections 8, 16, 20, 21 and 23; section 3 and appendix A.
TEST(TiffAttributes, PhotometricAndCompressionHaveTheirNames) {
  const std::pair<std::int64_t, const char*> models[] = {
      {0, "bitwz"}, {1, "bitbz"}, {2, "RGB"},    {3, "indexedRGB"}, {4, "mask"},    {5, "CMYK"},
      {6, "YCbCr"}, {7, "unk"},   {8, "cielab"}, {9, "icclab"},     {32803, "cfa"}, {65535, "unk"}};
  for (const auto& [value, name] : models) {
    EXPECT_STREQ(LxColourModelName(Read(TiffBuilder(kLittle).Ifd0({Short(0x0106, value)}))->colourModel), name)
        << value;
  }
  const std::pair<std::int64_t, const char*> compressions[] = {
      {1, "none"}, {2, "ccitt1d"}, {3, "ccitt4"}, {4, "ccitt6"}, {5, "lzw"}, {7, "unk"}, {32773, "pack"}};
  for (const auto& [value, name] : compressions) {
    EXPECT_STREQ(LxCompressionName(Read(TiffBuilder(kBig).Ifd0({Short(0x0103, value)}))->compression), name) << value;
  }
}

TEST(TiffAttributes, JpegInTiffTellsItsQuality) {
  Bytes table = Filled(64, 3);
  table[63] = 20;
  const struct {
    const char* what;
    TiffEntries entries;
    const char* compression;
  } cases[] = {
      {"a table", {{0x0207, 4, 1, [table](Order o, std::uint32_t at) { return Put32(at, o) + table; }}}, "jpeg9"},
      {"none", {}, "jpeg0"},
      {"an offset of two bytes", {Short(0x0207, 8)}, "jpeg0"},
      {"a table beyond the file", {Long(0x0207, 100000)}, "jpeg0"},
      {"a table that the file cuts", {Long(0x0207, 30)}, "jpeg0"},
  };
  for (const auto& c : cases) {
    const PoolPtr pool = Read(TiffBuilder(kBig).Ifd0({Short(0x0103, 6)}).Ifd0(c.entries));
    EXPECT_STREQ(LxCompressionName(pool->compression), c.compression) << c.what;
  }
}

TEST(PngAttributes, ComeFromTheFirstChunk) {
  const Bytes good = Hex("89504E470D0A1A0A 0000000D 49484452 00000280 000001E0 08 02 000000 00000000 00000000");
  EXPECT_EQ(Read(good)->root, nullptr);
  EXPECT_EQ(Read(good)->blocks, nullptr);
  const std::pair<std::uint8_t, const char*> types[] = {{0, "1x8 gray"},       {1, "0x8 unk"},   {2, "3x8 RGB"},
                                                        {3, "1x8 indexedRGB"}, {4, "2x8 graya"}, {6, "4x8 rgba"},
                                                        {7, "0x8 unk"}};
  for (const auto& [type, attributes] : types) {
    EXPECT_EQ(Attributes(WithByte(good, 25, type)), "640x480 " + std::string(attributes) + " flate");
  }
  (void)Read(Truncated(good, 33));
  ExpectBadFormat(Truncated(good, 32), "cut");
  ExpectBadFormat(WithByte(good, 11, 12), "a short chunk");
  ExpectBadFormat(WithByte(good, 12, 'i'), "another chunk");
}

Bytes Bmp(std::uint32_t headerSize, const Bytes& header) {
  Bytes file = Text("BM") + Filled(12) + Put32(headerSize, kLittle) + header;
  file.resize(64);
  return file;
}

TEST(BmpAndGifAttributes, ComeFromTheirHeaders) {
  const auto windows = [](std::uint32_t height, std::uint32_t bitCount, std::uint32_t method) {
    return Bmp(40, Put32(640, kLittle) + Put32(height, kLittle) + Put16(1, kLittle) + Put16(bitCount, kLittle) +
                       Put32(method, kLittle));
  };
  const auto old = [](std::uint32_t bitCount) {
    return Bmp(12, Put16(640, kLittle) + Put16(480, kLittle) + Put16(1, kLittle) + Put16(bitCount, kLittle));
  };
  const struct {
    const char* what;
    Bytes file;
    const char* attributes;
  } cases[] = {
      {"16 bits", windows(480, 16, 0), "640x480 3x5 RGB none"},
      {"no bits of its own", windows(480, 0, 3), "640x480 3x8 RGB none"},
      {"rows from the top", windows(0u - 480u, 24, 0), "640x480 3x8 RGB none"},
      {"the lowest height", windows(0x80000000u, 24, 0), "640x-2147483648 3x8 RGB none"},
      {"run length", windows(480, 8, 1), "640x480 1x8 RGB pack"},
      {"run length of 4 bits", windows(480, 4, 2), "640x480 1x4 RGB pack"},
      {"32 bits", windows(480, 32, 0), "640x480 4x8 RGB none"},
      {"other bits, other method", windows(480, 7, 4), "640x480 0x0 unk unk"},
      {"old, 1 bit", old(1), "640x480 1x1 RGB none"},
      {"old, 24 bits", old(24), "640x480 3x8 RGB none"},
      {"old, other bits", old(16), "640x480 0x0 RGB none"},
      {"GIF", Text("GIF89a") + Put16(640, kLittle) + Put16(480, kLittle) + Filled(6), "640x480 1x8 indexedRGB lzw"},
  };
  for (const auto& c : cases) EXPECT_EQ(Attributes(c.file), c.attributes) << c.what;
  ExpectBadFormat(Truncated(old(1), 63), "cut");
}

}  // namespace
