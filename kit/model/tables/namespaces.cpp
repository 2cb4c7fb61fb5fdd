// The namespaces: those that readers start from and switch to, the dictionary and display key of each name, and the
// place of each namespace in the three layouts. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxNamespaceDescriptor kLxJpegSpace              = {"jpeg",      kLxReadJpegStream,        kLxJpegSegmentIds, 0};
constexpr LxNamespaceDescriptor kLxThumbnailSpace         = {"jpegt",     kLxReadJpegStream,        kLxJpegSegmentIds, 0};
constexpr LxNamespaceDescriptor kLxTiffSpace              = {"tiff",      kLxReadTiffHeader,        kLxTiffTags,       0};
constexpr LxNamespaceDescriptor kLxSubIfdSpace            = {"tiff",      kLxReadIfd,               kLxTiffTags,       0};
constexpr LxNamespaceDescriptor kLxExifSpace              = {"exif",      kLxReadIfd,               kLxExifTags,       0};
constexpr LxNamespaceDescriptor kLxGpsSpace               = {"gps",       kLxReadIfd,               kLxGpsTags,        0};
constexpr LxNamespaceDescriptor kLxInteropSpace           = {"interop",   kLxReadIfd,               kLxInteropTags,    0};
constexpr LxNamespaceDescriptor kLxMakeSpace              = {"make",      kLxReadMakeOrModel,       nullptr,           0};
constexpr LxNamespaceDescriptor kLxModelSpace             = {"model",     kLxReadMakeOrModel,       nullptr,           1};
constexpr LxNamespaceDescriptor kLxMakerNoteSpace         = {"makernote", kLxReadMakerVendor,       kLxMakerSelector,  0};
constexpr LxNamespaceDescriptor kLxImageResourceSpace     = {"ir",        kLxReadImageResources,    kLxIrTags,         0};
constexpr LxNamespaceDescriptor kLxResourceThumbnailSpace = {"ir",        kLxReadResourceThumbnail, nullptr,           0};
constexpr LxNamespaceDescriptor kLxIptcSpace              = {"iptc",      kLxReadIptc,              kLxIptcTags,       0};
constexpr LxNamespaceDescriptor kLxFlashPixSpace          = {"fpxr",      kLxReadFlashPixData,      nullptr,           0};
constexpr LxNamespaceDescriptor kLxXmpSpace               = {"xmp",       kLxReadXmpPacket,         nullptr,           0};
constexpr LxNamespaceDescriptor kLxThumbnailLengthSpace   = {"jinterl",   kLxReadThumbnailLength,   nullptr,           0};

// The namespaces that can be edited. "jpeg" leads to the markers here: an item of it is named by its marker.
constexpr LxNamespaceEntry kLxNamespaces[] = {
  {"tiff",    kLxTiffTags},
  {"jpeg",    kLxJpegMarkers},
  {"exif",    kLxExifTags},
  {"ir",      kLxIrTags},
  {"iptc",    kLxIptcTags},
  {"gps",     kLxGpsTags},
  {"interop", kLxInteropTags},
  {"jfif",    kLxJfifTags},
  {"icc",     kLxIccTags},
  {"psdh",    kLxPsdHeaderTags},
  {"xmp",     kLxXmpTags},
  {nullptr,   nullptr},
};
static_assert(std::size(kLxNamespaces) == 11 + 1 && EndsAtNullNamespace(kLxNamespaces));

constexpr LxNamespaceLabel kLxNamespaceLabels[] = {
  {"tiff",      "$$$/Metadata/NameSpace/tiff=TIFF"},
  {"jpeg",      "$$$/Metadata/NameSpace/jpeg=JPEG"},
  {"exif",      "$$$/Metadata/NameSpace/exif=EXIF"},
  {"ir",        "$$$/Metadata/NameSpace/ir=PICTURIST"},
  {"iptc",      "$$$/Metadata/NameSpace/iptc=IPTC"},
  {"gps",       "$$$/Metadata/NameSpace/gps=GPS"},
  {"interop",   "$$$/Metadata/NameSpace/interop=INTEROP"},
  {"jfif",      "$$$/Metadata/NameSpace/jfif=JFIF"},
  {"icc",       "$$$/Metadata/NameSpace/icc=ICC"},
  {"fpxr",      "$$$/Metadata/NameSpace/fpxr=FLASHPIX"},
  {"xmp",       "$$$/Metadata/NameSpace/xmp=XMP"},
  {"makernote", "$$$/Metadata/NameSpace/makernote=MAKER NOTE"},
  {"nikon",     "$$$/Metadata/NameSpace/makernote1=NIKON MAKER NOTE"},
  {"canon",     "$$$/Metadata/NameSpace/makernote2=CANON MAKER NOTE"},
  {"fuji",      "$$$/Metadata/NameSpace/makernote3=FUJI MAKER NOTE"},
  {"olymp",     "$$$/Metadata/NameSpace/makernote4=OLYMPUS MAKER NOTE"},
  {"sigma",     "$$$/Metadata/NameSpace/makernote5=SIGMA MAKER NOTE"},
  {"foveon",    "$$$/Metadata/NameSpace/makernote9=FOVEON MAKER NOTE"},
  {"sony",      "$$$/Metadata/NameSpace/makernote6=SONY MAKER NOTE"},
  {"minolta",   "$$$/Metadata/NameSpace/makernote7=MINOLTA MAKER NOTE"},
  {"pentax",    "$$$/Metadata/NameSpace/makernote8=PENTAX MAKER NOTE"},
  {"generic",   "$$$/Metadata/NameSpace/makernote=MAKER NOTE"},
  {nullptr,     nullptr},
};
static_assert(std::size(kLxNamespaceLabels) == 22 + 1 && EndsAtNullNamespace(kLxNamespaceLabels));

namespace {

constexpr LxStructureEntry kEndOfStructure = {nullptr, nullptr, nullptr, kLxContainerUndefPointer};

}  // namespace

// Parents and keys are namespaces and item names; the key of a segment is its marker and identifier.
constexpr LxStructureEntry kLxTiffStructure[] = {
  //namespace parent    key                            kind
  {"tiff",    nullptr, nullptr,                      kLxContainerTiffRoot},
  {"exif",    "tiff",  "ExifOffset",                 kLxContainerLongPointer},
  {"ir",      "tiff",  "PicturistMetadata",          kLxContainerUndefPointer},
  {"iptc",    "ir",    "IptcNaa",                    kLxContainerUndefPointer},
  {"gps",     "tiff",  "GPSInfoIFD",                 kLxContainerLongPointer},
  {"interop", "exif",  "InteroperabilityIFDPointer", kLxContainerLongPointer},
  {"jpegt",   "tiff",  "IFD1",                       kLxContainerThumbnail},
  kEndOfStructure,
};
static_assert(std::size(kLxTiffStructure) == 7 + 1 && EndsAtNullNamespace(kLxTiffStructure));

constexpr LxStructureEntry kLxJpegStructure[] = {
  //namespace parent    key                            kind
  {"jpeg",    nullptr, nullptr,                      kLxContainerJpegRoot},
  {"tiff",    "APP1",  "Exif",                       kLxContainerJpegSegment},
  {"exif",    "tiff",  "ExifOffset",                 kLxContainerLongPointer},
  {"ir",      "APP13", "Picturist 3.0",              kLxContainerJpegSegment},
  {"jfif",    "APP0",  "JFIF",                       kLxContainerJpegSegment},
  {"icc",     "APP2",  "ICC_PROFILE",                kLxContainerJpegSegment},
  {"iptc",    "ir",    "IptcNaa",                    kLxContainerUndefPointer},
  {"gps",     "tiff",  "GPSInfoIFD",                 kLxContainerLongPointer},
  {"interop", "exif",  "InteroperabilityIFDPointer", kLxContainerLongPointer},
  {"jpegt",   "tiff",  "IFD1",                       kLxContainerThumbnail},
  {"xmp",     "APP1",  kLxXmpSegmentId,              kLxContainerJpegSegment},
  kEndOfStructure,
};
static_assert(std::size(kLxJpegStructure) == 11 + 1 && EndsAtNullNamespace(kLxJpegStructure));

constexpr LxStructureEntry kLxPsdStructure[] = {
  //namespace parent    key                            kind
  {"ir",      nullptr, nullptr,                      kLxContainerPsdRoot},
  {"tiff",    "ir",    "ExifData1",                  kLxContainerPsdExif},
  {"exif",    "tiff",  "ExifOffset",                 kLxContainerLongPointer},
  {"iptc",    "ir",    "IptcNaa",                    kLxContainerPsdPointer},
  {"gps",     "tiff",  "GPSInfoIFD",                 kLxContainerLongPointer},
  {"interop", "exif",  "InteroperabilityIFDPointer", kLxContainerLongPointer},
  {"jpegt",   "tiff",  "IFD1",                       kLxContainerThumbnail},
  kEndOfStructure,
};
static_assert(std::size(kLxPsdStructure) == 7 + 1 && EndsAtNullNamespace(kLxPsdStructure));
// clang-format on
