// Worker processes: each is given some jobs ahead and answers in their order, several results in one write where they
// come fast; a few words of shared memory tell which file it is at. When it dies, that one is reported, and the others
// that it has not answered are done again by another.
#include "tools/lxbridge/workers.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <memory>
#include <string>
#include <utility>

#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/worker_process.h"
#include "tools/lxbridge/worker_protocol.h"

namespace lxbridge::command {

namespace {

// Jobs that a worker holds: given as many at once as it does in so long, and so many at most, when it has no more than
// that left. So quick files cost few calls of the system, and slow ones do not wait in one worker's queue while another
// has nothing to do.
constexpr std::int64_t kJobsAtOnceNs = 5'000'000;
constexpr std::size_t kJobsAtOnce = 64;
// A worker is followed by a fresh one after so many files: what packets of strangers leave behind in it, as the
// namespaces that they register for the life of a process, does not add up. The first thousand files of a life cost a
// tenth more each than the rest, so lives are long.
constexpr std::uint64_t kJobsOfALife = 16384;
// Results that wait for an earlier file: so many files ahead of it, and so many bytes. Beyond, nothing more is read of
// the workers but of the one that holds the earliest.
constexpr std::uint64_t kMostAhead = 8192;
constexpr std::size_t kMostHeldBytes = std::size_t{8} << 20;
constexpr std::size_t kReceivedKept = 512 * 1024;  // Of memory, by a worker's received bytes when they are few.
constexpr std::size_t kJobBlock = 16 * 1024;
constexpr std::size_t kResultBlock = 64 * 1024;
// Results are gathered until this long after the first, looked at after each file; the first few go at once.
constexpr std::int64_t kResultDelayNs = 10'000'000;
constexpr int kResultsAtOnce = 16;
constexpr int kWakeMs = 200;  // For the progress.
constexpr int kDeathsAtStart = 3;

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
    result->Fail(input.name, error.what());
    result->status = "failed";
  }
}

// --- in the command ------------------------------------------------------------------------------------------------

struct Job {
  std::uint64_t number;
  Input input;
};

struct Worker {
  std::size_t slot = 0;  // Of its process.
  std::deque<Job> jobs;  // Given and not answered.
  std::uint64_t given = 0;
  std::uint64_t answered = 0;
  std::int64_t startedNs = NowNs();
  bool leaving = false;        // Gets no more jobs and ends when it has done those it has.
  std::uint64_t killedIn = 0;  // It was killed for taking too long in its file of that number, from 1.
  std::string toSend;
  std::string received;
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
    stopped_ = true;  // Until the end is reached, leaving means to stop.
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

  void Stop(const std::string& what) {
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
      // At once and to anybody: it may be what all results wait for.
      Worker* worker = StartOrFind(true);
      if (worker == nullptr) return;
      Give(worker, std::move(again_.front()));
      again_.pop_front();
      Send(worker);
    }
    while (!failed_ && MayGoOn()) {
      Worker* worker = StartOrFind(false);
      if (worker == nullptr) return;
      const std::size_t until = worker->jobs.size() + JobsAtOnce(*worker);
      while (worker->jobs.size() < until && MayGoOn()) {
        if (!GiveNext(worker)) break;
        if (failed_) return;
      }
      Send(worker);
    }
  }

  bool MayGoOn() const {
    if (ended_ || waitsForList_) return false;
    return options_.unordered || (number_ - report_.next() < kMostAhead && report_.heldBytes() < kMostHeldBytes);
  }

  // False: the worker has been given up for these.
  bool GiveNext(Worker* worker) {
    Input input;
    switch (source_.Take(false, &input)) {
      case InputSource::Next::kEnd:
        ended_ = true;
        return true;
      case InputSource::Next::kNotYet:
        waitsForList_ = true;
        return true;
      case InputSource::Next::kInput:
        break;
    }
    if (!input.problem.empty()) {
      FileResult result;
      result.Fail(input.name, input.problem);
      result.status = "failed";
      Done(number_++, std::move(result));
      return true;
    }
    Worker* taker = worker;
    if (input.name == "-") {
      // Standard input's position belongs to all workers, so one of them at a time has to do with it.
      for (Worker& other : workers_) {
        if (std::any_of(other.jobs.begin(), other.jobs.end(), [](const Job& job) { return job.input.name == "-"; })) {
          taker = &other;
        }
      }
    }
    Give(taker, {number_++, std::move(input)});
    if (taker != worker) Send(taker);
    return !worker->leaving;
  }

  void Give(Worker* worker, Job job) {
    AppendJob(job.input, &worker->toSend);
    worker->jobs.push_back(std::move(job));
    if (++worker->given >= kJobsOfALife) worker->leaving = true;
  }

  void Send(Worker* worker) {
    processes_.Send(worker->slot, &worker->toSend);
    if (worker->leaving && worker->toSend.empty()) processes_.EndJobs(worker->slot);
  }

  // --- workers

  // The worker with the fewest jobs, a new one when all that there are have some; null: all have enough.
  Worker* StartOrFind(bool urgent) {
    Worker* least = nullptr;
    std::size_t staying = 0;
    for (Worker& worker : workers_) {
      if (worker.leaving) continue;
      ++staying;
      if (least == nullptr || worker.jobs.size() < least->jobs.size()) least = &worker;
    }
    if ((least == nullptr || !least->jobs.empty()) && staying < count_ && workers_.size() < kMostProcesses) {
      if (Worker* started = Start()) return started;
      if (failed_) return nullptr;
    }
    if (least == nullptr) return nullptr;
    return urgent || least->jobs.size() <= JobsAtOnce(*least) ? least : nullptr;
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
      count_ = workers_.size();  // The others do it.
    }
    return nullptr;
  }

  // --- results

  bool MayRead(const Worker& worker) const {
    if (options_.unordered || report_.heldBytes() < kMostHeldBytes) return true;
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

  // Kills what has taken too long; for how long to wait for the rest, in milliseconds.
  int EndLate() {
    if (options_.timeoutSeconds <= 0) return kWakeMs;
    const auto limit = static_cast<std::int64_t>(options_.timeoutSeconds * 1e9);
    const std::int64_t now = NowNs();
    std::int64_t least = std::int64_t{kWakeMs} * 1'000'000;
    for (Worker& worker : workers_) {
      const Place& place = processes_.PlaceOf(worker.slot);
      const std::uint64_t begun = place.begun.load(std::memory_order_acquire);
      if (worker.killedIn != 0 || place.finished.load(std::memory_order_acquire) >= begun) continue;
      const std::int64_t left = place.sinceNs.load(std::memory_order_relaxed) + limit - now;
      if (left > 0) {
        least = std::min(least, left);
        continue;
      }
      worker.killedIn = begun;
      processes_.Kill(worker.slot);
    }
    return static_cast<int>(least / 1'000'000) + 1;
  }

  // False: it has ended.
  bool Receive(Worker* worker) {
    if (!processes_.Receive(worker->slot, &worker->received)) return false;
    std::size_t at = 0;
    for (;;) {
      FileResult result;
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
      ++worker->answered;
      deathsAtStart_ = 0;
      Done(number, std::move(result));
      if (failed_) return true;
    }
    worker->received.erase(0, at);
    std::string& received = worker->received;
    if (received.capacity() > kReceivedKept && received.size() < kReceivedKept / 4) received.shrink_to_fit();
    return true;
  }

  // A worker has ended: what it was at is lost, what it had not come to is done again.
  void Bury(Worker* worker) {
    const Place& place = processes_.PlaceOf(worker->slot);
    const std::string cause = processes_.End(worker->slot);
    const std::uint64_t begun = place.begun.load(std::memory_order_acquire);
    const bool within = begun > place.finished.load(std::memory_order_acquire);
    // Killed for its last file, it may have come to the next one meanwhile, which has done nothing wrong.
    const bool blamed = within && (worker->killedIn == 0 || worker->killedIn == begun);
    const std::uint64_t index = begun - 1 - worker->answered;
    if (blamed && begun > worker->answered && index < worker->jobs.size()) {
      const auto at = worker->jobs.begin() + static_cast<std::ptrdiff_t>(index);
      FileResult result;
      result.Fail(at->input.name, worker->killedIn != 0 ? "timed out" : cause);
      if (worker->killedIn == 0) result.status = "crashed";
      const std::uint64_t number = at->number;
      worker->jobs.erase(at);
      deathsAtStart_ = 0;
      Done(number, std::move(result));
    } else if (begun == 0 && !worker->jobs.empty() && ++deathsAtStart_ == kDeathsAtStart) {
      Stop("workers do not start: " + cause);
    }
    for (Job& job : worker->jobs) again_.push_back(std::move(job));
    std::sort(again_.begin(), again_.end(), [](const Job& a, const Job& b) { return a.number < b.number; });
  }

  const Options& options_;
  std::size_t count_;
  InputSource& source_;
  Report& report_;
  WorkerProcesses processes_;
  std::deque<Worker> workers_;
  std::deque<Job> again_;     // Of workers that have died, by number.
  std::uint64_t number_ = 0;  // Of the next input.
  bool ended_ = false;        // The source has.
  bool waitsForList_ = false;
  bool failed_ = false;  // All is to end.
  bool stopped_ = false;
  int deathsAtStart_ = 0;
};

}  // namespace

void BeWorker(const Options& options, const WorkerSide& side) {
  std::string out;
  std::unique_ptr<FileWork> work;
  try {
    work = MakeWork(options);
  } catch (const std::exception& error) {
    AppendFault(error.what(), &out);
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

void RunInWorkers(const Options& options, int count, InputSource* source, Report* report) {
  Pool(options, count, source, report).Run();
}

}  // namespace lxbridge::command
