// Numbers in both byte orders, and the cursor's refusals.
#include "kit/base/byte_order.h"

#include <gtest/gtest.h>

#include <cstring>

#include "kit/base/byte_cursor.h"

namespace {

TEST(ByteOrder, OneIsBigEndianAndEverythingElseLittle) {
  const std::uint8_t bytes[] = {0x12, 0x34, 0x56, 0x78};
  EXPECT_EQ(LxGet16(bytes, 1), 0x1234);
  EXPECT_EQ(LxGet32(bytes, 1), 0x12345678u);
  for (const int little : {0, 2, -1}) {
    EXPECT_EQ(LxGet16(bytes, little), 0x3412) << little;
    EXPECT_EQ(LxGet32(bytes, little), 0x78563412u) << little;
  }
}

TEST(ByteOrder, WhatIsPutIsGotAndSwappingLoadedNumbersAgreesWithGettingThem) {
  for (const int order : {0, 1}) {
    std::uint8_t bytes[6];
    LxPut16(bytes, 0x80FE, order);
    LxPut32(bytes + 2, 0x80FE0102, order);
    EXPECT_EQ(LxGet16(bytes, order), 0x80FE) << order;
    EXPECT_EQ(LxGet32(bytes + 2, order), 0x80FE0102u) << order;
    std::uint16_t loaded16;
    std::uint32_t loaded32;
    std::memcpy(&loaded16, bytes, sizeof(loaded16));
    std::memcpy(&loaded32, bytes + 2, sizeof(loaded32));
    EXPECT_EQ(LxSwap16(loaded16, order), 0x80FE) << order;
    EXPECT_EQ(LxSwap32(loaded32, order), 0x80FE0102u) << order;
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
