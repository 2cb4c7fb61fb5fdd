// The bytes of a packet before XML: their encoding, and their way to the clean UTF-8 that the XML parser is given.
#ifndef LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_
#define LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_

#include <string>
#include <string_view>

namespace velto {

enum class PacketEncoding { kUTF8, kUTF16BE, kUTF16LE, kUTF32BE, kUTF32LE };

// Told from a byte-order mark or from where the zero bytes of the first characters stand (ISO 16684-1, 7.1, has packets
// in all five; XML 1.0, appendix F, has the method). What an XML declaration says plays no part. Four bytes are enough.
PacketEncoding detectEncoding(std::string_view start) noexcept;

// Turns the bytes of one packet, in pieces of any size, into well-formed UTF-8 of XML's own characters: a text passes
// through as repairText would leave it, wherever the pieces end. The packet starts with its first '<': byte-order mark,
// white space and whatever else stands before are dropped.
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

 private:
  bool detect(std::string_view& bytes, bool last);
  void transcode(std::string_view bytes, bool last);
  std::string_view clean(std::string_view text, bool last);
  std::string_view dropBeforeStart(std::string_view text) noexcept;

  bool isDetected_ = false;
  bool hasStarted_ = false;
  PacketEncoding encoding_ = PacketEncoding::kUTF8;
  std::size_t droppedLines_ = 0;
  std::size_t droppedColumns_ = 0;
  std::string firstBytes_;  // Until the encoding is known.
  std::string heldBytes_;   // A started character of UTF-16 or UTF-32.
  std::string transcoded_;
  std::string heldText_;  // A started character of UTF-8.
  std::string joined_;    // heldText_ and the piece behind it.
  std::string cleaned_;
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PACKET_ENCODING_H_
