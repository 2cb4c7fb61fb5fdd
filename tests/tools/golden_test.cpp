// The command's output for built samples, as files under tests/golden/: a change of it shows as a diff.
// The target update-goldens rewrites them.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"
#include "tests/tools/run_command.h"
#include "tools/json/pool_json.h"

namespace lxtest {
namespace {

// The items of JSON are those of the text, a line each in the same order, and their values stand in the file where they
// say.
void ExpectTree(const OrderedJson& items, const Bytes& file, std::vector<std::string>* lines) {
  for (const OrderedJson& item : items) {
    ASSERT_FALSE(lines->empty());
    std::size_t at = 0;
    for (const char* key : {"namespace", "name", "type", "display"}) {
      std::string text = item[key].get<std::string>().substr(0, 90);
      text.erase(text.find_last_not_of(' ') + 1);  // As at the end of a line.
      if (text.find_first_of("\n\t") != std::string::npos) continue;
      at = lines->back().find(text, at);
      ASSERT_NE(at, std::string::npos) << lines->back() << " has no " << text;
    }
    lines->pop_back();
    if (!item["offset"].is_null()) {
      const Bytes value = Hex(item["value"].get<std::string>());
      const auto begin = file.begin() + item["offset"].get<std::ptrdiff_t>();
      EXPECT_TRUE(std::equal(value.begin(), value.end(), begin)) << item.dump();
    }
    if (item.contains("children")) ExpectTree(item["children"], file, lines);
  }
}

void ComparesWithGoldens(const std::string& name, const std::string& folder) {
  const struct {
    std::vector<std::string> form;
    const char* ending;
  } kOutputs[] = {
      {{"pool", "--all"}, ".pool.txt"},
      {{"xmp"}, ".xmp"},
  };
  for (const auto& output : kOutputs) {
    std::vector<std::string> arguments = output.form;
    arguments.push_back(name);
    const Outcome outcome = Lxbridge(arguments, {.folder = folder});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const std::string& text = outcome.out;
    const std::string golden = std::string(LX_GOLDEN_DIR) + "/" + name + output.ending;
    if (::getenv("LX_UPDATE_GOLDENS") != nullptr) {
      std::ofstream(golden, std::ios::binary) << text;
    }
    EXPECT_EQ(AsText(ReadWholeFile(golden)), text) << golden << "\nupdate-goldens takes the new text over";
    if (output.form[0] == "xmp") continue;
    const OrderedJson line = OrderedJson::parse(Lxbridge({"pool", "--format", "json", name}, {.folder = folder}).out);
    std::vector<std::string> lines = Lines(text);
    std::reverse(lines.begin(), lines.end());
    lines.pop_back();
    ExpectTree(line["items"], ReadWholeFile(folder + "/" + name), &lines);
    EXPECT_TRUE(lines.empty());
  }
}

// Every field has a value that no other has.
TEST(Golden, EachValueOfAPoolStandsUnderItsName) {
  const std::uint8_t value[] = {0x01, 0xfa, 0x03};
  LxMetadataItem child = {};
  child.nameSpace = "n2";
  child.displayText = "d\xFF";
  child.value = value + 3;  // Empty, but of a place.
  LxMetadataItem item = {"n1",   "name", "label", "type", "display", "valueLabel", nullptr,
                         &child, 7,      11,      13,     3,         value,        nullptr};
  LxBlock block = {nullptr, 4096, 100, value};
  LxBlockCache cache = {};
  cache.blocks = &block;
  LxMetadataPool pool = {};
  pool.width = 101;
  pool.height = 102;
  pool.samples = 103;
  pool.bits = 104;
  pool.colourModel = kLxColourCmyk;
  pool.mcuWidth = 16;
  pool.mcuHeight = 32;
  pool.hasLayers = 1;
  pool.orientation = kLxRot270Cw;
  pool.fileKind = kLxFilePsd;
  pool.compression = kLxCompressionLzw;
  pool.blocks = &cache;
  pool.root = &item;
  std::string out;
  lxbridge::json::WritePoolJson(&out, "file", kLxReadError, pool);
  EXPECT_EQ(
      out,
      R"({"file": "file", "status": -4, "statusName": "ReadError", "attributes": {"width": 101, "height": 102, )"
      R"("samples": 103, "bits": 104, "colourModel": "CMYK", "mcuWidth": 16, "mcuHeight": 32, "hasLayers": 1, )"
      R"("hasMetadata": 0, "orientation": "rot270cw", "fileKind": "psd", "compression": "lzw"}, "items": [)"
      R"({"namespace": "n1", "name": "name", "label": "label", "tag": 11, "type": "type", "typeCode": 13, "flags": 7, )"
      R"("length": 3, "value": "01fa03", "offset": 4096, "display": "display", "valueLabel": "valueLabel", "children": [)"
      R"({"namespace": "n2", "name": "", "label": null, "tag": 0, "type": null, "typeCode": 0, "flags": 0, "length": 0, )"
      R"("value": "", "offset": 4099, "display": {"hex": "64ff"}, "valueLabel": null}]}]})"
      "\n");
}

TEST(Golden, TheSamplePhotograph) {
  const TempFolder folder;
  ASSERT_EQ(RunProgram(LX_MAKE_SAMPLE, {folder.path() + "/sample.jpg"}).status, 0);
  ComparesWithGoldens("sample.jpg", folder.path());
}

// Tags of every kind of mapping: structures, dates, coordinates, texts in three character codes, numbers of all types.
TEST(Golden, ATiffFileWithTagsOfEveryKind) {
  // clang-format off
  const TiffEntries ifd0 = {
      Long(0x0100, 4000), Long(0x0101, 3000), Short(0x0102, {8, 8, 8}), Short(0x0103, 1), Short(0x0106, 2),
      Ascii(0x010E, "Ein Steg, abends"), Ascii(0x010F, "Example Cameras"), Ascii(0x0110, "Model Two"),
      Short(0x0112, 6), Short(0x0115, 3), Ratl(0x011A, 3000000, 10000), Ratl(0x011B, 300, 1), Short(0x011C, 1),
      Short(0x0128, 2), Short(0x012D, std::vector<std::int64_t>(6, 257)), Ascii(0x0131, "Editor 1.0"),
      Ascii(0x0132, "2024:02:29 23:59:59"), Ascii(0x013B, "Ren\xE9 Example"), Ratl(0x013E, {3127, 10000, 3290, 10000}),
      Short(0x0212, {2, 1}), Short(0x0213, 2), Ratl(0x0214, {0, 1, 255, 1, 128, 1, 255, 1, 128, 1, 255, 1}),
      Ascii(0x8298, "(c) Example")};
  const TiffEntries exif = {
      Ratl(0x829A, 13, 10), Ratl(0x829D, 28, 10), Short(0x8822, 2), Ascii(0x8824, "sensitivity"),
      Short(0x8827, {100, 200}),
      Undef(0x8828, Hex("02000100 5200 4700") + Put32(1, kLittle) + Put32(2, kLittle) + Put32(3, kLittle) + Put32(4, kLittle)),
      Undef(0x9000, Text("0220")), Ascii(0x9003, "2024:02:29 12:00:00"), Ascii(0x9004, "2024:06:01 12:00:00"),
      Undef(0x9101, Hex("01020300")), Ratl(0x9102, 4, 1), SRatl(0x9201, 7655, 1000), Ratl(0x9202, 297, 100),
      SRatl(0x9203, -15, 10), SRatl(0x9204, 1, 3), Ratl(0x9205, 2, 1), Ratl(0x9206, 0xFFFFFFFF, 1), Short(0x9207, 5),
      Short(0x9208, 10), Short(0x9209, 0x5F), Ratl(0x920A, 350, 10), Short(0x9214, {100, 200, 10}),
      Undef(0x9286, Text("UNICODE") + Filled(1) + Hex("5300740065006700200013202000610062")), Ascii(0x9290, "012"),
      Ascii(0x9291, "5"), Undef(0xA000, Text("0100")), Short(0xA001, 0xFFFF), Long(0xA002, 4000), Long(0xA003, 3000),
      Ascii(0xA004, "NOTE.WAV"), Ratl(0xA20E, 2000, 1), Short(0xA210, 3), Ratl(0xA215, 100, 1), Short(0xA217, 2),
      Undef(0xA300, {3}), Undef(0xA301, {1}), Undef(0xA302, Hex("02000200 00010102")), Short(0xA401, 1),
      Short(0xA402, 1), Short(0xA403, 1), Ratl(0xA404, 0, 1), Short(0xA405, 52), Short(0xA406, 3), Short(0xA40A, 2),
      Undef(0xA40B, Hex("02000100 41000000 42000000")), Short(0xA40C, 3),
      Ascii(0xA420, "0123456789abcdef0123456789abcdef")};
  const TiffEntries gps = {
      Byte(0x0000, {2, 3, 0, 0}), Ascii(0x0001, "S"), Ratl(0x0002, {33, 1, 51, 1, 3588, 100}), Ascii(0x0003, "E"),
      Ratl(0x0004, {151, 1, 125483, 10000, 0, 1}), Byte(0x0005, {1}), Ratl(0x0006, 125, 10),
      Ratl(0x0007, {23, 1, 59, 1, 305, 10}), Ascii(0x0008, "05"), Ascii(0x0009, "A"), Ascii(0x000A, "3"),
      Ratl(0x000B, 12, 10), Ascii(0x000C, "K"), Ratl(0x000D, 5, 1), Ascii(0x0010, "T"), Ratl(0x0011, 27350, 100),
      Ascii(0x0012, "WGS-84"), Ascii(0x0013, "S"), Ratl(0x0014, {34, 1, 0, 1, 0, 1}),
      Undef(0x001B, Text("ASCII") + Filled(3) + Text("GPS")), Ascii(0x001D, "2024:02:29"), Short(0x001E, 1)};
  // clang-format on
  const TempFolder folder;
  folder.Add("every-kind.tif", TiffBuilder(kLittle).Ifd0(ifd0).Exif(exif).Gps(gps));
  ComparesWithGoldens("every-kind.tif", folder.path());
}

}  // namespace
}  // namespace lxtest
