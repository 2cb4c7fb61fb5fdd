#include "tests/support/image_builders.h"

namespace lxtest {

JpegBuilder& JpegBuilder::Segment(int marker, const Bytes& payload) {
  hasDqt_ = hasDqt_ || marker == 0xDB;
  hasSof_ = hasSof_ || (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC);
  hasDht_ = hasDht_ || marker == 0xC4;
  hasSos_ = hasSos_ || marker == 0xDA;
  return Raw(Bytes({0xFF, static_cast<std::uint8_t>(marker)}) + Put16(static_cast<std::uint32_t>(payload.size() + 2)) +
             payload);
}

JpegBuilder& JpegBuilder::Dqt(std::uint8_t first, std::uint8_t last, std::uint8_t destination) {
  Bytes table = Filled((destination & 0xF0) != 0 ? 128 : 64, 17);
  table.front() = first;
  table.back() = last;
  return Segment(0xDB, Bytes({destination}) + table);
}

JpegBuilder& JpegBuilder::Sof(int marker, std::uint32_t width, std::uint32_t height, const Bytes& samplingFactors) {
  Bytes payload = Bytes({8}) + Put16(height) + Put16(width);
  payload.push_back(static_cast<std::uint8_t>(samplingFactors.size()));
  std::uint8_t component = 0;
  for (const std::uint8_t factors : samplingFactors) payload += Bytes({++component, factors, 0});
  return Segment(marker, payload);
}

Bytes JpegBuilder::Build() const {
  JpegBuilder whole = *this;
  if (!hasDqt_) whole.Dqt();
  if (!hasSof_) whole.Sof0();
  if (!hasDht_) whole.Segment(0xC4, Bytes({0}) + Filled(16));
  if (!hasSos_) whole.Sos().Raw(Hex("12 34 56 78")).Eoi();
  return whole.Bare();
}

ResourceBuilder& ResourceBuilder::Block(std::uint16_t id, const Bytes& data, std::string_view name) {
  Bytes padded = Bytes({static_cast<std::uint8_t>(name.size())}) + Text(name);
  if (padded.size() % 2 != 0) padded.push_back(0);
  return Raw(Text("8BIM") + Put16(id) + padded + Put32(data.size()) + data + Filled(data.size() % 2));
}

Bytes PsdBuilder::Build() const {
  return Text("8BPS") + Put16(1) + Filled(6) + Put16(channels) + Put32(height) + Put32(width) + Put16(depth) +
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
