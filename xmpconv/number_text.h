// A short text of numbers, on the stack, for the setters and for date and coordinate texts.
#ifndef LXBRIDGE_XMPCONV_NUMBER_TEXT_H_
#define LXBRIDGE_XMPCONV_NUMBER_TEXT_H_

#include <charconv>
#include <cstddef>
#include <cstdint>

// Holds up to 63 characters, unchecked. Five numbers with signs always fit, and so do three with the texts between
// them; nothing longer is built here.
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

  // As "%0*d": zeros between the sign and the digits, up to `width` characters including the sign.
  LxNumberText& Padded(std::int32_t number, int width) noexcept {
    char digits[12];
    const std::int64_t size = number < 0 ? -std::int64_t{number} : std::int64_t{number};
    const char* const last = std::to_chars(digits, digits + sizeof digits, size).ptr;
    if (number < 0) {
      Char('-');
      --width;
    }
    for (std::ptrdiff_t missing = width - (last - digits); missing > 0; --missing) Char('0');
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): to_chars has written everything before `last`.
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
