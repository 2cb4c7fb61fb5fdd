// System functions beyond the kit's platform layer: lists that arrive piecemeal, standard input that cannot seek, the
// type of a path, writing complete results, ending at a signal. Each system has one implementation (system_posix.cpp,
// system_windows.cpp).
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_SYSTEM_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_SYSTEM_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace lxbridge::command {

// Reads a file or standard input ("-") as data arrives.
class ByteReader {
 public:
  ByteReader() = default;
  ~ByteReader();
  ByteReader(const ByteReader&) = delete;
  ByteReader& operator=(const ByteReader&) = delete;

  [[nodiscard]] bool Open(const char* path);  // False: errno tells why.
  // Reads at least a byte, waiting for it if necessary; 0 at the end; -1: see errno.
  [[nodiscard]] std::ptrdiff_t Read(char* buffer, std::size_t length);
  // Whether Read would not wait.
  [[nodiscard]] bool IsReady() const;
  // For WorkerProcesses::Wait, which waits for it to be ready.
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
  bool owned_ = false;
  struct Ahead;
  Ahead* ahead_ = nullptr;  // Reads in a thread, where the system does not tell whether there is data.
};

// Makes standard input a file that the library can read. If it cannot seek (a pipe, a terminal), it is copied to an
// unnamed temporary file, which replaces it as standard input of this process and of the workers.
class StandardInput {
 public:
  StandardInput() = default;
  ~StandardInput();
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;

  // Replaces standard input by the temporary file, still empty, if necessary. Called before any worker is started.
  void Prepare();
  // Copies all of standard input to the file, at the first call. Returns why it cannot be read, or an empty text.
  [[nodiscard]] const std::string& Fill();

 private:
  std::string CopyAll() const;
  // At least a byte of the source; 0 at the end; -1: see errno.
  std::ptrdiff_t ReadSource(char* buffer, std::size_t length) const;
  // Appends to the temporary file, or moves to its beginning. False: see errno.
  static bool WriteCopy(std::string_view bytes);
  static bool RewindCopy();

  int source_ = -1;  // The original standard input; -1: it can seek.
  int problem_ = 0;  // errno, if the temporary file could not be created.
  bool filled_ = false;
  std::string failure_;
};

// Called at process start. Gives closed standard streams a descriptor on which reads and writes fail, so that no other
// file gets their numbers.
void OpenClosedStandardStreams();

// False: standard output is closed or read-only; see errno.
[[nodiscard]] bool StandardOutputCanBeWritten();

// Loads the machine's time zone. Without memory or descriptors, the C library would silently use UTC until the process
// ends. False: see errno.
[[nodiscard]] bool LoadTimeZone();

struct PathFacts {
  enum class Kind { kMissing, kFolder, kRegular, kOther };
  Kind kind = Kind::kMissing;
  std::uint64_t bytes = 0;  // Of a regular file.
};
[[nodiscard]] PathFacts LookAtPath(const char* path);

// The entries of a folder, in the system's order, without "." and "..".
class FolderReader {
 public:
  enum class Kind { kFolder, kFile, kOther };  // Any link is kOther. A file may have been removed since.

  FolderReader() = default;
  ~FolderReader();
  FolderReader(FolderReader&& other) noexcept;
  FolderReader& operator=(FolderReader&& other) noexcept;

  // False: `problem` tells why.
  [[nodiscard]] bool Open(const std::string& path, std::string* problem);
  // False: the end, or an error described by `problem`. Allocates memory only for the name.
  [[nodiscard]] bool Next(std::string* name, Kind* kind, std::string* problem);

 private:
  struct State;
  State* state_ = nullptr;
};

// Removes from a list entry what editors on the system add to text files: on Windows a byte-order mark before the first
// entry and a carriage return at the end of each; neither can be part of a name there.
void TrimListEntry(bool first, std::string* entry);

// Appends the name of an entry to the path of its folder.
void AppendToPath(std::string_view name, std::string* path);

// From now on an interruption, a request to terminate or a broken pipe ends the process and its worker processes at
// once, except during WriteStandardOutput, which completes first. A second signal does not wait for that.
void EndWholeAtSignals();

// Enables the control sequences used for progress on a terminal.
void PrepareTerminal();

// Writes the whole text. False: see errno.
[[nodiscard]] bool WriteStandardOutput(std::string_view text);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_SYSTEM_H_
