// The data model.
#include "outside/xmp/model.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "outside/xmp/node_tables.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

// Up to this many nodes, a linear search is as fast as a table; most lists are shorter.
constexpr std::size_t kWalkedSize = 8;
constexpr std::string_view kDefaultLanguage = "x-default";

bool hasName(const Node* node, const Namespace* ns, std::string_view name) noexcept {
  return node->ns == ns && node->name() == name;
}

bool isLanguage(const Node* node) noexcept {
  return hasName(node, wellKnown().xml, "lang");
}

// Whether the item is a text of a language alternative.
bool isLocalized(const Node* item) noexcept {
  return item->ns == nullptr && item->isSimple() && languageOf(item) != nullptr;
}

}  // namespace

struct NodeList::Index {
  explicit Index(Storage& objectStorage) noexcept
      : storage(objectStorage), names(objectStorage), languages(objectStorage), generics(objectStorage) {}

  Storage& storage;
  NodeTable names;
  Node** positions = nullptr;
  std::size_t positionCapacity = 0;
  NodeTable languages;  // The first item of each language.
  GenericTable generics;

  void dropLanguages() noexcept {
    languages.drop();
    generics.drop();
  }

  Node* findLanguage(std::string_view language) const noexcept {
    return languages.find(hashText(language), [&](const Node* item) { return languageOf(item)->value() == language; });
  }

  bool addLanguage(Node* item, std::size_t count) noexcept {
    if (!languages.reserve(count)) return false;
    const std::string_view language = languageOf(item)->value();
    if (findLanguage(language) == nullptr) languages.enter(item, hashText(language));
    return true;
  }

  bool fillLanguages(Node* first, std::size_t count) noexcept {
    if (!languages.reserve(count)) return false;
    for (Node* item = first; item != nullptr; item = item->next) {
      if (isLocalized(item)) addLanguage(item, count);
    }
    return true;
  }

  bool fillGenerics(Node* first) noexcept {
    if (!generics.reserve()) return false;  // All languages may be empty.
    for (Node* item = first; item != nullptr; item = item->next) {
      if (isLocalized(item) && !generics.enter(item, languageOf(item)->value())) return false;
    }
    return true;
  }

  bool fillNames(Node* first, std::size_t count) noexcept {
    if (!names.reserve(count)) return false;
    for (Node* node = first; node != nullptr; node = node->next) names.enter(node, node->hash);
    return true;
  }

  void dropPositions() noexcept {
    storage.give(positions, positionCapacity * sizeof(Node*));
    positions = nullptr;
  }

  bool reservePositions(std::size_t count) noexcept {
    if (count <= positionCapacity && positions != nullptr) return true;
    const std::size_t capacity = std::max<std::size_t>(16, count * 2);
    auto* grown = static_cast<Node**>(storage.tryTake(capacity * sizeof(Node*)));
    if (grown == nullptr) {
      dropPositions();
      return false;
    }
    if (positions != nullptr) std::memcpy(grown, positions, positionCapacity * sizeof(Node*));
    dropPositions();
    positions = grown;
    positionCapacity = capacity;
    return true;
  }

  // Most work is done at the ends of a list.
  std::size_t positionOf(const Node* node, std::size_t count) const noexcept {
    if (positions[count - 1] == node) return count - 1;
    std::size_t position = 0;
    while (positions[position] != node) ++position;
    return position;
  }
};

NodeList::Index* NodeList::index() const noexcept {
  if (index_ == nullptr) {
    Storage& storage = first_->storage;
    void* block = storage.tryTake(sizeof(Index));
    if (block != nullptr) index_ = new (block) Index(storage);
  }
  return index_;
}

bool NodeList::ensureNames() const noexcept {
  if (index() == nullptr) return false;
  return index_->names.isBuilt() || index_->fillNames(first_, size_);
}

bool NodeList::ensurePositions() const noexcept {
  if (index() == nullptr) return false;
  if (index_->positions != nullptr) return true;
  if (!index_->reservePositions(size_)) return false;
  Node** place = index_->positions;
  for (Node* node = first_; node != nullptr; node = node->next) *place++ = node;
  return true;
}

bool NodeList::ensureLanguages() const noexcept {
  if (index() == nullptr) return false;
  return index_->languages.isBuilt() || index_->fillLanguages(first_, languages_);
}

bool NodeList::ensureGenerics() const noexcept {
  if (index() == nullptr) return false;
  return index_->generics.isBuilt() || index_->fillGenerics(first_);
}

Node* NodeList::findLanguage(std::string_view language) const noexcept {
  if (languages_ == 0) return nullptr;
  if (size_ > kWalkedSize && ensureLanguages()) return index_->findLanguage(language);
  for (Node* item = first_; item != nullptr; item = item->next) {
    if (isLocalized(item) && languageOf(item)->value() == language) return item;
  }
  return nullptr;
}

GenericItems NodeList::findGeneric(std::string_view language) const noexcept {
  if (languages_ > kWalkedSize && ensureGenerics()) return index_->generics.find(language);
  GenericItems found;
  for (Node* item = first_; item != nullptr && !found.isMany; item = item->next) {
    if (!isLocalized(item) || !isOfLanguage(languageOf(item)->value(), language)) continue;
    found.isMany = found.first != nullptr;
    if (!found.isMany) found.first = item;
  }
  return found;
}

void NodeList::beforeLanguageChange(const Node* item) noexcept {
  if (isLocalized(item)) --languages_;
  if (index_ != nullptr) index_->dropLanguages();
}

void NodeList::afterLanguageChange(const Node* item) noexcept {
  if (isLocalized(item)) ++languages_;
}

void NodeList::dropIndex() const noexcept {
  if (index_ == nullptr) return;
  Storage& storage = index_->storage;
  index_->dropLanguages();
  index_->names.drop();
  index_->dropPositions();
  storage.give(index_, sizeof(Index));
  index_ = nullptr;
}

Node* NodeList::find(const NameKey& key) const noexcept {
  if (size_ > kWalkedSize) return findInIndex(key);
  for (Node* node = first_; node != nullptr; node = node->next) {
    if (node->hash == key.hash && hasName(node, key.ns, key.name)) return node;
  }
  return nullptr;
}

Node* NodeList::findInIndex(const NameKey& key) const noexcept {
  if ((index_ == nullptr || !index_->names.isBuilt()) && !ensureNames()) {
    for (Node* node = first_; node != nullptr; node = node->next) {
      if (node->hash == key.hash && hasName(node, key.ns, key.name)) return node;
    }
    return nullptr;
  }
  return index_->names.find(key.hash, [&](const Node* node) { return hasName(node, key.ns, key.name); });
}

Node* NodeList::find(const Namespace* ns, std::string_view name) const noexcept {
  if (size_ > kWalkedSize) return find(NameKey(ns, name));
  for (Node* node = first_; node != nullptr; node = node->next) {
    if (hasName(node, ns, name)) return node;
  }
  return nullptr;
}

Node* NodeList::at(std::size_t position) const noexcept {
  if (position >= size_) return nullptr;
  if (position == size_ - 1) return last_;
  if (position >= kWalkedSize && ensurePositions()) return index_->positions[position];
  Node* node = first_;
  while (position-- != 0) node = node->next;
  return node;
}

Node* NodeList::append(Node* owner, NodePtr fresh) noexcept {
  Node* node = fresh.release();
  node->parent = owner;
  node->previous = last_;
  (last_ != nullptr ? last_->next : first_) = node;
  last_ = node;
  ++size_;
  if (index_ != nullptr || node->ns == nullptr) noteInserted(node, nullptr);
  return node;
}

Node* NodeList::insert(Node* owner, NodePtr fresh, Node* before) noexcept {
  Node* node = fresh.release();
  node->parent = owner;
  node->next = before;
  node->previous = before != nullptr ? before->previous : last_;
  (node->previous != nullptr ? node->previous->next : first_) = node;
  (before != nullptr ? before->previous : last_) = node;
  ++size_;
  noteInserted(node, before);
  return node;
}

void NodeList::noteInserted(Node* node, Node* before) noexcept {
  const bool hasLanguage = isLocalized(node);
  if (hasLanguage) ++languages_;
  if (index_ == nullptr) return;
  if (hasLanguage && before != nullptr) {
    // It may become the first of its language.
    index_->dropLanguages();
  } else if (hasLanguage) {
    if (index_->languages.isBuilt()) index_->addLanguage(node, languages_);
    if (index_->generics.isBuilt()) index_->generics.enter(node, languageOf(node)->value());
  }
  if (index_->names.isBuilt() && index_->names.reserve(size_)) index_->names.enter(node, node->hash);
  if (index_->positions != nullptr && index_->reservePositions(size_)) {
    std::size_t position = size_ - 1;
    if (before != nullptr) {
      position = index_->positionOf(before, size_ - 1);
      std::memmove(index_->positions + position + 1, index_->positions + position,
                   (size_ - 1 - position) * sizeof(Node*));
    }
    index_->positions[position] = node;
  }
}

NodePtr NodeList::remove(Node* node) noexcept {
  if (isLocalized(node)) beforeLanguageChange(node);
  if (index_ != nullptr) {
    if (index_->names.isBuilt()) index_->names.leave(node);
    if (index_->positions != nullptr) {
      const std::size_t position = index_->positionOf(node, size_);
      std::memmove(index_->positions + position, index_->positions + position + 1,
                   (size_ - 1 - position) * sizeof(Node*));
    }
  }
  (node->previous != nullptr ? node->previous->next : first_) = node->next;
  (node->next != nullptr ? node->next->previous : last_) = node->previous;
  --size_;
  node->parent = nullptr;
  node->previous = nullptr;
  node->next = nullptr;
  return NodePtr(node);
}

NodePtr NodeList::replace(Node* old, NodePtr fresh) noexcept {
  fresh->isQualifier = old->isQualifier;
  insert(old->parent, std::move(fresh), old);
  return remove(old);
}

void NodeList::clear() noexcept {
  dropIndex();
  Node* node = first_;
  first_ = nullptr;
  last_ = nullptr;
  size_ = 0;
  languages_ = 0;
  while (node != nullptr) {
    Node* next = node->next;
    NodeDeleter()(node);
    node = next;
  }
}

NodePtr makeNode(Storage& storage, const NameKey& key, std::uint32_t options, std::string_view value) {
  const std::size_t nameSize = key.name.size() + 1;
  const std::size_t size = sizeof(Node) + nameSize + value.size() + 1;
  if (key.name.size() >= UINT32_MAX || value.size() >= UINT32_MAX || size > UINT32_MAX) throw std::bad_alloc();
  Node* node = new (storage.take(size)) Node(storage, key);
  char* text = reinterpret_cast<char*>(node + 1);
  if (!key.name.empty()) std::memcpy(text, key.name.data(), key.name.size());
  text[key.name.size()] = '\0';
  node->value_ = text + nameSize;
  if (!value.empty()) std::memcpy(node->value_, value.data(), value.size());
  node->value_[value.size()] = '\0';
  node->valueLength_ = static_cast<std::uint32_t>(value.size());
  node->valueCapacity_ = node->valueLength_;
  node->blockSize_ = static_cast<std::uint32_t>(size);
  node->options = options;
  return NodePtr(node);
}

void Node::reserveValue(std::size_t length) {
  if (length <= valueCapacity_) return;
  if (length >= UINT32_MAX) throw std::bad_alloc();
  auto* grown = static_cast<char*>(storage.take(length + 1));
  std::memcpy(grown, value_, std::size_t{valueLength_} + 1);
  if (!hasValueInBlock()) storage.give(value_, std::size_t{valueCapacity_} + 1);
  value_ = grown;
  valueCapacity_ = static_cast<std::uint32_t>(length);
}

void Node::setValue(std::string_view text) {
  reserveValue(text.size());
  if (!text.empty()) std::memcpy(value_, text.data(), text.size());
  value_[text.size()] = '\0';
  valueLength_ = static_cast<std::uint32_t>(text.size());
}

void NodeDeleter::operator()(Node* node) const noexcept {
  Storage& storage = node->storage;
  node->children.clear();
  node->qualifiers.clear();
  if (!node->hasValueInBlock()) storage.give(node->value_, std::size_t{node->valueCapacity_} + 1);
  const std::size_t size = node->blockSize_;
  node->~Node();
  storage.give(node, size);
}

namespace {

// Encloses any change of a node or its qualifiers, so that the node's list can update its languages.
class LanguageChange {
 public:
  explicit LanguageChange(Node* item) noexcept
      : item_(item->ns == nullptr && item->parent != nullptr && !item->isQualifier ? item : nullptr) {
    if (item_ != nullptr) item_->parent->children.beforeLanguageChange(item_);
  }
  LanguageChange(const LanguageChange&) = delete;
  LanguageChange& operator=(const LanguageChange&) = delete;
  ~LanguageChange() {
    if (item_ != nullptr) item_->parent->children.afterLanguageChange(item_);
  }

 private:
  Node* item_;
};

}  // namespace

Node* addQualifier(Node* owner, NodePtr qualifier) noexcept {
  qualifier->isQualifier = true;
  if (!isLanguage(qualifier.get())) return owner->qualifiers.insert(owner, std::move(qualifier), nullptr);
  const LanguageChange change(owner);
  return owner->qualifiers.insert(owner, std::move(qualifier), owner->qualifiers.first());
}

NodePtr detach(Node* node) noexcept {
  Node* owner = node->parent;
  if (!node->isQualifier) return owner->children.remove(node);
  const LanguageChange change(owner);
  return owner->qualifiers.remove(node);
}

const Node* languageOf(const Node* node) noexcept {
  const Node* first = node->qualifiers.first();
  return first != nullptr && isLanguage(first) ? first : nullptr;
}

void setLanguage(Node* node, std::string_view language) {
  const std::string tag = isLanguageTag(language) ? normalizeLanguage(language) : std::string(language);
  if (languageOf(node) != nullptr) {
    const LanguageChange change(node);
    node->qualifiers.first()->setValue(tag);
    return;
  }
  addQualifier(node, makeNode(node->storage, {wellKnown().xml, "lang"}, 0, tag));
}

bool isOfLanguage(std::string_view language, std::string_view generic) noexcept {
  return language.substr(0, generic.size()) == generic &&
         (language.size() == generic.size() || language[generic.size()] == '-');
}

bool isAltText(const Node* node) noexcept {
  return (node->options & kXMPPropIsAlternate) != 0 && !node->children.empty() &&
         node->children.languageCount() == node->children.size();
}

void putDefaultLanguageFirst(Node* array) noexcept {
  Node* item = array->children.findLanguage(kDefaultLanguage);
  if (item == nullptr || item->previous == nullptr) return;
  NodePtr moved = array->children.remove(item);
  array->children.insert(array, std::move(moved), array->children.first());
}

std::uint32_t reportedOptions(const Node* node) noexcept {
  std::uint32_t options = node->options;
  if (!node->qualifiers.empty()) options |= kXMPPropHasQualifiers;
  if (languageOf(node) != nullptr) options |= kXMPPropHasLang;
  if (node->isQualifier) options |= kXMPPropIsQualifier;
  if (isAltText(node)) options |= kXMPPropIsAltText;
  return options;
}

std::uint32_t depthOf(const Node* node) noexcept {
  std::uint32_t depth = 0;
  for (; node != nullptr && !node->isSchema(); node = node->parent) ++depth;
  return depth;
}

std::uint32_t heightOf(const Node* node) noexcept {
  std::uint32_t below = 0;
  for (const Node* child = node->children.first(); child != nullptr; child = child->next) {
    below = std::max(below, heightOf(child));
  }
  for (const Node* child = node->qualifiers.first(); child != nullptr; child = child->next) {
    below = std::max(below, heightOf(child));
  }
  return below + 1;
}

NodePtr cloneTree(const Node* node, Storage& storage, Namespaces& namespaces) {
  NodePtr copy = makeNode(storage, NameKey(namespaces.translate(node->ns), node->name()), node->options, node->value());
  for (const Node* child = node->children.first(); child != nullptr; child = child->next) {
    appendChild(copy.get(), cloneTree(child, storage, namespaces));
  }
  for (const Node* child = node->qualifiers.first(); child != nullptr; child = child->next) {
    addQualifier(copy.get(), cloneTree(child, storage, namespaces));
  }
  return copy;
}

namespace {

bool equalByName(const NodeList& left, const NodeList& right, const Namespaces& rightNames) {
  if (left.size() != right.size()) return false;
  for (const Node* node = left.first(); node != nullptr; node = node->next) {
    const Namespace* ns = rightNames.counterpart(node->ns);
    if (ns == nullptr && node->ns != nullptr) return false;
    const Node* other = right.find(ns, node->name());
    if (other == nullptr || !equalTrees(node, other, rightNames)) return false;
  }
  return true;
}

std::vector<const Node*> byLanguage(const NodeList& items) {
  std::vector<const Node*> sorted;
  sorted.reserve(items.size());
  for (const Node* item = items.first(); item != nullptr; item = item->next) sorted.push_back(item);
  std::stable_sort(sorted.begin(), sorted.end(), [](const Node* left, const Node* right) {
    return languageOf(left)->value() < languageOf(right)->value();
  });
  return sorted;
}

bool equalItems(const Node* left, const Node* right, const Namespaces& rightNames) {
  if (left->children.size() != right->children.size()) return false;
  const auto areEqual = [&](const Node* one, const Node* other) { return equalTrees(one, other, rightNames); };
  if (isAltText(left) && isAltText(right)) {
    const std::vector<const Node*> ours = byLanguage(left->children);
    return std::equal(ours.begin(), ours.end(), byLanguage(right->children).begin(), areEqual);
  }
  const Node* other = right->children.first();
  for (const Node* item = left->children.first(); item != nullptr; item = item->next, other = other->next) {
    if (!areEqual(item, other)) return false;
  }
  return true;
}

}  // namespace

bool equalTrees(const Node* left, const Node* right, const Namespaces& rightNames) {
  if (left->options != right->options || left->value() != right->value()) return false;
  if (!equalByName(left->qualifiers, right->qualifiers, rightNames)) return false;
  return left->isArray() ? equalItems(left, right, rightNames)
                         : equalByName(left->children, right->children, rightNames);
}

void Warnings::add(Warning warning) {
  kept_.push_back(std::move(warning));
  count();
}

void Warnings::addLast(Warning warning) {
  if (kept_.size() > kMost) kept_.pop_back();
  add(std::move(warning));
}

Object::Object() : namespaces(storage), root_(makeRoot()) {}

Object::~Object() {
  // The storage frees all nodes.
  static_cast<void>(root_.release());
}

Node* Object::findSchema(const Namespace* ns) const noexcept {
  if (recent_ != nullptr && recent_->ns == ns) return recent_;
  Node* schema = root_->children.find(ns, {});
  if (schema != nullptr) recent_ = schema;
  return schema;
}

Node* Object::ensureSchema(Node* root, const Namespace* ns) {
  const NameKey key(ns, {});
  if (Node* schema = root->children.find(key)) return schema;
  return appendChild(root, makeNode(storage, key, kXMPSchemaNode));
}

void Object::dropSchema(Node* schema) noexcept {
  recent_ = nullptr;
  root_->children.remove(schema);
}

void Object::dropAll() noexcept {
  recent_ = nullptr;
  root_->children.clear();
}

void Object::merge(NodePtr incoming) noexcept {
  if (root_->children.empty()) {
    root_ = std::move(incoming);
    recent_ = nullptr;
    return;
  }
  incoming->children.dropIndex();
  while (Node* schema = incoming->children.first()) {
    NodePtr moved = incoming->children.remove(schema);
    Node* target = findSchema(schema->ns);
    if (target == nullptr) {
      if (!schema->children.empty()) appendChild(root_.get(), std::move(moved));
      continue;
    }
    schema->children.dropIndex();
    while (Node* property = schema->children.first()) {
      NodePtr fresh = schema->children.remove(property);
      if (Node* old = target->children.find(property->ns, property->name())) {
        target->children.replace(old, std::move(fresh));
      } else {
        appendChild(target, std::move(fresh));
      }
    }
  }
}

void Object::copyFrom(const Object& other) {
  namespaces.addAll(other.namespaces);
  NodePtr copy = cloneTree(other.root(), storage, namespaces);
  std::string copiedName = other.name;
  recent_ = nullptr;
  root_ = std::move(copy);
  name = std::move(copiedName);
}

}  // namespace velto
