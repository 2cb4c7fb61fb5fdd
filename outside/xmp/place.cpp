// The place of a path in an object.
#include "outside/xmp/place.h"

#include <utility>

#include "outside/xmp/operations.h"
#include "outside/xmp/property_forms.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

bool isItemStep(const Step& step) noexcept {
  return step.kind != Step::Kind::kField && step.kind != Step::Kind::kQualifier;
}

// Names with a meaning in RDF/XML cannot be property names: the packet could not be read back. Only xml:lang and
// rdf:type are allowed, as qualifiers.
void checkUsableName(const Path& path, const Step* step) {
  const Namespace* ns = step != nullptr ? step->ns : path.schema();
  const bool isQualifier = step != nullptr && step->kind == Step::Kind::kQualifier;
  if (ns == wellKnown().xml && !(isQualifier && step->name == "lang")) {
    raiseAt(ErrorId::kBadName, path, "cannot be set: in the namespace xml, only the qualifier lang can");
  }
  if (ns == wellKnown().rdf && !(isQualifier && step->name == "type")) {
    raiseAt(ErrorId::kBadName, path, "cannot be set: in the namespace rdf, only the qualifier type can");
  }
}

void requireForm(const Path& path, const Node* node, const Step& step) {
  if (step.kind == Step::Kind::kField && !node->isStruct()) {
    raiseAt(ErrorId::kBadForm, path, "leads to a field, but the node is not a struct");
  }
  if (isItemStep(step) && !node->isArray())
    raiseAt(ErrorId::kBadForm, path, "leads to an item, but the node is not an array");
  // It is an attribute in RDF/XML.
  if (node->ns == wellKnown().xml) raiseAt(ErrorId::kBadForm, path, "gives a qualifier to a language");
}

// Raises unless a step to a missing node may create it.
void requireAddable(const Path& path, const Node* node, const Step& step) {
  switch (step.kind) {
    case Step::Kind::kItem:
      if (step.index != node->children.size() + 1) raiseAt(ErrorId::kBadIndex, path, "leads past the end of the array");
      break;
    case Step::Kind::kByField:
      raiseAt(ErrorId::kNotThere, path, "selects no item");
    case Step::Kind::kByQualifier:
      if (!isLanguageSelector(step)) raiseAt(ErrorId::kNotThere, path, "selects no item");
      if ((node->options & kXMPPropIsAlternate) == 0) {
        raiseAt(ErrorId::kBadForm, path, "selects by language, but the array is not a language alternative");
      }
      break;
    case Step::Kind::kField:
    case Step::Kind::kQualifier:
    case Step::Kind::kLastItem:
      break;
  }
}

// The form that the node at `level` (0 for the property) must have for the next step.
std::uint32_t impliedForm(const Path& path, std::size_t level, const Step& next) {
  if (next.kind == Step::Kind::kField) return kXMPPropIsStruct;
  if (isLanguageSelector(next)) return checkedForm(kXMPPropIsAltText);
  const bool isFirstItem = next.kind == Step::Kind::kLastItem || (next.kind == Step::Kind::kItem && next.index == 1);
  const std::uint32_t form = level == 0 && isFirstItem ? standardForm(path.schema(), path.name()) : 0;
  if (form == 0) raiseAt(ErrorId::kNotThere, path, "cannot be created: its parent does not exist");
  return form & ~kXMPPropIsAltText;
}

const Step* stepAt(const Path& path, std::size_t level) noexcept {
  return level == 0 ? nullptr : &path.steps[level - 1];
}

// A node with the name in the path at that level.
NodePtr makeAt(Storage& storage, const Path& path, std::size_t level, std::uint32_t form, std::string_view value) {
  const Step* step = stepAt(path, level);
  if (step != nullptr && isItemStep(*step)) {
    NodePtr item = makeItem(storage, form, value);
    if (isLanguageSelector(*step)) setLanguage(item.get(), step->value);
    return item;
  }
  checkUsableName(path, step);
  return makeNode(storage, step == nullptr ? path.top : NameKey(step->ns, step->name), form, value);
}

void link(Node* owner, const Step* step, NodePtr node) noexcept {
  if (step != nullptr && step->kind == Step::Kind::kQualifier) {
    addQualifier(owner, std::move(node));
  } else {
    appendChild(owner, std::move(node));
  }
}

}  // namespace

void raiseAt(ErrorId id, const Path& path, const char* what) {
  throw ToolkitError(id, "'" + pathText(path) + "' " + what);
}

void checkDepth(const Path& path, std::uint32_t height) {
  if (path.steps.size() + height > kDepthLimit) raiseAt(ErrorId::kTooDeep, path, "would be nested too deep");
}

std::string checkedLanguage(std::string_view language) {
  if (!isLanguageTag(language)) {
    throw ToolkitError(ErrorId::kBadLanguage, "'" + repairText(language) + "' is not a language tag");
  }
  return normalizeLanguage(language);
}

bool isLanguagePath(const Path& path) noexcept {
  if (path.steps.empty()) return false;
  const Step& last = path.steps.back();
  return last.kind == Step::Kind::kQualifier && last.ns == wellKnown().xml && last.name == "lang";
}

void settleLanguage(Node* item) noexcept {
  Node* array = item->parent;
  if (array == nullptr || (array->options & kXMPPropIsAlternate) == 0) return;
  const Node* language = languageOf(item);
  if (language != nullptr && language->value() == "x-default") putDefaultLanguageFirst(array);
}

Place locate(const Object& object, const Path& path) {
  const std::size_t levels = path.steps.size() + 1;
  Node* schema = object.findSchema(path.schema());
  Node* node = schema != nullptr ? schema->children.find(path.top) : nullptr;
  if (node == nullptr) return {schema, levels};
  for (std::size_t at = 0; at < path.steps.size(); ++at) {
    const Step& step = path.steps[at];
    requireForm(path, node, step);
    Node* next = followStep(node, step);
    if (next == nullptr) {
      requireAddable(path, node, step);
      return {node, levels - 1 - at};
    }
    node = next;
  }
  return {node, 0};
}

NodePtr makeLeaf(Object& object, const Path& path, std::uint32_t form, std::string_view value) {
  if (!path.steps.empty()) return makeAt(object.storage, path, path.steps.size(), form, value);
  checkUsableName(path, nullptr);
  return makeNode(object.storage, path.top, form, value);
}

Node* attach(Object& object, const Path& path, const Place& place, NodePtr leaf) {
  checkDepth(path, heightOf(leaf.get()));
  Node* result = leaf.get();
  std::size_t level = path.steps.size();
  NodePtr top = std::move(leaf);
  for (std::size_t made = 1; made < place.missing; ++made, --level) {
    NodePtr owner = makeAt(object.storage, path, level - 1, impliedForm(path, level - 1, path.steps[level - 1]), {});
    link(owner.get(), stepAt(path, level), std::move(top));
    top = std::move(owner);
  }
  Node* owner = level == 0 ? object.ensureSchema(path.schema()) : place.node;
  Node* added = top.get();
  link(owner, stepAt(path, level), std::move(top));
  settleLanguage(added);
  if (result->isQualifier) settleLanguage(result->parent);
  return result;
}

}  // namespace velto
