// The interface broker as tests call it: all of its procedures, looked up once.
#ifndef LXBRIDGE_TESTS_SUPPORT_BROKER_PROCS_H_
#define LXBRIDGE_TESTS_SUPPORT_BROKER_PROCS_H_

#include <cstring>
#include <string>

#include "clients/broker/broker_abi.h"

template <typename Procs, std::size_t kCount>
Procs LookUpAll(TALLookupProc lookUp, const char* interfaceName, const TALProcName (&names)[kCount]) {
  TALProc slots[kCount];
  for (std::size_t i = 0; i < kCount; ++i) {
    slots[i] = lookUp(interfaceName, names[i].shortName, names[i].qualifiedName);
  }
  Procs procs;
  static_assert(sizeof procs == sizeof slots);
  std::memcpy(&procs, slots, sizeof procs);
  return procs;
}

struct BrokerProcs {
  explicit BrokerProcs(TALLookupProc lookUp)
      : core(LookUpAll<TALCoreProcs>(lookUp, kTALInterface, kTALCoreProcNames)),
        containers(LookUpAll<TALContainerProcs>(lookUp, kTALContainerInterface, kTALContainerProcNames)),
        errors(LookUpAll<TALErrorProcs>(lookUp, kTALErrorInterface, kTALErrorProcNames)),
        strings(LookUpAll<TALStringProcs>(lookUp, kTALStringInterface, kTALStringProcNames)),
        memory(LookUpAll<TALMemoryProcs>(lookUp, kTALMemoryInterface, kTALMemoryProcNames)) {}

  // The message of the error, which is released with that; "" for success.
  std::string Take(TALErrorRef error) const {
    if (!error) return "";
    std::string message = errors.getMessageText(error);
    errors.release(error);
    return message;
  }

  TALCoreProcs core;
  TALContainerProcs containers;
  TALErrorProcs errors;
  TALStringProcs strings;
  TALMemoryProcs memory;
};

#endif  // LXBRIDGE_TESTS_SUPPORT_BROKER_PROCS_H_
