// Values to and from texts.
#include "outside/xmp/values.h"

#include <charconv>
#include <cmath>

#include "outside/xmp/errors.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

std::string_view trimmed(std::string_view text) noexcept {
  constexpr std::string_view kSpaces = " \t\r\n";
  const std::size_t start = text.find_first_not_of(kSpaces);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kSpaces) - start + 1);
}

[[noreturn]] void refuse(std::string_view text, const char* type) {
  throw ToolkitError(ErrorId::kBadValue, "'" + repairText(text) + "' is not a " + type);
}

bool equalsLower(std::string_view text, std::string_view lowerCase) noexcept {
  if (text.size() != lowerCase.size()) return false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at] >= 'A' && text[at] <= 'Z' ? static_cast<char>(text[at] + ('a' - 'A')) : text[at];
    if (c != lowerCase[at]) return false;
  }
  return true;
}

template <typename Number>
Number parseNumber(std::string_view text, const char* type) {
  std::string_view digits = trimmed(text);
  // Skips a plus sign, which from_chars does not accept.
  if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-') digits.remove_prefix(1);
  Number value{};
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (fault != std::errc() || end != digits.data() + digits.size()) refuse(text, type);
  return value;
}

}  // namespace

std::string formatBool(bool value) {
  return value ? "True" : "False";
}

std::string formatInt(std::int64_t value) {
  return std::to_string(value);
}

std::string formatFloat(double value) {
  if (!std::isfinite(value)) throw ToolkitError(ErrorId::kBadValue, "an infinite number or NaN has no text");
  char text[400];  // The smallest number has 324 decimals, the largest 309 digits.
  const auto result = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed);
  return std::string(text, result.ptr);
}

bool parseBool(std::string_view text) {
  const std::string_view word = trimmed(text);
  if (equalsLower(word, "true") || equalsLower(word, "t") || word == "1") return true;
  if (equalsLower(word, "false") || equalsLower(word, "f") || word == "0") return false;
  refuse(text, "boolean");
}

std::int64_t parseInt64(std::string_view text) {
  return parseNumber<std::int64_t>(text, "64-bit integer");
}

double parseFloat(std::string_view text) {
  const double value = parseNumber<double>(text, "real number");
  if (!std::isfinite(value)) refuse(text, "real number");
  return value;
}

}  // namespace velto
