#include "tests/support/tiff_builder.h"

#include <bit>

namespace lxtest {
namespace {

// Of an element, of a rational or a double its half.
std::uint32_t UnitSize(std::uint16_t type) {
  constexpr std::uint32_t kSizes[] = {1, 1, 1, 2, 4, 4, 1, 1, 2, 4, 4, 4, 4, 4};
  return type < std::size(kSizes) ? kSizes[type] : 1;
}

TiffEntry Opaque(std::uint16_t tag, std::uint16_t type, const Bytes& bytes) {
  return {tag, type, static_cast<std::uint32_t>(bytes.size()), [bytes](Order, std::uint32_t) { return bytes; }};
}

std::uint32_t Size(const Bytes& bytes) {
  return static_cast<std::uint32_t>(bytes.size());
}

}  // namespace

TiffEntry Ascii(std::uint16_t tag, std::string_view text) {
  return Opaque(tag, 2, Text(text) + Filled(1));
}
TiffEntry AsciiBytes(std::uint16_t tag, std::string_view text) {
  return Opaque(tag, 2, Text(text));
}
TiffEntry Byte(std::uint16_t tag, const Bytes& values) {
  return Opaque(tag, 1, values);
}
TiffEntry Undef(std::uint16_t tag, const Bytes& values) {
  return Opaque(tag, 7, values);
}

TiffEntry Numbers(std::uint16_t tag, std::uint16_t type, const TiffNumbers& numbers) {
  const bool halves = type == 5 || type == 10 || type == 12;
  const auto count = static_cast<std::uint32_t>(halves ? numbers.size() / 2 : numbers.size());
  return {tag, type, count, [type, numbers](Order order, std::uint32_t) {
            Bytes out;
            for (const std::int64_t number : numbers) {
              const auto bits = static_cast<std::uint32_t>(number);
              if (UnitSize(type) == 1) out.push_back(static_cast<std::uint8_t>(bits & 0xFF));
              if (UnitSize(type) == 2) out += Put16(bits & 0xFFFF, order);
              if (UnitSize(type) == 4) out += Put32(bits, order);
            }
            return out;
          }};
}

TiffEntry Float(std::uint16_t tag, float number) {
  return Numbers(tag, 11, {std::bit_cast<std::uint32_t>(number)});
}

TiffEntry Double(std::uint16_t tag, double number) {
  const auto bits = std::bit_cast<std::uint64_t>(number);
  return {tag, 12, 1, [bits](Order order, std::uint32_t) {
            const Bytes high = Put32(bits >> 32, order), low = Put32(bits & 0xFFFFFFFF, order);
            return order == kBig ? high + low : low + high;
          }};
}

TiffEntry Raw(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::uint32_t field) {
  return {tag, type, count, [field](Order order, std::uint32_t) { return Put32(field, order); }};
}

TiffEntry SubIfd(std::uint16_t tag, const TiffEntries& entries) {
  return SubIfds(tag, {entries});
}

TiffEntry SubIfds(std::uint16_t tag, const std::vector<TiffEntries>& ifds) {
  const auto count = static_cast<std::uint32_t>(ifds.size());
  // The array of offsets and the IFDs after it. A single offset goes into the entry itself: EncodeIfd takes the IFD
  // out.
  return {tag, 4, count, [ifds, count](Order order, std::uint32_t at) {
            std::uint32_t position = at + (count > 1 ? 4 * count : 0);
            Bytes offsets, blocks;
            for (const TiffEntries& entries : ifds) {
              offsets += Put32(position, order);
              blocks += EncodeIfd(order, entries, position);
              position = at + (count > 1 ? 4 * count : 0) + Size(blocks);
            }
            return offsets + blocks;
          }};
}

TiffEntry UndefIfd(std::uint16_t tag, const Bytes& prefix, const TiffEntries& entries) {
  const auto make = [prefix, entries](Order order, std::uint32_t at) {
    return prefix + EncodeIfd(order, entries, at + Size(prefix));
  };
  return {tag, 7, Size(make(kLittle, 0)), make};
}

Bytes EncodeIfd(Order order, const TiffEntries& entries, std::uint32_t at, std::uint32_t nextIfd) {
  const auto count = static_cast<std::uint32_t>(entries.size());
  Bytes ifd = Put16(count, order), values;
  const std::uint32_t end = at + 12 * count + 6;
  for (const TiffEntry& entry : entries) {
    const std::uint32_t place = end + Size(values);
    Bytes value = entry.value(order, place);
    const std::uint64_t unit = UnitSize(entry.type) * (entry.type == 5 || entry.type == 10 || entry.type == 12 ? 2 : 1);
    const std::uint64_t length = unit * entry.count;
    ifd += Put16(entry.tag, order) + Put16(entry.type, order) + Put32(entry.count, order);
    if (length <= 4 || value.size() == 4) {
      // Within the entry; the target of a pointer follows out of line. Bare fields (Raw) are always of 4 bytes.
      Bytes field = Truncated(value, 4);
      field.resize(4);
      ifd += field;
      if (value.size() > 4) values += Bytes(value.begin() + 4, value.end());
    } else {
      ifd += Put32(place, order);
      values += value;
    }
    if (values.size() % 2 != 0) values.push_back(0);
  }
  return ifd + Put32(nextIfd, order) + values;
}

TiffBuilder& TiffBuilder::AddTo(std::size_t index, const TiffEntries& entries) {
  if (chain_.size() <= index) chain_.resize(index + 1);
  chain_[index].insert(chain_[index].end(), entries.begin(), entries.end());
  return *this;
}

TiffBuilder& TiffBuilder::Exif(const TiffEntries& entries) {
  hasExif_ = true;
  exif_.insert(exif_.end(), entries.begin(), entries.end());
  return *this;
}

TiffBuilder& TiffBuilder::Interop(const TiffEntries& entries) {
  return Exif({SubIfd(0xA005, entries)});
}

TiffBuilder& TiffBuilder::Thumbnail(const Bytes& jpeg) {
  const TiffEntry start = {0x0201, 4, 1, [jpeg](Order order, std::uint32_t at) { return Put32(at, order) + jpeg; }};
  return Ifd1({start, Long(0x0202, static_cast<std::int64_t>(jpeg.size()))});
}

TiffBuilder& TiffBuilder::LastNext(std::uint32_t offset) {
  lastNext_ = offset;
  return *this;
}

Bytes TiffBuilder::Build() const {
  std::vector<TiffEntries> chain = chain_;
  if (chain.empty()) chain.resize(1);
  if (hasExif_) chain[0].push_back(SubIfd(0x8769, exif_));
  Bytes out = Text(order_ == kBig ? "MM" : "II") + Put16(42, order_) + Put32(8, order_);
  for (std::size_t i = 0; i < chain.size(); ++i) {
    const std::uint32_t at = Size(out);
    const std::uint32_t length = Size(EncodeIfd(order_, chain[i], at));
    out += EncodeIfd(order_, chain[i], at, i + 1 < chain.size() ? at + length : lastNext_);
  }
  return out;
}

}  // namespace lxtest
