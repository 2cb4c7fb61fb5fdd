// Packets in: every form of RDF that XMP has and those that it forbids, encodings, pieces, and packets made to hurt.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "outside/xmp/packet_encoding.h"
#include "outside/xmp/rdf.h"
#include "outside/xmp/text.h"
#include "tests/outside/xmp/object_text.h"

namespace velto::test {
namespace {

std::string unescaped(std::string_view text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); at++) {
    if (text[at] != '\\') {
      bytes += text[at];
    } else if (text[++at] == 'x') {
      bytes += static_cast<char>(std::stoi(std::string(text.substr(at + 1, 2)), nullptr, 16));
      at += 2;
    } else {
      bytes += text[at] == 'n' ? '\n' : text[at];
    }
  }
  return bytes;
}

std::string repeated(std::string_view text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; i++) all += text;
  return all;
}

std::string packetOf(const std::string& kind, std::string content) {
  if (kind == "description") return inDescription(content);
  if (kind == "rdf") return inRDF(content);
  if (kind == "among") {
    return "<rdf:RDF " + kDeclarations + ">\n<rdf:Description dc:format='kept'>\n" + content +
           "<dc:source>kept</dc:source></rdf:Description></rdf:RDF>";
  }
  EXPECT_EQ(kind, "packet");
  for (std::size_t at = content.find('@'); at != std::string::npos; at = content.find('@')) {
    content.replace(at, 1, kDeclarations);
  }
  return content;
}

// Of a packet that breaks off, the complete properties are kept.
TEST(RDFParser, FormsAreReadAndFaultsCostTheListedProperties) {
  std::ifstream forms(LX_RDF_FORMS);
  std::string name, kind, packet, expected, warning;
  std::size_t cases = 0;
  const auto check = [&] {
    if (name.empty()) return;
    SCOPED_TRACE(name);
    for (const std::size_t pieceSize : {std::string::npos, std::size_t{1}}) {
      const Parsed parsed(packet, pieceSize);
      const std::string kept = kind != "among"          ? ""
                               : parsed.failure.empty() ? "dc:format = kept\ndc:source = kept\n"
                                                        : "dc:format = kept\n";
      EXPECT_EQ(parsed.text(), kept + expected) << parsed.failure;
      EXPECT_EQ(parsed.warnings().substr(0, warning.size()), warning);
      EXPECT_EQ(parsed.warnings().empty(), warning.empty()) << parsed.warnings();
    }
    ++cases;
    name.clear();
    expected.clear();
    warning.clear();
  };
  for (std::string line; std::getline(forms, line);) {
    if (line.empty() || line.starts_with("##")) continue;
    if (line.starts_with("# ")) {
      check();
      name = line.substr(2);
    } else if (line.starts_with("= ")) {
      expected += line.find("\\x") != std::string::npos ? unescaped(line.substr(2)) + "\n" : line.substr(2) + "\n";
    } else if (line.starts_with("! ")) {
      warning = line.substr(2);
    } else {
      const std::size_t space = line.find(' ');
      kind = line.substr(0, space);
      packet = packetOf(kind, unescaped(line.substr(space + 1)));
    }
  }
  check();
  EXPECT_EQ(cases, 104u);
}

TEST(RDFParser, FirstNonEmptyAboutNamesTheObject) {
  const Parsed parsed(
      inRDF("<rdf:Description rdf:about=''/><rdf:Description about='uuid:1'/><rdf:Description rdf:about='uuid:2'/>"));
  EXPECT_EQ(parsed.object.name, "uuid:1");
}

TEST(RDFParser, ADocumentTypeThatDeclaresSomethingIsAnError) {
  EXPECT_EQ(failureOf("<!DOCTYPE x [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;'>]>\n" +
                      inDescription("<dc:format>&b;</dc:format>")),
            "14 line 1, column 13: the document type has declarations");
}

TEST(RDFParser, WarningsAreBoundedAndTheFailureIsKept) {
  const Parsed parsed("<rdf:RDF>" + repeated("<u:a/>", 1000) + "<rdf:Description dc:format='a'/></x>");
  EXPECT_EQ(parsed.text(), "dc:format = a\n");
  EXPECT_EQ(parsed.object.warnings.kept().size(), Warnings::kMost + 1);
  EXPECT_EQ(parsed.object.warnings.total(), 1001u);
  EXPECT_NE(parsed.object.warnings.kept().back().text.find("mismatched tag"), std::string::npos);
}

// --- encodings -------------------------------------------------------------------------------------------------------

std::string encoded(std::string_view text, PacketEncoding encoding) {
  std::string bytes;
  const auto put = [&](std::uint32_t unit, std::size_t size, bool isBig) {
    for (std::size_t i = 0; i < size; i++) bytes += static_cast<char>(unit >> (8 * (isBig ? size - 1 - i : i)));
  };
  for (std::size_t at = 0; at < text.size();) {
    std::uint32_t codePoint = 0;
    EXPECT_TRUE(decodeUTF8(text, at, codePoint));
    const bool isBig = encoding == PacketEncoding::kUTF16BE || encoding == PacketEncoding::kUTF32BE;
    if (encoding == PacketEncoding::kUTF8) {
      appendUTF8(bytes, codePoint);
    } else if (encoding == PacketEncoding::kUTF32BE || encoding == PacketEncoding::kUTF32LE) {
      put(codePoint, 4, isBig);
    } else if (codePoint < 0x10000) {
      put(codePoint, 2, isBig);
    } else {
      put(0xD800 + ((codePoint - 0x10000) >> 10), 2, isBig);
      put(0xDC00 + ((codePoint - 0x10000) & 0x3FF), 2, isBig);
    }
  }
  return bytes;
}

constexpr PacketEncoding kEncodings[] = {PacketEncoding::kUTF8, PacketEncoding::kUTF16BE, PacketEncoding::kUTF16LE,
                                         PacketEncoding::kUTF32BE, PacketEncoding::kUTF32LE};

// One, two, three and four bytes for a character, and long enough for expat to be handed several pieces.
std::string sample() {
  std::string items;
  for (int i = 0; i < 90; i++) {
    items += "<rdf:li xml:lang='x-" + std::to_string(i) +
             "'>Gr\xC3\xBC\xC3\x9F \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x93\xB7\xF4\x8F\xBF\xBF &amp; " +
             std::string(static_cast<std::size_t>(i), 'o') + "</rdf:li>\n";
  }
  return inDescription("<dc:title><rdf:Alt>" + items + "</rdf:Alt></dc:title><dc:format>\xEF\xBF\xBD</dc:format>");
}

TEST(RDFParser, EveryEncodingWithAndWithoutMarkInPiecesOfAnySize) {
  const std::string text = sample();
  const std::string expected = parsedText(text);
  ASSERT_NE(expected.find("\xF0\x9F\x93\xB7\xF4\x8F\xBF\xBF & oo\n"), std::string::npos);
  for (const PacketEncoding encoding : kEncodings) {
    for (const bool hasMark : {false, true}) {
      for (const std::string_view before : {"", " \n"}) {
        const std::string packet = encoded((hasMark ? "\xEF\xBB\xBF" : "") + std::string(before) + text, encoding);
        for (const std::size_t pieceSize : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 11u, 64u, 1000u, 4095u, 5000u, 1u << 20}) {
          SCOPED_TRACE(std::to_string(static_cast<int>(encoding)) + " mark " + std::to_string(hasMark) + " pieces " +
                       std::to_string(pieceSize));
          ASSERT_EQ(parsedText(packet, pieceSize), expected);
        }
      }
    }
  }
}

TEST(RDFParser, BrokenUTF8IsRepairedAsTextsAreWhereverThePiecesEnd) {
  const std::string broken[] = {"Caf\xE9",
                                "\xC3",
                                "\xE6\x97",
                                "\xF0\x9F\x93",
                                "\x80\x93\xFF",
                                "\xC0\xAF",
                                "a\x01\x1Fz",
                                "\xED\xA0\xBD\xED\xB3\xB7",
                                "\xED\xA0\xBD",
                                "\xED\xB3\xB7\xED\xA0\xBD",
                                "\xEF\xBF\xBE|\xEF\xBF\xBF",
                                "\xED\xA0\xBD\xED",
                                std::string("\0\x0B", 2)};
  for (const std::string& text : broken) {
    const std::string packet =
        inDescription("<dc:format>" + text + "</dc:format><dc:source>" + text + "\xC3\xA4</dc:source>");
    const std::string expected =
        "dc:format = " + repairText(text) + "\ndc:source = " + repairText(text + "\xC3\xA4") + "\n";
    for (const std::size_t pieceSize : {std::size_t{1}, std::size_t{2}, std::size_t{5}, packet.size()}) {
      EXPECT_EQ(parsedText(packet, pieceSize), expected) << pieceSize;
    }
  }
  // A lone surrogate of UTF-16, and half a unit at the end.
  std::string wide = encoded(inDescription("<dc:format>aXb</dc:format>"), PacketEncoding::kUTF16LE);
  wide.replace(wide.find('X'), 2, "\x3D\xD8");
  EXPECT_EQ(parsedText(wide + "\n", 1),
            "dc:format = a\xEF\xBF\xBD"
            "b\n");
}

TEST(RDFParser, PlacesAreThoseOfThePacketAsItWasGiven) {
  const std::string bad = "<rdf:RDF " + kDeclarations + "><a:b/></rdf:RDF>";
  const auto column = [&](std::size_t more) { return std::to_string(bad.find("<a:b") + 1 + more) + " "; };
  const auto startsWith = [](const std::string& packet, const std::string& place, std::size_t pieceSize = 1) {
    EXPECT_EQ(Parsed(packet, pieceSize).warnings().substr(0, place.size()), place) << packet;
  };
  startsWith(bad, "1:" + column(0));
  startsWith("\xEF\xBB\xBF" + bad, "1:" + column(0));
  startsWith(encoded("\n\n" + bad, PacketEncoding::kUTF16BE), "3:" + column(0));
  startsWith("\n \xC3\xA4" + bad, "2:" + column(2));
}

// --- packets made to hurt --------------------------------------------------------------------------------------------

TEST(RDFParser, APropertyThatNestsTooDeepIsLeftOut) {
  const auto isRead = [](const std::string& property) {
    const Parsed parsed(inDescription(property + "<dc:format>kept</dc:format>"));
    EXPECT_EQ(parsed.failure, "");
    EXPECT_NE(parsed.text().find("dc:format = kept\n"), std::string::npos);
    EXPECT_NE(parsed.text().find("t:a") == std::string::npos, parsed.warnings().empty()) << parsed.warnings();
    return parsed.warnings().empty();
  };
  const auto nested = [](std::size_t depth, const std::string& inner) {
    return repeated("<t:a rdf:parseType='Resource'>", depth) + inner + repeated("</t:a>", depth);
  };
  EXPECT_TRUE(isRead(nested(kDepthLimit, "")));
  EXPECT_FALSE(isRead(nested(kDepthLimit + 1, "")));
  // Nor may the levels that attributes add pass the limit.
  for (const char* attribute : {"t:b='1'", "xml:lang='de'", "rdf:value='v' t:b='1'", "rdf:type='u'"}) {
    const std::string inner = "<t:a " + std::string(attribute) + "/>";
    EXPECT_TRUE(isRead(nested(kDepthLimit - 2, inner))) << attribute;
    EXPECT_FALSE(isRead(nested(kDepthLimit - 1, inner))) << attribute;
  }
  const std::string description = "<rdf:RDF " + kDeclarations + "><rdf:Description dc:format='kept'>";
  const struct {
    std::string start;
    const char* open;
  } kCases[] = {
      {"", "<a>"},
      {description, "<t:a>"},
      {description, "<t:a rdf:parseType='Resource'>"},
      {description, "<t:a><rdf:Description>"},
      {description + "<t:a>", "<rdf:Bag><rdf:li>"},
      {description + "<t:a>", "<rdf:Description><rdf:value>"},
  };
  for (const auto& c : kCases) {
    const Parsed parsed(c.start + repeated(c.open, 50000));
    EXPECT_EQ(parsed.failure.substr(0, 3), "14 ") << c.start << c.open;
    EXPECT_EQ(parsed.text(), c.start.empty() ? "" : "dc:format = kept\n") << c.open;
  }
}

double secondsOf(const auto& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Bounds that a sanitised build on a busy machine keeps, and that quadratic work would pass by far.
constexpr double kLinearSeconds = 20;

// Of packets given whole, cost is measured elsewhere; here it is that of small pieces.
TEST(RDFParser, WorkIsLinearInSmallPieces) {
  const std::string items = repeated("<rdf:li>an item, and more of it, and more of it</rdf:li>\n", 100000);
  const struct {
    const char* name;
    std::string packet;
  } kCases[] = {
      {"items", inDescription("<dc:subject><rdf:Bag>" + items + "</rdf:Bag></dc:subject>")},
      {"one token", inRDF("<rdf:Description dc:format='" + std::string(5000000, 'x') + "'/>")},
      {"broken bytes", inDescription("<dc:format>" + std::string(2000000, '\xE9') + "</dc:format>")},
  };
  for (const auto& c : kCases) {
    EXPECT_LT(secondsOf([&] { EXPECT_EQ(failureOf(c.packet, 10), ""); }), kLinearSeconds) << c.name;
  }
}

TEST(RDFParser, NothingPassesFromOnePacketToAnother) {
  const std::string good = inDescription("<dc:format>a</dc:format>");
  Object object;
  PacketParser first(object);  // Two at a time.
  first.feed("<rdf:RDF>", 9, false);
  for (const std::string& other : {std::string("<a xmlns:nobody='u'><b>text"), inDescription("<t:a>x<rdf:Bag/>"),
                                   inDescription("<dc:source>" + std::string(1 << 20, 'x') + "</dc:source>")}) {
    (void)failureOf(other);
    EXPECT_EQ(parsedText(good), "dc:format = a\n");
    EXPECT_NE(Parsed(inDescription("<nobody:a/>")).warnings(), "");
  }
  const std::string rest = "<rdf:Description dc:source='b'/></rdf:RDF>";
  first.feed(rest.data(), rest.size(), true);
  EXPECT_EQ(textOf(object), "dc:source = b\n");
}

TEST(RDFParser, EveryPrefixAndEveryChangedByteEndsInAnObjectOrAFailure) {
  const std::string packet =
      "<?xpacket begin='\xEF\xBB\xBF' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>" +
      inRDF(
          "<rdf:Description rdf:about='' dc:format='a'><t:a xml:lang='de' rdf:parseType='Resource'><rdf:value><rdf:Alt>"
          "<rdf:li xml:lang='x-default'>\xC3\xA4</rdf:li></rdf:Alt></rdf:value><t:q rdf:resource='u'/></t:a>"
          "<t:Q><t:T t:b='1'/></t:Q></rdf:Description>") +
      "</x:xmpmeta><?xpacket end='w'?>";
  const std::size_t end = packet.find("<?xpacket end");
  for (std::size_t length = 0; length <= packet.size(); length++) {
    EXPECT_EQ(failureOf(packet.substr(0, length)).empty(), length >= end) << length;
  }
  for (std::size_t at = 0; at < packet.size(); at++) {
    for (const char c : {'\0', '<', '>', '"', '\'', ':', ' ', 'R', '\xC3', '\xFF'}) {
      std::string changed = packet;
      changed[at] = c;
      const Parsed parsed(changed);
      std::string packetAgain;
      serializeObject(parsed.object, {.padding = 0}, packetAgain);
      const Parsed again(packetAgain);
      EXPECT_EQ(again.failure + again.warnings(), "") << at << " " << c;
      EXPECT_EQ(again.text(), parsed.text()) << at << " " << c;
    }
  }
}

}  // namespace
}  // namespace velto::test
