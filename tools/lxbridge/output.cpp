// Standard output and standard error.
#include "tools/lxbridge/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "kit/base/platform.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

bool WriteResult(std::string_view text) {
  if (WriteStandardOutput(text)) return true;
  const int error = errno;
  if (!LxPlatformIsClosedPipe(error)) WriteMessages(FileMessage("standard output", std::strerror(error)));
  return false;
}

std::string FileMessage(std::string_view file, std::string_view what) {
  std::string line = "lxbridge: " + OnOneLine(file);
  return line.append(": ").append(OnOneLine(what)).append("\n");
}

void WriteMessages(std::string_view lines) {
  // Where it cannot be written there is nobody left to tell.
  (void)std::fwrite(lines.data(), 1, lines.size(), stderr);
}

void ReportLines(std::string_view line, std::string_view nextLine) {
  std::string lines = "lxbridge: " + OnOneLine(line) + '\n';
  if (!nextLine.empty()) lines.append(nextLine).push_back('\n');
  WriteMessages(lines);
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
