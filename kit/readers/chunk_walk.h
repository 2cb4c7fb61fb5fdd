// The walk over the chunks of a file: a type of four bytes, a length, that many bytes of data. PNG (third edition, 5.3)
// and RIFF (Multimedia Programming Interface and Data Specifications 1.0) differ in order, byte order and in what
// follows the data.
#ifndef LXBRIDGE_KIT_READERS_CHUNK_WALK_H_
#define LXBRIDGE_KIT_READERS_CHUNK_WALK_H_

#include <cstdint>

#include "kit/base/file_window.h"
#include "kit/readers/container.h"

enum LxChunkForm : std::uint8_t {
  kLxPngChunks,   // Length (big-endian), type, data, a checksum of four bytes.
  kLxRiffChunks,  // Type, length (little-endian), data, a byte to an even length.
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

// The number of a chunk's type.
[[nodiscard]] constexpr std::uint32_t LxChunkType(const char (&name)[5]) noexcept {
  std::uint32_t type = 0;
  for (int i = 0; i < 4; ++i) type = type << 8 | static_cast<std::uint8_t>(name[i]);
  return type;
}

// The next chunk. False at the file's end, at a chunk whose data are not all in the file (what follows the data may be
// missing), and when the file's budget of items is used up.
[[nodiscard]] bool LxNextChunk(LxChunkWalk* walk, LxChunk* chunk) noexcept;

// Offers the chunk's data as a block of rank 0. They are mapped only when they are recognised as one that counts.
// `name` is static.
void LxOfferChunk(LxChunkWalk* walk, const LxChunk& chunk, LxContainerBlockKind kind, const char* name) noexcept;

#endif  // LXBRIDGE_KIT_READERS_CHUNK_WALK_H_
