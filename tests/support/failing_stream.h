// Which calls of a stream fail, and a stream over bytes with a method table of its own, whose nth read, seek or tell
// fails or comes short, and that records its reads.
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
  bool shortRead = false;       // A failing read gives the first half of the bytes.
  std::int64_t shrinksTo = -1;  // The file has only so many bytes any more; -1: it keeps them.
  int shrinksAfter = 1;         // After that read.
};

// Counts calls, and says of each whether it fails.
class StreamFaultCounter {
 public:
  explicit StreamFaultCounter(const StreamFaults& faults = {}) : faults_(faults) {}
  bool ReadFails() { return Fails(&reads_, faults_.read); }
  bool SeekFails() { return Fails(&seeks_, faults_.seek); }
  bool TellFails() { return Fails(&tells_, faults_.tell); }
  // How many of so many bytes a failing read gives.
  [[nodiscard]] std::int64_t ShortOf(std::int64_t bytes) const { return faults_.shortRead ? bytes / 2 : 0; }
  // Asked before a read.
  [[nodiscard]] bool isShrunk() const { return faults_.shrinksTo >= 0 && reads_ >= faults_.shrinksAfter; }
  [[nodiscard]] std::int64_t shrunkLength() const { return faults_.shrinksTo; }
  [[nodiscard]] bool hasFailed() const { return hasFailed_; }

 private:
  bool Fails(int* calls, int nth) {
    ++*calls;
    const bool fails = nth != 0 && (faults_.fromThenOn ? *calls >= nth : *calls == nth);
    hasFailed_ = hasFailed_ || fails;
    return fails;
  }

  StreamFaults faults_;
  int reads_ = 0;
  int seeks_ = 0;
  int tells_ = 0;
  bool hasFailed_ = false;
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
  }

  [[nodiscard]] const std::vector<StreamRead>& reads() const { return reads_; }
  [[nodiscard]] bool hasFailed() const { return faults_.hasFailed(); }
  void setFaults(const StreamFaults& faults) { faults_ = StreamFaultCounter(faults); }

 private:
  static FailingStream* Of(LxStream* stream) { return static_cast<FailingStream*>(stream); }
  static std::int32_t Read(void* out, std::int32_t size, std::int32_t count, LxStream* stream) noexcept {
    FailingStream* self = Of(stream);
    const std::int64_t asked = std::int64_t{size} * count;
    self->reads_.push_back({self->position_, static_cast<std::int32_t>(asked)});
    std::int64_t length = static_cast<std::int64_t>(self->bytes_.size());
    if (self->faults_.isShrunk()) length = std::min(length, self->faults_.shrunkLength());
    std::int64_t got = std::clamp<std::int64_t>(length - self->position_, 0, asked);
    if (self->faults_.ReadFails()) got = self->faults_.ShortOf(got);
    if (got > 0) std::memcpy(out, self->bytes_.data() + self->position_, static_cast<std::size_t>(got));
    self->position_ += got;
    return static_cast<std::int32_t>(got);
  }
  static std::int32_t Seek(LxStream* stream, std::int32_t offset, std::int32_t whence) noexcept {
    FailingStream* self = Of(stream);
    if (self->faults_.SeekFails()) return -1;
    const auto end = static_cast<std::int64_t>(self->bytes_.size());
    self->position_ = offset + (whence == SEEK_SET ? 0 : whence == SEEK_CUR ? self->position_ : end);
    return 0;
  }
  static std::int32_t Tell(LxStream* stream) noexcept {
    FailingStream* self = Of(stream);
    return self->faults_.TellFails() ? -1 : static_cast<std::int32_t>(self->position_);
  }
  static std::int32_t MinusOne(LxStream*) noexcept { return -1; }
  static std::int32_t Zero(LxStream*) noexcept { return 0; }
  static std::int32_t NoByte(std::int32_t, LxStream*) noexcept { return -1; }
  static std::int32_t NoWrite(const void*, std::int32_t, std::int32_t, LxStream*) noexcept { return 0; }

  static constexpr LxStreamMethods kMethods = {
      MinusOne, NoByte, Read, NoWrite, NoByte, MinusOne, Zero, MinusOne, MinusOne, MinusOne, Seek, Tell, Zero,
  };
  std::vector<std::uint8_t> bytes_;
  StreamFaultCounter faults_;
  std::vector<StreamRead> reads_;
  std::int64_t position_ = 0;
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_FAILING_STREAM_H_
