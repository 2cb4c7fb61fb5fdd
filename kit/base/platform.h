// What differs between systems: the command line, opening a file by path, binary mode, terminals, pipes, positions
// beyond 2 GiB. One implementation a system (platform_posix.cpp, platform_windows.cpp), chosen by the build; nothing
// else in the tree asks what system it is on.
#ifndef LXBRIDGE_KIT_BASE_PLATFORM_H_
#define LXBRIDGE_KIT_BASE_PLATFORM_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "kit/base/read_outcome.h"

// The texts of the command line as UTF-8, in place of the ones that main() was given; called once. Where main() gets
// them as bytes of no known encoding, as paths are there, they stay. Status 0, or -1 when they cannot be had and stay,
// too.
int LxPlatformArguments(int* count, char*** arguments) noexcept;

// A regular file, open for reading bytes.
struct LxOpenedFile {
  std::FILE* file;      // Null where the system reads by position: then there is a descriptor and a length.
  int descriptor;       // -1 where there is a FILE.
  std::int64_t length;  // As it was when the file was opened.
};
// False: the outcome says why. The opening itself decides, so nothing can change between a question and it, and it
// waits for nobody: a FIFO is refused whether or not it has a writer.
[[nodiscard]] bool LxPlatformOpenRegular(const char* path, const char16_t* widePath, LxOpenedFile* opened,
                                         LxReadOutcome* outcome) noexcept;
void LxPlatformClose(int descriptor) noexcept;

// Whether reads and writes of the file translate line ends (no effect where nothing is translated).
void LxPlatformSetTextMode(std::FILE* file, bool text) noexcept;

// Whether the errno of a failed write says that whoever read the pipe has gone.
[[nodiscard]] bool LxPlatformIsClosedPipe(int error) noexcept;

[[nodiscard]] bool LxPlatformIsTerminal(std::FILE* file) noexcept;

// fseek and ftell in 64 bits. -1: the file has no position.
[[nodiscard]] int LxPlatformSeek(std::FILE* file, std::int64_t offset, int whence) noexcept;
[[nodiscard]] std::int64_t LxPlatformTell(std::FILE* file) noexcept;

// Up to `length` bytes from `offset`, without moving the file's own position: fewer at the file's end, or at a failure,
// whose errno *error then is.
[[nodiscard]] std::size_t LxPlatformReadAt(int descriptor, void* buffer, std::size_t length, std::int64_t offset,
                                           std::int32_t* error) noexcept;

// Whether the path names a directory.
[[nodiscard]] bool LxPlatformIsDirectory(const char* path) noexcept;

#endif  // LXBRIDGE_KIT_BASE_PLATFORM_H_
