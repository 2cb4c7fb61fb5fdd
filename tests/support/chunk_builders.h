// Builds the files that hold their blocks in chunks: PNG, WebP, GIF. Chunks stand in the order of the calls.
#ifndef LXBRIDGE_TESTS_SUPPORT_CHUNK_BUILDERS_H_
#define LXBRIDGE_TESTS_SUPPORT_CHUNK_BUILDERS_H_

#include <string>
#include <string_view>

#include "tests/support/bytes.h"

namespace lxtest {

// A zlib stream (RFC 1950) of stored blocks.
[[nodiscard]] Bytes Zlib(const Bytes& bytes);
// The same of 1 + 258 * repeats times the byte (below 144) in some 13 bits for each 258: a bomb.
[[nodiscard]] Bytes ZlibBomb(std::uint8_t byte, std::size_t repeats);
// The text of a raw profile of that name, with a length that may be another than the bytes'.
[[nodiscard]] Bytes RawProfile(std::string_view name, const Bytes& bytes, int more = 0);

// IHDR of 64 x 48, 3 x 8 bits first. Build adds IEND.
class PngBuilder : public ByteBuilder<PngBuilder> {
 public:
  PngBuilder() { Chunk("IHDR", Put32(64) + Put32(48) + Hex("08 02 000000")); }
  PngBuilder& Chunk(std::string_view type, const Bytes& data) {
    return Raw(Put32(data.size()) + Text(type) + data + Text("CRC?"));
  }
  PngBuilder& Latin(std::string_view keyword, const Bytes& text) {
    return Chunk("tEXt", Text(keyword) + Filled(1) + text);
  }
  PngBuilder& Compressed(std::string_view keyword, const Bytes& stream, std::uint8_t method = 0) {
    return Chunk("zTXt", Text(keyword) + Bytes({0, method}) + stream);
  }
  PngBuilder& International(std::string_view keyword, const Bytes& text, std::uint8_t flag = 0,
                            std::uint8_t method = 0) {
    return Chunk("iTXt",
                 Text(keyword) + Bytes({0, flag, method}) + Text("de") + Filled(1) + Text("Paket") + Filled(1) + text);
  }
  [[nodiscard]] Bytes Bare() const { return Hex("89 504E470D0A1A0A") + body_; }
  [[nodiscard]] Bytes Build() const { return PngBuilder(*this).Chunk("IEND", {}).Bare(); }
};

class WebpBuilder : public ByteBuilder<WebpBuilder> {
 public:
  WebpBuilder& Chunk(std::string_view type, const Bytes& data) {
    return Raw(Text(type) + Put32(data.size(), kLittle) + data + Filled(data.size() % 2));
  }
  [[nodiscard]] Bytes Build() const { return Text("RIFF") + Put32(0) + Text("WEBP") + body_; }
};

// A screen of 64 x 48 with a colour table of two colours. Build adds the trailer.
class GifBuilder : public ByteBuilder<GifBuilder> {
 public:
  // With a colour table of its own.
  GifBuilder& Image() {
    return Raw(Hex("2C 0000 0000 4000 3000 81") + Filled(12, 0x21) + Hex("02 03 21FF0B 02 3B2C 00"));
  }
  // As it is, or cut into sub-blocks.
  GifBuilder& Packet(std::string_view packet, bool trailer = true);
  [[nodiscard]] const Bytes& Blocks() const { return body_; }
  [[nodiscard]] Bytes Bare() const {
    return Text("GIF89a") + Put16(64, kLittle) + Put16(48, kLittle) + Hex("80 0000") + Filled(6, 0x3B) + body_;
  }
  [[nodiscard]] Bytes Build() const { return Bare() + Hex("3B"); }
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_CHUNK_BUILDERS_H_
