// The files of a call, one after the other: from the command line, from a list, and in folders. They are never all in
// memory: a list may be larger than memory, and still growing.
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
  std::string name;     // As printed; "-" is standard input.
  bool walked = false;  // Found in a folder, so skipped if it has no reader.
  std::string problem;  // If not empty, the reason why it cannot be read.
};

class InputSource {
 public:
  explicit InputSource(const Options& options);

  enum class Next { kInput, kNotYet, kEnd };
  // kNotYet: the list has no entry now but may get more; never returned with mayWait.
  [[nodiscard]] Next Take(bool mayWait, Input* input);

  // For WorkerProcesses::Wait after kNotYet.
  [[nodiscard]] int WaitDescriptor() const { return list_.descriptor(); }
  // Whether standard input is the list, so that it cannot be a FILE.
  [[nodiscard]] bool ReadsStandardInput() const;
  // The number of links, pipes and devices found in folders so far.
  [[nodiscard]] std::uint64_t passedOver() const { return passedOver_; }
  // The number of inputs, or -1 if it is not known in advance.
  [[nodiscard]] std::int64_t total() const;

 private:
  struct Entry {
    std::string name;
    FolderReader::Kind kind;
  };
  struct Folder {
    std::string name;
    FolderReader entries;
    std::vector<Entry> sorted;  // With --sort: the remaining entries, the last one first.
    std::string problem;        // With --sort: the error that ended the list.
  };

  // Whether the input can be read as it is.
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
  std::vector<Folder> folders_;  // The open folders of the walk, the innermost last.
  std::uint64_t passedOver_ = 0;

  StandardInput standardInput_;
  ByteReader list_;
  bool listEnded_ = false;
  bool tooLong_ = false;  // The current entry is too long, and the rest of it is skipped.
  std::uint64_t entry_ = 0;
  std::vector<char> bytes_;  // [from_, to_) is read from the list but not yet taken. Empty: the list is not open.
  std::size_t from_ = 0, to_ = 0;
  std::string partial_;  // The beginning of an incomplete entry.
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_INPUTS_H_
