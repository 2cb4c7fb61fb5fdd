// Whether a host learns that a file could not be opened or read, through the interface that the library registers.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "api/interchange_abi.h"
#include "tests/support/bytes.h"
#include "tests/support/image_builders.h"

namespace lxtest {
namespace {

template <typename Proc>
Proc Find(std::size_t at) {
  const TALProcName& name = kLxInterchangeProcNames[at];
  return reinterpret_cast<Proc>(TALOrdinal5()(kLxInterchangeInterface, name.shortName, name.qualifiedName));
}

LxImportOutcome OutcomeOf(const std::string& path) {
  const auto getOutcome = Find<decltype(LxInterchangeProcs::getOutcome)>(0);
  LxImportOutcome outcome = {{-1, -1}, -1, -1, -1, -1};
  LxInterchangeHandle handle = LxInterchangeNew(path.c_str());
  if (getOutcome != nullptr) getOutcome(handle, &outcome);
  LxInterchangeDelete(handle);
  return outcome;
}

TEST(Outcome, SaysWhyAFileWasNotOpened) {
  ASSERT_TRUE(LxInterchangeInit());
  const TempFile jpeg(JpegBuilder().Eoi().Build());
  const TempFile text(Text("no image, but sixteen bytes"));
  const std::string fifo = text.path() + ".fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const struct {
    std::string path;
    LxReadFailure failure;
    int status;
    int kind;
  } cases[] = {
      {jpeg.path(), kLxReadWhole, 0, 4},
      {text.path(), kLxReadWhole, 0, 0},
      {text.path() + ".missing", kLxReadNotFound, -7, 0},
      {text.path() + "/below", kLxReadNotFound, -7, 0},
      {"/", kLxReadIsDirectory, -7, 0},
      {fifo, kLxReadNotRegularFile, -7, 0},  // At once: nobody writes into it.
      {"/dev/null", kLxReadNotRegularFile, -7, 0},
      {"/proc/self/mem", kLxReadBroken, 0, 0},  // Its first page is nobody's, so reading it fails.
  };
  for (const auto& c : cases) {
    const LxImportOutcome outcome = OutcomeOf(c.path);
    EXPECT_EQ(outcome.read.failure, c.failure) << c.path;
    EXPECT_EQ(outcome.status, c.status) << c.path;
    EXPECT_EQ(outcome.fileKind, c.kind) << c.path;
  }
  unlink(fifo.c_str());

  ASSERT_EQ(chmod(jpeg.path().c_str(), 0), 0);
  const uid_t user = geteuid();
  if (user != 0 || seteuid(65534) == 0) {
    EXPECT_EQ(OutcomeOf(jpeg.path()).read.failure, kLxReadPermissionDenied);
    ASSERT_EQ(seteuid(user), 0);
  }

  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none = {0, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const LxImportOutcome outcome = OutcomeOf(text.path());
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_EQ(outcome.read.failure, kLxReadNoDescriptors);

  LxInterchangeTerm();
  EXPECT_EQ(TALOrdinal5()(kLxInterchangeInterface, "GetOutcome", "LxInterchange_GetOutcome"), nullptr);
}

}  // namespace
}  // namespace lxtest
