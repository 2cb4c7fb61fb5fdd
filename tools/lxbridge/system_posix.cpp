// POSIX implementation of system.h.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#endif

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

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
    endAt = number;  // The signal has its default action again, so a second one ends the process immediately.
    return;
  }
  EndBySignal(number);
}

// Descriptors from a parent may be non-blocking.
void WaitFor(int descriptor, short events) {
  pollfd ready = {descriptor, events, 0};
  (void)::poll(&ready, 1, -1);
}

bool WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t done = ::write(descriptor, text.data(), text.size());
    if (done >= 0) {
      text.remove_prefix(static_cast<std::size_t>(done));
    } else if (errno == EAGAIN) {
      WaitFor(descriptor, POLLOUT);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

// Reads at least a byte; 0 at the end, -1 for an error.
std::ptrdiff_t ReadSome(int descriptor, char* buffer, std::size_t length) {
  for (;;) {
    const ssize_t got = ::read(descriptor, buffer, length);
    if (got >= 0 || (errno != EINTR && errno != EAGAIN)) return got;
    if (errno == EAGAIN) WaitFor(descriptor, POLLIN);
  }
}

// In the folder for temporary files, or in memory if there is no such folder. -1: see errno.
int OpenUnnamedFile() {
  const char* folder = std::getenv("TMPDIR");
  if (folder == nullptr || *folder == '\0') folder = "/tmp";
#ifdef O_TMPFILE
  const int file = ::open(folder, O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (file >= 0) return file;
#endif
  std::string name = std::string(folder) + "/lxbridge-XXXXXX";
  const int named = ::mkostemp(name.data(), O_CLOEXEC);
  if (named >= 0) (void)::unlink(name.c_str());
#ifdef MFD_CLOEXEC
  if (named < 0) return ::memfd_create("standard input", MFD_CLOEXEC);
#endif
  return named;
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
    // Signals that a parent has set to be ignored stay ignored (nohup, background jobs).
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
  writing = 1;
  const bool whole = WriteAll(STDOUT_FILENO, text);
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
  } else {
    facts.kind = PathFacts::Kind::kOther;
  }
  return facts;
}

void OpenClosedStandardStreams() {
  // Each open takes the lowest free descriptor, in the wrong direction, so that using it is an error.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF) continue;
    (void)!::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

bool StandardOutputCanBeWritten() {
  const int flags = ::fcntl(STDOUT_FILENO, F_GETFL);
  if (flags >= 0 && (flags & O_ACCMODE) == O_RDONLY) errno = EBADF;
  return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY;
}

bool LoadTimeZone() {
  errno = 0;
  ::tzset();
  return errno != ENOMEM && errno != EMFILE && errno != ENFILE && errno != EIO;
}

StandardInput::~StandardInput() {
  if (source_ >= 0) (void)::close(source_);
}

void StandardInput::Prepare() {
  if (::lseek(STDIN_FILENO, 0, SEEK_CUR) >= 0 || errno != ESPIPE) return;
  const int file = OpenUnnamedFile();
  if (file < 0) {
    problem_ = errno;
    return;
  }
  source_ = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (source_ < 0 || ::dup2(file, STDIN_FILENO) < 0) problem_ = errno;
  (void)::close(file);
}

std::ptrdiff_t StandardInput::ReadSource(char* buffer, std::size_t length) const {
  return ReadSome(source_, buffer, length);
}

bool StandardInput::WriteCopy(std::string_view bytes) {
  return WriteAll(STDIN_FILENO, bytes);
}

bool StandardInput::RewindCopy() {
  return ::lseek(STDIN_FILENO, 0, SEEK_SET) == 0;
}

struct FolderReader::State {
  DIR* folder;
};

FolderReader::~FolderReader() {
  if (state_ == nullptr) return;
  (void)::closedir(state_->folder);
  delete state_;
}

FolderReader::FolderReader(FolderReader&& other) noexcept : state_(std::exchange(other.state_, nullptr)) {}

FolderReader& FolderReader::operator=(FolderReader&& other) noexcept {
  std::swap(state_, other.state_);
  return *this;
}

bool FolderReader::Open(const std::string& path, std::string* problem) {
  state_ = new State{::opendir(path.c_str())};
  if (state_->folder != nullptr) return true;
  problem->assign(std::strerror(errno));
  delete std::exchange(state_, nullptr);
  return false;
}

bool FolderReader::Next(std::string* name, Kind* kind, std::string* problem) {
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(state_->folder);
    if (entry == nullptr) {
      if (errno != 0) problem->assign(std::strerror(errno));
      return false;
    }
    const std::string_view found = entry->d_name;
    if (found == "." || found == "..") continue;
    mode_t type = DTTOIF(entry->d_type);
    if (entry->d_type == DT_UNKNOWN) {  // Some file systems do not tell.
      struct stat status = {};
      const bool gone = ::fstatat(::dirfd(state_->folder), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0;
      type = gone ? S_IFREG : status.st_mode;
    }
    *kind = S_ISDIR(type) ? Kind::kFolder : S_ISREG(type) ? Kind::kFile : Kind::kOther;
    name->assign(found);
    return true;
  }
}

void TrimListEntry(bool, std::string*) {}

void AppendToPath(std::string_view name, std::string* path) {
  if (!path->empty() && path->back() != '/') path->push_back('/');
  path->append(name);
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
  return ReadSome(descriptor_, buffer, length);
}

bool ByteReader::IsReady() const {
  pollfd ready = {descriptor_, POLLIN, 0};
  return ::poll(&ready, 1, 0) != 0;  // If poll itself fails, Read reports it.
}

}  // namespace lxbridge::command
