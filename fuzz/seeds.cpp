// Writes the seeds of all fuzz targets using the tests' builders: lx_fuzz_seeds FOLDER creates FOLDER/<target>/<name>.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/support/box_builders.h"
#include "tests/support/chunk_builders.h"
#include "tests/support/image_builders.h"
#include "tests/support/rich_files.h"
#include "tests/support/tiff_builder.h"

using namespace lxtest;

namespace {

std::filesystem::path root;

void Seed(const char* target, const char* name, const Bytes& bytes) {
  const std::filesystem::path folder = root / target;
  std::filesystem::create_directories(folder);
  std::ofstream file(folder / name, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void Files(const char* target) {
  Seed(target, "rich-big.jpg", RichJpeg(kBig));
  Seed(target, "rich-little.jpg", RichJpeg(kLittle));
  Seed(target, "rich-big.tif", RichTiff(kBig));
  Seed(target, "rich-little.tif", RichTiff(kLittle));
  Seed(target, "rich.psd", RichPsd());
  Seed(target, "plain.jpg", JpegBuilder().App0Jfif().Sof2());
  Seed(target, "exif.jpg",
       JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({Short(0x0112, 6)}).Exif({Ratl(0x829A, 1, 250)})));
  Seed(target, "gps.tif", TiffBuilder(kLittle).Gps({Ascii(1, "N"), Ratl(2, {1, 1, 2, 1, 3, 1})}));
  Seed(target, "image.png", Hex("89504E470D0A1A0A 0000000D 49484452 00000040 00000030 08 02 00 00 00 00000000"));
  Seed(target, "image.gif", Text("GIF89a") + Hex("4000 3000 F7 00 00") + Filled(16));
  Seed(target, "extended.jpg", ExtendedJpeg());
  Seed(target, "rich.png",
       PngBuilder().Chunk("eXIf", RichExif(kBig)).International("XML:com.adobe.xmp", Text(RichPacket())));
  Seed(target, "rich.heic", RichHeif());
  Seed(target, "rich.jxl", RichJxl());
  Seed(target, "rich.jp2", RichJp2());
  Seed(target, "rich.gif", GifBuilder().Image().Packet(RichPacket()));
  Seed(target, "rich.xmp", Text(RichPacket()));
  Seed(target, "image.bmp", Text("BM") + Filled(8) + Hex("36000000 28000000 40000000 30000000 0100 1800") + Filled(24));
}

// For each kind, the chunks with all possible blocks, from the end of the header on.
void ChunkedFiles() {
  const Bytes exif = RichExif(kLittle);
  const Bytes packet = Text(RichPacket());
  const auto png = [](const PngBuilder& builder) {
    const Bytes file = builder;
    return Bytes(file.begin() + static_cast<std::ptrdiff_t>(PngBuilder().Bare().size()), file.end());
  };
  const auto raw = [](const char* name, const Bytes& bytes) {
    return PngBuilder().Latin(std::string("Raw profile type ") + name, RawProfile(name, bytes));
  };
  Seed("chunked_file", "own.png",
       Bytes({0}) + png(PngBuilder().Chunk("eXIf", exif).International("XML:com.adobe.xmp", packet)));
  Seed("chunked_file", "compressed.png",
       Bytes({0}) + png(PngBuilder()
                            .International("XML:com.adobe.xmp", Zlib(packet), 1)
                            .Compressed("Raw profile type exif", Zlib(RawProfile("exif", exif)))));
  Seed("chunked_file", "segment.png", Bytes({0}) + png(raw("APP1", Text("Exif") + Filled(2) + exif)));
  Seed("chunked_file", "datasets.png", Bytes({0}) + png(raw("iptc", RichIptc())));
  Seed("chunked_file", "resources.png", Bytes({0}) + png(raw("8bim", RichResources(kBig))));
  Seed("chunked_file", "packet.png", Bytes({0}) + png(raw("xmp", packet)));
  Seed("chunked_file", "blocks.webp",
       Bytes({1}) + Text("VP8X") + Hex("0A000000 10000000 3F0000 2F0000") + Text("EXIF") + Put32(exif.size(), kLittle) +
           exif + Text("XMP ") + Put32(packet.size(), kLittle) + packet);
  Seed("chunked_file", "lossless.webp", Bytes({1}) + Text("VP8L") + Hex("05000000 2F 3FC00B10 00"));
  Seed("chunked_file", "packet.gif", Bytes({2}) + GifBuilder().Image().Packet(RichPacket()).Blocks());
  Seed("chunked_file", "cut.gif", Bytes({2}) + GifBuilder().Packet("<rdf:RDF/>", false).Blocks());
  Seed("chunked_file", "rich.xmp", Bytes({3}) + packet);
}

// The first byte for the target: the kind, and whether the rest follows a valid beginning.
void BoxFiles() {
  const Bytes tiff = TiffBuilder(kLittle).Ifd0({Ascii(0x010F, "A")});
  const auto of = [](std::uint8_t kind, const Bytes& file) { return Bytes({kind}) + file; };
  const auto boxes = [](std::uint8_t kind, const Bytes& file, const Bytes& head) {
    return Bytes({kind}) + Bytes(file.begin() + static_cast<std::ptrdiff_t>(head.size()), file.end());
  };
  HeifBuilder heif = HeifBuilder().Exif(2, tiff).Packet(3, "<x:xmpmeta/>");
  const Bytes head = Box("ftyp", Text("mif1") + Filled(4) + Text("miaf"));
  Seed("box_file", "items.heic", boxes(0, heif, head));
  heif.locationVersion = 2;
  heif.itemVersion = 3;
  heif.referenceVersion = 1;
  heif.offsetSize = heif.lengthSize = heif.baseSize = heif.indexSize = 8;
  heif.items[0].inIdat = heif.items[0].toTheEnd = true;
  heif.items[1].describes = {1, 9};
  Seed("box_file", "long.heic", boxes(0, heif, head));
  Seed("box_file", "rich.heic", boxes(0, RichHeif(), head));
  Seed("box_file", "rich.jxl", boxes(1, RichJxl(), Jxl({})));
  Seed("box_file", "bare.jxl", of(2, Hex("CB 00 00")));
  Seed("box_file", "rich.jp2", boxes(3, RichJp2(), Jp2({})));
  Seed("box_file", "bare.jp2", boxes(4, Jp2Codestream(), Filled(4)));
}

void MakerNotes() {
  const TiffEntries entries = {Short(1, {92, 2, 0}), Ascii(7, "Firmware 1.00"), Long(8, 100), Ratl(0x0E, 1, 3),
                               Undef(0x10, Filled(20, 3))};
  // The note follows IFD0 and the Exif IFD; editors move notes, so any origin is a valid seed.
  for (std::uint8_t camera = 0; camera < 20; ++camera) {
    for (const Order order : {kLittle, kBig}) {
      const Bytes first = {static_cast<std::uint8_t>(camera | (order == kBig ? 0x80 : 0))};
      const std::string name = std::to_string(camera) + (order == kBig ? "-big" : "-little");
      Seed("maker_note", ("bare-" + name).c_str(), first + EncodeIfd(order, entries, 86));
      Seed("maker_note", ("tiff-" + name).c_str(),
           first + Text("Nikon") + Hex("00 02 10 00 00") + TiffBuilder(order).Ifd0(entries).Build());
    }
  }
  Seed("maker_note", "texts",
       Bytes({0x7F, 5}) + Text("Canon") + Bytes({3}) + Text("EOS") + EncodeIfd(kLittle, entries, 0));
}

void DisplayTexts() {
  const struct {
    const char* name;
    Bytes value;
  } values[] = {{"ascii", Text("plain text") + Filled(1)},
                {"utf8", Text("caf\xC3\xA9") + Filled(1)},
                {"latin1", Text("caf\xE9")},
                {"shift-jis", Hex("83 4A 83 81 83 89 00")},
                {"euc-jp", Hex("A5 AB A5 E1 A5 E9 00")},
                {"iso-2022", Hex("1B 24 42 25 2B 1B 28 42 00")},
                {"utf16", Text("UNICODE") + Filled(1) + Hex("FEFF 0043 D83D DE00 0000")},
                {"rational", Hex("00000001 000000FA")},
                {"zero-denominator", Hex("00000001 00000000")},
                {"numbers", Filled(64, 7)},
                {"icc", IccProfile("Wide colours")}};
  for (const auto& value : values) {
    for (const std::uint8_t type : Bytes({1, 2, 3, 5, 7, 10, 12, 14})) {
      Seed("display_text", (value.name + std::string("-") + std::to_string(type)).c_str(),
           Bytes({static_cast<std::uint8_t>(type & 1), type, 0, static_cast<std::uint8_t>(7 * type)}) + value.value);
    }
  }
}

// Each followed by the byte of options.
void Packets() {
  const Bytes packet = Text(RichPacket());
  Bytes wide;
  for (const std::uint8_t byte : packet) wide += Bytes({byte, 0});
  for (const std::uint8_t how : Bytes({0, 0x20, 0x40, 0x60, 0x85, 0x90})) {
    Seed("xmp_packet", ("rich-" + std::to_string(how)).c_str(), packet + Bytes({how}));
  }
  Seed("xmp_packet", "utf16", wide + Bytes({0}));
  Seed("xmp_packet", "empty", Text("<x:xmpmeta xmlns:x='adobe:ns:meta/'/>") + Bytes({0}));
  Seed("xmp_packet", "no-packet", Text("plain text") + Bytes({0}));
}

// A text argument after its length.
Bytes Argument(std::string_view text) {
  return Bytes({static_cast<std::uint8_t>(text.size())}) + Text(text);
}

void Commands() {
  for (std::uint8_t file = 0; file < 4; ++file) {
    Bytes puts = {file};
    for (std::uint8_t space = 0; space < 14; ++space) {
      for (const std::uint8_t type : Bytes({2, 3, 5})) puts += Bytes({1, space, 7, type, 3}) + Argument("12/5 7");
    }
    Seed("pool_editing", ("put-" + std::to_string(file)).c_str(), puts);
    Seed("pool_editing", ("delete-" + std::to_string(file)).c_str(),
         Bytes({file, 3, 0, 3}) + Argument("") + Bytes({4, 1, 5, 2, 6, 10, 7, 2, 4, 1, 2, 1}) + Argument("a text"));
  }
  std::uint8_t type = 0;
  for (const char* text : {"1 2 3", "-1/3", "1.5", "0x1F", "text", "", "4294967296", "1/0 -2147483648/-1"}) {
    Seed("pool_editing", ("value-" + std::to_string(type)).c_str(), Bytes({0, 0, type}) + Argument(text));
    ++type;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: lx_fuzz_seeds FOLDER\n", stderr);
    return 2;
  }
  root = argv[1];
  Files("file_to_pool");
  Files("file_to_xmp");
  Packets();
  Seed("iptc_block", "rich", RichIptc());
  Seed("iptc_block", "two", IptcBuilder().Add(25, "a").Add(120, ""));
  Seed("image_resources", "rich-big", RichResources(kBig));
  Seed("image_resources", "rich-little", RichResources(kLittle));
  ChunkedFiles();
  BoxFiles();
  MakerNotes();
  DisplayTexts();
  Commands();
  return 0;
}
