// Compares PNG, WebP, HEIC and AVIF files with the camera JPEG that holds the same blocks. For each camera JPEG of a
// folder, the benchmark builds such files with its TIFF structure, its packet and as many bytes of image data (in PNG
// in chunks of 64 KiB), and imports all of them, from LxInterchangeNew to LxInterchangeDelete. Warm cache, one thread,
// repetitions interleaved; prints the medians and their ratios to JPEG.
//
//   container_bench [--files=FOLDER] [Google Benchmark's options]
//
// FOLDER defaults to ../shared/corpus next to the tree.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "bench/medians.h"
#include "tests/support/box_builders.h"
#include "tests/support/chunk_builders.h"
#include "tests/support/image_builders.h"

namespace {

using lxtest::Bytes;
namespace fs = std::filesystem;

constexpr std::size_t kIdat = 64 * 1024;

// The blocks of a JPEG file, and the number of bytes after its segments.
struct Picture {
  Bytes tiff;
  Bytes packet;
  std::size_t imageLength = 0;
};

Picture PictureOf(const Bytes& jpeg) {
  constexpr std::string_view kExif("Exif\0\0", 6);
  constexpr std::string_view kXmp("http://ns.adobe.com/xap/1.0/\0", 29);
  Picture picture;
  std::size_t at = 2;
  while (at + 4 <= jpeg.size() && jpeg[at] == 0xFF && jpeg[at + 1] != 0xDA) {
    const std::size_t end = at + 2 + (jpeg[at + 2] * 256u + jpeg[at + 3]);
    if (end > jpeg.size()) break;
    const std::string_view payload(reinterpret_cast<const char*>(jpeg.data()) + at + 4, end - at - 4);
    if (payload.starts_with(kExif) && picture.tiff.empty()) picture.tiff = lxtest::Text(payload.substr(kExif.size()));
    if (payload.starts_with(kXmp) && picture.packet.empty()) picture.packet = lxtest::Text(payload.substr(kXmp.size()));
    at = end;
  }
  picture.imageLength = jpeg.size() - std::min(at, jpeg.size());
  return picture;
}

Bytes Jpeg(const Picture& picture) {
  lxtest::JpegBuilder file;
  file.App1Exif(picture.tiff);
  if (!picture.packet.empty()) {
    file.App1Xmp(std::string(picture.packet.begin(), picture.packet.end()));
  }
  return file.Dqt()
      .Sof0()
      .Segment(0xC4, lxtest::Filled(17))
      .Sos()
      .Raw(lxtest::Filled(picture.imageLength))
      .Eoi()
      .Bare();
}

Bytes Png(const Picture& picture) {
  lxtest::PngBuilder file;
  file.Chunk("eXIf", picture.tiff);
  if (!picture.packet.empty()) file.International("XML:com.adobe.xmp", picture.packet);
  for (std::size_t left = picture.imageLength; left > 0; left -= std::min(left, kIdat)) {
    file.Chunk("IDAT", lxtest::Filled(std::min(left, kIdat)));
  }
  return file;
}

Bytes Webp(const Picture& picture) {
  lxtest::WebpBuilder file;
  file.Chunk("VP8X", lxtest::Hex("0C000000 3F0000 2F0000")).Chunk("VP8 ", lxtest::Filled(picture.imageLength));
  file.Chunk("EXIF", picture.tiff);
  if (!picture.packet.empty()) file.Chunk("XMP ", picture.packet);
  return file;
}

Bytes Heic(const Picture& picture) {
  lxtest::HeifBuilder file;
  file.Exif(2, picture.tiff);
  if (!picture.packet.empty()) file.Add(lxtest::PacketItem(3, picture.packet));
  Bytes bytes = file;
  return bytes + lxtest::Box("mdat", lxtest::Filled(picture.imageLength));
}

Bytes Avif(const Picture& picture) {
  Bytes file = Heic(picture);
  std::memcpy(file.data() + 8, "avif", 4);
  return file;
}

void Import(benchmark::State& state, const std::vector<std::string>& files) {
  for (auto _ : state) {
    for (const std::string& file : files) {
      LxInterchangeHandle handle = LxInterchangeNew(file.c_str());
      benchmark::DoNotOptimize(LxInterchangeGetXMP(handle));
      LxInterchangeDelete(handle);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(files.size()));
}

}  // namespace

int main(int argc, char** argv) {
  std::string place = LXBRIDGE_CORPUS;
  std::vector<char*> arguments;
  for (int i = 0; i < argc; ++i) {
    constexpr std::string_view kFiles = "--files=";
    if (std::string_view(argv[i]).starts_with(kFiles)) {
      place = argv[i] + kFiles.size();
    } else {
      arguments.push_back(argv[i]);
    }
  }
  arguments = lxbench::WithRepetitions(static_cast<int>(arguments.size()), arguments.data());
  int count = static_cast<int>(arguments.size());

  constexpr struct {
    const char* name;
    Bytes (*make)(const Picture& picture);
  } kKinds[] = {{"JPEG", Jpeg}, {"PNG", Png}, {"WebP", Webp}, {"HEIC", Heic}, {"AVIF", Avif}};
  const fs::path folder =
      fs::temp_directory_path() / ("container_bench." + std::to_string(std::hash<std::string>()(place)));
  fs::create_directories(folder);
  std::vector<std::vector<std::string>> files(std::size(kKinds));
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(place, error)) {
    const Bytes jpeg = entry.is_regular_file() ? lxtest::ReadWholeFile(entry.path().string()) : Bytes();
    if (jpeg.size() < 4 || jpeg[0] != 0xFF || jpeg[1] != 0xD8) continue;
    const Picture picture = PictureOf(jpeg);
    if (picture.tiff.empty()) continue;
    for (std::size_t kind = 0; kind < std::size(kKinds); ++kind) {
      files[kind].push_back((folder / (std::to_string(files[kind].size()) + "." + kKinds[kind].name)).string());
      const Bytes made = kKinds[kind].make(picture);
      std::ofstream(files[kind].back(), std::ios::binary)
          .write(reinterpret_cast<const char*>(made.data()), static_cast<std::streamsize>(made.size()));
    }
  }
  if (files[0].empty()) {
    std::fprintf(stderr, "container_bench: no camera JPEGs in %s\n", place.c_str());
    return 1;
  }
  LxInterchangeInit();
  for (std::size_t kind = 0; kind < std::size(kKinds); ++kind) {
    benchmark::RegisterBenchmark(kKinds[kind].name, Import, files[kind])->Unit(benchmark::kMicrosecond);
  }
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  lxbench::MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n%zu pictures; per file:\n", files[0].size());
  for (const auto& kind : std::span(kKinds).subspan(1)) {
    reporter.PrintRatio(kind.name, kKinds[0].name, "us", static_cast<double>(files[0].size()));
  }
  LxInterchangeTerm();
  fs::remove_all(folder);
  return 0;
}
