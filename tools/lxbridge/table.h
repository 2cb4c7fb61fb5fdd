// Chosen properties of an XMP object as a row of a table (RFC 4180).
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_TABLE_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_TABLE_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/include/lxbridge/xmp.hpp"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

class Columns {
 public:
  // Fields of the command line by the namespaces that their prefixes stand for. False: nobody knows the prefix, which
  // `error` then names. Wants the library and a session of the host.
  [[nodiscard]] bool Resolve(const std::vector<std::string_view>& fields, std::string* error);

  // The file's name and its value of each column.
  void WriteRow(std::string_view file, const XmpView& xmp, const Options& options, std::string* out) const;

 private:
  struct Step {
    std::string schema;
    std::string name;
  };
  struct Column {
    std::size_t schema;  // Of the first step, in schemas_.
    std::vector<Step> path;
  };
  std::vector<Column> columns_;
  std::vector<std::string> schemas_;  // Each once; of an object no others are looked at.
};

// The row of the columns' names.
[[nodiscard]] std::string HeaderRow(const Options& options);

// A cell: quoted when it holds what would end it.
void AppendCell(std::string_view text, Format format, std::string* row);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_TABLE_H_
