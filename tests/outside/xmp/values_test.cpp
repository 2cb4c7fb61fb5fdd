// Value types to and from texts.
#include "outside/xmp/values.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "outside/xmp/errors.h"

namespace velto::test {
namespace {

TEST(Values, RealNumbersHaveNoExponentAndReadBackTheSame) {
  EXPECT_EQ(formatFloat(0.1), "0.1");
  EXPECT_EQ(formatFloat(-2.5e6), "-2500000");
  EXPECT_EQ(formatFloat(1e-7), "0.0000001");
  for (const double value : {0.0, -0.0, 1.0 / 3, 1e300, 5e-324, std::numeric_limits<double>::max(),
                             -std::numeric_limits<double>::min(), 123456789.123456789}) {
    const std::string text = formatFloat(value);
    EXPECT_EQ(text.find_first_not_of("-.0123456789"), std::string::npos) << text;
    EXPECT_EQ(parseFloat(text), value) << text;
  }
  EXPECT_THROW(formatFloat(std::nan("")), ToolkitError);
  EXPECT_THROW(formatFloat(HUGE_VAL), ToolkitError);
}

TEST(Values, TextsOfAnotherTypeAreRefused) {
  EXPECT_EQ(parseInt64(" +2147483647 "), INT32_MAX);
  EXPECT_EQ(parseInt64("-9223372036854775808"), INT64_MIN);
  for (const char* text : {"", " ", "9223372036854775808", "1.5", "1x", "0x10", "+-1", "--1", "+", "1 2", "10/1"}) {
    EXPECT_THROW(parseInt64(text), ToolkitError) << text;
  }
  EXPECT_EQ(parseFloat("+1.5e3\n"), 1500);
  for (const char* text : {"", "nan", "inf", "-infinity", "1e999", "1,5", "1.5.", "0x1p3"}) {
    EXPECT_THROW(parseFloat(text), ToolkitError) << text;
  }
  for (const char* text : {"True", "TRUE", "true", " t ", "1"}) EXPECT_TRUE(parseBool(text)) << text;
  for (const char* text : {"False", "f", "0"}) EXPECT_FALSE(parseBool(text)) << text;
  for (const char* text : {"", "yes", "2", "Truee", "tr ue"}) EXPECT_THROW(parseBool(text), ToolkitError) << text;
}

}  // namespace
}  // namespace velto::test
