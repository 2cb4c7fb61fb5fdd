// The command's side of Windows. Results leave by the C runtime; an interruption ends the process as the system does
// it.
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

std::filesystem::path NativePath(const char* path) {
  return std::filesystem::path(reinterpret_cast<const char8_t*>(path));
}

}  // namespace

void EndWholeAtSignals() {}

bool WriteStandardOutput(std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

PathFacts LookAtPath(const char* path) {
  PathFacts facts;
  std::error_code error;
  const std::filesystem::path native = NativePath(path);
  const std::filesystem::file_status status = std::filesystem::status(native, error);
  if (std::filesystem::is_directory(status)) {
    facts.kind = PathFacts::Kind::kFolder;
  } else if (std::filesystem::is_regular_file(status)) {
    facts.kind = PathFacts::Kind::kRegular;
    const std::uintmax_t size = std::filesystem::file_size(native, error);
    facts.bytes = error ? 0 : size;
    // Rights are lists there, which only opening the file evaluates.
    std::FILE* file = _wfopen(native.c_str(), L"rb");
    facts.readable = file != nullptr;
    if (file != nullptr) (void)std::fclose(file);
  } else if (std::filesystem::exists(status)) {
    facts.kind = PathFacts::Kind::kOther;
  }
  return facts;
}

bool ByteReader::Open(const char* path) {
  owned_ = std::string_view(path) != "-";
  descriptor_ = owned_ ? _wopen(NativePath(path).c_str(), _O_RDONLY | _O_BINARY) : 0;
  if (!owned_) (void)_setmode(0, _O_BINARY);
  return descriptor_ >= 0;
}

ByteReader::~ByteReader() {
  if (owned_ && descriptor_ >= 0) (void)_close(descriptor_);
}

std::ptrdiff_t ByteReader::Read(char* buffer, std::size_t length) {
  return _read(descriptor_, buffer, static_cast<unsigned>(length));
}

bool ByteReader::IsReady() const {
  return true;
}

}  // namespace lxbridge::command
