// The host's client over the toolkit's object, behind a C interface. What the clients raise stops in Guarded(), which
// keeps it as the last failure.
#include "host/include/lxbridge/xmp.h"

#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "clients/broker/broker_client.h"
#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_meta.h"
#include "clients/xmp/xmp_text.h"

namespace {

using TAL_T_NMT::CTALError;
using TAL_T_NMT::ThrowIfError;

static_assert(LX_XMP_VERSION == ((LX_VERSION_MAJOR << 16) | (LX_VERSION_MINOR << 8) | LX_VERSION_PATCH),
              "the public header is of another version");

// The public enumerators are the toolkit's own bits.
static_assert(LX_XMP_VALUE_IS_URI == kXMPPropValueIsURI && LX_XMP_HAS_QUALIFIERS == kXMPPropHasQualifiers &&
              LX_XMP_IS_QUALIFIER == kXMPPropIsQualifier && LX_XMP_HAS_LANGUAGE == kXMPPropHasLang &&
              LX_XMP_STRUCT == kXMPPropIsStruct && LX_XMP_ARRAY == kXMPPropIsArray &&
              LX_XMP_ORDERED == kXMPPropIsOrdered && LX_XMP_ALTERNATIVE == kXMPPropIsAlternate &&
              LX_XMP_ALT_TEXT == kXMPPropIsAltText);
static_assert(LX_XMP_OMIT_WRAPPER == kXMPSerializeOmitWrapper && LX_XMP_READ_ONLY == kXMPSerializeReadOnly &&
              LX_XMP_COMPACT == kXMPSerializeCompact && LX_XMP_EXACT_LENGTH == kXMPSerializeExactLength &&
              LX_XMP_OMIT_META == kXMPSerializeOmitMeta);

// A text that was given out and is longer than this is not kept as room for the next.
constexpr std::size_t kKeptRoom = std::size_t{1} << 20;

int sessions = 0;
constinit std::string* givenText = nullptr;  // Lives with the sessions, so that nothing runs at load or exit.

constinit LxXmpStatus lastError = LX_XMP_OK;
constinit char lastMessage[512] = "";  // Of fixed size: a failure for want of memory has to be told, too.

LxXmpStatus Fail(LxXmpStatus status, const char* message) noexcept {
  std::size_t length = std::strlen(message);
  if (length >= sizeof lastMessage) {
    length = sizeof lastMessage - 1;
    while (length > 0 && (static_cast<unsigned char>(message[length]) & 0xC0) == 0x80) --length;
  }
  std::memcpy(lastMessage, message, length);
  lastMessage[length] = '\0';
  lastError = status;
  return status;
}

LxXmpStatus FailBy(const CTALError& error) noexcept {
  const TALErrorProcs* procs = TAL_T_NMT::ErrorProcs();
  if (procs == nullptr) return Fail(LX_XMP_UNAVAILABLE, "the interface broker has no errors any more");
  if (error.Reference() == procs->getCoreError(0)) return Fail(LX_XMP_NO_MEMORY, error.what());
  // So do the clients say that a procedure is missing; where methods are bound, with a text but no component.
  if (*error.what() == '\0') return Fail(LX_XMP_UNAVAILABLE, "the broker or the XMP toolkit lacks a procedure");
  return Fail(*error.Component() == '\0' ? LX_XMP_UNAVAILABLE : LX_XMP_REFUSED, error.what());
}

LxXmpStatus FailByException() noexcept {
  try {
    throw;
  } catch (const CTALError& error) {
    return FailBy(error);
  } catch (const std::bad_alloc&) {
    return Fail(LX_XMP_NO_MEMORY, "out of memory");
  } catch (const std::exception& error) {
    return Fail(LX_XMP_UNAVAILABLE, error.what());
  } catch (...) {
    return Fail(LX_XMP_UNAVAILABLE, "the XMP toolkit's client failed");
  }
}

template <typename Work>
LxXmpStatus Guarded(Work&& work) noexcept {
  if (sessions == 0) return Fail(LX_XMP_NO_SESSION, "there is no session: call LxXmpStart first");
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    return FailByException();
  }
}

LxXmpStatus NullArgument() noexcept {
  return Fail(LX_XMP_BAD_ARGUMENT, "an argument is null");
}

// Work on an object. The methods are asked for each call, since a broker whose interfaces change gives other
// procedures.
template <typename Work>
LxXmpStatus OnObject(const CXMPMeta* xmp, bool argumentsThere, Work&& work) noexcept {
  return Guarded([&] {
    if (xmp == nullptr || !argumentsThere) return NullArgument();
    const XMPObjectRef object = xmp->Object();
    if (object == nullptr) return Fail(LX_XMP_BAD_ARGUMENT, "the XMP object holds nothing of the toolkit");
    return work(XMPMethodsOf(object), object);
  });
}

// Takes the toolkit's text over into the one that is given out.
template <typename Unlock>
void Give(const XMPTextOut& text, LxXmpText* out, Unlock unlock) {
  if (givenText->capacity() > kKeptRoom) *givenText = std::string();
  TakeText(text, givenText, unlock);
  *out = {givenText->c_str(), givenText->size()};
}

struct Visit {
  LxXmpVisitor visitor;
  void* user;

  static std::uint32_t Call(void* visit, const XMPVisitedNode* seen) noexcept {
    const auto* self = static_cast<const Visit*>(visit);
    const LxXmpNode node = {seen->depth,  seen->options & ~kXMPSchemaNode,
                            seen->schema, seen->prefix,
                            seen->name,   {seen->value.text != nullptr ? seen->value.text : "", seen->value.length}};
    return static_cast<std::uint32_t>(self->visitor(self->user, &node));
  }
};

template <typename Lookup>
LxXmpStatus LookUp(const char* key, LxXmpText* out, Lookup lookup) noexcept {
  return Guarded([&] {
    if (key == nullptr || out == nullptr) return NullArgument();
    const XMPMetaStatics& statics = XMPStatics();
    XMPTextOut text = {nullptr, 0};
    std::uint8_t found = 0;
    ThrowIfError(lookup(statics, &text, &found));
    if (found == 0) {
      ThrowIfError(statics.unlockStatics(0));  // Of the empty text that comes even so.
      return LX_XMP_NOT_FOUND;
    }
    Give(text, out, [&] { return statics.unlockStatics(0); });
    return LX_XMP_OK;
  });
}

}  // namespace

std::uint32_t LxXmpVersion() {
  return LX_XMP_VERSION;
}

LxXmpStatus LxXmpStart() {
  if (sessions > 0) {
    ++sessions;
    return LX_XMP_OK;
  }
  try {
    const TALLookupProc lookup = TALOrdinal5();
    // A start that fails by an exception is shut down only behind the handler, which still reads the error.
    if (!TAL_T_NMT::StartBrokerClient(lookup)) {
      TAL_T_NMT::ShutDownBrokerClient();
      return Fail(LX_XMP_UNAVAILABLE, "the interface broker did not start");
    }
    if (!StartXMPClient(lookup)) {
      TAL_T_NMT::ShutDownBrokerClient();
      return Fail(LX_XMP_UNAVAILABLE, "the XMP toolkit did not start");
    }
    givenText = new (std::nothrow) std::string();
    if (givenText == nullptr) {
      StopXMPClient();
      TAL_T_NMT::ShutDownBrokerClient();
      return Fail(LX_XMP_NO_MEMORY, "out of memory");
    }
  } catch (const std::bad_alloc&) {
    (void)Fail(LX_XMP_NO_MEMORY, "out of memory");
  } catch (const std::exception& error) {
    (void)Fail(LX_XMP_UNAVAILABLE, error.what());
  }
  if (givenText == nullptr) {
    TAL_T_NMT::ShutDownBrokerClient();
    return lastError;
  }
  sessions = 1;
  return LX_XMP_OK;
}

void LxXmpStop() {
  if (sessions == 0 || --sessions > 0) return;
  delete std::exchange(givenText, nullptr);
  StopXMPClient();
  TAL_T_NMT::ShutDownBrokerClient();
}

LxXmpStatus LxXmpLastError() {
  return lastError;
}

const char* LxXmpLastMessage() {
  return lastMessage;
}

LxXmpStatus LxXmpGet(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpText* value,
                     std::uint32_t* options) {
  return OnObject(
      xmp, namespaceUri != nullptr && path != nullptr, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
        XMPTextOut text = {nullptr, 0};
        std::uint32_t foundOptions = 0;
        std::uint8_t found = 0;
        ThrowIfError(
            methods.getProperty(object, namespaceUri, path, value != nullptr ? &text : nullptr, &foundOptions, &found));
        if (found == 0) return LX_XMP_NOT_FOUND;
        if (value != nullptr) Give(text, value, [&] { return methods.unlockObject(object, 0); });
        if (options != nullptr) *options = foundOptions;
        return LX_XMP_OK;
      });
}

LxXmpStatus LxXmpVisit(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpVisitor visitor, void* user) {
  return OnObject(xmp, visitor != nullptr && (namespaceUri != nullptr || path == nullptr),
                  [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                    Visit visit = {visitor, user};
                    ThrowIfError(methods.visitNodes(object, namespaceUri, path, Visit::Call, &visit));
                    return LX_XMP_OK;
                  });
}

LxXmpStatus LxXmpSerialize(CXMPMeta* xmp, std::uint32_t options, std::int32_t padding, LxXmpText* packet) {
  return OnObject(xmp, packet != nullptr, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    XMPTextOut text = {nullptr, 0};
    ThrowIfError(methods.serializeToBuffer(object, &text, options, padding, nullptr, nullptr, 0));
    Give(text, packet, [&] { return methods.unlockObject(object, 0); });
    return LX_XMP_OK;
  });
}

LxXmpStatus LxXmpSet(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* value,
                     std::uint32_t options) {
  // Without a text there has to be a form that needs none.
  constexpr std::uint32_t kForms = LX_XMP_STRUCT | LX_XMP_ARRAY | LX_XMP_ORDERED | LX_XMP_ALTERNATIVE | LX_XMP_ALT_TEXT;
  return OnObject(xmp, namespaceUri != nullptr && path != nullptr && (value != nullptr || (options & kForms) != 0),
                  [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                    ThrowIfError(methods.setProperty(object, namespaceUri, path, value, options));
                    return LX_XMP_OK;
                  });
}

LxXmpStatus LxXmpAppend(CXMPMeta* xmp, const char* namespaceUri, const char* path, std::uint32_t arrayOptions,
                        const char* value, std::uint32_t itemOptions) {
  return OnObject(xmp, namespaceUri != nullptr && path != nullptr && (value != nullptr || itemOptions != 0),
                  [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                    ThrowIfError(methods.appendArrayItem(object, namespaceUri, path, arrayOptions, value, itemOptions));
                    return LX_XMP_OK;
                  });
}

LxXmpStatus LxXmpSetLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                  const char* genericLanguage, const char* language, const char* value) {
  return OnObject(xmp, namespaceUri != nullptr && path != nullptr && language != nullptr && value != nullptr,
                  [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                    const char* generic = genericLanguage != nullptr ? genericLanguage : "";
                    ThrowIfError(methods.setLocalizedText(object, namespaceUri, path, generic, language, value, 0));
                    return LX_XMP_OK;
                  });
}

LxXmpStatus LxXmpDelete(CXMPMeta* xmp, const char* namespaceUri, const char* path) {
  return OnObject(xmp, namespaceUri != nullptr && path != nullptr,
                  [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                    ThrowIfError(methods.deleteProperty(object, namespaceUri, path));
                    return LX_XMP_OK;
                  });
}

LxXmpStatus LxXmpNamespaceOfPrefix(const char* prefix, LxXmpText* namespaceUri) {
  return LookUp(prefix, namespaceUri, [&](const XMPMetaStatics& statics, XMPTextOut* text, std::uint8_t* found) {
    return statics.getNamespaceURI(prefix, text, found);
  });
}

LxXmpStatus LxXmpPrefixOfNamespace(const char* namespaceUri, LxXmpText* prefix) {
  return LookUp(namespaceUri, prefix, [&](const XMPMetaStatics& statics, XMPTextOut* text, std::uint8_t* found) {
    return statics.getNamespacePrefix(namespaceUri, text, found);
  });
}

LxXmpStatus LxXmpRegisterNamespace(const char* namespaceUri, const char* suggestedPrefix, LxXmpText* prefix) {
  if (namespaceUri == nullptr || suggestedPrefix == nullptr) return Guarded(NullArgument);
  LxXmpText unasked;
  return LookUp(suggestedPrefix, prefix != nullptr ? prefix : &unasked,
                [&](const XMPMetaStatics& statics, XMPTextOut* text, std::uint8_t* found) {
                  *found = 1;
                  return statics.registerNamespace(namespaceUri, suggestedPrefix, text);
                });
}
