// Changes of an object: every operation either happens or leaves the object as it was.
#include "outside/xmp/operations.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/outside/xmp/object_text.h"

namespace velto::test {
namespace {

constexpr std::uint32_t kSeq = kXMPPropIsOrdered;
constexpr std::uint32_t kBag = kXMPPropIsArray;
constexpr std::uint32_t kAlt = kXMPPropIsAlternate;

class Operations : public testing::Test {
 protected:
  Path path(const char* text) { return requirePath(object_.namespaces, wellKnown().dc->uri.data(), text); }

  void set(const char* name, const char* text, std::uint32_t options = 0) {
    setNode(object_, path(name), text, options);
  }
  void append(const char* array, std::uint32_t form, const char* text) {
    appendItem(object_, path(array), form, text, 0);
  }
  void localize(const char* generic, const char* specific, const char* text, const char* name = "title") {
    setLocalized(object_, path(name), generic, specific, text);
  }
  void remove(const char* name) {
    if (Node* node = findNode(object_, path(name))) deleteNode(object_, node);
  }
  std::string text() const { return textOf(object_); }

  // The id of the error that the work raises, which must leave the object as it was; 0 when it raises none.
  int failing(const std::function<void()>& work) {
    const std::string before = text();
    try {
      work();
      return 0;
    } catch (const ToolkitError& error) {
      EXPECT_EQ(text(), before) << error.what();
      return static_cast<int>(error.id());
    }
  }

  Object object_;
};

int id(ErrorId error) {
  return static_cast<int>(error);
}

TEST_F(Operations, MissingNodesOnTheWayAreMade) {
  set("flash/xmp:Fired", "True");
  set("flash/xmp:Mode", "2");
  set("deep/xmp:a/xmp:b/xmp:c", "x");
  append("pattern/xmp:Values", kSeq, "1");
  append("pattern/xmp:Values", kSeq, "2");
  set("creator[1]", "Ann");  // The standard says that it is a seq.
  set("creator[2]", "Bob");
  set("rights[?xml:lang='de']", "frei");
  set("rights[?xml:lang='x-default']", "free");
  set("flash/xmp:Fired/?xmp:sure", "no");
  EXPECT_EQ(text(),
            "dc:flash struct\n  xmp:Fired = True\n    ?xmp:sure = no\n  xmp:Mode = 2\n"
            "dc:deep struct\n  xmp:a struct\n    xmp:b struct\n      xmp:c = x\n"
            "dc:pattern struct\n  xmp:Values seq\n    - = 1\n    - = 2\n"
            "dc:creator seq\n  - = Ann\n  - = Bob\n"
            "dc:rights alt-text\n  - = free\n    ?xml:lang = x-default\n  - = frei\n    ?xml:lang = de\n");
}

TEST_F(Operations, SenselessOptionsAndFormsAreRefused) {
  set("simple", "x");
  set("struct", nullptr, kXMPPropIsStruct);
  append("bag", kBag, "1");
  append("alt", kAlt, "1");
  const struct {
    const char* name;
    const char* text;
    std::uint32_t options;
    ErrorId error;
  } cases[] = {
      {"new", "x", kXMPPropIsStruct, ErrorId::kBadOptions},
      {"new", "x", kSeq, ErrorId::kBadOptions},
      {"new", "x", 0x4000, ErrorId::kBadOptions},
      {"new", nullptr, kXMPPropIsStruct | kBag, ErrorId::kBadOptions},
      {"new", nullptr, kBag | kXMPPropValueIsURI, ErrorId::kBadOptions},
      {"new", nullptr, 0, ErrorId::kBadParameter},
      {"simple", nullptr, kBag, ErrorId::kBadForm},
      {"simple/xmp:f", "x", 0, ErrorId::kBadForm},
      {"simple[1]", "x", 0, ErrorId::kBadForm},
      {"simple[?xml:lang='de']", "x", 0, ErrorId::kBadForm},
      {"struct", "x", 0, ErrorId::kBadForm},
      {"struct[1]", "x", 0, ErrorId::kBadForm},
      {"struct", nullptr, kBag, ErrorId::kBadForm},
      {"bag", "x", 0, ErrorId::kBadForm},
      {"bag", nullptr, kSeq, ErrorId::kBadForm},
      {"bag/xmp:f", "x", 0, ErrorId::kBadForm},
      {"bag[3]", "x", 0, ErrorId::kBadIndex},
      {"bag[?xml:lang='de']", "x", 0, ErrorId::kBadForm},
      {"bag[xmp:f='x']", "x", 0, ErrorId::kNotThere},
      {"new[1]", "x", 0, ErrorId::kNotThere},  // Its form is not known.
      {"new/?xmp:q", "x", 0, ErrorId::kNotThere},
      {"new/xmp:s/?xmp:q", "x", 0, ErrorId::kNotThere},
      {"simple/?xml:lang", "d!", 0, ErrorId::kBadLanguage},
      {"simple/?xml:lang", nullptr, kBag, ErrorId::kBadOptions},
      {"simple/?xml:space", "x", 0, ErrorId::kBadName},
      {"simple/?rdf:value", "x", 0, ErrorId::kBadName},
      {"struct/rdf:li", "x", 0, ErrorId::kBadName},
      {"struct/xml:lang", "de", 0, ErrorId::kBadName},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(failing([&] { set(c.name, c.text, c.options); }), id(c.error)) << c.name << ' ' << c.options;
  }
  set("simple/?xml:lang", "de");
  EXPECT_EQ(failing([&] { set("simple/?xml:lang/?xmp:q", "x"); }), id(ErrorId::kBadForm));
  EXPECT_EQ(failing([&] { append("simple", kBag, "x"); }), id(ErrorId::kBadForm));
  EXPECT_EQ(failing([&] { append("bag", kSeq, "x"); }), id(ErrorId::kBadForm));
  EXPECT_EQ(failing([&] { append("new", 0, "x"); }), id(ErrorId::kNotThere));
  EXPECT_EQ(failing([&] { append("new", kXMPPropIsStruct, "x"); }), id(ErrorId::kBadOptions));
  EXPECT_EQ(failing([&] { append("new", kBag, nullptr); }), id(ErrorId::kBadParameter));
  append("bag", 0, "2");
  // Options that were got can be set.
  set("simple", "y", reportedOptions(findNode(object_, path("simple"))));
  EXPECT_EQ(text(),
            "dc:simple = y\n  ?xml:lang = de\ndc:struct struct\ndc:bag bag\n  - = 1\n  - = 2\ndc:alt alt\n  - = 1\n");
}

TEST_F(Operations, ItemsAreInsertedBeforeAnIndex) {
  for (const char* value : {"a", "b"}) append("l", kSeq, value);
  const auto insert = [this](std::int32_t index, const char* value) {
    insertItem(object_, path("l"), index, value, 0);
  };
  insert(1, "first");
  insert(4, "last");
  insert(kXMPLastItem, "before last");
  EXPECT_EQ(text(), "dc:l seq\n  - = first\n  - = a\n  - = b\n  - = before last\n  - = last\n");
  EXPECT_EQ(failing([&] { insert(7, "x"); }), id(ErrorId::kBadIndex));
  EXPECT_EQ(failing([&] { insert(0, "x"); }), id(ErrorId::kBadIndex));
  EXPECT_EQ(failing([&] { insertItem(object_, path("none"), 1, "x", 0); }), id(ErrorId::kNotThere));
  // The default language stays in front.
  set("t[?xml:lang='x-default']", "1");
  insertItem(object_, path("t"), 1, "2", 0);
  EXPECT_EQ(findNode(object_, path("t[1]"))->value(), "1");
}

TEST_F(Operations, NothingNestsDeeperThanTheLimit) {
  std::string deepest = "s";
  for (std::uint32_t depth = 1; depth < kDepthLimit - 1; ++depth) deepest += "/xmp:s";
  const std::string below = deepest + "/xmp:s";
  set(below.c_str(), "x");
  EXPECT_EQ(failing([&] { set((below + "/?xml:lang").c_str(), "de"); }), id(ErrorId::kTooDeep));
  EXPECT_EQ(failing([&] { append((below + "a").c_str(), kBag, "x"); }), id(ErrorId::kTooDeep));
  append((deepest + "/xmp:a").substr(7).insert(0, "a").c_str(), kBag, "x");
  // An item with its language is two levels more.
  EXPECT_EQ(failing([&] { localize("", "de", "x", (deepest + "/xmp:t").c_str()); }), id(ErrorId::kTooDeep));
  EXPECT_EQ(failing([&] { set((deepest + "[?xml:lang='de']").c_str(), "x"); }), id(ErrorId::kBadForm));
}

// --- languages ------------------------------------------------------------------------------------------------------

TEST_F(Operations, LocalizedTextsAnswerToTheNearestLanguage) {
  set("title[?xml:lang='x-default']", "default");
  set("title[?xml:lang='en-US']", "colour?");
  set("title[?xml:lang='en-GB']", "colour");
  set("title[?xml:lang='de']", "Farbe");
  const auto choose = [this](const char* generic, const char* specific) {
    const Path title = path("title");
    return chooseLocalized(title, findNode(object_, title), generic, specific)->value();
  };
  EXPECT_EQ(choose("", "EN-gb"), "colour");
  EXPECT_EQ(choose("en", "en-AU"), "colour?");
  EXPECT_EQ(choose("de", "de-AT"), "Farbe");
  EXPECT_EQ(choose("d", "fr"), "default");  // Not a prefix of letters, one of subtags.
  EXPECT_EQ(choose("", "x-default"), "default");
  remove("title[1]");
  EXPECT_EQ(choose("fr", "fr-FR"), "colour?");
  EXPECT_THROW(choose("", ""), ToolkitError);
  set("plain", "x");
  EXPECT_THROW(chooseLocalized(path("plain"), findNode(object_, path("plain")), "", "de"), ToolkitError);
}

TEST_F(Operations, SettingALocalizedTextKeepsTheDefaultAlike) {
  localize("", "x-default", "one");
  EXPECT_EQ(text(), "dc:title alt-text\n  - = one\n    ?xml:lang = x-default\n");
  localize("en", "en-US", "two");  // Beside x-default, which somebody has set.
  EXPECT_EQ(text(), "dc:title alt-text\n  - = one\n    ?xml:lang = x-default\n  - = two\n    ?xml:lang = en-US\n");
  remove("title");

  localize("en", "en-us", "one");
  EXPECT_EQ(text(), "dc:title alt-text\n  - = one\n    ?xml:lang = x-default\n  - = one\n    ?xml:lang = en-US\n");
  localize("en", "en-GB", "two");  // The only English one, and x-default with it.
  EXPECT_EQ(text(), "dc:title alt-text\n  - = two\n    ?xml:lang = x-default\n  - = two\n    ?xml:lang = en-US\n");
  localize("", "en-GB", "three");  // No generic language: one more.
  localize("en", "en-AU", "four");
  localize("", "x-default", "five");
  EXPECT_EQ(text(),
            "dc:title alt-text\n  - = five\n    ?xml:lang = x-default\n  - = five\n    ?xml:lang = en-US\n"
            "  - = three\n    ?xml:lang = en-GB\n  - = four\n    ?xml:lang = en-AU\n");
  localize("", "en-GB", "six");
  EXPECT_EQ(findNode(object_, path("title[1]"))->value(), "five");
}

TEST_F(Operations, DeletingALocalizedTextTakesItsCopyAndTheLastTheArray) {
  localize("en", "en-US", "one");
  localize("", "de", "zwei");
  deleteLocalized(object_, path("title"), "", "fr");
  deleteLocalized(object_, path("title"), "en", "en-GB");
  EXPECT_EQ(text(), "dc:title alt-text\n  - = zwei\n    ?xml:lang = de\n");
  deleteLocalized(object_, path("title"), "", "de");
  EXPECT_EQ(text(), "");
  deleteLocalized(object_, path("title"), "", "de");
}

TEST_F(Operations, OnlyLanguageAlternativesAreLocalized) {
  set("simple", "x");
  append("bag", kBag, "x");
  append("alt", kAlt, "x");
  set("empty", nullptr, kAlt);
  for (const char* name : {"simple", "bag", "alt"}) {
    EXPECT_EQ(failing([&] { localize("", "de", "x", name); }), id(ErrorId::kBadForm)) << name;
    EXPECT_EQ(failing([&] { deleteLocalized(object_, path(name), "", "de"); }), id(ErrorId::kBadForm)) << name;
  }
  EXPECT_EQ(failing([&] { localize("", "", "x"); }), id(ErrorId::kBadLanguage));
  EXPECT_EQ(failing([&] { localize("e_n", "en", "x"); }), id(ErrorId::kBadLanguage));
  localize("", "de", "x", "empty");
  EXPECT_TRUE(isAltText(findNode(object_, path("empty"))));
}

// Of a hundred thousand languages, too; work that grew with each would take minutes.
TEST_F(Operations, ManyLanguagesAreFoundAmongChanges) {
  constexpr int kMany = 100000;
  const auto localizeIn = [this](int number, const char* variety, const char* text) {
    const std::string generic = "x-" + std::to_string(number);
    localize(generic.c_str(), (generic + variety).c_str(), text);
  };
  for (int number = 0; number < kMany; ++number) localizeIn(number, "", "old");
  for (int number = 0; number < kMany; number += 100) localizeIn(number, "-a", "new");  // The only one of its language.
  const Path title = path("title");
  Node* array = findNode(object_, title);
  ASSERT_EQ(array->children.size(), std::size_t{kMany} + 1);
  EXPECT_TRUE(isAltText(array));
  EXPECT_EQ(chooseLocalized(title, array, "x-500", "x-500-a")->value(), "new");
  EXPECT_EQ(chooseLocalized(title, array, "", "x-501")->value(), "old");
  set("title[?xml:lang='x-500']/?xml:lang", "x-501-b");
  localizeIn(501, "-a", "added");  // Two are of this language.
  EXPECT_EQ(array->children.last()->value(), "added");
  EXPECT_EQ(chooseLocalized(title, array, "", "x-501-b")->value(), "new");
  EXPECT_EQ(chooseLocalized(title, array, "", "x-500")->value(), "new");  // x-default, as the first language is.
  remove("title[?xml:lang='x-501']/?xml:lang");
  EXPECT_FALSE(isAltText(array));
  EXPECT_EQ(array->children.findLanguage("x-501"), nullptr);
  remove("title[503]");
  EXPECT_EQ(chooseLocalized(title, array, "x-501", "x-501")->value(), "new");
}

TEST_F(Operations, EmptyLanguagesOfPacketsAreOfNoLanguage) {
  std::string items;
  for (int i = 0; i < 10; ++i)
    items += "<rdf:li rdf:parseType='Resource'><rdf:value>old</rdf:value><xml:lang/></rdf:li>";
  Parsed parsed("<rdf:RDF " + kDeclarations + "><rdf:Description><dc:title><rdf:Alt>" + items +
                "</rdf:Alt></dc:title></rdf:Description></rdf:RDF>");
  setLocalized(parsed.object, path("title"), "de", "de-AT", "new");
  EXPECT_EQ(chooseLocalized(path("title"), findNode(parsed.object, path("title")), "de", "de-CH")->value(), "new");
}

}  // namespace
}  // namespace velto::test
