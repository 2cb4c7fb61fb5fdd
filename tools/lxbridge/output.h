// Standard output and standard error: results, messages, and foreign texts on one line.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "kit/base/read_outcome.h"

namespace lxbridge::command {

// Writes the whole text to standard output. False: it could not be written, which is reported on standard error unless
// the reader of a pipe has gone.
[[nodiscard]] bool WriteResult(std::string_view text);

// The line "lxbridge: FILE: WHAT", with its end.
[[nodiscard]] std::string FileMessage(std::string_view file, std::string_view what);

// Whether the command's name at the start of messages is highlighted.
void ColourMessages(bool colour);

// Writes to standard error, in one write, so that lines of several processes do not mix.
void WriteMessages(std::string_view lines);

// Writes the line "lxbridge: LINE" and, if given, a second line to standard error, in one write.
void ReportLines(std::string_view line, std::string_view nextLine = "");

// Writes "lxbridge: FILE: WHAT" (or "lxbridge: WHAT" for an empty file) to standard error without allocating memory, so
// that a lack of memory can be reported. Names are cut after 4096 bytes.
void ReportWithoutMemory(std::string_view file, std::string_view what) noexcept;

// The message of an exception: "NoMemory" for std::bad_alloc, else its what().
[[nodiscard]] const char* MessageOf(const std::exception& error) noexcept;

// The message for a file that was not opened or not read to its end; the system error is an errno.
[[nodiscard]] const char* MessageOf(LxReadFailure failure, std::int32_t systemError) noexcept;

// Sets the function that ends the process if there is no memory even for an exception, or if memory runs out where
// exceptions are not allowed. Any other uncaught exception aborts the process as usual.
void OnNoMemoryToThrow(void (*end)()) noexcept;

inline constexpr const char* kNoMemoryMessage = "NoMemory";

// A foreign text, such as a file name, as part of one line. Everything that a terminal could act on is escaped: C0 and
// C1 control characters, DEL ("\n", "\x1b"), line and paragraph separators and bidirectional controls ("\u202e"). A
// backslash in a name is doubled, so that two names never look the same. Other bytes, even if not UTF-8, do not change.
[[nodiscard]] std::string OnOneLine(std::string_view text);
[[nodiscard]] std::string NameOnOneLine(std::string_view name);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
