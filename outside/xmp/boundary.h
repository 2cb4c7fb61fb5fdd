// The toolkit's side of its boundary: the broker procedures that it uses, its objects as containers of the broker, and
// the translation of exceptions into error references.
#ifndef LXBRIDGE_OUTSIDE_XMP_BOUNDARY_H_
#define LXBRIDGE_OUTSIDE_XMP_BOUNDARY_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "clients/broker/broker_abi.h"
#include "clients/xmp/xmp_abi.h"
#include "outside/xmp/errors.h"
#include "outside/xmp/model.h"
#include "outside/xmp/rdf.h"
#include "outside/xmp/text_store.h"

namespace velto {

// The component of every error reference, and the name of the objects' kind.
inline constexpr const char kComponent[] = "XMP";
inline constexpr const char kObjectKindName[] = "XMPMeta";

inline constexpr std::uint32_t kToolkitVersion = kXMPClientVersion;

// The instance in a container of the broker: one XMP object.
struct Instance {
  Object object;
  TextStore texts;
  std::unique_ptr<PacketParser> parser;  // While a packet is fed in pieces.
  std::uint32_t visits = 0;              // Visits in progress, during which nodes must not change.
};

// Binds the broker procedures that the toolkit uses, and registers its interfaces and the kind of its objects. False:
// the broker lacks something or there is no memory, and nothing stays registered. Starts are counted.
bool startToolkit(TALLookupProc lookup) noexcept;
// The last stop unregisters the interfaces. Live objects continue to work: they depend on the kind, which is kept for
// them, not on the interfaces.
void stopToolkit() noexcept;

TALKindRef objectKind();
// The reference count of the new container is 0.
XMPObjectRef wrapInstance(std::unique_ptr<Instance> instance);
Instance& instanceOf(XMPObjectRef object);
// The same, for procedures that change the object.
Instance& changeableInstanceOf(XMPObjectRef object);

// Converts the exception being handled to an error reference.
TALErrorRef errorOfException() noexcept;

// Runs the work of a procedure; catches all exceptions.
template <typename Work>
TALErrorRef guarded(Work&& work) noexcept {
  try {
    std::forward<Work>(work)();
    return nullptr;
  } catch (...) {
    return errorOfException();
  }
}

template <typename Value>
void give(Value* out, Value value) noexcept {
  if (out != nullptr) *out = value;
}
inline void giveAnswer(std::uint8_t* out, bool answer) noexcept {
  if (out != nullptr) *out = answer ? 1 : 0;
}
template <typename Texts>
void giveText(Texts& texts, XMPTextOut* out, std::string_view text) {
  if (out != nullptr) *out = texts.keep(text);
}

template <typename Pointer>
Pointer required(Pointer pointer, const char* what) {
  if (pointer == nullptr) throw ToolkitError(ErrorId::kBadParameter, what);
  return pointer;
}
// The pointer may be null if the length is 0.
std::string_view requiredBytes(const char* bytes, std::uint32_t length);
void requireNoOptions(std::uint32_t options);

TALErrorRef notSupported(const char* procedure) noexcept;

// A procedure of the boundary that this toolkit does not support, identified by its index in the names. It fits any
// slot.
template <const auto& kNames, std::size_t kAt>
struct Unsupported {
  template <typename... Arguments>
  using Procedure = TALErrorRef (*)(Arguments...);

  template <typename... Arguments>
  constexpr operator Procedure<Arguments...>() const noexcept {
    return refuse<Arguments...>;
  }

 private:
  template <typename... Arguments>
  static TALErrorRef refuse(Arguments...) noexcept {
    return notSupported(kNames[kAt].shortName);
  }
};

// The tables, in the order of their names.
extern const XMPMetaStatics kMetaStatics;
extern const XMPMetaMethods kMetaMethods;
extern const XMPMetaOptionalMethods kMetaOptionalMethods;
extern const XMPUtilsStatics kUtilsStatics;

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_BOUNDARY_H_
