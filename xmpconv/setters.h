// Setting XMP properties from decoded values: the texts of numbers, rationals and flags, other texts, and arrays of
// these.
//
// Every setter returns false if it refuses its input or if a call of the toolkit raises; the exception is caught. All
// except LxSetXMPStructFlag and LxSetXMPPrefixedText first delete the property, so that the new value replaces one of
// any form; if setting then fails, the property stays deleted. A name may be a path in the schema.
//
// REQUIRES, for setters that read bytes: as many readable bytes as size and count say. `order` is the elements' byte
// order: 1 big-endian, else little-endian.
// REQUIRES, for those that read bytes: as many as size and count say. `order` is the byte order of the elements.
#ifndef LXBRIDGE_XMPCONV_SETTERS_H_
#define LXBRIDGE_XMPCONV_SETTERS_H_

#include <cstddef>
#include <cstdint>
#include <exception>

#include "clients/xmp/xmp_meta.h"

// Counts a refused allocation of this thread (kit/base/memory.h) if that is the reason for the exception. So a property
// that is missing for lack of memory is reported, one that the toolkit refused is not.
void LxNoteIfMemoryEnded(const std::exception& failure) noexcept;

// Runs calls of the toolkit: false if one raises. Everything that they raise is a std::exception: CTALError,
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

// The length argument for a zero-terminated text. A text given with its length may have up to 1023 bytes; a longer one
// is refused before anything is deleted.
inline constexpr std::int32_t kLxTerminated = -1;

[[nodiscard]] bool LxSetXMPText(XMPMetaHolder& xmp, const char* schema, const char* name, const char* text,
                                std::int32_t length);
// Sets a language alternative with one item, "x-default" (ISO 16684-1, 8.2.2.4).
[[nodiscard]] bool LxSetXMPLangAlt(XMPMetaHolder& xmp, const char* schema, const char* name, const char* text,
                                   std::int32_t length);

[[nodiscard]] bool LxSetXMPInteger(XMPMetaHolder& xmp, const char* schema, const char* name, std::uint32_t value,
                                   bool isSigned);
// elementSize: 1, 2 or 4. Signed elements are sign-extended.
[[nodiscard]] bool LxSetXMPIntegerSeq(XMPMetaHolder& xmp, const char* schema, const char* name,
                                      const std::uint8_t* bytes, std::size_t elementSize, std::size_t count,
                                      bool isSigned, int order);

// "numerator/denominator", neither reduced nor checked, from 8 bytes each.
[[nodiscard]] bool LxSetXMPRational(XMPMetaHolder& xmp, const char* schema, const char* name, const std::uint8_t* bytes,
                                    bool isSigned, int order);
[[nodiscard]] bool LxSetXMPRationalSeq(XMPMetaHolder& xmp, const char* schema, const char* name,
                                       const std::uint8_t* bytes, std::size_t count, bool isSigned, int order);

// `count` consecutive zero-terminated texts; the last may end at `end` instead. On success *cursor is after the last
// one. If there are fewer texts before `end`, they are refused and nothing is deleted.
[[nodiscard]] bool LxSetXMPTextSeq(XMPMetaHolder& xmp, const char* schema, const char* name,
                                   const std::uint8_t** cursor, const std::uint8_t* end, std::size_t count);
// Strings of little-endian 16-bit units, each ended by a zero unit or by `end`; an odd last byte is ignored. A lone
// surrogate becomes U+FFFD, and the unit after it is read on its own (RFC 2781, 2.2, calls the text ill-formed; copying
// the surrogate would give an item that is not UTF-8).
[[nodiscard]] bool LxSetXMPUnicodeSeq(XMPMetaHolder& xmp, const char* schema, const char* name,
                                      const std::uint8_t* start, const std::uint8_t* end);

[[nodiscard]] bool LxSetXMPDate(XMPMetaHolder& xmp, const char* schema, const char* name, const XMPDateTime& date);

// Sets a field of the Exif schema to "True" or "False" if it is boolean, else to one character, '0' + value. Deletes
// nothing.
[[nodiscard]] bool LxSetXMPStructFlag(XMPMetaHolder& xmp, const char* schema, const char* structName, const char* field,
                                      std::uint8_t value, bool isBoolean);

// Sets the property to the rest of the text after the label; false, without any change, if the text does not begin with
// it.
[[nodiscard]] bool LxSetXMPPrefixedText(XMPMetaHolder& xmp, const char* schema, const char* name, const char* label,
                                        const char* text);

#endif  // LXBRIDGE_XMPCONV_SETTERS_H_
