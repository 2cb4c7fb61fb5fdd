// The result codes of the metadata kit.
#ifndef LXBRIDGE_KIT_BASE_RESULT_H_
#define LXBRIDGE_KIT_BASE_RESULT_H_

#include <cstdint>

// 0 is success, below 0 a failure; an iteration returns kLxEnd at its end.
using LxResult = std::int32_t;

inline constexpr LxResult kLxOk = 0;
inline constexpr LxResult kLxEnd = 1;
inline constexpr LxResult kLxNotImplemented = -1;
inline constexpr LxResult kLxOutOfMemory = -2;
inline constexpr LxResult kLxBadParameter = -3;
inline constexpr LxResult kLxReadError = -4;
inline constexpr LxResult kLxWriteError = -5;
inline constexpr LxResult kLxBadReadFormat = -6;
inline constexpr LxResult kLxNotFound = -7;
inline constexpr LxResult kLxInternalError = -8;
inline constexpr LxResult kLxOpenFailedRead = -9;
inline constexpr LxResult kLxOpenFailedWrite = -10;

// The kit's name of a code: "OK" for 0, "NotIMpl" for -1, to "-11" for -11. Null for any other code (1 has no name).
[[nodiscard]] const char* LxResultName(LxResult code) noexcept;

#endif  // LXBRIDGE_KIT_BASE_RESULT_H_
