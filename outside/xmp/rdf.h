// RDF/XML (ISO 16684-1, clause 7): reading and writing packets.
#ifndef LXBRIDGE_OUTSIDE_XMP_RDF_H_
#define LXBRIDGE_OUTSIDE_XMP_RDF_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "outside/xmp/errors.h"
#include "outside/xmp/model.h"

namespace velto {

// Parses a packet, fed piece by piece. The object gets the packet's properties with the last piece. If a piece is
// faulty, it gets the properties that were complete before the fault; if memory runs out, none. After feed() has
// raised, the parser must not be used.
//
// RDF that XMP does not allow, in well-formed XML, loses the top-level property that contains it and adds a warning to
// the object.
class PacketParser {
 public:
  explicit PacketParser(Object& object);
  PacketParser(const PacketParser&) = delete;
  PacketParser& operator=(const PacketParser&) = delete;
  ~PacketParser();

  // Takes the next bytes; with `last` they complete the packet. Raises ToolkitError with line and column if the packet
  // is not well-formed or has no rdf:RDF.
  void feed(const char* bytes, std::size_t length, bool last);

  // Frees the parsers that are kept for later packets.
  static void releaseSpares() noexcept;

 private:
  struct State;
  State* state_;
};

struct SerializeOptions {
  std::uint32_t options = 0;  // kXMPSerialize...
  std::int32_t padding = -1;  // As in "SerializeToBuffer".
  std::string_view newline = "\n";
  std::string_view indent = " ";
  std::int32_t baseIndent = 0;
};
// Replaces `packet`. Raises kBadOptions, kTooLong.
void serializeObject(const Object& object, const SerializeOptions& options, std::string& packet);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_RDF_H_
