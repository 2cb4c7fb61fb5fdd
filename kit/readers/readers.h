// The reading routines, one for each reader code, as dispatch.cpp calls them, and parts of them that other readers use.
// Offsets and lengths are bytes; the items' values point into the cache's blocks.
//
// REQUIRES, for all that take a range: LxIsValidRange(range). LxParseWithDescriptor checks it.
// Result, for all that return an item: the first of a sibling list, which the caller links into its tree. Null: nothing
// was found, or memory or budget ran out. Bad data ends the list early.
#ifndef LXBRIDGE_KIT_READERS_READERS_H_
#define LXBRIDGE_KIT_READERS_READERS_H_

#include "kit/readers/dispatch.h"

// jpeg.cpp
[[nodiscard]] LxMetadataItem* LxReadJpegStream(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                               const LxNamespaceDescriptor& descriptor) noexcept;
// Walks over the marker segments from `position` on, up to SOS, the end of the file or bad data.
[[nodiscard]] LxMetadataItem* LxReadJpegSegments(LxBlockCache* cache, const LxParseRange& range, std::uint32_t position,
                                                 LxParseContext* context,
                                                 const LxNamespaceDescriptor& descriptor) noexcept;
struct LxJpegSegment {
  std::uint16_t marker;
  std::uint16_t length;       // As stored, including its own two bytes. 0: a marker without a segment.
  const std::uint8_t* bytes;  // At the length field; for a marker without a segment, after the marker.
};
[[nodiscard]] bool LxReadJpegSegment(LxBlockCache* cache, std::uint32_t position, LxJpegSegment* segment) noexcept;
// The length of the identifier, a text after the length field; 0: none. REQUIRES: `segment` comes from
// LxReadJpegSegment.
[[nodiscard]] std::int32_t LxFindAppIdentifier(const LxJpegSegment& segment) noexcept;

// jpeg_payloads.cpp: reader codes 4, 9, 10, 11 (by the descriptor's code), 15 and 16, 17, 21
[[nodiscard]] LxMetadataItem* LxReadSegmentPayload(LxBlockCache* cache, const LxParseRange& range,
                                                   LxParseContext* context,
                                                   const LxNamespaceDescriptor& descriptor) noexcept;
[[nodiscard]] LxMetadataItem* LxReadWholeRange(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                               const LxNamespaceDescriptor& descriptor) noexcept;
[[nodiscard]] LxMetadataItem* LxReadJfif(LxBlockCache* cache, const LxParseRange& range,
                                         LxParseContext* context) noexcept;
[[nodiscard]] LxMetadataItem* LxReadIccProfile(LxBlockCache* cache, const LxParseRange& range,
                                               LxParseContext* context) noexcept;

// tiff.cpp
[[nodiscard]] LxMetadataItem* LxReadTiffHeader(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                               const LxNamespaceDescriptor& descriptor) noexcept;
// `offset` counts from the range's base; reads at most 8 IFDs.
[[nodiscard]] LxMetadataItem* LxReadIfdChain(std::uint32_t offset, LxBlockCache* cache, const LxParseRange& range,
                                             LxParseContext* context, const LxNamespaceDescriptor& descriptor) noexcept;
[[nodiscard]] LxMetadataItem* LxReadIfd(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                        const LxNamespaceDescriptor& descriptor) noexcept;

// image_resources.cpp
[[nodiscard]] LxMetadataItem* LxReadImageResources(LxBlockCache* cache, const LxParseRange& range,
                                                   LxParseContext* context,
                                                   const LxNamespaceDescriptor& descriptor) noexcept;
[[nodiscard]] LxMetadataItem* LxReadThumbnailResource(LxBlockCache* cache, const LxParseRange& range,
                                                      LxParseContext* context) noexcept;

// iptc.cpp
[[nodiscard]] LxMetadataItem* LxReadIptc(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                         const LxNamespaceDescriptor& descriptor) noexcept;

// maker_note.cpp
[[nodiscard]] LxMetadataItem* LxChooseMakerVendor(LxBlockCache* cache, const LxParseRange& range,
                                                  LxParseContext* context,
                                                  const LxNamespaceDescriptor& descriptor) noexcept;
[[nodiscard]] LxMetadataItem* LxReadMakerNote(LxBlockCache* cache, const LxParseRange& range, LxParseContext* context,
                                              const LxNamespaceDescriptor& descriptor) noexcept;

#endif  // LXBRIDGE_KIT_READERS_READERS_H_
