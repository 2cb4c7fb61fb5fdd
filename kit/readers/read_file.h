// Reading a file into a pool: the entry point of the kit.
#ifndef LXBRIDGE_KIT_READERS_READ_FILE_H_
#define LXBRIDGE_KIT_READERS_READ_FILE_H_

#include <cstdint>

#include "kit/base/result.h"
#include "kit/base/stream.h"
#include "kit/model/pool.h"

// Opens, reads and closes the file at a UTF-8 path (empty: standard input). kLxNotFound if it cannot be opened, else
// the result of LxParseImageFile; pool->outcome tells whether the file could be opened and read to the end. The items'
// values stay valid until the pool is freed. REQUIRES: the pool is zero-filled.
[[nodiscard]] LxResult LxReadFileIntoPool(LxMetadataPool* pool, const char* path) noexcept;

// Reads the file of an open stream and restores the stream's position. kLxOk; a failure, after which the pool is empty;
// 1 if the stream cannot tell or restore its position (the pool is empty).
[[nodiscard]] LxResult LxParseImageFile(LxStream* stream, LxMetadataPool* pool) noexcept;

// The same for the bytes of a file in memory. Nothing is copied: the values of the items point into the bytes.
// REQUIRES: the pool is zero-filled; `length` readable bytes (0 or more) that do not change until the pool is freed.
[[nodiscard]] LxResult LxParseImageBytes(const std::uint8_t* bytes, std::int32_t length, LxMetadataPool* pool) noexcept;

#endif  // LXBRIDGE_KIT_READERS_READ_FILE_H_
