// What is done with one file, and what that gives.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_FILE_WORK_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_FILE_WORK_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tools/lxbridge/inputs.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

inline constexpr std::uint8_t kNoKind = 255;  // Nobody has looked.

struct FileResult {
  std::string out;       // For standard output: a whole packet, whole lines or a row.
  std::string messages;  // For standard error, in front of it: whole lines.
  std::string status = "OK";
  std::uint8_t kind = kNoKind;  // LxFileKind, where it is asked for.
  bool failed = false;
  bool passedOver = false;
  std::uint64_t bytes = 0;  // The file's length, where it is known.

  void Clear();
  void Fail(std::string_view file, std::string_view what);  // A status with its message.
};

// In a process of its own or in the command's: one of them at a time, made where it is used, since it starts the
// library.
class FileWork {
 public:
  virtual ~FileWork() = default;
  // The result is cleared before.
  virtual void Do(const Input& input, FileResult* result) = 0;
};

[[nodiscard]] std::unique_ptr<FileWork> MakeXmpWork(const Options& options);   // xmp_command.cpp
[[nodiscard]] std::unique_ptr<FileWork> MakePoolWork(const Options& options);  // pool_command.cpp
[[nodiscard]] std::unique_ptr<FileWork> MakeWork(const Options& options);

// False: a prefix of --fields that nobody knows, which `error` then names. Starts the library, and stops it again.
[[nodiscard]] bool KnowsFields(const Options& options, std::string* error);

// The library's path of a FILE: "-" is the empty path, standard input.
[[nodiscard]] const char* LibraryPath(const std::string& name);

// Whether a reader takes files of the kind that the bytes of the path's file are; tells the kind. No such file: true,
// as it is for the one who opens it to say.
[[nodiscard]] bool HasReader(const char* path, std::uint8_t* kind);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_FILE_WORK_H_
