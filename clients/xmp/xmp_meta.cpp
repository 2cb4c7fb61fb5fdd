// One XMP object of the toolkit, and the operations on it.
#include "clients/xmp/xmp_meta.h"

#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_tables.h"
#include "clients/xmp/xmp_text.h"
#include "clients/xmp/xmp_utils.h"

using TAL_T_NMT::CTALError;
using TAL_T_NMT::ReleaseContainer;
using TAL_T_NMT::ThrowIfError;

namespace {

XMPObjectRef NewEmptyObject() {
  XMPObjectRef object = nullptr;
  ThrowIfError(XMPStatics().newWithBuffer(nullptr, 0, &object));
  return object;
}

}  // namespace

CXMPMeta::CXMPMeta() : CXMPMeta(NewEmptyObject()) {}

CXMPMeta::CXMPMeta(XMPObjectRef made) : object_(nullptr), methods_(nullptr) {
  if (!made) throw CTALError("CXMPMeta object is invalid", "XMP", 3);
  try {
    const TALContainerProcs* containers = TAL_T_NMT::ContainerProcs();
    if (!containers) throw CTALError("invalid container", "", 0);
    ThrowIfError(containers->addRef(made));
    methods_ = &XMPMethodsOf(made);
  } catch (...) {
    // Destroys the object with or without a reference: releasing it at count 0 destroys it too.
    ReleaseContainer(made);
    throw;
  }
  object_ = made;
}

std::unique_ptr<CXMPMeta> CXMPMeta::NewCopyOf(XMPObjectRef source) {
  // The toolkit's object is created last, so later failures are cleaned up by the constructor.
  void* place = ::operator new(sizeof(CXMPMeta));
  try {
    XMPObjectRef object = nullptr;
    ThrowIfError(XMPStatics().newCopy(source, &object));
    return std::unique_ptr<CXMPMeta>(::new (place) CXMPMeta(object));
  } catch (...) {
    ::operator delete(place);
    throw;
  }
}

CXMPMeta::~CXMPMeta() {
  ReleaseContainer(object_);
}

const XMPMetaMethods& CXMPMeta::Methods() const {
  // An object of another image, or from before a shutdown, has a table that is foreign or no longer exists. So only its
  // address is compared, and it is used only if it is this client's table.
  if (xmpMethodTables.IsCurrent(methods_) && object_) [[likely]]
    return *methods_;
  return XMPMethodsOf(object_);
}

XMPMetaHolder::~XMPMetaHolder() = default;

void XMPMetaHolder::ParseFromBuffer(const std::uint8_t* bytes, std::int32_t length, std::uint32_t options) {
  const std::uint32_t size = length < 0 ? 0 : static_cast<std::uint32_t>(length);
  ThrowIfError(meta_.Methods().parseFromBuffer(meta_.Object(), reinterpret_cast<const char*>(bytes), size, options));
}

void XMPMetaHolder::SetProperty(const char* schema, const char* name, const char* text, std::uint32_t options) {
  ThrowIfError(meta_.Methods().setProperty(meta_.Object(), schema, name, text, options));
}

void XMPMetaHolder::SetProperty_Bool(const char* schema, const char* name, bool value, std::uint32_t options) {
  ThrowIfError(meta_.Methods().setPropertyBool(meta_.Object(), schema, name, value ? 1 : 0, options));
}

void XMPMetaHolder::SetProperty_Date(const char* schema, const char* name, const XMPDateTime& value,
                                     std::uint32_t options) {
  ThrowIfError(meta_.Methods().setPropertyDate(meta_.Object(), schema, name, &value, options));
}

void XMPMetaHolder::AppendArrayItem(const char* schema, const char* array, std::uint32_t arrayOptions, const char* text,
                                    std::uint32_t itemOptions) {
  ThrowIfError(meta_.Methods().appendArrayItem(meta_.Object(), schema, array, arrayOptions, text, itemOptions));
}

void XMPMetaHolder::SetStructField(const char* schema, const char* structName, const char* fieldSchema,
                                   const char* field, const char* text, std::uint32_t options) {
  ThrowIfError(meta_.Methods().setStructField(meta_.Object(), schema, structName, fieldSchema, field, text, options));
}

void XMPMetaHolder::SetLocalizedText(const char* schema, const char* name, const char* genericLanguage,
                                     const char* specificLanguage, const char* text, std::uint32_t options) {
  ThrowIfError(
      meta_.Methods().setLocalizedText(meta_.Object(), schema, name, genericLanguage, specificLanguage, text, options));
}

void XMPMetaHolder::DeleteProperty(const char* schema, const char* name) {
  ThrowIfError(meta_.Methods().deleteProperty(meta_.Object(), schema, name));
}

void XMPMetaHolder::RemoveProperties(const char* schema, const char* name, std::uint32_t options) {
  XMPUtils::RemoveProperties(&meta_, schema, name, options);
}

void XMPMetaHolder::AddMissingProperties(const XMPMetaHolder& source) {
  XMPUtils::AppendProperties(source.Meta(), &meta_);
}

bool XMPMetaHolder::DoesPropertyExist(const char* schema, const char* name) const {
  std::uint8_t found = 0;
  ThrowIfError(meta_.Methods().doesPropertyExist(meta_.Object(), schema, name, &found));
  return found != 0;
}

bool XMPMetaHolder::GetProperty(const char* schema, const char* name, std::string* value,
                                std::uint32_t* options) const {
  const XMPMetaMethods& methods = meta_.Methods();
  XMPTextOut text{};
  std::uint32_t nodeOptions = 0;
  std::uint8_t found = 0;
  ThrowIfError(methods.getProperty(meta_.Object(), schema, name, value ? &text : nullptr, &nodeOptions, &found));
  if (!found) return false;
  if (value) TakeText(text, value, [&] { return methods.unlockObject(meta_.Object(), 0); });
  if (options) *options = nodeOptions;
  return true;
}

bool XMPMetaHolder::GetProperty_Bool(const char* schema, const char* name, bool* value, std::uint32_t* options) const {
  std::uint8_t answer = 0;
  std::uint32_t nodeOptions = 0;
  std::uint8_t found = 0;
  ThrowIfError(meta_.Methods().getPropertyBool(meta_.Object(), schema, name, &answer, &nodeOptions, &found));
  if (!found) return false;
  if (value) *value = answer != 0;
  if (options) *options = nodeOptions;
  return true;
}

bool XMPMetaHolder::GetArrayItem(const char* schema, const char* array, std::int32_t index, std::string* text,
                                 std::uint32_t* options) const {
  const XMPMetaMethods& methods = meta_.Methods();
  XMPTextOut item{};
  std::uint32_t nodeOptions = 0;
  std::uint8_t found = 0;
  ThrowIfError(
      methods.getArrayItem(meta_.Object(), schema, array, index, text ? &item : nullptr, &nodeOptions, &found));
  if (!found) return false;
  if (text) TakeText(item, text, [&] { return methods.unlockObject(meta_.Object(), 0); });
  if (options) *options = nodeOptions;
  return true;
}

std::uint32_t XMPMetaHolder::CountArrayItems(const char* schema, const char* array) const {
  std::uint32_t count = 0;
  ThrowIfError(meta_.Methods().countArrayItems(meta_.Object(), schema, array, &count));
  return count;
}
