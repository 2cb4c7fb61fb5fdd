// The interface broker through its entry point, as its clients see it.
#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

#include "clients/broker/broker_abi.h"
#include "tests/support/broker_procs.h"

namespace {

void ProcOne() {}
void ProcTwo() {}

class Broker : public testing::Test {
 protected:
  // Every test gives everything back.
  void TearDown() override {
    EXPECT_EQ(broker.errors.getLiveCount(), 0u);
    EXPECT_EQ(broker.containers.getLiveCount(), 0u);
  }

  std::string Register(const char* interfaceName, const char* shortName, const char* qualifiedName, TALProc procedure) {
    return broker.Take(broker.core.registerProcAddress(interfaceName, shortName, qualifiedName, procedure));
  }
  std::string Unregister(const char* interfaceName) {
    return broker.Take(broker.core.unregisterInterface(interfaceName));
  }

  const TALLookupProc lookUp = TALOrdinal5();
  const BrokerProcs broker{lookUp};
  const std::uint32_t* const count = broker.core.getUnregisterCountAddr();
};

TEST_F(Broker, RegisteringTwiceKeepsTheFirstProcedure) {
  ASSERT_EQ(Register("Twice", "A", "Twice_A", ProcOne), "");
  EXPECT_EQ(Register("Twice", "A", "Twice_A", ProcOne), "");
  EXPECT_EQ(Register("Twice", "A", "Twice_A", ProcTwo), "Already registered");
  EXPECT_EQ(lookUp("Twice", "A", "Twice_A"), ProcOne);
  EXPECT_EQ(Unregister("Twice"), "");
}

TEST_F(Broker, UnregisteringTakesOneInterfaceAndChangesTheCount) {
  ASSERT_EQ(Register("First", "A", "A", ProcOne), "");
  ASSERT_EQ(Register("First", "B", "B", ProcOne), "");
  ASSERT_EQ(Register("Second", "A", "A", ProcTwo), "");
  const std::uint32_t before = *count;
  EXPECT_NE(before, 0u);
  EXPECT_EQ(Unregister("First"), "");
  EXPECT_NE(*count, before);
  EXPECT_EQ(lookUp("First", "A", "A"), nullptr);
  EXPECT_EQ(lookUp("First", "B", "B"), nullptr);
  EXPECT_EQ(lookUp("Second", "A", "A"), ProcTwo);

  const std::uint32_t between = *count;
  EXPECT_EQ(Unregister("First"), "Not registered");
  EXPECT_EQ(*count, between);
  ASSERT_EQ(Register("First", "A", "A", ProcTwo), "");
  EXPECT_EQ(lookUp("First", "A", "A"), ProcTwo);
  EXPECT_EQ(Unregister("First"), "");
  EXPECT_EQ(Unregister("Second"), "");
}

TEST_F(Broker, UnregisterCountPassesOverZeroWhenItWraps) {
  const std::uint32_t before = *count;
  *const_cast<std::uint32_t*>(count) = 0xFFFFFFFF;  // A variable of the broker, read-only to its clients.
  ASSERT_EQ(Register("Wrap", "A", "A", ProcOne), "");
  EXPECT_EQ(Unregister("Wrap"), "");
  EXPECT_NE(*count, 0u);
  EXPECT_NE(*count, 0xFFFFFFFF);
  *const_cast<std::uint32_t*>(count) = before;
}

TEST_F(Broker, RegistryGrowsAndShrinksWithoutLosingAProcedure) {
  const auto name = [](int i) { return "Procedure" + std::to_string(i); };
  for (int i = 0; i < 1000; ++i) {
    const std::string interfaceName = "Many" + std::to_string(i % 7);
    ASSERT_EQ(Register(interfaceName.c_str(), name(i).c_str(), name(i).c_str(), i % 2 ? ProcOne : ProcTwo), "");
  }
  EXPECT_EQ(lookUp("Many1", "Procedure2", "Procedure2"), nullptr);
  EXPECT_EQ(lookUp("Many1", "Procedure1", "Procedure8"), nullptr);
  EXPECT_EQ(lookUp("Many1", "Procedure8", "Procedure1"), nullptr);
  EXPECT_EQ(Unregister("Many3"), "");
  for (int i = 0; i < 1000; ++i) {
    const std::string interfaceName = "Many" + std::to_string(i % 7);
    const TALProc expected = i % 7 == 3 ? nullptr : (i % 2 ? ProcOne : ProcTwo);
    ASSERT_EQ(lookUp(interfaceName.c_str(), name(i).c_str(), name(i).c_str()), expected) << i;
  }
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(Unregister(("Many" + std::to_string(i)).c_str()), i == 3 ? "Not registered" : "");
  }
}

TEST_F(Broker, EqualTextsAreOneAtomWhileOneOfThemLives) {
  // All lengths around the eight bytes that are hashed at a time, each with a twin that differs in its last byte.
  const auto& strings = broker.strings;
  std::vector<TALStringAtom> atoms;
  std::vector<std::string> texts;
  for (std::size_t length = 0; length < 40; ++length) {
    texts.push_back(std::string(length, 'x'));
    if (length) texts.push_back(std::string(length - 1, 'x') + 'y');
  }
  for (const std::string& text : texts) atoms.push_back(strings.newStringAtom(text.c_str()));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(strings.getCString(atoms[i]), texts[i]);
    const TALStringAtom again = strings.newStringAtom(texts[i].c_str());
    EXPECT_EQ(again, atoms[i]);
    EXPECT_EQ(strings.copyStringAtom(again), again);
    strings.deleteStringAtom(again);
    strings.deleteStringAtom(again);
    for (std::size_t j = 0; j < i; ++j) EXPECT_NE(atoms[i], atoms[j]) << texts[i] << " " << texts[j];
  }
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(strings.getCString(atoms[i]), texts[i]);
    strings.deleteStringAtom(atoms[i]);
  }
}

TEST_F(Broker, ErrorLivesUntilItsLastReferenceIsReleased) {
  const auto& errors = broker.errors;
  const TALErrorRef error = errors.newError("message", "component", -7);
  errors.addRef(error);
  errors.release(error);
  EXPECT_EQ(errors.getLiveCount(), 1u);
  EXPECT_STREQ(errors.getMessageText(error), "message");
  EXPECT_STREQ(errors.getComponent(error), "component");
  EXPECT_EQ(errors.getId(error), -7);
  errors.release(error);
  EXPECT_EQ(errors.getLiveCount(), 0u);

  const TALErrorRef empty = errors.newError(nullptr, nullptr, 0);
  EXPECT_STREQ(errors.getMessageText(empty), "");
  EXPECT_STREQ(errors.getComponent(empty), "");
  broker.core.reportError(empty);
}

TEST_F(Broker, CoreErrorsSurviveEveryRelease) {
  for (std::uint32_t index = 0; index < 2; ++index) {
    const TALErrorRef error = broker.errors.getCoreError(index);
    ASSERT_NE(error, nullptr);
    for (int i = 0; i < 3; ++i) broker.errors.release(error);
    EXPECT_EQ(broker.errors.getCoreError(index), error);
    EXPECT_STRNE(broker.errors.getMessageText(error), "");
    EXPECT_EQ(broker.errors.getLiveCount(), 0u);
  }
  EXPECT_EQ(broker.errors.getCoreError(2), nullptr);
}

// An instance of the test's kinds: it counts its destructions, and may own another container.
struct Instance {
  int destroyed = 0;
  TALContainerRef owned = nullptr;
};

void DestroyInstance(void* instance) {
  auto* destroyed = static_cast<Instance*>(instance);
  ++destroyed->destroyed;
  if (destroyed->owned) BrokerProcs(TALOrdinal5()).containers.release(destroyed->owned);
}

class BrokerContainers : public Broker {
 protected:
  BrokerContainers() { EXPECT_EQ(broker.Take(containers.newKind(&kind, "Kind", DestroyInstance)), ""); }
  ~BrokerContainers() override { EXPECT_EQ(broker.Take(containers.deleteKind(kind)), ""); }

  TALContainerRef New(Instance* instance) {
    TALContainerRef container = nullptr;
    EXPECT_EQ(broker.Take(containers.newContainer(&container, kind, instance)), "");
    return container;
  }

  const TALContainerProcs& containers = broker.containers;
  TALKindRef kind = nullptr;
};

TEST_F(BrokerContainers, LastReleaseHandsTheInstanceToItsKindOnce) {
  Instance instance;
  const TALContainerRef container = New(&instance);
  void* primary = nullptr;
  std::memcpy(&primary, reinterpret_cast<const char*>(container) + containers.getOffsetToPrimaryInstance(),
              sizeof primary);
  EXPECT_EQ(primary, &instance);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(containers.addRef(container), nullptr);
  std::uint32_t references = 0;
  EXPECT_EQ(containers.getRefCount(container, &references), nullptr);
  EXPECT_EQ(references, 3u);
  EXPECT_EQ(containers.release(container), nullptr);
  EXPECT_EQ(containers.release(container), nullptr);
  EXPECT_EQ(instance.destroyed, 0);
  EXPECT_EQ(containers.isValid(container), 1);
  EXPECT_EQ(containers.release(container), nullptr);
  EXPECT_EQ(instance.destroyed, 1);
  EXPECT_EQ(containers.isValid(container), 0);
}

TEST_F(BrokerContainers, DestroyedInstanceMayReleaseAnotherContainer) {
  Instance inner, outer;
  outer.owned = New(&inner);
  EXPECT_EQ(containers.release(New(&outer)), nullptr);
  EXPECT_EQ(inner.destroyed, 1);
}

TEST_F(BrokerContainers, KindStaysWhileContainersLive) {
  Instance instance;
  const TALContainerRef container = New(&instance);
  EXPECT_EQ(broker.Take(containers.deleteKind(kind)), "Still in use");
  std::uint8_t is = 0;
  EXPECT_EQ(containers.isKind(container, "Kind", &is), nullptr);
  EXPECT_EQ(is, 1);
  EXPECT_EQ(containers.isKind(container, "Kin", &is), nullptr);
  EXPECT_EQ(is, 0);
  EXPECT_EQ(containers.release(container), nullptr);
}

TEST_F(BrokerContainers, MethodIsFoundByItsPairOfAtoms) {
  for (int i = 0; i < 200; ++i) {
    const std::string name = std::to_string(i);
    const TALProc procedure = i % 2 ? ProcOne : ProcTwo;
    ASSERT_EQ(broker.Take(containers.addMethod(kind, name.c_str(), (name + "_Method").c_str(), procedure)), "");
  }
  EXPECT_EQ(broker.Take(containers.addMethod(kind, "5", "5_Method", ProcOne)), "");
  EXPECT_EQ(broker.Take(containers.addMethod(kind, "5", "5_Method", ProcTwo)), "Already registered");

  Instance instance;
  const TALContainerRef container = New(&instance);
  const auto find = [&](const std::string& shortName, const std::string& qualifiedName, std::uint8_t notRequired) {
    const TALStringAtom first = broker.strings.newStringAtom(shortName.c_str());
    const TALStringAtom second = broker.strings.newStringAtom(qualifiedName.c_str());
    TALProc found = ProcOne;
    const std::string message = broker.Take(containers.getMethod(&found, container, first, second, notRequired));
    EXPECT_EQ(message, found || notRequired ? "" : "Not registered");
    broker.strings.deleteStringAtom(first);
    broker.strings.deleteStringAtom(second);
    return found;
  };
  for (int i = 0; i < 200; ++i) {
    const std::string name = std::to_string(i);
    EXPECT_EQ(find(name, name + "_Method", 0), i % 2 ? ProcOne : ProcTwo) << i;
  }
  EXPECT_EQ(find("5_Method", "5", 0), nullptr);
  EXPECT_EQ(find("5", "7_Method", 1), nullptr);
  EXPECT_EQ(containers.release(container), nullptr);
}

TEST_F(BrokerContainers, NullArgumentsAreErrors) {
  Instance instance;
  const TALContainerRef container = New(&instance);
  const TALStringAtom atom = broker.strings.newStringAtom("a");
  TALContainerRef made = nullptr;
  TALKindRef madeKind = nullptr;
  TALProc found = nullptr;
  std::uint8_t answer = 0;
  std::uint32_t references = 0;
  const char* name = nullptr;
  void* primary = nullptr;
  const TALErrorRef results[] = {
      broker.core.registerProcAddress(nullptr, "A", "A", ProcOne),
      broker.core.registerProcAddress("I", nullptr, "A", ProcOne),
      broker.core.registerProcAddress("I", "A", nullptr, ProcOne),
      broker.core.registerProcAddress("I", "A", "A", nullptr),
      broker.core.unregisterInterface(nullptr),
      containers.newKind(nullptr, "K", nullptr),
      containers.newKind(&madeKind, nullptr, nullptr),
      containers.deleteKind(nullptr),
      containers.addMethod(nullptr, "A", "A", ProcOne),
      containers.addMethod(kind, nullptr, "A", ProcOne),
      containers.addMethod(kind, "A", nullptr, ProcOne),
      containers.addMethod(kind, "A", "A", nullptr),
      containers.getKindName(nullptr, &name),
      containers.getKindName(kind, nullptr),
      containers.newContainer(nullptr, kind, &instance),
      containers.newContainer(&made, nullptr, &instance),
      containers.addRef(nullptr),
      containers.release(nullptr),
      containers.getRefCount(nullptr, &references),
      containers.getRefCount(container, nullptr),
      containers.getKind(nullptr, &madeKind),
      containers.getKind(container, nullptr),
      containers.isKind(nullptr, "K", &answer),
      containers.isKind(container, nullptr, &answer),
      containers.isKind(container, "K", nullptr),
      containers.getMethod(nullptr, container, atom, atom, 1),
      containers.getMethod(&found, nullptr, atom, atom, 1),
      containers.getMethod(&found, container, nullptr, atom, 1),
      containers.getMethod(&found, container, atom, nullptr, 1),
      containers.getPrimaryInstance(nullptr, &primary),
      containers.getPrimaryInstance(container, nullptr),
      containers.setPrimaryInstance(nullptr, &instance),
  };
  for (std::size_t i = 0; i < std::size(results); ++i) EXPECT_EQ(broker.Take(results[i]), "Null argument") << i;
  EXPECT_EQ(lookUp(nullptr, "A", "A"), nullptr);
  EXPECT_EQ(lookUp(kTALInterface, nullptr, "TALReportError"), nullptr);
  EXPECT_EQ(lookUp(kTALInterface, "TALReportError", nullptr), nullptr);
  EXPECT_EQ(containers.isValid(nullptr), 0);
  EXPECT_EQ(broker.strings.newStringAtom(nullptr), nullptr);
  EXPECT_EQ(broker.strings.copyStringAtom(nullptr), nullptr);
  EXPECT_STREQ(broker.strings.getCString(nullptr), "");
  broker.strings.deleteStringAtom(nullptr);
  broker.errors.addRef(nullptr);
  broker.errors.release(nullptr);
  EXPECT_STREQ(broker.errors.getMessageText(nullptr), "");
  broker.memory.release(nullptr);

  broker.strings.deleteStringAtom(atom);
  EXPECT_EQ(containers.release(container), nullptr);
}

}  // namespace
