// The nth allocation or read of the command fails, once or from then on: each file has its whole output or its line on
// standard error, or the run says that it was cut off. Some of the calls are tried, all of them with LX_FULL set.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "tests/support/rich_files.h"
#include "tests/tools/run_command.h"

namespace lxtest {
namespace {

constexpr int kSample = 40;
constexpr int kFarBeyond = 1'000'000'000;

// The output by file, which is cut where the next file's begins.
std::map<std::string, std::string> ByFile(const std::string& out) {
  std::map<std::string, std::string> parts;
  std::string* part = nullptr;
  for (const std::string& line : Lines(out)) {
    for (const char* name : {"a.jpg", "b.tif"}) {
      const std::string quoted = std::string("\"") + name;
      if (line.starts_with(name) || line.starts_with("{\"file\": " + quoted)) part = &parts[name];
    }
    if (part != nullptr) part->append(line).push_back('\n');
  }
  return parts;
}

class FaultSweep : public testing::Test {
 protected:
  FaultSweep() {
    folder_.Add("a.jpg", RichJpeg(kBig));
    folder_.Add("b.tif", RichTiff(kLittle));
  }

  Outcome Run(const std::vector<std::string>& arguments, const char* kind, int from, int to) const {
    std::vector<std::string> variables = {"LXSHIM_COUNT=" + folder_.path() + "/count"};
    variables.push_back(std::string("LXSHIM_FAIL=") + kind);
    variables.push_back("LXSHIM_FROM=" + std::to_string(from));
    variables.push_back("LXSHIM_TO=" + std::to_string(to));
    return Lxbridge(arguments, {.folder = folder_.path(), .environment = Shim(variables)});
  }

  void Sweep(const std::vector<std::string>& form, const char* kind) {
    const std::vector<std::string> arguments = With(form, {"a.jpg", "b.tif"});
    const Outcome whole = Run(arguments, kind, kFarBeyond, kFarBeyond);
    ASSERT_EQ(whole.status, 0);
    auto wanted = ByFile(whole.out);
    ASSERT_EQ(wanted.size(), 2U) << whole.out;
    const int calls = std::atoi(AsText(ReadWholeFile(folder_.path() + "/count")).c_str());
    ASSERT_GT(calls, 1);
    const int step = std::getenv("LX_FULL") != nullptr ? 1 : std::max(1, calls / kSample);
    for (const bool once : {true, false}) {
      for (int nth = 1; nth <= calls; nth += step) {
        const Outcome outcome = Run(arguments, kind, nth, once ? nth : kFarBeyond);
        SCOPED_TRACE(testing::Message() << form[0] << " " << form[2] << ", " << kind << " " << nth << " of " << calls
                                        << (once ? "" : " and further") << "\n"
                                        << outcome.err);
        ASSERT_EQ(outcome.signal, 0);
        if (outcome.status == 3) {
          EXPECT_EQ(Lines(outcome.err).size(), 1U);
          continue;
        }
        auto got = ByFile(outcome.out);
        bool failed = false;
        for (const char* name : {"a.jpg", "b.tif"}) {
          const bool named = outcome.err.find(std::string("lxbridge: ") + name + ": ") != std::string::npos;
          EXPECT_TRUE(named || got[name] == wanted[name]) << name;
          failed = failed || named;
        }
        EXPECT_EQ(outcome.status, failed ? 1 : 0);
      }
    }
  }

  const TempFolder folder_;
};

TEST_F(FaultSweep, WithoutMemoryNothingIsMissingInSilence) {
#ifdef LX_OWN_ALLOCATOR
  GTEST_SKIP() << "this build has an allocator of its own";
#endif
  for (const auto& form : {kForms[1], kForms[2], std::vector<std::string>{"xmp", "--format", "csv", "--fields=all"}}) {
    Sweep(form, "memory");
  }
}

TEST_F(FaultSweep, WithFailingReadsNothingIsMissingInSilence) {
  for (const auto& form : {kForms[1], kForms[2]}) Sweep(form, "read");
}

}  // namespace
}  // namespace lxtest
