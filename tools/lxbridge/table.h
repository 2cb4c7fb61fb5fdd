// Selected properties of an XMP object as a row of a table (RFC 4180).
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_TABLE_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_TABLE_H_

#include <string>
#include <string_view>

#include "host/include/lxbridge/xmp.hpp"
#include "tools/json/file_facts.h"
#include "tools/lxbridge/columns.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

// The file's name and its value for each column. `found`, one character per column: '1' if the object has it, else '0'.
void WriteRow(std::string_view file, const json::FileFacts& facts, const XmpView& xmp, const Columns& columns,
              const Options& options, std::string* row, std::string* found);

// The row of column names.
[[nodiscard]] std::string HeaderRow(const Columns& columns, const Options& options);

// A node as one text: a simple value as it is; an array or a structure as its parts one after the other, each field
// after its name. With `decimal`, values are converted by AppendPlainValue if `known` has a type for them.
void AppendValue(const XmpNode& node, const json::KnownField* known, bool decimal, std::string_view separator,
                 std::string* text);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_TABLE_H_
