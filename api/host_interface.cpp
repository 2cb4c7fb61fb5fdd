#include "api/host_interface.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <iterator>
#include <memory>
#include <new>

#include "api/interchange.h"
#include "api/interchange_abi.h"
#include "clients/broker/broker_client.h"
#include "kit/base/kept_memory.h"

namespace {

void GetOutcome(LxInterchangeHandle handle, LxImportOutcome* outcome) {
  *outcome = handle->interchange->Outcome();
}

std::int32_t NewFromMemory(const void* bytes, std::size_t length, LxInterchangeHandle* handle) {
  try {
    auto cell = std::make_unique<LxInterchangeCell>();
    cell->interchange = std::make_unique<LxInterchange>(static_cast<const std::uint8_t*>(bytes), length);
    *handle = cell.release();
    return kLxOk;
  } catch (const std::bad_alloc&) {
    return kLxOutOfMemory;
  } catch (const std::exception&) {
    return kLxInternalError;
  }
}

void ReleaseThreadMemory() {
  LxReleaseThreadMemory();
}

constinit TALUnregisterInterfaceProc unregisterInterface = nullptr;  // Null: nothing is registered.

}  // namespace

void RegisterHostInterface(TALLookupProc lookup) noexcept {
  if (lookup == nullptr) return;
  const auto find = [lookup](const char* name) { return lookup(kTALInterface, name, name); };
  const auto enter = reinterpret_cast<TALRegisterProcAddressProc>(find("TALRegisterProcAddress"));
  const auto takeBack = reinterpret_cast<TALUnregisterInterfaceProc>(find("TALUnregisterInterface"));
  if (enter == nullptr || takeBack == nullptr) return;
  const TALProc procs[] = {reinterpret_cast<TALProc>(GetOutcome), reinterpret_cast<TALProc>(NewFromMemory),
                           reinterpret_cast<TALProc>(ReleaseThreadMemory)};
  static_assert(std::size(procs) == std::size(kLxInterchangeProcNames));
  for (std::size_t at = 0; at < std::size(procs); ++at) {
    const TALProcName& name = kLxInterchangeProcNames[at];
    const TALErrorRef error = enter(kLxInterchangeInterface, name.shortName, name.qualifiedName, procs[at]);
    if (error != nullptr) {
      TAL_T_NMT::ReleaseError(error);
      // An incomplete interface is useless. If another copy of the library has registered its own, the first procedure
      // is refused, and the other's interface stays.
      UnregisterHostInterface();
      return;
    }
    unregisterInterface = takeBack;
  }
}

void UnregisterHostInterface() noexcept {
  if (unregisterInterface == nullptr) return;
  TAL_T_NMT::ReleaseError(unregisterInterface(kLxInterchangeInterface));
  unregisterInterface = nullptr;
}
