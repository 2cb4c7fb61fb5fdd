// An XMP object of the toolkit: CXMPMeta owns it, XMPMetaHolder has the operations used by the conversion.
#ifndef LXBRIDGE_CLIENTS_XMP_XMP_META_H_
#define LXBRIDGE_CLIENTS_XMP_XMP_META_H_

#include <cstdint>
#include <memory>
#include <string>

#include "clients/xmp/xmp_abi.h"

// A reference to a toolkit object, which the library returns to its host. The host reads this layout with a client of
// its own, so it stays {virtual table, object reference, method table}, and there is no other virtual function.
class CXMPMeta {
 public:
  // A new empty object. Raises CTALError if the toolkit refuses it or lacks a procedure, if the broker refuses the
  // reference, or if the object's methods are missing; std::logic_error "ZXMPMeta Client initialization failure" if the
  // broker client is not started. Nothing leaks.
  CXMPMeta();
  // A new object with the contents of another. Raises as CXMPMeta does.
  static std::unique_ptr<CXMPMeta> NewCopyOf(XMPObjectRef source);
  // Releases the reference, unless the broker client has been shut down before: then the object is lost.
  virtual ~CXMPMeta();
  CXMPMeta(const CXMPMeta&) = delete;
  CXMPMeta& operator=(const CXMPMeta&) = delete;

  XMPObjectRef Object() const noexcept { return object_; }  // Still owned by this object.
  // The methods for Object(). If another image created this object, they are those bound by the calling image's client.
  // Raises as XMPMethodsOf does.
  const XMPMetaMethods& Methods() const;

 private:
  // Takes an object that the toolkit has just created and nobody else holds. It is destroyed if this raises.
  explicit CXMPMeta(XMPObjectRef made);

  XMPObjectRef object_;
  const XMPMetaMethods* methods_;
};
static_assert(sizeof(CXMPMeta) == 3 * sizeof(void*));

// All operations raise CTALError with the toolkit's error if it refuses, and otherwise as XMPMethodsOf does. Texts are
// zero-terminated UTF-8. A schema is a namespace URI; a name may be a path in it. Functions with an out text return
// whether the property was found, and set the out values only then; an out pointer may be null.
class XMPMetaHolder {
 public:
  XMPMetaHolder() = default;
  virtual ~XMPMetaHolder();

  CXMPMeta* Meta() noexcept { return &meta_; }
  const CXMPMeta* Meta() const noexcept { return &meta_; }

  // A negative length counts as 0. kXMPParseMoreBuffers: more input follows.
  void ParseFromBuffer(const std::uint8_t* bytes, std::int32_t length, std::uint32_t options);

  void SetProperty(const char* schema, const char* name, const char* text, std::uint32_t options = 0);
  void SetProperty_Bool(const char* schema, const char* name, bool value, std::uint32_t options = 0);
  void SetProperty_Date(const char* schema, const char* name, const XMPDateTime& value, std::uint32_t options = 0);
  void AppendArrayItem(const char* schema, const char* array, std::uint32_t arrayOptions, const char* text,
                       std::uint32_t itemOptions = 0);
  void SetStructField(const char* schema, const char* structName, const char* fieldSchema, const char* field,
                      const char* text, std::uint32_t options = 0);
  void SetLocalizedText(const char* schema, const char* name, const char* genericLanguage, const char* specificLanguage,
                        const char* text, std::uint32_t options = 0);
  void DeleteProperty(const char* schema, const char* name);
  // Empty name: the whole schema.
  void RemoveProperties(const char* schema, const char* name, std::uint32_t options = 0);
  // Adds the source's top-level properties that this object does not have; arrays are not merged.
  void AddMissingProperties(const XMPMetaHolder& source);

  bool DoesPropertyExist(const char* schema, const char* name) const;
  bool GetProperty(const char* schema, const char* name, std::string* value, std::uint32_t* options = nullptr) const;
  bool GetProperty_Bool(const char* schema, const char* name, bool* value, std::uint32_t* options = nullptr) const;
  // Indexes start at 1.
  bool GetArrayItem(const char* schema, const char* array, std::int32_t index, std::string* text,
                    std::uint32_t* options = nullptr) const;
  std::uint32_t CountArrayItems(const char* schema, const char* array) const;

 private:
  CXMPMeta meta_;
};

#endif  // LXBRIDGE_CLIENTS_XMP_XMP_META_H_
