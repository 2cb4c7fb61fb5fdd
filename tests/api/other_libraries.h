// The broker and the toolkit as the library under test meets them: this program's entry points come before the real
// ones, note each call, and can hide procedures or make them fail.
#ifndef LXBRIDGE_TESTS_API_OTHER_LIBRARIES_H_
#define LXBRIDGE_TESTS_API_OTHER_LIBRARIES_H_

#include <cstdint>
#include <string>
#include <vector>

#include "clients/broker/broker_abi.h"
#include "tests/support/broker_procs.h"

namespace lxtest {

// The calls of entry points since it was last cleared: "TAL 5", "XMP 1 3010000", "XMP 2".
std::vector<std::string>& EntryCalls();

// Of all interfaces and of the toolkit objects' methods, until RestoreAll. A failing procedure reports the error
// "refused" from its first call on; only procedures that give an error reference may be made to fail.
void Hide(const std::string& shortName);
void HideInterface(const std::string& interfaceName);
void Fail(const std::string& shortName);
void RestoreAll();

// The broker without these faults, and how often procedures were looked up with them.
const BrokerProcs& RealBroker();
int LookupCount();
// Makes every table be bound again on its next use, as any library does that leaves the broker.
void ChangeUnregisterCount();

// The live objects of the broker and the toolkit; compared before and after.
struct Alive {
  std::uint32_t containers;
  std::uint32_t errors;
  bool operator==(const Alive&) const = default;
};
Alive CountAlive();

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_API_OTHER_LIBRARIES_H_
