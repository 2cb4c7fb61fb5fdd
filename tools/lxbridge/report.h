// Gathers the results of the files and writes them and their messages in the order of the files; shows progress, writes
// the summary and knows the exit status.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_REPORT_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_REPORT_H_

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/options.h"
#include "tools/lxbridge/tally.h"

namespace lxbridge::command {

// Whether progress is shown once the work takes a while: when it is asked for, or when standard error is a terminal and
// standard output is not. On one terminal with the results the line would be in the way.
[[nodiscard]] bool MayShowProgress(const Options& options);

class Report {
 public:
  // `total`: how many files there will be, or -1. `tally`: gets each file's part, or null.
  Report(const Options& options, std::int64_t total, Tally* tally);

  // The result of the file of that number, counted from 0 without a gap. In order: kept until those before it are
  // there, and then taken out of *result; else *result keeps its buffers for the next file. False: standard output
  // cannot be written any more, and all is to end.
  [[nodiscard]] bool Add(std::uint64_t number, FileResult* result);
  // In place of Add where that, or what makes the result, found no memory: says so of the file and allocates nothing.
  [[nodiscard]] bool AddFailureWithoutMemory(std::uint64_t number, std::string_view file, std::string_view what);
  // Writes what has been gathered to save calls of the system; before every wait.
  [[nodiscard]] bool Flush();
  // The next number in the order of the files.
  [[nodiscard]] std::uint64_t next() const { return next_; }
  // Bytes of results that wait for those before them.
  [[nodiscard]] std::size_t heldBytes() const { return heldBytes_; }

  void ShowProgress();
  // Ends the report: the last line of progress and the summary. `passedOver`: files that gave no result at all.
  void End(std::uint64_t passedOver);

  // Ends the run for a reason that no file is to blame for; results are missing.
  void Fault(std::string_view what);
  [[nodiscard]] int exitStatus() const { return exitStatus_; }
  // How many files had output.
  [[nodiscard]] std::uint64_t printed() const { return printed_; }

 private:
  [[nodiscard]] bool Emit(const FileResult& result);
  [[nodiscard]] bool Write(std::string_view text);
  void Count(const FileResult& result);
  // The line of progress goes for what else is written to the terminal, and comes back.
  void ClearProgress() const;
  void DrawProgress() const;
  void EndProgress();
  [[nodiscard]] std::string ProgressText(double seconds) const;

  const Options& options_;
  const std::int64_t total_;
  Tally* const tally_;
  int exitStatus_ = 0;

  std::uint64_t next_ = 0;
  std::map<std::uint64_t, FileResult> held_;
  std::size_t heldBytes_ = 0;
  std::string out_;
  bool broken_ = false;  // Standard output cannot be written.

  std::uint64_t done_ = 0;
  std::uint64_t doneBytes_ = 0;
  std::uint64_t printed_ = 0;
  std::uint64_t passedOver_ = 0;
  std::map<std::string, std::uint64_t> statuses_;
  std::map<std::uint8_t, std::uint64_t> kinds_;

  using Clock = std::chrono::steady_clock;
  enum class Shown { kNotAsked, kNever, kTerminal, kLines };
  Shown shown_ = Shown::kNotAsked;
  std::string line_;                 // The line of progress that stands on the terminal; empty: none does.
  bool resultsDisturbLine_ = false;  // They go to the same terminal.
  const Clock::time_point began_ = Clock::now();
  Clock::time_point nextProgress_;
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_REPORT_H_
