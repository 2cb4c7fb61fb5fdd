// Worker processes. Each gets some jobs in advance and answers in order, several results in one write if they are fast.
// A few words of shared memory tell which file a worker is reading. If it dies, that file is reported, and its other
// unanswered files are given to another worker.
//
// A job may also be lost between its end and the arrival of its result. Its file may or may not be the cause, so it is
// tried again, alone in a worker; if it is lost again, its file is reported.
#include "tools/lxbridge/workers.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/output.h"
#include "tools/lxbridge/worker_process.h"
#include "tools/lxbridge/worker_protocol.h"

namespace lxbridge::command {

namespace {

// A worker gets further jobs when its remaining ones would take less than this time, and then gets as many as fit this
// time; at most kJobsAtOnce. So fast files need few system calls, and slow ones do not wait in one worker's queue while
// another worker is idle.
constexpr std::int64_t kJobsAtOnceNs = 5'000'000;
constexpr std::size_t kJobsAtOnce = 128;
// The limits on results that wait for an earlier file, in files and in bytes. Beyond them, only the worker with the
// earliest file is read from.
constexpr std::uint64_t kMostAhead = 8192;
constexpr std::size_t kMostHeldBytes = std::size_t{8} << 20;
constexpr std::size_t kReceivedKept = 512 * 1024;  // Buffer memory kept for a worker when little is received.
constexpr std::size_t kJobBlock = 16 * 1024;
constexpr std::size_t kResultBlock = 128 * 1024;
// Results are gathered for this long, checked after each file; the first few are sent immediately.
constexpr std::int64_t kResultDelayNs = 10'000'000;
constexpr int kResultsAtOnce = 16;
constexpr std::int64_t kWakeNs = 200'000'000;  // For progress and time limits.
// The command wakes up more often than this. A longer step means that it was stopped, as by Ctrl-Z, or blocked in a
// write; the time beyond this is not charged to the workers.
constexpr std::int64_t kLongestStepNs = 500'000'000;
// A worker that is still stopped this long after the command noticed it was not stopped together with the command.
constexpr std::int64_t kStoppedNs = 3'000'000'000;
constexpr int kDeathsAtStart = 3;
constexpr int kTries = 2;

std::int64_t NowNs() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

// --- in the worker -------------------------------------------------------------------------------------------------

void SendAll(const WorkerSide& side, std::string* bytes) {
  SendResults(side, *bytes);
  bytes->clear();
  if (bytes->capacity() > 4 * kResultBlock) bytes->shrink_to_fit();
}

void DoJob(FileWork* work, const Input& input, FileResult* result) {
  result->Clear();
  try {
    work->Do(input, result);
  } catch (const std::exception& error) {
    result->Clear();
    result->Fail(input.name, MessageOf(error));
    if (result->status != kNoMemoryMessage) result->status = "failed";
  }
}

[[noreturn]] void Work(const Options& options, const WorkerSide& side) {
  std::string out;
  std::unique_ptr<FileWork> work;
  try {
    work = MakeWork(options);
  } catch (const std::exception& error) {
    AppendFault(MessageOf(error), &out);
    SendAll(side, &out);
    EndWorker();
  }
  std::string in, block(kJobBlock, '\0');
  std::size_t at = 0;
  Input input;
  FileResult result;
  std::int64_t sentNs = NowNs();
  int results = 0;
  for (;;) {
    if (TakeJob(in, &at, &input) != Taken::kOne) {
      SendAll(side, &out);
      in.erase(0, at);
      at = 0;
      const std::size_t got = ReceiveJobs(side, block.data(), block.size());
      if (got == 0) EndWorker();
      in.append(block, 0, got);
      continue;
    }
    const std::int64_t beganNs = NowNs();
    side.place->sinceNs.store(beganNs, std::memory_order_relaxed);
    side.place->begun.fetch_add(1, std::memory_order_release);
    DoJob(work.get(), input, &result);
    side.place->finished.fetch_add(1, std::memory_order_release);
    if (out.empty()) sentNs = beganNs;
    AppendResult(result, &out);
    if (results < kResultsAtOnce) ++results;
    if (results < kResultsAtOnce || out.size() >= kResultBlock || NowNs() - sentNs >= kResultDelayNs) {
      SendAll(side, &out);
    }
  }
}

// --- in the command ------------------------------------------------------------------------------------------------

struct Job {
  std::uint64_t number;
  Input input;
  int lost = 0;  // Number of workers that died after starting it.
};

struct Worker {
  std::size_t slot = 0;  // Of its process.
  std::deque<Job> jobs;  // Given and not yet answered.
  bool alone = false;    // Its only job was lost before; it gets no other until that is answered.
  std::uint64_t answered = 0;
  std::int64_t startedNs = NowNs();
  std::string toSend;
  std::string received;

  // Times of the Pool's clock.
  std::uint64_t watched = 0;     // The file, counted from 1, whose time is measured,
  std::int64_t watchedFrom = 0;  // from then on.
  bool stopped = false;
  std::int64_t stoppedFrom = 0;

  std::uint64_t killedIn = 0;  // It was killed because this file, counted from 1, took too long.
  bool givenUp = false;        // It was killed because it was stopped from outside.
};

// The time during which the command could run.
class RunClock {
 public:
  void Step() {
    const std::int64_t now = NowNs();
    step_ = std::min(now - systemNow_, kLongestStepNs);
    systemNow_ = now;
    now_ += step_;
  }
  [[nodiscard]] std::int64_t now() const { return now_; }
  [[nodiscard]] std::int64_t step() const { return step_; }  // Length of the last step.
  // The time of a system time, no earlier than the start of the last step.
  [[nodiscard]] std::int64_t TimeOf(std::int64_t systemNs) const {
    return now_ - std::clamp<std::int64_t>(systemNow_ - systemNs, 0, step_);
  }

 private:
  std::int64_t systemNow_ = NowNs();
  std::int64_t now_ = 0;
  std::int64_t step_ = 0;
};

class Pool {
 public:
  Pool(const Options& options, int count, InputSource* source, Report* report)
      : options_(options),
        count_(static_cast<std::size_t>(count)),
        source_(*source),
        report_(*report),
        processes_(options, !source->ReadsStandardInput()) {}

  ~Pool() {
    if (stopped_) processes_.KillAll();
    for (const Worker& worker : workers_) (void)processes_.End(worker.slot);
  }
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

  void Run() {
    if (!processes_.CanStart()) return Stop("no memory to share with workers");
    stopped_ = true;  // Until the end is reached, leaving means stopping.
    for (;;) {
      GiveJobs();
      if (failed_ || !report_.Flush()) return;
      if (ended_ && again_.empty() && std::all_of(workers_.begin(), workers_.end(), HasNoJobs)) break;
      Wait();
      if (failed_) return;
      report_.ShowProgress();
    }
    stopped_ = false;
  }

 private:
  static bool HasNoJobs(const Worker& worker) { return worker.jobs.empty(); }

  void Stop(std::string_view what) {
    failed_ = true;
    report_.Fault(what);
  }

  void Done(std::uint64_t number, FileResult&& result) {
    if (!report_.Add(number, &result)) failed_ = true;
  }

  // --- jobs

  void GiveJobs() {
    waitsForList_ = false;
    while (!failed_ && !again_.empty()) {
      // All results may wait for it, so it is assigned at once.
      const bool alone = again_.front().lost != 0;
      Worker* worker = StartOrFind(alone ? Needed::kIdle : Needed::kAny);
      if (worker == nullptr) break;
      worker->alone = alone;
      Give(worker, std::move(again_.front()));
      again_.pop_front();
      Send(worker);
    }
    while (!failed_ && MayGoOn()) {
      Worker* worker = StartOrFind(Needed::kNotBusy);
      if (worker == nullptr) return;
      const std::size_t until = worker->jobs.size() + JobsAtOnce(*worker);
      while (worker->jobs.size() < until && MayGoOn()) {
        GiveNext(worker);
        if (failed_) return;
      }
      Send(worker);
    }
  }

  bool MayGoOn() const {
    if (ended_ || waitsForList_) return false;
    return options_.unordered || (number_ - report_.next() < kMostAhead && report_.heldBytes() < kMostHeldBytes);
  }

  void GiveNext(Worker* worker) {
    Input input;
    switch (source_.Take(false, &input)) {
      case InputSource::Next::kEnd:
        ended_ = true;
        return;
      case InputSource::Next::kNotYet:
        waitsForList_ = true;
        return;
      case InputSource::Next::kInput:
        break;
    }
    if (!input.problem.empty()) {
      FileResult result;
      result.Fail(input.name, input.problem);
      result.status = "failed";
      Done(number_++, std::move(result));
      return;
    }
    Worker* taker = worker;
    if (input.name == "-") {
      // All workers share the position of standard input, so only one at a time reads it.
      for (Worker& other : workers_) {
        if (std::any_of(other.jobs.begin(), other.jobs.end(), [](const Job& job) { return job.input.name == "-"; })) {
          taker = &other;
        }
      }
    }
    Give(taker, {number_++, std::move(input)});
    if (taker != worker) Send(taker);
  }

  void Give(Worker* worker, Job job) {
    AppendJob(job.input, &worker->toSend);
    worker->jobs.push_back(std::move(job));
  }

  void Send(Worker* worker) { processes_.Send(worker->slot, &worker->toSend); }

  // --- workers

  enum class Needed { kIdle, kNotBusy, kAny };

  // The worker with the fewest jobs, or a new one if all have some. Null: none is suitable.
  Worker* StartOrFind(Needed needed) {
    Worker* least = nullptr;
    for (Worker& worker : workers_) {
      if (worker.alone) continue;
      if (least == nullptr || worker.jobs.size() < least->jobs.size()) least = &worker;
    }
    if ((least == nullptr || !least->jobs.empty()) && workers_.size() < count_) {
      if (Worker* started = Start()) return started;
      if (failed_) return nullptr;
    }
    if (least == nullptr || needed == Needed::kAny) return least;
    const std::size_t most = needed == Needed::kIdle ? 0 : JobsAtOnce(*least);
    return least->jobs.size() <= most ? least : nullptr;
  }

  static std::size_t JobsAtOnce(const Worker& worker) {
    const double share = static_cast<double>(kJobsAtOnceNs) / static_cast<double>(NowNs() - worker.startedNs + 1);
    const auto jobs = static_cast<std::size_t>(share * static_cast<double>(worker.answered));
    return std::clamp<std::size_t>(jobs, 1, kJobsAtOnce);
  }

  Worker* Start() {
    std::size_t slot = 0;
    std::string problem;
    if (processes_.Start(&slot, &problem)) {
      Worker& worker = workers_.emplace_back();
      worker.slot = slot;
      return &worker;
    }
    if (workers_.empty()) {
      Stop(problem);
    } else {
      count_ = workers_.size();  // Continue with the others.
    }
    return nullptr;
  }

  // --- results

  bool MayRead(const Worker& worker) const {
    if (options_.unordered || report_.heldBytes() < kMostHeldBytes) return true;
    if (!again_.empty() && again_.front().number == report_.next()) return true;  // It may need an idle worker.
    return std::any_of(worker.jobs.begin(), worker.jobs.end(),
                       [this](const Job& job) { return job.number == report_.next(); });
  }

  void Wait() {
    for (const Worker& worker : workers_) processes_.Watch(worker.slot, MayRead(worker), !worker.toSend.empty());
    std::string problem;
    if (!processes_.Wait(waitsForList_ ? source_.WaitDescriptor() : -1, EndLate(), &problem)) return Stop(problem);
    for (auto worker = workers_.begin(); worker != workers_.end() && !failed_;) {
      if (processes_.MaySend(worker->slot)) Send(&*worker);
      if (processes_.MayReceive(worker->slot) && !Receive(&*worker)) {
        Bury(&*worker);
        worker = workers_.erase(worker);
      } else {
        ++worker;
      }
    }
  }

  // Kills workers whose file took too long or that were stopped from outside. Returns the time in milliseconds until
  // this must be called again.
  int EndLate() {
    clock_.Step();
    const bool looks = clock_.now() >= nextLook_;
    if (looks) nextLook_ = clock_.now() + kWakeNs;
    std::int64_t least = kWakeNs;
    for (Worker& worker : workers_) {
      if (worker.killedIn != 0 || worker.givenUp) continue;
      if (looks && IsStoppedTooLong(&worker)) {
        worker.givenUp = true;
        processes_.Kill(worker.slot);
        continue;
      }
      if (options_.timeoutSeconds <= 0) continue;
      const std::int64_t left = TimeLeft(&worker);
      if (left > 0) {
        least = std::min(least, left);
        continue;
      }
      worker.killedIn = worker.watched;
      processes_.Kill(worker.slot);
    }
    return static_cast<int>(least / 1'000'000) + 1;
  }

  bool IsStoppedTooLong(Worker* worker) {
    const bool wasStopped = std::exchange(worker->stopped, processes_.IsStopped(worker->slot));
    if (!worker->stopped) return false;
    if (!wasStopped) worker->stoppedFrom = clock_.now();
    return clock_.now() - worker->stoppedFrom >= kStoppedNs;
  }

  // The time that a worker has left for its file.
  std::int64_t TimeLeft(Worker* worker) {
    const Place& place = processes_.PlaceOf(worker->slot);
    const std::uint64_t begun = place.begun.load(std::memory_order_acquire);
    if (place.finished.load(std::memory_order_acquire) >= begun) return kWakeNs;
    if (worker->watched != begun) {
      worker->watched = begun;
      worker->watchedFrom = clock_.TimeOf(place.sinceNs.load(std::memory_order_relaxed));
    } else if (worker->stopped) {
      worker->watchedFrom += clock_.step();
    }
    return worker->watchedFrom + static_cast<std::int64_t>(options_.timeoutSeconds * 1e9) - clock_.now();
  }

  // False: the worker has ended.
  bool Receive(Worker* worker) {
    if (!processes_.Receive(worker->slot, &worker->received)) return false;
    std::size_t at = 0;
    FileResult& result = received_;
    for (;;) {
      const Taken taken = TakeResult(worker->received, &at, &result);
      if (taken == Taken::kNothing) break;
      if (taken == Taken::kFault) {
        Stop(result.messages);
        return true;
      }
      if (taken == Taken::kNonsense || worker->jobs.empty()) {
        processes_.Kill(worker->slot);
        return false;
      }
      const std::uint64_t number = worker->jobs.front().number;
      worker->jobs.pop_front();
      worker->alone = false;
      ++worker->answered;
      deathsAtStart_ = 0;
      Done(number, std::move(result));
      if (failed_) return true;
    }
    if (received_.out.capacity() > kReceivedKept) received_ = FileResult();
    worker->received.erase(0, at);
    std::string& received = worker->received;
    if (received.capacity() > kReceivedKept && received.size() < kReceivedKept / 4) received.shrink_to_fit();
    return true;
  }

  // Handles the end of a worker. The file that it was reading is reported, unless it was killed for another reason; its
  // unanswered jobs are given to others.
  void Bury(Worker* worker) {
    const Place& place = processes_.PlaceOf(worker->slot);
    const std::uint32_t ending = processes_.End(worker->slot);
    const std::uint64_t begun = place.begun.load(std::memory_order_acquire);
    const bool within = begun > place.finished.load(std::memory_order_acquire);
    std::deque<Job>& jobs = worker->jobs;
    if (begun == 0 && !jobs.empty()) {
      if (++deathsAtStart_ == kDeathsAtStart) Stop("workers do not start: " + WorkerProcesses::CauseOf(ending));
    } else {
      // Among the remaining jobs, those that it had started; always at least the first, so that no job is retried
      // forever.
      const std::uint64_t left = begun > worker->answered ? begun - worker->answered : 0;
      const auto tried = static_cast<std::size_t>(std::clamp<std::uint64_t>(left, jobs.empty() ? 0 : 1, jobs.size()));
      for (std::size_t i = 0; i < tried; ++i) ++jobs[i].lost;
      // It was killed for one file but may have reached the next, which is not to blame.
      const bool blamed = within && !worker->givenUp && (worker->killedIn == 0 || worker->killedIn == begun);
      if (blamed && tried != 0) jobs[tried - 1].lost = kTries;
    }
    for (Job& job : jobs) {
      if (job.lost < kTries) {
        again_.push_back(std::move(job));
      } else {
        Blame(job, *worker, ending);
      }
    }
    std::sort(again_.begin(), again_.end(), [](const Job& a, const Job& b) { return a.number < b.number; });
  }

  void Blame(const Job& job, const Worker& worker, std::uint32_t ending) {
    FileResult result;
    if (worker.killedIn != 0) {
      result.Fail(job.input.name, "timed out");
    } else {
      const std::string cause = WorkerProcesses::CauseOf(ending);
      result.Fail(job.input.name, cause);
      if (cause != kNoMemoryMessage) result.status = "crashed";
    }
    deathsAtStart_ = 0;
    Done(job.number, std::move(result));
  }

  const Options& options_;
  std::size_t count_;
  InputSource& source_;
  Report& report_;
  WorkerProcesses processes_;
  std::deque<Worker> workers_;
  RunClock clock_;
  std::int64_t nextLook_ = 0;
  std::deque<Job> again_;     // From dead workers, by number.
  std::uint64_t number_ = 0;  // Of the next input.
  bool ended_ = false;        // The source has ended.
  bool waitsForList_ = false;
  bool failed_ = false;  // The run must end.
  bool stopped_ = false;
  int deathsAtStart_ = 0;
  FileResult received_;  // Its memory is used again for the next result.
};

}  // namespace

void BeWorker(const Options& options, const WorkerSide& side) noexcept {
  OnNoMemoryToThrow([] { EndWorker(kWorkerWithoutMemory); });
  try {
    Work(options, side);
  } catch (const std::bad_alloc&) {
    EndWorker(kWorkerWithoutMemory);
  } catch (...) {
    EndWorker(kWorkerFailed);
  }
}

void RunInWorkers(const Options& options, int count, InputSource* source, Report* report) {
  Pool(options, count, source, report).Run();
}

}  // namespace lxbridge::command
