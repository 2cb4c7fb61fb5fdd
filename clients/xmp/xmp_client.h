// The XMP toolkit's start and stop, and the tables of its static interfaces.
#ifndef LXBRIDGE_CLIENTS_XMP_XMP_CLIENT_H_
#define LXBRIDGE_CLIENTS_XMP_XMP_CLIENT_H_

#include "clients/xmp/xmp_abi.h"

// Starts the toolkit with the broker's lookup procedure; true if the toolkit reports that it has started. The broker
// client must be started before, separately. Each start is paired with one stop, before the broker client's shutdown.
bool StartXMPClient(TALLookupProc lookup) noexcept;
void StopXMPClient() noexcept;

// The toolkit's procedures and the methods of an object, bound at the first use and again when the broker's unregister
// count has changed. Call these again for each use. They raise CTALError (empty message, component "TAL") if the
// toolkit lacks a procedure; std::logic_error "ZXMPMeta Client initialization failure" (for the utilities "ZXMPUtils
// ...") if the broker client is not started; CTALError "CXMPMeta object is invalid" (component "XMP", id 3) if the
// object is null; and CTALError "invalid container" if its methods are missing.
const XMPMetaStatics& XMPStatics();
const XMPUtilsStatics& XMPUtilsTable();
const XMPMetaMethods& XMPMethodsOf(XMPObjectRef object);
// The methods that a toolkit may lack; a missing one is null. For example, an object of a toolkit without warnings
// reports none.
const XMPMetaOptionalMethods& XMPOptionalMethodsOf(XMPObjectRef object);

#endif  // LXBRIDGE_CLIENTS_XMP_XMP_CLIENT_H_
