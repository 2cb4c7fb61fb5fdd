// A file's bytes to its XMP object and back from its packet: the whole pipeline.
#include <sys/mman.h>
#include <unistd.h>

#include "api/interchange.h"
#include "fuzz/toolkit_checks.h"

namespace {

// A file outside of any folder, opened by its path like every file.
class MemoryFile {
 public:
  MemoryFile() : descriptor_(memfd_create("input", 0)), path_("/proc/self/fd/" + std::to_string(descriptor_)) {
    lxfuzz::Require(descriptor_ >= 0, "a file in memory");
  }
  ~MemoryFile() { close(descriptor_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  const char* With(const std::uint8_t* data, std::size_t size) {
    lxfuzz::Require(ftruncate(descriptor_, 0) == 0 &&
                        (size == 0 || pwrite(descriptor_, data, size, 0) == static_cast<ssize_t>(size)),
                    "a written file");
    return path_.c_str();
  }

 private:
  int descriptor_;
  std::string path_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static MemoryFile file;
  lxfuzz::InstallMemory();
  const lxfuzz::ToolkitSession session;
  LxInterchange interchange(file.With(data, size));
  lxfuzz::RequireWellFormed(*interchange.Pool());
  lxfuzz::RequireSound(*interchange.Xmp().Meta(), size % 2 == 0 ? 0 : kXMPSerializeCompact);
  return 0;
}
