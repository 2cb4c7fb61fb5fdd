#include "xmpconv/extended_packet.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/byte_cursor.h"
#include "kit/model/tables/tables.h"
#include "xmpconv/md5.h"
#include "xmpconv/schemas.h"
#include "xmpconv/setters.h"

namespace {

constexpr std::uint16_t kApp1 = 0xFFE1;
constexpr std::size_t kLengthField = 2;
constexpr std::size_t kGuidDigits = 32;
constexpr char kHasExtendedXmp[] = "HasExtendedXMP";

// One segment's part of the packet.
struct Portion {
  const std::uint8_t* bytes;
  std::uint32_t length;
  std::uint32_t offset;
};

// -1: not a hexadecimal digit. Writers use either case.
int HexValue(unsigned char digit) noexcept {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
}

// Parses the name of an extended packet, which is its digest. REQUIRES: 32 readable characters.
bool ParseGuid(const char* digits, LxMd5Digest* guid) noexcept {
  for (std::size_t i = 0; i < guid->size(); ++i) {
    const int high = HexValue(static_cast<unsigned char>(digits[2 * i]));
    const int low = HexValue(static_cast<unsigned char>(digits[2 * i + 1]));
    if (high < 0 || low < 0) return false;
    (*guid)[i] = static_cast<std::uint8_t>(high << 4 | low);
  }
  return true;
}

bool IsPortion(const LxMetadataItem* item) noexcept {
  return item->tagId == kApp1 && (item->flags & kLxDeleted) == 0 &&
         std::strcmp(item->displayText, kLxExtendedXmpSegmentId) == 0;
}

// The first portion of the main image, or null. A thumbnail's segments are deeper in the tree.
const LxMetadataItem* FindPortion(const LxMetadataPool& pool) noexcept {
  if (pool.fileKind != kLxFileJpeg || pool.root == nullptr) return nullptr;
  const LxMetadataItem* item = pool.root->firstChild;
  while (item != nullptr && !IsPortion(item)) item = item->next;
  return item;
}

// Collects the packet's portions from `item` on. False: they disagree on its length, or one extends beyond it.
bool CollectPortions(const LxMetadataItem* item, const LxMd5Digest& guid, std::vector<Portion>* portions,
                     std::uint32_t* fullLength) {
  for (; item != nullptr; item = item->next) {
    if (!IsPortion(item) || item->value == nullptr) continue;
    LxByteCursor in = {item->value, static_cast<std::size_t>(item->valueLength)};
    LxMd5Digest own;
    if (!LxSkip(&in, kLengthField + std::size(kLxExtendedXmpSegmentId))) continue;
    const std::uint8_t* const digits = LxTakeBytes(&in, kGuidDigits);
    std::uint32_t length = 0;
    std::uint32_t offset = 0;
    if (digits == nullptr || !LxTake32(&in, kLxBigEndian, &length) || !LxTake32(&in, kLxBigEndian, &offset)) continue;
    if (!ParseGuid(reinterpret_cast<const char*>(digits), &own) || own != guid) continue;
    if (!portions->empty() && length != *fullLength) return false;
    if (offset > length || in.left > length - offset) return false;
    *fullLength = length;
    portions->push_back({in.at, static_cast<std::uint32_t>(in.left), offset});
  }
  return true;
}

// Joins the portions. Returns an empty text if a byte is missing or covered twice.
std::string Join(std::vector<Portion>& portions, std::uint32_t fullLength) {
  std::uint64_t available = 0;
  for (const Portion& portion : portions) available += portion.length;
  if (fullLength > available) return {};  // Checked before allocating a length that the file merely states.

  const auto byOffset = [](const Portion& left, const Portion& right) { return left.offset < right.offset; };
  // Writers usually store them in order.
  if (!std::is_sorted(portions.begin(), portions.end(), byOffset)) {
    std::sort(portions.begin(), portions.end(), byOffset);
  }
  std::string packet;
  packet.reserve(fullLength);
  for (const Portion& portion : portions) {
    if (portion.offset > packet.size()) return {};
    const std::size_t again = std::min<std::size_t>(packet.size() - portion.offset, portion.length);
    if (again > 0 && std::memcmp(packet.data() + portion.offset, portion.bytes, again) != 0) return {};
    packet.append(reinterpret_cast<const char*>(portion.bytes) + again, portion.length - again);
  }
  if (packet.size() != fullLength) packet.clear();
  return packet;
}

bool AddExtendedPacket(const LxMetadataItem* first, XMPMetaHolder& xmp) {
  std::string name;
  LxMd5Digest guid;
  if (!xmp.GetProperty(kLxXmpNoteSchema, kHasExtendedXmp, &name) || name.size() != kGuidDigits ||
      !ParseGuid(name.data(), &guid)) {
    return false;
  }
  std::vector<Portion> portions;
  std::uint32_t fullLength = 0;
  if (!CollectPortions(first, guid, &portions, &fullLength)) return false;
  const std::string packet = Join(portions, fullLength);
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(packet.data());
  if (packet.empty() || LxMd5(bytes, packet.size()) != guid) return false;

  XMPMetaHolder extension;
  extension.ParseFromBuffer(bytes, static_cast<std::int32_t>(packet.size()), kXMPParseMoreBuffers);
  extension.ParseFromBuffer(bytes, 0, 0);
  xmp.AddMissingProperties(extension);
  xmp.DeleteProperty(kLxXmpNoteSchema, kHasExtendedXmp);
  return true;
}

}  // namespace

bool LxAddExtendedPacket(const LxMetadataPool& pool, XMPMetaHolder& xmp) {
  const LxMetadataItem* const first = FindPortion(pool);
  if (first == nullptr) return false;
  try {
    return AddExtendedPacket(first, xmp);
  } catch (const std::exception& failure) {
    LxNoteIfMemoryEnded(failure);
    return false;  // The main packet must not be lost.
  }
}
