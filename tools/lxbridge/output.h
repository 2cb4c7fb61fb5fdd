// Where results and messages go.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_

#include <string>
#include <string_view>

namespace lxbridge::command {

// Writes the whole text to standard output. False: it could not be written, which is said on standard error unless the
// reader of a pipe has gone.
[[nodiscard]] bool WriteResult(std::string_view text);

// The line "lxbridge: FILE: WHAT", with its end.
[[nodiscard]] std::string FileMessage(std::string_view file, std::string_view what);

// On standard error, in one write, so that lines of several processes do not mix.
void WriteMessages(std::string_view lines);

// The lines "lxbridge: LINE" on standard error, in one write.
void ReportLines(std::string_view line, std::string_view nextLine = "");

// A text of somebody else's for one line that a person reads: a file's name may hold line ends and what a terminal
// obeys, and a message stays one line. Control characters become C escapes ("\n", "\x1b"); all other bytes stay as they
// are, so that a name can be found again.
[[nodiscard]] std::string OnOneLine(std::string_view text);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
