// The toolkit client's table of object methods; for the files of this folder.
#ifndef LXBRIDGE_CLIENTS_XMP_XMP_TABLES_H_
#define LXBRIDGE_CLIENTS_XMP_XMP_TABLES_H_

#include <iterator>

#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_abi.h"

using XMPMethodTables = TAL_T_NMT::TALMethodTables<XMPMetaMethods, std::size(kXMPMetaMethodNames)>;
extern constinit XMPMethodTables xmpMethodTables;
using XMPOptionalMethodTables =
    TAL_T_NMT::TALMethodTables<XMPMetaOptionalMethods, std::size(kXMPMetaOptionalMethodNames),
                               TAL_T_NMT::MethodNeed::kOptional>;
extern constinit XMPOptionalMethodTables xmpOptionalMethodTables;

#endif  // LXBRIDGE_CLIENTS_XMP_XMP_TABLES_H_
