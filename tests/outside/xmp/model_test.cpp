// The data model: lists and their indexes, comparing, merging.
#include "outside/xmp/model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tests/outside/xmp/object_text.h"

namespace velto::test {
namespace {

const Namespace* const kDC = wellKnown().dc;
const Namespace* const kXMP = wellKnown().xmp;

// A list behaves as a plain vector, at every size and after any look-ups.
TEST(NodeList, IndexesFollowEveryChange) {
  std::mt19937 random(7);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  for (int round = 0; round < 60; ++round) {
    Storage storage;
    NodePtr owner = makeNode(storage, {kDC, "owner"}, kXMPPropIsStruct);
    NodeList& list = owner->children;
    std::vector<Node*> expected;
    const std::size_t target = round % 3 == 0 ? 12 : 200;
    for (int turn = 0; turn < 600; ++turn) {
      const bool grow = expected.empty() || (expected.size() < target ? below(3) != 0 : below(3) == 0);
      if (grow) {
        NodePtr node = makeNode(storage, {below(2) != 0 ? kDC : kXMP, "n" + std::to_string(turn)}, 0);
        const std::size_t place = below(4) == 0 ? below(expected.size() + 1) : expected.size();
        Node* before = place < expected.size() ? expected[place] : nullptr;
        Node* added = list.insert(owner.get(), std::move(node), before);
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(place), added);
      } else if (below(100) == 0) {
        list.clear();
        expected.clear();
      } else if (below(5) == 0) {
        const std::size_t place = below(expected.size());
        NodePtr old = list.replace(expected[place], makeNode(storage, {kDC, "r" + std::to_string(turn)}, 0));
        ASSERT_EQ(old.get(), expected[place]);
        expected[place] = place == 0 ? list.first() : expected[place - 1]->next;
      } else {
        const std::size_t place = below(expected.size());
        const NodePtr gone = list.remove(expected[place]);
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(place));
        ASSERT_EQ(list.find(gone->ns, gone->name()), nullptr);
      }
      ASSERT_EQ(list.size(), expected.size());
      if (expected.empty()) continue;
      const std::size_t probe = below(expected.size());
      Node* const node = expected[probe];
      // Only now and then, so that lists with either index, both and none are changed.
      if (below(3) == 0) {
        ASSERT_EQ(list.find(node->ns, node->name()), node);
        ASSERT_EQ(list.find(node->ns == kDC ? kXMP : kDC, node->name()), nullptr);
      }
      if (below(3) == 0) {
        ASSERT_EQ(list.at(probe), node);
      }
    }
    std::size_t place = 0;
    for (Node* node = list.first(); node != nullptr; node = node->next, ++place) ASSERT_EQ(node, expected[place]);
    ASSERT_EQ(list.at(place), nullptr);
  }
}

TEST(Model, TreesAreEqualInAnyOrderOfNamesAndOfLanguages) {
  std::string fields, turned;  // More than are compared without an index.
  for (int field = 0; field < 20; ++field) {
    const std::string name = "xmp:f" + std::to_string(field);
    const std::string element = "<" + name + ">" + std::to_string(field) + "</" + name + ">";
    fields += element;
    turned = element + turned;
  }
  const auto with = [](const std::string& form, const std::string& inside) {
    return inDescription("<dc:a rdf:parseType='Resource'><dc:b><rdf:" + form + ">" + inside + "</rdf:" + form +
                         "></dc:b></dc:a>");
  };
  const std::string german = "<rdf:li xml:lang='de'>Hallo</rdf:li>",
                    english = "<rdf:li xml:lang='en-US'>Hello</rdf:li>";
  const struct {
    std::string left, right;
    bool areEqual;
  } cases[] = {
      {inDescription(fields), inDescription(turned), true},
      {inDescription(fields + "<dc:a>x</dc:a>"), inDescription(fields + "<dc:a>y</dc:a>"), false},
      {inDescription(fields + "<dc:a>x</dc:a>"), inDescription(fields + "<dc:a rdf:resource='x'/>"), false},
      {inDescription(fields + "<dc:a>x</dc:a>"), inDescription(fields + "<dc:a xml:lang='de'>x</dc:a>"), false},
      {with("Alt", german + "<rdf:li xml:lang='EN-us'>Hello</rdf:li>"), with("Alt", english + german), true},
      {with("Alt", german + english), with("Alt", english + "<rdf:li xml:lang='de'>Hello</rdf:li>"), false},
      {with("Alt", german + english + "<rdf:li/>"), with("Alt", english + german + "<rdf:li/>"), false},
      {with("Seq", "<rdf:li>1</rdf:li><rdf:li>2</rdf:li>"), with("Seq", "<rdf:li>2</rdf:li><rdf:li>1</rdf:li>"), false},
  };
  for (const auto& c : cases) {
    const Parsed left(c.left), right(c.right);
    EXPECT_EQ(equalTrees(left.object.root(), right.object.root(), right.object.namespaces), c.areEqual)
        << c.left << c.right;
  }
}

TEST(Model, APacketReplacesInPlaceAndAddsAtTheEnd) {
  Object object;
  for (const char* packet :
       {"<dc:a>old</dc:a><dc:b>old</dc:b><dc:c>old</dc:c>", "<xmp:x>new</xmp:x><dc:d>new</dc:d><dc:b>new</dc:b>"}) {
    const std::string whole = inDescription(packet);
    PacketParser(object).feed(whole.data(), whole.size(), true);
  }
  EXPECT_EQ(textOf(object), "dc:a = old\ndc:b = new\ndc:c = old\ndc:d = new\nxmp:x = new\n");
}

}  // namespace
}  // namespace velto::test
