// Language alternatives (ISO 16684-1, 8.2.2.4).
#include <utility>

#include "outside/xmp/operations.h"
#include "outside/xmp/place.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

constexpr std::string_view kDefaultLanguage = "x-default";

struct Languages {
  std::string generic;  // May be empty.
  std::string specific;

  Languages(std::string_view genericLanguage, std::string_view specificLanguage)
      : generic(genericLanguage.empty() ? std::string() : checkedLanguage(genericLanguage)),
        specific(checkedLanguage(specificLanguage)) {}
};

struct Choice {
  Node* specific = nullptr;
  Node* standard = nullptr;  // x-default.
  GenericItems generic;

  // The item to be changed when a language's text is set.
  Node* toChange() const noexcept {
    if (specific != nullptr) return specific;
    return generic.isMany ? nullptr : generic.first;
  }
};

// Finds the items for setting and choosing. All lookups are indexed, so setting texts in many languages takes the same
// time for each.
Choice lookUp(const Node* array, const Languages& languages) noexcept {
  Choice choice;
  choice.specific = array->children.findLanguage(languages.specific);
  choice.standard = array->children.findLanguage(kDefaultLanguage);
  if (choice.specific == nullptr && !languages.generic.empty()) {
    choice.generic = array->children.findGeneric(languages.generic);
  }
  return choice;
}

// The item that x-default repeats, or x-default for an item that it repeats.
Node* twinOf(const Node* array, const Node* item, const Choice& choice) noexcept {
  if (item != choice.standard) {
    return choice.standard != nullptr && choice.standard->value() == item->value() ? choice.standard : nullptr;
  }
  for (Node* other = array->children.first(); other != nullptr; other = other->next) {
    if (other != item && other->value() == item->value()) return other;
  }
  return nullptr;
}

NodePtr makeLocalized(Object& object, std::string_view language, std::string_view value) {
  NodePtr item = makeItem(object.storage, 0, value);
  setLanguage(item.get(), language);
  return item;
}

void requireAltText(const Path& path, const Node* array) {
  if ((array->options & kXMPPropIsAlternate) == 0 || (!array->children.empty() && !isAltText(array))) {
    raiseAt(ErrorId::kBadForm, path, "is not a language alternative");
  }
}

}  // namespace

Node* chooseLocalized(const Path& path, const Node* array, std::string_view generic, std::string_view specific) {
  const Languages languages(generic, specific);
  if ((array->options & kXMPPropIsAlternate) == 0) raiseAt(ErrorId::kBadForm, path, "is not a language alternative");
  const Choice choice = lookUp(array, languages);
  if (choice.specific != nullptr) return choice.specific;
  if (choice.generic.first != nullptr) return choice.generic.first;
  return choice.standard != nullptr ? choice.standard : array->children.first();
}

void setLocalized(Object& object, const Path& path, std::string_view generic, std::string_view specific,
                  std::string_view text) {
  const Languages languages(generic, specific);
  const std::string value = repairText(text);
  checkDepth(path, 3);
  const Place place = locate(object, path);
  NodePtr fresh = place.missing == 0 ? nullptr : makeLeaf(object, path, checkedForm(kXMPPropIsAltText));
  Node* array = place.missing == 0 ? place.node : fresh.get();
  requireAltText(path, array);

  const Choice choice = lookUp(array, languages);
  if (Node* item = choice.toChange()) {
    Node* twin = twinOf(array, item, choice);
    item->reserveValue(value.size());
    if (twin != nullptr) twin->setValue(value);
    item->setValue(value);
    return;
  }
  NodePtr standard;
  if (array->children.empty() && languages.specific != kDefaultLanguage) {
    standard = makeLocalized(object, kDefaultLanguage, value);
  }
  NodePtr item = makeLocalized(object, languages.specific, value);
  if (standard) appendChild(array, std::move(standard));
  settleLanguage(appendChild(array, std::move(item)));
  if (fresh) attach(object, path, place, std::move(fresh));
}

void deleteLocalized(Object& object, const Path& path, std::string_view generic, std::string_view specific) {
  const Languages languages(generic, specific);
  Node* array = findNode(object, path);
  if (array == nullptr) return;
  requireAltText(path, array);
  const Choice choice = lookUp(array, languages);
  Node* item = choice.toChange();
  if (item == nullptr) return;
  if (item != choice.standard && twinOf(array, item, choice) != nullptr) deleteNode(object, choice.standard);
  deleteNode(object, item);
  if (array->children.empty()) deleteNode(object, array);
}

}  // namespace velto
