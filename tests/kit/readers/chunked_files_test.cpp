// PNG, WebP, GIF and side-car files: which blocks of them count.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "kit/model/tables/tables.h"
#include "kit/readers/inflate.h"
#include "tests/support/block_cases.h"
#include "tests/support/chunk_builders.h"
#include "tests/support/image_builders.h"

using namespace lxtest;

namespace {

constexpr char kXmp[] = "XML:com.adobe.xmp";
constexpr char kRaw[] = "Raw profile type ";

Bytes Tiff(std::string_view make) {
  return TiffBuilder(kLittle).Ifd0({Ascii(0x010F, make)});
}

TEST(ChunkedFiles, PngBlocksStandInChunksAndTexts) {
  const Bytes a = Tiff("A");
  const Bytes packet = Text("P");
  const Bytes resources = ResourceBuilder().Block(0x03ED, Filled(16));
  const Bytes datasets = IptcBuilder().Add(25, "word");
  const std::string rawExif = std::string(kRaw) + "exif";
  const Bytes exifSegment = Text("Exif") + Filled(2) + a;
  const Bytes xmpSegment = Text(kLxXmpSegmentId) + Filled(1) + packet;
  const auto raw = [](const char* name, const Bytes& bytes, int more = 0) {
    return PngBuilder().Latin(std::string(kRaw) + name, RawProfile(name, bytes, more));
  };
  const auto text = [&](std::string_view profile) { return PngBuilder().Latin(rawExif, Text(profile)); };
  const std::string exif = " tEXt Raw profile type exif=A";
  const Bytes two = PngBuilder().Chunk("eXIf", a).International(kXmp, packet).Bare();
  const Bytes damaged = Truncated(two, two.size() - 5);  // Of the last one, the checksum and a byte are missing.
  CheckBlocks(
      {{"none", PngBuilder(), "nothing"},
       {"in the order of blocks", PngBuilder().International(kXmp, packet).Chunk("eXIf", a),
        " eXIf=A iTXt XML:com.adobe.xmp=P"},
       {"the first recognised",
        PngBuilder().Chunk("eXIf", Text("II*")).Chunk("eXIf", exifSegment).Chunk("eXIf", Tiff("B")), " eXIf=A"},
       {"following the image", PngBuilder().Chunk("IDAT", Filled(9000)).Chunk("eXIf", a), " eXIf=A"},
       {"following the end", PngBuilder().Chunk("IEND", {}).Chunk("eXIf", a), "nothing"},
       {"without its checksum",
        Truncated(PngBuilder().Chunk("eXIf", a).Bare(), PngBuilder().Chunk("eXIf", a).Bare().size() - 4), " eXIf=A"},
       {"damage ends the walk", damaged, " eXIf=A"},
       {"a chunk over its own wins", raw("exif", Tiff("B")).Chunk("eXIf", a), " eXIf=A"},
       {"unless it is none", raw("exif", a).Chunk("eXIf", Text("II*")), exif},
       {"an international packet wins", PngBuilder().Latin(kXmp, Text("Q")).International(kXmp, packet),
        " iTXt XML:com.adobe.xmp=P"},
       {"unless it is empty", PngBuilder().International(kXmp, {}).Latin(kXmp, packet), " tEXt XML:com.adobe.xmp=P"},
       {"another keyword", PngBuilder().International("XML:com.adobe.xmp2", packet).Latin("XML:com.adobe.xm", packet),
        "nothing"},
       {"no end of its language", PngBuilder().Chunk("iTXt", Text(kXmp) + Filled(3) + Text("de")), "nothing"},
       {"no end of its keyword", PngBuilder().Chunk("iTXt", Text(kXmp) + Filled(4) + packet), "nothing"},
       {"an unknown flag", PngBuilder().International(kXmp, packet, 2), "nothing"},
       {"segment, TIFF", raw("APP1", exifSegment), " tEXt Raw profile type APP1=A"},
       {"segment, packet", raw("APP1", xmpSegment), " tEXt Raw profile type APP1=P"},
       {"segment, bare", raw("APP1", a), "nothing"},
       {"packet", raw("xmp", packet), " tEXt Raw profile type xmp=P"},
       {"resources", raw("8bim", resources), " tEXt Raw profile type 8bim=ResolutionInfo"},
       {"resources as datasets", raw("iptc", resources), " tEXt Raw profile type iptc=ResolutionInfo"},
       {"datasets", raw("iptc", datasets), " tEXt Raw profile type iptc=IptcNaa"},
       {"datasets as resources", raw("8bim", datasets), "nothing"},
       {"more bytes than its length", raw("xmp", Text("PQ"), -1), " tEXt Raw profile type xmp=P"},
       {"fewer", raw("xmp", packet, 9), " tEXt Raw profile type xmp=P"},
       {"a name with blanks, digits of either case",
        PngBuilder().Latin(rawExif, Text("\na name\n 8\n4d 4D0\t02A\r0000 0008")),
        " tEXt Raw profile type exif=IFDHeader"},
       {"digits end at another letter", PngBuilder().Latin(std::string(kRaw) + "xmp", Text("\nx\n9\n50x51")),
        " tEXt Raw profile type xmp=P"},
       {"no line feed first", text("exif\n8\n4949"), "nothing"},
       {"no length", text("\nexif\n\n4949"), "nothing"},
       {"no line feed after the length", text("\nexif\n8 4949"), "nothing"},
       {"no digits", text("\nexif\n8\n"), "nothing"}},
      "pngh PNG:", "64x48");
  if (!LxHasZlib()) return;
  const Bytes stream = Zlib(packet);
  CheckBlocks(
      {{"compressed", PngBuilder().Compressed(kXmp, stream), " zTXt XML:com.adobe.xmp=P"},
       {"compressed, international", PngBuilder().International(kXmp, stream, 1), " iTXt XML:com.adobe.xmp=P"},
       {"compressed profile", PngBuilder().Compressed(rawExif, Zlib(RawProfile("exif", a))),
        " zTXt Raw profile type exif=A"},
       {"an unknown method", PngBuilder().Compressed(kXmp, stream, 1).International(kXmp, stream, 1, 1), "nothing"},
       {"cut", PngBuilder().Compressed(kXmp, Truncated(stream, stream.size() - 1)), "nothing"}},
      "pngh PNG:", "64x48");
}

TEST(ChunkedFiles, WebpBlocksAndSizesStandInChunks) {
  const Bytes a = Tiff("A");
  const Bytes canvas = Hex("10 000000 3F0000 2F0000");
  const Bytes lossy = Hex("000000 9D012A 4000 3000");
  const auto webp = [&] { return WebpBuilder().Chunk("VP8X", canvas); };
  CheckBlocks(
      {{"canvas", webp().Chunk("VP8 ", Hex("000000 9D012A 0100 0100")), "nothing"},
       {"lossy", WebpBuilder().Chunk("VP8 ", lossy), "nothing"},
       {"lossless", WebpBuilder().Chunk("VP8L", Hex("2F 3FC00B10")), "nothing"},
       {"blocks", webp().Chunk("XMP ", Text("P")).Chunk("EXIF", Text("Exif") + Filled(2) + a), " EXIF=A XMP =P"},
       {"the first recognised", webp().Chunk("EXIF", Text("II*")).Chunk("EXIF", a).Chunk("EXIF", Tiff("B")), " EXIF=A"},
       {"another type", webp().Chunk(std::string_view("XMP\0", 4), Text("P")).Chunk("XMP ", Text("Q")), " XMP=P"},
       {"no pad byte", Truncated(webp().Chunk("XMP ", Text("P")), 12 + 18 + 8 + 1), " XMP =P"},
       {"damage", Truncated(webp().Chunk("EXIF", a).Chunk("XMP ", Text("PQ")), 12 + 18 + 8 + a.size() + 8 + 1),
        " EXIF=A"}},
      "webph WEBP:", "64x48");
  const std::pair<Bytes, int> images[] = {{webp(), 4},
                                          {WebpBuilder().Chunk("VP8X", WithByte(canvas, 0, 0xEF)), 3},
                                          {WebpBuilder().Chunk("VP8 ", lossy), 3},
                                          {WebpBuilder().Chunk("VP8L", Hex("2F 3FC00B10")), 4},
                                          {WebpBuilder().Chunk("VP8L", Hex("2F 3FC00BEF")), 3},
                                          {WebpBuilder().Chunk("VP8L", Hex("2E 3FC00B10")), 0}};
  for (const auto& [file, samples] : images) {
    EXPECT_EQ(ParsePool(file)->samples, samples);
    EXPECT_EQ(ParsePool(file)->bits, samples != 0 ? 8 : 0);
  }
}

TEST(ChunkedFiles, GifPacketsEndWhereAWalkEnds) {
  CheckBlocks({{"none", GifBuilder().Image(), "nothing"},
               {"after an image", GifBuilder().Image().Packet("<P>"), " XMP Data XMP=<P>"},
               {"in sub-blocks", GifBuilder().Packet("<P>", false), " XMP Data XMP=\3<P>"},
               {"the first that holds one",
                GifBuilder().Packet("").Raw(Hex("21FE 01 00 00")).Packet("<P>").Packet("<Q>"), " XMP Data XMP=<P>"},
               {"another application", GifBuilder().Raw(Hex("21FF0B") + Text("XMP DataXMQ") + Hex("00")), "nothing"},
               {"after the trailer", GifBuilder().Raw(Hex("3B")).Packet("<P>"), "nothing"},
               {"after a byte that begins no block", GifBuilder().Raw(Hex("00")).Packet("<P>"), "nothing"},
               {"a walk that leaves the file",
                Truncated(GifBuilder().Packet("<P>").Bare(), GifBuilder().Packet("<P>").Bare().size() - 1), "nothing"}},
              "gifh GIF:", "64x48");
}

TEST(ChunkedFiles, ASidecarIsItsPacket) {
  const std::string packet = "\xEF\xBB\xBF <x:xmpmeta></x:xmpmeta>";
  CheckBlocks({{"whole", Text(packet), " XmpData=" + packet}}, "xmph XMP:", "0x0");
}

}  // namespace
