// Numbers and booleans out of texts.
#include "tools/json/plain_value.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace lxbridge::json {

namespace {

// The whole text as a number. What JSON has no number for (NaN, infinities) is none.
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

// DDD,MM,SSk or DDD,MM.mmk; k is N, S, E or W.
bool AppendCoordinate(std::string_view text, std::string* out) {
  if (text.empty()) return false;
  const char side = text.back();
  const double limit = side == 'N' || side == 'S' ? 90 : side == 'E' || side == 'W' ? 180 : -1;
  text.remove_suffix(1);
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return false;
  const std::size_t second = text.find(',', comma + 1);
  std::uint32_t degrees = 0;
  double minutes = 0, seconds = 0;
  if (!Parse(text.substr(0, comma), &degrees)) return false;
  if (second == std::string_view::npos) {
    if (!Parse(text.substr(comma + 1), &minutes)) return false;
  } else if (!Parse(text.substr(comma + 1, second - comma - 1), &minutes) ||
             !Parse(text.substr(second + 1), &seconds)) {
    return false;
  }
  // One division, so that the result is the nearest double wherever minutes and seconds are whole.
  const double value = (degrees * 3600.0 + minutes * 60 + seconds) / 3600;
  if (!(minutes >= 0 && minutes < 60 && seconds >= 0 && seconds < 60 && value <= limit)) return false;
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
