// The operations on XMP objects: errors that are raised, texts that are copied, answers that are not there. What each
// operation does is seen where the conversion uses it.
#include "clients/xmp/xmp_meta.h"

#include <functional>
#include <memory>

#include "clients/xmp/xmp_utils.h"
#include "tests/clients/xmp_client_fixture.h"

namespace {

// The methods of toolkit objects, of which that one, or every one, refuses.
std::string refusing;

TALErrorRef GetRefusingMethod(TALProc* result, TALContainerRef container, TALStringAtom shortName,
                              TALStringAtom qualifiedName, std::uint8_t notRequired) {
  const TALErrorRef error = TheBroker().containers.getMethod(result, container, shortName, qualifiedName, notRequired);
  const bool refuses = refusing == "all" || refusing == TheBroker().strings.getCString(shortName);
  if (error == nullptr && refuses) *result = reinterpret_cast<TALProc>(Refuse);
  return error;
}

class XMPMeta : public XMPClientTest {
 protected:
  void SetUp() override {
    XMPClientTest::SetUp();
    holder = std::make_unique<XMPMetaHolder>();
    holder->SetProperty(kDC, "format", "image/jpeg");
    holder->AppendArrayItem(kDC, "creator", kXMPPropIsOrdered, "Ada");
  }
  void TearDown() override {
    holder.reset();
    XMPClientTest::TearDown();
  }
  static void RefuseMethod(const char* shortName) {
    refusing = shortName;
    ReplaceNow(kTALContainerInterface, "GetMethod", GetRefusingMethod);
  }

  std::unique_ptr<XMPMetaHolder> holder;
};

TEST_F(XMPMeta, EveryOperationRaisesTheToolkitsError) {
  const std::uint8_t bytes[] = {'<', 'x', '>', 0};
  XMPDateTime date{};
  std::string text;
  bool flag = false;
  const std::function<void()> operations[] = {
      [&] { holder->ParseFromBuffer(bytes, 3, 0); },
      [&] { holder->SetProperty("s", "n", "t"); },
      [&] { holder->SetProperty_Bool("s", "n", true); },
      [&] { holder->SetProperty_Date("s", "n", date); },
      [&] { holder->AppendArrayItem("s", "a", kXMPPropIsOrdered, "t"); },
      [&] { holder->SetStructField("s", "n", "f", "p", "t"); },
      [&] { holder->SetLocalizedText("s", "n", "", "x-default", "t"); },
      [&] { holder->DeleteProperty("s", "n"); },
      [&] { holder->RemoveProperties("s", ""); },
      [&] { (void)holder->DoesPropertyExist("s", "n"); },
      [&] { (void)holder->GetProperty("s", "n", &text); },
      [&] { (void)holder->GetProperty_Bool("s", "n", &flag); },
      [&] { (void)holder->GetArrayItem("s", "a", kXMPLastItem, &text); },
      [&] { (void)holder->CountArrayItems("s", "a"); },
      [&] { XMPUtils::SetTimeZone(&date); },
      [&] { XMPUtils::ComposeStructFieldPath("s", "n", "f", "p", &text); },
  };
  for (const char* name : {"RemoveProperties", "SetTimeZone", "ComposeStructFieldPath"}) {
    Replace(kXMPUtilsStaticInterface, name, Refuse);
  }
  RefuseMethod("all");
  for (std::size_t at = 0; at < std::size(operations); ++at) {
    EXPECT_EQ(Raised(operations[at]), "XMP: refused 7") << "operation " << at;
  }
  EXPECT_EQ(Raised([] { XMPUtils::RemoveProperties(nullptr, "s", "n"); }), "XMP error");
}

TEST_F(XMPMeta, TextsAreCopiedAndTheirOwnerIsUnlocked) {
  std::string text;
  std::uint32_t options = 0;
  EXPECT_TRUE(holder->GetProperty(kDC, "creator", nullptr, &options));
  EXPECT_EQ(options & kXMPPropIsOrdered, std::uint32_t{kXMPPropIsOrdered});
  EXPECT_TRUE(holder->GetProperty(kDC, "format", &text, &options));
  EXPECT_EQ(text, "image/jpeg");
  EXPECT_EQ(options, 0u);
  EXPECT_TRUE(holder->GetArrayItem(kDC, "creator", kXMPLastItem, &text));
  EXPECT_EQ(text, "Ada");
  XMPUtils::ComposeStructFieldPath(kDC, "s", kXMP, "f", &text);
  EXPECT_EQ(text, "s/xmp:f");

  RefuseMethod("UnlockObject");
  EXPECT_EQ(Raised([&] { holder->GetProperty(kDC, "format", &text); }), "XMP: refused 7");
  EXPECT_EQ(Raised([&] { holder->GetArrayItem(kDC, "creator", 1, &text); }), "XMP: refused 7");
  ReplaceNow(kXMPUtilsStaticInterface, "UnlockUtils", Refuse);
  EXPECT_EQ(Raised([&] { XMPUtils::ComposeStructFieldPath(kDC, "s", kXMP, "f", &text); }), "XMP: refused 7");
}

TEST_F(XMPMeta, WhatIsNotFoundChangesNothing) {
  RefuseMethod("UnlockObject");  // Nothing is handed out, so there is nothing to unlock.
  std::string text = "before";
  std::uint32_t options = 77;
  bool flag = true;
  EXPECT_FALSE(holder->DoesPropertyExist(kDC, "n"));
  EXPECT_FALSE(holder->GetProperty(kDC, "n", &text, &options));
  EXPECT_FALSE(holder->GetArrayItem(kDC, "creator", 2, &text, &options));
  EXPECT_FALSE(holder->GetProperty_Bool(kDC, "n", &flag, &options));
  EXPECT_EQ(text, "before");
  EXPECT_EQ(options, 77u);
  EXPECT_TRUE(flag);
  EXPECT_EQ(Raised([&] { holder->ParseFromBuffer(nullptr, -1, 0); }),
            Raised([&] { holder->ParseFromBuffer(nullptr, 0, 0); }));
}

}  // namespace
