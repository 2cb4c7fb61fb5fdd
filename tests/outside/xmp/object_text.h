// An object as lines of text, for tests to compare.
#ifndef LXBRIDGE_TESTS_OUTSIDE_XMP_OBJECT_TEXT_H_
#define LXBRIDGE_TESTS_OUTSIDE_XMP_OBJECT_TEXT_H_

#include <algorithm>
#include <string>
#include <string_view>

#include "outside/xmp/model.h"
#include "outside/xmp/rdf.h"

namespace velto::test {

inline std::string visible(std::string_view text) {
  std::string shown;
  for (const char c : text) {
    const std::size_t escape = std::string_view("\n\r\t").find(c);
    shown += escape == std::string_view::npos ? std::string(1, c) : std::string("\\") + "nrt"[escape];
  }
  return shown;
}

// "dc:format = image/jpeg", "xmp:BaseURL -> http://...", "dc:subject bag", "exif:Flash struct"; items are "-",
// qualifiers
// "?xml:lang". Qualifiers, then items or fields stand below their node, two spaces
// farther in.
inline void appendText(const Node* node, std::size_t level, std::string& text) {
  const std::uint32_t options = reportedOptions(node);
  text.append(level * 2, ' ');
  if ((options & kXMPPropIsQualifier) != 0) text += '?';
  text += node->ns == nullptr ? "-" : std::string(node->ns->prefix) + ":" + std::string(node->name());
  if (node->isSimple()) {
    text += (options & kXMPPropValueIsURI) != 0 ? " -> " : " = ";
    text += visible(node->value());
  } else {
    text += (options & kXMPPropIsStruct) != 0      ? " struct"
            : (options & kXMPPropIsAltText) != 0   ? " alt-text"
            : (options & kXMPPropIsAlternate) != 0 ? " alt"
            : (options & kXMPPropIsOrdered) != 0   ? " seq"
                                                   : " bag";
  }
  text += '\n';
  for (const Node* child = node->qualifiers.first(); child != nullptr; child = child->next) {
    appendText(child, level + 1, text);
  }
  for (const Node* child = node->children.first(); child != nullptr; child = child->next) {
    appendText(child, level + 1, text);
  }
}

inline std::string textOf(const Object& object) {
  std::string text;
  for (const Node* schema = object.root()->children.first(); schema != nullptr; schema = schema->next) {
    for (const Node* node = schema->children.first(); node != nullptr; node = node->next) appendText(node, 0, text);
  }
  return text;
}

// A packet in pieces of that size, the last of which is empty.
struct Parsed {
  Object object;
  std::string failure;  // Its id and message: "14 line 3, column 7: ...", or "" when there is none.

  explicit Parsed(std::string_view packet, std::size_t pieceSize = std::string_view::npos) {
    PacketParser parser(object);
    try {
      while (!packet.empty()) {
        const std::string_view piece = packet.substr(0, pieceSize);
        parser.feed(piece.data(), piece.size(), false);
        packet.remove_prefix(piece.size());
      }
      parser.feed(nullptr, 0, true);
    } catch (const ToolkitError& error) {
      failure = std::to_string(static_cast<int>(error.id())) + " " + error.what();
    }
  }

  std::string text() const { return textOf(object); }
  std::string warnings() const {
    std::string text;
    for (const Warning& warning : object.warnings.kept()) {
      text += std::to_string(warning.line) + ":" + std::to_string(warning.column) + " " + warning.text + "\n";
    }
    return text;
  }
};

inline std::string parsedText(std::string_view packet, std::size_t pieceSize = std::string_view::npos) {
  return Parsed(packet, pieceSize).text();
}

inline std::string failureOf(std::string_view packet, std::size_t pieceSize = std::string_view::npos) {
  return Parsed(packet, pieceSize).failure;
}

// Declarations of the prefixes that the tests use.
inline const std::string kDeclarations =
    "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#' xmlns:dc='http://purl.org/dc/elements/1.1/' "
    "xmlns:xmp='http://ns.adobe.com/xap/1.0/' xmlns:exif='http://ns.adobe.com/exif/1.0/' "
    "xmlns:tiff='http://ns.adobe.com/tiff/1.0/' xmlns:t='http://test.example/t/'";

inline std::string inRDF(const std::string& body) {
  return "<rdf:RDF " + kDeclarations + ">" + body + "</rdf:RDF>";
}
inline std::string inDescription(const std::string& body) {
  return inRDF("<rdf:Description rdf:about=''>" + body + "</rdf:Description>");
}

}  // namespace velto::test

#endif  // LXBRIDGE_TESTS_OUTSIDE_XMP_OBJECT_TEXT_H_
