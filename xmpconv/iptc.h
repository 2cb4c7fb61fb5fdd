// Converts IPTC datasets and image resources to properties of the picturist schema. Values are display texts, which are
// UTF-8.
//
// Only the calls that search for a keyword are guarded: other exceptions of the toolkit leave these functions.
#ifndef LXBRIDGE_XMPCONV_IPTC_H_
#define LXBRIDGE_XMPCONV_IPTC_H_

#include "xmpconv/conversion.h"

// Of a dataset that may occur once, the last one counts; keywords are collected in a bag without duplicates. True: the
// dataset has a property.
bool LxConvertIptcItem(LxConversion& conversion, const LxMetadataItem* item);

// Converts the two rights items, "WebStatement" and "Marked". No reader currently creates items of these names. True:
// written.
bool LxConvertIrItem(LxConversion& conversion, const LxMetadataItem* item);

#endif  // LXBRIDGE_XMPCONV_IPTC_H_
