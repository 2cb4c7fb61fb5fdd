// Post-processing of a pool that has been read. The order of the steps matters: blank and oversized items are deleted
// before the pool is checked for display items, and the camera's own rotation is applied before the orientation is set
// from it.
#include "kit/readers/post_process.h"

#include <iterator>

#include "kit/model/find_items.h"
#include "kit/model/pool_edit.h"
#include "kit/model/pool_walk.h"
#include "kit/model/value.h"

namespace {

// Longer unnamed values are of no use and only slow down walks.
constexpr std::int32_t kLargestUnnamed = 256;

// The items needed by the steps, found in one walk.
enum Wanted {
  kLayerState,
  kLayersGroup,
  kTiffLayers,
  kRotation,
  kOrientation,
  kSrgb,
  kSegmentProfile,
  kTiffProfile,
  kResourceProfile,
  kWantedCount
};

bool HasLayers(const LxWantedItem* wanted) noexcept {
  const LxMetadataItem* state = wanted[kLayerState].found;
  for (std::int32_t i = 0; state != nullptr && state->value != nullptr && i < 2 && i < state->valueLength; ++i) {
    if (state->value[i] != 0) return true;
  }
  const LxMetadataItem* group = wanted[kLayersGroup].found;
  return (group != nullptr && group->valueLength > 2) || wanted[kTiffLayers].found != nullptr;
}

// The result of a search before the deletions, as the search would find it after them. An item that was not deleted is
// still the first of its name.
LxMetadataItem* FoundStill(LxMetadataPool* pool, const LxWantedItem& wanted) noexcept {
  if (wanted.found == nullptr || (wanted.found->flags & kLxDeleted) == 0) return wanted.found;
  return LxFindItemInTree(pool->root, wanted.nameSpace, wanted.name, wanted.displayText);
}

bool HasDisplayItem(const LxMetadataPool* pool) noexcept {
  LxPoolIterator iterator;
  LxStartPoolWalk(&iterator, pool);
  LxMetadataItem* item = nullptr;
  return LxNextDisplayItem(&iterator, &item) == kLxOk;
}

// Some cameras store the orientation only in their maker note, in degrees within a block of raw data. Null: none.
const char* OrientationOfRotation(const LxMetadataItem* rotation) noexcept {
  constexpr std::int32_t kAt = 1369;
  if (rotation == nullptr || rotation->value == nullptr || rotation->typeCode != kLxTypeUndefined ||
      rotation->valueLength <= kAt + 1) {
    return nullptr;
  }
  switch (rotation->value[kAt + 1] * 256 + rotation->value[kAt]) {
    case 0:
      return "1";
    case 90:
      return "8";
    case 180:
      return "3";
    case 270:
      return "6";
    default:
      return nullptr;
  }
}

// TIFF 6.0, section 8: Orientation.
std::int32_t OrientationOf(const LxMetadataItem* item) noexcept {
  constexpr LxOrientation kByValue[] = {kLxRot0,      kLxRot0,    kLxRotM0,    kLxRot180,  kLxRotM180,
                                        kLxRotM270Cw, kLxRot90Cw, kLxRotM90Cw, kLxRot270Cw};
  const std::uint32_t value = item != nullptr ? LxGetFirstValue(item) : 0;
  return value < std::size(kByValue) ? kByValue[value] : kLxRot0;
}

}  // namespace

void LxPostProcessPool(LxMetadataPool* pool) noexcept {
  LxWantedItem wanted[kWantedCount] = {
      {"ir", "LayerState", nullptr},     {"ir", "LayersGroup", nullptr},         {"tiff", "PicturistLayers", nullptr},
      {"nikon", "NikonRotate", nullptr}, {"tiff", "Orientation", nullptr},       {"exif", "ColorSpace", "sRGB"},
      {"jpeg", "APP2", "ICC_PROFILE"},   {"tiff", "InterColorProfile", nullptr}, {"ir", "ICCProfile", nullptr}};
  LxFindItems(pool->root, wanted, kWantedCount);
  if (HasLayers(wanted)) pool->hasLayers = 1;

  LxDeleteBlankText(pool);
  LxDeleteLargeUnnamed(pool->root, kLargestUnnamed);
  if (HasDisplayItem(pool)) pool->hasMetadata = 1;

  const LxMetadataItem* orientation = FoundStill(pool, wanted[kOrientation]);
  if (const char* rotated = OrientationOfRotation(FoundStill(pool, wanted[kRotation]))) {
    // Without memory, the file's own orientation and the reader's result stay: a value that could not be added is no
    // reason to lose the file's metadata.
    (void)LxPutMetadata(pool, "tiff", "Orientation", "short", rotated, kLxPutReplaceOrAdd);
    orientation = LxFindItemInTree(pool->root, "tiff", "Orientation", nullptr);
  }
  pool->orientation = OrientationOf(orientation);

  const bool unsettled = pool->colourModel == kLxColourUnknown || pool->colourModel == kLxColourRgb ||
                         pool->colourModel == kLxColourRgbIcc;
  if (unsettled && FoundStill(pool, wanted[kSrgb]) != nullptr) pool->colourModel = kLxColourSrgb;
  if (FoundStill(pool, wanted[kSegmentProfile]) == nullptr && FoundStill(pool, wanted[kTiffProfile]) == nullptr &&
      FoundStill(pool, wanted[kResourceProfile]) == nullptr) {
    return;
  }
  if (pool->colourModel == kLxColourRgb || pool->colourModel == kLxColourSrgb) pool->colourModel = kLxColourRgbIcc;
  if (pool->colourModel == kLxColourRgbAlpha) pool->colourModel = kLxColourRgbIccAlpha;
}
