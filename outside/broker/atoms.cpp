// String atoms: equal texts share one reference-counted record, so texts can be compared by address.
#include "outside/broker/atoms.h"

#include <cstring>
#include <mutex>
#include <new>

#include "outside/broker/hash_table.h"

struct TALStringAtomRecord : HashNode {
  std::uint32_t count;
  std::size_t length;

  const char* Text() const noexcept { return reinterpret_cast<const char*>(this + 1); }
};

namespace {

// Guards the table and all counts: an atom whose last reference is released must not be found again.
std::mutex mutex;
constinit HashTable atoms;

const char* GetCString(TALStringAtom atom) noexcept {
  return atom ? atom->Text() : "";
}

TALStringAtom CopyAtom(TALStringAtom atom) noexcept {
  if (!atom) return nullptr;
  const std::lock_guard lock(mutex);
  ++atom->count;
  return atom;
}

}  // namespace

TALStringAtom NewAtom(const char* text) noexcept {
  if (!text) return nullptr;
  const std::size_t length = std::strlen(text);
  const std::uint64_t hash = HashText(0, text, length);
  const std::lock_guard lock(mutex);
  HashNode* found = atoms.Find(hash, [=](const HashNode& node) {
    const auto& atom = static_cast<const TALStringAtomRecord&>(node);
    return atom.length == length && std::memcmp(atom.Text(), text, length) == 0;
  });
  if (found) {
    auto* atom = static_cast<TALStringAtom>(found);
    ++atom->count;
    return atom;
  }

  void* block = BrokerAlloc(sizeof(TALStringAtomRecord) + length + 1);
  if (!block) return nullptr;
  auto* atom = ::new (block) TALStringAtomRecord{{}, 1, length};
  std::memcpy(atom + 1, text, length + 1);
  if (!atoms.Insert(atom, hash)) {
    BrokerFree(block);
    return nullptr;
  }
  return atom;
}

void DeleteAtom(TALStringAtom atom) noexcept {
  if (!atom) return;
  const std::lock_guard lock(mutex);
  if (--atom->count != 0) return;
  atoms.Remove(atom);
  BrokerFree(atom);
}

constinit const TALStringProcs kStringProcs = {NewAtom, GetCString, DeleteAtom, CopyAtom};
