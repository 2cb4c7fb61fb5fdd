// TIFF, Exif and GPS items to XMP properties: which tag is mapped by which rule, and the plain rules.
//
// An item of value length 0 deletes the property of its name, whatever its tag; that call is not guarded. A tag in no
// table, and an item that its rule does not accept, leave the XMP object as it is. True: the property was written.
#ifndef LXBRIDGE_XMPCONV_TIFF_EXIF_H_
#define LXBRIDGE_XMPCONV_TIFF_EXIF_H_

#include "xmpconv/conversion.h"

// "tiff" items, into the TIFF schema.
bool LxConvertTiffItem(LxConversion& conversion, const LxMetadataItem* item);
// "exif" and "gps" items, into the Exif schema. The raw-converter tags go into schemas of their own, and give false
// even when they write.
bool LxConvertExifItem(LxConversion& conversion, const LxMetadataItem* item);

#endif  // LXBRIDGE_XMPCONV_TIFF_EXIF_H_
