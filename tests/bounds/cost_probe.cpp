// Imports one hostile file and prints its cost: lx_cost_probe NAME SIZE prints "seconds peak-bytes file-bytes items",
// the seconds being the processor's. Without arguments it lists the names. A process of its own, so that no file pays
// for the memory of another, and so that a profiler can count the instructions of LxProbedImport alone.
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include "api/interchange.h"
#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "kit/base/memory.h"
#include "kit/readers/dispatch.h"
#include "tests/bounds/hostile_files.h"
#include "tests/support/bytes.h"
#include "tests/support/pool_support.h"

namespace {

// A line of /proc/self/status, in bytes; 0 where there is no such file.
std::size_t StatusBytes(const char* line) {
  std::ifstream status("/proc/self/status");
  for (std::string text; std::getline(status, text);) {
    if (text.starts_with(line)) return 1024 * std::strtoul(text.c_str() + std::strlen(line), nullptr, 10);
  }
  return 0;
}

void ResetPeak() {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
}

}  // namespace

// The profiler finds it by this name and linkage.
extern "C" [[gnu::noinline]] void LxProbedImport(const char* path) {
  LxInterchange interchange(path);
}

int main(int argc, char** argv) {
  if (argc != 3) {
    for (const lxtest::HostileFile& file : lxtest::HostileFiles()) std::puts(file.name);
    return 0;
  }
  for (const lxtest::HostileFile& file : lxtest::HostileFiles()) {
    if (std::strcmp(file.name, argv[1]) != 0) continue;
    const lxtest::TempFile saved(file.make(std::strtoul(argv[2], nullptr, 10)));
    const std::string& path = saved.path();
    LxInstallMemProcs(LxRuntimeMemProcs());
    if (!TAL_T_NMT::StartBrokerClient(TALOrdinal5()) || !StartXMPClient(TALOrdinal5())) return 1;
    ResetPeak();
    const std::size_t before = StatusBytes("VmRSS:");
    const std::clock_t begin = std::clock();
    LxProbedImport(path.c_str());
    const double took = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    const std::size_t peak = StatusBytes("VmHWM:");
    const lxtest::PoolPtr pool = lxtest::ReadPoolFromPath(path);
    const testing::AssertionResult sound = lxtest::IsWellFormed(*pool);
    const auto length = static_cast<std::size_t>(std::filesystem::file_size(path));
    const std::size_t items = lxtest::AllItems(*pool).size();
    const bool fits = items <= length / kLxFileBytesPerItem + kLxItemsAtLeast;
    if (!sound || !fits) std::fprintf(stderr, "%zu items; %s\n", items, sound.message());
    std::printf("%.3f %zu %zu %zu\n", took, peak > before ? peak - before : 0, length, items);
    if (!sound || !fits) return 1;
    StopXMPClient();
    TAL_T_NMT::ShutDownBrokerClient();
    return 0;
  }
  std::fprintf(stderr, "no hostile file is called %s\n", argv[1]);
  return 2;
}
