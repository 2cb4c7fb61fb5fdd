// Standard output and standard error: results, messages, and the texts of others on one line.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "kit/base/read_outcome.h"

namespace lxbridge::command {

// Writes the whole text to standard output. False: it could not be written, which is said on standard error unless the
// reader of a pipe has gone.
[[nodiscard]] bool WriteResult(std::string_view text);

// The line "lxbridge: FILE: WHAT", with its end.
[[nodiscard]] std::string FileMessage(std::string_view file, std::string_view what);

// Whether the command's name at the front of messages stands out, as a terminal shows it.
void ColourMessages(bool colour);

// Writes to standard error, in one write, so that lines of several processes do not mix.
void WriteMessages(std::string_view lines);

// Writes the line "lxbridge: LINE" and, if given, a second line to standard error, in one write.
void ReportLines(std::string_view line, std::string_view nextLine = "");

// Writes "lxbridge: FILE: WHAT" (or "lxbridge: WHAT" for an empty file) to standard error without allocating memory, so
// that a lack of memory can be reported. Names are cut after 4096 bytes.
void ReportWithoutMemory(std::string_view file, std::string_view what) noexcept;

// The message of an exception: "NoMemory" for std::bad_alloc, else what it says.
[[nodiscard]] const char* MessageOf(const std::exception& error) noexcept;

// The message for a file that was not opened or not read to its end, whose system error is an errno.
[[nodiscard]] const char* MessageOf(LxReadFailure failure, std::int32_t systemError) noexcept;

// Sets what ends the process if there is not even memory for an exception, or none where one must not be thrown. Any
// other exception that nobody catches aborts the process as usual.
void OnNoMemoryToThrow(void (*end)()) noexcept;

inline constexpr const char* kNoMemoryMessage = "NoMemory";

// A text from elsewhere, such as a file's name, as part of one line that a person reads. Whatever a terminal could obey
// is escaped: C0 and C1 control characters, DEL ("\n", "\x1b"), line and paragraph separators and bidirectional
// controls ("\u202e"). In a name a backslash is doubled, so that two names never look the same. Other bytes, also those
// that are not UTF-8, stay as they are.
[[nodiscard]] std::string OnOneLine(std::string_view text);
[[nodiscard]] std::string NameOnOneLine(std::string_view name);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_OUTPUT_H_
