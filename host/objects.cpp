// Whole objects: making, parsing, merging and serialising them; and the namespaces that the toolkit knows.
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
    if (right->Object() == nullptr) return Fail(LX_XMP_BAD_ARGUMENT, "the XMP object holds nothing of the toolkit");
    work(object, right->Object());
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
      ThrowIfError(statics.unlockStatics(0));  // Of the empty text that comes even so.
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
    // To the toolkit an empty namespace is all of them; to a host it is none.
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

LxXmpStatus LxXmpRegisterNamespace(const char* namespaceUri, const char* suggestedPrefix, LxXmpText* prefix) {
  if (namespaceUri == nullptr || suggestedPrefix == nullptr) return Guarded(NullArgument);
  LxXmpText unasked;
  return LookUp(suggestedPrefix, prefix != nullptr ? prefix : &unasked,
                [&](const XMPMetaStatics& statics, XMPTextOut* text, std::uint8_t* found) {
                  *found = 1;
                  return statics.registerNamespace(namespaceUri, suggestedPrefix, text);
                });
}
