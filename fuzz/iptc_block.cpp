// IPTC datasets: every item is a dataset of the block, in order.
#include "fuzz/fuzz_target.h"
#include "kit/model/tables/tables.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lxtest::OpenedFile file(lxtest::Bytes(data, data + size));
  std::size_t bytes = 0;
  for (const LxMetadataItem* item = file.Parse(kLxIptcSpace); item != nullptr; item = item->next) {
    bytes += 5 + static_cast<std::size_t>(item->valueLength);
  }
  lxfuzz::RequireWellFormed(file.pool());
  lxfuzz::Require(bytes <= size, "datasets do not overlap");
  return 0;
}
