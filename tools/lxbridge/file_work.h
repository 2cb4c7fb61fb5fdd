// The work on one file, and its result.
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
  std::string out;       // For standard output: a whole packet, whole lines or a row.
  std::string messages;  // For standard error, before it: whole lines.
  std::string error;     // With --errors, of a failure: the line of JSON that stands for the missing output.
  std::string tally;     // The file's part of what all files add up to; see Tally.
  std::string status = "OK";
  std::uint8_t kind = kNoKind;  // LxFileKind, if somebody has looked.
  bool failed = false;
  bool passedOver = false;
  std::uint64_t bytes = 0;  // The file's length, if it is known.

  void Clear();
  // Takes `what` as the status and as the message about the file.
  void Fail(std::string_view file, std::string_view what);
};

// Whether failures keep their line of JSON. Before the first file, and before workers start.
void KeepErrorLines(bool keep);

// Does one file after another, in a worker or in the command's own process. It starts the library, so there is one at a
// time in a process, made in the process that uses it.
class FileWork {
 public:
  virtual ~FileWork() = default;
  // The result comes cleared.
  virtual void Do(const Input& input, FileResult* result) = 0;
};

[[nodiscard]] std::unique_ptr<FileWork> MakeXmpWork(const Options& options);   // xmp_command.cpp
[[nodiscard]] std::unique_ptr<FileWork> MakePoolWork(const Options& options);  // pool_command.cpp
[[nodiscard]] std::unique_ptr<FileWork> MakeWork(const Options& options);

// The columns of the options' fields. False: a usage error, which `error` then says. Starts the library, and stops it
// again.
[[nodiscard]] bool ResolveColumns(const Options& options, Columns* columns, std::string* error);

// Raises the same for a file that was opened but not read to its end.
void RaiseIfNotRead(const LxReadOutcome& outcome);

// The library's path of a FILE: "-" is the empty path, standard input.
[[nodiscard]] const char* LibraryPath(const std::string& name);

// Whether a reader takes files of the kind that the bytes of the path's file are; tells the kind. No such file: true,
// as it is for the one who opens it to say.
// Raises std::bad_alloc or, with its message, std::runtime_error.
[[nodiscard]] bool HasReader(const char* path, std::uint8_t* kind);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_FILE_WORK_H_
