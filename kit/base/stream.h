// A buffered byte stream for reading, with a table of methods so that tests and other kinds of streams can replace it.
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
  // A regular file that is opened here for reading is read by position, so that seeking and telling need no system
  // calls. These would be most of the cost of opening a photograph and reading its first pages.
  std::uint16_t direct;     // 1: read by position through the descriptor; the position of the FILE is not used.
  int descriptor;           // Direct: of the file. Closed with the stream if there is no FILE.
  std::int64_t position;    // Direct: of the byte after the buffer.
  std::int64_t fileLength;  // Direct: as it was when the file was opened.
  std::int64_t pageStart;   // Direct: the last bytes read into the buffer stay there after a seek
  std::int32_t pageLength;  // and serve reads of the same range.
  // The errno of the first failed read, or 0. A failed read, and one that returns less than the file has, sets
  // kLxStreamError.
  std::int32_t systemError;
};

// The method table of all file streams.
extern const LxStreamMethods kLxFileStreamMethods;

// A stream for the regular file at a UTF-8 path; a null or empty path takes the default file, which stays open at
// close. In the mode, only 'r', '+' and 't' count; nothing is ever written. Null: no procedures, no memory, or the file
// cannot be opened; the outcome, if not null, tells why.
[[nodiscard]] LxStream* LxNewFileStream(const char* path, std::FILE* defaultFile, const char* mode, LxMemProcs* procs,
                                        LxReadOutcome* outcome = nullptr) noexcept;

// Opens a file for reading with the installed memory procedures; an empty path is standard input. kLxOk, or kLxNotFound
// and null, with the outcome as above.
[[nodiscard]] LxResult LxOpenFileStream(const char* path, LxStream** out, LxReadOutcome* outcome = nullptr) noexcept;

// Always returns kLxOk: a reader cannot use the result of closing. Takes null.
LxResult LxCloseStream(LxStream* stream) noexcept;

// Seeks from the start; a failure sets kLxStreamError.
[[nodiscard]] bool LxSeekTo(LxStream* stream, std::int32_t position) noexcept;

// The length in bytes, at most 2^31 - 1; 0 if the stream cannot seek. Does not move the position.
[[nodiscard]] std::int32_t LxStreamLength(LxStream* stream) noexcept;

#endif  // LXBRIDGE_KIT_BASE_STREAM_H_
