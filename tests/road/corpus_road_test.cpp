// Real photographs through the five exported functions: properties against what an independent reader says of the
// files.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "api/include/lxbridge/lxbridge.h"
#include "host/include/lxbridge/xmp.hpp"
#include "tests/support/pool_support.h"

namespace lxtest {
namespace {

constexpr char kTiff[] = "http://ns.adobe.com/tiff/1.0/";
constexpr char kExif[] = "http://ns.adobe.com/exif/1.0/";

class CorpusRoad : public testing::Test {
 protected:
  void SetUp() override {
    if (CorpusFiles().empty()) GTEST_SKIP() << "no real photographs beside the tree";
    ASSERT_TRUE(LxInterchangeInit());
  }
  void TearDown() override { LxInterchangeTerm(); }

  static std::string Property(const char* file, const char* schema, const char* path) {
    const lxbridge::HostSession session;
    const LxInterchangeHandle handle = LxInterchangeNew(CorpusFile(file).c_str());
    const std::optional<std::string> value = lxbridge::XmpView(LxInterchangeGetXMP(handle)).Get(schema, path);
    LxInterchangeDelete(handle);
    return value.value_or("(not there)");
  }
};

// A number, or two with a slash.
double Number(const std::string& text) {
  char* end = nullptr;
  const double numerator = std::strtod(text.c_str(), &end);
  return *end == '/' ? numerator / std::strtod(end + 1, nullptr) : numerator;
}

// Degrees of "DDD,MM.mmmmK" or "DDD,MM,SSK" (Exif in XMP, ISO 16684-2: GPSCoordinate).
double Degrees(const std::string& text) {
  char* end = nullptr;
  double degrees = std::strtod(text.c_str(), &end);
  for (double part = 60; *end == ','; part *= 60) degrees += std::strtod(end + 1, &end) / part;
  return *end == 'S' || *end == 'W' ? -degrees : degrees;
}

TEST_F(CorpusRoad, GivesTheTextsThatAnotherReaderFinds) {
  const struct {
    const char *file, *schema, *path, *value;
  } cases[] = {
      {"Canon_40D.jpg", kTiff, "Model", "Canon EOS 40D"},
      {"Canon_40D.jpg", kExif, "DateTimeOriginal", "2008-05-30T15:56:01+05:30"},
      {"Canon_40D.jpg", kExif, "ISOSpeedRatings[1]", "100"},
      {"HTC_Desire.jpg", kTiff, "Make", "HTC"},
      {"HTC_Desire.jpg", kExif, "GPSTimeStamp", "2011-05-06T07:59:48Z"},
      {"IMG_20180725_163423-tiny.jpg", kTiff, "Model", "Pixel"},
      {"IMG_20180725_163423-tiny.jpg", kExif, "GPSTimeStamp", "2018-07-25T14:34:23Z"},
      {"Nikon_COOLPIX_P1.jpg", kExif, "DateTimeOriginal", "2008-03-07T09:55:46+05:30"},
      // In Latin-1 in the file, with the spaces that the camera fills it up with.
      {"Ricoh_DC-3Z_(low_res).jpg", kTiff, "Copyright[1]", "(C)Hendrik W\xC3\xB6rdehoff     "},
      // Its date has 21 bytes where Exif has 20: none is better than a wrong one.
      {"Pentax_Optio_S4.jpg", kExif, "DateTimeOriginal", "(not there)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Property(c.file, c.schema, c.path), c.value) << c.file << " " << c.path;
  }
}

TEST_F(CorpusRoad, GivesTheNumbersThatAnotherReaderFinds) {
  const struct {
    const char *file, *path;
    double value;
  } cases[] = {
      {"Canon_40D.jpg", "ExposureTime", 0.00625},
      {"Canon_40D.jpg", "FNumber", 7.1},
      {"HTC_Desire.jpg", "FocalLength", 4.31},
      {"IMG_20180725_163423-tiny.jpg", "ExposureTime", 0.000376},
      {"Nikon_COOLPIX_P1.jpg", "ExposureTime", 0.004572473708},
      {"Sony_HDR-HC3.jpg", "FocalLength", 5.1},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(Number(Property(c.file, kExif, c.path)), c.value, 1e-9) << c.file << " " << c.path;
  }
  const struct {
    const char* file;
    double latitude, longitude;
  } places[] = {{"HTC_Desire.jpg", 45.50066667, 9.11033333},
                {"IMG_20180725_163423-tiny.jpg", 50.29960278, 14.82029444}};
  constexpr double kCut = 0.011 / 60;  // Of hundredths of a minute, the last may be cut off.
  for (const auto& place : places) {
    EXPECT_NEAR(Degrees(Property(place.file, kExif, "GPSLatitude")), place.latitude, kCut) << place.file;
    EXPECT_NEAR(Degrees(Property(place.file, kExif, "GPSLongitude")), place.longitude, kCut) << place.file;
  }
}

}  // namespace
}  // namespace lxtest
