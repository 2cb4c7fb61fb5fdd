// Numbers and booleans from texts.
#include "tools/json/plain_value.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace lxbridge::json {

namespace {

// Parses the whole text as a number. False also for NaN and infinities, which JSON does not have.
template <typename Number>
bool Parse(std::string_view text, Number* number) {
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), *number);
  return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
}

bool AppendDouble(double value, std::string* out) {
  if (!std::isfinite(value)) return false;
  char digits[32];
  out->append(digits, std::to_chars(digits, digits + sizeof digits, value + 0.0).ptr);  // Never "-0".
  return true;
}

bool AppendInteger(std::string_view text, std::string* out) {
  std::int64_t value = 0;
  if (!Parse(text, &value)) return false;
  char digits[24];
  out->append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
  return true;
}

bool AppendReal(std::string_view text, std::string* out) {
  double value = 0;
  return Parse(text, &value) && AppendDouble(value, out);
}

bool AppendRational(std::string_view text, std::string* out) {
  const std::size_t slash = text.find('/');
  std::int64_t numerator = 0, denominator = 0;
  if (slash == std::string_view::npos || !Parse(text.substr(0, slash), &numerator) ||
      !Parse(text.substr(slash + 1), &denominator) || denominator == 0) {
    return false;
  }
  return AppendDouble(static_cast<double>(numerator) / static_cast<double>(denominator), out);
}

// "46.50" as 4650 / 100, so that calculations stay exact. At most nine digits after the point.
struct Decimal {
  std::int64_t digits = 0;
  std::int64_t scale = 1;
};

bool ParseDecimal(std::string_view text, Decimal* decimal) {
  constexpr std::size_t kMostDigits = 9;
  const std::size_t point = text.find('.');
  std::string digits(text.substr(0, point));
  if (point != std::string_view::npos) {
    const std::string_view fraction = text.substr(point + 1, kMostDigits);
    if (text.find_first_not_of("0123456789", point + 1) != std::string_view::npos) return false;
    digits.append(fraction);
    for (std::size_t i = 0; i < fraction.size(); ++i) decimal->scale *= 10;
  }
  std::uint32_t whole = 0;
  return Parse(text.substr(0, point), &whole) && whole < 60 && Parse(std::string_view(digits), &decimal->digits);
}

// DDD,MM,SSk or DDD,MM.mmk; k is N, S, E or W.
bool AppendCoordinate(std::string_view text, std::string* out) {
  if (text.empty()) return false;
  const char side = text.back();
  const double limit = side == 'N' || side == 'S' ? 90 : side == 'E' || side == 'W' ? 180 : -1;
  text.remove_suffix(1);
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return false;
  const std::size_t second = text.find(',', comma + 1);
  std::uint32_t degrees = 0, minutes = 0;
  Decimal last;  // Minutes or seconds.
  std::int64_t unit = 60;
  if (!Parse(text.substr(0, comma), &degrees) || degrees > limit) return false;
  if (second != std::string_view::npos) {
    if (!Parse(text.substr(comma + 1, second - comma - 1), &minutes) || minutes >= 60) return false;
    unit = 3600;
  }
  if (!ParseDecimal(text.substr((second == std::string_view::npos ? comma : second) + 1), &last)) return false;
  // The only division has integers on both sides, so the result is the double nearest to the coordinate.
  const std::int64_t whole = (std::int64_t{degrees} * unit + std::int64_t{minutes} * 60) * last.scale + last.digits;
  const double value = static_cast<double>(whole) / static_cast<double>(unit * last.scale);
  if (value > limit) return false;
  return AppendDouble(side == 'S' || side == 'W' ? -value : value, out);
}

bool AppendBoolean(std::string_view text, std::string* out) {
  const bool yes = text == "True" || text == "true";
  if (!yes && text != "False" && text != "false") return false;
  out->append(yes ? "true" : "false");
  return true;
}

}  // namespace

bool AppendPlainValue(std::string_view text, FieldType type, std::string* out) {
  switch (type) {
    case FieldType::kInteger:
    case FieldType::kIntegers:
      return AppendInteger(text, out);
    case FieldType::kReal:
      return AppendReal(text, out);
    case FieldType::kRational:
    case FieldType::kRationals:
      return AppendRational(text, out);
    case FieldType::kCoordinate:
      return AppendCoordinate(text, out);
    case FieldType::kBoolean:
      return AppendBoolean(text, out);
    case FieldType::kText:
    case FieldType::kTexts:
    case FieldType::kLanguages:
    case FieldType::kDate:
    case FieldType::kStruct:
      return false;
  }
  return false;
}

}  // namespace lxbridge::json
