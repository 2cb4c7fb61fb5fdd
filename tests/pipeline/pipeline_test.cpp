// Whole files through the five exported functions, as a host sees them: built byte by byte, in both byte orders, with
// the properties that have to come out.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "api/interchange_abi.h"
#include "tests/support/chunk_builders.h"
#include "tests/support/image_builders.h"
#include "tests/support/rich_files.h"
#include "tests/support/tiff_builder.h"
#include "tests/support/xmp_dump.h"

namespace lxtest {
namespace {

class PipelineTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(LxInterchangeInit()); }
  void TearDown() override { LxInterchangeTerm(); }

  static std::string ImportPath(const char* path, std::string_view which = "") {
    const lxbridge::HostSession session;
    const LxInterchangeHandle handle = LxInterchangeNew(path);
    const std::string text = DumpXmp(LxInterchangeGetXMP(handle), which);
    LxInterchangeDelete(handle);
    return text;
  }
  // The same bytes without a file, as LxHost asks for it.
  static std::string ImportMemory(const Bytes& file, std::string_view which) {
    const TALProcName& name = kLxInterchangeProcNames[1];
    const auto newFromMemory = reinterpret_cast<decltype(LxInterchangeProcs::newFromMemory)>(
        TALOrdinal5()(kLxInterchangeInterface, name.shortName, name.qualifiedName));
    const lxbridge::HostSession session;
    LxInterchangeHandle handle = nullptr;
    EXPECT_EQ(newFromMemory(file.data(), file.size(), &handle), 0);
    const std::string text = DumpXmp(LxInterchangeGetXMP(handle), which);
    LxInterchangeDelete(handle);
    return text;
  }
  static std::string Import(const Bytes& file, std::string_view which = "") {
    const TempFile saved(file);
    const std::string text = ImportPath(saved.path().c_str(), which);
    EXPECT_EQ(ImportMemory(file, which), text);
    return text;
  }
};

std::string Packet(const std::string& attributes) {
  return "<?xpacket begin='\xEF\xBB\xBF' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>"
         "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about='' "
         "xmlns:xmp='http://ns.adobe.com/xap/1.0/' xmlns:exif='http://ns.adobe.com/exif/1.0/' "
         "xmlns:tiff='http://ns.adobe.com/tiff/1.0/' " +
         attributes + "/></rdf:RDF></x:xmpmeta><?xpacket end='w'?>";
}

// A camera's picture, with the properties that photographers look for.
TiffBuilder Camera(Order order) {
  const Bytes settings = Put16(1, order) + Put16(1, order) + Hex("4100 0000");
  const Bytes curve = Put16(1, order) + Put16(2, order) + Text("Y") + Filled(1) + Put32(1, order) + Put32(2, order) +
                      Put32(0xFFFFFFFF, order) + Put32(4, order);
  return TiffBuilder(order)
      .Ifd0({Short(0x0102, {8, 8, 8}), Ascii(0x010E, "Evening at sea"), Ascii(0x010F, "Canon"), Ascii(0x0110, "EOS"),
             Short(0x0112, 6), Ratl(0x011A, 72, 1), Short(0x0128, 2), Ascii(0x0132, "2004:03:15 14:30:59"),
             Ascii(0x013B, "K\xE4the"), Ratl(0x013E, {313, 1000, 329, 1000}), Ascii(0x8298, "me"), Short(0xFF00, 1)})
      .Exif({Ratl(0x829A, 1, 250), Ratl(0x829D, 56, 10), Short(0x8827, {100, 200}), Undef(0x8828, curve),
             Undef(0x9000, Text("0220")), Ascii(0x9003, "2004:07:15 14:30:59"), Ascii(0x9004, "0000:00:00 00:00:00"),
             Undef(0x9101, {1, 2, 3, 0}), SRatl(0x9204, -2, 3), Short(0x9209, 0x19), Short(0x9214, {1, 2}),
             Undef(0x9286, Text("ASCII") + Filled(3) + Text("a comment")), Ascii(0x9291, "25"),
             Undef(0xA000, Text("0100")), Short(0xA001, 1), Long(0xA002, 4000), Undef(0xA300, {3}),
             Undef(0xA40B, settings)})
      .Gps({Byte(0, {2, 2, 0, 0}), Ascii(1, "N"), Ratl(2, {37, 1, 4698, 100, 0, 1}), Ascii(3, "W"),
            Ratl(4, {122, 1, 25, 1, 30, 1}), Byte(5, {1}), Ratl(6, 12, 1), Ratl(7, {14, 1, 30, 1, 1525, 100}),
            Undef(0x1B, Text("ASCII") + Filled(3) + Text("GPS")), Ascii(0x1D, "2004:03:15")})
      .Ifd1({Ascii(0x010F, "thumbnail"), Ascii(0x0131, "thumbnail")});
}

TEST_F(PipelineTest, ACamerasPictureGivesTheSameXmpInEitherByteOrderAndFileKind) {
  for (const Order order : {kBig, kLittle}) {
    SCOPED_TRACE(order == kBig ? "MM" : "II");
    const Bytes listed = ReadWholeFile(LX_GOLDEN_DIR "/camera.properties.txt");
    std::string expected(listed.begin(), listed.end());
    EXPECT_EQ(Import(JpegBuilder().App0Jfif().App1Exif(Camera(order))), expected);
    EXPECT_EQ(Import(Camera(order)), expected);
    EXPECT_EQ(Import(PsdBuilder().Resources(ResourceBuilder().Exif(Camera(order)))),
              // In a PSD file, image resources are the place of the description.
              expected.erase(expected.find("tiff:ImageDescription"),
                             sizeof "tiff:ImageDescription=alt[x-default: Evening at sea]\n" - 1));
  }
}

TEST_F(PipelineTest, ContainersGiveTheXmpOfAJpegFileOfTheSameBlocks) {
  const Bytes exif = RichExif(kLittle);
  const Bytes packet = Text(RichPacket());
  const Bytes resources = RichResources(kBig);
  const Bytes datasets = IptcBuilder().Add(25, "bare");
  const auto raw = [](PngBuilder& png, const char* name, const Bytes& bytes) {
    png.Latin(std::string("Raw profile type ") + name, RawProfile(name, bytes));
  };
  PngBuilder own, profiles;
  raw(profiles.Chunk("IDAT", Filled(5000)), "iptc", datasets);
  raw(profiles, "8bim", resources);
  raw(profiles, "xmp", packet);
  raw(profiles, "exif", exif);
  raw(own.Chunk("eXIf", exif).International("XML:com.adobe.xmp", packet), "8bim", resources);
  const JpegBuilder camera = JpegBuilder().App1Exif(exif).App1Xmp(RichPacket());
  const std::string alone = Import(JpegBuilder().App1Xmp(RichPacket()));
  EXPECT_NE(alone, "");
  EXPECT_EQ(Import(own), Import(JpegBuilder(camera).App13(resources)));
  EXPECT_EQ(Import(profiles), Import(JpegBuilder(camera).App13(resources).App13(ResourceBuilder().Iptc(datasets))));
  EXPECT_EQ(Import(WebpBuilder().Chunk("XMP ", packet).Chunk("EXIF", exif)), Import(camera));
  EXPECT_EQ(Import(PngBuilder().Latin("Raw profile type iptc", RawProfile("iptc", datasets))),
            Import(JpegBuilder().App13(ResourceBuilder().Iptc(datasets))));
  EXPECT_EQ(Import(GifBuilder().Packet(RichPacket())), alone);
  EXPECT_EQ(Import(packet), alone);
  EXPECT_EQ(Import(RichHeif()), Import(JpegBuilder().App1Exif(RichExif(kBig)).App1Xmp(RichPacket())));
  EXPECT_EQ(Import(RichJxl()), Import(camera));
  EXPECT_EQ(Import(RichJp2()), Import(JpegBuilder(camera).App13(resources).App13(ResourceBuilder().Iptc(RichIptc()))));
}

TEST_F(PipelineTest, APacketKeepsWhatTheFileDoesNotSayBetter) {
  const std::string packet = Packet("xmp:Rating='3' exif:ExposureTime='1/8' exif:Gamma='22/10' tiff:Make='packet'");
  const TiffEntries entries = {Ascii(0x010F, "Canon")};
  const auto check = [&](const Bytes& file) {
    const std::string text = Import(file);
    for (const char* const line :
         {"xmp:Rating=3\n", "exif:Gamma=22/10\n", "exif:ExposureTime=1/250\n", "tiff:Make=Canon\n"}) {
      EXPECT_NE(text.find(line), std::string::npos) << line << text;
    }
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4) << text;
  };
  const TiffBuilder tiff = TiffBuilder(kLittle).Ifd0(entries).Exif({Ratl(0x829A, 1, 250)});
  check(JpegBuilder().App1Exif(tiff).App1Xmp(packet));
  check(JpegBuilder().App1Xmp(packet).App1Exif(tiff));
  check(JpegBuilder().App1Exif(tiff).App13(ResourceBuilder().Xmp(packet)));
  check(TiffBuilder(kBig).Ifd0({entries[0], Byte(0x02BC, Text(packet))}).Exif({Ratl(0x829A, 1, 250)}));
  check(PsdBuilder().Resources(ResourceBuilder().Exif(tiff).Xmp(packet)));
}

TEST_F(PipelineTest, OfTwoPacketsTheFirstIsTaken) {
  EXPECT_EQ(Import(JpegBuilder().App1Xmp(Packet("xmp:Rating='1'")).App1Xmp(Packet("xmp:Rating='2' xmp:Label='x'"))),
            "xmp:Rating=1\n");
}

TEST_F(PipelineTest, ADamagedPacketCostsTheFileNothingElse) {
  const std::string whole = Packet("xmp:Rating='3'");
  const TiffBuilder tiff = TiffBuilder(kBig).Ifd0({Ascii(0x010E, "a caption"), Ascii(0x010F, "Canon")});
  const Bytes iptc = IptcBuilder().Add(80, "me");
  const auto import = [&](const std::string& packet) {
    return Import(JpegBuilder().App1Exif(tiff).App1Xmp(packet).App13(ResourceBuilder().Iptc(iptc)));
  };
  // Without a packet the IPTC block wins; with one it is not imported.
  const std::string without = "picturist:Author=me\ntiff:Make=Canon\n";
  EXPECT_EQ(import(whole), "xmp:Rating=3\ntiff:Make=Canon\n");
  EXPECT_EQ(import(whole.substr(0, whole.size() / 2)), without);
  EXPECT_EQ(import("no XML at all"), without);
  EXPECT_EQ(import("<a/>"), import("<a></a>"));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_NE(import(whole.substr(0, length)).find("tiff:Make=Canon\n"), std::string::npos) << length;
  }
}

TEST_F(PipelineTest, AnEmptyPathReadsStandardInputAndLeavesItOpen) {
  const int saved = dup(STDIN_FILENO);
  const TempFile file(JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({Ascii(0x010F, "Canon")})));
  const int opened = open(file.path().c_str(), O_RDONLY);
  ASSERT_EQ(dup2(opened, STDIN_FILENO), STDIN_FILENO);
  close(opened);
  EXPECT_EQ(ImportPath(""), "tiff:Make=Canon\n");
  EXPECT_EQ(ImportPath(""), "tiff:Make=Canon\n");
  EXPECT_GE(fcntl(STDIN_FILENO, F_GETFD), 0);

  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_EQ(dup2(ends[0], STDIN_FILENO), STDIN_FILENO);
  close(ends[0]);
  close(ends[1]);
  EXPECT_EQ(ImportPath(""), "");
  ASSERT_EQ(dup2(saved, STDIN_FILENO), STDIN_FILENO);
  close(saved);
}

TEST_F(PipelineTest, WhatIsNoPictureGivesAnEmptyObject) {
  for (const char* const path : {"/nowhere/at/all.jpg", "/", "/dev/null"}) EXPECT_EQ(ImportPath(path), "") << path;
  EXPECT_EQ(Import({}), "");
  EXPECT_EQ(Import(Text("a plain text, longer than any signature")), "");
}

}  // namespace
}  // namespace lxtest
