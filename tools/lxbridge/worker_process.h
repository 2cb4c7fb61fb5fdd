// Worker processes as the system has them: their start, their channels, waiting for several of them, their end.
// Implemented once for each system (worker_process_posix.cpp, worker_process_windows.cpp). workers.cpp decides which
// worker does what.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROCESS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROCESS_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tools/lxbridge/options.h"

namespace lxbridge::command {

inline constexpr std::size_t kMostProcesses = kMostWorkers;

// How far a worker has come, in memory that it shares with the command: written by the worker, read by the command.
struct alignas(64) Place {
  std::atomic<std::uint64_t> begun;     // Files.
  std::atomic<std::uint64_t> finished;  // Files whose result is on its way.
  std::atomic<std::int64_t> sinceNs;    // When the last file was begun, by the steady clock.
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

// --- in the worker -------------------------------------------------------------------------------------------------

// A worker's ends of the channel, as the system counts them, and its place.
struct WorkerSide {
  std::intptr_t jobs;
  std::intptr_t results;
  Place* place;
};

// At least a byte of jobs, as soon as there is one; 0: there will be none.
[[nodiscard]] std::size_t ReceiveJobs(const WorkerSide& side, char* buffer, std::size_t length);
// Sends all of the bytes. Ends the process when nobody is left to work for.
void SendResults(const WorkerSide& side, std::string_view bytes);
// Ends this process alone: no destructors, no handlers.
[[noreturn]] void EndWorker(int status = 0);
inline constexpr int kWorkerWithoutMemory = 101;  // Exit statuses.
inline constexpr int kWorkerFailed = 102;

// The life of a worker, in its process (workers.cpp). Whatever is thrown ends in it.
[[noreturn]] void BeWorker(const Options& options, const WorkerSide& side) noexcept;

// Becomes a worker in a process that was started as one, on systems where processes are not forked. Called first in
// main().
void BecomeWorkerIfStartedAsOne();

// --- in the command ------------------------------------------------------------------------------------------------

// Each process has a slot, from 0, which is free for another when it has been ended.
class WorkerProcesses {
 public:
  // Workers do as the options say, and get the command's standard input if they may read it.
  WorkerProcesses(const Options& options, bool withStandardInput);
  ~WorkerProcesses();  // Requires: all that were started have been ended.
  WorkerProcesses(const WorkerProcesses&) = delete;
  WorkerProcesses& operator=(const WorkerProcesses&) = delete;

  // False: there is no memory to share, and none can be started.
  [[nodiscard]] bool CanStart() const;
  // Starts a worker in the lowest free slot. Requires: there is one. False: `problem` says why not.
  [[nodiscard]] bool Start(std::size_t* slot, std::string* problem);
  [[nodiscard]] const Place& PlaceOf(std::size_t slot) const;

  // Sends as much as can be sent now and removes it from the front of the bytes. All of it if the worker has died,
  // which Receive then shows.
  void Send(std::size_t slot, std::string* bytes);
  // Appends what has arrived. False: the worker has ended.
  [[nodiscard]] bool Receive(std::size_t slot, std::string* bytes);

  // Sets what the next Wait waits for. Called for every slot in use before each Wait.
  void Watch(std::size_t slot, bool receives, bool sends);
  // Waits until a watched worker can be received from or sent to, the list has something (ByteReader's descriptor; -1:
  // no list), or the time is over. False: `problem` says why not.
  [[nodiscard]] bool Wait(int list, int milliseconds, std::string* problem);
  // After Wait, for what the slot was watched for; an ended worker may be received from.
  [[nodiscard]] bool MaySend(std::size_t slot) const;
  [[nodiscard]] bool MayReceive(std::size_t slot) const;
  // Whether somebody has stopped the worker (SIGSTOP), so that it cannot run. False on systems that do not say.
  [[nodiscard]] bool IsStopped(std::size_t slot) const;

  void Kill(std::size_t slot);
  void KillAll();
  // Closes the channel and waits for the end of the process. Returns how it ended, as the system says it. Takes no
  // memory. The slot's place stays as the process left it until the next Start.
  std::uint32_t End(std::size_t slot) noexcept;
  // The message for that.
  [[nodiscard]] static std::string CauseOf(std::uint32_t ending);

 private:
  struct System;
  std::unique_ptr<System> system_;
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROCESS_H_
