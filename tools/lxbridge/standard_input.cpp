// Copying standard input to its temporary file.
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

constexpr std::int64_t kLongestStandardInput = std::int64_t{4} << 30;
constexpr std::size_t kCopyBlock = 64 * 1024;

}  // namespace

const std::string& StandardInput::Fill() {
  if (!filled_) {
    filled_ = true;
    if (problem_ != 0) {
      failure_ = std::strerror(problem_);
    } else if (source_ >= 0) {
      failure_ = CopyAll();
    }
  }
  return failure_;
}

std::string StandardInput::CopyAll() const {
  char block[kCopyBlock];
  for (std::int64_t copied = 0;;) {
    const std::ptrdiff_t got = ReadSource(block, kCopyBlock);
    if (got < 0) return std::strerror(errno);
    if (got == 0) break;
    copied += got;
    if (copied > kLongestStandardInput) return "longer than 4 GiB";
    if (!WriteCopy(std::string_view(block, static_cast<std::size_t>(got)))) return std::strerror(errno);
  }
  return RewindCopy() ? std::string() : std::strerror(errno);
}

}  // namespace lxbridge::command
