// IPTC datasets and image resources to properties of the picturist schema. Values are display texts, which are UTF-8.
//
// No call of the toolkit is guarded here but those of the search for a keyword: exceptions leave these functions.
#ifndef LXBRIDGE_XMPCONV_IPTC_H_
#define LXBRIDGE_XMPCONV_IPTC_H_

#include "xmpconv/conversion.h"

// Of a dataset that may occur once, the last wins; keywords gather in a bag, each once. True: the dataset has a
// property.
bool LxConvertIptcItem(LxConversion& conversion, const LxMetadataItem* item);

// The two items that tell the rights: "WebStatement" and "Marked". No reader makes items of these names today. True:
// written.
bool LxConvertIrItem(LxConversion& conversion, const LxMetadataItem* item);

#endif  // LXBRIDGE_XMPCONV_IPTC_H_
