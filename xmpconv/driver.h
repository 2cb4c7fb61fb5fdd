// Converts one file's pool to its XMP object: decides which IPTC block is used, whether it or the file's XMP packet
// takes precedence, and which items are converted.
#ifndef LXBRIDGE_XMPCONV_DRIVER_H_
#define LXBRIDGE_XMPCONV_DRIVER_H_

#include <cstdint>

#include "clients/xmp/xmp_meta.h"
#include "kit/model/pool.h"

// Sets properties of `xmp` and marks items of the pool deleted that were used or superseded. Called once, after the
// packet was parsed. hasNativeXmp: whether the file has a packet that was parsed without error. Returns the number of
// items converted. Passes on the toolkit's exceptions from calls that are not guarded: removing picturist properties,
// importing IPTC, deleting the property of an empty item, composing field paths, deleting Flash.
std::int32_t LxConvertPoolToXMP(LxMetadataPool* pool, XMPMetaHolder& xmp, bool hasNativeXmp);

#endif  // LXBRIDGE_XMPCONV_DRIVER_H_
