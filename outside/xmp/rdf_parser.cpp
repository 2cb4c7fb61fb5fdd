// Packets in: expat's events become nodes.
//
// What is decided here beyond what ISO 16684-1, clause 7 and annex C, say:
// - rdf:RDF may stand at any depth below other elements; those and what stands beside it are read past. Behind the end
//   of the outermost element nothing is looked at: padding, zeros and whatever a file has there.
// - Elements and attributes in no namespace, rdf:ID, rdf:nodeID, rdf:datatype, xml:space and xml:base are read past.
// - A property, field or qualifier that comes twice keeps its first value: what was read is not taken back by what
//   follows.
// - A standard prefix that is not declared means its usual namespace, since writers that paste properties together
//   forget declarations. Any other is an error, also when an earlier packet has declared it.
// - rdf:type, written as an element or by a typed node, is a qualifier of the struct that it stands in.
#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <exception>
#include <new>
#include <utility>
#include <vector>

#include "outside/xmp/packet_encoding.h"
#include "outside/xmp/packet_prefixes.h"
#include "outside/xmp/rdf.h"

namespace velto {
namespace {

// Elements open at a time. The longest way from one node to the next is four of them: the property, its rdf:value, an
// rdf:Description or rdf:Bag in that, and rdf:li; the rest is for what stands around rdf:RDF.
constexpr std::size_t kElementLimit = 4 * kDepthLimit + 32;

constexpr std::uint32_t kBag = kXMPPropIsArray;
constexpr std::uint32_t kSeq = kBag | kXMPPropIsOrdered;
constexpr std::uint32_t kAlt = kSeq | kXMPPropIsAlternate;

constexpr std::string_view kXMLNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kDeclarationNamespace = "http://www.w3.org/2000/xmlns/";

// --- expat -----------------------------------------------------------------------------------------------------------

// Keeps one parser from packet to packet: making one costs as much as reading a small packet. One that has grown with a
// large packet is not kept.
class ParserSlot {
 public:
  ~ParserSlot() {
    if (idle_ != nullptr) XML_ParserFree(idle_);
  }
  XML_Parser take() {
    if (idle_ != nullptr) return std::exchange(idle_, nullptr);
    // The name of the encoding overrules an XML declaration: the bytes have been brought into UTF-8 before.
    const XML_Parser parser = XML_ParserCreate("UTF-8");
    if (parser == nullptr) throw std::bad_alloc();
    return parser;
  }
  void giveBack(XML_Parser parser, std::size_t parsedBytes) noexcept {
    constexpr std::size_t kSmall = 256 * 1024;
    if (idle_ == nullptr && parsedBytes <= kSmall && XML_ParserReset(parser, "UTF-8") == XML_TRUE) {
      idle_ = parser;
    } else {
      XML_ParserFree(parser);
    }
  }

 private:
  XML_Parser idle_ = nullptr;
};

ParserSlot& parserSlot() noexcept {
  static ParserSlot slot;
  return slot;
}

// --- names of RDF ----------------------------------------------------------------------------------------------------

struct Name {
  const Namespace* ns;  // Null: in no namespace.
  std::string_view local;
};

// What names of RDF's own namespace mean where an element or an attribute may stand.
enum class Syntax { kNone, kAbout, kResource, kParseType, kReadPast, kForbidden };

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

// xmlns="" and xmlns:prefix="".
bool isDeclaration(std::string_view attribute) noexcept {
  return attribute.substr(0, 5) == "xmlns" && (attribute.size() == 5 || attribute[5] == ':');
}

// Of ASCII only letters and the underscore start a name.
bool startsAsName(std::string_view text) noexcept {
  if (text.empty()) return false;
  const auto first = static_cast<std::uint8_t>(text[0]);
  return first >= 0x80 || first == '_' || ((first | 0x20) >= 'a' && (first | 0x20) <= 'z');
}

bool isBlank(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; });
}

// A name or a value of the packet for a message: not all of it when it is long.
std::string shown(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  if (text.size() <= kLongest) return std::string(text);
  std::size_t end = kLongest;
  while (end > 0 && (static_cast<std::uint8_t>(text[end]) & 0xC0) == 0x80) end--;
  return std::string(text.substr(0, end)) + "...";
}

// --- the state of a packet -------------------------------------------------------------------------------------------

enum class Place {
  kOutside,   // Not below rdf:RDF.
  kSkipped,   // Below an element that is read past.
  kRDF,       // Children: rdf:Description.
  kTop,       // An rdf:Description in rdf:RDF. Children: properties.
  kProperty,  // A property, field or item. Content: text, or one child: rdf:Description or an array.
  kFields,    // rdf:Description in a property, or a property with parseType="Resource". Children: fields.
  kArray,     // Children: rdf:li.
};

// One open element.
struct Frame {
  Place place = Place::kOutside;
  bool hasChild = false;     // kProperty: its one child has come.
  bool mustBeEmpty = false;  // kProperty: its attributes have said all.
  bool hasValue = false;     // kFields: an rdf:value was among them, so the other fields are qualifiers.
  bool hasType = false;      // kFields: an rdf:type was.
  std::uint32_t depth = 0;   // Of `target`.
  Node* target = nullptr;    // The node that the element describes.
  NodePtr owned;             // The same for the element that has begun it. It is put into the tree when it is complete.
  std::size_t prefixMark = 0;
};

using Attributes = const XML_Char**;

}  // namespace

struct PacketParser::State {
  State() {
    frames.reserve(16);
    parser = parserSlot().take();  // Last: nothing gives it back when the construction fails behind this.
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, onStart, onEnd);
    XML_SetCharacterDataHandler(parser, onText);
    XML_SetStartDoctypeDeclHandler(parser, onDoctype);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() { parserSlot().giveBack(parser, parsedBytes); }

  void feed(std::string_view bytes, bool last);

 private:
  // Expat's events. Nothing may be raised through it, so what is raised is kept and expat is stopped; some events still
  // come after that.
  template <typename Action>
  static void guarded(void* user, Action action) noexcept {
    State& state = *static_cast<State*>(user);
    if (state.isFinished || state.failure) return;
    try {
      action(state);
    } catch (...) {
      state.failure = std::current_exception();
      XML_StopParser(state.parser, XML_FALSE);
    }
  }
  static void XMLCALL onStart(void* user, const XML_Char* name, const XML_Char** attributes) noexcept {
    guarded(user, [&](State& state) { state.startElement(name, attributes); });
  }
  static void XMLCALL onEnd(void* user, const XML_Char* name) noexcept {
    guarded(user, [&](State& state) { state.endElement(name); });
  }
  static void XMLCALL onText(void* user, const XML_Char* text, int length) noexcept {
    guarded(user, [&](State& state) { state.addText({text, static_cast<std::size_t>(length)}); });
  }
  static void XMLCALL onDoctype(void* user, const XML_Char*, const XML_Char*, const XML_Char*, int) noexcept {
    guarded(user, [](State& state) { state.fail(ErrorId::kBadXML, "a packet has no document type"); });
  }

  [[noreturn]] void fail(ErrorId id, const std::string& what) const;
  void parse(std::string_view text, bool last);

  void startElement(std::string_view qualified, Attributes attributes);
  void endElement(std::string_view qualified);
  void addText(std::string_view piece);

  void startNodeElement(std::string_view qualified, const Name& name, Attributes attributes, Frame frame);
  void startProperty(std::string_view qualified, const Name& name, Attributes attributes, Frame frame);
  void startItem(std::string_view qualified, const Name& name, Attributes attributes, Frame frame);
  void readPropertyAttributes(std::string_view qualified, Attributes attributes, Frame& frame);

  void declarePrefixes(Attributes attributes);
  Name resolve(std::string_view qualified, bool isAttribute);
  Syntax attributeSyntax(const Name& name) const noexcept;
  void checkParseType(std::string_view type) const;
  void checkDepth(std::uint32_t depth) const;

  Node* schemaOf(const Namespace* ns);
  void addProperty(NodePtr node);
  static void addField(Frame& frame, NodePtr node) noexcept;
  static void addQualifierOnce(Node* node, NodePtr qualifier) noexcept;
  void addLanguage(Frame& frame, std::string_view language);
  static void finishFields(const Frame& frame) noexcept;

 public:
  XML_Parser parser = nullptr;
  Object object;

 private:
  PacketDecoder decoder;
  std::string gathered;  // Clean text that is not parsed yet.
  std::size_t parsedBytes = 0;
  bool isFinished = false;  // The outermost element has ended.
  bool hasRDF = false;
  std::exception_ptr failure;

  const WellKnown& known = wellKnown();
  PacketPrefixes prefixes;
  std::vector<Frame> frames;
  std::string text;        // Of the innermost kProperty, until its child comes.
  Node* schema = nullptr;  // The one used last.
};

// --- bytes -----------------------------------------------------------------------------------------------------------

// Expat reads a token that is not complete again with the next piece. So small pieces are gathered until they are as
// much as was parsed before: then no byte is read more than a few times, however the packet is cut.
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
  if (last && !decoder.hasStarted()) throw ToolkitError(ErrorId::kBadXML, "no packet: nothing in it starts an element");
  constexpr std::size_t kLongest = std::size_t{1} << 30;
  static_assert(kLongest <= INT_MAX);
  do {
    const std::string_view piece = clean.substr(0, kLongest);
    clean.remove_prefix(piece.size());
    parsedBytes += piece.size();
    const bool isLastPiece = last && clean.empty();
    if (XML_Parse(parser, piece.data(), static_cast<int>(piece.size()), isLastPiece ? 1 : 0) == XML_STATUS_OK) continue;
    if (failure) std::rethrow_exception(failure);
    if (isFinished) return;
    const XML_Error error = XML_GetErrorCode(parser);
    if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    fail(ErrorId::kBadXML, XML_ErrorString(error));
  } while (!clean.empty());
}

// Lines and columns count from 1, columns in characters.
void PacketParser::State::fail(ErrorId id, const std::string& what) const {
  const std::size_t line = XML_GetCurrentLineNumber(parser);
  std::size_t column = XML_GetCurrentColumnNumber(parser) + 1;
  if (line == 1) column += decoder.droppedColumns();
  throw ToolkitError(
      id, "line " + std::to_string(line + decoder.droppedLines()) + ", column " + std::to_string(column) + ": " + what);
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
      fail(ErrorId::kBadXML, "the declaration of " + shown(name) + " is not allowed");
    }
    if (prefix != "xml") prefixes.declare(prefix, uri);
  }
}

Name PacketParser::State::resolve(std::string_view qualified, bool isAttribute) {
  const std::size_t colon = qualified.find(':');
  const bool hasPrefix = colon != std::string_view::npos;
  if (!hasPrefix && isAttribute) return {nullptr, qualified};
  const std::string_view prefix = hasPrefix ? qualified.substr(0, colon) : std::string_view();
  const std::string_view local = hasPrefix ? qualified.substr(colon + 1) : qualified;
  if (hasPrefix) {
    // Expat has taken the whole for one name; both parts have to be one.
    if (prefix.empty() || local.find(':') != std::string_view::npos || !startsAsName(local)) {
      fail(ErrorId::kBadXML, shown(qualified) + " is no name with a prefix");
    }
  }
  PrefixBinding* const binding = prefixes.find(prefix);
  if (binding == nullptr || binding->uri.empty()) {
    if (!hasPrefix) return {nullptr, local};
    const Namespace* usual = findPrefix(prefix);
    if (usual == nullptr || !usual->standard)
      fail(ErrorId::kBadXML, "the prefix of " + shown(qualified) + " is not declared");
    return {usual, local};
  }
  return {PacketPrefixes::namespaceOf(*binding), local};
}

// RDF's own attributes are also taken without prefix, as RDF had them at first.
Syntax PacketParser::State::attributeSyntax(const Name& name) const noexcept {
  if (name.ns == known.rdf) return syntaxOf(name.local);
  if (name.ns != nullptr) return Syntax::kNone;
  const Syntax syntax = syntaxOf(name.local);
  return syntax == Syntax::kAbout || syntax == Syntax::kResource || syntax == Syntax::kParseType ? syntax
                                                                                                 : Syntax::kReadPast;
}

void PacketParser::State::checkParseType(std::string_view type) const {
  if (type != "Resource") fail(ErrorId::kBadRDF, "rdf:parseType=\"" + shown(type) + "\" is not allowed in XMP");
}

void PacketParser::State::checkDepth(std::uint32_t depth) const {
  if (depth > kDepthLimit) {
    fail(ErrorId::kTooDeep, "properties are nested deeper than " + std::to_string(kDepthLimit) + " levels");
  }
}

// --- nodes -----------------------------------------------------------------------------------------------------------

Node* PacketParser::State::schemaOf(const Namespace* ns) {
  if (schema == nullptr || schema->ns != ns) schema = object.ensureSchema(ns);
  return schema;
}

void PacketParser::State::addProperty(NodePtr node) {
  Node* const parent = schemaOf(node->ns);
  if (parent->children.find(node->ns, node->name()) == nullptr) appendChild(parent, std::move(node));
}

void PacketParser::State::addField(Frame& frame, NodePtr node) noexcept {
  Node* const parent = frame.target;
  if (parent->children.find(node->ns, node->name()) == nullptr) appendChild(parent, std::move(node));
}

void PacketParser::State::addQualifierOnce(Node* node, NodePtr qualifier) noexcept {
  if (node->qualifiers.find(qualifier->ns, qualifier->name()) == nullptr) addQualifier(node, std::move(qualifier));
}

// xml:lang on a property, or on the rdf:Description or array that is its value.
void PacketParser::State::addLanguage(Frame& frame, std::string_view language) {
  if (frame.target == nullptr || language.empty() || languageOf(frame.target) != nullptr) return;
  checkDepth(frame.depth + 1);
  setLanguage(frame.target, language);
}

// The fields of a struct are complete. With an rdf:value among them there is no struct: that is the value, and the
// other fields qualify it (ISO 16684-1, 7.8).
void PacketParser::State::finishFields(const Frame& frame) noexcept {
  Node* const node = frame.target;
  const Namespace* const rdf = wellKnown().rdf;
  if (!frame.hasValue) {
    Node* const type = frame.hasType ? node->children.find(rdf, "type") : nullptr;
    if (type != nullptr) addQualifierOnce(node, node->children.remove(type));
    return;
  }
  const NodePtr value = node->children.remove(node->children.find(rdf, "value"));
  while (Node* const field = node->children.first()) addQualifierOnce(node, node->children.remove(field));
  while (Node* const inner = value->qualifiers.first()) addQualifierOnce(node, value->qualifiers.remove(inner));
  node->options = value->options;
  node->value = std::move(value->value);
  node->children.clear();  // The table of the fields' names goes with them: items have none.
  while (Node* const child = value->children.first()) appendChild(node, value->children.remove(child));
}

// --- elements --------------------------------------------------------------------------------------------------------

void PacketParser::State::startElement(std::string_view qualified, Attributes attributes) {
  if (frames.size() >= kElementLimit) {
    fail(ErrorId::kTooDeep, "elements are nested deeper than " + std::to_string(kElementLimit) + " levels");
  }
  const Place place = frames.empty() ? Place::kOutside : frames.back().place;
  Frame frame;
  frame.place = place;
  frame.prefixMark = prefixes.mark();
  if (place == Place::kSkipped) {
    frames.push_back(std::move(frame));
    return;
  }
  declarePrefixes(attributes);
  const Name name = resolve(qualified, false);
  switch (place) {
    case Place::kSkipped:
      break;
    case Place::kOutside:
      if (name.ns == known.rdf && name.local == "RDF") {
        frame.place = Place::kRDF;
        hasRDF = true;
      }
      frames.push_back(std::move(frame));
      break;
    case Place::kRDF:
    case Place::kProperty:
      startNodeElement(qualified, name, attributes, std::move(frame));
      break;
    case Place::kTop:
    case Place::kFields:
      startProperty(qualified, name, attributes, std::move(frame));
      break;
    case Place::kArray:
      startItem(qualified, name, attributes, std::move(frame));
      break;
  }
}

// rdf:Description, an array, or a typed node, which is an rdf:Description that has an rdf:type.
void PacketParser::State::startNodeElement(std::string_view qualified, const Name& name, Attributes attributes,
                                           Frame frame) {
  Frame& parent = frames.back();
  const bool isTop = parent.place == Place::kRDF;
  if (!isTop) {
    if (parent.hasChild) fail(ErrorId::kBadRDF, shown(qualified) + " is a second value in one property");
    if (parent.mustBeEmpty) {
      fail(ErrorId::kBadRDF, "a property with a value in its attributes contains " + shown(qualified));
    }
    if (!isBlank(text)) fail(ErrorId::kBadRDF, "text is mixed with the element " + shown(qualified));
    text.clear();
    parent.hasChild = true;
    frame.target = parent.target;
    frame.depth = parent.depth;
  }
  if (name.ns == nullptr) {
    if (!isTop) fail(ErrorId::kBadRDF, "the value " + shown(qualified) + " is in no namespace");
    frame.place = Place::kSkipped;
    frames.push_back(std::move(frame));
    return;
  }
  const bool isRDF = name.ns == known.rdf;
  const std::uint32_t form = isRDF ? arrayForm(name.local) : 0;
  const bool isDescription = isRDF && name.local == "Description";
  if (isRDF && !isDescription && syntaxOf(name.local) != Syntax::kNone) {
    fail(ErrorId::kBadRDF, shown(qualified) + " is not allowed here");
  }
  if (form != 0 && isTop) fail(ErrorId::kBadRDF, shown(qualified) + " is not in a property");
  frame.place = isTop ? Place::kTop : form != 0 ? Place::kArray : Place::kFields;
  if (!isTop) frame.target->options = form != 0 ? form : kXMPPropIsStruct;

  const auto addNode = [&](NodePtr node) {
    checkDepth(frame.depth + 1);
    if (isTop) {
      addProperty(std::move(node));
    } else {
      frame.hasValue |= node->ns == known.rdf && node->name() == "value";
      frame.hasType |= node->ns == known.rdf && node->name() == "type";
      addField(frame, std::move(node));
    }
  };
  for (; *attributes != nullptr; attributes += 2) {
    const std::string_view attribute = attributes[0];
    if (isDeclaration(attribute)) continue;
    const Name attributeName = resolve(attribute, true);
    if (attributeName.ns == known.xml) {
      if (attributeName.local == "lang") addLanguage(frame, attributes[1]);
      continue;
    }
    switch (attributeSyntax(attributeName)) {
      case Syntax::kAbout:
        if (isTop && object.name.empty()) object.name = attributes[1];
        break;
      case Syntax::kParseType:
        checkParseType(attributes[1]);
        break;
      case Syntax::kResource:
      case Syntax::kReadPast:
        break;
      case Syntax::kForbidden:
        fail(ErrorId::kBadRDF, shown(attribute) + " is not allowed in XMP");
      case Syntax::kNone: {
        if (form != 0) fail(ErrorId::kBadRDF, "an array has the property " + shown(attribute));
        const bool isType = attributeName.ns == known.rdf && attributeName.local == "type";
        NodePtr node = makeNode(attributeName.ns, attributeName.local, isType ? kXMPPropValueIsURI : 0);
        node->value = attributes[1];
        addNode(std::move(node));
        break;
      }
    }
  }
  if (!isDescription && form == 0) {
    NodePtr type = makeNode(known.rdf, "type", kXMPPropValueIsURI);
    type->value = name.ns->uri;
    type->value.append(name.local);
    addNode(std::move(type));
  }
  frames.push_back(std::move(frame));
}

void PacketParser::State::startProperty(std::string_view qualified, const Name& name, Attributes attributes,
                                        Frame frame) {
  Frame& parent = frames.back();
  if (name.ns == nullptr) {
    frame.place = Place::kSkipped;
    frames.push_back(std::move(frame));
    return;
  }
  bool isValue = false;
  if (name.ns == known.rdf) {
    if (syntaxOf(name.local) != Syntax::kNone) fail(ErrorId::kBadRDF, shown(qualified) + " is not allowed here");
    isValue = parent.place == Place::kFields && name.local == "value";
    parent.hasValue |= isValue;
    parent.hasType |= name.local == "type";
  }
  // rdf:value is going to be the node that it stands in.
  frame.depth = parent.place == Place::kTop ? 1 : isValue ? parent.depth : parent.depth + 1;
  checkDepth(frame.depth);
  frame.owned = makeNode(name.ns, name.local, 0);
  readPropertyAttributes(qualified, attributes, frame);
  frames.push_back(std::move(frame));
}

// RDF numbers the items: rdf:li is short for rdf:_1, rdf:_2 and so on, which are taken in the order that they stand in.
void PacketParser::State::startItem(std::string_view qualified, const Name& name, Attributes attributes, Frame frame) {
  const bool isItem = name.ns == known.rdf && (name.local == "li" || (name.local.size() > 1 && name.local[0] == '_' &&
                                                                      name.local[1] >= '0' && name.local[1] <= '9'));
  if (!isItem) fail(ErrorId::kBadRDF, "an array has the element " + shown(qualified) + " where items are");
  frame.depth = frames.back().depth + 1;
  checkDepth(frame.depth);
  frame.owned = makeItem(0);
  readPropertyAttributes(qualified, attributes, frame);
  frames.push_back(std::move(frame));
}

// The attributes of a property say what its content may be (ISO 16684-1, C.2): with rdf:resource or rdf:value they give
// a simple value and its qualifiers, others are the fields of a struct, and in both cases the element is empty.
void PacketParser::State::readPropertyAttributes(std::string_view qualified, Attributes attributes, Frame& frame) {
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
    const Name name = resolve(attribute, true);
    if (name.ns == known.xml) {
      if (name.local == "lang") addLanguage(frame, at[1]);
      continue;
    }
    switch (attributeSyntax(name)) {
      case Syntax::kResource:
        resource = at[1];
        break;
      case Syntax::kParseType:
        checkParseType(at[1]);
        isResourceType = true;
        break;
      case Syntax::kAbout:
      case Syntax::kReadPast:
        break;
      case Syntax::kForbidden:
        fail(ErrorId::kBadRDF, shown(attribute) + " is not allowed in XMP");
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
    fail(ErrorId::kBadRDF, shown(qualified) + " has rdf:resource and another value");
  }
  const bool isSimple = resource != nullptr || value != nullptr;
  if (hasOthers) {
    checkDepth(frame.depth + 1);
    for (Attributes at = attributes; *at != nullptr; at += 2) {
      if (isDeclaration(at[0])) continue;
      const Name name = resolve(at[0], true);
      if (name.ns == known.xml || attributeSyntax(name) != Syntax::kNone) continue;
      const bool isRDF = name.ns == known.rdf;
      if (isRDF && name.local == "value") continue;
      const bool isType = isRDF && name.local == "type";
      NodePtr other = makeNode(name.ns, name.local, isType ? kXMPPropValueIsURI : 0);
      other->value = at[1];
      if (isSimple || isType) {
        addQualifierOnce(node, std::move(other));
      } else {
        addField(frame, std::move(other));
      }
    }
  }
  if (isSimple) {
    node->options = resource != nullptr ? kXMPPropValueIsURI : 0;
    node->value = resource != nullptr ? resource : value;
    frame.mustBeEmpty = true;
  } else if (isResourceType) {
    node->options = kXMPPropIsStruct;
    frame.place = Place::kFields;
  } else if (hasOthers) {
    node->options = kXMPPropIsStruct;
    frame.mustBeEmpty = true;
  }
}

void PacketParser::State::endElement(std::string_view) {
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
      if (!frame.hasChild && !frame.mustBeEmpty) frame.target->value = text;
      text.clear();
      break;
    case Place::kOutside:
    case Place::kSkipped:
    case Place::kRDF:
    case Place::kTop:
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
  const Frame& frame = frames.back();
  switch (frame.place) {
    case Place::kOutside:
    case Place::kSkipped:
      return;
    case Place::kProperty:
      if (!frame.hasChild && !frame.mustBeEmpty) {
        text.append(piece);
        return;
      }
      break;
    case Place::kRDF:
    case Place::kTop:
    case Place::kFields:
    case Place::kArray:
      break;
  }
  if (!isBlank(piece)) fail(ErrorId::kBadRDF, "text stands where only elements may");
}

// --- the entry -------------------------------------------------------------------------------------------------------

PacketParser::PacketParser() : state_(std::make_unique<State>()) {}
PacketParser::~PacketParser() = default;

void PacketParser::feed(const char* bytes, std::size_t length, bool last) {
  state_->feed(length == 0 ? std::string_view() : std::string_view(bytes, length), last);
}

Object& PacketParser::result() noexcept {
  return state_->object;
}

}  // namespace velto
