// The files of a call, one after the other: those of the command line, those of a list, those below folders. Never all
// at once: a list may be longer than memory and still be growing.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_INPUTS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_INPUTS_H_

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/lxbridge/options.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

struct Input {
  std::string name;     // As it is printed; "-" is standard input.
  bool walked = false;  // Found in a folder, not named by anybody: passed over when no reader takes it.
  std::string problem;  // Not empty: there is no such file, and this is why.
};

class InputSource {
 public:
  explicit InputSource(const Options& options);

  enum class Next { kInput, kNotYet, kEnd };
  // With mayWait never kNotYet, which says that the list has more but not now.
  [[nodiscard]] Next Take(bool mayWait, Input* input);

  // What kNotYet waits for.
  [[nodiscard]] int WaitDescriptor() const { return list_.descriptor(); }
  // Whether standard input is the list, and so nobody else's.
  [[nodiscard]] bool ReadsStandardInput() const;
  // Links, pipes, devices met in folders so far.
  [[nodiscard]] std::uint64_t passedOver() const { return passedOver_; }
  // How many inputs there will be, -1 where only the end will tell.
  [[nodiscard]] std::int64_t total() const;

 private:
  struct Folder {
    std::string name;
    std::filesystem::directory_iterator at;
    std::string problem;  // That has ended it early.
  };

  bool EntersFolder(Input* input);
  bool OpensFolder(Input* input);
  bool TakeWalked(Input* input);
  Next TakeListed(bool mayWait, Input* input);
  Next TakeEntry(Input* input);
  Next EndList(const char* problem, Input* input);

  const Options& options_;
  std::size_t nextFile_ = 0;
  std::vector<Folder> folders_;  // The walk's way down to where it is.
  std::uint64_t passedOver_ = 0;

  ByteReader list_;
  bool listEnded_ = false;
  bool tooLong_ = false;  // The entry at hand is; the rest of it is passed over.
  std::uint64_t entry_ = 0;
  std::vector<char> bytes_;  // Read of the list and not taken: [from_, to_). Empty: the list is not open.
  std::size_t from_ = 0, to_ = 0;
  std::string partial_;  // The front of an entry that has not come whole.
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_INPUTS_H_
