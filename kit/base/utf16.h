// UTF-8 to UTF-16 for file paths.
#ifndef LXBRIDGE_KIT_BASE_UTF16_H_
#define LXBRIDGE_KIT_BASE_UTF16_H_

#include <cstdint>

// A new zero-terminated UTF-16 text (the caller frees it with LxFree), or null: no memory, a null text, or a text that
// ends within a sequence. Lenient: the lead byte determines the number of trailing bytes, which are not checked; values
// from 0x110000 on become U+FFFD.
[[nodiscard]] char16_t* LxUtf8ToUtf16(const char* text) noexcept;

#endif  // LXBRIDGE_KIT_BASE_UTF16_H_
