// All constant tables of the kit. Each is defined in a .cpp of this folder (one per namespace, in maker/ one per maker)
// and constant-initialised: nothing runs at load time.
#ifndef LXBRIDGE_KIT_MODEL_TABLES_TABLES_H_
#define LXBRIDGE_KIT_MODEL_TABLES_TABLES_H_

#include "kit/model/tag_record.h"

// Dictionaries. Each ends at its null-named record.
extern const LxTagRecord kLxTiffTags[];        // tiff.cpp: TIFF 6.0, TIFF/EP and later tags
extern const LxTagRecord kLxExifTags[];        // exif.cpp: Exif 2.2
extern const LxTagRecord kLxGpsTags[];         // gps.cpp: Exif 2.2, GPS attributes
extern const LxTagRecord kLxInteropTags[];     // interop.cpp
extern const LxTagRecord kLxIptcTags[];        // iptc.cpp: IPTC-IIM 4, record 2
extern const LxTagRecord kLxIrTags[];          // ir.cpp: image resources
extern const LxTagRecord kLxJpegMarkers[];     // jpeg.cpp: FFC0 to FFFF, then a catch-all
extern const LxTagRecord kLxJpegSegmentIds[];  // jpeg.cpp: markers with the identifiers of APPn segments
extern const LxTagRecord kLxJfifTags[];        // small.cpp
extern const LxTagRecord kLxIccTags[];
extern const LxTagRecord kLxPsdHeaderTags[];
extern const LxTagRecord kLxXmpTags[];

// Maker notes: selectors by the texts of Make and Model, and the makers' dictionaries (maker/).
extern const LxTagRecord kLxMakerSelector[];
extern const LxTagRecord kLxNikonATags[];
extern const LxTagRecord kLxNikonBTags[];
extern const LxTagRecord kLxNikonCTags[];
extern const LxTagRecord kLxCanonTags[];
extern const LxTagRecord kLxFujiTags[];
extern const LxTagRecord kLxOlympusTags[];
extern const LxTagRecord kLxSigmaTags[];
extern const LxTagRecord kLxMinoltaTags[];
extern const LxTagRecord kLxPentaxTags[];
extern const LxTagRecord kLxNoTags[];  // Only the end record: every tag gets a generated name.

// Namespaces by name (editing finds a dictionary here), and with their display keys.
extern const LxNamespaceEntry kLxNamespaces[];
struct LxNamespaceLabel {
  const char* nameSpace;  // Null ends the table.
  const char* label;
};
extern const LxNamespaceLabel kLxNamespaceLabels[];

// The place of each namespace in each layout.
extern const LxStructureEntry kLxTiffStructure[];
extern const LxStructureEntry kLxJpegStructure[];
extern const LxStructureEntry kLxPsdStructure[];

// The descriptors that readers start from or switch to; tag records point to these and to others.
extern const LxNamespaceDescriptor kLxJpegSpace;               // {"jpeg", 1, segment identifiers, 0}
extern const LxNamespaceDescriptor kLxThumbnailSpace;          // {"jpegt", 1, segment identifiers, 0}
extern const LxNamespaceDescriptor kLxTiffSpace;               // {"tiff", 2, tiff, 0}
extern const LxNamespaceDescriptor kLxSubIfdSpace;             // {"tiff", 3, tiff, 0}
extern const LxNamespaceDescriptor kLxExifSpace;               // {"exif", 3, exif, 0}
extern const LxNamespaceDescriptor kLxGpsSpace;                // {"gps", 3, gps, 0}
extern const LxNamespaceDescriptor kLxInteropSpace;            // {"interop", 3, interop, 0}
extern const LxNamespaceDescriptor kLxMakeSpace;               // {"make", 5, none, 0}
extern const LxNamespaceDescriptor kLxModelSpace;              // {"model", 5, none, 1}
extern const LxNamespaceDescriptor kLxMakerNoteSpace;          // {"makernote", 6, maker selector, 0}
extern const LxNamespaceDescriptor kLxImageResourceSpace;      // {"ir", 12, ir, 0}
extern const LxNamespaceDescriptor kLxResourceThumbnailSpace;  // {"ir", 13, none, 0}
extern const LxNamespaceDescriptor kLxIptcSpace;               // {"iptc", 14, iptc, 0}
extern const LxNamespaceDescriptor kLxFlashPixSpace;           // {"fpxr", 15, none, 0}
extern const LxNamespaceDescriptor kLxXmpSpace;                // {"xmp", 16, none, 0}
extern const LxNamespaceDescriptor kLxThumbnailLengthSpace;    // {"jinterl", 20, none, 0}

// The identifier of an APP1 segment that holds an XMP packet (ISO 16684-1 part 3, JPEG), without its zero byte.
inline constexpr char kLxXmpSegmentId[] = "http://ns.adobe.com/xap/1.0/";
// The same for a portion of an extended packet, which no reader looks into: the conversion joins them.
inline constexpr char kLxExtendedXmpSegmentId[] = "http://ns.adobe.com/xmp/extension/";

#endif  // LXBRIDGE_KIT_MODEL_TABLES_TABLES_H_
