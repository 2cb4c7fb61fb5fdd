// Dates: texts, fields that name no instant, the machine's zone.
#include "outside/xmp/dates.h"

#include <gtest/gtest.h>
#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "outside/xmp/errors.h"

namespace velto::test {
namespace {

XMPDateTime at(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour = 0, std::int32_t minute = 0,
               std::int32_t second = 0, std::int32_t nanosecond = 0) {
  return {year, month, day, hour, minute, second, 0, 0, 0, nanosecond};
}

XMPDateTime inZone(XMPDateTime date, std::int32_t sign, std::int32_t hour, std::int32_t minute) {
  date.zoneSign = sign;
  date.zoneHour = hour;
  date.zoneMinute = minute;
  return date;
}

TEST(Dates, FieldsBecomeTextAndReadBack) {
  const struct {
    XMPDateTime date;
    const char* text;
  } cases[] = {
      {at(2004, 3, 15, 12, 30, 59), "2004-03-15T12:30:59Z"},
      {at(4, 2, 29), "0004-02-29T00:00:00Z"},
      {at(9999, 12, 31, 23, 59, 59, 999999999), "9999-12-31T23:59:59.999999999Z"},
      {at(2004, 3, 15, 0, 0, 0, 500000000), "2004-03-15T00:00:00.5Z"},
      {at(2004, 3, 15, 0, 0, 0, 1), "2004-03-15T00:00:00.000000001Z"},
      {inZone(at(2004, 3, 15), 1, 5, 30), "2004-03-15T00:00:00+05:30"},
      {inZone(at(2004, 3, 15), -1, 0, 30), "2004-03-15T00:00:00-00:30"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(formatDate(c.date), c.text);
    EXPECT_EQ(formatDate(parseDate(c.text)), c.text);
  }
  const char* const shorter[][2] = {
      {"2004", "2004-01-01T00:00:00Z"},
      {"2004-02", "2004-02-01T00:00:00Z"},
      {"2004-02-29T12:30:01.1234567899+01:00", "2004-02-29T12:30:01.123456789+01:00"},
      {"2004-02-29T12:30-00:00", "2004-02-29T12:30:00Z"},
  };
  for (const auto& [text, whole] : shorter) EXPECT_EQ(formatDate(parseDate(text)), whole);
  EXPECT_EQ(formatDate(inZone(at(2004, 3, 15), -1, 0, 0)), "2004-03-15T00:00:00+00:00");
}

TEST(Dates, FieldsAndTextsThatNameNoInstantAreRefused) {
  const XMPDateTime fields[] = {
      at(0, 1, 1),
      at(-1, 1, 1),
      at(10000, 1, 1),
      at(2004, 0, 1),
      at(2004, 13, 1),
      at(2004, 1, 0),
      at(2004, 1, 32),
      at(2004, 2, 30),
      at(2003, 2, 29),
      at(1900, 2, 29),
      at(2004, 4, 31),
      at(2004, 1, 1, 24),
      at(2004, 1, 1, -1),
      at(2004, 1, 1, 0, 60),
      at(2004, 1, 1, 23, 59, 60),
      at(2004, 1, 1, 0, 0, 0, 1000000000),
      at(2004, 1, 1, 0, 0, 0, -16),
      inZone(at(2004, 1, 1), 0, 1, 0),
      inZone(at(2004, 1, 1), 2, 1, 0),
      inZone(at(2004, 1, 1), 1, 24, 0),
      inZone(at(2004, 1, 1), 1, -1, 0),
      at(2004, 257, 257),  // Would be January 1st in a byte.
      at(INT32_MIN, INT32_MAX, INT32_MIN, INT32_MAX, INT32_MIN, INT32_MAX, INT32_MIN),
  };
  for (const XMPDateTime& date : fields) {
    EXPECT_THROW(formatDate(date), ToolkitError) << date.year << '-' << date.month << '-' << date.day;
  }
  for (const char* text : {"", "04", "2004-", "2004-3-15", "2004-02-30", "2004-03-15T", "2004-03-15T12",
                           "2004-03-15 12:00", "2004-03-15T12:00:", "2004-03-15T12:00:00.", "2004-03-15T12:00.5Z",
                           "2004-03-15T12:00+1:00", "2004-03-15T12:00+01", "2004-03-15T12:00Zx", "2004-03-15T24:00Z",
                           "2004:03:15 12:00:00", "2004-03-15T12:00:00z", "\262004"}) {
    EXPECT_THROW(parseDate(text), ToolkitError) << text;
  }
}

// In a process of its own, since a process reads its zone once. Prints the dates to the error stream, one in each line.
[[noreturn]] void printZoned(const char* zone, std::initializer_list<const char*> texts) {
  setenv("TZ", zone, 1);
  tzset();
  for (const char* text : texts) {
    XMPDateTime date = parseDate(text);
    setMachineZone(date);
    std::fprintf(stderr, "%s\n", formatDate(date).c_str());
  }
  std::exit(0);
}

TEST(Dates, TheMachinesZoneIsThatOfTheDate) {
  // Spelled out, so that the test needs no zone files: summer time from the last Sunday of March, 2:00, to that of
  // October, 3:00.
  const char* berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
  EXPECT_EXIT(printZoned(berlin, {"2004-01-15T12:00", "2004-07-15T12:00", "2004-03-28T01:59:59", "2004-03-28T02:30",
                                  "2004-03-28T03:00", "2004-10-31T01:59", "2004-10-31T02:59:59", "2004-10-31T03:00",
                                  "2004-07-15T12:00-09:00"}),
              testing::ExitedWithCode(0),
              "^2004-01-15T12:00:00\\+01:00\n2004-07-15T12:00:00\\+02:00\n2004-03-28T01:59:59\\+01:00\n"
              "2004-03-28T02:30:00\\+01:00\n2004-03-28T03:00:00\\+02:00\n2004-10-31T01:59:00\\+02:00\n"
              "2004-10-31T02:59:59\\+02:00\n2004-10-31T03:00:00\\+01:00\n2004-07-15T12:00:00\\+02:00\n$");
  EXPECT_EXIT(printZoned("<-0330>3:30", {"2004-01-15T12:00", "0001-01-01", "9999-12-31T23:59"}),
              testing::ExitedWithCode(0),
              "^2004-01-15T12:00:00-03:30\n0001-01-01T00:00:00-03:30\n9999-12-31T23:59:00-03:30\n$");
  EXPECT_EXIT(printZoned("UTC0", {"2004-01-15T12:00+01:00"}), testing::ExitedWithCode(0), "^2004-01-15T12:00:00Z\n$");
}

}  // namespace
}  // namespace velto::test
