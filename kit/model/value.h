// Type codes and the elements of values. Codes 1 to 12 are the field types of TIFF 6.0, 13 is the IFD type. Values
// keep their file's byte order.
#ifndef LXBRIDGE_KIT_MODEL_VALUE_H_
#define LXBRIDGE_KIT_MODEL_VALUE_H_

#include <cstdint>

#include "kit/model/pool.h"

enum LxType : std::uint16_t {
  kLxTypeNone = 0,
  kLxTypeByte = 1,
  kLxTypeAscii = 2,
  kLxTypeShort = 3,
  kLxTypeLong = 4,
  kLxTypeRational = 5,
  kLxTypeSByte = 6,
  kLxTypeUndefined = 7,
  kLxTypeSShort = 8,
  kLxTypeSLong = 9,
  kLxTypeSRational = 10,
  kLxTypeFloat = 11,
  kLxTypeDouble = 12,
  kLxTypeOffset = 13,
  kLxTypeUnicode = 14,
  kLxTypeComplex = 15,
};
inline constexpr std::uint16_t kLxTypeCount = 16;
inline constexpr std::uint16_t kLxNoTypeCode = 0xFFFF;

// "byte", "ascii", "short", ... for codes 0 to 15; null for others.
[[nodiscard]] const char* LxTypeName(std::uint16_t typeCode) noexcept;
// kLxNoTypeCode for null or an unknown name.
[[nodiscard]] std::uint16_t LxTypeCode(const char* typeName) noexcept;
// Bytes of one element; 1 for codes of 16 and more.
[[nodiscard]] std::uint32_t LxElementSize(std::uint16_t typeCode) noexcept;

// 1 for an item whose value is big-endian, else 0: the order argument of LxGet16 and LxGet32.
[[nodiscard]] inline int LxItemOrder(const LxMetadataItem* item) noexcept {
  return (item->flags & kLxBigEndianValue) != 0 ? 1 : 0;
}

// The first element, or element `index`, unsigned and not sign-extended; 0 if it does not lie wholly in the value. For
// element sizes 4 and 8 the index counts 32-bit words: in rational k, the numerator is 2k and the denominator 2k + 1.
[[nodiscard]] std::uint32_t LxGetFirstValue(const LxMetadataItem* item) noexcept;
[[nodiscard]] std::uint32_t LxGetValueAt(const LxMetadataItem* item, std::int32_t index) noexcept;

// Builds the bytes of a value from text. bigEndian (0 or 1) is the byte order; withTerminator (0 or 1) tells whether a
// text includes its zero byte. kLxOk; kLxNotImplemented for a type without a text form; kLxOutOfMemory. The caller
// frees *outBytes with LxFree; *outLength counts them. A null or empty text gives length 0 and 8 zero bytes.
[[nodiscard]] LxResult LxParseValueText(const char* text, std::uint16_t typeCode, int bigEndian,
                                        std::int32_t* outLength, std::uint8_t** outBytes, int withTerminator) noexcept;

#endif  // LXBRIDGE_KIT_MODEL_VALUE_H_
