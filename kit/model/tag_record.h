// The types of the constant tables that name metadata: tag records and dictionaries, namespace descriptors, value
// names, structure tables. The tables themselves are in tables/, the lookups in lookup.h.
#ifndef LXBRIDGE_KIT_MODEL_TAG_RECORD_H_
#define LXBRIDGE_KIT_MODEL_TAG_RECORD_H_

#include <cstdint>

// How a value becomes a display text.
enum LxDisplayFormat : std::uint32_t {
  kLxFormatValueNames = 0,
  kLxFormatNone = 1,
  kLxFormatIccProfile = 2,
  kLxFormatVersionInfo = 3,
  kLxFormatJpegQuality = 4,
  kLxFormatPhotoQuantity = 5,
  kLxFormatGeneric6 = 6,
  kLxFormatMakerSpecial = 7,
  kLxFormatGeneric8 = 8,
  kLxFormatGpsQuantity = 9,
  kLxFormatComment = 10,
};

// One named value. A table ends at the entry whose name is null.
struct LxValueName {
  std::uint32_t value;  // Compared as 16 bits.
  const char* name;
  const char* label;  // Display key, or null.
};

struct LxDisplayDescriptor {
  std::uint32_t format;           // LxDisplayFormat
  const LxValueName* valueNames;  // Format 0 only, else null.
};

// The routine that reads the metadata that a descriptor describes.
enum LxReaderCode : std::uint32_t {
  kLxReadJpegStream = 1,
  kLxReadTiffHeader = 2,
  kLxReadIfd = 3,
  kLxReadExifSegment = 4,
  kLxReadMakeOrModel = 5,
  kLxReadMakerVendor = 6,
  kLxReadMakerNote = 8,
  kLxReadResourceSegment = 9,
  kLxReadFlashPixSegment = 10,
  kLxReadXmpSegment = 11,
  kLxReadImageResources = 12,
  kLxReadResourceThumbnail = 13,
  kLxReadIptc = 14,
  kLxReadFlashPixData = 15,
  kLxReadXmpPacket = 16,
  kLxReadJfifSegment = 17,
  kLxReadThumbnailLength = 20,
  kLxReadIccSegment = 21,
};

struct LxTagRecord;

// Describes the metadata that a tag leads to: the namespace of its items, the routine that reads it, the dictionary
// that names its tags, and a parameter for that routine.
struct LxNamespaceDescriptor {
  const char* nameSpace;
  std::uint32_t readerCode;       // LxReaderCode
  const LxTagRecord* dictionary;  // Null for most reader codes.
  std::uint32_t variant;
};

// Record flags, ORed into the flags of the items named by the record.
inline constexpr std::uint16_t kLxRecordPlain = 0;
inline constexpr std::uint16_t kLxRecordClosed = 0x0040;
inline constexpr std::uint16_t kLxRecordHidden = 0x0400;

// One entry of a dictionary. A dictionary ends at the record whose name is null; an empty name is a catch-all.
struct LxTagRecord {
  std::uint16_t id;
  std::uint16_t flags;  // kLxRecord...
  const char* name;
  std::uint16_t typeCode;                     // The expected type; a type given in the file takes precedence.
  std::int16_t count;                         // n: exactly n values; -n: up to n; 0: not fixed.
  const LxDisplayDescriptor* display;         // Null: by the type alone.
  const LxNamespaceDescriptor* subNamespace;  // What the value holds or points to, or null.
  const char* label;                          // Display key "$$$/Group/Key=Text", or null.
};

inline constexpr LxTagRecord kLxEndOfTags = {0, 0, nullptr, 3, 1, nullptr, nullptr, nullptr};

struct LxNamespaceEntry {
  const char* nameSpace;  // Null ends the table.
  const LxTagRecord* dictionary;
};

// The container to be created for a namespace that a file does not yet hold.
enum LxContainerKind : std::uint32_t {
  kLxContainerJpegRoot = 1,
  kLxContainerTiffRoot = 2,
  kLxContainerUndefPointer = 3,
  kLxContainerJpegSegment = 4,
  kLxContainerThumbnail = 5,  // Never created.
  kLxContainerPsdRoot = 6,
  kLxContainerPsdPointer = 7,
  kLxContainerPsdExif = 8,
  kLxContainerLongPointer = 9,
};

struct LxStructureEntry {
  const char* nameSpace;  // Null ends the table (kind 3 there).
  const char* parent;
  const char* key;
  std::uint32_t kind;  // LxContainerKind
};

#endif  // LXBRIDGE_KIT_MODEL_TAG_RECORD_H_
