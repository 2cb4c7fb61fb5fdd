// Memory that runs out: every procedure says so with the broker's own error, leaves the object as it was and loses
// nothing. The program's operator new is that of the toolkit's library too.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "clients/xmp/xmp_abi.h"
#include "tests/support/broker_procs.h"

namespace {

bool isCounting = false;
long untilFailure = 0;
bool hasFailed = false;

}  // namespace

void* operator new(std::size_t size) {
  if (isCounting && --untilFailure <= 0) {
    hasFailed = true;
    throw std::bad_alloc();
  }
  if (void* block = std::malloc(size)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (isCounting && --untilFailure <= 0) {
    hasFailed = true;
    return nullptr;
  }
  return std::malloc(size);
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
// Out of line: seen beside a `new`, free() looks like the wrong way to give a block back.
[[gnu::noinline]] static void Release(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block) noexcept {
  Release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  Release(block);
}
void operator delete[](void* block) noexcept {
  Release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  Release(block);
}

namespace {

const char* const kDC = "http://purl.org/dc/elements/1.1/";
const char* const kXMP = "http://ns.adobe.com/xap/1.0/";

// First in this file: what is made once in a process has to be made here.
TEST(ToolkitStartWithoutMemory, IsANoAndTheFirstPacketAnErrorUntilThereIsEnough) {
  const TALLookupProc lookup = TALOrdinal5();
  const BrokerProcs broker{lookup};
  std::uint32_t started = 0;
  for (long nth = 1; started == 0; ++nth) {
    ASSERT_LT(nth, 2000);
    untilFailure = nth;
    isCounting = true;
    started = VeltoXMPOrdinal1(lookup, kXMPClientVersion, nullptr);
    isCounting = false;
  }
  const auto meta = LookUpAll<XMPMetaStatics>(lookup, kXMPMetaStaticInterface, kXMPMetaStaticNames);
  const std::string packet =
      "<r:RDF "
      "xmlns:r='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><r:Description><dc:a>1</dc:a></r:Description></r:RDF>";
  XMPObjectRef made = nullptr;
  for (long nth = 1; made == nullptr; ++nth) {
    ASSERT_LT(nth, 2000);
    untilFailure = nth;
    isCounting = true;
    const TALErrorRef error = meta.newWithBuffer(packet.data(), static_cast<std::uint32_t>(packet.size()), &made);
    isCounting = false;
    EXPECT_EQ(error == nullptr, made != nullptr);
    EXPECT_TRUE(error == nullptr || error == broker.errors.getCoreError(0));
    broker.errors.release(error);
  }
  EXPECT_EQ(broker.containers.release(made), nullptr);
  VeltoXMPOrdinal2();
}

class ToolkitWithoutMemory : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(VeltoXMPOrdinal1(lookup_, kXMPClientVersion, nullptr), 0u);
    meta_ = LookUpAll<XMPMetaStatics>(lookup_, kXMPMetaStaticInterface, kXMPMetaStaticNames);
    utils_ = LookUpAll<XMPUtilsStatics>(lookup_, kXMPUtilsStaticInterface, kXMPUtilsStaticNames);
    object_ = MakeFilledObject();
  }
  void TearDown() override {
    Release(object_);
    std::uint32_t count = 1;
    EXPECT_EQ(meta_.countObjects(&count), nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(broker_.containers.getLiveCount(), 0u);
    EXPECT_EQ(broker_.errors.getLiveCount(), 0u);
    VeltoXMPOrdinal2();
  }

  XMPObjectRef MakeFilledObject() {
    XMPObjectRef object = nullptr;
    EXPECT_EQ(meta_.newEmpty(&object), nullptr);
    EXPECT_EQ(broker_.containers.addRef(object), nullptr);
    if (methods_.setProperty == nullptr) methods_ = MethodsOf(object);
    for (int number = 0; number < 20; ++number) {
      const std::string name = "aPropertyWithAVeryLongNameThatNeedsABlockOfItsOwn" + std::to_string(number);
      EXPECT_EQ(methods_.setProperty(object, kDC, name.c_str(), "a text that is too long for its place", 0), nullptr);
    }
    EXPECT_EQ(methods_.setLocalizedText(object, kDC, "title", "", "de", "ein Text, der zu lang ist", 0), nullptr);
    EXPECT_EQ(methods_.setStructField(object, kDC, "struct", kXMP, "field", "x", 0), nullptr);
    return object;
  }
  XMPMetaMethods MethodsOf(XMPObjectRef object) {
    TALProc slots[sizeof(kXMPMetaMethodNames) / sizeof(TALProcName)];
    for (std::size_t at = 0; at < std::size(slots); ++at) {
      const TALStringAtom shortName = broker_.strings.newStringAtom(kXMPMetaMethodNames[at].shortName);
      const TALStringAtom qualifiedName = broker_.strings.newStringAtom(kXMPMetaMethodNames[at].qualifiedName);
      EXPECT_EQ(broker_.containers.getMethod(&slots[at], object, shortName, qualifiedName, 0), nullptr);
      broker_.strings.deleteStringAtom(shortName);
      broker_.strings.deleteStringAtom(qualifiedName);
    }
    XMPMetaMethods methods;
    std::memcpy(&methods, slots, sizeof methods);
    return methods;
  }
  void Release(XMPObjectRef object) { EXPECT_EQ(broker_.containers.release(object), nullptr); }

  bool AreEqual(XMPObjectRef left, XMPObjectRef right) {
    std::uint8_t equal = 0;
    EXPECT_EQ(utils_.compareObjects(left, right, &equal), nullptr);
    return equal != 0;
  }

  TALLookupProc lookup_ = TALOrdinal5();
  BrokerProcs broker_{lookup_};
  XMPMetaStatics meta_{};
  XMPUtilsStatics utils_{};
  XMPMetaMethods methods_{};
  XMPObjectRef object_ = nullptr;
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
      [&](auto o) { return methods_.setObjectName(o, longText.c_str()); },
      [&](auto o) { return methods_.parseFromBuffer(o, packet.data(), length, 0); },
      [&](auto o) { return methods_.serializeToBuffer(o, &out, 0, 0, nullptr, nullptr, 0); },
      [&](auto o) { return methods_.getProperty(o, kDC, "struct/xmp:field", &out, nullptr, nullptr); },
      [&](auto o) { return utils_.appendProperties(other, o, 1); },
      [&](auto o) { return utils_.duplicateSubtree(other, o, kDC, "title", kXMP, "copy/xmp:of"); },
      [&](auto o) { return utils_.separateArrayItems(o, kXMP, "words", 0x200, "one; two and a lot more; \"three\""); },
      [&](auto) { return utils_.composeStructFieldPath(kDC, longName.c_str(), kXMP, longName.c_str(), &out); },
      [&](auto) { return utils_.repairText(longText.data(), 600, &out); },
  };
  for (std::size_t at = 0; at < calls.size(); ++at) {
    bool isDone = false;
    int errors = 0;
    for (long nth = 1; !isDone; ++nth) {
      SCOPED_TRACE("call " + std::to_string(at) + ", allocation " + std::to_string(nth));
      ASSERT_LT(nth, 2000);
      XMPObjectRef tried = MakeFilledObject();
      untilFailure = nth;
      hasFailed = false;
      isCounting = true;
      const TALErrorRef error = calls[at](tried);
      isCounting = false;
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

TEST_F(ToolkitWithoutMemory, AnObjectThatCannotBeMadeLeavesNothing) {
  const std::vector<std::function<TALErrorRef(XMPObjectRef*)>> makers = {
      [&](auto* result) { return meta_.newEmpty(result); },
      [&](auto* result) { return meta_.newCopy(object_, result); },
  };
  for (const auto& make : makers) {
    XMPObjectRef made = nullptr;
    for (long nth = 1; made == nullptr; ++nth) {
      ASSERT_LT(nth, 2000);
      untilFailure = nth;
      isCounting = true;
      const TALErrorRef error = make(&made);
      isCounting = false;
      EXPECT_EQ(error == nullptr, made != nullptr);
      if (error != nullptr) {
        EXPECT_EQ(error, broker_.errors.getCoreError(0));
        broker_.errors.release(error);
      }
      std::uint32_t count = 0;
      EXPECT_EQ(meta_.countObjects(&count), nullptr);
      EXPECT_EQ(count, made != nullptr ? 2u : 1u);
    }
    Release(made);
  }
}

}  // namespace
