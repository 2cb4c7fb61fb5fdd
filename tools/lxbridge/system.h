// What the command asks of the system beyond the kit's platform layer: lists that arrive bit by bit, standard input
// that cannot be sought, what a path is, writing whole results, ending at a signal. Implemented once for each system
// (system_posix.cpp, system_windows.cpp).
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
  // For WorkerProcesses::Wait, which waits for it to be ready.
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
  bool owned_ = false;
  struct Ahead;
  Ahead* ahead_ = nullptr;  // Where the system does not say whether there is something, it is read by a thread.
};

// Standard input as a file that the library can read. One that cannot be sought (a pipe, a terminal) is copied into an
// unnamed temporary file first, which takes its place as the standard input of this process and of the workers.
class StandardInput {
 public:
  StandardInput() = default;
  ~StandardInput();
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;

  // Puts the temporary file, still empty, in place if one is needed. Before any worker is started.
  void Prepare();
  // Copies all of standard input into it, at the first call. Returns why it cannot be read; empty: it can.
  [[nodiscard]] const std::string& Fill();

 private:
  std::string CopyAll() const;

  int source_ = -1;  // The standard input that was copied; -1: it can be sought.
  int problem_ = 0;  // errno of a temporary file that could not be made.
  bool filled_ = false;
  std::string failure_;
};

// At the start of the process, gives standard streams that are closed a descriptor on which reads and writes fail, so
// that no other file gets their numbers.
void OpenClosedStandardStreams();

// False: standard output was closed or is open for reading only; errno says so.
[[nodiscard]] bool StandardOutputCanBeWritten();

// Loads the machine's time zone. Without memory or descriptors the C library would take UTC in its place, silently and
// for good. False: errno says why.
[[nodiscard]] bool LoadTimeZone();

struct PathFacts {
  enum class Kind { kMissing, kFolder, kRegular, kOther };
  Kind kind = Kind::kMissing;
  std::uint64_t bytes = 0;  // Of a regular file.
};
[[nodiscard]] PathFacts LookAtPath(const char* path);

// The entries of a folder, in the order in which the system gives them, without "." and "..".
class FolderReader {
 public:
  enum class Kind { kFolder, kFile, kOther };  // A link is kOther whatever it leads to. A file may be gone by now.

  FolderReader() = default;
  ~FolderReader();
  FolderReader(FolderReader&& other) noexcept;
  FolderReader& operator=(FolderReader&& other) noexcept;

  // False: `problem` says why not.
  [[nodiscard]] bool Open(const std::string& path, std::string* problem);
  // False: the end, or an error that `problem` tells. Takes memory only for the name.
  [[nodiscard]] bool Next(std::string* name, Kind* kind, std::string* problem);

 private:
  struct State;
  State* state_ = nullptr;
};

// Removes from an entry of a list what the system's editors add to text files: on Windows a byte-order mark before the
// first and the carriage return of a line's end, neither of which a name can have there.
void TrimListEntry(bool first, std::string* entry);

// Appends the name of an entry to the path of its folder.
void AppendToPath(std::string_view name, std::string* path);

// From now on an interruption, a request to end or a broken pipe ends the process at once and the worker processes with
// it, except within a text of WriteStandardOutput, which is finished first. A second signal does not wait for that.
void EndWholeAtSignals();

// Makes a terminal obey the control sequences that progress is written with.
void PrepareTerminal();

// Writes all of the text. False: errno says why not.
[[nodiscard]] bool WriteStandardOutput(std::string_view text);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_SYSTEM_H_
