// Reading, walking and changing the nodes of an object.
#include <set>
#include <string>
#include <string_view>

#include "host/session.h"

namespace {

using lxhost::Change;
using lxhost::Give;
using lxhost::GivenTexts;
using lxhost::OnObject;
using lxhost::ThrowIfError;

// The public enumerators have the toolkit's values.
static_assert(LX_XMP_VALUE_IS_URI == kXMPPropValueIsURI && LX_XMP_HAS_QUALIFIERS == kXMPPropHasQualifiers &&
              LX_XMP_IS_QUALIFIER == kXMPPropIsQualifier && LX_XMP_HAS_LANGUAGE == kXMPPropHasLang &&
              LX_XMP_STRUCT == kXMPPropIsStruct && LX_XMP_ARRAY == kXMPPropIsArray &&
              LX_XMP_ORDERED == kXMPPropIsOrdered && LX_XMP_ALTERNATIVE == kXMPPropIsAlternate &&
              LX_XMP_ALT_TEXT == kXMPPropIsAltText);

// Calls get(methods, object, text, options, found) and returns the node found.
template <typename Getter>
LxXmpStatus Get(CXMPMeta* xmp, bool argumentsThere, LxXmpText* value, std::uint32_t* options, Getter get) noexcept {
  return OnObject(xmp, argumentsThere, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    XMPTextOut text = {nullptr, 0};
    std::uint32_t foundOptions = 0;
    std::uint8_t found = 0;
    ThrowIfError(get(methods, object, value != nullptr ? &text : nullptr, &foundOptions, &found));
    if (found == 0) return LX_XMP_NOT_FOUND;
    if (value != nullptr) Give(&GivenTexts::first, text, value, [&] { return methods.unlockObject(object, 0); });
    if (options != nullptr) *options = foundOptions;
    return LX_XMP_OK;
  });
}

// Without a value, the options must name a form that needs none.
bool IsSettable(const char* value, std::uint32_t options) noexcept {
  constexpr std::uint32_t kForms = LX_XMP_STRUCT | LX_XMP_ARRAY | LX_XMP_ORDERED | LX_XMP_ALTERNATIVE | LX_XMP_ALT_TEXT;
  return value != nullptr || (options & kForms) != 0;
}

const char* OrEmpty(const char* text) noexcept {
  return text != nullptr ? text : "";
}

struct Visit {
  LxXmpVisitor visitor;
  void* user;

  static std::uint32_t Call(void* visit, const XMPVisitedNode* seen) noexcept {
    const auto* self = static_cast<const Visit*>(visit);
    const LxXmpNode node = {seen->depth,  seen->options & ~kXMPSchemaNode,
                            seen->schema, seen->prefix,
                            seen->name,   {OrEmpty(seen->value.text), seen->value.length}};
    return static_cast<std::uint32_t>(self->visitor(self->user, &node));
  }
};

struct NamespaceVisit {
  LxXmpNamespaceVisitor visitor;
  void* user;
  std::set<std::string, std::less<>> met = {};
  const char* latest = nullptr;  // Adjacent nodes mostly share a text.
  bool hasNoMemory = false;

  static std::uint32_t Call(void* visit, const XMPVisitedNode* seen) noexcept {
    auto* self = static_cast<NamespaceVisit*>(visit);
    if (seen->schema == self->latest) return LX_XMP_GO_ON;
    self->latest = seen->schema;
    try {
      if (!self->met.emplace(seen->schema).second) return LX_XMP_GO_ON;
    } catch (const std::bad_alloc&) {
      self->hasNoMemory = true;
      return LX_XMP_END;
    }
    return self->visitor(self->user, seen->schema, seen->prefix) == LX_XMP_END ? LX_XMP_END : LX_XMP_GO_ON;
  }
};

}  // namespace

// --- reading --------------------------------------------------------------------------------------------------------

LxXmpStatus LxXmpGet(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpText* value,
                     std::uint32_t* options) {
  return Get(xmp, namespaceUri != nullptr && path != nullptr, value, options,
             [&](const XMPMetaMethods& methods, XMPObjectRef object, auto... out) {
               return methods.getProperty(object, namespaceUri, path, out...);
             });
}

LxXmpStatus LxXmpGetItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, std::int32_t index,
                         LxXmpText* value, std::uint32_t* options) {
  return Get(xmp, namespaceUri != nullptr && arrayPath != nullptr, value, options,
             [&](const XMPMetaMethods& methods, XMPObjectRef object, auto... out) {
               return methods.getArrayItem(object, namespaceUri, arrayPath, index, out...);
             });
}

LxXmpStatus LxXmpGetField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath, const char* fieldNamespace,
                          const char* field, LxXmpText* value, std::uint32_t* options) {
  return Get(xmp, namespaceUri != nullptr && structPath != nullptr && fieldNamespace != nullptr && field != nullptr,
             value, options, [&](const XMPMetaMethods& methods, XMPObjectRef object, auto... out) {
               return methods.getStructField(object, namespaceUri, structPath, fieldNamespace, field, out...);
             });
}

LxXmpStatus LxXmpGetQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* qualifierNamespace,
                              const char* qualifier, LxXmpText* value, std::uint32_t* options) {
  return Get(xmp, namespaceUri != nullptr && path != nullptr && qualifierNamespace != nullptr && qualifier != nullptr,
             value, options, [&](const XMPMetaMethods& methods, XMPObjectRef object, auto... out) {
               return methods.getQualifier(object, namespaceUri, path, qualifierNamespace, qualifier, out...);
             });
}

LxXmpStatus LxXmpCountItems(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, std::uint32_t* count) {
  return OnObject(xmp, namespaceUri != nullptr && arrayPath != nullptr && count != nullptr,
                  [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                    std::uint32_t found = 0;
                    ThrowIfError(methods.countArrayItems(object, namespaceUri, arrayPath, &found));
                    *count = found;
                    return LX_XMP_OK;
                  });
}

LxXmpStatus LxXmpGetLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                  const char* genericLanguage, const char* specificLanguage, LxXmpText* value,
                                  LxXmpText* language) {
  return OnObject(xmp, namespaceUri != nullptr && path != nullptr && specificLanguage != nullptr && value != nullptr,
                  [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                    XMPTextOut text = {nullptr, 0};
                    XMPTextOut chosen = {nullptr, 0};
                    std::uint32_t options = 0;
                    std::uint8_t found = 0;
                    ThrowIfError(methods.getLocalizedText(object, namespaceUri, path, OrEmpty(genericLanguage),
                                                          specificLanguage, &chosen, &text, &options, &found));
                    const auto unlock = [&] { return methods.unlockObject(object, 0); };
                    if (found == 0) {
                      ThrowIfError(unlock());  // Empty texts are returned even so.
                      return LX_XMP_NOT_FOUND;
                    }
                    LxXmpText givenLanguage;
                    LxXmpText givenText;
                    Give(&GivenTexts::second, chosen, &givenLanguage, []() -> TALErrorRef { return nullptr; });
                    Give(&GivenTexts::first, text, &givenText, unlock);
                    *value = givenText;
                    if (language != nullptr) *language = givenLanguage;
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

LxXmpStatus LxXmpVisitNamespaces(CXMPMeta* xmp, LxXmpNamespaceVisitor visitor, void* user) {
  return OnObject(xmp, visitor != nullptr, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    NamespaceVisit visit = {visitor, user};
    ThrowIfError(methods.visitNodes(object, nullptr, nullptr, NamespaceVisit::Call, &visit));
    if (visit.hasNoMemory) throw std::bad_alloc();
    return LX_XMP_OK;
  });
}

// --- changing -------------------------------------------------------------------------------------------------------

LxXmpStatus LxXmpSet(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* value,
                     std::uint32_t options) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr && IsSettable(value, options),
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.setProperty(object, namespaceUri, path, value, options);
                });
}

LxXmpStatus LxXmpSetItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, std::int32_t index,
                         const char* value, std::uint32_t options) {
  return Change(xmp, namespaceUri != nullptr && arrayPath != nullptr && IsSettable(value, options),
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.setArrayItem(object, namespaceUri, arrayPath, index, value, options);
                });
}

LxXmpStatus LxXmpSetField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath, const char* fieldNamespace,
                          const char* field, const char* value, std::uint32_t options) {
  return Change(xmp,
                namespaceUri != nullptr && structPath != nullptr && fieldNamespace != nullptr && field != nullptr &&
                    IsSettable(value, options),
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.setStructField(object, namespaceUri, structPath, fieldNamespace, field, value,
                                                options);
                });
}

LxXmpStatus LxXmpSetQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* qualifierNamespace,
                              const char* qualifier, const char* value, std::uint32_t options) {
  return Change(xmp,
                namespaceUri != nullptr && path != nullptr && qualifierNamespace != nullptr && qualifier != nullptr &&
                    IsSettable(value, options),
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.setQualifier(object, namespaceUri, path, qualifierNamespace, qualifier, value,
                                              options);
                });
}

LxXmpStatus LxXmpAppend(CXMPMeta* xmp, const char* namespaceUri, const char* path, std::uint32_t arrayOptions,
                        const char* value, std::uint32_t itemOptions) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr && IsSettable(value, itemOptions),
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.appendArrayItem(object, namespaceUri, path, arrayOptions, value, itemOptions);
                });
}

LxXmpStatus LxXmpInsertItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, std::int32_t index,
                            const char* value, std::uint32_t options) {
  return Change(xmp, namespaceUri != nullptr && arrayPath != nullptr && IsSettable(value, options),
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.insertArrayItem(object, namespaceUri, arrayPath, index, value, options);
                });
}

LxXmpStatus LxXmpSetLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                  const char* genericLanguage, const char* language, const char* value) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr && language != nullptr && value != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.setLocalizedText(object, namespaceUri, path, OrEmpty(genericLanguage), language, value,
                                                  0);
                });
}

LxXmpStatus LxXmpDelete(CXMPMeta* xmp, const char* namespaceUri, const char* path) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.deleteProperty(object, namespaceUri, path);
                });
}

LxXmpStatus LxXmpDeleteItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, std::int32_t index) {
  return Change(xmp, namespaceUri != nullptr && arrayPath != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.deleteArrayItem(object, namespaceUri, arrayPath, index);
                });
}

LxXmpStatus LxXmpDeleteField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath,
                             const char* fieldNamespace, const char* field) {
  return Change(xmp, namespaceUri != nullptr && structPath != nullptr && fieldNamespace != nullptr && field != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.deleteStructField(object, namespaceUri, structPath, fieldNamespace, field);
                });
}

LxXmpStatus LxXmpDeleteQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                 const char* qualifierNamespace, const char* qualifier) {
  return Change(xmp,
                namespaceUri != nullptr && path != nullptr && qualifierNamespace != nullptr && qualifier != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.deleteQualifier(object, namespaceUri, path, qualifierNamespace, qualifier);
                });
}

LxXmpStatus LxXmpDeleteLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                     const char* genericLanguage, const char* language) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr && language != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.deleteLocalizedText(object, namespaceUri, path, OrEmpty(genericLanguage), language);
                });
}
