// The toolkit as its clients see it: starts and stops, every procedure's refusals, error references.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/outside/xmp/toolkit_fixture.h"

namespace {

class Toolkit : public ToolkitFixture {
 protected:
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

TEST_F(Toolkit, WhatCannotExistIsNotThereAndOnlySettingItIsAnError) {
  for (const char* name : {" 9214", "", "a[0]"}) {
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

// --- what is no more than a way to the toolkit's parts: the right one, with its arguments in their order -------------

template <typename Value, typename Call>
Value Got(Call call) {
  Value value{};
  EXPECT_EQ(call(&value), nullptr);
  return value;
}

template <typename Call>
std::string GotText(Call call) {
  const XMPTextOut text = Got<XMPTextOut>(call);
  return std::string(text.text, text.length);
}

constexpr XMPDateTime kNoonInIndia = {2004, 3, 15, 12, 0, 0, 1, 5, 30, 0};

TEST_F(Toolkit, UtilitiesGiveTextsOfWhatTheyAreGiven) {
  using Call = std::function<TALErrorRef(XMPTextOut*)>;
  const std::pair<Call, std::string> cases[] = {
      {[&](auto* out) { return utils_.convertFromBool(2, out); }, "True"},
      {[&](auto* out) { return utils_.convertFromInt(-5, out); }, "-5"},
      {[&](auto* out) { return utils_.convertFromInt64(INT64_MIN, out); }, "-9223372036854775808"},
      {[&](auto* out) { return utils_.convertFromFloat(0.25, out); }, "0.25"},
      {[&](auto* out) { return utils_.convertFromDate(&kNoonInIndia, out); }, "2004-03-15T12:00:00+05:30"},
      {[&](auto* out) { return utils_.encodeToBase64("foobar", 4, out); }, "Zm9vYg=="},
      {[&](auto* out) { return utils_.decodeFromBase64("Zm9vYg==xx", 8, out); }, "foob"},
      {[&](auto* out) { return utils_.normalizeLanguage("EN-us", out); }, "en-US"},
      {[&](auto* out) { return utils_.normalizePath(kDC, "dc:title[?xml:lang='DE-ch']", out); },
       "title[?xml:lang=\"de-CH\"]"},
      {[&](auto* out) { return utils_.repairText("\xE9\x01x", 2, out); }, "\xC3\xA9 "},
      {[&](auto* out) { return utils_.escapeXML("<\xE9&x", 3, out); }, "&lt;\xC3\xA9&amp;"},
      {[&](auto* out) { return utils_.convertFromUTF16("A\0B", 2, 0, out); }, "A"},
      {[&](auto* out) { return utils_.convertFromUTF16("\0A\0", 2, 1, out); }, "A"},
      {[&](auto* out) { return utils_.convertFromUTF32("A\0\0\0B", 4, 0, out); }, "A"},
      {[&](auto* out) { return utils_.convertFromUTF32("\0\0\0A\0", 4, 1, out); }, "A"},
      {[&](auto* out) { return meta_.getErrorText(0, out); }, "unknown error"},
      {[&](auto* out) { return meta_.getErrorText(21, out); }, "unknown error"},
  };
  for (const auto& [call, text] : cases) EXPECT_EQ(GotText(call), text);
  EXPECT_EQ(IdOf(utils_.normalizeLanguage("e_n", nullptr)), 19);
  EXPECT_EQ(IdOf(utils_.getSchemaOfPath("nobody:a", nullptr)), 5);
  std::set<std::string> errorTexts;
  for (std::int32_t id = 1; id <= 20; ++id) {
    errorTexts.insert(GotText([&](auto* out) { return meta_.getErrorText(id, out); }));
  }
  EXPECT_EQ(errorTexts.size(), 20u);
}

TEST_F(Toolkit, UtilitiesAnswerAndReadValues) {
  using Call = std::function<TALErrorRef(std::uint8_t*)>;
  const std::pair<Call, int> answers[] = {
      {[&](auto* out) { return utils_.convertToBool("true", out); }, 1},
      {[&](auto* out) { return utils_.isXMLName("a:b", out); }, 0},
      {[&](auto* out) { return utils_.isXMLName("a", out); }, 1},
      {[&](auto* out) { return utils_.isLanguageTag("a_b", out); }, 0},
      {[&](auto* out) { return utils_.isLanguageTag("en-1994", out); }, 1},
      {[&](auto* out) { return utils_.isUTF8("a\xE9", 1, out); }, 1},
      {[&](auto* out) { return utils_.isUTF8("a\xE9", 2, out); }, 0},
      {[&](auto* out) { return utils_.isKnownSchema(kXMP, out); }, 1},
      {[&](auto* out) { return utils_.isKnownSchema("http://unknown.example/", out); }, 0},
      {[&](auto* out) { return meta_.isPacket("<rdf:RDF>", 9, out); }, 1},
      {[&](auto* out) { return meta_.isPacket("<svg>", 5, out); }, 0},
  };
  for (std::size_t at = 0; at < std::size(answers); ++at) {
    EXPECT_EQ(Got<std::uint8_t>(answers[at].first), answers[at].second) << at;
  }
  EXPECT_EQ(Got<std::int32_t>([&](auto* out) { return utils_.convertToInt(" -7", out); }), -7);
  EXPECT_EQ(Got<std::int64_t>([&](auto* out) { return utils_.convertToInt64("99999999999", out); }), 99999999999);
  EXPECT_EQ(Got<double>([&](auto* out) { return utils_.convertToFloat("1e2", out); }), 100.0);
  EXPECT_EQ(Got<std::uint32_t>([&](auto* out) { return utils_.isArrayForm(kDC, "creator", out); }),
            std::uint32_t{kXMPPropIsArray | kXMPPropIsOrdered});
  EXPECT_EQ(Got<std::uint32_t>([&](auto* out) { return utils_.isArrayForm("http://unknown.example/", "a", out); }), 0u);

  auto date = Got<XMPDateTime>([&](auto* out) { return utils_.convertToDate("2004-03-15T12:00+05:30", out); });
  EXPECT_EQ(std::memcmp(&date, &kNoonInIndia, sizeof date), 0);
  EXPECT_EQ(utils_.convertToUTCTime(&date), nullptr);
  EXPECT_EQ(date.hour * 60 + date.minute, 6 * 60 + 30);
  EXPECT_EQ(date.zoneSign, 0);
  EXPECT_EQ(utils_.convertToLocalTime(&date), nullptr);  // Tests run in India.
  EXPECT_EQ(std::memcmp(&date, &kNoonInIndia, sizeof date), 0);
  const auto now = Got<XMPDateTime>([&](auto* out) { return utils_.currentDateTime(out); });
  EXPECT_EQ(Got<std::int32_t>([&](auto* out) { return utils_.compareDateTime(&date, &now, out); }), -1);
  EXPECT_EQ(now.zoneHour * 60 + now.zoneMinute, 5 * 60 + 30);
}

TEST_F(Toolkit, ItemsFieldsAndQualifiersAreReachedOneByOne) {
  for (const char* item : {"a", "c", "d"})
    EXPECT_EQ(methods_.appendArrayItem(object_, kDC, "l", 0x400, item, 0), nullptr);
  EXPECT_EQ(methods_.insertArrayItem(object_, kDC, "l", 2, "b", 0), nullptr);
  EXPECT_EQ(methods_.setArrayItem(object_, kDC, "l", 3, "C", 0), nullptr);
  EXPECT_EQ(methods_.deleteArrayItem(object_, kDC, "l", 4), nullptr);
  EXPECT_EQ(GotText([&](auto* out) { return utils_.catenateArrayItems(object_, kDC, "l", "|", "\"", out); }), "a|b|C");
  EXPECT_EQ(GotText([&](auto* out) { return utils_.catenateArrayItems(object_, kDC, "none", "|", "\"", out); }), "");
  EXPECT_EQ(IdOf(utils_.catenateArrayItems(object_, kDC, "l", "|", "abc", nullptr)), 4);

  EXPECT_EQ(methods_.setStructField(object_, kDC, "s", kXMP, "f", "1", 0), nullptr);
  EXPECT_EQ(methods_.setQualifier(object_, kDC, "l", kXMP, "f", "2", 0), nullptr);
  const auto exists = [&](auto method, const char* name, const char* part) {
    return Got<std::uint8_t>([&](auto* out) { return method(object_, kDC, name, kXMP, part, out); });
  };
  const auto value = [&](auto method, const char* name) {
    return GotText([&](auto* out) { return method(object_, kDC, name, kXMP, "f", out, nullptr, nullptr); });
  };
  EXPECT_EQ(exists(methods_.doesStructFieldExist, "s", "f"), 1);
  EXPECT_EQ(exists(methods_.doesStructFieldExist, "l", "f"), 0);
  EXPECT_EQ(exists(methods_.doesQualifierExist, "l", "f"), 1);
  EXPECT_EQ(exists(methods_.doesQualifierExist, "s", "f"), 0);
  EXPECT_EQ(value(methods_.getStructField, "s") + value(methods_.getQualifier, "l"), "12");
  EXPECT_EQ(methods_.deleteStructField(object_, kDC, "s", kXMP, "f"), nullptr);
  EXPECT_EQ(methods_.deleteQualifier(object_, kDC, "l", kXMP, "f"), nullptr);
  EXPECT_EQ(exists(methods_.doesStructFieldExist, "s", "f") + exists(methods_.doesQualifierExist, "l", "f"), 0);

  EXPECT_EQ(methods_.setLocalizedText(object_, kDC, "t", "", "de-AT", "Jause", 0), nullptr);
  XMPTextOut language{};
  EXPECT_EQ(GotText([&](auto* out) {
              return methods_.getLocalizedText(object_, kDC, "t", "de", "de-DE", &language, out, nullptr, nullptr);
            }),
            "Jause");
  EXPECT_EQ(std::string(language.text, language.length), "de-AT");
  EXPECT_EQ(methods_.deleteLocalizedText(object_, kDC, "t", "de", "de-AT"), nullptr);
  EXPECT_EQ(ValueOf("t[1]"), "(none)");
}

TEST_F(Toolkit, ObjectsAreNamedSortedComparedAndEmptied) {
  EXPECT_EQ(methods_.setObjectName(object_, "uuid:1"), nullptr);
  EXPECT_EQ(GotText([&](auto* out) { return methods_.getObjectName(object_, out); }), "uuid:1");
  const XMPObjectRef other = MakeObject();
  for (const char* name : {"b", "a"}) EXPECT_EQ(methods_.setProperty(object_, kDC, name, name, 0), nullptr);
  EXPECT_EQ(methods_.setProperty(other, kDC, "a", "a", 0), nullptr);
  EXPECT_EQ(utils_.sortObject(object_), nullptr);
  const std::string packet = Packet(object_);
  EXPECT_LT(packet.find("dc:a"), packet.find("dc:b"));
  const auto equal = [&](const char* name) {
    return Got<std::uint8_t>([&](auto* out) { return utils_.compareSubtrees(object_, other, kDC, name, out); });
  };
  EXPECT_EQ(equal("a"), 1);
  EXPECT_EQ(equal("b"), 0);
  EXPECT_EQ(equal("c"), 1);  // In neither.
  EXPECT_EQ(methods_.setProperty(object_, kXMP, "a", "x", 0), nullptr);
  const auto left = [&](const char* schema, const char* name) {
    EXPECT_EQ(utils_.removeProperties(object_, schema, name, 0), nullptr);
    return Got<std::uint32_t>([&](auto* out) { return methods_.countProperties(object_, nullptr, out); });
  };
  EXPECT_EQ(left(kDC, "a"), 2u);
  EXPECT_EQ(left(kXMP, ""), 1u);
  EXPECT_EQ(left(nullptr, nullptr), 0u);
  Release(other);
}

TEST_F(Toolkit, TellsOfItselfAndOfItsNamespaces) {
  EXPECT_NE(Got<std::uint32_t>([&](auto* out) { return meta_.getVersion(out); }), 0u);
  EXPECT_NE(GotText([&](auto* out) { return meta_.getVersionText(out); }), "");
  const auto limit = Got<std::uint32_t>([&](auto* out) { return meta_.getDepthLimit(out); });
  std::string path = "a";
  for (std::uint32_t depth = 1; depth < limit; ++depth) path += "/xmp:a";
  EXPECT_EQ(IdOf(methods_.setProperty(object_, kDC, path.c_str(), "x", 0)), 0);
  EXPECT_EQ(IdOf(methods_.setProperty(object_, kDC, (path + "/xmp:a").c_str(), "x", 0)), 13);
  TALKindRef kind = nullptr;
  EXPECT_EQ(broker_.containers.getKind(object_, &kind), nullptr);
  EXPECT_EQ(Got<TALKindRef>([&](auto* out) { return meta_.getObjectKind(out); }), kind);

  EXPECT_EQ(meta_.registerNamespace("http://mine.example/", "mine", nullptr), nullptr);
  const auto count = Got<std::uint32_t>([&](auto* out) { return meta_.countNamespaces(out); });
  std::map<std::string, std::string> prefixes;
  for (std::uint32_t at = 0; at < count; ++at) {
    XMPTextOut uri{}, prefix{};
    EXPECT_EQ(meta_.getNamespaceAt(at, &uri, &prefix), nullptr);
    prefixes.emplace(uri.text, prefix.text);
  }
  EXPECT_EQ(prefixes.size(), count);
  EXPECT_EQ(prefixes["http://mine.example/"], "mine");
  EXPECT_EQ(IdOf(meta_.getNamespaceAt(count, nullptr, nullptr)), 8);
  EXPECT_EQ(meta_.deleteNamespace("http://mine.example/"), nullptr);
  EXPECT_EQ(Got<std::uint32_t>([&](auto* out) { return meta_.countNamespaces(out); }), count - 1);
  EXPECT_EQ(IdOf(meta_.deleteNamespace(kDC)), 18);
}

}  // namespace
