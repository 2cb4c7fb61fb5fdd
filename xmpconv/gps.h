// GPS tags that need more than their own value: coordinates with their reference letters, the time stamp with its date.
#ifndef LXBRIDGE_XMPCONV_GPS_H_
#define LXBRIDGE_XMPCONV_GPS_H_

#include <cstdint>

#include "xmpconv/conversion.h"
#include "xmpconv/number_text.h"

// Degrees, minutes and seconds as Exif stores them (Exif 2.2, 4.6.6, GPSLatitude).
struct LxGpsAngle {
  std::uint32_t degrees, degreesDivisor, minutes, minutesDivisor, seconds, secondsDivisor;
};

// "DDD,MM,SSk" if all divisors are 1, else "DDD,MM.mmk" with the number of digits that the largest divisor can resolve
// (ISO 16684-1, 8.2.1: GPSCoordinate). False: a zero divisor, or more degrees than a 32-bit number holds.
[[nodiscard]] bool LxFormatGPSCoordinate(const LxGpsAngle& angle, char reference, LxNumberText* text) noexcept;

// partner: the reference, whose letter is copied.
[[nodiscard]] bool LxMapGPSCoordinate(LxConversion& conversion, const LxMetadataItem* item, const char* schema,
                                      LxPartner partner);
// partner: the date stamp, without which nothing is written. GPS time is UTC, so the zone stays 0.
[[nodiscard]] bool LxMapGPSTimeStamp(LxConversion& conversion, const LxMetadataItem* item, const char* schema,
                                     LxPartner partner);

#endif  // LXBRIDGE_XMPCONV_GPS_H_
