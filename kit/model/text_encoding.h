// Guessing the encoding of a file's text, and converting it to UTF-8. All functions stay within the bytes that they
// get. Lengths are bytes. Each new text is zero-terminated and freed by the caller with LxFree; null: no memory.
#ifndef LXBRIDGE_KIT_MODEL_TEXT_ENCODING_H_
#define LXBRIDGE_KIT_MODEL_TEXT_ENCODING_H_

#include <cstdint>

// Whether the value is UTF-8 text with a terminating zero byte, followed only by zero bytes.
[[nodiscard]] bool LxIsUtf8Value(const std::uint8_t* bytes, std::int32_t length) noexcept;

enum LxTextEncoding : std::int32_t {
  kLxTextUtf8,
  kLxTextLatin1,
  kLxTextIso2022Jp,
  kLxTextEucJp,
  kLxTextShiftJis,
};
// The encoding in which the fewest bytes are invalid.
[[nodiscard]] LxTextEncoding LxGuessEncoding(const std::uint8_t* bytes, std::int32_t length) noexcept;

// The text, converted from its guessed encoding. UTF-8, ISO-2022-JP and EUC-JP are copied unchanged.
[[nodiscard]] char* LxTextToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept;

// These convert up to the first zero byte. Shift_JIS bytes that encode no character become U+FFFD.
[[nodiscard]] char* LxLatin1ToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept;
[[nodiscard]] char* LxShiftJisToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept;
// Converts up to the first zero unit; an odd last byte is ignored. order: 1 big-endian, else little-endian.
[[nodiscard]] char* LxUtf16ToUtf8(const std::uint8_t* bytes, std::int32_t length, int order) noexcept;
// The probable byte order of a UTF-16 text: 1 big-endian, 0 little-endian.
[[nodiscard]] int LxGuessUtf16Order(const std::uint8_t* bytes, std::int32_t length) noexcept;

// JIS X 0208 in Shift_JIS: the code point by lead byte (0x81..0x9F, 0xE0..0xEF) and trail byte; 0 if there is none.
[[nodiscard]] char16_t LxShiftJisPair(std::uint8_t lead, std::uint8_t trail) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_TEXT_ENCODING_H_
