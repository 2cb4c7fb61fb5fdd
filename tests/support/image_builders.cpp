#include "tests/support/image_builders.h"

#include "kit/model/tables/tables.h"

namespace lxtest {

JpegBuilder& JpegBuilder::App0Jfif() {
  // JFIF 1.02: version, density in dots per inch, no thumbnail.
  return App(0, "JFIF", Hex("01 02 01 00 48 00 48 00 00"));
}

JpegBuilder& JpegBuilder::App1Xmp(std::string_view packet) {
  return App(1, kLxXmpSegmentId, Text(packet));
}

JpegBuilder& JpegBuilder::App2Icc(const Bytes& profile, std::uint8_t chunk, std::uint8_t chunks) {
  return App(2, "ICC_PROFILE", Bytes({chunk, chunks}) + profile);
}

JpegBuilder& JpegBuilder::App(int n, std::string_view identifier, const Bytes& data) {
  return Segment(static_cast<std::uint8_t>(0xE0 + n), Text(identifier) + Filled(1) + data);
}

JpegBuilder& JpegBuilder::Segment(std::uint8_t marker, const Bytes& payload) {
  hasDqt_ = hasDqt_ || marker == 0xDB;
  hasSof_ = hasSof_ || (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC);
  hasDht_ = hasDht_ || marker == 0xC4;
  hasSos_ = hasSos_ || marker == 0xDA;
  return Raw(Bytes({0xFF, marker}) + Put16(static_cast<std::uint32_t>(payload.size() + 2)) + payload);
}

JpegBuilder& JpegBuilder::Raw(const Bytes& bytes) {
  body_ += bytes;
  return *this;
}

JpegBuilder& JpegBuilder::Dqt(std::uint8_t first, std::uint8_t last, std::uint8_t destination) {
  Bytes table = Filled((destination & 0xF0) != 0 ? 128 : 64, 17);
  table.front() = first;
  table.back() = last;
  return Segment(0xDB, Bytes({destination}) + table);
}

JpegBuilder& JpegBuilder::Sof(std::uint8_t marker, int width, int height, const Bytes& samplingFactors) {
  Bytes payload = Bytes({8}) + Put16(static_cast<std::uint32_t>(height)) + Put16(static_cast<std::uint32_t>(width));
  payload.push_back(static_cast<std::uint8_t>(samplingFactors.size()));
  std::uint8_t component = 0;
  for (const std::uint8_t factors : samplingFactors) payload += Bytes({++component, factors, 0});
  return Segment(marker, payload);
}

JpegBuilder& JpegBuilder::Dht() {
  return Segment(0xC4, Bytes({0}) + Filled(16));
}

JpegBuilder& JpegBuilder::Sos() {
  return Segment(0xDA, Hex("01 01 00 00 3F 00"));
}

Bytes JpegBuilder::Build() const {
  JpegBuilder whole = *this;
  if (!hasDqt_) whole.Dqt();
  if (!hasSof_) whole.Sof0();
  if (!hasDht_) whole.Dht();
  if (!hasSos_) whole.Sos().Raw(Hex("12 34 56 78")).Eoi();
  return whole.Bare();
}

ResourceBuilder& ResourceBuilder::Block(std::uint16_t id, const Bytes& data, std::string_view name) {
  Bytes padded = Bytes({static_cast<std::uint8_t>(name.size())}) + Text(name);
  if (padded.size() % 2 != 0) padded.push_back(0);
  Raw(Text("8BIM") + Put16(id) + padded + Put32(data.size()) + data);
  if (data.size() % 2 != 0) Raw(Filled(1));
  return *this;
}

ResourceBuilder& ResourceBuilder::Raw(const Bytes& bytes) {
  body_ += bytes;
  return *this;
}

IptcBuilder& IptcBuilder::DataSet(std::uint8_t record, std::uint8_t number, const Bytes& data) {
  return Raw(Bytes({0x1C, record, number}) + Put16(static_cast<std::uint32_t>(data.size())) + data);
}

IptcBuilder& IptcBuilder::Raw(const Bytes& bytes) {
  body_ += bytes;
  return *this;
}

Bytes PsdBuilder::Build() const {
  return Text("8BPS") + Put16(version) + Filled(6) + Put16(channels) + Put32(height) + Put32(width) + Put16(depth) +
         Put16(mode) + Put32(colourData.size()) + colourData + Put32(resources.size()) + resources +
         Put32(layerLength) + Filled(layerLength > 4096 ? 0 : layerLength);
}

Bytes IccProfile(std::string_view description) {
  // The header with its signature, a tag table of one tag, and a "desc" value (textDescriptionType): its ASCII part,
  // empty Unicode and script parts.
  const Bytes value =
      Text("desc") + Put32(0) + Put32(description.size() + 1) + Text(description) + Filled(1 + 4 + 4 + 2 + 1 + 67);
  const Bytes table = Put32(1) + Text("desc") + Put32(144) + Put32(value.size());
  const Bytes header = Put32(144 + value.size()) + Filled(32) + Text("acsp") + Filled(88);
  return header + table + value;
}

}  // namespace lxtest
