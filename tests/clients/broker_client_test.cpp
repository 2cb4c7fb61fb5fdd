// The broker client: its start and stop, the exception that carries its errors, and the tables that clients bind.
#include "clients/broker/broker_client.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/api/other_libraries.h"

namespace TAL_T_NMT {
namespace {

using lxtest::Alive;
using lxtest::ChangeUnregisterCount;
using lxtest::CountAlive;
using lxtest::LookupCount;
using lxtest::RealBroker;

// Three client objects; the last one registers last. Each notes its calls and behaves as its test says.
std::vector<std::string> events;
enum class Behaviour { kStarts, kFails, kRaises };
Behaviour behaviours[3];

template <int kIndex>
bool StartObject() {
  events.push_back("start " + std::to_string(kIndex));
  if (behaviours[kIndex] == Behaviour::kRaises) throw std::runtime_error("no");
  return behaviours[kIndex] == Behaviour::kStarts;
}

template <int kIndex>
void StopObject() noexcept {
  events.push_back("stop " + std::to_string(kIndex));
}

TALClientObject objects[] = {
    {StartObject<0>, StopObject<0>}, {StartObject<1>, StopObject<1>}, {StartObject<2>, StopObject<2>}};
[[maybe_unused]] const bool isRegistered = [] {
  for (TALClientObject& object : objects) RegisterClientObject(&object);
  return true;
}();

using Events = std::vector<std::string>;

// "true", "false", or the error as "component: message".
std::string Start() {
  try {
    return StartBrokerClient(TALOrdinal5()) ? "true" : "false";
  } catch (const CTALError& error) {
    return std::string(error.Component()) + ": " + error.what();
  }
}

class BrokerClient : public testing::Test {
 protected:
  void SetUp() override {
    for (Behaviour& behaviour : behaviours) behaviour = Behaviour::kStarts;
    events.clear();
  }
  void TearDown() override {
    ShutDownBrokerClient();
    lxtest::RestoreAll();
    EXPECT_EQ(before, CountAlive());
  }

  const Alive before = CountAlive();
};

TEST_F(BrokerClient, StartsOnceAndStopsOnce) {
  ShutDownBrokerClient();
  EXPECT_FALSE(StartBrokerClient(nullptr));
  EXPECT_FALSE(BrokerClientStarted());
  EXPECT_EQ(events, Events{});

  EXPECT_EQ(Start(), "true");
  EXPECT_TRUE(BrokerClientStarted());
  EXPECT_EQ(PrimaryInstanceOffset(), RealBroker().containers.getOffsetToPrimaryInstance());
  EXPECT_EQ(Start(), "true");
  EXPECT_TRUE(StartBrokerClient(nullptr));
  EXPECT_EQ(events, (Events{"start 2", "start 1", "start 0"}));

  events.clear();
  ShutDownBrokerClient();
  ShutDownBrokerClient();
  EXPECT_EQ(events.size(), 3u);
  EXPECT_FALSE(BrokerClientStarted());
  EXPECT_EQ(ContainerProcs(), nullptr);
  EXPECT_EQ(ErrorProcs(), nullptr);
}

TEST_F(BrokerClient, ObjectsBeforeOneThatDoesNotStartAreStopped) {
  for (const Behaviour behaviour : {Behaviour::kFails, Behaviour::kRaises}) {
    events.clear();
    behaviours[0] = behaviour;
    EXPECT_EQ(Start(), "false");
    EXPECT_EQ(events, (Events{"start 2", "start 1", "start 0", "stop 2", "stop 1"}));
    events.clear();
    ShutDownBrokerClient();
    EXPECT_EQ(events, Events{});
  }
  behaviours[0] = Behaviour::kStarts;
  events.clear();
  EXPECT_EQ(Start(), "true");
  EXPECT_EQ(events, (Events{"start 2", "start 1", "start 0"}));
}

TEST_F(BrokerClient, ErrorCopiesShareOneBrokerError) {
  ASSERT_EQ(Start(), "true");
  {
    const CTALError first("message", "component", 3);
    CTALError other("other", "", 0);
    EXPECT_EQ(RealBroker().errors.getLiveCount(), before.errors + 2);
    other = first;
    CTALError copy(other);
    copy = *&copy;
    EXPECT_EQ(RealBroker().errors.getLiveCount(), before.errors + 1);
    EXPECT_EQ(copy.Reference(), first.Reference());
    EXPECT_STREQ(copy.what(), "message");
    EXPECT_STREQ(copy.Component(), "component");
    EXPECT_EQ(copy.Id(), 3);
  }
  EXPECT_EQ(before, CountAlive());

  const CTALError none;
  EXPECT_STREQ(none.what(), "");
  EXPECT_STREQ(none.Component(), "");
  EXPECT_NO_THROW(ThrowIfError(nullptr));
  EXPECT_THROW(ThrowIfError(RealBroker().errors.getCoreError(1)), std::exception);
}

TEST_F(BrokerClient, RaisedErrorOutlivesAStartUpThatFailed) {
  lxtest::HideInterface(kTALMemoryInterface);
  try {
    StartBrokerClient(TALOrdinal5());
    FAIL();
  } catch (const CTALError& error) {
    const CTALError kept(error);
    EXPECT_STREQ(kept.what(), "Missing Interface");
  }
  EXPECT_EQ(before, CountAlive());
}

TEST_F(BrokerClient, ErrorThatOutlivesTheShutdownKeepsItsText) {
  ASSERT_EQ(Start(), "true");
  TALErrorRef reference = nullptr;
  {
    const CTALError error("kept", "component", 3);
    reference = error.Reference();
    ShutDownBrokerClient();
    const CTALError copy(error);
    EXPECT_STREQ(error.what(), "kept");
    EXPECT_STREQ(error.Component(), "");
    EXPECT_STREQ(copy.what(), "");
  }
  // The reference was given back to nobody, so it is the test's to release.
  RealBroker().errors.release(reference);
}

// --- tables ----------------------------------------------------------------------------------------------------------

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
  const TALRegisterProcAddressProc registerProc = RealBroker().core.registerProcAddress;
  EXPECT_EQ(registerProc("Numbers", "First", "Numbers_First", AsProc(first)), nullptr);
  EXPECT_EQ(registerProc("Numbers", "Second", "Numbers_Second", AsProc(second)), nullptr);
}
void UnregisterNumbers() {
  EXPECT_EQ(RealBroker().core.unregisterInterface("Numbers"), nullptr);
}

TEST_F(BrokerClient, InterfaceIsBoundOnceAndAgainWhenTheCountChangesOrTheClientRestarts) {
  ASSERT_EQ(Start(), "true");
  TALInterfaceTable<Numbers, 2> table("Numbers", kNumberNames);
  EXPECT_THROW(table.Get(), CTALError);
  RegisterNumbers(Number<1>, Number<2>);
  const int lookups = LookupCount();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(table.Get()->first(), 1);
    EXPECT_EQ(table.Get()->second(), 2);
  }
  EXPECT_EQ(LookupCount(), lookups + 2);

  UnregisterNumbers();
  RegisterNumbers(Number<3>, Number<4>);
  EXPECT_EQ(table.Get()->first(), 3);
  EXPECT_EQ(table.Get()->second(), 4);
  table.Forget();
  ShutDownBrokerClient();
  EXPECT_EQ(table.Get(), nullptr);
  ASSERT_EQ(Start(), "true");
  EXPECT_EQ(table.Get()->first(), 3);
  UnregisterNumbers();
}

// One object with the methods First and Second, of a kind of its own.
class Object {
 public:
  Object(int (*first)(), int (*second)()) {
    const TALContainerProcs& containers = RealBroker().containers;
    EXPECT_EQ(containers.newKind(&kind_, "Kind", nullptr), nullptr);
    EXPECT_EQ(containers.addMethod(kind_, "First", "Numbers_First", AsProc(first)), nullptr);
    EXPECT_EQ(containers.addMethod(kind_, "Second", "Numbers_Second", AsProc(second)), nullptr);
    EXPECT_EQ(containers.newContainer(&container_, kind_, nullptr), nullptr);
  }
  ~Object() {
    EXPECT_EQ(RealBroker().containers.release(container_), nullptr);
    EXPECT_EQ(RealBroker().containers.deleteKind(kind_), nullptr);
  }
  TALContainerRef Ref() const { return container_; }

 private:
  TALKindRef kind_ = nullptr;
  TALContainerRef container_ = nullptr;
};

TEST_F(BrokerClient, EachKindOfObjectHasItsMethods) {
  ASSERT_EQ(Start(), "true");
  TALMethodTables<Numbers, 2> tables(kNumberNames);
  const Object a(Number<1>, Number<2>);
  const Object b(Number<3>, Number<4>);
  const Numbers& ofA = tables.Of(a.Ref());
  const Numbers& ofB = tables.Of(b.Ref());
  EXPECT_EQ(ofA.second(), 2);
  EXPECT_EQ(ofB.first(), 3);
  EXPECT_EQ(&tables.Of(a.Ref()), &ofA);
  EXPECT_EQ(&tables.Of(b.Ref()), &ofB);
  EXPECT_TRUE(tables.IsCurrent(&ofA));
  EXPECT_FALSE(tables.IsCurrent(&ofB));

  ChangeUnregisterCount();
  EXPECT_FALSE(tables.IsCurrent(&ofA));
  EXPECT_EQ(&tables.Of(a.Ref()), &ofA);
  EXPECT_TRUE(tables.IsCurrent(&ofA));
  // One that cannot be bound again stays, unbound.
  lxtest::Hide("Second");
  ChangeUnregisterCount();
  EXPECT_THROW(tables.Of(a.Ref()), CTALError);
  EXPECT_FALSE(tables.IsCurrent(&ofA));
  lxtest::RestoreAll();
  EXPECT_EQ(tables.Of(a.Ref()).second(), 2);
  tables.Forget();
  EXPECT_FALSE(tables.IsCurrent(nullptr));
}

}  // namespace
}  // namespace TAL_T_NMT
