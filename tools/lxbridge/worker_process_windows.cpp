// Worker processes on Windows: the command's own image, started again. A worker gets its handles from an environment
// variable and its options from the shared memory, not from its command line.
//
// A channel is two named pipes, since anonymous ones do not support overlapped reads. The command reads and writes with
// completion routines, which run while it waits. So its only thread can wait for any number of workers, the list and a
// time at once; waiting for handles is limited to 64 of them.
// list and for a time, where a wait for handles would end at 64 of them.
#include "tools/lxbridge/worker_process.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <new>
#include <system_error>
#include <utility>

#include "tools/lxbridge/output.h"
#include "tools/lxbridge/report.h"

namespace lxbridge::command {

namespace {

constexpr std::size_t kBlock = 128 * 1024;
constexpr DWORD kPipeBuffer = 64 * 1024;
constexpr wchar_t kHandlesVariable[] = L"LXBRIDGE_WORKER";  // Jobs, results, shared memory, slot; decimal.
constexpr DWORD kFirstExceptionCode = 0x80000000;

// The memory shared by all processes of a call. It is followed by the words of the command line, each with a zero byte.
struct Shared {
  Place places[kMostProcesses];
  // Options that depend on the command's own terminals.
  bool progress;
  bool colouredResults;
  bool namedPackets;
  std::size_t words;
};

// Handles are 32-bit numbers even where pointers are longer.
HANDLE AsHandle(std::intptr_t number) {
  return reinterpret_cast<HANDLE>(number);  // NOLINT(performance-no-int-to-ptr)
}

std::intptr_t AsNumber(HANDLE handle) {
  return reinterpret_cast<std::intptr_t>(handle);
}

bool IsOpen(HANDLE handle) {
  return handle != nullptr && handle != INVALID_HANDLE_VALUE;
}

void Close(HANDLE* handle) {
  if (IsOpen(*handle)) (void)CloseHandle(*handle);
  *handle = nullptr;
}

BOOL WINAPI LeaveEventsToTheCommand(DWORD) {
  return TRUE;
}

// Ends at once, without an error window or a debugger.
LONG WINAPI EndAtException(EXCEPTION_POINTERS* exception) {
  (void)TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

SECURITY_ATTRIBUTES Inherited() {
  return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
}

}  // namespace

// --- in the worker -------------------------------------------------------------------------------------------------

std::size_t ReceiveJobs(const WorkerSide& side, char* buffer, std::size_t length) {
  DWORD got = 0;
  return ReadFile(AsHandle(side.jobs), buffer, static_cast<DWORD>(length), &got, nullptr) ? got : 0;
}

void SendResults(const WorkerSide& side, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD done = 0;
    const auto length = static_cast<DWORD>(std::min(bytes.size(), kBlock));
    if (!WriteFile(AsHandle(side.results), bytes.data(), length, &done, nullptr)) EndWorker();
    bytes.remove_prefix(done);
  }
}

// Not ExitProcess, which would still run code of this process, such as the detaching of other threads.
void EndWorker(int status) {
  (void)TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  for (;;) Sleep(INFINITE);
}

void BecomeWorkerIfStartedAsOne() {
  wchar_t text[64];
  const DWORD length = GetEnvironmentVariableW(kHandlesVariable, text, static_cast<DWORD>(std::size(text)));
  if (length == 0 || length >= std::size(text)) return;
  (void)SetEnvironmentVariableW(kHandlesVariable, nullptr);
  // The command gets the interrupt and ends its workers.
  (void)SetConsoleCtrlHandler(LeaveEventsToTheCommand, TRUE);
  (void)SetUnhandledExceptionFilter(EndAtException);

  std::intptr_t numbers[4] = {};
  wchar_t* at = text;
  for (std::intptr_t& number : numbers) number = static_cast<std::intptr_t>(std::wcstoull(at, &at, 10));
  auto* shared = static_cast<Shared*>(MapViewOfFile(AsHandle(numbers[2]), FILE_MAP_WRITE, 0, 0, 0));
  if (shared == nullptr || numbers[3] < 0 || numbers[3] >= std::ssize(shared->places)) ExitProcess(1);

  std::vector<const char*> words;
  const char* word = reinterpret_cast<const char*>(shared + 1);
  for (std::size_t i = 0; i < shared->words; ++i) {
    words.push_back(word);
    word += std::strlen(word) + 1;
  }
  Options options;
  std::string error;  // Stays empty: the command has parsed the same words.
  if (!ParseOptions(static_cast<int>(words.size()), words.data(), &options, &error)) ExitProcess(1);
  options.progress = shared->progress;
  options.colouredResults = shared->colouredResults;
  options.namedPackets = shared->namedPackets;
  KeepErrorLines(options.errors);
  BeWorker(options, {numbers[0], numbers[1], &shared->places[numbers[3]]});
}

// --- in the command ------------------------------------------------------------------------------------------------

namespace {

// The command's side of a worker: its process and the command's ends of the pipes. Must not move during an overlapped
// operation.
struct Process {
  HANDLE process = nullptr;
  HANDLE jobs = nullptr;
  HANDLE results = nullptr;
  OVERLAPPED read = {};
  OVERLAPPED write = {};
  bool reads = false;
  bool writes = false;
  bool ended = false;  // No more data comes.
  bool receivesWatched = false;
  bool sendsWatched = false;
  std::string sent;  // The bytes being written.
  std::string block;
  std::size_t received = 0;  // Bytes of the block that hold data; it is reused when they have been taken.

  bool MaySend() const { return sendsWatched && !writes; }
  bool MayReceive() const { return receivesWatched && (received != 0 || ended); }

  static void CALLBACK HasRead(DWORD error, DWORD count, OVERLAPPED* read) {
    auto* process = static_cast<Process*>(read->hEvent);
    process->reads = false;
    process->received = count;
    process->ended = error != 0 || count == 0;
  }

  static void CALLBACK HasWritten(DWORD, DWORD, OVERLAPPED* write) {
    auto* process = static_cast<Process*>(write->hEvent);
    process->writes = false;
  }

  void Read() {
    block.resize(kBlock);
    read = {};
    read.hEvent = this;  // Ignored by the system when there is a completion routine.
    reads = ReadFileEx(results, block.data(), static_cast<DWORD>(block.size()), &read, HasRead) != 0;
    ended = !reads;
  }

  void Write(std::string* bytes) {
    sent.swap(*bytes);
    bytes->clear();
    write = {};
    write.hEvent = this;
    writes = WriteFileEx(jobs, sent.data(), static_cast<DWORD>(sent.size()), &write, HasWritten) != 0;
  }

  DWORD End() {
    if (reads) (void)CancelIo(results);
    if (writes) (void)CancelIo(jobs);
    while (reads || writes) (void)SleepEx(INFINITE, TRUE);
    Close(&jobs);
    Close(&results);
    DWORD code = 0;
    (void)WaitForSingleObject(process, INFINITE);
    (void)GetExitCodeProcess(process, &code);
    Close(&process);
    return code;
  }
};

}  // namespace

struct WorkerProcesses::System {
  std::wstring image;
  HANDLE job = nullptr;
  HANDLE memory = nullptr;
  Shared* shared = nullptr;
  // Standard handles of workers.
  HANDLE nothing = INVALID_HANDLE_VALUE;
  HANDLE input = nullptr;
  HANDLE errors = nullptr;
  unsigned pipes = 0;  // Number created so far.
  std::unique_ptr<Process> processes[kMostProcesses];
  std::size_t used = 0;

  System(const Options& options, bool withStandardInput) {
    // Problems with a file or a drive are reported by a message; nobody may be there to close a window.
    (void)SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    image.resize(32 * 1024);
    image.resize(GetModuleFileNameW(nullptr, image.data(), static_cast<DWORD>(image.size())));
    MakeJob();
    Share(options);
    SECURITY_ATTRIBUTES inherited = Inherited();
    nothing = CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                          OPEN_EXISTING, 0, nullptr);
    input = withStandardInput ? StandardHandle(STD_INPUT_HANDLE) : nothing;
    errors = StandardHandle(STD_ERROR_HANDLE);
  }

  ~System() {
    for (HANDLE* handle : {&input, &errors}) {
      if (*handle != nothing) Close(handle);
    }
    Close(&nothing);
    if (shared != nullptr) (void)UnmapViewOfFile(shared);
    Close(&memory);
    Close(&job);
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  // A job object: whatever ends the command closes the job, which ends the workers. Without one (the command may itself
  // be in a job that allows no nested jobs), a worker without a command ends after its file.
  void MakeJob() {
    job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (job != nullptr) (void)SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  }

  void Share(const Options& options) {
    std::string texts;
    for (const char* word : options.words) texts.append(word).push_back('\0');
    SECURITY_ATTRIBUTES inherited = Inherited();
    const DWORD size = DWORD{sizeof(Shared)} + static_cast<DWORD>(texts.size());
    memory = CreateFileMappingW(INVALID_HANDLE_VALUE, &inherited, PAGE_READWRITE, 0, size, nullptr);
    void* view = memory == nullptr ? nullptr : MapViewOfFile(memory, FILE_MAP_WRITE, 0, 0, 0);
    if (view == nullptr) return;
    shared = new (view) Shared{};
    shared->progress = MayShowProgress(options);
    shared->colouredResults = options.colouredResults;
    shared->namedPackets = options.namedPackets;
    shared->words = options.words.size();
    std::memcpy(static_cast<void*>(shared + 1), texts.data(), texts.size());
  }

  HANDLE StandardHandle(DWORD which) const {
    HANDLE copy = nullptr;
    const HANDLE self = GetCurrentProcess();
    const HANDLE own = GetStdHandle(which);
    if (!IsOpen(own) || !DuplicateHandle(self, own, self, &copy, 0, TRUE, DUPLICATE_SAME_ACCESS)) return nothing;
    return copy;
  }

  // Creates a pipe with the command's end and the end that a worker inherits.
  bool MakePipe(bool toWorker, HANDLE* own, HANDLE* workers) {
    const std::wstring name =
        L"\\\\.\\pipe\\lxbridge." + std::to_wstring(GetCurrentProcessId()) + L'.' + std::to_wstring(pipes++);
    const DWORD direction = toWorker ? PIPE_ACCESS_OUTBOUND : PIPE_ACCESS_INBOUND;
    *own = CreateNamedPipeW(name.c_str(), direction | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                            PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, kPipeBuffer, kPipeBuffer, 0,
                            nullptr);
    if (!IsOpen(*own)) return false;
    SECURITY_ATTRIBUTES inherited = Inherited();
    *workers =
        CreateFileW(name.c_str(), toWorker ? GENERIC_READ : GENERIC_WRITE, 0, &inherited, OPEN_EXISTING, 0, nullptr);
    return IsOpen(*workers);
  }

  // Passes these handles and no others of the command's.
  bool StartImage(HANDLE jobs, HANDLE results, std::size_t slot, HANDLE* process) {
    HANDLE handles[6] = {jobs, results, memory, nothing};
    std::size_t count = 4;
    for (const HANDLE standard : {input, errors}) {
      if (standard != nothing) handles[count++] = standard;
    }
    SIZE_T size = 0;
    (void)InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    std::string attributes(size, '\0');
    STARTUPINFOEXW start = {};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = input;
    start.StartupInfo.hStdOutput = nothing;
    start.StartupInfo.hStdError = errors;
    start.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(attributes.data());
    if (!InitializeProcThreadAttributeList(start.lpAttributeList, 1, 0, &size) ||
        !UpdateProcThreadAttribute(start.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                                   static_cast<void*>(handles), count * sizeof(HANDLE), nullptr, nullptr)) {
      return false;
    }
    std::wstring numbers = std::to_wstring(slot);
    for (const HANDLE handle : {memory, results, jobs}) numbers.insert(0, std::to_wstring(AsNumber(handle)) + L' ');
    (void)SetEnvironmentVariableW(kHandlesVariable, numbers.c_str());
    std::wstring line = GetCommandLineW();  // Shown in lists of processes.
    PROCESS_INFORMATION started = {};
    const bool done = CreateProcessW(image.c_str(), line.data(), nullptr, nullptr, TRUE, EXTENDED_STARTUPINFO_PRESENT,
                                     nullptr, nullptr, &start.StartupInfo, &started) != 0;
    const DWORD error = GetLastError();
    (void)SetEnvironmentVariableW(kHandlesVariable, nullptr);
    DeleteProcThreadAttributeList(start.lpAttributeList);
    if (done) {
      if (job != nullptr) (void)AssignProcessToJobObject(job, started.hProcess);
      (void)CloseHandle(started.hThread);
      *process = started.hProcess;
    }
    SetLastError(error);
    return done;
  }
};

WorkerProcesses::WorkerProcesses(const Options& options, bool withStandardInput)
    : system_(std::make_unique<System>(options, withStandardInput)) {}

WorkerProcesses::~WorkerProcesses() = default;

bool WorkerProcesses::CanStart() const {
  return system_->shared != nullptr;
}

bool WorkerProcesses::Start(std::size_t* slot, std::string* problem) {
  *slot = 0;
  while (system_->processes[*slot] != nullptr && system_->processes[*slot]->process != nullptr) ++*slot;
  std::unique_ptr<Process>& process = system_->processes[*slot];
  process = std::make_unique<Process>();
  (void)new (&system_->shared->places[*slot]) Place{};
  HANDLE jobs = nullptr, results = nullptr;
  const bool started = system_->MakePipe(true, &process->jobs, &jobs) &&
                       system_->MakePipe(false, &process->results, &results) &&
                       system_->StartImage(jobs, results, *slot, &process->process);
  const DWORD error = GetLastError();
  Close(&jobs);
  Close(&results);
  if (!started) {
    Close(&process->jobs);
    Close(&process->results);
    problem->assign("cannot start a worker: ").append(std::system_category().message(static_cast<int>(error)));
    return false;
  }
  process->Read();
  system_->used = std::max(system_->used, *slot + 1);
  return true;
}

const Place& WorkerProcesses::PlaceOf(std::size_t slot) const {
  return system_->shared->places[slot];
}

void WorkerProcesses::Send(std::size_t slot, std::string* bytes) {
  Process& process = *system_->processes[slot];
  if (!bytes->empty() && !process.writes) process.Write(bytes);
}

bool WorkerProcesses::Receive(std::size_t slot, std::string* bytes) {
  Process& process = *system_->processes[slot];
  bytes->append(process.block, 0, std::exchange(process.received, 0));
  if (process.ended) return false;
  if (!process.reads) process.Read();
  return true;
}

void WorkerProcesses::Watch(std::size_t slot, bool receives, bool sends) {
  system_->processes[slot]->receivesWatched = receives;
  system_->processes[slot]->sendsWatched = sends;
}

bool WorkerProcesses::Wait(int list, int milliseconds, std::string* problem) {
  const bool ready =
      std::any_of(system_->processes, system_->processes + system_->used, [](const std::unique_ptr<Process>& process) {
        return process->process != nullptr && (process->MaySend() || process->MayReceive());
      });
  const DWORD wait = ready ? 0 : static_cast<DWORD>(milliseconds);
  if (list < 0) {
    (void)SleepEx(wait, TRUE);
  } else if (WaitForSingleObjectEx(AsHandle(list), wait, TRUE) == WAIT_FAILED) {
    problem->assign("cannot wait for workers: ");
    problem->append(std::system_category().message(static_cast<int>(GetLastError())));
    return false;
  }
  return true;
}

bool WorkerProcesses::MaySend(std::size_t slot) const {
  return system_->processes[slot]->MaySend();
}

bool WorkerProcesses::MayReceive(std::size_t slot) const {
  return system_->processes[slot]->MayReceive();
}

bool WorkerProcesses::IsStopped(std::size_t) const {
  return false;
}

void WorkerProcesses::Kill(std::size_t slot) {
  (void)TerminateProcess(system_->processes[slot]->process, 1);
}

void WorkerProcesses::KillAll() {
  for (std::size_t slot = 0; slot < system_->used; ++slot) {
    if (system_->processes[slot]->process != nullptr) Kill(slot);
  }
}

std::uint32_t WorkerProcesses::End(std::size_t slot) noexcept {
  return system_->processes[slot]->End();
}

std::string WorkerProcesses::CauseOf(std::uint32_t ending) {
  if (ending == kWorkerWithoutMemory) return kNoMemoryMessage;
  char text[48];
  (void)std::snprintf(text, sizeof text,
                      ending >= kFirstExceptionCode ? "crashed (exception 0x%08lX)" : "crashed (exit status %lu)",
                      static_cast<unsigned long>(ending));
  return text;
}

}  // namespace lxbridge::command
