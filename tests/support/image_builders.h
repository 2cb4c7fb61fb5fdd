// Builds the image files and blocks that carry metadata, byte by byte: JPEG streams, image resources, IPTC datasets,
// PSD files.
//
//   JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({Ascii(0x010F, "Canon")})).App1Xmp("<x:xmpmeta .../>").Build()
#ifndef LXBRIDGE_TESTS_SUPPORT_IMAGE_BUILDERS_H_
#define LXBRIDGE_TESTS_SUPPORT_IMAGE_BUILDERS_H_

#include <cstdint>
#include <string_view>

#include "kit/model/tables/tables.h"
#include "tests/support/bytes.h"
#include "tests/support/tiff_builder.h"

namespace lxtest {

// Segments in the order of the calls, after SOI. Build adds what makes a whole picture of them where it is missing:
// DQT, SOF0 (3 components, 4:2:0, 64 x 48), DHT, SOS with a little entropy-coded data, EOI. Bare adds nothing.
class JpegBuilder : public ByteBuilder<JpegBuilder> {
 public:
  // JFIF 1.02: version, density in dots per inch, no thumbnail.
  JpegBuilder& App0Jfif() { return App(0, "JFIF", Hex("01 02 01 00 48 00 48 00 00")); }
  JpegBuilder& App1Exif(const Bytes& tiff) { return Segment(0xE1, Text("Exif") + Filled(2) + tiff); }
  JpegBuilder& App1Xmp(std::string_view packet) { return App(1, kLxXmpSegmentId, Text(packet)); }
  JpegBuilder& App2Icc(const Bytes& profile, std::uint8_t chunk = 1, std::uint8_t chunks = 1) {
    return App(2, "ICC_PROFILE", Bytes({chunk, chunks}) + profile);
  }
  JpegBuilder& App2FlashPix(const Bytes& data) { return App(2, "FPXR", data); }
  JpegBuilder& App13(const Bytes& resources) { return App(13, "Picturist 3.0", resources); }
  // An APPn segment: the identifier, its zero byte, the data.
  JpegBuilder& App(int n, std::string_view identifier, const Bytes& data) {
    return Segment(0xE0 | n, Text(identifier) + Filled(1) + data);
  }
  JpegBuilder& Comment(std::string_view text) { return Segment(0xFE, Text(text)); }
  // Any segment by the low byte of its marker; the length field counts itself and the payload.
  JpegBuilder& Segment(int marker, const Bytes& payload);

  // A quantisation table: its first and its 64th entry tell the quality. `destination` 0 is luminance; 0x10 has 16
  // bits.
  JpegBuilder& Dqt(std::uint8_t first = 16, std::uint8_t last = 20, std::uint8_t destination = 0);
  JpegBuilder& Sof(int marker, std::uint32_t width, std::uint32_t height, const Bytes& samplingFactors);
  JpegBuilder& Sof0(std::uint32_t width = 64, std::uint32_t height = 48) {
    return Sof(0xC0, width, height, {0x22, 0x11, 0x11});
  }
  JpegBuilder& Sof2() { return Sof(0xC2, 64, 48, {0x22, 0x11, 0x11}); }
  JpegBuilder& Sos() { return Segment(0xDA, Hex("01 01 00 00 3F 00")); }
  JpegBuilder& Eoi() { return Raw({0xFF, 0xD9}); }

  [[nodiscard]] Bytes Build() const;
  [[nodiscard]] Bytes Bare() const { return Bytes({0xFF, 0xD8}) + body_; }

 private:
  bool hasDqt_ = false, hasSof_ = false, hasDht_ = false, hasSos_ = false;
};

// Image resource blocks, each padded to an even length.
class ResourceBuilder : public ByteBuilder<ResourceBuilder> {
 public:
  ResourceBuilder& Block(std::uint16_t id, const Bytes& data, std::string_view name = "");
  ResourceBuilder& Iptc(const Bytes& datasets) { return Block(0x0404, datasets); }
  ResourceBuilder& Exif(const Bytes& tiff) { return Block(0x0422, tiff); }
  ResourceBuilder& Xmp(std::string_view packet) { return Block(0x0424, Text(packet)); }
  // The 28 bytes of the thumbnail resource's own header stand before the JPEG stream.
  ResourceBuilder& Thumbnail(const Bytes& jpeg) { return Block(0x040C, Filled(28) + jpeg); }
};

// IPTC-IIM datasets (IPTC-IIM 4, 1.5) of the standard form.
class IptcBuilder : public ByteBuilder<IptcBuilder> {
 public:
  IptcBuilder& DataSet(std::uint8_t record, std::uint8_t number, const Bytes& data) {
    return Raw(Bytes({0x1C, record, number}) + Put16(static_cast<std::uint32_t>(data.size())) + data);
  }
  IptcBuilder& Add(std::uint8_t number, std::string_view text) { return DataSet(2, number, Text(text)); }
};

// A PSD file: header, colour mode data, image resources, layers. Public fields: a test bends the one that it is about.
struct PsdBuilder {
  std::uint16_t channels = 3;
  std::uint32_t height = 48;
  std::uint32_t width = 64;
  std::uint16_t depth = 8;
  std::uint16_t mode = 3;  // RGB
  Bytes colourData;
  Bytes resources;
  std::uint32_t layerLength = 0;

  PsdBuilder& Resources(const Bytes& blocks) {
    resources = blocks;
    return *this;
  }
  [[nodiscard]] Bytes Build() const;
  operator Bytes() const { return Build(); }  // NOLINT: a builder stands for its bytes.
};

// The containers of image resource blocks; a TIFF file in both byte orders, which the blocks' own does not
// follow.
struct Container {
  const char* name;
  Bytes (*around)(const Bytes& blocks);
};
inline constexpr Container kResourceContainers[] = {
    {"a JPEG segment", [](const Bytes& blocks) { return JpegBuilder().App13(blocks).Build(); }},
    {"a PSD file", [](const Bytes& blocks) { return PsdBuilder().Resources(blocks).Build(); }},
    {"a TIFF tag, II", [](const Bytes& blocks) { return TiffBuilder(kLittle).Ifd0({Undef(0x8649, blocks)}).Build(); }},
    {"a TIFF tag, MM", [](const Bytes& blocks) { return TiffBuilder(kBig).Ifd0({Undef(0x8649, blocks)}).Build(); }},
};

// An ICC profile (ICC.1, 7.2) that holds a description of that text, and nothing else.
[[nodiscard]] Bytes IccProfile(std::string_view description);

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_IMAGE_BUILDERS_H_
