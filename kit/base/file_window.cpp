#include "kit/base/file_window.h"

#include <algorithm>

void LxInitFileWindow(LxFileWindow* window, LxStream* stream, std::int32_t fileSize) noexcept {
  window->stream = stream;
  window->fileSize = std::max(fileSize, 0);
  window->start = 0;
  window->length = 0;
}

const std::uint8_t* LxPeekRange(LxFileWindow* window, std::uint64_t offset, std::uint32_t length) noexcept {
  const auto size = static_cast<std::uint64_t>(window->fileSize);
  if (offset > size || length > size - offset) return nullptr;
  const auto at = static_cast<std::int64_t>(offset);
  const std::int64_t end = at + length;
  if (at < window->start || end > std::int64_t{window->start} + window->length) {
    const std::int64_t start = at / kLxWindowPage * kLxWindowPage;
    const std::int64_t pages = (end - start + kLxWindowPage - 1) / kLxWindowPage;
    const std::int64_t want = std::min<std::int64_t>(pages * kLxWindowPage, window->fileSize - start);
    const LxStreamMethods* methods = window->stream->methods;
    window->start = static_cast<std::int32_t>(start);
    window->length = 0;
    if (!LxSeekTo(window->stream, window->start)) return nullptr;
    window->length = methods->read(window->bytes, 1, static_cast<std::int32_t>(want), window->stream);
    // The range lies inside the file, so a short read is a failure.
    if (window->length < want) window->stream->flags |= kLxStreamError;
    if (end > start + window->length) return nullptr;
  }
  return window->bytes + (at - window->start);
}
