// Totals over all files, in addition to their results. Each file's part comes as bytes from the process that read the
// file (FileResult::tally).
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_TALLY_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_TALLY_H_

#include <memory>
#include <string>
#include <string_view>

#include "host/include/lxbridge/xmp.hpp"
#include "tools/lxbridge/columns.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

class Tally {
 public:
  virtual ~Tally() = default;
  // Adds a file's part, in the order of the files.
  virtual void Add(std::string_view part) = 0;
  // Called after the last file. False: standard output cannot be written.
  [[nodiscard]] virtual bool End() = 0;
};

// Finds columns that no file has; at the end prints a message for each of them that is not a known field either.
[[nodiscard]] std::unique_ptr<Tally> MakeColumnTally(const Columns& columns);

// For `lxbridge fields FILE...`: the properties found in the files, printed at the end.
[[nodiscard]] std::unique_ptr<Tally> MakeFieldTally(const Options& options);
// Appends an object's part for that.
void AppendFieldsOf(const XmpView& xmp, std::string* part);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_TALLY_H_
