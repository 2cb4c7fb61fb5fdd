// What the results of all files add up to, beside the results themselves. Each file's part comes from the process that
// did the file, as bytes (FileResult::tally).
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
  // A file's part, in the order of the files.
  virtual void Add(std::string_view part) = 0;
  // After the last file. False: standard output cannot be written.
  [[nodiscard]] virtual bool End() = 0;
};

// For columns: which no file has had; at the end a message for each that is in no table either.
[[nodiscard]] std::unique_ptr<Tally> MakeColumnTally(const Columns& columns);

// For `lxbridge fields FILE...`: the properties that the files have had, printed at the end.
[[nodiscard]] std::unique_ptr<Tally> MakeFieldTally(const Options& options);
// Appends an object's part for that.
void AppendFieldsOf(const XmpView& xmp, std::string* part);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_TALLY_H_
