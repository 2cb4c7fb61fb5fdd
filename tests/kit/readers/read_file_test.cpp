// From an open stream to a pool: positions, and the pool after a failure.
#include "kit/readers/read_file.h"

#include <gtest/gtest.h>

#include "tests/support/failing_stream.h"
#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"
#include "tests/support/rich_files.h"

using namespace lxtest;

namespace {

Bytes Photo() {
  return JpegBuilder()
      .App1Exif(TiffBuilder(kLittle).Ifd0({Ascii(0x010F, "Example")}).Exif({Short(0xA001, 1)}))
      .App1Xmp("<x:xmpmeta/>")
      .App13(ResourceBuilder().Iptc(IptcBuilder().Add(25, "harbour")));
}

// The first tell and the last seek are the two that the stream's position is lost by.
TEST(ReadFile, ALostPositionIsStatusOneAndAFailureLeavesAnEmptyPool) {
  LxResult status = 0;
  EXPECT_EQ(ParsePool(Photo(), &status, {.tell = 1})->root, nullptr);
  EXPECT_EQ(status, 1);
  LxResult last = 0;
  for (int nth = 1;; ++nth) {
    const PoolPtr pool = NewPool();
    FailingStream stream(Photo(), {.seek = nth});
    status = LxParseImageFile(&stream, pool.get());
    EXPECT_TRUE(status == kLxOk || pool->root == nullptr) << nth;
    if (!stream.hasFailed()) break;
    last = status;
  }
  EXPECT_EQ(status, kLxOk);
  EXPECT_EQ(last, 1);
}

// The same pool without a copy: values lie in the caller's bytes.
TEST(ReadFile, BytesInMemoryGiveThePoolOfAFile) {
  for (const Bytes& file : {Photo(), RichTiff(kBig), RichPsd(), Bytes(), Text("GIF89a0123456789")}) {
    PoolPtr pool = NewPool();
    LxResult expected = -1;
    const PoolPtr read = ReadPool(file, &expected);
    EXPECT_EQ(LxParseImageBytes(file.data(), static_cast<std::int32_t>(file.size()), pool.get()), expected);
    EXPECT_EQ(DumpPool(*pool), DumpPool(*read));
    EXPECT_EQ(pool->width, read->width);
    for (const LxMetadataItem* item : AllItems(*pool, "tiff", "Make")) {
      EXPECT_TRUE(item->value >= file.data() && item->value < file.data() + file.size());
    }
    EXPECT_TRUE(IsWellFormed(*pool));
  }
}

}  // namespace
