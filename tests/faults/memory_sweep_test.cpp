// The nth allocation fails, for every n that there is, through the whole pipeline: once through the kit's memory
// procedures, once through operator new. Nothing crashes or is left behind; an import is whole, shorter, or raises; the
// next one is whole again.
#include <gtest/gtest.h>

#include "api/include/lxbridge/lxbridge.h"
#include "tests/faults/whole_pipeline.h"
#include "tests/support/failing_memory.h"
#include "tests/support/failing_new.h"
#include "tests/support/pool_support.h"

namespace lxtest {
namespace {

// Each rich file, with its packet as it is when nothing fails.
template <typename Memory, typename Sweep>
void SweepRichFiles(Sweep sweep) {
  for (const NamedFile& file : RichFiles()) {
    SCOPED_TRACE(file.name);
    const TempFile saved(file.bytes);
    const Clients clients;
    const std::string whole = PacketOf(saved.path());
    const Living before;
    FailEveryAllocation<Memory>([&](Memory& memory, int nth) {
      sweep(memory, nth, saved.path(), whole);
      ASSERT_EQ(memory.liveBlocks(), 0);
      ASSERT_EQ(Living(), before);
    });
    EXPECT_EQ(PacketOf(saved.path()), whole);
  }
}

TEST(MemorySweep, TheKitsAllocationsFailOneByOne) {
  SweepRichFiles<FailingMemory>([](FailingMemory& memory, int nth, const std::string& path, const std::string&) {
    try {
      LxInterchange interchange(path.c_str());
      EXPECT_EQ(interchange.Outcome().read.failure, memory.hasFailed() ? kLxReadNoMemory : kLxReadWhole);
      EXPECT_TRUE(IsWellFormed(*interchange.Pool()));
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(nth, 1) << "only the pool's own record is worth an exception";
    }
  });
}

TEST(MemorySweep, OperatorNewFailsOneByOne) {
  SweepRichFiles<FailingNew>([](FailingNew& memory, int, const std::string& path, const std::string& whole) {
    const Outcome outcome = Import(path, [&](LxInterchange& interchange) {
      memory.stopFailing();
      const bool isTold = interchange.Outcome().read.failure != kLxReadWhole;
      EXPECT_TRUE(isTold || PacketOf(interchange) == whole);
      EXPECT_TRUE(!isTold || memory.hasFailed());
    });
    memory.Stop();
    EXPECT_NE(outcome, Outcome::kNotStarted);
    EXPECT_TRUE(memory.hasFailed() || outcome == Outcome::kImported);
  });
}

TEST(MemoryProcedures, AreInstalledByTheFirstInitAlone) {
  for (int cycle = 0; cycle < 2; ++cycle) {
    LxMemProcs* before = LxInstalledMemProcs();
    FailingMemory ours;
    ASSERT_TRUE(LxInterchangeInit());
    EXPECT_EQ(LxInstalledMemProcs() == ours.procs(), cycle > 0);
    LxInterchangeTerm();
    LxInstallMemProcs(before);
  }
}

TEST(MemorySweep, AStartWithoutMemoryCanBeTriedAgain) {
  const TempFile saved(RichJpeg(kBig));
  const Living before;
  FailEveryAllocation<FailingNew>([&](FailingNew& memory, int) {
    {
      const Clients clients;
      memory.Stop();
      EXPECT_TRUE(memory.hasFailed() || Import(saved.path()) == Outcome::kImported);
    }
    ASSERT_EQ(Living(), before);
  });
  const Clients clients;
  EXPECT_EQ(Import(saved.path()), Outcome::kImported);
}

}  // namespace
}  // namespace lxtest
