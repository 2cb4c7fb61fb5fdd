// The namespace registry. It lives as long as the process, so each test has namespaces of its own.
#include "outside/xmp/registry.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "outside/xmp/errors.h"
#include "outside/xmp/rdf.h"

namespace velto::test {
namespace {

TEST(Registry, AURIKeepsItsPrefixAndATakenPrefixGetsANumber) {
  const Namespace* first = registerNamespace("http://one.example/", "clash");
  const Namespace* second = registerNamespace("http://two.example/", "clash:");
  EXPECT_EQ(first->prefix, "clash");
  EXPECT_EQ(second->prefix, "clash1");
  EXPECT_EQ(registerNamespace("http://three.example/", "clash")->prefix, "clash2");
  EXPECT_EQ(registerNamespace("http://one.example/", "other"), first);
  EXPECT_EQ(findPrefix("other"), nullptr);
  EXPECT_EQ(findPrefix("clash1"), second);
  EXPECT_EQ(findNamespace("http://two.example/"), second);
  EXPECT_NE(registerNamespace("http://four.example/", "dc")->prefix, "dc");
}

TEST(Registry, SenselessPrefixesAreReplacedAndSenselessURIsRefused) {
  std::set<std::string> prefixes;
  int number = 0;
  for (const char* prefix : {"", "1a", "a b", ":", "xmlns", "a:b", "<"}) {
    const Namespace* ns = registerNamespace("http://odd.example/" + std::to_string(++number), prefix);
    EXPECT_EQ(ns->prefix.find_first_not_of("ns0123456789"), std::string::npos) << ns->prefix;
    EXPECT_TRUE(prefixes.insert(ns->prefix).second) << ns->prefix;
  }
  for (const char* uri : {"", "http://www.w3.org/2000/xmlns/", "a\x01", "\xFF"}) {
    EXPECT_THROW(registerNamespace(uri, "fine"), ToolkitError) << uri;
  }
  EXPECT_EQ(findPrefix("fine"), nullptr);
}

TEST(Registry, ADeletedNamespaceYieldsItsPrefixAndStaysUsable) {
  const std::size_t count = countNamespaces();
  const Namespace* gone = registerNamespace("http://gone.example/", "gone");
  EXPECT_EQ(countNamespaces(), count + 1);
  EXPECT_TRUE(deleteNamespace("http://gone.example/"));
  EXPECT_FALSE(deleteNamespace("http://gone.example/"));
  EXPECT_EQ(countNamespaces(), count);
  EXPECT_EQ(findNamespace("http://gone.example/"), nullptr);
  EXPECT_EQ(findPrefix("gone"), nullptr);

  const Namespace* heir = registerNamespace("http://heir.example/", "gone");
  EXPECT_EQ(heir->prefix, "gone");
  EXPECT_EQ(findPrefix("gone"), heir);
  // Nodes may still name it, and a packet needs two prefixes for the two.
  EXPECT_NE(gone->prefix, "gone");
  EXPECT_EQ(findPrefix(gone->prefix), nullptr);

  EXPECT_EQ(registerNamespace("http://gone.example/", "back"), gone);
  EXPECT_EQ(findPrefix("back"), gone);
  EXPECT_THROW(deleteNamespace("http://purl.org/dc/elements/1.1/"), ToolkitError);
}

// What stands before and behind the properties of a packet, and those of so many namespaces of a kind.
constexpr char kStart[] =
    "<r:RDF xmlns:r='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><r:Description xmlns:u='http://used.example/'>";
constexpr char kEnd[] = "</r:Description></r:RDF>";

std::string propertiesOfManyNamespaces(const std::string& kind, int count) {
  std::string text;
  for (int at = 0; at < count; ++at) {
    text += "<n:p xmlns:n='http://" + kind + ".example/" + std::to_string(at) + "'>1</n:p>";
  }
  return text;
}

void parse(PacketParser& parser, const std::string& packet, bool last = true) {
  parser.feed(packet.data(), packet.size(), last);
}

TEST(Registry, WhatOnlyPacketsOfThePastHaveUsedIsForgottenAfterSomeThousand) {
  PacketParser living;
  parse(living, kStart + std::string("<u:a>1</u:a>") + kEnd);
  PacketParser halfFed;  // The blanks, so that this is parsed now.
  parse(halfFed,
        kStart + std::string("<u:a>1</u:a><h:s xmlns:h='http://half.example/' r:parseType='Resource'><h:f/>") +
            std::string(5000, ' '),
        false);
  const std::string prefix = findNamespace("http://half.example/")->prefix;
  const Namespace* kept = keepNamespace("http://kept.example/", "kept");
  registerNamespace("http://unused.example/", "unused");

  const std::size_t before = countNamespaces();
  for (int packet = 0; packet < 6; ++packet) {
    PacketParser parser;
    parse(parser, kStart + propertiesOfManyNamespaces(std::to_string(packet), 5000) + kEnd);
    EXPECT_EQ(parser.result().root()->children.size(), 5000u) << packet;
  }
  EXPECT_LT(countNamespaces(), before + 3 * 5000);
  EXPECT_EQ(findNamespace("http://unused.example/"), nullptr);
  EXPECT_EQ(findNamespace("http://0.example/0"), nullptr);
  EXPECT_EQ(findPrefix("unused"), nullptr);
  EXPECT_EQ(findPrefix("kept"), kept);

  const Namespace* used = findNamespace("http://used.example/");
  ASSERT_NE(used, nullptr);
  EXPECT_NE(living.result().findSchema(used), nullptr);
  parse(halfFed, std::string("<h:g>2</h:g></h:s><h:t xmlns:h='http://half.example/'/>") + kEnd);
  const Namespace* half = findNamespace("http://half.example/");
  ASSERT_NE(half, nullptr);
  EXPECT_EQ(half->prefix, prefix);
  const Node* schema = halfFed.result().findSchema(half);
  ASSERT_NE(schema, nullptr);
  EXPECT_EQ(schema->children.size(), 2u);
  EXPECT_EQ(schema->children.first()->children.size(), 2u);
}

}  // namespace
}  // namespace velto::test
