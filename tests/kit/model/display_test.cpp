// Display texts: every format in both byte orders, and numbers against printf.
#include "kit/model/display.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/byte_order.h"
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
  std::string bytes;
  for (const std::uint32_t number : numbers) {
    std::uint8_t raw[4] = {static_cast<std::uint8_t>(number)};
    const std::uint32_t size = LxElementSize(typeCode);
    if (size == 2) LxPut16(raw, static_cast<std::uint16_t>(number), order);
    if (size >= 4) LxPut32(raw, number, order);
    bytes.append(reinterpret_cast<const char*>(raw), size >= 4 ? 4 : size);
  }
  return bytes;
}

constexpr std::uint32_t Minus(std::uint32_t number) {
  return ~number + 1;
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

struct NumberCase {
  std::uint16_t typeCode, tagId;
  std::vector<std::uint32_t> numbers;
  const LxDisplayDescriptor* descriptor;
  std::string expected;
};

void CheckInBothOrders(const std::vector<NumberCase>& cases) {
  for (const NumberCase& c : cases) {
    for (const int order : {0, 1}) {
      SCOPED_TRACE(testing::Message() << "type " << c.typeCode << " tag 0x" << std::hex << c.tagId << " of "
                                      << testing::PrintToString(c.numbers) << " order " << order);
      Item item(c.typeCode, Encode(c.typeCode, c.numbers, order), c.tagId);
      EXPECT_EQ(item.Show(order, c.descriptor), c.expected);
      EXPECT_TRUE(c.expected.empty() || item.owns());
    }
  }
}

TEST_F(Display, NumbersAreShownByTheirType) {
  CheckInBothOrders({
      {kLxTypeByte, 0, {1, 2, 255}, nullptr, "1 2 255"},
      {kLxTypeSByte, 0, {1, 128, 255}, nullptr, "1 -128 -1"},
      {kLxTypeShort, 0, {0, 9, 10, 999, 1000, 1009, 65535}, nullptr, "0 9 10 999 1000 1009 65535"},
      {kLxTypeSShort, 0, {1, 65535}, nullptr, "1 -1"},
      {kLxTypeLong, 0, {7, 0x7FFFFFFF, 0x80000000}, nullptr, "7 2147483647 -2147483648"},
      {kLxTypeRational, 0, {10, 2500}, nullptr, "1/250(0.00)"},
      {kLxTypeRational, 0, {5, 0, 8, 1}, nullptr, "5/0  8"},
      {kLxTypeRational, 0, {0xFFFFFFFF, 2}, nullptr, "-1/2(2147483647.50)"},
      {kLxTypeRational, 0, {3, 0xFFFFFFFE}, nullptr, "3/-2(0.00)"},
      {kLxTypeSRational, 0, {Minus(10), 4}, nullptr, "-10/4(-2.50)"},  // Reduced only where both are positive.
      {kLxTypeSRational, 0, {10, 4, 10, Minus(4)}, nullptr, "5/2(2.50) 10/-4(-2.50)"},
      {kLxTypeSRational, 0, {0x80000000, 0xFFFFFFFF}, nullptr, "-2147483648/-1(2147483648.00)"},
      {kLxTypeNone, 0, {65, 66}, nullptr, ""},
      {kLxTypeFloat, 0, {1}, nullptr, ""},
      {kLxTypeOffset, 0, {1}, nullptr, ""},
      {kLxTypeComplex, 0, {65, 66, 67, 68}, nullptr, ""},
      {16, 0, {65, 66, 67, 68}, nullptr, ""},
  });
}

TEST_F(Display, LongValuesAreShortenedAndHiddenOnesSooner) {
  const struct {
    const char* name;
    std::uint16_t typeCode;
    std::size_t length;
    std::uint32_t flags;
    std::string expected;
  } cases[] = {
      {"300 shorts", kLxTypeShort, 600, 0, Repeated("257 ", 128) + "..."},
      {"256 bytes of value", kLxTypeShort, 256, 0, Repeated("257 ", 127) + "257"},
      {"257 bytes of value", kLxTypeShort, 257, 0, Repeated("257 ", 128) + "..."},
      {"hidden, 25 bytes", kLxTypeByte, 25, kLxHidden, Repeated("1 ", 24) + "..."},
      {"hidden, 24 bytes", kLxTypeByte, 24, kLxHidden, Repeated("1 ", 23) + "1"},
      {"closed", kLxTypeRational, 32, kLxClosed, Repeated("1 ", 3) + "..."},
      {"an element cut off", kLxTypeShort, 5, 0, "257 257"},
      {"less than an element", kLxTypeLong, 3, 0, ""},
      {"the longest", kLxTypeSRational, 1000, 0, Repeated("1 ", 32) + "..."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Item item(c.typeCode, std::string(c.length, '\1'), 0, c.flags);
    EXPECT_EQ(item.Show(0, nullptr), c.expected);
  }
  // The widest texts there are, whole.
  Item wide(kLxTypeSRational, Repeated(Encode(kLxTypeSRational, {0x80000000, 0x7FFFFFFF}, 1), 33));
  EXPECT_EQ(wide.Show(1, nullptr), Repeated("-2147483648/2147483647(-1.00) ", 32) + "...");
  Item named(kLxTypeByte, std::string(300, '\1'));
  EXPECT_EQ(named.Show(0, &kNames), Repeated("Low ", 255) + "Low");  // No mark in lists of names.
}

TEST_F(Display, OpaqueBytesMayBeVersionsOrTexts) {
  const struct {
    std::uint16_t typeCode;
    std::string bytes, expected;
  } cases[] = {
      {kLxTypeUndefined, "0220", "0.2.2.0"},
      {kLxTypeByte, "0220", "0220"},
      {kLxTypeUndefined, "0220\0\0\0\0"s, "0220"},
      {kLxTypeUndefined, "abc", "97 98 99"},
      {kLxTypeByte, "abcd", "abcd"},
      {kLxTypeUndefined, "abcd\0e"s, "97 98 99 100 0 101"},
      {kLxTypeByte, "\2\2\0\0"s, "2 2 0 0"},
      {kLxTypeUndefined, "\0\0\0\0"s, ""},
      {kLxTypeUndefined, std::string(999, 'x'), std::string(999, 'x')},  // Texts are not shortened.
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    Item item(c.typeCode, c.bytes);
    EXPECT_EQ(item.Show(1, nullptr), c.expected);
  }
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

TEST_F(Display, NamesComeByTheLowSixteenBitsAndOneElementGetsALabel) {
  CheckInBothOrders({
      {kLxTypeShort, 0, {1}, &kNames, "Low"},
      {kLxTypeShort, 0, {32803, 2, 0}, &kNames, "CFA 2 None"},
      {kLxTypeLong, 0, {0x10001, 0xABCD0002}, &kNames, "Low 2"},
      {kLxTypeUndefined, 0, {1, 0, 1, 200}, &kNames, "Low None Low 200"},
      {kLxTypeRational, 0, {1, 1}, &kNames, "1"},
      {kLxTypeDouble, 0, {1, 1}, &kNames, ""},
  });
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

TEST_F(Display, PhotographicQuantities) {
  const std::uint16_t ratl = kLxTypeRational, sratl = kLxTypeSRational;
  CheckInBothOrders({
      {ratl, 0x829A, {10, 2500}, &kPhoto, "1/250s"},
      {ratl, 0x829A, {1, 4}, &kPhoto, "1/4s"},
      {ratl, 0x829A, {3, 10}, &kPhoto, "0.3s"},
      {ratl, 0x829A, {1000, 1}, &kPhoto, "1000.0s"},
      {ratl, 0x829A, {1001, 1}, &kPhoto, "> 1000s"},
      {ratl, 0x829A, {0, 5}, &kPhoto, "0s"},
      {ratl, 0x829A, {1, 0xFFFFFFFF}, &kPhoto, "1/2147483647s"},  // More than an int holds.
      {sratl, 0x829A, {Minus(1), 5}, &kPhoto, "0s"},
      {kLxTypeShort, 0x829A, {2}, &kPhoto, "2.0s"},
      {ratl, 0x829D, {56, 10}, &kPhoto, "f5.6"},
      {ratl, 0x829D, {11, 0}, &kPhoto, "f11"},
      {ratl, 0x829D, {8, 1}, &kPhoto, "f8"},
      {ratl, 0x829D, {79999, 10000}, &kPhoto, "f8.0"},
      {ratl, 0x829D, {2000, 1}, &kPhoto, "> f1000"},
      {sratl, 0x9201, {8, 1}, &kPhoto, "1/250s"},
      {sratl, 0x9201, {13, 2}, &kPhoto, "1/88s"},
      {sratl, 0x9201, {6, 1}, &kPhoto, "1/60s"},
      {sratl, 0x9201, {5, 1}, &kPhoto, "1/30s"},
      {sratl, 0x9201, {4, 1}, &kPhoto, "1/15s"},
      {sratl, 0x9201, {17, 5}, &kPhoto, "1/11s"},
      {sratl, 0x9201, {3, 1}, &kPhoto, "1/8s"},
      {sratl, 0x9201, {2, 1}, &kPhoto, "1/4s"},
      {sratl, 0x9201, {1, 1}, &kPhoto, "0.5s"},
      {sratl, 0x9201, {Minus(10), 1}, &kPhoto, "1024.0s"},
      {sratl, 0x9201, {Minus(11), 1}, &kPhoto, "> 1024s"},
      {sratl, 0x9201, {15, 1}, &kPhoto, "< 1/16384s"},
      {ratl, 0x9202, {5, 1}, &kPhoto, "f5.7"},
      {ratl, 0x9202, {6, 1}, &kPhoto, "f8"},
      {ratl, 0x9205, {21, 1}, &kPhoto, "> f1024"},
      {sratl, 0x9202, {Minus(9), 1}, &kPhoto, "f0"},
      {sratl, 0x9204, {Minus(1), 3}, &kPhoto, "-0.33ev"},
      {sratl, 0x9204, {Minus(1), 300}, &kPhoto, "-0.00ev"},
      {sratl, 0x9203, {101, 1}, &kPhoto, "> 100ev"},
      {sratl, 0x9203, {100, 1}, &kPhoto, "100.00ev"},
      {sratl, 0x9203, {Minus(101), 1}, &kPhoto, "< -100ev"},
      {ratl, 0x9206, {25, 10}, &kPhoto, "2.50m"},
      {ratl, 0x9206, {10, 1}, &kPhoto, "10.0m"},
      {ratl, 0x9206, {0xFFFFFFFF, 1}, &kPhoto, "> 1000m"},
      {sratl, 0x9206, {Minus(1), 1}, &kPhoto, "0m"},
      {ratl, 0x920A, {505, 10}, &kPhoto, "51mm"},
      {ratl, 0x920A, {10001, 1}, &kPhoto, "> 10000mm"},
      {kLxTypeShort, 0xA405, {28}, &kPhoto, "28mm"},
      {ratl, 0x1234, {1, 3}, &kPhoto, "0.33"},
      {kLxTypeLong, 0x829A, {1}, &kPhoto, ""},
  });
}

TEST_F(Display, GpsQuantitiesAndMakerSpecials) {
  const std::uint16_t ratl = kLxTypeRational;
  CheckInBothOrders({
      {ratl, 0x0002, {35, 1, 30, 1, 1234, 100}, &kGps, "35.00 30.00' 12.34\""},
      {ratl, 0x0004, {1, 1, 2, 1, 3, 1, 4, 1}, &kGps, "1.00 2.00' 3.00\""},
      {ratl, 0x0004, {1, 1, 2, 1, 3, 1, 4, 1, 5, 1}, &kGps, ""},
      {ratl, 0x0006, {8848, 10}, &kGps, "884.8m"},
      {ratl, 0x0006, {0xFFFFFFFF, 0}, &kGps, "10000.0m"},
      {ratl, 0x0007, {9, 1, 5, 1, 75, 10}, &kGps, "09:05:07.500"},
      {ratl, 0x0007, {23, 2, 0, 1, 99996, 10000}, &kGps, "12:00:10.000"},
      {ratl, 0x0007, {20000, 1, 100, 1, 100, 1}, &kGps, "10000:100:100.000"},
      {kLxTypeSRational, 0x0002, {1, 1}, &kGps, ""},
      {kLxTypeShort, 0x0002, {0, 400}, &kMaker, "400"},
      {kLxTypeShort, 0x0002, {400}, &kMaker, ""},
      {ratl, 0x0084, {18, 1, 70, 1, 35, 10, 45, 10}, &kMaker, "18-70mm f3.5-4.5"},
      {ratl, 0x0084, {20000, 1, 0xFFFFFFFF, 0, 0, 0, 20000, 1}, &kMaker, "10000-10000mm f0.0-10000.0"},
  });
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

TEST_F(Display, ImageResources) {
  // Version 1, flag, writer "AB", reader "Cd".
  const std::string names = "\0\0\0\2\0A\0B"s + "\0\0\0\2\0C\0d"s;
  const std::string info = "\0\0\0\1\1"s + names + "\0\0\0\1"s;
  const struct {
    std::string bytes;
    const LxDisplayDescriptor* descriptor;
    std::string expected;
  } cases[] = {
      {info, &kVersion, "Cd"},
      {"\0\0\0\1\1"s + names.substr(0, names.size() - 1), &kVersion, "C"},
      {"\0\0\0\1\1\xFF\xFF\xFF\xFF\0\0\0"s, &kVersion, ""},
      {"\0\0\0\1\1\0\0\0\4\0"s, &kVersion, ""},
      {"\0\x08\0\1"s, &kQuality, "12"},
      {"\xFF\xFC"s, &kQuality, "0"},
      {"\x08"s, &kQuality, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    Item item(kLxTypeUndefined, c.bytes);
    EXPECT_EQ(item.Show(0, c.descriptor), c.expected);
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
