// Start and stop of the broker client, and the exception that carries its errors.
#include <gtest/gtest.h>

#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "clients/broker/broker_client.h"
#include "tests/clients/bent_broker.h"

namespace TAL_T_NMT {
namespace {

// Three client objects; the last one registers last. Each tells what it does and behaves as its test says.
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
    return StartBrokerClient(BentLookup) ? "true" : "false";
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
    Straighten();
    EXPECT_EQ(leaks, BrokerLeaks());
  }

  const BrokerLeaks leaks{};
};

TEST_F(BrokerClient, StartsOnceAndStopsOnce) {
  ShutDownBrokerClient();
  EXPECT_FALSE(StartBrokerClient(nullptr));
  EXPECT_FALSE(BrokerClientStarted());
  EXPECT_EQ(events, Events{});

  EXPECT_EQ(Start(), "true");
  EXPECT_TRUE(BrokerClientStarted());
  EXPECT_EQ(PrimaryInstanceOffset(), TheBroker().containers.getOffsetToPrimaryInstance());
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

TEST_F(BrokerClient, MissingContainersAndErrorsTogetherCannotBeRaised) {
  Hide(kTALContainerInterface, "AddRef");
  Hide(kTALErrorInterface, "NewError");
  EXPECT_EQ(Start(), "false");
}

TEST_F(BrokerClient, StartUpNeedsACountAndTheFirstCoreError) {
  Replace(
      kTALInterface, "TALGetUnregisterCountAddr", +[]() -> const std::uint32_t* { return nullptr; });
  EXPECT_EQ(Start(), "false");
  Straighten();
  Replace(
      kTALErrorInterface, "GetCoreError", +[](std::uint32_t index) -> TALErrorRef {
        return index == 0 ? nullptr : TheBroker().errors.getCoreError(index);
      });
  EXPECT_EQ(Start(), "false");
  Replace(
      kTALErrorInterface, "GetCoreError", +[](std::uint32_t index) -> TALErrorRef {
        return index == 0 ? TheBroker().errors.getCoreError(index) : nullptr;
      });
  EXPECT_EQ(Start(), "true");
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
    EXPECT_EQ(TheBroker().errors.getLiveCount(), leaks.errors + 2);
    other = first;
    CTALError copy(other);
    copy = *&copy;
    EXPECT_EQ(TheBroker().errors.getLiveCount(), leaks.errors + 1);
    EXPECT_EQ(copy.Reference(), first.Reference());
    EXPECT_STREQ(copy.what(), "message");
    EXPECT_STREQ(copy.Component(), "component");
    EXPECT_EQ(copy.Id(), 3);
  }
  EXPECT_EQ(leaks, BrokerLeaks());

  const CTALError none;
  EXPECT_STREQ(none.what(), "");
  EXPECT_STREQ(none.Component(), "");
  EXPECT_NO_THROW(ThrowIfError(nullptr));
  EXPECT_THROW(ThrowIfError(TheBroker().errors.getCoreError(1)), std::exception);
}

TEST_F(BrokerClient, RaisedErrorOutlivesAStartUpThatFailed) {
  Hide(kTALMemoryInterface, "Free");
  try {
    StartBrokerClient(BentLookup);
    FAIL();
  } catch (const CTALError& error) {
    const CTALError kept(error);
    EXPECT_STREQ(kept.what(), "Missing Interface");
  }
  EXPECT_EQ(leaks, BrokerLeaks());
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
  TheBroker().errors.release(reference);
}

}  // namespace
}  // namespace TAL_T_NMT
