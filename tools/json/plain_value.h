// XMP texts as values for calculations.
#ifndef LXBRIDGE_TOOLS_JSON_PLAIN_VALUE_H_
#define LXBRIDGE_TOOLS_JSON_PLAIN_VALUE_H_

#include <string>
#include <string_view>

#include "tools/json/known_fields.h"

namespace lxbridge::json {

// Appends the text of a field as a JSON value of the field's type: a rational as the shortest decimal that gives the
// same double, a coordinate as signed degrees, an integer in decimal, a boolean as true or false. False, and nothing is
// appended: the type has only texts, or the text is not a value of the type ("1/0", "unknown").
[[nodiscard]] bool AppendPlainValue(std::string_view text, FieldType type, std::string* out);

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_PLAIN_VALUE_H_
