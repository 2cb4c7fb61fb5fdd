// What encoding a text of a file has, and how it becomes UTF-8. All functions stay within the bytes that they are
// given. New texts are zero-terminated, from LxAlloc, the caller's to free; null when there is no memory.
#ifndef LXBRIDGE_KIT_MODEL_TEXT_ENCODING_H_
#define LXBRIDGE_KIT_MODEL_TEXT_ENCODING_H_

#include <cstdint>

// Whether the value is UTF-8 text with its terminating zero byte (zero bytes only behind it).
[[nodiscard]] bool LxIsUtf8Value(const std::uint8_t* bytes, std::int32_t length) noexcept;

enum LxTextEncoding : std::int32_t {
  kLxTextUtf8,
  kLxTextLatin1,
  kLxTextIso2022Jp,
  kLxTextEucJp,
  kLxTextShiftJis,
};
// The encoding under which the fewest bytes are errors.
[[nodiscard]] LxTextEncoding LxGuessEncoding(const std::uint8_t* bytes, std::int32_t length) noexcept;

// The text in the encoding that it seems to have. UTF-8, ISO-2022-JP and EUC-JP are copied as they are.
[[nodiscard]] char* LxTextToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept;

// These end at the first zero byte. Shift_JIS bytes that name no character become U+FFFD.
[[nodiscard]] char* LxLatin1ToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept;
[[nodiscard]] char* LxShiftJisToUtf8(const std::uint8_t* bytes, std::int32_t length) noexcept;
// Up to the first zero unit; an odd last byte is left out. order: 1 big-endian.
[[nodiscard]] char* LxUtf16ToUtf8(const std::uint8_t* bytes, std::int32_t length, int order) noexcept;
// The byte order of a UTF-16 text: 1 big-endian, 0 little-endian.
[[nodiscard]] int LxGuessUtf16Order(const std::uint8_t* bytes, std::int32_t length) noexcept;

// JIS X 0208 as Shift_JIS codes it: code points by lead 0x81..0x9F, 0xE0..0xEF and trail; 0 where there is none.
[[nodiscard]] char16_t LxShiftJisPair(std::uint8_t lead, std::uint8_t trail) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_TEXT_ENCODING_H_
