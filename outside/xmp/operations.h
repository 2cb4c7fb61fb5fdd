// Changes to an object, by path. Everything that can fail is done on nodes outside the object, which are then inserted,
// so an error leaves the object unchanged.
#ifndef LXBRIDGE_OUTSIDE_XMP_OPERATIONS_H_
#define LXBRIDGE_OUTSIDE_XMP_OPERATIONS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "outside/xmp/model.h"
#include "outside/xmp/path.h"

namespace velto {

// The form bits with implied bits, as nodes store them. Bits that only report (qualifiers, language) are ignored, so
// that reported options can be passed back. Raises kBadOptions for unknown and contradictory bits.
std::uint32_t checkedForm(std::uint32_t options);
std::uint32_t checkedArrayForm(std::uint32_t options);  // Must be an array.

// Sets the node at the path to a text, or with a null text to an empty array or struct. Creates missing structs on the
// way, a language alternative for [?xml:lang="..."], and an array for [1] if the standard knows its form.
Node* setNode(Object& object, const Path& path, const char* text, std::uint32_t options);
Node* appendItem(Object& object, const Path& array, std::uint32_t arrayOptions, const char* text,
                 std::uint32_t itemOptions);
// `index` as at the boundary; one past the last item appends.
Node* insertItem(Object& object, const Path& array, std::int32_t index, const char* text, std::uint32_t options);
void deleteNode(Object& object, Node* node) noexcept;

// The array at the path, or null; raises kBadForm if the node is not an array.
Node* findArray(const Object& object, const Path& path);

void appendProperties(const Object& source, Object& target, bool replace);

// --- language alternatives (languages.cpp) --------------------------------------------------------------------------

// Chooses an item by language: that of the specific language, else the first of the generic one ("en" covers "en" and
// "en-..."), else x-default, else the first. Null for an empty array. Raises kBadForm unless the array is an rdf:Alt,
// and kBadLanguage.
Node* chooseLocalized(const Path& path, const Node* array, std::string_view generic, std::string_view specific);
// Sets the item of the specific language, or the only one of the generic language; otherwise adds an item of the
// specific one. If x-default was equal to the item, it stays so. A new array always gets x-default.
void setLocalized(Object& object, const Path& path, std::string_view generic, std::string_view specific,
                  std::string_view text);
// Deletes the item that setLocalized would set, and an x-default equal to it; also the array if it becomes empty.
void deleteLocalized(Object& object, const Path& path, std::string_view generic, std::string_view specific);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_OPERATIONS_H_
