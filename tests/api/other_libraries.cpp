#include "tests/api/other_libraries.h"

#include <dlfcn.h>

#include <cstdio>
#include <set>

#include "clients/xmp/xmp_abi.h"

namespace {

std::vector<std::string> entryCalls;
std::set<std::string> hidden;
std::set<std::string> hiddenInterfaces;
std::set<std::string> failing;
int lookups = 0;

template <typename Proc>
Proc Real(const char* name) {
  return reinterpret_cast<Proc>(dlsym(RTLD_NEXT, name));
}

TALLookupProc RealLookup() {
  return Real<TALLookupProc (*)()>("TALOrdinal5")();
}

// Stands in for procedures of any arguments: the C calling convention lets it pass over them.
TALErrorRef Refuse() {
  return lxtest::RealBroker().errors.newError("refused", "test", 42);
}

TALErrorRef GetMethod(TALProc* result, TALContainerRef container, TALStringAtom shortName, TALStringAtom qualifiedName,
                      std::uint8_t notRequired) {
  const BrokerProcs& broker = lxtest::RealBroker();
  const std::string name = broker.strings.getCString(shortName);
  if (hidden.contains(name)) return broker.errors.newError("no method", "test", 43);
  const TALErrorRef error = broker.containers.getMethod(result, container, shortName, qualifiedName, notRequired);
  if (!error && failing.contains(name)) *result = reinterpret_cast<TALProc>(Refuse);
  return error;
}

TALProc LookUp(const char* interfaceName, const char* shortName, const char* qualifiedName) {
  ++lookups;
  if (hidden.contains(shortName) || hiddenInterfaces.contains(interfaceName)) return nullptr;
  if (failing.contains(shortName)) return reinterpret_cast<TALProc>(Refuse);
  if (std::string(shortName) == "GetMethod") return reinterpret_cast<TALProc>(GetMethod);
  return RealLookup()(interfaceName, shortName, qualifiedName);
}

}  // namespace

// The dynamic linker takes the program's own definitions first.
#pragma GCC visibility push(default)
extern "C" TALLookupProc TALOrdinal5() {
  entryCalls.emplace_back("TAL 5");
  return LookUp;
}

extern "C" std::uint32_t VeltoXMPOrdinal1(TALLookupProc, std::uint32_t clientVersion, std::uint32_t* version) {
  char call[32];
  std::snprintf(call, sizeof call, "XMP 1 %x", clientVersion);
  entryCalls.emplace_back(call);
  return Real<decltype(&VeltoXMPOrdinal1)>("VeltoXMPOrdinal1")(RealLookup(), clientVersion, version);
}

extern "C" std::uint32_t VeltoXMPOrdinal2() {
  entryCalls.emplace_back("XMP 2");
  return Real<decltype(&VeltoXMPOrdinal2)>("VeltoXMPOrdinal2")();
}
#pragma GCC visibility pop

namespace lxtest {

std::vector<std::string>& EntryCalls() {
  return entryCalls;
}
void Hide(const std::string& shortName) {
  hidden.insert(shortName);
}
void HideInterface(const std::string& interfaceName) {
  hiddenInterfaces.insert(interfaceName);
}
void Fail(const std::string& shortName) {
  failing.insert(shortName);
}
void RestoreAll() {
  hidden.clear();
  hiddenInterfaces.clear();
  failing.clear();
}

const BrokerProcs& RealBroker() {
  static const BrokerProcs broker(RealLookup());
  return broker;
}
int LookupCount() {
  return lookups;
}
void ChangeUnregisterCount() {
  const BrokerProcs& broker = RealBroker();
  broker.Take(broker.core.registerProcAddress("Passing by", "None", "None", reinterpret_cast<TALProc>(Refuse)));
  broker.Take(broker.core.unregisterInterface("Passing by"));
}

Alive CountAlive() {
  return {RealBroker().containers.getLiveCount(), RealBroker().errors.getLiveCount()};
}

}  // namespace lxtest
