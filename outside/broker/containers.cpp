// Reference-counted objects: a container holds an instance of a kind, and the kind holds the methods.
#include "outside/broker/containers.h"

#include <atomic>
#include <cstring>
#include <mutex>
#include <new>

#include "outside/broker/atoms.h"
#include "outside/broker/errors.h"
#include "outside/broker/hash_table.h"

// Methods are added before containers of the kind exist, and then only looked up.
struct TALKindRecord {
  TALDestroyInstanceProc destroy;
  HashTable methods;

  const char* Name() const noexcept { return reinterpret_cast<const char*>(this + 1); }
};

struct TALContainerRecord {
  void* instance;  // First, so that the offset to it is 0.
  TALKindRef kind;
  std::atomic<std::uint32_t> count;
  HashNode living;
};

namespace {

struct Method : HashNode {
  TALStringAtom shortName;
  TALStringAtom qualifiedName;
  TALProc address;
};

// The live containers by address. A pointer that is not in the table is not a container. Everything that threads change
// for a container is on one cache line, and the kinds that they read do not change.
struct alignas(64) Living {
  std::mutex mutex;  // Guards the others.
  HashTable containers;
};
Living living;

std::uint64_t HashAddress(std::uint64_t hash, const void* address) noexcept {
  return HashWord(hash, reinterpret_cast<std::uintptr_t>(address));
}

// Both names are atoms, so a pair is found by two addresses.
std::uint64_t HashAtoms(TALStringAtom shortName, TALStringAtom qualifiedName) noexcept {
  return HashAddress(HashAddress(0, shortName), qualifiedName);
}

Method* FindMethod(const TALKindRecord& kind, TALStringAtom shortName, TALStringAtom qualifiedName) noexcept {
  return static_cast<Method*>(kind.methods.Find(HashAtoms(shortName, qualifiedName), [=](const HashNode& node) {
    const auto& method = static_cast<const Method&>(node);
    return method.shortName == shortName && method.qualifiedName == qualifiedName;
  }));
}

void FreeMethod(Method* method) noexcept {
  DeleteAtom(method->shortName);
  DeleteAtom(method->qualifiedName);
  BrokerFree(method);
}

void Destroy(TALContainerRef container) noexcept {
  const TALKindRef kind = container->kind;
  void* instance = container->instance;
  {
    const std::lock_guard lock(living.mutex);
    living.containers.Remove(&container->living);
  }
  BrokerFree(container);
  // Last, because the instance may own references to other containers.
  if (kind->destroy && instance) kind->destroy(instance);
}

bool HasContainers(TALKindRef kind) noexcept {
  const std::lock_guard lock(living.mutex);
  return living.containers.Any([=](const HashNode& node) {
    const char* start = reinterpret_cast<const char*>(&node) - offsetof(TALContainerRecord, living);
    return reinterpret_cast<const TALContainerRecord*>(start)->kind == kind;
  });
}

TALErrorRef NullArgument() noexcept {
  return NewBrokerError(BrokerErrorId::kNullArgument);
}

std::uint32_t GetOffsetToPrimaryInstance() noexcept {
  return offsetof(TALContainerRecord, instance);
}

TALErrorRef NewKind(TALKindRef* result, const char* name, TALDestroyInstanceProc destroy) noexcept {
  if (!result) return NullArgument();
  *result = nullptr;
  if (!name) return NullArgument();
  const std::size_t size = std::strlen(name) + 1;
  void* block = BrokerAlloc(sizeof(TALKindRecord) + size);
  if (!block) return OutOfMemoryError();
  auto* kind = ::new (block) TALKindRecord{destroy, {}};
  std::memcpy(static_cast<char*>(block) + sizeof *kind, name, size);
  *result = kind;
  return nullptr;
}

TALErrorRef DeleteKind(TALKindRef kind) noexcept {
  if (!kind) return NullArgument();
  if (HasContainers(kind)) return NewBrokerError(BrokerErrorId::kStillInUse);
  while (HashNode* method = kind->methods.TakeAny()) FreeMethod(static_cast<Method*>(method));
  kind->methods.Free();
  BrokerFree(kind);
  return nullptr;
}

// The result for a name pair that exists: null if it has the same procedure, as with interfaces.
TALErrorRef InsertMethod(TALKindRef kind, Method* method, bool* inserted) noexcept {
  if (!method->shortName || !method->qualifiedName) return OutOfMemoryError();
  if (const Method* found = FindMethod(*kind, method->shortName, method->qualifiedName)) {
    return found->address == method->address ? nullptr : NewBrokerError(BrokerErrorId::kAlreadyRegistered);
  }
  *inserted = kind->methods.Insert(method, HashAtoms(method->shortName, method->qualifiedName));
  return *inserted ? nullptr : OutOfMemoryError();
}

TALErrorRef AddMethod(TALKindRef kind, const char* shortName, const char* qualifiedName, TALProc procedure) noexcept {
  if (!kind || !shortName || !qualifiedName || !procedure) return NullArgument();
  void* block = BrokerAlloc(sizeof(Method));
  if (!block) return OutOfMemoryError();
  auto* method = ::new (block) Method{{}, NewAtom(shortName), NewAtom(qualifiedName), procedure};
  bool inserted = false;
  const TALErrorRef error = InsertMethod(kind, method, &inserted);
  if (!inserted) FreeMethod(method);
  return error;
}

TALErrorRef GetKindName(TALKindRef kind, const char** name) noexcept {
  if (!kind || !name) return NullArgument();
  *name = kind->Name();
  return nullptr;
}

TALErrorRef NewContainer(TALContainerRef* result, TALKindRef kind, void* instance) noexcept {
  if (!result) return NullArgument();
  *result = nullptr;
  if (!kind) return NullArgument();
  void* block = BrokerAlloc(sizeof(TALContainerRecord));
  if (!block) return OutOfMemoryError();
  auto* container = ::new (block) TALContainerRecord{instance, kind, 0, {}};
  {
    const std::lock_guard lock(living.mutex);
    if (!living.containers.Insert(&container->living, HashAddress(0, container))) {
      BrokerFree(block);
      return OutOfMemoryError();
    }
  }
  *result = container;
  return nullptr;
}

TALErrorRef AddRef(TALContainerRef container) noexcept {
  if (!container) return NullArgument();
  container->count.fetch_add(1, std::memory_order_relaxed);
  return nullptr;
}

TALErrorRef Release(TALContainerRef container) noexcept {
  if (!container) return NullArgument();
  // Also destroys a container with no references: a creator that failed to add a reference releases it like this.
  if (container->count.fetch_sub(1, std::memory_order_acq_rel) <= 1) Destroy(container);
  return nullptr;
}

TALErrorRef GetRefCount(TALContainerRef container, std::uint32_t* count) noexcept {
  if (!container || !count) return NullArgument();
  *count = container->count.load(std::memory_order_relaxed);
  return nullptr;
}

TALErrorRef GetKind(TALContainerRef container, TALKindRef* kind) noexcept {
  if (!container || !kind) return NullArgument();
  *kind = container->kind;
  return nullptr;
}

TALErrorRef IsKind(TALContainerRef container, const char* name, std::uint8_t* answer) noexcept {
  if (!container || !name || !answer) return NullArgument();
  *answer = std::strcmp(container->kind->Name(), name) == 0 ? 1 : 0;
  return nullptr;
}

TALErrorRef GetMethod(TALProc* result, TALContainerRef container, TALStringAtom shortName, TALStringAtom qualifiedName,
                      std::uint8_t notRequired) noexcept {
  if (!result) return NullArgument();
  *result = nullptr;
  if (!container || !shortName || !qualifiedName) return NullArgument();
  if (const Method* found = FindMethod(*container->kind, shortName, qualifiedName)) {
    *result = found->address;
    return nullptr;
  }
  return notRequired ? nullptr : NewBrokerError(BrokerErrorId::kNotRegistered);
}

TALErrorRef GetPrimaryInstance(TALContainerRef container, void** instance) noexcept {
  if (!container || !instance) return NullArgument();
  *instance = container->instance;
  return nullptr;
}

TALErrorRef SetPrimaryInstance(TALContainerRef container, void* instance) noexcept {
  if (!container) return NullArgument();
  container->instance = instance;  // The caller remains responsible for the previous instance.
  return nullptr;
}

std::uint8_t IsValid(TALContainerRef container) noexcept {
  // Compared as numbers, since the pointer may be anything.
  const auto address = reinterpret_cast<std::uintptr_t>(container);
  const std::lock_guard lock(living.mutex);
  const HashNode* found = living.containers.Find(HashAddress(0, container), [=](const HashNode& node) {
    return reinterpret_cast<std::uintptr_t>(&node) - offsetof(TALContainerRecord, living) == address;
  });
  return found ? 1 : 0;
}

std::uint32_t GetLiveCount() noexcept {
  const std::lock_guard lock(living.mutex);
  return static_cast<std::uint32_t>(living.containers.Count());
}

}  // namespace

constinit const TALContainerProcs kContainerProcs = {
    GetOffsetToPrimaryInstance,
    NewKind,
    DeleteKind,
    AddMethod,
    GetKindName,
    NewContainer,
    AddRef,
    Release,
    GetRefCount,
    GetKind,
    IsKind,
    GetMethod,
    GetPrimaryInstance,
    SetPrimaryInstance,
    IsValid,
    GetLiveCount,
};
