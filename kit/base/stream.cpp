// File streams: the thirteen methods, opening by path, length.
#include "kit/base/stream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "kit/base/kept_memory.h"
#include "kit/base/platform.h"
#include "kit/base/utf16.h"

namespace {

bool Has(const LxStream* stream, std::uint32_t flag) noexcept {
  return (stream->flags & flag) != 0;
}

std::int32_t Fail(LxStream* stream, std::int32_t result) noexcept {
  stream->flags |= kLxStreamError;
  return result;
}

void EmptyBuffer(LxStream* stream) noexcept {
  stream->cursor = stream->buffer;
  stream->count = 0;
}

void NoteReadError(LxStream* stream, std::int32_t error) noexcept {
  if (error == 0) return;
  stream->flags |= kLxStreamError;
  if (stream->systemError == 0) stream->systemError = error;
}

// Never reads past the end of the file: finding out that nothing follows would take another call.
std::size_t ReadAt(LxStream* stream, void* buffer, std::size_t length, std::int64_t position) noexcept {
  const std::int64_t left = stream->fileLength - position;
  if (left > 0 && static_cast<std::uint64_t>(left) < length) length = static_cast<std::size_t>(left);
  std::int32_t error = 0;
  const std::size_t got = LxPlatformReadAt(stream->descriptor, buffer, length, position, &error);
  NoteReadError(stream, error);
  return got;
}

// Fills the buffer from the current position, without moving it.
std::size_t LoadPage(LxStream* stream) noexcept {
  const std::size_t got = ReadAt(stream, stream->buffer, std::size_t{kLxStreamBufferSize}, stream->position);
  stream->pageStart = stream->position;
  stream->pageLength = static_cast<std::int32_t>(got);
  return got;
}

// The first bytes of a file tell its kind, and its first page is requested next; a single read of the file serves both.
std::size_t ReadDirect(LxStream* stream, void* buffer, std::size_t length) noexcept {
  const std::int64_t offset = stream->position - stream->pageStart;
  if (offset >= 0 && offset < stream->pageLength) {
    const std::size_t inPage = std::min(length, static_cast<std::size_t>(stream->pageLength - offset));
    std::memcpy(buffer, stream->buffer + offset, inPage);
    if (inPage == length) return length;
    return inPage + ReadAt(stream, static_cast<std::uint8_t*>(buffer) + inPage, length - inPage,
                           stream->position + static_cast<std::int64_t>(inPage));
  }
  if (length >= std::size_t{kLxStreamBufferSize}) return ReadAt(stream, buffer, length, stream->position);
  const std::size_t got = std::min(LoadPage(stream), length);
  std::memcpy(buffer, stream->buffer, got);
  return got;
}

// From the file itself, after the bytes in the buffer.
std::size_t ReadFile(LxStream* stream, void* buffer, std::size_t length) noexcept {
  if (stream->direct == 0) {
    const std::size_t got = std::fread(buffer, 1, length, stream->file);
    if (got < length && std::ferror(stream->file) != 0) NoteReadError(stream, errno != 0 ? errno : EIO);
    return got;
  }
  const std::size_t got = buffer == stream->buffer ? LoadPage(stream) : ReadDirect(stream, buffer, length);
  stream->position += static_cast<std::int64_t>(got);
  return got;
}

// As fseek: a position before the start is a failure, a position after the end is not.
std::int32_t SeekDirect(LxStream* stream, std::int64_t offset, std::int32_t whence) noexcept {
  if (whence == SEEK_CUR) offset += stream->position;
  if (whence == SEEK_END) offset += stream->fileLength;
  if (offset < 0) return -1;
  stream->position = offset;
  return 0;
}

std::int32_t Fill(LxStream* stream) noexcept {
  if (!Has(stream, kLxStreamReadable)) return Fail(stream, -1);
  if (stream->unbuffered != 0) {
    std::uint8_t byte = 0;
    return ReadFile(stream, &byte, 1) == 1 ? byte : -1;
  }
  EmptyBuffer(stream);
  const std::size_t got = ReadFile(stream, stream->buffer, std::size_t{kLxStreamBufferSize});
  if (got == 0) return -1;
  stream->count = static_cast<std::int32_t>(got) - 1;
  return *stream->cursor++;
}

std::int32_t Read(void* buffer, std::int32_t size, std::int32_t count, LxStream* stream) noexcept {
  if (!Has(stream, kLxStreamReadable)) return Fail(stream, 0);
  if (size < 1 || count < 1) return 0;
  const std::int64_t want = std::min<std::int64_t>(std::int64_t{size} * count, INT32_MAX);
  const std::int64_t buffered = std::min<std::int64_t>(want, stream->count);
  if (buffered > 0) {
    std::memcpy(buffer, stream->cursor, static_cast<std::size_t>(buffered));
    stream->cursor += buffered;
    stream->count -= static_cast<std::int32_t>(buffered);
  }
  std::size_t direct = 0;
  if (buffered < want) {
    direct = ReadFile(stream, static_cast<std::uint8_t*>(buffer) + buffered, static_cast<std::size_t>(want - buffered));
  }
  return static_cast<std::int32_t>(buffered) + static_cast<std::int32_t>(direct);
}

std::int32_t Unget(std::int32_t byte, LxStream* stream) noexcept {
  if (!Has(stream, kLxStreamReadable)) return Fail(stream, -1);
  if (stream->count < 1) {
    if (stream->direct == 0) return std::ungetc(byte, stream->file);
    stream->cursor = stream->buffer;
    stream->pageLength = 0;
    *stream->cursor = static_cast<std::uint8_t>(byte & 0xFF);
    stream->count = 1;
    return *stream->cursor;
  }
  if (stream->cursor == stream->buffer) return -1;  // More bytes were put back than were taken from this buffer.
  stream->pageLength = 0;                           // The byte that was put back may differ from the file's.
  *--stream->cursor = static_cast<std::uint8_t>(byte & 0xFF);
  ++stream->count;
  return *stream->cursor;
}

// Streams are read-only: writing to one sets the error flag.
std::int32_t FlushAndPut(std::int32_t, LxStream* stream) noexcept {
  return Fail(stream, -1);
}
std::int32_t Write(const void*, std::int32_t, std::int32_t, LxStream* stream) noexcept {
  return Fail(stream, 0);
}
std::int32_t Flush(LxStream* stream) noexcept {
  return Fail(stream, -1);
}

std::int32_t Close(LxStream* stream) noexcept {
  std::int32_t status = 0;
  if (stream->file == nullptr) {
    LxPlatformClose(stream->descriptor);
  } else if (stream->borrowed == 0) {
    status = std::fclose(stream->file);
  }
  LxFreeKept(stream->buffer);
  return status;
}

std::int32_t Buffered(LxStream* stream) noexcept {
  return Has(stream, kLxStreamReadable) && stream->count > 0 ? stream->count : -1;
}

std::int32_t AlwaysMinusOne(LxStream*) noexcept {
  return -1;
}
std::int32_t AlwaysZero(LxStream*) noexcept {
  return 0;
}

// For seeks relative to the current position (whence 1), the file's own position is after the bytes in the buffer.
std::int32_t Seek(LxStream* stream, std::int32_t offset, std::int32_t whence) noexcept {
  if (!Has(stream, kLxStreamSeekable)) return -1;
  EmptyBuffer(stream);
  return stream->direct != 0 ? SeekDirect(stream, offset, whence) : LxPlatformSeek(stream->file, offset, whence);
}

std::int32_t Tell(LxStream* stream) noexcept {
  const std::int64_t position = stream->direct != 0 ? stream->position : LxPlatformTell(stream->file);
  if (position == -1) return -1;
  return static_cast<std::int32_t>(std::min<std::int64_t>(position - stream->count, INT32_MAX));
}

// The path must be convertible even where the system opens files by bytes, so that the same paths open everywhere.
bool OpenRegular(const char* path, LxOpenedFile* opened, LxReadOutcome* outcome) noexcept {
  const std::uint32_t refused = LxRefusedAllocations();
  char16_t* widePath = LxUtf8ToUtf16(path);
  if (widePath == nullptr) {
    *outcome = {LxRefusedAllocations() != refused ? kLxReadNoMemory : kLxReadNotFound, 0};
    return false;
  }
  const bool open = LxPlatformOpenRegular(path, widePath, opened, outcome);
  LxFree(widePath);
  return open;
}

}  // namespace

constinit const LxStreamMethods kLxFileStreamMethods = {
    Fill,     FlushAndPut,    Read,           Write, Unget, Flush,      Close,
    Buffered, AlwaysMinusOne, AlwaysMinusOne, Seek,  Tell,  AlwaysZero,
};

namespace {

void CloseOpened(const LxOpenedFile& opened) noexcept {
  if (opened.file != nullptr) {
    (void)std::fclose(opened.file);
  } else {
    LxPlatformClose(opened.descriptor);
  }
}

void SetMode(LxStream* stream, const char* mode) noexcept {
  bool text = stream->unbuffered != 0;
  for (const char* letter = mode; *letter != 0; ++letter) {
    switch (*letter) {
      case '+':
        stream->flags |= kLxStreamUpdate;
        break;
      case 'r':
        stream->flags |= kLxStreamReadable;
        break;
      case 'b':
      case 't':
        text = *letter == 't';
        break;
      default:
        break;
    }
  }
  if (stream->file != nullptr) LxPlatformSetTextMode(stream->file, text);
}

// Null: no memory; the file remains the caller's.
LxStream* NewStreamOver(const LxOpenedFile& opened, bool borrowed, const char* mode, LxMemProcs* procs) noexcept {
  // The record shares the allocation with the buffer, which is not cleared.
  void* buffer = LxAllocKept(procs, kLxStreamBufferSize, kLxPageAligned);
  if (buffer == nullptr) return nullptr;
  static_assert(sizeof(LxStream) <= kLxKeptFront);
  auto* stream = ::new (LxFrontOfKept(buffer)) LxStream{};
  stream->buffer = static_cast<std::uint8_t*>(buffer);
  stream->borrowed = borrowed ? 1 : 0;
  stream->file = opened.file;
  stream->descriptor = opened.descriptor;
  stream->fileLength = opened.length;
  stream->methods = &kLxFileStreamMethods;
  stream->procs = procs;
  stream->direct = stream->fileLength >= 0 ? 1 : 0;
  if (stream->direct != 0 || LxPlatformTell(stream->file) != -1) stream->flags |= kLxStreamSeekable;
  const bool terminal = stream->direct == 0 && LxPlatformIsTerminal(stream->file);
  stream->unbuffered = !Has(stream, kLxStreamSeekable) || terminal ? 1 : 0;
  // Reads are whole pages or go through the stream's buffer, so a second buffer in the FILE would only cost time: it is
  // filled again after every seek. A borrowed FILE may already hold bytes in its buffer, which must not be dropped.
  if (stream->file != nullptr && !borrowed && stream->unbuffered == 0) {
    (void)std::setvbuf(stream->file, nullptr, _IONBF, 0);
  }
  SetMode(stream, mode);
  EmptyBuffer(stream);
  return stream;
}

}  // namespace

LxStream* LxNewFileStream(const char* path, std::FILE* defaultFile, const char* mode, LxMemProcs* procs,
                          LxReadOutcome* outcome) noexcept {
  LxReadOutcome unasked = {};
  if (outcome == nullptr) outcome = &unasked;
  if (procs == nullptr) {
    *outcome = {kLxReadNoMemory, 0};
    return nullptr;
  }
  const bool borrowed = path == nullptr || path[0] == 0;
  LxOpenedFile opened = {defaultFile, -1, -1};
  if (borrowed ? defaultFile == nullptr : !OpenRegular(path, &opened, outcome)) return nullptr;
  LxStream* stream = NewStreamOver(opened, borrowed, mode, procs);
  if (stream != nullptr) return stream;
  *outcome = {kLxReadNoMemory, 0};
  if (!borrowed) CloseOpened(opened);
  return nullptr;
}

LxResult LxOpenFileStream(const char* path, LxStream** out, LxReadOutcome* outcome) noexcept {
  *out = LxNewFileStream(path, stdin, "rb", LxInstalledMemProcs(), outcome);
  return *out != nullptr ? kLxOk : kLxNotFound;
}

LxResult LxCloseStream(LxStream* stream) noexcept {
  if (stream != nullptr) (void)stream->methods->close(stream);
  return kLxOk;
}

bool LxSeekTo(LxStream* stream, std::int32_t position) noexcept {
  if (stream->methods->seek(stream, position, SEEK_SET) == 0) return true;
  stream->flags |= kLxStreamError;
  return false;
}

std::int32_t LxStreamLength(LxStream* stream) noexcept {
  const LxStreamMethods* methods = stream->methods;
  const std::int32_t position = methods->tell(stream);
  std::int32_t length = -1;
  if (position != -1 && methods->seek(stream, 0, SEEK_END) == 0) {
    length = methods->tell(stream);
    if (methods->seek(stream, position, SEEK_SET) != 0) length = -1;
  }
  if (length >= 0) return length;
  if (Has(stream, kLxStreamSeekable)) stream->flags |= kLxStreamError;
  return 0;
}
