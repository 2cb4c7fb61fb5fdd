// Texts: the repair of any bytes, names that can be written and read back, language tags.
#include "outside/xmp/text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "outside/xmp/errors.h"

namespace velto::test {
namespace {

using namespace std::string_view_literals;

TEST(Text, RepairTakesBytesThatAreNoUTF8AsWindows1252) {
  const struct {
    std::string_view text;
    std::string_view repaired;
  } cases[] = {
      {"plain"sv, "plain"sv},
      {"Ren\xC3\xA9"sv, "Ren\xC3\xA9"sv},            // UTF-8 stays.
      {"Ren\xE9 Dupont"sv, "Ren\xC3\xA9 Dupont"sv},  // Latin-1.
      {"\x80 5 \x96 \x9F"sv, "\xE2\x82\xAC 5 \xE2\x80\x93 \xC5\xB8"sv},
      {"\x81\x9D"sv, "\xC2\x81\xC2\x9D"sv},                                  // Bytes that Windows-1252 leaves open.
      {"\xC3\xA9\xE9"sv, "\xC3\xA9\xC3\xA9"sv},                              // Both in one text.
      {"\xC0\xAF"sv, "\xC3\x80\xC2\xAF"sv},                                  // An overlong form is no UTF-8.
      {"\xE2\x82"sv, "\xC3\xA2\xE2\x80\x9A"sv},                              // Cut off within a character.
      {"\xF4\x90\x80\x80"sv, "\xC3\xB4\xC2\x90\xE2\x82\xAC\xE2\x82\xAC"sv},  // Above U+10FFFF.
      {"a\x01\x1F\x7F\tb\n\r"sv, "a  \x7F\tb\n\r"sv},                        // Controls that XML cannot carry.
      {"a\0b"sv, "a b"sv},
      {"\xEF\xBF\xBE\xEF\xBF\xBF|\xEF\xBF\xBD"sv, "  |\xEF\xBF\xBD"sv},  // U+FFFE, U+FFFF.
      {"\xED\x9F\xBF\xEE\x80\x80"sv, "\xED\x9F\xBF\xEE\x80\x80"sv},      // Beside the surrogates.
      {"\xED\xA0\x80"sv, "\xEF\xBF\xBD"sv},                              // A lone surrogate.
      {"\xED\xA0\xBD\xED\xB8\x80"sv, "\xF0\x9F\x98\x80"sv},              // A pair of them.
      {"\xED\xA0\xBDx"sv, "\xEF\xBF\xBDx"sv},
      {""sv, ""sv},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.text));
    EXPECT_EQ(repairText(c.text), c.repaired);
    EXPECT_EQ(isCleanText(c.text), c.text == c.repaired);
    EXPECT_TRUE(isCleanText(repairText(c.text)));
  }
}

TEST(Text, NamesAreThoseThatCanBeReadBack) {
  for (const char* name : {"a", "_", "A-1.b_c", "PropertyName", "\xC3\xA9t\xC3\xA9", "\xE6\x97\xA5\xE6\x9C\xAC"}) {
    EXPECT_TRUE(isXMLName(name)) << name;
  }
  for (const char* name : {"", " 9214", "9a", "-a", ".a", "a b", "a:b", "a/b", "a[1]", "a<", "a>", "a\"", "a\xC3\x97",
                           "\xC2\xB7x", "a\xE9", "\xF0\x9F\x98\x80", "a\xE2\x80\x8B\xE2\x80\xA8", "a\n"}) {
    EXPECT_FALSE(isXMLName(name)) << name;
  }
}

TEST(Text, LanguageTagsHaveTheirUsualCase) {
  const struct {
    const char* tag;
    const char* normal;  // Null: no tag.
  } cases[] = {
      {"EN", "en"},
      {"en-us", "en-US"},
      {"ZH-hant-tw", "zh-Hant-TW"},
      {"X-DEFAULT", "x-default"},
      {"x-us", "x-us"},
      {"en-a-bb-x-fr", "en-a-bb-x-fr"},
      {"sl-ROZAJ-1994", "sl-rozaj-1994"},
      {"", nullptr},
      {"en_US", nullptr},
      {"1n", nullptr},
      {"en-", nullptr},
      {"-en", nullptr},
      {"en--us", nullptr},
      {"abcdefghi", nullptr},
      {"en us", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tag);
    ASSERT_EQ(isLanguageTag(c.tag), c.normal != nullptr);
    if (c.normal != nullptr) {
      EXPECT_EQ(normalizeLanguage(c.tag), c.normal);
    }
  }
}

}  // namespace
}  // namespace velto::test
