// IPTC datasets: which become items, where the walk ends, and the same from a TIFF tag and from a resource.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "kit/model/value.h"
#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

// Datasets in resources of each container, and in a TIFF tag of their own.
std::vector<Bytes> InEachContainer(const Bytes& datasets) {
  std::vector<Bytes> files = {TiffBuilder(kLittle).Ifd0({Undef(0x83BB, datasets)}),
                              TiffBuilder(kBig).Ifd0({Undef(0x83BB, datasets)})};
  for (const Container& container : kResourceContainers) {
    files.push_back(container.around(ResourceBuilder().Iptc(datasets)));
  }
  return files;
}

std::string Datasets(const Bytes& file) {
  const PoolPtr pool = ParsePool(file);
  EXPECT_TRUE(IsWellFormed(*pool));
  return DumpPool(*pool, "iptc");
}

TEST(Iptc, DatasetsOfTheApplicationRecordAreItemsInFileOrder) {
  const Bytes data = IptcBuilder()
                         .DataSet(1, 90, Hex("1B2547"))  // IPTC-IIM 4, 5.15: an envelope record comes first.
                         .DataSet(2, 0, Hex("0004"))
                         .Add(25, "Z\xFCrich")
                         .Add(25, "")
                         .DataSet(3, 25, Text("of another record"))
                         .Add(25, "ship")
                         .DataSet(2, 221, {1, 2, 3})
                         .Add(120, std::string(0x7FFF, 'c'));
  for (const Bytes& file : InEachContainer(data)) {
    const PoolPtr pool = ParsePool(file);
    EXPECT_TRUE(IsWellFormed(*pool));
    EXPECT_EQ(DumpPool(*pool, "iptc"),
              "iptc RecordVersion undef 0 4\n"
              "iptc Keywords ascii Z\xC3\xBCrich\n"  // Shown as UTF-8, kept as it is.
              "iptc Keywords ascii\n"
              "iptc Keywords ascii ship\n"
              "iptc  221 undef 1 2 3\n"
              "iptc CaptionAbstract ascii " +
                  std::string(0x7FFF, 'c') + "\n");
    const auto items = AllItems(*pool, "iptc");
    ASSERT_EQ(items.size(), 6u);
    EXPECT_EQ(ValueOf(*items[1]), Text("Z\xFCrich"));
    EXPECT_EQ(ValueOf(*items[4]), Bytes({1, 2, 3}));
    EXPECT_EQ(items[4]->tagId, 221);
    for (const LxMetadataItem* item : items) EXPECT_EQ(item->flags & kLxBigEndianValue, kLxBigEndianValue);
    EXPECT_EQ(items[0]->flags & kLxHidden, kLxHidden);
  }
}

TEST(Iptc, TheWalkEndsAtWhatIsNoDataset) {
  const Bytes first = IptcBuilder().Add(25, "one");
  const Bytes good = first + IptcBuilder().Add(25, "two").Add(25, "three").Build();
  const std::string one = "iptc Keywords ascii one\n";
  const std::string all = one + "iptc Keywords ascii two\niptc Keywords ascii three\n";
  const std::pair<Bytes, std::string> cases[] = {
      {good, all},
      {good + Filled(7), all},  // Padding.
      {WithByte(good, first.size(), 0x1D), one},
      // With the top bit set, the length field tells how many bytes of length follow.
      {WithBytes(good, first.size() + 3, Hex("8004 00000003")) + Filled(0x8010), one},
      {WithBytes(good, first.size() + 3, Hex("7FFF")), one},  // Beyond the file.
      // An empty dataset needs a byte after it.
      {first + IptcBuilder().Add(25, "").Build() + Filled(1), one + "iptc Keywords ascii\n"},
  };
  for (const auto& [datasets, shown] : cases) {
    for (const Bytes& file : InEachContainer(datasets)) EXPECT_EQ(Datasets(file), shown);
  }
}

TEST(Iptc, ADatasetBeyondItsRangeIsReadWhenTheFileHasIt) {
  const Bytes data = IptcBuilder().Add(25, "ones").Add(105, "head");
  const Bytes more = Text("line, and more of the file");
  const auto files = {
      std::pair("resource", PsdBuilder().Resources(ResourceBuilder().Iptc(data).Raw(more)).Build()),
      std::pair("TIFF tag", TiffBuilder(kBig).Ifd0({Undef(0x83BB, data)}).Build() + more),
  };
  for (const auto& [name, file] : files) {
    SCOPED_TRACE(name);
    const std::size_t length = OffsetOf(file, Text("head")) - 1;
    const std::size_t toEnd = file.size() - length - 1;
    EXPECT_EQ(Datasets(file), "iptc Keywords ascii ones\niptc Headline ascii head\n");
    EXPECT_EQ(Datasets(WithByte(file, length, 9)).substr(0, 53),
              "iptc Keywords ascii ones\niptc Headline ascii headline");
    const PoolPtr whole = ParsePool(WithByte(file, length, static_cast<std::uint8_t>(toEnd)));
    ASSERT_NE(Find(*whole, "iptc", "Headline"), nullptr);
    EXPECT_EQ(Find(*whole, "iptc", "Headline")->valueLength, static_cast<std::int32_t>(toEnd));
    EXPECT_EQ(Datasets(WithByte(file, length, static_cast<std::uint8_t>(toEnd + 1))), "iptc Keywords ascii ones\n");
  }
}

TEST(Iptc, ATiffTagOfLongsIsReadAsItsBytes) {
  // TIFF writers store the type LONG, padded to whole elements, with bytes that are not swapped.
  Bytes data = IptcBuilder().Add(25, "harbour").Add(90, "Bern");
  while (data.size() % 4 != 0) data.push_back(0);
  for (const Order order : {kLittle, kBig}) {
    const TiffEntry entry = {0x83BB, 4, static_cast<std::uint32_t>(data.size() / 4),
                             [data](Order, std::uint32_t) { return data; }};
    EXPECT_EQ(Datasets(TiffBuilder(order).Ifd0({entry})), "iptc Keywords ascii harbour\niptc City ascii Bern\n");
    // One that holds nothing stays: the tag points to no IFD.
    const PoolPtr empty = ParsePool(TiffBuilder(order).Ifd0({Undef(0x83BB, Filled(40))}));
    ASSERT_NE(Find(*empty, "tiff", "IptcNaa"), nullptr);
    EXPECT_EQ(Find(*empty, "tiff", "IptcNaa")->firstChild, nullptr);
  }
}

}  // namespace
