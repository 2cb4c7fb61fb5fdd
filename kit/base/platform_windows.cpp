// The system's files on Windows.
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <windows.h>

#include <cerrno>
#include <cstdlib>
#include <cwchar>
#include <iterator>

#include "kit/base/memory.h"
#include "kit/base/platform.h"
#include "kit/base/utf16.h"

namespace {

static_assert(sizeof(wchar_t) == sizeof(char16_t));
const wchar_t* AsWide(const char16_t* text) noexcept {
  return reinterpret_cast<const wchar_t*>(text);
}

// The startup record of the C runtime's command-line parser.
struct StartupInfo {
  int newMode;
};
extern "C" int __wgetmainargs(int* count, wchar_t*** arguments, wchar_t*** environment, int expandWildcards,
                              StartupInfo* startup);

// The extended-length form of a path that is too long for the system. Null: the path is short enough or already in that
// form, or there is no memory.
char16_t* NewLongPath(const char16_t* path) noexcept {
  constexpr std::size_t kLongestPlainPath = 247;
  const wchar_t* wide = AsWide(path);
  if (std::wcslen(wide) <= kLongestPlainPath || std::wcsncmp(wide, L"\\\\?\\", 4) == 0) return nullptr;
  const DWORD size = GetFullPathNameW(wide, 0, nullptr, nullptr);  // With its terminator.
  constexpr wchar_t kPrefix[] = L"\\\\?\\UNC";
  auto* text = static_cast<wchar_t*>(LxAlloc((size + std::size(kPrefix)) * sizeof(wchar_t)));
  if (text == nullptr) return nullptr;
  // The full path of a share begins with two separators, of which the second becomes the prefix's last.
  wchar_t* full = text + std::size(kPrefix) - 2;
  const DWORD length = GetFullPathNameW(wide, size, full, nullptr);
  const bool share = length > 2 && full[0] == L'\\' && full[1] == L'\\';
  if (share) {
    std::wmemcpy(text, kPrefix, std::size(kPrefix) - 1);
  } else {
    std::wmemmove(text + 4, full, length + 1);
    std::wmemcpy(text, kPrefix, 4);
  }
  return reinterpret_cast<char16_t*>(text);
}

// Not through the kit's memory procedures: none are installed yet, and the text lives until the process ends.
char* NewUtf8(const wchar_t* text) noexcept {
  const int length = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  auto* utf8 = length > 0 ? static_cast<char*>(std::malloc(static_cast<std::size_t>(length))) : nullptr;
  if (utf8 != nullptr) (void)WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8, length, nullptr, nullptr);
  return utf8;
}

}  // namespace

int LxPlatformArguments(int* count, char*** arguments) noexcept {
  int wideCount = 0;
  wchar_t** wide = nullptr;
  wchar_t** environment = nullptr;
  StartupInfo startup = {0};
  // Wildcards are expanded, since no shell does so on Windows.
  if (__wgetmainargs(&wideCount, &wide, &environment, 1, &startup) < 0) return -1;
  auto** utf8 = static_cast<char**>(std::calloc(static_cast<std::size_t>(wideCount) + 1, sizeof(char*)));
  if (utf8 == nullptr) return -1;
  int made = 0;
  while (made < wideCount && (utf8[made] = NewUtf8(wide[made])) != nullptr) ++made;
  if (made < wideCount) {
    while (made > 0) std::free(utf8[--made]);
    std::free(static_cast<void*>(utf8));
    return -1;
  }
  *count = wideCount;
  *arguments = utf8;
  return 0;
}

bool LxPlatformOpenRegular(const char* path, const char16_t* widePath, LxOpenedFile* opened,
                           LxReadOutcome* outcome) noexcept {
  char16_t* longPath = NewLongPath(widePath);
  if (longPath != nullptr) {
    const bool done = LxPlatformOpenRegular(path, longPath, opened, outcome);
    LxFree(longPath);
    return done;
  }
  // For a directory, the C runtime reports "permission denied".
  const DWORD attributes = GetFileAttributesW(AsWide(widePath));
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    *outcome = {kLxReadIsDirectory, EISDIR};
    return false;
  }
  std::FILE* file = _wfopen(AsWide(widePath), L"rb");
  if (file == nullptr) {
    const int error = errno;
    *outcome = {error == ENOENT || error == ENOTDIR || error == EINVAL ? kLxReadNotFound
                : error == EACCES || error == EPERM                    ? kLxReadPermissionDenied
                : error == EMFILE || error == ENFILE                   ? kLxReadNoDescriptors
                : error == ENOMEM                                      ? kLxReadNoMemory
                                                                       : kLxReadOpenFailed,
                error};
    return false;
  }
  // The C runtime returns the handle as a number.
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));  // NOLINT(performance-no-int-to-ptr)
  if (GetFileType(handle) != FILE_TYPE_DISK) {
    *outcome = {kLxReadNotRegularFile, 0};
    (void)std::fclose(file);
    return false;
  }
  *opened = {file, -1, -1};
  return true;
}

void LxPlatformClose(int) noexcept {}

void LxPlatformSetTextMode(std::FILE* file, bool text) noexcept {
  (void)_setmode(_fileno(file), text ? _O_TEXT : _O_BINARY);
}

// The C runtime has no errno for "the pipe is being closed" and reports it as EINVAL, as it does any unknown error.
bool LxPlatformIsClosedPipe(int error) noexcept {
  return error == EPIPE || error == EINVAL;
}

bool LxPlatformIsTerminal(std::FILE* file) noexcept {
  return _isatty(_fileno(file)) != 0;
}

int LxPlatformSeek(std::FILE* file, std::int64_t offset, int whence) noexcept {
  return _fseeki64(file, offset, whence);
}

// For a pipe, the C runtime may report a position, which means nothing.
std::int64_t LxPlatformTell(std::FILE* file) noexcept {
  // The C runtime returns the handle as a number.
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));  // NOLINT(performance-no-int-to-ptr)
  if (GetFileType(handle) != FILE_TYPE_DISK) return -1;
  return _ftelli64(file);
}

// The C runtime has no positional read, so no file is opened for it.
std::size_t LxPlatformReadAt(int, void*, std::size_t, std::int64_t, std::int32_t*) noexcept {
  return 0;
}

bool LxPlatformIsDirectory(const char* path) noexcept {
  char16_t* widePath = LxUtf8ToUtf16(path);
  if (widePath == nullptr) return false;
  struct _stat64 status = {};
  const bool directory = _wstat64(AsWide(widePath), &status) == 0 && (status.st_mode & _S_IFDIR) != 0;
  LxFree(widePath);
  return directory;
}
