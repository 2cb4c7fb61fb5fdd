// A maker note in its Exif file. The input's first byte gives the byte order (top bit) and the maker; in front of the
// note, a model that the maker's rows name, or 255: two texts, each with its length in front.
#include <array>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "kit/model/tables/tables.h"
#include "tests/support/tiff_builder.h"

namespace {

struct Camera {
  std::string make;
  std::string model;
};

// Every row of the selectors, by which each dictionary is reached.
std::vector<Camera> AllCameras() {
  std::vector<Camera> cameras;
  for (const LxTagRecord* make = kLxMakerSelector; make->name != nullptr; ++make) {
    for (const LxTagRecord* model = make->subNamespace->dictionary; model->name != nullptr; ++model) {
      cameras.push_back({make->name[0] != '\0' ? make->name : "Other", model->name[0] != '\0' ? model->name : "Other"});
    }
  }
  return cameras;
}

std::string TakeText(lxfuzz::Input* in) {
  const lxtest::Bytes text = in->Take(in->Byte() % 64);
  return std::string(text.begin(), text.end());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::vector<Camera> kCameras = AllCameras();
  lxfuzz::Input in(data, size);
  const std::uint8_t first = in.Byte();
  const lxtest::Order order = (first & 0x80) != 0 ? lxtest::kBig : lxtest::kLittle;
  const Camera camera =
      (first & 0x7F) == 0x7F ? Camera{TakeText(&in), TakeText(&in)} : kCameras[(first & 0x7F) % kCameras.size()];
  const lxtest::Bytes file = lxtest::TiffBuilder(order)
                                 .Ifd0({lxtest::Ascii(0x010F, camera.make), lxtest::Ascii(0x0110, camera.model)})
                                 .Exif({lxtest::Undef(0x927C, in.Rest())});
  const lxtest::PoolPtr pool = lxtest::ParsePool(file);
  lxfuzz::RequireWellFormed(*pool);
  return 0;
}
