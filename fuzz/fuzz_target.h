// Shared by the fuzz targets: the entry point, a check that ends the process with a message, and reading parts of an
// input.
//
// Each <target>.cpp is linked in two ways: with libFuzzer (preset `fuzz`), and otherwise with replay_main.cpp, where
// every seed and every regression file is a test.
#ifndef LXBRIDGE_FUZZ_FUZZ_TARGET_H_
#define LXBRIDGE_FUZZ_FUZZ_TARGET_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/bytes.h"
#include "tests/support/pool_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace lxfuzz {

[[noreturn]] inline void Fail(const char* what, const std::string& detail = "") {
  std::fprintf(stderr, "broken promise: %s %s\n", what, detail.c_str());
  std::abort();
}

inline void Require(bool holds, const char* what) {
  if (!holds) Fail(what);
}

inline void RequireWellFormed(const LxMetadataPool& pool) {
  const testing::AssertionResult result = lxtest::IsWellFormed(pool);
  if (!result) Fail("a well-formed pool", result.message());
}

inline void InstallMemory() {
  if (LxInstalledMemProcs() == nullptr) LxInstallMemProcs(LxRuntimeMemProcs());
}

// Reads parts of an input from its front; missing bytes are zero, missing texts empty.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : at_(data), left_(size) {}
  [[nodiscard]] bool empty() const { return left_ == 0; }
  std::uint8_t Byte() {
    if (left_ == 0) return 0;
    --left_;
    return *at_++;
  }
  lxtest::Bytes Take(std::size_t count) {
    count = std::min(count, left_);
    lxtest::Bytes bytes(at_, at_ + count);
    at_ += count;
    left_ -= count;
    return bytes;
  }
  lxtest::Bytes Rest() { return Take(left_); }

 private:
  const std::uint8_t* at_;
  std::size_t left_;
};

}  // namespace lxfuzz

#endif  // LXBRIDGE_FUZZ_FUZZ_TARGET_H_
