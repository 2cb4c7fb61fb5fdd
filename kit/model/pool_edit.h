// Changing a pool after reading: setting values from text, adding and deleting items.
#ifndef LXBRIDGE_KIT_MODEL_POOL_EDIT_H_
#define LXBRIDGE_KIT_MODEL_POOL_EDIT_H_

#include <cstdint>

#include "kit/model/pool.h"

// Sets the item's namespace, name and value. Namespace, name and type name are stored as pointers, not copied; the
// value is parsed from the text as LxParseValueText does. kLxOk; kLxBadParameter for a null item, a name that is in no
// table or a text that gives no value (the item does not change); kLxOutOfMemory. REQUIRES: namespace, name and type
// name outlive the item.
[[nodiscard]] LxResult LxSetMetadataFromText(LxMetadataItem* item, const char* nameSpace, const char* name,
                                             const char* typeName, const char* text) noexcept;

// Adds an item with empty namespace and name before the namespace's first live item. The new item takes over that
// item's record, and that item's contents move to a record of their own: pointers to it then point to the new item.
// Without such an item, the new one becomes the first child of the namespace's container, which is created if
// necessary. kLxOk; kLxBadParameter for an empty namespace; kLxOutOfMemory; else a result of LxMakeNamespaceContainer.
// *out is null unless the result is kLxOk.
[[nodiscard]] LxResult LxNewItemInNamespace(LxMetadataPool* pool, const char* nameSpace, LxMetadataItem** out) noexcept;

// Creates the item whose children are the namespace's items, and the items above it that the file's kind requires.
// kLxOk; kLxBadParameter for a namespace that has no place in files of the pool's kind; kLxNotImplemented if files with
// this root cannot be edited; kLxOutOfMemory.
[[nodiscard]] LxResult LxMakeNamespaceContainer(LxMetadataPool* pool, const char* nameSpace,
                                                LxMetadataItem** out) noexcept;

// How LxPutMetadata treats an existing item of the namespace and name.
enum LxPutMode : std::int32_t {
  kLxPutAlways = 1,        // Adds an item, whether or not one exists.
  kLxPutReplaceOnly = 2,   // Changes the existing item; kLxNotFound without one.
  kLxPutReplaceOrAdd = 3,  // Changes the existing item, or adds one.
  kLxPutIfMissing = 4,     // Adds an item if there is none; else changes nothing.
};
// Adds or changes an item; with a null name the item is found or added but not filled. Returns the result of the last
// step, or kLxNotImplemented for an unknown mode. REQUIRES: namespace, name and type name outlive the pool.
[[nodiscard]] LxResult LxPutMetadata(LxMetadataPool* pool, const char* nameSpace, const char* name,
                                     const char* typeName, const char* text, std::int32_t mode) noexcept;

// Marks the first matching item deleted; kLxNotFound if none matches. The fourth argument is ignored.
LxResult LxDeleteMetadata(LxMetadataPool* pool, const char* nameSpace, const char* name, const char* ignored,
                          const char* displayText) noexcept;

// Of the item, its following siblings and all their descendants, marks those deleted whose value is longer than `limit`
// bytes and whose name is empty or generated.
void LxDeleteLargeUnnamed(LxMetadataItem* first, std::int32_t limit) noexcept;

// Marks display items of type "ascii" deleted if they are blank, and a blank UserComment.
void LxDeleteBlankText(LxMetadataPool* pool) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_POOL_EDIT_H_
