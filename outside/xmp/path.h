// Property paths: "name" or "prefix:name", followed by any number of "/prefix:field", "/?prefix:qualifier", "[n]",
// "[last()]", "[prefix:field="value"]" and "[?prefix:qualifier="value"]". Values are quoted by " or ', which is doubled
// inside.
#ifndef LXBRIDGE_OUTSIDE_XMP_PATH_H_
#define LXBRIDGE_OUTSIDE_XMP_PATH_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "outside/xmp/errors.h"
#include "outside/xmp/model.h"

namespace velto {

struct Step {
  enum class Kind { kField, kQualifier, kItem, kLastItem, kByField, kByQualifier };

  Kind kind;
  const Namespace* ns = nullptr;  // Fields, qualifiers, and selectors by these.
  std::string_view name;          // The same. Points into the parsed text.
  std::string value;              // Selectors.
  std::size_t index = 0;          // Items: from 1.
};

struct Path {
  NameKey top;              // The top-level property; its namespace is the schema.
  std::vector<Step> steps;  // The steps from the property on.

  const Namespace* schema() const noexcept { return top.ns; }
  std::string_view name() const noexcept { return top.name; }
};

// Why a text is not a path, or not the path of a possible property.
struct PathProblem {
  ErrorId id;
  const char* reason;
};

// parsePath for all names except the one remembered last.
const PathProblem* parseOtherPath(Namespaces& namespaces, const char* schema, const char* text, Path& path);
[[noreturn]] void raisePathProblem(const PathProblem& problem, const char* schema, const char* text);

// Null, or the problem: asking for a property that cannot exist is not an error, so nothing is raised and no message is
// built. Raises kBadParameter for null texts. The path borrows the texts' bytes. Prefixes and schemas are looked up in
// `namespaces`.
inline const PathProblem* parsePath(Namespaces& namespaces, const char* schema, const char* text, Path& path) {
  if (schema != nullptr && text != nullptr && namespaces.isRemembered(schema, text)) {
    path.top = namespaces.remembered();
    path.top.name = {text, path.top.name.size()};
    return nullptr;
  }
  return parseOtherPath(namespaces, schema, text, path);
}
// Appends a step to a field or qualifier whose name is given separately.
const PathProblem* addFieldStep(Namespaces& namespaces, const char* schema, const char* name, Path& path);
const PathProblem* addQualifierStep(Namespaces& namespaces, const char* schema, const char* name, Path& path);
// kXMPLastItem, or counted from 1.
const PathProblem* addItemStep(std::int32_t index, Path& path);

// The same, but raises the problem.
inline Path requirePath(Namespaces& namespaces, const char* schema, const char* text) {
  Path path;
  if (const PathProblem* problem = parsePath(namespaces, schema, text, path)) raisePathProblem(*problem, schema, text);
  return path;
}
[[noreturn]] void raiseProblem(const PathProblem& problem, std::string_view text);

// The node at the path, or null.
Node* findNode(const Object& object, const Path& path) noexcept;
// Follows one step from an existing node; null: there is no such node, or the node's form allows no such step.
Node* followStep(const Node* node, const Step& step) noexcept;

bool isLanguageSelector(const Step& step) noexcept;

// The path with "prefix:name" for each step, using the object's prefixes, and values in "; without the prefix of the
// property itself.
std::string pathText(const Path& path);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PATH_H_
