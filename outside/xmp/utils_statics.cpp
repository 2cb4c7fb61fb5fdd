// "ZXMPUtils_StaticInterface": paths, dates and operations on whole objects, as far as clients use them.
#include <cstdint>
#include <string>
#include <string_view>

#include "outside/xmp/boundary.h"
#include "outside/xmp/dates.h"
#include "outside/xmp/operations.h"
#include "outside/xmp/path.h"
#include "outside/xmp/property_forms.h"

namespace velto {
namespace {

constinit thread_local ThreadTexts texts;

constexpr std::uint32_t kReplaceToo = 1;  // An option of appendProperties.

// There is no object, so only the namespaces of the toolkit and of the process's clients are known.
TALErrorRef composeStructFieldPath(const char* schema, const char* structName, const char* fieldSchema,
                                   const char* field, XMPTextOut* path) {
  return guarded([&] {
    Storage storage;
    Namespaces shared(storage);
    Path composed = requirePath(shared, schema, structName);
    if (const PathProblem* problem = addFieldStep(shared, fieldSchema, field, composed)) raiseProblem(*problem, field);
    giveText(texts, path, pathText(composed));
  });
}

TALErrorRef currentDateTime(XMPDateTime* value) {
  return guarded([&] { *required(value, "the result pointer is null") = currentDate(); });
}

TALErrorRef setTimeZone(XMPDateTime* value) {
  return guarded([&] { setMachineZone(*required(value, "the date is null")); });
}

TALErrorRef removeProperties(XMPObjectRef object, const char* schema, const char* name, std::uint32_t options) {
  return guarded([&] {
    Object& model = changeableInstanceOf(object).object;
    requireNoOptions(options);
    const bool hasSchema = schema != nullptr && *schema != '\0';
    const bool hasName = name != nullptr && *name != '\0';
    if (!hasSchema) {
      if (hasName) throw ToolkitError(ErrorId::kBadParameter, "a property without a schema");
      model.dropAll();
      return;
    }
    const Namespace* ns = model.namespaces.find(schema);
    Node* schemaNode = ns != nullptr ? model.findSchema(ns) : nullptr;
    if (schemaNode == nullptr) return;  // Nothing of the schema exists, whatever the path.
    if (!hasName) {
      model.dropSchema(schemaNode);
      return;
    }
    Path path;
    Node* node = parsePath(model.namespaces, schema, name, path) == nullptr ? findNode(model, path) : nullptr;
    if (node != nullptr) deleteNode(model, node);
  });
}

TALErrorRef appendPropertiesProc(XMPObjectRef source, XMPObjectRef target, std::uint32_t options) {
  return guarded([&] {
    const Instance& from = instanceOf(source);
    Instance& to = changeableInstanceOf(target);
    if ((options & ~kReplaceToo) != 0) throw ToolkitError(ErrorId::kBadOptions, "unknown option bits");
    if (&from != &to) appendProperties(from.object, to.object, (options & kReplaceToo) != 0);
  });
}

TALErrorRef compareObjects(XMPObjectRef left, XMPObjectRef right, std::uint8_t* equal) {
  return guarded([&] {
    const Object& ours = instanceOf(left).object;
    const Object& theirs = instanceOf(right).object;
    giveAnswer(equal, ours.name == theirs.name && equalTrees(ours.root(), theirs.root(), theirs.namespaces));
  });
}

TALErrorRef isArrayForm(const char* schema, const char* name, std::uint32_t* options) {
  return guarded([&] {
    const Namespace* ns = findStandard(required(schema, "the schema is null"));
    required(name, "the property name is null");
    give(options, ns != nullptr ? standardForm(ns, name) : 0);
  });
}

TALErrorRef unlockUtils(std::uint32_t options) {
  return guarded([&] {
    requireNoOptions(options);
    texts.unlock();
  });
}

}  // namespace

constinit const XMPUtilsStatics kUtilsStatics = {
    Unsupported<kXMPUtilsStaticNames, 0>{},
    composeStructFieldPath,
    Unsupported<kXMPUtilsStaticNames, 2>{},
    Unsupported<kXMPUtilsStaticNames, 3>{},
    Unsupported<kXMPUtilsStaticNames, 4>{},
    Unsupported<kXMPUtilsStaticNames, 5>{},
    Unsupported<kXMPUtilsStaticNames, 6>{},
    Unsupported<kXMPUtilsStaticNames, 7>{},
    Unsupported<kXMPUtilsStaticNames, 8>{},
    Unsupported<kXMPUtilsStaticNames, 9>{},
    Unsupported<kXMPUtilsStaticNames, 10>{},
    Unsupported<kXMPUtilsStaticNames, 11>{},
    Unsupported<kXMPUtilsStaticNames, 12>{},
    Unsupported<kXMPUtilsStaticNames, 13>{},
    Unsupported<kXMPUtilsStaticNames, 14>{},
    currentDateTime,
    setTimeZone,
    Unsupported<kXMPUtilsStaticNames, 17>{},
    Unsupported<kXMPUtilsStaticNames, 18>{},
    Unsupported<kXMPUtilsStaticNames, 19>{},
    Unsupported<kXMPUtilsStaticNames, 20>{},
    Unsupported<kXMPUtilsStaticNames, 21>{},
    Unsupported<kXMPUtilsStaticNames, 22>{},
    Unsupported<kXMPUtilsStaticNames, 23>{},
    removeProperties,
    appendPropertiesProc,
    Unsupported<kXMPUtilsStaticNames, 26>{},
    compareObjects,
    Unsupported<kXMPUtilsStaticNames, 28>{},
    Unsupported<kXMPUtilsStaticNames, 29>{},
    Unsupported<kXMPUtilsStaticNames, 30>{},
    Unsupported<kXMPUtilsStaticNames, 31>{},
    Unsupported<kXMPUtilsStaticNames, 32>{},
    Unsupported<kXMPUtilsStaticNames, 33>{},
    Unsupported<kXMPUtilsStaticNames, 34>{},
    Unsupported<kXMPUtilsStaticNames, 35>{},
    Unsupported<kXMPUtilsStaticNames, 36>{},
    Unsupported<kXMPUtilsStaticNames, 37>{},
    Unsupported<kXMPUtilsStaticNames, 38>{},
    Unsupported<kXMPUtilsStaticNames, 39>{},
    Unsupported<kXMPUtilsStaticNames, 40>{},
    Unsupported<kXMPUtilsStaticNames, 41>{},
    isArrayForm,
    unlockUtils,
};

}  // namespace velto
