// Dates: the ten fields, ISO 8601 texts (in the profile of ISO 16684-1, 8.2.1.2) and the machine's zone.
#ifndef LXBRIDGE_OUTSIDE_XMP_DATES_H_
#define LXBRIDGE_OUTSIDE_XMP_DATES_H_

#include <string>
#include <string_view>

#include "clients/xmp/xmp_abi.h"

namespace velto {

// An ISO 8601 text.
struct DateText {
  char text[48];
  const char* c_str() const noexcept { return text; }  // Zero-terminated.
  bool operator==(std::string_view other) const noexcept { return other == text; }
};

// Raises kBadDate if the fields denote no instant: year outside 1 to 9999, month 0, a day that the month does not have,
// hour 24, second 60, zone fields without a sign, and the like.
void checkDate(const XMPDateTime& date);
DateText formatDate(const XMPDateTime& date);
// Parses a year, a year and month, a date, or date and time with or without seconds, fraction and zone. Missing parts
// get their earliest value, a missing zone is UTC. Digits after the nanoseconds are dropped. Raises kBadDate.
XMPDateTime parseDate(std::string_view text);

XMPDateTime currentDate();  // In the machine's zone.
// Sets the machine's zone at that local date. A time that clocks show twice means the first; a skipped time has the
// zone before the change.
void setMachineZone(XMPDateTime& date);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_DATES_H_
