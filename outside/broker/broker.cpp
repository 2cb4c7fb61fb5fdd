// The broker's entry point and its own interfaces.
#include <cstring>
#include <iterator>
#include <mutex>

#include "clients/broker/broker_abi.h"
#include "outside/broker/atoms.h"
#include "outside/broker/containers.h"
#include "outside/broker/errors.h"
#include "outside/broker/memory.h"
#include "outside/broker/registry.h"

namespace {

// This broker has no host to report to, so it only releases the error.
void ReportError(TALErrorRef error) noexcept {
  ReleaseBrokerError(error);
}

// The broker may be called by any number of threads at once.
std::uint8_t IsMultiThreaded() noexcept {
  return 1;
}

constinit const TALCoreProcs kCoreProcs = {RegisterProc, ReportError, UnregisterInterface, UnregisterCountAddress,
                                           IsMultiThreaded};

template <typename Procs, std::size_t kCount>
bool RegisterAll(const char* interfaceName, const TALProcName (&names)[kCount], const Procs& procs) noexcept {
  TALProc slots[kCount];
  std::memcpy(slots, &procs, sizeof slots);
  for (std::size_t i = 0; i < kCount; ++i) {
    if (TALErrorRef error = RegisterProc(interfaceName, names[i].shortName, names[i].qualifiedName, slots[i])) {
      ReleaseBrokerError(error);
      return false;
    }
  }
  return true;
}

// May be called again after running out of memory: procedures that are already registered are not an error.
bool RegisterOwnInterfaces() noexcept {
  return RegisterAll(kTALInterface, kTALCoreProcNames, kCoreProcs) &&
         RegisterAll(kTALContainerInterface, kTALContainerProcNames, kContainerProcs) &&
         RegisterAll(kTALErrorInterface, kTALErrorProcNames, kErrorProcs) &&
         RegisterAll(kTALStringInterface, kTALStringProcNames, kStringProcs) &&
         RegisterAll(kTALMemoryInterface, kTALMemoryProcNames, kMemoryProcs);
}

}  // namespace

// The broker is initialised by the first call, so loading the library costs nothing. Its own interfaces are registered
// once and then treated like any other: an interface that was unregistered stays unregistered.
extern "C" TALLookupProc TALOrdinal5() {
  static std::mutex mutex;
  static constinit bool isRegistered = false;
  const std::lock_guard lock(mutex);
  if (!isRegistered) isRegistered = RegisterOwnInterfaces();
  return isRegistered ? FindProc : nullptr;
}
