// Extended XMP in JPEG files (XMP specification part 3, 1.1.3.1): properties that do not fit the main packet's APP1
// segment are in a second packet, which is divided over APP1 segments of its own.
#ifndef LXBRIDGE_XMPCONV_EXTENDED_PACKET_H_
#define LXBRIDGE_XMPCONV_EXTENDED_PACKET_H_

#include "clients/xmp/xmp_meta.h"
#include "kit/model/pool.h"

// Adds the extended packet that the main packet in `xmp` names: its top-level properties that `xmp` does not have; then
// removes the name. True if added. False, with `xmp` unchanged: no packet is named, a portion is missing or contradicts
// another, the digest differs, or the packet does not parse. Time and memory are linear in the portions' bytes. Catches
// exceptions of the toolkit and std::bad_alloc.
//
// REQUIRES: `xmp` holds only the main packet.
bool LxAddExtendedPacket(const LxMetadataPool& pool, XMPMetaHolder& xmp);

#endif  // LXBRIDGE_XMPCONV_EXTENDED_PACKET_H_
