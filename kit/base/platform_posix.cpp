// The system's files on POSIX. The only file of the tree, with its Windows twin, that asks for the system.
#include <sys/stat.h>
#include <unistd.h>

#include "kit/base/platform.h"

// The tree is built with 64-bit file positions on 32-bit machines too (_FILE_OFFSET_BITS).
static_assert(sizeof(off_t) >= 8);

std::FILE* LxPlatformOpen(const char* path, const char16_t*, const char* mode) noexcept {
  return std::fopen(path, mode);
}

void LxPlatformSetTextMode(std::FILE*, bool) noexcept {}

bool LxPlatformIsTerminal(std::FILE* file) noexcept {
  return isatty(fileno(file)) == 1;
}

int LxPlatformSeek(std::FILE* file, std::int64_t offset, int whence) noexcept {
  return fseeko(file, offset, whence);
}

std::int64_t LxPlatformTell(std::FILE* file) noexcept {
  return ftello(file);
}

bool LxPlatformIsDirectory(const char* path) noexcept {
  struct stat status = {};
  return path != nullptr && stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}
