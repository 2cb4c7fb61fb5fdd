// Examples of the conversion, made by the library itself: for each tag of the dictionaries, a file with an example
// value is built and read through the exported functions. Prints a line for each tag, with its fields separated by
// tabs:
//   block, tag id, name, the value in the file, property, the value in XMP     (the last two empty: not converted)
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "tests/support/image_builders.h"
#include "tests/support/xmp_dump.h"

using namespace lxtest;

namespace {

struct Example {
  std::string text;
  TiffEntry entry;
};

std::string Quoted(std::string_view text) {
  return std::string("ASCII \"").append(text).append("\"");
}

Example Words(std::uint16_t tag, std::string_view text) {
  return {Quoted(text), Ascii(tag, text)};
}

std::string Joined(const std::vector<std::int64_t>& numbers, std::size_t group) {
  std::string text;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i != 0) text += i % group != 0 ? "/" : ", ";
    text += std::to_string(numbers[i]);
  }
  return text;
}

Example Figures(std::uint16_t tag, std::uint16_t type, const std::vector<std::int64_t>& numbers) {
  const bool halves = type == kLxTypeRational || type == kLxTypeSRational;
  const char* name = "LONG ";
  if (type == kLxTypeByte) name = "BYTE ";
  if (type == kLxTypeShort) name = "SHORT ";
  if (type == kLxTypeRational) name = "RATIONAL ";
  if (type == kLxTypeSRational) name = "SRATIONAL ";
  return {name + Joined(numbers, halves ? 2 : 1), Numbers(tag, type, numbers)};
}

// Bytes that are a text are shown as text.
Example Opaque(std::uint16_t tag, const Bytes& bytes) {
  std::string shown;
  for (const std::uint8_t byte : bytes) {
    if (byte >= 0x20 && byte < 0x7F) {
      shown += static_cast<char>(byte);
    } else {
      char escape[8];
      (void)std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned>(byte));
      shown += escape;
    }
  }
  return {"UNDEFINED \"" + shown + "\"", Undef(tag, bytes)};
}

// Values that a camera or a converter would write, for tags where an arbitrary value of the type is invalid or a bad
// example. In the order of the tags.
std::vector<Example> ChosenExamples(const std::string& block, std::uint16_t tag) {
  const Bytes zero = Filled(1);
  if (block == "tiff") {
    switch (tag) {
      case 0x0100:
      case 0x0101:
        return {Figures(tag, kLxTypeLong, {tag == 0x0100 ? 4000 : 3000})};
      case 0x0102:
        return {Figures(tag, kLxTypeShort, {8, 8, 8})};
      case 0x010E:
        return {Words(tag, "The harbour at dusk")};
      case 0x010F:
        return {Words(tag, "Example Cameras")};
      case 0x0110:
        return {Words(tag, "Model One")};
      case 0x011A:
      case 0x011B:
        return {Figures(tag, kLxTypeRational, {300, 1})};
      case 0x012D:
        return {Figures(tag, kLxTypeShort, {0, 257, 514})};
      case 0x0131:
        return {Words(tag, "Firmware 1.1")};
      case 0x013B:
        return {Words(tag, "Ada Example")};
      case 0x013E:
        return {Figures(tag, kLxTypeRational, {313, 1000, 329, 1000})};
      case 0x013F:
        return {Figures(tag, kLxTypeRational, {64, 100, 33, 100, 21, 100, 71, 100, 15, 100, 6, 100})};
      case 0x0211:
        return {Figures(tag, kLxTypeRational, {299, 1000, 587, 1000, 114, 1000})};
      case 0x0212:
        return {Figures(tag, kLxTypeShort, {2, 1})};
      case 0x0214:
        return {Figures(tag, kLxTypeRational, {0, 1, 255, 1, 128, 1, 255, 1, 128, 1, 255, 1})};
      case 0x8298:
        return {Words(tag, "(c) 2024 Ada Example")};
      default:
        return {};
    }
  }
  if (block == "gps") {
    switch (tag) {
      case 0x0000:
        return {Figures(tag, kLxTypeByte, {2, 2, 0, 0})};
      case 0x0002:
        return {Figures(tag, kLxTypeRational, {37, 1, 46, 1, 30, 1})};
      case 0x0004:
        return {Figures(tag, kLxTypeRational, {122, 1, 2550, 100, 0, 1})};
      case 0x0007:
        return {Figures(tag, kLxTypeRational, {16, 1, 30, 1, 55, 10})};
      case 0x0008:
        return {Words(tag, "04,08,17")};
      case 0x0009:
        return {Words(tag, "A")};
      case 0x000A:
        return {Words(tag, "3")};
      case 0x000C:
      case 0x0019:
        return {Words(tag, "K")};
      case 0x000E:
      case 0x0010:
      case 0x0017:
        return {Words(tag, "T")};
      case 0x0012:
        return {Words(tag, "WGS-84")};
      case 0x0014:
      case 0x0016:
        return {Figures(tag, kLxTypeRational, {48, 1, 51, 1, 2933, 100})};
      case 0x001B:
        return {Opaque(tag, Text("ASCII") + Filled(3) + Text("GPS"))};
      case 0x001C:
        return {Opaque(tag, Text("ASCII") + Filled(3) + Text("Harbour"))};
      default:
        return {};
    }
  }
  switch (tag) {
    case 0x829A:
      return {Figures(tag, kLxTypeRational, {1, 250})};
    case 0x829D:
      return {Figures(tag, kLxTypeRational, {56, 10})};
    case 0x8824:
      return {Words(tag, "spectral")};
    case 0x8827:
      return {Figures(tag, kLxTypeShort, {200})};
    case 0x8828:  // Two columns, one row.
      return {Opaque(tag, Put16(2) + Put16(1) + Text("log") + zero + Text("lin") + zero + Put32(0xFFFFFFFF) + Put32(3) +
                              Put32(1) + Put32(2))};
    case 0x9000:
      return {Opaque(tag, Text("0221"))};
    case 0x9101:
      return {Opaque(tag, {1, 2, 3, 0})};
    case 0x9203:
    case 0x9204:
      return {Figures(tag, kLxTypeSRational, {-1, 3})};
    case 0x9209:
      return {Figures(tag, kLxTypeShort, {0x19})};
    case 0x920A:
      return {Figures(tag, kLxTypeRational, {50, 1})};
    case 0x9214:
      return {Figures(tag, kLxTypeShort, {640, 480, 100})};
    case 0x927C:
      return {Opaque(tag, Text("MAKER"))};
    case 0x9286:
      return {Opaque(tag, Text("ASCII") + Filled(3) + Text("From the pier"))};
    case 0xA000:
      return {Opaque(tag, Text("0100"))};
    case 0xA004:
      return {Words(tag, "DSC00001.WAV")};
    case 0xA20C:  // One column, one row.
      return {Opaque(tag, Put16(1) + Put16(1) + Text("H") + zero + Put32(1) + Put32(2))};
    case 0xA214:
      return {Figures(tag, kLxTypeShort, {320, 240})};
    case 0xA300:
      return {Opaque(tag, {3})};
    case 0xA301:
      return {Opaque(tag, {1})};
    case 0xA302:
      return {Opaque(tag, Put16(2) + Put16(2) + Bytes{0, 1, 1, 2})};
    case 0xA40B:
      return {Opaque(tag, Put16(1) + Put16(1) + Put16('A', kLittle) + Put16('f', kLittle) + Filled(2))};
    case 0xA420:
      return {Words(tag, "00000000000000000000000000000001")};
    case 0xFDE8:
      return {Words(tag, "Owner's Name: Ada Example")};
    case 0xFDE9:
      return {Words(tag, "Serial Number: 123")};
    case 0xFDEA:
      return {Words(tag, "Lens: 24.0-70.0 mm")};
    case 0xFE4C:
      return {Words(tag, "Raw File: a.raw")};
    case 0xFE4D:
      return {Words(tag, "Converter: Rawforge 2.0")};
    case 0xFE4E:
      return {Words(tag, "White Balance: Custom")};
    case 0xFE4F:
      return {Words(tag, "Temperature: 5500")};
    case 0xFE50:
      return {Words(tag, "Tint: +4")};
    case 0xFE51:
      return {Words(tag, "Exposure: +0.50")};
    case 0xFE52:
      return {Words(tag, "Shadows: 5")};
    case 0xFE53:
      return {Words(tag, "Brightness: 50")};
    case 0xFE54:
      return {Words(tag, "Contrast: 25")};
    case 0xFE55:
      return {Words(tag, "Saturation: 10")};
    case 0xFE56:
      return {Words(tag, "Sharpness: 25")};
    case 0xFE57:
      return {Words(tag, "Smoothness: 0")};
    case 0xFE58:
      return {Words(tag, "Moire Filter: Off")};
    default:
      return {};
  }
}

// One of each kind of value that a rule may require, so that every tag has a suitable one.
std::vector<Example> AnyExamples(std::uint16_t tag) {
  return {
      Words(tag, "2024:06:21 18:30:05"),
      Figures(tag, kLxTypeShort, {1}),
      Figures(tag, kLxTypeRational, {5, 2}),
      Figures(tag, kLxTypeByte, {1}),
      Figures(tag, kLxTypeSRational, {-1, 3}),
      Figures(tag, kLxTypeLong, {1}),
      Figures(tag, kLxTypeShort, {1, 2}),
      Figures(tag, kLxTypeRational, {1, 2, 3, 4, 5, 6}),
      Words(tag, "text"),
      Words(tag, "2024:06:21"),
      Opaque(tag, {1}),
      Opaque(tag, Text("0100")),
      Opaque(tag, Text("ASCII") + Filled(3) + Text("text")),
  };
}

class Reader {
 public:
  explicit Reader(const char* scratchFile) : path_(scratchFile) {}

  std::vector<lxbridge::XmpNode> Properties(const Bytes& file) const {
    (void)std::remove(path_);  // Some file systems write a file to disk when it is truncated and written again.
    std::ofstream out(path_, std::ios::binary);
    out.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
    out.close();
    LxInterchangeHandle const handle = LxInterchangeNew(path_);
    std::vector<lxbridge::XmpNode> properties = lxbridge::XmpView(LxInterchangeGetXMP(handle)).Properties();
    LxInterchangeDelete(handle);
    return properties;
  }

 private:
  const char* path_;
};

void Print(const char* block, const LxTagRecord& record, std::string_view value,
           const std::vector<lxbridge::XmpNode>& properties) {
  std::printf("%s\t%u\t%s\t%s\t", block, unsigned{record.id}, record.name, std::string(value).c_str());
  if (properties.empty()) {
    std::printf("\t\n");
    return;
  }
  const lxbridge::XmpNode& first = properties.front();
  std::printf("%s:%s\t%s\n", first.prefix.c_str(), first.name.c_str(), NodeText(first).c_str());
}

// The entry in its directory, with entries that rules look up and that are not converted themselves.
Bytes FileWith(const std::string& block, const Example& example) {
  if (block == "tiff") return JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({example.entry}));
  if (block == "exif") {
    return JpegBuilder().App1Exif(TiffBuilder(kBig).Exif({example.entry}));
  }
  TiffEntries entries = {Ascii(0x0001, "N"), Ascii(0x0003, "W"), Ascii(0x0013, "N"), Ascii(0x0015, "E"),
                         Ascii(0x001D, "2024:06:21")};
  std::erase_if(entries, [&](const TiffEntry& entry) { return entry.tag == example.entry.tag; });
  entries.push_back(example.entry);
  std::sort(entries.begin(), entries.end(),
            [](const TiffEntry& left, const TiffEntry& right) { return left.tag < right.tag; });
  return JpegBuilder().App1Exif(TiffBuilder(kBig).Gps(entries));
}

void PrintTags(const Reader& reader, const char* block, const LxTagRecord* dictionary) {
  for (const LxTagRecord* record = dictionary; record->name != nullptr; ++record) {
    std::vector<Example> examples = ChosenExamples(block, record->id);
    for (Example& example : AnyExamples(record->id)) examples.push_back(std::move(example));
    // The dictionary's type first.
    if (ChosenExamples(block, record->id).empty()) {
      std::stable_partition(examples.begin(), examples.end(),
                            [&](const Example& example) { return example.entry.type == record->typeCode; });
    }
    std::vector<lxbridge::XmpNode> properties;
    std::string value;
    for (const Example& example : examples) {
      properties = reader.Properties(FileWith(block, example));
      if (properties.empty()) continue;
      value = example.text;
      break;
    }
    Print(block, *record, value, properties);
  }
}

void PrintDatasets(const Reader& reader) {
  for (const LxTagRecord* record = kLxIptcTags; record->name != nullptr; ++record) {
    const std::string_view value = record->id == 55 ? "20240621" : record->id == 10 ? "5" : "Dusk";
    const IptcBuilder iptc = IptcBuilder().Add(static_cast<std::uint8_t>(record->id), value);
    Print("iptc", *record, std::string("\"").append(value).append("\""),
          reader.Properties(JpegBuilder().App13(ResourceBuilder().Iptc(iptc))));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: lx_mapping_examples SCRATCH-FILE\n", stderr);
    return 2;
  }
  LxInterchangeInit();
  {
    lxbridge::HostSession session;
    const Reader reader(argv[1]);
    PrintTags(reader, "tiff", kLxTiffTags);
    PrintTags(reader, "exif", kLxExifTags);
    PrintTags(reader, "gps", kLxGpsTags);
    PrintDatasets(reader);
  }
  LxInterchangeTerm();
  (void)std::remove(argv[1]);
  return 0;
}
