#include "xmpconv/iptc.h"

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
      {"CaptionAbstract", "caption"}, {"ByLine", "A"}, {"City", "Zürich"}, {"Category", "SPO"}, {"ByLine", "B"},
      {"DateCreated", "20040315"}};
  for (const auto& d : datasets) EXPECT_TRUE(Convert(d.dataset, d.text)) << d.dataset;
  EXPECT_EQ(Dump(),
            "picturist:Caption=caption\npicturist:Author=B\npicturist:City=Zürich\npicturist:Category=SPO\n"
            "picturist:DateCreated=2004-03-15\n");
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

TEST_F(IptcTest, KeywordsGatherInABagEachOnceAndKeepAnArrayThatIsThere) {
  const auto gather = [this] {
    LxConversion fresh(*pool.get(), xmp);
    for (const char* const keyword : {"sky", "sea", "sky", "Sky", "sea"}) {
      EXPECT_TRUE(LxConvertIptcItem(fresh, Add(Shown("iptc", "Keywords", keyword))));
    }
    return Dump();
  };
  EXPECT_EQ(gather(), "picturist:Keywords=bag[sky, sea, Sky]\n");
  xmp.DeleteProperty(kLxPicturistSchema, "Keywords");
  xmp.SetProperty(kLxPicturistSchema, "Keywords", "sky, sea");
  EXPECT_EQ(gather(), "picturist:Keywords=bag[sky, sea, Sky]\n") << "a text is replaced";
  xmp.DeleteProperty(kLxPicturistSchema, "Keywords");
  for (const char* const there : {"sea", "sand"}) {
    xmp.AppendArrayItem(kLxPicturistSchema, "Keywords", kXMPPropIsArray, there);
  }
  EXPECT_EQ(gather(), "picturist:Keywords=bag[sea, sand, sky, Sky]\n");
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
