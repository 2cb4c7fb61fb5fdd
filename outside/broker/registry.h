// The interfaces and procedures that libraries register with the broker.
#ifndef LXBRIDGE_OUTSIDE_BROKER_REGISTRY_H_
#define LXBRIDGE_OUTSIDE_BROKER_REGISTRY_H_

#include "clients/broker/broker_abi.h"

// Null: no procedure has these names, or a name is null.
TALProc FindProc(const char* interfaceName, const char* shortName, const char* qualifiedName) noexcept;

// Registering the same procedure again under the same names is not an error; registering another one is, since tables
// that clients have bound would still use the first.
TALErrorRef RegisterProc(const char* interfaceName, const char* shortName, const char* qualifiedName,
                         TALProc procedure) noexcept;
TALErrorRef UnregisterInterface(const char* interfaceName) noexcept;
const std::uint32_t* UnregisterCountAddress() noexcept;

#endif  // LXBRIDGE_OUTSIDE_BROKER_REGISTRY_H_
