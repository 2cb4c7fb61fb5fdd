// The data model.
#include "outside/xmp/model.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

#include "outside/xmp/text.h"

namespace velto {
namespace {

// Up to this many nodes a walk is as fast as a table, and most lists never have more.
constexpr std::size_t kWalkedSize = 8;
constexpr std::string_view kDefaultLanguage = "x-default";

std::uint32_t nameHash(const Namespace* ns, std::string_view name) noexcept {
  return hashText(name) ^ (ns != nullptr ? ns->hash * 0x9E3779B1u : 0);
}

bool hasName(const Node* node, const Namespace* ns, std::string_view name) noexcept {
  return node->ns == ns && node->name() == name;
}

bool isLanguage(const Node* node) noexcept {
  return hasName(node, wellKnown().xml, "lang");
}

// By namespace URI, then by name: the order of sort().
bool nameBefore(const Node* left, const Node* right) noexcept {
  if (left->ns != right->ns) {
    if (left->ns == nullptr || right->ns == nullptr) return left->ns == nullptr;
    return left->ns->uri < right->ns->uri;
  }
  return left->name() < right->name();
}

// Blocks of nodes that have gone, for the next ones: an object is mostly made, filled and given up before another is
// made, and the general allocator is slow at giving back what it was just given.
class BlockPool {
 public:
  ~BlockPool() {
    while (Block* block = first_) {
      first_ = block->next;
      ::operator delete(block);
    }
  }

  void* take(std::size_t size) {
    if (size > kBlockSize) return ::operator new(size);
    if (first_ == nullptr) return ::operator new(kBlockSize);
    Block* block = first_;
    first_ = block->next;
    --count_;
    return block;
  }

  void give(void* memory, std::size_t size) noexcept {
    if (size > kBlockSize || count_ == kMostBlocks) {
      ::operator delete(memory);
      return;
    }
    first_ = new (memory) Block{first_};
    ++count_;
  }

 private:
  struct Block {
    Block* next;
  };

  static constexpr std::size_t kBlockSize = sizeof(Node) + 40;
#ifdef __SANITIZE_ADDRESS__
  static constexpr std::size_t kMostBlocks = 0;  // Else it would see no use of a node that is gone.
#else
  static constexpr std::size_t kMostBlocks = 256;
#endif

  Block* first_ = nullptr;
  std::size_t count_ = 0;
};

BlockPool blockPool;

std::size_t blockSize(std::size_t nameLength) noexcept {
  return sizeof(Node) + nameLength + 1;
}

}  // namespace

struct NodeList::Index {
  Node** names = nullptr;  // Open addressing, linear probing, at most half full.
  std::size_t nameMask = 0;
  Node** positions = nullptr;
  std::size_t positionCapacity = 0;

  void dropNames() noexcept {
    std::free(names);
    names = nullptr;
  }
  void dropPositions() noexcept {
    std::free(positions);
    positions = nullptr;
  }

  void enter(Node* node) noexcept {
    std::size_t slot = node->hash & nameMask;
    while (names[slot] != nullptr) slot = (slot + 1) & nameMask;
    names[slot] = node;
  }

  void leave(const Node* node) noexcept {
    std::size_t gap = node->hash & nameMask;
    while (names[gap] != node) gap = (gap + 1) & nameMask;
    // What was pushed past the gap moves back into it, so that no search ends early.
    for (std::size_t slot = (gap + 1) & nameMask; names[slot] != nullptr; slot = (slot + 1) & nameMask) {
      const std::size_t home = names[slot]->hash & nameMask;
      if (((slot - home) & nameMask) < ((slot - gap) & nameMask)) continue;
      names[gap] = names[slot];
      gap = slot;
    }
    names[gap] = nullptr;
  }

  bool fillNames(Node* first, std::size_t count) noexcept {
    std::size_t slots = 32;
    while (slots < count * 4) slots *= 2;
    dropNames();
    names = static_cast<Node**>(std::calloc(slots, sizeof(Node*)));
    if (names == nullptr) return false;
    nameMask = slots - 1;
    for (Node* node = first; node != nullptr; node = node->next) enter(node);
    return true;
  }

  bool reservePositions(std::size_t count) noexcept {
    if (count <= positionCapacity && positions != nullptr) return true;
    const std::size_t capacity = std::max<std::size_t>(16, count * 2);
    auto* grown = static_cast<Node**>(std::realloc(positions, capacity * sizeof(Node*)));
    if (grown == nullptr) {
      dropPositions();
      return false;
    }
    positions = grown;
    positionCapacity = capacity;
    return true;
  }

  // Mostly the ends of a list are worked at.
  std::size_t positionOf(const Node* node, std::size_t count) const noexcept {
    if (positions[count - 1] == node) return count - 1;
    std::size_t position = 0;
    while (positions[position] != node) ++position;
    return position;
  }
};

bool NodeList::ensureNames() const noexcept {
  if (index_ == nullptr) index_ = new (std::nothrow) Index;
  if (index_ == nullptr) return false;
  return index_->names != nullptr || index_->fillNames(first_, size_);
}

bool NodeList::ensurePositions() const noexcept {
  if (index_ == nullptr) index_ = new (std::nothrow) Index;
  if (index_ == nullptr) return false;
  if (index_->positions != nullptr) return true;
  if (!index_->reservePositions(size_)) return false;
  Node** place = index_->positions;
  for (Node* node = first_; node != nullptr; node = node->next) *place++ = node;
  return true;
}

void NodeList::dropIndex() const noexcept {
  if (index_ == nullptr) return;
  index_->dropNames();
  index_->dropPositions();
  delete index_;
  index_ = nullptr;
}

Node* NodeList::find(const Namespace* ns, std::string_view name) const noexcept {
  if (size_ <= kWalkedSize || !ensureNames()) {
    for (Node* node = first_; node != nullptr; node = node->next) {
      if (hasName(node, ns, name)) return node;
    }
    return nullptr;
  }
  const std::uint32_t hash = nameHash(ns, name);
  for (std::size_t slot = hash & index_->nameMask;; slot = (slot + 1) & index_->nameMask) {
    Node* node = index_->names[slot];
    if (node == nullptr || (node->hash == hash && hasName(node, ns, name))) return node;
  }
}

Node* NodeList::at(std::size_t position) const noexcept {
  if (position >= size_) return nullptr;
  if (position == size_ - 1) return last_;
  if (position >= kWalkedSize && ensurePositions()) return index_->positions[position];
  Node* node = first_;
  while (position-- != 0) node = node->next;
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
  if (index_ == nullptr) return node;
  if (index_->names != nullptr) {
    if (size_ * 2 <= index_->nameMask) {
      index_->enter(node);
    } else {
      index_->fillNames(first_, size_);
    }
  }
  if (index_->positions != nullptr && index_->reservePositions(size_)) {
    std::size_t position = size_ - 1;
    if (before != nullptr) {
      position = index_->positionOf(before, size_ - 1);
      std::memmove(index_->positions + position + 1, index_->positions + position,
                   (size_ - 1 - position) * sizeof(Node*));
    }
    index_->positions[position] = node;
  }
  return node;
}

NodePtr NodeList::remove(Node* node) noexcept {
  if (index_ != nullptr) {
    if (index_->names != nullptr) index_->leave(node);
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
  while (node != nullptr) {
    Node* next = node->next;
    NodeDeleter()(node);
    node = next;
  }
}

void NodeList::sort() {
  std::vector<Node*> nodes;
  nodes.reserve(size_);
  for (Node* node = first_; node != nullptr; node = node->next) nodes.push_back(node);
  std::stable_sort(nodes.begin(), nodes.end(), nameBefore);
  Node* previous = nullptr;
  first_ = nullptr;
  for (Node* node : nodes) {
    node->previous = previous;
    node->next = nullptr;
    (previous != nullptr ? previous->next : first_) = node;
    previous = node;
  }
  last_ = previous;
  if (index_ != nullptr) index_->dropPositions();
}

NodePtr makeNode(const Namespace* ns, std::string_view name, std::uint32_t options) {
  void* block = blockPool.take(blockSize(name.size()));
  Node* node = new (block) Node(ns);
  char* text = reinterpret_cast<char*>(node + 1);
  if (!name.empty()) std::memcpy(text, name.data(), name.size());
  text[name.size()] = '\0';
  node->options = options;
  node->nameLength = static_cast<std::uint32_t>(name.size());
  node->hash = nameHash(ns, name);
  useNamespace(ns);
  return NodePtr(node);
}

void NodeDeleter::operator()(Node* node) const noexcept {
  const std::size_t size = blockSize(node->nameLength);
  releaseNamespace(node->ns);
  node->~Node();
  blockPool.give(node, size);
}

Node* addQualifier(Node* owner, NodePtr qualifier) noexcept {
  qualifier->isQualifier = true;
  Node* before = isLanguage(qualifier.get()) ? owner->qualifiers.first() : nullptr;
  return owner->qualifiers.insert(owner, std::move(qualifier), before);
}

NodePtr detach(Node* node) noexcept {
  Node* owner = node->parent;
  return (node->isQualifier ? owner->qualifiers : owner->children).remove(node);
}

const std::string* languageOf(const Node* node) noexcept {
  const Node* first = node->qualifiers.first();
  return first != nullptr && isLanguage(first) ? &first->value : nullptr;
}

void setLanguage(Node* node, std::string_view language) {
  std::string tag = isLanguageTag(language) ? normalizeLanguage(language) : std::string(language);
  if (languageOf(node) != nullptr) {
    node->qualifiers.first()->value = std::move(tag);
    return;
  }
  NodePtr qualifier = makeNode(wellKnown().xml, "lang", 0);
  qualifier->value = std::move(tag);
  addQualifier(node, std::move(qualifier));
}

bool isAltText(const Node* node) noexcept {
  if ((node->options & kXMPPropIsAlternate) == 0 || node->children.empty()) return false;
  for (const Node* item = node->children.first(); item != nullptr; item = item->next) {
    if (!item->isSimple() || languageOf(item) == nullptr) return false;
  }
  return true;
}

void putDefaultLanguageFirst(Node* array) noexcept {
  for (Node* item = array->children.first(); item != nullptr; item = item->next) {
    const std::string* language = languageOf(item);
    if (language == nullptr || *language != kDefaultLanguage) continue;
    if (item->previous == nullptr) return;
    NodePtr moved = array->children.remove(item);
    array->children.insert(array, std::move(moved), array->children.first());
    return;
  }
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

NodePtr cloneTree(const Node* node) {
  NodePtr copy = makeNode(node->ns, node->name(), node->options);
  copy->value = node->value;
  for (const Node* child = node->children.first(); child != nullptr; child = child->next) {
    appendChild(copy.get(), cloneTree(child));
  }
  for (const Node* child = node->qualifiers.first(); child != nullptr; child = child->next) {
    addQualifier(copy.get(), cloneTree(child));
  }
  return copy;
}

namespace {

bool equalByName(const NodeList& left, const NodeList& right) {
  if (left.size() != right.size()) return false;
  for (const Node* node = left.first(); node != nullptr; node = node->next) {
    const Node* other = right.find(node->ns, node->name());
    if (other == nullptr || !equalTrees(node, other)) return false;
  }
  return true;
}

std::vector<const Node*> byLanguage(const NodeList& items) {
  std::vector<const Node*> sorted;
  sorted.reserve(items.size());
  for (const Node* item = items.first(); item != nullptr; item = item->next) sorted.push_back(item);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const Node* left, const Node* right) { return *languageOf(left) < *languageOf(right); });
  return sorted;
}

bool equalItems(const Node* left, const Node* right) {
  if (left->children.size() != right->children.size()) return false;
  if (isAltText(left) && isAltText(right)) {
    const std::vector<const Node*> ours = byLanguage(left->children);
    return std::equal(ours.begin(), ours.end(), byLanguage(right->children).begin(), equalTrees);
  }
  const Node* other = right->children.first();
  for (const Node* item = left->children.first(); item != nullptr; item = item->next, other = other->next) {
    if (!equalTrees(item, other)) return false;
  }
  return true;
}

}  // namespace

bool equalTrees(const Node* left, const Node* right) {
  if (left->options != right->options || left->value != right->value) return false;
  if (!equalByName(left->qualifiers, right->qualifiers)) return false;
  return left->isArray() ? equalItems(left, right) : equalByName(left->children, right->children);
}

void Warnings::add(Warning warning) {
  if (kept_.size() < kMost) kept_.push_back(std::move(warning));
  if (total_ != UINT32_MAX) ++total_;
}

Object::Object() : root_(makeNode(nullptr, {}, 0)) {}

Node* Object::ensureSchema(const Namespace* ns) {
  if (Node* schema = findSchema(ns)) return schema;
  return appendChild(root_.get(), makeNode(ns, {}, kXMPSchemaNode));
}

void Object::dropSchemaIfEmpty(Node* schema) noexcept {
  if (schema->children.empty()) root_->children.remove(schema);
}

void Object::clear() noexcept {
  root_->children.clear();
  name.clear();
  warnings = {};
}

void Object::merge(Object& other) noexcept {
  NodeList& incoming = other.root_->children;
  while (Node* schema = incoming.first()) {
    NodePtr moved = incoming.remove(schema);
    Node* target = findSchema(schema->ns);
    if (target == nullptr && !schema->children.empty()) {
      appendChild(root_.get(), std::move(moved));
      continue;
    }
    while (Node* property = schema->children.first()) {
      NodePtr fresh = schema->children.remove(property);
      if (Node* old = target->children.find(property->ns, property->name())) {
        target->children.replace(old, std::move(fresh));
      } else {
        appendChild(target, std::move(fresh));
      }
    }
  }
  if (!other.name.empty()) name = std::move(other.name);
}

void Object::copyFrom(const Object& other) {
  NodePtr copy = cloneTree(other.root());
  std::string copiedName = other.name;
  root_ = std::move(copy);
  name = std::move(copiedName);
}

}  // namespace velto
