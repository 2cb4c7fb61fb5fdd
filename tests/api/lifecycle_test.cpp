// The library's start and stop, and imports with another library that refuses something.
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>

#include "api/include/lxbridge/lxbridge.h"
#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_abi.h"
#include "tests/api/other_libraries.h"
#include "tests/support/rich_files.h"
#include "tests/support/xmp_dump.h"

namespace lxtest {
namespace {

using Calls = std::vector<std::string>;
const Calls kStart = {"TAL 5", "TAL 5", "XMP 1 3010000"};
const Calls kStop = {"XMP 2"};

Calls TakeCalls() {
  Calls calls;
  calls.swap(EntryCalls());
  return calls;
}

// "nothing" or what was raised.
template <typename Call>
std::string Raised(Call call) {
  try {
    call();
    return "nothing";
  } catch (const TAL_T_NMT::CTALError& error) {
    return std::string("CTALError ") + error.what();
  } catch (const std::logic_error& error) {
    return std::string("logic_error ") + error.what();
  } catch (const std::bad_alloc&) {
    return "bad_alloc";
  }
}

const char kNotStarted[] = "logic_error ZXMPMeta Client initialization failure";

class LifecycleTest : public testing::Test {
 protected:
  void SetUp() override { EntryCalls().clear(); }
  void TearDown() override {
    LxInterchangeTerm();
    RestoreAll();
  }
  static std::string ImportRaises(const char* path) {
    return Raised([path] { LxInterchangeDelete(LxInterchangeNew(path)); });
  }
  // The XMP of the sample file. The library must be started, and nothing be hidden or fail.
  std::string ImportedText() {
    const lxbridge::HostSession session;
    const LxInterchangeHandle handle = LxInterchangeNew(sample.path().c_str());
    const std::string text = DumpXmp(LxInterchangeGetXMP(handle));
    LxInterchangeDelete(handle);
    return text;
  }

  const TempFile sample{RichJpeg(kBig)};
};

TEST_F(LifecycleTest, StartsBrokerAndToolkitOnceAndStopsInReverse) {
  EXPECT_EQ(TakeCalls(), Calls{});  // Loading the library has started nothing.
  LxInterchangeTerm();
  EXPECT_EQ(TakeCalls(), Calls{});
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(LxInterchangeInit());
    EXPECT_EQ(TakeCalls(), kStart);
    EXPECT_TRUE(LxInterchangeInit());
    EXPECT_EQ(TakeCalls(), Calls{});
    EXPECT_EQ(ImportRaises(sample.path().c_str()), "nothing");
    LxInterchangeTerm();
    EXPECT_EQ(TakeCalls(), kStop);
    LxInterchangeTerm();
    EXPECT_EQ(TakeCalls(), Calls{});
  }
}

TEST_F(LifecycleTest, HandlesAreIndependentAndGiveTheSameObjectEachTime) {
  ASSERT_TRUE(LxInterchangeInit());
  const Alive before = CountAlive();
  LxInterchangeDelete(nullptr);
  const LxInterchangeHandle none = LxInterchangeNew("/nowhere/at/all.jpg");
  const LxInterchangeHandle some = LxInterchangeNew(sample.path().c_str());
  ASSERT_NE(none, nullptr);
  ASSERT_NE(some, nullptr);
  CXMPMeta* const xmp = LxInterchangeGetXMP(some);
  EXPECT_EQ(LxInterchangeGetXMP(some), xmp);
  EXPECT_NE(LxInterchangeGetXMP(none), xmp);
  const std::string expected = ImportedText();
  {
    const lxbridge::HostSession session;
    EXPECT_EQ(DumpXmp(LxInterchangeGetXMP(none)), "");
    LxInterchangeDelete(none);
    EXPECT_EQ(DumpXmp(xmp), expected);
    lxbridge::XmpView(xmp).Set("http://ns.adobe.com/tiff/1.0/", "Make", "changed");
    EXPECT_NE(DumpXmp(xmp), expected);
  }
  LxInterchangeDelete(some);
  EXPECT_EQ(CountAlive(), before);
}

TEST_F(LifecycleTest, OutsideOfInitAndTermNewRaisesAndDeleteStillFrees) {
  EXPECT_EQ(ImportRaises(sample.path().c_str()), kNotStarted);
  ASSERT_TRUE(LxInterchangeInit());
  const LxInterchangeHandle handle = LxInterchangeNew(sample.path().c_str());
  CXMPMeta* const xmp = LxInterchangeGetXMP(handle);
  LxInterchangeTerm();
  EXPECT_EQ(ImportRaises(sample.path().c_str()), kNotStarted);
  EXPECT_EQ(LxInterchangeGetXMP(handle), xmp);
  LxInterchangeDelete(handle);
}

TEST_F(LifecycleTest, RefusalsOfTheToolkitEndTheImportOnlyWhereNothingGuardsAgainstThem) {
  ASSERT_TRUE(LxInterchangeInit());
  const std::string whole = ImportedText();
  LxInterchangeTerm();
  const struct {
    const char* name;
    bool ends;
    const char* lost;  // Else: a property that the import then lacks.
  } cases[] = {
      {"GetMethod", true, nullptr},
      {"SetProperty", true, nullptr},  // Of a dataset.
      {"ParseFromBuffer", false, "xmp:Rating=4\n"},
      {"SetStructField", false, "exif:Flash="},
      {"SetLocalizedText", false, "tiff:Copyright="},
      {"SetProperty_Date", false, "exif:GPSTimeStamp="},
      {"SetTimeZone", false, "tiff:DateTime="},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Fail(c.name);
    ASSERT_TRUE(LxInterchangeInit());
    const Alive before = CountAlive();
    if (c.ends) {
      EXPECT_EQ(ImportRaises(sample.path().c_str()).substr(0, 9), "CTALError");
    } else {
      const LxInterchangeHandle handle = LxInterchangeNew(sample.path().c_str());
      RestoreAll();
      {
        const lxbridge::HostSession session;
        const std::string text = DumpXmp(LxInterchangeGetXMP(handle));
        EXPECT_NE(whole.find(c.lost), std::string::npos) << whole;
        EXPECT_EQ(text.find(c.lost), std::string::npos) << text;
        EXPECT_NE(text.find("exif:ExposureTime=1/250\n"), std::string::npos) << text;
      }
      LxInterchangeDelete(handle);
    }
    EXPECT_EQ(CountAlive(), before);
    LxInterchangeTerm();
    RestoreAll();
  }
  ASSERT_TRUE(LxInterchangeInit());
  EXPECT_EQ(ImportedText(), whole);
}

}  // namespace
}  // namespace lxtest
