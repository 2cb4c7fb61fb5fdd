// Property paths: "name", "prefix:name" followed by any number of "/prefix:field", "/?prefix:qualifier", "[n]",
// "[last()]", "[prefix:field="value"]" and "[?prefix:qualifier="value"]". Values stand in " or ' and double it where
// they contain it.
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
  const Namespace* ns = nullptr;  // Fields, qualifiers and selectors by them.
  std::string_view name;          // Likewise. Points into the text that was parsed.
  std::string value;              // Selectors.
  std::size_t index = 0;          // Items: from 1.
};

struct Path {
  NameKey top;              // The top-level property: its namespace is the schema.
  std::vector<Step> steps;  // What leads on from there.

  const Namespace* schema() const noexcept { return top.ns; }
  std::string_view name() const noexcept { return top.name; }
};

// Why a text is no path, or no path that a property can have.
struct PathProblem {
  ErrorId id;
  const char* reason;
};

// Null, or the problem; to ask for a property that cannot exist is no error, so nothing is raised and no message made
// here. Raises kBadParameter for null texts. The path borrows the texts' bytes. Prefixes and schemas are those of the
// namespaces.
const PathProblem* parsePath(Namespaces& namespaces, const char* schema, const char* text, Path& path);
// Appends a step to a field or qualifier whose name is given apart from the path.
const PathProblem* addFieldStep(Namespaces& namespaces, const char* schema, const char* name, Path& path);
const PathProblem* addQualifierStep(Namespaces& namespaces, const char* schema, const char* name, Path& path);
// kXMPLastItem or from 1.
const PathProblem* addItemStep(std::int32_t index, Path& path);

// The same, raising the problem.
Path requirePath(Namespaces& namespaces, const char* schema, const char* text);
[[noreturn]] void raiseProblem(const PathProblem& problem, std::string_view text);

// The node at the path, or null.
Node* findNode(const Object& object, const Path& path) noexcept;
// One step from a node that exists; null: no such node, or a node of a form that has none.
Node* followStep(const Node* node, const Step& step) noexcept;

bool isLanguageSelector(const Step& step) noexcept;

// "prefix:name" for each step with the prefixes of the object, values in ", the property's own prefix left out.
std::string pathText(const Path& path);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PATH_H_
