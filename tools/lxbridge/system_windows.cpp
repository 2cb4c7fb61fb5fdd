// The command's side of Windows. Results leave by the C runtime.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

std::filesystem::path NativePath(const char* path) {
  return std::filesystem::path(reinterpret_cast<const char8_t*>(path));
}

std::atomic<bool> writing = false;
std::atomic<bool> endsAfterWrite = false;

void EndAsInterrupted() {
  (void)TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_CONTROL_C_EXIT));
}

// In a thread that the system starts for it. The worker processes end with the command.
BOOL WINAPI EndAtEvent(DWORD event) {
  if (endsAfterWrite.exchange(true) || !writing) EndAsInterrupted();
  // When the console closes or the session ends, the system ends the process as soon as it has this answer.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

void EndWholeAtSignals() {
  (void)SetConsoleCtrlHandler(EndAtEvent, TRUE);
}

void PrepareTerminal() {
  const HANDLE terminal = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(terminal, &mode)) (void)SetConsoleMode(terminal, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool WriteStandardOutput(std::string_view text) {
  // Whoever of this thread and the event's comes second sees what the other has said.
  writing = true;
  if (endsAfterWrite) EndAsInterrupted();
  const bool whole = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  writing = false;
  if (endsAfterWrite) EndAsInterrupted();
  return whole;
}

PathFacts LookAtPath(const char* path) {
  PathFacts facts;
  std::error_code error;
  const std::filesystem::path native = NativePath(path);
  const std::filesystem::file_status status = std::filesystem::status(native, error);
  if (std::filesystem::is_directory(status)) {
    facts.kind = PathFacts::Kind::kFolder;
  } else if (std::filesystem::is_regular_file(status)) {
    facts.kind = PathFacts::Kind::kRegular;
    const std::uintmax_t size = std::filesystem::file_size(native, error);
    facts.bytes = error ? 0 : size;
    // Rights are lists there, which only opening the file evaluates.
    std::FILE* file = _wfopen(native.c_str(), L"rb");
    facts.readable = file != nullptr;
    if (file != nullptr) (void)std::fclose(file);
  } else if (std::filesystem::exists(status)) {
    facts.kind = PathFacts::Kind::kOther;
  }
  return facts;
}

// What of a pipe or a console is read by a thread of its own, a block ahead. It lives as long as the process does: a
// read that waits cannot be called off.
struct ByteReader::Ahead {
  const HANDLE source;
  HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);    // The block has something, or it is the end.
  HANDLE wanted = CreateEventW(nullptr, FALSE, FALSE, nullptr);  // It is empty.
  DWORD from = 0, to = 0;
  bool failed = false;
  char block[64 * 1024];

  explicit Ahead(HANDLE given) : source(given) {}

  static DWORD WINAPI Run(void* given) {
    auto* ahead = static_cast<Ahead*>(given);
    do {
      ahead->from = ahead->to = 0;
      if (!ReadFile(ahead->source, ahead->block, sizeof ahead->block, &ahead->to, nullptr)) {
        ahead->to = 0;
        ahead->failed = GetLastError() != ERROR_BROKEN_PIPE;
      }
      const bool end = ahead->to == 0;
      (void)SetEvent(ahead->ready);
      if (end) return 0;
    } while (WaitForSingleObject(ahead->wanted, INFINITE) == WAIT_OBJECT_0);
    return 0;
  }
};

bool ByteReader::Open(const char* path) {
  owned_ = std::string_view(path) != "-";
  descriptor_ = owned_ ? _wopen(NativePath(path).c_str(), _O_RDONLY | _O_BINARY) : 0;
  if (descriptor_ < 0) return false;
  if (!owned_) (void)_setmode(0, _O_BINARY);
  // The C runtime gives a handle as a number.
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor_));  // NOLINT(performance-no-int-to-ptr)
  if (GetFileType(handle) == FILE_TYPE_DISK) return true;
  ahead_ = new Ahead(handle);
  const HANDLE thread = CreateThread(nullptr, 0, Ahead::Run, ahead_, 0, nullptr);
  if (thread == nullptr) {
    errno = EAGAIN;
    return false;
  }
  (void)CloseHandle(thread);
  owned_ = false;
  descriptor_ = HandleToLong(ahead_->ready);
  return true;
}

ByteReader::~ByteReader() {
  if (owned_ && descriptor_ >= 0) (void)_close(descriptor_);
}

std::ptrdiff_t ByteReader::Read(char* buffer, std::size_t length) {
  if (ahead_ == nullptr) return _read(descriptor_, buffer, static_cast<unsigned>(length));
  (void)WaitForSingleObject(ahead_->ready, INFINITE);
  if (ahead_->failed) {
    errno = EIO;
    return -1;
  }
  const std::size_t count = std::min<std::size_t>(length, ahead_->to - ahead_->from);
  std::memcpy(buffer, ahead_->block + ahead_->from, count);
  ahead_->from += static_cast<DWORD>(count);
  if (count != 0 && ahead_->from == ahead_->to) {
    (void)ResetEvent(ahead_->ready);
    (void)SetEvent(ahead_->wanted);
  }
  return static_cast<std::ptrdiff_t>(count);
}

bool ByteReader::IsReady() const {
  return ahead_ == nullptr || WaitForSingleObject(ahead_->ready, 0) == WAIT_OBJECT_0;
}

}  // namespace lxbridge::command
