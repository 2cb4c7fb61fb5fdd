// The place of a path in an object, and the nodes that are missing on the way there. All operations that change an
// object build on this.
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
  Node* node;           // The last node of the path that exists; null when not even the schema does.
  std::size_t missing;  // How many nodes of the path are missing after it; 0: none.
};

// Raises when the path leads through a node of another form, or to an item that could not be made.
Place locate(const Object& object, const Path& path);

// A node that may stand at the end of the path (an item without a name, or a node of the last step's), in no tree yet.
NodePtr makeLeaf(Object& object, const Path& path, std::uint32_t form, std::string_view value = {});
// Puts a node of makeLeaf at the end of the path and makes the missing nodes on the way: structs, and arrays of known
// form.
Node* attach(Object& object, const Path& path, const Place& place, NodePtr leaf);

// Of an rdf:Alt, the item that has become x-default moves to the front.
void settleLanguage(Node* item) noexcept;

// Raises kTooDeep when a tree of that height does not fit at the path.
void checkDepth(const Path& path, std::uint32_t height);
// In its usual case. Raises kBadLanguage.
std::string checkedLanguage(std::string_view language);
// Whether the path ends at an xml:lang.
bool isLanguagePath(const Path& path) noexcept;

[[noreturn]] void raiseAt(ErrorId id, const Path& path, const char* what);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PLACE_H_
