// The system's files on POSIX.

// Positions beyond 2 GiB on 32-bit systems. Only this file opens and seeks files, so it is defined only here.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#endif

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "kit/base/platform.h"

static_assert(sizeof(off_t) >= 8);

int LxPlatformArguments(int*, char***) noexcept {
  return 0;
}

namespace {

LxReadFailure FailureOf(int error) noexcept {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return kLxReadNotFound;
    case EACCES:
    case EPERM:
      return kLxReadPermissionDenied;
    case EISDIR:
      return kLxReadIsDirectory;
    case ENXIO:  // A socket, or a device without a driver.
    case ENODEV:
      return kLxReadNotRegularFile;
    case EMFILE:
    case ENFILE:
      return kLxReadNoDescriptors;
    case ENOMEM:
      return kLxReadNoMemory;
    default:
      return kLxReadOpenFailed;
  }
}

}  // namespace

bool LxPlatformOpenRegular(const char* path, const char16_t*, LxOpenedFile* opened, LxReadOutcome* outcome) noexcept {
  int descriptor = -1;
  do {
    descriptor = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  } while (descriptor < 0 && errno == EINTR);
  struct stat status = {};
  if (descriptor < 0 || fstat(descriptor, &status) != 0) {
    *outcome = {FailureOf(errno), errno};
  } else if (S_ISDIR(status.st_mode)) {
    *outcome = {kLxReadIsDirectory, EISDIR};
  } else if (!S_ISREG(status.st_mode)) {
    *outcome = {kLxReadNotRegularFile, 0};
  } else {
    *opened = {nullptr, descriptor, status.st_size};
    return true;
  }
  if (descriptor >= 0) (void)close(descriptor);
  return false;
}

void LxPlatformClose(int descriptor) noexcept {
  (void)close(descriptor);
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

std::size_t LxPlatformReadAt(int descriptor, void* buffer, std::size_t length, std::int64_t offset,
                             std::int32_t* error) noexcept {
  std::size_t done = 0;
  while (done < length) {
    const ssize_t got =
        pread(descriptor, static_cast<char*>(buffer) + done, length - done, offset + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) *error = errno;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

bool LxPlatformIsDirectory(const char* path) noexcept {
  struct stat status = {};
  return path != nullptr && stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}
