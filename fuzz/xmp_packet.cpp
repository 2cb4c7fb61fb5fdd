// Parses an XMP packet, whole or in two pieces, and serialises the object. The input's last byte has the serialiser's
// options and the place of the cut.
#include "fuzz/toolkit_checks.h"

namespace {

constexpr std::uint32_t kOptions[] = {0, kXMPSerializeCompact, kXMPSerializeOmitWrapper,
                                      kXMPSerializeCompact | kXMPSerializeOmitMeta | kXMPSerializeOmitWrapper};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const lxfuzz::ToolkitSession session;
  const std::uint8_t how = size != 0 ? data[--size] : 0;
  const std::size_t cut = (how & 0x80) != 0 ? size * (how & 0x1F) / 32 : size;
  // A copy that ends with the last byte, so that AddressSanitizer detects a read past it.
  const lxtest::Bytes packet(data, data + size);
  const char* bytes = reinterpret_cast<const char*>(packet.data());

  const CXMPMeta meta;
  const XMPMetaMethods& methods = meta.Methods();
  const bool first = lxfuzz::Succeeds(
      methods.parseFromBuffer(meta.Object(), bytes, static_cast<std::uint32_t>(cut), kXMPParseMoreBuffers));
  if (first) {
    (void)lxfuzz::Succeeds(
        methods.parseFromBuffer(meta.Object(), bytes + cut, static_cast<std::uint32_t>(size - cut), 0));
  }
  // An object is sound even after reading a bad packet.
  lxfuzz::RequireSound(meta, kOptions[how >> 5 & 3]);
  return 0;
}
