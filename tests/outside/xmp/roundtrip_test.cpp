// Any object that can be built is serialised and reads back equal: random ones, the same on every run.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "outside/xmp/rdf.h"
#include "outside/xmp/text.h"
#include "tests/outside/xmp/object_text.h"

namespace velto::test {
namespace {

constexpr std::uint32_t kForms[] = {
    0,
    kXMPPropValueIsURI,
    kXMPPropIsStruct,
    kXMPPropIsArray,
    kXMPPropIsArray | kXMPPropIsOrdered,
    kXMPPropIsArray | kXMPPropIsOrdered | kXMPPropIsAlternate,
};

class Builder {
  std::size_t below(std::size_t limit) { return random_() % limit; }
  template <typename List>
  auto anyOf(const List& list) {
    return list[below(std::size(list))];
  }

 public:
  Builder(std::uint32_t seed, Object& object) : random_(seed), object_(object) {
    for (const char* uri :
         {"http://purl.org/dc/elements/1.1/", "http://ns.adobe.com/exif/1.0/", "http://test.example/t/",
          "http://test.example/a?b&c<d>\"'\t#", "\xC3\xA4:\xF0\x9F\x93\xB7"}) {
      namespaces_.push_back(object.namespaces.intern(uri, "t"));
    }
  }

  void fill() {
    Object& object = object_;
    object.name = below(3) == 0 ? text() : "";
    for (std::size_t count = below(7); count > 0; count--) {
      const Namespace* ns = anyOf(namespaces_);
      Node* const schema = object.ensureSchema(ns);
      NodePtr node = makeNode(object_.storage, {ns, name()}, anyOf(kForms));
      if (schema->children.find(ns, node->name()) == nullptr) complete(appendChild(schema, std::move(node)), 1);
    }
    // One that is as deep as an object can be, with a qualifier at the very end.
    if (below(10) == 0) {
      Node* node = appendChild(object.ensureSchema(namespaces_[0]),
                               makeNode(object_.storage, {namespaces_[0], "deep"}, kXMPPropIsStruct));
      for (std::uint32_t depth = 2; depth < kDepthLimit; depth++) {
        const bool isQualifier = below(3) == 0;
        const std::uint32_t form = kForms[2 + below(2)];
        const bool isItem = node->isArray() && !isQualifier;
        NodePtr next =
            isItem ? makeItem(object_.storage, form) : makeNode(object_.storage, {anyOf(namespaces_), name()}, form);
        if (below(200) == 0) next->options = 0;
        node = isQualifier ? addQualifier(node, std::move(next)) : appendChild(node, std::move(next));
        if (node->isSimple()) break;
      }
      if (depthOf(node) < kDepthLimit)
        addQualifier(node, makeNode(object_.storage, {namespaces_[1], "end"}, anyOf(kForms)));
    }
  }

 private:
  std::string name() {
    static const std::vector<std::string> kNames = {
        "a", "b", "Description", "li", "value", "lang", "_-.9", "\xC3\xA4\xC3\xB6", "about", "x1", "resource", "RDF"};
    return anyOf(kNames);
  }

  // Pieces that XML, its white space rules or its line ends could eat.
  std::string text() {
    // clang-format off
    static const std::vector<std::string> kPieces = {
        " ", "\n", "\r", "\r\n", "\t", "<", ">", "&", "]]>", "\"", "'", "&lt;", "a", "word",
        "\xC3\xA4", "\xE6\x97\xA5", "\xF0\x9F\x93\xB7", "\xC2\x85", "\xE2\x80\xA8", "\xEF\xBB\xBF", "<!--", "<?x?>", "\x7F"};
    // clang-format on
    std::string result;
    for (std::size_t count = below(6); count > 0; count--) result += anyOf(kPieces);
    if (below(50) == 0) result += std::string(5000, 'x');
    return result;
  }

  void complete(Node* node, std::uint32_t depth) {
    const bool mayGrow = depth < 4;
    if (node->isSimple()) {
      node->setValue(text());
    } else if (mayGrow) {
      const bool isAlt = (node->options & kXMPPropIsAlternate) != 0;
      const bool areTexts = isAlt && below(2) == 0;
      for (std::size_t count = below(below(8) == 0 ? 20 : 4); count > 0; count--) {
        const std::uint32_t form = areTexts ? 0 : anyOf(kForms);
        NodePtr child = node->isArray() ? makeItem(object_.storage, form)
                                        : makeNode(object_.storage, {anyOf(namespaces_), name()}, form);
        if (!node->isArray() && node->children.find(child->ns, child->name()) != nullptr) continue;
        Node* const added = appendChild(node, std::move(child));
        complete(added, depth + 1);
        if (areTexts) setLanguage(added, "x-t" + std::to_string(count));
      }
      if (areTexts && node->children.first() != nullptr && below(2) == 0)
        setLanguage(node->children.first(), "x-default");
    }
    if (!mayGrow || below(3) != 0) return;
    for (std::size_t count = below(4); count > 0; count--) {
      NodePtr qualifier = makeNode(object_.storage, {anyOf(namespaces_), name()}, anyOf(kForms));
      if (node->qualifiers.find(qualifier->ns, qualifier->name()) != nullptr) continue;
      complete(addQualifier(node, std::move(qualifier)), depth + 1);
    }
    if (below(3) == 0) setLanguage(node, below(2) == 0 ? "de-AT" : "x-default");
    if (below(6) == 0 && node->qualifiers.find(wellKnown().rdf, "type") == nullptr) {
      addQualifier(
          node, makeNode(object_.storage, {wellKnown().rdf, "type"}, kXMPPropValueIsURI, "http://test.example/t/Type"));
    }
    // The first of the items that have it goes first.
    if (node->parent->isArray() && (node->parent->options & kXMPPropIsAlternate) != 0)
      putDefaultLanguageFirst(node->parent);
  }

  std::mt19937 random_;
  Object& object_;
  std::vector<const Namespace*> namespaces_;
};

TEST(RoundTrip, RandomObjectsReadBackEqual) {
  const SerializeOptions kOptions[] = {
      {},
      {.options = kXMPSerializeCompact, .padding = 0},
      {.options = kXMPSerializeOmitWrapper, .newline = "", .indent = ""},
      {.options = kXMPSerializeCompact | kXMPSerializeOmitMeta | kXMPSerializeOmitWrapper,
       .newline = "\r\n",
       .indent = "\t"},
      {.options = kXMPSerializeReadOnly, .newline = "\r", .baseIndent = 3},
  };
  const std::uint32_t seeds = std::getenv("LX_FULL") != nullptr ? 5000 : 500;
  std::uint32_t deepest = 0;
  for (std::uint32_t seed = 0; seed < seeds; seed++) {
    Object object;
    Builder(seed, object).fill();
    deepest = std::max(deepest, heightOf(object.root()));
    for (const std::size_t set : {seed % std::size(kOptions), (seed / 5) % std::size(kOptions)}) {
      const SerializeOptions& options = kOptions[set];
      std::string packet;
      serializeObject(object, options, packet);
      SCOPED_TRACE("seed " + std::to_string(seed) + " options " + std::to_string(options.options));
      ASSERT_EQ(failureOf(packet), "") << packet;
      const Parsed parsed(packet);
      const Object& copy = parsed.object;
      ASSERT_EQ(parsed.warnings(), "") << packet;
      ASSERT_EQ(copy.name, object.name);
      ASSERT_TRUE(equalTrees(copy.root(), object.root(), object.namespaces))
          << packet << textOf(object) << "\n--- read back:\n"
          << textOf(copy);
      // The full form keeps the order too.
      if ((options.options & kXMPSerializeCompact) != 0) continue;
      ASSERT_EQ(textOf(copy), textOf(object)) << packet;
      std::string again;
      serializeObject(copy, options, again);
      ASSERT_EQ(again, packet);
    }
  }
  EXPECT_EQ(deepest, kDepthLimit + 2) << "root, schema, and as deep as an object can be";
}

}  // namespace
}  // namespace velto::test
