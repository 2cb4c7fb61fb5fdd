// The namespaces of one object.
#include "outside/xmp/namespaces.h"

#include <cstring>
#include <new>
#include <string>

namespace velto {
namespace {

// Up to this many records a linear search is as fast as a table; most packets have fewer.
constexpr std::size_t kWalkedRecords = 8;

}  // namespace

NameKey::NameKey(const Namespace* nameSpace, std::string_view localName) noexcept
    : ns(nameSpace), name(localName), hash(hashText(localName, nameSpace != nullptr ? nameSpace->id + 1 : 0)) {}

void Namespaces::Table::reserve(std::size_t count) {
  if (count * 4 <= slots_.size() * 3) return;
  Table grown;
  grown.slots_.resize(slots_.empty() ? 32 : slots_.size() * 2);
  for (const Slot& slot : slots_) {
    if (slot.place != 0) grown.enter(slot.hash, slot.place - 1);
  }
  slots_.swap(grown.slots_);
}

void Namespaces::Table::enter(std::uint32_t hash, std::size_t place) noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  while (slots_[slot].place != 0) slot = (slot + 1) & mask;
  slots_[slot] = {hash, static_cast<std::uint32_t>(place + 1)};
}

template <typename Matches>
std::size_t Namespaces::Table::find(std::uint32_t hash, Matches matches) const noexcept {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = hash & mask; slots_[slot].place != 0; slot = (slot + 1) & mask) {
    const std::size_t place = slots_[slot].place - 1;
    if (slots_[slot].hash == hash && matches(place)) return place;
  }
  return kNone;
}

const Namespaces::Own* Namespaces::findOwn(std::string_view uri) const noexcept {
  return findIn(byURI_, &Own::uri, &Own::uriHash, uri);
}

const Namespaces::Own* Namespaces::findOwnPrefix(std::string_view prefix) const noexcept {
  return findIn(byPrefix_, &Own::prefix, &Own::prefixHash, prefix);
}

const Namespaces::Own* Namespaces::findIn(const Table& table, std::string_view Namespace::*text,
                                          std::uint32_t Own::*hashOf, std::string_view wanted) const noexcept {
  if (own_.empty()) return nullptr;
  const std::uint32_t hash = hashText(wanted);
  if (!table.empty()) {
    const std::size_t place = table.find(hash, [&](std::size_t at) { return own_[at]->*text == wanted; });
    return place != kNone ? own_[place] : nullptr;
  }
  for (const Own* own : own_) {
    if (own->*hashOf == hash && own->*text == wanted) return own;
  }
  return nullptr;
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
  reserveOne();
  void* block = storage_.take(sizeof(Own) + uri.size() + suggestedPrefix.size() + 2);
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
  const std::size_t place = own_.size();
  const auto id = static_cast<std::uint32_t>(countStandards() + place);
  const Own* own = new (block) Own{{ownURI, ownPrefix, id, false}, hashText(ownURI), hashText(ownPrefix)};
  own_.push_back(own);
  if (!byURI_.empty()) {
    byURI_.enter(own->uriHash, place);
    byPrefix_.enter(own->prefixHash, place);
  }
  return own;
}

// Grows the tables for one more record, so that adding it only allocates the record. If there is memory for one of them
// only, it may stay the larger one.
void Namespaces::reserveOne() {
  const std::size_t count = own_.size() + 1;
  if (count > own_.capacity()) own_.reserve(own_.size() * 2 + 4);
  if (count <= kWalkedRecords) return;
  const bool isFirst = byURI_.empty() || byPrefix_.empty();
  Table byURI;
  Table byPrefix;
  (isFirst ? byURI : byURI_).reserve(count);
  (isFirst ? byPrefix : byPrefix_).reserve(count);
  if (!isFirst) return;
  for (std::size_t place = 0; place < own_.size(); ++place) {
    byURI.enter(own_[place]->uriHash, place);
    byPrefix.enter(own_[place]->prefixHash, place);
  }
  std::swap(byURI_, byURI);
  std::swap(byPrefix_, byPrefix);
}

}  // namespace velto
