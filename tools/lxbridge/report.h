// Collects the results of the files and writes them and their messages in the order of the files; shows progress,
// writes the summary and determines the exit status.
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

// Whether progress may be shown: if requested, or if standard error is a terminal and standard output is not. With both
// on a terminal, the line would disturb the results.
[[nodiscard]] bool MayShowProgress(const Options& options);

class Report {
 public:
  // `total`: the number of files, or -1. `tally`: receives each file's part, or null.
  Report(const Options& options, std::int64_t total, Tally* tally);

  // Adds the result of the file of that number; numbers count from 0 without gaps. With results in order, it is kept
  // until all earlier ones have arrived, and then taken out of *result; else *result keeps its buffers for the next
  // file. False: standard output can no longer be written, and the run must end.
  [[nodiscard]] bool Add(std::uint64_t number, FileResult* result);
  // Replaces Add if there is no memory for it or for the result: reports the file's failure without allocating.
  [[nodiscard]] bool AddFailureWithoutMemory(std::uint64_t number, std::string_view file, std::string_view what);
  // Writes the gathered output; called before every wait.
  [[nodiscard]] bool Flush();
  // The number of the next file in order.
  [[nodiscard]] std::uint64_t next() const { return next_; }
  // Bytes of results that wait for earlier ones.
  [[nodiscard]] std::size_t heldBytes() const { return heldBytes_; }

  void ShowProgress();
  // Ends the report: the last line of progress and the summary. `passedOver`: the number of files without any result.
  void End(std::uint64_t passedOver);

  // Ends the run for a reason other than a file; results are missing.
  void Fault(std::string_view what);
  [[nodiscard]] int exitStatus() const { return exitStatus_; }
  // The number of files with output.
  [[nodiscard]] std::uint64_t printed() const { return printed_; }

 private:
  [[nodiscard]] bool Emit(const FileResult& result);
  [[nodiscard]] bool Write(std::string_view text);
  void Count(const FileResult& result);
  // Removes the line of progress while other text is written to the terminal.
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
  std::string line_;                 // The line of progress now on the terminal; empty: none.
  bool resultsDisturbLine_ = false;  // Results go to the same terminal.
  const Clock::time_point began_ = Clock::now();
  Clock::time_point nextProgress_;
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_REPORT_H_
