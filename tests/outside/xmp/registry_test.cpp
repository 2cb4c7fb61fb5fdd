// Namespaces: the standard ones, those that clients register, and those of one object's packets.
#include "outside/xmp/registry.h"

#include <gtest/gtest.h>

#include <string>

#include "outside/xmp/errors.h"
#include "outside/xmp/operations.h"
#include "outside/xmp/path.h"
#include "tests/outside/xmp/object_text.h"

namespace velto::test {
namespace {

std::string prefixOf(Object& object, const std::string& uri) {
  const Namespace* ns = object.namespaces.find(uri);
  return ns != nullptr ? std::string(ns->prefix) : "(none)";
}

TEST(Namespaces, AnObjectsPrefixesAreThoseOfItsPacketAlone) {
  Parsed first(
      inDescription("<a:x xmlns:a='http://one.example/'/><a:y xmlns:a='http://two.example/'/>"
                    "<dc:z xmlns:dc='http://three.example/'/><b:w xmlns:b='http://one.example/'/>"
                    "<unused xmlns:u='http://four.example/'/><v xmlns='http://five.example/'/>"));
  EXPECT_EQ(prefixOf(first.object, "http://one.example/") + prefixOf(first.object, "http://two.example/") +
                prefixOf(first.object, "http://three.example/") + prefixOf(first.object, "http://four.example/") +
                prefixOf(first.object, "http://five.example/"),
            "aa1dc1(none)ns1");
  Parsed second(inDescription("<a:y xmlns:a='http://two.example/'/>"));
  EXPECT_EQ(prefixOf(second.object, "http://two.example/") + prefixOf(second.object, "http://one.example/"), "a(none)");
  EXPECT_EQ(second.object.namespaces.findPrefix("a1"), nullptr);

  // A copy keeps the prefixes; added properties take those of their new object.
  Object copy;
  copy.copyFrom(first.object);
  EXPECT_EQ(textOf(copy), textOf(first.object));
  EXPECT_TRUE(equalTrees(first.object.root(), copy.root(), copy.namespaces));
  appendProperties(first.object, second.object, false);
  EXPECT_EQ(prefixOf(second.object, "http://one.example/"), "a1");
  EXPECT_EQ(second.text(), "a:y = \na1:x = \na1:w = \ndc1:z = \nns1:v = \n");
  EXPECT_TRUE(equalTrees(first.object.root(), second.object.root(), second.object.namespaces));
  EXPECT_FALSE(equalTrees(first.object.root(), Object().root(), Object().namespaces));
  EXPECT_EQ(findNode(second.object, requirePath(second.object.namespaces, "http://one.example/", "a1:x"))->parent,
            second.object.findSchema(second.object.namespaces.find("http://one.example/")));
}

TEST(Namespaces, ManyOfAPacketAreAllFoundAndDiffer) {
  std::string properties;
  for (int at = 0; at < 3000; ++at) {
    properties += "<n" + std::to_string(at % 3) + ":p xmlns:n" + std::to_string(at % 3) + "='http://" +
                  std::to_string(at) + ".example/'>1</n" + std::to_string(at % 3) + ":p>";
  }
  Parsed many(inDescription(properties));
  EXPECT_EQ(many.object.root()->children.size(), 3000u);
  for (int at = 0; at < 3000; ++at) {
    const Namespace* ns = many.object.namespaces.find("http://" + std::to_string(at) + ".example/");
    ASSERT_NE(ns, nullptr);
    ASSERT_EQ(many.object.namespaces.findPrefix(ns->prefix), ns);
  }
}

TEST(Namespaces, RegisteredPrefixesAreEveryObjectsThatHasNoOtherForTheNamespace) {
  Object before;
  before.namespaces.intern("http://late.example/", "own");
  EXPECT_EQ(registerNamespace("http://client.example/", "client:"), "client");
  EXPECT_EQ(registerNamespace("http://client.example/", "other"), "client");
  EXPECT_EQ(registerNamespace("http://other.example/", "client"), "client1");
  EXPECT_EQ(registerNamespace("http://late.example/", "late"), "late");
  EXPECT_EQ(registerNamespace("http://purl.org/dc/elements/1.1/", "mydc"), "dc");
  Parsed packet(
      inDescription("<client:a xmlns:client='http://stranger.example/'/><q:b xmlns:q='http://client.example/'/>"));
  EXPECT_EQ(packet.text(), "client2:a = \nclient:b = \n");
  EXPECT_EQ(prefixOf(before, "http://late.example/"), "own");
  EXPECT_EQ(before.namespaces.findPrefix("late"), before.namespaces.find("http://late.example/"));
  for (const char* prefix : {"", "1a", "a b", ":", "xmlns", "a:b", "<"}) {
    EXPECT_EQ(registerNamespace(std::string("http://odd.example/") + prefix, prefix).substr(0, 2), "ns") << prefix;
  }
  for (const char* uri : {"", "http://www.w3.org/2000/xmlns/", "a\x01", "\xFF"}) {
    EXPECT_THROW(registerNamespace(uri, "fine"), ToolkitError) << uri;
    EXPECT_THROW(before.namespaces.intern(uri, "fine"), ToolkitError) << uri;
  }
}

TEST(Namespaces, OfTwoURIsThatShareAPrefixTheFirstHasIt) {
  const std::string slash = "http://ns.microsoft.com/photo/1.0/", bare = slash.substr(0, slash.size() - 1);
  Parsed first(inDescription("<m:a xmlns:m='" + bare + "'/>"));
  Parsed both(inDescription("<m:b xmlns:m='" + slash + "'/><n:a xmlns:n='" + bare + "'/>"));
  EXPECT_EQ(first.text() + both.text(), "MicrosoftPhoto:a = \nMicrosoftPhoto:b = \nMicrosoftPhoto1:a = \n");
  EXPECT_EQ(first.object.namespaces.findPrefix("MicrosoftPhoto")->uri, bare);
  appendProperties(both.object, first.object, false);
  EXPECT_EQ(first.text(), "MicrosoftPhoto:a = \nMicrosoftPhoto1:b = \n");
  EXPECT_TRUE(equalTrees(first.object.root(), both.object.root(), both.object.namespaces));
}

TEST(Namespaces, PrefixesThatPhonesDronesAndPhotoManagersWriteAreKnown) {
  const struct {
    const char* prefix;
    const char* uri;
  } known[] = {
      {"GPano", "http://ns.google.com/photos/1.0/panorama/"},
      {"Container", "http://ns.google.com/photos/1.0/container/"},
      {"MicrosoftPhoto", "http://ns.microsoft.com/photo/1.0/"},
      {"digiKam", "http://www.digikam.org/ns/1.0/"},
      {"mwg-rs", "http://www.metadataworkinggroup.com/schemas/regions/"},
      {"picturist", "http://ns.adobe.com/picturist/1.0/"},
  };
  for (const auto& row : known) {
    ASSERT_NE(findStandardPrefix(row.prefix), nullptr) << row.prefix;
    EXPECT_EQ(findStandardPrefix(row.prefix)->uri, row.uri);
    EXPECT_EQ(findStandard(row.uri), findStandardPrefix(row.prefix));
  }
  EXPECT_EQ(findStandardPrefix("lr"), nullptr);
}

}  // namespace
}  // namespace velto::test
