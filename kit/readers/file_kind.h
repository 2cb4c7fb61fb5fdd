// Recognising a file by its first bytes.
#ifndef LXBRIDGE_KIT_READERS_FILE_KIND_H_
#define LXBRIDGE_KIT_READERS_FILE_KIND_H_

#include <cstdint>

#include "kit/model/pool.h"

inline constexpr std::int32_t kLxFileHeaderSize = 16;

// REQUIRES: 16 readable bytes.
[[nodiscard]] LxFileKind LxDetectFileKind(const std::uint8_t* bytes) noexcept;

#endif  // LXBRIDGE_KIT_READERS_FILE_KIND_H_
