#include "tests/bounds/hostile_files.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "tests/support/box_builders.h"
#include "tests/support/chunk_builders.h"
#include "tests/support/image_builders.h"

namespace lxtest {
namespace {

using Maker = std::function<Bytes(std::size_t)>;

constexpr std::size_t kLongestSegment = 65533;
constexpr std::size_t kEntriesOfIfd = 1000;  // Readers do not take an IFD of more for one.
constexpr std::size_t kLargestInflated = 64 << 20;

std::uint32_t At(std::size_t offset) {
  return static_cast<std::uint32_t>(offset);
}

Bytes Repeated(std::size_t size, const Bytes& part) {
  Bytes out;
  out.reserve(size + part.size());
  while (out.size() < size) out += part;
  return out;
}

// `head`, then `part` again and again.
Maker Again(const Bytes& head, const Bytes& part) {
  return [=](std::size_t size) { return head + Repeated(size, part); };
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

enum Place { kInIfd0, kInExif };

// One entry, whose value is `head` and then `part` again and again.
Maker Value(Place place, std::uint16_t tag, std::uint16_t type, std::size_t unit, const Bytes& head,
            const Bytes& part) {
  return [=](std::size_t size) {
    const Bytes value = head + Repeated(size, part);
    Bytes file = TiffHeader();
    if (place == kInExif) AppendIfd(&file, {{0x8769, 4, 1, At(8 + LengthOfIfd(1))}});
    AppendIfd(&file, {{tag, type, At(value.size() / unit), At(file.size() + LengthOfIfd(1))}});
    return file + value;
  };
}
// Columns and rows of 16 bits each, as structures of Exif begin; `head` and `part` follow.
Maker Table(std::uint16_t tag, std::uint32_t columns, std::uint32_t rows, const Bytes& head, const Bytes& part) {
  return Value(kInExif, tag, 7, 1, Put16(columns) + Put16(rows) + head, part);
}
Maker Comment(std::string_view code, const Bytes& part) {
  return Value(kInExif, 0x9286, 7, 1, Truncated(Text(code) + Filled(8), 8), part);
}
Maker TextOf(std::uint16_t tag, std::string_view part) {
  return Value(kInIfd0, tag, 2, 1, {}, Text(part));
}

// --- graphs of IFDs

Bytes PointersToEveryIfd(std::size_t size) {
  constexpr std::uint16_t kPointers[] = {0x014A, 0x8769, 0x8825, 0xA005};
  return Ifds(size, 50, [&](std::size_t n, std::size_t i, std::size_t ifds) {
    return BareEntry{kPointers[i % 4], 4, 1, At(8 + LengthOfIfd(50) * ((n + i) % ifds))};
  });
}

Bytes ListsOfOneSubIfd(std::size_t size) {
  const Bytes offsets = Repeated(size, Put32(8 + LengthOfIfd(1)));
  Bytes file = TiffHeader();
  AppendIfd(&file, {{0x014A, 4, At(offsets.size() / 4), At(8 + 2 * LengthOfIfd(1))}});
  AppendIfd(&file, {{0x0103, 3, 1, 0x00070000}});
  return file + offsets;
}

// --- values over the same bytes

// Each entry's value is the second half of the file, or its first bytes.
Maker InEveryEntry(std::uint16_t tag, std::uint16_t type, std::size_t unit, std::string_view part,
                   std::size_t most = SIZE_MAX) {
  return [=](std::size_t size) {
    const std::size_t half = size / 2;
    const Bytes file = Ifds(half, kEntriesOfIfd, [&](std::size_t, std::size_t, std::size_t ifds) {
      return BareEntry{tag, type, At(std::min(half, most) / unit), At(8 + ifds * LengthOfIfd(kEntriesOfIfd))};
    });
    return file + Repeated(half, Text(part));
  };
}

// Each range reaches a page further than the one before, and begins a page later: no block covers two of them.
Bytes RangesShiftedByAPage(std::size_t size) {
  const std::size_t length = size / 2;
  return Ifds(size, kEntriesOfIfd, [&](std::size_t n, std::size_t i, std::size_t) {
    return BareEntry{static_cast<std::uint16_t>(0xC000 + i), 7, At(length),
                     At((n * kEntriesOfIfd + i) * 4096 % (size - length))};
  });
}

// Exif IFDs that each append the same array.
Bytes ArraysAppendedAgain(std::size_t size) {
  return Ifds(size, 100, [](std::size_t n, std::size_t i, std::size_t ifds) {
    const std::uint32_t next = At(8 + LengthOfIfd(100) * ((n + 1 + i) % ifds));
    return i % 2 == 0 ? BareEntry{0x8769, 4, 1, next} : BareEntry{0x8827, 3, 30000, 8};
  });
}

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

// --- JPEG

Bytes Segment(std::uint8_t marker, const Bytes& payload) {
  return Bytes({0xFF, marker}) + Put16(At(payload.size() + 2)) + payload;
}
Bytes AppSegment(std::uint8_t marker, std::string_view identifier, const Bytes& data) {
  return Segment(marker, Text(identifier) + Filled(1) + data);
}

// A frame in front: a JPEG file without one gives no pool.
Maker JpegOf(const Bytes& segments) {
  return Again(JpegBuilder().Dqt().Sof0().Bare(), segments);
}

// An Exif block whose thumbnail begins in it and goes on to the end of the file.
Bytes SegmentWithAStream() {
  const TiffEntry start = {0x0201, 4, 1, [](Order o, std::uint32_t at) { return Put32(at, o) + Hex("FFD8"); }};
  return AppSegment(0xE1, "Exif", Filled(1) + TiffBuilder(kBig).Ifd0({Short(0x0112, 1)}).Ifd1({start}).Build());
}

// Resources with a thumbnail with resources with a thumbnail ...
Bytes StreamsInResources() {
  Bytes inner = Hex("FFD8");
  const auto around = [](const Bytes& stream) {
    return AppSegment(0xED, "Picturist 3.0", ResourceBuilder().Thumbnail(stream));
  };
  while (inner.size() < kLongestSegment - 200) inner = Hex("FFD8") + around(inner) + Filled(inner.size() / 2);
  inner.resize(kLongestSegment - 60);
  return around(inner);
}

// An extended packet of portions of one byte, the last one first.
Bytes PortionsInReverse(std::size_t size) {
  const std::string guid(32, '0');
  const std::size_t count = size / 80;
  Bytes file = JpegBuilder().Dqt().Sof0().Bare() +
               AppSegment(0xE1, "http://ns.adobe.com/xap/1.0/",
                          Text("<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
                               "xmlns:n='http://ns.adobe.com/xmp/note/' n:HasExtendedXMP='" +
                               guid + "'/></rdf:RDF>"));
  for (std::size_t at = count; at-- > 0;) {
    file += AppSegment(0xE1, "http://ns.adobe.com/xmp/extension/", Text(guid) + Put32(count) + Put32(at) + Text("x"));
  }
  return file;
}

// --- resources and datasets

Maker Datasets(const Bytes& dataset) {
  return
      [=](std::size_t size) { return PsdBuilder().Resources(ResourceBuilder().Iptc(Repeated(size, dataset))).Build(); };
}
Bytes DistinctKeywords(std::size_t size) {
  Bytes datasets;
  for (std::size_t i = 0; datasets.size() < size; ++i) datasets += IptcBuilder().Add(25, std::to_string(i)).Build();
  return PsdBuilder().Resources(ResourceBuilder().Iptc(datasets));
}
// --- packets of one description, in a tag

// A number stands in each part where it has a '#'.
Maker Packet(std::string_view before, std::string_view part, std::string_view after) {
  return [=](std::size_t size) {
    const std::size_t mark = part.find('#');
    std::string packet(
        "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
        "<rdf:Description rdf:about='' xmlns:a='http://a/'");
    packet += before;
    for (std::size_t i = 0; packet.size() < size; ++i) {
      packet += part.substr(0, mark);
      if (mark == std::string_view::npos) continue;
      packet.append(std::to_string(i)).append(part.substr(mark + 1));
    }
    packet.append(after).append("</rdf:Description></rdf:RDF></x:xmpmeta>");
    return Value(kInIfd0, 0x02BC, 1, 1, Text(packet), {})(0);
  };
}

// --- chunks and boxes

Bytes PngChunk(std::string_view type, const Bytes& data) {
  return Put32(data.size()) + Text(type) + data + Text("CRC?");
}
// A text chunk of that size, which inflates to 158 times as much.
Bytes Bomb(std::string_view type, std::size_t size) {
  const Bytes head =
      type == "iTXt" ? Text("XML:com.adobe.xmp") + Hex("00 01 00 00 00") : Text("Raw profile type iptc") + Filled(2);
  return PngChunk(type, head + ZlibBomb(' ', size * 8 / 13));
}
Bytes PacketInABomb(std::size_t size) {
  constexpr std::size_t kMost = kLargestInflated / 160;
  return PngBuilder().Bare() + Bomb("iTXt", std::min(size, kMost)) + Filled(size > kMost ? size - kMost : 0);
}
// A compressed box of 64 MB of spaces; the bytes after the stream's end make it long enough to be read.
Bytes BrotliBomb() {
  return Box("brob", Text("xml ") +
                         Hex("CFFFFF7F002440E2B14072EFFFF9FFFF0F8004401C1680EEFD3FFFFFFF01900088C302D0BDFFCFFFFF7F0012"
                             "00715800BAF7FF") +
                         Filled(4016));
}

Bytes HeifOf(const Bytes& metaBoxes) {
  return Box("ftyp", Text("heic") + Filled(8)) + Box("meta", Filled(4) + metaBoxes);
}
Bytes NestedBoxes(std::size_t size) {
  Bytes file = Box("ftyp", Text("heic") + Filled(8));
  for (std::size_t left = size; left > 12; left -= 12) file += Put32(left) + Text("meta") + Filled(4);
  return file;
}
// Items of that type. `location`, with these sizes of numbers (ISO/IEC 14496-12, 8.11.3), is the place of each.
Maker Items(const std::string& type, std::string_view sizes, const Bytes& location) {
  return [=](std::size_t size) {
    Bytes infos, locations, references;
    for (std::uint32_t id = 2; infos.size() + locations.size() + references.size() < size; ++id) {
      infos += FullBox("infe", 3, 0, Put32(id) + Put16(0) + Text(type) + Filled(1));
      if (!location.empty()) locations += Put32(id) + Filled(4) + location;
      if (location.empty()) references += Box("cdsc", Put32(id) + Put16(1) + Put32(id));
    }
    return HeifOf(FullBox("pitm", 0, 0, Put16(1)) + FullBox("iref", 1, 0, references) +
                  FullBox("iloc", 2, 0, Hex(sizes) + Put32(0x00FFFFFF) + locations) +
                  FullBox("iinf", 1, 0, Filled(4) + infos));
  };
}
Bytes SmallestBoxes(std::size_t size) {
  return Jp2(Box("jp2h", Repeated(size / 2, Box("bpcc", {}))) + Repeated(size / 2, Box("uuid", Filled(16))));
}

}  // namespace

const std::vector<HostileFile>& HostileFiles() {
  const Bytes nothing = Put32(1) + Put32(0);  // A rational.
  const Bytes wholeFile = Put16(1) + Put32(24) + Put32(0);
  const Bytes profileOfNothing = PngChunk("tEXt", Text("Raw profile type iptc") + Filled(1) + Text("\nx\n9\n0"));
  static const std::vector<HostileFile> kFiles = {
      {"pointers-to-every-ifd", PointersToEveryIfd},
      {"lists-of-one-sub-ifd", ListsOfOneSubIfd},
      {"one-text-in-every-entry", InEveryEntry(0x010E, 2, 1, "\xE9")},
      {"one-packet-in-every-entry", InEveryEntry(0x02BC, 1, 1, "\xE9")},
      {"one-iptc-block-in-every-entry", InEveryEntry(0x83BB, 7, 1, "\xE9")},
      {"many-texts-converted-again", InEveryEntry(0x8298, 2, 1, "caf\xC3\xA9 ", 20000)},
      {"ranges-shifted-by-a-page", RangesShiftedByAPage},
      {"arrays-appended-again", ArraysAppendedAgain},
      {"maker-notes-that-lead-on", MakerNotesThatLeadOn},
      {"smallest-app-segments", JpegOf(Segment(0xE1, {}))},
      {"restart-markers", JpegOf(Hex("FFD1"))},
      {"streams-in-segments", JpegOf(SegmentWithAStream())},
      {"streams-in-resources", JpegOf(StreamsInResources())},
      {"smallest-portions-in-reverse", PortionsInReverse},
      {"empty-datasets", Datasets(Hex("1C 02 19 0000"))},
      {"distinct-keywords", DistinctKeywords},
      {"unicode-comment", Comment("UNICODE", Hex("30A2 D83D DE00 0041"))},
      {"jis-comment", Comment("JIS", Hex("1B2442 252B 1B2842"))},
      {"shift-jis-text", TextOf(0x8298, "\x83\x4A\x83\x81")},
      {"list-of-names", TextOf(0x013B, "a;")},
      {"wide-text", Value(kInIfd0, 0x9C9B, 1, 1, {}, Hex("A230 3DD8 00DE"))},
      {"largest-oecf", Table(0x8828, 0xFFFF, 0xFFFF, {}, Hex("41 00 42 00"))},
      {"wide-frequency-response", Table(0xA20C, 1, 0xFFFF, Hex("0041 0000"), nothing)},
      {"zero-denominators", Value(kInExif, 0x829A, 5, 8, {}, nothing)},
      {"long-reference-black-white", Value(kInIfd0, 0x0214, 5, 8, {}, nothing)},
      {"packet-of-properties", Packet(">", "<a:p#/>", "")},
      {"packet-of-attributes", Packet("", " a:p#=''", ">")},
      {"packet-of-namespaces", Packet(">", "<b:p xmlns:b='http://#/'/>", "")},
      {"packet-of-languages", Packet("><a:p><rdf:Alt>", "<rdf:li xml:lang='x-#'>t</rdf:li>", "</rdf:Alt></a:p>")},
      {"packet-of-nesting", Packet(">", "<a:p rdf:parseType='Resource'>", "")},
      {"packet-of-bad-bytes", Packet("><a:p>", "\x80\xFF", "</a:p>")},
      {"png-smallest-chunks", Again(PngBuilder().Bare(), PngChunk("abcd", {}))},
      {"png-profiles-of-nothing", Again(PngBuilder().Bare(), profileOfNothing)},
      {"png-many-bombs", Again(PngBuilder().Bare(), Bomb("zTXt", 4096))},
      {"png-packet-in-a-bomb", PacketInABomb},
      {"webp-smallest-chunks", Again(WebpBuilder(), Text("abcd") + Filled(4))},
      {"gif-smallest-blocks", Again(GifBuilder().Bare(), Hex("21FE00"))},
      {"gif-empty-packets", Again(GifBuilder().Bare(), GifBuilder().Packet("").Blocks())},
      {"heif-nested-boxes", NestedBoxes},
      {"heif-items-that-hold-no-tiff", Items("Exif", "4400", wholeFile)},
      {"heif-items-that-do-not-inflate", Items(PacketItem(1, {}, "deflate").type, "4400", wholeFile)},
      {"heif-items-of-empty-extents", Items("Exif", "0000", Hex("FFFF"))},
      {"heif-items-that-describe-others", Items("Exif", "0000", {})},
      {"jxl-many-bombs", Again(Jxl({}), BrotliBomb())},
      {"jp2-smallest-boxes", SmallestBoxes},
  };
  return kFiles;
}

}  // namespace lxtest
