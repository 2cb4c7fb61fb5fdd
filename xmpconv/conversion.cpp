#include "xmpconv/conversion.h"

namespace {

struct PartnerName {
  const char* nameSpace;
  const char* name;
};

// clang-format off
constexpr PartnerName kPartnerNames[] = {  // In the order of LxPartner.
    {"",     ""},
    {"exif", "SubSecTime"},
    {"exif", "SubSecTimeOriginal"},
    {"exif", "SubSecTimeDigitized"},
    {"gps",  "GPSLatitudeRef"},
    {"gps",  "GPSLongitudeRef"},
    {"gps",  "GPSDestLatitudeRef"},
    {"gps",  "GPSDestLongitudeRef"},
    {"gps",  "GPSDateStamp"},
};
// clang-format on
static_assert(sizeof(kPartnerNames) / sizeof(PartnerName) == static_cast<std::size_t>(LxPartner::kCount));

}  // namespace

const LxMetadataItem* LxConversion::Find(LxPartner partner) noexcept {
  const auto index = static_cast<std::size_t>(partner);
  auto& entry = partners_[index];
  if (!entry.searched) {
    LxMetadataItem* found = nullptr;
    if (LxFindMetadata(&pool_, kPartnerNames[index].nameSpace, kPartnerNames[index].name, "", "", &found) == kLxOk) {
      entry.item = found;
    }
    entry.searched = true;
  }
  return entry.item;
}

bool LxConversion::TakeArrayItems(std::uint64_t count) noexcept {
  if (count > arrayItemsLeft_) return false;
  arrayItemsLeft_ -= count;
  return true;
}
