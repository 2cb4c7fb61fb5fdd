// The interface that LxBridge registers with the broker between LxInterchangeInit and LxInterchangeTerm, for clients of
// hosts (LxHost): functions beyond the five exports. Hosts look it up by name and work without it if it is missing. It
// raises no exceptions.
#ifndef LXBRIDGE_API_INTERCHANGE_ABI_H_
#define LXBRIDGE_API_INTERCHANGE_ABI_H_

#include <cstddef>
#include <cstdint>

#include "api/include/lxbridge/lxbridge.h"
#include "clients/broker/broker_abi.h"
#include "kit/base/read_outcome.h"

inline constexpr const char kLxInterchangeInterface[] = "LxInterchangeInterface";

// The outcome of importing one file.
struct LxImportOutcome {
  LxReadOutcome read;        // Whether the file was opened and read to the end, and memory sufficed.
  std::int32_t status;       // The reader's result: 0; -6, an unreadable header; and so on.
  std::int32_t fileKind;     // As detected; 0: unknown, or a kind that is not read.
  std::int32_t hasMetadata;  // 1: there is at least one display item.
  std::int32_t packetKept;   // 1: an XMP packet was parsed completely. 0: there was none, or it was damaged.
};

struct LxInterchangeProcs {
  // REQUIRES: a live handle.
  void (*getOutcome)(LxInterchangeHandle handle, LxImportOutcome* outcome);
  // As LxInterchangeNew for the bytes of a file. They are not copied and must not change until the handle is deleted.
  // Bytes after the first 2^31 - 1 are ignored, as in a file. 0; -2: no memory; -8: the broker or the toolkit refused.
  // `bytes` may be null if `length` is 0.
  std::int32_t (*newFromMemory)(const void* bytes, std::size_t length, LxInterchangeHandle* handle);
  // Frees the memory that the library keeps for the calling thread's next file.
  void (*releaseThreadMemory)();
};
inline constexpr TALProcName kLxInterchangeProcNames[] = {
    {"GetOutcome", "LxInterchange_GetOutcome"},
    {"NewFromMemory", "LxInterchange_NewFromMemory"},
    {"ReleaseThreadMemory", "LxInterchange_ReleaseThreadMemory"},
};
static_assert(sizeof(LxInterchangeProcs) == sizeof(TALProc) * (sizeof(kLxInterchangeProcNames) / sizeof(TALProcName)));

#endif  // LXBRIDGE_API_INTERCHANGE_ABI_H_
