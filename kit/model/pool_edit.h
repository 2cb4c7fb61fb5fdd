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

// A fresh item (empty namespace and name) before the namespace's first live item, whose record it takes over: that
// item's contents move to a record of their own. Without such an item, the first child of a container that is made for
// the namespace. kLxOk; kLxOutOfMemory; else what LxMakeNamespaceContainer gives. *out is set with kLxOk alone.
[[nodiscard]] LxResult LxNewItemInNamespace(LxMetadataPool* pool, const char* nameSpace, LxMetadataItem** out) noexcept;

// Makes the item whose children the namespace's items are to be, with the items above it that the kind of file asks
// for. kLxOk; kLxBadParameter for a namespace that files of the pool's kind have no place for; kLxNotImplemented for a
// root of another layout; kLxOutOfMemory.
[[nodiscard]] LxResult LxMakeNamespaceContainer(LxMetadataPool* pool, const char* nameSpace,
                                                LxMetadataItem** out) noexcept;

// The item is looked for by namespace and name.
enum LxPutMode : std::int32_t {
  kLxPutAlways = 1,        // Adds an item, whether or not there is one.
  kLxPutReplaceOnly = 2,   // Changes the item; kLxNotFound without one.
  kLxPutReplaceOrAdd = 3,  // Changes the item, or adds one.
  kLxPutIfMissing = 4,     // Adds an item where there is none; else changes nothing.
};
// With a null name the item is made or looked for and not filled. The result is that of the last step;
// kLxNotImplemented for another mode. REQUIRES: namespace, name and type name outlive the pool.
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
