// Runs a fuzz target on files and on folders of files: seeds and regressions as tests, without libFuzzer. With
// --if-any, a folder may be missing or empty.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
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

}  // namespace

int main(int argc, char** argv) {
  bool mayBeEmpty = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--if-any") == 0) {
      mayBeEmpty = true;
      continue;
    }
    const std::vector<std::string> files = FilesOf(argv[i]);
    if (files.empty() && !mayBeEmpty) {
      std::fprintf(stderr, "nothing to replay in %s\n", argv[i]);
      return 1;
    }
    for (const std::string& file : files) {
      // Printed before it runs, so that the last line names the input that failed.
      std::printf("%s\n", file.c_str());
      std::fflush(stdout);
      const lxtest::Bytes bytes = lxtest::ReadWholeFile(file);
      (void)LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
  }
  return 0;
}
