// Reading one file into a pool: the kit's entry for everybody outside it.
#ifndef LXBRIDGE_KIT_READERS_READ_FILE_H_
#define LXBRIDGE_KIT_READERS_READ_FILE_H_

#include <cstdint>

#include "kit/base/result.h"
#include "kit/base/stream.h"
#include "kit/model/pool.h"

// Opens, reads and closes the file of a UTF-8 path (empty: standard input). The pool is zero-filled before. kLxNotFound
// when it cannot be opened, else what LxParseImageFile gives; pool->outcome says whether the file could be opened and
// read, which the result does not. The items' values stay valid until the pool is freed.
[[nodiscard]] LxResult LxReadFileIntoPool(LxMetadataPool* pool, const char* path) noexcept;

// Reads the file of an open stream and puts the stream's position back: kLxOk; a failure, after which the pool is
// empty; 1 when the stream cannot tell or restore its position (pool empty).
[[nodiscard]] LxResult LxParseImageFile(LxStream* stream, LxMetadataPool* pool) noexcept;

// The same for the bytes of a file in memory. Nothing is copied: the values of the pool's items point into the bytes.
// REQUIRES: the pool is zero-filled; `length` readable bytes (0 or more) that stay as they are until the pool is freed.
[[nodiscard]] LxResult LxParseImageBytes(const std::uint8_t* bytes, std::int32_t length, LxMetadataPool* pool) noexcept;

#endif  // LXBRIDGE_KIT_READERS_READ_FILE_H_
