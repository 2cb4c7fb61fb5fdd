// The state of the broker client: start and stop, and the broker's own interfaces.
#include "clients/broker/broker_client.h"

#include <iterator>
#include <new>

namespace TAL_T_NMT {

namespace {

enum class Phase {
  kStopped,  // Not started, or failed before the broker was bound.
  kBound,    // The broker's interfaces are bound: from here on a missing procedure raises an error.
  kStarted,
};

// The count used without a broker. It never changes and is not 0.
constinit const std::uint32_t kNoBrokerCount = 1;

constinit Phase phase = Phase::kStopped;
constinit TALLookupProc lookUp = nullptr;
constinit std::uint32_t primaryInstanceOffset = 0;
constinit TALClientObject* clientObjects = nullptr;

constinit TALInterfaceTable<TALContainerProcs, std::size(kTALContainerProcNames)> containerTable(
    kTALContainerInterface, kTALContainerProcNames);
constinit TALInterfaceTable<TALErrorProcs, std::size(kTALErrorProcNames)> errorTable(kTALErrorInterface,
                                                                                     kTALErrorProcNames);
constinit TALInterfaceTable<TALStringProcs, std::size(kTALStringProcNames)> stringTable(kTALStringInterface,
                                                                                        kTALStringProcNames);
constinit TALInterfaceTable<TALMemoryProcs, std::size(kTALMemoryProcNames)> memoryTable(kTALMemoryInterface,
                                                                                        kTALMemoryProcNames);

// The broker's two core errors as exceptions, set at start and cleared at shutdown. As plain variables they would
// register destructors at load time, which run at exit, possibly after the broker is gone.
class StaticErrors {
 public:
  // Whether the first core error exists.
  bool Make(const TALErrorProcs& procs) noexcept {
    for (std::uint32_t index = 0; index < 2; ++index) ::new (At(index)) CTALError(procs.getCoreError(index));
    made_ = true;
    return At(0)->Reference() != nullptr;
  }

  void Empty() noexcept {
    if (!made_) return;
    made_ = false;
    for (std::uint32_t index = 0; index < 2; ++index) At(index)->~CTALError();
  }

 private:
  CTALError* At(std::uint32_t index) noexcept {
    return std::launder(reinterpret_cast<CTALError*>(storage_ + index * sizeof(CTALError)));
  }

  alignas(CTALError) unsigned char storage_[2 * sizeof(CTALError)] = {};
  bool made_ = false;
};
constinit StaticErrors staticErrors;

// For start-up and for errors: a missing procedure gives false instead of an exception.
bool LookUpAll(const char* interfaceName, const TALProcName* names, std::size_t count, TALProc* slots) noexcept {
  if (!lookUp) return false;
  for (std::size_t i = 0; i < count; ++i) {
    slots[i] = lookUp(interfaceName, names[i].shortName, names[i].qualifiedName);
    if (!slots[i]) return false;
  }
  return true;
}

void ForgetBroker() noexcept {
  phase = Phase::kStopped;
  staticErrors.Empty();
  containerTable.Forget();
  errorTable.Forget();
  stringTable.Forget();
  memoryTable.Forget();
  primaryInstanceOffset = 0;
  lookUp = nullptr;
  unregisterCountAddress = &kNoBrokerCount;
}

bool FindCore() noexcept {
  TALProc slots[std::size(kTALCoreProcNames)];
  if (!LookUpAll(kTALInterface, kTALCoreProcNames, std::size(slots), slots)) return false;
  TALCoreProcs core;
  std::memcpy(&core, slots, sizeof core);
  const std::uint32_t* address = core.getUnregisterCountAddr();
  if (!address) return false;
  unregisterCountAddress = address;
  return true;
}

bool BindBroker() {
  const bool hasContainers = containerTable.Bind(LookUpAll);
  if (hasContainers) primaryInstanceOffset = containerTable.Bound().getOffsetToPrimaryInstance();
  // Raising an error requires the error interface. So a missing container interface is raised only if the error
  // interface exists; if both are missing, the start returns false, as for the error interface alone.
  if (!errorTable.Bind(LookUpAll)) return false;
  if (!hasContainers) throw CTALError("Missing Interface", "TAL", 0);
  if (!staticErrors.Make(errorTable.Bound())) return false;
  if (!stringTable.Bind(LookUpAll)) return false;
  if (!memoryTable.Bind(LookUpAll)) throw CTALError("Missing Interface", "TAL", 0);
  return true;
}

bool StartObject(const TALClientObject& object) noexcept {
  try {
    return object.start();
  } catch (...) {
    return false;  // In any case, the start reports a client object that did not start.
  }
}

bool StartClientObjects() noexcept {
  for (TALClientObject* object = clientObjects; object; object = object->next) {
    if (StartObject(*object)) continue;
    for (TALClientObject* started = clientObjects; started != object; started = started->next) started->stop();
    return false;
  }
  return true;
}

}  // namespace

constinit const std::uint32_t* unregisterCountAddress = &kNoBrokerCount;
std::mutex tableMutex;

bool StartBrokerClient(TALLookupProc lookup) {
  if (phase == Phase::kStarted) return true;
  if (!lookup) return false;
  ForgetBroker();  // A failed start may have left tables.
  lookUp = lookup;
  // A failed start keeps what it has bound: an error that it raised, or that a client object kept, must still be
  // released. The phase prevents any other use.
  if (!FindCore() || !BindBroker()) return false;
  phase = Phase::kBound;
  if (!StartClientObjects()) {
    phase = Phase::kStopped;
    return false;
  }
  phase = Phase::kStarted;
  return true;
}

void ShutDownBrokerClient() noexcept {
  if (phase == Phase::kStarted) {
    for (TALClientObject* object = clientObjects; object; object = object->next) object->stop();
  }
  ForgetBroker();
}

bool BrokerClientStarted() noexcept {
  return phase == Phase::kStarted;
}

void RegisterClientObject(TALClientObject* object) noexcept {
  object->next = clientObjects;
  clientObjects = object;
}

bool BindInterface(const char* interfaceName, const TALProcName* names, std::size_t count, TALProc* slots) {
  if (phase == Phase::kStopped) return false;
  if (!LookUpAll(interfaceName, names, count, slots)) throw CTALError("", "TAL", 0);
  return true;
}

const TALContainerProcs* ContainerProcs() {
  return phase == Phase::kStopped ? nullptr : containerTable.Get();
}
const TALStringProcs* StringProcs() {
  return phase == Phase::kStopped ? nullptr : stringTable.Get();
}
const TALMemoryProcs* MemoryProcs() {
  return phase == Phase::kStopped ? nullptr : memoryTable.Get();
}

const TALErrorProcs* ErrorProcs() noexcept {
  if (!errorTable.IsBound() && !errorTable.Bind(LookUpAll)) return nullptr;
  return &errorTable.Bound();
}

std::uint32_t PrimaryInstanceOffset() noexcept {
  return primaryInstanceOffset;
}

void ReleaseContainer(TALContainerRef container) noexcept {
  if (!container) return;
  try {
    if (const TALContainerProcs* procs = ContainerProcs()) ReleaseError(procs->release(container));
  } catch (const CTALError&) {
    // The container interface is gone, and with it all containers.
  }
}

void ReleaseError(TALErrorRef error) noexcept {
  const TALErrorProcs* procs = error ? ErrorProcs() : nullptr;
  if (procs) procs->release(error);
}

}  // namespace TAL_T_NMT
