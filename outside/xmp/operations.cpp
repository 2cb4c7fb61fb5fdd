// Changes to an object.
#include "outside/xmp/operations.h"

#include <string>
#include <string_view>
#include <utility>

#include "outside/xmp/place.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

constexpr std::uint32_t kFormBits = kXMPPropValueIsURI | kXMPPropIsStruct | kXMPPropIsArray | kXMPPropIsOrdered |
                                    kXMPPropIsAlternate | kXMPPropIsAltText;
constexpr std::uint32_t kReportingBits = kXMPPropHasQualifiers | kXMPPropIsQualifier | kXMPPropHasLang;
constexpr std::uint32_t kContainerBits = kXMPPropIsStruct | kXMPPropIsArray;

// A text in the form that an object stores.
class StoredText {
 public:
  explicit StoredText(const char* text) : isThere_(text != nullptr) {
    if (text == nullptr) return;
    text_ = text;
    if (text_.size() >= UINT32_MAX) throw ToolkitError(ErrorId::kTooLong, "the text is too long");
    if (isCleanText(text_)) return;
    repaired_ = repairText(text_);
    text_ = repaired_;
  }
  StoredText(const StoredText&) = delete;
  StoredText& operator=(const StoredText&) = delete;

  bool isThere() const noexcept { return isThere_; }
  std::string_view get() const noexcept { return text_; }

 private:
  bool isThere_;
  std::string_view text_;
  std::string repaired_;
};

std::uint32_t checkedLeafForm(const char* text, std::uint32_t options) {
  if (text != nullptr && options == 0) return 0;
  const std::uint32_t form = checkedForm(options);
  if (text != nullptr && (form & kContainerBits) != 0) {
    throw ToolkitError(ErrorId::kBadOptions, "an array or a struct has no text");
  }
  if (text == nullptr && (form & kContainerBits) == 0) {
    throw ToolkitError(ErrorId::kBadParameter, "a simple value needs a text");
  }
  return form;
}

void assignLeaf(const Path& path, Node* node, const StoredText& text, std::uint32_t form) {
  if (!text.isThere()) {
    if ((node->options & kFormBits) != form) raiseAt(ErrorId::kBadForm, path, "already has another form");
    node->children.clear();
    return;
  }
  if (!node->isSimple()) raiseAt(ErrorId::kBadForm, path, "is an array or a struct and cannot have a text");
  node->setValue(text.get());
  node->options = form;
}

// A top-level property has no intermediate nodes; it is the usual case.
Node* setProperty(Object& object, const Path& path, const StoredText& value, std::uint32_t form) {
  const Node* schema = object.findSchema(path.schema());
  if (Node* node = schema != nullptr ? schema->children.find(path.top) : nullptr) {
    assignLeaf(path, node, value, form);
    return node;
  }
  NodePtr leaf = makeLeaf(object, path, form, value.get());
  return appendChild(object.ensureSchema(path.schema()), std::move(leaf));
}

NodePtr makeItemOf(Object& object, const char* text, std::uint32_t options) {
  const std::uint32_t form = checkedLeafForm(text, options);
  const StoredText value(text);
  return makeItem(object.storage, form, value.get());
}

}  // namespace

std::uint32_t checkedForm(std::uint32_t options) {
  if ((options & ~(kFormBits | kReportingBits)) != 0) throw ToolkitError(ErrorId::kBadOptions, "unknown option bits");
  std::uint32_t form = options & kFormBits;
  if ((form & kXMPPropIsAltText) != 0) form |= kXMPPropIsAlternate;
  if ((form & kXMPPropIsAlternate) != 0) form |= kXMPPropIsOrdered;
  if ((form & kXMPPropIsOrdered) != 0) form |= kXMPPropIsArray;
  if ((form & kContainerBits) == kContainerBits) {
    throw ToolkitError(ErrorId::kBadOptions, "a property is an array or a struct, not both");
  }
  if ((form & kXMPPropValueIsURI) != 0 && (form & kContainerBits) != 0) {
    throw ToolkitError(ErrorId::kBadOptions, "an array or a struct is not a URI");
  }
  return form & ~kXMPPropIsAltText;  // The items determine it.
}

std::uint32_t checkedArrayForm(std::uint32_t options) {
  const std::uint32_t form = checkedForm(options);
  if ((form & kXMPPropIsArray) == 0) throw ToolkitError(ErrorId::kBadOptions, "the options have no array form");
  return form;
}

Node* setNode(Object& object, const Path& path, const char* text, std::uint32_t options) {
  const std::uint32_t form = checkedLeafForm(text, options);
  if (path.steps.empty()) return setProperty(object, path, StoredText(text), form);
  std::string language;
  if (isLanguagePath(path)) {
    if (form != 0) raiseAt(ErrorId::kBadOptions, path, "is a language and must be a simple value");
    language = checkedLanguage(text);
    text = language.c_str();
  }
  const StoredText value(text);
  const Place place = locate(object, path);
  if (place.missing == 0) {
    if (!language.empty()) {
      setLanguage(place.node->parent, language);
      settleLanguage(place.node->parent);
    } else {
      assignLeaf(path, place.node, value, form);
    }
    return place.node;
  }
  return attach(object, path, place, makeLeaf(object, path, form, value.get()));
}

Node* findArray(const Object& object, const Path& path) {
  Node* node = findNode(object, path);
  if (node != nullptr && !node->isArray()) raiseAt(ErrorId::kBadForm, path, "is not an array");
  return node;
}

Node* appendItem(Object& object, const Path& array, std::uint32_t arrayOptions, const char* text,
                 std::uint32_t itemOptions) {
  const std::uint32_t form = checkedForm(arrayOptions);
  NodePtr item = makeItemOf(object, text, itemOptions);
  checkDepth(array, 2);
  const Place place = locate(object, array);
  if (place.missing == 0) {
    if (!place.node->isArray()) raiseAt(ErrorId::kBadForm, array, "is not an array");
    if (form != 0 && place.node->options != form) raiseAt(ErrorId::kBadForm, array, "is an array of another form");
    return appendChild(place.node, std::move(item));
  }
  if ((form & kXMPPropIsArray) == 0) {
    raiseAt(form == 0 ? ErrorId::kNotThere : ErrorId::kBadOptions, array,
            "does not exist, and the options have no array form");
  }
  NodePtr fresh = makeLeaf(object, array, form);
  Node* result = appendChild(fresh.get(), std::move(item));
  attach(object, array, place, std::move(fresh));
  return result;
}

Node* insertItem(Object& object, const Path& array, std::int32_t index, const char* text, std::uint32_t options) {
  NodePtr item = makeItemOf(object, text, options);
  checkDepth(array, 2);
  Node* node = findArray(object, array);
  if (node == nullptr) raiseAt(ErrorId::kNotThere, array, "does not exist");
  Node* before = node->children.last();
  if (index != kXMPLastItem) {
    const std::size_t count = node->children.size();
    if (index < 1 || static_cast<std::size_t>(index) > count + 1) {
      raiseAt(ErrorId::kBadIndex, array, "has no such index");
    }
    before = node->children.at(static_cast<std::size_t>(index) - 1);
  }
  Node* result = node->children.insert(node, std::move(item), before);
  if (result->next != nullptr) settleLanguage(result->next);
  return result;
}

void deleteNode(Object& object, Node* node) noexcept {
  Node* owner = node->parent;
  detach(node);
  if (owner->isSchema()) object.dropSchemaIfEmpty(owner);
}

void appendProperties(const Object& source, Object& target, bool replace) {
  NodePtr added = target.makeRoot();
  for (const Node* schema = source.root()->children.first(); schema != nullptr; schema = schema->next) {
    const Namespace* ns = target.namespaces.translate(schema->ns);
    const Node* known = target.findSchema(ns);
    for (const Node* property = schema->children.first(); property != nullptr; property = property->next) {
      if (!replace && known != nullptr && known->children.find(ns, property->name()) != nullptr) continue;
      appendChild(target.ensureSchema(added.get(), ns), cloneTree(property, target.storage, target.namespaces));
    }
  }
  target.merge(std::move(added));
}

}  // namespace velto
