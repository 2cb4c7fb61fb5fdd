#include "tests/support/box_builders.h"

#include <algorithm>

namespace lxtest {

HeifItem PacketItem(std::uint32_t id, const Bytes& packet, std::string_view encoding) {
  HeifItem item;
  item.id = id;
  item.type = "mime" + std::string(1, '\0') + "application/rdf+xml" + std::string(1, '\0');
  if (!encoding.empty()) item.type += std::string(encoding) + std::string(1, '\0');
  item.data = packet;
  return item;
}

Bytes HeifBuilder::Number(int size, std::uint64_t value) const {
  if (size == 2) return Put16(static_cast<std::uint32_t>(value));
  if (size == 4) return Put32(value);
  return size == 8 ? Put32(value >> 32) + Put32(value) : Bytes();
}

Bytes HeifBuilder::Meta(std::uint64_t dataStart) const {
  const int idSize = itemVersion == 3 ? 4 : 2;
  const int locationIdSize = locationVersion == 2 ? 4 : 2;
  Bytes infos = FullBox("infe", 2, 0, Put16(1) + Put16(0) + Text("av01") + Filled(1));
  Bytes locations, references, idat;
  std::uint64_t at = dataStart;
  for (const HeifItem& item : items) {
    // The text that follows the type begins with the item's empty name.
    const std::string rest = item.type.size() > 4 ? item.type.substr(4) : std::string(1, '\0');
    infos +=
        FullBox("infe", itemVersion, 0, Number(idSize, item.id) + Put16(0) + Text(item.type.substr(0, 4)) + Text(rest));
    const int method = item.method >= 0 ? item.method : item.inIdat ? 1 : 0;
    Bytes entry = Number(locationIdSize, item.id);
    if (locationVersion > 0) entry += Put16(static_cast<std::uint32_t>(method));
    std::uint64_t start = item.inIdat ? idat.size() : at;
    entry += Put16(item.dataReference) + Number(baseSize, start);
    if (baseSize > 0) start = 0;
    entry += Put16(static_cast<std::uint32_t>(item.pieces));
    const std::size_t piece = (item.data.size() + item.pieces - 1) / item.pieces;
    for (std::size_t i = 0; i < item.pieces; ++i) {
      const std::size_t offset = std::min(i * piece, item.data.size());
      const std::size_t length = item.toTheEnd && i + 1 == item.pieces ? 0 : std::min(piece, item.data.size() - offset);
      entry += Number(indexSize, 0) + Number(offsetSize, start + offset) + Number(lengthSize, length);
    }
    locations += entry;
    if (item.inIdat) {
      idat += item.data;
    } else {
      at += item.data.size();
    }
    if (item.describes.empty()) continue;
    const int size = referenceVersion > 0 ? 4 : 2;
    Bytes reference = Number(size, item.id) + Put16(static_cast<std::uint32_t>(item.describes.size()));
    for (const std::uint32_t image : item.describes) reference += Number(size, image);
    references += Box("cdsc", reference);
  }
  const auto sizes = static_cast<std::uint32_t>(offsetSize << 12 | lengthSize << 8 | baseSize << 4 | indexSize);
  Bytes meta = Filled(4) + FullBox("hdlr", 0, 0, Filled(4) + Text("pict") + Filled(13));
  if (hasPrimary) meta += FullBox("pitm", 0, 0, Put16(1));
  meta += FullBox("iloc", locationVersion, 0, Put16(sizes) + Number(locationIdSize, items.size()) + locations);
  meta += FullBox("iinf", 0, 0, Put16(static_cast<std::uint32_t>(items.size()) + 1) + infos);
  if (!references.empty()) meta += FullBox("iref", referenceVersion, 0, references);
  if (!idat.empty()) meta += Box("idat", idat);
  // The first property is another image's.
  const Bytes properties = FullBox("ispe", 0, 0, Put32(1) + Put32(1)) + FullBox("ispe", 0, 0, Put32(64) + Put32(48)) +
                           FullBox("pixi", 0, 0, Hex("03 08 08 08"));
  meta += Box("iprp", Box("ipco", properties) +
                          FullBox("ipma", 0, 0, Put32(2) + Put16(9) + Hex("01 01") + Put16(1) + Hex("02 82 03")));
  return Box("meta", meta + lastInMeta);
}

Bytes HeifBuilder::Build() const {
  const Bytes head = Box("ftyp", Text("mif1") + Filled(4) + Text("miaf")) + beforeMeta;
  Bytes data;
  for (const HeifItem& item : items) {
    if (!item.inIdat) data += item.data;
  }
  return head + Meta(head.size() + Meta(0).size() + 8) + Box("mdat", data);
}

Bytes Brotli(const Bytes& bytes) {
  // Window of 16 bits; a block that is not the last, stored; the last block, empty.
  const auto header = static_cast<std::uint32_t>((bytes.size() - 1) << 4 | 1u << 20);
  return Truncated(Put32(header, kLittle), 3) + bytes + Hex("03");
}

}  // namespace lxtest
