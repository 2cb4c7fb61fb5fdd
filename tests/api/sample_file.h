// One file that takes the library through everything: Exif, GPS, a maker note, IPTC, an XMP packet that IPTC outvotes.
#ifndef LXBRIDGE_TESTS_API_SAMPLE_FILE_H_
#define LXBRIDGE_TESTS_API_SAMPLE_FILE_H_

#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"

namespace lxtest {

inline Bytes SampleFile() {
  const TiffBuilder tiff = TiffBuilder(kBig)
                               .Ifd0({Ascii(0x010E, "a caption"), Ascii(0x010F, "Canon"), Short(0x0102, {8, 8, 8}),
                                      Ascii(0x0132, "2004:03:15 14:30:59"), Ascii(0x8298, "me")})
                               .Exif({Ratl(0x829A, 1, 250), Undef(0x9000, Text("0220")), Short(0x9209, 0x19),
                                      Undef(0x927C, Hex("0001 0001 0003 00000001 0005 0000 00000000")),
                                      Undef(0x9286, Text("ASCII") + Filled(3) + Text("a comment")),
                                      Undef(0xA302, Hex("0002 0002 00 01 01 02"))})
                               .Gps({Ascii(1, "N"), Ratl(2, {37, 1, 4698, 100, 0, 1}), Ratl(7, {14, 1, 30, 1, 15, 1}),
                                     Ascii(0x1D, "2004:03:15")});
  const Bytes iptc = IptcBuilder().Add(80, "me").Add(25, "sky").Add(25, "sea").Add(25, "sky").Add(55, "20040315");
  return JpegBuilder()
      .App0Jfif()
      .App1Exif(tiff)
      .App1Xmp(
          "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
          "<rdf:Description rdf:about='' xmlns:p='http://ns.adobe.com/picturist/1.0/' "
          "xmlns:x='http://ns.adobe.com/xap/1.0/' p:State='packet' x:Rating='3'/></rdf:RDF></x:xmpmeta>")
      .App13(ResourceBuilder().Iptc(iptc).Block(0x0425, Filled(16, 9)));
}

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_API_SAMPLE_FILE_H_
