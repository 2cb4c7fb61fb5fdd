// Finds the place of a path in an object and creates missing nodes on the way. All changes to an object are built on
// this.
#ifndef LXBRIDGE_OUTSIDE_XMP_PLACE_H_
#define LXBRIDGE_OUTSIDE_XMP_PLACE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "outside/xmp/errors.h"
#include "outside/xmp/model.h"
#include "outside/xmp/path.h"

namespace velto {

struct Place {
  Node* node;           // The last existing node of the path; null if not even the schema exists.
  std::size_t missing;  // The number of path nodes missing after it; 0: none.
};

// Raises if the path leads through a node of another form, or to an item that cannot be created.
Place locate(const Object& object, const Path& path);

// A node for the end of the path (an item, which has no name, or a node of the last step's name), not yet in a tree.
NodePtr makeLeaf(Object& object, const Path& path, std::uint32_t form, std::string_view value = {});
// Puts a node from makeLeaf at the end of the path and creates the missing nodes on the way: structs, and arrays of
// known form.
Node* attach(Object& object, const Path& path, const Place& place, NodePtr leaf);

// Moves an item that has become x-default to the front of its rdf:Alt.
void settleLanguage(Node* item) noexcept;

// Raises kTooDeep if a tree of that height does not fit at the path.
void checkDepth(const Path& path, std::uint32_t height);
// The tag in its usual case. Raises kBadLanguage.
std::string checkedLanguage(std::string_view language);
// Whether the path ends at an xml:lang.
bool isLanguagePath(const Path& path) noexcept;

[[noreturn]] void raiseAt(ErrorId id, const Path& path, const char* what);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PLACE_H_
