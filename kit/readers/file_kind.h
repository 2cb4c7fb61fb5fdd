// Recognising a file by its first bytes.
#ifndef LXBRIDGE_KIT_READERS_FILE_KIND_H_
#define LXBRIDGE_KIT_READERS_FILE_KIND_H_

#include <cstdint>

#include "kit/base/stream.h"
#include "kit/model/pool.h"

inline constexpr std::int32_t kLxFileHeaderSize = 16;

// The kind, as far as the first 16 bytes determine it. REQUIRES: 16 readable bytes.
[[nodiscard]] LxFileKind LxDetectFileKind(const std::uint8_t* bytes) noexcept;

// The kind of an open file, from its first 16 bytes. If these are not enough, it is determined by the compatible brands
// of a file type box or by the beginning of an XML text. Reads at the stream's position and restores it. kLxFileUnknown
// also for a file of fewer than 16 bytes and for a stream that cannot be read or repositioned.
[[nodiscard]] LxFileKind LxDetectStreamKind(LxStream* stream) noexcept;

// Whether files of the kind have a reader. Of other files, only the kind is determined.
[[nodiscard]] bool LxHasFileReader(std::int32_t fileKind) noexcept;

#endif  // LXBRIDGE_KIT_READERS_FILE_KIND_H_
