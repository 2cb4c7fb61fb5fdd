#include "xmpconv/setters.h"

#include "tests/xmpconv/conversion_fixture.h"
#include "xmpconv/schemas.h"

namespace lxtest {
namespace {

class SettersTest : public ConversionTest {};

TEST_F(SettersTest, NumbersAreDecimalInTheirSign) {
  const Bytes minusOneThird = Elements(kLxTypeSRational, {-1, 3}, kBig);
  const Bytes tenThousandths = Elements(kLxTypeRational, {10, 1000}, kLittle);
  EXPECT_TRUE(LxSetXMPInteger(xmp, kLxExifSchema, "A", 0xFFFFFFFF, false));
  EXPECT_TRUE(LxSetXMPInteger(xmp, kLxExifSchema, "B", 0xFFFFFFFF, true));
  EXPECT_TRUE(LxSetXMPRational(xmp, kLxExifSchema, "C", minusOneThird.data(), true, kBig));
  EXPECT_TRUE(LxSetXMPRational(xmp, kLxExifSchema, "D", minusOneThird.data(), false, kBig));
  EXPECT_TRUE(LxSetXMPRational(xmp, kLxExifSchema, "E", tenThousandths.data(), false, kLittle));
  EXPECT_TRUE(LxSetXMPRational(xmp, kLxExifSchema, "F", Elements(kLxTypeRational, {5, 0}, kBig).data(), false, kBig));
  EXPECT_EQ(Dump(), "exif:A=4294967295\nexif:B=-1\nexif:C=-1/3\nexif:D=4294967295/3\nexif:E=10/1000\nexif:F=5/0\n");
}

TEST_F(SettersTest, ArraysReadTheirElementsInSizeSignAndOrder) {
  const Bytes bytes = Hex("FF 80 00 7F");
  const auto set = [&](std::size_t size, bool isSigned, int order) {
    EXPECT_TRUE(LxSetXMPIntegerSeq(xmp, kLxExifSchema, "A", bytes.data(), size, 4 / size, isSigned, order));
    return Dump();
  };
  EXPECT_EQ(set(1, false, kBig), "exif:A=seq[255, 128, 0, 127]\n");
  EXPECT_EQ(set(1, true, kBig), "exif:A=seq[-1, -128, 0, 127]\n");
  EXPECT_EQ(set(2, false, kBig), "exif:A=seq[65408, 127]\n");
  EXPECT_EQ(set(2, true, kLittle), "exif:A=seq[-32513, 32512]\n");
  EXPECT_EQ(set(4, false, kBig), "exif:A=seq[4286578815]\n");
  EXPECT_EQ(set(4, true, kBig), "exif:A=seq[-8388481]\n");
  const Bytes rationals = Elements(kLxTypeRational, {1, 2, -3, 4}, kLittle);
  EXPECT_TRUE(LxSetXMPRationalSeq(xmp, kLxExifSchema, "A", rationals.data(), 2, true, kLittle));
  EXPECT_EQ(Dump(), "exif:A=seq[1/2, -3/4]\n");
}

TEST_F(SettersTest, ReplaceAPropertyOfAnyForm) {
  xmp.AppendArrayItem(kLxTiffSchema, "Copyright", kXMPPropIsOrdered, "old");
  EXPECT_TRUE(LxSetXMPText(xmp, kLxTiffSchema, "Copyright", "simple", kLxTerminated));
  EXPECT_EQ(Dump(), "tiff:Copyright=simple\n");
  EXPECT_TRUE(LxSetXMPLangAlt(xmp, kLxTiffSchema, "Copyright", "me", kLxTerminated));
  EXPECT_EQ(Dump(), "tiff:Copyright=alt[x-default: me]\n");
  xmp.SetLocalizedText(kLxTiffSchema, "Copyright", "", "de", "ich");
  EXPECT_TRUE(LxSetXMPLangAlt(xmp, kLxTiffSchema, "Copyright", "", kLxTerminated));
  EXPECT_EQ(Dump(), "tiff:Copyright=alt[x-default: ]\n");
  xmp.DeleteProperty(kLxTiffSchema, "Copyright");
  xmp.SetStructField(kLxTiffSchema, "Copyright", kLxExifSchema, "Fired", "True");
  EXPECT_TRUE(LxSetXMPInteger(xmp, kLxTiffSchema, "Copyright", 7, false));
  EXPECT_EQ(Dump(), "tiff:Copyright=7\n");
}

TEST_F(SettersTest, ATextWithItsLengthIsCutThereAndHasLessThan1024Bytes) {
  EXPECT_TRUE(LxSetXMPText(xmp, kLxTiffSchema, "Make", "Canonical", 5));
  EXPECT_TRUE(LxSetXMPText(xmp, kLxTiffSchema, "Model", "a\0b", 3));
  EXPECT_EQ(Dump(), "tiff:Make=Canon\ntiff:Model=a\n");
  const std::string text(1024, 'x');
  EXPECT_FALSE(LxSetXMPText(xmp, kLxTiffSchema, "Make", text.c_str(), 1024));
  EXPECT_FALSE(LxSetXMPLangAlt(xmp, kLxTiffSchema, "Make", text.c_str(), 1024));
  EXPECT_EQ(Dump("tiff:Make"), "tiff:Make=Canon\n");
  EXPECT_TRUE(LxSetXMPText(xmp, kLxTiffSchema, "Make", text.c_str(), 1023));
  EXPECT_EQ(Dump("tiff:Make"), "tiff:Make=" + text.substr(1) + "\n");
}

TEST_F(SettersTest, WhatTheToolkitRefusesGivesFalseAndStaysDeleted) {
  const std::uint8_t byte = 1;
  EXPECT_FALSE(LxSetXMPText(xmp, kLxExifSchema, " 9214", "x", kLxTerminated));
  EXPECT_FALSE(LxSetXMPLangAlt(xmp, kLxExifSchema, " 9214", "x", kLxTerminated));
  EXPECT_FALSE(LxSetXMPInteger(xmp, kLxExifSchema, " 9214", 1, false));
  EXPECT_FALSE(LxSetXMPIntegerSeq(xmp, kLxExifSchema, " 9214", &byte, 1, 1, false, kBig));
  EXPECT_FALSE(LxSetXMPStructFlag(xmp, kLxExifSchema, " 9214", "Fired", 1, true));
  xmp.SetProperty(kLxTiffSchema, "DateTime", "2004");
  XMPDateTime date{};
  date.year = 2004, date.month = 13, date.day = 1;
  EXPECT_FALSE(LxSetXMPDate(xmp, kLxTiffSchema, "DateTime", date));
  EXPECT_EQ(Dump(), "");
}

TEST_F(SettersTest, FlagsAreWordsOrOneDigitAndDeleteNothing) {
  EXPECT_TRUE(LxSetXMPStructFlag(xmp, kLxExifSchema, "Flash", "Fired", 2, true));
  EXPECT_TRUE(LxSetXMPStructFlag(xmp, kLxExifSchema, "Flash", "Function", 0, true));
  EXPECT_TRUE(LxSetXMPStructFlag(xmp, kLxExifSchema, "Flash", "Return", 2, false));
  EXPECT_EQ(Dump(), "exif:Flash={exif:Fired=True, exif:Function=False, exif:Return=2}\n");
}

TEST_F(SettersTest, APrefixedTextSetsWhatFollowsItsLabel) {
  EXPECT_TRUE(LxSetXMPPrefixedText(xmp, kLxAuxSchema, "Lens", "Lens: ", "Lens: 50 mm"));
  EXPECT_EQ(Dump(), "aux:Lens=50 mm\n");
  for (const char* const other : {"Lens:50 mm", "Lens", "", "lens: 50 mm"}) {
    EXPECT_FALSE(LxSetXMPPrefixedText(xmp, kLxAuxSchema, "Lens", "Lens: ", other)) << other;
  }
  EXPECT_EQ(Dump(), "aux:Lens=50 mm\n");
}

TEST_F(SettersTest, TextsFollowEachOtherAndTheLastMayLackItsZero) {
  const Bytes texts = ZText("R") + ZText("") + Text("Green");
  const std::uint8_t* const end = texts.data() + texts.size();
  const std::uint8_t* cursor = texts.data();
  EXPECT_TRUE(LxSetXMPTextSeq(xmp, kLxExifSchema, "A", &cursor, end, 2));
  EXPECT_EQ(cursor, texts.data() + 3);
  EXPECT_EQ(Dump(), "exif:A=seq[R, ]\n");

  cursor = texts.data();
  EXPECT_FALSE(LxSetXMPTextSeq(xmp, kLxExifSchema, "A", &cursor, end, 4));
  EXPECT_EQ(cursor, texts.data());
  EXPECT_EQ(Dump(), "exif:A=seq[R, ]\n");  // Refused before anything is deleted.

  EXPECT_TRUE(LxSetXMPTextSeq(xmp, kLxExifSchema, "A", &cursor, end, 3));
  EXPECT_EQ(cursor, end);
  EXPECT_EQ(Dump(), "exif:A=seq[R, , Green]\n");
}

TEST_F(SettersTest, UnicodeStringsAreLittleEndianAndSurviveLoneSurrogates) {
  const struct {
    const char* units;
    const char* items;
  } cases[] = {
      {"4100 0000 4200 0000", "A, B"},
      {"4100 0000 4200", "A, B"},  // No zero unit at the end.
      {"4100 42", "A"},            // An odd last byte.
      {"0000 0000 4100 0000", ", , A"},
      {"3DD8 00DE 0000", "\xF0\x9F\x98\x80"},
      {"E900 AC20 0000", "\xC3\xA9\xE2\x82\xAC"},
      {"3DD8 4100 0000",
       "\xEF\xBF\xBD"
       "A"},
      {"3DD8 0000 4100 0000", "\xEF\xBF\xBD, A"},  // The zero unit still ends the string.
      {"4100 3DD8", "A\xEF\xBF\xBD"},
      {"4100 3DD8 00", "A\xEF\xBF\xBD"},
      {"00DE 4100 0000",
       "\xEF\xBF\xBD"
       "A"},
  };
  for (const auto& c : cases) {
    const Bytes bytes = Hex(c.units);
    EXPECT_TRUE(LxSetXMPUnicodeSeq(xmp, kLxExifSchema, "A", bytes.data(), bytes.data() + bytes.size()));
    EXPECT_EQ(Dump(), std::string("exif:A=seq[") + c.items + "]\n") << c.units;
  }
}

}  // namespace
}  // namespace lxtest
