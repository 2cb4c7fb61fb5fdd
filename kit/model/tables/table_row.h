// Short constants for types and flags, and the compile-time checks of the tables in this folder. For their .cpp files
// only.
#ifndef LXBRIDGE_KIT_MODEL_TABLES_TABLE_ROW_H_
#define LXBRIDGE_KIT_MODEL_TABLES_TABLE_ROW_H_

#include <cstddef>
#include <cstdint>

#include "kit/model/tag_record.h"
#include "kit/model/value.h"

inline constexpr std::uint16_t kNone = kLxTypeNone;  // A tag whose type the standards leave open.
inline constexpr std::uint16_t kByte = kLxTypeByte;
inline constexpr std::uint16_t kAscii = kLxTypeAscii;
inline constexpr std::uint16_t kShort = kLxTypeShort;
inline constexpr std::uint16_t kLong = kLxTypeLong;
inline constexpr std::uint16_t kRatl = kLxTypeRational;
inline constexpr std::uint16_t kUndef = kLxTypeUndefined;
inline constexpr std::uint16_t kSShort = kLxTypeSShort;
inline constexpr std::uint16_t kSRatl = kLxTypeSRational;
inline constexpr std::uint16_t kOffset = kLxTypeOffset;

inline constexpr std::uint16_t kPlain = kLxRecordPlain;
inline constexpr std::uint16_t kClosed = kLxRecordClosed;
inline constexpr std::uint16_t kHidden = kLxRecordHidden;

inline constexpr LxValueName kEndOfNames = {0, nullptr, nullptr};

// Every search of a table ends at its null entry, which must be last and unique.
template <std::size_t size>
[[nodiscard]] consteval bool EndsOnlyAtLast(const LxValueName (&table)[size]) noexcept {
  for (std::size_t i = 0; i < size; ++i) {
    if ((table[i].name == nullptr) != (i == size - 1)) return false;
  }
  return true;
}

template <std::size_t size>
[[nodiscard]] consteval bool IsDictionary(const LxTagRecord (&table)[size]) noexcept {
  for (std::size_t i = 0; i < size; ++i) {
    if ((table[i].name == nullptr) != (i == size - 1)) return false;
  }
  const LxTagRecord& end = table[size - 1];
  return end.id == 0 && end.flags == kPlain && end.typeCode == kShort && end.count == 1;
}

// For the tables of namespaces, which end at a null first field.
template <typename Entry, std::size_t size>
[[nodiscard]] consteval bool EndsAtNullNamespace(const Entry (&table)[size]) noexcept {
  for (std::size_t i = 0; i < size; ++i) {
    if ((table[i].nameSpace == nullptr) != (i == size - 1)) return false;
  }
  return true;
}

#endif  // LXBRIDGE_KIT_MODEL_TABLES_TABLE_ROW_H_
