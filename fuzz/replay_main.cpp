// Runs a fuzz target as a test, without libFuzzer: lx_fuzz_TARGET PLACES FOLDER... over each file of the folders
// (seeds, regressions), and over what becomes of it when it is cut or changed at so many places. A folder after
// --if-any may be missing or empty.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"

namespace {

std::vector<std::string> FilesOf(const std::filesystem::path& place) {
  std::vector<std::string> files;
  std::error_code missing;
  if (std::filesystem::is_regular_file(place, missing)) return {place.string()};
  for (const auto& entry : std::filesystem::directory_iterator(place, missing)) {
    if (entry.is_regular_file()) files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void Run(const lxtest::Bytes& input) {
  (void)LLVMFuzzerTestOneInput(input.data(), input.size());
}

// The last line that is printed names the input that broke something.
void Replay(const std::string& file, std::size_t places) {
  static std::mt19937 random(1);
  std::printf("%s\n", file.c_str());
  const lxtest::Bytes whole = lxtest::ReadWholeFile(file);
  Run(whole);
  for (std::size_t at = 0; at < whole.size(); at += whole.size() / places + 1) {
    std::printf("changed at %zu\n", at);
    std::fflush(stdout);
    Run(lxtest::Truncated(whole, at));
    for (const int value : {0x00, 0x7F, 0xFF, whole[at] ^ 0x10, whole[at] + 1}) {
      Run(lxtest::WithByte(whole, at, static_cast<std::uint8_t>(value)));
    }
    lxtest::Bytes wild = whole;
    for (int i = 0; i < 4; ++i) wild[random() % whole.size()] = static_cast<std::uint8_t>(random());
    Run(wild);
  }
}

}  // namespace

int main(int argc, char** argv) {
  bool mayBeEmpty = false;
  for (int i = 2; i < argc; ++i) {
    if (std::strcmp(argv[i], "--if-any") == 0) {
      mayBeEmpty = true;
      continue;
    }
    const std::vector<std::string> files = FilesOf(argv[i]);
    if (files.empty() && !mayBeEmpty) {
      std::fprintf(stderr, "nothing to replay in %s\n", argv[i]);
      return 1;
    }
    for (const std::string& file : files) Replay(file, std::strtoul(argv[1], nullptr, 10));
  }
  return 0;
}
