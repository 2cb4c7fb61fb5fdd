// The toolkit as its clients see it: starts and stops, every procedure's refusals, error references.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "clients/xmp/xmp_abi.h"
#include "tests/support/broker_procs.h"

namespace {

constexpr char kDC[] = "http://purl.org/dc/elements/1.1/";

class Toolkit : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(VeltoXMPOrdinal1(lookup_, kXMPClientVersion, nullptr), 0u);
    meta_ = LookUpAll<XMPMetaStatics>(lookup_, kXMPMetaStaticInterface, kXMPMetaStaticNames);
    utils_ = LookUpAll<XMPUtilsStatics>(lookup_, kXMPUtilsStaticInterface, kXMPUtilsStaticNames);
    ASSERT_EQ(meta_.newWithBuffer(nullptr, 0, &object_), nullptr);
    ASSERT_EQ(broker_.containers.addRef(object_), nullptr);
    FindMethods(kXMPMetaMethodNames, methods_);
    FindMethods(kXMPMetaOptionalMethodNames, optional_);
  }
  void TearDown() override {
    Release(object_);
    EXPECT_EQ(broker_.containers.getLiveCount(), 0u);
    EXPECT_EQ(broker_.errors.getLiveCount(), 0u);
    VeltoXMPOrdinal2();
  }

  template <typename Methods, std::size_t kCount>
  void FindMethods(const TALProcName (&names)[kCount], Methods& methods) {
    TALProc slots[kCount];
    for (std::size_t at = 0; at < kCount; ++at) {
      const TALStringAtom shortName = broker_.strings.newStringAtom(names[at].shortName);
      const TALStringAtom qualifiedName = broker_.strings.newStringAtom(names[at].qualifiedName);
      EXPECT_EQ(broker_.containers.getMethod(&slots[at], object_, shortName, qualifiedName, 0), nullptr);
      broker_.strings.deleteStringAtom(shortName);
      broker_.strings.deleteStringAtom(qualifiedName);
    }
    std::memcpy(&methods, slots, sizeof methods);
  }
  void Release(XMPObjectRef object) { EXPECT_EQ(broker_.containers.release(object), nullptr); }

  // The id of the error, which must have a text; 0 for success.
  std::int32_t IdOf(TALErrorRef error) {
    if (error == nullptr) return 0;
    EXPECT_STREQ(broker_.errors.getComponent(error), "XMP");
    EXPECT_GT(std::strlen(broker_.errors.getMessageText(error)), 8u);
    const std::int32_t id = broker_.errors.getId(error);
    broker_.errors.release(error);
    return id;
  }

  std::string ValueOf(const char* name) {
    XMPTextOut value{};
    std::uint8_t found = 2;
    EXPECT_EQ(methods_.getProperty(object_, kDC, name, &value, nullptr, &found), nullptr);
    return found != 0 ? std::string(value.text, value.length) : "(none)";
  }

  std::string Packet(XMPObjectRef object) {
    XMPTextOut packet{};
    EXPECT_EQ(methods_.serializeToBuffer(object, &packet, kXMPSerializeOmitWrapper, 0, nullptr, nullptr, 0), nullptr);
    std::string text(packet.text, packet.length);
    EXPECT_EQ(methods_.unlockObject(object, 0), nullptr);
    return text;
  }

  TALLookupProc lookup_ = TALOrdinal5();
  BrokerProcs broker_{lookup_};
  XMPMetaStatics meta_{};
  XMPUtilsStatics utils_{};
  XMPMetaMethods methods_{};
  XMPMetaOptionalMethods optional_{};
  XMPObjectRef object_ = nullptr;
};

TEST_F(Toolkit, StartsAreCountedAndTheLastStopTakesTheInterfacesBack) {
  const auto isThere = [this] {
    return lookup_(kXMPMetaStaticInterface, "New", "XMPMeta_New_Ctor") != nullptr &&
           lookup_(kXMPUtilsStaticInterface, "SetTimeZone", "XMPUtils_SetTimeZone_Static") != nullptr;
  };
  const std::uint32_t* unregisterings = broker_.core.getUnregisterCountAddr();
  std::uint32_t version = 0;
  EXPECT_NE(VeltoXMPOrdinal1(lookup_, kXMPClientVersion, &version), 0u);
  EXPECT_NE(version, 0u);
  const std::uint32_t before = *unregisterings;
  VeltoXMPOrdinal2();
  EXPECT_TRUE(isThere());
  EXPECT_EQ(*unregisterings, before);
  VeltoXMPOrdinal2();
  EXPECT_FALSE(isThere());
  EXPECT_NE(*unregisterings, before);
  VeltoXMPOrdinal2();  // One too many does nothing.

  // An object that outlives the stop goes on working, and is an object of the toolkit again after the next start.
  EXPECT_EQ(methods_.setProperty(object_, kDC, "format", "x", 0), nullptr);
  EXPECT_EQ(ValueOf("format"), "x");
  EXPECT_EQ(VeltoXMPOrdinal1(nullptr, kXMPClientVersion, nullptr), 0u);
  EXPECT_EQ(VeltoXMPOrdinal1(lookup_, 0x40000000, nullptr), 0u);
  EXPECT_FALSE(isThere());
  EXPECT_NE(VeltoXMPOrdinal1(lookup_, kXMPClientVersion, nullptr), 0u);
  EXPECT_TRUE(isThere());
  XMPObjectRef copy = nullptr;
  EXPECT_EQ(meta_.newCopy(object_, &copy), nullptr);
  EXPECT_EQ(Packet(copy), Packet(object_));
  Release(copy);
}

TALProc LookUpAllButUtils(const char* interfaceName, const char* shortName, const char* qualifiedName) {
  if (std::strcmp(shortName, "NewKind") == 0) return nullptr;
  return TALOrdinal5()(interfaceName, shortName, qualifiedName);
}

TEST(ToolkitStart, FailsWithABrokerThatLacksSomethingOrHasItOfAnother) {
  EXPECT_EQ(VeltoXMPOrdinal1(LookUpAllButUtils, kXMPClientVersion, nullptr), 0u);
  EXPECT_EQ(TALOrdinal5()(kXMPMetaStaticInterface, "New", "XMPMeta_New_Ctor"), nullptr);
  const BrokerProcs broker(TALOrdinal5());
  const TALProcName& last = kXMPUtilsStaticNames[std::size(kXMPUtilsStaticNames) - 1];
  const auto foreign = reinterpret_cast<TALProc>(VeltoXMPOrdinal2);
  ASSERT_EQ(broker.core.registerProcAddress(kXMPUtilsStaticInterface, last.shortName, last.qualifiedName, foreign),
            nullptr);
  EXPECT_EQ(VeltoXMPOrdinal1(TALOrdinal5(), kXMPClientVersion, nullptr), 0u);
  (void)broker.Take(broker.core.unregisterInterface(kXMPUtilsStaticInterface));
  EXPECT_EQ(TALOrdinal5()(kXMPMetaStaticInterface, "New", "XMPMeta_New_Ctor"), nullptr);
}

TEST_F(Toolkit, WrongArgumentsAreErrorsAndUnwantedAnswersAreNot) {
  std::uint32_t count = 0;
  XMPTextOut text{};
  const std::vector<std::function<TALErrorRef()>> wrong = {
      [&] { return methods_.setProperty(nullptr, kDC, "a", "x", 0); },
      [&] { return methods_.setProperty(object_, nullptr, "a", "x", 0); },
      [&] { return methods_.setProperty(object_, kDC, nullptr, "x", 0); },
      [&] { return methods_.setProperty(object_, kDC, "a", nullptr, 0); },
      [&] { return methods_.getProperty(object_, kDC, nullptr, nullptr, nullptr, nullptr); },
      [&] { return methods_.getStructField(object_, kDC, "a", nullptr, "b", nullptr, nullptr, nullptr); },
      [&] { return methods_.setLocalizedText(object_, kDC, "a", nullptr, "x-default", "x", 0); },
      [&] { return methods_.setLocalizedText(object_, kDC, "a", "", "x-default", "x", 1); },
      [&] { return methods_.setPropertyDate(object_, kDC, "a", nullptr, 0); },
      [&] { return methods_.parseFromBuffer(object_, nullptr, 1, 0); },
      [&] { return methods_.visitNodes(object_, nullptr, nullptr, nullptr, nullptr); },
      [&] { return optional_.getWarning(object_, 0, &count, &count, &text); },
      [&] { return meta_.newCopy(object_, nullptr); },
      [&] { return meta_.registerNamespace(nullptr, "a", nullptr); },
      [&] { return utils_.setTimeZone(nullptr); },
      [&] { return utils_.removeProperties(nullptr, kDC, "a", 0); },
      [&] { return utils_.removeProperties(object_, "", "a", 0); },
      [&] { return utils_.removeProperties(object_, kDC, "a", 1); },
      [&] { return methods_.unlockObject(object_, 1); },
  };
  for (std::size_t at = 0; at < wrong.size(); ++at) EXPECT_NE(IdOf(wrong[at]()), 0) << "call " << at;

  EXPECT_EQ(methods_.setProperty(object_, kDC, "format", "x", 0), nullptr);
  EXPECT_EQ(methods_.getProperty(object_, kDC, "format", nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(methods_.getPropertyDate(object_, kDC, "none", nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(methods_.serializeToBuffer(object_, nullptr, 0, 0, nullptr, nullptr, 0), nullptr);
}

TEST_F(Toolkit, ContainersOfOtherKindsAreNoObjects) {
  TALKindRef kind = nullptr;
  ASSERT_EQ(broker_.containers.newKind(&kind, "XMPMeta", nullptr), nullptr);
  int instance = 0;
  TALContainerRef stranger = nullptr;
  ASSERT_EQ(broker_.containers.newContainer(&stranger, kind, &instance), nullptr);
  EXPECT_EQ(IdOf(methods_.setProperty(stranger, kDC, "a", "x", 0)), 3);
  EXPECT_EQ(IdOf(utils_.removeProperties(stranger, kDC, "a", 0)), 3);
  EXPECT_EQ(broker_.containers.release(stranger), nullptr);
  EXPECT_EQ(broker_.containers.deleteKind(kind), nullptr);
}

TEST_F(Toolkit, TextsStayUntilTheyAreUnlocked) {
  std::vector<XMPTextOut> texts;
  for (int number = 0; number < 400; ++number) {
    const std::string value = std::to_string(number) + std::string(static_cast<std::size_t>(number * 7), 'x');
    ASSERT_EQ(methods_.setProperty(object_, kDC, "format", value.c_str(), 0), nullptr);
    ASSERT_EQ(methods_.getProperty(object_, kDC, "format", &texts.emplace_back(), nullptr, nullptr), nullptr);
  }
  EXPECT_EQ(utils_.removeProperties(object_, nullptr, nullptr, 0), nullptr);
  for (int number = 0; number < 400; ++number) {
    const XMPTextOut& text = texts[static_cast<std::size_t>(number)];
    EXPECT_EQ(std::string(text.text), std::to_string(number) + std::string(static_cast<std::size_t>(number * 7), 'x'));
    EXPECT_EQ(std::strlen(text.text), text.length);
  }
  EXPECT_EQ(methods_.unlockObject(object_, 0), nullptr);
  EXPECT_EQ(utils_.unlockUtils(0), nullptr);
  EXPECT_EQ(meta_.unlockStatics(0), nullptr);
}

TEST_F(Toolkit, APacketInPiecesComesInWithItsEndOrWithItsFault) {
  const std::string packet =
      "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
      "<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/' dc:format='new' dc:source='s'/>"
      "</rdf:RDF></x:xmpmeta>";
  ASSERT_EQ(methods_.setProperty(object_, kDC, "format", "old", 0), nullptr);
  ASSERT_EQ(methods_.setProperty(object_, kDC, "coverage", "c", 0), nullptr);
  const auto feed = [this](const std::string& piece, std::uint32_t options) {
    return methods_.parseFromBuffer(object_, piece.data(), static_cast<std::uint32_t>(piece.size()), options);
  };

  // The first part and then a fault: nothing was complete, and the next packet starts afresh.
  const std::size_t half = packet.find("<rdf:Description");
  const std::pair<std::string, std::uint32_t> faults[] = {{"</wrong>", 0}, {"", 0}, {packet.substr(half), 0x1000}};
  for (const auto& [rest, options] : faults) {
    EXPECT_EQ(feed(packet.substr(0, half), kXMPParseMoreBuffers), nullptr);
    EXPECT_NE(IdOf(feed(rest, options)), 0);
    EXPECT_EQ(ValueOf("format"), "old");
  }
  EXPECT_EQ(feed(packet, kXMPParseMoreBuffers), nullptr);
  EXPECT_EQ(ValueOf("format"), "old");
  EXPECT_EQ(feed("", 0), nullptr);
  EXPECT_EQ(ValueOf("format") + ValueOf("source") + ValueOf("coverage"), "newsc");
  EXPECT_NE(IdOf(feed(packet.substr(0, packet.find("</rdf:RDF>")), 0)), 0);
  EXPECT_EQ(ValueOf("format"), "new");
  EXPECT_EQ(feed("x", kXMPParseMoreBuffers), nullptr) << "a parser that is left half-way is freed with its object";
}

TEST_F(Toolkit, ProceduresWithoutAUserSayThatTheyAreNotSupported) {
  const auto said = [this](TALErrorRef error) {
    EXPECT_NE(error, nullptr);
    EXPECT_EQ(broker_.errors.getId(error), 21);
    std::string message = broker_.errors.getMessageText(error);
    broker_.errors.release(error);
    return message;
  };
  EXPECT_EQ(said(meta_.getVersionText(nullptr)), "GetVersionText is not supported by this toolkit");
  EXPECT_EQ(said(methods_.clear(object_)), "Clear is not supported by this toolkit");
  EXPECT_EQ(said(utils_.isUTF8("a", 1, nullptr)), "IsUTF8 is not supported by this toolkit");
}

}  // namespace
