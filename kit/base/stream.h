// A buffered byte stream for reading, with a table of methods so that tests and other stream kinds can stand in for it.
#ifndef LXBRIDGE_KIT_BASE_STREAM_H_
#define LXBRIDGE_KIT_BASE_STREAM_H_

#include <cstdint>
#include <cstdio>

#include "kit/base/memory.h"
#include "kit/base/read_outcome.h"
#include "kit/base/result.h"

struct LxStream;

// The thirteen methods of a stream, in the order of their slots. Positions are clamped to 2^31 - 1.
struct LxStreamMethods {
  std::int32_t (*fill)(LxStream* stream) noexcept;                            // The next byte after the buffer, or -1.
  std::int32_t (*flushAndPut)(std::int32_t byte, LxStream* stream) noexcept;  // Refused: -1.
  std::int32_t (*read)(void* buffer, std::int32_t size, std::int32_t count, LxStream* stream) noexcept;  // Bytes.
  std::int32_t (*write)(const void* buffer, std::int32_t size, std::int32_t count,
                        LxStream* stream) noexcept;  // Refused: 0.
  std::int32_t (*unget)(std::int32_t byte, LxStream* stream) noexcept;
  std::int32_t (*flush)(LxStream* stream) noexcept;  // Refused: -1.
  std::int32_t (*close)(LxStream* stream) noexcept;
  std::int32_t (*buffered)(LxStream* stream) noexcept;
  std::int32_t (*unused8)(LxStream* stream) noexcept;                                         // Always -1.
  std::int32_t (*unused9)(LxStream* stream) noexcept;                                         // Always -1.
  std::int32_t (*seek)(LxStream* stream, std::int32_t offset, std::int32_t whence) noexcept;  // 0: done.
  std::int32_t (*tell)(LxStream* stream) noexcept;                                            // -1: no position.
  std::int32_t (*unused12)(LxStream* stream) noexcept;                                        // Always 0.
};

inline constexpr std::uint32_t kLxStreamReadable = 0x01;
inline constexpr std::uint32_t kLxStreamUpdate = 0x04;
inline constexpr std::uint32_t kLxStreamError = 0x10;
inline constexpr std::uint32_t kLxStreamSeekable = 0x40;

inline constexpr std::int32_t kLxStreamBufferSize = 4096;

struct LxStream {
  std::int32_t count;    // Bytes left in the buffer after cursor.
  std::uint8_t* cursor;  // Next byte to read in the buffer.
  std::uint32_t flags;   // kLxStream...
  const LxStreamMethods* methods;
  LxMemProcs* procs;         // Allocated the stream and frees it at close.
  std::FILE* file;           // Null when the stream is direct and was opened by a path.
  std::uint16_t unbuffered;  // 1: not seekable, or a terminal; reads go to the file directly.
  std::uint16_t borrowed;    // 1: the FILE is the caller's and stays open at close.
  std::uint8_t* buffer;      // kLxStreamBufferSize bytes; null in streams that need none.
  // A regular file that we opened for reading only is read by position, so that seeking and telling are no calls of the
  // system: they are most of what opening a photograph and looking at its first pages would cost.
  std::uint16_t direct;     // 1: read by position, through the descriptor; the FILE's own position is not used.
  int descriptor;           // Direct: of the file. Closed with the stream when there is no FILE.
  std::int64_t position;    // Direct: of the byte after the buffer.
  std::int64_t fileLength;  // Direct: as it was when the file was opened.
  std::int64_t pageStart;   // Direct: what the buffer was last filled with is still there after a seek, and
  std::int32_t pageLength;  // serves reads of the same bytes.
  // The errno of the first read that failed, or 0. Such a read, and one that gives less than the file has, sets
  // kLxStreamError.
  std::int32_t systemError;
};

// The method table of all file streams.
extern const LxStreamMethods kLxFileStreamMethods;

// A stream for the regular file of a UTF-8 path; a null or empty path takes the default file, which stays open at
// close. Of the mode 'r', '+' and 't' count: nothing is ever written. Null: no procs, no memory, or the file cannot be
// opened; the outcome, when it is not null, says why.
[[nodiscard]] LxStream* LxNewFileStream(const char* path, std::FILE* defaultFile, const char* mode, LxMemProcs* procs,
                                        LxReadOutcome* outcome = nullptr) noexcept;

// Opens for reading with the installed memory procedures; an empty path is standard input. kLxOk, or kLxNotFound and
// null, with the outcome as above.
[[nodiscard]] LxResult LxOpenFileStream(const char* path, LxStream** out, LxReadOutcome* outcome = nullptr) noexcept;

// Always kLxOk: what closing reports is of no use to a reader. Takes null.
LxResult LxCloseStream(LxStream* stream) noexcept;

// Seeks from the start; a refusal sets kLxStreamError.
[[nodiscard]] bool LxSeekTo(LxStream* stream, std::int32_t position) noexcept;

// The length in bytes, at most 2^31 - 1; 0 when the stream cannot seek. Leaves the position as it was.
[[nodiscard]] std::int32_t LxStreamLength(LxStream* stream) noexcept;

#endif  // LXBRIDGE_KIT_BASE_STREAM_H_
