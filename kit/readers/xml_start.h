// Recognises an XML text that is an XMP packet (ISO 16684-1, 7.3.2 and 7.4: the packet wrapper and the packet's
// elements) by its beginning.
#ifndef LXBRIDGE_KIT_READERS_XML_START_H_
#define LXBRIDGE_KIT_READERS_XML_START_H_

#include <cstdint>

// The number of bytes of a file that are examined.
inline constexpr std::int32_t kLxXmlStartSize = 1024;
// A larger file is not read as a side-car.
inline constexpr std::int32_t kLxLargestSidecar = 64 << 20;

// Whether an XML text may begin with these bytes: a byte-order mark, white space or "<". REQUIRES: 16 readable bytes.
[[nodiscard]] bool LxMayStartXml(const std::uint8_t* bytes) noexcept;

// Whether the text that begins with these bytes is a packet: a packet wrapper precedes its first element, or the first
// element, after at most an XML declaration, comments and processing instructions, is one that packets begin with. The
// text is in UTF-8, or in UTF-16 or UTF-32 with a byte-order mark.
[[nodiscard]] bool LxStartsPacket(const std::uint8_t* bytes, std::int32_t length) noexcept;

#endif  // LXBRIDGE_KIT_READERS_XML_START_H_
