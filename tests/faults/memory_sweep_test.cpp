// The nth allocation fails, for every n that there is, through the whole road: once through the kit's memory
// procedures, once through operator new. Nothing crashes or is left behind; an import is whole, shorter, or raises; the
// next one is whole again.
#include <gtest/gtest.h>

#include "api/include/lxbridge/lxbridge.h"
#include "tests/faults/whole_road.h"
#include "tests/support/failing_memory.h"
#include "tests/support/failing_new.h"
#include "tests/support/pool_support.h"

namespace lxtest {
namespace {

constexpr int kFarBeyondAnySweep = 1'000'000;

TEST(MemorySweep, TheKitsAllocationsFailOneByOne) {
  for (const NamedFile& file : RichFiles()) {
    const TempFile saved(file.bytes);
    const Clients clients;
    const std::string whole = PacketOf(saved.path());
    const Living before;
    for (const Failing failing : {Failing::kOnce, Failing::kFromThenOn}) {
      for (int nth = 1;; ++nth) {
        SCOPED_TRACE(testing::Message() << file.name << ", allocation " << nth);
        ASSERT_LT(nth, kFarBeyondAnySweep);
        FailingMemory memory(nth, failing);
        try {
          LxInterchange interchange(saved.path().c_str());
          const LxReadFailure told = memory.hasFailed() ? kLxReadNoMemory : kLxReadWhole;
          ASSERT_EQ(interchange.Outcome().read.failure, told);
          ASSERT_TRUE(IsWellFormed(*interchange.Pool()));
        } catch (const std::bad_alloc&) {
          ASSERT_EQ(nth, 1) << "only the pool's own record is worth an exception";
        }
        ASSERT_EQ(memory.liveBlocks(), 0);
        ASSERT_EQ(Living(), before);
        if (!memory.hasFailed()) break;
      }
    }
    EXPECT_EQ(PacketOf(saved.path()), whole) << file.name;
  }
}

TEST(MemorySweep, OperatorNewFailsOneByOne) {
  for (const NamedFile& file : RichFiles()) {
    const TempFile saved(file.bytes);
    const Clients clients;
    const std::string whole = PacketOf(saved.path());
    const Living before;
    for (const Failing failing : {Failing::kOnce, Failing::kFromThenOn}) {
      bool isThrough = false;
      for (int nth = 1; !isThrough; ++nth) {
        FailingNew failingNew(nth, failing);
        const Outcome outcome = Import(saved.path(), [&](LxInterchange& interchange) {
          failingNew.stopFailing();
          const bool isTold = interchange.Outcome().read.failure != kLxReadWhole;
          EXPECT_TRUE(isTold || PacketOf(interchange) == whole) << file.name << ", allocation " << nth;
          EXPECT_TRUE(!isTold || failingNew.hasFailed()) << file.name << ", allocation " << nth;
        });
        failingNew.Stop();
        isThrough = !failingNew.hasFailed();
        ASSERT_LT(nth, kFarBeyondAnySweep);
        ASSERT_NE(outcome, Outcome::kNotStarted) << file.name << ", allocation " << nth;
        ASSERT_EQ(failingNew.liveBlocks(), 0) << file.name << ", allocation " << nth;
        ASSERT_EQ(Living(), before) << file.name << ", allocation " << nth;
        ASSERT_TRUE(!isThrough || outcome == Outcome::kImported) << file.name;
      }
    }
    EXPECT_EQ(PacketOf(saved.path()), whole) << file.name;
  }
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
  for (const Failing failing : {Failing::kOnce, Failing::kFromThenOn}) {
    bool isThrough = false;
    for (int nth = 1; !isThrough; ++nth) {
      SCOPED_TRACE(testing::Message() << "allocation " << nth);
      FailingNew failingNew(nth, failing);
      {
        const Clients clients;
        failingNew.Stop();
        isThrough = !failingNew.hasFailed();
        ASSERT_TRUE(!isThrough || Import(saved.path()) == Outcome::kImported);
      }
      ASSERT_EQ(Living(), before);
    }
  }
  const Clients clients;
  EXPECT_EQ(Import(saved.path()), Outcome::kImported);
}

}  // namespace
}  // namespace lxtest
