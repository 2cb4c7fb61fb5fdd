// The started toolkit as its clients see it: two entry points, procedures by name through the real broker, and an
// object. Nothing may be left behind in the end: no object, no container, no error.
#ifndef LXBRIDGE_TESTS_OUTSIDE_XMP_TOOLKIT_FIXTURE_H_
#define LXBRIDGE_TESTS_OUTSIDE_XMP_TOOLKIT_FIXTURE_H_

#include <gtest/gtest.h>

#include <cstring>

#include "clients/xmp/xmp_abi.h"
#include "tests/support/broker_procs.h"

inline constexpr char kDC[] = "http://purl.org/dc/elements/1.1/";
inline constexpr char kXMP[] = "http://ns.adobe.com/xap/1.0/";

class ToolkitFixture : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(VeltoXMPOrdinal1(lookup_, kXMPClientVersion, nullptr), 0u);
    meta_ = LookUpAll<XMPMetaStatics>(lookup_, kXMPMetaStaticInterface, kXMPMetaStaticNames);
    utils_ = LookUpAll<XMPUtilsStatics>(lookup_, kXMPUtilsStaticInterface, kXMPUtilsStaticNames);
    object_ = MakeObject();
  }
  void TearDown() override {
    Release(object_);
    EXPECT_EQ(broker_.containers.getLiveCount(), 0u);
    EXPECT_EQ(broker_.errors.getLiveCount(), 0u);
    VeltoXMPOrdinal2();
  }

  XMPObjectRef MakeObject() {
    XMPObjectRef object = nullptr;
    EXPECT_EQ(meta_.newWithBuffer(nullptr, 0, &object), nullptr);
    EXPECT_EQ(broker_.containers.addRef(object), nullptr);
    FindMethods(object, kXMPMetaMethodNames, methods_);
    FindMethods(object, kXMPMetaOptionalMethodNames, optional_);
    return object;
  }
  void Release(XMPObjectRef object) { EXPECT_EQ(broker_.containers.release(object), nullptr); }

  TALLookupProc lookup_ = TALOrdinal5();
  BrokerProcs broker_{lookup_};
  XMPMetaStatics meta_{};
  XMPUtilsStatics utils_{};
  XMPMetaMethods methods_{};
  XMPMetaOptionalMethods optional_{};
  XMPObjectRef object_ = nullptr;

 private:
  template <typename Methods, std::size_t kCount>
  void FindMethods(XMPObjectRef object, const TALProcName (&names)[kCount], Methods& methods) {
    TALProc slots[kCount];
    for (std::size_t at = 0; at < kCount; ++at) {
      const TALStringAtom shortName = broker_.strings.newStringAtom(names[at].shortName);
      const TALStringAtom qualifiedName = broker_.strings.newStringAtom(names[at].qualifiedName);
      EXPECT_EQ(broker_.containers.getMethod(&slots[at], object, shortName, qualifiedName, 0), nullptr);
      EXPECT_NE(slots[at], nullptr) << names[at].shortName;
      broker_.strings.deleteStringAtom(shortName);
      broker_.strings.deleteStringAtom(qualifiedName);
    }
    std::memcpy(&methods, slots, sizeof methods);
  }
};

#endif  // LXBRIDGE_TESTS_OUTSIDE_XMP_TOOLKIT_FIXTURE_H_
