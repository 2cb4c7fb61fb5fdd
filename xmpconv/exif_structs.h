// The Exif tags whose value is a packed record, or a text by convention: structs of the Exif schema, arrays, texts.
#ifndef LXBRIDGE_XMPCONV_EXIF_STRUCTS_H_
#define LXBRIDGE_XMPCONV_EXIF_STRUCTS_H_

#include "xmpconv/conversion.h"

// Selects the rule by the item's tag. A value too short for its layout writes nothing; of a record with several fields,
// only those that fit are written. Passes on exceptions from composing a field's path and from deleting Flash.
// REQUIRES: an item with a value.
[[nodiscard]] bool LxMapExifSpecial(LxConversion& conversion, const LxMetadataItem* item, const char* schema,
                                    LxPartner partner);

#endif  // LXBRIDGE_XMPCONV_EXIF_STRUCTS_H_
