// Worker processes on POSIX: forked before the library is started, each with a socket for jobs and results.
#include "tools/lxbridge/worker_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#if __has_include(<sys/prctl.h>)
#include <sys/prctl.h>
#endif
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

#include "tools/lxbridge/output.h"
#include "tools/lxbridge/posix_children.h"

namespace lxbridge::command {

namespace {

constexpr std::size_t kSocketBlock = 128 * 1024;
constexpr std::size_t kPlacesSize = kMostProcesses * sizeof(Place);

bool CannotStart(const char* what, std::string* problem) {
  problem->assign("cannot start a worker: ").append(what);
  return false;
}

// A worker that reads or sends notices the end of the command by itself, but not one whose read of a file stalls.
void EndWith([[maybe_unused]] pid_t command) {
#ifdef PR_SET_PDEATHSIG
  (void)::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != command) EndWorker();  // The command ended before the call.
#endif
}

}  // namespace

// --- in the worker -------------------------------------------------------------------------------------------------

std::size_t ReceiveJobs(const WorkerSide& side, char* buffer, std::size_t length) {
  for (;;) {
    const ssize_t got = ::recv(static_cast<int>(side.jobs), buffer, length, 0);
    if (got < 0 && errno == EINTR) continue;
    return got < 0 ? 0 : static_cast<std::size_t>(got);
  }
}

void SendResults(const WorkerSide& side, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t done = ::send(static_cast<int>(side.results), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) EndWorker();
    bytes.remove_prefix(static_cast<std::size_t>(done));
  }
}

void EndWorker(int status) {
  ::_exit(status);
}

void BecomeWorkerIfStartedAsOne() {}

// --- in the command ------------------------------------------------------------------------------------------------

// The process ids are in `children`.
struct WorkerProcesses::System {
  const Options& options;
  const bool withStandardInput;
  Place* places = nullptr;
  int sockets[kMostProcesses];
  pollfd polled[kMostProcesses + 1];  // By slot, up to `used`; then the list.
  std::size_t used = 0;
  std::string block;

  System(const Options& given, bool withInput) : options(given), withStandardInput(withInput) {
    std::fill(std::begin(sockets), std::end(sockets), -1);
    std::fill(std::begin(polled), std::end(polled), pollfd{-1, 0, 0});
    void* shared = ::mmap(nullptr, kPlacesSize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared != MAP_FAILED) places = static_cast<Place*>(shared);
    block.resize(kSocketBlock);
  }
};

WorkerProcesses::WorkerProcesses(const Options& options, bool withStandardInput)
    : system_(std::make_unique<System>(options, withStandardInput)) {}

WorkerProcesses::~WorkerProcesses() {
  if (system_->places != nullptr) (void)::munmap(system_->places, kPlacesSize);
}

bool WorkerProcesses::CanStart() const {
  return system_->places != nullptr;
}

bool WorkerProcesses::Start(std::size_t* slot, std::string* problem) {
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) return CannotStart(std::strerror(errno), problem);
  *slot = 0;
  while (system_->sockets[*slot] >= 0) ++*slot;
  Place* place = new (&system_->places[*slot]) Place{};
  // Signals are blocked until the process is entered, and in the new process until its handlers are removed.
  sigset_t all, before;
  (void)::sigfillset(&all);
  (void)::sigprocmask(SIG_SETMASK, &all, &before);
  const pid_t command = ::getpid();
  const pid_t id = ::fork();
  if (id == 0) {
    ForgetEndingSignals();
    // The command gets the interrupt and ends its workers.
    (void)::signal(SIGINT, SIG_IGN);
    EndWith(command);
    (void)::sigprocmask(SIG_SETMASK, &before, nullptr);
    (void)::close(ends[0]);
    for (const int other : system_->sockets) {
      if (other >= 0) (void)::close(other);
    }
    if (!system_->withStandardInput) {
      const int nothing = ::open("/dev/null", O_RDONLY);
      if (nothing >= 0) (void)::dup2(nothing, STDIN_FILENO);
    }
    BeWorker(system_->options, {ends[1], ends[1], place});
  }
  const int error = errno;
  if (id > 0) children[*slot].store(id, std::memory_order_relaxed);
  (void)::sigprocmask(SIG_SETMASK, &before, nullptr);
  (void)::close(ends[1]);
  if (id < 0) {
    (void)::close(ends[0]);
    return CannotStart(std::strerror(error), problem);
  }
  system_->sockets[*slot] = ends[0];
  system_->used = std::max(system_->used, *slot + 1);
  return true;
}

const Place& WorkerProcesses::PlaceOf(std::size_t slot) const {
  return system_->places[slot];
}

void WorkerProcesses::Send(std::size_t slot, std::string* bytes) {
  std::size_t sent = 0;
  while (sent < bytes->size()) {
    const ssize_t done =
        ::send(system_->sockets[slot], bytes->data() + sent, bytes->size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) {
      if (errno != EAGAIN && errno != EWOULDBLOCK) sent = bytes->size();
      break;
    }
    sent += static_cast<std::size_t>(done);
  }
  bytes->erase(0, sent);
}

bool WorkerProcesses::Receive(std::size_t slot, std::string* bytes) {
  std::string& block = system_->block;
  const ssize_t got = ::recv(system_->sockets[slot], block.data(), block.size(), MSG_DONTWAIT);
  if (got < 0) return errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK;
  bytes->append(block.data(), static_cast<std::size_t>(got));
  return got != 0;
}

void WorkerProcesses::Watch(std::size_t slot, bool receives, bool sends) {
  const int events = (receives ? POLLIN : 0) | (sends ? POLLOUT : 0);
  system_->polled[slot] = {events != 0 ? system_->sockets[slot] : -1, static_cast<short>(events), 0};
}

bool WorkerProcesses::Wait(int list, int milliseconds, std::string* problem) {
  std::size_t count = system_->used;
  if (list >= 0) system_->polled[count++] = {list, POLLIN, 0};
  if (::poll(system_->polled, static_cast<nfds_t>(count), milliseconds) >= 0 || errno == EINTR) return true;
  problem->assign("cannot wait for workers: ").append(std::strerror(errno));
  return false;
}

bool WorkerProcesses::MaySend(std::size_t slot) const {
  return (system_->polled[slot].revents & POLLOUT) != 0;
}

bool WorkerProcesses::MayReceive(std::size_t slot) const {
  return (system_->polled[slot].revents & (POLLIN | POLLHUP | POLLERR)) != 0;
}

bool WorkerProcesses::IsStopped(std::size_t slot) const {
  siginfo_t info = {};
  const auto id = static_cast<id_t>(children[slot].load(std::memory_order_relaxed));
  return ::waitid(P_PID, id, &info, WSTOPPED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0;
}

void WorkerProcesses::Kill(std::size_t slot) {
  (void)::kill(children[slot].load(std::memory_order_relaxed), SIGKILL);
}

void WorkerProcesses::KillAll() {
  KillChildren();
}

std::uint32_t WorkerProcesses::End(std::size_t slot) noexcept {
  (void)::close(std::exchange(system_->sockets[slot], -1));
  system_->polled[slot].fd = -1;
  const pid_t id = children[slot].exchange(0, std::memory_order_relaxed);
  int status = 0;
  while (::waitpid(id, &status, 0) < 0 && errno == EINTR) {
  }
  return static_cast<std::uint32_t>(status);
}

std::string WorkerProcesses::CauseOf(std::uint32_t ending) {
  const auto status = static_cast<int>(ending);
  if (WIFSIGNALED(status)) return "crashed (signal " + std::to_string(WTERMSIG(status)) + ")";
  if (WEXITSTATUS(status) == kWorkerWithoutMemory) return kNoMemoryMessage;
  return "crashed (exit status " + std::to_string(WEXITSTATUS(status)) + ")";
}

}  // namespace lxbridge::command
