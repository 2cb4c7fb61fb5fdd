// Measures the command over many files and over one. All in one run, with interleaved repetitions over the same files:
//   two workers against one          files per second
//   one worker against the library   the library: LxInterchangeNew to LxInterchangeDelete, once alone and once with the
//                                    packet that the command prints. Each time in a new process, like the worker: a
//                                    process's first thousand files take a tenth longer than later ones
//   memory                           the largest process of the command, also over ten times the files
//   folders of small files           the walk with two workers against read_folder with two processes: of the sample,
//                                    which has 28 properties, and of the same picture without metadata
//   start-up                         the whole process for a file of 2 kB against open_read's
// Ratios are of medians; minima are printed as well, since other work on the machine can only add time.
//
//   batch_bench [FOLDER [FILES [REPETITIONS]]]        LXBRIDGE=PATH: another build of the command
//
// Links to the files of FOLDER (../shared/corpus next to the tree), FILES (16000) in total, are made in a temporary
// folder.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "host/include/lxbridge/xmp.hpp"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

double SecondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// Runs a program and discards its output. Returns the seconds that it took; also the memory of its largest process in
// kB, and the processor seconds of it and its children.
double Run(std::vector<std::string> words, long* memory = nullptr, double* processors = nullptr) {
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  const Clock::time_point begin = Clock::now();
  pid_t child = 0;
  int status = 0;
  rusage usage = {};
  if (posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ) != 0 ||
      wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) > 1) {
    std::fprintf(stderr, "batch_bench: cannot run %s\n", argv[0]);
    std::exit(1);
  }
  const double seconds = SecondsSince(begin);
  posix_spawn_file_actions_destroy(&actions);
  if (memory != nullptr) *memory = std::max(*memory, usage.ru_maxrss);
  if (processors != nullptr) *processors = SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime);
  return seconds;
}

double LibrarySeconds(const std::vector<std::string>& files, bool packets) {
  const lxbridge::Library library;
  const Clock::time_point begin = Clock::now();
  std::string packet;
  for (const std::string& file : files) {
    const LxInterchangeHandle handle = LxInterchangeNew(file.c_str());
    if (packets) lxbridge::XmpView(LxInterchangeGetXMP(handle)).SerializeTo(&packet);
    LxInterchangeDelete(handle);
  }
  return SecondsSince(begin);
}

double RunLibrary(const std::vector<std::string>& files, bool packets) {
  int ends[2];
  double seconds = 0;
  if (::pipe(ends) != 0) std::exit(1);
  const pid_t child = ::fork();
  if (child == 0) {
    seconds = LibrarySeconds(files, packets);
    ::_exit(::write(ends[1], &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
  }
  ::close(ends[1]);
  const bool told = child > 0 && ::read(ends[0], &seconds, sizeof seconds) == sizeof seconds;
  ::close(ends[0]);
  if (!told || ::waitpid(child, nullptr, 0) != child) {
    std::fprintf(stderr, "batch_bench: the library's process failed\n");
    std::exit(1);
  }
  return seconds;
}

struct Series {
  std::vector<double> seconds;
  double Median() {
    std::sort(seconds.begin(), seconds.end());
    return seconds[seconds.size() / 2];
  }
  double Least() const { return *std::min_element(seconds.begin(), seconds.end()); }
};

// A copy of a JPEG file without its APPn segments, filled up with zeros to the same length.
void WriteWithoutMetadata(const fs::path& from, const fs::path& to) {
  std::ifstream in(from, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes.at(at)); };
  std::string plain = bytes.substr(0, 2);
  std::size_t at = 2;
  while (byte(at + 1) != 0xDA) {
    const std::size_t length = 2 + std::size_t{byte(at + 2)} * 256 + byte(at + 3);
    if ((byte(at + 1) & 0xF0) != 0xE0) plain.append(bytes, at, length);
    at += length;
  }
  plain.append(bytes, at).resize(bytes.size());
  std::ofstream(to, std::ios::binary) << plain;
}

// 100,000 copies of a file, a thousand in each folder.
void FillFolder(const std::string& folder, const std::string& file) {
  fs::create_directory(folder);
  for (std::size_t i = 0; i < 100000; ++i) {
    const std::string inner = folder + "/" + std::to_string(i / 1000);
    if (i % 1000 == 0) fs::create_directory(inner);
    fs::copy_file(file, inner + "/" + std::to_string(i));
  }
}

void Print(const char* what, Series* a, Series* b, const char* wanted) {
  std::printf("%-48s medians %.2f, minima %.2f  (%s)\n", what, a->Median() / b->Median(), a->Least() / b->Least(),
              wanted);
}

}  // namespace

int main(int argc, char** argv) {
  const fs::path corpus = argc > 1 ? argv[1] : LXBRIDGE_CORPUS;
  const std::size_t count = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 16000;
  const int repetitions = argc > 3 ? std::atoi(argv[3]) : 15;
  std::string folder = (fs::temp_directory_path() / "batch_bench-XXXXXX").string();
  if (::mkdtemp(folder.data()) == nullptr) return 1;
  std::vector<fs::path> sources;
  for (const auto& entry : fs::directory_iterator(corpus)) {
    if (entry.is_regular_file()) sources.push_back(fs::absolute(entry.path()));
  }
  std::sort(sources.begin(), sources.end());
  if (sources.empty()) return 1;
  std::vector<std::string> files;
  std::ofstream list(folder + "/list"), longList(folder + "/long");
  for (std::size_t i = 0; i < count; ++i) {
    files.push_back(folder + "/" + std::to_string(i));
    fs::create_symlink(sources[i % sources.size()], files.back());
    list << files.back() << '\n';
  }
  for (int i = 0; i < 10; ++i) {
    for (const std::string& file : files) longList << file << '\n';
  }
  list.close();
  longList.close();
  const std::string small = folder + "/small.jpg";
  Run({LX_MAKE_SAMPLE, small});

  const std::string plain = folder + "/plain.jpg";
  WriteWithoutMetadata(small, plain);
  const std::string smallFiles = folder + "/small", plainFiles = folder + "/plain";
  FillFolder(smallFiles, small);
  FillFolder(plainFiles, plain);

  const char* other = std::getenv("LXBRIDGE");
  const std::string command = other != nullptr ? other : LX_COMMAND;
  Series one, two, halves, bare, packets, walk, readFolder, walkPlain, readPlain, start, least;
  long memory = 0, memoryOfMany = 0;
  for (int i = 0; i < repetitions; ++i) {
    one.seconds.push_back(Run({command, "-j1", "--files-from", folder + "/list"}, &memory));
    double processors = 0;
    two.seconds.push_back(Run({command, "-j2", "--files-from", folder + "/list"}, &memory, &processors));
    halves.seconds.push_back(processors / 2);
    bare.seconds.push_back(RunLibrary(files, false));
    packets.seconds.push_back(RunLibrary(files, true));
    walk.seconds.push_back(Run({command, "-j2", "-r", "--format", "json", smallFiles}, &memory));
    readFolder.seconds.push_back(Run({LX_READ_FOLDER, smallFiles, "2"}));
    walkPlain.seconds.push_back(Run({command, "-j2", "-r", "--format", "json", plainFiles}, &memory));
    readPlain.seconds.push_back(Run({LX_READ_FOLDER, plainFiles, "2"}));
    for (int k = 0; k < 20; ++k) {
      start.seconds.push_back(Run({command, small}));
      least.seconds.push_back(Run({LX_OPEN_READ, small}));
    }
  }
  Run({command, "-j2", "--files-from", folder + "/long"}, &memoryOfMany);

  const double perSecond = static_cast<double>(count);
  std::printf("%zu files: one worker %.0f files/s, two %.0f, library bare %.0f, with packets %.0f (of minima)\n", count,
              perSecond / one.Least(), perSecond / two.Least(), perSecond / bare.Least(), perSecond / packets.Least());
  Print("files per second, two workers / one", &one, &two, "at least 1.9");
  // If other work uses a part of the two processors, this is the result without it: the processor time of two workers
  // and the command, spread over two.
  Print("the same by processor time", &one, &halves, "at least 1.9");
  Print("time, one worker / library bare", &one, &bare, "at most 1.3");
  Print("time, one worker / library with packets", &one, &packets, "at most 1.1");
  Print("time, 100,000 files with metadata / read_folder", &walk, &readFolder, "at most 1.25");
  Print("time, 100,000 without metadata / read_folder", &walkPlain, &readPlain, "at most 1.25");
  std::printf("%-48s %.1f MB; ten times the files: %.1f MB  (below 64)\n", "largest process",
              static_cast<double>(memory) / 1024, static_cast<double>(memoryOfMany) / 1024);
  std::printf("start to end for one file: command %.0f us, open_read %.0f us (medians)\n", start.Median() * 1e6,
              least.Median() * 1e6);
  Print("time, command / open_read, one file", &start, &least, "at most 2");
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  return 0;
}
