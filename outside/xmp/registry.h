// The namespace registry: each namespace URI that the process has met is one record, so that nodes name their
// namespace by a pointer and two names are compared without looking at a URI. One thread at a time.
//
// A record lives while anything uses it, and beyond that until some thousand others have come: a host that runs for
// months reads packets of any number of namespaces, and nobody asks for most of them again. The standard's own, and
// those that a client has registered, stay.
#ifndef LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_
#define LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velto {

// A record's prefix is unique among all records, deleted ones included, since an object may still hold their names: the
// serialiser can declare `prefix` for `uri` without asking further.
struct Namespace {
  std::string uri;
  std::string prefix;  // Without colon; an XML name.
  std::uint32_t hash;  // Of the URI.
  bool known;          // False after deletion: the URI and the prefix are found no more.
  bool standard;       // Cannot be deleted, keeps its prefix.
  bool kept = false;   // A client wants it, whether or not it is used.
  mutable std::size_t uses = 0;
};

// Between these two a record stays where it is. Null: nothing. What neither uses a record nor keeps it must not hold it
// over a registerNamespace.
void useNamespace(const Namespace* ns) noexcept;
void releaseNamespace(const Namespace* ns) noexcept;

// Makes the registry; false when there is no memory for that. Everything below makes it too when it is the first to
// need it, but most of it could not tell of a failure.
bool prepareRegistry() noexcept;

// The record of a URI that is known, or null.
const Namespace* findNamespace(std::string_view uri) noexcept;
// The record of a prefix (without colon) that is known, or null.
const Namespace* findPrefix(std::string_view prefix) noexcept;
// The record of the URI; made when there is none. Then the suggested prefix is taken when it is free, else it gets a
// number behind it; one that is empty or no XML name is replaced by a generated one. Raises kBadSchema for an empty
// URI.
const Namespace* registerNamespace(std::string_view uri, std::string_view suggestedPrefix);
// The same for a client: the namespace stays until it is deleted.
const Namespace* keepNamespace(std::string_view uri, std::string_view suggestedPrefix);
// False when there is no such URI. Raises kStandardNamespace for the standard's own.
bool deleteNamespace(std::string_view uri);
std::size_t countNamespaces() noexcept;
// The known namespaces in the order of their prefixes; null beyond the last.
const Namespace* namespaceAt(std::size_t index);

// Records that the toolkit's own rules name.
struct WellKnown {
  const Namespace* xml;
  const Namespace* rdf;
  const Namespace* x;  // Of the element around rdf:RDF.
  const Namespace* dc;
  const Namespace* xmp;
};
const WellKnown& wellKnown() noexcept;

// A keyed hash, so that nobody can write a packet whose names all fall into one place of a table.
std::uint32_t hashText(std::string_view text) noexcept;

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_REGISTRY_H_
