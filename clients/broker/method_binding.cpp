// Binding the methods of objects by string atoms.
#include "clients/broker/broker_client.h"

namespace TAL_T_NMT {

namespace {

[[noreturn]] void ThrowInvalidContainer() {
  throw CTALError("invalid container", "", 0);
}

// Whatever the broker's error, the caller only learns that the object is not a valid container, so the error is
// released here.
bool Succeeded(TALErrorRef error) noexcept {
  ReleaseError(error);
  return !error;
}

class Atom {
 public:
  Atom(const TALStringProcs& procs, const char* text) noexcept : procs_(procs), atom_(procs.newStringAtom(text)) {}
  ~Atom() {
    if (atom_) procs_.deleteStringAtom(atom_);
  }
  Atom(const Atom&) = delete;
  Atom& operator=(const Atom&) = delete;

  TALStringAtom Get() const noexcept { return atom_; }

 private:
  const TALStringProcs& procs_;
  TALStringAtom atom_;
};

}  // namespace

TALKindRef KindOf(TALContainerRef object) {
  const TALContainerProcs* containers = object ? ContainerProcs() : nullptr;
  if (!containers) ThrowInvalidContainer();
  TALKindRef kind = nullptr;
  if (!Succeeded(containers->getKind(object, &kind)) || !kind) ThrowInvalidContainer();
  return kind;
}

void BindMethods(TALContainerRef object, const TALProcName* names, std::size_t count, TALProc* slots, MethodNeed need) {
  const TALContainerProcs* containers = object ? ContainerProcs() : nullptr;
  const TALStringProcs* strings = StringProcs();
  if (!containers || !strings) ThrowInvalidContainer();
  const bool isOptional = need == MethodNeed::kOptional;
  for (std::size_t i = 0; i < count; ++i) {
    const Atom shortName(*strings, names[i].shortName);
    const Atom qualifiedName(*strings, names[i].qualifiedName);
    slots[i] = nullptr;
    if (!shortName.Get() || !qualifiedName.Get() ||
        !Succeeded(
            containers->getMethod(&slots[i], object, shortName.Get(), qualifiedName.Get(), isOptional ? 1 : 0)) ||
        (!slots[i] && !isOptional)) {
      ThrowInvalidContainer();
    }
  }
}

}  // namespace TAL_T_NMT
