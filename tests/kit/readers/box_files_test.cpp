// HEIF, JPEG XL and JPEG 2000 files: which blocks of them count, and the images' sizes.
#include <gtest/gtest.h>

#include <string>

#include "kit/readers/inflate.h"
#include "kit/readers/read_file.h"
#include "tests/support/block_cases.h"
#include "tests/support/box_builders.h"
#include "tests/support/chunk_builders.h"
#include "tests/support/image_builders.h"
#include "tests/support/rich_files.h"

using namespace lxtest;

namespace {

constexpr char kExif[] = " Exif=A";
constexpr char kPacket[] = " mime application/rdf+xml=<P>";

Bytes Tiff(std::string_view make) {
  return TiffBuilder(kLittle).Ifd0({Ascii(0x010F, make)});
}

// A file of one item, and of one with the field that a case is about.
HeifBuilder One(const Bytes& data, const HeifItem& like = {}) {
  HeifItem item = like;
  item.id = 2;
  item.data = data;
  return HeifBuilder().Add(item);
}
HeifBuilder Sizes(int version, int offset, int length, int base, int index) {
  HeifBuilder file = One(Filled(4) + Tiff("A"), {.pieces = 3});
  file.locationVersion = version;
  file.offsetSize = offset;
  file.lengthSize = length;
  file.baseSize = base;
  file.indexSize = index;
  return file;
}
HeifBuilder With(HeifBuilder file, const Bytes& beforeMeta, const Bytes& lastInMeta = {}) {
  file.beforeMeta = beforeMeta;
  file.lastInMeta = lastInMeta;
  return file;
}

TEST(BoxFiles, HeifBlocksAreItems) {
  const Bytes a = Tiff("A");
  const Bytes prefixed = Text("Exif") + Filled(2) + a;
  const HeifBuilder one = HeifBuilder().Exif(2, a);
  HeifBuilder longIds = HeifBuilder().Add({.id = 0x20002, .data = Filled(4) + a, .describes = {5, 1}});
  longIds.locationVersion = 2;
  longIds.itemVersion = 3;
  longIds.referenceVersion = 1;
  HeifBuilder noPrimary = HeifBuilder().Add({.id = 2, .data = Filled(4) + a, .describes = {9}});
  noPrimary.hasPrimary = false;
  HeifBuilder oldInfo = one;
  oldInfo.itemVersion = 1;
  const Bytes file = one;
  const Bytes two = HeifBuilder().Add({.id = 2, .data = Filled(4) + a, .describes = {9, 1}});
  HeifBuilder toTheEnd = Sizes(1, 4, 0, 0, 0);
  toTheEnd.items[0].pieces = 40;
  CheckBlocks(
      {{"none", HeifBuilder(), "nothing"},
       {"in the order of blocks", HeifBuilder().Packet(2, "<P>").Exif(3, a), std::string(kExif) + kPacket},
       {"the first recognised", HeifBuilder().Exif(2, Text("II*")).Exif(3, a).Exif(4, Tiff("B")), kExif},
       {"an offset over a prefix", One(Put32(6) + prefixed), kExif},
       {"a prefix after the offset", One(Put32(0) + prefixed), kExif},
       {"an offset over anything", One(Put32(3) + Text("???") + a), kExif},
       {"no offset", One(a), kExif},
       {"no offset, a prefix", One(prefixed), kExif},
       {"an offset to the end", One(Put32(a.size()) + a), "nothing"},
       {"an offset beyond", One(Put32(0xFFFFFFFF) + a), "nothing"},
       {"another content type",
        HeifBuilder().Add({.id = 2, .type = std::string("mime\0text/xml\0", 14), .data = Text("<P>")}), "nothing"},
       {"another encoding", HeifBuilder().Add(PacketItem(2, Text("<P>"), "gzip")), "nothing"},
       {"an empty packet", HeifBuilder().Packet(2, "").Packet(3, "<P>"), kPacket},
       {"numbers of 8 bytes, a base", Sizes(1, 8, 8, 8, 8), kExif},
       {"version 0", Sizes(0, 4, 4, 0, 0), kExif},
       {"version 2", Sizes(2, 4, 8, 4, 0), kExif},
       {"numbers of 2 bytes", Sizes(1, 2, 4, 0, 0), "nothing"},
       {"an unknown version", Sizes(3, 4, 4, 0, 0), "nothing"},
       {"idat", One(Filled(4) + a, {.inIdat = true, .pieces = 2}), kExif},
       {"to the end of idat", One(Filled(4) + a, {.inIdat = true, .toTheEnd = true}), kExif},
       {"to the end of the file", One(Filled(4) + a, {.pieces = 2, .toTheEnd = true}), kExif},
       {"extents longer than the file", toTheEnd.Packet(3, "<P>"), kPacket},
       {"another file", One(Filled(4) + a, {.dataReference = 1}), "nothing"},
       {"another item's bytes", One(Filled(4) + a, {.method = 2}), "nothing"},
       {"an idat that is not there", One(Filled(4) + a, {.method = 1}), "nothing"},
       {"long numbers of items", longIds, kExif},
       {"information of version 1", oldInfo, "nothing"},
       {"of another image", HeifBuilder().Add({.id = 2, .data = a, .describes = {9}}).Add(PacketItem(3, Text("<P>"))),
        kPacket},
       {"more images than their number", WithBytes(two, OffsetOf(two, Text("cdsc")) + 6, Put16(1)), "nothing"},
       {"damage within meta", With(one, {}, Put32(100) + Text("free")), kExif},
       {"extents beyond the file", Truncated(file, file.size() - 1), "nothing"},
       {"a box of 64 bits, one of size 0 in meta", With(one, LongBox("free", Filled(3)), OpenBox("free", {})), kExif}},
      "heifh HEIF:", "64x48");
  CheckBlocks({{"without a main image", noPrimary, kExif},
               {"a main image without properties", WithBytes(file, OffsetOf(file, Text("pitm")) + 8, Put16(7)), kExif},
               {"only the first meta", With(one, Box("meta", Filled(4))), "nothing"},
               {"damage before meta", With(one, Put32(4) + Text("free")), "nothing"},
               {"meta cut", Truncated(file, OffsetOf(file, Text("ipma"))), "nothing"}},
              "heifh HEIF:", "0x0");
  const PoolPtr pool = ReadPool(file);
  EXPECT_EQ(pool->samples, 3);
  EXPECT_EQ(pool->bits, 8);
  if (!LxHasZlib()) return;
  const Bytes stream = Zlib(Text("<P>"));
  const Bytes raw(stream.begin() + 2, stream.end() - 4);
  CheckBlocks({{"with the header of zlib", HeifBuilder().Add(PacketItem(2, stream, "deflate")), kPacket},
               {"without", HeifBuilder().Add(PacketItem(2, raw, "deflate")), kPacket},
               {"cut", HeifBuilder().Add(PacketItem(2, Truncated(raw, 5), "deflate")).Packet(3, "<P>"), kPacket}},
              "heifh HEIF:", "64x48");
}

TEST(BoxFiles, JpegXlBlocksAreBoxes) {
  const Bytes a = Tiff("A");
  const Bytes packet = Text("<?xpacket?><rdf:RDF/>");
  const Bytes codestream = Hex("FF0A CB 00 00");  // 48 high in units of eight, 4:3.
  const Bytes picture = Box("jxlp", Filled(4) + codestream);
  const Bytes exif = Box("Exif", Filled(4) + a), xml = Box("xml ", packet);
  CheckBlocks({{"bare", codestream + Filled(16), "nothing"},
               {"none", Jxl(Box("jxlc", codestream)), "nothing"},
               {"in the order of blocks", Jxl(xml + picture + exif), " Exif=A xml =<?xpacket?><rdf:RDF/>"},
               {"other XML", Jxl(picture + Box("xml ", Text("<rdf:RD <x/>")) + xml), " xml =<?xpacket?><rdf:RDF/>"},
               {"not even an offset", Jxl(picture + Box("Exif", Text("II*"))), "nothing"},
               {"the codestream to the end", Jxl(exif + OpenBox("jxlc", codestream + Filled(2000))), " Exif=A"},
               {"damage", Jxl(picture + exif) + Put32(40) + Text("xml ") + packet, " Exif=A"}},
              "jxlh JXL:", "64x48");
  // Size, usual values; a metadata record of a gray image of 10 bits with an alpha channel.
  const struct {
    const char* start;
    std::int32_t samples, bits;
  } samples[] = {{"FF0A CB 02", 3, 8},
                 {"FF0A 78B1", 3, 8},  // Ends with its last bit.
                 {"FF0A CB D0 22", 2, 10},
                 {"FF0A CB 04 A1 D2 22", 2, 10},  // The same of an animation.
                 {"FF0A CB 00", 0, 0}};
  for (const auto& c : samples) {
    const PoolPtr pool = ReadPool(Jxl(Box("jxlc", Hex(c.start))));
    EXPECT_EQ(pool->samples, c.samples) << c.start;
    EXPECT_EQ(pool->bits, c.bits) << c.start;
  }
  CheckBlocks({{"another size", Jxl(Box("jxlc", Hex("FF0A 7802 0000"))), "nothing"}}, "", "1x80");
  if (!LxHasBrotli()) return;
  CheckBlocks(
      {{"compressed",
        Jxl(picture + Box("brob", Text("xml ") + Brotli(packet)) + Box("brob", Text("Exif") + Brotli(Filled(4) + a))),
        " brob Exif=A brob xml =<?xpacket?><rdf:RDF/>"},
       {"other types, bad streams",
        Jxl(picture + Box("brob", Text("jumb") + Brotli(packet)) +
            Box("brob", Text("xml ") + Truncated(Brotli(packet), 20)) + xml),
        " xml =<?xpacket?><rdf:RDF/>"}},
      "jxlh JXL:", "64x48");
}

TEST(BoxFiles, Jpeg2000BlocksAreBoxes) {
  const Bytes a = Tiff("A");
  const Bytes xmp = Hex("BE7ACFCB97A942E89C71999491E3AFAC");
  const Bytes xml = Box("xml ", Text("<x:xmpmeta/>"));
  const auto uuid = [](const Bytes& id, const Bytes& data) { return Box("uuid", id + data); };
  const auto file = [](const Bytes& boxes) { return Jp2(Jp2Header() + boxes + OpenBox("jp2c", Jp2Codestream())); };
  const Bytes resources = ResourceBuilder().Block(0x03ED, Filled(16));
  const Bytes datasets = IptcBuilder().Add(25, "word");
  CheckBlocks(
      {{"bare", Jp2Codestream(), "nothing"},
       {"none", file({}), "nothing"},
       {"in the order of blocks",
        file(uuid(Hex("09A14E97C0B442E0BEBF36DF6F0CE36F"), datasets) +
             uuid(Hex("2C4C0100850440B9A03E562148D6DFEB"), resources) + uuid(xmp, Text("<P>")) +
             uuid(Text("JpgTiffExif->JP2"), a)),
        " uuid JpgTiffExif->JP2=A uuid BE7ACFCB-97A9-42E8-9C71-999491E3AFAC=<P>"
        " uuid 2C4C0100-8504-40B9-A03E-562148D6DFEB=ResolutionInfo uuid 09A14E97-C0B4-42E0-BEBF-36DF6F0CE36F=IptcNaa"},
       {"other identifiers",
        file(uuid(Hex("0537CDAB9D0C4431A72AFA561F2A113E"), Text("Exif") + Filled(2) + a) +
             uuid(Hex("33C7A4D2B81D4723A0BAF1A3E097AD38"), datasets) + uuid(Filled(16), a)),
        " uuid 0537CDAB-9D0C-4431-A72A-FA561F2A113E=A uuid 33C7A4D2-B81D-4723-A0BA-F1A3E097AD38=IptcNaa"},
       {"XML", file(Box("xml ", Text("<a/>")) + xml), " xml =<x:xmpmeta/>"},
       {"a packet of its own wins", file(xml + uuid(xmp, {}) + uuid(xmp, Text("<P>"))),
        " uuid BE7ACFCB-97A9-42E8-9C71-999491E3AFAC=<P>"},
       {"damage", file(uuid(xmp, Text("<P>")) + Put32(7) + Text("uuid") + xml),
        " uuid BE7ACFCB-97A9-42E8-9C71-999491E3AFAC=<P>"}},
      "jp2h JP2:", "64x48");
  const PoolPtr pool = ReadPool(file({}));
  EXPECT_EQ(pool->samples, 3);
  EXPECT_EQ(pool->bits, 8);
}

TEST(BoxFiles, NothingOfTheImageIsRead) {
  for (const Bytes& file : {RichHeif(1 << 20), RichJxl(1 << 20), RichJp2(1 << 20)}) {
    FailingStream stream(file);
    const PoolPtr pool = NewPool();
    EXPECT_EQ(LxParseImageFile(&stream, pool.get()), kLxOk);
    EXPECT_NE(Find(*pool, "xmp", "XmpData"), nullptr);
    std::int64_t read = 0;
    for (const StreamRead& one : stream.reads()) read += one.bytes;
    EXPECT_LT(read, 96 << 10);
  }
}

}  // namespace
