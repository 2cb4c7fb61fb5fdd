// The bytes of a packet before XML: their encoding, and their way to the clean UTF-8 that the XML parser is given.
#ifndef LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_
#define LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velto {

enum class PacketEncoding { kUTF8, kUTF16BE, kUTF16LE, kUTF32BE, kUTF32LE };

// How a packet starts: `zeros` bytes to be passed over (some writers put up to three in front), then its encoding.
struct PacketStart {
  std::size_t zeros;
  PacketEncoding encoding;
};
// Bytes that are enough to tell it.
inline constexpr std::size_t kPacketStartBytes = 12;
// Told from a byte-order mark or from where the zero bytes of the first characters stand (ISO 16684-1, 7.1, has packets
// in all five; XML 1.0, appendix F, has the method). An XML declaration is not consulted.
PacketStart detectStart(std::string_view start) noexcept;

// Turns the bytes of one packet, in pieces of any size, into well-formed UTF-8 of XML's own characters: a text passes
// through as repairText would leave it, wherever the pieces end, and a reference to a character that XML forbids is
// repaired as that character is. The packet starts with its first '<': byte-order mark, white space and whatever else
// stands in front are dropped. An XML declaration after the start, where XML has none, becomes spaces.
class PacketDecoder {
 public:
  // The next characters. With `last` nothing is held back. The view is into `bytes` where nothing had to change, else
  // into the decoder; it is valid until the next call.
  std::string_view decode(std::string_view bytes, bool last);

  // Whether the '<' has been seen; and where it was, so that places can be told as the caller sees them: line ends
  // before it, and characters between the last of those and it.
  bool hasStarted() const noexcept { return hasStarted_; }
  std::size_t droppedLines() const noexcept { return droppedLines_; }
  std::size_t droppedColumns() const noexcept { return droppedColumns_; }

  // For the next packet; the memory is kept.
  void reset() noexcept;

 private:
  // Where "&#" is no reference.
  enum class Section { kNone, kComment, kCData };
  struct Range {
    std::size_t start, end;
  };

  bool detect(std::string_view& bytes, bool last);
  void transcode(std::string_view bytes, bool last);
  std::string_view clean(std::string_view text, bool last);
  std::string_view joinHeld(std::string_view text);
  std::string_view repairReferences(std::string_view text, bool last);
  void findSections(std::string_view text, bool last, std::size_t& held);
  std::string_view dropBeforeStart(std::string_view text) noexcept;
  std::string_view blankDeclaration(std::string_view text, bool last);

  bool isDetected_ = false;
  bool hasStarted_ = false;
  bool isPrologDone_ = false;
  Section section_ = Section::kNone;  // That the next piece starts in.
  PacketEncoding encoding_ = PacketEncoding::kUTF8;
  std::size_t droppedLines_ = 0;
  std::size_t droppedColumns_ = 0;
  std::vector<Range> sections_;  // Of the piece at hand.
  std::string firstBytes_;       // Until the encoding is known.
  std::string heldBytes_;        // A started character of UTF-16 or UTF-32.
  std::string transcoded_;
  std::string heldText_;  // A started character of UTF-8, reference or section mark.
  std::string joined_;    // heldText_ and the piece that follows it.
  std::string repaired_;
  std::string cleaned_;
  std::string prolog_;  // What stands before the first element, until all of it has come.
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_
