#include "xmpconv/dates.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

const std::uint8_t* BytesOf(const std::string& text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

std::string Fields(const XMPDateTime& date) {
  std::string text;
  for (const std::int32_t field : {date.year, date.month, date.day, date.hour, date.minute, date.second}) {
    text += std::to_string(field) + " ";
  }
  return text;
}

TEST(ExifDate, IsReadByPositionWithoutLookingAtSeparators) {
  const struct {
    std::string text;
    const char* fields;
  } cases[] = {
      {"2004:03:15 14:30:59", "2004 3 15 14 30 59 "},
      {"2004-03/15T14.30.59", "2004 3 15 14 30 59 "},
      {"  04: 3: 5  4:  : 9", "4 3 5 4 0 9 "},
      {"    :  :     :  :  ", "0 0 0 0 0 0 "},
      {"0000:00:00 00:00:00", "0 0 0 0 0 0 "},
      {"20 4:03:15 14:30:59", "1844 3 15 14 30 59 "},  // A blank after a digit counts as a digit of -16: 20, -16, 4.
  };
  for (const auto& c : cases) {
    XMPDateTime date{};
    LxParseExifDate(BytesOf(c.text), &date);
    LxParseExifTime(BytesOf(c.text) + 11, &date);
    EXPECT_EQ(Fields(date), c.fields) << c.text;
  }
  for (int byte = 0; byte < 256; ++byte) {  // No byte overflows a field.
    const std::string text(10, static_cast<char>(byte));
    XMPDateTime date{};
    LxParseExifDate(BytesOf(text), &date);
    LxParseExifTime(BytesOf(text), &date);
    if (byte != ' ') {
      EXPECT_EQ(date.year, (byte - '0') * 1111);
    }
  }
}

TEST(SubSeconds, AreADecimalFractionEndedByAZeroByteOrTheLength) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  const struct {
    std::string text;
    std::int32_t nanoseconds;
  } cases[] = {
      {"5", 500'000'000},
      {"123", 123'000'000},
      {"05", 50'000'000},
      {"25", 250'000'000},
      {"12 ", 104'000'000},
      {"", 0},
      {std::string("25\0zz", 5), 250'000'000},
      {" ", -1'600'000'000},
      {"zz", kMost},  // 8.14 seconds, more than the field holds
      {"\xFF\xFF", kMost},
      {std::string(1, '\x01'), std::numeric_limits<std::int32_t>::min()},
      {std::string(4000, '3'), 333'333'333},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LxParseSubSeconds(BytesOf(c.text), c.text.size()), c.nanoseconds) << c.text;
  }
  EXPECT_EQ(LxParseSubSeconds(BytesOf("2599"), 2), 250'000'000);
}

// As "%4hd%2hd%2hd" of scanf reads it.
TEST(IptcDate, BecomesAnXmpDateWhereItHoldsThreeNumbers) {
  const char* const cases[][2] = {
      {"20040315", "2004-03-15"},
      {"200403159", "2004-03-15"},
      {"00990101", "99-01-01"},
      {" 2004 3\v\f5x", "2004-03-05"},
      {"2004-1+2", "2004--1-02"},
      {"+1992-3-4", "199-02--3"},
      {"2004", "2004"},
      {"200403", "200403"},
      {"200403-", "200403-"},
      {"- 0040315", "- 0040315"},
      {"spring 2004", "spring 2004"},
      {"", ""},
  };
  for (const auto& [text, date] : cases) EXPECT_EQ(LxConvertIptcDate(text), date) << '"' << text << '"';
}

}  // namespace
