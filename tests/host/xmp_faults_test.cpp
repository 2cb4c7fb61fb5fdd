// The host library with a broker and a toolkit that lack something or refuse, and with memory that runs out. The
// program's entry points stand in front of the neighbours' (tests/api/neighbours.h).
#include <gtest/gtest.h>

#include <string>

#include "host/include/lxbridge/xmp.hpp"
#include "tests/api/neighbours.h"
#include "tests/support/failing_new.h"
#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"

namespace lxbridge {
namespace {

using lxtest::Failing;
using lxtest::FailingNew;

lxtest::Bytes Photo() {
  return lxtest::JpegBuilder().App1Exif(lxtest::TiffBuilder(lxtest::kBig).Ifd0({lxtest::Ascii(0x010F, "Canon")}));
}

TEST(HostFaults, AStartThatFailsSaysSoAndTheNextSucceeds) {
  const struct {
    const char* what;
    void (*bend)();
  } kCases[] = {
      {"no way to tell when interfaces go", [] { lxtest::Hide("TALGetUnregisterCountAddr"); }},
      {"no errors", [] { lxtest::HideInterface("TALErrorInterface"); }},
      {"no containers", [] { lxtest::HideInterface("TALContainerInterface"); }},
      {"no memory interface", [] { lxtest::HideInterface("TALMemoryInterface"); }},
  };
  for (const auto& c : kCases) {
    c.bend();
    EXPECT_EQ(LxXmpStart(), LX_XMP_UNAVAILABLE) << c.what;
    EXPECT_STRNE(LxXmpLastMessage(), "") << c.what;
    LxXmpText text;
    EXPECT_EQ(LxXmpNamespaceOfPrefix("tiff", &text), LX_XMP_NO_SESSION) << c.what;
    lxtest::Straighten();
    ASSERT_EQ(LxXmpStart(), LX_XMP_OK) << c.what;
    EXPECT_EQ(NamespaceOfPrefix("tiff"), LX_XMP_NS_TIFF) << c.what;
    LxXmpStop();
  }
}

TEST(HostFaults, WhatTheToolkitLacksOrRefusesIsToldApart) {
  const Library library;
  const Interchange photo(lxtest::TempFile(Photo()).path());
  const struct {
    const char* what;
    void (*bend)();
    LxXmpStatus status;
  } kCases[] = {
      {"a method", [] { lxtest::Hide("SerializeToBuffer"); }, LX_XMP_UNAVAILABLE},
      {"a static procedure", [] { lxtest::Hide("GetNamespaceURI"); }, LX_XMP_UNAVAILABLE},
      {"a refusal", [] { lxtest::Fail("GetProperty"); }, LX_XMP_REFUSED},
      {"a text that cannot be given back", [] { lxtest::Fail("UnlockObject"); }, LX_XMP_REFUSED},
  };
  for (const auto& c : kCases) {
    const lxtest::Alive before = lxtest::CountAlive();
    LxXmpStop();  // The tables are bound anew by the next session.
    c.bend();
    ASSERT_EQ(LxXmpStart(), LX_XMP_OK) << c.what;
    LxXmpText text;
    LxXmpStatus status = LxXmpGet(photo.Xmp().object(), LX_XMP_NS_TIFF, "Make", &text, nullptr);
    if (status == LX_XMP_OK) status = LxXmpNamespaceOfPrefix("tiff", &text);
    EXPECT_EQ(status, c.status) << c.what << ": " << LxXmpLastMessage();
    EXPECT_EQ(LxXmpLastError(), c.status) << c.what;
    LxXmpStop();
    lxtest::Straighten();
    ASSERT_EQ(LxXmpStart(), LX_XMP_OK) << c.what;
    EXPECT_EQ(photo.Xmp().Get(LX_XMP_NS_TIFF, "Make"), "Canon") << c.what;
    EXPECT_EQ(lxtest::CountAlive(), before) << c.what;
  }
}

// Every call of a host once, with the nth allocation failing: each result is success or LX_XMP_NO_MEMORY, and a run
// without a failure works whatever failed before.
TEST(HostFaults, MemoryThatRunsOutIsToldByEveryCall) {
  const Library library;
  const lxtest::TempFile file(Photo());
  const std::string longText(200, 'x');
  // This program's own lookups take memory, so everything is bound before.
  ASSERT_EQ(Interchange(file.path()).Xmp().Get(LX_XMP_NS_TIFF, "Make"), "Canon");
  ASSERT_EQ(NamespaceOfPrefix("tiff"), LX_XMP_NS_TIFF);
  const auto run = [&](CXMPMeta* xmp, bool* refused) {
    const auto check = [&](LxXmpStatus status, const char* what) {
      EXPECT_TRUE(status >= 0 || status == LX_XMP_NO_MEMORY) << what << ": " << status << ", " << LxXmpLastMessage();
      *refused = *refused || status < 0;
    };
    LxXmpText text;
    check(LxXmpStart(), "start");
    check(LxXmpSet(xmp, LX_XMP_NS_XMP, "Label", longText.c_str(), 0), "set");
    check(LxXmpAppend(xmp, LX_XMP_NS_DC, "subject", LX_XMP_ARRAY, "harbour", 0), "append");
    check(LxXmpSetLocalizedText(xmp, LX_XMP_NS_DC, "title", "de", "de-AT", "Steg"), "localized text");
    check(LxXmpGet(xmp, LX_XMP_NS_XMP, "Label", &text, nullptr), "get");
    check(LxXmpNamespaceOfPrefix("tiff", &text), "lookup");
    const auto visitor = [](void*, const LxXmpNode*) { return LX_XMP_GO_ON; };
    check(LxXmpVisit(xmp, nullptr, nullptr, visitor, nullptr), "visit");
    check(LxXmpSerialize(xmp, 0, 0, &text), "serialize");
    check(LxXmpDelete(xmp, LX_XMP_NS_XMP, "Label"), "delete");
    check(LxXmpGetLocalizedText(xmp, LX_XMP_NS_DC, "title", "de", "de-AT", &text, nullptr), "get localized text");
    const auto namespaceVisitor = [](void*, const char*, const char*) { return LX_XMP_GO_ON; };
    check(LxXmpVisitNamespaces(xmp, namespaceVisitor, nullptr), "visit namespaces");
    CXMPMeta* copy = nullptr;
    check(LxXmpCopy(xmp, &copy), "copy");
    check(LxXmpMerge(copy != nullptr ? copy : xmp, xmp, LX_XMP_REPLACE), "merge");
    LxXmpFree(copy);
  };
  for (const Failing failing : {Failing::kOnce, Failing::kFromThenOn}) {
    int nth = 1;
    for (bool failed = true; failed; ++nth) {
      SCOPED_TRACE("allocation " + std::to_string(nth));
      const Interchange photo(file.path());
      bool refused = false;
      FailingNew failingNew(nth, failing);
      run(photo.Xmp().object(), &refused);
      failingNew.Stop();
      failed = failingNew.hasFailed();
      EXPECT_EQ(refused, failed);
      LxXmpStop();
    }
    EXPECT_GT(nth, 8);
  }
}

}  // namespace
}  // namespace lxbridge
