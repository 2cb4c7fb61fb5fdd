// Lookups in the constant tables: linear searches up to the end record, since the first match in table order counts and
// some tables hold an id twice.
#include "kit/model/lookup.h"

#include <cstring>

namespace {

bool Same(const char* a, const char* b) noexcept {
  return std::strcmp(a, b) == 0;
}

}  // namespace

const LxNamespaceEntry* LxFindNamespace(const char* name, const LxNamespaceEntry* table) noexcept {
  if (name == nullptr || table == nullptr) return nullptr;
  for (const LxNamespaceEntry* entry = table; entry->nameSpace != nullptr; ++entry) {
    if (Same(entry->nameSpace, name)) return entry;
  }
  return nullptr;
}

const LxTagRecord* LxFindTagByName(const char* name, const LxTagRecord* dictionary) noexcept {
  if (name == nullptr || dictionary == nullptr) return nullptr;
  for (const LxTagRecord* record = dictionary; record->name != nullptr; ++record) {
    if (record->name[0] == 0 || Same(record->name, name)) return record;
  }
  return nullptr;
}

const LxTagRecord* LxFindTagById(std::uint16_t id, const LxTagRecord* dictionary) noexcept {
  if (dictionary == nullptr) return nullptr;
  for (const LxTagRecord* record = dictionary; record->name != nullptr; ++record) {
    if (record->id == id) return record;
  }
  return nullptr;
}

const LxTagRecord* LxFindTag(std::uint16_t id, const char* name, const LxTagRecord* dictionary) noexcept {
  if (name == nullptr || dictionary == nullptr) return nullptr;
  for (const LxTagRecord* record = dictionary; record->name != nullptr; ++record) {
    if (record->id == id && Same(record->name, name)) return record;
  }
  return nullptr;
}

const LxStructureEntry* LxFindStructureEntry(const char* nameSpace, const LxStructureEntry* table) noexcept {
  if (nameSpace == nullptr || table == nullptr) return nullptr;
  for (const LxStructureEntry* entry = table; entry->nameSpace != nullptr; ++entry) {
    if (entry->nameSpace[0] == 0 || Same(entry->nameSpace, nameSpace)) return entry;
  }
  return nullptr;
}

const LxValueName* LxFindValueName(std::uint32_t value, const LxValueName* table) noexcept {
  if (table == nullptr) return nullptr;
  for (const LxValueName* entry = table; entry->name != nullptr; ++entry) {
    if ((entry->value & 0xFFFF) == (value & 0xFFFF)) return entry;
  }
  return nullptr;
}

const char* LxNamespaceName(std::int32_t index) noexcept {
  constexpr const char* kNames[] = {"tiff", "exif", "gps", "iptc", "ir"};
  return index >= 0 && index < 5 ? kNames[index] : nullptr;
}
