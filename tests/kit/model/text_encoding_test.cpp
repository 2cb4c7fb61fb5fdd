// Telling text encodings apart, conversions to UTF-8, and the Shift_JIS table against the C library's own tables.
#include "kit/model/text_encoding.h"

#include <gtest/gtest.h>
#include <iconv.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "kit/base/memory.h"

namespace {

using Converter = char* (*)(const std::uint8_t*, std::int32_t) noexcept;

// The result of a function for a heap block of exactly these bytes, so that AddressSanitizer sees a read past them.
template <typename Function, typename... More>
auto Of(Function function, std::string_view text, More... more) {
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  auto result = function(bytes.data(), static_cast<std::int32_t>(bytes.size()), more...);
  if constexpr (std::is_same_v<decltype(result), char*>) {
    const std::unique_ptr<char, void (*)(void*)> owned(result, [](void* block) { LxFree(block); });
    return std::string(result != nullptr ? result : "(null)");
  } else {
    return result;
  }
}

std::string Utf16(std::u16string_view text, int order) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
    bytes += order == 1 ? high : low;
    bytes += order == 1 ? low : high;
  }
  return bytes;
}

class TextEncoding : public testing::Test {
 protected:
  void SetUp() override { LxInstallMemProcs(LxRuntimeMemProcs()); }
};

using namespace std::string_literals;
using namespace std::string_view_literals;

TEST_F(TextEncoding, AUtf8ValueEndsWithItsZeroByteAndHoldsWholeSequences) {
  const struct {
    std::string_view bytes;
    bool isUtf8;
  } cases[] = {
      {"\0"sv, true},
      {"a"sv, false},  // No terminator.
      {"a\0"sv, true},
      {""sv, false},
      {"line\r\n\ttwo\0\0\0\0"sv, true},
      {"0123456789abcdef\x7F\0"sv, false},
      {"0123456789\x1F"
       "abcdef\0"sv,
       false},
      {"na\xC3\xAFve\0"sv, true},
      {"\xF0\x9F\x93\xB7\0"sv, true},
      {"\xFC\x84\x80\x80\x80\x80\0"sv, true},
      {"\xFE\x84\x80\x80\x80\x80\x80\0"sv, false},
      {"\xE5\x86\0"sv, false},   // The terminator within a sequence.
      {"abc\xC3\xAF"sv, false},  // The sequence's last byte is the value's.
      {"abc\xAF\0"sv, false},    // No lead.
      {"M\xFCller\0"sv, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    EXPECT_EQ(Of(LxIsUtf8Value, c.bytes), c.isUtf8);
  }
}

TEST_F(TextEncoding, TheFewestErrorsNameTheEncodingAndTheEarlierWinsATie) {
  const struct {
    const char* name;
    std::string_view bytes;
    LxTextEncoding encoding;
  } cases[] = {
      {"UTF-8 without terminator", "na\xC3\xAFve"sv, kLxTextUtf8},
      {"UTF-8 cut within its last character: one error, as in Latin-1", "photo \xF0\x9F\x93"sv, kLxTextUtf8},
      {"UTF-8 cut where Shift_JIS has nothing but pairs", "\xE5\x86\x99\xE7\x9C"sv, kLxTextShiftJis},
      {"text after the zero byte counts alike for all", "abc\0defgh"sv, kLxTextUtf8},
      {"Latin-1", "Zo\xEB M\xFCller, Caf\xE9"sv, kLxTextLatin1},
      {"Latin-1 before a terminator and the rest of an earlier text", "Caf\xE9\0junk"sv, kLxTextLatin1},
      {"Latin-1 whose only letter is the value's last byte: left out of the first score", "Caf\xE9"sv, kLxTextUtf8},
      {"ISO-2022-JP, the older set and the Roman one", "\x1B$@<L??\x1B(J"sv, kLxTextIso2022Jp},
      {"ISO-2022-JP that goes into no set: three errors as in others", "\x1B$X\x1B$X\x1B$X"sv, kLxTextUtf8},
      {"ISO-2022-JP cut within a pair: one error", "\x1B$B<L\x1B(B \x1B$B<L??"sv, kLxTextIso2022Jp},
      {"EUC-JP is no error in Latin-1 either", "\xC5\xEC\xB5\xFE\xA4\xCE\xCC\xEB"sv, kLxTextLatin1},
      {"Shift_JIS", "\x93\x8C\x8B\x9E\x83^\x83\x8F\x81[\x82\xCC\x8E\xCA\x90^"sv, kLxTextShiftJis},
      {"lead 0xEF takes fewer trails", "\x81\x40\xEF\x9E"sv, kLxTextShiftJis},
      {"and a further trail is an error, as two bytes are in Latin-1", "\x81\x40\xEF\x9F"sv, kLxTextLatin1},
      {"Windows-1252 quotes: as wrong in Latin-1 as in the rest", "\x93quoted\x94 by"sv, kLxTextUtf8},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Of(LxGuessEncoding, c.bytes), c.encoding);
    const Converter convert = c.encoding == kLxTextLatin1     ? LxLatin1ToUtf8
                              : c.encoding == kLxTextShiftJis ? LxShiftJisToUtf8
                                                              : nullptr;
    const std::string asItIs(c.bytes.data(), strnlen(c.bytes.data(), c.bytes.size()));
    EXPECT_EQ(Of(LxTextToUtf8, c.bytes), convert != nullptr ? Of(convert, c.bytes) : asItIs);
  }
  EXPECT_EQ(Of(LxLatin1ToUtf8, "\x80\x9F\xA0\xFF \0z"sv), "\xC2\x80\xC2\x9F\xC2\xA0\xC3\xBF ");
}

TEST_F(TextEncoding, ShiftJisDamageGivesReplacementsAndEatsNothing) {
  const std::string replacement = "\xEF\xBF\xBD";
  const struct {
    const char* name;
    std::string_view bytes;
    std::string expected;
  } cases[] = {
      {"half-width katakana", "\xA0\xA1\xB1\xDF"sv, "\xC2\xA0\xEF\xBD\xA1\xEF\xBD\xB1\xEF\xBE\x9F"},
      {"lead at the end", "a\x82"sv, "a" + replacement},
      {"lead before a blank", "\x82 \x82\xA0"sv, replacement + " \xE3\x81\x82"},
      {"pair without a character", "\x85\x40z\xEF\xFCz"sv, replacement + "z" + replacement + "z"},
      {"pairs of the makers", "\xF0\x40\xFC\xFCz"sv, replacement + replacement + "z"},
      {"bytes that begin nothing", "\x80\x41\xFD\x42\xFF"sv, replacement + "A" + replacement + "B" + replacement},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Of(LxShiftJisToUtf8, c.bytes), c.expected);
  }
}

// The C library knows JIS X 0208 by its EUC-JP codes, to which a Shift_JIS pair converts by arithmetic.
TEST_F(TextEncoding, ShiftJisPairsAreThoseOfJisX0208) {
  const iconv_t converter = iconv_open("UTF-16BE", "EUC-JP");
  if (converter == reinterpret_cast<iconv_t>(-1)) GTEST_SKIP() << "no EUC-JP on this machine";
  int characters = 0;
  for (int lead = 0; lead < 256; ++lead) {
    for (int trail = 0; trail < 256; ++trail) {
      const int found = LxShiftJisPair(static_cast<std::uint8_t>(lead), static_cast<std::uint8_t>(trail));
      int expected = 0;
      const bool isLead = (lead >= 0x81 && lead <= 0x9F) || (lead >= 0xE0 && lead <= 0xEF);
      if (isLead && trail >= 0x40 && trail <= 0xFC && trail != 0x7F) {
        const int column = trail - 0x40 - (trail > 0x7F ? 1 : 0);
        const int row = 2 * (lead - (lead < 0xA0 ? 0x81 : 0xC1)) + column / 94;
        char euc[2] = {static_cast<char>(0xA1 + row), static_cast<char>(0xA1 + column % 94)};
        unsigned char utf16[4] = {};
        char *in = euc, *out = reinterpret_cast<char*>(utf16);
        std::size_t inLeft = 2, outLeft = 4;
        (void)iconv(converter, nullptr, nullptr, nullptr, nullptr);
        if (iconv(converter, &in, &inLeft, &out, &outLeft) == 0 && outLeft == 2) expected = utf16[0] * 256 + utf16[1];
      }
      if (lead == 0x81 && trail == 0x7C) expected = 0xFF0D;  // Where this table takes the other of two readings.
      ASSERT_EQ(found, expected) << std::hex << lead << " " << trail;
      characters += found != 0 ? 1 : 0;
    }
  }
  iconv_close(converter);
  EXPECT_EQ(characters, 6879);
}

TEST_F(TextEncoding, Utf16BecomesUtf8InEitherOrder) {
  const struct {
    const char* name;
    std::u16string_view units;
    std::string_view expected;
  } cases[] = {
      {"one, two and three bytes", u"a\u00E9\u5199\uFFFD"sv, "a\xC3\xA9\xE5\x86\x99\xEF\xBF\xBD"sv},
      {"ends at the zero unit", u"ab\0cd"sv, "ab"sv},
      {"surrogate pair", u"\U0001F4F7!"sv, "\xF0\x9F\x93\xB7!"sv},
      {"pair the wrong way round", u"\xDCF7\xD83D!"sv, "\xF0\x9F\x93\xB7!"sv},
      {"the first and the last pair", u"\U00010000\U0010FFFF"sv, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"sv},
      {"lone surrogates give nothing", u"\xD83D!\xDCF7\xDCF7?\xD83D"sv, "!?"sv},
  };
  for (const auto& c : cases) {
    for (const int order : {0, 1}) {
      SCOPED_TRACE(testing::Message() << c.name << ", order " << order);
      EXPECT_EQ(Of(LxUtf16ToUtf8, Utf16(c.units, order), order), c.expected);
      EXPECT_EQ(Of(LxUtf16ToUtf8, Utf16(c.units, order) + "x", order), c.expected);  // An odd byte more.
    }
  }
}

TEST_F(TextEncoding, TheByteOrderOfRealSentencesIsFound) {
  const struct {
    const char* name;
    std::u16string_view text;
  } cases[] = {
      {"English", u"Sunrise over the harbour\r\n"sv},
      {"Russian", u"Привет, мир"sv},
      {"Hindi", u"नमस्ते दुनिया"sv},
      {"Japanese", u"東京タワーの写真を撮りました。"sv},
      {"emoji", u"\U0001F4F7 caf\u00E9 \U0001F600"sv},
      {"emoji alone", u"\U0001F600\U0001F4F7"sv},
      {"surrogates when read wrongly", u"\u4ED8"sv},
  };
  for (const auto& c : cases) {
    for (const int order : {0, 1}) {
      SCOPED_TRACE(testing::Message() << c.name << ", order " << order);
      EXPECT_EQ(Of(LxGuessUtf16Order, Utf16(c.text, order)), order);
      EXPECT_EQ(Of(LxGuessUtf16Order, Utf16(c.text, order) + "\0\0\0\0"s), order);
      EXPECT_EQ(Of(LxGuessUtf16Order, Utf16(u"\uFEFF", order) + Utf16(c.text, order)), order);
    }
  }
  // A mark decides where the characters do not; nothing at all is little-endian.
  EXPECT_EQ(Of(LxGuessUtf16Order, "\xFE\xFF\x4E\x6D"sv), 1);
  EXPECT_EQ(Of(LxGuessUtf16Order, "\xFF\xFE\x4E\x6D"sv), 0);
  EXPECT_EQ(Of(LxGuessUtf16Order, "\x4E\x4E"sv), 0);  // The same in either order.
  EXPECT_EQ(Of(LxGuessUtf16Order, "\0"sv), 0);
  EXPECT_EQ(Of(LxGuessUtf16Order, "\0\0\0\0"sv), 0);
}

}  // namespace
