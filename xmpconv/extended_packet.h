// Extended XMP in JPEG files (XMP specification part 3, 1.1.3.1): what does not fit into the APP1 segment of the main
// packet stands in a second packet, cut into portions over APP1 segments of their own.
#ifndef LXBRIDGE_XMPCONV_EXTENDED_PACKET_H_
#define LXBRIDGE_XMPCONV_EXTENDED_PACKET_H_

#include "clients/xmp/xmp_meta.h"
#include "kit/model/pool.h"

// Adds the extended packet that the main packet in `xmp` names to it: the top-level properties that `xmp` does not
// have, and takes the name away. True when it did. False, with `xmp` as it was, when no packet is named, a portion is
// missing or contradicts another, the digest is another one, or the packet does not parse. Takes time in proportion to
// the portions' bytes and no more memory than they. Raises nothing that the toolkit or a lack of memory raises.
//
// REQUIRES: `xmp` holds the main packet and nothing else yet.
bool LxAddExtendedPacket(const LxMetadataPool& pool, XMPMetaHolder& xmp);

#endif  // LXBRIDGE_XMPCONV_EXTENDED_PACKET_H_
