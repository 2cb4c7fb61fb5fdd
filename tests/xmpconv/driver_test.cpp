#include "xmpconv/driver.h"

#include <optional>
#include <sstream>

#include "api/interchange.h"
#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"
#include "tests/xmpconv/conversion_fixture.h"
#include "xmpconv/md5.h"

namespace lxtest {
namespace {

constexpr char kPacket[] =
    "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
    "<rdf:Description rdf:about='' xmlns:p='http://ns.adobe.com/picturist/1.0/' xmlns:e='http://ns.adobe.com/exif/1.0/'"
    " xmlns:t='http://ns.adobe.com/tiff/1.0/' p:Author='packet' p:State='Bern' p:ColorMode='3' e:ExposureTime='1/8'"
    " t:ImageDescription='packet'/></rdf:RDF></x:xmpmeta>";

Bytes Digest(const Bytes& block) {
  const LxMd5Digest digest = LxMd5(block.data(), block.size());
  return Bytes(digest.begin(), digest.end());
}

// The blocks of a JPEG or TIFF file of this test besides ImageDescription and ExposureTime.
struct Case {
  bool isTiff = false;
  bool hasPacket = false;
  std::optional<Bytes> tagIptc = std::nullopt;
  std::optional<Bytes> resourceIptc = std::nullopt;
  std::optional<Bytes> digest = std::nullopt;
};

Bytes FileOf(const Case& c) {
  ResourceBuilder resources;
  if (c.resourceIptc) resources.Iptc(*c.resourceIptc);
  if (c.digest) resources.Block(0x0425, *c.digest);
  TiffEntries entries = {Ascii(0x010E, "tag")};
  if (c.isTiff && c.hasPacket) entries.push_back(Byte(0x02BC, Text(kPacket)));
  if (c.tagIptc) entries.push_back(Undef(0x83BB, *c.tagIptc));
  if (c.isTiff) entries.push_back(Byte(0x8649, resources));
  const Bytes tiff = TiffBuilder(kBig).Ifd0(entries).Exif({Ratl(0x829A, 1, 250)});
  if (c.isTiff) return tiff;
  JpegBuilder jpeg;
  jpeg.App1Exif(tiff);
  if (c.hasPacket) jpeg.App1Xmp(kPacket);
  return jpeg.App13(resources);
}

class DriverTest : public ConversionTest {
 protected:
  // The properties of the imported file that the precedence decides.
  static std::string Import(const Bytes& file) {
    const TempFile saved(file);
    LxInterchange interchange(saved.path().c_str());
    const std::string dump = DumpXmp(interchange.Xmp().Meta());
    EXPECT_NE(dump.find("exif:ExposureTime=1/250\n"), std::string::npos) << dump;  // Always the file's.
    std::string said;
    for (const lxbridge::XmpNode& property : lxbridge::XmpView(interchange.Xmp().Meta()).Properties()) {
      if (property.prefix == "picturist" || property.name == "ImageDescription") {
        said += property.name + "=" + NodeText(property) + " ";
      }
    }
    return said;
  }
};

const Bytes kIptc = IptcBuilder().Add(80, "iptc").Build();
const Bytes kOther = IptcBuilder().Add(80, "other").Build();
constexpr char kKept[] = "Author=packet State=Bern ColorMode=3 ImageDescription=packet ";
constexpr char kPacketDescription[] = "ImageDescription=packet ";
constexpr char kTagDescription[] = "ImageDescription=alt[x-default: tag] ";

TEST_F(DriverTest, WithoutAPacketTheIptcBlockWins) {
  const std::string author = "Author=iptc ";
  const std::string description = kTagDescription;
  EXPECT_EQ(Import(FileOf({})), description);
  EXPECT_EQ(Import(FileOf({.resourceIptc = kIptc})), author);  // The block stands for the description.
  EXPECT_EQ(Import(FileOf({.tagIptc = kIptc})), description);  // A stray copy in a JPEG file.
  EXPECT_EQ(Import(FileOf({.tagIptc = kOther, .resourceIptc = kIptc})), author);
  EXPECT_EQ(Import(FileOf({.isTiff = true})), description);
  EXPECT_EQ(Import(FileOf({.isTiff = true, .tagIptc = kIptc})), author);
  EXPECT_EQ(Import(FileOf({.isTiff = true, .tagIptc = kIptc, .resourceIptc = kOther})), author);
  const std::string both = Import(FileOf({.isTiff = true, .resourceIptc = kIptc}));
  EXPECT_NE(both.find(author), std::string::npos) << both;
  EXPECT_NE(both.find(description), std::string::npos) << both;
}

TEST_F(DriverTest, APacketWinsUnlessADigestSaysThatTheBlockChanged) {
  for (const bool isTiff : {false, true}) {
    SCOPED_TRACE(isTiff ? "TIFF" : "JPEG");
    const auto import = [isTiff](Case c) {
      c.isTiff = isTiff;
      c.hasPacket = true;
      return Import(FileOf(c));
    };
    EXPECT_EQ(import({}), kKept);
    EXPECT_EQ(import({.resourceIptc = kIptc}), kKept);
    EXPECT_EQ(import({.resourceIptc = kIptc, .digest = Digest(kIptc)}), kKept);
    EXPECT_EQ(import({.digest = Filled(16)}), kKept);
    EXPECT_EQ(import({.resourceIptc = kIptc, .digest = Truncated(Digest(kOther), 15)}), kKept);  // As good as none.

    const std::string imported = import({.resourceIptc = kIptc, .digest = Digest(kOther)});
    EXPECT_EQ(imported.find("State"), std::string::npos) << imported;
    EXPECT_NE(imported.find("Author=iptc "), std::string::npos) << imported;
    EXPECT_NE(imported.find("ColorMode=3 "), std::string::npos) << imported;  // None of those that IPTC stands for.
    const std::string emptied = import({.digest = Digest(kOther)});
    EXPECT_EQ(emptied.find("Author"), std::string::npos) << emptied;
    // Where IPTC wins and the block does not stand for it, the description is the file's, else the packet's.
    EXPECT_NE(emptied.find(kTagDescription), std::string::npos) << emptied;
    EXPECT_NE(imported.find(isTiff ? kTagDescription : kPacketDescription), std::string::npos) << imported;
  }
}

TEST_F(DriverTest, AnIptcBlockThatWinsTakesAwayAllThatItStandsFor) {
  std::string attributes = "p:ColorMode='3'";
  std::istringstream names(
      "Caption Author Title Keywords Copyright CaptionWriter Headline Instructions AuthorsPosition Credit Source "
      "DateCreated City State Country TransmissionReference Category SupplementalCategories Urgency WebStatement "
      "Marked");
  for (std::string name; names >> name;) {
    attributes += " p:" + name + "='x'";
  }
  const std::string packet =
      "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
      "<rdf:Description xmlns:p='http://ns.adobe.com/picturist/1.0/' " +
      attributes + "/></rdf:RDF></x:xmpmeta>";
  const Bytes changed = ResourceBuilder().Block(0x0425, Digest(kOther));
  const Bytes tiff = TiffBuilder(kBig).Exif({Ratl(0x829A, 1, 250)});
  EXPECT_EQ(Import(JpegBuilder().App1Exif(tiff).App1Xmp(packet).App13(changed)), "ColorMode=3 ");
}

TEST_F(DriverTest, TheDigestOfATiffTagIsThatWithoutItsPadding) {
  const Bytes block = IptcBuilder().Add(80, "iptc!").Build();
  const auto import = [](const Bytes& tag, const Bytes& digest) {
    return Import(FileOf({.isTiff = true, .hasPacket = true, .tagIptc = tag, .digest = digest}));
  };
  for (std::size_t padding = 0; padding <= 3; ++padding) {
    EXPECT_EQ(import(block + Filled(padding), Digest(block)), kKept) << padding;
  }
  EXPECT_NE(import(block + Filled(4), Digest(block)), kKept);
  EXPECT_EQ(import(block + Filled(4), Digest(block + Filled(1))), kKept);
  EXPECT_EQ(import(Filled(2), Digest({})), kKept);
  // An image resource is digested whole.
  EXPECT_NE(Import(FileOf({.hasPacket = true, .resourceIptc = block + Filled(1), .digest = Digest(block)})), kKept);
}

TEST_F(DriverTest, OnlyTheFirstDirectoryAndThoseBelowItAreConverted) {
  const Bytes file =
      TiffBuilder(kLittle)
          .Ifd0({Ascii(0x010F, "first"), SubIfds(0x014A, {{Ascii(0x010F, "sub"), Ascii(0x0110, "sub")}})})
          .Exif({Ratl(0x829A, 1, 250)})
          .Ifd1({Ascii(0x010F, "second"), Ascii(0x0131, "second")});
  const TempFile saved(file);
  LxInterchange interchange(saved.path().c_str());
  EXPECT_EQ(DumpXmp(interchange.Xmp().Meta()), "tiff:Make=first\nexif:ExposureTime=1/250\n");
}

TEST_F(DriverTest, CountsTheConvertedItems) {
  const TempFile saved(FileOf({.resourceIptc = kIptc}));
  LxInterchange interchange(saved.path().c_str());
  EXPECT_EQ(LxConvertPoolToXMP(interchange.Pool(), interchange.Xmp(), false), 2);  // ByLine and ExposureTime.
}

}  // namespace
}  // namespace lxtest
