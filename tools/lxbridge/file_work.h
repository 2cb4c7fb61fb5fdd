// Reading one file, and the result.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_FILE_WORK_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_FILE_WORK_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "kit/base/read_outcome.h"
#include "tools/lxbridge/columns.h"
#include "tools/lxbridge/inputs.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

inline constexpr std::uint8_t kNoKind = 255;

struct FileResult {
  std::string out;       // For standard output: a complete packet, whole lines or a row.
  std::string messages;  // For standard error, printed first: whole lines.
  std::string error;     // With --errors, on failure: the line of JSON that replaces the output.
  std::string tally;     // The file's part of the totals; see Tally.
  std::string status = "OK";
  std::uint8_t kind = kNoKind;  // LxFileKind, if it was determined.
  bool failed = false;
  bool passedOver = false;
  std::uint64_t bytes = 0;  // The file's length, if it is known.

  void Clear();
  // Sets the status and the message about the file.
  void Fail(std::string_view file, std::string_view what);
};

// Whether failures have a line of JSON. Called before the first file and before workers start.
void KeepErrorLines(bool keep);

// Reads files one after another, in a worker or in the command's own process. It starts the library, so a process has
// only one, created in that process.
class FileWork {
 public:
  virtual ~FileWork() = default;
  // The result is cleared by the caller.
  virtual void Do(const Input& input, FileResult* result) = 0;
};

[[nodiscard]] std::unique_ptr<FileWork> MakeXmpWork(const Options& options);   // xmp_command.cpp
[[nodiscard]] std::unique_ptr<FileWork> MakePoolWork(const Options& options);  // pool_command.cpp
[[nodiscard]] std::unique_ptr<FileWork> MakeWork(const Options& options);

// Resolves the columns of the options' fields. False: a usage error, described by `error`. Starts the library and stops
// it again.
[[nodiscard]] bool ResolveColumns(const Options& options, Columns* columns, std::string* error);

// Raises an exception for a file that was opened but not read to its end.
void RaiseIfNotRead(const LxReadOutcome& outcome);

// The library's path for a FILE: "-" is the empty path, standard input.
[[nodiscard]] const char* LibraryPath(const std::string& name);

// Whether the file at the path has a reader, by its first bytes; sets the kind. A missing file gives true: opening it
// reports the error. Raises std::bad_alloc or, with its message, std::runtime_error.
[[nodiscard]] bool HasReader(const char* path, std::uint8_t* kind);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_FILE_WORK_H_
