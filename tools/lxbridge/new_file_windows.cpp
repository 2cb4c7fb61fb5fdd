// New files on Windows.
#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <system_error>

#include "tools/lxbridge/new_file.h"

namespace lxbridge::command {

namespace {

NewFile Fail(DWORD error, std::string* problem) {
  problem->assign(std::system_category().message(static_cast<int>(error)));
  return NewFile::kFailed;
}

std::wstring Wide(const std::string& path) {
  return std::filesystem::path(std::u8string(path.begin(), path.end())).wstring();
}

DWORD WriteAll(HANDLE file, std::string_view bytes) {
  constexpr std::size_t kMost = 1U << 20;
  while (!bytes.empty()) {
    DWORD done = 0;
    const auto length = static_cast<DWORD>(bytes.size() < kMost ? bytes.size() : kMost);
    if (!WriteFile(file, bytes.data(), length, &done, nullptr)) return GetLastError();
    bytes.remove_prefix(done);
  }
  return 0;
}

}  // namespace

NewFile WriteNewFile(const std::string& path, std::string_view bytes, bool overwrite, std::string* problem) {
  static unsigned number = 0;
  const std::wstring target = Wide(path);
  const std::wstring folder = std::filesystem::path(target).parent_path().wstring();
  std::wstring temporary;
  HANDLE file = INVALID_HANDLE_VALUE;
  do {
    temporary = folder + (folder.empty() ? L"" : L"\\") + L".lxbridge-" + std::to_wstring(GetCurrentProcessId()) +
                L'-' + std::to_wstring(number++) + L".tmp";
    file = CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  } while (file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS);
  if (file == INVALID_HANDLE_VALUE) return Fail(GetLastError(), problem);
  DWORD error = WriteAll(file, bytes);
  if (!CloseHandle(file) && error == 0) error = GetLastError();
  if (error == 0 && !MoveFileExW(temporary.c_str(), target.c_str(), overwrite ? MOVEFILE_REPLACE_EXISTING : 0)) {
    error = GetLastError();
  }
  if (error == 0) return NewFile::kWritten;
  (void)DeleteFileW(temporary.c_str());
  return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS ? NewFile::kExists : Fail(error, problem);
}

}  // namespace lxbridge::command
