// The host library with a broker and a toolkit that lack something or refuse, and with memory that runs out. The
// program's entry points come before those of the other libraries (tests/api/other_libraries.h).
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "host/include/lxbridge/xmp.hpp"
#include "tests/api/other_libraries.h"
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
    lxtest::RestoreAll();
    ASSERT_EQ(LxXmpStart(), LX_XMP_OK) << c.what;
    EXPECT_EQ(NamespaceOfPrefix("tiff"), LX_XMP_NS_TIFF) << c.what;
    LxXmpStop();
  }
}

TEST(HostFaults, MissingProceduresAndRefusalsAreToldApart) {
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
    lxtest::RestoreAll();
    ASSERT_EQ(LxXmpStart(), LX_XMP_OK) << c.what;
    EXPECT_EQ(photo.Xmp().Get(LX_XMP_NS_TIFF, "Make"), "Canon") << c.what;
    EXPECT_EQ(lxtest::CountAlive(), before) << c.what;
  }
}

TEST(HostFaults, AThreadGivesBackTheMemoryOfItsTexts) {
  const Library library;
  const Interchange photo(lxtest::TempFile(Photo()).path());
  ASSERT_EQ(photo.Xmp().Get(LX_XMP_NS_TIFF, "Make"), "Canon");  // Binds the procedures.
  ReleaseThreadMemory();
  const FailingNew counted;
  LxXmpText text;
  ASSERT_EQ(LxXmpGet(photo.Xmp().object(), LX_XMP_NS_TIFF, "Make", &text, nullptr), LX_XMP_OK);
  EXPECT_GT(counted.liveBlocks(), 0);
  ReleaseThreadMemory();
  EXPECT_EQ(counted.liveBlocks(), 0);
}

// With the nth allocation failing, a call is done whole or gives LX_XMP_NO_MEMORY and changes nothing.
TEST(HostFaults, ACallThatRunsOutOfMemoryChangesNothing) {
  const Library library;
  const Interchange photo(lxtest::TempFile(Photo()).path());
  XmpView whole = photo.Xmp();
  for (int i = 0; i < 20; ++i) {
    const std::string name = "aPropertyWithAVeryLongNameThatNeedsABlockOfItsOwn" + std::to_string(i);
    whole.Set(LX_XMP_NS_DC, name.c_str(), "a text that is too long for its place");
  }
  whole.SetLocalizedText(LX_XMP_NS_DC, "title", "", "de", "ein Text, der zu lang ist");
  whole.SetField(LX_XMP_NS_DC, "struct", LX_XMP_NS_XMP, "field", "x");
  const XmpObject other(whole);
  const std::string longText(600, 't');
  const std::string longName(300, 'n');
  other.Xmp().Set(LX_XMP_NS_XMP, "more", longText);
  const std::string packet =
      "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about='uuid:of a length'"
      " xmlns:dc='http://purl.org/dc/elements/1.1/'><dc:subject><rdf:Bag><rdf:li>" +
      longText + "</rdf:li><rdf:li xml:lang='de'>x</rdf:li></rdf:Bag></dc:subject></rdf:Description></rdf:RDF>";
  LxXmpText text;
  const auto goOn = [](void*, const auto*...) { return LX_XMP_GO_ON; };
  const struct {
    const char* name;
    std::function<LxXmpStatus(CXMPMeta*)> call;
  } kCalls[] = {
      {"set", [&](auto o) { return LxXmpSet(o, LX_XMP_NS_DC, longName.c_str(), longText.c_str(), 0); }},
      {"set deep", [&](auto o) { return LxXmpSet(o, LX_XMP_NS_DC, "struct/xmp:a/xmp:b", longText.c_str(), 0); }},
      {"replace", [&](auto o) { return LxXmpSet(o, LX_XMP_NS_DC, "struct/xmp:field", longText.c_str(), 0); }},
      {"repair", [](auto o) { return LxXmpSet(o, LX_XMP_NS_XMP, "new", "\xE9 and so on, and so on", 0); }},
      {"append", [&](auto o) { return LxXmpAppend(o, LX_XMP_NS_XMP, "list", LX_XMP_ORDERED, longText.c_str(), 0); }},
      {"qualify",
       [&](auto o) { return LxXmpSetQualifier(o, LX_XMP_NS_DC, "struct", LX_XMP_NS_XMP, "q", longText.c_str(), 0); }},
      {"translate",
       [&](auto o) { return LxXmpSetLocalizedText(o, LX_XMP_NS_DC, "title", "de", "de-AT", longText.c_str()); }},
      {"name in a language",
       [&](auto o) { return LxXmpSetLocalizedText(o, LX_XMP_NS_XMP, "label", "en", "en-US", longText.c_str()); }},
      {"delete", [](auto o) { return LxXmpDelete(o, LX_XMP_NS_DC, "struct/xmp:field"); }},
      {"parse", [&](auto o) { return LxXmpParse(o, packet.data(), packet.size()); }},
      {"merge", [&](auto o) { return LxXmpMerge(o, other.Xmp().object(), LX_XMP_REPLACE); }},
      {"get", [&](auto o) { return LxXmpGet(o, LX_XMP_NS_DC, "struct/xmp:field", &text, nullptr); }},
      {"serialize", [&](auto o) { return LxXmpSerialize(o, 0, 0, &text); }},
      {"visit namespaces", [&](auto o) { return LxXmpVisitNamespaces(o, goOn, nullptr); }},
      {"copy",
       [](auto o) {
         CXMPMeta* copy = nullptr;
         const LxXmpStatus status = LxXmpCopy(o, &copy);
         LxXmpFree(copy);
         return status;
       }},
  };
  for (const auto& c : kCalls) {
    const XmpObject done(whole);
    ASSERT_GE(c.call(done.Xmp().object()), 0) << c.name;  // Binds the call's procedures, too: that takes memory.
    for (const Failing failing : {Failing::kOnce, Failing::kFromThenOn}) {
      int refusals = 0;
      bool hasFailed = true;
      for (int nth = 1; hasFailed; ++nth) {
        SCOPED_TRACE(std::string(c.name) + ", allocation " + std::to_string(nth));
        ASSERT_LT(nth, 2000);
        const XmpObject tried(whole);
        FailingNew failingNew(nth, failing);
        const LxXmpStatus status = c.call(tried.Xmp().object());
        failingNew.Stop();
        hasFailed = failingNew.hasFailed();
        EXPECT_TRUE(status >= 0 || (hasFailed && status == LX_XMP_NO_MEMORY)) << LxXmpLastMessage();
        EXPECT_TRUE(tried.Xmp().IsEqual(status >= 0 ? done.Xmp() : whole));
        tried.Xmp().Set(LX_XMP_NS_DC, "afterwards", "x");
        refusals += status < 0 ? 1 : 0;
      }
      EXPECT_GT(refusals, 0) << c.name << " has used no memory";
    }
  }
}

}  // namespace
}  // namespace lxbridge
