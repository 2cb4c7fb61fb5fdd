#include "xmpconv/dates.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
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
      {"20 4:03:15 14:30:59", "1844 3 15 14 30 59 "},  // A blank behind a digit counts as a digit of -16: 20, -16, 4.
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

// What the rule is defined by.
std::string DateByScanning(const std::string& text) {
  short year = 0, month = 0, day = 0;
  if (std::sscanf(text.c_str(), "%4hd%2hd%2hd", &year, &month, &day) < 3) return text;
  char date[32];
  std::snprintf(date, sizeof date, "%d-%02d-%02d", year, month, day);
  return date;
}

TEST(IptcDate, BecomesAnXmpDateWhereItHoldsThreeNumbers) {
  EXPECT_EQ(LxConvertIptcDate("20040315"), "2004-03-15");
  EXPECT_EQ(LxConvertIptcDate("00990101"), "99-01-01");
  EXPECT_EQ(LxConvertIptcDate("2004"), "2004");
  EXPECT_EQ(LxConvertIptcDate("spring 2004"), "spring 2004");

  std::mt19937 random(7);
  const std::string_view characters = "0123456789-+ \t\n\v\fx";
  for (int i = 0; i < 200'000; ++i) {
    std::string text;
    for (auto length = random() % 12; length > 0; --length) text += characters[random() % characters.size()];
    ASSERT_EQ(LxConvertIptcDate(text.c_str()), DateByScanning(text)) << '"' << text << '"';
  }
}

}  // namespace
