// Standard output and standard error. Touches nothing else of the tree.
#include "tools/lxbridge/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

namespace lxbridge::command {

bool WriteResult(std::string_view text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return true;
  if (errno != EPIPE) {
    const std::string line = std::string("lxbridge: standard output: ") + std::strerror(errno) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
  }
  return false;
}

void ReportFile(std::string_view file, std::string_view what) {
  // One call, so that lines of several processes do not mix.
  std::string line = "lxbridge: ";
  line.append(file).append(": ").append(what).push_back('\n');
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace lxbridge::command
