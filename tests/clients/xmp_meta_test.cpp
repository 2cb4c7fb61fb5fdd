// The operations on XMP objects: what reaches the toolkit, what comes back, and what is raised.
#include "clients/xmp/xmp_meta.h"

#include <functional>

#include "clients/xmp/xmp_utils.h"
#include "tests/clients/xmp_client_fixture.h"

namespace {

using Calls = std::vector<std::string>;

class XMPMeta : public XMPClientTest {
 protected:
  void SetUp() override {
    XMPClientTest::SetUp();
    holder = std::make_unique<XMPMetaHolder>();
    toolkit.calls.clear();
  }
  void TearDown() override {
    holder.reset();
    XMPClientTest::TearDown();
  }

  std::unique_ptr<XMPMetaHolder> holder;
};

TEST_F(XMPMeta, OperationsReachTheToolkitAndItsErrorsAreRaised) {
  const std::uint8_t bytes[] = {'<', 'x', '>', 0};
  XMPDateTime date{};
  date.year = 2004;
  date.nanosecond = 9;
  std::string text;
  bool flag = false;
  const struct {
    std::string call;
    std::function<void()> operation;
  } kCases[] = {
      {"ParseFromBuffer(<x>, 3, 2)", [&] { holder->ParseFromBuffer(bytes, 3, kXMPParseMoreBuffers); }},
      {"ParseFromBuffer(<x>, 0, 0)", [&] { holder->ParseFromBuffer(bytes, -1, 0); }},
      {"SetProperty(s, n, t, 0)", [&] { holder->SetProperty("s", "n", "t"); }},
      {"SetProperty(s, n, null, 512)", [&] { holder->SetProperty("s", "n", nullptr, kXMPPropIsArray); }},
      {"SetProperty_Bool(s, n, 1, 0)", [&] { holder->SetProperty_Bool("s", "n", true); }},
      {"SetProperty_Bool(s, n, 0, 3)", [&] { holder->SetProperty_Bool("s", "n", false, 3); }},
      {"SetProperty_Date(s, n, 2004, 9, 0)", [&] { holder->SetProperty_Date("s", "n", date); }},
      {"AppendArrayItem(s, a, 1024, t, 0)", [&] { holder->AppendArrayItem("s", "a", kXMPPropIsOrdered, "t"); }},
      {"AppendArrayItem(s, a, 512, t, 2)", [&] { holder->AppendArrayItem("s", "a", kXMPPropIsArray, "t", 2); }},
      {"SetStructField(s, n, f, p, t, 0)", [&] { holder->SetStructField("s", "n", "f", "p", "t"); }},
      {"SetLocalizedText(s, n, , x-default, t, 0)", [&] { holder->SetLocalizedText("s", "n", "", "x-default", "t"); }},
      {"DeleteProperty(s, n)", [&] { holder->DeleteProperty("s", "n"); }},
      {"RemoveProperties(s, , 0)", [&] { holder->RemoveProperties("s", ""); }},
      {"DoesPropertyExist(s, n)", [&] { EXPECT_TRUE(holder->DoesPropertyExist("s", "n")); }},
      {"GetProperty(s, n)", [&] { EXPECT_TRUE(holder->GetProperty("s", "n", nullptr)); }},
      {"GetProperty_Bool(s, n)", [&] { EXPECT_TRUE(holder->GetProperty_Bool("s", "n", &flag)); }},
      {"GetArrayItem(s, a, -1)", [&] { EXPECT_TRUE(holder->GetArrayItem("s", "a", kXMPLastItem, nullptr)); }},
      {"CountArrayItems(s, a)", [&] { EXPECT_EQ(holder->CountArrayItems("s", "a"), 5u); }},
      {"SetTimeZone(2004)", [&] { XMPUtils::SetTimeZone(&date); }},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.call);
    toolkit.calls.clear();
    toolkit.failing.clear();
    EXPECT_EQ(Raised(c.operation), "nothing");
    EXPECT_EQ(toolkit.calls, Calls{c.call});
    toolkit.failing = c.call.substr(0, c.call.find('('));
    EXPECT_EQ(Raised(c.operation), "XMP: no " + toolkit.failing + " 7");
  }
  EXPECT_EQ(date.zoneHour, 5);
}

TEST_F(XMPMeta, TextIsCopiedBeforeTheObjectIsUnlocked) {
  std::string text;
  std::uint32_t options = 0;
  toolkit.text = std::string("a\0b", 3);
  EXPECT_TRUE(holder->GetProperty("s", "n", &text, &options));
  EXPECT_EQ(text, std::string("a\0b", 3));
  EXPECT_EQ(options, 5u);
  EXPECT_EQ(toolkit.calls, (Calls{"GetProperty(s, n)", "UnlockObject(0)"}));

  toolkit.text = "item";
  EXPECT_TRUE(holder->GetArrayItem("s", "a", 2, &text));
  EXPECT_EQ(text, "item");
  EXPECT_EQ(toolkit.calls.back(), "UnlockObject(0)");

  toolkit.text = "path";
  XMPUtils::ComposeStructFieldPath("s", "n", "f", "p", &text);
  EXPECT_EQ(text, "path");
  EXPECT_EQ(toolkit.calls.back(), "UnlockUtils(0)");

  toolkit.failing = "UnlockObject";
  EXPECT_EQ(Raised([&] { holder->GetProperty("s", "n", &text); }), "XMP: no UnlockObject 7");
  toolkit.failing = "ComposeStructFieldPath";
  toolkit.calls.clear();
  EXPECT_EQ(Raised([&] { XMPUtils::ComposeStructFieldPath("s", "n", "f", "p", &text); }),
            "XMP: no ComposeStructFieldPath 7");
  EXPECT_EQ(toolkit.calls, Calls{"ComposeStructFieldPath(s, n, f, p)"});
}

TEST_F(XMPMeta, WhatIsNotFoundChangesNothing) {
  toolkit.found = false;
  std::string text = "before";
  std::uint32_t options = 77;
  bool flag = false;
  EXPECT_FALSE(holder->DoesPropertyExist("s", "n"));
  EXPECT_FALSE(holder->GetProperty("s", "n", &text, &options));
  EXPECT_FALSE(holder->GetArrayItem("s", "a", 1, &text, &options));
  EXPECT_FALSE(holder->GetProperty_Bool("s", "n", &flag, &options));
  EXPECT_EQ(text, "before");
  EXPECT_EQ(options, 77u);
  EXPECT_FALSE(flag);
  EXPECT_EQ(toolkit.calls.size(), 4u);  // Nothing handed out, nothing to unlock.
}

TEST_F(XMPMeta, RemovingFromNoObjectIsALogicError) {
  EXPECT_EQ(Raised([] { XMPUtils::RemoveProperties(nullptr, "s", "n"); }), "XMP error");
  EXPECT_EQ(toolkit.calls, Calls{});
}

}  // namespace
