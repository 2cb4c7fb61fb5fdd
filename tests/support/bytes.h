// Byte strings of the tests: written readably, joined, bent in one place, and put into temporary files.
#ifndef LXBRIDGE_TESTS_SUPPORT_BYTES_H_
#define LXBRIDGE_TESTS_SUPPORT_BYTES_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lxtest {

enum Order { kLittle = 0, kBig = 1 };

class Bytes : public std::vector<std::uint8_t> {
 public:
  using vector::vector;
  Bytes& operator+=(const Bytes& more) {
    insert(end(), more.begin(), more.end());
    return *this;
  }
};
inline Bytes operator+(Bytes left, const Bytes& right) {
  left += right;  // Moved out, where the sum itself would be copied.
  return left;
}

// The base of builders: bytes that grow by calls in a row. A builder stands for its bytes.
template <typename Builder>
class ByteBuilder {
 public:
  // Bytes as they are, where the next part would stand.
  Builder& Raw(const Bytes& bytes) {
    body_ += bytes;
    return static_cast<Builder&>(*this);
  }
  [[nodiscard]] Bytes Build() const { return body_; }
  operator Bytes() const { return static_cast<const Builder&>(*this).Build(); }  // NOLINT: meant to be implicit.

 protected:
  Bytes body_;
};

// The characters of a text, without a terminating zero.
[[nodiscard]] Bytes Text(std::string_view text);
// Hex digits in pairs; spaces are passed over: Hex("FF D8").
[[nodiscard]] Bytes Hex(std::string_view digits);
[[nodiscard]] Bytes Filled(std::size_t count, std::uint8_t value = 0);
[[nodiscard]] Bytes Put16(std::uint32_t value, Order order = kBig);
[[nodiscard]] Bytes Put32(std::uint64_t value, Order order = kBig);

[[nodiscard]] Bytes Truncated(const Bytes& bytes, std::size_t length);
[[nodiscard]] Bytes WithByte(const Bytes& bytes, std::size_t at, std::uint8_t value);
// Overwrites from `at` on; the length stays.
[[nodiscard]] Bytes WithBytes(const Bytes& bytes, std::size_t at, const Bytes& patch);
// The offset of the first occurrence; a failed test and 0 when there is none.
[[nodiscard]] std::size_t OffsetOf(const Bytes& bytes, const Bytes& part);

// A file of these bytes, removed at the end of its life.
class TempFile {
 public:
  explicit TempFile(const Bytes& bytes, const std::string& suffix = "");
  ~TempFile();
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// The bytes of a file; empty when it cannot be read.
[[nodiscard]] Bytes ReadWholeFile(const std::string& path);

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_BYTES_H_
