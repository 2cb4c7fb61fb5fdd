// The state of one file's conversion: the pool, the XMP object, and the limits that keep the work linear in the file's
// size.
#ifndef LXBRIDGE_XMPCONV_CONVERSION_H_
#define LXBRIDGE_XMPCONV_CONVERSION_H_

#include <cstddef>
#include <cstdint>
#include <optional>

#include "clients/xmp/xmp_meta.h"
#include "kit/model/find_items.h"
#include "kit/model/pool.h"
#include "xmpconv/keyword_set.h"

// Items that a mapping looks up in addition to the one it converts.
enum class LxPartner : std::uint8_t {
  kNone,
  kSubSecTime,
  kSubSecTimeOriginal,
  kSubSecTimeDigitized,
  kOffsetTime,
  kOffsetTimeOriginal,
  kOffsetTimeDigitized,
  kGpsLatitudeRef,
  kGpsLongitudeRef,
  kGpsDestLatitudeRef,
  kGpsDestLongitudeRef,
  kGpsDateStamp,
  kCount,
};

// Borrows both for one conversion.
class LxConversion {
 public:
  LxConversion(const LxMetadataPool& pool, XMPMetaHolder& xmp) noexcept : pool_(pool), xmp_(xmp) {}

  [[nodiscard]] XMPMetaHolder& Xmp() noexcept { return xmp_; }

  // The first live item of the partner's name in tree order, or null. The first call searches for all partners at once;
  // the walk neither deletes nor adds items, so the results hold until its end. Must not be called before the walk.
  [[nodiscard]] const LxMetadataItem* Find(LxPartner partner) noexcept;

  // Sets the machine's zone in the date, like XMPUtils. The dates of a photograph are mostly the same, and the C
  // library determines the zone under a lock, so a date equal to the previous one gets that one's zone. Raises what
  // XMPUtils raises. REQUIRES: the date has no zone and no fraction of a second yet.
  void SetTimeZone(XMPDateTime* date);

  // Whether an array of this many items may still be created for the file; if so, deducts them from its allowance.
  //
  // An item in an array costs more than a hundred times its bytes in the file, and a file may refer to the same bytes
  // in thousands of entries. The longest array in a photograph is the transfer function of a 16-bit picture in three
  // colours (TIFF 6.0, section 20: 3 times 65536 numbers); all others have fewer than a thousand items.
  [[nodiscard]] bool TakeArrayItems(std::uint64_t count) noexcept;

  // The items of the keyword bag; set at the first keyword.
  std::optional<LxKeywordSet>& Keywords() noexcept { return keywords_; }

 private:
  static constexpr std::uint64_t kArrayItemsOfAFile = 4 * 65536;

  const LxMetadataPool& pool_;
  XMPMetaHolder& xmp_;
  bool searched_ = false;
  LxWantedItem partners_[static_cast<std::size_t>(LxPartner::kCount) - 1] = {};
  XMPDateTime unzoned_{};  // The date that SetTimeZone was last called with, and its result.
  XMPDateTime zoned_{};
  std::uint64_t arrayItemsLeft_ = kArrayItemsOfAFile;
  std::optional<LxKeywordSet> keywords_;
};

// A rule that maps an item to the property of its name in the schema; true if the property was written. `partner` is
// the second item for rules that need one.
using LxMapRule = bool (*)(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner partner);

#endif  // LXBRIDGE_XMPCONV_CONVERSION_H_
