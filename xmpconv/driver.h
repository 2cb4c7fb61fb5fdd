// The conversion of one file's pool into its XMP object: which IPTC block is used, whether it or the file's XMP packet
// wins, and which items are converted.
#ifndef LXBRIDGE_XMPCONV_DRIVER_H_
#define LXBRIDGE_XMPCONV_DRIVER_H_

#include <cstdint>

#include "clients/xmp/xmp_meta.h"
#include "kit/model/pool.h"

// Sets properties of `xmp` and marks consumed or outvoted items of the pool deleted; runs once, after the packet was
// parsed. hasNativeXmp: whether the file held a packet that was parsed without error. Gives how many items were
// converted. Exceptions of the toolkit leave it, from the calls that are not guarded: removing picturist properties,
// importing IPTC, deleting the property of an empty item, composing field paths, deleting Flash.
std::int32_t LxConvertPoolToXMP(LxMetadataPool* pool, XMPMetaHolder& xmp, bool hasNativeXmp);

#endif  // LXBRIDGE_XMPCONV_DRIVER_H_
