// The allocator with and without procedures, and the names of result codes.
#include "kit/base/memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

#include "kit/base/kept_memory.h"
#include "kit/base/result.h"
#include "kit/base/stream.h"
#include "kit/base/utf16.h"
#include "tests/support/failing_memory.h"

namespace {

using lxtest::FailingMemory;

TEST(Memory, WithoutProceduresNothingIsAllocatedOrOpened) {
  LxInstallMemProcs(nullptr);
  EXPECT_EQ(LxAlloc(1), nullptr);
  EXPECT_EQ(LxCopyText("a", 1), nullptr);
  EXPECT_EQ(LxUtf8ToUtf16("a"), nullptr);
  LxFree(nullptr);
  LxStream* stream = nullptr;
  EXPECT_EQ(LxOpenFileStream("/dev/null", &stream), kLxNotFound);
  EXPECT_EQ(stream, nullptr);
}

TEST(Memory, EveryBlockComesFromTheInstalledProcedures) {
  FailingMemory memory;
  void* none = LxAlloc(0);  // No bytes are no lack of memory.
  char* copy = LxCopyText("a\0b", 3);
  char* empty = LxCopyText(nullptr, 0);
  ASSERT_TRUE(none != nullptr && copy != nullptr && empty != nullptr);
  EXPECT_EQ(std::memcmp(copy, "a\0b", 4), 0);
  EXPECT_STREQ(empty, "");
  EXPECT_EQ(memory.liveBlocks(), 3);
  for (void* block : {none, static_cast<void*>(copy), static_cast<void*>(empty)}) LxFree(block);
  EXPECT_EQ(memory.liveBlocks(), 0);
}

TEST(Memory, TheRuntimesProceduresZeroAndRefuseSizesThatWrap) {
  LxMemProcs* procs = LxRuntimeMemProcs();
  for (auto allocate : {procs->table->allocateZeroed, procs->table->allocateZeroedAgain}) {
    auto* block = static_cast<std::uint8_t*>(allocate(procs, 3, 5));
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 15; ++i) EXPECT_EQ(block[i], 0);
    procs->table->release(procs, procs->table->reallocate(procs, block, 100));
    volatile std::size_t count = SIZE_MAX / 2;  // Kept from the compiler, which warns of such a size.
    EXPECT_EQ(allocate(procs, count, 4), nullptr);
  }
}

TEST(KeptMemory, AThreadKeepsTwoMegabytesAndGivesThemBack) {
  LxMemProcs* procs = LxRuntimeMemProcs();
  const auto cycle = [procs](std::size_t size) {
    std::vector<void*> blocks;
    for (int i = 0; i < 40; ++i) {
      blocks.push_back(LxAllocKept(procs, size, i % 2 == 0 ? kLxPageAligned : kLxUnaligned));
      ASSERT_NE(blocks.back(), nullptr);
      ASSERT_TRUE(i % 2 != 0 || reinterpret_cast<std::uintptr_t>(blocks.back()) % 4096 == 0);
      std::memset(blocks.back(), i, size);
    }
    for (void* block : blocks) LxFreeKept(block);
  };
  cycle(100'000);
  EXPECT_EQ(LxKeptByThread(), 0u);  // Not started.
  LxStartKeepingMemory();
  cycle(100'000);
  const std::size_t kept = LxKeptByThread();
  if (kept == 0) GTEST_SKIP() << "nothing is kept from AddressSanitizer";
  EXPECT_TRUE(kept > 1'500'000 && kept <= (2u << 20)) << kept;
  for (const std::size_t size : {1u, 4096u, 4097u, 600'000u}) cycle(size);
  EXPECT_LE(LxKeptByThread(), 2u << 20);
  std::thread([&cycle] { cycle(5000); }).join();
  LxReleaseThreadMemory();
  EXPECT_EQ(LxKeptByThread(), 0u);
  FailingMemory watched;
  LxFreeKept(LxAllocKept(watched.procs(), 5000, kLxUnaligned));
  EXPECT_EQ(watched.liveBlocks(), 0);
  cycle(5000);
  LxStopKeepingMemory();
  EXPECT_EQ(LxKeptByThread(), 0u);
}

TEST(Result, NamesEndAtTheirTable) {
  EXPECT_STREQ(LxResultName(kLxOk), "OK");
  EXPECT_STREQ(LxResultName(kLxNotFound), "NotFound");
  EXPECT_STREQ(LxResultName(kLxOpenFailedWrite), "OpenFailW");
  EXPECT_STREQ(LxResultName(-11), "-11");
  for (const LxResult code : {1, 2, -12, INT32_MAX, INT32_MIN}) EXPECT_EQ(LxResultName(code), nullptr) << code;
}

}  // namespace
