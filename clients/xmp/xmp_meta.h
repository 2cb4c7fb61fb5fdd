// One XMP object of the toolkit: CXMPMeta owns it, XMPMetaHolder has the operations that the conversion uses.
#ifndef LXBRIDGE_CLIENTS_XMP_XMP_META_H_
#define LXBRIDGE_CLIENTS_XMP_XMP_META_H_

#include <cstdint>
#include <memory>
#include <string>

#include "clients/xmp/xmp_abi.h"

// One reference to a toolkit object, which the library gives to its host. The host reads this layout with a client
// of its own, so it stays {virtual table, object reference, method table} and has no other virtual function.
class CXMPMeta {
 public:
  // A new empty object. CTALError when the toolkit refuses it or lacks a procedure, when the broker refuses the
  // reference or the object's methods cannot be had; std::logic_error "ZXMPMeta Client initialization failure" when the
  // broker client is not started. Nothing is left over then.
  CXMPMeta();
  // A new object with the contents of another. Raises as CXMPMeta does.
  static std::unique_ptr<CXMPMeta> NewCopyOf(XMPObjectRef source);
  // Gives the reference back, unless the broker client has been shut down before: then the object is lost.
  virtual ~CXMPMeta();
  CXMPMeta(const CXMPMeta&) = delete;
  CXMPMeta& operator=(const CXMPMeta&) = delete;

  XMPObjectRef Object() const noexcept { return object_; }  // Still this object's reference.
  // The methods to call on Object(). In another image than the one that made this object, the methods as that image's
  // own client binds them. Raises as XMPMethodsOf does.
  const XMPMetaMethods& Methods() const;

 private:
  // Of an object that the toolkit has just made and that nobody else holds. It is destroyed when this raises.
  explicit CXMPMeta(XMPObjectRef made);

  XMPObjectRef object_;
  const XMPMetaMethods* methods_;
};
static_assert(sizeof(CXMPMeta) == 3 * sizeof(void*));

// All operations raise CTALError with the toolkit's error when it refuses, and as XMPMethodsOf does. Texts are
// zero-terminated UTF-8. A schema is a namespace URI; a name may be a path below it. The forms with an out text give
// "found", and change the out values only when it is true; a null out pointer means that the value is not wanted.
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
  // Empty name: all of the schema.
  void RemoveProperties(const char* schema, const char* name, std::uint32_t options = 0);
  // The source's top-level properties that this object does not have; arrays are not joined.
  void AddMissingProperties(const XMPMetaHolder& source);

  bool DoesPropertyExist(const char* schema, const char* name) const;
  bool GetProperty(const char* schema, const char* name, std::string* value, std::uint32_t* options = nullptr) const;
  bool GetProperty_Bool(const char* schema, const char* name, bool* value, std::uint32_t* options = nullptr) const;
  // Indexes count from 1.
  bool GetArrayItem(const char* schema, const char* array, std::int32_t index, std::string* text,
                    std::uint32_t* options = nullptr) const;
  std::uint32_t CountArrayItems(const char* schema, const char* array) const;

 private:
  CXMPMeta meta_;
};

#endif  // LXBRIDGE_CLIENTS_XMP_XMP_META_H_
