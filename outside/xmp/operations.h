// Changes to an object, by path. Everything that can fail is done on nodes apart from the object, which are then put
// into it, so that an error leaves the object as it was.
#ifndef LXBRIDGE_OUTSIDE_XMP_OPERATIONS_H_
#define LXBRIDGE_OUTSIDE_XMP_OPERATIONS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "outside/xmp/model.h"
#include "outside/xmp/path.h"

namespace velto {

// The form bits with what they imply, as nodes store them. Bits that only report (qualifiers, language) are passed
// over, so that options that were got can be set. Raises kBadOptions for unknown and contradicting bits.
std::uint32_t checkedForm(std::uint32_t options);
std::uint32_t checkedArrayForm(std::uint32_t options);  // Must be an array.

// Sets the node at the path: a text, or with a null text an empty array or struct. Structs on the way are made, a
// language alternative is made for [?xml:lang="..."], an array for [1] where the standard knows its form.
Node* setNode(Object& object, const Path& path, const char* text, std::uint32_t options);
Node* appendItem(Object& object, const Path& array, std::uint32_t arrayOptions, const char* text,
                 std::uint32_t itemOptions);
// `index` as at the boundary; one after the last item appends.
Node* insertItem(Object& object, const Path& array, std::int32_t index, const char* text, std::uint32_t options);
void deleteNode(Object& object, Node* node) noexcept;

// The array at the path, or null; raises kBadForm when something else is there.
Node* findArray(const Object& object, const Path& path);

void appendProperties(const Object& source, Object& target, bool replace);

// --- language alternatives (languages.cpp) --------------------------------------------------------------------------

// Which item answers to the languages: the specific one, else the first of the generic one ("en" stands for "en" and
// "en-..."), else x-default, else the first. Null for an empty array. Raises kBadForm unless the array is an rdf:Alt,
// kBadLanguage.
Node* chooseLocalized(const Path& path, const Node* array, std::string_view generic, std::string_view specific);
// Sets the item of the specific language, or the only one of the generic language; otherwise adds one of the specific.
// Where x-default and the item were alike they stay alike. A new array gets x-default in any case.
void setLocalized(Object& object, const Path& path, std::string_view generic, std::string_view specific,
                  std::string_view text);
// Deletes the item that setLocalized would set, and an x-default that was like it; the array too when nothing is left.
void deleteLocalized(Object& object, const Path& path, std::string_view generic, std::string_view specific);

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_OPERATIONS_H_
