// The interfaces and procedures that libraries register with the broker.
#ifndef LXBRIDGE_OUTSIDE_BROKER_REGISTRY_H_
#define LXBRIDGE_OUTSIDE_BROKER_REGISTRY_H_

#include "clients/broker/broker_abi.h"

// Null: there is none of these names, or one of them is null.
TALProc FindProc(const char* interfaceName, const char* shortName, const char* qualifiedName) noexcept;

// Registering a procedure again under the same names is no error; another one under them is, since tables that others
// have bound would go on with the first.
TALErrorRef RegisterProc(const char* interfaceName, const char* shortName, const char* qualifiedName,
                         TALProc procedure) noexcept;
TALErrorRef UnregisterInterface(const char* interfaceName) noexcept;
const std::uint32_t* UnregisterCountAddress() noexcept;

#endif  // LXBRIDGE_OUTSIDE_BROKER_REGISTRY_H_
