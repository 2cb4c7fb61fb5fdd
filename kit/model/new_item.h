// Creating items. Inline, because readers create every item through these functions.
#ifndef LXBRIDGE_KIT_MODEL_NEW_ITEM_H_
#define LXBRIDGE_KIT_MODEL_NEW_ITEM_H_

#include <cstdint>

#include "kit/model/pool.h"
#include "kit/model/value.h"

// Sets all fields of an item.
inline void LxFillItem(LxMetadataItem* item, LxItemSlab* slab, const char* nameSpace, const char* name,
                       std::uint32_t flags, std::uint16_t tagId, std::uint16_t typeCode, std::int32_t valueLength,
                       const std::uint8_t* value) noexcept {
  *item = LxMetadataItem{
      .nameSpace = nameSpace,
      .name = name,
      .label = nullptr,
      .typeName = LxTypeName(typeCode),
      .displayText = "",
      .valueLabel = nullptr,
      .next = nullptr,
      .firstChild = nullptr,
      .flags = flags,
      .tagId = tagId,
      .typeCode = typeCode,
      .valueLength = valueLength,
      .value = value,
      .slab = slab,
  };
}

// As LxNewMetadataItem, but takes the record from *slab, which may be null and is replaced by a new slab when full.
// REQUIRES: *slab is null or has a live item.
[[nodiscard]] inline LxMetadataItem* LxNewSlabItem(LxItemSlab** slab, const char* nameSpace, const char* name,
                                                   std::uint32_t flags, std::uint16_t tagId, std::uint16_t typeCode,
                                                   std::int32_t valueLength, const std::uint8_t* value) noexcept {
  if ((*slab == nullptr || (*slab)->used == kLxItemsPerSlab) && !LxBeginSlab(slab)) return nullptr;
  LxMetadataItem* item = &(*slab)->items[(*slab)->used++];
  ++(*slab)->live;
  LxFillItem(item, *slab, nameSpace, name, flags, tagId, typeCode, valueLength, value);
  return item;
}

#endif  // LXBRIDGE_KIT_MODEL_NEW_ITEM_H_
