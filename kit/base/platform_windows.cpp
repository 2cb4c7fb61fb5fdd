// The system's files on Windows. The only file of the tree, with its POSIX twin, that asks for the system.
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cwchar>

#include "kit/base/memory.h"
#include "kit/base/platform.h"
#include "kit/base/utf16.h"

namespace {

static_assert(sizeof(wchar_t) == sizeof(char16_t));
const wchar_t* AsWide(const char16_t* text) noexcept {
  return reinterpret_cast<const wchar_t*>(text);
}

}  // namespace

std::FILE* LxPlatformOpen(const char*, const char16_t* widePath, const char* mode) noexcept {
  char16_t* wideMode = LxUtf8ToUtf16(mode);
  if (wideMode == nullptr) return nullptr;
  std::FILE* file = _wfopen(AsWide(widePath), AsWide(wideMode));
  LxFree(wideMode);
  return file;
}

void LxPlatformSetTextMode(std::FILE* file, bool text) noexcept {
  (void)_setmode(_fileno(file), text ? _O_TEXT : _O_BINARY);
}

bool LxPlatformIsTerminal(std::FILE* file) noexcept {
  return _isatty(_fileno(file)) != 0;
}

int LxPlatformSeek(std::FILE* file, std::int64_t offset, int whence) noexcept {
  return _fseeki64(file, offset, whence);
}

std::int64_t LxPlatformTell(std::FILE* file) noexcept {
  return _ftelli64(file);
}

// The C runtime has no reading by position.
std::int64_t LxPlatformDirectLength(std::FILE*) noexcept {
  return -1;
}

std::size_t LxPlatformReadAt(std::FILE*, void*, std::size_t, std::int64_t) noexcept {
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
