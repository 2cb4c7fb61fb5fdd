// Namespaces shared by the whole process: those that the toolkit knows, and those that clients have registered. The
// former are constant; a lock guards the latter, so any number of threads may look up namespaces. Namespaces that occur
// only in packets belong to the object of the packet (namespaces.h).
#ifndef LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_
#define LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velto {

// A node refers to its namespace by the address of such a record. No two records of an object have the same URI or the
// same prefix, so names within an object are compared without comparing URIs.
struct Namespace {
  std::string_view uri;     // Zero-terminated, like the prefix.
  std::string_view prefix;  // Without the colon; an XML name.
  std::uint32_t id;         // Different for each namespace of an object.
  bool standard;            // Known to the toolkit: all objects share the record.
  bool isVariant = false;   // One of two URIs that writers use for the same namespace and prefix.
};

// Namespaces used by the toolkit's own rules.
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

// A namespace known to the toolkit, by URI or by prefix; null for others.
const Namespace* findStandard(std::string_view uri) noexcept;
const Namespace* findStandardPrefix(std::string_view prefix) noexcept;
std::size_t countStandards() noexcept;

// Looks up a namespace registered by a client. False: there is none.
bool findRegistered(std::string_view uri, std::string& prefix);
bool findRegisteredPrefix(std::string_view prefix, std::string& uri);
bool isRegisteredPrefix(std::string_view prefix) noexcept;

// Gives the URI a prefix and returns it: its existing prefix, else the suggested one, with a number if that is taken.
// An invalid prefix is replaced by a generated one. Raises kBadSchema for an invalid URI.
std::string registerNamespace(std::string_view uri, std::string_view suggestedPrefix);

// Raises kBadSchema if the URI cannot be a namespace.
void requireNamespaceURI(std::string_view uri);
// The prefix without its colon; empty if it is invalid.
std::string_view usablePrefix(std::string_view suggested) noexcept;

// A keyed hash, so that no packet can be written whose names all collide.
std::uint32_t hashText(std::string_view text) noexcept;
std::uint32_t hashText(std::string_view text, std::uint32_t number) noexcept;  // Of both.

// Finds a free prefix by appending a number. Remembers the last number of each prefix, so that ten thousand namespaces
// with the same prefix do not take quadratic time.
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
  Table* table_ = nullptr;  // Most objects have no conflict.
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_
