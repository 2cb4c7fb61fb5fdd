// Worker processes as the system has them: their start, their channels, waiting for several of them, their end. One
// implementation a system (worker_process_posix.cpp, worker_process_windows.cpp). Who does what is workers.cpp's.
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

inline constexpr std::size_t kMostProcesses = 2 * kMostWorkers;  // Some are leaving while their followers work.

// Where a worker is, in memory that it shares with the command: written by it, read by the command.
struct alignas(64) Place {
  std::atomic<std::uint64_t> begun;
  std::atomic<std::uint64_t> finished;
  std::atomic<std::int64_t> sinceNs;  // When the last one begun was.
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

// --- in the worker -------------------------------------------------------------------------------------------------

// What a worker has of the command, its ends of the channel as the system counts them.
struct WorkerSide {
  std::intptr_t jobs;
  std::intptr_t results;
  Place* place;
};

// At least a byte of jobs, as soon as there is one; 0: there will be none.
[[nodiscard]] std::size_t ReceiveJobs(const WorkerSide& side, char* buffer, std::size_t length);
// All of the bytes. Ends the process when nobody is left to work for.
void SendResults(const WorkerSide& side, std::string_view bytes);
[[noreturn]] void EndWorker();

// The life of a worker, in its process (workers.cpp).
[[noreturn]] void BeWorker(const Options& options, const WorkerSide& side);

// Becomes a worker in a process that was started as one, where a start does not give the command's own state along.
// First of all in main().
void BecomeWorkerIfStartedAsOne();

// --- in the command ------------------------------------------------------------------------------------------------

// Each process has a slot, from 0, which is free for another when it has been ended.
class WorkerProcesses {
 public:
  // Workers do as the options say, and get the command's standard input unless it is somebody else's.
  WorkerProcesses(const Options& options, bool withStandardInput);
  ~WorkerProcesses();  // All that were started have been ended.
  WorkerProcesses(const WorkerProcesses&) = delete;
  WorkerProcesses& operator=(const WorkerProcesses&) = delete;

  // Whether there is what all need; else none can be started.
  [[nodiscard]] bool CanStart() const;
  // A worker in the lowest free slot, of which there must be one. False: `problem` says why not.
  [[nodiscard]] bool Start(std::size_t* slot, std::string* problem);
  [[nodiscard]] const Place& PlaceOf(std::size_t slot) const;

  // Takes what can be sent now from the front of the bytes. All of it when the worker has died: receiving shows that.
  void Send(std::size_t slot, std::string* bytes);
  void EndJobs(std::size_t slot);  // Behind what has been sent.
  // Appends what is there. False: the worker has ended.
  [[nodiscard]] bool Receive(std::size_t slot, std::string* bytes);

  // What the next Wait waits for, said of every slot in use before each.
  void Watch(std::size_t slot, bool receives, bool sends);
  // Until a watched worker can be received from or sent to, something comes of the list (ByteReader's descriptor; -1:
  // of none), or the time is over. False: `problem` says why not.
  [[nodiscard]] bool Wait(int list, int milliseconds, std::string* problem);
  [[nodiscard]] bool MaySend(std::size_t slot) const;     // Where it was watched for.
  [[nodiscard]] bool MayReceive(std::size_t slot) const;  // Or it has ended.

  void Kill(std::size_t slot);
  void KillAll();
  // Closes the channel, waits for the end of the process, and tells its cause, as a message has it.
  std::string End(std::size_t slot);

 private:
  struct System;
  std::unique_ptr<System> system_;
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROCESS_H_
