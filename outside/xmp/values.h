// Conversion of simple value types other than dates to and from texts (ISO 16684-1, 8.2.1).
#ifndef LXBRIDGE_OUTSIDE_XMP_VALUES_H_
#define LXBRIDGE_OUTSIDE_XMP_VALUES_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace velto {

// Formatting: "True" and "False", decimal digits, and for real numbers the shortest decimal text that reads back as the
// same number, without exponent (8.2.1.4). Infinities and NaN have no text: kBadValue.
std::string formatBool(bool value);
std::string formatInt(std::int64_t value);
std::string formatFloat(double value);

// Parsing, ignoring surrounding white space: Booleans in any case, and "t", "f", "1", "0" as written by older programs;
// integers of decimal digits; real numbers, also with exponent. Anything else raises kBadValue.
bool parseBool(std::string_view text);
std::int64_t parseInt64(std::string_view text);
double parseFloat(std::string_view text);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_VALUES_H_
