// Image resource blocks and all that stands in them: datasets, Exif blocks, thumbnails, packets.
#include "fuzz/fuzz_target.h"
#include "kit/model/tables/tables.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lxtest::OpenedFile file(lxtest::Bytes(data, data + size));
  std::size_t bytes = 0;
  for (const LxMetadataItem* item = file.Parse(kLxImageResourceSpace); item != nullptr; item = item->next) {
    bytes += 12 + static_cast<std::size_t>(item->valueLength);
  }
  lxfuzz::RequireWellFormed(file.pool());
  lxfuzz::Require(bytes <= size, "blocks do not overlap");
  return 0;
}
