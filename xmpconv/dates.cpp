#include "xmpconv/dates.h"

#include <limits>

#include "xmpconv/number_text.h"

namespace {

// A field of at most four bytes: whatever the bytes are, the number is below a million.
std::int32_t Field(const std::uint8_t* bytes, std::size_t width) noexcept {
  std::size_t at = 0;
  while (at < width && bytes[at] == ' ') ++at;
  std::int32_t number = 0;
  for (; at < width; ++at) number = number * 10 + (bytes[at] - '0');
  return number;
}

bool IsSpace(char character) noexcept {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

// As scanf reads "%<width>hd": skips white space, which the width does not include, then reads an optional sign and
// digits.
bool ScanNumber(const char** text, int width, std::int32_t* number) noexcept {
  const char* at = *text;
  while (IsSpace(*at)) ++at;
  const bool negative = *at == '-';
  if (negative || *at == '+') {
    ++at;
    --width;
  }
  std::int32_t sum = 0;
  const char* const firstDigit = at;
  for (; width > 0 && *at >= '0' && *at <= '9'; ++at, --width) sum = sum * 10 + (*at - '0');
  if (at == firstDigit) return false;
  *number = negative ? -sum : sum;
  *text = at;
  return true;
}

}  // namespace

void LxParseExifDate(const std::uint8_t* text, XMPDateTime* date) noexcept {
  date->year = Field(text, 4);
  date->month = Field(text + 5, 2);
  date->day = Field(text + 8, 2);
}

void LxParseExifTime(const std::uint8_t* text, XMPDateTime* date) noexcept {
  date->hour = Field(text, 2);
  date->minute = Field(text + 3, 2);
  date->second = Field(text + 6, 2);
}

bool LxParseExifOffset(const std::uint8_t* text, std::size_t length, XMPDateTime* date) noexcept {
  constexpr std::size_t kLength = 6;
  constexpr std::int32_t kFurthestHour = 14;  // The largest offset of any zone.
  if (length == kLength + 1 && text[kLength] == 0) --length;
  if (length != kLength || (text[0] != '+' && text[0] != '-') || text[3] != ':') return false;
  constexpr std::size_t kDigits[] = {1, 2, 4, 5};
  for (const std::size_t at : kDigits) {
    if (text[at] < '0' || text[at] > '9') return false;
  }
  const std::int32_t hour = Field(text + 1, 2);
  const std::int32_t minute = Field(text + 4, 2);
  if (hour > kFurthestHour || minute > 59) return false;
  date->zoneSign = hour == 0 && minute == 0 ? 0 : text[0] == '+' ? 1 : -1;
  date->zoneHour = hour;
  date->zoneMinute = minute;
  return true;
}

std::int32_t LxParseSubSeconds(const std::uint8_t* text, std::size_t length) noexcept {
  // Both numbers stay finite over this many bytes; later digits are far below a nanosecond.
  constexpr std::size_t kSignificantDigits = 300;
  if (length > kSignificantDigits) length = kSignificantDigits;

  double digits = 0;
  double scale = 1;
  for (std::size_t i = 0; i < length && text[i] != 0; ++i) {
    digits = digits * 10 + (text[i] - '0');
    scale = scale * 10;
  }
  const double nanoseconds = digits / scale * 1'000'000'000;
  // Bytes other than digits may exceed the field. No second has such a fraction, so it is enough to keep the number out
  // of range.
  if (nanoseconds >= std::numeric_limits<std::int32_t>::max()) return std::numeric_limits<std::int32_t>::max();
  if (nanoseconds <= std::numeric_limits<std::int32_t>::min()) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(nanoseconds);
}

std::string LxConvertIptcDate(const char* text) {
  const char* at = text;
  std::int32_t year = 0, month = 0, day = 0;
  if (!ScanNumber(&at, 4, &year) || !ScanNumber(&at, 2, &month) || !ScanNumber(&at, 2, &day)) return text;
  return LxNumberText().Number(year).Char('-').Padded(month, 2).Char('-').Padded(day, 2).Text();
}
