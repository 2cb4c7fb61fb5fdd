// LxBridge and LxHost for C++17: sessions and files that end by themselves, the XMP object as a view and as trees of
// nodes, failures as exceptions. Header only, over the C interfaces of lxbridge.h and xmp.h, which say what is not said
// here: paths, options, threads.
//
//   lxbridge::Library library;
//   lxbridge::Interchange photo("photo.jpg");
//   for (const lxbridge::XmpNode& property : photo.Xmp().Properties()) std::puts(property.QualifiedName().c_str());
//
// A program that uses Library or Interchange links LxBridge and LxHost, any other only LxHost.
#ifndef LXBRIDGE_XMP_HPP_
#define LXBRIDGE_XMP_HPP_

#include <lxbridge/lxbridge.h>
#include <lxbridge/xmp.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace lxbridge {

// What every failure of this header leaves as, but for std::bad_alloc: LX_XMP_NO_SESSION, LX_XMP_BAD_ARGUMENT,
// LX_XMP_REFUSED or LX_XMP_UNAVAILABLE, and LxXmpLastMessage as what().
class XmpError : public std::runtime_error {
 public:
  // The message is copied.
  XmpError(LxXmpStatus status, const char* message) : std::runtime_error(message), status_(status) {}
  // Below 0, and never LX_XMP_NO_MEMORY.
  [[nodiscard]] LxXmpStatus status() const noexcept { return status_; }

 private:
  LxXmpStatus status_;
};

// Raises what the status of a call says. False: LX_XMP_NOT_FOUND.
inline bool CheckXmp(LxXmpStatus status) {
  if (status == LX_XMP_NO_MEMORY) throw std::bad_alloc();
  if (status < 0) throw XmpError(status, LxXmpLastMessage());
  return status == LX_XMP_OK;
}

// The host's client of the XMP toolkit, for as long as this lives. Several may live at once.
class HostSession {
 public:
  HostSession() { CheckXmp(LxXmpStart()); }
  ~HostSession() { LxXmpStop(); }
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;
};

// LxBridge from LxInterchangeInit to LxInterchangeTerm, and a session in between. One at a time in a process, since
// LxInterchangeTerm is not counted; it outlives every Interchange.
class Library {
 public:
  Library() {
    try {
      (void)LxInterchangeInit();
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      throw XmpError(LX_XMP_UNAVAILABLE, error.what());  // The broker's own exception must not outlive it.
    }
    try {
      CheckXmp(LxXmpStart());
    } catch (...) {
      LxInterchangeTerm();
      throw;
    }
  }
  ~Library() {
    LxXmpStop();
    LxInterchangeTerm();
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
};

// A node of the XMP data model (ISO 16684-1, clause 6) and all that belongs to it; a copy, which outlives everything.
struct XmpNode {
  std::string namespaceUri;         // Of the name; "" for an array item, which has none.
  std::string prefix;               // The namespace's, without colon; "" for an array item.
  std::string name;                 // Local name; "" for an array item.
  std::string value;                // A simple value, UTF-8.
  std::uint32_t options = 0;        // LxXmpOption bits.
  std::vector<XmpNode> qualifiers;  // In order.
  std::vector<XmpNode> children;    // Items of an array or fields of a structure, in order.

  // The form, by the options. An alternative is an ordered array, and that an array.
  [[nodiscard]] bool IsArray() const { return (options & LX_XMP_ARRAY) != 0; }
  [[nodiscard]] bool IsOrdered() const { return (options & LX_XMP_ORDERED) != 0; }
  [[nodiscard]] bool IsAlternative() const { return (options & LX_XMP_ALTERNATIVE) != 0; }
  [[nodiscard]] bool IsStruct() const { return (options & LX_XMP_STRUCT) != 0; }
  [[nodiscard]] bool IsSimple() const { return !IsArray() && !IsStruct(); }
  // "tiff:Make"; "" for an array item.
  [[nodiscard]] std::string QualifiedName() const { return prefix.empty() ? name : prefix + ':' + name; }
};

// A view of an XMP object that somebody else owns (an Interchange): cheap to copy, must not outlive the object nor the
// last session. A function of const objects changes nothing; one that is not const changes the object for everybody.
class XmpView {
 public:
  // Of an object that LxInterchangeGetXMP gave; never null.
  explicit XmpView(CXMPMeta* xmp) noexcept : xmp_(xmp) {}

  // The simple value at a path; none: there is no such node. "" for an array or a structure.
  [[nodiscard]] std::optional<std::string> Get(const char* namespaceUri, const char* path) const {
    LxXmpText value;
    if (!CheckXmp(LxXmpGet(xmp_, namespaceUri, path, &value, nullptr))) return std::nullopt;
    return std::string(value.bytes, value.length);
  }
  // The LxXmpOption bits of the node at a path.
  [[nodiscard]] std::optional<std::uint32_t> OptionsOf(const char* namespaceUri, const char* path) const {
    std::uint32_t options = 0;
    if (!CheckXmp(LxXmpGet(xmp_, namespaceUri, path, nullptr, &options))) return std::nullopt;
    return options;
  }
  // Whether there is a node at a path.
  [[nodiscard]] bool Has(const char* namespaceUri, const char* path) const {
    return CheckXmp(LxXmpGet(xmp_, namespaceUri, path, nullptr, nullptr));
  }

  // All properties, or those of a namespace, as trees in the object's order.
  [[nodiscard]] std::vector<XmpNode> Properties(const char* namespaceUri = nullptr) const;

  // Calls visitor(const LxXmpNode&) for each node as LxXmpVisit says. The visitor returns an LxXmpNext or nothing; what
  // it raises ends the walk and comes out of this.
  template <typename Visitor>
  void Visit(Visitor&& visitor, const char* namespaceUri = nullptr, const char* path = nullptr) const;

  // A whole packet. Options: LxXmpSerializeOption bits.
  [[nodiscard]] std::string Serialize(std::uint32_t options = 0, std::int32_t padding = 0) const {
    LxXmpText packet;
    CheckXmp(LxXmpSerialize(xmp_, options, padding, &packet));
    return std::string(packet.bytes, packet.length);
  }
  // The same into a text whose room is used again, for those who take the packets of many files.
  void SerializeTo(std::string* out, std::uint32_t options = 0, std::int32_t padding = 0) const {
    LxXmpText packet;
    CheckXmp(LxXmpSerialize(xmp_, options, padding, &packet));
    out->assign(packet.bytes, packet.length);
  }

  // LxXmpSet: a simple value.
  void Set(const char* namespaceUri, const char* path, const char* value, std::uint32_t options = 0) {
    CheckXmp(LxXmpSet(xmp_, namespaceUri, path, value, options));
  }
  // The same; a text ends at its first zero byte.
  void Set(const char* namespaceUri, const char* path, const std::string& value, std::uint32_t options = 0) {
    Set(namespaceUri, path, value.c_str(), options);
  }
  // An empty structure or array (LX_XMP_STRUCT, LX_XMP_ARRAY, LX_XMP_ORDERED, LX_XMP_ALTERNATIVE).
  void SetEmpty(const char* namespaceUri, const char* path, std::uint32_t form) {
    CheckXmp(LxXmpSet(xmp_, namespaceUri, path, nullptr, form));
  }
  // LxXmpAppend: an item behind the last one.
  void Append(const char* namespaceUri, const char* path, std::uint32_t arrayOptions, const char* value,
              std::uint32_t itemOptions = 0) {
    CheckXmp(LxXmpAppend(xmp_, namespaceUri, path, arrayOptions, value, itemOptions));
  }
  // LxXmpSetLocalizedText: a text of a language alternative.
  void SetLocalizedText(const char* namespaceUri, const char* path, const char* genericLanguage, const char* language,
                        const char* value) {
    CheckXmp(LxXmpSetLocalizedText(xmp_, namespaceUri, path, genericLanguage, language, value));
  }
  // LxXmpDelete: what is not there needs no deleting.
  void Delete(const char* namespaceUri, const char* path) { CheckXmp(LxXmpDelete(xmp_, namespaceUri, path)); }

  // For the functions of xmp.h.
  [[nodiscard]] CXMPMeta* object() const noexcept { return xmp_; }

 private:
  CXMPMeta* xmp_;
};

// One file's import. Everything that can be read is in its XMP object; a file that is missing or damaged is no failure.
class Interchange {
 public:
  // A path in UTF-8; "" is standard input.
  explicit Interchange(const char* path) {
    try {
      handle_ = LxInterchangeNew(path);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      throw XmpError(LX_XMP_UNAVAILABLE, error.what());
    }
  }
  // The same.
  explicit Interchange(const std::string& path) : Interchange(path.c_str()) {}
  ~Interchange() { LxInterchangeDelete(handle_); }
  // Moves the import; one that was moved from can only be assigned to or destroyed.
  Interchange(Interchange&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  // Exchanges the two imports.
  Interchange& operator=(Interchange&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  // Valid as long as this lives. Not of one that was moved from.
  [[nodiscard]] XmpView Xmp() const { return XmpView(LxInterchangeGetXMP(handle_)); }

 private:
  LxInterchangeHandle handle_ = nullptr;
};

// The namespaces that the toolkit knows; none: it does not know this one.
[[nodiscard]] inline std::optional<std::string> NamespaceOfPrefix(const char* prefix) {
  LxXmpText text;
  if (!CheckXmp(LxXmpNamespaceOfPrefix(prefix, &text))) return std::nullopt;
  return std::string(text.bytes, text.length);
}
// The other way round.
[[nodiscard]] inline std::optional<std::string> PrefixOfNamespace(const char* namespaceUri) {
  LxXmpText text;
  if (!CheckXmp(LxXmpPrefixOfNamespace(namespaceUri, &text))) return std::nullopt;
  return std::string(text.bytes, text.length);
}
// The prefix that the namespace has now.
inline std::string RegisterNamespace(const char* namespaceUri, const char* suggestedPrefix) {
  LxXmpText text;
  CheckXmp(LxXmpRegisterNamespace(namespaceUri, suggestedPrefix, &text));
  return std::string(text.bytes, text.length);
}

// --- the walks ------------------------------------------------------------------------------------------------------

template <typename Visitor>
void XmpView::Visit(Visitor&& visitor, const char* namespaceUri, const char* path) const {
  // An exception must not cross the C interface: it waits until the walk has ended.
  struct Walk {
    std::remove_reference_t<Visitor>* visitor;
    std::exception_ptr failure;

    static LxXmpNext Call(void* user, const LxXmpNode* node) noexcept {
      Walk* walk = static_cast<Walk*>(user);
      try {
        if constexpr (std::is_void_v<decltype((*walk->visitor)(*node))>) {
          (*walk->visitor)(*node);
          return LX_XMP_GO_ON;
        } else {
          return (*walk->visitor)(*node);
        }
      } catch (...) {
        walk->failure = std::current_exception();
        return LX_XMP_END;
      }
    }
  };
  Walk walk = {&visitor, nullptr};
  CheckXmp(LxXmpVisit(xmp_, namespaceUri, path, Walk::Call, &walk));
  if (walk.failure) std::rethrow_exception(walk.failure);
}

inline std::vector<XmpNode> XmpView::Properties(const char* namespaceUri) const {
  std::vector<XmpNode> top;
  std::vector<XmpNode*> path;  // To the latest node: path[d] is the latest of depth d + 1.
  Visit(
      [&](const LxXmpNode& node) {
        if (node.depth == 0) return;
        path.resize(node.depth - 1);  // Nodes come in the tree's order, so those above this one are there.
        XmpNode* parent = path.empty() ? nullptr : path.back();
        std::vector<XmpNode>& siblings = parent == nullptr                           ? top
                                         : (node.options & LX_XMP_IS_QUALIFIER) != 0 ? parent->qualifiers
                                                                                     : parent->children;
        XmpNode& added = siblings.emplace_back();
        added.name = node.name;
        if (!added.name.empty()) {  // An array item's namespace and prefix would be the array's.
          added.namespaceUri = node.namespaceUri;
          added.prefix = node.prefix;
        }
        added.value.assign(node.value.bytes, node.value.length);
        added.options = node.options;
        path.push_back(&added);  // Valid until its next sibling is added, and that takes it off the path first.
      },
      namespaceUri);
  return top;
}

}  // namespace lxbridge

#endif  // LXBRIDGE_XMP_HPP_
