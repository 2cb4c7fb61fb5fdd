#include "tests/support/rich_files.h"

#include <string>

#include "tests/support/box_builders.h"
#include "tests/support/chunk_builders.h"

namespace lxtest {
namespace {

Bytes Thumbnail(Order order) {
  return JpegBuilder().App1Exif(TiffBuilder(order).Ifd0({Short(0x0112, 3)})).Comment("thumbnail").Build();
}

TiffEntries TiffGap(std::size_t size) {
  return size == 0 ? TiffEntries() : TiffEntries{Undef(0xC100, Filled(size, 0x22))};
}

// A camera's note: a bare IFD whose offsets count from the TIFF header.
TiffEntry MakerNote() {
  return UndefIfd(0x927C, Bytes(),
                  {Short(0x0001, {92, 2, 0, 5, 1, 0, 0, 4, 0, 1}), Short(0x0004, {68, 3, 100, 200, 0, 0, 7}),
                   Ascii(0x0006, "IMG:Example JPEG"), Ascii(0x0007, "Firmware Version 1.00"), Long(0x0008, 1180861),
                   Ascii(0x0009, "Ada Example"), Undef(0x00FF, Filled(40, 0x11))});
}

TiffEntries Ifd0() {
  return {Ascii(0x010E, "A description"),
          Ascii(0x010F, "Canon"),
          Ascii(0x0110, "Canon EOS Example"),
          Short(0x0112, 6),
          Ratl(0x011A, 300, 1),
          Ratl(0x011B, 300, 1),
          Short(0x0128, 2),
          Ascii(0x0131, "Example 1.0"),
          Ascii(0x0132, "2024:06:21 18:30:05"),
          Ascii(0x013B, "Ada Example; Ben Example"),
          Ratl(0x013F, {313, 1000, 329, 1000}),
          Short(0x0213, 1),
          Ascii(0x8298, "(c) Ada \xE9")};
}

TiffEntries ExifEntries() {
  const auto ids = [](int index) { return Bytes({static_cast<std::uint8_t>(index), 0}); };
  return {Ratl(0x829A, 1, 250), Ratl(0x829D, 56, 10), Short(0x8822, 3), Short(0x8827, {200, 400}),
          // OECF (Exif 2.2, 4.6.5): columns, rows, names, values. The counts are 16-bit numbers of either order.
          Undef(0x8828, ids(1) + ids(1) + Text("R") + Filled(1) + Filled(8, 1)), Undef(0x9000, Text("0221")),
          Ascii(0x9003, "2024:06:21 18:30:05"), Ascii(0x9004, "2024:06:21 18:30:05"), Undef(0x9101, {1, 2, 3, 0}),
          SRatl(0x9201, -7, 2), Ratl(0x9202, 4, 1), SRatl(0x9204, -1, 3), Ratl(0x9206, 0, 0), Short(0x9207, 5),
          Short(0x9209, 0x19), Ratl(0x920A, 50, 1), MakerNote(),
          Undef(0x9286, Text("UNICODE") + Filled(1) + Hex("0050006900650072")), Ascii(0x9290, "07"),
          Ascii(0x9291, "25"), Short(0xA001, 1), Short(0xA002, 64), Short(0xA003, 48), Undef(0xA302, Filled(8, 1)),
          Undef(0xA40B, Filled(12, 1))};
}

TiffEntries Gps() {
  return {Byte(0x0000, {2, 2, 0, 0}),
          Ascii(0x0001, "N"),
          Ratl(0x0002, {37, 1, 46, 1, 30, 1}),
          Ascii(0x0003, "W"),
          Ratl(0x0004, {122, 1, 2515, 100, 0, 0}),
          Byte(0x0005, {1}),
          Ratl(0x0006, 12, 10),
          Ratl(0x0007, {18, 1, 30, 1, 5, 1}),
          Undef(0x001B, Text("ASCII") + Filled(3) + Text("NETWORK")),
          Ascii(0x001D, "2024:06:21")};
}

}  // namespace

std::string_view RichPacket() {
  return "<?xpacket begin='\xEF\xBB\xBF' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>"
         "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
         "<rdf:Description rdf:about='' xmlns:xmp='http://ns.adobe.com/xap/1.0/'"
         " xmlns:dc='http://purl.org/dc/elements/1.1/' xmlns:tiff='http://ns.adobe.com/tiff/1.0/'"
         " xmlns:exif='http://ns.adobe.com/exif/1.0/' xmp:Rating='4' tiff:Make='Example'>"
         "<dc:subject><rdf:Bag><rdf:li>harbour</rdf:li><rdf:li>dusk &amp; dawn</rdf:li></rdf:Bag></dc:subject>"
         "<dc:creator><rdf:Seq><rdf:li>Ada</rdf:li></rdf:Seq></dc:creator>"
         "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>Pier</rdf:li><rdf:li xml:lang='de'>Seebr\xC3\xBC"
         "cke</rdf:li></rdf:Alt></dc:title>"
         "<exif:Flash rdf:parseType='Resource'><exif:Fired>True</exif:Fired><exif:Mode>1</exif:Mode></exif:Flash>"
         "<xmp:Label rdf:parseType='Resource'><rdf:value>red</rdf:value><xmp:kind>q</xmp:kind></xmp:Label>"
         "</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end='w'?>";
}

IptcBuilder RichIptc() {
  return IptcBuilder()
      .DataSet(1, 90, Text("\x1B%G"))
      .DataSet(2, 0, {0, 4})
      .Add(5, "Harbour")
      .Add(10, "3")
      .Add(25, "harbour")
      .Add(25, "dusk")
      .Add(25, "harbour")
      .Add(25, "caf\xE9")
      .Add(55, "20240621")
      .Add(60, "183005+0200")
      .Add(80, "Ada Example")
      .Add(90, "San Francisco")
      .Add(101, "\xE5\xA3\xB0")
      .Add(120, "The harbour at dusk")
      .Add(221, "unknown dataset");
}

ResourceBuilder RichResources(Order order, std::size_t gap) {
  const Bytes exif = TiffBuilder(order == kBig ? kLittle : kBig).Ifd0({Ascii(0x010F, "inner"), Short(0x0112, 8)});
  ResourceBuilder resources;
  resources.Iptc(RichIptc());
  const auto leaveGap = [&] {
    if (gap != 0) resources.Block(0x0FA0, Filled(gap, 0x22));
  };
  leaveGap();
  resources.Block(0x0425, Filled(16, 0xEE)).Block(0x03ED, Hex("00480000000100010048000000010001"), "name");
  leaveGap();
  resources.Block(0x040A, {1}).Exif(exif);
  leaveGap();
  return resources.Thumbnail(Thumbnail(order)).Xmp("<x:xmpmeta xmlns:x='adobe:ns:meta/'/>");
}

TiffBuilder RichExif(Order order, std::size_t gap) {
  return TiffBuilder(order)
      .Ifd0(Ifd0())
      .Ifd0(TiffGap(gap))
      .Exif(ExifEntries())
      .Interop({Ascii(0x0001, "R98"), Undef(0x0002, Text("0100"))})
      .Ifd0(TiffGap(gap))
      .Gps(Gps())
      .Ifd0(TiffGap(gap))
      .Ifd1({Short(0x0103, 6), Short(0x0112, 1)})
      .Ifd1(TiffGap(gap))
      .Thumbnail(Thumbnail(order));
}

Bytes RichJpeg(Order order, std::size_t gap) {
  JpegBuilder jpeg;
  jpeg.App0Jfif().App1Exif(RichExif(order, gap)).App1Xmp(RichPacket());
  if (gap != 0) jpeg.Comment(std::string(gap, 'x'));
  jpeg.App2Icc(IccProfile("Wide colours")).App2FlashPix(Filled(20, 1)).App13(RichResources(order, gap));
  return jpeg.Comment("A comment").Build();
}

Bytes RichTiff(Order order, std::size_t gap) {
  return RichExif(order, gap)
      .Ifd0({Short(0x0100, 64), Short(0x0101, 48), Short(0x0102, {8, 8, 8}), Short(0x0103, 1), Short(0x0106, 2),
             SubIfds(0x014A, {{Short(0x0103, 7)}, {Short(0x0103, 8), SubIfd(0x014A, {Short(0x0103, 1)})}}),
             Byte(0x02BC, Text(RichPacket())), Undef(0x83BB, RichIptc()), Undef(0x8649, RichResources(order, gap)),
             Undef(0x8773, IccProfile("Wide colours"))})
      .NextIfd({Float(0xC001, 1.5F), Double(0xC002, 2.5)})
      .Build();
}

Bytes ExtendedJpeg() {
  const Bytes extended = Text(
      "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description xmlns:a='http://a/' a:b='c'/>"
      "</rdf:RDF>");
  const std::string digest = "2C81C621912E4CF25942B609DBD8CF08";
  const auto portion = [&](std::size_t from, std::size_t to) {
    const Bytes part(extended.begin() + static_cast<std::ptrdiff_t>(from),
                     extended.begin() + static_cast<std::ptrdiff_t>(to));
    return Text(digest) + Put32(extended.size()) + Put32(from) + part;
  };
  return JpegBuilder()
      .App1Xmp(
          "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
          "xmlns:n='http://ns.adobe.com/xmp/note/' n:HasExtendedXMP='" +
          digest + "'/></rdf:RDF>")
      .App(1, "http://ns.adobe.com/xmp/extension/", portion(40, extended.size()))
      .App(1, "http://ns.adobe.com/xmp/extension/", portion(0, 40));
}

Bytes RichPng(std::size_t gap) {
  return PngBuilder()
      .Compressed("Raw profile type exif", Zlib(RawProfile("exif", RichExif(kLittle))))
      .Chunk("IDAT", Filled(gap))
      .Latin("Raw profile type 8bim", RawProfile("8bim", RichResources(kBig)))
      .Chunk("IDAT", Filled(gap))
      .International("XML:com.adobe.xmp", Zlib(Text(RichPacket())), 1);
}

Bytes RichWebp(std::size_t gap) {
  const Bytes canvas = Hex("0C000000 3F0000 2F0000");
  return WebpBuilder()
      .Chunk("VP8X", canvas)
      .Chunk("VP8 ", Filled(gap))
      .Chunk("EXIF", RichExif(kBig))
      .Chunk("XMP ", Text(RichPacket()));
}

Bytes RichHeif(std::size_t gap) {
  HeifBuilder file = HeifBuilder().Add(PacketItem(3, Zlib(Text(RichPacket())), "deflate"));
  file.Add({.id = 4, .type = "av01", .data = Filled(gap)}).Exif(2, RichExif(kBig));
  file.items.back().pieces = 3;
  file.items.back().describes = {1};
  return file;
}

Bytes RichJxl(std::size_t gap) {
  return Jxl(Box("jxlc", Hex("FF0A CB 00 00") + Filled(gap)) + Box("brob", Text("Exif") + Brotli(RichExif(kLittle))) +
             Box("jxlp", Filled(gap + 4)) + Box("xml ", Text(RichPacket())));
}

Bytes RichJp2(std::size_t gap) {
  return Jp2(Jp2Header() + Box("uuid", Hex("33C7A4D2B81D4723A0BAF1A3E097AD38") + RichIptc()) +
             Box("free", Filled(gap)) + Box("uuid", Hex("2C4C0100850440B9A03E562148D6DFEB") + RichResources(kBig)) +
             Box("free", Filled(gap)) + Box("xml ", Text(RichPacket())) +
             Box("uuid", Text("JpgTiffExif->JP2") + RichExif(kLittle)));
}

Bytes RichPsd(std::size_t gap) {
  PsdBuilder psd;
  psd.layerLength = 12;
  return psd.Resources(RichResources(kBig, gap));
}

std::vector<NamedFile> RichFiles(std::size_t gap) {
  return {{"JPEG", RichJpeg(kBig, gap)},
          {"TIFF", RichTiff(kLittle, gap)},
          {"PSD", RichPsd(gap)},
          {"PNG", RichPng(gap)},
          {"WebP", RichWebp(gap)},
          {"HEIF", RichHeif(gap)},
          {"JPEG XL", RichJxl(gap)},
          {"JPEG 2000", RichJp2(gap)},
          {"GIF", GifBuilder().Image().Packet(RichPacket())},
          {"side-car", Text(RichPacket())},
          {"extended packet", ExtendedJpeg()}};
}

}  // namespace lxtest
