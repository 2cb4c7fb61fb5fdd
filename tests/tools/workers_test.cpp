// The order of work among workers, and the files of a worker that dies. Stands in for the processes, so
// that each can die at any point of its work.
#include "tools/lxbridge/workers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <deque>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "tools/lxbridge/worker_process.h"
#include "tools/lxbridge/worker_protocol.h"

namespace lxbridge::command {

namespace {

enum class Fate {
  kAnswers,
  kDiesWithin,
  kDiesAfter,
  kHangs,
  kAnswersLater,
  kGoesOnWhenKilled,
  kIsStopped,
  kTalksNonsense
};
std::map<std::string, std::deque<Fate>> script;  // Of each time that a file is tried; at last and else it is answered.
int lives = 0;                                   // Workers started.
int sleepMs = 0;                                 // How long each wait with nothing to do takes.

struct Process {
  Place place = {};
  std::deque<std::string> jobs;
  std::string results;
  bool dead = false;
  bool stopped = false;
  bool goesOn = false;
  bool answersLater = false;
  bool answersNow = false;

  Fate Begin() {
    std::deque<Fate>& fates = script[jobs.front()];
    const Fate fate = fates.empty() ? Fate::kAnswers : fates.front();
    if (!fates.empty()) fates.pop_front();
    place.sinceNs = std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
    ++place.begun;
    return fate;
  }
  void Answer() {
    FileResult result;
    result.out = jobs.front() + "\n";
    jobs.pop_front();
    AppendResult(result, &results);
    ++place.finished;
  }
  void Work() {
    if (std::exchange(answersNow, false)) Answer();
    while (!jobs.empty() && !dead && place.begun == place.finished) {
      const Fate fate = Begin();
      dead = fate == Fate::kDiesWithin || fate == Fate::kDiesAfter;
      stopped = fate == Fate::kIsStopped;
      goesOn = fate == Fate::kGoesOnWhenKilled;
      answersLater = fate == Fate::kAnswersLater;
      if (fate == Fate::kTalksNonsense) results.assign(64, 'x');
      if (fate == Fate::kDiesAfter) ++place.finished;
      if (fate != Fate::kAnswers) return;
      Answer();
    }
  }
};
std::map<std::size_t, Process> processes;
std::map<std::size_t, Process>::node_type lastEnded;  // Its place can still be looked at.

}  // namespace

std::size_t ReceiveJobs(const WorkerSide&, char*, std::size_t) {
  return 0;
}
void SendResults(const WorkerSide&, std::string_view) {}
void EndWorker(int status) {
  std::exit(status);
}
struct WorkerProcesses::System {};
WorkerProcesses::WorkerProcesses(const Options&, bool) {}
WorkerProcesses::~WorkerProcesses() = default;
bool WorkerProcesses::CanStart() const {
  return true;
}
bool WorkerProcesses::Start(std::size_t* slot, std::string* problem) {
  problem->assign("too many were started");
  if (++lives > 60) return false;
  for (*slot = 0; processes.contains(*slot);) ++*slot;
  (void)processes[*slot];
  return true;
}
const Place& WorkerProcesses::PlaceOf(std::size_t slot) const {
  return processes[slot].place;
}
void WorkerProcesses::Send(std::size_t slot, std::string* bytes) {
  Input input;
  std::size_t at = 0;
  while (TakeJob(*bytes, &at, &input) == Taken::kOne) {
    processes[slot].jobs.push_back(input.name);
  }
  bytes->clear();
}
bool WorkerProcesses::Receive(std::size_t slot, std::string* bytes) {
  bytes->append(std::exchange(processes[slot].results, ""));
  return !processes[slot].dead;
}
void WorkerProcesses::Watch(std::size_t, bool, bool) {}
bool WorkerProcesses::Wait(int, int, std::string*) {
  bool ready = false;
  for (auto& [slot, process] : processes) {
    process.Work();
    ready = ready || process.dead || !process.results.empty();
  }
  if (ready) return true;
  std::this_thread::sleep_for(std::chrono::milliseconds(sleepMs));
  for (auto& [slot, process] : processes) {
    process.answersNow = std::exchange(process.answersLater, false);
  }
  return true;
}
bool WorkerProcesses::MaySend(std::size_t) const {
  return false;
}
bool WorkerProcesses::MayReceive(std::size_t slot) const {
  return processes[slot].dead || !processes[slot].results.empty();
}
bool WorkerProcesses::IsStopped(std::size_t slot) const {
  return processes[slot].stopped;
}
void WorkerProcesses::Kill(std::size_t slot) {
  Process& process = processes[slot];
  process.dead = true;
  if (!process.goesOn) return;
  ++process.place.finished;
  process.jobs.pop_front();
  if (!process.jobs.empty()) (void)process.Begin();
}
void WorkerProcesses::KillAll() {}
std::uint32_t WorkerProcesses::End(std::size_t slot) noexcept {
  lastEnded = processes.extract(slot);
  return 0;
}
std::string WorkerProcesses::CauseOf(std::uint32_t) {
  return "died";
}

namespace {

// The results of the files a to h, with their messages first, and the exit status.
std::string Outputs(const std::map<std::string, std::deque<Fate>>& fates, int workers, double timeoutSeconds = 0) {
  script = fates;
  lives = 0;
  Options options;
  options.files = {"a", "b", "c", "d", "e", "f", "g", "h"};
  options.timeoutSeconds = timeoutSeconds;
  InputSource source(options);
  Report report(options, source.total(), nullptr);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  RunInWorkers(options, workers, &source, &report);
  report.End(0);
  const std::string out = testing::internal::GetCapturedStdout();
  return testing::internal::GetCapturedStderr() + out + std::to_string(report.exitStatus());
}

const std::string kAll = "a\nb\nc\nd\ne\nf\ng\nh\n0";

TEST(Workers, AFileIsBlamedForADeathWithinItOrForTwoLostResultsAndNoOtherIs) {
  using enum Fate;
  const struct {
    const char* name;
    std::map<std::string, std::deque<Fate>> fates;
    std::string given;
  } kCases[] = {
      {"nothing happens", {}, kAll},
      {"within", {{"c", {kDiesWithin}}}, "lxbridge: c: died\na\nb\nd\ne\nf\ng\nh\n1"},
      {"once after the end", {{"c", {kDiesAfter}}, {"d", {kDiesAfter}}}, kAll},
      {"twice", {{"c", {kDiesAfter, kDiesAfter}}}, "lxbridge: c: died\na\nb\nd\ne\nf\ng\nh\n1"},
      {"twice, after others", {{"g", {kDiesAfter, kDiesAfter}}}, "lxbridge: g: died\na\nb\nc\nd\ne\nf\nh\n1"},
      {"after the end and within", {{"a", {kDiesAfter, kDiesWithin}}}, "lxbridge: a: died\nb\nc\nd\ne\nf\ng\nh\n1"},
      {"nonsense", {{"h", {kTalksNonsense, kTalksNonsense}}}, "lxbridge: h: died\na\nb\nc\nd\ne\nf\ng\n1"},
  };
  for (const auto& c : kCases) {
    for (const int workers : {1, 3}) {
      EXPECT_EQ(Outputs(c.fates, workers), c.given) << c.name << ", " << workers << " workers";
    }
  }
}

TEST(Workers, TheFileThatTookTooLongIsGivenUpAndNotTheOneThatFollowed) {
  sleepMs = 5;
  EXPECT_EQ(Outputs({{"b", {Fate::kHangs}}}, 1, 0.05), "lxbridge: b: timed out\na\nc\nd\ne\nf\ng\nh\n1");
  EXPECT_EQ(Outputs({{"b", {Fate::kGoesOnWhenKilled}}}, 1, 0.05), kAll);
}

TEST(Workers, TimeInWhichNothingCouldRunIsNotCharged) {
  sleepMs = 1000;  // The command has slept, as one that was stopped.
  EXPECT_EQ(Outputs({{"b", {Fate::kAnswersLater}}}, 1, 0.75), kAll);
  EXPECT_EQ(lives, 1);
  sleepMs = 100;  // A worker that stays stopped is given up, and its file tried again; --timeout does not blame it.
  EXPECT_EQ(Outputs({{"b", {Fate::kIsStopped}}}, 2, 1), kAll);
}

}  // namespace
}  // namespace lxbridge::command
