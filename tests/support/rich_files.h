// Files that hold everything at once: the metadata of a camera, an editor and a picture desk. For sweeps over faults
// and as seeds of fuzzing.
#ifndef LXBRIDGE_TESTS_SUPPORT_RICH_FILES_H_
#define LXBRIDGE_TESTS_SUPPORT_RICH_FILES_H_

#include <string_view>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"

namespace lxtest {

// A builder with a `gap` puts so many bytes of no meaning between its parts: with 5000 hardly two are on the same page.

// An XMP packet with simple values, a struct, all three kinds of array, a language alternative and a qualifier.
[[nodiscard]] std::string_view RichPacket();
// Datasets of the caption, of people and of places, keywords (repeated ones too), dates, texts in three encodings.
[[nodiscard]] IptcBuilder RichIptc();
// Datasets, the caption digest, an Exif block in the other byte order, a thumbnail, a packet, a resource with a name.
[[nodiscard]] ResourceBuilder RichResources(Order order, std::size_t gap = 0);
// IFD0, Exif with a maker note and a comment, GPS, interoperability, IFD1 with a thumbnail. As of a Canon camera.
[[nodiscard]] TiffBuilder RichExif(Order order, std::size_t gap = 0);

// APP0 (JFIF), APP1 (Exif, XMP), APP2 (ICC profile), APP13, a comment.
[[nodiscard]] Bytes RichJpeg(Order order, std::size_t gap = 0);
// RichExif's IFDs with sub-IFDs, resources, datasets and a packet in tags.
[[nodiscard]] Bytes RichTiff(Order order, std::size_t gap = 0);
// A main packet and the extended one that it names, in two portions.
[[nodiscard]] Bytes ExtendedJpeg();
// The directories in a compressed raw profile, resources in another, a compressed packet.
[[nodiscard]] Bytes RichPng(std::size_t gap = 0);
[[nodiscard]] Bytes RichWebp(std::size_t gap = 0);
// Items in extents, one of them compressed; boxes, one of them compressed; boxes with resources and bare datasets.
[[nodiscard]] Bytes RichHeif(std::size_t gap = 0);
[[nodiscard]] Bytes RichJxl(std::size_t gap = 0);
[[nodiscard]] Bytes RichJp2(std::size_t gap = 0);
[[nodiscard]] Bytes RichPsd(std::size_t gap = 0);

struct NamedFile {
  const char* name;
  Bytes bytes;
};
// One of each, and a GIF file and a side-car.
[[nodiscard]] std::vector<NamedFile> RichFiles(std::size_t gap = 0);

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_RICH_FILES_H_
