// The registry: a hash table for all procedures and one for the interfaces. Each interface keeps a list of its
// procedures, for unregistering.
#include "outside/broker/registry.h"

#include <atomic>
#include <cstring>
#include <mutex>
#include <new>

#include "outside/broker/errors.h"
#include "outside/broker/hash_table.h"

namespace {

struct Procedure;

struct Interface : HashNode {
  Procedure* procedures;

  const char* Name() const noexcept { return reinterpret_cast<const char*>(this + 1); }
};

struct Procedure : HashNode {
  Interface* owner;
  Procedure* nextOfInterface;
  TALProc address;
  const char* shortName;  // Both are stored after the record.
  const char* qualifiedName;
};

std::mutex mutex;  // Guards both tables.
constinit HashTable interfaces;
constinit HashTable procedures;
// Clients read it without the lock, by its address.
constinit std::atomic<std::uint32_t> unregisterCount{1};
static_assert(sizeof unregisterCount == sizeof(std::uint32_t) && decltype(unregisterCount)::is_always_lock_free);

struct Names {
  const char* interfaceName;
  const char* shortName;
  const char* qualifiedName;
  std::size_t qualifiedLength;
  std::uint64_t hash;

  // The qualified name alone is hashed: it distinguishes nearly all procedures and halves the cost of a lookup. The few
  // that two interfaces share are distinguished by the comparison.
  Names(const char* interfaceText, const char* shortText, const char* qualifiedText) noexcept
      : interfaceName(interfaceText),
        shortName(shortText),
        qualifiedName(qualifiedText),
        qualifiedLength(std::strlen(qualifiedText)),
        hash(HashText(0, qualifiedText, qualifiedLength)) {}
};

Procedure* Find(const Names& names) noexcept {
  return static_cast<Procedure*>(procedures.Find(names.hash, [&](const HashNode& node) {
    const auto& procedure = static_cast<const Procedure&>(node);
    return std::strcmp(procedure.qualifiedName, names.qualifiedName) == 0 &&
           std::strcmp(procedure.shortName, names.shortName) == 0 &&
           std::strcmp(procedure.owner->Name(), names.interfaceName) == 0;
  }));
}

Interface* FindInterface(const char* name) noexcept {
  return static_cast<Interface*>(interfaces.Find(HashText(0, name, std::strlen(name)), [=](const HashNode& node) {
    return std::strcmp(static_cast<const Interface&>(node).Name(), name) == 0;
  }));
}

Interface* NewInterface(const char* name) noexcept {
  const std::size_t length = std::strlen(name);
  void* block = BrokerAlloc(sizeof(Interface) + length + 1);
  if (!block) return nullptr;
  auto* made = ::new (block) Interface{{}, nullptr};
  std::memcpy(made + 1, name, length + 1);
  if (!interfaces.Insert(made, HashText(0, name, length))) {
    BrokerFree(block);
    return nullptr;
  }
  return made;
}

// The names are copied: a library may register texts that it builds at run time.
Procedure* NewProcedure(const Names& names, TALProc address) noexcept {
  const std::size_t shortSize = std::strlen(names.shortName) + 1;
  const std::size_t qualifiedSize = names.qualifiedLength + 1;
  void* block = BrokerAlloc(sizeof(Procedure) + shortSize + qualifiedSize);
  if (!block) return nullptr;
  char* texts = static_cast<char*>(block) + sizeof(Procedure);
  std::memcpy(texts, names.shortName, shortSize);
  std::memcpy(texts + shortSize, names.qualifiedName, qualifiedSize);
  return ::new (block) Procedure{{}, nullptr, nullptr, address, texts, texts + shortSize};
}

}  // namespace

TALProc FindProc(const char* interfaceName, const char* shortName, const char* qualifiedName) noexcept {
  if (!interfaceName || !shortName || !qualifiedName) return nullptr;
  const Names names(interfaceName, shortName, qualifiedName);
  const std::lock_guard lock(mutex);
  const Procedure* found = Find(names);
  return found ? found->address : nullptr;
}

TALErrorRef RegisterProc(const char* interfaceName, const char* shortName, const char* qualifiedName,
                         TALProc procedure) noexcept {
  if (!interfaceName || !shortName || !qualifiedName || !procedure) return NewBrokerError(BrokerErrorId::kNullArgument);
  const Names names(interfaceName, shortName, qualifiedName);
  const std::lock_guard lock(mutex);
  if (const Procedure* found = Find(names)) {
    return found->address == procedure ? nullptr : NewBrokerError(BrokerErrorId::kAlreadyRegistered);
  }
  Procedure* made = NewProcedure(names, procedure);
  if (!made) return OutOfMemoryError();
  if (!procedures.Insert(made, names.hash)) {
    BrokerFree(made);
    return OutOfMemoryError();
  }
  Interface* owner = FindInterface(interfaceName);
  if (!owner) owner = NewInterface(interfaceName);
  if (!owner) {
    procedures.Remove(made);
    BrokerFree(made);
    return OutOfMemoryError();
  }
  made->owner = owner;
  made->nextOfInterface = owner->procedures;
  owner->procedures = made;
  return nullptr;
}

TALErrorRef UnregisterInterface(const char* interfaceName) noexcept {
  if (!interfaceName) return NewBrokerError(BrokerErrorId::kNullArgument);
  const std::lock_guard lock(mutex);
  Interface* found = FindInterface(interfaceName);
  if (!found) return NewBrokerError(BrokerErrorId::kNotRegistered);
  while (Procedure* procedure = found->procedures) {
    found->procedures = procedure->nextOfInterface;
    procedures.Remove(procedure);
    BrokerFree(procedure);
  }
  interfaces.Remove(found);
  BrokerFree(found);
  // Unbound tables hold 0, so the count skips 0 when it wraps.
  const std::uint32_t next = unregisterCount.load(std::memory_order_relaxed) + 1;
  unregisterCount.store(next != 0 ? next : 1, std::memory_order_release);
  return nullptr;
}

const std::uint32_t* UnregisterCountAddress() noexcept {
  return reinterpret_cast<const std::uint32_t*>(&unregisterCount);
}
