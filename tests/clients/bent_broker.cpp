// The real broker behind a bent lookup.
#include "tests/clients/bent_broker.h"

#include <map>
#include <utility>

namespace {

std::map<std::pair<std::string, std::string>, TALProc> bends;  // Null: hidden.
int lookups = 0;

}  // namespace

const BrokerProcs& TheBroker() {
  static const BrokerProcs broker(TALOrdinal5());
  return broker;
}

void Hide(const std::string& interfaceName, const std::string& shortName) {
  ReplaceProc(interfaceName, shortName, nullptr);
}

void ReplaceProc(const std::string& interfaceName, const std::string& shortName, TALProc procedure) {
  bends[{interfaceName, shortName}] = procedure;
}

void Straighten() {
  bends.clear();
}

TALProc BentLookup(const char* interfaceName, const char* shortName, const char* qualifiedName) {
  ++lookups;
  const auto bend = bends.find({interfaceName, shortName});
  return bend != bends.end() ? bend->second : TALOrdinal5()(interfaceName, shortName, qualifiedName);
}

int LookupCount() {
  return lookups;
}

void ChangeUnregisterCount() {
  const BrokerProcs& broker = TheBroker();
  const auto nothing = reinterpret_cast<TALProc>(Straighten);
  broker.Take(broker.core.registerProcAddress("Passing by", "Nothing", "Nothing", nothing));
  broker.Take(broker.core.unregisterInterface("Passing by"));
}
