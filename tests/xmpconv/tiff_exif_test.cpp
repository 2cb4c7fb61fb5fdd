#include "xmpconv/tiff_exif.h"

#include <utility>

#include "tests/xmpconv/conversion_fixture.h"
#include "xmpconv/schemas.h"

namespace lxtest {
namespace {

class TiffExifTest : public ConversionTest {
 protected:
  // The properties that the item alone becomes.
  std::string Converted(LxMetadataItem* item) {
    Add(item);
    XMPMetaHolder fresh;
    LxConversion own(*pool.get(), fresh);
    const bool isTiff = std::string_view(item->nameSpace) == "tiff";
    const bool done = isTiff ? LxConvertTiffItem(own, item) : LxConvertExifItem(own, item);
    const std::string dump = DumpXmp(fresh.Meta());
    EXPECT_EQ(done, !dump.empty()) << item->name;
    return dump;
  }
};

TEST_F(TiffExifTest, ItemsAreMappedWhenTypeAndLengthFitTheirRule) {
  const struct {
    const char* nameSpace;
    const char* name;
    std::uint16_t tag;
    std::uint16_t type;
    std::initializer_list<std::int64_t> elements;
    const char* text;  // Empty: not converted.
  } cases[] = {
      {"exif", "ExposureTime", 0x829A, kLxTypeRational, {1, 250}, "1/250"},
      {"exif", "ExposureTime", 0x829A, kLxTypeSRational, {1, 250}, "1/250"},
      {"exif", "ExposureBiasValue", 0x9204, kLxTypeSRational, {-2, 0}, "-2/0"},
      {"exif", "ExposureTime", 0x829A, kLxTypeLong, {1, 250}, ""},
      {"exif", "ISOSpeedRatings", 0x8827, kLxTypeShort, {100, 200}, "seq[100, 200]"},
      {"exif", "ISOSpeedRatings", 0x8827, kLxTypeShort, {100}, "seq[100]"},
      {"exif", "ISOSpeedRatings", 0x8827, kLxTypeSByte, {-100, 1}, "seq[-100, 1]"},
      {"exif", "ISOSpeedRatings", 0x8827, kLxTypeSShort, {-100, 1}, "seq[-100, 1]"},
      {"exif", "ISOSpeedRatings", 0x8827, kLxTypeSLong, {-100, 1}, "seq[-100, 1]"},
      {"exif", "ISOSpeedRatings", 0x8827, kLxTypeLong, {0xFFFFFFFF}, "seq[4294967295]"},
      {"exif", "ISOSpeedRatings", 0x8827, kLxTypeRational, {100, 1}, ""},
      {"exif", "ISOSpeedRatings", 0x8827, kLxTypeAscii, {'1', 0}, ""},
      {"tiff", "Orientation", 0x0112, kLxTypeShort, {6}, "6"},
      {"tiff", "Orientation", 0x0112, kLxTypeByte, {6}, "6"},
      {"tiff", "Orientation", 0x0112, kLxTypeSByte, {-6}, "-6"},
      {"tiff", "Orientation", 0x0112, kLxTypeSShort, {-6}, "-6"},
      {"tiff", "Orientation", 0x0112, kLxTypeSLong, {-6}, "-6"},
      {"tiff", "Orientation", 0x0112, kLxTypeLong, {0xFFFFFFFF}, "4294967295"},
      {"tiff", "Orientation", 0x0112, kLxTypeShort, {6, 6}, ""},
      {"tiff", "Orientation", 0x0112, kLxTypeUndefined, {6}, ""},
      {"tiff", "Orientation", 0x0112, kLxTypeFloat, {6}, ""},
      {"tiff", "XResolution", 0x011A, kLxTypeRational, {72, 1, 72, 1}, ""},
      {"tiff", "WhitePoint", 0x013E, kLxTypeRational, {313, 1000, 329, 1000}, "seq[313/1000, 329/1000]"},
      {"tiff", "ReferenceBlackWhite", 0x0214, kLxTypeLong, {0, 255}, ""},
      {"tiff", "Make", 0x010F, kLxTypeAscii, {'H', 'P', 0, 0}, "HP"},
      {"tiff", "Make", 0x010F, kLxTypeAscii, {'H', 'P'}, ""},
      {"tiff", "Make", 0x010F, kLxTypeByte, {'H', 'P', 0}, ""},
      {"tiff", "ImageDescription", 0x010E, kLxTypeAscii, {'s', 'e', 'a', 0}, "alt[x-default: sea]"},
      {"tiff", "ImageDescription", 0x010E, kLxTypeAscii, {'s', 'e', 'a'}, "alt[x-default: sea]"},
      {"tiff", "ImageDescription", 0x010E, kLxTypeUndefined, {'s', 'e', 'a', 0}, ""},
      {"exif", "Gamma", 0xA500, kLxTypeRational, {22, 10}, ""},  // In no table.
      {"exif", "SubSecTime", 0x9290, kLxTypeAscii, {'1', 0}, ""},
      {"tiff", "ExposureTime", 0x829A, kLxTypeRational, {1, 250}, ""},      // Not in this namespace.
      {"exif", " 9214", 0x9214, kLxTypeShort, {1, 2}, ""},                  // No name that XMP can hold.
      {"gps", " a302", 0xA302, kLxTypeByte, {0, 2, 0, 2, 0, 1, 1, 2}, ""},  // Nor the path of a struct's field.
  };
  for (const auto& c : cases) {
    for (const Order order : {kBig, kLittle}) {
      LxMetadataItem* const item =
          ValueItem(c.nameSpace, c.name, c.tag, c.type, Elements(c.type, c.elements, order), order);
      const std::string expected = std::string(c.nameSpace) + ":" + c.name + "=" + c.text + "\n";
      EXPECT_EQ(Converted(item), *c.text != '\0' ? expected : "") << c.name << " type " << c.type << " order " << order;
    }
  }
}

TEST_F(TiffExifTest, AValueThatIsNoWholeNumberOfElementsIsNotConverted) {
  EXPECT_EQ(Converted(ValueItem("exif", "ISOSpeedRatings", 0x8827, kLxTypeShort, {0, 100, 0})), "");
  EXPECT_EQ(Converted(ValueItem("tiff", "WhitePoint", 0x013E, kLxTypeRational, Filled(12))), "");
}

TEST_F(TiffExifTest, ARefusedItemLeavesThePacketsValueAndAnEmptyOneDeletesIt) {
  xmp.SetProperty(kLxTiffSchema, "Orientation", "3");
  xmp.SetProperty(kLxExifSchema, "Gamma", "2.2");
  xmp.SetProperty(kLxTiffSchema, "Gamma", "2.2");
  xmp.SetProperty(kLxTiffSchema, "DateTime", "2004");
  EXPECT_FALSE(
      LxConvertTiffItem(conversion, Add(ValueItem("tiff", "Orientation", 0x0112, kLxTypeShort, {0, 6, 0, 6}))));
  EXPECT_EQ(Dump("tiff:Orientation"), "tiff:Orientation=3\n");
  LxMetadataItem* const date = ValueItem("tiff", "DateTime", 0x0132, kLxTypeAscii, ZText("0000:00:00 00:00:00"));
  EXPECT_FALSE(LxConvertTiffItem(conversion, Add(date)));  // A clock that was not set knows no better.
  EXPECT_EQ(Dump("tiff:DateTime"), "tiff:DateTime=2004\n");
  xmp.DeleteProperty(kLxTiffSchema, "DateTime");
  EXPECT_FALSE(LxConvertTiffItem(conversion, Add(ValueItem("tiff", "Orientation", 0x0112, kLxTypeShort, {}))));
  EXPECT_FALSE(LxConvertExifItem(conversion, Add(ValueItem("exif", "Gamma", 0xA500, kLxTypeRational, {}))));
  EXPECT_FALSE(LxConvertExifItem(conversion, Add(ValueItem("exif", " fde8", 0xFDE8, kLxTypeAscii, {}))));
  EXPECT_EQ(Dump(), "tiff:Gamma=2.2\n");
}

TEST_F(TiffExifTest, DatesTakeTheirOwnZoneElseTheMachinesAndTheirOwnSubSeconds) {
  Add(ValueItem("exif", "SubSecTimeOriginal", 0x9291, kLxTypeAscii, ZText("25")));
  Add(ValueItem("exif", "SubSecTimeDigitized", 0x9292, kLxTypeAscii, Text("5")));  // No zero byte after it.
  const Bytes date = ZText("2004:03:15 14:30:59");
  EXPECT_EQ(Converted(ValueItem("tiff", "DateTime", 0x0132, kLxTypeAscii, date)),
            "tiff:DateTime=2004-03-15T14:30:59+05:30\n");
  EXPECT_EQ(Converted(ValueItem("exif", "DateTimeOriginal", 0x9003, kLxTypeAscii, date)),
            "exif:DateTimeOriginal=2004-03-15T14:30:59.25+05:30\n");
  EXPECT_EQ(Converted(ValueItem("exif", "DateTimeDigitized", 0x9004, kLxTypeAscii, date)),
            "exif:DateTimeDigitized=2004-03-15T14:30:59.5+05:30\n");
  const std::pair<Bytes, const char*> offsets[] = {
      {ZText("+02:00"), "+02:00"},  {Text("-09:30"), "-09:30"},  {ZText("+14:59"), "+14:59"},
      {ZText("-00:00"), "Z"},       {ZText("   :  "), "+05:30"}, {ZText("+15:00"), "+05:30"},
      {ZText("+02:60"), "+05:30"},  {ZText("+2:00"), "+05:30"},  {ZText("02:00"), "+05:30"},
      {ZText("+02:00 "), "+05:30"}, {ZText("+02 00"), "+05:30"}, {ZText("+0:200"), "+05:30"}};
  for (const auto& [offset, zone] : offsets) {
    Add(ValueItem("exif", " 9010", 0x9010, kLxTypeAscii, offset));
    Add(ValueItem("exif", " 9011", 0x9011, kLxTypeUndefined, ZText("+01:00")));
    Add(ValueItem("exif", " 9012", 0x9012, kLxTypeAscii, ZText("-01:00")));
    EXPECT_EQ(Converted(ValueItem("tiff", "DateTime", 0x0132, kLxTypeAscii, date)),
              std::string("tiff:DateTime=2004-03-15T14:30:59") + zone + "\n");
    EXPECT_EQ(Converted(ValueItem("exif", "DateTimeOriginal", 0x9003, kLxTypeAscii, date)),
              "exif:DateTimeOriginal=2004-03-15T14:30:59.25+05:30\n");
    EXPECT_EQ(Converted(ValueItem("exif", "DateTimeDigitized", 0x9004, kLxTypeAscii, date)),
              "exif:DateTimeDigitized=2004-03-15T14:30:59.5-01:00\n");
  }
  EXPECT_EQ(Converted(ValueItem("exif", " 9010", 0x9010, kLxTypeAscii, ZText("+02:00"))), "");
  Add(Item("exif", "SubSecTime"));  // Without a value.
  EXPECT_EQ(Converted(ValueItem("tiff", "DateTime", 0x0132, kLxTypeAscii, date)), "");
}

TEST_F(TiffExifTest, DatesOfAnotherShapeOrOfNoInstantAreNotConverted) {
  for (const char* const text : {"2004:03:15 14:30:5", "2004:03:15 14:30:590", "0000:00:00 00:00:00",
                                 "    :  :     :  :  ", "2004:13:15 14:30:59", "2004:03:32 14:30:59"}) {
    EXPECT_EQ(Converted(ValueItem("tiff", "DateTime", 0x0132, kLxTypeAscii, ZText(text))), "") << text;
  }
  EXPECT_EQ(Converted(ValueItem("tiff", "DateTime", 0x0132, kLxTypeAscii, Text("2004:03:15 14:30:59"))), "");
  EXPECT_EQ(Converted(ValueItem("tiff", "DateTime", 0x0132, kLxTypeUndefined, ZText("2004:03:15 14:30:59"))), "");
}

TEST_F(TiffExifTest, RawConverterTextsLoseTheirLabelsAndDoNotCount) {
  xmp.SetProperty(kLxTiffSchema, "Artist", "packet");
  for (const char* const display : {"Owner's Name: me", "Owner's Name:you", "owner's Name: you", "Owner's", ""}) {
    LxMetadataItem* const item = ValueItem("exif", "RFOwnerName", 0xFDE8, kLxTypeAscii, ZText("x"), kBig, display);
    EXPECT_FALSE(LxConvertExifItem(conversion, Add(item)));
    EXPECT_EQ(Dump(), "tiff:Artist=me\n") << display;
  }
}

// Each lookup of a second item is made once a file; made once an item it would take minutes here.
TEST_F(TiffExifTest, ManyDatesInABigPoolTakeTimeInProportion) {
  for (int i = 0; i < 100'000; ++i) Add(Item("exif", "Other"));
  const LxMetadataItem* const date =
      Add(ValueItem("tiff", "DateTime", 0x0132, kLxTypeAscii, ZText("2004:03:15 14:30:59")));
  for (int i = 0; i < 100'000; ++i) ASSERT_TRUE(LxConvertTiffItem(conversion, date));
}

TEST_F(TiffExifTest, TheArraysOfOneFileHaveABoundThatHonestOnesStayBelow) {
  // TIFF 6.0, section 20: the longest transfer function, 3 times 65536 numbers.
  const LxMetadataItem* const longest =
      Add(ValueItem("tiff", "TransferFunction", 0x012D, kLxTypeShort, Filled(2 * 3 * 65536, 1)));
  EXPECT_TRUE(LxConvertTiffItem(conversion, longest));
  EXPECT_EQ(xmp.CountArrayItems(kLxTiffSchema, "TransferFunction"), 3u * 65536);
  EXPECT_TRUE(
      LxConvertTiffItem(conversion, Add(ValueItem("tiff", "BitsPerSample", 0x0102, kLxTypeShort, Filled(6, 1)))));
  EXPECT_FALSE(LxConvertTiffItem(conversion, longest));
  EXPECT_EQ(xmp.CountArrayItems(kLxTiffSchema, "TransferFunction"), 3u * 65536);  // The old array stays.
  EXPECT_TRUE(
      LxConvertTiffItem(conversion, Add(ValueItem("tiff", "BitsPerSample", 0x0102, kLxTypeShort, Filled(8, 1)))));
}

}  // namespace
}  // namespace lxtest
