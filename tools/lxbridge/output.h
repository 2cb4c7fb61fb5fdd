// Where results and messages go. Touches nothing else of the tree.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_

#include <string_view>

namespace lxbridge::command {

// Writes the whole text to standard output and flushes it, so that what one file gives is out before the next is read.
// False: it could not be written, which is said on standard error unless the reader of a pipe has gone.
[[nodiscard]] bool WriteResult(std::string_view text);

// One line "lxbridge: FILE: WHAT" on standard error.
void ReportFile(std::string_view file, std::string_view what);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
