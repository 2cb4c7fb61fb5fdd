#include "tests/support/chunk_builders.h"

#include <algorithm>

namespace lxtest {

Bytes Zlib(const Bytes& bytes) {
  Bytes stream = Hex("78 01");
  std::uint32_t low = 1;
  std::uint32_t high = 0;
  for (std::size_t at = 0; at == 0 || at < bytes.size(); at += 0xFFFF) {
    const auto length = static_cast<std::uint32_t>(std::min<std::size_t>(bytes.size() - at, 0xFFFF));
    stream.push_back(at + length == bytes.size() ? 1 : 0);
    stream += Put16(length, kLittle) + Put16(~length & 0xFFFF, kLittle);
    stream.insert(stream.end(), bytes.data() + at, bytes.data() + at + length);
  }
  for (const std::uint8_t byte : bytes) {
    low = (low + byte) % 65521;
    high = (high + low) % 65521;
  }
  return stream + Put16(high) + Put16(low);
}

// One block of fixed codes (RFC 1951, 3.2.6): the byte, then length 258 at distance 1 again and again.
Bytes ZlibBomb(std::uint8_t byte, std::size_t repeats) {
  Bytes stream = Hex("78 01");
  std::uint32_t bits = 0;
  int count = 0;
  const auto put = [&](std::uint32_t code, int length) {  // Most significant bit first, as codes stand.
    for (int i = length - 1; i >= 0; --i) {
      bits |= (code >> i & 1) << count;
      if (++count < 8) continue;
      stream.push_back(static_cast<std::uint8_t>(bits));
      bits = 0;
      count = 0;
    }
  };
  put(0b110, 3);  // The last block, type 1.
  put(0x30u + byte, 8);
  for (std::size_t i = 0; i < repeats; ++i) put(0b11000101'00000, 13);
  put(0, 7 + 7);  // The end, and bits to fill a byte.
  const std::uint64_t n = 1 + 258 * repeats;
  const std::uint64_t high = (n + byte * (n * (n + 1) / 2 % 65521)) % 65521;
  return stream + Put16(static_cast<std::uint32_t>(high)) + Put16(static_cast<std::uint32_t>((1 + n * byte) % 65521));
}

Bytes RawProfile(std::string_view name, const Bytes& bytes, int more) {
  Bytes text = Text("\n" + std::string(name) + "\n    " + std::to_string(static_cast<int>(bytes.size()) + more) + "\n");
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    for (const int digit : {bytes[i] >> 4, bytes[i] & 15}) text += Text(std::string(1, "0123456789abcdef"[digit]));
    if (i % 36 == 35) text += Text("\n");
  }
  return text + Text("\n");
}

GifBuilder& GifBuilder::Packet(std::string_view packet, bool trailer) {
  Bytes data = trailer ? Text(packet) + Hex("01") : Bytes({static_cast<std::uint8_t>(packet.size())}) + Text(packet);
  for (int byte = trailer ? 255 : -1; byte >= 0; --byte) data.push_back(static_cast<std::uint8_t>(byte));
  return Raw(Hex("21 FF 0B") + Text("XMP DataXMP") + data + Filled(1));
}

}  // namespace lxtest
