// Registering LxBridge's own interface with the broker, and taking it back.
#ifndef LXBRIDGE_API_HOST_INTERFACE_H_
#define LXBRIDGE_API_HOST_INTERFACE_H_

#include "clients/broker/broker_abi.h"

// A broker that refuses (another copy of this library in the process was first, say), or that lacks the means, changes
// nothing else: hosts do not find the interface, or find the other copy's.
void RegisterHostInterface(TALLookupProc lookup) noexcept;
// Only what was registered here is taken back. REQUIRES: the broker client is still started.
void UnregisterHostInterface() noexcept;

#endif  // LXBRIDGE_API_HOST_INTERFACE_H_
