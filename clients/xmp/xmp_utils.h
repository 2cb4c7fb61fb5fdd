// The toolkit's utilities, as far as this library uses them.
#ifndef LXBRIDGE_CLIENTS_XMP_XMP_UTILS_H_
#define LXBRIDGE_CLIENTS_XMP_XMP_UTILS_H_

#include <cstdint>
#include <string>

#include "clients/xmp/xmp_abi.h"

class CXMPMeta;

// All raise CTALError with the toolkit's error if it refuses, and otherwise as XMPUtilsTable does (xmp_client.h).
class XMPUtils {
 public:
  static void ComposeStructFieldPath(const char* schema, const char* structName, const char* fieldSchema,
                                     const char* field, std::string* path);
  // Sets the zone fields to the machine's zone at that date.
  static void SetTimeZone(XMPDateTime* value);
  // Empty name: the whole schema. Raises std::logic_error "XMP error" if there is no object.
  static void RemoveProperties(const CXMPMeta* meta, const char* schema, const char* name, std::uint32_t options = 0);
  // Adds the source's top-level properties that the target does not have; arrays are not merged. Raises as
  // RemoveProperties does.
  static void AppendProperties(const CXMPMeta* source, const CXMPMeta* target);
};

#endif  // LXBRIDGE_CLIENTS_XMP_XMP_UTILS_H_
