// A file's bytes to its pool.
#include "fuzz/file_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lxfuzz::CheckFile(lxtest::Bytes(data, data + size));
  return 0;
}
