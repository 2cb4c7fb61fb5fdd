#include "xmpconv/setters.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "clients/broker/broker_client.h"
#include "kit/base/byte_order.h"
#include "kit/base/memory.h"
#include "xmpconv/number_text.h"
#include "xmpconv/schemas.h"

namespace {

constexpr std::size_t kTextBufferSize = 1024;
constexpr char32_t kReplacementCharacter = 0xFFFD;

// Returns a zero-terminated text: the given one, or a copy of its first `length` bytes. Null: too long.
const char* Terminated(const char* text, std::int32_t length, char (&buffer)[kTextBufferSize]) noexcept {
  if (length < 0) return text;
  const auto size = static_cast<std::size_t>(length);
  if (size >= kTextBufferSize) return nullptr;
  std::memcpy(buffer, text, size);
  buffer[size] = '\0';
  return buffer;
}

std::uint32_t Element(const std::uint8_t* at, std::size_t size, bool isSigned, int order) noexcept {
  if (size == 1) {
    const std::uint32_t byte = *at;
    return isSigned && byte >= 0x80 ? byte | 0xFFFFFF00u : byte;
  }
  if (size == 2) {
    const std::uint32_t word = LxGet16(at, order);
    return isSigned && word >= 0x8000 ? word | 0xFFFF0000u : word;
  }
  return LxGet32(at, order);
}

LxNumberText& AddNumber(LxNumberText& text, std::uint32_t value, bool isSigned) noexcept {
  return text.Number(isSigned ? std::int64_t{static_cast<std::int32_t>(value)} : std::int64_t{value});
}

LxNumberText RationalText(const std::uint8_t* bytes, bool isSigned, int order) noexcept {
  LxNumberText text;
  AddNumber(text, LxGet32(bytes, order), isSigned).Char('/');
  AddNumber(text, LxGet32(bytes + 4, order), isSigned);
  return text;
}

void AppendOrdered(XMPMetaHolder& xmp, const char* schema, const char* name, const char* text) {
  xmp.AppendArrayItem(schema, name, kXMPPropIsOrdered, text);
}

void AppendUtf8(char32_t point, std::string* text) {
  const auto add = [text](char32_t byte) { text->push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  if (point < 0x80) {
    add(point);
  } else if (point < 0x800) {
    add(0xC0 | (point >> 6));
    add(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    add(0xE0 | (point >> 12));
    add(0x80 | ((point >> 6) & 0x3F));
    add(0x80 | (point & 0x3F));
  } else {
    add(0xF0 | (point >> 18));
    add(0x80 | ((point >> 12) & 0x3F));
    add(0x80 | ((point >> 6) & 0x3F));
    add(0x80 | (point & 0x3F));
  }
}

// The next unit of a string; 0 at its end, which is a zero unit (skipped) or too few bytes.
char32_t NextUnit(const std::uint8_t** cursor, const std::uint8_t* end) noexcept {
  if (end - *cursor < 2) {
    *cursor = end;
    return 0;
  }
  const char32_t unit = LxGet16(*cursor, kLxLittleEndian);
  *cursor += 2;
  return unit;
}

// RFC 2781, 2.2. `first` is a surrogate; the next unit is consumed if the two form a pair.
char32_t JoinSurrogates(char32_t first, const std::uint8_t** cursor, const std::uint8_t* end) noexcept {
  if (first >= 0xDC00 || end - *cursor < 2) return kReplacementCharacter;
  const char32_t second = LxGet16(*cursor, kLxLittleEndian);
  if (second < 0xDC00 || second > 0xDFFF) return kReplacementCharacter;
  *cursor += 2;
  return 0x10000 + ((first & 0x3FF) << 10) + (second & 0x3FF);
}

}  // namespace

void LxNoteIfMemoryEnded(const std::exception& failure) noexcept {
  const auto* error = dynamic_cast<const TAL_T_NMT::CTALError*>(&failure);
  const TALErrorProcs* procs = error != nullptr ? TAL_T_NMT::ErrorProcs() : nullptr;
  const bool ofBroker = procs != nullptr && error->Reference() == procs->getCoreError(0);
  if (ofBroker || dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) LxNoteRefusedAllocation();
}

bool LxSetXMPText(XMPMetaHolder& xmp, const char* schema, const char* name, const char* text, std::int32_t length) {
  char buffer[kTextBufferSize];
  const char* const terminated = Terminated(text, length, buffer);
  if (!terminated) return false;
  return LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    xmp.SetProperty(schema, name, terminated);
  });
}

bool LxSetXMPLangAlt(XMPMetaHolder& xmp, const char* schema, const char* name, const char* text, std::int32_t length) {
  char buffer[kTextBufferSize];
  const char* const terminated = Terminated(text, length, buffer);
  if (!terminated) return false;
  return LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    xmp.SetLocalizedText(schema, name, "", "x-default", terminated);
  });
}

bool LxSetXMPInteger(XMPMetaHolder& xmp, const char* schema, const char* name, std::uint32_t value, bool isSigned) {
  LxNumberText text;
  AddNumber(text, value, isSigned);
  return LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    xmp.SetProperty(schema, name, text.Text());
  });
}

bool LxSetXMPIntegerSeq(XMPMetaHolder& xmp, const char* schema, const char* name, const std::uint8_t* bytes,
                        std::size_t elementSize, std::size_t count, bool isSigned, int order) {
  return LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    for (std::size_t i = 0; i < count; ++i) {
      LxNumberText text;
      AddNumber(text, Element(bytes + i * elementSize, elementSize, isSigned, order), isSigned);
      AppendOrdered(xmp, schema, name, text.Text());
    }
  });
}

bool LxSetXMPRational(XMPMetaHolder& xmp, const char* schema, const char* name, const std::uint8_t* bytes,
                      bool isSigned, int order) {
  LxNumberText text = RationalText(bytes, isSigned, order);
  return LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    xmp.SetProperty(schema, name, text.Text());
  });
}

bool LxSetXMPRationalSeq(XMPMetaHolder& xmp, const char* schema, const char* name, const std::uint8_t* bytes,
                         std::size_t count, bool isSigned, int order) {
  return LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    for (std::size_t i = 0; i < count; ++i) {
      AppendOrdered(xmp, schema, name, RationalText(bytes + 8 * i, isSigned, order).Text());
    }
  });
}

bool LxSetXMPTextSeq(XMPMetaHolder& xmp, const char* schema, const char* name, const std::uint8_t** cursor,
                     const std::uint8_t* end, std::size_t count) {
  const std::uint8_t* after = *cursor;
  for (std::size_t i = 0; i < count; ++i) {
    if (after == end) return false;
    const std::uint8_t* const zero = std::find(after, end, std::uint8_t{0});
    after = zero == end ? end : zero + 1;
  }

  const bool done = LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    std::string text;
    for (const std::uint8_t* at = *cursor; at != after;) {
      const std::uint8_t* const zero = std::find(at, end, std::uint8_t{0});
      text.assign(at, zero);
      AppendOrdered(xmp, schema, name, text.c_str());
      at = zero == end ? end : zero + 1;
    }
  });
  if (done) *cursor = after;
  return done;
}

bool LxSetXMPUnicodeSeq(XMPMetaHolder& xmp, const char* schema, const char* name, const std::uint8_t* start,
                        const std::uint8_t* end) {
  return LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    std::string text;
    for (const std::uint8_t* cursor = start; end - cursor >= 2;) {
      text.clear();
      while (char32_t unit = NextUnit(&cursor, end)) {
        if (unit >= 0xD800 && unit <= 0xDFFF) unit = JoinSurrogates(unit, &cursor, end);
        AppendUtf8(unit, &text);
      }
      AppendOrdered(xmp, schema, name, text.c_str());
    }
  });
}

bool LxSetXMPDate(XMPMetaHolder& xmp, const char* schema, const char* name, const XMPDateTime& date) {
  return LxTryXMP([&] {
    xmp.DeleteProperty(schema, name);
    xmp.SetProperty_Date(schema, name, date);
  });
}

bool LxSetXMPStructFlag(XMPMetaHolder& xmp, const char* schema, const char* structName, const char* field,
                        std::uint8_t value, bool isBoolean) {
  const char digit[2] = {static_cast<char>('0' + value), '\0'};
  const char* const text = !isBoolean ? digit : value != 0 ? "True" : "False";
  return LxTryXMP([&] { xmp.SetStructField(schema, structName, kLxExifSchema, field, text); });
}

bool LxSetXMPPrefixedText(XMPMetaHolder& xmp, const char* schema, const char* name, const char* label,
                          const char* text) {
  const std::size_t length = std::strlen(label);
  if (std::strncmp(text, label, length) != 0) return false;
  return LxSetXMPText(xmp, schema, name, text + length, kLxTerminated);
}
