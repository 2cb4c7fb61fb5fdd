#include "tests/support/bytes.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace lxtest {

Bytes Text(std::string_view text) {
  return Bytes(text.begin(), text.end());
}

Bytes Hex(std::string_view digits) {
  Bytes out;
  unsigned value = 0;
  int count = 0;
  for (const char c : digits) {
    if (c == ' ') continue;
    value = value * 16 + static_cast<unsigned>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
    if (++count % 2 == 0) {
      out.push_back(static_cast<std::uint8_t>(value));
      value = 0;
    }
  }
  return out;
}

Bytes Filled(std::size_t count, std::uint8_t value) {
  return Bytes(count, value);
}

Bytes Put16(std::uint32_t value, Order order) {
  Bytes out = {static_cast<std::uint8_t>(value >> 8 & 0xFF), static_cast<std::uint8_t>(value & 0xFF)};
  if (order == kLittle) std::reverse(out.begin(), out.end());
  return out;
}

Bytes Put32(std::uint64_t value, Order order) {
  Bytes out;
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(value >> shift & 0xFF));
  if (order == kLittle) std::reverse(out.begin(), out.end());
  return out;
}

Bytes Truncated(const Bytes& bytes, std::size_t length) {
  Bytes out = bytes;
  out.resize(std::min(length, bytes.size()));
  return out;
}

Bytes WithByte(const Bytes& bytes, std::size_t at, std::uint8_t value) {
  return WithBytes(bytes, at, {value});
}

Bytes WithBytes(const Bytes& bytes, std::size_t at, const Bytes& patch) {
  Bytes out = bytes;
  for (std::size_t i = 0; i < patch.size(); ++i) out.at(at + i) = patch[i];
  return out;
}

std::size_t OffsetOf(const Bytes& bytes, const Bytes& part) {
  const auto found = std::search(bytes.begin(), bytes.end(), part.begin(), part.end());
  if (found == bytes.end()) {
    ADD_FAILURE() << "the bytes that a test looks for are not there";
    return 0;
  }
  return static_cast<std::size_t>(found - bytes.begin());
}

TempFile::TempFile(const Bytes& bytes, const std::string& suffix) {
  path_ = (std::filesystem::temp_directory_path() / "lxtest-XXXXXX").string() + suffix;
  const int descriptor = ::mkstemps(path_.data(), static_cast<int>(suffix.size()));
  std::FILE* file = descriptor < 0 ? nullptr : ::fdopen(descriptor, "wb");
  const bool written =
      file != nullptr && (bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size());
  if (file == nullptr || std::fclose(file) != 0 || !written) ADD_FAILURE() << "cannot write " << path_;
}

TempFile::~TempFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

Bytes ReadWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace lxtest
