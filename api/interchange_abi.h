// The interface that LxBridge registers with the broker from LxInterchangeInit to LxInterchangeTerm, for hosts' clients
// (LxHost): what the five exported functions have no place for. Like all interfaces of the broker it is looked up by
// name; a host that does not find it goes without. Nothing raises across it.
#ifndef LXBRIDGE_API_INTERCHANGE_ABI_H_
#define LXBRIDGE_API_INTERCHANGE_ABI_H_

#include <cstddef>
#include <cstdint>

#include "api/include/lxbridge/lxbridge.h"
#include "clients/broker/broker_abi.h"
#include "kit/base/read_outcome.h"

inline constexpr const char kLxInterchangeInterface[] = "LxInterchangeInterface";

// How the import of one file went.
struct LxImportOutcome {
  LxReadOutcome read;        // Whether the file was opened and read, and memory was there for all of it.
  std::int32_t status;       // What the reader returned: 0; -6, a header that it cannot read; and so on.
  std::int32_t fileKind;     // As detected; 0: of no known kind.
  std::int32_t hasMetadata;  // 1: the readers found an item that people look at.
  std::int32_t packetKept;   // 1: an XMP packet was parsed whole. 0: there was none, or it broke off.
};

struct LxInterchangeProcs {
  // REQUIRES: a handle that lives.
  void (*getOutcome)(LxInterchangeHandle handle, LxImportOutcome* outcome);
  // As LxInterchangeNew for a file of these bytes, of which nothing is copied: they stay as they are until the handle
  // is deleted. Of more than 2^31 - 1 bytes the rest is not looked at, as in a file. 0; -2: no memory; -8: the broker
  // or the toolkit refused. Null bytes are allowed where there are none.
  std::int32_t (*newFromMemory)(const void* bytes, std::size_t length, LxInterchangeHandle* handle);
  // Gives back the memory that the library keeps for the calling thread's next file.
  void (*releaseThreadMemory)();
};
inline constexpr TALProcName kLxInterchangeProcNames[] = {
    {"GetOutcome", "LxInterchange_GetOutcome"},
    {"NewFromMemory", "LxInterchange_NewFromMemory"},
    {"ReleaseThreadMemory", "LxInterchange_ReleaseThreadMemory"},
};
static_assert(sizeof(LxInterchangeProcs) == sizeof(TALProc) * (sizeof(kLxInterchangeProcNames) / sizeof(TALProcName)));

#endif  // LXBRIDGE_API_INTERCHANGE_ABI_H_
