// The display text of an item: a short human-readable rendering of its value.
#ifndef LXBRIDGE_KIT_MODEL_DISPLAY_H_
#define LXBRIDGE_KIT_MODEL_DISPLAY_H_

#include "kit/model/pool.h"
#include "kit/model/tag_record.h"

// `order` is the byte order of the item's numbers: 1 big-endian, else little-endian. Neither function reports a
// failure: where there is nothing to show, or no memory, the display text does not change.
void LxFormatValue(int order, LxMetadataItem* item) noexcept;
void LxFormatTaggedValue(int order, LxMetadataItem* item, const LxDisplayDescriptor* descriptor) noexcept;

// Whether the bytes are an ICC profile with a description tag ("desc"). The out arguments, which may be null, receive
// the tag's place in the profile. ICC.1, 7.2 and 7.3.
[[nodiscard]] bool LxFindIccDescription(const std::uint8_t* profile, std::int32_t length, std::int32_t* offset,
                                        std::int32_t* size) noexcept;
// The description of such a profile as a new UTF-8 text (LxFree), or null: no readable description, or no memory.
[[nodiscard]] char* LxIccDescription(const std::uint8_t* profile, std::int32_t length) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_DISPLAY_H_
