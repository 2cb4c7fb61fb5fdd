// Reading one file into a pool: the kit's entry for everybody outside it.
#ifndef LXBRIDGE_KIT_READERS_READ_FILE_H_
#define LXBRIDGE_KIT_READERS_READ_FILE_H_

#include "kit/base/result.h"
#include "kit/base/stream.h"
#include "kit/model/pool.h"

// Opens, reads and closes the file of a UTF-8 path (empty: standard input). The pool is zero-filled before. kLxNotFound
// when it cannot be opened, else what LxParseImageFile gives. The items' values stay valid until the pool is freed.
[[nodiscard]] LxResult LxReadFileIntoPool(LxMetadataPool* pool, const char* path) noexcept;

// Reads the file of an open stream and puts the stream's position back: kLxOk; a failure, after which the pool is
// empty; 1 when the stream cannot tell or restore its position (pool empty).
[[nodiscard]] LxResult LxParseImageFile(LxStream* stream, LxMetadataPool* pool) noexcept;

#endif  // LXBRIDGE_KIT_READERS_READ_FILE_H_
