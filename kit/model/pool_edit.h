// Changing a pool after it was read: values from text, new items in the place where a namespace lives, deletion.
#ifndef LXBRIDGE_KIT_MODEL_POOL_EDIT_H_
#define LXBRIDGE_KIT_MODEL_POOL_EDIT_H_

#include <cstdint>

#include "kit/model/pool.h"

// Gives the item this identity and value. Namespace, name and type name are kept as they are given, not copied.
// kLxOk; kLxBadParameter for a null item, names no table holds or a text that makes no value (item unchanged);
// kLxOutOfMemory.
[[nodiscard]] LxResult LxSetMetadataFromText(LxMetadataItem* item, const char* nameSpace, const char* name,
                                             const char* typeName, const char* text) noexcept;

// A fresh item (empty namespace and name) in front of the namespace's first item, or in a container newly made for the
// namespace. kLxOk, kLxNotImplemented, kLxOutOfMemory, kLxBadParameter.
[[nodiscard]] LxResult LxNewItemInNamespace(LxMetadataPool* pool, const char* nameSpace, LxMetadataItem** out) noexcept;

// The item whose children the namespace's items are to be.
[[nodiscard]] LxResult LxMakeNamespaceContainer(LxMetadataPool* pool, const char* nameSpace,
                                                LxMetadataItem** out) noexcept;

enum LxPutMode : std::int32_t {
  kLxPutAlways = 1,
  kLxPutReplaceOnly = 2,
  kLxPutReplaceOrAdd = 3,
  kLxPutIfMissing = 4,
};
[[nodiscard]] LxResult LxPutMetadata(LxMetadataPool* pool, const char* nameSpace, const char* name,
                                     const char* typeName, const char* text, std::int32_t mode) noexcept;

// Marks the first matching item deleted; kLxNotFound when none matches.
LxResult LxDeleteMetadata(LxMetadataPool* pool, const char* nameSpace, const char* name, const char* ignored,
                          const char* displayText) noexcept;

// Marks deleted, from an item on over its siblings and everything below, what is longer than `limit` bytes and has no
// name or a generated one.
void LxDeleteLargeUnnamed(LxMetadataItem* first, std::int32_t limit) noexcept;

// Marks deleted the display items that are blank "ascii" texts, and a blank UserComment.
void LxDeleteBlankText(LxMetadataPool* pool) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_POOL_EDIT_H_
