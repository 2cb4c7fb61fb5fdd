// Compares importing files with opening and reading them. For the camera JPEGs of a folder, in one run:
//   Pipeline  LxInterchangeNew to LxInterchangeDelete, one file after the other
//   OpenRead  open, fstat, one pread of the first 64 KiB, close, of the same files
// With --threads=N also
//   Threads   N threads at once, each of which reads all the files
// Warm cache, repetitions interleaved; prints the medians and their ratios, and with threads, their files per second
// against those of one thread.
//
//   pipeline_bench [--files=FOLDER-OR-FILE] [--threads=N] [Google Benchmark's options]
//
// FOLDER defaults to ../shared/corpus next to the tree. A camera JPEG is a JPEG file with an EXIF segment in its first
// 64 KiB.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "bench/medians.h"

namespace {

constexpr std::size_t kReadBytes = 64 * 1024;

bool IsCameraJpeg(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string head(kReadBytes, '\0');
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(file.gcount()));
  const std::string_view exif("Exif\0\0", 6);
  return head.starts_with("\xFF\xD8\xFF") && head.find(exif) != std::string::npos;
}

std::vector<std::string> CameraJpegs(const std::string& place) {
  std::vector<std::string> files;
  std::error_code error;
  if (std::filesystem::is_directory(place, error)) {
    for (const auto& entry : std::filesystem::directory_iterator(place, error)) {
      if (entry.is_regular_file() && IsCameraJpeg(entry.path().string())) files.push_back(entry.path().string());
    }
  } else if (IsCameraJpeg(place)) {
    files.push_back(place);
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Begins with the file of that number, and goes on with the first after the last.
void ReadAll(const std::vector<std::string>& files, std::size_t first = 0) {
  for (std::size_t i = 0; i < files.size(); ++i) {
    LxInterchangeHandle handle = LxInterchangeNew(files[(first + i) % files.size()].c_str());
    benchmark::DoNotOptimize(LxInterchangeGetXMP(handle));
    LxInterchangeDelete(handle);
  }
}

void Pipeline(benchmark::State& state, const std::vector<std::string>& files) {
  for (auto _ : state) ReadAll(files);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(files.size()));
}

// An iteration is long enough that starting threads does not matter.
void Threads(benchmark::State& state, const std::vector<std::string>& files, int threads) {
  constexpr int kPasses = 200;
  for (auto _ : state) {
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i) {
      // Threads that opened the same file at the same time would wait for each other in the kernel.
      const std::size_t first = files.size() * static_cast<std::size_t>(i) / static_cast<std::size_t>(threads);
      running.emplace_back([&files, first] {
        for (int pass = 0; pass < kPasses; ++pass) ReadAll(files, first);
      });
    }
    for (std::thread& thread : running) thread.join();
  }
  state.SetItemsProcessed(state.iterations() * kPasses * threads * static_cast<std::int64_t>(files.size()));
}

void OpenRead(benchmark::State& state, const std::vector<std::string>& files) {
  static char buffer[kReadBytes];
  for (auto _ : state) {
    for (const std::string& file : files) {
      const int descriptor = open(file.c_str(), O_RDONLY);
      struct stat status;
      if (descriptor < 0 || fstat(descriptor, &status) != 0 || pread(descriptor, buffer, sizeof buffer, 0) < 0) {
        state.SkipWithError("a file cannot be read");
      }
      benchmark::DoNotOptimize(buffer);
      close(descriptor);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(files.size()));
}

}  // namespace

int main(int argc, char** argv) {
  std::string place = LXBRIDGE_CORPUS;
  int threads = 0;
  std::vector<char*> arguments;
  for (int i = 0; i < argc; ++i) {
    constexpr std::string_view kFiles = "--files=", kThreads = "--threads=";
    if (std::string_view(argv[i]).starts_with(kFiles)) {
      place = argv[i] + kFiles.size();
    } else if (std::string_view(argv[i]).starts_with(kThreads)) {
      threads = std::atoi(argv[i] + kThreads.size());
    } else {
      arguments.push_back(argv[i]);
    }
  }
  arguments = lxbench::WithRepetitions(static_cast<int>(arguments.size()), arguments.data());
  int count = static_cast<int>(arguments.size());

  const std::vector<std::string> files = CameraJpegs(place);
  if (files.empty()) {
    std::fprintf(stderr, "pipeline_bench: no camera JPEGs in %s\n", place.c_str());
    return 1;
  }
  LxInterchangeInit();
  benchmark::RegisterBenchmark("Pipeline", Pipeline, files)->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("OpenRead", OpenRead, files)->Unit(benchmark::kMicrosecond);
  for (const int number : {1, threads}) {
    if (threads < 1) break;
    benchmark::RegisterBenchmark(("Threads" + std::to_string(number)).c_str(), Threads, files, number)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
  }
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  lxbench::MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n%zu files; per file:\n", files.size());
  reporter.PrintRatio("Pipeline", "OpenRead", "us", static_cast<double>(files.size()));
  const double several = reporter.Median("Threads" + std::to_string(threads));
  if (several > 0)
    std::printf("%d threads: %.2f times the files per second of one\n", threads,
                threads * reporter.Median("Threads1") / several);
  LxInterchangeTerm();
  return 0;
}
