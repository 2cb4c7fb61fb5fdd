// The beginning of an XML text that is an XMP packet as a whole (ISO 16684-1, 7.3.2 and 7.4: the packet wrapper, the
// elements that a packet consists of).
#ifndef LXBRIDGE_KIT_READERS_XML_START_H_
#define LXBRIDGE_KIT_READERS_XML_START_H_

#include <cstdint>

// How many bytes of a file are looked at.
inline constexpr std::int32_t kLxXmlStartSize = 1024;
// A larger file is no side-car.
inline constexpr std::int32_t kLxLargestSidecar = 64 << 20;

// Whether a text may begin so: a byte-order mark, white space or "<".
// REQUIRES: 16 readable bytes.
[[nodiscard]] bool LxMayStartXml(const std::uint8_t* bytes) noexcept;

// Whether the text, of which these are the first bytes, is a packet: its first element, after at most an XML
// declaration, comments and processing instructions, is a packet's, or a packet wrapper stands before it. The text is
// in UTF-8, or in UTF-16 or UTF-32 with a byte-order mark.
[[nodiscard]] bool LxStartsPacket(const std::uint8_t* bytes, std::int32_t length) noexcept;

#endif  // LXBRIDGE_KIT_READERS_XML_START_H_
