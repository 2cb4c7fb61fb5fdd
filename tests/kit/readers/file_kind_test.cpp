// Recognising files by their first bytes.
#include "kit/readers/file_kind.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "kit/base/memory_stream.h"
#include "tests/support/bytes.h"

using namespace lxtest;

namespace {

// Of a file that begins so and has at least 16 bytes.
LxFileKind KindOf(const Bytes& start) {
  Bytes file = start;
  if (file.size() < kLxFileHeaderSize) file.resize(kLxFileHeaderSize);
  LxMemoryStream stream;
  LxInitMemoryStream(&stream, file.data(), static_cast<std::int32_t>(file.size()));
  const LxFileKind kind = LxDetectStreamKind(&stream);
  EXPECT_EQ(stream.at, 0);
  return kind;
}

Bytes Ftyp(std::string_view brands, std::uint32_t size) {
  return Put32(size) + Text("ftyp") + Text(brands);
}

// The text in UTF-16 or UTF-32, big-endian or little-endian.
Bytes Wide(std::string_view text, std::size_t width, Order order) {
  Bytes out;
  for (const char c : text) {
    Bytes character = Filled(width);
    character[order == kBig ? width - 1 : 0] = static_cast<std::uint8_t>(c);
    out += character;
  }
  return out;
}

TEST(FileKind, FollowsTheSignature) {
  const struct {
    const char* kind;
    Bytes start;
  } cases[] = {
      {"jpeg", Hex("FFD8FFC0")},
      {"jpeg", Hex("FFD8FFE1")},
      {"unknown", Hex("FFD8FFBF")},
      {"tiff", Hex("49492A00")},
      {"tiff", Hex("4D4D002A")},
      {"unknown", Hex("49494D00")},
      {"png", Hex("89504E470D0A1A0A")},
      {"unknown", Hex("89504E470D0A1A0B")},
      {"psd", Text("8BPS") + Hex("0001")},
      {"unknown", Text("8BPS") + Hex("0002")},
      {"pdf", Text("%PDF-1.4")},
      {"gif", Text("GIF8")},
      {"avi", Text("RIFF????AVI LIST")},
      {"wav", Text("RIFF????WAVEfmt ")},
      {"mp3", Text("ID3") + Hex("03")},
      {"unknown", Text("ID3") + Hex("04")},
      {"bmp", Text("BM")},
      {"mov", Text("????mdat")},
      {"mov", Text("????free")},
      {"mpeg", Hex("000001BA")},
      {"wmv", Hex("3026B275")},
      {"webp", Text("RIFF????WEBPVP8 ")},
      {"heif", Ftyp("heic", 24)},
      {"heif", Ftyp("avis", 8000)},
      {"heif", Ftyp("MSF1????iso8miaf", 24)},
      {"heif", Ftyp("MSF1????miaf", 0)},
      {"heif", Put32(1) + Text("ftyp") + Put32(0) + Put32(28) + Text("abcd????avif")},
      {"heif", Ftyp("abcd????" + std::string(4000, 'x') + "heic", 4020)},
      {"unknown", Ftyp("abcd????" + std::string(4000, 'x') + "heic", 4016)},  // Follows the box.
      {"unknown", Ftyp("abcdheicabcd", 20)},                                  // A minor version.
      {"unknown", Ftyp("abcd????heic", 24)},                                  // A box that the file cuts.
      {"jxl", Hex("0000000C4A584C200D0A870A")},
      {"jxl", Hex("FF0A")},
      {"jp2", Hex("0000000C6A5020200D0A870A")},
      {"jp2", Hex("FF4FFF51")},
      {"unknown", Hex("0000000C6A5020200D0A870D")},
      {"xmp", Text("<x:xmpmeta xmlns")},
      {"xmp", Hex("EFBBBF") + Text(" \n<?xpacket begin=''?>")},
      {"xmp", Hex("FEFF") + Wide("<rdf:RDF>", 2, kBig)},
      {"xmp", Hex("FFFE") + Wide("<x:xapmeta/>", 2, kLittle)},
      {"xmp", Hex("0000FEFF") + Wide("<rdf:RDF>", 4, kBig)},
      {"xmp", Hex("FFFE0000") + Wide("<?xml?><!--<a>--> <?a?><rdf:RDF>", 4, kLittle)},
      {"xmp", Text(std::string(1015, ' ') + "<rdf:RDF xmlns")},
      {"unknown", Text(std::string(1017, ' ') + "<rdf:RDF xmlns")},
      {"unknown", Text("<!-- a --><rdf:RDF >")},  // No declaration in front.
      {"unknown", Text("<?xml version='1.0'?><!DOCTYPE rdf:RDF><rdf:RDF>")},
      {"unknown", Text("<?xml version='1.0'?><svg><rdf:RDF/></svg>")},
      {"unknown", Text("<x:xmpmetadata>  ")},
      {"unknown", Wide("<rdf:RDF>", 2, kBig)},
  };
  for (const auto& c : cases) EXPECT_STREQ(LxFileKindName(KindOf(c.start)), c.kind) << testing::PrintToString(c.start);
}

TEST(FileKind, TheFirstTestThatHoldsDecides) {
  // A RIFF file of another form is none, although later tests would hold; without RIFF the form says nothing.
  EXPECT_EQ(KindOf(Text("RIFFmoovRMIDdata")), kLxFileUnknown);
  EXPECT_EQ(KindOf(Text("RIFFmoovWEBPVP8 ")), kLxFileWebp);
  EXPECT_EQ(KindOf(Hex("000001BA") + Text("ftypheicmif1")), kLxFileMpeg);
  EXPECT_EQ(KindOf(Text("????moovWEBPVP8 ")), kLxFileMov);
  EXPECT_EQ(KindOf(Text("RIFX????AVI ")), kLxFileUnknown);
  EXPECT_EQ(KindOf(Text("BM??moov")), kLxFileBmp);
}

}  // namespace
