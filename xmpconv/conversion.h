// What the conversion of one file hands from item to item: the pool, the XMP object, and what keeps the work linear in
// the file's size whatever the file holds.
#ifndef LXBRIDGE_XMPCONV_CONVERSION_H_
#define LXBRIDGE_XMPCONV_CONVERSION_H_

#include <cstddef>
#include <cstdint>
#include <optional>

#include "clients/xmp/xmp_meta.h"
#include "kit/model/find_items.h"
#include "kit/model/pool.h"
#include "xmpconv/keyword_set.h"

// The items that a mapping looks up beside the one it converts.
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

// Borrows both for the time of one conversion.
class LxConversion {
 public:
  LxConversion(const LxMetadataPool& pool, XMPMetaHolder& xmp) noexcept : pool_(pool), xmp_(xmp) {}

  [[nodiscard]] XMPMetaHolder& Xmp() noexcept { return xmp_; }

  // The first live item of the partner's name in tree order, or null. All are searched for at once and once: the walk
  // deletes no item and makes none, so that the answers hold to its end. Not to be asked before the walk.
  [[nodiscard]] const LxMetadataItem* Find(LxPartner partner) noexcept;

  // Whether an array of that many items may still be made for this file; takes them off its allowance when so.
  //
  // An array's items cost more than a hundred times the bytes that they are made of, and a file may name the same bytes
  // in thousands of entries. The longest array that a photograph can hold is the transfer function of a picture of 16
  // bits in three colours (TIFF 6.0, section 20: 3 times 65536 numbers); everything else stays below a thousand items.
  [[nodiscard]] bool TakeArrayItems(std::uint64_t count) noexcept;

  // The items of the keyword bag, from the first keyword on.
  std::optional<LxKeywordSet>& Keywords() noexcept { return keywords_; }

 private:
  static constexpr std::uint64_t kArrayItemsOfAFile = 4 * 65536;

  const LxMetadataPool& pool_;
  XMPMetaHolder& xmp_;
  bool searched_ = false;
  LxWantedItem partners_[static_cast<std::size_t>(LxPartner::kCount) - 1] = {};
  std::uint64_t arrayItemsLeft_ = kArrayItemsOfAFile;
  std::optional<LxKeywordSet> keywords_;
};

// One way to map an item to a property of its name in the schema; true when the property was written. The partner is
// the second item of the mappings that need one.
using LxMapRule = bool (*)(LxConversion& conversion, const LxMetadataItem* item, const char* schema, LxPartner partner);

#endif  // LXBRIDGE_XMPCONV_CONVERSION_H_
