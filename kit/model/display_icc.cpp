// The description of an ICC profile, as the display text of items that hold a profile.
#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "kit/base/result.h"
#include "kit/model/display.h"
#include "kit/model/display_parts.h"
#include "kit/model/text_encoding.h"
#include "kit/model/text_scan.h"

namespace {

constexpr std::int32_t kHeaderLength = 128;            // ICC.1:2010, 7.2
constexpr std::int32_t kTagTable = kHeaderLength + 4;  // 7.3: after the tag count.
constexpr std::int32_t kTagEntryLength = 12;

bool HasSignature(const std::uint8_t* at, const char* signature) noexcept {
  return std::memcmp(at, signature, 4) == 0;
}

// A description within the bytes of its tag.
struct Description {
  const std::uint8_t* bytes;
  std::int32_t length;
  bool utf16;  // Otherwise single bytes.
};

// textDescriptionType (ICC.1:2001, 6.5.17): a count, then that many bytes of ASCII; some writers use their system's
// encoding instead. A count beyond the tag is cut to it.
bool FindTextDescription(const std::uint8_t* tag, std::int32_t size, Description* out) noexcept {
  const std::uint32_t count = LxGet32(tag + 8, kLxBigEndian);
  auto length = static_cast<std::size_t>(size - 12);
  if (count < length) length = count;
  length = LxTextLength(tag + 12, length);
  *out = {tag + 12, static_cast<std::int32_t>(length), false};
  return length != 0;
}

// multiLocalizedUnicodeType (ICC.1:2010, 10.13): a table of languages and UTF-16 texts. Prefers US English, which
// profile makers fill in first, then any English, then the first language.
bool FindLocalizedText(const std::uint8_t* tag, std::int32_t size, Description* out) noexcept {
  if (size < 16) return false;
  const std::uint32_t count = LxGet32(tag + 8, kLxBigEndian);
  const std::uint32_t recordLength = LxGet32(tag + 12, kLxBigEndian);
  if (recordLength < 12) return false;
  const auto limit = static_cast<std::uint64_t>(size);
  int best = 0;
  std::uint64_t record = 16;
  for (std::uint32_t i = 0; i < count && limit - record >= 12; ++i) {
    const std::uint8_t* at = tag + record;
    const std::uint32_t length = LxGet32(at + 4, kLxBigEndian);
    const std::uint32_t offset = LxGet32(at + 8, kLxBigEndian);
    int rank = 1;
    if (std::memcmp(at, "en", 2) == 0) rank = std::memcmp(at + 2, "US", 2) == 0 ? 3 : 2;
    const bool inside = offset <= limit && length <= limit - offset;
    if (rank > best && inside && length >= 2 && LxGet16(tag + offset, kLxBigEndian) != 0) {
      *out = {tag + offset, static_cast<std::int32_t>(length), true};
      best = rank;
    }
    if (recordLength > limit - record) break;
    record += recordLength;
  }
  return best != 0;
}

bool FindDescription(const std::uint8_t* profile, std::int32_t length, Description* out) noexcept {
  std::int32_t offset = 0;
  std::int32_t size = 0;
  if (!LxFindIccDescription(profile, length, &offset, &size)) return false;
  const std::uint8_t* tag = profile + offset;
  if (HasSignature(tag, "desc")) return FindTextDescription(tag, size, out);
  if (HasSignature(tag, "mluc")) return FindLocalizedText(tag, size, out);
  return false;
}

char* ToUtf8(const Description& description) noexcept {
  return description.utf16 ? LxUtf16ToUtf8(description.bytes, description.length, kLxBigEndian)
                           : LxTextToUtf8(description.bytes, description.length);
}

}  // namespace

bool LxFindIccDescription(const std::uint8_t* profile, std::int32_t length, std::int32_t* offset,
                          std::int32_t* size) noexcept {
  if (profile == nullptr || length < kTagTable) return false;
  if (!HasSignature(profile + 36, "acsp")) return false;
  const std::uint32_t count = LxGet32(profile + kHeaderLength, kLxBigEndian);
  std::int32_t at = kTagTable;
  for (std::uint32_t i = 0; i < count && length - at >= kTagEntryLength; ++i, at += kTagEntryLength) {
    if (!HasSignature(profile + at, "desc")) continue;
    const auto tagOffset = static_cast<std::int32_t>(LxGet32(profile + at + 4, kLxBigEndian));
    const auto tagSize = static_cast<std::int32_t>(LxGet32(profile + at + 8, kLxBigEndian));
    if (tagSize <= 12 || tagOffset < 0 || tagOffset > length || tagSize > length - tagOffset) continue;
    if (offset != nullptr) *offset = tagOffset;
    if (size != nullptr) *size = tagSize;
    return true;
  }
  return false;
}

char* LxIccDescription(const std::uint8_t* profile, std::int32_t length) noexcept {
  Description description;
  if (!FindDescription(profile, length, &description)) return nullptr;
  return ToUtf8(description);
}

// A description that cannot be read is treated as missing: the caller then shows the bytes.
bool LxFormatIccProfile(LxMetadataItem* item) noexcept {
  Description description;
  if (!FindDescription(item->value, item->valueLength, &description)) return false;
  LxShowOwned(item, ToUtf8(description));
  return true;
}
