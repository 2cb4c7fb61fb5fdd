// Keeps a photograph's changes in its side-car file: reads the photograph, merges photo.jpg.xmp if there is one, adds a
// keyword and a title in one language, and writes the side-car back. The photograph itself does not change.
//
//   keep_sidecar photo.jpg harbour de "Der Hafen"
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <lxbridge/xmp.hpp>
#include <stdexcept>
#include <string>

namespace {

// "" if the file does not exist.
std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Writes the whole file, or on failure keeps the existing one.
void WriteFile(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::path scratch = path;
  scratch += ".new";
  std::ofstream out(scratch, std::ios::binary);
  if (!(out << text << '\n') || !out.flush()) throw std::runtime_error("cannot write " + scratch.string());
  out.close();
  std::filesystem::rename(scratch, path);
}

bool HasItem(const lxbridge::XmpView& xmp, const char* namespaceUri, const char* array, const std::string& value) {
  for (std::uint32_t index = xmp.CountItems(namespaceUri, array); index > 0; --index) {
    if (xmp.GetItem(namespaceUri, array, static_cast<std::int32_t>(index)) == value) return true;
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "usage: keep_sidecar FILE KEYWORD LANGUAGE TITLE\n";
    return 2;
  }
  const std::string sidecar = std::string(argv[1]) + ".xmp";
  try {
    const lxbridge::Library library;
    const lxbridge::Interchange photo(argv[1]);
    lxbridge::XmpView xmp = photo.Xmp();

    const std::string packet = ReadFile(sidecar);
    if (!packet.empty()) {
      const lxbridge::XmpObject kept;
      kept.Xmp().Parse(packet);
      xmp.Merge(kept.Xmp(), LX_XMP_REPLACE);  // The side-car is newer.
    }

    if (!HasItem(xmp, LX_XMP_NS_DC, "subject", argv[2])) xmp.Append(LX_XMP_NS_DC, "subject", LX_XMP_ARRAY, argv[2]);
    xmp.SetLocalizedText(LX_XMP_NS_DC, "title", nullptr, argv[3], argv[4]);
    LxXmpDate now;
    lxbridge::CheckXmp(LxXmpNow(&now));
    xmp.SetDate(LX_XMP_NS_XMP, "MetadataDate", now);

    WriteFile(sidecar, xmp.Serialize());
    std::cout << sidecar << ": " << xmp.CountItems(LX_XMP_NS_DC, "subject") << " keywords\n";
  } catch (const std::exception& error) {
    std::cerr << "keep_sidecar: " << error.what() << '\n';
    return 1;
  }
}
