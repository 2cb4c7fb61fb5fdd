// A short text made of numbers, on the stack: what the setters and the date and coordinate texts are built in.
#ifndef LXBRIDGE_XMPCONV_NUMBER_TEXT_H_
#define LXBRIDGE_XMPCONV_NUMBER_TEXT_H_

#include <charconv>
#include <cstddef>
#include <cstdint>

// Holds up to 63 characters. Five numbers with their signs, or three and the texts between them, fit always; nothing
// longer is put together here, so there is no check.
class LxNumberText {
 public:
  LxNumberText& Char(char character) noexcept {
    *end_++ = character;
    return *this;
  }

  LxNumberText& Number(std::int64_t number) noexcept {
    end_ = std::to_chars(end_, text_ + sizeof text_ - 1, number).ptr;
    return *this;
  }

  // As "%0*d": zeros between the sign and the digits up to `width` characters, the sign counted.
  LxNumberText& Padded(std::int32_t number, int width) noexcept {
    char digits[12];
    const std::int64_t size = number < 0 ? -std::int64_t{number} : std::int64_t{number};
    const char* const last = std::to_chars(digits, digits + sizeof digits, size).ptr;
    if (number < 0) {
      Char('-');
      --width;
    }
    for (std::ptrdiff_t missing = width - (last - digits); missing > 0; --missing) Char('0');
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): to_chars has written what stands before `last`.
    for (const char* digit = digits; digit != last; ++digit) Char(*digit);
    return *this;
  }

  [[nodiscard]] const char* Text() noexcept {
    *end_ = '\0';
    return text_;
  }

 private:
  char text_[64];
  char* end_ = text_;
};

#endif  // LXBRIDGE_XMPCONV_NUMBER_TEXT_H_
