// Writes the sample photograph of `scripts/run`: a JPEG file with the metadata of a camera and an editor (TIFF, EXIF
// and GPS tags, IPTC datasets, an XMP packet with the caption digest that says that the datasets are newer).
#include <cstdio>
#include <fstream>

#include "tests/support/bytes.h"
#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"

using namespace lxtest;

namespace {

Bytes Sample() {
  const TiffBuilder tiff =
      TiffBuilder(kBig)
          .Ifd0({Ascii(0x010F, "Example Cameras"), Ascii(0x0110, "Model One"), Short(0x0112, 1), Ratl(0x011A, 300, 1),
                 Ratl(0x011B, 300, 1), Short(0x0128, 2), Ascii(0x0132, "2024:06:21 18:30:05"),
                 Ascii(0x013B, "Ada Example"), Ascii(0x8298, "(c) 2024 Ada Example")})
          .Exif({Ratl(0x829A, 1, 250), Ratl(0x829D, 56, 10), Short(0x8827, 200), Undef(0x9000, Text("0221")),
                 Ascii(0x9003, "2024:06:21 18:30:05"), Ratl(0x920A, 50, 1), Short(0x9209, 0x19),
                 Undef(0x9286, Text("ASCII") + Filled(3) + Text("Taken from the pier")), Ascii(0x9291, "25"),
                 Short(0xA001, 1)})
          .Gps({Byte(0x0000, {2, 2, 0, 0}), Ascii(0x0001, "N"), Ratl(0x0002, {37, 1, 46, 1, 30, 1}), Ascii(0x0003, "W"),
                Ratl(0x0004, {122, 1, 2550, 100, 0, 1})});
  const IptcBuilder iptc = IptcBuilder()
                               .Add(120, "The harbour at dusk")
                               .Add(80, "Ada Example")
                               .Add(25, "harbour")
                               .Add(25, "dusk")
                               .Add(90, "San Francisco")
                               .Add(55, "20240621");
  const char* packet =
      "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>"
      "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
      "<rdf:Description rdf:about='' xmlns:xmp='http://ns.adobe.com/xap/1.0/' "
      "xmlns:dc='http://purl.org/dc/elements/1.1/'"
      " xmp:Rating='4'><dc:subject><rdf:Bag><rdf:li>harbour</rdf:li></rdf:Bag></dc:subject></rdf:Description>"
      "</rdf:RDF></x:xmpmeta><?xpacket end='w'?>";
  const ResourceBuilder resources = ResourceBuilder().Iptc(iptc).Block(0x0425, Filled(16, 0xEE));
  return JpegBuilder().App1Exif(tiff).App1Xmp(packet).App13(resources).Build();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: lx_make_sample FILE\n", stderr);
    return 2;
  }
  const Bytes sample = Sample();
  std::ofstream file(argv[1], std::ios::binary);
  file.write(reinterpret_cast<const char*>(sample.data()), static_cast<std::streamsize>(sample.size()));
  file.close();
  return file ? 0 : 1;
}
