// The Exif tags whose value is a packed record, or text by convention: structs of the Exif schema, arrays, texts.
#ifndef LXBRIDGE_XMPCONV_EXIF_STRUCTS_H_
#define LXBRIDGE_XMPCONV_EXIF_STRUCTS_H_

#include "xmpconv/conversion.h"

// Chooses by the item's tag. Needs a value. A value too short for its layout writes nothing, of a record with several
// fields none that does not fit. Exceptions of composing a field's path and of deleting Flash leave it.
[[nodiscard]] bool LxMapExifSpecial(LxConversion& conversion, const LxMetadataItem* item, const char* schema,
                                    LxPartner partner);

#endif  // LXBRIDGE_XMPCONV_EXIF_STRUCTS_H_
