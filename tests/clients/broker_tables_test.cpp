// The tables that clients bind through the broker: interfaces, and the methods of objects.
#include <gtest/gtest.h>

#include <string>

#include "clients/broker/broker_client.h"
#include "tests/clients/bent_broker.h"

namespace TAL_T_NMT {
namespace {

struct Numbers {
  int (*first)();
  int (*second)();
};
constexpr TALProcName kNumberNames[] = {{"First", "Numbers_First"}, {"Second", "Numbers_Second"}};

template <int kNumber>
int Number() {
  return kNumber;
}

TALProc AsProc(int (*procedure)()) {
  return reinterpret_cast<TALProc>(procedure);
}

void RegisterNumbers(int (*first)(), int (*second)()) {
  const TALRegisterProcAddressProc registerProc = TheBroker().core.registerProcAddress;
  EXPECT_EQ(registerProc("Numbers", "First", "Numbers_First", AsProc(first)), nullptr);
  if (!second) return;
  EXPECT_EQ(registerProc("Numbers", "Second", "Numbers_Second", AsProc(second)), nullptr);
}
void UnregisterNumbers() {
  EXPECT_EQ(TheBroker().core.unregisterInterface("Numbers"), nullptr);
}

template <typename Call>
std::string Raised(Call call) {
  try {
    call();
    return "nothing";
  } catch (const CTALError& error) {
    return std::string(error.Component()) + ":" + error.what();
  }
}

int liveBlocks = 0;
void* latestBlock = nullptr;

class BrokerTables : public testing::Test {
 protected:
  void SetUp() override {
    Replace(
        kTALMemoryInterface, "Alloc", +[](std::size_t size) {
          ++liveBlocks;
          return latestBlock = TheBroker().memory.alloc(size);
        });
    Replace(
        kTALMemoryInterface, "Free", +[](void* block) {
          --liveBlocks;
          TheBroker().memory.release(block);
        });
    ASSERT_TRUE(StartBrokerClient(BentLookup));
  }
  void TearDown() override {
    ShutDownBrokerClient();
    Straighten();
    EXPECT_EQ(leaks, BrokerLeaks());
    EXPECT_EQ(liveBlocks, 0);
  }

  const BrokerLeaks leaks{};
};

TEST_F(BrokerTables, InterfaceIsBoundOnceAndAgainWhenTheCountChanges) {
  TALInterfaceTable<Numbers, 2> table("Numbers", kNumberNames);
  RegisterNumbers(Number<1>, Number<2>);
  const int before = LookupCount();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(table.Get()->first(), 1);
    EXPECT_EQ(table.Get()->second(), 2);
  }
  EXPECT_EQ(LookupCount(), before + 2);

  UnregisterNumbers();
  RegisterNumbers(Number<3>, Number<4>);
  EXPECT_EQ(table.Get()->first(), 3);
  EXPECT_EQ(table.Get()->second(), 4);
  UnregisterNumbers();
}

TEST_F(BrokerTables, MissingProcedureIsRaisedUntilItIsThere) {
  TALInterfaceTable<Numbers, 2> table("Numbers", kNumberNames);
  EXPECT_EQ(Raised([&] { table.Get(); }), "TAL:");
  RegisterNumbers(Number<1>, nullptr);
  EXPECT_EQ(Raised([&] { table.Get(); }), "TAL:");
  RegisterNumbers(Number<1>, Number<2>);
  EXPECT_EQ(table.Get()->second(), 2);
  UnregisterNumbers();
  EXPECT_EQ(Raised([&] { table.Get(); }), "TAL:");
}

TEST_F(BrokerTables, ForgottenTableIsNullUntilTheNextStart) {
  TALInterfaceTable<Numbers, 2> table("Numbers", kNumberNames);
  RegisterNumbers(Number<1>, Number<2>);
  ASSERT_NE(table.Get(), nullptr);
  table.Forget();
  ShutDownBrokerClient();
  EXPECT_EQ(table.Get(), nullptr);
  ASSERT_TRUE(StartBrokerClient(BentLookup));
  EXPECT_EQ(table.Get()->first(), 1);
  UnregisterNumbers();
}

TEST_F(BrokerTables, BrokersOwnInterfacesAreBoundAgainToo) {
  Hide(kTALStringInterface, "GetCString");
  ChangeUnregisterCount();
  EXPECT_EQ(Raised([] { StringProcs(); }), "TAL:");
  Straighten();
  EXPECT_EQ(StringProcs()->newStringAtom, TheBroker().strings.newStringAtom);
  Hide(kTALErrorInterface, "AddRef");
  ChangeUnregisterCount();
  EXPECT_EQ(ErrorProcs(), nullptr);
  EXPECT_EQ(Raised([] { throw CTALError("lost", "", 1); }), ":");
  Straighten();
}

// One object with the methods First and Second, of a kind of its own.
class Object {
 public:
  Object(int (*first)(), int (*second)()) {
    const TALContainerProcs& containers = TheBroker().containers;
    EXPECT_EQ(containers.newKind(&kind_, "Kind", nullptr), nullptr);
    EXPECT_EQ(containers.addMethod(kind_, "First", "Numbers_First", AsProc(first)), nullptr);
    if (second) AddSecond(second);
    EXPECT_EQ(containers.newContainer(&container_, kind_, nullptr), nullptr);
  }
  ~Object() {
    EXPECT_EQ(TheBroker().containers.release(container_), nullptr);
    EXPECT_EQ(TheBroker().containers.deleteKind(kind_), nullptr);
  }

  void AddSecond(int (*second)()) {
    EXPECT_EQ(TheBroker().containers.addMethod(kind_, "Second", "Numbers_Second", AsProc(second)), nullptr);
  }
  TALContainerRef Ref() const { return container_; }

 private:
  TALKindRef kind_ = nullptr;
  TALContainerRef container_ = nullptr;
};

TEST_F(BrokerTables, EachKindOfObjectHasItsMethods) {
  TALMethodTables<Numbers, 2> tables(kNumberNames);
  {
    const Object a(Number<1>, Number<2>);
    const Object b(Number<3>, Number<4>);
    const Numbers& ofA = tables.Of(a.Ref());
    const Numbers& ofB = tables.Of(b.Ref());
    EXPECT_EQ(ofA.second(), 2);
    EXPECT_EQ(ofB.first(), 3);
    EXPECT_EQ(&tables.Of(a.Ref()), &ofA);
    EXPECT_EQ(&tables.Of(b.Ref()), &ofB);
    EXPECT_EQ(liveBlocks, 2);
    EXPECT_TRUE(tables.IsCurrent(&ofA));
    EXPECT_FALSE(tables.IsCurrent(&ofB));

    ChangeUnregisterCount();
    EXPECT_FALSE(tables.IsCurrent(&ofA));
    EXPECT_EQ(&tables.Of(a.Ref()), &ofA);
    EXPECT_TRUE(tables.IsCurrent(&ofA));
    EXPECT_EQ(tables.Of(b.Ref()).second(), 4);
    EXPECT_EQ(liveBlocks, 2);
  }
  tables.Forget();
  EXPECT_FALSE(tables.IsCurrent(nullptr));
}

TEST_F(BrokerTables, MethodsThatCannotBeHadAreAnInvalidContainer) {
  TALMethodTables<Numbers, 2> tables(kNumberNames);
  Object object(Number<1>, nullptr);
  const auto raised = [&] { return Raised([&] { tables.Of(object.Ref()); }); };
  EXPECT_EQ(Raised([&] { tables.Of(nullptr); }), ":invalid container");
  EXPECT_EQ(raised(), ":invalid container");
  EXPECT_EQ(liveBlocks, 0);
  object.AddSecond(Number<2>);

  // Whatever of the broker fails on the way, nothing is left behind and a later try succeeds.
  struct {
    const char* interfaceName;
    const char* shortName;
    TALProc procedure;
  } const kFailures[] = {
      {kTALMemoryInterface, "Alloc", reinterpret_cast<TALProc>(+[](std::size_t) -> void* { return nullptr; })},
      {kTALStringInterface, "NewStringAtom",
       reinterpret_cast<TALProc>(+[](const char*) -> TALStringAtom { return nullptr; })},
      {kTALContainerInterface, "GetKind", reinterpret_cast<TALProc>(+[](TALContainerRef, TALKindRef*) {
         return TheBroker().errors.newError("no kind", "", 0);
       })},
      {kTALContainerInterface, "GetMethod",
       reinterpret_cast<TALProc>(+[](TALProc*, TALContainerRef, TALStringAtom, TALStringAtom, std::uint8_t) {
         return TheBroker().errors.newError("no method", "", 0);
       })},
      {kTALContainerInterface, "GetMethod",
       reinterpret_cast<TALProc>(
           +[](TALProc*, TALContainerRef, TALStringAtom, TALStringAtom, std::uint8_t) { return TALErrorRef{}; })},
  };
  for (const auto& failure : kFailures) {
    SCOPED_TRACE(failure.shortName);
    ShutDownBrokerClient();
    Straighten();
    ReplaceProc(failure.interfaceName, failure.shortName, failure.procedure);
    ASSERT_TRUE(StartBrokerClient(BentLookup));
    EXPECT_EQ(raised(), ":invalid container");
  }
  ShutDownBrokerClient();
  Straighten();
  SetUp();
  EXPECT_EQ(tables.Of(object.Ref()).second(), 2);

  // A table that was bound and cannot be bound again stays, unbound.
  const Numbers& bound = tables.Of(object.Ref());
  Replace(
      kTALContainerInterface, "GetMethod",
      +[](TALProc*, TALContainerRef, TALStringAtom, TALStringAtom, std::uint8_t) { return TALErrorRef{}; });
  ChangeUnregisterCount();
  EXPECT_EQ(raised(), ":invalid container");
  EXPECT_FALSE(tables.IsCurrent(&bound));
  EXPECT_EQ(raised(), ":invalid container");
  tables.Forget();
}

TEST_F(BrokerTables, TablesGoWithTheShutdownEvenWithoutAMemoryInterface) {
  TALMethodTables<Numbers, 2> tables(kNumberNames);
  const Object object(Number<1>, Number<2>);
  tables.Of(object.Ref());
  Hide(kTALMemoryInterface, "Free");
  ChangeUnregisterCount();
  tables.Forget();  // The block cannot be given back to a broker that has no memory interface any more.
  EXPECT_EQ(liveBlocks, 1);
  TheBroker().memory.release(latestBlock);
  liveBlocks = 0;
}

}  // namespace
}  // namespace TAL_T_NMT
