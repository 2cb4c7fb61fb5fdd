// RDF/XML (ISO 16684-1, clause 7): packets in and out.
#ifndef LXBRIDGE_OUTSIDE_XMP_RDF_H_
#define LXBRIDGE_OUTSIDE_XMP_RDF_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "outside/xmp/errors.h"
#include "outside/xmp/model.h"

namespace velto {

// One packet, fed piece by piece. The object gets what it holds when the last piece has come, or when a piece breaks
// off: the properties that were complete before the fault. When memory ends it gets nothing. After feed() has raised,
// the parser is of no more use.
//
// RDF that XMP does not allow, in well-formed XML, costs the top-level property that it stands in, and is one of the
// object's warnings.
class PacketParser {
 public:
  explicit PacketParser(Object& object);
  PacketParser(const PacketParser&) = delete;
  PacketParser& operator=(const PacketParser&) = delete;
  ~PacketParser();

  // Takes the next bytes; with `last` they complete the packet. Raises ToolkitError with line and column when they are
  // not well-formed or have no rdf:RDF.
  void feed(const char* bytes, std::size_t length, bool last);

  // Gives the parsers that are kept for packets to come back to the system.
  static void releaseSpares() noexcept;

 private:
  struct State;
  State* state_;
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

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_RDF_H_
