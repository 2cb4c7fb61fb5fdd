// Builds the files that consist of ISO base media boxes: HEIF, JPEG XL, JPEG 2000.
#ifndef LXBRIDGE_TESTS_SUPPORT_BOX_BUILDERS_H_
#define LXBRIDGE_TESTS_SUPPORT_BOX_BUILDERS_H_

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/bytes.h"

namespace lxtest {

inline Bytes Box(std::string_view type, const Bytes& payload) {
  return Put32(payload.size() + 8) + Text(type) + payload;
}
inline Bytes FullBox(std::string_view type, int version, std::uint32_t flags, const Bytes& payload) {
  return Box(type, Put32(static_cast<std::uint32_t>(version) << 24 | flags) + payload);
}
// With its size in 64 bits.
inline Bytes LongBox(std::string_view type, const Bytes& payload) {
  return Put32(1) + Text(type) + Put32(0) + Put32(payload.size() + 16) + payload;
}
// With size 0: to the end.
inline Bytes OpenBox(std::string_view type, const Bytes& payload) {
  return Put32(0) + Text(type) + payload;
}

struct HeifItem {
  std::uint32_t id = 0;
  std::string type = "Exif";  // Of a mime item, the content type and the encoding follow, each with its zero byte.
  Bytes data = {};
  std::vector<std::uint32_t> describes = {};
  bool inIdat = false;
  std::size_t pieces = 1;
  bool toTheEnd = false;  // Its last extent has length 0.
  std::uint16_t dataReference = 0;
  int method = -1;  // -1: as inIdat says.
};
[[nodiscard]] HeifItem PacketItem(std::uint32_t id, const Bytes& packet, std::string_view encoding = "");

// ftyp, meta, mdat. The main image is item 1, of 64 x 48, 3 x 8 bits. Public fields: a test bends the one that it is
// about.
struct HeifBuilder {
  std::vector<HeifItem> items;
  int locationVersion = 1;
  int offsetSize = 4, lengthSize = 4, baseSize = 0, indexSize = 0;
  int itemVersion = 2;
  int referenceVersion = 0;
  bool hasPrimary = true;
  Bytes beforeMeta, lastInMeta;

  HeifBuilder& Exif(std::uint32_t id, const Bytes& tiff) { return Add({.id = id, .data = Filled(4) + tiff}); }
  HeifBuilder& Packet(std::uint32_t id, std::string_view packet) { return Add(PacketItem(id, Text(packet))); }
  HeifBuilder& Add(const HeifItem& item) {
    items.push_back(item);
    return *this;
  }
  [[nodiscard]] Bytes Build() const;
  operator Bytes() const { return Build(); }  // NOLINT: a builder stands for its bytes.

 private:
  [[nodiscard]] Bytes Meta(std::uint64_t dataStart) const;
  [[nodiscard]] Bytes Number(int size, std::uint64_t value) const;
};

// A Brotli stream (RFC 7932) of one stored block; at most 65,536 bytes.
[[nodiscard]] Bytes Brotli(const Bytes& bytes);

// The signature box and a file type box, then these boxes.
inline Bytes Jxl(const Bytes& boxes) {
  return Box("JXL ", Hex("0D0A870A")) + Box("ftyp", Text("jxl ") + Filled(4) + Text("jxl ")) + boxes;
}
inline Bytes Jp2(const Bytes& boxes) {
  return Box("jP  ", Hex("0D0A870A")) + Box("ftyp", Text("jp2 ") + Filled(4) + Text("jp2 ")) + boxes;
}
// A box of image header, 64 x 48, 3 x 8 bits.
inline Bytes Jp2Header() {
  return Box("jp2h", Box("ihdr", Put32(48) + Put32(64) + Put16(3) + Hex("07 07 00 00")));
}
// The first markers of a codestream of that size.
inline Bytes Jp2Codestream() {
  return Hex("FF4F FF51 002F 0000") + Put32(66) + Put32(51) + Put32(2) + Put32(3) + Filled(16) + Put16(3) +
         Hex("07 0101 07 0101 07 0101");
}

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_BOX_BUILDERS_H_
