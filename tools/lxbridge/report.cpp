// Writes results, messages, progress and counts.
#include "tools/lxbridge/report.h"

#include <cstdio>
#include <string_view>
#include <utility>

#include "kit/base/platform.h"
#include "kit/model/pool.h"
#include "tools/lxbridge/commands.h"
#include "tools/lxbridge/output.h"

namespace lxbridge::command {

namespace {

// Less than this is not written while more is coming.
constexpr std::size_t kOutBlock = 64 * 1024;
constexpr std::chrono::milliseconds kFirstProgress(1000);
constexpr std::chrono::milliseconds kTerminalProgress(200);
constexpr std::chrono::milliseconds kLineProgress(1000);

std::size_t SizeOf(const FileResult& result) {
  return sizeof result + result.out.size() + result.messages.size() + result.error.size() + result.tally.size();
}

std::string Decimal(double value) {
  char text[32];
  (void)std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

std::string Duration(double seconds) {
  const auto whole = static_cast<long long>(seconds < 0 ? 0 : seconds > 1e9 ? 1e9 : seconds);
  char text[48];
  if (whole >= 3600) {
    (void)std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
  } else {
    (void)std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
  }
  return text;
}

}  // namespace

bool MayShowProgress(const Options& options) {
  return options.progress || (LxPlatformIsTerminal(stderr) && !LxPlatformIsTerminal(stdout));
}

Report::Report(const Options& options, std::int64_t total, Tally* tally)
    : options_(options), total_(total), tally_(tally), nextProgress_(began_ + kFirstProgress) {}

bool Report::Add(std::uint64_t number, FileResult* result) {
  if (options_.unordered) return Emit(*result);
  if (number != next_) {
    heldBytes_ += SizeOf(*result);
    held_.emplace(number, std::move(*result));
    return true;
  }
  ++next_;
  if (!Emit(*result)) return false;
  while (!held_.empty() && held_.begin()->first == next_) {
    const auto first = held_.begin();
    heldBytes_ -= SizeOf(first->second);
    ++next_;
    const bool emitted = Emit(first->second);
    held_.erase(first);
    if (!emitted) return false;
  }
  return true;
}

bool Report::AddFailureWithoutMemory(std::uint64_t number, std::string_view file, std::string_view what) {
  if (number == next_) ++next_;
  exitStatus_ = kExitFileFailed;
  if (!Flush()) return false;
  ClearProgress();
  ReportWithoutMemory(file, what);
  DrawProgress();
  return true;
}

bool Report::Emit(const FileResult& result) {
  Count(result);
  if (!result.messages.empty()) {
    if (!Flush()) return false;
    ClearProgress();
    WriteMessages(result.messages);
    DrawProgress();
  }
  if (tally_ != nullptr && !result.tally.empty()) tally_->Add(result.tally);
  if (!result.out.empty()) ++printed_;
  if (result.out.size() >= kOutBlock) {  // Written without copying.
    if (!Flush()) return false;
    return Write(result.out);
  }
  out_.append(result.out.empty() ? result.error : result.out);
  return out_.size() < kOutBlock || Flush();
}

bool Report::Flush() {
  if (out_.empty()) return true;
  const bool written = Write(out_);
  out_.clear();
  return written;
}

bool Report::Write(std::string_view text) {
  if (resultsDisturbLine_) EndProgress();
  if (WriteResult(text)) return true;
  exitStatus_ = kExitCutOff;
  broken_ = true;
  return false;
}

void Report::Count(const FileResult& result) {
  if (result.failed && exitStatus_ == 0) exitStatus_ = kExitFileFailed;
  ++done_;
  doneBytes_ += result.bytes;
  if (!options_.summary) return;
  if (result.passedOver) {
    ++passedOver_;
    return;
  }
  ++statuses_[result.status];
  if (result.kind != kNoKind) ++kinds_[result.kind];
}

void Report::Fault(std::string_view what) {
  (void)Flush();
  exitStatus_ = kExitCutOff;
  EndProgress();
  ReportWithoutMemory("", what);
}

void Report::ShowProgress() {
  if (shown_ == Shown::kNever) return;
  const Clock::time_point now = Clock::now();
  if (now < nextProgress_) return;
  if (shown_ == Shown::kNotAsked) {
    if (!MayShowProgress(options_)) {
      shown_ = Shown::kNever;
      return;
    }
    shown_ = LxPlatformIsTerminal(stderr) ? Shown::kTerminal : Shown::kLines;
    resultsDisturbLine_ = LxPlatformIsTerminal(stdout);
  }
  nextProgress_ = now + (shown_ == Shown::kTerminal ? kTerminalProgress : kLineProgress);
  const std::string text = "lxbridge: " + ProgressText(std::chrono::duration<double>(now - began_).count());
  if (shown_ == Shown::kLines) {
    WriteMessages(text + '\n');
    return;
  }
  line_ = "\r" + text + "\x1B[K";
  DrawProgress();
}

void Report::DrawProgress() const {
  if (!line_.empty()) WriteMessages(line_);
}

std::string Report::ProgressText(double seconds) const {
  const double rate = seconds > 0 ? static_cast<double>(done_) / seconds : 0;
  std::string text = std::to_string(done_);
  if (total_ >= 0) text.append(" of ").append(std::to_string(total_));
  text.append(" files, ").append(Decimal(rate)).append(" files/s, ");
  text.append(Decimal(seconds > 0 ? static_cast<double>(doneBytes_) / seconds / 1e6 : 0)).append(" MB/s");
  if (total_ >= 0 && rate > 0) {
    const double left = static_cast<double>(total_) - static_cast<double>(done_);
    text.append(", ").append(Duration(left / rate)).append(" left");
  }
  return text;
}

void Report::ClearProgress() const {
  if (!line_.empty()) WriteMessages("\r\x1B[K");
}

void Report::EndProgress() {
  ClearProgress();
  line_.clear();
}

void Report::End(std::uint64_t passedOver) {
  EndProgress();
  if (broken_) return;
  if (options_.progress) {
    ReportLines(ProgressText(std::chrono::duration<double>(Clock::now() - began_).count()));
  }
  if (!options_.summary) return;
  const auto append = [](std::string* line, std::uint64_t count, std::string_view what) {
    if (line->back() != ':') line->push_back(',');
    line->append(" ").append(std::to_string(count)).append(" ").append(what);
  };
  std::string files = std::to_string(done_ - passedOver_) + " files:";
  for (const auto& [status, count] : statuses_) append(&files, count, status);
  std::string kinds = "kinds:";
  for (const auto& [kind, count] : kinds_) {
    const char* name = LxFileKindName(kind);
    append(&kinds, count, name == nullptr ? "?" : name);
  }
  if (kinds_.empty()) kinds.append(" none");
  if (statuses_.empty()) files.pop_back();
  ReportLines(files);
  ReportLines(kinds);
  ReportLines("passed over: " + std::to_string(passedOver_ + passedOver));
}

}  // namespace lxbridge::command
