// Runs the command on all files of a call.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_COMMANDS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_COMMANDS_H_

#include "tools/lxbridge/options.h"

namespace lxbridge::command {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFileFailed = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitCutOff = 3;  // Results are missing: the run could not be completed.

// Reads the files in order, here or in worker processes, prints the results and returns the exit status.
[[nodiscard]] int RunFiles(const Options& options);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_COMMANDS_H_
