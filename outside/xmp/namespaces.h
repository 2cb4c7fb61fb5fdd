// The namespaces of one object: those that the toolkit knows, those in this object's packets, and those that clients
// have registered and this object uses.
//
// A namespace known to the toolkit has its standard prefix, and one registered by a client has the client's. Any other
// has the first prefix that a packet of this object binds to it; a number is added if another namespace of the object,
// of the toolkit or of a client has that prefix. So the prefixes do not depend on other objects.
#ifndef LXBRIDGE_OUTSIDE_XMP_NAMESPACES_H_
#define LXBRIDGE_OUTSIDE_XMP_NAMESPACES_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "outside/xmp/registry.h"
#include "outside/xmp/storage.h"

namespace velto {

// A name to be searched for; the hash covers namespace and name.
struct NameKey {
  NameKey() = default;
  NameKey(const Namespace* nameSpace, std::string_view localName) noexcept;

  const Namespace* ns = nullptr;
  std::string_view name;
  std::uint32_t hash = 0;
};

class Namespaces {
 public:
  explicit Namespaces(Storage& storage) noexcept : storage_(storage) {}
  Namespaces(const Namespaces&) = delete;
  Namespaces& operator=(const Namespaces&) = delete;

  // The namespace of a URI or of a prefix (without colon); null if it is unknown to the toolkit, to clients and to this
  // object. A client's namespace that is found becomes one of the object's.
  const Namespace* find(std::string_view uri);
  const Namespace* find(const char* uri) {
    return recent_ != nullptr && std::strcmp(uri, recent_->uri.data()) == 0 ? recent_ : find(std::string_view(uri));
  }
  const Namespace* findPrefix(std::string_view prefix);
  // The namespace of the URI, created if necessary. Raises kBadSchema if the URI cannot be a namespace.
  const Namespace* intern(std::string_view uri, std::string_view suggestedPrefix);
  // This object's record for a namespace of another object.
  const Namespace* translate(const Namespace* other) {
    return isEverywhere(other) ? other : intern(other->uri, other->prefix);
  }
  // The same without creating one; null if this object does not know it.
  const Namespace* counterpart(const Namespace* other) const noexcept {
    if (isEverywhere(other)) return other;
    const Namespace* known = findStandard(other->uri);
    return known != nullptr && known == variant_ ? known : findOwn(other->uri);
  }
  // Whether this is the simple name remembered last: clients often get a property and then set it.
  bool isRemembered(const char* schema, const char* name) const noexcept {
    return lastKey_.ns != nullptr && *name == *lastName_ && std::strcmp(name, lastName_) == 0 &&
           std::strcmp(schema, lastKey_.ns->uri.data()) == 0;
  }
  const NameKey& remembered() const noexcept { return lastKey_; }
  // Long names are not remembered.
  void remember(const NameKey& key) noexcept {
    if (key.name.size() >= sizeof lastName_) return;
    std::memcpy(lastName_, key.name.data(), key.name.size());
    lastName_[key.name.size()] = '\0';
    lastKey_ = key;
    lastKey_.name = {lastName_, key.name.size()};
  }

  // Adds all namespaces of `other`, under the same prefixes where these are free.
  void addAll(const Namespaces& other) {
    for (const auto& own : other.own_) intern(own->uri, own->prefix);
  }

 private:
  // A record in the object's storage, followed by its texts.
  struct Own : Namespace {
    std::uint32_t uriHash;
    std::uint32_t prefixHash;
  };

  // The places of records in `own_` by the hash of a text. A slot contains the hash too, so that a search for a text
  // that is not there reads no records. Open addressing, at most three quarters full.
  class Table {
   public:
    bool empty() const noexcept { return slots_.empty(); }
    void reserve(std::size_t count);  // To be called before the table gets its `count`th record.
    void enter(std::uint32_t hash, std::size_t place) noexcept;
    // The place of that hash for which `matches` is true, or kNone.
    template <typename Matches>
    std::size_t find(std::uint32_t hash, Matches matches) const noexcept;

   private:
    struct Slot {
      std::uint32_t hash = 0;
      std::uint32_t place = 0;  // From 1; 0: free.
    };
    std::vector<Slot> slots_;
  };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  static bool isEverywhere(const Namespace* ns) noexcept { return ns == nullptr || (ns->standard && !ns->isVariant); }

  const Own* findOwn(std::string_view uri) const noexcept;
  const Own* findOwnPrefix(std::string_view prefix) const noexcept;
  const Own* findIn(const Table& table, std::string_view Namespace::*text, std::uint32_t Own::*hashOf,
                    std::string_view wanted) const noexcept;
  bool isTaken(std::string_view prefix) const noexcept;
  const Own* add(std::string_view uri, std::string_view suggestedPrefix);
  void reserveOne();

  Storage& storage_;
  std::vector<const Own*> own_;
  // Empty while there are few records.
  Table byURI_;
  Table byPrefix_;
  PrefixNumbers numbers_;
  const Namespace* variant_ = nullptr;  // The one of the two variants that has the prefix: the first one seen.
  const Namespace* recent_ = nullptr;   // The record found last: clients mostly use the same one again.
  NameKey lastKey_;
  char lastName_[40] = "";
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_NAMESPACES_H_
