#include "xmpconv/gps.h"

#include <algorithm>

#include "kit/base/byte_order.h"
#include "kit/model/value.h"
#include "xmpconv/dates.h"
#include "xmpconv/setters.h"

namespace {

constexpr std::int32_t kThreeRationals = 24;
constexpr double kDegreesEnd = 2147483648.0;  // Whole degrees must fit a signed 32-bit number.

// Reads three unsigned rationals; false if the value has another form.
bool ReadAngle(const LxMetadataItem* item, LxGpsAngle* angle) noexcept {
  if (!item->value || item->typeCode != kLxTypeRational || item->valueLength != kThreeRationals) return false;
  const int order = LxItemOrder(item);
  const std::uint8_t* const bytes = item->value;
  *angle = {LxGet32(bytes, order),      LxGet32(bytes + 4, order),  LxGet32(bytes + 8, order),
            LxGet32(bytes + 12, order), LxGet32(bytes + 16, order), LxGet32(bytes + 20, order)};
  return true;
}

// A zero divisor makes the place or time unknown, so nothing is written.
bool HasZeroDivisor(const LxGpsAngle& angle) noexcept {
  return angle.degreesDivisor == 0 || angle.minutesDivisor == 0 || angle.secondsDivisor == 0;
}

bool IsAscii(const LxMetadataItem* item, std::int32_t length) noexcept {
  return item && item->value && item->typeCode == kLxTypeAscii && item->valueLength == length;
}

double Quotient(std::uint32_t numerator, std::uint32_t divisor) noexcept {
  return static_cast<double>(numerator) / static_cast<double>(divisor);
}

}  // namespace

bool LxFormatGPSCoordinate(const LxGpsAngle& angle, char reference, LxNumberText* text) noexcept {
  if (angle.degreesDivisor == 1 && angle.minutesDivisor == 1 && angle.secondsDivisor == 1) {
    text->Padded(static_cast<std::int32_t>(angle.degrees), 3).Char(',');
    text->Padded(static_cast<std::int32_t>(angle.minutes), 2).Char(',');
    text->Padded(static_cast<std::int32_t>(angle.seconds), 2).Char(reference);
    return true;
  }
  if (HasZeroDivisor(angle)) return false;

  const std::uint32_t largest = std::max({angle.degreesDivisor, angle.minutesDivisor, angle.secondsDivisor});
  int digits = 1;
  std::uint32_t scale = 10;
  while (largest > 10 && digits < 9) {
    scale *= 10;
    ++digits;
    if (scale >= largest) break;
  }

  constexpr double kSixtieth = 1.0 / 60;
  const double total = Quotient(angle.seconds, angle.secondsDivisor) * kSixtieth +
                       Quotient(angle.minutes, angle.minutesDivisor) +
                       Quotient(angle.degrees, angle.degreesDivisor) * 60;
  const double degrees = total * kSixtieth;
  if (!(degrees < kDegreesEnd)) return false;
  const auto wholeDegrees = static_cast<std::int32_t>(degrees);
  const double rest = total - wholeDegrees * 60.0;
  const auto wholeMinutes = static_cast<std::int32_t>(rest);
  const auto fraction = static_cast<std::int32_t>((rest - wholeMinutes) * scale);
  text->Padded(wholeDegrees, 3).Char(',').Padded(wholeMinutes, 2).Char('.').Padded(fraction, digits).Char(reference);
  return true;
}

bool LxMapGPSCoordinate(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner partner) {
  LxGpsAngle angle;
  if (!ReadAngle(item, &angle)) return false;
  const LxMetadataItem* const reference = conversion.Find(partner);
  if (!IsAscii(reference, 2)) return false;  // One letter and its zero byte.

  LxNumberText text;
  if (!LxFormatGPSCoordinate(angle, static_cast<char>(reference->value[0]), &text)) return false;
  return LxSetXMPText(conversion.Xmp(), schema, item->name, text.Text(), kLxTerminated);
}

bool LxMapGPSTimeStamp(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner partner) {
  LxGpsAngle time;  // Hours, minutes and seconds.
  if (!ReadAngle(item, &time) || HasZeroDivisor(time)) return false;
  double seconds = Quotient(time.seconds, time.secondsDivisor) + Quotient(time.minutes, time.minutesDivisor) * 60 +
                   Quotient(time.degrees, time.degreesDivisor) * 3600;
  if (!(seconds < 86400)) return false;

  XMPDateTime date{};
  date.hour = static_cast<std::int32_t>(seconds * (1.0 / 3600));
  seconds -= date.hour * 3600.0;
  date.minute = static_cast<std::int32_t>(seconds * (1.0 / 60));
  seconds -= date.minute * 60.0;
  date.second = static_cast<std::int32_t>(seconds);
  date.nanosecond = static_cast<std::int32_t>((seconds - date.second) * 1'000'000'000);

  const LxMetadataItem* const dateStamp = conversion.Find(partner);
  if (!IsAscii(dateStamp, 11)) return false;  // "YYYY:MM:DD" and its zero byte.
  LxParseExifDate(dateStamp->value, &date);
  return LxSetXMPDate(conversion.Xmp(), schema, item->name, date);
}
