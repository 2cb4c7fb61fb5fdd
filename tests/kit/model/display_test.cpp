// Display texts: every format in both byte orders, and numbers against printf.
#include "kit/model/display.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/memory.h"
#include "kit/model/pool.h"
#include "kit/model/tag_record.h"
#include "kit/model/value.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

using Random = std::independent_bits_engine<std::mt19937, 32, std::uint32_t>;

constexpr LxDisplayDescriptor kPhoto = {kLxFormatPhotoQuantity, nullptr};
constexpr LxDisplayDescriptor kGps = {kLxFormatGpsQuantity, nullptr};
constexpr LxDisplayDescriptor kMaker = {kLxFormatMakerSpecial, nullptr};
constexpr LxDisplayDescriptor kComment = {kLxFormatComment, nullptr};
constexpr LxDisplayDescriptor kIcc = {kLxFormatIccProfile, nullptr};
constexpr LxDisplayDescriptor kVersion = {kLxFormatVersionInfo, nullptr};
constexpr LxDisplayDescriptor kQuality = {kLxFormatJpegQuality, nullptr};
constexpr LxValueName kNameRows[] = {{0, "None", nullptr},
                                     {1, "Low", "$$$/Test/Low=Low gain"},
                                     {32803, "CFA", "$$$/Test/CFA=CFA"},
                                     {0, nullptr, nullptr}};
constexpr LxDisplayDescriptor kNames = {kLxFormatValueNames, kNameRows};

// An item of its own value, in a block of exactly its length.
class Item {
 public:
  Item(std::uint16_t typeCode, std::string_view bytes, std::uint16_t tagId = 0, std::uint32_t flags = 0) {
    value_.reserve(bytes.size());
    value_.assign(bytes.begin(), bytes.end());
    item_.typeCode = typeCode;
    item_.tagId = tagId;
    item_.flags = flags;
    item_.displayText = "";
    item_.valueLength = static_cast<std::int32_t>(bytes.size());
    item_.value = value_.data();
  }
  ~Item() { LxSetDisplayText(&item_, "", false); }
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;

  std::string Show(int order, const LxDisplayDescriptor* descriptor) {
    if (descriptor != nullptr) {
      LxFormatTaggedValue(order, &item_, descriptor);
    } else {
      LxFormatValue(order, &item_);
    }
    return item_.displayText;
  }
  [[nodiscard]] bool owns() const { return (item_.flags & kLxOwnsDisplayText) != 0; }
  // The place in the value that the display text points to, or -1.
  [[nodiscard]] std::ptrdiff_t place() const {
    const auto* text = reinterpret_cast<const std::uint8_t*>(item_.displayText);
    const bool inside = text >= value_.data() && text < value_.data() + value_.size();
    return inside ? text - value_.data() : -1;
  }
  [[nodiscard]] LxMetadataItem& record() { return item_; }

 private:
  std::vector<std::uint8_t> value_;
  LxMetadataItem item_{};
};

// Numbers in the bytes of a type, a rational as two.
std::string Encode(std::uint16_t typeCode, const std::vector<std::uint32_t>& numbers, int order) {
  const int size = static_cast<int>(std::min(LxElementSize(typeCode), 4u));
  std::string bytes;
  for (const std::uint32_t number : numbers) {
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> 8 * (order == 1 ? size - 1 - i : i) & 0xFF);
  }
  return bytes;
}

std::string Repeated(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

class Display : public testing::Test {
 protected:
  void SetUp() override { LxInstallMemProcs(LxRuntimeMemProcs()); }
};

struct BytesCase {
  const char* name;
  std::uint16_t typeCode;
  std::string bytes;
  const LxDisplayDescriptor* descriptor;
  std::string expected;
  std::uint32_t flags = 0;
};

void Check(const std::vector<BytesCase>& cases) {
  for (const BytesCase& c : cases) {
    EXPECT_EQ(Item(c.typeCode, c.bytes, 0, c.flags).Show(1, c.descriptor), c.expected) << c.name;
  }
}

TEST_F(Display, NumbersAreShownAsTheListOfCasesSays) {
  constexpr std::string_view kTypes[] = {"NONE",   "BYTE",      "ASCII",   "SHORT",   "LONG",      "RATIONAL",
                                         "SBYTE",  "UNDEFINED", "SSHORT",  "SLONG",   "SRATIONAL", "FLOAT",
                                         "DOUBLE", "OFFSET",    "UNICODE", "COMPLEX", "16"};
  const std::map<std::string, const LxDisplayDescriptor*> ways = {
      {"type", nullptr}, {"names", &kNames}, {"photo", &kPhoto}, {"gps", &kGps}, {"maker", &kMaker}};
  std::ifstream cases(LX_DISPLAY_CASES);
  int count = 0;
  for (std::string line; std::getline(cases, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream in(line);
    std::string type, tag, way, number;
    in >> type >> tag >> way;
    std::vector<std::uint32_t> numbers;
    while (in >> number && number != "=") numbers.push_back(static_cast<std::uint32_t>(std::stoll(number, nullptr, 0)));
    std::string expected;
    std::getline(in >> std::ws, expected);
    const auto code = static_cast<std::uint16_t>(std::find(std::begin(kTypes), std::end(kTypes), type) - kTypes);
    for (const int order : {0, 1}) {
      Item item(code, Encode(code, numbers, order), static_cast<std::uint16_t>(std::stoul(tag, nullptr, 0)));
      EXPECT_EQ(item.Show(order, ways.at(way)), expected) << line << ", order " << order;
      EXPECT_TRUE(expected.empty() || item.owns()) << line;
    }
    ++count;
  }
  EXPECT_GT(count, 70);
}

TEST_F(Display, LongValuesAreShortenedAndHiddenOnesSooner) {
  const std::string widest = Encode(kLxTypeSRational, {0x80000000, 0x7FFFFFFF}, 1);
  Check({
      {"300 shorts", kLxTypeShort, std::string(600, '\1'), nullptr, Repeated("257 ", 128) + "..."},
      {"256 bytes of value", kLxTypeShort, std::string(256, '\1'), nullptr, Repeated("257 ", 127) + "257"},
      {"257 bytes of value", kLxTypeShort, std::string(257, '\1'), nullptr, Repeated("257 ", 128) + "..."},
      {"hidden, 25 bytes", kLxTypeByte, std::string(25, '\1'), nullptr, Repeated("1 ", 24) + "...", kLxHidden},
      {"hidden, 24 bytes", kLxTypeByte, std::string(24, '\1'), nullptr, Repeated("1 ", 23) + "1", kLxHidden},
      {"closed", kLxTypeRational, std::string(32, '\1'), nullptr, Repeated("1 ", 3) + "...", kLxClosed},
      {"an element cut off", kLxTypeShort, std::string(5, '\1'), nullptr, "257 257"},
      {"less than an element", kLxTypeLong, std::string(3, '\1'), nullptr, ""},
      {"the most", kLxTypeSRational, Repeated(widest, 33), nullptr,
       Repeated("-2147483648/2147483647(-1.00) ", 32) + "..."},
      {"no mark in lists of names", kLxTypeByte, std::string(300, '\1'), &kNames, Repeated("Low ", 255) + "Low"},
  });
}

TEST_F(Display, OpaqueBytesMayBeVersionsOrTexts) {
  // Version 1, a flag, writer "AB", reader "Cd".
  const std::string info = "\0\0\0\1\1\0\0\0\2\0A\0B\0\0\0\2\0C\0d"s;
  Check({
      {"digits", kLxTypeUndefined, "0220", nullptr, "0.2.2.0"},
      {"digits as bytes", kLxTypeByte, "0220", nullptr, "0220"},
      {"digits and zeros", kLxTypeUndefined, "0220\0\0\0\0"s, nullptr, "0220"},
      {"three bytes", kLxTypeUndefined, "abc", nullptr, "97 98 99"},
      {"four", kLxTypeByte, "abcd", nullptr, "abcd"},
      {"a zero within", kLxTypeUndefined, "abcd\0e"s, nullptr, "97 98 99 100 0 101"},
      {"no text", kLxTypeByte, "\2\2\0\0"s, nullptr, "2 2 0 0"},
      {"zeros", kLxTypeUndefined, "\0\0\0\0"s, nullptr, ""},
      {"texts are not shortened", kLxTypeUndefined, std::string(999, 'x'), nullptr, std::string(999, 'x')},
      {"version", kLxTypeUndefined, info + "\0\0\0\1"s, &kVersion, "Cd"},
      {"version, cut", kLxTypeUndefined, info.substr(0, info.size() - 1), &kVersion, "C"},
      {"version, too long", kLxTypeUndefined, "\0\0\0\1\1\xFF\xFF\xFF\xFF\0\0\0"s, &kVersion, ""},
      {"version, nothing of it", kLxTypeUndefined, "\0\0\0\1\1\0\0\0\4\0"s, &kVersion, ""},
      {"quality", kLxTypeUndefined, "\0\x08\0\1"s, &kQuality, "12"},
      {"lowest quality", kLxTypeUndefined, "\xFF\xFC"s, &kQuality, "0"},
      {"no quality", kLxTypeUndefined, "\x08"s, &kQuality, ""},
  });
}

TEST_F(Display, TextsPointIntoTheValueOrAreConverted) {
  const struct {
    std::string bytes, expected;
    std::ptrdiff_t place;
  } cases[] = {
      {"Harbour\0"s, "Harbour", 0},          {"na\xC3\xAFve\0\0"s, "na\xC3\xAFve", 0},
      {"Harbour"s, "Harbour", -1},  // Not terminated: a copy.
      {"M\xFCller\0"s, "M\xC3\xBCller", -1}, {"\x8E\xCA\x90^"s, "\xE5\x86\x99\xE7\x9C\x9F", -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    Item item(kLxTypeAscii, c.bytes);
    EXPECT_EQ(item.Show(0, nullptr), c.expected);
    EXPECT_EQ(item.place(), c.place);
    EXPECT_EQ(item.owns(), c.place < 0);
    EXPECT_EQ(item.Show(0, nullptr), c.expected);  // Again, over the text that is there.
  }
}

TEST_F(Display, ANameOfOneElementBringsItsLabel) {
  const struct {
    std::string bytes;
    const char* label;
  } labels[] = {
      {"\1\0"s, "$$$/Test/Low=Low gain"},
      {"\1\0\1"s, "$$$/Test/Low=Low gain"},
      {"\2\0"s, nullptr},
      {"\1\0\1\0"s, "before"},
  };
  for (const auto& c : labels) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    Item item(kLxTypeShort, c.bytes);
    item.record().valueLabel = "before";
    (void)item.Show(0, &kNames);
    EXPECT_STREQ(item.record().valueLabel, c.label);
  }
}

TEST_F(Display, ACamerasRotationIsInItsLastTwoBytes) {
  std::string block(1371, '\0');
  block[1369] = '\x34';
  block[1370] = '\xF2';
  Item whole(kLxTypeUndefined, block, 0x0E01), cut(kLxTypeUndefined, block.substr(0, 1370), 0x0E01);
  EXPECT_EQ(whole.Show(1, &kMaker), "62004");
  EXPECT_EQ(cut.Show(1, &kMaker), "");
}

// The conversions of printf over many numbers: every digit, every rounding.
TEST_F(Display, DecimalsAreThoseOfPrintf) {
  Random random(std::mt19937(11));
  char expected[128];
  for (int i = 0; i < 30000; ++i) {
    // Few digits as often as many: halves and tenths are where roundings differ.
    const std::uint32_t numerator = random() >> (random() % 32);
    const std::uint32_t denominator = i % 3 == 0 ? 1u << (random() % 12) : 1 + (random() >> (random() % 32)) / 2;
    const double value = static_cast<double>(numerator) / denominator;
    SCOPED_TRACE(testing::Message() << numerator << "/" << denominator);
    const std::vector<std::uint32_t> parts = {numerator, denominator, numerator, denominator, numerator, denominator};

    Item plain(kLxTypeRational, Encode(kLxTypeRational, {numerator, denominator}, 1), 0x1234);
    std::snprintf(expected, sizeof expected, "%.2f", value);
    ASSERT_EQ(plain.Show(1, &kPhoto), expected);

    const double limited = value > 10000 ? 10000 : value;
    const int rounded = static_cast<int>(std::floor(limited + 0.5));
    Item time(kLxTypeRational, Encode(kLxTypeRational, parts, 1), 0x0007);
    std::snprintf(expected, sizeof expected, "%02d:%02d:%06.3f", rounded, rounded, limited);
    ASSERT_EQ(time.Show(1, &kGps), expected);
  }
}

TEST_F(Display, CommentsFollowTheirCharacterCode) {
  const std::string text = "Harbour at dawn";
  const struct {
    const char* name;
    std::uint16_t tagId;
    std::string bytes, expected;
    std::ptrdiff_t place;  // Of the display text in the value; -1: a text of its own.
    bool deleted;
  } cases[] = {
      {"ASCII", 0x9286, "ASCII\0\0\0"s + text + "\0junk"s, text, 8, false},
      {"ASCII up to the value's end", 0x9286, "ASCII\0\0\0"s + text, text, -1, false},
      {"junk in the code", 0x9286, "ASCII\0xy"s + text + "\0"s, text, 8, false},
      {"UNICODE little-endian", 0x9286, "UNICODE\0"s + "Z\0o\0\xEB\0\0\0"s, "Zo\xC3\xAB", -1, false},
      {"JIS stays", 0x9286, "JIS\0\0\0\0\0"s + "\x1B$B<L\x1B(B"s, "\x1B$B<L\x1B(B", -1, false},
      {"no code", 0x9286, "\0\0\0\0\0\0\0\0a"s, "0 0 0 0 0 0 0 0 97", -1, false},
      {"blank", 0x9286, "\0\0\0\0\0\0\0\0    "s, "0 0 0 0 0 0 0 0 32 32 32 32", -1, true},
      {"title", 0x9C9B, "Z\0o\0\xEB\0\0\0x\0"s, "Zo\xC3\xAB", -1, false},
      {"subject, cut", 0x9C9F, "\x3D\xD8\xF7\xDC\x3D"s, "\xF0\x9F\x93\xB7", -1, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Item item(kLxTypeUndefined, c.bytes, c.tagId);
    EXPECT_EQ(item.Show(1, &kComment), c.expected);
    EXPECT_EQ(item.place(), c.place);
    EXPECT_EQ((item.record().flags & kLxDeleted) != 0, c.deleted);
  }
}

std::string Be32(std::uint32_t number) {
  return Encode(kLxTypeLong, {number}, 1);
}

// A profile with one other tag and a description tag at offset 156.
std::string Profile(const std::string& tag) {
  std::string profile(36, '\1');
  profile += "acsp" + std::string(88, '\0') + Be32(2);
  profile += "wtpt" + Be32(128) + Be32(20) + "desc" + Be32(156) + Be32(static_cast<std::uint32_t>(tag.size()));
  return profile + tag;
}
std::string TextTag(std::uint32_t count, const std::string& text) {
  return "desc\0\0\0\0"s + Be32(count) + text;
}
std::string Localized(const std::vector<std::pair<std::string, std::string>>& texts) {
  std::string table = "mluc\0\0\0\0"s + Be32(static_cast<std::uint32_t>(texts.size())) + Be32(12);
  std::string bytes;
  for (const auto& [language, text] : texts) {
    std::string units;
    for (const char c : text) units += "\0"s + c;
    const auto offset = static_cast<std::uint32_t>(16 + 12 * texts.size() + bytes.size());
    table += language + Be32(static_cast<std::uint32_t>(units.size())) + Be32(offset);
    bytes += units;
  }
  return table + bytes;
}

TEST_F(Display, ProfilesShowTheirDescription) {
  const std::string good = Profile(TextTag(5, "sRGB\0tail"s));
  const std::string localized = Localized({{"deDE", "Deutsch"}, {"enGB", "British"}, {"enUS", "American"}});
  const auto changed = [](std::string bytes, std::size_t at, const std::string& patch) {
    return bytes.replace(at, patch.size(), patch);
  };
  const struct {
    const char* name;
    std::string bytes;
    std::string expected;  // "": no description, so the bytes are shown.
  } cases[] = {
      {"text", good, "sRGB"},
      {"text without its zero byte", Profile(TextTag(4, "sRGB")), "sRGB"},
      {"count beyond the tag", Profile(TextTag(0xFFFFFFFF, "sRGB")), "sRGB"},
      {"American English first", Profile(localized), "American"},
      {"the first language", Profile(changed(changed(localized, 40, "frFR"), 28, "itIT")), "Deutsch"},
      {"a text outside the tag is passed over", Profile(changed(localized, 48, "\x7F"s)), "British"},
      {"texts at the end of 32 bits", Profile(changed(localized, 44, "\0\0\0\2\xFF\xFF\xFF\xFF"s)), "British"},
      {"no signature", changed(good, 36, "xcsp"), ""},
      {"only the other tag counted", changed(good, 128, Be32(1)), ""},
      {"more tags than there are", changed(good, 128, Be32(0xFFFFFFFF)), "sRGB"},
      {"description beyond the end", changed(good, 148, Be32(157)), ""},
      {"size of 12", changed(good, 152, Be32(12)), ""},
      {"another type of tag", changed(good, 156, "text"), ""},
      {"no text", Profile(TextTag(0, "sRGB")), ""},
      {"a language table that stands still", Profile(changed(localized, 12, Be32(0))), ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Item item(kLxTypeUndefined, c.bytes);
    const std::string shown = item.Show(0, &kIcc);
    EXPECT_EQ(c.expected.empty() ? shown.substr(0, 4) : shown, c.expected.empty() ? "1 1 " : c.expected);
    char* text = LxIccDescription(item.record().value, item.record().valueLength);
    EXPECT_STREQ(text, c.expected.empty() ? nullptr : c.expected.c_str());
    LxFree(text);
  }
}

}  // namespace
