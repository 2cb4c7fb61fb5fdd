// Standard output and standard error. Uses kit/base/platform.h.
#include "tools/lxbridge/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "kit/base/platform.h"

namespace lxbridge::command {

bool WriteResult(std::string_view text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return true;
  if (!LxPlatformIsClosedPipe(errno)) ReportFile("standard output", std::strerror(errno));
  return false;
}

void ReportFile(std::string_view file, std::string_view what) {
  std::string line(file);
  ReportLines(line.append(": ").append(what));
}

void ReportLines(std::string_view line, std::string_view nextLine) {
  std::string lines = "lxbridge: " + OnOneLine(line) + '\n';
  if (!nextLine.empty()) lines.append(nextLine).push_back('\n');
  // One call, so that lines of several processes do not mix. Where it cannot be written there is nobody left to tell.
  (void)std::fwrite(lines.data(), 1, lines.size(), stderr);
}

std::string OnOneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  const auto escape = [&line](unsigned char c) {
    constexpr char kDigits[] = "0123456789abcdef";
    line.append("\\x").push_back(kDigits[c >> 4]);
    line.push_back(kDigits[c & 15]);
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const unsigned char next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
    if (c == '\n') {
      line.append("\\n");
    } else if (c == '\r') {
      line.append("\\r");
    } else if (c == '\t') {
      line.append("\\t");
    } else if (c < 0x20 || c == 0x7F) {
      escape(c);
    } else if (c == 0xC2 && next >= 0x80 && next < 0xA0) {  // U+0080 to U+009F, the second set of control characters.
      escape(next);
      ++i;
    } else {
      line.push_back(text[i]);
    }
  }
  return line;
}

}  // namespace lxbridge::command
