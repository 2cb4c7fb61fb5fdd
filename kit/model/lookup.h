// Lookups in the constant tables. Texts are compared byte for byte; the result is the entry found, or null.
#ifndef LXBRIDGE_KIT_MODEL_LOOKUP_H_
#define LXBRIDGE_KIT_MODEL_LOOKUP_H_

#include <cstdint>

#include "kit/model/tag_record.h"

[[nodiscard]] const LxNamespaceEntry* LxFindNamespace(const char* name, const LxNamespaceEntry* table) noexcept;

// The first record of that name, or the first record with an empty name, whichever comes first.
[[nodiscard]] const LxTagRecord* LxFindTagByName(const char* name, const LxTagRecord* dictionary) noexcept;
[[nodiscard]] const LxTagRecord* LxFindTagById(std::uint16_t id, const LxTagRecord* dictionary) noexcept;
[[nodiscard]] const LxTagRecord* LxFindTag(std::uint16_t id, const char* name, const LxTagRecord* dictionary) noexcept;

// The first row of that namespace, or the first with an empty one.
[[nodiscard]] const LxStructureEntry* LxFindStructureEntry(const char* nameSpace,
                                                           const LxStructureEntry* table) noexcept;

// By the low 16 bits of both values.
[[nodiscard]] const LxValueName* LxFindValueName(std::uint32_t value, const LxValueName* table) noexcept;

// 0 to 4: "tiff", "exif", "gps", "iptc", "ir"; null for any other index.
[[nodiscard]] const char* LxNamespaceName(std::int32_t index) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_LOOKUP_H_
