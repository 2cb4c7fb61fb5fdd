// Reads packets: turns expat's events into nodes.
//
// Decisions beyond ISO 16684-1, clause 7 and annex C:
// - rdf:RDF may be nested in other elements at any depth; those and their other content are skipped. Everything after
//   the end of the outermost element is ignored: padding, zeros and whatever a file has there.
// - rdf:ID, rdf:nodeID, rdf:datatype, xml:space and xml:base are skipped; so are, with a warning, elements and
//   attributes in no namespace.
// - A property, field or qualifier that occurs twice keeps its first value.
// - An undeclared standard prefix means its usual namespace, since writers that assemble packets forget declarations.
//   Any other undeclared prefix is an error, even if an earlier packet declared it.
// - rdf:type, written as an element or as a typed node, is a qualifier of its struct.
#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "kit/base/utf8.h"
#include "outside/xmp/packet_encoding.h"
#include "outside/xmp/packet_prefixes.h"
#include "outside/xmp/rdf.h"
#include "outside/xmp/spares.h"

namespace velto {
namespace {

// The maximum number of open elements. At most four elements lead from one node to the next: the property, its
// rdf:value, in that an rdf:Description or rdf:Bag, and rdf:li. The rest is for elements around rdf:RDF.
constexpr std::size_t kElementLimit = 4 * kDepthLimit + 32;

constexpr std::uint32_t kBag = kXMPPropIsArray;
constexpr std::uint32_t kSeq = kBag | kXMPPropIsOrdered;
constexpr std::uint32_t kAlt = kSeq | kXMPPropIsAlternate;

constexpr std::string_view kXMLNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kDeclarationNamespace = "http://www.w3.org/2000/xmlns/";

// --- names of RDF ----------------------------------------------------------------------------------------------------

struct Name {
  const Namespace* ns;  // Null: in no namespace.
  std::string_view local;
};

// The meaning of names in RDF's namespace as elements or attributes.
enum class Syntax { kNone, kAbout, kResource, kParseType, kReadPast, kForbidden, kNoNamespace };

Syntax syntaxOf(std::string_view local) noexcept {
  constexpr struct {
    std::string_view name;
    Syntax syntax;
  } kNames[] = {
      // clang-format off
      {"about",           Syntax::kAbout},
      {"resource",        Syntax::kResource},
      {"parseType",       Syntax::kParseType},
      {"ID",              Syntax::kReadPast},
      {"nodeID",          Syntax::kReadPast},
      {"datatype",        Syntax::kReadPast},
      {"aboutEach",       Syntax::kForbidden},
      {"aboutEachPrefix", Syntax::kForbidden},
      {"bagID",           Syntax::kForbidden},
      {"li",              Syntax::kForbidden},
      {"Description",     Syntax::kForbidden},
      {"RDF",             Syntax::kForbidden},
      // clang-format on
  };
  for (const auto& row : kNames) {
    if (row.name == local) return row.syntax;
  }
  return Syntax::kNone;
}

std::uint32_t arrayForm(std::string_view local) noexcept {
  return local == "Bag" ? kBag : local == "Seq" ? kSeq : local == "Alt" ? kAlt : 0;
}

// xmlns="" or xmlns:prefix="".
bool isDeclaration(std::string_view attribute) noexcept {
  return attribute.substr(0, 5) == "xmlns" && (attribute.size() == 5 || attribute[5] == ':');
}

// In ASCII, only letters and the underscore start a name.
bool startsAsName(std::string_view text) noexcept {
  if (text.empty()) return false;
  const auto first = static_cast<std::uint8_t>(text[0]);
  return first >= 0x80 || first == '_' || ((first | 0x20) >= 'a' && (first | 0x20) <= 'z');
}

bool isBlank(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; });
}

// A name or a value of the packet for a message, shortened if it is long.
std::string shown(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  if (text.size() <= kLongest) return std::string(text);
  return std::string(text.substr(0, LxUtf8PrefixLength(text, kLongest))) + "...";
}

// --- the state of a packet -------------------------------------------------------------------------------------------

enum class Place {
  kOutside,   // Not inside rdf:RDF.
  kRDF,       // Children: rdf:Description.
  kTop,       // An rdf:Description in rdf:RDF. Children: properties.
  kProperty,  // A property, field or item. Content: text, or one child: rdf:Description or an array.
  kFields,    // rdf:Description in a property, or a property with parseType="Resource". Children: fields.
  kArray,     // Children: rdf:li.
};

// An open element.
struct Frame {
  Place place = Place::kOutside;
  bool hasChild = false;     // kProperty: it has its only child.
  bool mustBeEmpty = false;  // kProperty: its attributes are its whole content.
  bool hasValue = false;     // kFields: one is rdf:value, so the other fields are qualifiers.
  bool hasType = false;      // kFields: one is rdf:type.
  std::uint32_t depth = 0;   // Of `target`.
  Node* target = nullptr;    // The node that the element describes.
  NodePtr owned;             // The same node, if this element created it. It is put into the tree when it is complete.
  std::size_t prefixMark = 0;
};

using Attributes = const XML_Char**;

}  // namespace

// Creating one costs as much as reading a small packet, so a few are kept, but none that has grown with a large packet.
struct PacketParser::State {
  State() {
    frames.reserve(16);
    // The encoding name overrides the XML declaration: the bytes have already been converted to UTF-8.
    parser = XML_ParserCreate("UTF-8");
    if (parser == nullptr) throw std::bad_alloc();
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() { XML_ParserFree(parser); }

  void begin(Object& target);
  // False: must not be kept.
  bool end() noexcept;
  void feed(std::string_view bytes, bool last);
  // Moves the complete properties into the object.
  void finish() noexcept;

 private:
  // Handlers of expat's events. No exception may pass through expat, so they store it and stop expat, which may still
  // send some events.
  template <typename Action>
  static void guarded(void* user, Action action) noexcept {
    State& state = *static_cast<State*>(user);
    if (state.isFinished || state.mustRenew || state.failure) return;
    try {
      action(state);
    } catch (...) {
      state.failure = std::current_exception();
      XML_StopParser(state.parser, XML_FALSE);
    }
  }
  static void XMLCALL onStart(void* user, const XML_Char* name, const XML_Char** attributes) noexcept {
    guarded(user, [&](State& state) {
      if (!state.renewsBefore(name)) state.startElement(name, attributes);
    });
  }
  static void XMLCALL onEnd(void* user, const XML_Char* name) noexcept {
    guarded(user, [&](State& state) {
      state.open.resize(state.open.size() - std::strlen(name) - 2);
      state.endElement();
    });
  }
  static void XMLCALL onText(void* user, const XML_Char* text, int length) noexcept {
    guarded(user, [&](State& state) { state.addText({text, static_cast<std::size_t>(length)}); });
  }
  static void XMLCALL onDoctype(void* user, const XML_Char*, const XML_Char*, const XML_Char*, int hasSubset) noexcept {
    guarded(user, [&](State& state) {
      state.hasDoctype = true;
      if (hasSubset != 0) state.fail(ErrorId::kBadXML, "the document type has declarations");
    });
  }
  static void XMLCALL onSkippedEntity(void* user, const XML_Char* name, int) noexcept {
    guarded(user, [&](State& state) { state.skipEntity(name); });
  }

  // Aborts the packet.
  [[noreturn]] void fail(ErrorId id, const std::string& what);
  // Adds a warning; returns false, for use in return statements. `name` is placed between the two texts.
  bool warn(std::string_view before, std::string_view name = {}, std::string_view after = {});
  void place(std::uint32_t& line, std::uint32_t& column) const noexcept;
  void parse(std::string_view text, bool last);
  // False: there is no memory.
  bool reset() noexcept;
  void setSalt() noexcept;
  void setHandlers() noexcept;
  // Whether the element that starts here is left to a renewed parser. If not, it is now one of the open elements.
  bool renewsBefore(const XML_Char* name);
  void renew();

  void startElement(std::string_view qualified, Attributes attributes);
  void endElement();
  void addText(std::string_view piece);
  void skipEntity(std::string_view name);

  // The functions that start an element return false if it is not allowed there; it then has no frame.
  bool startNodeElement(std::string_view qualified, const Name& name, Attributes attributes, Frame frame);
  bool readNodeAttributes(std::uint32_t form, Attributes attributes, Frame& frame);
  bool startProperty(std::string_view qualified, const Name& name, Attributes attributes, Frame frame);
  bool startItem(std::string_view qualified, const Name& name, Attributes attributes, Frame frame);
  bool readPropertyAttributes(std::string_view qualified, Attributes attributes, Frame& frame);
  // Skips the open property, with `more` open elements inside that have no frame.
  void dropProperty(std::size_t more);
  bool isInProperty() const noexcept { return frames.size() > topSize; }

  void declarePrefixes(Attributes attributes);
  bool resolve(std::string_view qualified, bool isAttribute, Name& name);
  Syntax attributeSyntax(const Name& name) const noexcept;
  bool checkParseType(std::string_view type);
  bool checkDepth(std::uint32_t depth);

  NodePtr make(const Name& name, std::uint32_t options, std::string_view value) {
    return makeNode(object->storage, NameKey(name.ns, name.local), options, value);
  }
  void addProperty(NodePtr node);
  bool addField(Frame& frame, NodePtr node);
  void addQualifierOnce(Node* node, NodePtr qualifier);
  bool addLanguage(Frame& frame, std::string_view language);
  void finishFields(const Frame& frame);

  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  XML_Parser parser = nullptr;
  Object* object = nullptr;
  NodePtr root;       // The parent of the packet's schemas.
  std::string about;  // The first one that is not empty.
  PacketDecoder decoder;
  std::string gathered;  // Clean text that is not yet parsed.
  std::size_t parsedBytes = 0;
  // Expat keeps every name that it has seen. Its tables of a million names no longer fit into the processor's cache, so
  // the parser is renewed when it has seen many names: it starts again with the tags of the elements that are open.
  std::string open;             // The start tags of all open elements, without attributes.
  std::size_t seenNames = 0;    // By the parser since it was renewed, counted as often as they occur.
  std::size_t parserBytes = 0;  // Parsed by it before the current piece.
  bool mustRenew = false;
  std::size_t renewedAt = 0;  // The place in the current piece.
  bool hasDoctype = false;
  // Where the current parser's text begins in the packet, minus the length of the tags that were open.
  std::size_t firstLine = 0;
  std::size_t firstColumn = 0;
  bool isFinished = false;  // The outermost element has ended.
  bool hasRDF = false;
  bool hasWarnedOfText = false;  // Since the last start or end of an element.
  std::exception_ptr failure;

  const WellKnown& known = wellKnown();
  PacketPrefixes prefixes;
  std::vector<Frame> frames;
  std::size_t topSize = kNowhere;  // Number of frames, including the one of the rdf:Description in rdf:RDF.
  std::size_t skipped = 0;         // Number of open elements being skipped.
  std::string text;                // Of the innermost kProperty, until its child starts.
  Node* schema = nullptr;          // The one used last.
};

namespace {
constinit Spares<void> spareStates;  // Of PacketParser::State, which is private.
}  // namespace

void PacketParser::State::begin(Object& target) {
  object = &target;
  root = target.makeRoot();
  setSalt();
  setHandlers();
}

bool PacketParser::State::reset() noexcept {
  // XML_ParserReset does not report that it had no memory for the name of an encoding.
  return XML_ParserReset(parser, nullptr) == XML_TRUE && XML_SetEncoding(parser, "UTF-8") == XML_STATUS_OK;
}

void PacketParser::State::setSalt() noexcept {
  // Expat would request one from the system for each packet. 0 would mean that there is none.
  XML_SetHashSalt(parser, hashText("expat") | 1u);
}

void PacketParser::State::setHandlers() noexcept {
  XML_SetUserData(parser, this);
  XML_SetElementHandler(parser, onStart, onEnd);
  XML_SetCharacterDataHandler(parser, onText);
  XML_SetStartDoctypeDeclHandler(parser, onDoctype);
  XML_SetSkippedEntityHandler(parser, onSkippedEntity);
}

bool PacketParser::State::end() noexcept {
  constexpr std::size_t kSmall = 256 * 1024;
  frames.clear();
  prefixes.restore(0);
  root.reset();
  failure = nullptr;
  if (parsedBytes + gathered.size() > kSmall || !reset()) return false;
  about.clear();
  decoder.reset();
  gathered.clear();
  parsedBytes = 0;
  open.clear();
  seenNames = parserBytes = 0;
  firstLine = firstColumn = 0;
  mustRenew = hasDoctype = false;
  isFinished = hasRDF = hasWarnedOfText = false;
  topSize = kNowhere;
  skipped = 0;
  text.clear();
  schema = nullptr;
  return true;
}

void PacketParser::State::finish() noexcept {
  if (root != nullptr) object->merge(std::move(root));
  schema = nullptr;
  if (!about.empty()) object->name.swap(about);
}

// --- bytes -----------------------------------------------------------------------------------------------------------

// Expat rereads an incomplete token with each piece. Therefore small pieces are gathered until they are as long as the
// text parsed before: no byte is read more than a few times, however the packet is divided.
void PacketParser::State::feed(std::string_view bytes, bool last) {
  if (isFinished) return;
  constexpr std::size_t kFirstPiece = 4096;
  const std::string_view clean = decoder.decode(bytes, last);
  if (!last && gathered.size() + clean.size() < std::max(parsedBytes, kFirstPiece)) {
    gathered.append(clean);
    return;
  }
  if (gathered.empty()) {
    parse(clean, last);
  } else {
    gathered.append(clean);
    parse(gathered, last);
    gathered.clear();
  }
}

void PacketParser::State::parse(std::string_view clean, bool last) {
  if (last && !decoder.hasStarted()) fail(ErrorId::kBadXML, "not a packet: it has no element");
  // Expat copies each piece, and rereads an incomplete token with the next one. So a piece is as long as the text that
  // the parser has parsed: neither a renewal nor a long token makes it copy or read a byte more than a few times.
  constexpr std::size_t kShortest = 256 * 1024;
  constexpr std::size_t kLongest = std::size_t{1} << 30;
  static_assert(kLongest <= INT_MAX);
  do {
    const std::string_view piece = clean.substr(0, std::clamp(parserBytes, kShortest, kLongest));
    const bool isLastPiece = last && piece.size() == clean.size();
    const bool isDone =
        XML_Parse(parser, piece.data(), static_cast<int>(piece.size()), isLastPiece ? 1 : 0) == XML_STATUS_OK;
    if (mustRenew) {
      clean.remove_prefix(renewedAt);
      parsedBytes += renewedAt;
      renew();
      continue;
    }
    clean.remove_prefix(piece.size());
    parsedBytes += piece.size();
    parserBytes += piece.size();
    if (isDone) continue;
    if (failure) std::rethrow_exception(failure);
    if (isFinished) return;
    const XML_Error error = XML_GetErrorCode(parser);
    if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    fail(ErrorId::kBadXML, XML_ErrorString(error));
  } while (!clean.empty());
}

bool PacketParser::State::renewsBefore(const XML_Char* name) {
  constexpr std::size_t kManyNames = 16 * 1024;
  constexpr std::size_t kMostOpen = 16 * 1024;  // Less than the text of so many names, so no byte is parsed often.
  // An external document type is only known to the first parser.
  if (seenNames > kManyNames && open.size() <= kMostOpen && !hasDoctype) {
    const auto start = static_cast<std::size_t>(XML_GetCurrentByteIndex(parser));
    // It may be in an earlier piece.
    if (start >= parserBytes) {
      const std::size_t lines = XML_GetCurrentLineNumber(parser);
      const std::size_t columns = XML_GetCurrentColumnNumber(parser);
      firstColumn = lines == 1 ? firstColumn + columns : columns;
      firstLine += lines - 1;
      renewedAt = start - parserBytes;
      mustRenew = true;
      XML_StopParser(parser, XML_FALSE);
      return true;
    }
  }
  // Only now, so that a renewed parser takes the element however many attributes it has.
  seenNames += 1 + static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parser)) / 2;
  open.append("<").append(name).append(">");
  return false;
}

void PacketParser::State::renew() {
  mustRenew = false;
  seenNames = 0;
  parserBytes = open.size();
  if (!reset()) throw std::bad_alloc();
  setSalt();
  if (XML_Parse(parser, open.data(), static_cast<int>(open.size()), 0) != XML_STATUS_OK) throw std::bad_alloc();
  firstColumn -= XML_GetCurrentColumnNumber(parser);
  setHandlers();
}

// Lines and columns count from 1, columns in characters.
void PacketParser::State::place(std::uint32_t& line, std::uint32_t& column) const noexcept {
  const std::size_t lines = XML_GetCurrentLineNumber(parser);
  const std::size_t columns = XML_GetCurrentColumnNumber(parser) + 1 + (lines == 1 ? firstColumn : 0) +
                              (firstLine + lines == 1 ? decoder.droppedColumns() : 0);
  line = static_cast<std::uint32_t>(firstLine + lines + decoder.droppedLines());
  column = static_cast<std::uint32_t>(columns);
}

void PacketParser::State::fail(ErrorId id, const std::string& what) {
  std::uint32_t line = 1;
  std::uint32_t column = 1;
  place(line, column);
  object->warnings.addLast({line, column, what + "; the rest is lost"});
  throw ToolkitError(id, "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + what);
}

bool PacketParser::State::warn(std::string_view before, std::string_view name, std::string_view after) {
  // A hostile packet may have a fault every few bytes, so no text is built for warnings that are not kept.
  if (object->warnings.isFull()) {
    object->warnings.count();
    return false;
  }
  Warning warning{};
  place(warning.line, warning.column);
  warning.text.append(before).append(shown(name)).append(after);
  object->warnings.add(std::move(warning));
  return false;
}

// --- names -----------------------------------------------------------------------------------------------------------

void PacketParser::State::declarePrefixes(Attributes attributes) {
  for (; *attributes != nullptr; attributes += 2) {
    const std::string_view name = attributes[0];
    if (!isDeclaration(name)) continue;
    const std::string_view prefix = name.substr(std::min<std::size_t>(name.size(), 6));
    const std::string_view uri = attributes[1];
    if (prefix.empty() != (name.size() == 5) || prefix == "xmlns" || (prefix == "xml") != (uri == kXMLNamespace) ||
        uri == kDeclarationNamespace) {
      warn("the declaration of ", name, " is not allowed");
    } else if (prefix != "xml") {
      prefixes.declare(prefix, uri);
    }
  }
}

// False: the name has no namespace.
bool PacketParser::State::resolve(std::string_view qualified, bool isAttribute, Name& name) {
  const std::size_t colon = qualified.find(':');
  const bool hasPrefix = colon != std::string_view::npos;
  name = {nullptr, hasPrefix ? qualified.substr(colon + 1) : qualified};
  if (!hasPrefix && isAttribute) return true;
  const std::string_view prefix = hasPrefix ? qualified.substr(0, colon) : std::string_view();
  // Expat has accepted the whole as a name; both parts must be names.
  if (hasPrefix && (prefix.empty() || name.local.find(':') != std::string_view::npos || !startsAsName(name.local))) {
    return warn("", qualified, " is not a name with a prefix");
  }
  PrefixBinding* const binding = prefixes.find(prefix);
  if (binding == nullptr || binding->uri.empty()) {
    if (!hasPrefix) return true;
    name.ns = findStandardPrefix(prefix);
    return name.ns != nullptr || warn("the prefix of ", qualified, " is not declared");
  }
  if (binding->ns == nullptr) binding->ns = object->namespaces.intern(binding->uri, binding->prefix);
  name.ns = binding->ns;
  return true;
}

// RDF's own attributes are also accepted without a prefix, as in early RDF.
Syntax PacketParser::State::attributeSyntax(const Name& name) const noexcept {
  if (name.ns == known.rdf) return syntaxOf(name.local);
  if (name.ns != nullptr) return Syntax::kNone;
  const Syntax syntax = syntaxOf(name.local);
  return syntax == Syntax::kAbout || syntax == Syntax::kResource || syntax == Syntax::kParseType ? syntax
         : syntax == Syntax::kNone                                                               ? Syntax::kNoNamespace
                                                                                                 : Syntax::kReadPast;
}

bool PacketParser::State::checkParseType(std::string_view type) {
  return type == "Resource" || warn("rdf:parseType=\"", type, "\" is not allowed in XMP");
}

bool PacketParser::State::checkDepth(std::uint32_t depth) {
  return depth <= kDepthLimit || warn("a property is nested deeper than " + std::to_string(kDepthLimit) + " levels");
}

// --- nodes -----------------------------------------------------------------------------------------------------------

void PacketParser::State::addProperty(NodePtr node) {
  if (schema == nullptr || schema->ns != node->ns) schema = object->ensureSchema(root.get(), node->ns);
  if (schema->children.find(node->ns, node->name()) == nullptr) {
    appendChild(schema, std::move(node));
  } else {
    warn("the property ", node->name(), " occurs twice");
  }
}

// Always returns true, for use in return statements.
bool PacketParser::State::addField(Frame& frame, NodePtr node) {
  Node* const parent = frame.target;
  if (parent->children.find(node->ns, node->name()) == nullptr) {
    appendChild(parent, std::move(node));
  } else {
    warn("the field ", node->name(), " occurs twice");
  }
  return true;
}

void PacketParser::State::addQualifierOnce(Node* node, NodePtr qualifier) {
  if (node->qualifiers.find(qualifier->ns, qualifier->name()) == nullptr) {
    addQualifier(node, std::move(qualifier));
  } else {
    warn("the qualifier ", qualifier->name(), " occurs twice");
  }
}

// xml:lang on a property, or on the rdf:Description or array that is its value.
bool PacketParser::State::addLanguage(Frame& frame, std::string_view language) {
  if (frame.target == nullptr || language.empty() || languageOf(frame.target) != nullptr) return true;
  if (!checkDepth(frame.depth + 1)) return false;
  setLanguage(frame.target, language);
  return true;
}

// Completes the fields of a struct. If one is rdf:value, there is no struct: it is the value, and the other fields are
// its qualifiers (ISO 16684-1, 7.8).
void PacketParser::State::finishFields(const Frame& frame) {
  Node* const node = frame.target;
  if (!frame.hasValue) {
    Node* const type = frame.hasType ? node->children.find(known.rdf, "type") : nullptr;
    if (type != nullptr) addQualifierOnce(node, node->children.remove(type));
    return;
  }
  const NodePtr value = node->children.remove(node->children.find(known.rdf, "value"));
  while (Node* const field = node->children.first()) addQualifierOnce(node, node->children.remove(field));
  while (Node* const inner = value->qualifiers.first()) addQualifierOnce(node, value->qualifiers.remove(inner));
  node->options = value->options;
  node->setValue(value->value());
  node->children.clear();  // Also frees the index of the fields' names, which items do not have.
  while (Node* const child = value->children.first()) appendChild(node, value->children.remove(child));
}

// --- elements --------------------------------------------------------------------------------------------------------

void PacketParser::State::dropProperty(std::size_t more) {
  skipped = frames.size() - topSize + more;
  prefixes.restore(frames[topSize].prefixMark);
  while (frames.size() > topSize) frames.pop_back();
  text.clear();
}

void PacketParser::State::startElement(std::string_view qualified, Attributes attributes) {
  hasWarnedOfText = false;
  if (skipped != 0) {
    ++skipped;
    return;
  }
  Frame frame;
  frame.place = frames.empty() ? Place::kOutside : frames.back().place;
  frame.prefixMark = prefixes.mark();
  const std::size_t prefixMark = frame.prefixMark;
  bool isAllowed = frames.size() < kElementLimit ||
                   warn("elements are nested deeper than " + std::to_string(kElementLimit) + " levels");
  if (isAllowed) {
    declarePrefixes(attributes);
    Name name{};
    isAllowed = resolve(qualified, false, name);
    switch (frame.place) {
      case Place::kOutside:
        if (isAllowed && name.ns == known.rdf && name.local == "RDF") {
          frame.place = Place::kRDF;
          hasRDF = true;
        }
        // An unknown element may still contain an rdf:RDF.
        isAllowed = true;
        frames.push_back(std::move(frame));
        break;
      case Place::kRDF:
      case Place::kProperty:
        isAllowed = isAllowed && startNodeElement(qualified, name, attributes, std::move(frame));
        break;
      case Place::kTop:
      case Place::kFields:
        isAllowed = isAllowed && startProperty(qualified, name, attributes, std::move(frame));
        break;
      case Place::kArray:
        isAllowed = isAllowed && startItem(qualified, name, attributes, std::move(frame));
        break;
    }
  }
  if (isAllowed) return;
  prefixes.restore(prefixMark);
  if (isInProperty()) {
    dropProperty(1);
  } else {
    skipped = 1;
  }
}

// rdf:Description, an array, or a typed node (an rdf:Description with an rdf:type).
bool PacketParser::State::startNodeElement(std::string_view qualified, const Name& name, Attributes attributes,
                                           Frame frame) {
  Frame& parent = frames.back();
  const bool isTop = parent.place == Place::kRDF;
  if (!isTop) {
    if (parent.hasChild) return warn("", qualified, " is a second value in one property");
    if (parent.mustBeEmpty) return warn("a property with a value in its attributes contains ", qualified);
    if (!isBlank(text)) return warn("text is mixed with the element ", qualified);
    text.clear();
    parent.hasChild = true;
    frame.target = parent.target;
    frame.depth = parent.depth;
  }
  if (name.ns == nullptr) return warn("", qualified, " is in no namespace");
  const bool isRDF = name.ns == known.rdf;
  const std::uint32_t form = isRDF ? arrayForm(name.local) : 0;
  const bool isDescription = isRDF && name.local == "Description";
  if (isRDF && !isDescription && syntaxOf(name.local) != Syntax::kNone) {
    return warn("", qualified, " is not allowed here");
  }
  if (form != 0 && isTop) return warn("", qualified, " is not in a property");
  frame.place = isTop ? Place::kTop : form != 0 ? Place::kArray : Place::kFields;
  if (!isTop) frame.target->options = form != 0 ? form : kXMPPropIsStruct;
  if (!readNodeAttributes(form, attributes, frame)) return false;
  if (!isDescription && form == 0) {
    std::string type(name.ns->uri);
    type.append(name.local);
    NodePtr node = make({known.rdf, "type"}, kXMPPropValueIsURI, type);
    if (isTop) {
      addProperty(std::move(node));
    } else if (checkDepth(frame.depth + 1)) {
      frame.hasType = true;
      addField(frame, std::move(node));
    } else {
      return false;
    }
  }
  frames.push_back(std::move(frame));
  if (isTop) topSize = frames.size();
  return true;
}

// In rdf:RDF each attribute is a property, so a fault affects only that one.
bool PacketParser::State::readNodeAttributes(std::uint32_t form, Attributes attributes, Frame& frame) {
  const bool isTop = frame.place == Place::kTop;
  const auto readOne = [&](std::string_view attribute, std::string_view value) {
    Name name{};
    if (!resolve(attribute, true, name)) return false;
    if (name.ns == known.xml) return name.local != "lang" || addLanguage(frame, value);
    switch (attributeSyntax(name)) {
      case Syntax::kAbout:
        if (isTop && about.empty()) about = value;
        return true;
      case Syntax::kParseType:
        return checkParseType(value);
      case Syntax::kNoNamespace:
        warn("the attribute ", attribute, " is in no namespace");
        return true;
      case Syntax::kResource:
      case Syntax::kReadPast:
        return true;
      case Syntax::kForbidden:
        return warn("", attribute, " is not allowed in XMP");
      case Syntax::kNone:
        break;
    }
    if (form != 0) return warn("an array has the property ", attribute);
    const bool isType = name.ns == known.rdf && name.local == "type";
    NodePtr node = make(name, isType ? kXMPPropValueIsURI : 0, value);
    if (isTop) {
      addProperty(std::move(node));
      return true;
    }
    frame.hasValue |= name.ns == known.rdf && name.local == "value";
    frame.hasType |= isType;
    return checkDepth(frame.depth + 1) && addField(frame, std::move(node));
  };
  for (; *attributes != nullptr; attributes += 2) {
    if (!isDeclaration(attributes[0]) && !readOne(attributes[0], attributes[1]) && !isTop) return false;
  }
  return true;
}

bool PacketParser::State::startProperty(std::string_view qualified, const Name& name, Attributes attributes,
                                        Frame frame) {
  Frame& parent = frames.back();
  if (name.ns == nullptr) {
    // The enclosing property is not at fault.
    warn("", qualified, " is in no namespace");
    prefixes.restore(frame.prefixMark);
    skipped = 1;
    return true;
  }
  bool isValue = false;
  if (name.ns == known.rdf) {
    if (syntaxOf(name.local) != Syntax::kNone || arrayForm(name.local) != 0) {
      return warn("", qualified, " is not allowed here");
    }
    isValue = parent.place == Place::kFields && name.local == "value";
    parent.hasValue |= isValue;
    parent.hasType |= name.local == "type";
  }
  // rdf:value will replace the node that contains it.
  frame.depth = parent.place == Place::kTop ? 1 : isValue ? parent.depth : parent.depth + 1;
  if (!checkDepth(frame.depth)) return false;
  frame.owned = make(name, 0, {});
  if (!readPropertyAttributes(qualified, attributes, frame)) return false;
  frames.push_back(std::move(frame));
  return true;
}

// RDF numbers items: rdf:li is short for rdf:_1, rdf:_2 and so on. Items are taken in document order.
bool PacketParser::State::startItem(std::string_view qualified, const Name& name, Attributes attributes, Frame frame) {
  const bool isItem = name.ns == known.rdf && (name.local == "li" || (name.local.size() > 1 && name.local[0] == '_' &&
                                                                      name.local[1] >= '0' && name.local[1] <= '9'));
  if (!isItem) return warn("an array has the element ", qualified, " instead of an item");
  frame.depth = frames.back().depth + 1;
  if (!checkDepth(frame.depth)) return false;
  frame.owned = makeItem(object->storage, 0);
  if (!readPropertyAttributes(qualified, attributes, frame)) return false;
  frames.push_back(std::move(frame));
  return true;
}

// The attributes of a property determine its content (ISO 16684-1, C.2): with rdf:resource or rdf:value they are a
// simple value and its qualifiers, others are the fields of a struct. In both cases the element is empty.
bool PacketParser::State::readPropertyAttributes(std::string_view qualified, Attributes attributes, Frame& frame) {
  frame.place = Place::kProperty;
  frame.target = frame.owned.get();
  Node* const node = frame.target;
  const char* resource = nullptr;
  const char* value = nullptr;
  bool isResourceType = false;
  bool hasOthers = false;
  for (Attributes at = attributes; *at != nullptr; at += 2) {
    const std::string_view attribute = at[0];
    if (isDeclaration(attribute)) continue;
    Name name{};
    if (!resolve(attribute, true, name)) return false;
    if (name.ns == known.xml) {
      if (name.local == "lang" && !addLanguage(frame, at[1])) return false;
      continue;
    }
    switch (attributeSyntax(name)) {
      case Syntax::kResource:
        resource = at[1];
        break;
      case Syntax::kParseType:
        if (!checkParseType(at[1])) return false;
        isResourceType = true;
        break;
      case Syntax::kNoNamespace:
        warn("the attribute ", attribute, " is in no namespace");
        break;
      case Syntax::kAbout:
      case Syntax::kReadPast:
        break;
      case Syntax::kForbidden:
        return warn("", attribute, " is not allowed in XMP");
      case Syntax::kNone:
        if (name.ns == known.rdf && name.local == "value") {
          value = at[1];
        } else {
          hasOthers = true;
        }
        break;
    }
  }
  if (resource != nullptr && (value != nullptr || isResourceType)) {
    return warn("", qualified, " has rdf:resource and another value");
  }
  const bool isSimple = resource != nullptr || value != nullptr;
  if (hasOthers) {
    if (!checkDepth(frame.depth + 1)) return false;
    for (Attributes at = attributes; *at != nullptr; at += 2) {
      Name name{};
      if (isDeclaration(at[0]) || !resolve(at[0], true, name)) continue;
      if (name.ns == known.xml || attributeSyntax(name) != Syntax::kNone) continue;
      const bool isRDF = name.ns == known.rdf;
      if (isRDF && name.local == "value") continue;
      const bool isType = isRDF && name.local == "type";
      NodePtr other = make(name, isType ? kXMPPropValueIsURI : 0, at[1]);
      if (isSimple || isType) {
        addQualifierOnce(node, std::move(other));
      } else {
        addField(frame, std::move(other));
      }
    }
  }
  if (isSimple) {
    node->options = resource != nullptr ? kXMPPropValueIsURI : 0;
    node->setValue(resource != nullptr ? resource : value);
    frame.mustBeEmpty = true;
  } else if (isResourceType) {
    node->options = kXMPPropIsStruct;
    frame.place = Place::kFields;
  } else if (hasOthers) {
    node->options = kXMPPropIsStruct;
    frame.mustBeEmpty = true;
  }
  return true;
}

void PacketParser::State::endElement() {
  hasWarnedOfText = false;
  if (skipped != 0) {
    --skipped;
    return;
  }
  Frame frame = std::move(frames.back());
  frames.pop_back();
  prefixes.restore(frame.prefixMark);
  if (frames.empty()) {
    if (!hasRDF) fail(ErrorId::kBadRDF, "no rdf:RDF in the packet");
    isFinished = true;
    XML_StopParser(parser, XML_FALSE);
    return;
  }
  switch (frame.place) {
    case Place::kFields:
      finishFields(frame);
      break;
    case Place::kArray:
      if ((frame.target->options & kXMPPropIsAlternate) != 0) putDefaultLanguageFirst(frame.target);
      break;
    case Place::kProperty:
      if (!frame.hasChild && !frame.mustBeEmpty) frame.target->setValue(text);
      text.clear();
      break;
    case Place::kTop:
      topSize = kNowhere;
      break;
    case Place::kOutside:
    case Place::kRDF:
      break;
  }
  if (frame.owned == nullptr) return;
  Frame& parent = frames.back();
  switch (parent.place) {
    case Place::kTop:
      addProperty(std::move(frame.owned));
      break;
    case Place::kArray:
      appendChild(parent.target, std::move(frame.owned));
      break;
    default:
      addField(parent, std::move(frame.owned));
      break;
  }
}

void PacketParser::State::addText(std::string_view piece) {
  if (skipped != 0 || frames.empty()) return;
  const Frame& frame = frames.back();
  if (frame.place == Place::kOutside) return;
  if (frame.place == Place::kProperty && !frame.hasChild && !frame.mustBeEmpty) {
    text.append(piece);
    return;
  }
  if (isBlank(piece)) return;
  // A text may arrive in several pieces.
  if (!hasWarnedOfText) warn("text is not allowed between these elements");
  hasWarnedOfText = true;
  if (isInProperty()) dropProperty(0);
}

// An entity that only an external document type declares.
void PacketParser::State::skipEntity(std::string_view name) {
  if (skipped != 0) return;
  warn("the entity ", name, " is not declared");
  if (isInProperty()) dropProperty(0);
}

// --- the entry -------------------------------------------------------------------------------------------------------

PacketParser::PacketParser(Object& object) : state_(static_cast<State*>(spareStates.take())) {
  const bool isSpare = state_ != nullptr;
  std::unique_ptr<State> state(isSpare ? state_ : new State);
  try {
    state->begin(object);
  } catch (...) {
    // A spare parser that could not start for lack of memory can be used later.
    if (isSpare && state->end() && spareStates.keep(state.get())) (void)state.release();
    throw;
  }
  state_ = state.release();
}

PacketParser::~PacketParser() {
  if (!state_->end() || !spareStates.keep(state_)) delete state_;
}

void PacketParser::feed(const char* bytes, std::size_t length, bool last) {
  try {
    state_->feed(length == 0 ? std::string_view() : std::string_view(bytes, length), last);
  } catch (const ToolkitError&) {
    state_->finish();
    throw;
  }
  if (last) state_->finish();
}

void PacketParser::releaseSpares() noexcept {
  while (void* spare = spareStates.take()) delete static_cast<State*>(spare);
}

}  // namespace velto
