// The toolkit's side of its boundary. It reaches the broker only through the lookup procedure.
#include "outside/xmp/boundary.h"

#include <cstring>
#include <exception>
#include <new>
#include <string>

namespace velto {
namespace {

// All process-wide state of the boundary. It changes only when the toolkit starts and stops.
struct BoundState {
  TALLookupProc lookup = nullptr;
  std::uint32_t starts = 0;
  // These stay after the last stop: objects may still be alive.
  TALCoreProcs core{};
  TALContainerProcs containers{};
  TALErrorProcs errors{};
  std::uint32_t instanceOffset = 0;
  TALKindRef kind = nullptr;
};

constinit BoundState state;

void destroyInstance(void* instance) noexcept {
  delete static_cast<Instance*>(instance);
}

template <typename Table, std::size_t kCount>
bool bind(TALLookupProc lookup, const char* interfaceName, const TALProcName (&names)[kCount], Table& table) noexcept {
  TALProc slots[kCount];
  for (std::size_t at = 0; at < kCount; ++at) {
    slots[at] = lookup(interfaceName, names[at].shortName, names[at].qualifiedName);
    if (slots[at] == nullptr) return false;
  }
  static_assert(sizeof slots == sizeof table);
  std::memcpy(static_cast<void*>(&table), slots, sizeof slots);
  return true;
}

// At start and stop, errors are only reported to the caller as a failure.
bool succeeded(TALErrorRef error) noexcept {
  if (error != nullptr) state.errors.release(error);
  return error == nullptr;
}

template <typename Table, std::size_t kCount>
bool registerTable(const char* interfaceName, const TALProcName (&names)[kCount], const Table& table) noexcept {
  TALProc slots[kCount];
  static_assert(sizeof slots == sizeof table);
  std::memcpy(slots, static_cast<const void*>(&table), sizeof slots);
  for (std::size_t at = 0; at < kCount; ++at) {
    if (!succeeded(
            state.core.registerProcAddress(interfaceName, names[at].shortName, names[at].qualifiedName, slots[at]))) {
      return false;
    }
  }
  return true;
}

template <typename Table, std::size_t kCount>
bool addMethods(TALKindRef kind, const TALProcName (&names)[kCount], const Table& table) noexcept {
  TALProc slots[kCount];
  static_assert(sizeof slots == sizeof table);
  std::memcpy(slots, static_cast<const void*>(&table), sizeof slots);
  for (std::size_t at = 0; at < kCount; ++at) {
    if (!succeeded(state.containers.addMethod(kind, names[at].shortName, names[at].qualifiedName, slots[at]))) {
      return false;
    }
  }
  return true;
}

bool makeKind() noexcept {
  if (state.kind != nullptr) return true;
  TALKindRef kind = nullptr;
  if (!succeeded(state.containers.newKind(&kind, kObjectKindName, destroyInstance))) return false;
  if (!addMethods(kind, kXMPMetaMethodNames, kMetaMethods) ||
      !addMethods(kind, kXMPMetaOptionalMethodNames, kMetaOptionalMethods)) {
    static_cast<void>(succeeded(state.containers.deleteKind(kind)));
    return false;
  }
  state.kind = kind;
  return true;
}

void withdraw() noexcept {
  static_cast<void>(succeeded(state.core.unregisterInterface(kXMPMetaStaticInterface)));
  static_cast<void>(succeeded(state.core.unregisterInterface(kXMPUtilsStaticInterface)));
  if (state.kind != nullptr && succeeded(state.containers.deleteKind(state.kind))) state.kind = nullptr;
}

[[noreturn]] void raiseBadObject(const char* what) {
  throw ToolkitError(ErrorId::kBadObject, what);
}

TALErrorRef coreError(std::uint32_t index) noexcept {
  const TALErrorRef error = state.errors.getCoreError(index);
  if (error != nullptr) state.errors.addRef(error);
  return error;
}

}  // namespace

bool startToolkit(TALLookupProc lookup) noexcept {
  if (state.starts != 0) {
    ++state.starts;
    return true;
  }
  if (lookup == nullptr) return false;
  // Live objects of another broker keep their kind there.
  if (lookup != state.lookup) state.kind = nullptr;
  BoundState fresh;
  fresh.lookup = lookup;
  fresh.kind = state.kind;
  if (!bind(lookup, kTALInterface, kTALCoreProcNames, fresh.core) ||
      !bind(lookup, kTALErrorInterface, kTALErrorProcNames, fresh.errors) ||
      !bind(lookup, kTALContainerInterface, kTALContainerProcNames, fresh.containers)) {
    return false;
  }
  fresh.instanceOffset = fresh.containers.getOffsetToPrimaryInstance();
  state = fresh;
  if (!makeKind() || !registerTable(kXMPMetaStaticInterface, kXMPMetaStaticNames, kMetaStatics) ||
      !registerTable(kXMPUtilsStaticInterface, kXMPUtilsStaticNames, kUtilsStatics)) {
    withdraw();
    return false;
  }
  state.starts = 1;
  return true;
}

void stopToolkit() noexcept {
  if (state.starts == 0) return;
  if (--state.starts != 0) return;
  withdraw();
  PacketParser::releaseSpares();
  Storage::releaseSpares();
}

TALKindRef objectKind() {
  if (state.kind == nullptr) throw ToolkitError(ErrorId::kNotStarted, "the toolkit has not been started");
  return state.kind;
}

XMPObjectRef wrapInstance(std::unique_ptr<Instance> instance) {
  XMPObjectRef object = nullptr;
  if (const TALErrorRef error = state.containers.newContainer(&object, objectKind(), instance.get())) {
    // Whatever the broker's reason, to the toolkit it means no memory for a container.
    state.errors.release(error);
    throw std::bad_alloc();
  }
  static_cast<void>(instance.release());
  return object;
}

Instance& instanceOf(XMPObjectRef object) {
  if (object == nullptr) raiseBadObject("the object reference is null");
  TALKindRef kind = nullptr;
  if (!succeeded(state.containers.getKind(object, &kind)) || kind == nullptr || kind != state.kind) {
    raiseBadObject("the reference is not of a toolkit object");
  }
  void* instance = nullptr;
  std::memcpy(&instance, reinterpret_cast<const char*>(object) + state.instanceOffset, sizeof instance);
  if (instance == nullptr) raiseBadObject("the object is empty");
  return *static_cast<Instance*>(instance);
}

Instance& changeableInstanceOf(XMPObjectRef object) {
  Instance& instance = instanceOf(object);
  if (instance.visits != 0) raiseBadObject("the object cannot be changed while its nodes are visited");
  return instance;
}

TALErrorRef errorOfException() noexcept {
  if (state.errors.newError == nullptr) return nullptr;  // Unreachable: only a start gives access to the procedures.
  try {
    throw;
  } catch (const ToolkitError& error) {
    return state.errors.newError(error.what(), kComponent, static_cast<std::int32_t>(error.id()));
  } catch (const std::bad_alloc&) {
    return coreError(0);
  } catch (const std::length_error&) {
    return state.errors.newError("a text is too long", kComponent, static_cast<std::int32_t>(ErrorId::kTooLong));
  } catch (const std::exception& error) {
    return state.errors.newError(error.what(), kComponent, static_cast<std::int32_t>(ErrorId::kInternal));
  } catch (...) {
    return coreError(1);
  }
}

TALErrorRef notSupported(const char* procedure) noexcept {
  return guarded([&] {
    throw ToolkitError(ErrorId::kNotSupported, std::string(procedure) + " is not supported by this toolkit");
  });
}

std::string_view requiredBytes(const char* bytes, std::uint32_t length) {
  if (length == 0) return {};
  return {required(bytes, "the bytes are null"), length};
}

void requireNoOptions(std::uint32_t options) {
  if (options != 0) throw ToolkitError(ErrorId::kBadOptions, "the procedure has no options");
}

}  // namespace velto
