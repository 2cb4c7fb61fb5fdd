// Setting XMP properties from decoded values: the text forms of numbers, rationals, flags and texts, and the arrays of
// them.
//
// Every setter gives false when it refuses its input or a call of the toolkit raises; the exception goes no further.
// All but LxSetXMPStructFlag and LxSetXMPPrefixedText delete the property before they set it, so that the new value
// replaces one of any form; when setting it fails then, the property stays deleted. A name may be a path below the
// schema.
//
// REQUIRES, for those that read bytes: as many as size and count say. `order` is the byte order of the elements.
#ifndef LXBRIDGE_XMPCONV_SETTERS_H_
#define LXBRIDGE_XMPCONV_SETTERS_H_

#include <cstddef>
#include <cstdint>
#include <exception>

#include "clients/xmp/xmp_meta.h"

// Notes a refused allocation of this thread (kit/base/memory.h) when that is what the exception is about, so that what
// is left out for want of memory is told, and what the toolkit refuses is not.
void LxNoteIfMemoryEnded(const std::exception& failure) noexcept;

// Runs calls of the toolkit: false when one raises. All that they can raise is a std::exception: CTALError,
// std::logic_error of a binding, std::bad_alloc of the client.
template <typename Calls>
[[nodiscard]] bool LxTryXMP(Calls calls) {
  try {
    calls();
    return true;
  } catch (const std::exception& failure) {
    LxNoteIfMemoryEnded(failure);
    return false;
  }
}

// The length of a text that ends at its zero byte. A text that comes with its length may have up to 1023 bytes; a
// longer one is refused before anything is deleted.
inline constexpr std::int32_t kLxTerminated = -1;

[[nodiscard]] bool LxSetXMPText(XMPMetaHolder& xmp, const char* schema, const char* name, const char* text,
                                std::int32_t length);
// A language alternative of one item, "x-default" (ISO 16684-1, 8.2.2.4).
[[nodiscard]] bool LxSetXMPLangAlt(XMPMetaHolder& xmp, const char* schema, const char* name, const char* text,
                                   std::int32_t length);

[[nodiscard]] bool LxSetXMPInteger(XMPMetaHolder& xmp, const char* schema, const char* name, std::uint32_t value,
                                   bool isSigned);
// elementSize: 1, 2 or 4. Signed elements are sign-extended.
[[nodiscard]] bool LxSetXMPIntegerSeq(XMPMetaHolder& xmp, const char* schema, const char* name,
                                      const std::uint8_t* bytes, std::size_t elementSize, std::size_t count,
                                      bool isSigned, int order);

// "numerator/denominator", neither reduced nor checked. 8 bytes each.
[[nodiscard]] bool LxSetXMPRational(XMPMetaHolder& xmp, const char* schema, const char* name, const std::uint8_t* bytes,
                                    bool isSigned, int order);
[[nodiscard]] bool LxSetXMPRationalSeq(XMPMetaHolder& xmp, const char* schema, const char* name,
                                       const std::uint8_t* bytes, std::size_t count, bool isSigned, int order);

// `count` zero-terminated texts that follow each other; the last one may end at `end` instead. On success *cursor
// stands behind the last. Refused, with nothing deleted, when there are fewer texts before `end`.
[[nodiscard]] bool LxSetXMPTextSeq(XMPMetaHolder& xmp, const char* schema, const char* name,
                                   const std::uint8_t** cursor, const std::uint8_t* end, std::size_t count);
// Strings of 16-bit units, least significant byte first, each ended by a zero unit or by `end`; an odd last byte is
// left out. A surrogate without its partner becomes U+FFFD, and the unit behind it stands for itself (RFC 2781, 2.2,
// calls the text ill-formed; passing the surrogate on would make an item that is no UTF-8).
[[nodiscard]] bool LxSetXMPUnicodeSeq(XMPMetaHolder& xmp, const char* schema, const char* name,
                                      const std::uint8_t* start, const std::uint8_t* end);

[[nodiscard]] bool LxSetXMPDate(XMPMetaHolder& xmp, const char* schema, const char* name, const XMPDateTime& date);

// A field of the Exif schema: "True" or "False" when it is boolean, else one character, '0' + value. Deletes nothing.
[[nodiscard]] bool LxSetXMPStructFlag(XMPMetaHolder& xmp, const char* schema, const char* structName, const char* field,
                                      std::uint8_t value, bool isBoolean);

// Sets what follows the label in the text; a text that does not begin with the label gives false and changes nothing.
[[nodiscard]] bool LxSetXMPPrefixedText(XMPMetaHolder& xmp, const char* schema, const char* name, const char* label,
                                        const char* text);

#endif  // LXBRIDGE_XMPCONV_SETTERS_H_
