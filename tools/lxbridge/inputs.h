// The files of a call, one after the other: those of the command line, of a list, and below folders. They are never all
// in memory: a list may be longer than that, and still be growing.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_INPUTS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_INPUTS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/lxbridge/name_filter.h"
#include "tools/lxbridge/options.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

struct Input {
  std::string name;     // As it is printed; "-" is standard input.
  bool walked = false;  // Found in a folder, so passed over if no reader takes it.
  std::string problem;  // Not empty: it cannot be worked on, and this is why.
};

class InputSource {
 public:
  explicit InputSource(const Options& options);

  enum class Next { kInput, kNotYet, kEnd };
  // kNotYet: the list may have more, but not now; never with mayWait.
  [[nodiscard]] Next Take(bool mayWait, Input* input);

  // For WorkerProcesses::Wait after kNotYet.
  [[nodiscard]] int WaitDescriptor() const { return list_.descriptor(); }
  // Whether standard input is the list, so that it cannot be a FILE.
  [[nodiscard]] bool ReadsStandardInput() const;
  // Links, pipes, devices met in folders so far.
  [[nodiscard]] std::uint64_t passedOver() const { return passedOver_; }
  // The number of inputs, or -1 if only the end will tell.
  [[nodiscard]] std::int64_t total() const;

 private:
  struct Entry {
    std::string name;
    FolderReader::Kind kind;
  };
  struct Folder {
    std::string name;
    FolderReader entries;
    std::vector<Entry> sorted;  // With --sort: those that are left, the last one first.
    std::string problem;        // With --sort: the error after which there were no more.
  };

  // Whether the input that was taken is to be worked on as it is.
  bool IsReady(Input* input);
  bool EntersFolder(Input* input);
  bool OpensFolder(Input* input);
  bool TakeWalked(Input* input);
  bool NextEntry(Folder* folder, Entry* entry, std::string* problem);
  Next TakeListed(bool mayWait, Input* input);
  Next TakeEntry(Input* input);
  Next EndList(const char* problem, Input* input);

  const Options& options_;
  const NameFilter filter_;
  std::size_t nextFile_ = 0;
  std::vector<Folder> folders_;  // The folders that the walk is in, the innermost last.
  std::uint64_t passedOver_ = 0;

  StandardInput standardInput_;
  ByteReader list_;
  bool listEnded_ = false;
  bool tooLong_ = false;  // The current entry is, and the rest of it is skipped.
  std::uint64_t entry_ = 0;
  std::vector<char> bytes_;  // [from_, to_) is read from the list and not taken. Empty: the list is not open.
  std::size_t from_ = 0, to_ = 0;
  std::string partial_;  // The front of an entry of which the rest has not arrived.
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_INPUTS_H_
