// The interface broker client: its start and stop, the broker's own interfaces, and the tables that it and other
// clients bind through the broker. One per process image. It is started and shut down by one thread while no other uses
// it; between the two any number of threads may call everything else here.
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

// True when started, also when it was already. False: null lookup, a core procedure or the error or string interface
// missing, no core error, or a client object that did not start. Raises CTALError "Missing Interface" (component "TAL")
// when the container or the memory interface is missing. After a failure it can be started again.
bool StartBrokerClient(TALLookupProc lookup);

// Stops the client objects and forgets everything that came from the broker. Nothing happens when it is not started.
void ShutDownBrokerClient() noexcept;

bool BrokerClientStarted() noexcept;

// A part of another client that starts and stops with the broker client. Registered by a static initialiser, never
// unregistered; the latest registered is started first. `start` fails by false or by an exception, `stop` forgets every
// table bound through the broker. A start-up that fails stops those that had started.
struct TALClientObject {
  bool (*start)();
  void (*stop)() noexcept;
  TALClientObject* next = nullptr;
};
void RegisterClientObject(TALClientObject* object) noexcept;

// --- the broker's interfaces ----------------------------------------------------------------------------------------
//
// Null while the client is not started. Bound again when the broker's unregister count has changed, and then CTALError
// with an empty message and component "TAL" when a procedure is gone. Ask anew for each call: it costs a comparison.

const TALContainerProcs* ContainerProcs();
const TALStringProcs* StringProcs();
const TALMemoryProcs* MemoryProcs();
// Never raises, and works from the moment that start-up has bound it, since errors are raised during start-up too. Null
// when the interface is gone.
const TALErrorProcs* ErrorProcs() noexcept;

// Bytes from a container reference to its pointer to the instance.
std::uint32_t PrimaryInstanceOffset() noexcept;

// Release a container or an error without raising; for destructors and failure paths. Nothing
// happens for null and after shutdown.
void ReleaseContainer(TALContainerRef container) noexcept;
void ReleaseError(TALErrorRef error) noexcept;

// --- tables bound through the broker --------------------------------------------------------------------------------

// The broker's unregister count while there is a broker. Without one it is a word of ours that is not 0, so that tables
// that were forgotten (kept count 0) never look bound, and a table needs one comparison per use.
extern const std::uint32_t* unregisterCountAddress;
inline std::uint32_t UnregisterCount() noexcept {
  return __atomic_load_n(unregisterCountAddress, __ATOMIC_ACQUIRE);
}

// Held while a table takes over procedures that have been looked up, and while the list of an object's tables grows.
// Nothing is looked up, and nothing raised, while it is held.
extern std::mutex tableMutex;

// Procedures and the unregister count that they were bound at. Threads that find the count up to date read the
// procedures without the lock. Binding again mostly finds the same procedures, and then does not write them: a host
// that replaces an interface while threads use it has to expect either.
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

// Fills the slots with the interface's procedures. False while the client is not started, CTALError (empty message,
// component "TAL") when it is and a procedure is missing.
bool BindInterface(const char* interfaceName, const TALProcName* names, std::size_t count, TALProc* slots);

// Fills the slots with the methods of the object. CTALError "invalid container" when one cannot be had; an optional one
// that the object lacks is null.
enum class MethodNeed { kRequired, kOptional };
void BindMethods(TALContainerRef object, const TALProcName* names, std::size_t count, TALProc* slots, MethodNeed need);

// The kind of the object; CTALError "invalid container" when it has none.
TALKindRef KindOf(TALContainerRef object);

// An interface's procedures, bound on first use and again when the unregister count has changed. `Procs` is a struct of
// function pointers in the order of the names. Has static storage; nothing runs at load.
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

// The methods of objects, one table for each kind of object, in the broker's memory. A table keeps its address until
// Forget and is bound again in place when the unregister count has changed.
template <typename Procs, std::size_t kCount, MethodNeed kNeed = MethodNeed::kRequired>
class TALMethodTables {
  static_assert(sizeof(Procs) == kCount * sizeof(TALProc));

 public:
  constexpr explicit TALMethodTables(const TALProcName (&names)[kCount]) noexcept : names_(names) {}

  // Whether `table` is the table of the kind that was met first, and up to date. The one kind that there is in practice
  // costs no call of the broker this way.
  bool IsCurrent(const Procs* table) const noexcept {
    const Entry* first = first_.load(std::memory_order_acquire);
    return first && table == &first->procs.Get() && first->procs.IsBound();
  }

  // The broker client must be started. CTALError "invalid container" when there is no table for the object.
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

  // Frees the tables. Part of a client object's stop, while the broker's memory interface can still be had.
  void Forget() noexcept {
    const TALMemoryProcs* memory = nullptr;
    try {
      memory = MemoryProcs();
    } catch (...) {
      // The interface is gone, and with it the way to give the blocks back.
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

  // The entry, or the one that another thread has added for the kind before.
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
