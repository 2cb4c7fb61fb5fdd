// Recognising files by their first bytes.
#include "kit/readers/file_kind.h"

#include <gtest/gtest.h>

#include "tests/support/bytes.h"

using namespace lxtest;

namespace {

LxFileKind KindOf(const Bytes& start) {
  Bytes header = start;
  header.resize(kLxFileHeaderSize);
  return LxDetectFileKind(header.data());
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
  };
  for (const auto& c : cases) EXPECT_STREQ(LxFileKindName(KindOf(c.start)), c.kind) << testing::PrintToString(c.start);
}

TEST(FileKind, TheFirstTestThatHoldsDecides) {
  // A RIFF file of another form is none, although later tests would hold; without RIFF the form says nothing.
  EXPECT_EQ(KindOf(Text("RIFFmoovWEBPVP8 ")), kLxFileUnknown);
  EXPECT_EQ(KindOf(Text("????moovWEBPVP8 ")), kLxFileMov);
  EXPECT_EQ(KindOf(Text("RIFX????AVI ")), kLxFileUnknown);
  EXPECT_EQ(KindOf(Text("BM??moov")), kLxFileBmp);
}

}  // namespace
