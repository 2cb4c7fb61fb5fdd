// Registers LxBridge's own interface with the broker, and unregisters it.
#ifndef LXBRIDGE_API_HOST_INTERFACE_H_
#define LXBRIDGE_API_HOST_INTERFACE_H_

#include "clients/broker/broker_abi.h"

// If the broker refuses (for example because another copy of this library in the process was first) or lacks a
// procedure, nothing else changes: hosts do not find the interface, or find the other copy's.
void RegisterHostInterface(TALLookupProc lookup) noexcept;
// Unregisters only what was registered here. REQUIRES: the broker client is still started.
void UnregisterHostInterface() noexcept;

#endif  // LXBRIDGE_API_HOST_INTERFACE_H_
