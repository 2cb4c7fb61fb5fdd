// Writes packets: one rdf:Description with all namespaces used by the object, one element per line, in the order of the
// object, so that two packets can be compared line by line.
//
// A value is always on one line: line ends and tabs are written as character references, since an XML parser would
// normalise some of them. The forms are those of ISO 16684-1, 7.4 to 7.9; the compact forms write simple properties,
// fields and qualifiers as attributes if nothing is lost.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "outside/xmp/rdf.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

constexpr std::uint32_t kAllOptions = kXMPSerializeOmitWrapper | kXMPSerializeReadOnly | kXMPSerializeCompact |
                                      kXMPSerializeExactLength | kXMPSerializeOmitMeta;
constexpr std::int32_t kUsualPadding = 2048;
constexpr std::size_t kUsualLength = 4096;  // Of a photograph's packet, so that the text rarely has to grow.
constexpr std::int32_t kMostBaseIndent = 1000;
constexpr std::size_t kPaddingLine =
    100;  // ISO 16684-1, 7.3.3: line ends now and then, for those who open it in an editor.

// The byte-order mark tells scanners the packet's encoding.
constexpr std::string_view kHeader = "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>";
constexpr std::string_view kWritableTrailer = "<?xpacket end=\"w\"?>";
constexpr std::string_view kReadOnlyTrailer = "<?xpacket end=\"r\"?>";

bool consistsOf(std::string_view text, std::string_view characters) noexcept {
  return text.find_first_not_of(characters) == std::string_view::npos;
}

void checkOptions(const SerializeOptions& options) {
  const auto refuse = [](const char* why) { throw ToolkitError(ErrorId::kBadOptions, why); };
  const std::uint32_t bits = options.options;
  if ((bits & ~kAllOptions) != 0) refuse("unknown options of serialising");
  const bool hasWrapper = (bits & kXMPSerializeOmitWrapper) == 0;
  if (!hasWrapper && (bits & (kXMPSerializeReadOnly | kXMPSerializeExactLength)) != 0) {
    refuse("only a packet with a wrapper can be read-only or have an exact length");
  }
  if ((bits & kXMPSerializeExactLength) != 0 && options.padding < 0) refuse("an exact length is not negative");
  if (!consistsOf(options.newline, "\r\n")) refuse("a line end consists of carriage returns and line feeds");
  if (!consistsOf(options.indent, " \t")) refuse("an indent consists of spaces and tabs");
  if (options.baseIndent < 0 || options.baseIndent > kMostBaseIndent) refuse("the base indent is out of range");
}

// A growing text. A packet consists of short pieces, mostly of a length known to the compiler; space is reserved in
// advance, so appending one is a plain copy.
class PacketText {
 public:
  PacketText() { grow(kUsualLength); }

  [[gnu::always_inline]] void put(std::string_view piece) {
    if (piece.size() > static_cast<std::size_t>(end_ - at_)) grow(piece.size());
    piece.copy(at_, piece.size());
    at_ += piece.size();
  }
  std::size_t length() const noexcept { return static_cast<std::size_t>(at_ - room_.data()); }
  std::string take() {
    room_.resize(length());
    return std::move(room_);
  }

 private:
  [[gnu::noinline]] void grow(std::size_t more) {
    const std::size_t length = at_ != nullptr ? this->length() : 0;
    room_.resize(std::max(length + more, 2 * room_.size()));
    at_ = room_.data() + length;
    end_ = room_.data() + room_.size();
  }

  std::string room_;
  char* at_ = nullptr;
  char* end_ = nullptr;
};

// The namespaces used by the object, in the order of their first use.
class UsedNamespaces {
 public:
  explicit UsedNamespaces(const Node* root) { addAll(root->children); }
  const std::vector<const Namespace*>& inOrder() const noexcept { return inOrder_; }

 private:
  void addAll(const NodeList& nodes) {
    for (const Node* node = nodes.first(); node != nullptr; node = node->next) {
      add(node->ns);
      addAll(node->qualifiers);
      addAll(node->children);
    }
  }
  void add(const Namespace* ns) {
    if (ns == nullptr || ns == last_) return;
    last_ = ns;
    // The prefix xml needs no declaration, and rdf is declared by an outer element.
    if (ns == wellKnown().xml || ns == wellKnown().rdf) return;
    if (ns->id >= seen_.size()) seen_.resize(std::max<std::size_t>(ns->id + 1, 2 * seen_.size()));
    if (seen_[ns->id]) return;
    seen_[ns->id] = true;
    inOrder_.push_back(ns);
  }

  const Namespace* last_ = nullptr;
  std::vector<const Namespace*> inOrder_;
  std::vector<bool> seen_;  // By id; an object numbers its namespaces from 0.
};

class Writer {
 public:
  Writer(const SerializeOptions& options, PacketText& out)
      : options_(options),
        out_(out),
        isCompact_((options.options & kXMPSerializeCompact) != 0),
        lineStart_(options.newline) {}

  void writeMeta(const Object& object) {
    if ((options_.options & kXMPSerializeOmitMeta) != 0) {
      writeRDF(object, 0);
      return;
    }
    startLine(0);
    put("<x:xmpmeta xmlns:x=\"");
    put(wellKnown().x->uri);
    put("\" x:xmptk=\"LxBridge\">");
    writeRDF(object, 1);
    startLine(0);
    put("</x:xmpmeta>");
  }

 private:
  // A qualified name in two parts.
  struct Name {
    std::string_view prefix, local;
  };
  static Name nameOf(const Node* node) noexcept { return {node->ns->prefix, node->name()}; }

  [[gnu::always_inline]] void put(std::string_view text) { out_.put(text); }
  void put(Name name) {
    put(name.prefix);
    put(":");
    put(name.local);
  }
  void putEscaped(std::string_view text) {
    // Most values have nothing to escape.
    if (std::none_of(text.begin(), text.end(), needsEscapeXML)) {
      put(text);
    } else {
      put(escapeXML(text));
    }
  }
  void putAttribute(Name name, std::string_view value) {
    put(" ");
    put(name);
    put("=\"");
    putEscaped(value);
    put("\"");
  }
  void startLine(std::size_t level) {
    const std::size_t newline = options_.newline.size();
    const std::size_t length =
        newline + (level + static_cast<std::size_t>(options_.baseIndent)) * options_.indent.size();
    while (lineStart_.size() < length) lineStart_ += options_.indent;
    put(std::string_view(lineStart_).substr(isFirstLine_ ? newline : 0, isFirstLine_ ? length - newline : length));
    isFirstLine_ = false;
  }

  // Line end and indent may both be empty, but attributes must be separated.
  void startAttributeLine(std::size_t level) {
    startLine(level);
    if (options_.newline.empty() && options_.indent.empty()) put(" ");
  }

  // Whether an attribute can represent the whole node. Attributes in the namespaces of RDF and XML have special
  // meanings.
  static bool fitsAttribute(const Node* node) noexcept {
    return node->isSimple() && (node->options & kXMPPropValueIsURI) == 0 && node->qualifiers.empty() &&
           node->ns != wellKnown().rdf && node->ns != wellKnown().xml;
  }
  static bool allFitAttributes(const Node* first) noexcept {
    for (; first != nullptr; first = first->next) {
      if (!fitsAttribute(first)) return false;
    }
    return true;
  }
  void putAttributes(const Node* first) {
    for (; first != nullptr; first = first->next) putAttribute(nameOf(first), first->value());
  }

  // xml:lang comes first if it exists, and is written as an attribute if it is plain text.
  static const Node* languageQualifier(const Node* node) noexcept {
    const Node* const first = node->qualifiers.first();
    const bool isPlain = first != nullptr && first->ns == wellKnown().xml && first->name() == "lang" &&
                         first->options == 0 && first->qualifiers.empty() && !first->value().empty();
    return isPlain ? first : nullptr;
  }

  void writeRDF(const Object& object, std::size_t level) {
    startLine(level);
    put("<rdf:RDF xmlns:rdf=\"");
    put(wellKnown().rdf->uri);
    put("\">");
    writeDescription(object, level + 1);
    startLine(level);
    put("</rdf:RDF>");
  }

  void writeDescription(const Object& object, std::size_t level) {
    startLine(level);
    put("<rdf:Description");
    putAttribute(Name{"rdf", "about"}, object.name);
    const UsedNamespaces used(object.root());
    for (const Namespace* ns : used.inOrder()) {
      startAttributeLine(level + 2);
      put("xmlns:");
      put(ns->prefix);
      put("=\"");
      putEscaped(ns->uri);
      put("\"");
    }
    bool hasElements = false;
    for (const Node* property = firstProperty(object); property != nullptr; property = nextProperty(property)) {
      // Without attributes, one property answers the question.
      if (!isCompact_ || !fitsAttribute(property)) {
        hasElements = true;
        if (!isCompact_) break;
        continue;
      }
      startAttributeLine(level + 2);
      put(nameOf(property));
      put("=\"");
      putEscaped(property->value());
      put("\"");
    }
    if (!hasElements) {
      put("/>");
      return;
    }
    put(">");
    for (const Node* property = firstProperty(object); property != nullptr; property = nextProperty(property)) {
      if (!isCompact_ || !fitsAttribute(property)) writeElement(nameOf(property), property, level + 1);
    }
    startLine(level);
    put("</rdf:Description>");
  }

  static const Node* firstFrom(const Node* schema) noexcept {
    while (schema != nullptr && schema->children.empty()) schema = schema->next;
    return schema != nullptr ? schema->children.first() : nullptr;
  }
  static const Node* firstProperty(const Object& object) noexcept { return firstFrom(object.root()->children.first()); }
  static const Node* nextProperty(const Node* property) noexcept {
    return property->next != nullptr ? property->next : firstFrom(property->parent->next);
  }

  // Writes the node as an element with its qualifiers. Recursive: trees are no deeper than kDepthLimit.
  void writeElement(Name name, const Node* node, std::size_t level) {
    startLine(level);
    put("<");
    put(name);
    const Node* const language = languageQualifier(node);
    if (language != nullptr) putAttribute(Name{"xml", "lang"}, language->value());
    const Node* const general = language != nullptr ? language->next : node->qualifiers.first();
    if (general == nullptr) {
      writeValue(name, node, level);
      return;
    }
    if (isCompact_ && node->isSimple() && allFitAttributes(general)) {
      putAttribute((node->options & kXMPPropValueIsURI) != 0 ? Name{"rdf", "resource"} : Name{"rdf", "value"},
                   node->value());
      putAttributes(general);
      put("/>");
      return;
    }
    put(" rdf:parseType=\"Resource\">");
    startLine(level + 1);
    put("<rdf:value");
    writeValue(Name{"rdf", "value"}, node, level + 1);
    for (const Node* qualifier = general; qualifier != nullptr; qualifier = qualifier->next) {
      writeElement(nameOf(qualifier), qualifier, level + 1);
    }
    endElement(name, level);
  }

  void endElement(Name name, std::size_t level) {
    startLine(level);
    put("</");
    put(name);
    put(">");
  }

  // Writes the rest of the element, after its name and xml:lang.
  void writeValue(Name name, const Node* node, std::size_t level) {
    const Node* const first = node->children.first();
    if (node->isArray()) {
      const Name array = {"rdf", (node->options & kXMPPropIsAlternate) != 0 ? "Alt"
                                 : (node->options & kXMPPropIsOrdered) != 0 ? "Seq"
                                                                            : "Bag"};
      put(">");
      startLine(level + 1);
      put("<");
      put(array);
      if (first == nullptr) {
        put("/>");
      } else {
        put(">");
        for (const Node* item = first; item != nullptr; item = item->next)
          writeElement(Name{"rdf", "li"}, item, level + 2);
        endElement(array, level + 1);
      }
      endElement(name, level);
    } else if (node->isStruct()) {
      if (isCompact_ && first != nullptr && allFitAttributes(first)) {
        putAttributes(first);
        put("/>");
      } else {
        put(" rdf:parseType=\"Resource\"");
        if (first == nullptr) {
          put("/>");
          return;
        }
        put(">");
        for (const Node* field = first; field != nullptr; field = field->next) {
          writeElement(nameOf(field), field, level + 1);
        }
        endElement(name, level);
      }
    } else if ((node->options & kXMPPropValueIsURI) != 0) {
      putAttribute(Name{"rdf", "resource"}, node->value());
      put("/>");
    } else if (node->value().empty()) {
      put("/>");
    } else {
      put(">");
      putEscaped(node->value());
      put("</");
      put(name);
      put(">");
    }
  }

  const SerializeOptions& options_;
  PacketText& out_;
  const bool isCompact_;
  std::string lineStart_;  // A line end and the deepest indent so far.
  bool isFirstLine_ = true;
};

// Writes exactly this many bytes, in lines if there are enough bytes for line ends.
void putPadding(PacketText& packet, std::size_t bytes, std::string_view newline) {
  const std::string line(kPaddingLine, ' ');
  while (bytes > 0) {
    const std::size_t length = std::min(bytes, kPaddingLine);
    const std::size_t spaces = length >= newline.size() ? length - newline.size() : length;
    packet.put(std::string_view(line).substr(0, spaces));
    if (spaces < length) packet.put(newline);
    bytes -= length;
  }
}

}  // namespace

void serializeObject(const Object& object, const SerializeOptions& options, std::string& packet) {
  checkOptions(options);
  PacketText text;
  const bool hasWrapper = (options.options & kXMPSerializeOmitWrapper) == 0;
  if (hasWrapper) {
    text.put(kHeader);
    text.put(options.newline);
  }
  Writer(options, text).writeMeta(object);
  text.put(options.newline);
  if (hasWrapper) {
    const bool isReadOnly = (options.options & kXMPSerializeReadOnly) != 0;
    const std::string_view trailer = isReadOnly ? kReadOnlyTrailer : kWritableTrailer;
    std::size_t padding = static_cast<std::size_t>(std::max(options.padding, 0));
    if ((options.options & kXMPSerializeExactLength) != 0) {
      const std::size_t length = text.length() + trailer.size();
      if (length > padding) {
        throw ToolkitError(ErrorId::kTooLong,
                           "the packet takes " + std::to_string(length) + " bytes, not " + std::to_string(padding));
      }
      padding -= length;
    } else if (options.padding < 0) {
      // Padding lets a packet grow in place; a read-only packet never does.
      padding = isReadOnly ? 0 : kUsualPadding;
    }
    putPadding(text, padding, options.newline);
    text.put(trailer);
  }
  if (text.length() > std::numeric_limits<std::uint32_t>::max()) {
    throw ToolkitError(ErrorId::kTooLong, "the packet is longer than 4 GiB");
  }
  packet = text.take();
}

}  // namespace velto
