// Whole objects: creating, parsing, merging and serialising them; and the toolkit's knowledge of names.
#include <cstdint>
#include <memory>

#include "host/session.h"

namespace {

using lxhost::Fail;
using lxhost::Give;
using lxhost::GivenTexts;
using lxhost::Guarded;
using lxhost::NullArgument;
using lxhost::OnObject;
using lxhost::ThrowIfError;

static_assert(LX_XMP_OMIT_WRAPPER == kXMPSerializeOmitWrapper && LX_XMP_READ_ONLY == kXMPSerializeReadOnly &&
              LX_XMP_COMPACT == kXMPSerializeCompact && LX_XMP_EXACT_LENGTH == kXMPSerializeExactLength &&
              LX_XMP_OMIT_META == kXMPSerializeOmitMeta);

// Calls work(left, right) with the toolkit's objects.
template <typename Work>
LxXmpStatus OnTwo(const CXMPMeta* left, const CXMPMeta* right, bool argumentsThere, Work work) noexcept {
  return OnObject(left, argumentsThere && right != nullptr, [&](const XMPMetaMethods&, XMPObjectRef object) {
    if (right->Object() == nullptr) return Fail(LX_XMP_BAD_ARGUMENT, "the XMP object has no toolkit object");
    work(object, right->Object());
    return LX_XMP_OK;
  });
}

// Calls the object's method in `slot`, or elsewhere(key, out) if the toolkit lacks it.
template <typename Slot, typename Elsewhere>
LxXmpStatus LookUpIn(CXMPMeta* xmp, const char* key, LxXmpText* out, Slot slot, Elsewhere elsewhere) noexcept {
  return OnObject(xmp, key != nullptr && out != nullptr, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    const auto look = XMPOptionalMethodsOf(object).*slot;
    if (look == nullptr) return elsewhere(key, out);
    XMPTextOut text = {nullptr, 0};
    std::uint8_t found = 0;
    ThrowIfError(look(object, key, &text, &found));
    const auto unlock = [&] { return methods.unlockObject(object, 0); };
    if (found == 0) {
      ThrowIfError(unlock());  // An empty text is returned even so.
      return LX_XMP_NOT_FOUND;
    }
    Give(&GivenTexts::first, text, out, unlock);
    return LX_XMP_OK;
  });
}

template <typename Lookup>
LxXmpStatus LookUp(const char* key, LxXmpText* out, Lookup lookup) noexcept {
  return Guarded([&] {
    if (key == nullptr || out == nullptr) return NullArgument();
    const XMPMetaStatics& statics = XMPStatics();
    XMPTextOut text = {nullptr, 0};
    std::uint8_t found = 0;
    ThrowIfError(lookup(statics, &text, &found));
    if (found == 0) {
      ThrowIfError(statics.unlockStatics(0));  // An empty text is returned even so.
      return LX_XMP_NOT_FOUND;
    }
    Give(&GivenTexts::first, text, out, [&] { return statics.unlockStatics(0); });
    return LX_XMP_OK;
  });
}

}  // namespace

// --- objects --------------------------------------------------------------------------------------------------------

LxXmpStatus LxXmpNew(CXMPMeta** xmp) {
  return Guarded([&] {
    if (xmp == nullptr) return NullArgument();
    *xmp = new CXMPMeta();
    return LX_XMP_OK;
  });
}

LxXmpStatus LxXmpCopy(CXMPMeta* source, CXMPMeta** copy) {
  return OnObject(source, copy != nullptr, [&](const XMPMetaMethods&, XMPObjectRef object) {
    *copy = CXMPMeta::NewCopyOf(object).release();
    return LX_XMP_OK;
  });
}

void LxXmpFree(CXMPMeta* xmp) {
  delete xmp;
}

LxXmpStatus LxXmpParse(CXMPMeta* xmp, const void* bytes, std::size_t length) {
  return OnObject(xmp, bytes != nullptr || length == 0, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    if (length > UINT32_MAX) return Fail(LX_XMP_REFUSED, "the packet is longer than 4 GiB");
    ThrowIfError(
        methods.parseFromBuffer(object, static_cast<const char*>(bytes), static_cast<std::uint32_t>(length), 0));
    return LX_XMP_OK;
  });
}

LxXmpStatus LxXmpMerge(CXMPMeta* xmp, CXMPMeta* source, std::uint32_t options) {
  return OnTwo(xmp, source, true, [&](XMPObjectRef target, XMPObjectRef from) {
    ThrowIfError(XMPUtilsTable().appendProperties(from, target, options));
  });
}

LxXmpStatus LxXmpIsEqual(CXMPMeta* left, CXMPMeta* right, int* equal) {
  return OnTwo(left, right, equal != nullptr, [&](XMPObjectRef one, XMPObjectRef other) {
    std::uint8_t answer = 0;
    ThrowIfError(XMPUtilsTable().compareObjects(one, other, &answer));
    *equal = answer != 0 ? 1 : 0;
  });
}

LxXmpStatus LxXmpRemove(CXMPMeta* xmp, const char* namespaceUri) {
  return OnObject(xmp, true, [&](const XMPMetaMethods&, XMPObjectRef object) {
    // For the toolkit an empty namespace means all of them; for a host, none.
    if (namespaceUri != nullptr && *namespaceUri == '\0') return LX_XMP_OK;
    ThrowIfError(XMPUtilsTable().removeProperties(object, namespaceUri != nullptr ? namespaceUri : "", "", 0));
    return LX_XMP_OK;
  });
}

LxXmpStatus LxXmpSerialize(CXMPMeta* xmp, std::uint32_t options, std::int32_t padding, LxXmpText* packet) {
  return OnObject(xmp, packet != nullptr, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    XMPTextOut text = {nullptr, 0};
    ThrowIfError(methods.serializeToBuffer(object, &text, options, padding, nullptr, nullptr, 0));
    Give(&GivenTexts::first, text, packet, [&] { return methods.unlockObject(object, 0); });
    return LX_XMP_OK;
  });
}

LxXmpStatus LxXmpStandardForm(const char* namespaceUri, const char* name, std::uint32_t* options) {
  return Guarded([&] {
    if (namespaceUri == nullptr || name == nullptr || options == nullptr) return NullArgument();
    std::uint32_t form = 0;
    ThrowIfError(XMPUtilsTable().isArrayForm(namespaceUri, name, &form));
    *options = form;
    return LX_XMP_OK;
  });
}

// --- warnings -------------------------------------------------------------------------------------------------------

LxXmpStatus LxXmpCountWarnings(CXMPMeta* xmp, std::uint32_t* kept, std::uint32_t* total) {
  return OnObject(xmp, kept != nullptr, [&](const XMPMetaMethods&, XMPObjectRef object) {
    std::uint32_t keptCount = 0;
    std::uint32_t totalCount = 0;
    if (const auto count = XMPOptionalMethodsOf(object).countWarnings) {
      ThrowIfError(count(object, &keptCount, &totalCount));
    }
    *kept = keptCount;
    if (total != nullptr) *total = totalCount;
    return LX_XMP_OK;
  });
}

LxXmpStatus LxXmpGetWarning(CXMPMeta* xmp, std::uint32_t index, std::uint32_t* line, std::uint32_t* column,
                            LxXmpText* text) {
  return OnObject(xmp, text != nullptr, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    const XMPMetaOptionalMethods& optional = XMPOptionalMethodsOf(object);
    std::uint32_t kept = 0;
    std::uint32_t total = 0;
    if (optional.countWarnings != nullptr) ThrowIfError(optional.countWarnings(object, &kept, &total));
    if (optional.getWarning == nullptr || index >= kept) return LX_XMP_NOT_FOUND;
    std::uint32_t atLine = 0;
    std::uint32_t atColumn = 0;
    XMPTextOut found = {nullptr, 0};
    ThrowIfError(optional.getWarning(object, index, &atLine, &atColumn, &found));
    Give(&GivenTexts::first, found, text, [&] { return methods.unlockObject(object, 0); });
    if (line != nullptr) *line = atLine;
    if (column != nullptr) *column = atColumn;
    return LX_XMP_OK;
  });
}

// --- namespaces -----------------------------------------------------------------------------------------------------

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

LxXmpStatus LxXmpGetNamespace(CXMPMeta* xmp, const char* prefix, LxXmpText* namespaceUri) {
  return LookUpIn(xmp, prefix, namespaceUri, &XMPMetaOptionalMethods::getNamespaceURI, LxXmpNamespaceOfPrefix);
}

LxXmpStatus LxXmpGetPrefix(CXMPMeta* xmp, const char* namespaceUri, LxXmpText* prefix) {
  return LookUpIn(xmp, namespaceUri, prefix, &XMPMetaOptionalMethods::getNamespacePrefix, LxXmpPrefixOfNamespace);
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
