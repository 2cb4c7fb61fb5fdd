// The work of the command, one function a subcommand. Each goes through the files in order and returns the exit status.
// Uses options.h.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_COMMANDS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_COMMANDS_H_

#include "tools/lxbridge/options.h"

namespace lxbridge::command {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFileFailed = 1;
inline constexpr int kExitUsage = 2;

// Through the library's exported functions; xmp_command.cpp.
[[nodiscard]] int RunXmp(const Options& options);

// Through the kit; pool_command.cpp.
[[nodiscard]] int RunPool(const Options& options);

// The library's path of a FILE of the command line: "-" is the empty path, standard input.
[[nodiscard]] inline const char* LibraryPath(const char* file) {
  return file[0] == '-' && file[1] == '\0' ? "" : file;
}

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_COMMANDS_H_
