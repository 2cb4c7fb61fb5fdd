// What changes an object.
#include "outside/xmp/operations.h"

#include <cstring>
#include <utility>

#include "outside/xmp/place.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

constexpr std::uint32_t kFormBits = kXMPPropValueIsURI | kXMPPropIsStruct | kXMPPropIsArray | kXMPPropIsOrdered |
                                    kXMPPropIsAlternate | kXMPPropIsAltText;
constexpr std::uint32_t kReportingBits = kXMPPropHasQualifiers | kXMPPropIsQualifier | kXMPPropHasLang;
constexpr std::uint32_t kContainerBits = kXMPPropIsStruct | kXMPPropIsArray;

std::uint32_t checkedLeafForm(const char* text, std::uint32_t options) {
  const std::uint32_t form = checkedForm(options);
  if (text != nullptr && (form & kContainerBits) != 0) {
    throw ToolkitError(ErrorId::kBadOptions, "an array or a struct has no text of its own");
  }
  if (text == nullptr && (form & kContainerBits) == 0) {
    throw ToolkitError(ErrorId::kBadParameter, "a simple value needs a text");
  }
  return form;
}

void assignLeaf(const Path& path, Node* node, const char* text, std::uint32_t form) {
  if (text == nullptr) {
    if ((node->options & kFormBits) != form) raiseAt(ErrorId::kBadForm, path, "is of another form already");
    node->children.clear();
    return;
  }
  if (!node->isSimple()) raiseAt(ErrorId::kBadForm, path, "is an array or a struct, which no text can be set to");
  assignText(node->value, text);
  node->options = form;
}

NodePtr makeItemOf(const char* text, std::uint32_t options) {
  NodePtr item = makeItem(checkedLeafForm(text, options));
  if (text != nullptr) assignText(item->value, text);
  return item;
}

std::string_view checkedTextLength(const char* text) {
  const std::size_t length = std::strlen(text);
  if (length >= UINT32_MAX) throw ToolkitError(ErrorId::kTooLong, "the text is too long");
  return {text, length};
}

}  // namespace

void assignText(std::string& value, std::string_view text) {
  if (isCleanText(text)) {
    value.assign(text);
  } else {
    value = repairText(text);
  }
}

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
    throw ToolkitError(ErrorId::kBadOptions, "an array or a struct is no URI");
  }
  return form & ~kXMPPropIsAltText;  // Follows from the items.
}

std::uint32_t checkedArrayForm(std::uint32_t options) {
  const std::uint32_t form = checkedForm(options);
  if ((form & kXMPPropIsArray) == 0) throw ToolkitError(ErrorId::kBadOptions, "the options name no form of array");
  return form;
}

Node* setNode(Object& object, const Path& path, const char* text, std::uint32_t options) {
  const std::uint32_t form = checkedLeafForm(text, options);
  std::string language;
  if (isLanguagePath(path)) {
    if (form != 0) raiseAt(ErrorId::kBadOptions, path, "is a language, so a simple value");
    language = checkedLanguage(checkedTextLength(text));
    text = language.c_str();
  } else if (text != nullptr) {
    checkedTextLength(text);
  }
  const Place place = locate(object, path);
  if (place.missing == 0) {
    assignLeaf(path, place.node, text, form);
    if (place.node->isQualifier) settleLanguage(place.node->parent);
    return place.node;
  }
  NodePtr leaf = makeLeaf(path, form);
  if (text != nullptr) assignText(leaf->value, text);
  return attach(object, path, place, std::move(leaf));
}

Node* findArray(const Object& object, const Path& path) {
  Node* node = findNode(object, path);
  if (node != nullptr && !node->isArray()) raiseAt(ErrorId::kBadForm, path, "is no array");
  return node;
}

Node* appendItem(Object& object, const Path& array, std::uint32_t arrayOptions, const char* text,
                 std::uint32_t itemOptions) {
  const std::uint32_t form = checkedForm(arrayOptions);
  NodePtr item = makeItemOf(text, itemOptions);
  checkDepth(array, 2);
  const Place place = locate(object, array);
  if (place.missing == 0) {
    if (!place.node->isArray()) raiseAt(ErrorId::kBadForm, array, "is no array");
    if (form != 0 && place.node->options != form) raiseAt(ErrorId::kBadForm, array, "is an array of another form");
    return appendChild(place.node, std::move(item));
  }
  if ((form & kXMPPropIsArray) == 0) {
    raiseAt(form == 0 ? ErrorId::kNotThere : ErrorId::kBadOptions, array,
            "is not there, and the options name no form of array");
  }
  NodePtr fresh = makeLeaf(array, form);
  Node* result = appendChild(fresh.get(), std::move(item));
  attach(object, array, place, std::move(fresh));
  return result;
}

Node* insertItem(Object& object, const Path& array, std::int32_t index, const char* text, std::uint32_t options) {
  NodePtr item = makeItemOf(text, options);
  checkDepth(array, 2);
  Node* node = findArray(object, array);
  if (node == nullptr) raiseAt(ErrorId::kNotThere, array, "is not there");
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

Node* placeTree(Object& object, const Path& path, const Node* tree) {
  const Place place = locate(object, path);
  if (place.missing == 0) raiseAt(ErrorId::kBadForm, path, "is there already");
  NodePtr copy = cloneTree(tree);
  NodePtr leaf = makeLeaf(path, copy->options);
  const bool isLanguage = isLanguagePath(path);
  if (isLanguage && (copy->options != 0 || !copy->qualifiers.empty())) {
    raiseAt(ErrorId::kBadForm, path, "is a language, so a simple value");
  }
  leaf->value = isLanguage ? checkedLanguage(copy->value) : std::move(copy->value);
  while (Node* child = copy->children.first()) appendChild(leaf.get(), copy->children.remove(child));
  while (Node* qualifier = copy->qualifiers.first()) {
    NodePtr moved = copy->qualifiers.remove(qualifier);
    // An item made for its language keeps that one.
    if (leaf->qualifiers.find(moved->ns, moved->name()) == nullptr) addQualifier(leaf.get(), std::move(moved));
  }
  return attach(object, path, place, std::move(leaf));
}

void deleteNode(Object& object, Node* node) noexcept {
  Node* owner = node->parent;
  detach(node);
  if (owner->isSchema()) object.dropSchemaIfEmpty(owner);
}

void appendProperties(const Object& source, Object& target, bool replace) {
  Object added;
  for (const Node* schema = source.root()->children.first(); schema != nullptr; schema = schema->next) {
    const Node* known = target.findSchema(schema->ns);
    for (const Node* property = schema->children.first(); property != nullptr; property = property->next) {
      if (!replace && known != nullptr && known->children.find(property->ns, property->name()) != nullptr) continue;
      appendChild(added.ensureSchema(schema->ns), cloneTree(property));
    }
  }
  target.merge(added);
}

namespace {

void sortTree(Node* node) {
  if (!node->isArray()) node->children.sort();
  node->qualifiers.sort();
  if (Node* language = node->qualifiers.find(wellKnown().xml, "lang")) addQualifier(node, detach(language));
  for (Node* child = node->children.first(); child != nullptr; child = child->next) sortTree(child);
  for (Node* child = node->qualifiers.first(); child != nullptr; child = child->next) sortTree(child);
}

}  // namespace

void sortObject(Object& object) {
  sortTree(object.root());
}

}  // namespace velto
