// Packets in: every form of RDF that XMP has and those that it forbids, encodings, pieces, and packets made to hurt.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "outside/xmp/packet_encoding.h"
#include "outside/xmp/rdf.h"
#include "outside/xmp/text.h"
#include "tests/outside/xmp/object_text.h"

namespace velto::test {
namespace {

struct FormCase {
  const char* name;
  std::string packet;
  const char* expected;
};

void expectForms(const std::vector<FormCase>& cases) {
  for (const FormCase& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string failure = failureOf(c.packet);
    EXPECT_EQ(failure.empty() ? parsedText(c.packet) : failure, c.expected);
  }
}

TEST(RDFParser, SimpleValues) {
  expectForms({
      {"element", inDescription("<dc:format>image/jpeg</dc:format>"), "dc:format = image/jpeg\n"},
      {"attribute", inRDF("<rdf:Description rdf:about='' dc:format='image/jpeg' xmp:Rating='3'/>"),
       "dc:format = image/jpeg\nxmp:Rating = 3\n"},
      {"white space is kept", inDescription("<dc:format> a\tb\n </dc:format><dc:source>\n</dc:source>"),
       "dc:format =  a\\tb\\n \ndc:source = \\n\n"},
      {"references and CDATA", inDescription("<dc:format>&lt;&#x41;&amp;<![CDATA[<b>&]]>&#13;</dc:format>"),
       "dc:format = <A&<b>&\\r\n"},
      {"comments and instructions", inDescription("<dc:format>a<!-- x -->b<?y z?>c</dc:format>"), "dc:format = abc\n"},
      {"empty", inDescription("<dc:format/><dc:source></dc:source>"), "dc:format = \ndc:source = \n"},
      {"URI", inDescription("<xmp:BaseURL rdf:resource='http://a/b?c&amp;d'/>"), "xmp:BaseURL -> http://a/b?c&d\n"},
      {"empty URI", inDescription("<xmp:BaseURL rdf:resource=''> </xmp:BaseURL>"), "xmp:BaseURL -> \n"},
      {"identifiers are read past",
       inDescription("<dc:format rdf:ID='i' rdf:datatype='http://d'>a</dc:format><dc:source rdf:nodeID='n'/>"),
       "dc:format = a\ndc:source = \n"},
  });
}

TEST(RDFParser, Structs) {
  const char* flash = "exif:Flash struct\n  exif:Fired = True\n  exif:Mode = 1\n";
  const std::string fields = "<exif:Fired>True</exif:Fired><exif:Mode>1</exif:Mode>";
  expectForms({
      {"parseType", inDescription("<exif:Flash rdf:parseType='Resource'>" + fields + "</exif:Flash>"), flash},
      {"Description", inDescription("<exif:Flash>\n<rdf:Description>" + fields + "</rdf:Description>\n</exif:Flash>"),
       flash},
      {"Description with attributes",
       inDescription("<exif:Flash><rdf:Description exif:Fired='True' exif:Mode='1'/></exif:Flash>"), flash},
      {"Description with both",
       inDescription("<exif:Flash><rdf:Description rdf:about='x' exif:Fired='True'><exif:Mode>1</exif:Mode>"
                     "</rdf:Description></exif:Flash>"),
       flash},
      {"attributes", inDescription("<exif:Flash exif:Fired='True' exif:Mode='1'/>"), flash},
      {"attributes, spaces between the tags",
       inDescription("<exif:Flash exif:Fired='True' exif:Mode='1'>\n </exif:Flash>"), flash},
      {"no fields", inDescription("<exif:Flash rdf:parseType='Resource'/><t:a><rdf:Description/></t:a>"),
       "exif:Flash struct\nt:a struct\n"},
      {"typed node", inDescription("<exif:Flash><t:Flash>" + fields + "</t:Flash></exif:Flash>"),
       "exif:Flash struct\n  ?rdf:type -> http://test.example/t/Flash\n  exif:Fired = True\n  exif:Mode = 1\n"},
      {"rdf:type as element",
       inDescription("<exif:Flash rdf:parseType='Resource'><exif:Fired>True</exif:Fired>"
                     "<rdf:type rdf:resource='http://test.example/t/Flash'/></exif:Flash>"),
       "exif:Flash struct\n  ?rdf:type -> http://test.example/t/Flash\n  exif:Fired = True\n"},
      {"language of the Description", inDescription("<t:a><rdf:Description xml:lang='DE' t:b='1'/></t:a>"),
       "t:a struct\n  ?xml:lang = de\n  t:b = 1\n"},
  });
}

TEST(RDFParser, Arrays) {
  expectForms({
      {"bag, seq, alt",
       inDescription(
           "<dc:subject>\n <rdf:Bag>\n  <rdf:li>a</rdf:li>\n  <rdf:li> b </rdf:li>\n </rdf:Bag>\n</dc:subject>"
           "<dc:creator><rdf:Seq><rdf:li>c</rdf:li></rdf:Seq></dc:creator>"
           "<t:alt><rdf:Alt><rdf:li>d</rdf:li></rdf:Alt></t:alt><t:none><rdf:Bag/></t:none>"),
       "dc:subject bag\n  - = a\n  - =  b \ndc:creator seq\n  - = c\nt:alt alt\n  - = d\nt:none bag\n"},
      {"x-default goes first",
       inDescription("<dc:title><rdf:Alt><rdf:li xml:lang='EN-us'>a</rdf:li><rdf:li xml:lang='X-Default'>b</rdf:li>"
                     "<rdf:li xml:lang='fr'/></rdf:Alt></dc:title>"),
       "dc:title alt-text\n  - = b\n    ?xml:lang = x-default\n  - = a\n    ?xml:lang = en-US\n"
       "  - = \n    ?xml:lang = fr\n"},
      {"an alt with an item without language is none of texts",
       inDescription("<dc:title><rdf:Alt><rdf:li xml:lang='en'>a</rdf:li><rdf:li>b</rdf:li></rdf:Alt></dc:title>"),
       "dc:title alt\n  - = a\n    ?xml:lang = en\n  - = b\n"},
      {"structs in arrays in structs",
       inDescription(
           "<t:a rdf:parseType='Resource'><t:b><rdf:Seq><rdf:li rdf:parseType='Resource'><t:c>1</t:c></rdf:li>"
           "<rdf:li t:c='2'/><rdf:li><rdf:Bag><rdf:li rdf:resource='u'/></rdf:Bag></rdf:li></rdf:Seq></t:b>"
           "</t:a>"),
       "t:a struct\n  t:b seq\n    - struct\n      t:c = 1\n    - struct\n      t:c = 2\n    - bag\n      - -> u\n"},
      {"numbered items", inDescription("<t:a><rdf:Seq><rdf:_1>x</rdf:_1><rdf:_2>y</rdf:_2></rdf:Seq></t:a>"),
       "t:a seq\n  - = x\n  - = y\n"},
  });
}

TEST(RDFParser, Qualifiers) {
  const char* qualified = "t:a = v\n  ?xml:lang = de\n  ?t:q = 1\n";
  expectForms({
      {"language", inDescription("<dc:format xml:lang='de-at'>a</dc:format>"), "dc:format = a\n  ?xml:lang = de-AT\n"},
      {"rdf:value with parseType",
       inDescription("<t:a xml:lang='de' rdf:parseType='Resource'><rdf:value>v</rdf:value><t:q>1</t:q></t:a>"),
       qualified},
      {"rdf:value that comes last, language on it",
       inDescription(
           "<t:a><rdf:Description><t:q>1</t:q><rdf:value xml:lang='de'>v</rdf:value></rdf:Description></t:a>"),
       qualified},
      {"attributes of the property", inDescription("<t:a xml:lang='de' rdf:value='v' t:q='1'/>"), qualified},
      {"attributes of the Description",
       inDescription("<t:a xml:lang='de'><rdf:Description rdf:value='v' t:q='1'/></t:a>"), qualified},
      {"URI with qualifier", inDescription("<t:a rdf:resource='u' t:q='1'/>"), "t:a -> u\n  ?t:q = 1\n"},
      {"on an array, and on its item",
       inDescription("<t:a rdf:parseType='Resource'><rdf:value><rdf:Bag><rdf:li rdf:parseType='Resource'>"
                     "<rdf:value>i</rdf:value><t:q>2</t:q></rdf:li></rdf:Bag></rdf:value><t:q>1</t:q></t:a>"),
       "t:a bag\n  ?t:q = 1\n  - = i\n    ?t:q = 2\n"},
      {"on a struct", inDescription("<t:a rdf:parseType='Resource'><t:q>1</t:q><rdf:value t:b='2'/></t:a>"),
       "t:a struct\n  ?t:q = 1\n  t:b = 2\n"},
      {"on a qualifier, and a struct as qualifier",
       inDescription("<t:a rdf:parseType='Resource'><rdf:value>v</rdf:value><t:q rdf:value='1' t:r='2'/>"
                     "<t:s t:b='3'/></t:a>"),
       "t:a = v\n  ?t:q = 1\n    ?t:r = 2\n  ?t:s struct\n    t:b = 3\n"},
      {"a value within a value",
       inDescription("<t:a rdf:parseType='Resource'><rdf:value rdf:parseType='Resource'><rdf:value>v</rdf:value>"
                     "<t:q>1</t:q></rdf:value><t:r>2</t:r></t:a>"),
       "t:a = v\n  ?t:r = 2\n  ?t:q = 1\n"},
      {"more than a few fields beside the value of many items",
       inDescription("<t:a rdf:parseType='Resource'><t:a1/><t:a2/><t:a3/><t:a4/><t:a5/><t:a6/><t:a7/><t:a8/><t:a9/>"
                     "<rdf:value><rdf:Bag><rdf:li>x</rdf:li><rdf:li>y</rdf:li></rdf:Bag></rdf:value></t:a>"),
       "t:a bag\n  ?t:a1 = \n  ?t:a2 = \n  ?t:a3 = \n  ?t:a4 = \n  ?t:a5 = \n  ?t:a6 = \n  ?t:a7 = \n  ?t:a8 = \n"
       "  ?t:a9 = \n  - = x\n  - = y\n"},
  });
}

TEST(RDFParser, WhatStandsAroundTheProperties) {
  const std::string body = inDescription("<dc:format>a</dc:format>");
  const char* expected = "dc:format = a\n";
  expectForms({
      {"bare", body, expected},
      {"xmpmeta", "<x:xmpmeta xmlns:x='adobe:ns:meta/' x:xmptk='any'>\n" + body + "\n</x:xmpmeta>", expected},
      {"xapmeta", "<m:xapmeta xmlns:m='adobe:ns:meta/'>" + body + "</m:xapmeta>", expected},
      {"wrapper and padding",
       "<?xpacket begin='\xEF\xBB\xBF' id='W5M0MpCehiHzreSzNTczkc9d'?>\n" + body + "\n\n   \n<?xpacket end='w'?>",
       expected},
      {"byte-order mark, declaration", "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-16'?>" + body, expected},
      {"junk before", std::string("http://ns/xap\0 \r\n\t", 17) + body, expected},
      {"zeros and other things behind", body + std::string(50, '\0') + "<!DOCTYPE <\xFF\x01", expected},
      {"elements beside rdf:RDF",
       "<x:xmpmeta xmlns:x='adobe:ns:meta/'>text<y><rdf>z</rdf></y>" + body + "<z a='b'/></x:xmpmeta>", expected},
      {"two rdf:RDF",
       "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + body + inDescription("<dc:source>b</dc:source>") + "</x:xmpmeta>",
       "dc:format = a\ndc:source = b\n"},
      {"several Descriptions, whatever they are about",
       inRDF("<rdf:Description rdf:about='one' dc:format='a'/><rdf:Description about='two' dc:source='b'/>"
             "<rdf:Description rdf:ID='three'><xmp:Rating>1</xmp:Rating></rdf:Description>"
             "<rdf:Description rdf:nodeID='n' tiff:Make='c'/>"),
       "dc:format = a\ndc:source = b\nxmp:Rating = 1\ntiff:Make = c\n"},
      {"no Description", inRDF(""), ""},
      {"typed node", inRDF("<t:Photo rdf:about=''><dc:format>a</dc:format></t:Photo>"),
       "rdf:type -> http://test.example/t/Photo\ndc:format = a\n"},
      {"names in no namespace",
       inRDF("<thing><a><b/></a></thing><rdf:Description a='b'><c>d<e/></c><dc:format f='g'>a"
             "</dc:format></rdf:Description>"),
       expected},
  });
}

TEST(RDFParser, FirstNonEmptyAboutNamesTheObject) {
  const auto parser =
      parse(inRDF("<rdf:Description rdf:about=''/><rdf:Description about='uuid:1'/>"
                  "<rdf:Description rdf:about='uuid:2'/>"));
  EXPECT_EQ(parser->result().name, "uuid:1");
}

TEST(RDFParser, Prefixes) {
  expectForms({
      {"unusual prefixes",
       "<R:RDF xmlns:R='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><R:Description R:about='' "
       "xmlns:q='http://purl.org/dc/elements/1.1/'><q:subject><R:Bag><R:li xml:lang='de'>a</R:li></R:Bag></q:subject>"
       "</R:Description></R:RDF>",
       "dc:subject bag\n  - = a\n    ?xml:lang = de\n"},
      {"default namespaces",
       "<RDF xmlns='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><Description about=''>"
       "<format xmlns='http://purl.org/dc/elements/1.1/'>a</format></Description></RDF>",
       "dc:format = a\n"},
      {"the same prefix means another namespace farther in",
       inDescription("<t:a>1</t:a><t:a xmlns:t='http://purl.org/dc/elements/1.1/'>2</t:a><t:b>3</t:b>"),
       "t:a = 1\nt:b = 3\ndc:a = 2\n"},
      {"two prefixes of one namespace",
       inDescription("<t:a xmlns:u='http://test.example/t/' u:b='1' t:c='2'/><u:d xmlns:u='http://test.example/t/'/>"),
       "t:a struct\n  t:b = 1\n  t:c = 2\nt:d = \n"},
      {"a prefix that begins like a declaration",
       inDescription("<t:a xmlns:xmlns2='http://test.example/t/' xmlns2:b='1'/>"), "t:a struct\n  t:b = 1\n"},
      {"a standard prefix without declaration",
       "<rdf:RDF><rdf:Description dc:format='a'><exif:Flash exif:Fired='True'/></rdf:Description></rdf:RDF>",
       "dc:format = a\nexif:Flash struct\n  exif:Fired = True\n"},
  });
  // A namespace that nobody has met keeps the packet's prefix, unless that is taken.
  (void)parse(inDescription("<u1:a xmlns:u1='http://test.example/u1/'/><dc:b xmlns:dc='http://test.example/mydc/'/>"));
  ASSERT_NE(findNamespace("http://test.example/u1/"), nullptr);
  EXPECT_EQ(findNamespace("http://test.example/u1/")->prefix, "u1");
  EXPECT_NE(findNamespace("http://test.example/mydc/")->prefix, "dc");
  // But then it is no more than this process knows: another packet has to declare it.
  EXPECT_NE(failureOf(inDescription("<u1:a/>")), "");
}

TEST(RDFParser, WhatComesTwiceKeepsItsFirstValue) {
  expectForms({
      {"property",
       inRDF("<rdf:Description dc:format='a'><dc:format>b</dc:format></rdf:Description>"
             "<rdf:Description><dc:format><rdf:Bag/></dc:format><dc:source>c</dc:source></rdf:Description>"),
       "dc:format = a\ndc:source = c\n"},
      {"field", inDescription("<t:a rdf:parseType='Resource'><t:b>1</t:b><t:b>2</t:b></t:a>"),
       "t:a struct\n  t:b = 1\n"},
      {"qualifier and value",
       inDescription("<t:a rdf:parseType='Resource'><rdf:value>v</rdf:value><t:q>1</t:q><rdf:value>w</rdf:value>"
                     "<t:q>2</t:q></t:a>"),
       "t:a = v\n  ?t:q = 1\n"},
      {"language", inDescription("<t:a xml:lang='de'><rdf:Description xml:lang='fr' rdf:value='v'/></t:a>"),
       "t:a = v\n  ?xml:lang = de\n"},
  });
}

TEST(RDFParser, FailuresSayWhatAndWhere) {
  const std::string start = "<rdf:RDF " + kDeclarations + ">\n<rdf:Description>\n";
  const struct {
    const char* name;
    std::string packet;
    const char* failure;  // Its start.
  } kCases[] = {
      {"nothing", "", "14 no packet"},
      {"white space and zeros", std::string(" \n\0\0\0\0", 6), "14 no packet"},
      {"no XML", "\n\n a < b", "14 line 3, column 5: not well-formed"},
      {"cut off", start + "<dc:format>a", "14 line 3, column 13: no element found"},
      {"wrong end tag", start + "<dc:format>\xC3\xA4\xC3\xA4</dc:source>", "14 line 3, column 16: mismatched tag"},
      {"unknown entity", start + "&nbsp;", "14 line 3, column 1: undefined entity"},
      {"reference to no character", start + "<dc:format>&#0;", "14 line 3, column 12: reference to invalid character"},
      {"no RDF", "<x:xmpmeta xmlns:x='adobe:ns:meta/'><a/></x:xmpmeta>", "15 line 1, column 41: no rdf:RDF"},
      {"unknown prefix", start + " <nobody:a/>", "14 line 3, column 2: the prefix of nobody:a"},
      {"undone prefix", start + "<t:a xmlns:t=''/>", "14 line 3, column 1: the prefix of t:a"},
      {"no local name", start + "<t:1a/>", "14 line 3, column 1: t:1a is no name"},
      {"two colons", start + "<t:a:b/>", "14 line 3, column 1: t:a:b is no name"},
      {"prefix xmlns", start + "<t:a xmlns:xmlns='u'/>", "14 line 3, column 1: the declaration of xmlns:xmlns"},
      {"prefix xml", start + "<t:a xmlns:xml='u'/>", "14 line 3, column 1: the declaration of xmlns:xml"},
      {"attribute twice", start + "<t:a t:b='1' t:b='2'/>", "14 line 3, column 14: duplicate attribute"},
      {"parseType Literal", start + "<t:a\n rdf:parseType='Literal'><b/></t:a>",
       "15 line 3, column 1: rdf:parseType=\"Literal\" is not allowed"},
      {"parseType Collection", start + "<t:a rdf:parseType='Collection'/>",
       "15 line 3, column 1: rdf:parseType=\"Coll"},
      {"aboutEach", "<rdf:RDF " + kDeclarations + ">\n<rdf:Description rdf:aboutEach='x'/>",
       "15 line 2, column 1: rdf:aboutEach is not allowed"},
      {"aboutEachPrefix", start + "<t:a rdf:aboutEachPrefix='x'/>", "15 line 3, column 1: rdf:aboutEachPrefix"},
      {"bagID", start + "<t:a rdf:bagID='x'/>", "15 line 3, column 1: rdf:bagID"},
      {"text before a value", start + "<t:a>text<rdf:Bag/></t:a>",
       "15 line 3, column 10: text is mixed with the element rdf:Bag"},
      {"text behind a value", start + "<t:a><rdf:Bag/>text</t:a>", "15 line 3, column 16: text stands where"},
      {"text among properties", start + "<t:a/>\n  text", "15 line 4, column 1: text stands where"},
      {"text among items", start + "<t:a><rdf:Bag>text", "15 line 3, column 15: text stands where"},
      {"text in rdf:RDF", "<rdf:RDF " + kDeclarations + ">\ntext<", "15 line 2, column 1: text stands where"},
      {"text in a value given by attributes", start + "<t:a rdf:resource='u'>text</t:a>", "15 line 3, column 23: text"},
      {"child of a value given by attributes", start + "<t:a t:b='1'><rdf:Bag/></t:a>",
       "15 line 3, column 14: a property"},
      {"two values", start + "<t:a><rdf:Bag/><rdf:Bag/></t:a>", "15 line 3, column 16: rdf:Bag is a second value"},
      {"two values in attributes", start + "<t:a rdf:resource='u' rdf:value='v'/>", "15 line 3, column 1: t:a has"},
      {"an array of no items", start + "<t:a><rdf:Bag><t:b/></rdf:Bag></t:a>", "15 line 3, column 15: an array has"},
      {"a property of an array", start + "<t:a><rdf:Bag t:b='1'/></t:a>", "15 line 3, column 6: an array has"},
      {"an item without array", start + "<rdf:li>a</rdf:li>", "15 line 3, column 1: rdf:li is not allowed here"},
      {"an array without property", "<rdf:RDF " + kDeclarations + "><rdf:Bag/>", "15 line 1, column"},
      {"rdf:RDF in a property", start + "<t:a><rdf:RDF/></t:a>", "15 line 3, column 6: rdf:RDF is not allowed here"},
      {"rdf:Description as property", start + "<rdf:Description/>", "15 line 3, column 1: rdf:Description is not"},
      {"a value in no namespace", start + "<t:a><b/></t:a>", "15 line 3, column 6: the value b is in no namespace"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    for (const std::size_t pieceSize : {std::string::npos, std::size_t{1}}) {
      const std::string failure = failureOf(c.packet, pieceSize);
      EXPECT_EQ(failure.substr(0, std::string(c.failure).size()), c.failure) << failure;
    }
  }
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

TEST(RDFParser, WorkIsLinearInThePacket) {
  const std::size_t many = 100000;
  std::string items;
  std::string properties;
  std::string declarations;
  for (std::size_t i = 0; i < many; i++) {
    items += "<rdf:li>item number " + std::to_string(i) + repeated(" and more of it", 5) + "</rdf:li>\n";
    properties += "<t:p" + std::to_string(i) + ">x</t:p" + std::to_string(i) + ">\n";
    declarations += " xmlns:p" + std::to_string(i) + "='http://test.example/unused/" + std::to_string(i) + "'";
  }
  const std::string fields = "<rdf:value><rdf:Bag>" + items + "</rdf:Bag></rdf:value>" + properties;
  const struct {
    const char* name;
    std::string packet;
    std::size_t pieceSize;
  } kCases[] = {
      {"items", inDescription("<dc:subject><rdf:Bag>" + items + "</rdf:Bag></dc:subject>"), std::string::npos},
      {"items in small pieces", inDescription("<dc:subject><rdf:Bag>" + items + "</rdf:Bag></dc:subject>"), 10},
      {"properties", inDescription(properties), std::string::npos},
      {"qualifiers of an array", inDescription("<t:a rdf:parseType='Resource'>" + fields + "</t:a>"),
       std::string::npos},
      {"declarations", inRDF("<rdf:Description" + declarations + ">" + properties + "</rdf:Description>"),
       std::string::npos},
      {"one token in small pieces", inRDF("<rdf:Description dc:format='" + std::string(5000000, 'x') + "'/>"), 10},
      {"broken bytes", inDescription("<dc:format>" + std::string(2000000, '\xE9') + "</dc:format>"), 10},
  };
  for (const auto& c : kCases) {
    EXPECT_LT(secondsOf([&] { EXPECT_EQ(failureOf(c.packet, c.pieceSize), ""); }), kLinearSeconds) << c.name;
  }
  const std::size_t before = countNamespaces();
  EXPECT_EQ(failureOf(inRDF("<rdf:Description" + declarations + "/>")), "");
  EXPECT_EQ(countNamespaces(), before) << "namespaces that are declared but not used are not kept";
}

TEST(RDFParser, NothingPassesFromOnePacketToTheNext) {
  const std::string good = inDescription("<dc:format>a</dc:format>");
  const std::string others[] = {"<a xmlns:nobody='u'><b>text", "<!DOCTYPE a>", inDescription("<t:a>x<rdf:Bag/>"), good,
                                inDescription("<dc:source>" + std::string(1 << 20, 'x') + "</dc:source>")};
  for (const std::string& other : others) {
    (void)failureOf(other);
    EXPECT_EQ(parsedText(good), "dc:format = a\n");
    EXPECT_NE(failureOf(inDescription("<nobody:a/>")), "");
  }
  // Two at a time.
  PacketParser first;
  first.feed("<rdf:RDF>", 9, false);
  EXPECT_EQ(parsedText(good), "dc:format = a\n");
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

// The packets of real files, where there are some: whole files of any kind in the folder ../shared/corpus beside the
// tree or in $LXBRIDGE_CORPUS.
TEST(RDFParser, PacketsOfRealFilesReadAndReadBackEqual) {
  const char* folder = std::getenv("LXBRIDGE_CORPUS");
  std::filesystem::path corpus = folder != nullptr ? folder : "";
  if (corpus.empty()) {
    std::error_code error;
    for (std::filesystem::path at = std::filesystem::absolute(__FILE__).parent_path(); at.has_relative_path();
         at = at.parent_path()) {
      if (std::filesystem::is_directory(at / "shared" / "corpus", error)) corpus = at / "shared" / "corpus";
    }
  }
  if (corpus.empty()) GTEST_SKIP() << "no corpus";
  std::size_t packets = 0;
  for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::size_t offset = 0;
    std::size_t length = 0;
    if (!findPacket(bytes, offset, length)) continue;
    packets++;
    SCOPED_TRACE(entry.path().filename());
    const std::string packet = bytes.substr(offset, length);
    ASSERT_EQ(failureOf(packet), "");
    const auto parser = parse(packet);
    EXPECT_EQ(parsedText(packet, 1), textOf(parser->result()));
    std::string again;
    serializeObject(parser->result(), {}, again);
    EXPECT_EQ(parsedText(again), textOf(parser->result()));
  }
  if (packets == 0) GTEST_SKIP() << "no packet in the corpus";
}

}  // namespace
}  // namespace velto::test
