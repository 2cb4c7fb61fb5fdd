// A stream over bytes with a method table of its own, whose nth read, seek or tell fails or comes short, and that keeps
// what was read where. Uses kit/base/stream.h.
#ifndef LXBRIDGE_TESTS_SUPPORT_FAILING_STREAM_H_
#define LXBRIDGE_TESTS_SUPPORT_FAILING_STREAM_H_

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "kit/base/stream.h"

namespace lxtest {

// Which call fails, counted from 1; 0: none.
struct StreamFaults {
  int read = 0;
  int seek = 0;
  int tell = 0;
  bool fromThenOn = false;      // Else that one call only.
  bool shortRead = false;       // A failing read gives the first half of what was asked for.
  std::int64_t shrinksTo = -1;  // Behind the first read the file has only so many bytes; -1: it keeps them.
};

struct StreamRead {
  std::int64_t position;
  std::int32_t bytes;  // Asked for.
  bool operator==(const StreamRead&) const = default;
};

class FailingStream : public LxStream {
 public:
  explicit FailingStream(std::vector<std::uint8_t> bytes, const StreamFaults& faults = {})
      : LxStream{}, bytes_(std::move(bytes)), faults_(faults) {
    flags = kLxStreamReadable | kLxStreamSeekable;
    methods = &kMethods;
    cursor = base = buffer;
  }

  [[nodiscard]] const std::vector<StreamRead>& reads() const { return reads_; }
  [[nodiscard]] bool hasFailed() const { return hasFailed_; }
  [[nodiscard]] bool isClosed() const { return isClosed_; }
  void setFaults(const StreamFaults& faults) {
    faults_ = faults;
    readCalls_ = seekCalls_ = tellCalls_ = 0;
  }

 private:
  static FailingStream* Of(LxStream* stream) { return static_cast<FailingStream*>(stream); }
  bool Fails(int* calls, int nth) {
    ++*calls;
    const bool fails = nth != 0 && (faults_.fromThenOn ? *calls >= nth : *calls == nth);
    hasFailed_ = hasFailed_ || fails;
    return fails;
  }
  static std::int32_t Read(void* out, std::int32_t size, std::int32_t count, LxStream* stream) noexcept {
    FailingStream* self = Of(stream);
    const std::int64_t asked = std::int64_t{size} * count;
    self->reads_.push_back({self->position_, static_cast<std::int32_t>(asked)});
    const bool shrunk = self->readCalls_ > 0 && self->faults_.shrinksTo >= 0;
    std::int64_t length = static_cast<std::int64_t>(self->bytes_.size());
    if (shrunk) length = std::min(length, self->faults_.shrinksTo);
    std::int64_t got = std::clamp<std::int64_t>(length - self->position_, 0, asked);
    if (self->Fails(&self->readCalls_, self->faults_.read)) got = self->faults_.shortRead ? got / 2 : 0;
    if (got > 0) std::memcpy(out, self->bytes_.data() + self->position_, static_cast<std::size_t>(got));
    self->position_ += got;
    return static_cast<std::int32_t>(got);
  }
  static std::int32_t Seek(LxStream* stream, std::int32_t offset, std::int32_t whence) noexcept {
    FailingStream* self = Of(stream);
    if (self->Fails(&self->seekCalls_, self->faults_.seek)) return -1;
    const auto end = static_cast<std::int64_t>(self->bytes_.size());
    self->position_ = offset + (whence == SEEK_SET ? 0 : whence == SEEK_CUR ? self->position_ : end);
    return 0;
  }
  static std::int32_t Tell(LxStream* stream) noexcept {
    FailingStream* self = Of(stream);
    return self->Fails(&self->tellCalls_, self->faults_.tell) ? -1 : static_cast<std::int32_t>(self->position_);
  }
  static std::int32_t Close(LxStream* stream) noexcept {
    Of(stream)->isClosed_ = true;
    return 0;
  }
  static std::int32_t MinusOne(LxStream*) noexcept { return -1; }
  static std::int32_t Zero(LxStream*) noexcept { return 0; }
  static std::int32_t NoByte(std::int32_t, LxStream*) noexcept { return -1; }
  static std::int32_t NoWrite(const void*, std::int32_t, std::int32_t, LxStream*) noexcept { return 0; }

  static constexpr LxStreamMethods kMethods = {
      MinusOne, NoByte, Read, NoWrite, NoByte, MinusOne, Close, MinusOne, MinusOne, MinusOne, Seek, Tell, Zero,
  };
  std::vector<std::uint8_t> bytes_;
  StreamFaults faults_;
  std::vector<StreamRead> reads_;
  std::int64_t position_ = 0;
  int readCalls_ = 0;
  int seekCalls_ = 0;
  int tellCalls_ = 0;
  bool hasFailed_ = false;
  bool isClosed_ = false;
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_FAILING_STREAM_H_
