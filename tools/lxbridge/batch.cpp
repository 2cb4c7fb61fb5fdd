// Runs a command line's files, in this process or in workers.
#include <cerrno>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#include <thread>

#include "tools/lxbridge/commands.h"
#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/inputs.h"
#include "tools/lxbridge/output.h"
#include "tools/lxbridge/report.h"
#include "tools/lxbridge/system.h"
#include "tools/lxbridge/table.h"
#include "tools/lxbridge/tally.h"
#include "tools/lxbridge/workers.h"

namespace lxbridge::command {

namespace {

// Fewer files are finished before a worker has started.
constexpr std::size_t kFewFiles = 16;

// 0: none.
int WorkersFor(const Options& options) {
  if (options.workers > 0) return options.workers;
  const bool many = options.recursive || options.filesFrom != nullptr || options.files.size() > kFewFiles;
  if (!many && options.timeoutSeconds <= 0) return 0;
  const auto processors = static_cast<int>(std::thread::hardware_concurrency());
  return processors < 1 ? 1 : processors > kMostWorkers ? kMostWorkers : processors;
}

// Reads one file and prints its result before the next is read. False: standard output can no longer be written.
bool DoHere(const Input& input, std::uint64_t number, FileWork* work, FileResult* result, Report* report) {
  try {
    result->Clear();
    if (input.problem.empty()) {
      work->Do(input, result);
    } else {
      result->Fail(input.name, input.problem);
      result->status = "failed";
    }
    return report->Add(number, result) && report->Flush();
  } catch (const std::exception& error) {
    return report->AddFailureWithoutMemory(number, input.name, MessageOf(error));
  }
}

void RunHere(const Options& options, InputSource* source, Report* report) {
  const std::unique_ptr<FileWork> work = MakeWork(options);
  Input input;
  // Reserved now, so that storing a name never allocates after a file's work has used up memory.
  for (const char* file : options.files) input.name.reserve(std::strlen(file));
  FileResult result;
  for (std::uint64_t number = 0; source->Take(true, &input) == InputSource::Next::kInput; ++number) {
    if (!DoHere(input, number, work.get(), &result, report)) return;
    report->ShowProgress();
  }
}

}  // namespace

int RunFiles(const Options& options) {
  Columns columns;
  if (options.IsTable() || options.format == Format::kFlat) {
    std::string error;
    if (!ResolveColumns(options, &columns, &error)) {
      ReportLines(error, "Try 'lxbridge --help' for more information.");
      return kExitUsage;
    }
  }
  KeepErrorLines(options.errors);
  std::unique_ptr<Tally> tally;
  if (options.action == Action::kFields) tally = MakeFieldTally(options);
  if (columns.HasUnknown()) tally = MakeColumnTally(columns);
  EndWholeAtSignals();
  PrepareTerminal();
  if (!StandardOutputCanBeWritten()) {
    ReportWithoutMemory("standard output", std::strerror(errno));
    return kExitCutOff;
  }
  if (!LoadTimeZone()) {
    ReportWithoutMemory("", errno == ENOMEM ? kNoMemoryMessage : std::strerror(errno));
    return kExitCutOff;
  }
  InputSource source(options);
  Report report(options, source.total(), tally.get());
  if (options.header && !WriteResult(HeaderRow(columns, options))) return kExitCutOff;
  const int workers = WorkersFor(options);
  if (workers > 0) {
    RunInWorkers(options, workers, &source, &report);
  } else {
    RunHere(options, &source, &report);
  }
  if (tally != nullptr && report.exitStatus() != kExitCutOff && !tally->End()) return kExitCutOff;
  if (options.format == Format::kRdf && report.printed() > 1) {
    ReportLines("printing packets of several files; use --sidecar or --format json to tell them apart");
  }
  report.End(source.passedOver());
  return report.exitStatus();
}

}  // namespace lxbridge::command
