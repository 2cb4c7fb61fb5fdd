// The blocks that the cache loads, the ranges that it gives out, and its failures.
#include "kit/base/block_cache.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "tests/support/failing_memory.h"
#include "tests/support/failing_stream.h"

namespace {

using lxtest::FailingMemory;
using lxtest::FailingStream;
using lxtest::StreamRead;

std::vector<std::uint8_t> Pattern(std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>((i * 131 + (i >> 8)) & 0xFF);
  return bytes;
}

// A file of `size` bytes that promises `promised` (-1: as many as it has), and a cache over it.
class BlockCache : public testing::Test {
 protected:
  void Open(std::int32_t size, std::int32_t promised = -1) {
    bytes_ = Pattern(static_cast<std::size_t>(size));
    stream_ = std::make_unique<FailingStream>(bytes_);
    cache_ = LxNewBlockCache(stream_.get(), promised < 0 ? size : promised);
    ASSERT_NE(cache_, nullptr);
  }
  void TearDown() override {
    LxFreeBlockCache(cache_);
    LxFree(cache_);
    EXPECT_EQ(memory_.liveBlocks(), 0);
  }
  // Maps the range and compares its bytes; false when it maps nothing.
  bool Maps(std::int32_t offset, std::int32_t length) {
    const std::uint8_t* mapped = LxMapRange(cache_, offset, length);
    if (mapped == nullptr) return false;
    EXPECT_EQ(std::memcmp(mapped, bytes_.data() + offset, static_cast<std::size_t>(length)), 0)
        << offset << "+" << length;
    return true;
  }

  FailingMemory memory_;
  std::vector<std::uint8_t> bytes_;
  std::unique_ptr<FailingStream> stream_;
  LxBlockCache* cache_ = nullptr;
};

TEST_F(BlockCache, OnlyWhatLiesInsideTheFileIsMapped) {
  Open(5000);
  EXPECT_TRUE(Maps(0, 5000));
  EXPECT_TRUE(Maps(5000, 0));
  const struct {
    std::int32_t offset, length;
  } kOutside[] = {{0, 5001},      {4999, 2},     {5001, 0}, {-1, 1}, {10, -1}, {INT32_MAX, INT32_MAX},
                  {1, INT32_MAX}, {INT32_MIN, 0}};
  for (const auto& c : kOutside) {
    EXPECT_EQ(LxLoadRange(cache_, c.offset, c.length), kLxBadParameter) << c.offset << "+" << c.length;
    EXPECT_EQ(LxMapRange(cache_, c.offset, c.length), nullptr) << c.offset << "+" << c.length;
  }
  EXPECT_NE(LxMapFileRange(cache_, 4999, 1), nullptr);
  EXPECT_EQ(LxMapFileRange(cache_, 0x1'0000'0000u, 1), nullptr);
  EXPECT_EQ(LxMapFileRange(cache_, 0, 0x1'0000'0001u), nullptr);
}

TEST_F(BlockCache, AFileShorterThanPromisedMapsWhatIsThere) {
  Open(9000, 20000);
  EXPECT_EQ(LxMapRange(cache_, 8990, 100), nullptr);
  EXPECT_TRUE(Maps(8990, 10));
  EXPECT_EQ(LxLoadRange(cache_, 16000, 10), kLxReadError);
  EXPECT_TRUE(Maps(0, 9000));
}

TEST_F(BlockCache, AFailedLoadLeavesNothingBehind) {
  Open(20000);
  EXPECT_TRUE(Maps(0, 10));
  const int before = memory_.liveBlocks();
  stream_->setFaults({.seek = 1});
  EXPECT_EQ(LxLoadRange(cache_, 5000, 10), kLxReadError);
  stream_->setFaults({.read = 1});
  EXPECT_EQ(LxLoadRange(cache_, 5000, 10), kLxReadError);
  stream_->setFaults({.read = 1, .shortRead = true});
  EXPECT_EQ(LxMapRange(cache_, 8000, 190), nullptr);  // 2048 of 4096 bytes came.
  EXPECT_TRUE(Maps(5000, 10));
  EXPECT_TRUE(Maps(0, 10));
  EXPECT_EQ(memory_.liveBlocks(), before + 1);
}

TEST(BlockCacheMemory, EveryAllocationMayFail) {
  lxtest::FailEveryAllocation<FailingMemory>([](FailingMemory& memory, int) {
    FailingStream stream(Pattern(64 * 4096));
    LxBlockCache* cache = LxNewBlockCache(&stream, 64 * 4096);
    for (std::int32_t page = 0; cache != nullptr && page < 64; ++page) {
      const bool hadFailed = memory.hasFailed();
      const LxResult result = LxLoadRange(cache, page * 4096, 1);
      EXPECT_EQ(result != kLxOk, memory.hasFailed() && !hadFailed);
      if (result == kLxOk) continue;
      EXPECT_EQ(result, kLxOutOfMemory);
      memory.stopFailing();
      EXPECT_NE(LxMapRange(cache, page * 4096, 1), nullptr);
    }
    EXPECT_TRUE(cache != nullptr || memory.hasFailed());
    LxFreeBlockCache(cache);
    LxFree(cache);
    EXPECT_EQ(memory.liveBlocks(), 0);
  });
}

// The cache as a plain list of ranges: says whether a request has to be read.
class ListModel {
 public:
  explicit ListModel(std::int64_t size) : size_(size) {}
  bool Loads(std::int64_t offset, std::int64_t length) {
    for (const auto& [start, end] : blocks_) {
      if (start <= offset && offset + length <= end) return false;
    }
    const std::int64_t start = offset & ~4095;
    const std::int64_t end = std::min(size_, (offset + length + 4095) & ~4095);
    if (start < end) blocks_.push_back({start, end});
    return true;
  }

 private:
  std::int64_t size_;
  std::vector<std::pair<std::int64_t, std::int64_t>> blocks_;
};

TEST_F(BlockCache, ReadsJustWhatNoSingleBlockCoversHoweverManyThereAre) {
  constexpr std::int32_t kSize = 700 * 4096 + 123;
  for (const unsigned seed : {1u, 2u, 3u}) {
    Open(kSize);
    ListModel model(kSize);
    const std::uint8_t* const early = LxMapRange(cache_, 10, 10);
    ASSERT_NE(early, nullptr);
    EXPECT_TRUE(model.Loads(10, 10));
    std::mt19937 random(seed);
    for (int i = 0; i < 3000; ++i) {
      const bool atPage = random() % 4 == 0;
      auto offset = static_cast<std::int32_t>(random() % (kSize + 1));
      if (atPage) offset &= ~4095;
      const std::uint32_t longest = random() % 20 == 0 ? 40000 : 300;
      const auto length =
          std::min(static_cast<std::int32_t>(random() % longest) * (random() % 8 == 0 ? 0 : 1), kSize - offset);
      const std::size_t before = stream_->reads().size();
      const bool mapped = Maps(offset, length);
      const bool reads = stream_->reads().size() != before;
      ASSERT_EQ(reads, model.Loads(offset, length)) << "request " << i << ": " << offset << "+" << length;
      // Where a page and the request begin and nothing is asked for, a read of no bytes fails.
      ASSERT_EQ(mapped, !reads || stream_->reads().back().bytes > 0) << "request " << i;
    }
    EXPECT_EQ(std::memcmp(early, bytes_.data() + 10, 10), 0);  // A range that was given out stays.
    if (seed == 3u) break;
    LxFreeBlockCache(cache_);
    LxFree(cache_);
  }
}

TEST_F(BlockCache, RangesThatOverlapShiftedByAPageAreReadOnlyUpToTheBudget) {
  constexpr std::int32_t kSize = 512 * 4096;
  Open(kSize);
  int mapped = 0;
  // None of them covers another: each begins and ends a page later than the one before.
  for (std::int32_t page = 0; page < 256; ++page) mapped += Maps(page * 4096, 256 * 4096) ? 1 : 0;
  std::int64_t read = 0;
  for (const StreamRead& one : stream_->reads()) read += one.bytes;
  EXPECT_LE(read, 4 * std::int64_t{kSize} + (1 << 20));
  EXPECT_EQ(mapped, 9);
  EXPECT_EQ(LxLoadRange(cache_, 200 * 4096, 256 * 4096), kLxOutOfMemory);
  EXPECT_TRUE(Maps(8 * 4096, 256 * 4096));
}

}  // namespace
