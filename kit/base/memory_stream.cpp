#include "kit/base/memory_stream.h"

#include <algorithm>
#include <cstring>

namespace {

std::int32_t Read(void* buffer, std::int32_t size, std::int32_t count, LxStream* stream) noexcept {
  auto* self = static_cast<LxMemoryStream*>(stream);
  if (size < 1 || count < 1) return 0;
  const std::int64_t left = std::max(self->length - self->at, 0);
  const auto got = static_cast<std::int32_t>(std::min(std::int64_t{size} * count, left));
  if (got > 0) std::memcpy(buffer, self->bytes + self->at, static_cast<std::size_t>(got));
  self->at += got;
  return got;
}

std::int32_t Fill(LxStream* stream) noexcept {
  std::uint8_t byte = 0;
  return Read(&byte, 1, 1, stream) == 1 ? byte : -1;
}

std::int32_t Seek(LxStream* stream, std::int32_t offset, std::int32_t whence) noexcept {
  auto* self = static_cast<LxMemoryStream*>(stream);
  std::int64_t target = offset;
  if (whence == SEEK_CUR) target += self->at;
  if (whence == SEEK_END) target += self->length;
  if (target < 0 || target > INT32_MAX) return -1;
  self->at = static_cast<std::int32_t>(target);
  return 0;
}

std::int32_t Tell(LxStream* stream) noexcept {
  return static_cast<LxMemoryStream*>(stream)->at;
}

std::int32_t NoPut(std::int32_t, LxStream*) noexcept {
  return -1;
}

std::int32_t NoWrite(const void*, std::int32_t, std::int32_t, LxStream*) noexcept {
  return 0;
}

std::int32_t MinusOne(LxStream*) noexcept {
  return -1;
}

std::int32_t Zero(LxStream*) noexcept {
  return 0;
}

constexpr LxStreamMethods kMemoryMethods = {Fill, NoPut,    Read,     NoWrite, NoPut, MinusOne, Zero,
                                            Zero, MinusOne, MinusOne, Seek,    Tell,  Zero};

}  // namespace

void LxInitMemoryStream(LxMemoryStream* stream, const std::uint8_t* bytes, std::int32_t length) noexcept {
  *stream = LxMemoryStream{};
  stream->flags = kLxStreamReadable | kLxStreamSeekable;
  stream->methods = &kMemoryMethods;
  stream->bytes = bytes;
  stream->length = length;
}

const std::uint8_t* LxStreamMemory(const LxStream* stream) noexcept {
  return stream->methods == &kMemoryMethods ? static_cast<const LxMemoryStream*>(stream)->bytes : nullptr;
}
