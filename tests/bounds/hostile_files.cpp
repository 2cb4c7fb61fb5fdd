#include "tests/bounds/hostile_files.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "tests/support/box_builders.h"
#include "tests/support/chunk_builders.h"
#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"

namespace lxtest {
namespace {

constexpr std::size_t kLongestSegment = 65533;
constexpr std::size_t kEntriesOfIfd = 1000;  // More, and readers take no IFD for one.

std::uint32_t At(std::size_t offset) {
  return static_cast<std::uint32_t>(offset);
}

// --- TIFF structures, written without the cost of a builder

struct BareEntry {
  std::uint16_t tag;
  std::uint16_t type;
  std::uint32_t count;
  std::uint32_t field;
};

constexpr std::size_t LengthOfIfd(std::size_t entries) {
  return 12 * entries + 6;
}

Bytes TiffHeader() {
  return Text("MM") + Put16(42) + Put32(8);
}

void AppendIfd(Bytes* out, const std::vector<BareEntry>& entries, std::uint32_t next = 0) {
  *out += Put16(At(entries.size()));
  for (const BareEntry& entry : entries) {
    *out += Put16(entry.tag);
    *out += Put16(entry.type);
    *out += Put32(entry.count);
    *out += Put32(entry.field);
  }
  *out += Put32(next);
}

// IFDs of `width` entries, whose entry i of IFD n is what `entry` says.
template <typename Entry>
Bytes Ifds(std::size_t size, std::size_t width, Entry entry) {
  const std::size_t ifds = std::max<std::size_t>(size / LengthOfIfd(width), 2);
  Bytes file = TiffHeader();
  file.reserve(size + LengthOfIfd(width));
  std::vector<BareEntry> entries(width);
  for (std::size_t n = 0; n < ifds; ++n) {
    for (std::size_t i = 0; i < width; ++i) entries[i] = entry(n, i, ifds);
    AppendIfd(&file, entries, At(8 + LengthOfIfd(width) * ((n + 1) % ifds)));
  }
  return file;
}

// One Exif IFD with these entries, whose values all begin behind it; `data` is the rest of the file.
Bytes ExifFile(std::vector<BareEntry> entries, const Bytes& data) {
  Bytes file = TiffHeader();
  AppendIfd(&file, {{0x8769, 4, 1, At(8 + LengthOfIfd(1))}});
  const std::size_t place = file.size() + LengthOfIfd(entries.size());
  for (BareEntry& entry : entries) entry.field += At(place);
  AppendIfd(&file, entries);
  return file + data;
}

// One entry whose value is `data`, in IFD0 or the Exif IFD.
Bytes OneValue(std::uint16_t tag, std::uint16_t type, const Bytes& data, std::size_t unit = 1, bool inExif = true) {
  const BareEntry entry = {tag, type, At(data.size() / unit), 0};
  if (inExif) return ExifFile({entry}, data);
  Bytes file = TiffHeader();
  AppendIfd(&file, {{tag, type, entry.count, At(8 + LengthOfIfd(1))}});
  return file + data;
}

Bytes Repeated(std::size_t size, const Bytes& part) {
  Bytes out;
  out.reserve(size + part.size());
  while (out.size() < size) out += part;
  return out;
}
Bytes Repeated(std::size_t size, std::string_view text) {
  return Repeated(size, Text(text));
}

// --- graphs of IFDs

constexpr std::uint16_t kPointers[] = {0x014A, 0x8769, 0x8825, 0xA005};

Bytes PointersToEveryIfd(std::size_t size) {
  return Ifds(size, 50, [](std::size_t n, std::size_t i, std::size_t ifds) {
    return BareEntry{kPointers[i % 4], 4, 1, At(8 + LengthOfIfd(50) * ((n + i) % ifds))};
  });
}

Bytes WideIfdsThatPointOn(std::size_t size) {
  return Ifds(size, kEntriesOfIfd, [](std::size_t n, std::size_t i, std::size_t ifds) {
    return BareEntry{0x014A, 4, 1, At(8 + LengthOfIfd(kEntriesOfIfd) * ((n + 1 + i % 3) % ifds))};
  });
}

Bytes ListsOfOneSubIfd(std::size_t size) {
  Bytes offsets = Repeated(size, Put32(8 + LengthOfIfd(1)));
  Bytes file = TiffHeader();
  AppendIfd(&file, {{0x014A, 4, At(offsets.size() / 4), At(8 + 2 * LengthOfIfd(1))}});
  AppendIfd(&file, {{0x0103, 3, 1, 0x00070000}});
  return file + offsets;
}

// --- values over the same bytes

template <std::uint16_t kTag, std::uint16_t kType, std::size_t kUnit>
Bytes OneValueInEveryEntry(std::size_t size) {
  const std::size_t half = size / 2;
  Bytes file = Ifds(half, kEntriesOfIfd, [&](std::size_t, std::size_t, std::size_t ifds) {
    return BareEntry{kTag, kType, At(half / kUnit), At(8 + ifds * LengthOfIfd(kEntriesOfIfd))};
  });
  return file + Filled(half, 0xE9);
}

// Each range reaches a page further than the one before, and begins a page later: no block covers two of them.
Bytes RangesShiftedByAPage(std::size_t size) {
  const std::size_t length = size / 2;
  return Ifds(size, kEntriesOfIfd, [&](std::size_t n, std::size_t i, std::size_t) {
    return BareEntry{static_cast<std::uint16_t>(0xC000 + i), 7, At(length),
                     At((n * kEntriesOfIfd + i) * 4096 % (size - length))};
  });
}

Bytes ManyTextsConvertedAgain(std::size_t size) {
  // The text of a property that the conversion sets anew for each entry.
  const std::size_t half = size / 2;
  Bytes file = Ifds(half, kEntriesOfIfd, [&](std::size_t, std::size_t, std::size_t ifds) {
    return BareEntry{0x8298, 2, 20000, At(8 + ifds * LengthOfIfd(kEntriesOfIfd))};
  });
  return file + Repeated(half, "caf\xC3\xA9 ");
}

// --- JPEG

// A frame in front: a JPEG file without one gives no pool.
Bytes JpegWith(const Bytes& segments) {
  return JpegBuilder().Dqt().Sof0().Raw(segments).Bare();
}

Bytes Segment(std::uint8_t marker, const Bytes& payload) {
  return Bytes({0xFF, marker}) + Put16(At(payload.size() + 2)) + payload;
}

template <std::uint8_t kMarker>
Bytes SmallestSegments(std::size_t size) {
  return JpegWith(Repeated(size, Segment(kMarker, Bytes())));
}
// Every segment's Exif block has a thumbnail that begins in it and goes on to the end of the file.
Bytes StreamsInSegments(std::size_t size) {
  const Bytes tiff = TiffBuilder(kBig).Ifd0({Short(0x0112, 1)}).Ifd1({{0x0201, 4, 1, [](Order o, std::uint32_t at) {
                                                                         return Put32(at, o) + Hex("FFD8");
                                                                       }}});
  return JpegWith(Repeated(size, Segment(0xE1, Text("Exif") + Filled(2) + tiff)));
}

// Resources with a thumbnail with resources with a thumbnail ...
Bytes StreamsInResources(std::size_t size) {
  Bytes inner = Hex("FFD8");
  while (inner.size() < kLongestSegment - 200) {
    const Bytes resources = ResourceBuilder().Thumbnail(inner);
    inner = Hex("FFD8") + Segment(0xED, Text("Picturist 3.0") + Filled(1) + resources) + Filled(inner.size() / 2);
  }
  inner.resize(kLongestSegment - 60);
  return JpegWith(
      Repeated(size, Segment(0xED, Text("Picturist 3.0") + Filled(1) + Bytes(ResourceBuilder().Thumbnail(inner)))));
}

// --- maker notes

// Exif IFDs, each with a maker note that is the next IFD, whose values have to be looked at to find their origin.
Bytes MakerNotesThatLeadOn(std::size_t size) {
  return Ifds(size, 100, [&](std::size_t n, std::size_t i, std::size_t ifds) {
    const std::uint32_t next = At(8 + LengthOfIfd(100) * ((n + 1) % ifds));
    if (i == 0) return BareEntry{0x010F, 2, 6, 8};
    if (i < 4) return BareEntry{0x8769, 4, 1, next};
    if (i < 8) return BareEntry{0x927C, 7, At(LengthOfIfd(100)), next};
    return BareEntry{static_cast<std::uint16_t>(i), static_cast<std::uint16_t>(i % 2 == 0 ? 3 : 7), 60000, At(i)};
  });
}

// --- IPTC and resources

Bytes PsdWith(const Bytes& resources) {
  return PsdBuilder().Resources(resources).Build();
}

Bytes DistinctKeywords(std::size_t size) {
  Bytes datasets;
  for (std::size_t i = 0; datasets.size() < size; ++i) {
    const std::string keyword = std::to_string(i);
    datasets += Hex("1C 02 19") + Put16(At(keyword.size())) + Text(keyword);
  }
  return PsdWith(ResourceBuilder().Iptc(datasets));
}
// In TIFF, where the two blocks compete, and each is long.
Bytes LongDatasets(std::size_t size) {
  const Bytes datasets = Repeated(size / 2, Hex("1C 02 78 7FFF") + Filled(0x7FFF, 0xE9));
  const TiffBuilder tiff =
      TiffBuilder(kBig).Ifd0({Undef(0x83BB, datasets), Undef(0x8649, ResourceBuilder().Iptc(datasets))});
  return tiff;
}

// --- texts

Bytes Comment(std::size_t size, std::string_view code, const Bytes& part) {
  Bytes value = Text(code);
  value.resize(8);
  return OneValue(0x9286, 7, value + Repeated(size, part));
}
template <std::uint16_t kTag, std::size_t kSize>
Bytes TextOf(std::size_t size, const char (&part)[kSize]) {
  return OneValue(kTag, 2, Repeated(size, std::string_view(part, kSize - 1)) + Filled(1), 1, false);
}

// --- arrays and structures

// 16 bits for columns and rows each: the most elements that a structure can claim.
template <std::uint16_t kTag>
Bytes LargestTable(std::size_t size) {
  return OneValue(kTag, 7, Put16(0xFFFF) + Put16(0xFFFF) + Repeated(size, Hex("41 00 42 00")));
}
template <std::uint16_t kTag>
Bytes WideTable(std::size_t size) {
  const std::uint32_t rows = At(std::min<std::size_t>(size / 8, 0xFFFF));
  return OneValue(kTag, 7, Put16(1) + Put16(rows) + Hex("0041 0000") + Repeated(size, Put32(1) + Put32(0)));
}
Bytes ZeroDenominatorsInGps(std::size_t size) {
  const Bytes data = Repeated(size, Put32(7) + Put32(0));
  Bytes file = TiffHeader();
  AppendIfd(&file, {{0x8825, 4, 1, At(8 + LengthOfIfd(1))}});
  const std::uint32_t place = At(file.size() + LengthOfIfd(7));
  std::vector<BareEntry> entries;
  for (const std::uint8_t tag : Bytes({2, 4, 6, 7, 11, 13, 15})) {
    entries.push_back({tag, 5, At(data.size() / 8), place});
  }
  AppendIfd(&file, entries);
  return file + data;
}
template <std::uint16_t kTag, std::uint16_t kType, std::size_t kUnit, bool kInExif>
Bytes LongArray(std::size_t size) {
  return OneValue(kTag, kType, Repeated(size, Hex("0001 0002 0003 0004")), kUnit, kInExif);
}
// Exif IFDs that each append the same array.
Bytes ArraysAppendedAgain(std::size_t size) {
  return Ifds(size, 100, [](std::size_t n, std::size_t i, std::size_t ifds) {
    const std::uint32_t next = At(8 + LengthOfIfd(100) * ((n + 1 + i) % ifds));
    return i % 2 == 0 ? BareEntry{0x8769, 4, 1, next} : BareEntry{0x8827, 3, 30000, 8};
  });
}

// --- packets

// A packet of one description, in a tag.
Bytes PacketFile(std::string_view attributes, std::string_view properties) {
  std::string packet =
      "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
      "<rdf:Description rdf:about='' xmlns:a='http://a/'";
  packet.append(attributes).append(">").append(properties).append("</rdf:Description></rdf:RDF></x:xmpmeta>");
  return OneValue(0x02BC, 1, Text(packet), 1, false);
}
// The property a:p with that content.
Bytes PropertyFile(std::string_view front, std::string_view content, std::string_view back) {
  return PacketFile("", std::string("<a:p>").append(front).append(content).append(back).append("</a:p>"));
}
// `front`, a number of its own and `back`, again and again.
std::string Numbered(std::size_t size, std::string_view front, std::string_view back) {
  std::string text;
  for (std::size_t i = 0; text.size() < size; ++i) text.append(front).append(std::to_string(i)).append(back);
  return text;
}
std::string Again(std::size_t size, std::string_view part) {
  std::string text;
  while (text.size() < size) text += part;
  return text;
}

// --- chunks

Bytes PngChunk(std::string_view type, const Bytes& data) {
  return Put32(data.size()) + Text(type) + data + Text("CRC?");
}
Bytes PngOf(const Bytes& chunks) {
  return PngBuilder().Bare() + chunks;
}
// A text chunk of that size, which inflates to 158 times as much.
Bytes Bomb(std::string_view type, std::size_t size) {
  const bool isPacket = type == "iTXt";
  const Bytes stream = ZlibBomb(' ', size * 8 / 13);
  return isPacket ? PngChunk(type, Text("XML:com.adobe.xmp") + Hex("00 01 00 00 00") + stream)
                  : PngChunk(type, Text("Raw profile type iptc") + Filled(2) + stream);
}
// --- boxes

Bytes HeifOf(const Bytes& metaBoxes) {
  return Box("ftyp", Text("heic") + Filled(8)) + Box("meta", Filled(4) + metaBoxes);
}
// Items of that type, whose extents say so of each: the same bytes, of the whole file when `length` is 0.
Bytes ItemsOver(std::size_t size, const std::string& type, std::uint32_t length) {
  Bytes infos, locations;
  std::uint32_t count = 0;
  while (infos.size() + locations.size() < size) {
    const Bytes id = Put32(++count);
    infos += FullBox("infe", 3, 0, id + Put16(0) + Text(type));
    locations += id + Filled(4) + Put16(1) + Put32(24) + Put32(length);
  }
  return HeifOf(FullBox("iloc", 2, 0, Hex("4400") + Put32(count) + locations) +
                FullBox("iinf", 1, 0, Put32(count) + infos));
}
// Items of 65,535 extents each, which take no byte of the file.
Bytes ItemsOfEmptyExtents(std::size_t size) {
  Bytes infos, locations;
  for (std::uint32_t id = 1; infos.size() + locations.size() < size; ++id) {
    infos += FullBox("infe", 3, 0, Put32(id) + Put16(0) + Text("Exif") + Filled(1));
    locations += Put32(id) + Filled(4) + Hex("FFFF");
  }
  return HeifOf(FullBox("iloc", 2, 0, Hex("0000 00FFFFFF") + locations) + FullBox("iinf", 1, 0, Filled(4) + infos));
}
Bytes ItemsThatDescribeOthers(std::size_t size) {
  Bytes infos, references;
  for (std::uint32_t id = 2; infos.size() + references.size() < size; ++id) {
    infos += FullBox("infe", 3, 0, Put32(id) + Put16(0) + Text("Exif") + Filled(1));
    references += Box("cdsc", Put32(id) + Put16(1) + Put32(id));
  }
  return HeifOf(FullBox("pitm", 0, 0, Put16(1)) + FullBox("iref", 1, 0, references) +
                FullBox("iinf", 1, 0, Filled(4) + infos));
}
Bytes NestedBoxes(std::size_t size) {
  Bytes file = Box("ftyp", Text("heic") + Filled(8));
  for (std::size_t left = size; left > 12; left -= 12) file += Put32(left) + Text("meta") + Filled(4);
  return file;
}
// A compressed box of 64 MB of spaces; what follows the end of the stream makes it long enough to be read.
Bytes BrotliBomb(std::size_t size) {
  return Box("brob", Text("xml ") +
                         Hex("CFFFFF7F002440E2B14072EFFFF9FFFF0F8004401C1680EEFD3FFFFFFF01900088C302D0BDFFCFFFFF7F0012"
                             "00715800BAF7FF") +
                         Filled(size > 80 ? size - 80 : 0));
}
// An extended packet of portions of one byte, the last one first.
Bytes PortionsInReverse(std::size_t size) {
  const std::string guid(32, '0');
  const std::size_t count = size / 80;
  Bytes file = JpegBuilder().Dqt().Sof0().Bare();
  file += Segment(0xE1, Text("http://ns.adobe.com/xap/1.0/") + Filled(1) +
                            Text("<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
                                 "xmlns:n='http://ns.adobe.com/xmp/note/' n:HasExtendedXMP='" +
                                 guid + "'/></rdf:RDF>"));
  for (std::size_t at = count; at-- > 0;) {
    file += Segment(0xE1, Text("http://ns.adobe.com/xmp/extension/") + Filled(1) + Text(guid) + Put32(count) +
                              Put32(at) + Text("x"));
  }
  return file;
}

}  // namespace

const std::vector<HostileFile>& HostileFiles() {
  static const std::vector<HostileFile> kFiles = {
      {"pointers-to-every-ifd", PointersToEveryIfd},
      {"wide-ifds-that-point-on", WideIfdsThatPointOn},
      {"lists-of-one-sub-ifd", ListsOfOneSubIfd},
      {"one-text-in-every-entry", OneValueInEveryEntry<0x010E, 2, 1>},
      {"one-opaque-value-in-every-entry", OneValueInEveryEntry<0xC123, 7, 1>},
      {"one-array-in-every-entry", OneValueInEveryEntry<0xC123, 3, 2>},
      {"one-packet-in-every-entry", OneValueInEveryEntry<0x02BC, 1, 1>},
      {"one-profile-in-every-entry", OneValueInEveryEntry<0x8773, 7, 1>},
      {"one-iptc-block-in-every-entry", OneValueInEveryEntry<0x83BB, 7, 1>},
      {"ranges-shifted-by-a-page", RangesShiftedByAPage},
      {"many-texts-converted-again", ManyTextsConvertedAgain},
      {"smallest-app-segments", SmallestSegments<0xE1>},
      {"restart-markers", [](std::size_t size) { return JpegWith(Repeated(size, Hex("FFD1"))); }},
      {"smallest-comments", SmallestSegments<0xFE>},
      {"segments-with-identifiers",
       [](std::size_t size) { return JpegWith(Repeated(size, Segment(0xE5, Text("identifier") + Filled(90)))); }},
      {"comments",
       [](std::size_t size) { return JpegWith(Repeated(size, Segment(0xFE, Filled(kLongestSegment, 'x')))); }},
      {"streams-in-segments", StreamsInSegments},
      {"streams-in-resources", StreamsInResources},
      {"maker-notes-that-lead-on", MakerNotesThatLeadOn},
      {"empty-datasets",
       [](std::size_t size) {
         return PsdWith(ResourceBuilder().Iptc(IptcBuilder().Raw(Repeated(size, Hex("1C 02 19 0000")))));
       }},
      {"unknown-datasets",
       [](std::size_t size) {
         return PsdWith(ResourceBuilder().Iptc(IptcBuilder().Raw(Repeated(size, Hex("1C 02 DD 0002 6161")))));
       }},
      {"distinct-keywords", DistinctKeywords},
      {"long-datasets", LongDatasets},
      {"empty-resources",
       [](std::size_t size) { return PsdWith(Repeated(size, Bytes(ResourceBuilder().Block(0x0404, Bytes())))); }},
      {"ascii-comment", [](std::size_t size) { return Comment(size, "ASCII", Text("text ")); }},
      {"unicode-comment", [](std::size_t size) { return Comment(size, "UNICODE", Hex("30A2 D83D DE00 0041")); }},
      {"jis-comment", [](std::size_t size) { return Comment(size, "JIS", Hex("1B2442 252B 1B2842")); }},
      {"comment-without-code", [](std::size_t size) { return Comment(size, "", Hex("E9 41")); }},
      {"utf8-text", [](std::size_t size) { return TextOf<0x010E>(size, "caf\xC3\xA9 "); }},
      {"latin1-text", [](std::size_t size) { return TextOf<0x010E>(size, "caf\xE9 "); }},
      {"shift-jis-text", [](std::size_t size) { return TextOf<0x8298>(size, "\x83\x4A\x83\x81"); }},
      {"euc-text", [](std::size_t size) { return TextOf<0x010E>(size, "\xA5\xAB\xA5\xE1"); }},
      {"iso-2022-text", [](std::size_t size) { return TextOf<0x010E>(size, "\x1B$B%+\x1B(B"); }},
      {"binary-text", [](std::size_t size) { return TextOf<0x8298>(size, "\xFF\x80\x01\xC0"); }},
      {"list-of-names", [](std::size_t size) { return TextOf<0x013B>(size, "a;"); }},
      {"wide-text",
       [](std::size_t size) { return OneValue(0x9C9B, 1, Repeated(size, Hex("A230 3DD8 00DE")), 1, false); }},
      {"largest-oecf", LargestTable<0x8828>},
      {"wide-oecf", WideTable<0x8828>},
      {"largest-frequency-response", LargestTable<0xA20C>},
      {"wide-frequency-response", WideTable<0xA20C>},
      {"largest-cfa-pattern", LargestTable<0xA302>},
      {"largest-device-settings", LargestTable<0xA40B>},
      {"wide-device-settings", WideTable<0xA40B>},
      {"zero-denominators",
       [](std::size_t size) { return OneValue(0x829A, 5, Repeated(size, Put32(1) + Put32(0)), 8); }},
      {"zero-denominators-in-gps", ZeroDenominatorsInGps},
      {"long-speed-ratings", LongArray<0x8827, 3, 2, true>},
      {"long-components", LongArray<0x9101, 7, 1, true>},
      {"long-bits-per-sample", LongArray<0x0102, 3, 2, false>},
      {"long-reference-black-white", LongArray<0x0214, 5, 8, false>},
      {"long-transfer-function", LongArray<0x012D, 3, 2, false>},
      {"long-subject-area", LongArray<0x9214, 3, 2, true>},
      {"arrays-appended-again", ArraysAppendedAgain},
      {"packet-of-properties", [](std::size_t size) { return PacketFile("", Numbered(size, "<a:p", "/>")); }},
      {"packet-of-attributes", [](std::size_t size) { return PacketFile(Numbered(size, " a:p", "=''"), ""); }},
      {"packet-of-namespaces",
       [](std::size_t size) { return PacketFile("", Numbered(size, "<b:p xmlns:b='http://", "/'/>")); }},
      {"packet-of-one-property", [](std::size_t size) { return PacketFile("", Again(size, "<a:p>x</a:p>")); }},
      {"packet-of-items",
       [](std::size_t size) { return PropertyFile("<rdf:Bag>", Again(size, "<rdf:li/>"), "</rdf:Bag>"); }},
      {"packet-of-languages",
       [](std::size_t size) {
         return PropertyFile("<rdf:Alt>", Numbered(size, "<rdf:li xml:lang='x-", "'>t</rdf:li>"), "</rdf:Alt>");
       }},
      {"packet-of-one-text", [](std::size_t size) { return PropertyFile("", Again(size, "text &amp; "), ""); }},
      {"packet-of-nesting",
       [](std::size_t size) { return PacketFile("", Again(size, "<a:p rdf:parseType='Resource'>")); }},
      {"png-smallest-chunks", [](std::size_t size) { return PngOf(Repeated(size, Filled(4) + Text("abcdCRC?"))); }},
      {"png-profiles-of-nothing",
       [](std::size_t size) {
         return PngOf(Repeated(size, PngChunk("tEXt", Text("Raw profile type iptc") + Filled(1) + Text("\nx\n9\n0"))));
       }},
      {"png-long-profile",
       [](std::size_t size) {
         const Bytes digits = Repeated(size, Text("49"));
         return PngOf(PngChunk("tEXt", Text("Raw profile type xmp") + Filled(1) + Text("\nx\n999999999\n") + digits));
       }},
      {"png-one-bomb", [](std::size_t size) { return PngOf(Bomb("zTXt", size)); }},
      {"png-many-bombs", [](std::size_t size) { return PngOf(Repeated(size, Bomb("zTXt", 4096))); }},
      {"png-packet-in-a-bomb",
       [](std::size_t size) {
         const std::size_t most = (64 << 20) / 160;
         return PngOf(Bomb("iTXt", std::min(size, most)) + Filled(size > most ? size - most : 0));
       }},
      {"webp-smallest-chunks",
       [](std::size_t size) { return Text("RIFF....WEBP") + Repeated(size, Text("abcd") + Filled(4)); }},
      {"gif-smallest-blocks", [](std::size_t size) { return GifBuilder().Raw(Repeated(size, Hex("21FE00"))).Bare(); }},
      {"gif-smallest-sub-blocks",
       [](std::size_t size) { return GifBuilder().Raw(Hex("21FE") + Repeated(size, Hex("0101"))).Bare(); }},
      {"gif-empty-packets",
       [](std::size_t size) { return GifBuilder().Raw(Repeated(size, GifBuilder().Packet("").Blocks())).Bare(); }},
      {"heif-smallest-boxes",
       [](std::size_t size) {
         return Box("ftyp", Text("heic") + Filled(8)) + Repeated(size, Put32(8) + Text("free"));
       }},
      {"heif-nested-boxes", NestedBoxes},
      {"heif-items-that-hold-no-tiff", [](std::size_t size) { return ItemsOver(size, "Exif" + std::string(1, 0), 0); }},
      {"heif-items-that-do-not-inflate",
       [](std::size_t size) { return ItemsOver(size, PacketItem(1, {}, "deflate").type, 0); }},
      {"heif-items-of-empty-extents", ItemsOfEmptyExtents},
      {"heif-items-that-describe-others", ItemsThatDescribeOthers},
      {"heif-packet-in-a-bomb",
       [](std::size_t size) {
         const std::size_t most = (64 << 20) / 160;
         return Bytes(HeifBuilder().Add(PacketItem(2, ZlibBomb(' ', std::min(size, most) * 8 / 13), "deflate"))) +
                Filled(size > most ? size - most : 0);
       }},
      {"jxl-one-bomb", [](std::size_t size) { return Jxl(BrotliBomb(size)); }},
      {"jxl-many-bombs", [](std::size_t size) { return Jxl(Repeated(size, BrotliBomb(4096))); }},
      {"jxl-parts-of-the-codestream",
       [](std::size_t size) { return Jxl(Repeated(size, Box("jxlp", Filled(5)) + Box("xml ", Text("<a/>")))); }},
      {"jp2-smallest-boxes",
       [](std::size_t size) {
         return Jp2(Box("jp2h", Repeated(size / 2, Box("bpcc", {}))) + Repeated(size / 2, Box("uuid", Filled(16))));
       }},
      {"smallest-portions-in-reverse", PortionsInReverse},
      {"packet-of-bad-bytes", [](std::size_t size) { return PropertyFile("", Again(size, "\x80\xFF"), ""); }},
  };
  return kFiles;
}

}  // namespace lxtest
