// Namespaces that the whole process shares: those that the toolkit knows from the start, and those that clients have
// registered. The first are constant; a lock guards the second, so any number of threads may ask at once.
// Namespaces that only packets bring belong to the object that the packet was read into (namespaces.h).
#ifndef LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_
#define LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velto {

// A node names its namespace by the address of such a record, and the records of one object differ in their URIs and in
// their prefixes. So two names of one object are compared without looking at a URI.
struct Namespace {
  std::string_view uri;     // Zero-terminated, as is the prefix.
  std::string_view prefix;  // Without colon; an XML name.
  std::uint32_t id;         // Different for each namespace of an object.
  bool standard;            // One that the toolkit knows: the record is every object's.
  bool isVariant = false;   // Of two URIs that writers use for one namespace, with one prefix.
};

// Records that the toolkit's own rules name.
struct WellKnown {
  const Namespace* xml;
  const Namespace* rdf;
  const Namespace* x;  // Of the element around rdf:RDF.
  const Namespace* dc;
  const Namespace* xmp;
};
extern const WellKnown kWellKnown;
inline const WellKnown& wellKnown() noexcept {
  return kWellKnown;
}

// The record of a namespace that the toolkit knows, by URI and by prefix; null for others.
const Namespace* findStandard(std::string_view uri) noexcept;
const Namespace* findStandardPrefix(std::string_view prefix) noexcept;
std::size_t countStandards() noexcept;

// Looks up a namespace that a client has registered. False: there is none.
bool findRegistered(std::string_view uri, std::string& prefix);
bool findRegisteredPrefix(std::string_view prefix, std::string& uri);
bool isRegisteredPrefix(std::string_view prefix) noexcept;

// Gives the URI a prefix, and says which: its own when it has one, else the suggested one, with a number when that is
// taken. A prefix that is no XML name is replaced by a generated one. Raises kBadSchema for a URI that is none.
std::string registerNamespace(std::string_view uri, std::string_view suggestedPrefix);
// Takes it back. Objects that use the namespace keep it. Raises kStandardNamespace for one that the toolkit knows.
void deleteNamespace(std::string_view uri);

// Raises kBadSchema when the URI can be no namespace.
void requireNamespaceURI(std::string_view uri);
// The prefix without its colon; empty when it cannot be one.
std::string_view usablePrefix(std::string_view suggested) noexcept;

// A keyed hash, so that nobody can write a packet whose names all fall into one place of a table.
std::uint32_t hashText(std::string_view text) noexcept;

// Finds a prefix that is not taken by adding a number to one. Remembers where each prefix has got to, so that a packet
// of ten thousand namespaces that want one prefix takes no longer for it.
class PrefixNumbers {
 public:
  template <typename IsTaken>
  std::string next(std::string_view base, IsTaken isTaken) {
    std::uint32_t& number = lastNumber(base);
    for (;;) {
      std::string prefix = std::string(base) + std::to_string(++number);
      if (!isTaken(std::string_view(prefix))) return prefix;
    }
  }
  PrefixNumbers() = default;
  PrefixNumbers(const PrefixNumbers&) = delete;
  PrefixNumbers& operator=(const PrefixNumbers&) = delete;
  ~PrefixNumbers();

 private:
  struct Table;
  std::uint32_t& lastNumber(std::string_view base);
  Table* table_ = nullptr;  // Most objects never have a clash.
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_
