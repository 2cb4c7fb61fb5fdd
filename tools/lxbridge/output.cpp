// Standard output and standard error.
#include "tools/lxbridge/output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "kit/base/platform.h"
#include "kit/base/utf8.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

bool colourMessages = false;

void (*endWithoutMemory)() = nullptr;

// The escape of a character, or of a byte that is not part of one.
struct Escape {
  char text[8] = {};
  std::size_t length = 0;

  void Put(char c) { text[length++] = c; }
  Escape(char letter, char32_t value, int digits) {
    Put('\\');
    Put(letter);
    while (digits > 0) Put(kHexDigits[value >> (4 * --digits) & 15]);
  }
};

Escape EscapeOf(char32_t c) {
  switch (c) {
    case '\n':
      return {'n', 0, 0};
    case '\r':
      return {'r', 0, 0};
    case '\t':
      return {'t', 0, 0};
    case '\\':
      return {'\\', 0, 0};
    default:
      return c < 0x100 ? Escape('x', c, 2) : Escape('u', c, 4);
  }
}

// Passes the text to `append` in pieces, none of them longer than an escape.
template <typename Append>
void ForOneLine(std::string_view text, bool isName, Append append) {
  while (!text.empty()) {
    char32_t c = 0;
    std::size_t length = LxDecodeUtf8(text, 0, &c);
    if (length == 0) {  // A terminal not in UTF-8 mode acts on such a byte like on the character.
      length = 1;
      c = static_cast<unsigned char>(text[0]);
      if (c >= 0xA0) c = '?';
    }
    if (LxIsTerminalControl(c) || (isName && c == '\\')) {
      const Escape escape = EscapeOf(c);
      append(std::string_view(escape.text, escape.length));
    } else {
      append(text.substr(0, length));
    }
    text.remove_prefix(length);
  }
}

std::string OneLineOf(std::string_view text, bool isName) {
  std::string line;
  line.reserve(text.size());
  ForOneLine(text, isName, [&line](std::string_view piece) { line.append(piece); });
  return line;
}

}  // namespace

bool WriteResult(std::string_view text) {
  if (WriteStandardOutput(text)) return true;
  const int error = errno;
  if (!LxPlatformIsClosedPipe(error)) ReportWithoutMemory("standard output", std::strerror(error));
  return false;
}

std::string FileMessage(std::string_view file, std::string_view what) {
  std::string line = "lxbridge: " + NameOnOneLine(file);
  return line.append(": ").append(OnOneLine(what)).append("\n");
}

void ColourMessages(bool colour) {
  colourMessages = colour;
}

void WriteMessages(std::string_view lines) {
  constexpr std::string_view kName = "lxbridge:";
  std::string coloured;
  if (colourMessages) {
    while (!lines.empty()) {
      const std::size_t end = std::min(lines.find('\n'), lines.size() - 1) + 1;
      std::string_view line = lines.substr(0, end);
      if (line.starts_with(kName)) {
        coloured.append("\x1B[1m").append(kName).append("\x1B[0m");
        line.remove_prefix(kName.size());
      }
      coloured.append(line);
      lines.remove_prefix(end);
    }
    lines = coloured;
  }
  // A failure here cannot be reported anywhere.
  (void)std::fwrite(lines.data(), 1, lines.size(), stderr);
}

void ReportLines(std::string_view line, std::string_view nextLine) {
  std::string lines = "lxbridge: " + OnOneLine(line) + '\n';
  if (!nextLine.empty()) lines.append(nextLine).push_back('\n');
  WriteMessages(lines);
}

void ReportWithoutMemory(std::string_view file, std::string_view what) noexcept {
  char line[20 * 1024];
  std::size_t length = 0;
  const auto append = [&](std::string_view piece) {
    if (piece.size() >= sizeof line - length) return;  // The line end always fits.
    std::copy(piece.begin(), piece.end(), line + length);
    length += piece.size();
  };
  append("lxbridge: ");
  // An escape is at most four times as long as the character. Longer names are cut at the end.
  constexpr std::size_t kLongestName = 4096;
  if (!file.empty()) {
    ForOneLine(file.substr(0, kLongestName), true, append);
    append(file.size() > kLongestName ? "...: " : ": ");
  }
  ForOneLine(what, false, append);
  line[length++] = '\n';
  WriteMessages({line, length});
}

void OnNoMemoryToThrow(void (*end)()) noexcept {
  endWithoutMemory = end;
  std::set_terminate([] {
    try {
      if (std::current_exception() != nullptr) throw;
      endWithoutMemory();
    } catch (const std::bad_alloc&) {
      endWithoutMemory();
    } catch (...) {
    }
    std::abort();
  });
}

const char* MessageOf(const std::exception& error) noexcept {
  return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? kNoMemoryMessage : error.what();
}

const char* MessageOf(LxReadFailure failure, std::int32_t systemError) noexcept {
  switch (failure) {
    case kLxReadNotFound:
      return "NotFound";
    case kLxReadPermissionDenied:
      return "PermissionDenied";
    case kLxReadIsDirectory:
      return "is a directory";
    case kLxReadNotRegularFile:
      return "not a regular file";
    case kLxReadNoMemory:
      return kNoMemoryMessage;
    case kLxReadNoDescriptors:
    case kLxReadOpenFailed:
      return systemError != 0 ? std::strerror(systemError) : "OpenFailR";
    default:
      return "ReadError";
  }
}

std::string OnOneLine(std::string_view text) {
  return OneLineOf(text, false);
}

std::string NameOnOneLine(std::string_view name) {
  return OneLineOf(name, true);
}

}  // namespace lxbridge::command
