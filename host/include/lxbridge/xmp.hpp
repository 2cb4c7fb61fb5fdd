// LxBridge and LxHost for C++17: RAII classes for sessions, files and objects, the XMP object as a view and as trees of
// nodes, failures as exceptions. Header only, over the C interfaces of lxbridge.h and xmp.h, which document paths,
// options and threads.
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

// Any failure except LX_XMP_NO_MEMORY, which raises std::bad_alloc: LX_XMP_NO_SESSION, LX_XMP_BAD_ARGUMENT,
// LX_XMP_REFUSED or LX_XMP_UNAVAILABLE, with LxXmpLastMessage as what().
class XmpError : public std::runtime_error {
 public:
  // The message is copied.
  XmpError(LxXmpStatus status, const char* message) : std::runtime_error(message), status_(status) {}
  // Below 0, and never LX_XMP_NO_MEMORY.
  [[nodiscard]] LxXmpStatus status() const noexcept { return status_; }

 private:
  LxXmpStatus status_;
};

// Raises a failure. False: LX_XMP_NOT_FOUND.
inline bool CheckXmp(LxXmpStatus status) {
  if (status == LX_XMP_NO_MEMORY) throw std::bad_alloc();
  if (status < 0) throw XmpError(status, LxXmpLastMessage());
  return status == LX_XMP_OK;
}

// The host's client of the XMP toolkit, started while this object lives. There may be several.
class HostSession {
 public:
  HostSession() { CheckXmp(LxXmpStart()); }
  ~HostSession() { LxXmpStop(); }
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;
};

// LxBridge from LxInterchangeInit to LxInterchangeTerm, with a session. Only one at a time in a process, since
// LxInterchangeTerm is not counted. It must outlive every Interchange.
class Library {
 public:
  Library() {
    try {
      (void)LxInterchangeInit();
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      throw XmpError(LX_XMP_UNAVAILABLE, error.what());  // The broker's own exception must not outlive the broker.
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

// A copy of a node of the XMP data model (ISO 16684-1, clause 6) with all its descendants.
struct XmpNode {
  std::string namespaceUri;         // Of the name; "" for an array item, which has none.
  std::string prefix;               // The namespace's, without colon; "" for an array item.
  std::string name;                 // Local name; "" for an array item.
  std::string value;                // A simple value, UTF-8.
  std::uint32_t options = 0;        // LxXmpOption bits.
  std::vector<XmpNode> qualifiers;  // In order.
  std::vector<XmpNode> children;    // Items of an array or fields of a structure, in order.

  // The form, from the options. An alternative is also an ordered array, and an ordered array is an array.
  [[nodiscard]] bool IsArray() const { return (options & LX_XMP_ARRAY) != 0; }
  [[nodiscard]] bool IsOrdered() const { return (options & LX_XMP_ORDERED) != 0; }
  [[nodiscard]] bool IsAlternative() const { return (options & LX_XMP_ALTERNATIVE) != 0; }
  [[nodiscard]] bool IsStruct() const { return (options & LX_XMP_STRUCT) != 0; }
  [[nodiscard]] bool IsSimple() const { return !IsArray() && !IsStruct(); }
  // "tiff:Make"; "" for an array item.
  [[nodiscard]] std::string QualifiedName() const { return prefix.empty() ? name : prefix + ':' + name; }
};

// A fault in a packet and its place (LxXmpGetWarning).
struct XmpWarning {
  std::uint32_t line = 0;    // From 1.
  std::uint32_t column = 0;  // From 1, in characters.
  std::string text;          // What was skipped.
};

// A view of an XMP object owned by an Interchange or an XmpObject: cheap to copy; must not outlive the object or the
// last session. A function that is not const changes the object, also for other views. Each function calls the function
// of xmp.h with the same name and prefix LxXmp, which documents failures; an absent value means LX_XMP_NOT_FOUND.
class XmpView {
 public:
  // For an object from LxInterchangeGetXMP, LxXmpNew or LxXmpCopy; never null.
  explicit XmpView(CXMPMeta* xmp) noexcept : xmp_(xmp) {}

  // The simple value of a node; "" for an array or a structure.
  [[nodiscard]] std::optional<std::string> Get(const char* namespaceUri, const char* path) const {
    return Text([&](LxXmpText* value) { return LxXmpGet(xmp_, namespaceUri, path, value, nullptr); });
  }
  // The same for an item of an array.
  [[nodiscard]] std::optional<std::string> GetItem(const char* namespaceUri, const char* arrayPath,
                                                   std::int32_t index) const {
    return Text([&](LxXmpText* value) { return LxXmpGetItem(xmp_, namespaceUri, arrayPath, index, value, nullptr); });
  }
  // The same for a field of a structure.
  [[nodiscard]] std::optional<std::string> GetField(const char* namespaceUri, const char* structPath,
                                                    const char* fieldNamespace, const char* field) const {
    return Text([&](LxXmpText* value) {
      return LxXmpGetField(xmp_, namespaceUri, structPath, fieldNamespace, field, value, nullptr);
    });
  }
  // The same for a qualifier.
  [[nodiscard]] std::optional<std::string> GetQualifier(const char* namespaceUri, const char* path,
                                                        const char* qualifierNamespace, const char* qualifier) const {
    return Text([&](LxXmpText* value) {
      return LxXmpGetQualifier(xmp_, namespaceUri, path, qualifierNamespace, qualifier, value, nullptr);
    });
  }
  // The best match; `language`, if not null, receives its language.
  [[nodiscard]] std::optional<std::string> GetLocalizedText(const char* namespaceUri, const char* path,
                                                            const char* genericLanguage, const char* specificLanguage,
                                                            std::string* language = nullptr) const {
    LxXmpText chosen;
    std::optional<std::string> text = Text([&](LxXmpText* value) {
      return LxXmpGetLocalizedText(xmp_, namespaceUri, path, genericLanguage, specificLanguage, value, &chosen);
    });
    if (text && language != nullptr) language->assign(chosen.bytes, chosen.length);
    return text;
  }
  // A truth value.
  [[nodiscard]] std::optional<bool> GetBool(const char* namespaceUri, const char* path) const {
    int value = 0;
    if (!CheckXmp(LxXmpGetBool(xmp_, namespaceUri, path, &value))) return std::nullopt;
    return value != 0;
  }
  // A whole number.
  [[nodiscard]] std::optional<std::int64_t> GetInteger(const char* namespaceUri, const char* path) const {
    std::int64_t value = 0;
    if (!CheckXmp(LxXmpGetInteger(xmp_, namespaceUri, path, &value))) return std::nullopt;
    return value;
  }
  // A number, also a rational.
  [[nodiscard]] std::optional<double> GetReal(const char* namespaceUri, const char* path) const {
    double value = 0;
    if (!CheckXmp(LxXmpGetReal(xmp_, namespaceUri, path, &value))) return std::nullopt;
    return value;
  }
  // A date.
  [[nodiscard]] std::optional<LxXmpDate> GetDate(const char* namespaceUri, const char* path) const {
    LxXmpDate value = {};
    if (!CheckXmp(LxXmpGetDate(xmp_, namespaceUri, path, &value))) return std::nullopt;
    return value;
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
  // The number of items of an array; 0 if there is no array.
  [[nodiscard]] std::uint32_t CountItems(const char* namespaceUri, const char* arrayPath) const {
    std::uint32_t count = 0;
    CheckXmp(LxXmpCountItems(xmp_, namespaceUri, arrayPath, &count));
    return count;
  }

  // All properties, or those of a namespace, as trees in the object's order.
  [[nodiscard]] std::vector<XmpNode> Properties(const char* namespaceUri = nullptr) const;

  // The namespaces of the object's names, each once: {prefix, URI}.
  [[nodiscard]] std::vector<std::pair<std::string, std::string>> Namespaces() const;

  // The URI of a prefix in this object.
  [[nodiscard]] std::optional<std::string> GetNamespace(const char* prefix) const {
    return Text([&](LxXmpText* value) { return LxXmpGetNamespace(xmp_, prefix, value); });
  }
  // The prefix of a URI in this object.
  [[nodiscard]] std::optional<std::string> GetPrefix(const char* namespaceUri) const {
    return Text([&](LxXmpText* value) { return LxXmpGetPrefix(xmp_, namespaceUri, value); });
  }

  // The faults of the object's packets, as far as they are kept.
  [[nodiscard]] std::vector<XmpWarning> Warnings() const {
    std::uint32_t kept = 0;
    CheckXmp(LxXmpCountWarnings(xmp_, &kept, nullptr));
    std::vector<XmpWarning> warnings(kept);
    for (std::uint32_t i = 0; i < kept; ++i) {
      LxXmpText text = {"", 0};
      CheckXmp(LxXmpGetWarning(xmp_, i, &warnings[i].line, &warnings[i].column, &text));
      warnings[i].text.assign(text.bytes, text.length);
    }
    return warnings;
  }

  // Calls visitor(const LxXmpNode&) for each node, as LxXmpVisit does. The visitor returns an LxXmpNext or nothing; an
  // exception that it raises ends the walk and is passed on.
  template <typename Visitor>
  void Visit(Visitor&& visitor, const char* namespaceUri = nullptr, const char* path = nullptr) const;

  // A whole packet. Options: LxXmpSerializeOption bits.
  [[nodiscard]] std::string Serialize(std::uint32_t options = 0, std::int32_t padding = 0) const {
    std::string packet;
    SerializeTo(&packet, options, padding);
    return packet;
  }
  // The same, into a text whose memory is reused, for the packets of many files.
  void SerializeTo(std::string* out, std::uint32_t options = 0, std::int32_t padding = 0) const {
    LxXmpText packet;
    CheckXmp(LxXmpSerialize(xmp_, options, padding, &packet));
    out->assign(packet.bytes, packet.length);
  }

  // Whether another object has the same contents.
  [[nodiscard]] bool IsEqual(const XmpView& other) const {
    int equal = 0;
    CheckXmp(LxXmpIsEqual(xmp_, other.xmp_, &equal));
    return equal != 0;
  }

  // A simple value.
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
  // An item of an array.
  void SetItem(const char* namespaceUri, const char* arrayPath, std::int32_t index, const char* value,
               std::uint32_t options = 0) {
    CheckXmp(LxXmpSetItem(xmp_, namespaceUri, arrayPath, index, value, options));
  }
  // A field of a structure.
  void SetField(const char* namespaceUri, const char* structPath, const char* fieldNamespace, const char* field,
                const char* value, std::uint32_t options = 0) {
    CheckXmp(LxXmpSetField(xmp_, namespaceUri, structPath, fieldNamespace, field, value, options));
  }
  // A qualifier of a node.
  void SetQualifier(const char* namespaceUri, const char* path, const char* qualifierNamespace, const char* qualifier,
                    const char* value, std::uint32_t options = 0) {
    CheckXmp(LxXmpSetQualifier(xmp_, namespaceUri, path, qualifierNamespace, qualifier, value, options));
  }
  // A text of a language alternative.
  void SetLocalizedText(const char* namespaceUri, const char* path, const char* genericLanguage, const char* language,
                        const char* value) {
    CheckXmp(LxXmpSetLocalizedText(xmp_, namespaceUri, path, genericLanguage, language, value));
  }
  // A truth value.
  void SetBool(const char* namespaceUri, const char* path, bool value) {
    CheckXmp(LxXmpSetBool(xmp_, namespaceUri, path, value ? 1 : 0));
  }
  // A whole number.
  void SetInteger(const char* namespaceUri, const char* path, std::int64_t value) {
    CheckXmp(LxXmpSetInteger(xmp_, namespaceUri, path, value));
  }
  // A number.
  void SetReal(const char* namespaceUri, const char* path, double value) {
    CheckXmp(LxXmpSetReal(xmp_, namespaceUri, path, value));
  }
  // A date.
  void SetDate(const char* namespaceUri, const char* path, const LxXmpDate& value) {
    CheckXmp(LxXmpSetDate(xmp_, namespaceUri, path, &value));
  }
  // Adds an item after the last one.
  void Append(const char* namespaceUri, const char* path, std::uint32_t arrayOptions, const char* value,
              std::uint32_t itemOptions = 0) {
    CheckXmp(LxXmpAppend(xmp_, namespaceUri, path, arrayOptions, value, itemOptions));
  }
  // Adds an item before the one of that index.
  void InsertItem(const char* namespaceUri, const char* arrayPath, std::int32_t index, const char* value,
                  std::uint32_t options = 0) {
    CheckXmp(LxXmpInsertItem(xmp_, namespaceUri, arrayPath, index, value, options));
  }
  // Deletes a node; a missing node is no failure.
  void Delete(const char* namespaceUri, const char* path) { CheckXmp(LxXmpDelete(xmp_, namespaceUri, path)); }
  // An item of an array.
  void DeleteItem(const char* namespaceUri, const char* arrayPath, std::int32_t index) {
    CheckXmp(LxXmpDeleteItem(xmp_, namespaceUri, arrayPath, index));
  }
  // A field of a structure.
  void DeleteField(const char* namespaceUri, const char* structPath, const char* fieldNamespace, const char* field) {
    CheckXmp(LxXmpDeleteField(xmp_, namespaceUri, structPath, fieldNamespace, field));
  }
  // A qualifier of a node.
  void DeleteQualifier(const char* namespaceUri, const char* path, const char* qualifierNamespace,
                       const char* qualifier) {
    CheckXmp(LxXmpDeleteQualifier(xmp_, namespaceUri, path, qualifierNamespace, qualifier));
  }
  // A text of a language alternative.
  void DeleteLocalizedText(const char* namespaceUri, const char* path, const char* genericLanguage,
                           const char* language) {
    CheckXmp(LxXmpDeleteLocalizedText(xmp_, namespaceUri, path, genericLanguage, language));
  }
  // Every property of a namespace, or of all.
  void Remove(const char* namespaceUri = nullptr) { CheckXmp(LxXmpRemove(xmp_, namespaceUri)); }
  // Adds the properties of a packet.
  void Parse(const void* bytes, std::size_t length) { CheckXmp(LxXmpParse(xmp_, bytes, length)); }
  // The same.
  void Parse(const std::string& packet) { Parse(packet.data(), packet.size()); }
  // Adds the properties of another object. Options: LxXmpMergeOption bits.
  void Merge(const XmpView& source, std::uint32_t options = 0) { CheckXmp(LxXmpMerge(xmp_, source.xmp_, options)); }

  // For the functions of xmp.h.
  [[nodiscard]] CXMPMeta* object() const noexcept { return xmp_; }

 private:
  // The text that get(LxXmpText*) returns.
  template <typename Getter>
  static std::optional<std::string> Text(Getter get) {
    LxXmpText value;
    if (!CheckXmp(get(&value))) return std::nullopt;
    return std::string(value.bytes, value.length);
  }

  CXMPMeta* xmp_;
};

// An object owned by the host. It must not outlive the last session.
class XmpObject {
 public:
  // An empty object.
  XmpObject() { CheckXmp(LxXmpNew(&xmp_)); }
  // A copy of another object.
  explicit XmpObject(const XmpView& source) { CheckXmp(LxXmpCopy(source.object(), &xmp_)); }
  ~XmpObject() { LxXmpFree(xmp_); }
  // Moves the object; a moved-from object can only be assigned to or destroyed.
  XmpObject(XmpObject&& other) noexcept : xmp_(std::exchange(other.xmp_, nullptr)) {}
  // Exchanges the two objects.
  XmpObject& operator=(XmpObject&& other) noexcept {
    std::swap(xmp_, other.xmp_);
    return *this;
  }

  // Valid while this object lives. Not for a moved-from object.
  [[nodiscard]] XmpView Xmp() const { return XmpView(xmp_); }

 private:
  CXMPMeta* xmp_ = nullptr;
};

// The import of one file. Its XMP object has everything that could be read. A missing or damaged file is not an error;
// Reading() reports it.
class Interchange {
 public:
  // The path is UTF-8; "" is standard input.
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
  // For a file in memory, which is not copied and must outlive this object.
  Interchange(const void* bytes, std::size_t length) { CheckXmp(LxXmpOpenMemory(bytes, length, &handle_)); }
  ~Interchange() { LxInterchangeDelete(handle_); }
  // Moves the import; a moved-from import can only be assigned to or destroyed.
  Interchange(Interchange&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  // Exchanges the two imports.
  Interchange& operator=(Interchange&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  // Valid while this object lives. Not for a moved-from object.
  [[nodiscard]] XmpView Xmp() const { return XmpView(LxInterchangeGetXMP(handle_)); }

  // The outcome of reading the file (LxXmpReadingOf); `systemError`, if not null, receives the system's error or 0.
  [[nodiscard]] LxXmpReading Reading(std::int32_t* systemError = nullptr) const {
    LxXmpReading reading = LX_XMP_READ_WHOLE;
    CheckXmp(LxXmpReadingOf(handle_, &reading, systemError));
    return reading;
  }

 private:
  LxInterchangeHandle handle_ = nullptr;
};

// LxXmpReleaseThreadMemory: for a thread that waits a long time for its next file.
inline void ReleaseThreadMemory() {
  CheckXmp(LxXmpReleaseThreadMemory());
}

// The URI of a prefix, among the namespaces known to the toolkit.
[[nodiscard]] inline std::optional<std::string> NamespaceOfPrefix(const char* prefix) {
  LxXmpText text;
  if (!CheckXmp(LxXmpNamespaceOfPrefix(prefix, &text))) return std::nullopt;
  return std::string(text.bytes, text.length);
}
// The prefix of a URI.
[[nodiscard]] inline std::optional<std::string> PrefixOfNamespace(const char* namespaceUri) {
  LxXmpText text;
  if (!CheckXmp(LxXmpPrefixOfNamespace(namespaceUri, &text))) return std::nullopt;
  return std::string(text.bytes, text.length);
}
// Returns the prefix that the namespace then has.
inline std::string RegisterNamespace(const char* namespaceUri, const char* suggestedPrefix) {
  LxXmpText text;
  CheckXmp(LxXmpRegisterNamespace(namespaceUri, suggestedPrefix, &text));
  return std::string(text.bytes, text.length);
}

// The form that the XMP standard gives to a property; 0 if it is not an array.
[[nodiscard]] inline std::uint32_t StandardForm(const char* namespaceUri, const char* name) {
  std::uint32_t options = 0;
  CheckXmp(LxXmpStandardForm(namespaceUri, name, &options));
  return options;
}

// --- the walks ------------------------------------------------------------------------------------------------------

template <typename Visitor>
void XmpView::Visit(Visitor&& visitor, const char* namespaceUri, const char* path) const {
  // An exception must not pass through the C interface, so it is stored until the walk has ended.
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

inline std::vector<std::pair<std::string, std::string>> XmpView::Namespaces() const {
  struct Walk {
    std::vector<std::pair<std::string, std::string>> found;
    std::exception_ptr failure;

    static LxXmpNext Call(void* user, const char* namespaceUri, const char* prefix) noexcept {
      Walk* walk = static_cast<Walk*>(user);
      try {
        walk->found.emplace_back(prefix, namespaceUri);
        return LX_XMP_GO_ON;
      } catch (...) {
        walk->failure = std::current_exception();
        return LX_XMP_END;
      }
    }
  };
  Walk walk;
  CheckXmp(LxXmpVisitNamespaces(xmp_, Walk::Call, &walk));
  if (walk.failure) std::rethrow_exception(walk.failure);
  return std::move(walk.found);
}

inline std::vector<XmpNode> XmpView::Properties(const char* namespaceUri) const {
  std::vector<XmpNode> top;
  top.reserve(32);             // Most objects have fewer properties, and growing moves all nodes.
  std::vector<XmpNode*> path;  // Down to the latest node: path[d] is the latest of depth d + 1.
  Visit(
      [&](const LxXmpNode& node) {
        if (node.depth == 0) return;
        path.resize(node.depth - 1);  // Nodes come in tree order, so all ancestors are there.
        XmpNode* parent = path.empty() ? nullptr : path.back();
        std::vector<XmpNode>& siblings = parent == nullptr                           ? top
                                         : (node.options & LX_XMP_IS_QUALIFIER) != 0 ? parent->qualifiers
                                                                                     : parent->children;
        XmpNode& added = siblings.emplace_back();
        added.name = node.name;
        if (!added.name.empty()) {  // An array item is reported with the array's namespace and prefix.
          added.namespaceUri = node.namespaceUri;
          added.prefix = node.prefix;
        }
        added.value.assign(node.value.bytes, node.value.length);
        added.options = node.options;
        path.push_back(&added);  // Valid until its next sibling is added, which first removes it from the path.
      },
      namespaceUri);
  return top;
}

}  // namespace lxbridge

#endif  // LXBRIDGE_XMP_HPP_
