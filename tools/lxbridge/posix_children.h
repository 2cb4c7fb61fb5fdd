// The worker processes, for signal handlers. POSIX; shared by system_posix.cpp and worker_process_posix.cpp.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_POSIX_CHILDREN_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_POSIX_CHILDREN_H_

#include <sys/types.h>

#include <atomic>

#include "tools/lxbridge/worker_process.h"

namespace lxbridge::command {

// The process of each worker, 0 for a free slot. A process is entered while signals are blocked and removed before it
// is waited for, so a handler never kills an unrelated process that has reused the number.
extern std::atomic<pid_t> children[kMostProcesses];
static_assert(std::atomic<pid_t>::is_always_lock_free);

void KillChildren() noexcept;           // Safe in a signal handler, like the next one.
void EndBySignal(int number) noexcept;  // With the signal's default action.
void ForgetEndingSignals();             // In a worker.

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_POSIX_CHILDREN_H_
