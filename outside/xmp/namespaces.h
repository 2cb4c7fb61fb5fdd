// The namespaces of one object: those that the toolkit knows, and those that this object's packets have brought or that
// it has taken over from what clients have registered.
//
// A namespace that the toolkit knows has its standard prefix, and one that a client has registered the client's. Any
// other has the first prefix that a packet of this object binds to it, with a number when that prefix is another's: of
// the object, known or registered. So what other objects hold plays no part.
#ifndef LXBRIDGE_OUTSIDE_XMP_NAMESPACES_H_
#define LXBRIDGE_OUTSIDE_XMP_NAMESPACES_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "outside/xmp/registry.h"

namespace velto {

// A name as it is looked for: the hash is that of namespace and name.
struct NameKey {
  NameKey() = default;
  NameKey(const Namespace* nameSpace, std::string_view localName) noexcept;

  const Namespace* ns = nullptr;
  std::string_view name;
  std::uint32_t hash = 0;
};

class Namespaces {
 public:
  Namespaces() = default;
  Namespaces(const Namespaces&) = delete;
  Namespaces& operator=(const Namespaces&) = delete;

  // The record of a URI or of a prefix (without colon); null when neither the toolkit nor a client nor this object
  // knows it. Finding a namespace that a client has registered makes it the object's.
  const Namespace* find(std::string_view uri);
  const Namespace* find(const char* uri) {
    return recent_ != nullptr && std::strcmp(uri, recent_->uri.data()) == 0 ? recent_ : find(std::string_view(uri));
  }
  const Namespace* findPrefix(std::string_view prefix);
  // The record of the URI, made when there is none. Raises kBadSchema for a URI that can be no namespace.
  const Namespace* intern(std::string_view uri, std::string_view suggestedPrefix);
  // This object's record of another object's namespace.
  const Namespace* translate(const Namespace* other) {
    return isEverywhere(other) ? other : intern(other->uri, other->prefix);
  }
  // The same without making one; null when this object does not know it.
  const Namespace* counterpart(const Namespace* other) const noexcept {
    if (isEverywhere(other)) return other;
    const Namespace* known = findStandard(other->uri);
    return known != nullptr && known == variant_ ? known : findOwn(other->uri);
  }
  // A plain name of the namespace, when it is the one that was remembered last: clients ask for a property and then set
  // it. Null: another.
  const NameKey* remembered(const Namespace* ns, const char* name) const noexcept {
    return ns == lastKey_.ns && *name == *lastName_ && std::strcmp(name, lastName_) == 0 ? &lastKey_ : nullptr;
  }
  // Names that are too long are not remembered. The key that comes back is that of the caller's text.
  void remember(const NameKey& key) noexcept {
    if (key.name.size() >= sizeof lastName_) return;
    std::memcpy(lastName_, key.name.data(), key.name.size());
    lastName_[key.name.size()] = '\0';
    lastKey_ = key;
    lastKey_.name = {lastName_, key.name.size()};
  }

  // Knows all that `other` knows, under the same prefixes where they are free.
  void addAll(const Namespaces& other) {
    for (const auto& own : other.own_) intern(own->uri, own->prefix);
  }

 private:
  // A record, followed by its texts.
  struct Own : Namespace {
    std::uint32_t uriHash;
    std::uint32_t prefixHash;
  };
  struct OwnDeleter {
    void operator()(Own* own) const noexcept;
  };

  static bool isEverywhere(const Namespace* ns) noexcept { return ns == nullptr || (ns->standard && !ns->isVariant); }

  const Own* findOwn(std::string_view uri) const noexcept;
  const Own* findOwnPrefix(std::string_view prefix) const noexcept;
  bool isTaken(std::string_view prefix) const noexcept;
  const Own* add(std::string_view uri, std::string_view suggestedPrefix);
  void growTables();

  std::vector<std::unique_ptr<Own, OwnDeleter>> own_;
  // Open addressing, at most half full: 0, or the record's place from 1. Empty while there are few records.
  std::vector<std::uint32_t> byURI_;
  std::vector<std::uint32_t> byPrefix_;
  PrefixNumbers numbers_;
  const Namespace* variant_ = nullptr;  // The one of the two variants that has the prefix: the first that was met.
  const Namespace* recent_ = nullptr;   // The record found last: a client mostly asks for the same again.
  NameKey lastKey_;
  char lastName_[40] = "";
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_NAMESPACES_H_
