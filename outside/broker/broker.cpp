// The broker's entry point, and the interfaces that it registers for itself.
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

// Any number of threads may call the broker at once.
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

// Can be called again after a try that ran out of memory: procedures that are registered already are no error.
bool RegisterOwnInterfaces() noexcept {
  return RegisterAll(kTALInterface, kTALCoreProcNames, kCoreProcs) &&
         RegisterAll(kTALContainerInterface, kTALContainerProcNames, kContainerProcs) &&
         RegisterAll(kTALErrorInterface, kTALErrorProcNames, kErrorProcs) &&
         RegisterAll(kTALStringInterface, kTALStringProcNames, kStringProcs) &&
         RegisterAll(kTALMemoryInterface, kTALMemoryProcNames, kMemoryProcs);
}

}  // namespace

// The broker comes to life with the first call, so loading the library costs nothing. Its own interfaces are registered
// once and are like any other from then on: one that was unregistered stays so.
extern "C" TALLookupProc TALOrdinal5() {
  static std::mutex mutex;
  static constinit bool isRegistered = false;
  const std::lock_guard lock(mutex);
  if (!isRegistered) isRegistered = RegisterOwnInterfaces();
  return isRegistered ? FindProc : nullptr;
}
