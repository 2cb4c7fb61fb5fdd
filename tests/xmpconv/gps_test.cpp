#include "xmpconv/gps.h"

#include <limits>

#include "tests/xmpconv/conversion_fixture.h"
#include "xmpconv/schemas.h"
#include "xmpconv/tiff_exif.h"

namespace lxtest {
namespace {

std::string Coordinate(const LxGpsAngle& angle, char reference) {
  LxNumberText text;
  return LxFormatGPSCoordinate(angle, reference, &text) ? text.Text() : "nothing";
}

TEST(GpsCoordinate, HasWholeSecondsOrAsManyDigitsAsTheLargestDivisorTellsApart) {
  constexpr std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max();
  const struct {
    LxGpsAngle angle;
    char reference;
    const char* text;
  } cases[] = {
      {{37, 1, 46, 1, 30, 1}, 'N', "037,46,30N"},
      {{0, 1, 0, 1, 0, 1}, 's', "000,00,00s"},
      {{kMost, 1, kMost - 1, 1, kMost - 99, 1}, 'N', "-01,-2,-100N"},  // Written as signed numbers.
      {{37, 1, 4698, 100, 0, 1}, 'N', "037,46.98N"},
      {{37, 1, 46, 1, 3015, 100}, 'N', "037,46.50N"},
      {{122, 1, 15, 10, 0, 1}, 'W', "122,01.5W"},
      {{37, 1, 46, 1, 305, 10}, 'N', "037,46.5N"},
      {{37, 1, 46, 1, 300, 11}, 'N', "037,46.45N"},
      {{37, 1, 46, 1, 33003, 1001}, 'N', "037,46.5495N"},
      {{47, 1, 0, 1, 1, 1000000000}, 'E', "047,00.000000000E"},
      {{47, 1, 1, 3000000000u, 0, 1}, 'E', "047,00.000000000E"},
      {{45, 1, 3004, 100, 0, 1}, 'N', "045,30.03N"},  // The sum is a rounding below 30.04, and cut off.
      {{200, 2, 0, 1, 0, 1}, 'E', "100,00.0E"},
      {{5, 0, 46, 1, 30, 1}, 'N', "nothing"},
      {{37, 1, 0, 0, 30, 1}, 'N', "nothing"},
      {{37, 1, 46, 1, 0, 0}, 'N', "nothing"},
      {{0x7FFFFFFF, 1, 30, 1, 0, 2}, 'N', "2147483647,30.0N"},
      {{0x80000000, 1, 0, 1, 0, 2}, 'N', "nothing"},  // More degrees than can be written.
  };
  for (const auto& c : cases) EXPECT_EQ(Coordinate(c.angle, c.reference), c.text);
}

class GpsTest : public ConversionTest {
 protected:
  LxMetadataItem* Angle(const char* name, std::uint16_t tag, std::initializer_list<std::int64_t> halves) {
    return Add(ValueItem("gps", name, tag, kLxTypeRational, Elements(kLxTypeRational, halves, kBig)));
  }
  LxMetadataItem* TextItem(const char* name, std::uint16_t tag, const Bytes& text) {
    return Add(ValueItem("gps", name, tag, kLxTypeAscii, text));
  }
};

TEST_F(GpsTest, ACoordinateOrReferenceOfAnotherShapeGivesNothing) {
  EXPECT_FALSE(LxConvertExifItem(conversion, Angle("GPSLatitude", 2, {37, 1, 46, 1, 30, 1})));  // No reference.
  TextItem("GPSLongitudeRef", 3, ZText("WE"));
  EXPECT_FALSE(LxConvertExifItem(conversion, Angle("GPSLongitude", 4, {37, 1, 46, 1, 30, 1})));
  TextItem("GPSDestLatitudeRef", 0x13, ZText("N"));
  EXPECT_FALSE(LxConvertExifItem(conversion, Angle("GPSDestLatitude", 0x14, {37, 1, 46, 1})));
  LxMetadataItem* const isSigned = Angle("GPSDestLatitude", 0x14, {37, 1, 46, 1, 30, 1});
  isSigned->typeCode = kLxTypeSRational;
  EXPECT_FALSE(LxConvertExifItem(conversion, isSigned));
  EXPECT_FALSE(LxConvertExifItem(conversion, pool.find("gps", "GPSLongitudeRef")));  // No property of its own.
  EXPECT_EQ(Dump(), "");
}

TEST_F(GpsTest, ATimeStampNeedsItsDateAndIsUtc) {
  LxMetadataItem* const noon = Angle("GPSTimeStamp", 7, {14, 1, 30, 1, 15, 1});
  {
    LxConversion before(*pool.get(), xmp);
    EXPECT_FALSE(LxConvertExifItem(before, noon));
  }
  TextItem("GPSDateStamp", 0x1D, ZText("2004:03:15"));
  const struct {
    std::initializer_list<std::int64_t> time;
    const char* text;  // Empty: nothing.
  } cases[] = {
      {{14, 1, 30, 1, 15, 1}, "2004-03-15T14:30:15Z"},
      {{14, 1, 30, 1, 1525, 100}, "2004-03-15T14:30:15.25Z"},
      {{145, 10, 0, 1, 0, 7}, "2004-03-15T14:30:00Z"},
      {{23, 1, 59, 1, 59, 1}, "2004-03-15T23:59:59Z"},
      {{24, 1, 0, 1, 0, 1}, ""},
      {{14, 0, 30, 1, 15, 1}, ""},
      {{0, 1, 0, 0, 0, 1}, ""},
      {{0, 1, 0, 1, 0, 0}, ""},
  };
  for (const auto& c : cases) {
    xmp.DeleteProperty(kLxExifSchema, "GPSTimeStamp");
    EXPECT_EQ(LxConvertExifItem(conversion, Angle("GPSTimeStamp", 7, c.time)), *c.text != '\0') << c.text;
    EXPECT_EQ(Dump(), *c.text ? std::string("exif:GPSTimeStamp=") + c.text + "\n" : "");
  }
}

TEST_F(GpsTest, TheVersionIsFourNumbersAndAShorterOneNothing) {
  EXPECT_TRUE(LxConvertExifItem(conversion, Add(ValueItem("gps", "GPSVersionID", 0, kLxTypeByte, {2, 3, 0, 255}))));
  EXPECT_EQ(Dump(), "exif:GPSVersionID=2.3.0.255\n");
  EXPECT_FALSE(LxConvertExifItem(conversion, Add(ValueItem("gps", "GPSVersionID", 0, kLxTypeByte, {2, 2, 0}))));
}

}  // namespace
}  // namespace lxtest
