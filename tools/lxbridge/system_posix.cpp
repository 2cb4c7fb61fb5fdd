// The command's side of POSIX.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#endif

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tools/lxbridge/posix_children.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

volatile sig_atomic_t writing = 0;
volatile sig_atomic_t endAt = 0;

extern "C" void EndAtSignal(int number) {
  KillChildren();
  if (writing != 0) {
    endAt = number;  // The disposition is the default again, so a second one ends the process here and now.
    return;
  }
  EndBySignal(number);
}

}  // namespace

std::atomic<pid_t> children[kMostProcesses] = {};

void KillChildren() noexcept {
  for (const std::atomic<pid_t>& child : children) {
    const pid_t id = child.load(std::memory_order_relaxed);
    if (id > 0) (void)::kill(id, SIGKILL);
  }
}

void EndBySignal(int number) noexcept {
  (void)::signal(number, SIG_DFL);
  sigset_t set;
  (void)::sigemptyset(&set);
  (void)::sigaddset(&set, number);
  (void)::raise(number);
  (void)::sigprocmask(SIG_UNBLOCK, &set, nullptr);  // Blocked while its own handler runs.
}

void EndWholeAtSignals() {
  for (const int number : kEndingSignals) {
    struct sigaction action = {}, before = {};
    action.sa_handler = EndAtSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    (void)::sigemptyset(&action.sa_mask);
    // What a parent has set to be ignored stays so (nohup, background jobs).
    if (::sigaction(number, &action, &before) == 0 && before.sa_handler == SIG_IGN) {
      (void)::sigaction(number, &before, nullptr);
    }
  }
}

void ForgetEndingSignals() {
  for (const int number : kEndingSignals) {
    struct sigaction now = {};
    if (::sigaction(number, nullptr, &now) == 0 && now.sa_handler == EndAtSignal) (void)::signal(number, SIG_DFL);
  }
}

void PrepareTerminal() {}

bool WriteStandardOutput(std::string_view text) {
  bool whole = true;
  writing = 1;
  while (!text.empty()) {
    const ssize_t done = ::write(STDOUT_FILENO, text.data(), text.size());
    if (done < 0 && errno == EINTR) continue;
    if (done < 0 && errno == EAGAIN) {  // Somebody else's descriptor may be set not to wait.
      pollfd ready = {STDOUT_FILENO, POLLOUT, 0};
      (void)::poll(&ready, 1, -1);
      continue;
    }
    if (done < 0) {
      whole = false;
      break;
    }
    text.remove_prefix(static_cast<std::size_t>(done));
  }
  const int error = errno;
  writing = 0;
  if (endAt != 0) EndBySignal(endAt);
  errno = error;
  return whole;
}

PathFacts LookAtPath(const char* path) {
  PathFacts facts;
  struct stat status = {};
  if (::stat(path, &status) != 0) return facts;
  if (S_ISDIR(status.st_mode)) {
    facts.kind = PathFacts::Kind::kFolder;
  } else if (S_ISREG(status.st_mode)) {
    facts.kind = PathFacts::Kind::kRegular;
    facts.bytes = static_cast<std::uint64_t>(status.st_size);
    facts.readable = ::faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0;
  } else {
    facts.kind = PathFacts::Kind::kOther;
  }
  return facts;
}

bool ByteReader::Open(const char* path) {
  owned_ = std::string_view(path) != "-";
  descriptor_ = owned_ ? ::open(path, O_RDONLY | O_CLOEXEC) : STDIN_FILENO;
  return descriptor_ >= 0;
}

ByteReader::~ByteReader() {
  if (owned_ && descriptor_ >= 0) (void)::close(descriptor_);
}

std::ptrdiff_t ByteReader::Read(char* buffer, std::size_t length) {
  for (;;) {
    const ssize_t got = ::read(descriptor_, buffer, length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 && errno == EAGAIN) {
      pollfd ready = {descriptor_, POLLIN, 0};
      (void)::poll(&ready, 1, -1);
      continue;
    }
    return got;
  }
}

bool ByteReader::IsReady() const {
  pollfd ready = {descriptor_, POLLIN, 0};
  return ::poll(&ready, 1, 0) != 0;  // Also where poll itself fails: Read then says why.
}

}  // namespace lxbridge::command
