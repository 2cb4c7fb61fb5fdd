// Elements read out of values, and values built from text.
#include "kit/model/value.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"

namespace {

using lxtest::Bytes;
using lxtest::FailingMemory;
using lxtest::Hex;

LxMetadataItem ItemOf(std::uint16_t typeCode, const Bytes& bytes, bool bigEndian) {
  LxMetadataItem item = {};
  item.typeCode = typeCode;
  item.flags = bigEndian ? kLxBigEndianValue : 0;
  item.valueLength = static_cast<std::int32_t>(bytes.size());
  item.value = bytes.data();
  return item;
}

TEST(ValueElements, AreReadInTheItemsOrderByTheirTypesSize) {
  const Bytes bytes = Hex("81 02 03 04 05 06 07 08 09");
  const struct {
    const char* type;
    std::int32_t index;
    std::uint32_t big, little;
  } kCases[] = {
      {"byte", 0, 0x81, 0x81},
      {"ascii", 9, 0, 0},
      {"sshort", 0, 0x8102, 0x0281},  // The sign is not extended.
      {"short", 3, 0x0708, 0x0807},
      {"short", 4, 0, 0},  // Half of it is there.
      {"slong", 1, 0x05060708, 0x08070605},
      {"ratl", 1, 0x05060708, 0x08070605},  // The first denominator.
      {"double", 0, 0x81020304, 0x04030281},
      {"long", -1, 0, 0},
      {"long", INT32_MAX, 0, 0},
      {"byte", INT32_MIN, 0, 0},
  };
  for (const auto& c : kCases) {
    const LxMetadataItem big = ItemOf(LxTypeCode(c.type), bytes, true);
    const LxMetadataItem little = ItemOf(LxTypeCode(c.type), bytes, false);
    EXPECT_EQ(LxGetValueAt(&big, c.index), c.big) << c.type << " " << c.index;
    EXPECT_EQ(LxGetValueAt(&little, c.index), c.little) << c.type << " " << c.index;
  }
}

TEST(ValueElements, TheFirstNeedsAWholeElement) {
  for (const char* type : {"byte", "short", "long", "ratl", "double"}) {
    const Bytes whole(LxElementSize(LxTypeCode(type)), 1);
    const Bytes cut = lxtest::Truncated(whole, whole.size() - 1);
    LxMetadataItem good = ItemOf(LxTypeCode(type), whole, true), bad = ItemOf(LxTypeCode(type), cut, true);
    EXPECT_NE(LxGetFirstValue(&good), 0u) << type;
    EXPECT_EQ(LxGetFirstValue(&bad), 0u) << type;
    good.value = nullptr;
    EXPECT_EQ(LxGetFirstValue(&good), 0u) << type;
    bad.valueLength = -1;
    EXPECT_EQ(LxGetFirstValue(&bad), 0u) << type;
  }
}

TEST(TypeNames, NameTheirCodesAndNothingElse) {
  for (std::uint16_t code = 0; code < kLxTypeCount; ++code) EXPECT_EQ(LxTypeCode(LxTypeName(code)), code);
  for (const char* name : {"Undef", "", "lon", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(LxTypeCode(name), kLxNoTypeCode);
  }
  EXPECT_EQ(LxTypeName(kLxTypeCount), nullptr);
  EXPECT_EQ(LxElementSize(kLxTypeCount), 1u);
}

class ParseValueText : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(memory_.liveBlocks(), 0); }
  LxResult Parse(const char* text, const char* type, int bigEndian, int withTerminator, Bytes* out) {
    std::int32_t length = -1;
    std::uint8_t* bytes = nullptr;
    const LxResult result = LxParseValueText(text, LxTypeCode(type), bigEndian, &length, &bytes, withTerminator);
    if (result == kLxOk) {
      EXPECT_NE(bytes, nullptr) << text;
      out->assign(bytes, bytes + length);
    } else {
      EXPECT_EQ(bytes, nullptr) << text;
    }
    LxFree(bytes);
    return result;
  }
  FailingMemory memory_;
};

TEST_F(ParseValueText, TakesTokensUntilOneDoesNotScan) {
  const struct {
    const char *text, *type;
    const char *bigEndian, *littleEndian;
  } kCases[] = {
      {"1 2 3", "short", "00 01 00 02 00 03", "01 00 02 00 03 00"},
      {"300", "byte", "2C", "2C"},
      {"-1 200", "sbyte", "FF C8", "FF C8"},
      {"65537", "short", "00 01", "01 00"},
      {"4294967295 -1 +7", "long", "FF FF FF FF FF FF FF FF 00 00 00 07", "FF FF FF FF FF FF FF FF 07 00 00 00"},
      {"7x 9", "slong", "00 00 00 07 00 00 00 09", "07 00 00 00 09 00 00 00"},
      {"1/3 5/10", "ratl", "00 00 00 01 00 00 00 03 00 00 00 05 00 00 00 0A",
       "01 00 00 00 03 00 00 00 05 00 00 00 0A 00 00 00"},
      {"-1/3 5", "sratl", "FF FF FF FF 00 00 00 03", "FF FF FF FF 03 00 00 00"},
      {"1 /3", "ratl", "", ""},
      {"1/ 3", "ratl", "00 00 00 01 00 00 00 03", "01 00 00 00 03 00 00 00"},
      // A token begins after white space, the next one after the next space; so later ones come twice.
      {"1  2", "byte", "01 02 02", "01 02 02"},
      {" \t5", "byte", "05 05", "05 05"},
      {"5 ", "byte", "05", "05"},
      {"x", "long", "", ""},
      {" ", "short", "", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.type) + " of '" + c.text + "'");
    Bytes big, little;
    ASSERT_EQ(Parse(c.text, c.type, 1, 1, &big), kLxOk);
    ASSERT_EQ(Parse(c.text, c.type, 0, 1, &little), kLxOk);
    EXPECT_EQ(big, Hex(c.bigEndian));
    EXPECT_EQ(little, Hex(c.littleEndian));
  }
}

TEST_F(ParseValueText, AnEmptyTextIsAnEmptyValueOfEveryTypeAndNoMemoryNoValue) {
  for (std::uint16_t code = 0; code <= kLxTypeCount; ++code) {
    const bool hasTextForm = code >= kLxTypeByte && code <= kLxTypeSRational;
    for (const char* text : {"", static_cast<const char*>(nullptr), "1/2"}) {
      const bool empty = text == nullptr || text[0] == 0;
      std::int32_t length = -1;
      std::uint8_t* bytes = nullptr;
      EXPECT_EQ(LxParseValueText(text, code, 1, &length, &bytes, 1), empty || hasTextForm ? kLxOk : kLxNotImplemented);
      if (empty) {
        EXPECT_EQ(length, 0) << code;
        EXPECT_EQ(Bytes(bytes, bytes + 8), lxtest::Filled(8)) << code;
      }
      LxFree(bytes);
      bytes = nullptr;
      const FailingMemory none(1);
      EXPECT_NE(LxParseValueText(text, code, 1, &length, &bytes, 1), kLxOk) << code;
      EXPECT_EQ(bytes, nullptr) << code;
    }
  }
}

TEST_F(ParseValueText, ALongRunOfSpacesBeforeALongNumberIsWalkedOnce) {
  constexpr std::size_t kCount = 1'000'000;
  const std::string text = std::string(kCount, ' ') + std::string(kCount, '1');
  Bytes bytes;
  ASSERT_EQ(Parse(text.c_str(), "byte", 1, 1, &bytes), kLxOk);
  EXPECT_EQ(bytes.size(), kCount + 1);
}

}  // namespace
