// Numbers in both byte orders, and the refusals of the cursor over bytes.
#include "kit/base/byte_cursor.h"

#include <gtest/gtest.h>

#include <cstring>

#include "kit/base/byte_order.h"

namespace {

TEST(ByteOrder, OneIsBigEndianAndEverythingElseLittle) {
  const std::uint8_t bytes[] = {0x81, 0x35, 0x57, 0x79};
  std::uint16_t half = 0;
  std::uint32_t word = 0;
  std::memcpy(&half, bytes, sizeof half);
  std::memcpy(&word, bytes, sizeof word);
  for (const int order : {1, 0, 2, -1}) {
    EXPECT_EQ(LxGet16(bytes, order), order == 1 ? 0x8135 : 0x3581) << order;
    EXPECT_EQ(LxGet32(bytes, order), order == 1 ? 0x81355779u : 0x79573581u) << order;
    EXPECT_EQ(LxSwap16(half, order), LxGet16(bytes, order)) << order;
    EXPECT_EQ(LxSwap32(word, order), LxGet32(bytes, order)) << order;
  }
}

TEST(ByteCursor, ATakeThatDoesNotFitMovesNothing) {
  const std::uint8_t bytes[] = {1, 2, 3, 4, 5};
  LxByteCursor in = {bytes, sizeof(bytes)};
  std::uint8_t byte = 0;
  std::uint16_t pair = 0;
  std::uint32_t word = 0;
  ASSERT_TRUE(LxTake16(&in, 1, &pair));
  EXPECT_EQ(pair, 0x0102);
  EXPECT_FALSE(LxTake32(&in, 1, &word));
  EXPECT_FALSE(LxSkip(&in, 4));
  EXPECT_FALSE(LxSkip(&in, SIZE_MAX));
  EXPECT_EQ(LxTakeBytes(&in, 4), nullptr);
  EXPECT_EQ(in.at, bytes + 2);
  EXPECT_EQ(LxTakeBytes(&in, 2), bytes + 2);
  EXPECT_FALSE(LxTake16(&in, 0, &pair));
  ASSERT_TRUE(LxTake8(&in, &byte));
  EXPECT_EQ(byte, 5);
  EXPECT_FALSE(LxTake8(&in, &byte));
  EXPECT_NE(LxTakeBytes(&in, 0), nullptr);
}

}  // namespace
