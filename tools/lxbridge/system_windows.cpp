// Windows implementation of system.h. Results are written through the C runtime.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>

#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

// Longer paths need the extended-length form; folder names leave space for a name of 8.3.
constexpr std::size_t kLongestPlainPath = 247;

bool outputWasClosed = false;

bool IsOpen(HANDLE handle) {
  return handle != nullptr && handle != INVALID_HANDLE_VALUE;
}

// The C runtime returns a handle as a number, and -2 for a standard stream without one.
HANDLE HandleOf(int descriptor) {
  const std::intptr_t number = _get_osfhandle(descriptor);
  return number < 0 ? INVALID_HANDLE_VALUE : reinterpret_cast<HANDLE>(number);  // NOLINT(performance-no-int-to-ptr)
}

// Bytes that are not UTF-8 become U+FFFD, so that no such file is found.
std::wstring WideOf(std::string_view text) {
  const auto length = static_cast<int>(text.size());
  std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0)), L'\0');
  (void)MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

// Units that are not UTF-16 also become U+FFFD.
std::string Utf8Of(std::wstring_view wide) {
  const auto length = static_cast<int>(wide.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(size), '\0');
  (void)WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, text.data(), size, nullptr, nullptr);
  return text;
}

std::wstring WidePath(const char* path) {
  std::wstring wide = WideOf(path);
  if (wide.size() <= kLongestPlainPath || wide.starts_with(L"\\\\?\\")) return wide;
  std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  if (full.starts_with(L"\\\\")) return L"\\\\?\\UNC" + full.substr(1);
  return L"\\\\?\\" + full;
}

// A file that is deleted when closed; workers inherit it as their standard input.
HANDLE OpenUnnamedFile() {
  wchar_t folder[MAX_PATH + 1], name[MAX_PATH + 1];
  if (GetTempPathW(MAX_PATH + 1, folder) == 0 || GetTempFileNameW(folder, L"lxb", 0, name) == 0) {
    return INVALID_HANDLE_VALUE;
  }
  return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                     nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

std::atomic<bool> writing = false;
std::atomic<bool> endsAfterWrite = false;

void EndAsInterrupted() {
  (void)TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_CONTROL_C_EXIT));
}

// Runs in a thread that the system starts. The worker processes end with the command.
BOOL WINAPI EndAtEvent(DWORD event) {
  if (endsAfterWrite.exchange(true) || !writing) EndAsInterrupted();
  // If the console closes or the session ends, the system ends the process as soon as this returns.
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
  // Whichever thread comes second, this one or the event's, sees the other's flag.
  writing = true;
  if (endsAfterWrite) EndAsInterrupted();
  const bool whole = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  writing = false;
  if (endsAfterWrite) EndAsInterrupted();
  return whole;
}

PathFacts LookAtPath(const char* path) {
  PathFacts facts;
  const std::wstring wide = WidePath(path);
  WIN32_FILE_ATTRIBUTE_DATA found = {};
  if (!GetFileAttributesExW(wide.c_str(), GetFileExInfoStandard, &found)) return facts;
  if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    facts.kind = PathFacts::Kind::kFolder;
    return facts;
  }
  // Devices are only recognised after opening.
  const HANDLE file = CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, 0, nullptr);
  const bool regular = !IsOpen(file) || GetFileType(file) == FILE_TYPE_DISK;
  if (IsOpen(file)) (void)CloseHandle(file);
  facts.kind = regular ? PathFacts::Kind::kRegular : PathFacts::Kind::kOther;
  if (regular) facts.bytes = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
  return facts;
}

void OpenClosedStandardStreams() {
  // Each open takes the lowest free descriptor, in the wrong direction, so that using it is an error.
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (IsOpen(HandleOf(descriptor))) continue;
    if (descriptor == 1) outputWasClosed = true;
    (void)_open("NUL", descriptor == 0 ? _O_WRONLY : _O_RDONLY);
  }
}

bool StandardOutputCanBeWritten() {
  if (outputWasClosed) errno = EBADF;
  return !outputWasClosed;
}

bool LoadTimeZone() {
  return true;  // The system has already loaded it.
}

StandardInput::~StandardInput() {
  if (source_ >= 0) (void)_close(source_);
}

void StandardInput::Prepare() {
  const HANDLE input = HandleOf(0);
  if (!IsOpen(input) || GetFileType(input) == FILE_TYPE_DISK) return;
  const HANDLE file = OpenUnnamedFile();
  const int descriptor =
      file == INVALID_HANDLE_VALUE ? -1 : _open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_RDWR | _O_BINARY);
  if (descriptor < 0) {
    problem_ = ENOSPC;
    return;
  }
  source_ = _dup(0);
  if (source_ < 0 || _dup2(descriptor, 0) < 0) problem_ = errno;
  (void)_close(descriptor);
  (void)_setmode(source_, _O_BINARY);
  (void)_setmode(0, _O_BINARY);
  (void)SetStdHandle(STD_INPUT_HANDLE, HandleOf(0));
}

std::ptrdiff_t StandardInput::ReadSource(char* buffer, std::size_t length) const {
  return _read(source_, buffer, static_cast<unsigned>(length));
}

bool StandardInput::WriteCopy(std::string_view bytes) {
  return _write(0, bytes.data(), static_cast<unsigned>(bytes.size())) == static_cast<int>(bytes.size());
}

bool StandardInput::RewindCopy() {
  return _lseeki64(0, 0, SEEK_SET) == 0;
}

struct FolderReader::State {
  HANDLE search;
  WIN32_FIND_DATAW found;
  bool isNext;  // `found` has been read but not returned.
};

FolderReader::~FolderReader() {
  if (state_ == nullptr) return;
  (void)FindClose(state_->search);
  delete state_;
}

FolderReader::FolderReader(FolderReader&& other) noexcept : state_(std::exchange(other.state_, nullptr)) {}

FolderReader& FolderReader::operator=(FolderReader&& other) noexcept {
  std::swap(state_, other.state_);
  return *this;
}

bool FolderReader::Open(const std::string& path, std::string* problem) {
  std::string pattern = path;
  AppendToPath("*", &pattern);
  state_ = new State{};
  state_->search = FindFirstFileW(WidePath(pattern.c_str()).c_str(), &state_->found);
  state_->isNext = state_->search != INVALID_HANDLE_VALUE;
  if (state_->isNext) return true;
  problem->assign(std::system_category().message(static_cast<int>(GetLastError())));
  delete std::exchange(state_, nullptr);
  return false;
}

bool FolderReader::Next(std::string* name, Kind* kind, std::string* problem) {
  for (;;) {
    if (!std::exchange(state_->isNext, false) && !FindNextFileW(state_->search, &state_->found)) {
      const DWORD error = GetLastError();
      if (error != ERROR_NO_MORE_FILES) problem->assign(std::system_category().message(static_cast<int>(error)));
      return false;
    }
    const std::wstring_view found = state_->found.cFileName;
    if (found == L"." || found == L"..") continue;
    const DWORD attributes = state_->found.dwFileAttributes;
    *kind = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? Kind::kOther
            : (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0   ? Kind::kFolder
                                                             : Kind::kFile;
    *name = Utf8Of(found);
    return true;
  }
}

void TrimListEntry(bool first, std::string* entry) {
  if (first && entry->starts_with("\xEF\xBB\xBF")) entry->erase(0, 3);
  if (entry->ends_with('\r')) entry->pop_back();
}

void AppendToPath(std::string_view name, std::string* path) {
  if (!path->empty() && std::string_view("/\\:").find(path->back()) == std::string_view::npos) path->push_back('\\');
  path->append(name);
}

// Pipes and consoles are read by a separate thread, one block ahead. It lives as long as the process, since a blocking
// read cannot be cancelled.
struct ByteReader::Ahead {
  const HANDLE source;
  HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);    // The block has data, or it is the end.
  HANDLE wanted = CreateEventW(nullptr, FALSE, FALSE, nullptr);  // The block is empty.
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
  descriptor_ = owned_ ? _wopen(WidePath(path).c_str(), _O_RDONLY | _O_BINARY) : 0;
  if (descriptor_ < 0) return false;
  if (!owned_) (void)_setmode(0, _O_BINARY);
  const HANDLE handle = HandleOf(descriptor_);
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
