// Memory that runs out: every procedure says so with the broker's own error, leaves the object as it was and loses
// nothing. The program's operator new is that of the toolkit's library too.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/outside/xmp/toolkit_fixture.h"
#include "tests/support/failing_new.h"

namespace {

using lxtest::Failing;
using lxtest::FailingNew;

// Does the work with memory for so many allocations less one.
template <typename Work>
bool FailsAt(int nth, Work work) {
  FailingNew failingNew(nth, Failing::kFromThenOn);
  work();
  failingNew.Stop();
  return failingNew.hasFailed();
}

class ToolkitWithoutMemory : public ToolkitFixture {
 protected:
  void SetUp() override {
    ToolkitFixture::SetUp();
    Fill(object_);
  }

  void Fill(XMPObjectRef object) {
    for (int number = 0; number < 20; ++number) {
      const std::string name = "aPropertyWithAVeryLongNameThatNeedsABlockOfItsOwn" + std::to_string(number);
      EXPECT_EQ(methods_.setProperty(object, kDC, name.c_str(), "a text that is too long for its place", 0), nullptr);
    }
    EXPECT_EQ(methods_.setLocalizedText(object, kDC, "title", "", "de", "ein Text, der zu lang ist", 0), nullptr);
    EXPECT_EQ(methods_.setStructField(object, kDC, "struct", kXMP, "field", "x", 0), nullptr);
  }
  XMPObjectRef MakeFilledObject() {
    const XMPObjectRef object = MakeObject();
    Fill(object);
    return object;
  }

  bool AreEqual(XMPObjectRef left, XMPObjectRef right) {
    std::uint8_t equal = 0;
    EXPECT_EQ(utils_.compareObjects(left, right, &equal), nullptr);
    return equal != 0;
  }
};

TEST_F(ToolkitWithoutMemory, AFailedCallChangesNothing) {
  const std::string longText(600, 't');
  const std::string longName(300, 'n');
  const std::string packet =
      "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about='uuid:of some "
      "length' "
      "xmlns:dc='http://purl.org/dc/elements/1.1/'><dc:subject><rdf:Bag><rdf:li>" +
      longText + "</rdf:li><rdf:li xml:lang='de'>x</rdf:li></rdf:Bag></dc:subject></rdf:Description></rdf:RDF>";
  const std::uint32_t length = static_cast<std::uint32_t>(packet.size());
  const XMPObjectRef other = MakeFilledObject();
  ASSERT_EQ(methods_.setProperty(other, kXMP, "more", longText.c_str(), 0), nullptr);
  XMPTextOut out{};

  using Call = std::function<TALErrorRef(XMPObjectRef)>;
  const std::vector<Call> calls = {
      [&](auto o) { return methods_.setProperty(o, kDC, longName.c_str(), longText.c_str(), 0); },
      [&](auto o) { return methods_.setProperty(o, kDC, "struct/xmp:a/xmp:b/xmp:c", longText.c_str(), 0); },
      [&](auto o) { return methods_.setProperty(o, kXMP, "new", "\xE9 and so on, and so on", 0); },
      [&](auto o) { return methods_.setProperty(o, kDC, "struct/xmp:field", longText.c_str(), 0); },
      [&](auto o) { return methods_.appendArrayItem(o, kXMP, "list", 0x400, longText.c_str(), 0); },
      [&](auto o) { return methods_.setQualifier(o, kDC, "struct", kXMP, "q", longText.c_str(), 0); },
      [&](auto o) { return methods_.setLocalizedText(o, kDC, "title", "de", "de-AT", longText.c_str(), 0); },
      [&](auto o) { return methods_.setLocalizedText(o, kXMP, "label", "en", "en-US", longText.c_str(), 0); },
      [&](auto o) { return methods_.parseFromBuffer(o, packet.data(), length, 0); },
      [&](auto o) { return methods_.serializeToBuffer(o, &out, 0, 0, nullptr, nullptr, 0); },
      [&](auto o) { return methods_.getProperty(o, kDC, "struct/xmp:field", &out, nullptr, nullptr); },
      [&](auto o) { return utils_.appendProperties(other, o, 1); },
      [&](auto) { return utils_.composeStructFieldPath(kDC, longName.c_str(), kXMP, longName.c_str(), &out); },
      [&](auto o) {
        XMPObjectRef copy = nullptr;
        const TALErrorRef error = meta_.newCopy(o, &copy);
        return copy != nullptr ? broker_.containers.release(copy) : error;
      },
  };
  for (std::size_t at = 0; at < calls.size(); ++at) {
    bool isDone = false;
    int errors = 0;
    for (int nth = 1; !isDone; ++nth) {
      SCOPED_TRACE("call " + std::to_string(at) + ", allocation " + std::to_string(nth));
      ASSERT_LT(nth, 2000);
      XMPObjectRef tried = MakeFilledObject();
      TALErrorRef error = nullptr;
      const bool hasFailed = FailsAt(nth, [&] { error = calls[at](tried); });
      if (error != nullptr) {
        EXPECT_EQ(error, broker_.errors.getCoreError(0)) << broker_.errors.getMessageText(error);
        EXPECT_TRUE(hasFailed);
        ++errors;
        broker_.errors.release(error);
        EXPECT_TRUE(AreEqual(tried, object_));
      }
      // A failure that does no harm (an index that is not made) lets the call succeed.
      isDone = !hasFailed;
      EXPECT_TRUE(!isDone || error == nullptr);
      // The object can still be used.
      EXPECT_EQ(methods_.setProperty(tried, kDC, "afterwards", "x", 0), nullptr);
      Release(tried);
      utils_.unlockUtils(0);
    }
    EXPECT_GT(errors, 0) << "call " << at << " has used no memory";
  }
  Release(other);
}

}  // namespace
