// Type names and element sizes, access to elements, and values built from text.
#include "kit/model/value.h"

#include <cstring>

#include "kit/base/byte_order.h"
#include "kit/base/memory.h"

namespace {

struct TypeRow {
  const char* name;
  std::uint32_t elementSize;
};
constexpr TypeRow kTypes[kLxTypeCount] = {
    {"0000", 1},   {"byte", 1},  {"ascii", 1}, {"short", 2}, {"long", 4},   {"ratl", 8},   {"sbyte", 1},  {"undef", 1},
    {"sshort", 2}, {"slong", 4}, {"sratl", 8}, {"float", 4}, {"double", 8}, {"offset", 4}, {"unicod", 1}, {"complx", 1},
};

// `size` bytes at `offset`, or null if they do not lie wholly within the value.
const std::uint8_t* ElementAt(const LxMetadataItem* item, std::int64_t offset, std::int64_t size) noexcept {
  const bool inside = offset >= 0 && offset <= item->valueLength && size <= item->valueLength - offset;
  return item->value != nullptr && inside ? item->value + offset : nullptr;
}

// The tokens of a text like "1/3 5/10". A token starts at the current position, after white space; the position then
// moves past the next space, so two spaces between tokens yield the later token twice. The last scan is cached: without
// that, a long run of spaces would be scanned again from each of its spaces.
class TokenWalk {
 public:
  TokenWalk(const char* text, bool ratios) noexcept : position_(text), ratios_(ratios) {}

  // The number of the next token (for ratios, both numbers); false at the end.
  bool Next(std::uint32_t* first, std::uint32_t* second) noexcept {
    if (position_ == nullptr) return false;
    if (token_ == nullptr || position_ > token_) {
      token_ = SkipWhite(position_);
      scanned_ = Scan(token_);
    }
    const char* space = scanned_ ? std::strchr(position_, ' ') : nullptr;
    position_ = space != nullptr ? space + 1 : nullptr;
    *first = first_;
    *second = second_;
    return scanned_;
  }

 private:
  static const char* SkipWhite(const char* at) noexcept {
    while (*at == ' ' || (*at >= '\t' && *at <= '\r')) ++at;
    return at;
  }

  // An optional sign and digits. Numbers too large for 32 bits keep their low bits, so that unsigned values can be
  // given.
  static const char* ScanNumber(const char* at, std::uint32_t* number) noexcept {
    const bool negative = *at == '-';
    if (*at == '-' || *at == '+') ++at;
    if (*at < '0' || *at > '9') return nullptr;
    std::uint32_t value = 0;
    for (; *at >= '0' && *at <= '9'; ++at) value = value * 10 + static_cast<std::uint32_t>(*at - '0');
    *number = negative ? 0 - value : value;
    return at;
  }

  bool Scan(const char* token) noexcept {
    const char* end = ScanNumber(token, &first_);
    if (!ratios_ || end == nullptr) return end != nullptr;
    return *end == '/' && ScanNumber(SkipWhite(end + 1), &second_) != nullptr;
  }

  const char* position_;  // Null at the end.
  bool ratios_;
  const char* token_ = nullptr;  // Start of the token scanned last.
  bool scanned_ = false;
  std::uint32_t first_ = 0;
  std::uint32_t second_ = 0;
};

LxResult CopyAscii(const char* text, bool withTerminator, std::int32_t* outLength, std::uint8_t** outBytes) noexcept {
  const std::size_t length = std::strlen(text);
  if (length >= INT32_MAX) return kLxOutOfMemory;
  char* copy = LxCopyText(text, length);
  if (copy == nullptr) return kLxOutOfMemory;
  *outLength = static_cast<std::int32_t>(length) + (withTerminator ? 1 : 0);
  *outBytes = reinterpret_cast<std::uint8_t*>(copy);
  return kLxOk;
}

}  // namespace

const char* LxTypeName(std::uint16_t typeCode) noexcept {
  return typeCode < kLxTypeCount ? kTypes[typeCode].name : nullptr;
}

std::uint16_t LxTypeCode(const char* typeName) noexcept {
  if (typeName == nullptr) return kLxNoTypeCode;
  for (std::uint16_t code = 0; code < kLxTypeCount; ++code) {
    if (std::strcmp(kTypes[code].name, typeName) == 0) return code;
  }
  return kLxNoTypeCode;
}

std::uint32_t LxElementSize(std::uint16_t typeCode) noexcept {
  return typeCode < kLxTypeCount ? kTypes[typeCode].elementSize : 1;
}

std::uint32_t LxGetFirstValue(const LxMetadataItem* item) noexcept {
  // Half a rational is not an element, although its numerator would fit.
  const auto size = static_cast<std::int64_t>(LxElementSize(item->typeCode));
  return item->valueLength >= size ? LxGetValueAt(item, 0) : 0;
}

std::uint32_t LxGetValueAt(const LxMetadataItem* item, std::int32_t index) noexcept {
  const std::int64_t size = LxElementSize(item->typeCode);
  const std::int64_t width = size > 4 ? 4 : size;
  const std::uint8_t* bytes = ElementAt(item, width * index, width);
  if (bytes == nullptr) return 0;
  if (width == 1) return *bytes;
  return width == 2 ? LxGet16(bytes, LxItemOrder(item)) : LxGet32(bytes, LxItemOrder(item));
}

LxResult LxParseValueText(const char* text, std::uint16_t typeCode, int bigEndian, std::int32_t* outLength,
                          std::uint8_t** outBytes, int withTerminator) noexcept {
  if (text == nullptr || text[0] == 0) {
    auto* zeros = static_cast<std::uint8_t*>(LxAlloc(8));
    if (zeros == nullptr) return kLxOutOfMemory;
    std::memset(zeros, 0, 8);
    *outLength = 0;
    *outBytes = zeros;
    return kLxOk;
  }
  if (typeCode == kLxTypeAscii) return CopyAscii(text, withTerminator != 0, outLength, outBytes);
  // The number types of TIFF 6.0. Floating point, 16-bit text and complex values have no text form.
  if (typeCode < kLxTypeByte || typeCode > kLxTypeSRational) return kLxNotImplemented;

  const std::size_t size = LxElementSize(typeCode);
  std::uint32_t first = 0, second = 0;
  std::size_t count = 0;
  for (TokenWalk walk(text, size == 8); walk.Next(&first, &second);) ++count;
  if (count > INT32_MAX / size) return kLxOutOfMemory;
  auto* bytes = static_cast<std::uint8_t*>(LxAlloc(count * size));
  if (bytes == nullptr) return kLxOutOfMemory;

  std::uint8_t* out = bytes;
  for (TokenWalk walk(text, size == 8); walk.Next(&first, &second); out += size) {
    if (size == 1) {
      *out = static_cast<std::uint8_t>(first & 0xFF);
    } else if (size == 2) {
      LxPut16(out, static_cast<std::uint16_t>(first & 0xFFFF), bigEndian);
    } else {
      LxPut32(out, first, bigEndian);
      if (size == 8) LxPut32(out + 4, second, bigEndian);
    }
  }
  *outLength = static_cast<std::int32_t>(count * size);
  *outBytes = bytes;
  return kLxOk;
}
