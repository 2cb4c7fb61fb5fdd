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
class PngBuilder {
 public:
  PngBuilder() { Chunk("IHDR", Put32(64) + Put32(48) + Hex("08 02 000000")); }
  PngBuilder& Chunk(std::string_view type, const Bytes& data);
  PngBuilder& Latin(std::string_view keyword, const Bytes& text);
  PngBuilder& Compressed(std::string_view keyword, const Bytes& stream, std::uint8_t method = 0);
  PngBuilder& International(std::string_view keyword, const Bytes& text, std::uint8_t flag = 0,
                            std::uint8_t method = 0);
  [[nodiscard]] Bytes Bare() const { return Hex("89 504E470D0A1A0A") + body_; }
  [[nodiscard]] Bytes Build() const { return PngBuilder(*this).Chunk("IEND", {}).Bare(); }
  operator Bytes() const { return Build(); }  // NOLINT: a builder stands for its bytes.

 private:
  Bytes body_;
};

class WebpBuilder {
 public:
  WebpBuilder& Chunk(std::string_view type, const Bytes& data);
  operator Bytes() const { return Text("RIFF") + Put32(0) + Text("WEBP") + body_; }  // NOLINT

 private:
  Bytes body_;
};

// A screen of 64 x 48 with a colour table of two colours. The trailer is added.
class GifBuilder {
 public:
  GifBuilder& Raw(const Bytes& bytes);
  GifBuilder& Image();                                               // With a colour table of its own.
  GifBuilder& Packet(std::string_view packet, bool trailer = true);  // As it is, or cut into sub-blocks.
  [[nodiscard]] const Bytes& Blocks() const { return body_; }
  [[nodiscard]] Bytes Bare() const;
  operator Bytes() const { return Bare() + Hex("3B"); }  // NOLINT

 private:
  Bytes body_;
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_CHUNK_BUILDERS_H_
