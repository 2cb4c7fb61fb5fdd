// Builds TIFF structures (TIFF 6.0, section 2) byte by byte, in both byte orders: as a file, as the block of an Exif
// segment, or one IFD at a given offset (maker notes).
//
//   TiffBuilder(kBig).Ifd0({Ascii(0x010F, "Canon"), Short(0x0112, 6)}).Exif({Ratl(0x829A, 1, 250)}).Build()
#ifndef LXBRIDGE_TESTS_SUPPORT_TIFF_BUILDER_H_
#define LXBRIDGE_TESTS_SUPPORT_TIFF_BUILDER_H_

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/bytes.h"

namespace lxtest {

// One entry. A value of more than 4 bytes follows its IFD, in the order of the entries, at an even offset.
struct TiffEntry {
  std::uint16_t tag;
  std::uint16_t type;
  std::uint32_t count;
  // The value in that byte order, for the case that it stands out of line at that offset from the TIFF header.
  std::function<Bytes(Order, std::uint32_t)> value;
};
using TiffEntries = std::vector<TiffEntry>;

[[nodiscard]] TiffEntry Ascii(std::uint16_t tag, std::string_view text);       // Adds the terminating zero.
[[nodiscard]] TiffEntry AsciiBytes(std::uint16_t tag, std::string_view text);  // Does not.
[[nodiscard]] TiffEntry Byte(std::uint16_t tag, const Bytes& values);
[[nodiscard]] TiffEntry Undef(std::uint16_t tag, const Bytes& values);
// One number, or several.
struct TiffNumbers : std::vector<std::int64_t> {
  using vector::vector;
  TiffNumbers(std::int64_t number) : vector({number}) {}       // NOLINT: meant to be implicit.
  TiffNumbers(vector numbers) : vector(std::move(numbers)) {}  // NOLINT: meant to be implicit.
};
// Numbers of any type of 1, 2 or 4 bytes; of a type of 8 bytes, their 32-bit halves: numerator, denominator, ...
[[nodiscard]] TiffEntry Numbers(std::uint16_t tag, std::uint16_t type, const TiffNumbers& numbers);
inline TiffEntry Short(std::uint16_t tag, const TiffNumbers& numbers) {
  return Numbers(tag, 3, numbers);
}
inline TiffEntry Long(std::uint16_t tag, const TiffNumbers& numbers) {
  return Numbers(tag, 4, numbers);
}
inline TiffEntry Ratl(std::uint16_t tag, const TiffNumbers& halves) {
  return Numbers(tag, 5, halves);
}
inline TiffEntry Ratl(std::uint16_t tag, std::int64_t numerator, std::int64_t denominator) {
  return Numbers(tag, 5, {numerator, denominator});
}
inline TiffEntry SRatl(std::uint16_t tag, std::int64_t numerator, std::int64_t denominator) {
  return Numbers(tag, 10, {numerator, denominator});
}
[[nodiscard]] TiffEntry Float(std::uint16_t tag, float number);
[[nodiscard]] TiffEntry Double(std::uint16_t tag, double number);

// The bare fields of an entry, whatever they say: the value field as a number (an offset, or a value of 4 bytes).
[[nodiscard]] TiffEntry Raw(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::uint32_t field);
// A pointer to an IFD that follows the pointer's own IFD; with several, an array of offsets. Type LONG.
[[nodiscard]] TiffEntry SubIfd(std::uint16_t tag, const TiffEntries& entries);
[[nodiscard]] TiffEntry SubIfds(std::uint16_t tag, const std::vector<TiffEntries>& ifds);
// An opaque value (type UNDEFINED) of `prefix` and an IFD whose offsets count from the TIFF header, as most maker notes
// are.
[[nodiscard]] TiffEntry UndefIfd(std::uint16_t tag, const Bytes& prefix, const TiffEntries& entries);

// An IFD and what follows it, for an IFD that begins `at` bytes after the origin of its offsets.
[[nodiscard]] Bytes EncodeIfd(Order order, const TiffEntries& entries, std::uint32_t at, std::uint32_t nextIfd = 0);

class TiffBuilder {
 public:
  explicit TiffBuilder(Order order) : order_(order) {}

  // IFDs of the chain, in turn; IFD0 begins at offset 8. Ifd0 and Ifd1 add to the IFD when it is there already.
  TiffBuilder& Ifd0(const TiffEntries& entries) { return AddTo(0, entries); }
  TiffBuilder& Ifd1(const TiffEntries& entries) { return AddTo(1, entries); }
  TiffBuilder& NextIfd(const TiffEntries& entries) { return AddTo(chain_.size(), entries); }
  // Pointers at the end of IFD0. Interop is the last entry of the Exif IFD; call it after Exif or without.
  TiffBuilder& Exif(const TiffEntries& entries);
  TiffBuilder& Gps(const TiffEntries& entries) { return Ifd0({SubIfd(0x8825, entries)}); }
  TiffBuilder& Interop(const TiffEntries& entries);
  // JPEGInterchangeFormat and its length at the end of IFD1, with the bytes.
  TiffBuilder& Thumbnail(const Bytes& jpeg);
  // The next-IFD offset of the chain's last IFD, instead of 0.
  TiffBuilder& LastNext(std::uint32_t offset);

  [[nodiscard]] Bytes Build() const;
  operator Bytes() const { return Build(); }  // NOLINT: meant to be implicit.

 private:
  TiffBuilder& AddTo(std::size_t index, const TiffEntries& entries);

  Order order_;
  std::vector<TiffEntries> chain_;
  TiffEntries exif_;
  bool hasExif_ = false;
  std::uint32_t lastNext_ = 0;
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_TIFF_BUILDER_H_
