// Dates and times in Exif and IPTC form, converted to the fields of an XMP date or to its text. The toolkit is not
// called: a date that denotes no instant is refused later, when it is made from the fields.
#ifndef LXBRIDGE_XMPCONV_DATES_H_
#define LXBRIDGE_XMPCONV_DATES_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "clients/xmp/xmp_abi.h"

// "YYYY:MM:DD" (Exif 2.2, 4.6.5): sets year, month and day by position; separators are ignored. Leading blanks of a
// field are ignored, and no byte is rejected. REQUIRES: 10 readable bytes.
void LxParseExifDate(const std::uint8_t* text, XMPDateTime* date) noexcept;
// "HH:MM:SS": sets hour, minute and second in the same way. REQUIRES: 8 readable bytes.
void LxParseExifTime(const std::uint8_t* text, XMPDateTime* date) noexcept;

// "+HH:MM" or "-HH:MM" (Exif 2.31, 4.6.5: OffsetTime), with or without a zero byte: sets the zone. False, without any
// change: another text, hours above 14, minutes above 59. Cameras that do not know their zone write blanks.
[[nodiscard]] bool LxParseExifOffset(const std::uint8_t* text, std::size_t length, XMPDateTime* date) noexcept;

// The nanoseconds of a decimal fraction of a second with these digits ("25": a quarter). Ends at a zero byte or at the
// length. No byte is rejected, so bytes other than digits may give a number outside the range of nanoseconds.
[[nodiscard]] std::int32_t LxParseSubSeconds(const std::uint8_t* text, std::size_t length) noexcept;

// The XMP date text of an IPTC date "CCYYMMDD" (IPTC-IIM 4, 2:55); a text that does not hold three numbers is returned
// unchanged.
[[nodiscard]] std::string LxConvertIptcDate(const char* text);

#endif  // LXBRIDGE_XMPCONV_DATES_H_
