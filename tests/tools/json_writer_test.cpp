// JSON texts against a parser of somebody else's: every byte comes back, and every line is valid.
#include "tools/json/json_writer.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

namespace lxbridge::json {
namespace {

using Json = nlohmann::json;

std::string Written(const std::string& text) {
  std::string out;
  JsonWriter(&out).String(text);
  return out;
}

TEST(JsonWriter, EveryTextComesBack) {
  for (int c = 0; c < 0x80; ++c) {
    const std::string text = {'a', static_cast<char>(c), 'b'};
    EXPECT_EQ(Json::parse(Written(text)).get<std::string>(), text) << "character " << c;
  }
  for (const char* text :
       {"", "Crémieux", "日本", "😀", "\xF4\x8F\xBF\xBF", "\xED\x9F\xBF", "\xEF\xBF\xBF", "a\\\"b/"}) {
    EXPECT_EQ(Json::parse(Written(text)).get<std::string>(), text);
  }
  // Characters that a terminal or an editor would obey come back too, but stand escaped in the line; those beside them
  // do not.
  for (const char* text :
       {"\n", "\x7F", "\u0080", "\u009F", "\u061C", "\u200E", "\u200F", "\u2028", "\u202E", "\u2066", "\u2069"}) {
    EXPECT_EQ(Json::parse(Written(text)).get<std::string>(), text);
    EXPECT_EQ(Written(text).find(text), std::string::npos) << Written(text);
  }
  for (const char* text : {"\u00A0", "\u061B", "\u200D", "\u2010", "\u2027", "\u202F", "\u2065", "\u206A"}) {
    EXPECT_EQ(Written(text), std::string("\"") + text + '"');
  }
}

TEST(JsonWriter, BytesThatAreNotUtf8BecomeHex) {
  const struct {
    const char* what;
    const char* text;
    const char* hex;
  } kCases[] = {
      {"a single byte", "caf\xE9", "636166e9"},
      {"a lone trailing byte", "\x80", "80"},
      {"a sequence cut short", "\xE2\x82", "e282"},
      {"a sequence broken off", "\xC3(", "c328"},
      {"overlong forms", "\xC0\xAF\xE0\x80\xAF\xF0\x80\x80\xAF", "c0afe080aff08080af"},
      {"a surrogate", "\xED\xA0\x80", "eda080"},
      {"above U+10FFFF", "\xF4\x90\x80\x80", "f4908080"},
      {"a lead byte that never was one", "\xF8\x88\x80\x80\x80", "f888808080"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Json::parse(Written(c.text)), Json({{"hex", c.hex}})) << c.what;
  }
}

TEST(JsonWriter, NamesThatAreNotUtf8AndTheLeastIntegerAreWhole) {
  std::string out;
  JsonWriter writer(&out);
  writer.BeginObject();
  writer.Key("\xFF");
  writer.BeginArray();
  writer.EndArray();
  writer.Key("a");
  writer.Integer(-9223372036854775807 - 1);
  writer.EndObject();
  EXPECT_EQ(out, R"({"hex:ff": [], "a": -9223372036854775808})");
}

}  // namespace
}  // namespace lxbridge::json
