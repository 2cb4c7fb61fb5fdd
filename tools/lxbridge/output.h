// Where results and messages go. Touches nothing else of the tree.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_

#include <string>
#include <string_view>

namespace lxbridge::command {

// Writes the whole text to standard output and flushes it, so that what one file gives is out before the next is read.
// False: it could not be written, which is said on standard error unless the reader of a pipe has gone.
[[nodiscard]] bool WriteResult(std::string_view text);

// One line "lxbridge: FILE: WHAT" on standard error.
void ReportFile(std::string_view file, std::string_view what);

// The lines "lxbridge: LINE" on standard error, in one write.
void ReportLines(std::string_view line, std::string_view nextLine = "");

// A text of somebody else's for one line that a person reads: a file's name may hold line ends and what a terminal
// obeys, and a message stays one line. Control characters become C escapes ("\n", "\x1b"); all other bytes stay as they
// are, so that a name can be found again.
[[nodiscard]] std::string OnOneLine(std::string_view text);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
