// The tags of the GPS directory (Exif 2.2, 4.6.6). Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"
#include "kit/model/tables/value_names.h"

// clang-format off
constexpr LxTagRecord kLxGpsTags[] = {
  //id     flags   name                   type     n  display                   leads to label
  {0x0000, kPlain, "GPSVersionID",        kByte,   4, nullptr,                  nullptr, "$$$/Exif/GPSVersionID=GPS Version ID"},
  {0x0001, kPlain, "GPSLatitudeRef",      kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSLatitudeRef=GPS Latitude Ref"},
  {0x0002, kPlain, "GPSLatitude",         kRatl,   3, &kLxGpsQuantity,          nullptr, "$$$/Exif/GPSLatitude=GPS Latitude"},
  {0x0003, kPlain, "GPSLongitudeRef",     kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSLongitudeRef=GPS Longitude Ref"},
  {0x0004, kPlain, "GPSLongitude",        kRatl,   3, &kLxGpsQuantity,          nullptr, "$$$/Exif/GPSLongitude=GPS Longitude"},
  {0x0005, kPlain, "GPSAltitudeRef",      kByte,   1, nullptr,                  nullptr, "$$$/Exif/GPSAltitudeRef=GPS Altitude Ref"},
  {0x0006, kPlain, "GPSAltitude",         kRatl,   1, &kLxGpsQuantity,          nullptr, "$$$/Exif/GPSAltitude=GPS Altitude"},
  {0x0007, kPlain, "GPSTimeStamp",        kRatl,   3, &kLxGpsQuantity,          nullptr, "$$$/Exif/GPSTimeStamp=GPS Time Stamp"},

  {0x0008, kPlain, "GPSSatellites",       kAscii,  0, nullptr,                  nullptr, "$$$/Exif/GPSSatellites=GPS Satellites"},
  {0x0009, kPlain, "GPSStatus",           kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSStatus=GPS Status"},
  {0x000A, kPlain, "GPSMeasureMode",      kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSMeasureMode=GPS Measure Mode"},
  {0x000B, kPlain, "GPSDOP",              kRatl,   1, nullptr,                  nullptr, "$$$/Exif/GPSDOP=GPS DOP"},
  {0x000C, kPlain, "GPSSpeedRef",         kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSSpeedRef=GPS Speed Ref"},
  {0x000D, kPlain, "GPSSpeed",            kRatl,   1, nullptr,                  nullptr, "$$$/Exif/GPSSpeed=GPS Speed"},
  {0x000E, kPlain, "GPSTrackRef",         kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSTrackRef=GPS Track Ref"},
  {0x000F, kPlain, "GPSTrack",            kRatl,   1, nullptr,                  nullptr, "$$$/Exif/GPSTrack=GPS Track"},
  {0x0010, kPlain, "GPSImgDirectionRef",  kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSImgDirectionRef=GPS Img Direction Ref"},
  {0x0011, kPlain, "GPSImgDirection",     kRatl,   1, nullptr,                  nullptr, "$$$/Exif/GPSImgDirection=GPS Img Direction"},
  {0x0012, kPlain, "GPSMapDatum",         kAscii,  0, nullptr,                  nullptr, "$$$/Exif/GPSMapDatum=GPS Map Datum"},

  // Shown as plain rationals
  {0x0013, kPlain, "GPSDestLatitudeRef",  kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSDestLatitudeRef=GPS Dest Latitude Ref"},
  {0x0014, kPlain, "GPSDestLatitude",     kRatl,   3, nullptr,                  nullptr, "$$$/Exif/GPSDestLatitude=GPS Dest Latitude"},
  {0x0015, kPlain, "GPSDestLongitudeRef", kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSDestLongitudeRef=GPS Dest Longitude Ref"},
  {0x0016, kPlain, "GPSDestLongitude",    kRatl,   3, nullptr,                  nullptr, "$$$/Exif/GPSDestLongitude=GPS Dest Longitude"},
  {0x0017, kPlain, "GPSDestBearingRef",   kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSDestBearingRef=GPS Dest Bearing Ref"},
  {0x0018, kPlain, "GPSDestBearing",      kRatl,   1, nullptr,                  nullptr, "$$$/Exif/GPSDestBearing=GPS Dest Bearing"},
  {0x0019, kPlain, "GPSDestDistanceRef",  kAscii,  2, nullptr,                  nullptr, "$$$/Exif/GPSDestDistanceRef=GPS Dest Distance Ref"},
  {0x001A, kPlain, "GPSDestDistance",     kRatl,   1, nullptr,                  nullptr, "$$$/Exif/GPSDestDistance=GPS Dest Distance"},

  // New in Exif 2.2
  {0x001B, kPlain, "GPSProcessingMethod", kUndef,  0, nullptr,                  nullptr, "$$$/Exif2/GPSProcessingMethod=GPS Processing Method"},
  {0x001C, kPlain, "GPSAreaInformation",  kUndef,  0, nullptr,                  nullptr, "$$$/Exif2/GPSAreaInformation=GPS Area Information"},
  {0x001D, kPlain, "GPSDateStamp",        kAscii, 11, nullptr,                  nullptr, "$$$/Exif2/GPSDateStamp=GPS Date Stamp"},
  {0x001E, kPlain, "GPSDifferential",     kShort,  1, &kLxGpsDifferentialNames, nullptr, "$$$/Exif2/GPSDifferential=GPS Differential"},
  kLxEndOfTags,
};
static_assert(std::size(kLxGpsTags) == 31 + 1 && IsDictionary(kLxGpsTags));
// clang-format on
