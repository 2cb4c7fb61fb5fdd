// Writes the seeds of all fuzz targets using the tests' builders: lx_fuzz_seeds FOLDER creates FOLDER/<target>/<name>.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "kit/model/tables/tables.h"
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
  const auto raw = [](const char* name, const Bytes& bytes) {
    return PngBuilder().Latin(std::string("Raw profile type ") + name, RawProfile(name, bytes));
  };
  HeifBuilder heif = HeifBuilder().Exif(2, TiffBuilder(kLittle).Ifd0({Ascii(0x010F, "A")})).Packet(3, "<x:xmpmeta/>");
  heif.locationVersion = 2;
  heif.itemVersion = 3;
  heif.referenceVersion = 1;
  heif.offsetSize = heif.lengthSize = heif.baseSize = heif.indexSize = 8;
  heif.items[0].inIdat = heif.items[0].toTheEnd = true;
  heif.items[1].describes = {1, 9};
  for (const NamedFile& file : RichFiles()) Seed(target, file.name, file.bytes);
  for (const NamedFile& file : std::initializer_list<NamedFile>{
           {"little.jpg", RichJpeg(kLittle)},
           {"big.tif", RichTiff(kBig)},
           {"plain.jpg", JpegBuilder().App0Jfif().Sof2()},
           {"chunk.png", PngBuilder().Chunk("eXIf", RichExif(kBig))},
           {"segment.png", raw("APP1", Text("Exif") + Filled(2) + RichExif(kLittle))},
           {"datasets.png", raw("iptc", RichIptc())},
           {"packet.png", raw("xmp", Text(RichPacket()))},
           {"lossless.webp", WebpBuilder().Chunk("VP8L", Hex("2F 3FC00B10"))},
           {"long.heic", heif},
           {"bare.jxl", Hex("FF0A CB 00 00") + Filled(16)},
           {"bare.jp2", Jp2Codestream()},
           {"cut.gif", GifBuilder().Packet("<rdf:RDF/>", false)},
           {"image.bmp", Text("BM") + Filled(8) + Hex("36000000 28000000 40000000 30000000 0100 1800") + Filled(24)}}) {
    Seed(target, file.name, file.bytes);
  }
}

// A note for each row of the selectors, by which every dictionary is reached.
void MakerNotes() {
  const TiffEntries entries = {Short(1, {92, 2, 0}), Ascii(7, "Firmware 1.00"), Long(8, 100), Ratl(0x0E, 1, 3),
                               Undef(0x10, Filled(20, 3))};
  int count = 0;
  for (const LxTagRecord* make = kLxMakerSelector; make->name != nullptr; ++make) {
    for (const LxTagRecord* model = make->subNamespace->dictionary; model->name != nullptr; ++model) {
      const Order order = ++count % 2 == 0 ? kBig : kLittle;
      const TiffBuilder camera = TiffBuilder(order).Ifd0({Ascii(0x010F, make->name), Ascii(0x0110, model->name)});
      const Bytes ownHeader = Text("Nikon") + Hex("00 02 10 00 00") + TiffBuilder(order).Ifd0(entries).Build();
      const std::string name = "note-" + std::to_string(count);
      Seed("file_to_pool", (name + "-bare").c_str(), TiffBuilder(camera).Exif({UndefIfd(0x927C, {}, entries)}));
      Seed("maker_note", name.c_str(), Bytes({static_cast<std::uint8_t>(count - 1)}) + EncodeIfd(order, entries, 0));
      Seed("file_to_pool", (name + "-header").c_str(), TiffBuilder(camera).Exif({Undef(0x927C, ownHeader)}));
    }
  }
}

// Files without the beginning that the target puts before them, each with the byte that chooses the kind in front.
void AfterHeads() {
  const auto seed = [](const char* target, std::uint8_t kind, const char* name, const Bytes& file, const Bytes& head) {
    Seed(target, name, Bytes({kind}) + Bytes(file.begin() + static_cast<std::ptrdiff_t>(head.size()), file.end()));
  };
  seed("box_file", 0, "rich.heic", RichHeif(), Box("ftyp", Text("mif1") + Filled(4) + Text("miaf")));
  seed("box_file", 1, "rich.jxl", RichJxl(), Jxl({}));
  seed("box_file", 2, "rich.jp2", RichJp2(), Jp2({}));
  seed("box_file", 4, "bare.jp2", Jp2Codestream(), Filled(4));
  seed("chunked_file", 0, "rich.png", PngBuilder().Chunk("eXIf", RichExif(kBig)), PngBuilder().Bare());
  seed("chunked_file", 1, "rich.webp", WebpBuilder().Chunk("EXIF", RichExif(kLittle)), WebpBuilder());
  seed("chunked_file", 2, "rich.gif", GifBuilder().Image().Packet(RichPacket()), GifBuilder().Bare());
  seed("chunked_file", 3, "rich.xmp", Text(RichPacket()), {});
}

// Commands that put items of every namespace and type, and delete; values of every form.
void Commands() {
  const auto argument = [](std::string_view text) {  // Preceded by its length.
    return Bytes({static_cast<std::uint8_t>(text.size())}) + Text(text);
  };
  for (std::uint8_t file = 0; file < 4; ++file) {
    Bytes commands = {file};
    for (std::uint8_t space = 0; space < 14; ++space) commands += Bytes({1, space, 7, 5, 3}) + argument("12/5 7");
    commands += Bytes({3, 0, 3}) + argument("") + Bytes({4, 1, 5, 2, 6, 10, 7});
    for (const char* text : {"-1/3", "1.5", "0x1F", "4294967296"}) commands += Bytes({0, 5}) + argument(text);
    Seed("pool_editing", std::to_string(file).c_str(), commands);
  }
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

// Each with the byte of options after it.
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
  Seed("image_resources", "rich", RichResources(kBig));
  AfterHeads();
  Commands();
  MakerNotes();
  DisplayTexts();
  return 0;
}
