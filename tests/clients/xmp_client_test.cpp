// XMP objects as the library holds them: their layout, their one reference, texts that are copied.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_meta.h"
#include "clients/xmp/xmp_utils.h"
#include "tests/api/other_libraries.h"

namespace lxtest {
namespace {

constexpr char kDC[] = "http://purl.org/dc/elements/1.1/";
constexpr char kXMP[] = "http://ns.adobe.com/xap/1.0/";

class XMPClient : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartXMPClient(TALOrdinal5()));
    ASSERT_TRUE(TAL_T_NMT::StartBrokerClient(TALOrdinal5()));
  }
  void TearDown() override {
    RestoreAll();
    TAL_T_NMT::ShutDownBrokerClient();
    StopXMPClient();
    EXPECT_EQ(CountAlive(), before_);
  }

  const Alive before_ = CountAlive();
};

TEST_F(XMPClient, ObjectHasTheLayoutThatHostsReadAndTheOneReferenceToItsToolkitObject) {
  const CXMPMeta meta;
  std::uint32_t references = 0;
  EXPECT_EQ(RealBroker().containers.getRefCount(meta.Object(), &references), nullptr);
  EXPECT_EQ(references, 1u);
  void* fields[3];  // The virtual table, the reference, the methods.
  std::memcpy(fields, static_cast<const void*>(&meta), sizeof fields);
  EXPECT_EQ(fields[1], meta.Object());
  EXPECT_EQ(fields[2], &meta.Methods());
}

TEST_F(XMPClient, ProceduresAreLookedUpOnceAndAgainWhenALibraryLeavesTheBroker) {
  XMPMetaHolder holder;
  std::string path;
  const auto use = [&] {
    holder.SetProperty(kDC, "format", "t");
    XMPUtils::ComposeStructFieldPath(kDC, "s", kXMP, "f", &path);
    return LookupCount();
  };
  const int before = use();
  EXPECT_EQ(use(), before);
  EXPECT_EQ(path, "s/xmp:f");
  ChangeUnregisterCount();
  EXPECT_GT(use(), before);
  EXPECT_EQ(use(), LookupCount());
}

TEST_F(XMPClient, ObjectThatOutlivesTheShutdownIsLeftAlone) {
  auto kept = std::make_unique<XMPMetaHolder>();
  auto lost = std::make_unique<XMPMetaHolder>();
  const XMPObjectRef lostObject = lost->Meta()->Object();
  TAL_T_NMT::ShutDownBrokerClient();
  EXPECT_THROW(kept->SetProperty(kDC, "format", "t"), std::logic_error);
  EXPECT_THROW(kept->RemoveProperties(kDC, "format"), std::logic_error);
  lost.reset();
  EXPECT_EQ(RealBroker().containers.isValid(lostObject), 1);

  // With the next start it can be used and given back again.
  ASSERT_TRUE(TAL_T_NMT::StartBrokerClient(TALOrdinal5()));
  kept->SetProperty(kDC, "format", "t");
  kept.reset();
  EXPECT_EQ(RealBroker().containers.release(lostObject), nullptr);
}

TEST_F(XMPClient, DestructionRaisesNothingWhenTheBrokerHasNoContainersAnyMore) {
  auto meta = std::make_unique<CXMPMeta>();
  const XMPObjectRef object = meta->Object();
  HideInterface(kTALContainerInterface);
  ChangeUnregisterCount();
  meta.reset();
  EXPECT_EQ(RealBroker().containers.release(object), nullptr);
}

TEST_F(XMPClient, MissingPropertiesChangeNothingAndNeedNoUnlocking) {
  XMPMetaHolder holder;
  holder.AppendArrayItem(kDC, "creator", kXMPPropIsOrdered, "Ada");
  std::string text = "before";
  std::uint32_t options = 77;
  bool flag = true;
  Fail("UnlockObject");
  ChangeUnregisterCount();
  EXPECT_FALSE(holder.DoesPropertyExist(kDC, "n"));
  EXPECT_FALSE(holder.GetProperty(kDC, "n", &text, &options));
  EXPECT_FALSE(holder.GetArrayItem(kDC, "creator", 2, &text, &options));
  EXPECT_FALSE(holder.GetProperty_Bool(kDC, "n", &flag, &options));
  EXPECT_EQ(text, "before");
  EXPECT_EQ(options, 77u);
  EXPECT_TRUE(flag);
  EXPECT_THROW(holder.GetArrayItem(kDC, "creator", kXMPLastItem, &text, &options), TAL_T_NMT::CTALError);
  EXPECT_EQ(text, "Ada");
}

}  // namespace
}  // namespace lxtest
