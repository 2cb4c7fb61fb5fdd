// Making and giving back XMP objects, and binding the toolkit's procedures: what happens when any of it fails.
#include <memory>
#include <optional>

#include "clients/xmp/xmp_meta.h"
#include "clients/xmp/xmp_utils.h"
#include "tests/clients/xmp_client_fixture.h"

namespace {

constexpr char kMetaFailure[] = "ZXMPMeta Client initialization failure";
constexpr char kUtilsFailure[] = "ZXMPUtils Client initialization failure";

std::uint32_t LiveObjects() {
  return TheBroker().containers.getLiveCount();
}

TALErrorRef RefusedRef(TALContainerRef) {
  return TheBroker().errors.newError("no reference", "TAL", 9);
}

class XMPBinding : public XMPClientTest {
 protected:
  static std::string New() {
    return Raised([] { CXMPMeta meta; });
  }
  static std::string ComposePath() {
    return Raised([] {
      std::string path;
      XMPUtils::ComposeStructFieldPath("s", "n", "f", "p", &path);
    });
  }
  void Restart() {
    TAL_T_NMT::ShutDownBrokerClient();
    ASSERT_TRUE(TAL_T_NMT::StartBrokerClient(BentLookup));
  }
};

TEST_F(XMPBinding, ObjectHoldsTheOneReferenceToItsToolkitObject) {
  {
    const CXMPMeta meta;
    EXPECT_EQ(toolkit.calls, std::vector<std::string>{"NewWithBuffer(null, 0)"});
    std::uint32_t references = 0;
    EXPECT_EQ(TheBroker().containers.getRefCount(meta.Object(), &references), nullptr);
    EXPECT_EQ(references, 1u);

    // The layout that hosts read: behind the virtual table the reference, then the methods.
    void* fields[3];
    std::memcpy(fields, static_cast<const void*>(&meta), sizeof fields);
    EXPECT_EQ(fields[1], meta.Object());
    EXPECT_EQ(fields[2], &meta.Methods());
  }
  EXPECT_EQ(LiveObjects(), leaks.containers);
}

TEST_F(XMPBinding, ObjectThatCannotBeMadeIsNotLeft) {
  toolkit.failing = "NewWithBuffer";
  EXPECT_EQ(New(), "XMP: no NewWithBuffer 7");
  toolkit.failing.clear();
  toolkit.givesNoObject = true;
  EXPECT_EQ(New(), "XMP: CXMPMeta object is invalid 3");
  toolkit.givesNoObject = false;

  Replace(kTALContainerInterface, "AddRef", RefusedRef);
  Restart();
  EXPECT_EQ(New(), "TAL: no reference 9");
  EXPECT_EQ(LiveObjects(), leaks.containers);
  Straighten();
  Restart();

  toolkit.Unregister();
  toolkit.withoutMethods = true;
  toolkit.Register();
  EXPECT_EQ(New(), ": invalid container 0");
  EXPECT_EQ(LiveObjects(), leaks.containers);
  toolkit.Unregister();
  toolkit.withoutMethods = false;
  toolkit.Register();
  EXPECT_EQ(New(), "nothing");
  EXPECT_EQ(Raised([] { XMPMethodsOf(nullptr); }), "XMP: CXMPMeta object is invalid 3");
}

TEST_F(XMPBinding, EachMissingProcedureIsABrokerError) {
  const auto expectAll = [&](const char* interfaceName, const auto& names, auto use) {
    for (const TALProcName& name : names) {
      SCOPED_TRACE(name.qualifiedName);
      Hide(interfaceName, name.shortName);
      ChangeUnregisterCount();
      EXPECT_EQ(use(), "TAL:  0");
      Straighten();
    }
    EXPECT_EQ(use(), "nothing");
  };
  expectAll(kXMPMetaStaticInterface, kXMPMetaStaticNames, New);
  expectAll(kXMPUtilsStaticInterface, kXMPUtilsStaticNames, ComposePath);
}

TEST_F(XMPBinding, WithoutAStartedBrokerClientNothingIsBound) {
  // Never started, stopped, and a start-up that ended early although the toolkit's procedures could be found.
  TAL_T_NMT::ShutDownBrokerClient();
  EXPECT_EQ(New(), kMetaFailure);
  EXPECT_EQ(ComposePath(), kUtilsFailure);
  EXPECT_EQ(Raised([] { XMPMethodsOf(nullptr); }), kMetaFailure);
  for (const char* interfaceName : {kTALErrorInterface, kTALStringInterface, kTALMemoryInterface}) {
    SCOPED_TRACE(interfaceName);
    for (const char* shortName : {"GetId", "GetCString", "Free"}) Hide(interfaceName, shortName);
    Raised([] { EXPECT_FALSE(TAL_T_NMT::StartBrokerClient(BentLookup)); });
    EXPECT_EQ(New(), kMetaFailure);
    EXPECT_EQ(ComposePath(), kUtilsFailure);
    Straighten();
  }
  EXPECT_EQ(toolkit.calls.size(), 0u);
}

TEST_F(XMPBinding, ProceduresAreLookedUpOnce) {
  { const CXMPMeta meta; }
  EXPECT_EQ(ComposePath(), "nothing");
  const int before = LookupCount();
  XMPMetaHolder holder;
  for (int i = 0; i < 10; ++i) holder.SetProperty("s", "n", "t");
  const CXMPMeta meta;
  EXPECT_EQ(ComposePath(), "nothing");
  EXPECT_EQ(LookupCount(), before);

  ChangeUnregisterCount();
  for (int i = 0; i < 10; ++i) holder.SetProperty("s", "n", "t");
  // Container, string, and nothing of what was not used: tables are bound again when they are asked for.
  EXPECT_LE(LookupCount(), before + 16 + 8 + 4 + 4);
}

TEST_F(XMPBinding, ToolkitThatComesBackIsBoundAgain) {
  EXPECT_EQ(New(), "nothing");
  toolkit.Unregister();
  EXPECT_EQ(New(), "TAL:  0");
  toolkit.Register();
  EXPECT_EQ(New(), "nothing");
  XMPMetaHolder holder;
  EXPECT_EQ(Raised([&] { holder.DeleteProperty("s", "n"); }), "nothing");
}

TEST_F(XMPBinding, ObjectThatOutlivesTheShutdownIsLeftAlone) {
  auto kept = std::make_unique<XMPMetaHolder>();
  auto lost = std::make_unique<XMPMetaHolder>();
  const XMPObjectRef lostObject = lost->Meta()->Object();
  TAL_T_NMT::ShutDownBrokerClient();
  EXPECT_EQ(Raised([&] { kept->SetProperty("s", "n", "t"); }), kMetaFailure);
  EXPECT_EQ(Raised([&] { kept->RemoveProperties("s", "n"); }), kUtilsFailure);
  lost.reset();
  EXPECT_EQ(TheBroker().containers.isValid(lostObject), 1);

  // With the next start it can be used and given back again.
  ASSERT_TRUE(TAL_T_NMT::StartBrokerClient(BentLookup));
  EXPECT_EQ(Raised([&] { kept->SetProperty("s", "n", "t"); }), "nothing");
  kept.reset();
  EXPECT_EQ(TheBroker().containers.release(lostObject), nullptr);
}

TEST_F(XMPBinding, DestructionRaisesNothingWhenTheBrokerRefuses) {
  auto meta = std::make_unique<CXMPMeta>();
  const XMPObjectRef object = meta->Object();
  Replace(kTALContainerInterface, "Release", RefusedRef);
  ChangeUnregisterCount();
  meta.reset();
  EXPECT_EQ(TheBroker().containers.release(object), nullptr);

  Straighten();
  ChangeUnregisterCount();
  meta = std::make_unique<CXMPMeta>();
  const XMPObjectRef second = meta->Object();
  Hide(kTALContainerInterface, "Release");
  ChangeUnregisterCount();
  meta.reset();
  EXPECT_EQ(TheBroker().containers.release(second), nullptr);
}

}  // namespace
