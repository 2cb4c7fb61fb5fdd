// Worker processes of the operating system: starting them, their channels, waiting for several of them, ending them.
// Each system has one implementation (worker_process_posix.cpp, worker_process_windows.cpp). workers.cpp decides which
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

// The progress of a worker, in shared memory: written by the worker, read by the command.
struct alignas(64) Place {
  std::atomic<std::uint64_t> begun;     // Number of files.
  std::atomic<std::uint64_t> finished;  // Number of files whose result is being sent.
  std::atomic<std::int64_t> sinceNs;    // Start of the last file, by the steady clock.
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

// --- in the worker -------------------------------------------------------------------------------------------------

// A worker's ends of the channel, as system handles, and its place.
struct WorkerSide {
  std::intptr_t jobs;
  std::intptr_t results;
  Place* place;
};

// Reads at least a byte of jobs, as soon as there is one; 0: no more jobs.
[[nodiscard]] std::size_t ReceiveJobs(const WorkerSide& side, char* buffer, std::size_t length);
// Sends all bytes. Ends the process if the command is gone.
void SendResults(const WorkerSide& side, std::string_view bytes);
// Ends only this process: no destructors, no handlers.
[[noreturn]] void EndWorker(int status = 0);
inline constexpr int kWorkerWithoutMemory = 101;  // Exit statuses.
inline constexpr int kWorkerFailed = 102;

// The main function of a worker process (workers.cpp). Exceptions end the process.
[[noreturn]] void BeWorker(const Options& options, const WorkerSide& side) noexcept;

// Becomes a worker if this process was started as one, on systems that do not fork. Called first in main().
void BecomeWorkerIfStartedAsOne();

// --- in the command ------------------------------------------------------------------------------------------------

// Each process has a slot, numbered from 0, which becomes free when the process has been ended.
class WorkerProcesses {
 public:
  // Workers follow the options, and get the command's standard input if they may read it.
  WorkerProcesses(const Options& options, bool withStandardInput);
  ~WorkerProcesses();  // Requires: all started workers have been ended.
  WorkerProcesses(const WorkerProcesses&) = delete;
  WorkerProcesses& operator=(const WorkerProcesses&) = delete;

  // False: there is no shared memory, so no worker can be started.
  [[nodiscard]] bool CanStart() const;
  // Starts a worker in the lowest free slot. Requires: there is one. False: `problem` tells why.
  [[nodiscard]] bool Start(std::size_t* slot, std::string* problem);
  [[nodiscard]] const Place& PlaceOf(std::size_t slot) const;

  // Sends as many bytes as possible without waiting, and removes them from the front. If the worker has died, removes
  // all; Receive then reports it.
  void Send(std::size_t slot, std::string* bytes);
  // Appends the bytes that have arrived. False: the worker has ended.
  [[nodiscard]] bool Receive(std::size_t slot, std::string* bytes);

  // Sets the events that the next Wait waits for. Called for every used slot before each Wait.
  void Watch(std::size_t slot, bool receives, bool sends);
  // Waits until a watched worker can be received from or sent to, the list has data (ByteReader's descriptor; -1: no
  // list), or the time is over. False: `problem` tells why.
  [[nodiscard]] bool Wait(int list, int milliseconds, std::string* problem);
  // After Wait, for a watched event; receiving from an ended worker is also allowed.
  [[nodiscard]] bool MaySend(std::size_t slot) const;
  [[nodiscard]] bool MayReceive(std::size_t slot) const;
  // Whether the worker was stopped (SIGSTOP), so that it cannot run. Always false on systems that do not tell.
  [[nodiscard]] bool IsStopped(std::size_t slot) const;

  void Kill(std::size_t slot);
  void KillAll();
  // Closes the channel and waits for the process to end. Returns the system's code for how it ended. Allocates no
  // memory. The slot's place keeps its contents until the next Start.
  std::uint32_t End(std::size_t slot) noexcept;
  // The message for such a code.
  [[nodiscard]] static std::string CauseOf(std::uint32_t ending);

 private:
  struct System;
  std::unique_ptr<System> system_;
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROCESS_H_
