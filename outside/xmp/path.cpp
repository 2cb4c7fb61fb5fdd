// Paths.
#include "outside/xmp/path.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "outside/xmp/text.h"

namespace velto {
namespace {

constexpr PathProblem kUnknownSchema = {ErrorId::kBadSchema, "the schema is not a registered namespace"};
constexpr PathProblem kForeignPrefix = {ErrorId::kBadSchema, "the first name's prefix is not that of the schema"};
constexpr PathProblem kUnknownPrefix = {ErrorId::kBadSchema, "a prefix is not registered"};
constexpr PathProblem kNotAName = {ErrorId::kBadName, "a name is not an XML name"};
constexpr PathProblem kNoPrefix = {ErrorId::kBadPath, "the name of a field or qualifier needs a prefix"};
constexpr PathProblem kNoStep = {ErrorId::kBadPath, "a name can only be followed by '/' or '['"};
constexpr PathProblem kBadSelector = {ErrorId::kBadPath, "'[]' must contain an index, last() or a name with a value"};
constexpr PathProblem kOutsideArray = {ErrorId::kBadIndex, "an array index must be 1 to 2147483647"};
constexpr PathProblem kNotALanguage = {ErrorId::kBadLanguage, "the value of xml:lang is not a language tag"};
constexpr PathProblem kBelowLimit = {ErrorId::kTooDeep, "the path is too deep"};

// The ASCII bytes of names: 1 for those that may start a name, 2 for the others.
constexpr std::array<std::uint8_t, 256> makeNameBytes() {
  std::array<std::uint8_t, 256> bytes{};
  for (std::size_t c = 'a'; c <= 'z'; ++c) bytes[c] = bytes[c - 'a' + 'A'] = 1;
  for (std::size_t c = '0'; c <= '9'; ++c) bytes[c] = 2;
  bytes['_'] = 1;
  bytes['-'] = 2;
  bytes['.'] = 2;
  return bytes;
}
constexpr std::array<std::uint8_t, 256> kNameBytes = makeNameBytes();

// Whether each of the eight bytes is an ASCII letter or digit. For a byte below 0x80, adding 0x80 - n sets its top bit
// if the byte is at least n, without a carry into the next byte.
bool areLettersOrDigits(const char* bytes) noexcept {
  constexpr std::uint64_t kEach = 0x0101010101010101u;
  constexpr std::uint64_t kTop = 0x80 * kEach;
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  if ((word & kTop) != 0) return false;
  const std::uint64_t lower = word | 0x20 * kEach;
  const std::uint64_t letters = (lower + (0x80 - 'a') * kEach) & ~(lower + (0x80 - ('z' + 1)) * kEach);
  const std::uint64_t digits = (word + (0x80 - '0') * kEach) & ~(word + (0x80 - ('9' + 1)) * kEach);
  return ((letters | digits) & kTop) == kTop;
}

// The length of a text that is an ASCII name; else 0.
std::size_t plainNameLength(const char* text) noexcept {
  const auto kindOf = [](char c) { return kNameBytes[static_cast<std::uint8_t>(c)]; };
  if (kindOf(*text) != 1) return 0;
  const std::size_t length = std::strlen(text);
  std::size_t checked = 1;
  if (length >= 8) {
    checked = 0;
    while (checked + 8 <= length && areLettersOrDigits(text + checked)) checked += 8;
    if (checked + 8 > length && areLettersOrDigits(text + length - 8)) return length;
  }
  for (; checked < length; ++checked) {
    if (kindOf(text[checked]) == 0) return 0;
  }
  return length;
}

struct Scanner {
  std::string_view rest;

  bool atEnd() const noexcept { return rest.empty(); }
  bool take(char c) noexcept {
    if (rest.empty() || rest.front() != c) return false;
    rest.remove_prefix(1);
    return true;
  }
  bool take(std::string_view text) noexcept {
    if (rest.substr(0, text.size()) != text) return false;
    rest.remove_prefix(text.size());
    return true;
  }
  std::string_view takeUntil(std::string_view ends) noexcept {
    const std::size_t length = std::min(rest.find_first_of(ends), rest.size());
    const std::string_view token = rest.substr(0, length);
    rest.remove_prefix(length);
    return token;
  }
};

// "name" or "prefix:name". Without a prefix the namespace does not change; it is a problem if it is null.
const PathProblem* splitName(Namespaces& namespaces, std::string_view token, const Namespace*& ns,
                             std::string_view& name) {
  const std::size_t colon = token.find(':');
  if (colon == std::string_view::npos) {
    if (ns == nullptr) return &kNoPrefix;
    name = token;
    return isXMLName(name) ? nullptr : &kNotAName;
  }
  const Namespace* named = namespaces.findPrefix(token.substr(0, colon));
  if (named == nullptr) return &kUnknownPrefix;
  if (ns != nullptr && named != ns) return &kForeignPrefix;
  ns = named;
  name = token.substr(colon + 1);
  return isXMLName(name) ? nullptr : &kNotAName;
}

// A value in quotes, which are doubled inside.
bool takeValue(Scanner& scanner, std::string& value) {
  const char quote = scanner.atEnd() ? '\0' : scanner.rest.front();
  if (quote != '"' && quote != '\'') return false;
  do {
    scanner.take(quote);
    const std::size_t end = scanner.rest.find(quote);
    if (end == std::string_view::npos) return false;
    value.append(scanner.rest.substr(0, end));
    scanner.rest.remove_prefix(end + 1);
    if (!scanner.atEnd() && scanner.rest.front() == quote) value += quote;
  } while (!scanner.atEnd() && scanner.rest.front() == quote);
  return true;
}

const PathProblem* takeSelector(Namespaces& namespaces, Scanner& scanner, Step& step) {
  if (scanner.take("last()")) {
    step.kind = Step::Kind::kLastItem;
    return scanner.take(']') ? nullptr : &kBadSelector;
  }
  if (!scanner.atEnd() && scanner.rest.front() >= '0' && scanner.rest.front() <= '9') {
    step.kind = Step::Kind::kItem;
    for (const char c : scanner.takeUntil("]")) {
      if (c < '0' || c > '9') return &kBadSelector;
      step.index = step.index * 10 + static_cast<std::size_t>(c - '0');
      if (step.index > INT32_MAX) return &kOutsideArray;
    }
    if (!scanner.take(']')) return &kBadSelector;
    return step.index != 0 ? nullptr : &kOutsideArray;
  }
  step.kind = scanner.take('?') ? Step::Kind::kByQualifier : Step::Kind::kByField;
  if (const PathProblem* problem = splitName(namespaces, scanner.takeUntil("=]"), step.ns, step.name)) return problem;
  std::string value;
  if (!scanner.take('=') || !takeValue(scanner, value) || !scanner.take(']')) return &kBadSelector;
  step.value = repairText(value);
  if (isLanguageSelector(step)) {
    if (!isLanguageTag(step.value)) return &kNotALanguage;
    step.value = normalizeLanguage(step.value);
  }
  return nullptr;
}

const PathProblem* takeStep(Namespaces& namespaces, Scanner& scanner, Step& step) {
  if (scanner.take('[')) return takeSelector(namespaces, scanner, step);
  if (!scanner.take('/')) return &kNoStep;
  step.kind = scanner.take('?') ? Step::Kind::kQualifier : Step::Kind::kField;
  return splitName(namespaces, scanner.takeUntil("/["), step.ns, step.name);
}

const PathProblem* addStep(Step step, Path& path) {
  if (path.steps.size() + 2 > kDepthLimit) return &kBelowLimit;
  path.steps.push_back(std::move(step));
  return nullptr;
}

void requireTexts(const char* schema, const char* text) {
  if (schema == nullptr) throw ToolkitError(ErrorId::kBadParameter, "the schema is null");
  if (text == nullptr) throw ToolkitError(ErrorId::kBadParameter, "the property name is null");
}

const PathProblem* addNamedStep(Step::Kind kind, Namespaces& namespaces, const char* schema, const char* name,
                                Path& path) {
  requireTexts(schema, name);
  Step step{.kind = kind, .ns = namespaces.find(schema), .name = {}, .value = {}};
  if (step.ns == nullptr) return &kUnknownSchema;
  if (const PathProblem* problem = splitName(namespaces, name, step.ns, step.name)) return problem;
  return addStep(std::move(step), path);
}

const PathProblem* parseSteps(Namespaces& namespaces, const Namespace* ns, std::string_view text, Path& path) {
  Scanner scanner{text};
  std::string_view name;
  if (const PathProblem* problem = splitName(namespaces, scanner.takeUntil("/["), ns, name)) return problem;
  path.top = NameKey(ns, name);
  while (!scanner.atEnd()) {
    Step step{.kind = Step::Kind::kField, .name = {}, .value = {}};
    if (const PathProblem* problem = takeStep(namespaces, scanner, step)) return problem;
    if (const PathProblem* problem = addStep(std::move(step), path)) return problem;
  }
  return nullptr;
}

bool isSelected(const Node* item, const Step& step) noexcept {
  const Node* named = nullptr;
  if (step.kind == Step::Kind::kByQualifier) {
    named = item->qualifiers.find(step.ns, step.name);
  } else if (item->isStruct()) {
    named = item->children.find(step.ns, step.name);
  }
  return named != nullptr && named->isSimple() && named->value() == step.value;
}

void appendName(std::string& text, const Namespace* ns, std::string_view name) {
  text += ns->prefix;
  text += ':';
  text += name;
}

}  // namespace

bool isLanguageSelector(const Step& step) noexcept {
  return step.kind == Step::Kind::kByQualifier && step.ns == wellKnown().xml && step.name == "lang";
}

const PathProblem* parseOtherPath(Namespaces& namespaces, const char* schema, const char* text, Path& path) {
  requireTexts(schema, text);
  const Namespace* ns = namespaces.find(schema);
  if (ns == nullptr) return &kUnknownSchema;
  const std::size_t plainLength = plainNameLength(text);
  if (plainLength == 0) return parseSteps(namespaces, ns, text, path);
  path.top = NameKey(ns, {text, plainLength});
  namespaces.remember(path.top);
  return nullptr;
}

const PathProblem* addFieldStep(Namespaces& namespaces, const char* schema, const char* name, Path& path) {
  return addNamedStep(Step::Kind::kField, namespaces, schema, name, path);
}

const PathProblem* addQualifierStep(Namespaces& namespaces, const char* schema, const char* name, Path& path) {
  return addNamedStep(Step::Kind::kQualifier, namespaces, schema, name, path);
}

const PathProblem* addItemStep(std::int32_t index, Path& path) {
  Step step{.kind = Step::Kind::kLastItem, .name = {}, .value = {}};
  if (index != kXMPLastItem) {
    if (index < 1) return &kOutsideArray;
    step.kind = Step::Kind::kItem;
    step.index = static_cast<std::size_t>(index);
  }
  return addStep(std::move(step), path);
}

void raiseProblem(const PathProblem& problem, std::string_view text) {
  throw ToolkitError(problem.id, "'" + repairText(text) + "': " + problem.reason);
}

void raisePathProblem(const PathProblem& problem, const char* schema, const char* text) {
  raiseProblem(problem, &problem == &kUnknownSchema ? schema : text);
}

Node* followStep(const Node* node, const Step& step) noexcept {
  switch (step.kind) {
    case Step::Kind::kField:
      return node->isStruct() ? node->children.find(step.ns, step.name) : nullptr;
    case Step::Kind::kQualifier:
      return node->qualifiers.find(step.ns, step.name);
    case Step::Kind::kItem:
      return node->isArray() ? node->children.at(step.index - 1) : nullptr;
    case Step::Kind::kLastItem:
      return node->isArray() ? node->children.last() : nullptr;
    case Step::Kind::kByField:
    case Step::Kind::kByQualifier:
      break;
  }
  if (!node->isArray()) return nullptr;
  for (Node* item = node->children.first(); item != nullptr; item = item->next) {
    if (isSelected(item, step)) return item;
  }
  return nullptr;
}

Node* findNode(const Object& object, const Path& path) noexcept {
  const Node* schema = object.findSchema(path.schema());
  Node* node = schema != nullptr ? schema->children.find(path.top) : nullptr;
  for (const Step& step : path.steps) {
    if (node == nullptr) break;
    node = followStep(node, step);
  }
  return node;
}

std::string pathText(const Path& path) {
  std::string text(path.name());
  for (const Step& step : path.steps) {
    switch (step.kind) {
      case Step::Kind::kField:
        text += '/';
        appendName(text, step.ns, step.name);
        continue;
      case Step::Kind::kQualifier:
        text += "/?";
        appendName(text, step.ns, step.name);
        continue;
      case Step::Kind::kItem:
        text += '[';
        text += std::to_string(step.index);
        break;
      case Step::Kind::kLastItem:
        text += "[last()";
        break;
      case Step::Kind::kByField:
      case Step::Kind::kByQualifier:
        text += step.kind == Step::Kind::kByField ? "[" : "[?";
        appendName(text, step.ns, step.name);
        text += "=\"";
        for (const char c : step.value) text.append(c == '"' ? 2 : 1, c);
        text += '"';
        break;
    }
    text += ']';
  }
  return text;
}

}  // namespace velto
