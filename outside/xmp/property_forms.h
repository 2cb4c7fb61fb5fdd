// Which of the standard's properties are arrays, and of which form.
#ifndef LXBRIDGE_OUTSIDE_XMP_PROPERTY_FORMS_H_
#define LXBRIDGE_OUTSIDE_XMP_PROPERTY_FORMS_H_

#include <cstdint>
#include <string_view>

#include "outside/xmp/registry.h"

namespace velto {

// The form bits with what they imply, kXMPPropIsAltText too; 0 for a property that is no array, or that is not known.
std::uint32_t standardForm(const Namespace* schema, std::string_view name) noexcept;

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PROPERTY_FORMS_H_
