// The conversion of one file's pool into its XMP object: which IPTC block is used, whether it or the file's XMP packet
// wins, and which items are converted. The only file of this room that knows the interchange object.
#ifndef LXBRIDGE_XMPCONV_DRIVER_H_
#define LXBRIDGE_XMPCONV_DRIVER_H_

#include <cstdint>

class LxInterchange;

// Reads the interchange object's pool, XMP object and hasNativeXMP; sets properties and marks consumed or outvoted
// items of the pool deleted. Runs once, after the packet was parsed. *converted: items that were converted; *further
// stays 0. Exceptions of the toolkit leave it, from the calls that are not guarded: removing picturist properties,
// importing IPTC, deleting the property of an empty item, composing field paths, deleting Flash.
void LxConvertPoolToXMP(LxInterchange& interchange, std::int32_t* converted, std::int32_t* further);

#endif  // LXBRIDGE_XMPCONV_DRIVER_H_
