// Bad input is normal input: cut and bent files, graphs that lead back into themselves. What is read always stands as a
// sound pool. (What hostile files may cost is measured elsewhere, in processes of their own.)
#include <gtest/gtest.h>

#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"
#include "tests/support/rich_files.h"

using namespace lxtest;

namespace {

TEST(Bounds, EveryPrefixAndEveryChangedByteReadsIntoASoundPool) {
  for (Bytes file : {RichJpeg(kLittle), RichJpeg(kBig), RichTiff(kLittle), RichTiff(kBig)}) {
    ASSERT_GT(AllItems(*ParsePool(file)).size(), 50u);
    for (std::size_t at = 0; at < file.size(); ++at) {
      ASSERT_TRUE(IsWellFormed(*ParsePool(Truncated(file, at)))) << "cut to " << at;
      const std::uint8_t before = file[at];
      for (const int value : {0x00, 0x01, 0x7F, 0xFF, before ^ 0x10, before + 1}) {
        file[at] = static_cast<std::uint8_t>(value);
        ASSERT_TRUE(IsWellFormed(*ParsePool(file))) << "byte " << at << " to " << value;
      }
      file[at] = before;
    }
  }
}

TEST(Bounds, IfdsThatLeadBackIntoThemselvesEnd) {
  for (const Order order : {kLittle, kBig}) {
    // An IFD that is its own sub-IFD is not entered again; one that two pointers share is read twice.
    const PoolPtr own = ParsePool(TiffBuilder(order).Ifd0({Raw(0x014A, 4, 1, 8), Raw(0x8769, 4, 1, 8)}));
    EXPECT_EQ(AllItems(*own, "tiff").size(), 2u);
    EXPECT_EQ(AllItems(*own, "exif").size(), 0u);
    const PoolPtr shared =
        ParsePool(TiffBuilder(order).Ifd0({Raw(0x8769, 4, 1, 38), Raw(0x8825, 4, 1, 38)}).NextIfd({Short(0x0001, 1)}));
    EXPECT_EQ(AllItems(*shared, "exif").size(), 1u);
    EXPECT_EQ(AllItems(*shared, "gps").size(), 1u);
  }
}

}  // namespace
