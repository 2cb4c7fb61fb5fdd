#include "xmpconv/iptc.h"

#include <vector>

#include "tests/xmpconv/conversion_fixture.h"
#include "xmpconv/schemas.h"

namespace lxtest {
namespace {

class IptcTest : public ConversionTest {
 protected:
  bool Convert(const char* name, const char* text) {
    return LxConvertIptcItem(conversion, Add(Shown("iptc", name, text)));
  }
};

TEST_F(IptcTest, DatasetsGoToTheirPropertiesAndTheLastOfOneWins) {
  const struct {
    const char* dataset;
    const char* text;
  } datasets[] = {
      {"CaptionAbstract", "caption"},
      {"CopyrightNotice", "(c)"},
      {"ByLine", "A"},
      {"Headline", "head"},
      {"Credit", "credit"},
      {"Source", "source"},
      {"City", "Zürich"},
      {"Category", "SPO"},
      {"Urgency", "1"},
      {"ByLine", "B"},
      {"DateCreated", "20040315"},
  };
  for (const auto& d : datasets) EXPECT_TRUE(Convert(d.dataset, d.text)) << d.dataset;
  EXPECT_EQ(Dump(),
            "picturist:Caption=caption\npicturist:Copyright=(c)\npicturist:Author=B\npicturist:Headline=head\n"
            "picturist:Credit=credit\npicturist:Source=source\npicturist:City=Zürich\npicturist:Category=SPO\n"
            "picturist:Urgency=1\npicturist:DateCreated=2004-03-15\n");
}

TEST_F(IptcTest, OtherDatasetsAndEmptyTextsGiveNothing) {
  for (const char* const name :
       {"ObjectName", "SupplementalCategory", "SpecialInstructions", "TimeCreated", "ByLineTitle", "ProvinceState",
        "CountryPrimaryLocationName", "OriginalTransmissionReference", "WriterEditor", " 201"}) {
    EXPECT_FALSE(Convert(name, "text")) << name;
  }
  EXPECT_FALSE(Convert("ByLine", ""));
  EXPECT_FALSE(Convert("Keywords", ""));
  EXPECT_EQ(Dump(), "");
}

TEST_F(IptcTest, KeywordsGatherInABagEachOnce) {
  for (const char* const keyword : {"sky", "sea", "sky", "Sky", "sea"}) EXPECT_TRUE(Convert("Keywords", keyword));
  EXPECT_EQ(Dump(), "picturist:Keywords=bag[sky, sea, Sky]\n");
}

TEST_F(IptcTest, KeywordsThatAreThereAreKeptWhenTheyAreAnArray) {
  xmp.AppendArrayItem(kLxPicturistSchema, "Keywords", kXMPPropIsArray, "sea");
  xmp.AppendArrayItem(kLxPicturistSchema, "Keywords", kXMPPropIsArray, "sand");
  for (const char* const keyword : {"sky", "sand", "sea"}) EXPECT_TRUE(Convert("Keywords", keyword));
  EXPECT_EQ(Dump(), "picturist:Keywords=bag[sea, sand, sky]\n");
}

TEST_F(IptcTest, AKeywordReplacesWhatIsNoArray) {
  xmp.SetProperty(kLxPicturistSchema, "Keywords", "sky, sea");
  EXPECT_TRUE(Convert("Keywords", "sky"));
  EXPECT_TRUE(Convert("Keywords", "sea"));
  EXPECT_EQ(Dump(), "picturist:Keywords=bag[sky, sea]\n");
}

// Compared one with all before it, these would take hours.
TEST_F(IptcTest, ManyDistinctKeywordsTakeTimeInProportion) {
  constexpr int kCount = 200'000;
  std::vector<std::string> texts(kCount);
  for (int i = 0; i < kCount; ++i) {
    texts[static_cast<std::size_t>(i)] = "keyword " + std::to_string(i);
    EXPECT_TRUE(Convert("Keywords", texts[static_cast<std::size_t>(i)].c_str()));
  }
  for (int i = 0; i < kCount; i += 1000) EXPECT_TRUE(Convert("Keywords", texts[static_cast<std::size_t>(i)].c_str()));
  EXPECT_EQ(xmp.CountArrayItems(kLxPicturistSchema, "Keywords"), static_cast<std::uint32_t>(kCount));
}

TEST_F(IptcTest, RightsOfImageResourcesAreSaidWhereThereIsSomethingToSay) {
  const auto convert = [this](const char* name, const char* text) {
    return LxConvertIrItem(conversion, Add(Shown("ir", name, text)));
  };
  EXPECT_FALSE(convert("URL", "http://example.com"));
  EXPECT_FALSE(convert("CopyrightFlag", "1"));
  EXPECT_FALSE(convert("WebStatement", ""));
  EXPECT_FALSE(convert("Marked", "0"));
  EXPECT_EQ(Dump(), "");
  EXPECT_TRUE(convert("WebStatement", "http://example.com"));
  EXPECT_TRUE(convert("Marked", "1"));
  EXPECT_EQ(Dump(), "picturist:WebStatement=http://example.com\npicturist:Marked=True\n");
  EXPECT_TRUE(convert("Marked", "0"));
  EXPECT_EQ(Dump("picturist:Marked"), "picturist:Marked=False\n");
}

}  // namespace
}  // namespace lxtest
