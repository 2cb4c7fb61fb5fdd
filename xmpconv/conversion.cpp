#include "xmpconv/conversion.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <type_traits>

#include "clients/xmp/xmp_utils.h"

namespace {

// clang-format off
constexpr LxWantedItem kPartners[] = {  // In the order of LxPartner, after kNone.
    {"exif", "SubSecTime", nullptr},
    {"exif", "SubSecTimeOriginal", nullptr},
    {"exif", "SubSecTimeDigitized", nullptr},
    {"exif", " 9010", nullptr},  // OffsetTime (Exif 2.31), OffsetTimeOriginal, OffsetTimeDigitized: in no dictionary.
    {"exif", " 9011", nullptr},
    {"exif", " 9012", nullptr},
    {"gps",  "GPSLatitudeRef", nullptr},
    {"gps",  "GPSLongitudeRef", nullptr},
    {"gps",  "GPSDestLatitudeRef", nullptr},
    {"gps",  "GPSDestLongitudeRef", nullptr},
    {"gps",  "GPSDateStamp", nullptr},
};
// clang-format on
static_assert(std::size(kPartners) + 1 == static_cast<std::size_t>(LxPartner::kCount));

}  // namespace

const LxMetadataItem* LxConversion::Find(LxPartner partner) noexcept {
  if (partner == LxPartner::kNone) return nullptr;
  if (!searched_) {
    std::copy(std::begin(kPartners), std::end(kPartners), partners_);
    LxFindItems(pool_.root, partners_, std::size(partners_));
    searched_ = true;
  }
  return partners_[static_cast<std::size_t>(partner) - 1].found;
}

void LxConversion::SetTimeZone(XMPDateTime* date) {
  static_assert(std::has_unique_object_representations_v<XMPDateTime>);
  if (std::memcmp(date, &unzoned_, sizeof unzoned_) != 0 || zoned_.month == 0) {
    XMPDateTime fresh = *date;
    XMPUtils::SetTimeZone(&fresh);
    unzoned_ = *date;
    zoned_ = fresh;
  }
  *date = zoned_;
}

bool LxConversion::TakeArrayItems(std::uint64_t count) noexcept {
  if (count > arrayItemsLeft_) return false;
  arrayItemsLeft_ -= count;
  return true;
}
