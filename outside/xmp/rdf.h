// RDF/XML (ISO 16684-1, clause 7): packets in and out.
#ifndef LXBRIDGE_OUTSIDE_XMP_RDF_H_
#define LXBRIDGE_OUTSIDE_XMP_RDF_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "outside/xmp/errors.h"
#include "outside/xmp/model.h"

namespace velto {

// One packet, fed piece by piece into an object of the parser's own. After feed() has raised, the parser is of no more
// use.
class PacketParser {
 public:
  PacketParser();
  PacketParser(const PacketParser&) = delete;
  PacketParser& operator=(const PacketParser&) = delete;
  ~PacketParser();

  // Takes the next bytes; with `last` the packet is complete behind them. Raises ToolkitError with line and column.
  void feed(const char* bytes, std::size_t length, bool last);
  // What the packet holds. REQUIRES: the last piece has been fed.
  Object& result() noexcept;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

struct SerializeOptions {
  std::uint32_t options = 0;  // kXMPSerialize...
  std::int32_t padding = -1;  // As "SerializeToBuffer" has it.
  std::string_view newline = "\n";
  std::string_view indent = " ";
  std::int32_t baseIndent = 0;
};
// Replaces `packet`. Raises kBadOptions, kTooLong.
void serializeObject(const Object& object, const SerializeOptions& options, std::string& packet);

// Whether the bytes start as a packet does, in any encoding of packets.
bool isPacket(std::string_view bytes) noexcept;
// The first whole packet, from "<?xpacket begin" (or, without wrapper, the start of x:xmpmeta or rdf:RDF) to behind its
// end.
bool findPacket(std::string_view bytes, std::size_t& offset, std::size_t& length) noexcept;

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_RDF_H_
