// What has become of the files so far, on its way out: results and messages in the order of the files, progress, the
// summary, the exit status.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_REPORT_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_REPORT_H_

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

// Whether progress is shown once the work takes a while: when it is asked for, or on a terminal to which no results go,
// for a line that comes and goes between them would be in the way.
[[nodiscard]] bool MayShowProgress(const Options& options);

class Report {
 public:
  // `total`: how many files there will be, or -1.
  Report(const Options& options, std::int64_t total);

  // The result of the file of that number, counted from 0 without a gap. In order: kept until those before it are
  // there, and then taken out of *result; else *result keeps its buffers for the next file. False: standard output
  // cannot be written any more, and all is to end.
  [[nodiscard]] bool Add(std::uint64_t number, FileResult* result);
  // Writes what has been gathered to save calls of the system; before every wait.
  [[nodiscard]] bool Flush();
  // The next number in the order of the files.
  [[nodiscard]] std::uint64_t next() const { return next_; }
  // Bytes of results that wait for those before them.
  [[nodiscard]] std::size_t heldBytes() const { return heldBytes_; }

  void ShowProgress();
  // The last of it; `passedOver`: besides the results that say so themselves.
  void End(std::uint64_t passedOver);

  // Something went wrong that no file is to blame for.
  void Fault(const std::string& what);
  [[nodiscard]] int exitStatus() const { return exitStatus_; }

 private:
  [[nodiscard]] bool Emit(const FileResult& result);
  [[nodiscard]] bool Write(std::string_view text);
  void Count(const FileResult& result);
  void ClearProgress();
  [[nodiscard]] std::string ProgressText(double seconds) const;

  const Options& options_;
  const std::int64_t total_;
  int exitStatus_ = 0;

  std::uint64_t next_ = 0;
  std::map<std::uint64_t, FileResult> held_;
  std::size_t heldBytes_ = 0;
  std::string out_;
  bool broken_ = false;  // Standard output is.

  std::uint64_t done_ = 0;
  std::uint64_t doneBytes_ = 0;
  std::uint64_t passedOver_ = 0;
  std::map<std::string, std::uint64_t> statuses_;
  std::map<std::uint8_t, std::uint64_t> kinds_;

  using Clock = std::chrono::steady_clock;
  enum class Shown { kNotAsked, kNever, kTerminal, kLines };
  Shown shown_ = Shown::kNotAsked;
  bool lineStands_ = false;  // A line of progress stands on the terminal.
  const Clock::time_point began_ = Clock::now();
  Clock::time_point nextProgress_;
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_REPORT_H_
