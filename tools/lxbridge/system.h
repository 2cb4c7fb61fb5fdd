// What the command asks of the system beyond the kit's platform layer: lists that arrive bit by bit, what a path is,
// writing whole results, ending at a signal. One implementation a system (system_posix.cpp, system_windows.cpp).
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_SYSTEM_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_SYSTEM_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace lxbridge::command {

// Bytes of a file or of standard input ("-") in order, as they come.
class ByteReader {
 public:
  ByteReader() = default;
  ~ByteReader();
  ByteReader(const ByteReader&) = delete;
  ByteReader& operator=(const ByteReader&) = delete;

  [[nodiscard]] bool Open(const char* path);  // False: errno says why.
  // At least a byte, as soon as there is one; 0 at the end; -1: errno says why not.
  [[nodiscard]] std::ptrdiff_t Read(char* buffer, std::size_t length);
  // Whether Read would not wait.
  [[nodiscard]] bool IsReady() const;
  // What a wait for it to be ready takes (WorkerProcesses::Wait).
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
  bool owned_ = false;
  struct Ahead;
  Ahead* ahead_ = nullptr;  // Where the system does not say whether there is something, it is read by a thread.
};

struct PathFacts {
  enum class Kind { kMissing, kFolder, kRegular, kOther };
  Kind kind = Kind::kMissing;
  bool readable = false;    // Of a regular file: reading it is allowed.
  std::uint64_t bytes = 0;  // Of a regular file.
};
[[nodiscard]] PathFacts LookAtPath(const char* path);

// From here on an interruption, a request to end or a broken pipe ends the process at once and the worker processes
// with it, but never within a text of WriteStandardOutput: that is finished first. A second one does not wait for it.
void EndWholeAtSignals();

// Makes a terminal obey what progress is written with.
void PrepareTerminal();

// Writes all of the text. False: errno says why not.
[[nodiscard]] bool WriteStandardOutput(std::string_view text);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_SYSTEM_H_
