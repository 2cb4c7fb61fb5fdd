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
      XMPUtils::ComposeStructFieldPath(kDC, "s", kXMP, "f", &path);
    });
  }
};

TEST_F(XMPBinding, ObjectHoldsTheOneReferenceToItsToolkitObject) {
  {
    const CXMPMeta meta;
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
  ReplaceNow(kXMPMetaStaticInterface, "NewWithBuffer", Refuse);
  EXPECT_EQ(New(), "XMP: refused 7");
  ReplaceNow(
      kXMPMetaStaticInterface, "NewWithBuffer",
      +[](const char*, std::uint32_t, XMPObjectRef*) -> TALErrorRef { return nullptr; });
  EXPECT_EQ(New(), "XMP: CXMPMeta object is invalid 3");

  Straighten();
  ReplaceNow(kTALContainerInterface, "AddRef", RefusedRef);
  EXPECT_EQ(New(), "TAL: no reference 9");
  EXPECT_EQ(LiveObjects(), leaks.containers);

  Straighten();
  ReplaceNow(kTALContainerInterface, "GetMethod", Refuse);
  EXPECT_EQ(New(), ": invalid container 0");
  EXPECT_EQ(LiveObjects(), leaks.containers);
  StraightenNow();
  EXPECT_EQ(New(), "nothing");
  EXPECT_EQ(Raised([] { XMPMethodsOf(nullptr); }), "XMP: CXMPMeta object is invalid 3");
}

TEST_F(XMPBinding, ProceduresAreLookedUpOnce) {
  { const CXMPMeta meta; }
  EXPECT_EQ(ComposePath(), "nothing");
  const int before = LookupCount();
  XMPMetaHolder holder;
  for (int i = 0; i < 10; ++i) holder.SetProperty(kDC, "format", "t");
  const CXMPMeta meta;
  EXPECT_EQ(ComposePath(), "nothing");
  EXPECT_EQ(LookupCount(), before);

  ChangeUnregisterCount();
  for (int i = 0; i < 10; ++i) holder.SetProperty(kDC, "format", "t");
  // Container, string, and nothing of what was not used: tables are bound again when they are asked for.
  EXPECT_LE(LookupCount(), before + 16 + 8 + 4 + 4);
}

TEST_F(XMPBinding, ObjectThatOutlivesTheShutdownIsLeftAlone) {
  auto kept = std::make_unique<XMPMetaHolder>();
  auto lost = std::make_unique<XMPMetaHolder>();
  const XMPObjectRef lostObject = lost->Meta()->Object();
  TAL_T_NMT::ShutDownBrokerClient();
  EXPECT_EQ(Raised([&] { kept->SetProperty(kDC, "format", "t"); }), kMetaFailure);
  EXPECT_EQ(Raised([&] { kept->RemoveProperties(kDC, "format"); }), kUtilsFailure);
  lost.reset();
  EXPECT_EQ(TheBroker().containers.isValid(lostObject), 1);

  // With the next start it can be used and given back again.
  ASSERT_TRUE(TAL_T_NMT::StartBrokerClient(BentLookup));
  EXPECT_EQ(Raised([&] { kept->SetProperty(kDC, "format", "t"); }), "nothing");
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
