// A walk over the chunks of a file: a type of four bytes, a length, that many bytes of data. PNG (third edition, 5.3)
// and RIFF (Multimedia Programming Interface and Data Specifications 1.0) differ in field order, byte order and in the
// bytes after the data.
#ifndef LXBRIDGE_KIT_READERS_CHUNK_WALK_H_
#define LXBRIDGE_KIT_READERS_CHUNK_WALK_H_

#include <cstdint>

#include "kit/base/file_window.h"
#include "kit/readers/container.h"

enum LxChunkForm : std::uint8_t {
  kLxPngChunks,   // Length (big-endian), type, data, four bytes of checksum.
  kLxRiffChunks,  // Type, length (little-endian), data, padding to an even length.
};

struct LxChunkWalk {
  LxContainer* container;
  LxFileWindow* window;
  LxChunkForm form;
  std::uint64_t next;  // The file offset of the next chunk.
};

struct LxChunk {
  std::uint32_t type;  // Its four characters, the first one most significant.
  std::uint32_t data;  // File offset.
  std::uint32_t length;
};

// A chunk type as a number.
[[nodiscard]] constexpr std::uint32_t LxChunkType(const char (&name)[5]) noexcept {
  std::uint32_t type = 0;
  for (int i = 0; i < 4; ++i) type = type << 8 | static_cast<std::uint8_t>(name[i]);
  return type;
}

// The next chunk. False at the end of the file, at a chunk whose data is not completely in the file (only its checksum
// or padding may be missing), and when the file's budget of items is used up.
[[nodiscard]] bool LxNextChunk(LxChunkWalk* walk, LxChunk* chunk) noexcept;

// Offers the chunk's data as a block of rank 0. The data is mapped only if it is recognised as a block that counts.
// `name` is static.
void LxOfferChunk(LxChunkWalk* walk, const LxChunk& chunk, LxContainerBlockKind kind, const char* name) noexcept;

#endif  // LXBRIDGE_KIT_READERS_CHUNK_WALK_H_
