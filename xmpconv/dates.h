// Dates and times as Exif and IPTC write them, into the fields of an XMP date or its text. No toolkit is called here:
// what names no instant is refused by whoever makes a date of the fields.
#ifndef LXBRIDGE_XMPCONV_DATES_H_
#define LXBRIDGE_XMPCONV_DATES_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "clients/xmp/xmp_abi.h"

// "YYYY:MM:DD" (Exif 2.2, 4.6.5): sets year, month and day by position; what separates them plays no part. A blank
// leading a field counts for nothing, and no byte is rejected. REQUIRES: 10 readable bytes.
void LxParseExifDate(const std::uint8_t* text, XMPDateTime* date) noexcept;
// "HH:MM:SS": hour, minute and second, in the same way. REQUIRES: 8 readable bytes.
void LxParseExifTime(const std::uint8_t* text, XMPDateTime* date) noexcept;

// "+HH:MM" or "-HH:MM" (Exif 2.31, 4.6.5: OffsetTime), with or without a zero byte: sets the zone. Any other text,
// hours above 14 and minutes above 59 give false and leave the date as it is; cameras that do not know their zone write
// blanks.
[[nodiscard]] bool LxParseExifOffset(const std::uint8_t* text, std::size_t length, XMPDateTime* date) noexcept;

// The nanoseconds that the decimal fraction of a second with these digits has ("25": a quarter). Ends at a zero byte or
// at the length. No byte is rejected, so other bytes than digits can give a number that no second has.
[[nodiscard]] std::int32_t LxParseSubSeconds(const std::uint8_t* text, std::size_t length) noexcept;

// The XMP date text of an IPTC date "CCYYMMDD" (IPTC-IIM 4, 2:55); a text that does not hold three numbers is given
// back as it is.
[[nodiscard]] std::string LxConvertIptcDate(const char* text);

#endif  // LXBRIDGE_XMPCONV_DATES_H_
