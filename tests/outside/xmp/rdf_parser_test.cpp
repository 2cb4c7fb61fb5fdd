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

std::string packetOf(const std::string& kind, std::string content) {
  if (kind == "description") return inDescription(content);
  if (kind == "rdf") return inRDF(content);
  if (kind == "started") return "<rdf:RDF " + kDeclarations + ">\n<rdf:Description>\n" + content;
  EXPECT_EQ(kind, "packet");
  for (std::size_t at = content.find('@'); at != std::string::npos; at = content.find('@')) {
    content.replace(at, 1, kDeclarations);
  }
  return content;
}

TEST(RDFParser, FormsAreReadOrRefusedAsListed) {
  std::ifstream forms(LX_RDF_FORMS);
  std::string name, packet, expected;
  std::size_t cases = 0;
  const auto check = [&] {
    if (name.empty()) return;
    SCOPED_TRACE(name);
    for (const std::size_t pieceSize : {std::string::npos, std::size_t{1}}) {
      const std::string failure = failureOf(packet, pieceSize);
      if (failure.empty()) {
        EXPECT_EQ(parsedText(packet, pieceSize), expected);
      } else {  // What is listed is its start.
        EXPECT_EQ(failure.substr(0, std::max<std::size_t>(expected.size(), 1) - 1) + "\n", expected) << failure;
      }
    }
    ++cases;
    name.clear();
    expected.clear();
  };
  for (std::string line; std::getline(forms, line);) {
    if (line.empty() || line.starts_with("##")) continue;
    if (line.starts_with("# ")) {
      check();
      name = line.substr(2);
    } else if (line.starts_with("= ")) {
      expected += line.substr(2) + "\n";
    } else {
      const std::size_t space = line.find(' ');
      packet = packetOf(line.substr(0, space), unescaped(line.substr(space + 1)));
    }
  }
  check();
  EXPECT_EQ(cases, 96u);
}

TEST(RDFParser, FirstNonEmptyAboutNamesTheObject) {
  const auto parser =
      parse(inRDF("<rdf:Description rdf:about=''/><rdf:Description about='uuid:1'/>"
                  "<rdf:Description rdf:about='uuid:2'/>"));
  EXPECT_EQ(parser->result().name, "uuid:1");
}

TEST(RDFParser, ANamespaceKeepsThePacketsPrefixUnlessThatIsTaken) {
  (void)parse(inDescription("<u1:a xmlns:u1='http://test.example/u1/'/><dc:b xmlns:dc='http://test.example/mydc/'/>"));
  ASSERT_NE(findNamespace("http://test.example/u1/"), nullptr);
  EXPECT_EQ(findNamespace("http://test.example/u1/")->prefix, "u1");
  EXPECT_NE(findNamespace("http://test.example/mydc/")->prefix, "dc");
  // But then it is no more than this process knows: another packet has to declare it.
  EXPECT_NE(failureOf(inDescription("<u1:a/>")), "");
}

TEST(RDFParser, ADocumentTypeIsAnErrorAndNothingOfItIsUsed) {
  const std::string body = inDescription("<dc:format>&a;</dc:format>");
  EXPECT_EQ(failureOf("<!DOCTYPE x SYSTEM 'file:///etc/passwd'>" + body),
            "14 line 1, column 40: a packet has no document type");
  EXPECT_EQ(failureOf("<!DOCTYPE x [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;'>]>\n" + body).substr(0, 11),
            "14 line 1, ");
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
             "'>Gr\xC3\xBC\xC3\x9F \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x93\xB7 &amp; " +
             std::string(static_cast<std::size_t>(i), 'o') + "</rdf:li>\n";
  }
  return inDescription("<dc:title><rdf:Alt>" + items + "</rdf:Alt></dc:title><dc:format>\xEF\xBF\xBD</dc:format>");
}

TEST(RDFParser, EveryEncodingWithAndWithoutMarkInPiecesOfAnySize) {
  const std::string text = sample();
  const std::string expected = parsedText(text);
  ASSERT_NE(expected.find("\xF0\x9F\x93\xB7 & oo\n"), std::string::npos);
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
  const std::size_t column = bad.find("<a:b") + 1;
  const std::string place = ", column " + std::to_string(column) + ":";
  EXPECT_NE(failureOf(bad).find("line 1" + place), std::string::npos);
  EXPECT_NE(failureOf("\xEF\xBB\xBF" + bad).find("line 1" + place), std::string::npos);
  EXPECT_NE(failureOf(encoded("\n\n" + bad, PacketEncoding::kUTF16BE)).find("line 3" + place), std::string::npos);
  EXPECT_NE(failureOf("\n \xC3\xA4" + bad, 1).find("line 2, column " + std::to_string(column + 2) + ":"),
            std::string::npos);
}

// --- packets made to hurt --------------------------------------------------------------------------------------------

std::string repeated(std::string_view text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; i++) all += text;
  return all;
}

TEST(RDFParser, NestingEndsAtTheLimit) {
  const auto nested = [](std::size_t depth) {
    return inDescription(repeated("<t:a rdf:parseType='Resource'>", depth) + repeated("</t:a>", depth));
  };
  EXPECT_EQ(failureOf(nested(kDepthLimit)), "");
  EXPECT_EQ(failureOf(nested(kDepthLimit + 1)).substr(0, 3), "13 ");
  // The last level may not be passed by what attributes add either.
  const auto withAttribute = [](std::size_t depth, const char* attribute) {
    return inDescription(repeated("<t:a rdf:parseType='Resource'>", depth - 1) + "<t:a " + attribute + "/>" +
                         repeated("</t:a>", depth - 1));
  };
  for (const char* attribute : {"t:b='1'", "xml:lang='de'", "rdf:value='v' t:b='1'", "rdf:type='u'"}) {
    EXPECT_EQ(failureOf(withAttribute(kDepthLimit - 1, attribute)), "") << attribute;
    EXPECT_EQ(failureOf(withAttribute(kDepthLimit, attribute)).substr(0, 3), "13 ") << attribute;
  }
  const std::string description = "<rdf:RDF " + kDeclarations + "><rdf:Description>";
  const struct {
    std::string start;
    const char* open;
  } kCases[] = {
      {"", "<a>"},
      {description, "<a>"},
      {description, "<t:a>"},
      {description, "<t:a rdf:parseType='Resource'>"},
      {description, "<t:a><rdf:Description>"},
      {description + "<t:a>", "<rdf:Bag><rdf:li>"},
      {description + "<t:a>", "<rdf:Description><rdf:value>"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(failureOf(c.start + repeated(c.open, 1000000)).substr(0, 3), "13 ") << c.start << c.open;
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
  std::string declarations;
  for (int i = 0; i < 100000; i++) {
    declarations += " xmlns:p" + std::to_string(i) + "='http://test.example/unused/" + std::to_string(i) + "'";
  }
  const std::size_t before = countNamespaces();
  EXPECT_LT(secondsOf([&] { EXPECT_EQ(failureOf(inRDF("<rdf:Description" + declarations + "/>")), ""); }),
            kLinearSeconds);
  EXPECT_EQ(countNamespaces(), before) << "namespaces that are declared but not used are not kept";
}

TEST(RDFParser, NothingPassesFromOnePacketToAnother) {
  const std::string good = inDescription("<dc:format>a</dc:format>");
  PacketParser first;  // Two at a time.
  first.feed("<rdf:RDF>", 9, false);
  for (const std::string& other : {std::string("<a xmlns:nobody='u'><b>text"), inDescription("<t:a>x<rdf:Bag/>"),
                                   inDescription("<dc:source>" + std::string(1 << 20, 'x') + "</dc:source>")}) {
    (void)failureOf(other);
    EXPECT_EQ(parsedText(good), "dc:format = a\n");
    EXPECT_NE(failureOf(inDescription("<nobody:a/>")), "");
  }
  const std::string rest = "<rdf:Description dc:source='b'/></rdf:RDF>";
  first.feed(rest.data(), rest.size(), true);
  EXPECT_EQ(textOf(first.result()), "dc:source = b\n");
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
      std::string packetAgain;
      try {
        const auto parser = parse(changed);
        serializeObject(parser->result(), {.padding = 0}, packetAgain);
      } catch (const ToolkitError&) {
        continue;
      }
      EXPECT_EQ(failureOf(packetAgain), "") << at << " " << c;
    }
  }
}

// --- packets among other bytes ---------------------------------------------------------------------------------------

TEST(FindPacket, WholePacketsInEveryEncoding) {
  const std::string header = "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>";
  const std::string rdf = "<rdf:RDF>\xC3\xA4</rdf:RDF>";
  const std::string meta = "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + rdf + "</x:xmpmeta>";
  const std::string whole = header + meta + "   <?xpacket end=\"w\"?>";
  const auto found = [](const std::string& bytes) {
    std::size_t offset = 0;
    std::size_t length = 0;
    return findPacket(bytes, offset, length) ? bytes.substr(offset, length) : "none";
  };
  for (const PacketEncoding encoding : kEncodings) {
    const std::string packet = encoded(whole, encoding);
    for (const std::string& before : {std::string(), std::string("\0\xFF<?", 4), std::string("<x:xmpmeta")}) {
      EXPECT_EQ(found(before + packet + "behind<"), packet) << static_cast<int>(encoding);
      EXPECT_EQ(found(before + packet), packet) << static_cast<int>(encoding);
    }
    EXPECT_TRUE(isPacket(packet)) << static_cast<int>(encoding);
    EXPECT_TRUE(isPacket(encoded("\xEF\xBB\xBF \n" + meta, encoding))) << static_cast<int>(encoding);
  }
  EXPECT_EQ(found("\xFF\xD8 " + meta + "<x"), meta);
  EXPECT_EQ(found("\xFF\xD8 " + rdf + "<x"), rdf);
  EXPECT_EQ(found(header + meta + " cut <?xpacket en"), meta);
  EXPECT_EQ(found(header + "<x:xmpmeta>" + whole), whole) << "a packet that is cut off by another";
  EXPECT_EQ(found(header + meta + whole), meta) << "the first lacks only its trailer";
  EXPECT_EQ(found("<rdf:RDF>" + header), "none");
  EXPECT_TRUE(isPacket("<?xml version='1.0'?>\n<q:RDF xmlns"));
  for (const char* other : {"", "<", "<?xml", "x<rdf:RDF>", "<svg>", "<?xml version='1.0'?><svg/>"}) {
    EXPECT_FALSE(isPacket(other)) << other;
  }
}

TEST(FindPacket, WorkIsLinear) {
  const std::string starts = repeated("<?xpacket begin=\"\xEF\xBB\xBF\"?><x:xmpmeta <rdf:RDF <", 200000);
  std::size_t offset = 0;
  std::size_t length = 0;
  EXPECT_LT(secondsOf([&] { EXPECT_FALSE(findPacket(starts, offset, length)); }), kLinearSeconds);
}

}  // namespace
}  // namespace velto::test
