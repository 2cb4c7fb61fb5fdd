#include "xmpconv/exif_structs.h"

#include "tests/xmpconv/conversion_fixture.h"
#include "xmpconv/schemas.h"
#include "xmpconv/tiff_exif.h"

namespace lxtest {
namespace {

class ExifStructsTest : public ConversionTest {
 protected:
  bool Convert(const char* name, std::uint16_t tag, const Bytes& value, Order order = kBig, const char* display = "") {
    return LxConvertExifItem(conversion, Add(ValueItem("exif", name, tag, kLxTypeUndefined, value, order, display)));
  }
};

TEST_F(ExifStructsTest, FlashIsItsBitsAndReplacesTheWholeStruct) {
  const struct {
    std::uint32_t bits;
    const char* fields;
  } cases[] = {
      {0x00, "exif:Fired=False, exif:Return=0, exif:Mode=0, exif:Function=False, exif:RedEyeMode=False"},
      {0x19, "exif:Fired=True, exif:Return=0, exif:Mode=3, exif:Function=False, exif:RedEyeMode=False"},
      {0x41, "exif:Fired=True, exif:Return=0, exif:Mode=0, exif:Function=False, exif:RedEyeMode=True"},
      {0x26, "exif:Fired=False, exif:Return=3, exif:Mode=0, exif:Function=True, exif:RedEyeMode=False"},
  };
  for (const auto& c : cases) {
    xmp.SetStructField(kLxExifSchema, "Flash", kLxTiffSchema, "Other", "1");
    for (const Order order : {kBig, kLittle}) {
      EXPECT_TRUE(Convert("Flash", 0x9209, Put16(c.bits, order), order));
      EXPECT_EQ(Dump(), std::string("exif:Flash={") + c.fields + "}\n");
    }
  }
  EXPECT_FALSE(Convert("Flash", 0x9209, {1}));  // Half a number: the struct stays.
  EXPECT_NE(Dump(), "");
}

TEST_F(ExifStructsTest, VersionsCodesAndCommentsAreTextsAndNumbers) {
  EXPECT_TRUE(Convert("ExifVersion", 0x9000, Text("0220")));
  EXPECT_TRUE(Convert("FlashPixVersion", 0xA000, Text("0100 and more")));
  EXPECT_TRUE(Convert("FileSource", 0xA300, {3, 9}));
  EXPECT_TRUE(Convert("SceneType", 0xA301, {200}));
  EXPECT_TRUE(Convert("ComponentsConfiguration", 0x9101, {1, 2, 3, 0, 7}));
  EXPECT_TRUE(Convert("UserComment", 0x9286, Text("x"), kBig, ""));
  EXPECT_TRUE(Convert("MakerNote", 0x927C, Text("x"), kBig, "1 2 3"));
  EXPECT_EQ(Dump(),
            "exif:ExifVersion=0220\nexif:FlashPixVersion=0100\nexif:FileSource=3\nexif:SceneType=200\n"
            "exif:ComponentsConfiguration=seq[1, 2, 3, 0]\nexif:UserComment=alt[x-default: ]\nexif:MakerNote=1 2 3\n");
  EXPECT_TRUE(Convert("ExifVersion", 0x9000, {'2', 0, '2', '0'}));
  EXPECT_EQ(Dump("exif:ExifVersion"), "exif:ExifVersion=2\n");
}

TEST_F(ExifStructsTest, AValueTooShortForItsLayoutWritesNothing) {
  EXPECT_FALSE(Convert("ExifVersion", 0x9000, Text("022")));
  EXPECT_FALSE(Convert("ComponentsConfiguration", 0x9101, {1, 2, 3}));
  constexpr std::uint16_t kMatrices[] = {0x8828, 0xA20C, 0xA302, 0xA40B};
  for (const std::uint16_t tag : kMatrices) EXPECT_FALSE(Convert("A", tag, {0, 1, 0}));
  EXPECT_EQ(Dump(), "");
}

TEST_F(ExifStructsTest, NamedTablesHoldNamesAndRationalsInTheFilesOrder) {
  for (const Order order : {kBig, kLittle}) {
    const Bytes table = Put16(2, order) + Put16(2, order) + ZText("") + ZText("Gr") +
                        Elements(kLxTypeRational, {-1, 2, 3, 4, 5, 6, 7, 8}, order);
    EXPECT_TRUE(Convert("OECF", 0x8828, table, order));
    EXPECT_TRUE(Convert("SpatialFrequencyResponse", 0xA20C, table, order));
    EXPECT_EQ(Dump("exif:OECF"),
              "exif:OECF={exif:Columns=2, exif:Rows=2, exif:Names=seq[, Gr], exif:Values=seq[-1/2, 3/4, 5/6, 7/8]}\n");
    EXPECT_EQ(Dump("exif:Spatial"),
              "exif:SpatialFrequencyResponse={exif:Columns=2, exif:Rows=2, exif:Names=seq[, Gr], "
              "exif:Values=seq[4294967295/2, 3/4, 5/6, 7/8]}\n");
  }
}

TEST_F(ExifStructsTest, TablesThatPromiseMoreThanTheyHoldKeepTheFieldsThatFit) {
  const Bytes values = Elements(kLxTypeRational, {1, 2}, kBig);
  EXPECT_FALSE(Convert("A", 0x8828, Hex("0001 0002 5200") + values));  // Two rows, one value.
  EXPECT_FALSE(Convert("B", 0x8828, Hex("0009 0001 5200")));           // Nine names, one there.
  EXPECT_FALSE(Convert("C", 0x8828, Hex("FFFF FFFF 5200") + values));
  EXPECT_FALSE(Convert("D", 0xA302, Hex("FFFF FFFF 00 01 02")));
  EXPECT_FALSE(Convert("E", 0x8828, Hex("0001 0001") + Text("Red")));  // The name runs to the end.
  EXPECT_TRUE(Convert("F", 0x8828, Hex("0001 0000") + Text("Red")));
  EXPECT_FALSE(Convert("G", 0x8828, Hex("0002 0000 5200")));
  EXPECT_EQ(Dump(),
            "exif:A={exif:Columns=1, exif:Rows=2, exif:Names=seq[R]}\n"
            "exif:B={exif:Columns=9, exif:Rows=1}\n"
            "exif:C={exif:Columns=65535, exif:Rows=65535}\n"
            "exif:D={exif:Columns=65535, exif:Rows=65535}\n"
            "exif:E={exif:Columns=1, exif:Rows=1, exif:Names=seq[Red]}\n"
            "exif:F={exif:Columns=1, exif:Rows=0, exif:Names=seq[Red]}\n"
            "exif:G={exif:Columns=2, exif:Rows=0}\n");
}

TEST_F(ExifStructsTest, PatternsAndSettingsReplaceTheirFieldsAndKeepOthers) {
  xmp.SetStructField(kLxExifSchema, "CFAPattern", kLxExifSchema, "Columns", "9");
  xmp.SetStructField(kLxExifSchema, "CFAPattern", kLxTiffSchema, "Other", "1");
  EXPECT_TRUE(Convert("CFAPattern", 0xA302, Hex("0002 0002 00 01 01 02 FF")));
  EXPECT_TRUE(Convert("DeviceSettingDescription", 0xA40B, Hex("0001 0002 4100 0000 4200")));
  EXPECT_EQ(Dump(),
            "exif:CFAPattern={tiff:Other=1, exif:Columns=2, exif:Rows=2, exif:Values=seq[0, 1, 1, 2]}\n"
            "exif:DeviceSettingDescription={exif:Columns=1, exif:Rows=2, exif:Settings=seq[A, B]}\n");
  EXPECT_TRUE(Convert("CFAPattern", 0xA302, Hex("0200 0100 02 01"), kLittle));
  EXPECT_EQ(Dump("exif:CFA"), "exif:CFAPattern={tiff:Other=1, exif:Columns=2, exif:Rows=1, exif:Values=seq[2, 1]}\n");
}

}  // namespace
}  // namespace lxtest
