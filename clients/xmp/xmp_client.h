// The XMP toolkit's start and stop, and the tables of its static interfaces.
#ifndef LXBRIDGE_CLIENTS_XMP_XMP_CLIENT_H_
#define LXBRIDGE_CLIENTS_XMP_XMP_CLIENT_H_

#include "clients/xmp/xmp_abi.h"

// Starts the toolkit with the broker's lookup procedure; true when it says that it has started. The broker client is
// started before and on its own. Each start is paired with one stop, before the broker client's shutdown.
bool StartXMPClient(TALLookupProc lookup) noexcept;
void StopXMPClient() noexcept;

// The toolkit's procedures and the methods of an object, bound on first use and again when the broker's unregister
// count has changed; ask anew for each call. CTALError (empty message, component "TAL") when the toolkit lacks a
// procedure; std::logic_error "ZXMPMeta Client initialization failure" (for the utilities "ZXMPUtils ...") when the
// broker client is not started. The object must not be null: CTALError "CXMPMeta object is invalid" (component "XMP",
// id 3). An object whose methods cannot be had: CTALError "invalid container".
const XMPMetaStatics& XMPStatics();
const XMPUtilsStatics& XMPUtilsTable();
const XMPMetaMethods& XMPMethodsOf(XMPObjectRef object);
// The methods that a toolkit may lack: a null slot. An object of a toolkit that has no warnings, for example, gives
// none.
const XMPMetaOptionalMethods& XMPOptionalMethodsOf(XMPObjectRef object);

#endif  // LXBRIDGE_CLIENTS_XMP_XMP_CLIENT_H_
