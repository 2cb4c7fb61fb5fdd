// The XMP data model (ISO 16684-1, clause 6): an object is an ordered tree of nodes. The children of the root are the
// schemas, one for each namespace that the object uses; their children are the properties, whose children are array
// items and struct fields. Any node except root and schemas may have qualifiers.
#ifndef LXBRIDGE_OUTSIDE_XMP_MODEL_H_
#define LXBRIDGE_OUTSIDE_XMP_MODEL_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "clients/xmp/xmp_abi.h"
#include "outside/xmp/namespaces.h"
#include "outside/xmp/storage.h"

namespace velto {

struct Node;

struct NodeDeleter {
  void operator()(Node* node) const noexcept;
};
using NodePtr = std::unique_ptr<Node, NodeDeleter>;

// The maximum depth of nodes: a top-level property has depth 1, each item, field or qualifier one more than its owner.
// No tree is deeper, so recursion is safe.
inline constexpr std::uint32_t kDepthLimit = 64;

// The simple items whose language is, or begins with, a generic language.
struct GenericItems {
  Node* first = nullptr;
  bool isMany = false;  // Two or more.
};

// The children or the qualifiers of a node, in order. Longer lists get an index on their first lookup by name or by
// position; if there is no memory for it, they are searched linearly. So no function here raises. Iterate by first()
// and Node::next.
class NodeList {
 public:
  NodeList() = default;
  NodeList(const NodeList&) = delete;
  NodeList& operator=(const NodeList&) = delete;

  Node* first() const noexcept { return first_; }
  Node* last() const noexcept { return last_; }
  std::size_t size() const noexcept { return size_; }
  bool empty() const noexcept { return size_ == 0; }

  Node* find(const NameKey& key) const noexcept;
  Node* find(const Namespace* ns, std::string_view name) const noexcept;
  Node* at(std::size_t position) const noexcept;  // From 0; null outside.
  // Among array items: the first that is simple and has the language.
  Node* findLanguage(std::string_view language) const noexcept;
  // The same of all items whose language is of the generic language, which is not empty: "de-AT" is of "de".
  GenericItems findGeneric(std::string_view language) const noexcept;
  // The number of items that findLanguage considers.
  std::size_t languageCount() const noexcept { return languages_; }

  // Takes the node. A null `before` appends. REQUIRES: the node is in no list, and belongs to the object of `owner`.
  Node* append(Node* owner, NodePtr node) noexcept;
  Node* insert(Node* owner, NodePtr node, Node* before) noexcept;
  // Returns the node to the caller. REQUIRES: the node is in this list.
  NodePtr remove(Node* node) noexcept;
  // Puts `fresh` in the place of `old` and returns `old`.
  NodePtr replace(Node* old, NodePtr fresh) noexcept;
  void clear() noexcept;
  // To be called before many nodes are removed one by one.
  void dropIndex() const noexcept;
  // To be called before and after an item of the list gets, changes or loses its xml:lang, or changes its form.
  void beforeLanguageChange(const Node* item) noexcept;
  void afterLanguageChange(const Node* item) noexcept;

 private:
  struct Index;

  Node* findInIndex(const NameKey& key) const noexcept;
  void noteInserted(Node* node, Node* before) noexcept;
  Index* index() const noexcept;
  bool ensureNames() const noexcept;
  bool ensurePositions() const noexcept;
  bool ensureLanguages() const noexcept;
  bool ensureGenerics() const noexcept;

  Node* first_ = nullptr;
  Node* last_ = nullptr;
  std::size_t size_ = 0;
  std::size_t languages_ = 0;
  mutable Index* index_ = nullptr;
};

// A node, its name and its initial value are one block of the object's storage; the name never changes. Nodes are
// created by makeNode.
struct Node {
  Storage& storage;
  const Namespace* ns;  // From the object's namespaces; null for the root and for array items.
  Node* parent = nullptr;
  Node* previous = nullptr;
  Node* next = nullptr;
  std::uint32_t options = 0;  // Form bits only: kXMPPropValueIsURI, ...IsStruct, ...IsArray, ...IsOrdered,
                              // ...IsAlternate (with what they imply), kXMPSchemaNode. The others are derived:
                              // reportedOptions.
  std::uint32_t hash;         // Over namespace and name.
  std::uint32_t nameLength;
  bool isQualifier = false;
  NodeList children;
  NodeList qualifiers;  // xml:lang, if present, is the first.

  std::string_view name() const noexcept { return {nameText(), nameLength}; }
  const char* nameText() const noexcept { return reinterpret_cast<const char*>(this + 1); }  // Zero-terminated.

  // Simple nodes only. Well-formed UTF-8 that XML can carry (see repairText), with a zero byte after it.
  std::string_view value() const noexcept { return {value_, valueLength_}; }
  void setValue(std::string_view text);   // Raises std::bad_alloc, without any change.
  void reserveValue(std::size_t length);  // Afterwards, setting a value of that length does not raise.

  bool isArray() const noexcept { return (options & kXMPPropIsArray) != 0; }
  bool isStruct() const noexcept { return (options & kXMPPropIsStruct) != 0; }
  bool isSimple() const noexcept { return (options & (kXMPPropIsArray | kXMPPropIsStruct | kXMPSchemaNode)) == 0; }
  bool isSchema() const noexcept { return (options & kXMPSchemaNode) != 0; }

 private:
  Node(Storage& objectStorage, const NameKey& key) noexcept
      : storage(objectStorage), ns(key.ns), hash(key.hash), nameLength(static_cast<std::uint32_t>(key.name.size())) {}
  ~Node() = default;
  friend NodePtr makeNode(Storage& storage, const NameKey& key, std::uint32_t options, std::string_view value);
  friend struct NodeDeleter;

  bool hasValueInBlock() const noexcept { return value_ == nameText() + nameLength + 1; }

  char* value_ = nullptr;
  std::uint32_t valueLength_ = 0;
  std::uint32_t valueCapacity_ = 0;  // Without the zero byte.
  std::uint32_t blockSize_ = 0;      // Of the node's block.
};

// Array items have neither namespace nor name. The options must be form bits with all implied bits.
NodePtr makeNode(Storage& storage, const NameKey& key, std::uint32_t options, std::string_view value = {});
inline NodePtr makeItem(Storage& storage, std::uint32_t options, std::string_view value = {}) {
  return makeNode(storage, {}, options, value);
}

inline Node* appendChild(Node* parent, NodePtr node) noexcept {
  return parent->children.append(parent, std::move(node));
}
// xml:lang is put first, other qualifiers last.
Node* addQualifier(Node* owner, NodePtr qualifier) noexcept;
// Removes the node from its list and returns it.
NodePtr detach(Node* node) noexcept;

// Whether the language is the generic one or a variety of it.
bool isOfLanguage(std::string_view language, std::string_view generic) noexcept;
// The node's xml:lang, or null; its value is the language.
const Node* languageOf(const Node* node) noexcept;
// Sets or changes xml:lang, with the tag in its usual case.
void setLanguage(Node* node, std::string_view language);
// Whether the node is an rdf:Alt that is not empty and whose items are all simple and have xml:lang.
bool isAltText(const Node* node) noexcept;
// Moves the x-default item, if there is one, to the front (ISO 16684-1, 8.2.2.4).
void putDefaultLanguageFirst(Node* array) noexcept;

// The node's options, including those derived from its place and its qualifiers.
std::uint32_t reportedOptions(const Node* node) noexcept;

// 1 for a property (or an item outside a tree) and so on; 0 for a schema.
std::uint32_t depthOf(const Node* node) noexcept;
// The number of levels of the node and its descendants: 1 for a simple node without qualifiers.
std::uint32_t heightOf(const Node* node) noexcept;
// A copy for the object that owns the storage and the namespaces.
NodePtr cloneTree(const Node* node, Storage& storage, Namespaces& namespaces);
// Compares form, value, qualifiers and children. The order of named nodes is ignored, that of array items is not; items
// of a language alternative are matched by language. `rightNames` are the namespaces of the right tree's object.
bool equalTrees(const Node* left, const Node* right, const Namespaces& rightNames);

// Something in a packet that is missing from the object.
struct Warning {
  std::uint32_t line;  // Counted from 1, like the column.
  std::uint32_t column;
  std::string text;
};

// The first warnings of an object; a hostile packet may cause one every few bytes.
class Warnings {
 public:
  static constexpr std::size_t kMost = 64;

  bool isFull() const noexcept { return kept_.size() >= kMost; }
  void add(Warning warning);      // REQUIRES: not full.
  void addLast(Warning warning);  // The one that ends a packet is always kept.
  void count() noexcept {
    if (total_ != UINT32_MAX) ++total_;
  }
  const std::vector<Warning>& kept() const noexcept { return kept_; }
  std::uint32_t total() const noexcept { return total_; }

 private:
  std::vector<Warning> kept_;
  std::uint32_t total_ = 0;
};

class Object {
 public:
  Object();
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  ~Object();

  Storage storage;  // First, because it holds all of the following.
  Namespaces namespaces;

  Node* root() noexcept { return root_.get(); }  // Its children are the schemas.
  const Node* root() const noexcept { return root_.get(); }

  Node* findSchema(const Namespace* ns) const noexcept;
  Node* ensureSchema(const Namespace* ns) {
    Node* schema = findSchema(ns);
    return schema != nullptr ? schema : ensureSchema(root_.get(), ns);
  }
  // The same in another root of this object.
  Node* ensureSchema(Node* root, const Namespace* ns);
  // Removes a schema that has no properties.
  void dropSchemaIfEmpty(Node* schema) noexcept {
    if (schema->children.empty()) dropSchema(schema);
  }
  void dropSchema(Node* schema) noexcept;
  void dropAll() noexcept;

  NodePtr makeRoot() { return makeNode(storage, {}, 0); }
  // Moves all descendants of another root of this object here. Properties of the same name are replaced in place;
  // others are appended.
  void merge(NodePtr incoming) noexcept;
  void copyFrom(const Object& other);

  std::string name;  // rdf:about
  Warnings warnings;

 private:
  NodePtr root_;
  mutable Node* recent_ = nullptr;  // The schema found last: clients mostly use one.
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_MODEL_H_
