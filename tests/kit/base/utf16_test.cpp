// The lenient conversion of paths.
#include "kit/base/utf16.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/failing_memory.h"

namespace {

TEST(Utf8ToUtf16, DecodesByTheLeadByteAlone) {
  const struct {
    const char *name, *text;
    std::u16string expected;
  } kCases[] = {
      {"two bytes", "Cr\xC3\xA9mieux", u"Cr\u00E9mieux"},
      {"three bytes", "\xE2\x82\xAC", u"\u20AC"},
      {"four bytes make a pair", "\xF0\x9F\x93\xB7!", u"\U0001F4F7!"},
      {"the last code point", "\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
      {"after the last code point", "\xF4\x90\x80\x80", u"\uFFFD"},
      {"a trailing byte alone stands for itself", "\x80\xBF", u"\u0080\u00BF"},
      {"an overlong zero",
       "\xC0\x80"
       "a",
       std::u16string(u"\0a", 2)},
      {"a surrogate", "\xED\xA0\x80", std::u16string(1, char16_t{0xD800})},
      {"five and six bytes", "\xF8\x88\x80\x80\x80\xFC\x84\x80\x80\x80\x80z", u"\uFFFD\uFFFDz"},
      {"trailing bytes that are none", "\xC3(", std::u16string(1, char16_t{0xE8 - 0x80})},
      {"a sum below zero", "\xC0\x01", u"\uFFFD"},
  };
  lxtest::FailingMemory memory;
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    char16_t* units = LxUtf8ToUtf16(c.text);
    ASSERT_NE(units, nullptr);
    EXPECT_EQ(std::u16string(units, c.expected.size()), c.expected);
    EXPECT_EQ(units[c.expected.size()], 0);
    LxFree(units);
  }
  EXPECT_EQ(memory.liveBlocks(), 0);
}

TEST(Utf8ToUtf16, ATextThatEndsWithinASequenceFails) {
  lxtest::FailingMemory memory;
  for (const char* text : {"a\xC3", "\xE2\x82", "\xF0\x9F\x93", "\xF8\x88\x80\x80", "\xFC", "\xFF\x80\x80\x80\x80"}) {
    EXPECT_EQ(LxUtf8ToUtf16(text), nullptr) << text;
  }
  EXPECT_EQ(LxUtf8ToUtf16(nullptr), nullptr);
  EXPECT_EQ(memory.liveBlocks(), 0);
}

}  // namespace
