// The methods of a toolkit object.
#include <cassert>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "outside/xmp/boundary.h"
#include "outside/xmp/dates.h"
#include "outside/xmp/operations.h"
#include "outside/xmp/path.h"
#include "outside/xmp/text.h"
#include "outside/xmp/values.h"

namespace velto {
namespace {

// Adds a step to a path, or none.
struct NoStep {
  const PathProblem* operator()(Namespaces&, Path&) const noexcept { return nullptr; }
};
struct ItemStep {
  std::int32_t index;
  const PathProblem* operator()(Namespaces&, Path& path) const { return addItemStep(index, path); }
};
struct FieldStep {
  const char* schema;
  const char* name;
  const PathProblem* operator()(Namespaces& namespaces, Path& path) const {
    return addFieldStep(namespaces, schema, name, path);
  }
};
struct QualifierStep {
  const char* schema;
  const char* name;
  const PathProblem* operator()(Namespaces& namespaces, Path& path) const {
    return addQualifierStep(namespaces, schema, name, path);
  }
};

// The node, or null: it does not exist, or has a name that nothing can have.
template <typename LastStep>
Node* find(Object& object, const char* schema, const char* name, LastStep lastStep) {
  Path path;
  Namespaces& namespaces = object.namespaces;
  if (parsePath(namespaces, schema, name, path) != nullptr || lastStep(namespaces, path) != nullptr) return nullptr;
  return findNode(object, path);
}

template <typename LastStep>
Path pathToSet(Object& object, const char* schema, const char* name, LastStep lastStep) {
  Path path = requirePath(object.namespaces, schema, name);
  if (const PathProblem* problem = lastStep(object.namespaces, path)) raiseProblem(*problem, name);
  return path;
}

void giveNode(Instance& instance, const Node* node, XMPTextOut* value, std::uint32_t* options, std::uint8_t* found) {
  giveText(instance.texts, value, node != nullptr ? node->value() : std::string_view());
  if (options != nullptr) *options = node != nullptr ? reportedOptions(node) : 0;
  giveAnswer(found, node != nullptr);
}

template <typename LastStep>
TALErrorRef get(XMPObjectRef self, const char* schema, const char* name, LastStep lastStep, XMPTextOut* value,
                std::uint32_t* options, std::uint8_t* found) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    giveNode(instance, find(instance.object, schema, name, lastStep), value, options, found);
  });
}

template <typename LastStep>
TALErrorRef set(XMPObjectRef self, const char* schema, const char* name, LastStep lastStep, const char* text,
                std::uint32_t options) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(self);
    setNode(instance.object, pathToSet(instance.object, schema, name, lastStep), text, options);
  });
}

template <typename LastStep>
TALErrorRef erase(XMPObjectRef self, const char* schema, const char* name, LastStep lastStep) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(self);
    if (Node* node = find(instance.object, schema, name, lastStep)) deleteNode(instance.object, node);
  });
}

// --- packets --------------------------------------------------------------------------------------------------------

TALErrorRef parseFromBuffer(XMPObjectRef self, const char* bytes, std::uint32_t length, std::uint32_t options) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(self);
    // If this call fails, the pieces so far are dropped with the parser.
    std::unique_ptr<PacketParser> parser = std::move(instance.parser);
    if ((options & ~kXMPParseMoreBuffers) != 0) throw ToolkitError(ErrorId::kBadOptions, "unknown option bits");
    const std::string_view piece = requiredBytes(bytes, length);
    if (!parser) parser = std::make_unique<PacketParser>(instance.object);
    const bool isLast = (options & kXMPParseMoreBuffers) == 0;
    parser->feed(piece.data(), piece.size(), isLast);
    if (!isLast) instance.parser = std::move(parser);
  });
}

TALErrorRef serializeToBuffer(XMPObjectRef self, XMPTextOut* packet, std::uint32_t options, std::int32_t padding,
                              const char* newline, const char* indent, std::int32_t baseIndent) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    SerializeOptions how;
    how.options = options;
    how.padding = padding;
    if (newline != nullptr) how.newline = newline;
    if (indent != nullptr) how.indent = indent;
    how.baseIndent = baseIndent;
    std::string text;
    serializeObject(instance.object, how, text);
    if (packet != nullptr) *packet = instance.texts.keepWhole(std::move(text));
  });
}

// --- by path --------------------------------------------------------------------------------------------------------

TALErrorRef getProperty(XMPObjectRef self, const char* schema, const char* name, XMPTextOut* value,
                        std::uint32_t* options, std::uint8_t* found) {
  return get(self, schema, name, NoStep{}, value, options, found);
}

TALErrorRef getArrayItem(XMPObjectRef self, const char* schema, const char* array, std::int32_t index,
                         XMPTextOut* value, std::uint32_t* options, std::uint8_t* found) {
  return get(self, schema, array, ItemStep{index}, value, options, found);
}

TALErrorRef getStructField(XMPObjectRef self, const char* schema, const char* structName, const char* fieldSchema,
                           const char* field, XMPTextOut* value, std::uint32_t* options, std::uint8_t* found) {
  return get(self, schema, structName, FieldStep{fieldSchema, field}, value, options, found);
}

TALErrorRef getQualifier(XMPObjectRef self, const char* schema, const char* name, const char* qualifierSchema,
                         const char* qualifier, XMPTextOut* value, std::uint32_t* options, std::uint8_t* found) {
  return get(self, schema, name, QualifierStep{qualifierSchema, qualifier}, value, options, found);
}

TALErrorRef setProperty(XMPObjectRef self, const char* schema, const char* name, const char* text,
                        std::uint32_t options) {
  return set(self, schema, name, NoStep{}, text, options);
}

TALErrorRef setArrayItem(XMPObjectRef self, const char* schema, const char* array, std::int32_t index, const char* text,
                         std::uint32_t options) {
  return set(self, schema, array, ItemStep{index}, text, options);
}

TALErrorRef appendArrayItem(XMPObjectRef self, const char* schema, const char* array, std::uint32_t arrayOptions,
                            const char* text, std::uint32_t itemOptions) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(self);
    appendItem(instance.object, requirePath(instance.object.namespaces, schema, array), arrayOptions, text,
               itemOptions);
  });
}

TALErrorRef insertArrayItem(XMPObjectRef self, const char* schema, const char* array, std::int32_t index,
                            const char* text, std::uint32_t options) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(self);
    insertItem(instance.object, requirePath(instance.object.namespaces, schema, array), index, text, options);
  });
}

TALErrorRef setStructField(XMPObjectRef self, const char* schema, const char* structName, const char* fieldSchema,
                           const char* field, const char* text, std::uint32_t options) {
  return set(self, schema, structName, FieldStep{fieldSchema, field}, text, options);
}

TALErrorRef setQualifier(XMPObjectRef self, const char* schema, const char* name, const char* qualifierSchema,
                         const char* qualifier, const char* text, std::uint32_t options) {
  return set(self, schema, name, QualifierStep{qualifierSchema, qualifier}, text, options);
}

TALErrorRef deleteProperty(XMPObjectRef self, const char* schema, const char* name) {
  return erase(self, schema, name, NoStep{});
}

TALErrorRef deleteArrayItem(XMPObjectRef self, const char* schema, const char* array, std::int32_t index) {
  return erase(self, schema, array, ItemStep{index});
}

TALErrorRef deleteStructField(XMPObjectRef self, const char* schema, const char* structName, const char* fieldSchema,
                              const char* field) {
  return erase(self, schema, structName, FieldStep{fieldSchema, field});
}

TALErrorRef deleteQualifier(XMPObjectRef self, const char* schema, const char* name, const char* qualifierSchema,
                            const char* qualifier) {
  return erase(self, schema, name, QualifierStep{qualifierSchema, qualifier});
}

TALErrorRef doesPropertyExist(XMPObjectRef self, const char* schema, const char* name, std::uint8_t* found) {
  return guarded([&] { giveAnswer(found, find(instanceOf(self).object, schema, name, NoStep{}) != nullptr); });
}

// --- language alternatives ------------------------------------------------------------------------------------------

TALErrorRef getLocalizedText(XMPObjectRef self, const char* schema, const char* altText, const char* genericLang,
                             const char* specificLang, XMPTextOut* actualLang, XMPTextOut* value,
                             std::uint32_t* options, std::uint8_t* found) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    required(genericLang, "the generic language is null");
    required(specificLang, "the specific language is null");
    const Node* item = nullptr;
    Path path;
    if (parsePath(instance.object.namespaces, schema, altText, path) == nullptr) {
      if (const Node* array = findNode(instance.object, path)) {
        item = chooseLocalized(path, array, genericLang, specificLang);
      }
    }
    const Node* language = item != nullptr ? languageOf(item) : nullptr;
    giveText(instance.texts, actualLang, language != nullptr ? language->value() : std::string_view());
    giveNode(instance, item, value, options, found);
  });
}

TALErrorRef setLocalizedText(XMPObjectRef self, const char* schema, const char* altText, const char* genericLang,
                             const char* specificLang, const char* text, std::uint32_t options) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(self);
    requireNoOptions(options);
    setLocalized(instance.object, requirePath(instance.object.namespaces, schema, altText),
                 required(genericLang, "the generic language is null"),
                 required(specificLang, "the specific language is null"), required(text, "the text is null"));
  });
}

TALErrorRef deleteLocalizedText(XMPObjectRef self, const char* schema, const char* altText, const char* genericLang,
                                const char* specificLang) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(self);
    required(genericLang, "the generic language is null");
    required(specificLang, "the specific language is null");
    Path path;
    if (parsePath(instance.object.namespaces, schema, altText, path) != nullptr) return;
    deleteLocalized(instance.object, path, genericLang, specificLang);
  });
}

// --- the typed forms ------------------------------------------------------------------------------------------------

template <typename Value, typename Parse>
TALErrorRef getTyped(XMPObjectRef self, const char* schema, const char* name, Value* value, std::uint32_t* options,
                     std::uint8_t* found, Parse parse) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    const Node* node = find(instance.object, schema, name, NoStep{});
    Value parsed{};
    if (node != nullptr) {
      if (!node->isSimple()) {
        throw ToolkitError(ErrorId::kBadForm,
                           "'" + std::string(name) + "' is an array or a struct, not a simple value");
      }
      parsed = parse(node->value());
    }
    give(value, parsed);
    giveNode(instance, node, nullptr, options, found);
  });
}

template <typename Format>
TALErrorRef setTyped(XMPObjectRef self, const char* schema, const char* name, std::uint32_t options, Format format) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(self);
    const auto text = format();
    setNode(instance.object, requirePath(instance.object.namespaces, schema, name), text.c_str(), options);
  });
}

TALErrorRef getPropertyBool(XMPObjectRef self, const char* schema, const char* name, std::uint8_t* value,
                            std::uint32_t* options, std::uint8_t* found) {
  return getTyped(self, schema, name, value, options, found,
                  [](std::string_view text) { return static_cast<std::uint8_t>(parseBool(text) ? 1 : 0); });
}

TALErrorRef getPropertyInt64(XMPObjectRef self, const char* schema, const char* name, std::int64_t* value,
                             std::uint32_t* options, std::uint8_t* found) {
  return getTyped(self, schema, name, value, options, found, parseInt64);
}

TALErrorRef getPropertyFloat(XMPObjectRef self, const char* schema, const char* name, double* value,
                             std::uint32_t* options, std::uint8_t* found) {
  return getTyped(self, schema, name, value, options, found, parseFloat);
}

TALErrorRef getPropertyDate(XMPObjectRef self, const char* schema, const char* name, XMPDateTime* value,
                            std::uint32_t* options, std::uint8_t* found) {
  return getTyped(self, schema, name, value, options, found, parseDate);
}

TALErrorRef setPropertyBool(XMPObjectRef self, const char* schema, const char* name, std::uint8_t value,
                            std::uint32_t options) {
  return setTyped(self, schema, name, options, [&] { return formatBool(value != 0); });
}

TALErrorRef setPropertyInt64(XMPObjectRef self, const char* schema, const char* name, std::int64_t value,
                             std::uint32_t options) {
  return setTyped(self, schema, name, options, [&] { return formatInt(value); });
}

TALErrorRef setPropertyFloat(XMPObjectRef self, const char* schema, const char* name, double value,
                             std::uint32_t options) {
  return setTyped(self, schema, name, options, [&] { return formatFloat(value); });
}

TALErrorRef setPropertyDate(XMPObjectRef self, const char* schema, const char* name, const XMPDateTime* value,
                            std::uint32_t options) {
  return setTyped(self, schema, name, options, [&] { return formatDate(*required(value, "the date is null")); });
}

// --- counting and visiting ------------------------------------------------------------------------------------------

TALErrorRef countArrayItems(XMPObjectRef self, const char* schema, const char* array, std::uint32_t* count) {
  return guarded([&] {
    Object& object = instanceOf(self).object;
    Path path;
    const Node* node = parsePath(object.namespaces, schema, array, path) == nullptr ? findArray(object, path) : nullptr;
    give(count, node != nullptr ? static_cast<std::uint32_t>(node->children.size()) : 0);
  });
}

// Calls the visitor for a node and its descendants; false if the visitor ended the visit. The depth of trees is
// limited, so recursion is safe. `context` is the namespace reported for items, which have none: that of their array.
class Visit {
 public:
  Visit(XMPVisitProc visitor, void* user) : visitor_(visitor), user_(user) {}

  bool run(const Node* node, std::uint32_t depth, const Namespace* context) {
    const Namespace* ns = node->ns != nullptr ? node->ns : context;
    assert(ns != nullptr);  // Schemas and properties have their own.
    const XMPVisitedNode seen = {depth,
                                 reportedOptions(node),
                                 ns->uri.data(),
                                 ns->prefix.data(),
                                 node->nameText(),
                                 {node->value().data(), static_cast<std::uint32_t>(node->value().size())}};
    const std::uint32_t answer = visitor_(user_, &seen);
    if (answer != 0) return answer == 1;
    return runAll(node->qualifiers, depth + 1, ns) && runAll(node->children, depth + 1, ns);
  }

 private:
  bool runAll(const NodeList& nodes, std::uint32_t depth, const Namespace* context) {
    for (const Node* node = nodes.first(); node != nullptr; node = node->next) {
      if (!run(node, depth, context)) return false;
    }
    return true;
  }

  XMPVisitProc visitor_;
  void* user_;
};

// Prevents the visitor from changing nodes.
class VisitMark {
 public:
  explicit VisitMark(Instance& instance) : instance_(instance) { ++instance_.visits; }
  VisitMark(const VisitMark&) = delete;
  VisitMark& operator=(const VisitMark&) = delete;
  ~VisitMark() { --instance_.visits; }

 private:
  Instance& instance_;
};

// The namespace to report for an item: that of the enclosing array.
const Namespace* contextOf(const Node* node) noexcept {
  while (node->ns == nullptr) node = node->parent;
  return node->ns;
}

TALErrorRef visitNodes(XMPObjectRef self, const char* schema, const char* name, XMPVisitProc visitor, void* user) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    Object& object = instance.object;
    Visit visit(required(visitor, "the visitor is null"), user);
    const VisitMark mark(instance);
    if (schema == nullptr) {
      for (const Node* node = object.root()->children.first(); node != nullptr; node = node->next) {
        if (!visit.run(node, 0, nullptr)) return;
      }
    } else if (name == nullptr) {
      const Namespace* ns = object.namespaces.find(schema);
      if (const Node* node = ns != nullptr ? object.findSchema(ns) : nullptr) visit.run(node, 0, nullptr);
    } else if (const Node* node = find(object, schema, name, NoStep{})) {
      visit.run(node, 1, contextOf(node));
    }
  });
}

// --- the whole object -----------------------------------------------------------------------------------------------

TALErrorRef unlockObject(XMPObjectRef self, std::uint32_t options) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    requireNoOptions(options);
    instance.texts.unlock();
  });
}

// --- warnings and namespaces ----------------------------------------------------------------------------------------

TALErrorRef countWarnings(XMPObjectRef self, std::uint32_t* kept, std::uint32_t* total) {
  return guarded([&] {
    const Warnings& warnings = instanceOf(self).object.warnings;
    give(kept, static_cast<std::uint32_t>(warnings.kept().size()));
    give(total, warnings.total());
  });
}

TALErrorRef getWarning(XMPObjectRef self, std::uint32_t index, std::uint32_t* line, std::uint32_t* column,
                       XMPTextOut* text) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    const std::vector<Warning>& kept = instance.object.warnings.kept();
    if (index >= kept.size()) throw ToolkitError(ErrorId::kBadIndex, "there are fewer warnings");
    give(line, kept[index].line);
    give(column, kept[index].column);
    giveText(instance.texts, text, kept[index].text);
  });
}

TALErrorRef getNamespacePrefix(XMPObjectRef self, const char* uri, XMPTextOut* prefix, std::uint8_t* found) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    const Namespace* known = instance.object.namespaces.find(required(uri, "the namespace is null"));
    giveText(instance.texts, prefix, known != nullptr ? known->prefix : std::string_view());
    giveAnswer(found, known != nullptr);
  });
}

TALErrorRef getNamespaceURI(XMPObjectRef self, const char* prefix, XMPTextOut* uri, std::uint8_t* found) {
  return guarded([&] {
    Instance& instance = instanceOf(self);
    const Namespace* known = instance.object.namespaces.findPrefix(required(prefix, "the prefix is null"));
    giveText(instance.texts, uri, known != nullptr ? known->uri : std::string_view());
    giveAnswer(found, known != nullptr);
  });
}

}  // namespace

constinit const XMPMetaOptionalMethods kMetaOptionalMethods = {
    countWarnings,
    getWarning,
    getNamespacePrefix,
    getNamespaceURI,
};

constinit const XMPMetaMethods kMetaMethods = {
    parseFromBuffer,
    serializeToBuffer,
    getProperty,
    getArrayItem,
    getStructField,
    getQualifier,
    setProperty,
    setArrayItem,
    appendArrayItem,
    insertArrayItem,
    setStructField,
    setQualifier,
    deleteProperty,
    deleteArrayItem,
    deleteStructField,
    deleteQualifier,
    doesPropertyExist,
    Unsupported<kXMPMetaMethodNames, 17>{},
    Unsupported<kXMPMetaMethodNames, 18>{},
    Unsupported<kXMPMetaMethodNames, 19>{},
    getLocalizedText,
    setLocalizedText,
    deleteLocalizedText,
    getPropertyBool,
    Unsupported<kXMPMetaMethodNames, 24>{},
    getPropertyInt64,
    getPropertyFloat,
    getPropertyDate,
    setPropertyBool,
    Unsupported<kXMPMetaMethodNames, 29>{},
    setPropertyInt64,
    setPropertyFloat,
    setPropertyDate,
    countArrayItems,
    Unsupported<kXMPMetaMethodNames, 34>{},
    visitNodes,
    Unsupported<kXMPMetaMethodNames, 36>{},
    Unsupported<kXMPMetaMethodNames, 37>{},
    Unsupported<kXMPMetaMethodNames, 38>{},
    unlockObject,
};

}  // namespace velto
