// Packets out: the text that people and diff see, and the options. That everything reads back is
// roundtrip_test's.
#include <gtest/gtest.h>

#include <string>

#include "outside/xmp/rdf.h"
#include "tests/outside/xmp/object_text.h"

namespace velto::test {
namespace {

std::string serialized(const Object& object, const SerializeOptions& options) {
  std::string packet;
  serializeObject(object, options, packet);
  return packet;
}

std::string serialized(const std::string& packet, const SerializeOptions& options) {
  return serialized(Parsed(packet).object, options);
}

constexpr std::uint32_t kBare = kXMPSerializeOmitWrapper | kXMPSerializeOmitMeta;

const std::string kOneOfEach = inRDF(
    "<rdf:Description rdf:about='uuid:&lt;1>' dc:format='image/jpeg'><xmp:BaseURL rdf:resource='http://a?b&amp;c'/>"
    "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>A &lt;&quot;b&quot;&gt;&#10;c</rdf:li></rdf:Alt></dc:title>"
    "<dc:subject><rdf:Bag/></dc:subject><exif:Flash exif:Fired='True' exif:Mode='1'/>"
    "<t:a xml:lang='de' rdf:value='v' t:q='1'/><t:s rdf:parseType='Resource'/><t:e/></rdf:Description>");

TEST(RDFSerializer, CharactersThatATerminalObeysAreReferencesAndThoseBesideThemAreNot) {
  const std::string packet = inRDF(
      "<rdf:Description rdf:about='' t:a='\x7F\xC2\x80\xC2\x9F\xC2\xA0\xD8\x9B\xD8\x9C\xE2\x80\x8D\xE2\x80\x8E"
      "\xE2\x80\xA7\xE2\x80\xA8\xE2\x80\xAE\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xA6\xE2\x81\xA9\xE2\x81\xAA'/>");
  const std::string text = serialized(packet, {.options = kBare});
  EXPECT_NE(text.find("<t:a>&#x7f;&#x80;&#x9f;\xC2\xA0\xD8\x9B&#x61c;\xE2\x80\x8D&#x200e;\xE2\x80\xA7&#x2028;&#x202e;"
                      "\xE2\x80\xAF\xE2\x81\xA5&#x2066;&#x2069;\xE2\x81\xAA</t:a>"),
            std::string::npos)
      << text;
}

TEST(RDFSerializer, CanonicalPacket) {
  EXPECT_EQ(serialized(kOneOfEach, {.padding = 0}),
            "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
            R"(<x:xmpmeta xmlns:x="adobe:ns:meta/" x:xmptk="LxBridge">
 <rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
  <rdf:Description rdf:about="uuid:&lt;1&gt;"
    xmlns:dc="http://purl.org/dc/elements/1.1/"
    xmlns:xmp="http://ns.adobe.com/xap/1.0/"
    xmlns:exif="http://ns.adobe.com/exif/1.0/"
    xmlns:t="http://test.example/t/">
   <dc:format>image/jpeg</dc:format>
   <dc:title>
    <rdf:Alt>
     <rdf:li xml:lang="x-default">A &lt;&quot;b&quot;&gt;&#xA;c</rdf:li>
    </rdf:Alt>
   </dc:title>
   <dc:subject>
    <rdf:Bag/>
   </dc:subject>
   <xmp:BaseURL rdf:resource="http://a?b&amp;c"/>
   <exif:Flash rdf:parseType="Resource">
    <exif:Fired>True</exif:Fired>
    <exif:Mode>1</exif:Mode>
   </exif:Flash>
   <t:a xml:lang="de" rdf:parseType="Resource">
    <rdf:value>v</rdf:value>
    <t:q>1</t:q>
   </t:a>
   <t:s rdf:parseType="Resource"/>
   <t:e/>
  </rdf:Description>
 </rdf:RDF>
</x:xmpmeta>
<?xpacket end="w"?>)");
}

TEST(RDFSerializer, CompactFormWithOtherLineEndsAndIndents) {
  EXPECT_EQ(serialized(kOneOfEach,
                       {.options = kBare | kXMPSerializeCompact, .newline = "\r\n", .indent = "\t", .baseIndent = 1}),
            "\t<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\r\n"
            "\t\t<rdf:Description rdf:about=\"uuid:&lt;1&gt;\"\r\n"
            "\t\t\t\txmlns:dc=\"http://purl.org/dc/elements/1.1/\"\r\n"
            "\t\t\t\txmlns:xmp=\"http://ns.adobe.com/xap/1.0/\"\r\n"
            "\t\t\t\txmlns:exif=\"http://ns.adobe.com/exif/1.0/\"\r\n"
            "\t\t\t\txmlns:t=\"http://test.example/t/\"\r\n"
            "\t\t\t\tdc:format=\"image/jpeg\"\r\n"
            "\t\t\t\tt:e=\"\">\r\n"
            "\t\t\t<dc:title>\r\n"
            "\t\t\t\t<rdf:Alt>\r\n"
            "\t\t\t\t\t<rdf:li xml:lang=\"x-default\">A &lt;&quot;b&quot;&gt;&#xA;c</rdf:li>\r\n"
            "\t\t\t\t</rdf:Alt>\r\n"
            "\t\t\t</dc:title>\r\n"
            "\t\t\t<dc:subject>\r\n"
            "\t\t\t\t<rdf:Bag/>\r\n"
            "\t\t\t</dc:subject>\r\n"
            "\t\t\t<xmp:BaseURL rdf:resource=\"http://a?b&amp;c\"/>\r\n"
            "\t\t\t<exif:Flash exif:Fired=\"True\" exif:Mode=\"1\"/>\r\n"
            "\t\t\t<t:a xml:lang=\"de\" rdf:value=\"v\" t:q=\"1\"/>\r\n"
            "\t\t\t<t:s rdf:parseType=\"Resource\"/>\r\n"
            "\t\t</rdf:Description>\r\n"
            "\t</rdf:RDF>\r\n");
}

TEST(RDFSerializer, EachOfManyNamespacesIsDeclaredOnceWhereverItIsUsedAgain) {
  constexpr int kCount = 40;
  std::string declared, properties;
  for (int i = 0; i < kCount; ++i) {
    const std::string prefix = "n" + std::to_string(i), next = "n" + std::to_string((i + 1) % kCount);
    declared += " xmlns:" + prefix + "='http://test.example/" + prefix + "/'";
    properties += "<" + prefix + ":s rdf:parseType='Resource'><" + next + ":f>v</" + next + ":f></" + prefix + ":s>";
  }
  const std::string packet =
      serialized(inRDF("<rdf:Description rdf:about=''" + declared + ">" + properties + "</rdf:Description>"), {});
  for (int i = 0; i < kCount; ++i) {
    const std::string start = "xmlns:n" + std::to_string(i) + "=";
    const std::size_t at = packet.find(start);
    ASSERT_NE(at, std::string::npos) << start;
    EXPECT_EQ(packet.find(start, at + 1), std::string::npos) << start;
  }
}

TEST(RDFSerializer, PaddingAndLengthAreExact) {
  const Object object;
  for (const std::string_view newline : {"\n", "\r\n", ""}) {
    const std::size_t bare = serialized(object, {.padding = 0, .newline = newline}).size();
    for (const std::int32_t padding : {1, 2, 99, 100, 101, 102, 200, 2048}) {
      const std::string packet = serialized(object, {.padding = padding, .newline = newline});
      EXPECT_EQ(packet.size(), bare + static_cast<std::size_t>(padding));
      const auto length = static_cast<std::int32_t>(packet.size());
      EXPECT_EQ(serialized(object, {.options = kXMPSerializeExactLength, .padding = length, .newline = newline}),
                packet);
      EXPECT_EQ(failureOf(packet), "");
    }
    const auto tight = static_cast<std::int32_t>(bare);
    EXPECT_EQ(serialized(object, {.options = kXMPSerializeExactLength, .padding = tight, .newline = newline}).size(),
              bare);
    EXPECT_THROW(
        (void)serialized(object, {.options = kXMPSerializeExactLength, .padding = tight - 1, .newline = newline}),
        ToolkitError);
  }
  const std::string usual = serialized(object, {});
  EXPECT_EQ(usual.size(), serialized(object, {.padding = 2048}).size());
  // Nobody writes into a read-only packet, so it has padding only where the caller asks for it.
  const std::string readOnly = serialized(object, {.options = kXMPSerializeReadOnly});
  EXPECT_EQ(readOnly.size(), serialized(object, {.padding = 0}).size());
  EXPECT_EQ(readOnly.substr(readOnly.rfind('\n')), "\n<?xpacket end=\"r\"?>");
}

TEST(RDFSerializer, SenselessOptionsAreErrorsAndLeaveThePacketAsItWas) {
  const SerializeOptions kCases[] = {
      {.options = 0x1},
      {.options = kXMPSerializeOmitWrapper | kXMPSerializeReadOnly},
      {.options = kXMPSerializeOmitWrapper | kXMPSerializeExactLength, .padding = 10000},
      {.options = kXMPSerializeExactLength},
      {.options = kXMPSerializeExactLength, .padding = 10},
      {.newline = "<"},
      {.indent = "x"},
      {.indent = "\n"},
      {.baseIndent = -1},
      {.baseIndent = 1 << 30},
  };
  for (std::size_t i = 0; i < std::size(kCases); i++) {
    std::string packet = "before";
    EXPECT_THROW(serializeObject(Object(), kCases[i], packet), ToolkitError) << i;
    EXPECT_EQ(packet, "before") << i;
  }
}

}  // namespace
}  // namespace velto::test
