// Decodes the bytes of a packet: detects the encoding and produces clean UTF-8 for the XML parser.
#ifndef LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_
#define LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velto {

enum class PacketEncoding { kUTF8, kUTF16BE, kUTF16LE, kUTF32BE, kUTF32LE };

// The start of a packet: `zeros` leading bytes to skip (some writers have up to three), then the encoding.
struct PacketStart {
  std::size_t zeros;
  PacketEncoding encoding;
};
// Enough bytes to detect the encoding.
inline constexpr std::size_t kPacketStartBytes = 12;
// Detects the encoding from a byte-order mark or from the position of zero bytes in the first characters (ISO 16684-1,
// 7.1, allows all five encodings; XML 1.0, appendix F, has the method). The XML declaration is ignored.
PacketStart detectStart(std::string_view start) noexcept;

// Converts the bytes of a packet, in pieces of any size, to well-formed UTF-8 of XML characters. The result is that of
// repairText, wherever the pieces end; a reference to a character that XML forbids is repaired like the character. The
// packet starts at its first '<': a byte-order mark, white space and anything else before it are dropped. A misplaced
// XML declaration is replaced by spaces.
class PacketDecoder {
 public:
  // The next characters. With `last`, nothing is held back. The view is into `bytes` if nothing had to change, else
  // into the decoder; it is valid until the next call.
  std::string_view decode(std::string_view bytes, bool last);

  // Whether the first '<' has been seen, and its place: the number of line ends before it, and of characters after the
  // last of these. Used to report positions in the caller's bytes.
  bool hasStarted() const noexcept { return hasStarted_; }
  std::size_t droppedLines() const noexcept { return droppedLines_; }
  std::size_t droppedColumns() const noexcept { return droppedColumns_; }

  // Prepares for the next packet; keeps the memory.
  void reset() noexcept;

 private:
  // Where "&#" does not start a reference.
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
  Section section_ = Section::kNone;  // In which the next piece starts.
  PacketEncoding encoding_ = PacketEncoding::kUTF8;
  std::size_t droppedLines_ = 0;
  std::size_t droppedColumns_ = 0;
  std::vector<Range> sections_;  // Of the current piece.
  std::string firstBytes_;       // Until the encoding is known.
  std::string heldBytes_;        // An incomplete character in UTF-16 or UTF-32.
  std::string transcoded_;
  std::string heldText_;  // An incomplete UTF-8 character, reference or section mark.
  std::string joined_;    // heldText_ and the following piece.
  std::string repaired_;
  std::string cleaned_;
  std::string prolog_;  // Text before the first element, until it is complete.
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_
