// Converts TIFF, Exif and GPS items to XMP properties: the table of rules by tag, and the simple rules.
//
// An item of value length 0 deletes the property of its name, whatever its tag; that call is not guarded. An item whose
// tag is in no table, or that its rule does not accept, does not change the XMP object. True: the property was written.
#ifndef LXBRIDGE_XMPCONV_TIFF_EXIF_H_
#define LXBRIDGE_XMPCONV_TIFF_EXIF_H_

#include "xmpconv/conversion.h"

// "tiff" items, into the TIFF schema.
bool LxConvertTiffItem(LxConversion& conversion, const LxMetadataItem* item);
// "exif" and "gps" items, into the Exif schema. The raw-converter tags go into schemas of their own, for which the
// result is always false.
bool LxConvertExifItem(LxConversion& conversion, const LxMetadataItem* item);

#endif  // LXBRIDGE_XMPCONV_TIFF_EXIF_H_
