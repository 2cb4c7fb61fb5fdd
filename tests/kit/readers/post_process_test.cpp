// Layers, orientation and colour model, and the items that are removed, after reading.
#include "kit/readers/post_process.h"

#include <gtest/gtest.h>

#include "kit/model/find_items.h"
#include "kit/model/value.h"
#include "tests/support/image_builders.h"
#include "tests/support/item_tree.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

LxMetadataItem* WithValue(LxMetadataItem* item, const Bytes& value, std::uint16_t type = kLxTypeUndefined) {
  item->value = reinterpret_cast<const std::uint8_t*>(LxCopyText(value.data(), value.size()));
  item->valueLength = static_cast<std::int32_t>(value.size());
  item->typeCode = type;
  item->typeName = LxTypeName(type);
  item->flags |= kLxOwnsValue;
  return item;
}

class PostProcess : public testing::Test {
 protected:
  PostProcess() : memory_(NewPool()) {}  // Installs the memory procedures.
  PoolPtr memory_;
};

TEST_F(PostProcess, LayersAreToldByResourcesOrATiffTag) {
  const struct {
    const char* what;
    LxMetadataItem* item;
    bool layers;
  } cases[] = {
      {"none", Item("ir", "LayerState"), false},
      {"state 0", WithValue(Item("ir", "LayerState"), Hex("0000FF")), false},
      {"second byte", WithValue(Item("ir", "LayerState"), Hex("0001")), true},
      {"one byte", WithValue(Item("ir", "LayerState"), Hex("01")), true},
      {"a group of two", WithValue(Item("ir", "LayersGroup"), Hex("0000")), false},
      {"a group of three", WithValue(Item("ir", "LayersGroup"), Hex("000000")), true},
      {"the tag", Item("tiff", "PicturistLayers"), true},
  };
  for (const auto& c : cases) {
    TreePool pool(c.item);
    LxPostProcessPool(pool.get());
    EXPECT_EQ(pool->hasLayers, c.layers ? 1 : 0) << c.what;
  }
}

TEST_F(PostProcess, BlankAndLargeUnnamedItemsGoBeforeItIsAskedWhatThereIsToShow) {
  const Bytes file = TiffBuilder(kLittle).Ifd0({Ascii(0x0112, "  "), Short(0x0112, 6), Ascii(0x010E, "   "),
                                                Undef(0xC123, Filled(257, 1)), Undef(0xC124, Filled(256, 1)),
                                                Undef(0x8649, Filled(300, 1))});
  const PoolPtr pool = ReadPool(file);
  EXPECT_EQ(Find(*pool, "tiff", "ImageDescription"), nullptr);
  EXPECT_EQ(Find(*pool, "tiff", " c123"), nullptr);
  EXPECT_NE(Find(*pool, "tiff", " c124"), nullptr);
  EXPECT_NE(Find(*pool, "tiff", "PicturistMetadata"), nullptr);
  EXPECT_EQ(pool->orientation, kLxRot90Cw);  // A blank item gives way to the next of its name.
  EXPECT_EQ(ReadPool(TiffBuilder(kLittle).Ifd0({Ascii(0x010E, "  ")}))->hasMetadata, 0);
  EXPECT_EQ(ReadPool(TiffBuilder(kLittle).Ifd0({Ascii(0x010E, "x")}))->hasMetadata, 1);
}

TEST_F(PostProcess, TheCamerasRotationReplacesTheOrientation) {
  const struct {
    std::uint32_t degrees;
    std::size_t length;
    std::uint16_t type;
    const char* orientation;
    LxOrientation code;
  } cases[] = {
      {0, 1371, 7, "1", kLxRot0},      {90, 1371, 7, "8", kLxRot270Cw}, {180, 1371, 7, "3", kLxRot180},
      {270, 1371, 7, "6", kLxRot90Cw}, {45, 1371, 7, "2", kLxRotM0},    {90, 1370, 7, "2", kLxRotM0},
      {90, 1371, 1, "2", kLxRotM0},
  };
  for (const auto& c : cases) {
    Bytes value = Filled(c.length);
    value[1369] = static_cast<std::uint8_t>(c.degrees & 0xFF);
    if (c.length > 1370) value[1370] = static_cast<std::uint8_t>(c.degrees >> 8);
    LxMetadataItem* orientation = WithValue(Item("tiff", "Orientation"), Hex("0200"), kLxTypeShort);
    LxSetDisplayText(orientation, "2", false);
    TreePool pool(List({orientation, WithValue(Item("nikon", "NikonRotate"), value, c.type)}));
    LxPostProcessPool(pool.get());
    EXPECT_STREQ(pool.find("tiff", "Orientation")->displayText, c.orientation) << c.degrees;
    EXPECT_EQ(pool->orientation, c.code) << c.degrees;
  }
  // Without an orientation one is added.
  Bytes value = Filled(1371);
  value[1369] = 180;
  TreePool pool(Item("tiffh", "IFDHeader", {Item("tiffh", "IFD", {WithValue(Item("nikon", "NikonRotate"), value)})}));
  LxPostProcessPool(pool.get());
  EXPECT_EQ(pool->orientation, kLxRot180);
}

TEST_F(PostProcess, OrientationHasACodeForEachValue) {
  const LxOrientation codes[] = {kLxRot0,      kLxRot0,    kLxRotM0,    kLxRot180,   kLxRotM180,
                                 kLxRotM270Cw, kLxRot90Cw, kLxRotM90Cw, kLxRot270Cw, kLxRot0};
  for (std::uint16_t value = 0; value < 10; ++value) {
    EXPECT_EQ(ReadPool(TiffBuilder(kBig).Ifd0({Short(0x0112, value)}))->orientation, codes[value]) << value;
  }
  EXPECT_EQ(ReadPool(TiffBuilder(kBig).Ifd0({Long(0x0112, 0x10001)}))->orientation, kLxRot0);
}

TEST_F(PostProcess, ColourSpaceAndProfileRefineTheColourModel) {
  const Bytes srgb = TiffBuilder(kLittle).Exif({Short(0xA001, 1)});
  const Bytes uncalibrated = TiffBuilder(kLittle).Exif({Short(0xA001, 65535)});
  const Bytes fourComponents = {0x11, 0x11, 0x11, 0x11};
  const struct {
    const char* what;
    Bytes file;
    const char* model;
  } cases[] = {
      {"sRGB", JpegBuilder().App1Exif(srgb), "sRGB"},
      {"uncalibrated", JpegBuilder().App1Exif(uncalibrated), "RGB"},
      {"sRGB of four components", JpegBuilder().App1Exif(srgb).Sof(0xC0, 8, 8, fourComponents), "CMYK"},
      {"both", JpegBuilder().App1Exif(srgb).App2Icc(IccProfile("Wide")), "RGBicc"},
      {"a profile without bytes", JpegBuilder().App2Icc(Bytes()), "RGB"},
      {"a profile in a TIFF tag", TiffBuilder(kBig).Ifd0({Short(0x0106, 2), Undef(0x8773, IccProfile("Wide"))}),
       "RGBicc"},
      {"a profile in a PSD file", PsdBuilder().Resources(ResourceBuilder().Block(0x040F, IccProfile("Wide"))),
       "RGBicc"},
      {"sRGB in a TIFF file of unknown model", srgb, "sRGB"},
  };
  for (const auto& c : cases) EXPECT_STREQ(LxColourModelName(ReadPool(c.file)->colourModel), c.model) << c.what;

  TreePool pool(Item("ir", "ICCProfile"));
  pool->colourModel = kLxColourRgbAlpha;
  LxPostProcessPool(pool.get());
  EXPECT_STREQ(LxColourModelName(pool->colourModel), "rgbiccca");
}

TEST_F(PostProcess, SeveralSearchesInOneWalkFindWhatEachFindsAlone) {
  TreePool pool(List({Item("a", "one", {Item("b", "two"), Item("a", "three", {Item("c", "four")}, kLxClosed)}),
                      Item("a", "five", {Item("a", "six", {}, kLxEndOfRun), Item("a", "seven")}),
                      Item("a", "outer", {Item("a", "nine", {Item("a", "ten")}, kLxEndOfRun), Item("b", "three")}),
                      Item("a", "gone", {Item("a", "eight")}, kLxDeleted | kLxEndOfRun), Item("a", "two"),
                      Shown("b", "two", "shown"), Shown("a", "three", "shown", kLxEndOfRun), Item("a", "eight")}));
  const char* const nameSpaces[] = {"a", "b", "c"};
  const char* const names[] = {"one", "two", "three", "four", "five", "six", "seven", "eight", "gone", "t"};
  const char* const texts[] = {nullptr, "shown"};
  std::vector<LxWantedItem> wanted;
  for (const char* nameSpace : nameSpaces) {
    for (const char* name : names) {
      for (const char* text : texts) wanted.push_back({nameSpace, name, text});
    }
  }
  LxFindItems(pool->root, wanted.data(), wanted.size());
  std::size_t found = 0;
  for (const LxWantedItem& item : wanted) {
    EXPECT_EQ(item.found, LxFindItemInTree(pool->root, item.nameSpace, item.name, item.displayText))
        << item.nameSpace << " " << item.name;
    found += item.found != nullptr ? 1 : 0;
  }
  EXPECT_GE(found, 8u);
}

}  // namespace
