// The toolkit's utilities.
#include "clients/xmp/xmp_utils.h"

#include <stdexcept>

#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_meta.h"
#include "clients/xmp/xmp_text.h"

using TAL_T_NMT::ThrowIfError;

void XMPUtils::ComposeStructFieldPath(const char* schema, const char* structName, const char* fieldSchema,
                                      const char* field, std::string* path) {
  const XMPUtilsStatics& utils = XMPUtilsTable();
  XMPTextOut text{};
  ThrowIfError(utils.composeStructFieldPath(schema, structName, fieldSchema, field, &text));
  TakeText(text, path, [&] { return utils.unlockUtils(0); });
}

void XMPUtils::SetTimeZone(XMPDateTime* value) {
  ThrowIfError(XMPUtilsTable().setTimeZone(value));
}

void XMPUtils::RemoveProperties(const CXMPMeta* meta, const char* schema, const char* name, std::uint32_t options) {
  if (!meta || !meta->Object()) throw std::logic_error("XMP error");
  ThrowIfError(XMPUtilsTable().removeProperties(meta->Object(), schema, name, options));
}

void XMPUtils::AppendProperties(const CXMPMeta* source, const CXMPMeta* target) {
  if (!source || !source->Object() || !target || !target->Object()) throw std::logic_error("XMP error");
  ThrowIfError(XMPUtilsTable().appendProperties(source->Object(), target->Object(), 0));
}
