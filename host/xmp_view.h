// The host's side of the boundary: what a program needs to read, change and write the XMP object that
// `LxInterchangeGetXMP` hands out. Every host needs it, so it is a small library of its own (lx_host): the host's own
// client of the interface broker and the XMP toolkit, independent of the one inside LxBridge. Uses clients/ only.
//
//   lxbridge::HostSession session;                      // once; before the first view, after LxInterchangeInit
//   LxInterchangeHandle handle = LxInterchangeNew(path);
//   lxbridge::XmpView xmp(LxInterchangeGetXMP(handle));
//   std::string packet = xmp.Serialize();
//   LxInterchangeDelete(handle);                        // ends the view
//
// Failures of the toolkit leave as TAL_T_NMT::CTALError (a std::exception whose what() is the toolkit's message). Like
// the library itself, everything here belongs to one thread at a time.
#ifndef LXBRIDGE_HOST_XMP_VIEW_H_
#define LXBRIDGE_HOST_XMP_VIEW_H_

#include <cstdint>
#include <string>
#include <vector>

#include "clients/xmp/xmp_abi.h"

class CXMPMeta;

namespace lxbridge {

// Starts the host's client of the broker and the toolkit, and stops it at its end. Several may live at once.
class HostSession {
 public:
  HostSession();  // std::runtime_error: the broker or the toolkit did not start.
  ~HostSession();
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;
};

// The namespace URI that a prefix ("tiff", without colon) stands for among those that the toolkit knows. False: it
// knows no such prefix. Raises as a view does.
[[nodiscard]] bool SchemaOfPrefix(const char* prefix, std::string* schema);

// A copy of one node of the XMP data model (ISO 16684-1, 6.3) and all that belongs to it.
struct XmpNode {
  std::string schema;         // Namespace URI of the name; "" for an array item.
  std::string prefix;         // The URI's prefix, without colon.
  std::string name;           // Local name; "" for an array item.
  std::string value;          // Simple values, UTF-8.
  std::uint32_t options = 0;  // kXMPProp... of xmp_abi.h
  std::vector<XmpNode> qualifiers;
  std::vector<XmpNode> children;  // Items of an array or fields of a struct, in order.

  [[nodiscard]] bool IsArray() const { return (options & kXMPPropIsArray) != 0; }
  [[nodiscard]] bool IsOrdered() const { return (options & kXMPPropIsOrdered) != 0; }
  [[nodiscard]] bool IsAlternative() const { return (options & kXMPPropIsAlternate) != 0; }
  [[nodiscard]] bool IsStruct() const { return (options & kXMPPropIsStruct) != 0; }
};

// A view of somebody else's XMP object: owns nothing of it and must not outlive it, nor the last session. Everything
// raises as the head of this file says; without a session, std::logic_error.
class XmpView {
 public:
  explicit XmpView(CXMPMeta* meta);

  // A whole packet: <?xpacket?> wrapper, x:xmpmeta, one rdf:RDF, one property element a line, UTF-8, `padding` spaces
  // before the end of the wrapper. Options: kXMPSerialize... of xmp_abi.h.
  [[nodiscard]] std::string Serialize(std::uint32_t options = 0, std::int32_t padding = 0) const;

  // All top-level properties, in the object's order.
  [[nodiscard]] std::vector<XmpNode> Properties() const;

  // The nodes one by one, without copying; see XMPVisitProc.
  void Visit(XMPVisitProc visit, void* user) const;

  // `path` is a property name or path below the schema ("Make", "Flash/exif:Fired", "creator[1]"). False: not there,
  // and the out values are as before; either may be null.
  [[nodiscard]] bool Get(const char* schema, const char* path, std::string* value,
                         std::uint32_t* options = nullptr) const;
  // A null value with the options of an array or struct makes an empty one.
  void Set(const char* schema, const char* path, const char* value, std::uint32_t options = 0);
  // Behind the array's last item; makes the array with arrayOptions where there is none.
  void Append(const char* schema, const char* array, std::uint32_t arrayOptions, const char* value);
  void SetLocalizedText(const char* schema, const char* path, const char* genericLanguage, const char* language,
                        const char* value);
  // What is not there needs no deleting: no error.
  void Delete(const char* schema, const char* path);

 private:
  const XMPMetaMethods& Methods() const;

  XMPObjectRef object_;
};

}  // namespace lxbridge

#endif  // LXBRIDGE_HOST_XMP_VIEW_H_
