// The client of the interface broker: start and stop, the broker's own interfaces, and the tables that it and other
// clients bind through the broker. Each process image has one. One thread starts it and shuts it down while no other
// uses it; between the two, any number of threads may call everything else here.
#ifndef LXBRIDGE_CLIENTS_BROKER_BROKER_CLIENT_H_
#define LXBRIDGE_CLIENTS_BROKER_BROKER_CLIENT_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <new>

#include "clients/broker/broker_abi.h"
#include "clients/broker/tal_error.h"

namespace TAL_T_NMT {

// --- start and stop -------------------------------------------------------------------------------------------------

// True if started, also if it already was. False: null lookup, a missing core procedure, error interface or string
// interface, no core error, or a client object that did not start. Raises CTALError "Missing Interface" (component
// "TAL") if the container or the memory interface is missing. May be called again after a failure.
bool StartBrokerClient(TALLookupProc lookup);

// Stops the client objects and drops everything that came from the broker. Does nothing if not started.
void ShutDownBrokerClient() noexcept;

bool BrokerClientStarted() noexcept;

// A part of another client that starts and stops with the broker client. Registered by a static initialiser and never
// unregistered; the last one registered starts first. `start` fails by false or by an exception; `stop` drops every
// table bound through the broker. A failed start stops the objects already started.
struct TALClientObject {
  bool (*start)();
  void (*stop)() noexcept;
  TALClientObject* next = nullptr;
};
void RegisterClientObject(TALClientObject* object) noexcept;

// --- the broker's interfaces ----------------------------------------------------------------------------------------
//
// Null while the client is not started. Bound again when the broker's unregister count has changed; raises CTALError
// with an empty message and component "TAL" if a procedure is then missing. Call these again for each use: that costs a
// comparison.

const TALContainerProcs* ContainerProcs();
const TALStringProcs* StringProcs();
const TALMemoryProcs* MemoryProcs();
// Never raises. Works as soon as start-up has bound it, since start-up itself may raise errors. Null if the interface
// is gone.
const TALErrorProcs* ErrorProcs() noexcept;

// Offset in bytes of the instance pointer in a container.
std::uint32_t PrimaryInstanceOffset() noexcept;

// Release a container or an error without raising; for destructors and failure paths. Do nothing for null and after
// shutdown.
void ReleaseContainer(TALContainerRef container) noexcept;
void ReleaseError(TALErrorRef error) noexcept;

// --- tables bound through the broker --------------------------------------------------------------------------------

// The broker's unregister count. Without a broker it is a word of this client that is not 0, so that tables that were
// dropped (stored count 0) never look bound, and using a table takes one comparison.
extern const std::uint32_t* unregisterCountAddress;
inline std::uint32_t UnregisterCount() noexcept {
  return __atomic_load_n(unregisterCountAddress, __ATOMIC_ACQUIRE);
}

// Held while a table stores procedures that have been looked up, and while the list of object tables grows. No lookup
// and no exception happens while it is held.
extern std::mutex tableMutex;

// Procedures, and the unregister count at the time they were bound. Threads that find the count current read the
// procedures without the lock. Rebinding usually finds the same procedures and then does not write them; a host that
// replaces an interface while threads use it may see either.
template <typename Procs>
class TALBoundProcs {
 public:
  bool IsBound() const noexcept { return boundAt_.load(std::memory_order_acquire) == UnregisterCount(); }
  const Procs& Get() const noexcept { return procs_; }
  void Set(const TALProc* slots, std::uint32_t count) noexcept {
    const std::lock_guard lock(tableMutex);
    if (std::memcmp(&procs_, slots, sizeof procs_) != 0) std::memcpy(&procs_, slots, sizeof procs_);
    boundAt_.store(count, std::memory_order_release);
  }
  void Forget() noexcept { boundAt_.store(0, std::memory_order_relaxed); }

 private:
  Procs procs_{};
  std::atomic<std::uint32_t> boundAt_{0};
};

// Fills the slots with the interface's procedures. False if the client is not started; raises CTALError (empty message,
// component "TAL") if a procedure is missing.
bool BindInterface(const char* interfaceName, const TALProcName* names, std::size_t count, TALProc* slots);

// Fills the slots with the methods of the object. Raises CTALError "invalid container" if one is missing; a missing
// optional method gives null.
enum class MethodNeed { kRequired, kOptional };
void BindMethods(TALContainerRef object, const TALProcName* names, std::size_t count, TALProc* slots, MethodNeed need);

// The kind of the object; raises CTALError "invalid container" if it has none.
TALKindRef KindOf(TALContainerRef object);

// An interface's procedures, bound at the first use and again when the unregister count has changed. `Procs` is a
// struct of function pointers in the order of the names. Has static storage; nothing runs at load time.
template <typename Procs, std::size_t kCount>
class TALInterfaceTable {
  static_assert(sizeof(Procs) == kCount * sizeof(TALProc));

 public:
  constexpr TALInterfaceTable(const char* interfaceName, const TALProcName (&names)[kCount]) noexcept
      : interfaceName_(interfaceName), names_(names) {}

  // Null while the broker client is not started; raises as BindInterface does.
  const Procs* Get() {
    if (!procs_.IsBound()) [[unlikely]] {
      if (!Bind(BindInterface)) return nullptr;
    }
    return &procs_.Get();
  }

  template <typename Binder>
  bool Bind(Binder binder) {
    const std::uint32_t count = UnregisterCount();
    TALProc slots[kCount];
    if (!binder(interfaceName_, names_, kCount, slots)) return false;
    procs_.Set(slots, count);
    return true;
  }

  bool IsBound() const noexcept { return procs_.IsBound(); }
  const Procs& Bound() const noexcept { return procs_.Get(); }
  void Forget() noexcept { procs_.Forget(); }

 private:
  const char* interfaceName_;
  const TALProcName* names_;
  TALBoundProcs<Procs> procs_;
};

// The methods of objects, one table for each kind, in the broker's memory. A table keeps its address until Forget and
// is rebound in place when the unregister count has changed.
template <typename Procs, std::size_t kCount, MethodNeed kNeed = MethodNeed::kRequired>
class TALMethodTables {
  static_assert(sizeof(Procs) == kCount * sizeof(TALProc));

 public:
  constexpr explicit TALMethodTables(const TALProcName (&names)[kCount]) noexcept : names_(names) {}

  // Whether `table` is current and is the table of the first kind. In practice there is only one kind, so this avoids a
  // call of the broker.
  bool IsCurrent(const Procs* table) const noexcept {
    const Entry* first = first_.load(std::memory_order_acquire);
    return first && table == &first->procs.Get() && first->procs.IsBound();
  }

  // REQUIRES: the broker client is started. Raises CTALError "invalid container" if there is no table for the object.
  const Procs& Of(TALContainerRef object) {
    const TALKindRef kind = KindOf(object);
    if (Entry* entry = Find(kind)) {
      if (!entry->procs.IsBound()) Bind(object, entry);
      return entry->procs.Get();
    }
    const TALMemoryProcs* memory = MemoryProcs();
    void* block = memory ? memory->alloc(sizeof(Entry)) : nullptr;
    if (!block) throw CTALError("invalid container", "", 0);
    Entry* entry = ::new (block) Entry{{}, kind, nullptr};
    try {
      Bind(object, entry);
    } catch (...) {
      memory->release(block);
      throw;
    }
    Entry* const kept = Add(entry);
    if (kept != entry) memory->release(block);
    return kept->procs.Get();
  }

  // Frees the tables. Called when a client object stops, while the broker's memory interface still exists.
  void Forget() noexcept {
    const TALMemoryProcs* memory = nullptr;
    try {
      memory = MemoryProcs();
    } catch (...) {
      // The interface is gone, so the blocks cannot be freed.
    }
    Entry* entry = first_.exchange(nullptr, std::memory_order_relaxed);
    while (entry) {
      Entry* const next = entry->next.load(std::memory_order_relaxed);
      if (memory) memory->release(entry);
      entry = next;
    }
  }

 private:
  struct Entry {
    TALBoundProcs<Procs> procs;
    TALKindRef kind;
    std::atomic<Entry*> next;
  };

  Entry* Find(TALKindRef kind) const noexcept {
    Entry* entry = first_.load(std::memory_order_acquire);
    while (entry && entry->kind != kind) entry = entry->next.load(std::memory_order_acquire);
    return entry;
  }

  // Adds the entry, or returns the one that another thread has added for the kind.
  Entry* Add(Entry* entry) noexcept {
    const std::lock_guard lock(tableMutex);
    std::atomic<Entry*>* link = &first_;
    while (Entry* other = link->load(std::memory_order_relaxed)) {
      if (other->kind == entry->kind) return other;
      link = &other->next;
    }
    link->store(entry, std::memory_order_release);
    return entry;
  }

  void Bind(TALContainerRef object, Entry* entry) {
    const std::uint32_t count = UnregisterCount();
    TALProc slots[kCount];
    BindMethods(object, names_, kCount, slots, kNeed);
    entry->procs.Set(slots, count);
  }

  const TALProcName* names_;
  std::atomic<Entry*> first_ = nullptr;
};

}  // namespace TAL_T_NMT

#endif  // LXBRIDGE_CLIENTS_BROKER_BROKER_CLIENT_H_
