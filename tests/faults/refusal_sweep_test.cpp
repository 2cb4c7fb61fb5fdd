// Each procedure of the broker and the toolkit in turn is missing, or refuses at its nth call, through the whole
// pipeline. The result is an import, or one of the exceptions that the library names; nothing leaks; a later import
// works.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/faults/whole_pipeline.h"
#include "xmpconv/conversion.h"
#include "xmpconv/iptc.h"

namespace lxtest {
namespace {

// The call that fails. One at a time.
struct {
  std::string name;  // Short name; "" none.
  int nth = 0;       // 0: the procedure is missing.
  int calls = 0;
} fault;

bool HasFailed() {
  return fault.calls >= fault.nth;
}

// A refusal as the procedure's contract has it.
template <typename Result>
Result Refusal() {
  if constexpr (std::is_same_v<Result, TALErrorRef>) {
    return RealBroker().errors.newError("refused", "test", 42);
  } else {
    return Result();
  }
}

// Stands in for a procedure: counts, and refuses the nth call.
template <auto kMember>
struct Counted;
template <typename Procs, typename Result, typename... Args, Result (*Procs::*kMember)(Args...)>
struct Counted<kMember> {
  static inline Result (*real)(Args...) = nullptr;
  static inline const char* name = nullptr;

  static Result Call(Args... args) {
    if (fault.name == name && ++fault.calls == fault.nth) return Refusal<Result>();
    return real(args...);
  }
};

struct Procedure {
  const char* interfaceName;  // "": a method of the toolkit's objects.
  const char* shortName;
  TALProc (*wrap)(TALProc real, const char* name);
};

template <auto kMember>
TALProc Wrap(TALProc real, const char* name) {
  using Stand = Counted<kMember>;
  Stand::real = reinterpret_cast<decltype(Stand::real)>(real);
  Stand::name = name;
  return reinterpret_cast<TALProc>(&Stand::Call);
}

// NewError is not among them: its contract has no refusal. Nor are procedures without a result.
constexpr Procedure kBrokerProcedures[] = {
    {kTALContainerInterface, "NewKind", Wrap<&TALContainerProcs::newKind>},
    {kTALContainerInterface, "AddMethod", Wrap<&TALContainerProcs::addMethod>},
    {kTALContainerInterface, "NewContainer", Wrap<&TALContainerProcs::newContainer>},
    {kTALContainerInterface, "AddRef", Wrap<&TALContainerProcs::addRef>},
    {kTALContainerInterface, "GetKind", Wrap<&TALContainerProcs::getKind>},
    {kTALContainerInterface, "GetMethod", Wrap<&TALContainerProcs::getMethod>},
    {kTALErrorInterface, "GetCoreError", Wrap<&TALErrorProcs::getCoreError>},
    {kTALStringInterface, "NewStringAtom", Wrap<&TALStringProcs::newStringAtom>},
    {kTALMemoryInterface, "Alloc", Wrap<&TALMemoryProcs::alloc>},
};
// The procedures of the toolkit that an import calls.
constexpr Procedure kToolkitProcedures[] = {
    {kXMPMetaStaticInterface, "NewWithBuffer", Wrap<&XMPMetaStatics::newWithBuffer>},
    {kXMPUtilsStaticInterface, "ComposeStructFieldPath", Wrap<&XMPUtilsStatics::composeStructFieldPath>},
    {kXMPUtilsStaticInterface, "SetTimeZone", Wrap<&XMPUtilsStatics::setTimeZone>},
    {kXMPUtilsStaticInterface, "RemoveProperties", Wrap<&XMPUtilsStatics::removeProperties>},
    {kXMPUtilsStaticInterface, "UnlockUtils", Wrap<&XMPUtilsStatics::unlockUtils>},
    {"", "ParseFromBuffer", Wrap<&XMPMetaMethods::parseFromBuffer>},
    {"", "SetProperty", Wrap<&XMPMetaMethods::setProperty>},
    {"", "AppendArrayItem", Wrap<&XMPMetaMethods::appendArrayItem>},
    {"", "SetStructField", Wrap<&XMPMetaMethods::setStructField>},
    {"", "DeleteProperty", Wrap<&XMPMetaMethods::deleteProperty>},
    {"", "DoesPropertyExist", Wrap<&XMPMetaMethods::doesPropertyExist>},
    {"", "SetLocalizedText", Wrap<&XMPMetaMethods::setLocalizedText>},
    {"", "SetProperty_Date", Wrap<&XMPMetaMethods::setPropertyDate>},
    {"", "GetProperty", Wrap<&XMPMetaMethods::getProperty>},
    {"", "CountArrayItems", Wrap<&XMPMetaMethods::countArrayItems>},
    {"", "GetArrayItem", Wrap<&XMPMetaMethods::getArrayItem>},
    {"", "UnlockObject", Wrap<&XMPMetaMethods::unlockObject>},
    {"", "GetProperty_Bool", Wrap<&XMPMetaMethods::getPropertyBool>},
    {"", "SetProperty_Bool", Wrap<&XMPMetaMethods::setPropertyBool>},
};

const Procedure* bent = nullptr;

// Keywords are read back only from a toolkit that keeps them although it was told to remove them.
bool keepsProperties = false;

TALErrorRef RemovesNothing(XMPObjectRef, const char*, const char*, std::uint32_t) {
  return nullptr;
}

// With the packet's keywords, beside those of the datasets that win over it.
NamedFile KeywordsTwice() {
  return {"JPEG with keywords",
          JpegBuilder()
              .App1Xmp("<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                       "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
                       "xmlns:p='http://ns.adobe.com/picturist/1.0/'><p:Keywords><rdf:Bag><rdf:li>harbour</rdf:li>"
                       "<rdf:li>pier</rdf:li></rdf:Bag></p:Keywords></rdf:Description></rdf:RDF></x:xmpmeta>")
              .App13(RichResources(kBig))
              .Build()};
}

// No reader makes this item, which the conversion knows all the same.
void ConvertRights(LxInterchange* interchange) {
  const std::unique_ptr<LxMetadataItem, decltype(&LxFreeMetadataItems)> item(
      LxNewMetadataItem("ir", "Marked", 0, 0x040A, 7, 0, nullptr), LxFreeMetadataItems);
  item->displayText = "1";
  LxConversion conversion(*interchange->Pool(), interchange->Xmp());
  EXPECT_TRUE(LxConvertIrItem(conversion, item.get()));
}

// Methods come through the broker's procedure for them.
TALErrorRef BentGetMethod(TALProc* result, TALContainerRef container, TALStringAtom shortName,
                          TALStringAtom qualifiedName, std::uint8_t notRequired) {
  const TALErrorRef error = RealBroker().containers.getMethod(result, container, shortName, qualifiedName, notRequired);
  const std::string name = RealBroker().strings.getCString(shortName);
  if (error == nullptr && name == bent->shortName) {
    *result = fault.nth == 0 ? nullptr : bent->wrap(*result, bent->shortName);
  }
  return error;
}

TALProc BentLookup(const char* interfaceName, const char* shortName, const char* qualifiedName) {
  const TALProc real = TALOrdinal5()(interfaceName, shortName, qualifiedName);
  const std::string name = shortName;
  if (keepsProperties && name == "RemoveProperties") return reinterpret_cast<TALProc>(RemovesNothing);
  if (bent->interfaceName[0] == '\0') {
    return name == "GetMethod" ? reinterpret_cast<TALProc>(BentGetMethod) : real;
  }
  if (name != bent->shortName || std::string(interfaceName) != bent->interfaceName) return real;
  return fault.nth == 0 ? nullptr : bent->wrap(real, bent->shortName);
}

void Bend(const Procedure& procedure, int nth) {
  bent = &procedure;
  fault = {procedure.shortName, nth, 0};
}

class RefusalSweep : public testing::Test {
 protected:
  // One start, import and stop with every fault point of the procedure, until none is left.
  static void Sweep(const Procedure& procedure, const NamedFile& file) {
    const TempFile saved(file.bytes);
    bool hasFailed = true;
    for (int nth = 1; hasFailed; ++nth) {
      SCOPED_TRACE(testing::Message() << file.name << ", " << procedure.shortName << " refuses call " << nth);
      const Living before;
      Bend(procedure, nth);
      Outcome outcome = Outcome::kImported;
      {
        const Clients clients(BentLookup);
        outcome = OutcomeOf([&saved] {
          LxInterchange interchange(saved.path().c_str());
          ConvertRights(&interchange);
        });
      }
      hasFailed = HasFailed();
      ASSERT_EQ(Living(), before);
      ASSERT_TRUE(hasFailed || outcome == Outcome::kImported);
      pointsTaken += hasFailed ? 1 : 0;
    }
  }

  static inline int pointsTaken = 0;

  void TearDown() override {
    const Clients clients;
    const TempFile saved(RichJpeg(kBig));
    EXPECT_EQ(Import(saved.path()), Outcome::kImported) << "after all faults";
  }
};

TEST_F(RefusalSweep, TheBrokerRefusesOneCall) {
  for (const Procedure& procedure : kBrokerProcedures) {
    pointsTaken = 0;
    Sweep(procedure, RichFiles().front());
    EXPECT_GT(pointsTaken, 0) << procedure.shortName << " is never called";
  }
}

TEST_F(RefusalSweep, TheToolkitRefusesOneCall) {
  for (const Procedure& procedure : kToolkitProcedures) {
    pointsTaken = 0;
    for (const NamedFile& file : RichFiles()) Sweep(procedure, file);
    keepsProperties = true;
    Sweep(procedure, KeywordsTwice());
    keepsProperties = false;
    EXPECT_GT(pointsTaken, 0) << procedure.shortName << " is never called";
  }
}

TEST_F(RefusalSweep, AProcedureIsMissing) {
  const TempFile saved(RichJpeg(kBig));
  const auto check = [&saved](const char* interfaceName, const TALProcName& name, Outcome outcome) {
    SCOPED_TRACE(name.qualifiedName);
    const Living before;
    const Procedure missing = {interfaceName, name.shortName, nullptr};
    Bend(missing, 0);
    {
      const Clients clients(BentLookup);
      const bool raises =
          std::string(interfaceName) == kTALContainerInterface || std::string(interfaceName) == kTALMemoryInterface;
      EXPECT_EQ(clients.startError(), raises ? "Missing Interface" : "");
      EXPECT_EQ(Import(saved.path()), outcome);
    }
    EXPECT_EQ(Living(), before);
  };
  for (const TALProcName& name : kTALCoreProcNames) check(kTALInterface, name, Outcome::kNotStarted);
  for (const TALProcName& name : kTALContainerProcNames) check(kTALContainerInterface, name, Outcome::kNotStarted);
  for (const TALProcName& name : kTALErrorProcNames) check(kTALErrorInterface, name, Outcome::kNotStarted);
  for (const TALProcName& name : kTALStringProcNames) check(kTALStringInterface, name, Outcome::kNotStarted);
  for (const TALProcName& name : kTALMemoryProcNames) check(kTALMemoryInterface, name, Outcome::kNotStarted);
  for (const TALProcName& name : kXMPMetaStaticNames) check(kXMPMetaStaticInterface, name, Outcome::kRefused);
  for (const TALProcName& name : kXMPUtilsStaticNames) check(kXMPUtilsStaticInterface, name, Outcome::kRefused);
  for (const TALProcName& name : kXMPMetaMethodNames) check("", name, Outcome::kRefused);
}

}  // namespace
}  // namespace lxtest
