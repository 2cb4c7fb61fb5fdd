// The toolkit as its clients see it: two entry points, procedures by name through the real broker, error references.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "clients/xmp/xmp_abi.h"
#include "tests/support/broker_procs.h"

namespace {

const char* const kDC = "http://purl.org/dc/elements/1.1/";
const char* const kXMP = "http://ns.adobe.com/xap/1.0/";

XMPMetaMethods MethodsOf(const BrokerProcs& broker, XMPObjectRef object) {
  TALProc slots[sizeof(kXMPMetaMethodNames) / sizeof(TALProcName)];
  for (std::size_t at = 0; at < std::size(slots); ++at) {
    const TALStringAtom shortName = broker.strings.newStringAtom(kXMPMetaMethodNames[at].shortName);
    const TALStringAtom qualifiedName = broker.strings.newStringAtom(kXMPMetaMethodNames[at].qualifiedName);
    EXPECT_EQ(broker.containers.getMethod(&slots[at], object, shortName, qualifiedName, 0), nullptr);
    EXPECT_NE(slots[at], nullptr) << kXMPMetaMethodNames[at].shortName;
    broker.strings.deleteStringAtom(shortName);
    broker.strings.deleteStringAtom(qualifiedName);
  }
  XMPMetaMethods methods;
  std::memcpy(&methods, slots, sizeof methods);
  return methods;
}

class Toolkit : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(VeltoXMPOrdinal1(lookup_, kXMPClientVersion, nullptr), 0u);
    meta_ = LookUpAll<XMPMetaStatics>(lookup_, kXMPMetaStaticInterface, kXMPMetaStaticNames);
    utils_ = LookUpAll<XMPUtilsStatics>(lookup_, kXMPUtilsStaticInterface, kXMPUtilsStaticNames);
    object_ = MakeObject();
    methods_ = MethodsOf(broker_, object_);
  }

  // Nothing is left behind: no object, no container, no error.
  void TearDown() override {
    Release(object_);
    std::uint32_t count = 1;
    EXPECT_EQ(meta_.countObjects(&count), nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(broker_.containers.getLiveCount(), 0u);
    EXPECT_EQ(broker_.errors.getLiveCount(), 0u);
    VeltoXMPOrdinal2();
  }

  XMPObjectRef MakeObject() {
    XMPObjectRef object = nullptr;
    EXPECT_EQ(meta_.newWithBuffer(nullptr, 0, &object), nullptr);
    EXPECT_EQ(broker_.containers.addRef(object), nullptr);
    return object;
  }
  void Release(XMPObjectRef object) { EXPECT_EQ(broker_.containers.release(object), nullptr); }

  // The id of the error, which must say what it is about; 0 for success.
  std::int32_t IdOf(TALErrorRef error) {
    if (error == nullptr) return 0;
    EXPECT_STREQ(broker_.errors.getComponent(error), "XMP");
    EXPECT_GT(std::strlen(broker_.errors.getMessageText(error)), 8u);
    const std::int32_t id = broker_.errors.getId(error);
    XMPTextOut text{};
    EXPECT_EQ(meta_.getErrorText(id, &text), nullptr);
    EXPECT_STRNE(text.text, "unknown error") << id;
    broker_.errors.release(error);
    return id;
  }

  std::string ValueOf(const char* name, const char* schema = kDC) {
    XMPTextOut value{};
    std::uint8_t found = 2;
    EXPECT_EQ(methods_.getProperty(object_, schema, name, &value, nullptr, &found), nullptr);
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
  XMPObjectRef object_ = nullptr;
};

TEST_F(Toolkit, EveryProcedureOfItsTablesIsThere) {
  for (const auto& name : kXMPMetaStaticNames) {
    EXPECT_NE(lookup_(kXMPMetaStaticInterface, name.shortName, name.qualifiedName), nullptr) << name.shortName;
  }
  for (const auto& name : kXMPUtilsStaticNames) {
    EXPECT_NE(lookup_(kXMPUtilsStaticInterface, name.shortName, name.qualifiedName), nullptr) << name.shortName;
  }
}

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

TEST(ToolkitStart, FailsWithABrokerThatLacksSomething) {
  EXPECT_EQ(VeltoXMPOrdinal1(LookUpAllButUtils, kXMPClientVersion, nullptr), 0u);
  EXPECT_EQ(TALOrdinal5()(kXMPMetaStaticInterface, "New", "XMPMeta_New_Ctor"), nullptr);
}

TEST_F(Toolkit, WhatCannotExistIsNotThereAndOnlySettingItIsAnError) {
  for (const char* name : {" 9214", "", "a b", "xmp:b", "a[0]", "a[", "a/b", "nobody:a"}) {
    SCOPED_TRACE(name);
    std::uint8_t found = 2;
    std::uint32_t options = 1;
    std::uint32_t count = 1;
    XMPTextOut value{};
    EXPECT_EQ(methods_.getProperty(object_, kDC, name, &value, &options, &found), nullptr);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(options, 0u);
    EXPECT_STREQ(value.text, "");
    EXPECT_EQ(methods_.doesPropertyExist(object_, kDC, name, &found), nullptr);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(methods_.countArrayItems(object_, kDC, name, &count), nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(methods_.deleteProperty(object_, kDC, name), nullptr);
    EXPECT_EQ(methods_.deleteLocalizedText(object_, kDC, name, "", "de"), nullptr);
    EXPECT_EQ(utils_.removeProperties(object_, kDC, name[0] != '\0' ? name : "a", 0), nullptr);
    EXPECT_NE(IdOf(methods_.setProperty(object_, kDC, name, "x", 0)), 0);
    EXPECT_NE(IdOf(methods_.appendArrayItem(object_, kDC, name, 0x400, "x", 0)), 0);
    EXPECT_NE(IdOf(methods_.setLocalizedText(object_, kDC, name, "", "x-default", "x", 0)), 0);
  }
  std::uint8_t found = 2;
  EXPECT_EQ(methods_.doesArrayItemExist(object_, kDC, "creator", -7, &found), nullptr);
  EXPECT_EQ(found, 0);
  EXPECT_EQ(methods_.deleteProperty(object_, "http://unknown.example/", "a"), nullptr);
  EXPECT_EQ(IdOf(methods_.setProperty(object_, "http://unknown.example/", "a", "x", 0)), 5);
  std::uint32_t count = 1;
  EXPECT_EQ(methods_.countProperties(object_, nullptr, &count), nullptr);
  EXPECT_EQ(count, 0u);
}

TEST_F(Toolkit, NullsAreErrorsAndUnwantedAnswersAreNot) {
  const std::vector<std::function<TALErrorRef()>> wrong = {
      [&] { return methods_.setProperty(nullptr, kDC, "a", "x", 0); },
      [&] { return methods_.setProperty(object_, nullptr, "a", "x", 0); },
      [&] { return methods_.setProperty(object_, kDC, nullptr, "x", 0); },
      [&] { return methods_.setProperty(object_, kDC, "a", nullptr, 0); },
      [&] { return methods_.getProperty(object_, kDC, nullptr, nullptr, nullptr, nullptr); },
      [&] { return methods_.getStructField(object_, kDC, "a", nullptr, "b", nullptr, nullptr, nullptr); },
      [&] { return methods_.setLocalizedText(object_, kDC, "a", nullptr, "x-default", "x", 0); },
      [&] { return methods_.setPropertyDate(object_, kDC, "a", nullptr, 0); },
      [&] { return methods_.parseFromBuffer(object_, nullptr, 1, 0); },
      [&] { return methods_.visitNodes(object_, nullptr, nullptr, nullptr, nullptr); },
      [&] { return meta_.newEmpty(nullptr); },
      [&] { return meta_.registerNamespace(nullptr, "a", nullptr); },
      [&] { return utils_.setTimeZone(nullptr); },
      [&] { return utils_.convertToInt(nullptr, nullptr); },
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
  EXPECT_EQ(utils_.findPacket("x", 1, nullptr, nullptr, nullptr), nullptr);
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

TEST_F(Toolkit, AnyBytesAsValueLeaveTheObjectSerialisable) {
  EXPECT_EQ(methods_.setProperty(object_, kDC, "creator", "Ren\xE9 \x01<&>\xED\xA0\x80", 0), nullptr);
  EXPECT_EQ(methods_.setLocalizedText(object_, kDC, "title", "", "x-default", "\xFF\xFE\x1B", 0), nullptr);
  EXPECT_EQ(methods_.appendArrayItem(object_, kDC, "subject", 0x200, "\xEF\xBF\xBF]]>", 0), nullptr);
  EXPECT_EQ(methods_.setObjectName(object_, "uuid:\xE9\""), nullptr);
  EXPECT_EQ(ValueOf("creator"), "Ren\xC3\xA9  <&>\xEF\xBF\xBD");
  const std::string packet = Packet(object_);
  XMPObjectRef read = nullptr;
  ASSERT_EQ(meta_.newWithBuffer(packet.data(), static_cast<std::uint32_t>(packet.size()), &read), nullptr);
  std::uint8_t equal = 0;
  EXPECT_EQ(utils_.compareObjects(object_, read, &equal), nullptr);
  EXPECT_EQ(equal, 1) << packet;
  Release(read);
}

TEST_F(Toolkit, TextsStayUntilTheyAreUnlocked) {
  std::vector<XMPTextOut> texts;
  for (int number = 0; number < 400; ++number) {
    const std::string value = std::to_string(number) + std::string(static_cast<std::size_t>(number * 7), 'x');
    ASSERT_EQ(methods_.setProperty(object_, kDC, "format", value.c_str(), 0), nullptr);
    ASSERT_EQ(methods_.getProperty(object_, kDC, "format", &texts.emplace_back(), nullptr, nullptr), nullptr);
  }
  EXPECT_EQ(methods_.clear(object_), nullptr);
  for (int number = 0; number < 400; ++number) {
    const XMPTextOut& text = texts[static_cast<std::size_t>(number)];
    EXPECT_EQ(std::string(text.text), std::to_string(number) + std::string(static_cast<std::size_t>(number * 7), 'x'));
    EXPECT_EQ(std::strlen(text.text), text.length);
  }
  EXPECT_EQ(methods_.unlockObject(object_, 0), nullptr);
  EXPECT_EQ(utils_.unlockUtils(0), nullptr);
  EXPECT_EQ(meta_.unlockStatics(0), nullptr);
}

TEST_F(Toolkit, APacketInPiecesComesInAsAWholeOrNotAtAll) {
  const std::string packet =
      "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
      "<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/' dc:format='new' dc:source='s'/>"
      "</rdf:RDF></x:xmpmeta>";
  ASSERT_EQ(methods_.setProperty(object_, kDC, "format", "old", 0), nullptr);
  ASSERT_EQ(methods_.setProperty(object_, kDC, "coverage", "c", 0), nullptr);
  const auto feed = [this](const std::string& piece, std::uint32_t options) {
    return methods_.parseFromBuffer(object_, piece.data(), static_cast<std::uint32_t>(piece.size()), options);
  };

  const std::size_t half = packet.find("<rdf:Description");
  // The first part, then garbage: all of it is forgotten, and the next packet starts afresh.
  EXPECT_EQ(feed(packet.substr(0, half), kXMPParseMoreBuffers), nullptr);
  EXPECT_NE(IdOf(feed("</wrong>", 0)), 0);
  EXPECT_EQ(feed(packet.substr(0, half), kXMPParseMoreBuffers), nullptr);
  EXPECT_NE(IdOf(feed("", 0)), 0);
  EXPECT_EQ(feed(packet.substr(0, half), kXMPParseMoreBuffers), nullptr);
  EXPECT_NE(IdOf(feed(packet.substr(half), 0x1000)), 0);
  EXPECT_EQ(ValueOf("format"), "old");

  EXPECT_EQ(feed(packet, kXMPParseMoreBuffers), nullptr);
  EXPECT_EQ(ValueOf("format"), "old");
  EXPECT_EQ(feed("", 0), nullptr);
  EXPECT_EQ(ValueOf("format") + ValueOf("source") + ValueOf("coverage"), "newsc");
  EXPECT_EQ(feed("x", kXMPParseMoreBuffers), nullptr) << "a parser that is left half-way is freed with its object";
}

TEST_F(Toolkit, TypedPropertiesReadBackAndRefuseOtherTypes) {
  std::uint8_t flag = 0;
  std::int32_t number = 0;
  std::int64_t wide = 0;
  double real = 0;
  XMPDateTime date{};
  EXPECT_EQ(methods_.setPropertyBool(object_, kXMP, "b", 7, 0), nullptr);
  EXPECT_EQ(methods_.setPropertyInt(object_, kXMP, "i", INT32_MIN, 0), nullptr);
  EXPECT_EQ(methods_.setPropertyInt64(object_, kXMP, "w", INT64_MAX, 0), nullptr);
  EXPECT_EQ(methods_.setPropertyFloat(object_, kXMP, "f", 0.1, 0), nullptr);
  const XMPDateTime set = {2004, 3, 15, 1, 2, 3, 1, 5, 30, 4000000};
  EXPECT_EQ(methods_.setPropertyDate(object_, kXMP, "d", &set, 0), nullptr);
  EXPECT_EQ(ValueOf("b", kXMP) + ValueOf("d", kXMP), "True2004-03-15T01:02:03.004+05:30");
  EXPECT_EQ(methods_.getPropertyBool(object_, kXMP, "b", &flag, nullptr, nullptr), nullptr);
  EXPECT_EQ(methods_.getPropertyInt(object_, kXMP, "i", &number, nullptr, nullptr), nullptr);
  EXPECT_EQ(methods_.getPropertyInt64(object_, kXMP, "w", &wide, nullptr, nullptr), nullptr);
  EXPECT_EQ(methods_.getPropertyFloat(object_, kXMP, "f", &real, nullptr, nullptr), nullptr);
  EXPECT_EQ(methods_.getPropertyDate(object_, kXMP, "d", &date, nullptr, nullptr), nullptr);
  EXPECT_EQ(flag, 1);
  EXPECT_EQ(number, INT32_MIN);
  EXPECT_EQ(wide, INT64_MAX);
  EXPECT_EQ(real, 0.1);
  EXPECT_EQ(std::memcmp(&date, &set, sizeof date), 0);

  EXPECT_EQ(IdOf(methods_.getPropertyInt(object_, kXMP, "w", &number, nullptr, nullptr)), 11);
  EXPECT_EQ(IdOf(methods_.getPropertyBool(object_, kXMP, "d", &flag, nullptr, nullptr)), 11);
  EXPECT_EQ(IdOf(methods_.getPropertyDate(object_, kXMP, "b", &date, nullptr, nullptr)), 12);
  EXPECT_EQ(methods_.appendArrayItem(object_, kXMP, "a", 0x400, "1", 0), nullptr);
  EXPECT_EQ(IdOf(methods_.getPropertyInt(object_, kXMP, "a", &number, nullptr, nullptr)), 10);
  const XMPDateTime never = {2004, 0, 15, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(IdOf(methods_.setPropertyDate(object_, kXMP, "never", &never, 0)), 12);
  EXPECT_EQ(ValueOf("never", kXMP), "(none)");
}

struct Visitor {
  std::string seen{};
  std::string passOver{};
  std::string endAt{};
  std::function<TALErrorRef()> change{};
  TALErrorRef error = nullptr;
};

std::uint32_t Visit(void* user, const XMPVisitedNode* node) {
  Visitor& visitor = *static_cast<Visitor*>(user);
  const std::string name = std::string(node->prefix) + ":" + node->name;
  visitor.seen += std::to_string(node->depth) + name + "=" + std::string(node->value.text, node->value.length) + " ";
  if (visitor.change && visitor.error == nullptr) visitor.error = visitor.change();
  if (name == visitor.endAt) return 2;
  return name == visitor.passOver ? 1 : 0;
}

TEST_F(Toolkit, VisitsGoInOrderAndCanBeCutShort) {
  EXPECT_EQ(methods_.setProperty(object_, kDC, "format", "f", 0), nullptr);
  EXPECT_EQ(methods_.setQualifier(object_, kDC, "format", kXMP, "q", "1", 0), nullptr);
  EXPECT_EQ(methods_.setQualifier(object_, kDC, "format", "http://www.w3.org/XML/1998/namespace", "lang", "de", 0),
            nullptr);
  EXPECT_EQ(methods_.setStructField(object_, kXMP, "s", kDC, "x", "2", 0), nullptr);
  EXPECT_EQ(methods_.appendArrayItem(object_, kXMP, "s/dc:list", 0x200, "3", 0), nullptr);
  EXPECT_EQ(methods_.setProperty(object_, kXMP, "t", "4", 0), nullptr);

  const auto visit = [this](Visitor visitor, const char* schema, const char* name) {
    EXPECT_EQ(methods_.visitNodes(object_, schema, name, Visit, &visitor), nullptr);
    return visitor.seen;
  };
  EXPECT_EQ(visit({}, nullptr, nullptr),
            "0dc:= 1dc:format=f 2xml:lang=de 2xmp:q=1 0xmp:= 1xmp:s= 2dc:x=2 2dc:list= 3dc:=3 1xmp:t=4 ");
  EXPECT_EQ(visit({.passOver = "xmp:s"}, kXMP, nullptr), "0xmp:= 1xmp:s= 1xmp:t=4 ");
  EXPECT_EQ(visit({.endAt = "dc:x"}, nullptr, nullptr),
            "0dc:= 1dc:format=f 2xml:lang=de 2xmp:q=1 0xmp:= 1xmp:s= 2dc:x=2 ");
  EXPECT_EQ(visit({}, kXMP, "s/dc:list[1]"), "1dc:=3 ");
  EXPECT_EQ(visit({}, kXMP, "s/dc:none"), "");

  // Changing the object under a visit is refused; asking it is not.
  Visitor changing;
  changing.change = [this] { return methods_.deleteProperty(object_, kXMP, "s"); };
  EXPECT_EQ(methods_.visitNodes(object_, nullptr, nullptr, Visit, &changing), nullptr);
  EXPECT_EQ(IdOf(changing.error), 3);
  Visitor asking;
  asking.change = [this] { return methods_.getProperty(object_, kXMP, "t", nullptr, nullptr, nullptr); };
  EXPECT_EQ(methods_.visitNodes(object_, nullptr, nullptr, Visit, &asking), nullptr);
  EXPECT_EQ(asking.error, nullptr);
  EXPECT_EQ(methods_.deleteProperty(object_, kXMP, "s"), nullptr);
}

TEST_F(Toolkit, ComposedPathsLeadToWhatTheyWereComposedOf) {
  const auto text = [](const XMPTextOut& out) { return std::string(out.text, out.length); };
  XMPTextOut path{};
  EXPECT_EQ(utils_.composeStructFieldPath(kDC, "s", kXMP, "f", &path), nullptr);
  EXPECT_EQ(text(path), "s/xmp:f");
  EXPECT_EQ(methods_.appendArrayItem(object_, kDC, path.text, 0x400, nullptr, kXMPPropIsStruct), nullptr);
  EXPECT_EQ(utils_.composeArrayItemPath(kDC, path.text, 1, &path), nullptr);
  EXPECT_EQ(methods_.setStructField(object_, kDC, path.text, kXMP, "name", "a\"b", 0), nullptr);
  EXPECT_EQ(utils_.composeFieldSelector(kDC, "s/xmp:f", kXMP, "name", "a\"b", &path), nullptr);
  EXPECT_EQ(methods_.setQualifier(object_, kDC, path.text, kXMP, "q", "1", 0), nullptr);
  EXPECT_EQ(utils_.composeQualifierPath(kDC, path.text, kXMP, "q", &path), nullptr);
  EXPECT_EQ(ValueOf(path.text), "1");
  EXPECT_EQ(utils_.composeLangSelector(kDC, "title", "EN-us", &path), nullptr);
  EXPECT_EQ(methods_.setProperty(object_, kDC, path.text, "hello", 0), nullptr);
  EXPECT_EQ(ValueOf("title[?xml:lang='en-US']"), "hello");
  EXPECT_EQ(utils_.getSchemaOfPath("dc:title[1]/?xml:lang", &path), nullptr);
  EXPECT_EQ(text(path), kDC);

  EXPECT_EQ(IdOf(utils_.composeArrayItemPath(kDC, "a", 0, &path)), 8);
  EXPECT_EQ(IdOf(utils_.composeLangSelector(kDC, "title", "e_n", &path)), 19);
  EXPECT_EQ(IdOf(utils_.composeStructFieldPath(kDC, "s", kXMP, "a b", &path)), 6);
  EXPECT_EQ(IdOf(utils_.composeStructFieldPath(kDC, "s", "http://unknown.example/", "a", &path)), 5);
  EXPECT_EQ(IdOf(utils_.getSchemaOfPath("title", &path)), 7);
  EXPECT_EQ(IdOf(utils_.getSchemaOfPath("dc:title[", &path)), 7);
  EXPECT_EQ(utils_.unlockUtils(0), nullptr);
}

TEST_F(Toolkit, PropertiesAreRemovedByNameBySchemaAndAll) {
  for (const char* schema : {kDC, kXMP}) {
    for (const char* name : {"a", "b"}) EXPECT_EQ(methods_.setProperty(object_, schema, name, "x", 0), nullptr);
  }
  const auto count = [this](const char* schema) {
    std::uint32_t number = 99;
    EXPECT_EQ(methods_.countProperties(object_, schema, &number), nullptr);
    return number;
  };
  EXPECT_EQ(utils_.removeProperties(object_, kDC, "a", 0), nullptr);
  EXPECT_EQ(count(kDC), 1u);
  EXPECT_EQ(utils_.removeProperties(object_, kXMP, "", 0), nullptr);
  EXPECT_EQ(count(kXMP), 0u);
  EXPECT_EQ(count(nullptr), 1u);
  EXPECT_EQ(utils_.removeProperties(object_, nullptr, nullptr, 0), nullptr);
  EXPECT_EQ(count(nullptr), 0u);
}

}  // namespace
