// Image resource blocks with all that stands in them, or IPTC datasets: the first byte chooses.
#include "fuzz/fuzz_target.h"
#include "kit/model/tables/tables.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lxfuzz::Input input(data, size);
  const bool areDatasets = input.Byte() % 2 != 0;
  lxtest::OpenedFile file(input.Rest());
  std::size_t bytes = 0;
  for (const LxMetadataItem* item = file.Parse(areDatasets ? kLxIptcSpace : kLxImageResourceSpace); item != nullptr;
       item = item->next) {
    bytes += (areDatasets ? 5 : 12) + static_cast<std::size_t>(item->valueLength);
  }
  lxfuzz::RequireWellFormed(file.pool());
  lxfuzz::Require(bytes <= size, "blocks do not overlap");
  return 0;
}
