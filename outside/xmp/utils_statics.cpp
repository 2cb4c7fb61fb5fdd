// "ZXMPUtils_StaticInterface": paths, values, dates, operations on whole objects, texts.
#include <cstdint>
#include <string>
#include <string_view>

#include "outside/xmp/boundary.h"
#include "outside/xmp/dates.h"
#include "outside/xmp/operations.h"
#include "outside/xmp/path.h"
#include "outside/xmp/property_forms.h"
#include "outside/xmp/text.h"
#include "outside/xmp/values.h"

namespace velto {
namespace {

constexpr std::uint32_t kReplaceToo = 1;  // An option of appendProperties.

TextStore& texts() {
  static TextStore store;
  return store;
}

void requireStep(const PathProblem* problem, const char* name) {
  if (problem != nullptr) raiseProblem(*problem, name);
}

// --- paths ----------------------------------------------------------------------------------------------------------

TALErrorRef composeArrayItemPath(const char* schema, const char* array, std::int32_t index, XMPTextOut* path) {
  return guarded([&] {
    Path composed = requirePath(schema, array);
    requireStep(addItemStep(index, composed), array);
    giveText(texts(), path, pathText(composed));
  });
}

TALErrorRef composeStructFieldPath(const char* schema, const char* structName, const char* fieldSchema,
                                   const char* field, XMPTextOut* path) {
  return guarded([&] {
    Path composed = requirePath(schema, structName);
    requireStep(addFieldStep(fieldSchema, field, composed), field);
    giveText(texts(), path, pathText(composed));
  });
}

TALErrorRef composeQualifierPath(const char* schema, const char* name, const char* qualifierSchema,
                                 const char* qualifier, XMPTextOut* path) {
  return guarded([&] {
    Path composed = requirePath(schema, name);
    requireStep(addQualifierStep(qualifierSchema, qualifier, composed), qualifier);
    giveText(texts(), path, pathText(composed));
  });
}

TALErrorRef composeLangSelector(const char* schema, const char* array, const char* language, XMPTextOut* path) {
  return guarded([&] {
    Path composed = requirePath(schema, array);
    requireStep(addQualifierStep(wellKnown().xml->uri.c_str(), "lang", composed), array);
    Step& step = composed.steps.back();
    step.kind = Step::Kind::kByQualifier;
    if (!isLanguageTag(required(language, "the language is null"))) {
      throw ToolkitError(ErrorId::kBadLanguage, "'" + repairText(language) + "' is no language tag");
    }
    step.value = normalizeLanguage(language);
    giveText(texts(), path, pathText(composed));
  });
}

TALErrorRef composeFieldSelector(const char* schema, const char* array, const char* fieldSchema, const char* field,
                                 const char* value, XMPTextOut* path) {
  return guarded([&] {
    Path composed = requirePath(schema, array);
    requireStep(addFieldStep(fieldSchema, field, composed), field);
    Step& step = composed.steps.back();
    step.kind = Step::Kind::kByField;
    step.value = repairText(required(value, "the value is null"));
    giveText(texts(), path, pathText(composed));
  });
}

TALErrorRef normalizePath(const char* schema, const char* path, XMPTextOut* normal) {
  return guarded([&] { giveText(texts(), normal, pathText(requirePath(schema, path))); });
}

TALErrorRef getSchemaOfPath(const char* path, XMPTextOut* schema) {
  return guarded([&] {
    const std::string_view whole = required(path, "the path is null");
    const std::string_view first = whole.substr(0, whole.find_first_of("/["));
    const std::size_t colon = first.find(':');
    if (colon == std::string_view::npos) {
      throw ToolkitError(ErrorId::kBadPath, "'" + repairText(whole) + "' starts without a prefix");
    }
    const Namespace* ns = findPrefix(first.substr(0, colon));
    if (ns == nullptr) {
      throw ToolkitError(ErrorId::kBadSchema, "'" + repairText(whole) + "' has a prefix that is not registered");
    }
    requirePath(ns->uri.c_str(), path);
    giveText(texts(), schema, ns->uri);
  });
}

// --- values ---------------------------------------------------------------------------------------------------------

TALErrorRef convertFromBool(std::uint8_t value, XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, formatBool(value != 0)); });
}

TALErrorRef convertFromInt(std::int32_t value, XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, formatInt(value)); });
}

TALErrorRef convertFromInt64(std::int64_t value, XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, formatInt(value)); });
}

TALErrorRef convertFromFloat(double value, XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, formatFloat(value)); });
}

TALErrorRef convertFromDate(const XMPDateTime* value, XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, formatDate(*required(value, "the date is null"))); });
}

template <typename Value, typename Parse>
TALErrorRef convertTo(const char* text, Value* value, Parse parse) {
  return guarded([&] {
    const auto parsed = parse(required(text, "the text is null"));
    give(value, static_cast<Value>(parsed));
  });
}

TALErrorRef convertToBool(const char* text, std::uint8_t* value) {
  return convertTo(text, value, parseBool);
}
TALErrorRef convertToInt(const char* text, std::int32_t* value) {
  return convertTo(text, value, parseInt);
}
TALErrorRef convertToInt64(const char* text, std::int64_t* value) {
  return convertTo(text, value, parseInt64);
}
TALErrorRef convertToFloat(const char* text, double* value) {
  return convertTo(text, value, parseFloat);
}
TALErrorRef convertToDate(const char* text, XMPDateTime* value) {
  return convertTo(text, value, parseDate);
}

// --- dates ----------------------------------------------------------------------------------------------------------

TALErrorRef currentDateTime(XMPDateTime* value) {
  return guarded([&] { *required(value, "there is no place for the date") = currentDate(); });
}

TALErrorRef setTimeZone(XMPDateTime* value) {
  return guarded([&] { setMachineZone(*required(value, "the date is null")); });
}

TALErrorRef convertToUTCTime(XMPDateTime* value) {
  return guarded([&] { convertToUTC(*required(value, "the date is null")); });
}

TALErrorRef convertToLocalTime(XMPDateTime* value) {
  return guarded([&] { convertToMachineZone(*required(value, "the date is null")); });
}

TALErrorRef compareDateTime(const XMPDateTime* left, const XMPDateTime* right, std::int32_t* order) {
  return guarded([&] {
    required(left, "the left date is null");
    required(right, "the right date is null");
    give(order, static_cast<std::int32_t>(compareDates(*left, *right)));
  });
}

// --- base 64 --------------------------------------------------------------------------------------------------------

TALErrorRef encodeToBase64(const char* bytes, std::uint32_t length, XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, encodeBase64(requiredBytes(bytes, length))); });
}

TALErrorRef decodeFromBase64(const char* text, std::uint32_t length, XMPTextOut* bytes) {
  return guarded([&] { giveText(texts(), bytes, decodeBase64(requiredBytes(text, length))); });
}

// --- whole objects --------------------------------------------------------------------------------------------------

TALErrorRef catenateArrayItems(XMPObjectRef object, const char* schema, const char* array, const char* separator,
                               const char* quotes, XMPTextOut* text) {
  return guarded([&] {
    const Object& model = instanceOf(object).object;
    required(separator, "the separator is null");
    required(quotes, "the quotes are null");
    Path path;
    const Node* node = parsePath(schema, array, path) == nullptr ? findArray(model, path) : nullptr;
    giveText(texts(), text, node != nullptr ? catenateItems(node, separator, quotes) : std::string());
  });
}

TALErrorRef separateArrayItems(XMPObjectRef object, const char* schema, const char* array, std::uint32_t arrayOptions,
                               const char* text) {
  return guarded([&] {
    Instance& instance = changeableInstanceOf(object);
    separateItems(instance.object, requirePath(schema, array), arrayOptions, required(text, "the text is null"));
  });
}

TALErrorRef removeProperties(XMPObjectRef object, const char* schema, const char* name, std::uint32_t options) {
  return guarded([&] {
    Object& model = changeableInstanceOf(object).object;
    requireNoOptions(options);
    const std::string_view uri = schema != nullptr ? schema : "";
    const std::string_view property = name != nullptr ? name : "";
    if (!property.empty()) {
      if (uri.empty()) throw ToolkitError(ErrorId::kBadParameter, "a property without a schema");
      const Namespace* ns = findNamespace(uri);
      if (ns == nullptr || model.findSchema(ns) == nullptr)
        return;  // Nothing of the schema is there, whatever the path.
      Path path;
      Node* node = parsePath(schema, name, path) == nullptr ? findNode(model, path) : nullptr;
      if (node != nullptr) deleteNode(model, node);
      return;
    }
    if (uri.empty()) {
      model.root()->children.clear();
      return;
    }
    const Namespace* ns = findNamespace(uri);
    if (Node* node = ns != nullptr ? model.findSchema(ns) : nullptr) detach(node);
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

TALErrorRef duplicateSubtree(XMPObjectRef source, XMPObjectRef target, const char* sourceSchema, const char* sourceName,
                             const char* targetSchema, const char* targetName) {
  return guarded([&] {
    const Instance& from = instanceOf(source);
    Instance& to = changeableInstanceOf(target);
    const Path sourcePath = requirePath(sourceSchema, sourceName);
    const Path targetPath = requirePath(targetSchema, targetName);
    const Node* tree = findNode(from.object, sourcePath);
    if (tree == nullptr) throw ToolkitError(ErrorId::kNotThere, "'" + pathText(sourcePath) + "' is not there");
    placeTree(to.object, targetPath, tree);
  });
}

TALErrorRef compareObjects(XMPObjectRef left, XMPObjectRef right, std::uint8_t* equal) {
  return guarded([&] {
    const Object& ours = instanceOf(left).object;
    const Object& theirs = instanceOf(right).object;
    giveAnswer(equal, ours.name == theirs.name && equalTrees(ours.root(), theirs.root()));
  });
}

TALErrorRef compareSubtrees(XMPObjectRef left, XMPObjectRef right, const char* schema, const char* name,
                            std::uint8_t* equal) {
  return guarded([&] {
    const Object& ours = instanceOf(left).object;
    const Object& theirs = instanceOf(right).object;
    const Path path = requirePath(schema, name);
    const Node* one = findNode(ours, path);
    const Node* other = findNode(theirs, path);
    giveAnswer(equal, one == nullptr || other == nullptr ? one == other : equalTrees(one, other));
  });
}

TALErrorRef sortObjectProc(XMPObjectRef object) {
  return guarded([&] { sortObject(changeableInstanceOf(object).object); });
}

// --- names and texts ------------------------------------------------------------------------------------------------

TALErrorRef isXMLNameProc(const char* text, std::uint8_t* answer) {
  return guarded([&] { giveAnswer(answer, isXMLName(required(text, "the text is null"))); });
}

TALErrorRef isLanguageTagProc(const char* text, std::uint8_t* answer) {
  return guarded([&] { giveAnswer(answer, isLanguageTag(required(text, "the text is null"))); });
}

TALErrorRef normalizeLanguageProc(const char* text, XMPTextOut* language) {
  return guarded([&] {
    if (!isLanguageTag(required(text, "the language is null"))) {
      throw ToolkitError(ErrorId::kBadLanguage, "'" + repairText(text) + "' is no language tag");
    }
    giveText(texts(), language, normalizeLanguage(text));
  });
}

TALErrorRef isUTF8Proc(const char* text, std::uint32_t length, std::uint8_t* answer) {
  return guarded([&] { giveAnswer(answer, isUTF8(requiredBytes(text, length))); });
}

TALErrorRef repairTextProc(const char* text, std::uint32_t length, XMPTextOut* repaired) {
  return guarded([&] { giveText(texts(), repaired, repairText(requiredBytes(text, length))); });
}

TALErrorRef escapeXMLProc(const char* text, std::uint32_t length, XMPTextOut* escaped) {
  return guarded([&] { giveText(texts(), escaped, escapeXML(repairText(requiredBytes(text, length)))); });
}

TALErrorRef convertFromUTF16(const char* bytes, std::uint32_t length, std::uint8_t bigEndian, XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, fromUTF16(requiredBytes(bytes, length), bigEndian != 0)); });
}

TALErrorRef convertFromUTF32(const char* bytes, std::uint32_t length, std::uint8_t bigEndian, XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, fromUTF32(requiredBytes(bytes, length), bigEndian != 0)); });
}

TALErrorRef findPacketProc(const char* bytes, std::uint32_t length, std::uint32_t* offset, std::uint32_t* packetLength,
                           std::uint8_t* found) {
  return guarded([&] {
    std::size_t start = 0;
    std::size_t size = 0;
    const bool isThere = findPacket(requiredBytes(bytes, length), start, size);
    give(offset, isThere ? static_cast<std::uint32_t>(start) : 0);
    give(packetLength, isThere ? static_cast<std::uint32_t>(size) : 0);
    giveAnswer(found, isThere);
  });
}

TALErrorRef isKnownSchema(const char* schema, std::uint8_t* answer) {
  return guarded([&] { giveAnswer(answer, findNamespace(required(schema, "the schema is null")) != nullptr); });
}

TALErrorRef isArrayForm(const char* schema, const char* name, std::uint32_t* options) {
  return guarded([&] {
    const Namespace* ns = findNamespace(required(schema, "the schema is null"));
    required(name, "the property name is null");
    give(options, ns != nullptr ? standardForm(ns, name) : 0);
  });
}

TALErrorRef unlockUtils(std::uint32_t options) {
  return guarded([&] {
    requireNoOptions(options);
    texts().unlock();
  });
}

}  // namespace

constinit const XMPUtilsStatics kUtilsStatics = {
    composeArrayItemPath,  composeStructFieldPath, composeQualifierPath, composeLangSelector,
    composeFieldSelector,  convertFromBool,        convertFromInt,       convertFromInt64,
    convertFromFloat,      convertFromDate,        convertToBool,        convertToInt,
    convertToInt64,        convertToFloat,         convertToDate,        currentDateTime,
    setTimeZone,           convertToUTCTime,       convertToLocalTime,   compareDateTime,
    encodeToBase64,        decodeFromBase64,       catenateArrayItems,   separateArrayItems,
    removeProperties,      appendPropertiesProc,   duplicateSubtree,     compareObjects,
    compareSubtrees,       sortObjectProc,         isXMLNameProc,        isLanguageTagProc,
    normalizeLanguageProc, normalizePath,          isUTF8Proc,           repairTextProc,
    escapeXMLProc,         convertFromUTF16,       convertFromUTF32,     findPacketProc,
    getSchemaOfPath,       isKnownSchema,          isArrayForm,          unlockUtils,
};

}  // namespace velto
