// Everything that differs between systems: the command line, opening a file by path, binary mode, terminals, pipes,
// positions beyond 2 GiB. Each system has one implementation (platform_posix.cpp, platform_windows.cpp), chosen by the
// build; no other file of the library depends on the system.
#ifndef LXBRIDGE_KIT_BASE_PLATFORM_H_
#define LXBRIDGE_KIT_BASE_PLATFORM_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "kit/base/read_outcome.h"

// Replaces the arguments of main() by the command line in UTF-8; called once. Where main() gets bytes in no known
// encoding, as paths are on POSIX, the arguments stay. Returns 0, or -1 on failure, which also leaves them.
int LxPlatformArguments(int* count, char*** arguments) noexcept;

// A regular file, open for reading bytes.
struct LxOpenedFile {
  std::FILE* file;      // Null where the system reads by position; then descriptor and length are set.
  int descriptor;       // -1 if `file` is set.
  std::int64_t length;  // As it was when the file was opened.
};
// False: the outcome tells why. The check is part of the opening, so the file cannot change in between, and it never
// blocks: a FIFO is refused whether or not it has a writer.
[[nodiscard]] bool LxPlatformOpenRegular(const char* path, const char16_t* widePath, LxOpenedFile* opened,
                                         LxReadOutcome* outcome) noexcept;
void LxPlatformClose(int descriptor) noexcept;

// Sets whether reads and writes of the file translate line ends (no effect on systems that do not translate).
void LxPlatformSetTextMode(std::FILE* file, bool text) noexcept;

// Whether the errno of a failed write means that the reader of the pipe has gone.
[[nodiscard]] bool LxPlatformIsClosedPipe(int error) noexcept;

[[nodiscard]] bool LxPlatformIsTerminal(std::FILE* file) noexcept;

// fseek and ftell in 64 bits. -1: the file has no position.
[[nodiscard]] int LxPlatformSeek(std::FILE* file, std::int64_t offset, int whence) noexcept;
[[nodiscard]] std::int64_t LxPlatformTell(std::FILE* file) noexcept;

// Reads up to `length` bytes from `offset` without moving the file position. Returns fewer at the end of the file, or
// at a failure, whose errno is then in *error.
[[nodiscard]] std::size_t LxPlatformReadAt(int descriptor, void* buffer, std::size_t length, std::int64_t offset,
                                           std::int32_t* error) noexcept;

// Whether the path names a directory.
[[nodiscard]] bool LxPlatformIsDirectory(const char* path) noexcept;

#endif  // LXBRIDGE_KIT_BASE_PLATFORM_H_
