// PSD files: the header's attributes and limits, and the sections after it.
#include <gtest/gtest.h>

#include "kit/base/memory.h"
#include "tests/support/image_builders.h"
#include "tests/support/item_tree.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

constexpr std::size_t kHeaderSize = 26;

TEST(Psd, TheHeaderGivesTheAttributesWhateverStandsInReservedBytesAndColourData) {
  const char* const models[] = {"bitbz", "gray", "indexedRGB", "RGB", "CMYK", "unk", "unk", "multi", "duo", "icclab"};
  for (std::size_t mode = 0; mode < std::size(models); ++mode) {
    PsdBuilder psd;
    psd.mode = static_cast<std::uint16_t>(mode);
    psd.channels = 5;
    psd.width = 640;
    psd.height = 480;
    psd.depth = 16;
    psd.colourData = Filled(mode * 99, 0x38);
    psd.Resources(ResourceBuilder().Iptc(IptcBuilder().Add(25, "harbour")));
    LxResult status = kLxInternalError;
    const PoolPtr pool = ParsePool(WithBytes(psd, 6, Filled(6, 0xEE)), &status);
    EXPECT_EQ(status, kLxOk);
    EXPECT_EQ(pool->fileKind, kLxFilePsd);
    EXPECT_STREQ(LxColourModelName(pool->colourModel), models[mode]) << mode;
    EXPECT_EQ(pool->width, 640);
    EXPECT_EQ(pool->height, 480);
    EXPECT_EQ(pool->samples, 5);
    EXPECT_EQ(pool->bits, 16);
    EXPECT_EQ(pool->compression, kLxCompressionUnknown);
    EXPECT_EQ(Shape(pool->root), "psdh.PSDHeader{ir.IptcNaa{iptc.Keywords}}");
  }
}

TEST(Psd, AHeaderBeyondItsLimitsIsBad) {
  const struct {
    const char* field;
    std::size_t at, bytes;
    std::uint32_t lowest, highest;
  } cases[] = {{"channels", 12, 2, 1, 24},
               {"height", 14, 4, 1, 30000},
               {"width", 18, 4, 1, 30000},
               {"depth", 22, 2, 1, 16},
               {"mode", 24, 2, 0, 9}};
  const Bytes file = PsdBuilder().Resources(ResourceBuilder().Iptc(IptcBuilder().Add(25, "x")));
  for (const auto& c : cases) {
    const std::uint32_t topBit = c.bytes == 2 ? 0x8000 : 0x80000000;
    for (const std::uint32_t value : {c.lowest, c.highest, c.lowest - 1, c.highest + 1, topBit, topBit + 1}) {
      const bool good = value == c.lowest || value == c.highest;
      LxResult status = kLxInternalError;
      const PoolPtr pool = ParsePool(WithBytes(file, c.at, c.bytes == 2 ? Put16(value) : Put32(value)), &status);
      EXPECT_EQ(status, good ? kLxOk : kLxBadReadFormat) << c.field << " " << value;
      EXPECT_EQ(pool->root != nullptr, good) << c.field << " " << value;
    }
  }
  // Another version is another kind of file altogether.
  LxResult status = kLxBadReadFormat;
  EXPECT_EQ(ParsePool(WithByte(file, 5, 2), &status)->fileKind, kLxFileUnknown);
  EXPECT_EQ(status, kLxOk);
}

TEST(Psd, EverySectionHasToBeThereUpToTheLayersLength) {
  PsdBuilder psd;
  psd.colourData = Filled(6);
  psd.Resources(ResourceBuilder().Iptc(IptcBuilder().Add(25, "harbour")).Raw({}));
  psd.layerLength = 12;
  const Bytes file = psd;
  const std::size_t needed = file.size() - 12;
  for (std::size_t length = 0; length <= file.size(); ++length) {
    LxResult status = kLxInternalError;
    const PoolPtr pool = ParsePool(Truncated(file, length), &status);
    ASSERT_TRUE(IsWellFormed(*pool)) << length;
    // Below 16 bytes it is not known for a PSD file.
    EXPECT_EQ(status, length < 16 || length >= needed ? kLxOk : kLxBadReadFormat) << length;
    EXPECT_EQ(Find(*pool, "iptc", "Keywords") != nullptr, length >= needed) << length;
    // Without the layers' length the items go; the attributes still say that there is metadata.
    EXPECT_EQ(pool->hasMetadata, length >= needed - 4 ? 1 : 0) << length;
  }
  for (const std::size_t lengthField : {kHeaderSize, kHeaderSize + 4 + 6}) {
    for (const std::uint32_t length : {1000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFE0u, 0xFFFFFFFFu}) {
      LxResult status = kLxOk;
      EXPECT_EQ(ParsePool(WithBytes(file, lengthField, Put32(length)), &status)->root, nullptr);
      EXPECT_EQ(status, kLxBadReadFormat) << lengthField << " " << length;
    }
  }
}

TEST(Psd, LayersAreASectionOfMoreThanEightBytes) {
  for (const std::uint32_t length : {0u, 4u, 8u, 9u, 0x80000000u, 0xFFFFFFFFu}) {
    PsdBuilder psd;
    psd.layerLength = length;  // The section's own bytes are not looked at.
    EXPECT_EQ(ParsePool(psd)->hasLayers, length > 8 ? 1 : 0) << length;
  }
  EXPECT_EQ(ParsePool(PsdBuilder().Resources(ResourceBuilder().Block(0x0400, {0, 1})))->hasLayers, 1);
}

}  // namespace
