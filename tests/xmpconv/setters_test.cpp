#include "xmpconv/setters.h"

#include "tests/xmpconv/conversion_fixture.h"
#include "xmpconv/schemas.h"

namespace lxtest {
namespace {

class SettersTest : public ConversionTest {};

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

TEST_F(SettersTest, RefusedValuesGiveFalseAndTheOldOnesStayDeleted) {
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

TEST_F(SettersTest, UnicodeStringsAreLittleEndianAndSurviveLoneSurrogates) {
  const struct {
    const char* units;
    const char* items;
  } cases[] = {
      {"4100 0000 4200 0000", "A, B"},
      {"4100 0000 4200", "A, B"},  // No zero unit at the end.
      {"4100 42", "A"},            // An odd last byte.
      {"0000 0000 4100 0000", ", , A"},
      {"3DD8 00DE 3FD8 00DC 00D8 FFDF", "\xF0\x9F\x98\x80\xF0\x9F\xB0\x80\xF0\x90\x8F\xBF"},
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
