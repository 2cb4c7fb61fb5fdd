// The standard's array properties and their forms.
#ifndef LXBRIDGE_OUTSIDE_XMP_PROPERTY_FORMS_H_
#define LXBRIDGE_OUTSIDE_XMP_PROPERTY_FORMS_H_

#include <cstdint>
#include <string_view>

#include "outside/xmp/registry.h"

namespace velto {

// The form bits, including implied ones and kXMPPropIsAltText; 0 for a property that is not an array or not known.
std::uint32_t standardForm(const Namespace* schema, std::string_view name) noexcept;

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PROPERTY_FORMS_H_
