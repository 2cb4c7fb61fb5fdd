// The real broker, seen through a lookup procedure that tests can bend: procedures hidden or replaced by name, lookups
// counted.
#ifndef LXBRIDGE_TESTS_CLIENTS_BENT_BROKER_H_
#define LXBRIDGE_TESTS_CLIENTS_BENT_BROKER_H_

#include <string>

#include "clients/broker/broker_abi.h"
#include "tests/support/broker_procs.h"

// The broker itself, unbent.
const BrokerProcs& TheBroker();

// A procedure by its interface and short name. Bends hold until Straighten.
void Hide(const std::string& interfaceName, const std::string& shortName);
template <typename Proc>
void Replace(const std::string& interfaceName, const std::string& shortName, Proc procedure);
void ReplaceProc(const std::string& interfaceName, const std::string& shortName, TALProc procedure);
void Straighten();

TALProc BentLookup(const char* interfaceName, const char* shortName, const char* qualifiedName);
int LookupCount();  // Calls of BentLookup so far.

// What is alive in the broker. Made before a test does anything, compared when it is done.
struct BrokerLeaks {
  std::uint32_t errors = TheBroker().errors.getLiveCount();
  std::uint32_t containers = TheBroker().containers.getLiveCount();
  bool operator==(const BrokerLeaks&) const = default;
};

// Makes every table that was bound be bound again, as any library does that leaves the broker.
void ChangeUnregisterCount();

template <typename Proc>
void Replace(const std::string& interfaceName, const std::string& shortName, Proc procedure) {
  ReplaceProc(interfaceName, shortName, reinterpret_cast<TALProc>(procedure));
}

#endif  // LXBRIDGE_TESTS_CLIENTS_BENT_BROKER_H_
