#include "xmpconv/extended_packet.h"

#include <string>
#include <utility>
#include <vector>

#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"
#include "tests/xmpconv/conversion_fixture.h"
#include "xmpconv/md5.h"
#include "xmpconv/schemas.h"

namespace lxtest {
namespace {

constexpr char kIdentifier[] = "http://ns.adobe.com/xmp/extension/";

std::string Packet(std::string_view properties) {
  return "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#' xmlns:xmp='http://ns.adobe.com/xap/1.0/' "
         "xmlns:dc='http://purl.org/dc/elements/1.1/' xmlns:n='http://ns.adobe.com/xmp/note/'><rdf:Description>" +
         std::string(properties) + "</rdf:Description></rdf:RDF>";
}

std::string Guid(std::string_view packet, bool lower = false) {
  std::string digits;
  for (const std::uint8_t byte : LxMd5(reinterpret_cast<const std::uint8_t*>(packet.data()), packet.size())) {
    const char* const alphabet = lower ? "0123456789abcdef" : "0123456789ABCDEF";
    digits += {alphabet[byte >> 4], alphabet[byte & 15]};
  }
  return digits;
}

class ExtendedPacketTest : public ConversionTest {
 protected:
  Bytes Portion(std::size_t offset, std::size_t length, std::size_t full) {
    return Text(Guid(packet)) + Put32(full) + Put32(offset) + Text(packet.substr(offset, length));
  }
  // The object after the packets of a file with these portions were read.
  std::string Read(const std::vector<Bytes>& portions, const std::string& named, const char* identifier = kIdentifier,
                   bool inThumbnail = false) {
    JpegBuilder segments;
    for (const Bytes& portion : portions) segments.App(1, identifier, portion);
    const Bytes file = inThumbnail ? JpegBuilder().App1Exif(TiffBuilder(kBig).Thumbnail(segments)).Build() : segments;
    const PoolPtr read = ReadPool(file);
    XMPMetaHolder object;
    object.SetProperty("http://ns.adobe.com/xap/1.0/", "Label", "main");
    object.SetProperty(kLxXmpNoteSchema, "HasExtendedXMP", named.c_str());
    const std::string before = DumpXmp(object.Meta());
    const bool added = LxAddExtendedPacket(*read, object);
    EXPECT_EQ(added, DumpXmp(object.Meta()) != before);
    return added ? DumpXmp(object.Meta()) : "as it was";
  }

  std::string packet = Packet(
      "<xmp:Label>extended</xmp:Label><xmp:Rating>4</xmp:Rating><n:HasExtendedXMP>0"
      "</n:HasExtendedXMP><dc:subject><rdf:Bag><rdf:li>sea</rdf:li></rdf:Bag></dc:subject>");
  const std::string both = "xmp:Label=main\nxmp:Rating=4\ndc:subject=bag[sea]\n";
};

TEST_F(ExtendedPacketTest, IsAddedWhenItsPortionsAgreeOnEveryByte) {
  const std::size_t full = packet.size();
  const Bytes first = Portion(0, 100, full);
  const Bytes last = Portion(100, full - 100, full);
  const Bytes foreign = Text(Guid("another")) + Put32(7) + Put32(9) + Text("x");
  const struct {
    const char* what;
    std::vector<Bytes> portions;
    bool isAdded;
  } cases[] = {
      {"in order", {first, last}, true},
      {"in another order", {last, first}, true},
      {"whole", {Portion(0, full, full)}, true},
      {"twice", {first, last, first}, true},
      {"overlapping", {Portion(0, 120, full), Portion(110, 5, full), last}, true},
      {"an empty one", {first, Portion(full, 0, full), last}, true},
      {"another packet's beside it", {foreign, first, Text("short"), last, foreign}, true},
      {"a gap", {first, Portion(101, full - 101, full)}, false},
      {"without the last byte", {first, Portion(100, full - 101, full)}, false},
      {"without the first", {Portion(1, full - 1, full)}, false},
      {"a byte told in two ways", {first, WithByte(first, 50, '#'), last}, false},
      {"a byte beyond the length", {first, last, Text(Guid(packet)) + Put32(full) + Put32(full) + Text(">")}, false},
      {"an offset beyond the length", {first, last, Text(Guid(packet)) + Put32(full) + Put32(full + 1)}, false},
      {"two lengths", {first, last, Portion(0, 10, full + 1)}, false},
      {"a length that nothing fills", {Portion(0, full, 0xFFFFFFFF)}, false},
      {"no bytes", {Portion(0, 0, 0)}, false},
      {"other bytes than the name says", {first, WithByte(last, 60, '#')}, false},
      {"none", {foreign}, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Read(c.portions, Guid(packet)), c.isAdded ? both : "as it was") << c.what;
  }
  EXPECT_EQ(Read({first, last}, Guid(packet, true)), both);
  for (const std::string& name : {std::string(), Guid(packet) + " ", Guid(packet).substr(1), Guid("another")}) {
    EXPECT_EQ(Read({first, last}, name), "as it was") << name;
  }
  EXPECT_EQ(Read({first, last}, Guid(packet), "http://ns.adobe.com/xmp/extension"), "as it was");
  EXPECT_EQ(Read({first, last}, Guid(packet), kIdentifier, true), "as it was");
}

TEST_F(ExtendedPacketTest, OneThatDoesNotParseChangesNothing) {
  for (const char* const bad : {"no XML", "<rdf:RDF", "<a><b></a>"}) {
    packet = bad;
    EXPECT_EQ(Read({Portion(0, packet.size(), packet.size())}, Guid(packet)), "as it was") << bad;
  }
}

}  // namespace
}  // namespace lxtest
