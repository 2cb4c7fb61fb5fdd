// The editing operations: values from text, places for new items, containers, deletion, and the tree that is left when
// memory fails.
#include "kit/model/pool_edit.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"
#include "tests/support/item_tree.h"

namespace {

using lxtest::Bytes;
using lxtest::FailingMemory;
using lxtest::Hex;
using lxtest::Item;
using lxtest::List;
using lxtest::Shown;
using lxtest::TreePool;

Bytes ValueOf(const LxMetadataItem* item) {
  return Bytes(item->value, item->value + item->valueLength);
}

TEST(SetFromText, GivesTheItemIdentityValueAndDisplayText) {
  FailingMemory memory;
  {
    TreePool pool(Item("tiff", "Old", {}, kLxBigEndianValue | kLxHidden));
    LxMetadataItem* item = pool->root;
    item->valueLabel = "$$$/Some/Value=Old";
    ASSERT_EQ(LxSetMetadataFromText(item, "tiff", "Orientation", "short", "6"), kLxOk);
    EXPECT_STREQ(item->name, "Orientation");
    EXPECT_EQ(item->tagId, 0x0112);
    EXPECT_STREQ(item->label, LxFindTagById(0x0112, kLxTiffTags)->label);
    EXPECT_STREQ(item->typeName, "short");
    EXPECT_EQ(item->typeCode, kLxTypeShort);
    EXPECT_EQ(ValueOf(item), Hex("00 06"));  // In the item's own order.
    EXPECT_STREQ(item->displayText, "6");
    EXPECT_EQ(item->valueLabel, nullptr);
    EXPECT_EQ(item->flags, kLxBigEndianValue | kLxHidden | kLxOwnsDisplayText | kLxOwnsValue | kLxChanged);

    // Its own texts may be given again; the texts that it owned go.
    ASSERT_EQ(LxSetMetadataFromText(item, "iptc", "City", "ascii", item->displayText), kLxOk);
    EXPECT_EQ(ValueOf(item), lxtest::Text("6"));  // Datasets have no terminator.
    ASSERT_EQ(LxSetMetadataFromText(item, "tiff", "Artist", "ascii", "Ann"), kLxOk);
    EXPECT_EQ(ValueOf(item), lxtest::Text("Ann") + Bytes{0});
    ASSERT_EQ(LxSetMetadataFromText(item, "exif", "MakerNote", "undef", nullptr), kLxOk);
    EXPECT_EQ(item->valueLength, 0);
    EXPECT_STREQ(item->displayText, "");
  }
  EXPECT_EQ(memory.liveBlocks(), 0);
}

TEST(SetFromText, WhatTheTablesDoNotHoldLeavesTheItemAlone) {
  FailingMemory memory;
  TreePool pool(Item("tiff", "Old"));
  const auto bytes = [&pool] { return std::string(reinterpret_cast<const char*>(pool->root), sizeof(LxMetadataItem)); };
  const std::string before = bytes();
  const struct {
    const char *nameSpace, *name, *typeName, *text;
  } kCases[] = {
      {"nikon", "ISO", "short", "1"},         {nullptr, "Make", "ascii", "x"}, {"tiff", "NoSuchTag", "short", "1"},
      {"tiff", nullptr, "short", "1"},        {"tiff", "Make", "text", "x"},   {"tiff", "Make", nullptr, "x"},
      {"tiff", "Orientation", "double", "1"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(LxSetMetadataFromText(pool->root, c.nameSpace, c.name, c.typeName, c.text), kLxBadParameter)
        << (c.name != nullptr ? c.name : "(null)");
    EXPECT_EQ(bytes(), before);
  }
  EXPECT_EQ(LxSetMetadataFromText(nullptr, "tiff", "Make", "ascii", "x"), kLxBadParameter);
}

TEST(NewItem, StandsWhereTheNamespacesFirstItemStood) {
  FailingMemory memory;
  TreePool pool(Item("tiffh", "IFDHeader",
                     {Item("tiffh", "IFD",
                           {Item("tiff", "Make", {}, kLxDeleted),
                            Item("tiff", "ExifOffset", {Item("exif", "Flash")}, kLxBigEndianValue | kLxHidden),
                            Item("tiff", "Model")})}));
  LxMetadataItem* item = nullptr;
  ASSERT_EQ(LxNewItemInNamespace(pool.get(), "tiff", &item), kLxOk);
  EXPECT_EQ(pool.shape(), "tiffh.IFDHeader{tiffh.IFD{-tiff.Make . tiff.ExifOffset{exif.Flash} tiff.Model}}");
  EXPECT_EQ(item->flags, kLxBigEndianValue);
  EXPECT_EQ(item->firstChild, nullptr);
  EXPECT_EQ(item->valueLength, 0);
  EXPECT_EQ(item->next->flags, kLxBigEndianValue | kLxHidden);

  ASSERT_EQ(LxPutMetadata(pool.get(), "tiffh", nullptr, nullptr, nullptr, kLxPutAlways), kLxOk);
  EXPECT_EQ(pool.shape(), ". tiffh.IFDHeader{tiffh.IFD{-tiff.Make . tiff.ExifOffset{exif.Flash} tiff.Model}}");
  EXPECT_EQ(LxNewItemInNamespace(pool.get(), "", &item), kLxBadParameter);
  EXPECT_EQ(LxNewItemInNamespace(pool.get(), nullptr, &item), kLxBadParameter);
  EXPECT_EQ(item, nullptr);
}

// A root of each layout, as the readers make them.
LxMetadataItem* RootOf(const std::string& layout) {
  if (layout == "jpegh") return Item("jpegh", "SOI", {}, kLxBigEndianValue);
  if (layout == "psdh") return Item("psdh", "PSDHeader", {}, kLxBigEndianValue);
  return layout == "tiffh" ? Item("tiffh", "IFDHeader", {Item("tiffh", "IFD")}) : nullptr;
}

struct Put {
  const char *layout, *nameSpace, *name;
  const char* shape;
};
const Put kPuts[] = {
    {"", "tiff", "Make", "tiffh.IFDHeader{tiffh.IFD{tiff.Make}}"},
    {"", "interop", "Version",
     "tiffh.IFDHeader{tiffh.IFD{tiff.ExifOffset{exif.InteroperabilityIFDPointer{interop.Version}}}}"},
    {"", "iptc", "City", "tiffh.IFDHeader{tiffh.IFD{tiff.PicturistMetadata{ir.IptcNaa{iptc.City}}}}"},
    {"tiffh", "gps", "GPSStatus",
     "tiffh.IFDHeader{tiffh.IFD{tiff.GPSInfoIFD{gps.GPSStatus}}} tiffh.IFDHeader{tiffh.IFD}"},
    {"jpegh", "jpeg", "COM", "jpegh.SOI{jpeg.COM}"},
    {"jpegh", "gps", "GPSStatus", "jpegh.SOI{jpeg.APP1{tiffh.IFDHeader{tiffh.IFD{tiff.GPSInfoIFD{gps.GPSStatus}}}}}"},
    {"jpegh", "iptc", "City", "jpegh.SOI{jpeg.APP13{ir.IptcNaa{iptc.City}}}"},
    {"jpegh", "xmp", "XmpData", "jpegh.SOI{jpeg.APP1{xmp.XmpData}}"},
    {"psdh", "ir", "URL", "psdh.PSDHeader{ir.URL}"},
    {"psdh", "exif", "Flash", "psdh.PSDHeader{ir.ExifData1{tiffh.IFDHeader{tiffh.IFD{tiff.ExifOffset{exif.Flash}}}}}"},
};

TEST(Containers, AreMadeAsEachLayoutWantsThem) {
  for (const Put& put : kPuts) {
    SCOPED_TRACE(std::string(put.layout) + " " + put.nameSpace);
    FailingMemory memory;
    {
      TreePool pool(RootOf(put.layout));
      EXPECT_EQ(LxPutMetadata(pool.get(), put.nameSpace, put.name, "undef", "1", kLxPutReplaceOrAdd), kLxOk);
      EXPECT_EQ(pool.shape(), put.shape);
      EXPECT_EQ(LxPutMetadata(pool.get(), put.nameSpace, put.name, "undef", "2", kLxPutReplaceOrAdd), kLxOk);
      EXPECT_EQ(pool.shape(), put.shape);
      EXPECT_STREQ(pool.find(put.nameSpace, put.name)->displayText, "2");
    }
    EXPECT_EQ(memory.liveBlocks(), 0);
  }
}

TEST(Containers, HoldTheBytesThatAFileWouldHave) {
  FailingMemory memory;
  TreePool jpeg(RootOf("jpegh"));
  LxMetadataItem* container = nullptr;
  const struct {
    const char *nameSpace, *segment;
    Bytes value;
  } kSegments[] = {
      {"tiff", "APP1", lxtest::Filled(2) + lxtest::Text("Exif") + Hex("00 00")},
      {"icc", "APP2", lxtest::Filled(2) + lxtest::Text("ICC_PROFILE") + Hex("00 00 00")},
      {"ir", "APP13", lxtest::Filled(2) + lxtest::Text("Picturist 3.0") + Hex("00")},
  };
  for (const auto& c : kSegments) {
    ASSERT_EQ(LxMakeNamespaceContainer(jpeg.get(), c.nameSpace, &container), kLxOk) << c.nameSpace;
    const LxMetadataItem* segment = jpeg.find("jpeg", c.segment);
    ASSERT_NE(segment, nullptr) << c.nameSpace;
    EXPECT_EQ(ValueOf(segment), c.value) << c.nameSpace;
    EXPECT_STREQ(segment->displayText, "") << c.nameSpace;
  }
  TreePool tiff;
  ASSERT_EQ(LxPutMetadata(tiff.get(), "exif", "Flash", "short", "9", kLxPutAlways), kLxOk);
  EXPECT_EQ(ValueOf(tiff->root), Hex("49 49 2A 00 08 00 00 00"));
  const LxMetadataItem* pointer = tiff.find("tiff", "ExifOffset");
  EXPECT_STREQ(pointer->typeName, "long");
  EXPECT_EQ(ValueOf(pointer), Hex("00 00 00 00"));
  EXPECT_NE(pointer->flags & kLxChanged, 0u);
}

TEST(Containers, WhatHasNoRuleIsRefused) {
  FailingMemory memory;
  LxMetadataItem* container = nullptr;
  for (const char* layout : {"", "tiffh", "jpegh", "psdh"}) {
    TreePool pool(RootOf(layout));
    const std::string before = pool.shape();
    EXPECT_EQ(LxMakeNamespaceContainer(pool.get(), "jpegt", &container), kLxNotImplemented) << layout;
    EXPECT_EQ(LxMakeNamespaceContainer(pool.get(), "nikon", &container), kLxBadParameter) << layout;
    EXPECT_EQ(LxPutMetadata(pool.get(), "nikon", "ISO", "short", "1", kLxPutAlways), kLxBadParameter) << layout;
    EXPECT_EQ(pool.shape(), before) << layout;
  }
  TreePool other(Item("pngh", "IHDR"));
  EXPECT_EQ(LxMakeNamespaceContainer(other.get(), "tiff", &container), kLxNotImplemented);
  EXPECT_EQ(container, nullptr);
}

TEST(Containers, KeepWhatTheyHeldBefore) {
  FailingMemory memory;
  TreePool jpeg(Item("jpegh", "SOI", {Item("jpeg", "COM", {}, kLxDeleted), Item("other", "Thing")}));
  EXPECT_EQ(LxPutMetadata(jpeg.get(), "jpeg", "APP1", "undef", "", kLxPutAlways), kLxOk);
  EXPECT_EQ(jpeg.shape(), "jpegh.SOI{jpeg.APP1 -jpeg.COM other.Thing}");

  TreePool psd(
      Item("psdh", "PSDHeader",
           {Item("ir", "ExifData1",
                 {Item("tiffh", "IFDHeader", {Item("tiffh", "IFD", {Item("tiff", "Make", {}, kLxDeleted)})})})}));
  EXPECT_EQ(LxPutMetadata(psd.get(), "tiff", "Model", "ascii", "x", kLxPutAlways), kLxOk);
  EXPECT_EQ(psd.shape(), "psdh.PSDHeader{ir.ExifData1{tiffh.IFDHeader{tiffh.IFD{tiff.Model -tiff.Make}}}}");
}

TEST(PutMetadata, FollowsItsMode) {
  FailingMemory memory;
  const struct {
    std::int32_t mode;
    const char* name;
    LxResult result;
    const char* artists;  // The display texts of the items "Artist", in order.
  } kCases[] = {
      {kLxPutAlways, "Artist", kLxOk, "new old "},      {kLxPutReplaceOnly, "Artist", kLxOk, "new "},
      {kLxPutReplaceOnly, "Make", kLxNotFound, "old "}, {kLxPutReplaceOrAdd, "Artist", kLxOk, "new "},
      {kLxPutReplaceOrAdd, "Make", kLxOk, "old "},      {kLxPutIfMissing, "Artist", kLxOk, "old "},
      {kLxPutIfMissing, "Make", kLxOk, "old "},         {0, "Artist", kLxNotImplemented, "old "},
      {5, "Artist", kLxNotImplemented, "old "},         {kLxPutReplaceOnly, nullptr, kLxOk, "old "},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::to_string(c.mode) + " " + (c.name != nullptr ? c.name : "(null)"));
    TreePool pool;
    ASSERT_EQ(LxPutMetadata(pool.get(), "tiff", "Artist", "ascii", "old", kLxPutAlways), kLxOk);
    EXPECT_EQ(LxPutMetadata(pool.get(), "tiff", c.name, "ascii", "new", c.mode), c.result);
    std::string artists;
    for (LxMetadataItem* item = pool.find("tiff", "Artist"); item != nullptr;
         item = LxFindItemInTree(item->next, "tiff", "Artist", nullptr)) {
      artists += std::string(item->displayText) + " ";
    }
    EXPECT_EQ(artists, c.artists);
    const bool adds = c.result == kLxOk && c.name != nullptr && c.mode != kLxPutReplaceOnly;
    if (adds) {
      EXPECT_NE(pool.find("tiff", c.name), nullptr);
    }
  }
}

TEST(PutMetadata, AnItemThatCannotBeFilledIsNotSeen) {
  FailingMemory memory;
  TreePool pool;
  ASSERT_EQ(LxPutMetadata(pool.get(), "tiff", "Artist", "ascii", "Ann", kLxPutAlways), kLxOk);
  EXPECT_EQ(LxPutMetadata(pool.get(), "tiff", "Nothing", "ascii", "x", kLxPutAlways), kLxBadParameter);
  EXPECT_EQ(pool.shape(), "tiffh.IFDHeader{tiffh.IFD{-. tiff.Artist}}");
  EXPECT_EQ(LxPutMetadata(pool.get(), "tiff", "Artist", "no type", "x", kLxPutReplaceOrAdd), kLxBadParameter);
  EXPECT_STREQ(pool.find("tiff", "Artist")->displayText, "Ann");
}

// Whether the item, a sibling after it or something below them is live and has no name.
bool HasBlankItem(const LxMetadataItem* first) {
  for (const LxMetadataItem* item = first; item != nullptr; item = item->next) {
    if (((item->flags & kLxDeleted) == 0 && item->name[0] == 0) || HasBlankItem(item->firstChild)) return true;
  }
  return false;
}

TEST(PutMetadata, WhereverMemoryFailsTheTreeStaysWholeAndThePutCanBeRepeated) {
  for (const Put& put : kPuts) {
    SCOPED_TRACE(std::string(put.layout) + " " + put.nameSpace);
    // The first allocations are the root's.
    const int own = put.layout[0] == 0 ? 0 : std::string(put.layout) == "tiffh" ? 2 : 1;
    lxtest::FailEveryAllocation<FailingMemory>(
        [&](FailingMemory& memory, int) {
          {
            TreePool pool(RootOf(put.layout));
            const LxResult result = LxPutMetadata(pool.get(), put.nameSpace, put.name, "undef", "1", kLxPutAlways);
            EXPECT_EQ(pool.find(put.nameSpace, put.name) != nullptr, result == kLxOk);
            EXPECT_EQ(result == kLxOk, !memory.hasFailed());
            EXPECT_FALSE(HasBlankItem(pool->root)) << pool.shape();
            memory.stopFailing();
            EXPECT_EQ(LxPutMetadata(pool.get(), put.nameSpace, put.name, "undef", "1", kLxPutAlways), kLxOk);
            EXPECT_NE(pool.find(put.nameSpace, put.name), nullptr) << pool.shape();
          }
          EXPECT_EQ(memory.liveBlocks(), 0);
        },
        own + 1);
  }
}

TEST(Deleting, TheFirstMatchGoesAndTheNextIsFound) {
  FailingMemory memory;
  TreePool pool(Item("ir", "IptcNaa", {Shown("iptc", "Keywords", "one"), Shown("iptc", "Keywords", "two")}));
  EXPECT_EQ(LxDeleteMetadata(pool.get(), "iptc", "Keywords", "ascii", ""), kLxOk);
  EXPECT_STREQ(pool.find("iptc", "Keywords")->displayText, "two");
  EXPECT_EQ(LxDeleteMetadata(pool.get(), "iptc", "Keywords", "", "one"), kLxNotFound);
  EXPECT_EQ(LxDeleteMetadata(pool.get(), "ir", "IptcNaa", "", ""), kLxOk);
  EXPECT_EQ(pool.find("iptc", "Keywords"), nullptr);  // Below a deleted item nothing is looked for.
}

LxMetadataItem* WithValue(LxMetadataItem* item, std::uint16_t typeCode, std::int32_t length, const void* value) {
  item->typeCode = typeCode;
  item->valueLength = length;
  item->value = static_cast<const std::uint8_t*>(value);
  return item;
}

TEST(Deleting, LargeUnnamedItemsGoWhereverTheyAre) {
  FailingMemory memory;
  const Bytes bytes(300);
  auto sized = [&](const char* name, std::int32_t length, std::uint32_t flags = 0) {
    return WithValue(Item("n", name, {}, flags), kLxTypeUndefined, length, bytes.data());
  };
  LxMetadataItem* nameless = sized("", 300);
  nameless->name = nullptr;
  TreePool pool(
      List({sized(" 9999", 257), sized(" 9998", 256), sized("Named", 300),
            Item("n", "run", {sized(" 0001", 300, kLxEndOfRun), sized(" 0002", 300)}, kLxEndOfRun | kLxClosed),
            Item("n", "gone", {sized(" 0003", 300)}, kLxDeleted), nameless}));
  LxDeleteLargeUnnamed(pool->root, 256);
  EXPECT_EQ(pool.shape(), "-n. 9999 n. 9998 n.Named n.run{-n. 0001 -n. 0002} -n.gone{-n. 0003} -n.(null)");
  LxDeleteLargeUnnamed(nullptr, 0);
}

LxMetadataItem* ShownText(const char* nameSpace, const char* name, std::uint16_t type, const char* bytes,
                          std::int32_t length) {
  return WithValue(Shown(nameSpace, name, "shown"), type, length, bytes);
}

TEST(Deleting, BlankTextsGoAndWithThemABlankComment) {
  FailingMemory memory;
  TreePool pool(List({
      ShownText("tiff", "Artist", kLxTypeAscii, "   ", 4),
      ShownText("tiff", "Make", kLxTypeAscii, "  x", 4),
      ShownText("tiff", "Model", kLxTypeAscii, nullptr, 4),
      ShownText("tiff", "Copyright", kLxTypeByte, "   ", 4),
      WithValue(Item("tiff", "NotShown"), kLxTypeAscii, 4, "   "),
      Item("exif", "In", {ShownText("exif", "UserComment", kLxTypeUndefined, "ASCII\0\0\0", 8)}),
      ShownText("exif", "UserComment", kLxTypeUndefined, "ASCII\0\0\0  \0 ", 12),
      ShownText("exif", "UserComment", kLxTypeUndefined, "ASCII\0\0\0  x ", 12),
  }));
  LxDeleteBlankText(pool.get());
  EXPECT_EQ(pool.shape(),
            "-tiff.Artist tiff.Make -tiff.Model tiff.Copyright tiff.NotShown exif.In{-exif.UserComment} "
            "-exif.UserComment exif.UserComment");
}

}  // namespace
