// Writing side-cars.
#include "tools/lxbridge/side_car.h"

#include <filesystem>
#include <system_error>

#include "tools/lxbridge/new_file.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

namespace fs = std::filesystem;

fs::path PathOf(std::string_view name) {
  return fs::path(std::u8string(name.begin(), name.end()));
}

std::string NameOf(const fs::path& path) {
  const std::u8string name = path.u8string();
  return std::string(name.begin(), name.end());
}

void FailExisting(const std::string& file, const std::string& path, FileResult* result) {
  result->Fail(file, path + " exists");
  result->status = "side-car exists";
}

}  // namespace

std::string SideCarPath(const std::string& file, const Options& options) {
  if (options.outputFolder == nullptr) return file + ".xmp";
  fs::path below = PathOf(options.outputFolder);
  for (const fs::path& part : PathOf(file).relative_path().lexically_normal()) {
    if (part != ".." && part != ".") below /= part;
  }
  return NameOf(below) + ".xmp";
}

bool MayWriteSideCar(const std::string& file, const Options& options, FileResult* result) {
  if (file == "-") {
    result->Fail("standard input", "has no side-car");
    return false;
  }
  if (options.overwrite) return true;
  const std::string path = SideCarPath(file, options);
  if (LookAtPath(path.c_str()).kind == PathFacts::Kind::kMissing) return true;
  FailExisting(file, path, result);
  return false;
}

void WriteSideCar(const std::string& file, std::string_view packet, const Options& options, FileResult* result) {
  const std::string path = SideCarPath(file, options);
  std::string problem;
  if (options.outputFolder != nullptr) {
    std::error_code error;
    (void)fs::create_directories(PathOf(path).parent_path(), error);
    if (error) return result->Fail(file, path + ": " + error.message());
  }
  switch (WriteNewFile(path, packet, options.overwrite, &problem)) {
    case NewFile::kWritten:
      return;
    case NewFile::kExists:
      return FailExisting(file, path, result);
    case NewFile::kFailed:
      return result->Fail(file, path + ": " + problem);
  }
}

}  // namespace lxbridge::command
