// The system's files on POSIX. The only file of the tree, with its Windows twin, that asks for the system.

// Positions beyond 2 GiB on 32-bit systems. Files are opened and sought in this file only, so this is the one place.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#endif

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "kit/base/platform.h"

static_assert(sizeof(off_t) >= 8);

int LxPlatformArguments(int*, char***) noexcept {
  return 0;
}

std::FILE* LxPlatformOpen(const char* path, const char16_t*, const char* mode) noexcept {
  return std::fopen(path, mode);
}

void LxPlatformSetTextMode(std::FILE*, bool) noexcept {}

bool LxPlatformIsClosedPipe(int error) noexcept {
  return error == EPIPE;
}

bool LxPlatformIsTerminal(std::FILE* file) noexcept {
  return isatty(fileno(file)) == 1;
}

int LxPlatformSeek(std::FILE* file, std::int64_t offset, int whence) noexcept {
  return fseeko(file, offset, whence);
}

std::int64_t LxPlatformTell(std::FILE* file) noexcept {
  return ftello(file);
}

std::int64_t LxPlatformDirectLength(std::FILE* file) noexcept {
  struct stat status = {};
  return fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : -1;
}

std::size_t LxPlatformReadAt(std::FILE* file, void* buffer, std::size_t length, std::int64_t offset) noexcept {
  std::size_t done = 0;
  while (done < length) {
    const ssize_t got =
        pread(fileno(file), static_cast<char*>(buffer) + done, length - done, offset + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

bool LxPlatformIsDirectory(const char* path) noexcept {
  struct stat status = {};
  return path != nullptr && stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}
