// The nth read, seek or tell of a rich file fails or comes short, and the file shrinks while it is read: a sound pool,
// which holds no item that the whole file's pool has not, and nothing is left open.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "kit/readers/read_file.h"
#include "tests/faults/whole_road.h"
#include "tests/support/failing_memory.h"
#include "tests/support/pool_support.h"

namespace lxtest {
namespace {

using Names = std::multiset<std::string>;

Names NamesIn(const LxMetadataPool& pool) {
  Names names;
  for (const LxMetadataItem* item : AllItems(pool)) names.insert(std::string(item->nameSpace) + ":" + item->name);
  return names;
}

// An item whose value could not be read stands without its tag's name, under a generated one, which begins with a
// space.
Names Invented(const Names& names, const Names& whole) {
  Names invented;
  for (const std::string& name : names) {
    if (name.find(": ") == std::string::npos && !whole.contains(name)) invented.insert(name);
  }
  return invented;
}

// False: no call was left to fail.
bool ReadsSoundly(const NamedFile& file, const StreamFaults& faults, const Names& whole) {
  FailingMemory memory;
  bool hasFailed = false;
  {
    const PoolPtr pool = NewPool();
    FailingStream stream(file.bytes, faults);
    const LxResult status = LxParseImageFile(&stream, pool.get());
    hasFailed = stream.hasFailed();
    EXPECT_TRUE(IsWellFormed(*pool));
    EXPECT_TRUE(status == kLxOk || pool->root == nullptr) << status;
    const Names names = NamesIn(*pool);
    EXPECT_LE(names.size(), whole.size());
    EXPECT_EQ(Invented(names, whole), Names());
  }
  EXPECT_EQ(memory.liveBlocks(), 0);
  return hasFailed;
}

TEST(StreamSweep, EveryCallFailsInTurn) {
  for (const NamedFile& file : RichFiles()) {
    const Names whole = NamesIn(*ParsePool(file.bytes));
    ASSERT_GT(whole.size(), 20u);
    for (int StreamFaults::*call : {&StreamFaults::read, &StreamFaults::seek, &StreamFaults::tell}) {
      for (const bool fromThenOn : {false, true}) {
        for (const bool shortRead : {false, true}) {
          StreamFaults faults;
          faults.fromThenOn = fromThenOn;
          faults.shortRead = shortRead;
          bool hasFailed = true;
          for (int nth = 1; hasFailed; ++nth) {
            SCOPED_TRACE(testing::Message() << file.name << ", call " << nth);
            faults.*call = nth;
            hasFailed = ReadsSoundly(file, faults, whole);
            ASSERT_FALSE(testing::Test::HasFailure());
          }
        }
      }
    }
  }
}

TEST(StreamSweep, TheFileShrinksToEveryLength) {
  for (const NamedFile& file : RichFiles()) {
    const Names whole = NamesIn(*ParsePool(file.bytes));
    StreamFaults faults;
    for (std::size_t length = 0; length <= file.bytes.size(); length += 1 + length / 64) {
      SCOPED_TRACE(testing::Message() << file.name << ", " << length << " bytes");
      faults.shrinksTo = static_cast<std::int64_t>(length);
      (void)ReadsSoundly(file, faults, whole);
      ASSERT_FALSE(testing::Test::HasFailure());
    }
  }
}

}  // namespace
}  // namespace lxtest
