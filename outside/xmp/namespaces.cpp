// The namespaces of one object.
#include "outside/xmp/namespaces.h"

#include <cstring>
#include <new>
#include <string>

namespace velto {
namespace {

// Up to this many records a linear search is as fast as a table; most packets have fewer.
constexpr std::size_t kWalkedRecords = 8;

void enter(std::vector<std::uint32_t>& table, std::uint32_t hash, std::size_t place) noexcept {
  std::size_t slot = hash & (table.size() - 1);
  while (table[slot] != 0) slot = (slot + 1) & (table.size() - 1);
  table[slot] = static_cast<std::uint32_t>(place + 1);
}

// The record of that hash for which `matches` is true, or null.
template <typename Records, typename Hash, typename Matches>
auto findRecord(const Records& records, const std::vector<std::uint32_t>& table, std::uint32_t hash, Hash hashOf,
                Matches matches) noexcept -> decltype(records.front().get()) {
  if (table.empty()) {
    for (const auto& record : records) {
      if (record.get()->*hashOf == hash && matches(*record)) return record.get();
    }
    return nullptr;
  }
  for (std::size_t slot = hash & (table.size() - 1); table[slot] != 0; slot = (slot + 1) & (table.size() - 1)) {
    const auto& record = records[table[slot] - 1];
    if (record.get()->*hashOf == hash && matches(*record)) return record.get();
  }
  return nullptr;
}

}  // namespace

NameKey::NameKey(const Namespace* nameSpace, std::string_view localName) noexcept
    : ns(nameSpace),
      name(localName),
      hash(hashText(localName) ^ (nameSpace != nullptr ? (nameSpace->id + 1) * 0x9E3779B1u : 0)) {}

void Namespaces::OwnDeleter::operator()(Own* own) const noexcept {
  own->~Own();
  ::operator delete(own);
}

const Namespaces::Own* Namespaces::findOwn(std::string_view uri) const noexcept {
  if (own_.empty()) return nullptr;
  return findRecord(own_, byURI_, hashText(uri), &Own::uriHash, [&](const Own& own) { return own.uri == uri; });
}

const Namespaces::Own* Namespaces::findOwnPrefix(std::string_view prefix) const noexcept {
  if (own_.empty()) return nullptr;
  return findRecord(own_, byPrefix_, hashText(prefix), &Own::prefixHash,
                    [&](const Own& own) { return own.prefix == prefix; });
}

const Namespace* Namespaces::find(std::string_view uri) {
  if (recent_ != nullptr && recent_->uri == uri) return recent_;
  const Namespace* found = findStandard(uri);
  if (found != nullptr && found->isVariant) {
    if (variant_ == nullptr) variant_ = found;
    if (variant_ != found) found = findOwn(uri) != nullptr ? findOwn(uri) : add(uri, found->prefix);
  }
  if (found == nullptr) found = findOwn(uri);
  std::string prefix;
  if (found == nullptr && findRegistered(uri, prefix)) found = add(uri, prefix);
  if (found != nullptr) recent_ = found;
  return found;
}

const Namespace* Namespaces::findPrefix(std::string_view prefix) {
  if (const Namespace* known = findStandardPrefix(prefix)) {
    return known->isVariant && variant_ != nullptr ? variant_ : known;
  }
  if (const Namespace* own = findOwnPrefix(prefix)) return own;
  std::string uri;
  return findRegisteredPrefix(prefix, uri) ? find(uri) : nullptr;
}

const Namespace* Namespaces::intern(std::string_view uri, std::string_view suggestedPrefix) {
  if (const Namespace* known = find(uri)) return known;
  requireNamespaceURI(uri);
  recent_ = add(uri, usablePrefix(suggestedPrefix));
  return recent_;
}

bool Namespaces::isTaken(std::string_view prefix) const noexcept {
  return findStandardPrefix(prefix) != nullptr || findOwnPrefix(prefix) != nullptr || isRegisteredPrefix(prefix);
}

// REQUIRES: the URI is new here. If a client has registered it, the suggested prefix is the client's.
const Namespaces::Own* Namespaces::add(std::string_view uri, std::string_view suggestedPrefix) {
  std::string registeredURI;
  const bool isItsOwn = findRegisteredPrefix(suggestedPrefix, registeredURI) && registeredURI == uri &&
                        findOwnPrefix(suggestedPrefix) == nullptr;
  std::string numbered;
  if (suggestedPrefix.empty() || (!isItsOwn && isTaken(suggestedPrefix))) {
    numbered = numbers_.next(suggestedPrefix.empty() ? "ns" : suggestedPrefix,
                             [this](std::string_view prefix) { return isTaken(prefix); });
    suggestedPrefix = numbered;
  }
  own_.reserve(own_.size() + 1 <= own_.capacity() ? 0 : own_.size() * 2 + 4);
  void* block = ::operator new(sizeof(Own) + uri.size() + suggestedPrefix.size() + 2);
  char* text = static_cast<char*>(block) + sizeof(Own);
  const auto copy = [&text](std::string_view from) {
    char* const start = text;
    std::memcpy(start, from.data(), from.size());
    start[from.size()] = '\0';
    text += from.size() + 1;
    return std::string_view(start, from.size());
  };
  const std::string_view ownURI = copy(uri);
  const std::string_view ownPrefix = copy(suggestedPrefix);
  const auto id = static_cast<std::uint32_t>(countStandards() + own_.size());
  own_.emplace_back(new (block) Own{{ownURI, ownPrefix, id, false}, hashText(ownURI), hashText(ownPrefix)});
  try {
    growTables();
  } catch (...) {
    own_.pop_back();
    throw;
  }
  return own_.back().get();
}

// Enters the last record into the tables. They are rebuilt when more than half full.
void Namespaces::growTables() {
  const std::size_t count = own_.size();
  if (count <= kWalkedRecords) return;
  if (count * 2 <= byURI_.size()) {
    enter(byURI_, own_.back()->uriHash, count - 1);
    enter(byPrefix_, own_.back()->prefixHash, count - 1);
    return;
  }
  std::size_t slots = 32;
  while (slots < count * 4) slots *= 2;
  std::vector<std::uint32_t> byURI(slots, 0);
  std::vector<std::uint32_t> byPrefix(slots, 0);
  for (std::size_t place = 0; place < count; ++place) {
    enter(byURI, own_[place]->uriHash, place);
    enter(byPrefix, own_[place]->prefixHash, place);
  }
  byURI_.swap(byURI);
  byPrefix_.swap(byPrefix);
}

}  // namespace velto
