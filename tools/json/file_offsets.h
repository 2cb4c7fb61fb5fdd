// The places of values in the file.
#ifndef LXBRIDGE_TOOLS_JSON_FILE_OFFSETS_H_
#define LXBRIDGE_TOOLS_JSON_FILE_OFFSETS_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kit/model/pool.h"

namespace lxbridge::json {

// The bytes of the file that a pool holds. Valid as long as the pool's blocks.
class FileOffsets {
 public:
  explicit FileOffsets(const LxMetadataPool& pool);

  // The offset in the file of a value of this length. None: there is no value, or it is not a range of the file (owned
  // by its item, joined from several ranges, or inflated).
  [[nodiscard]] std::optional<std::int64_t> Of(const std::uint8_t* value, std::int32_t length) const;

  // Appends up to `length` bytes of the file from an offset on, up to the first gap in the pool's blocks.
  void AppendBytes(std::int64_t offset, std::int64_t length, std::string* bytes) const;

 private:
  struct Block {
    std::uintptr_t address;
    std::int64_t start;
    std::int64_t length;
  };
  [[nodiscard]] const Block* Holding(std::int64_t offset) const;

  std::vector<Block> byAddress_;
  std::vector<Block> byStart_;
  std::vector<std::size_t> furthest_;  // For each i, the index of the block in byStart_[0..i] that ends last.
};

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_FILE_OFFSETS_H_
