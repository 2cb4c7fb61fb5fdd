// The toolkit's interfaces and methods as bound by this client, and its client object.
#include "clients/xmp/xmp_tables.h"

#include <stdexcept>

#include "clients/xmp/xmp_client.h"

using TAL_T_NMT::BrokerClientStarted;
using TAL_T_NMT::CTALError;
using TAL_T_NMT::TALClientObject;
using TAL_T_NMT::TALInterfaceTable;

constinit XMPMethodTables xmpMethodTables(kXMPMetaMethodNames);
constinit XMPOptionalMethodTables xmpOptionalMethodTables(kXMPMetaOptionalMethodNames);

namespace {

constinit TALInterfaceTable<XMPMetaStatics, std::size(kXMPMetaStaticNames)> metaTable(kXMPMetaStaticInterface,
                                                                                      kXMPMetaStaticNames);
constinit TALInterfaceTable<XMPUtilsStatics, std::size(kXMPUtilsStaticNames)> utilsTable(kXMPUtilsStaticInterface,
                                                                                         kXMPUtilsStaticNames);

[[noreturn]] void ThrowMetaNotInitialised() {
  throw std::logic_error("ZXMPMeta Client initialization failure");
}

void RequireObject(XMPObjectRef object) {
  if (!BrokerClientStarted()) ThrowMetaNotInitialised();
  if (!object) throw CTALError("CXMPMeta object is invalid", "XMP", 3);
}

void Forget() noexcept {
  metaTable.Forget();
  utilsTable.Forget();
  xmpMethodTables.Forget();
  xmpOptionalMethodTables.Forget();
}

// The toolkit is started after the broker client, so there is nothing to bind yet.
bool Start() {
  Forget();
  return true;
}

constinit TALClientObject clientObject{Start, Forget};

// The only code of the library that runs at load time: it inserts an element into a list. It is in this file because
// every use of the toolkit needs it, so no linker omits it.
[[maybe_unused]] const bool isRegistered = (TAL_T_NMT::RegisterClientObject(&clientObject), true);

}  // namespace

const XMPMetaStatics& XMPStatics() {
  if (const XMPMetaStatics* table = metaTable.Get()) return *table;
  ThrowMetaNotInitialised();
}

const XMPUtilsStatics& XMPUtilsTable() {
  if (const XMPUtilsStatics* table = utilsTable.Get()) return *table;
  throw std::logic_error("ZXMPUtils Client initialization failure");
}

const XMPMetaMethods& XMPMethodsOf(XMPObjectRef object) {
  RequireObject(object);
  return xmpMethodTables.Of(object);
}

const XMPMetaOptionalMethods& XMPOptionalMethodsOf(XMPObjectRef object) {
  RequireObject(object);
  return xmpOptionalMethodTables.Of(object);
}
