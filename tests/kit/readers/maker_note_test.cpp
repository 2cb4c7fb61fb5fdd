// Maker notes: which dictionary, which layout, which origin of offsets, in both byte orders.
#include <gtest/gtest.h>

#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "kit/readers/read_file.h"
#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

constexpr std::uint16_t kMakerNote = 0x927C;

// A photograph with that maker note; the entry after the note shows whether the Exif IFD is read on as it should
// be. In a JPEG file, so that the origin of its offsets is not the file's start.
Bytes Photo(Order order, std::string_view make, std::string_view model, const TiffEntry& note) {
  return JpegBuilder().App1Exif(
      TiffBuilder(order).Ifd0({Ascii(0x010F, make), Ascii(0x0110, model)}).Exif({note, Short(0xA001, 1)}));
}

// As UndefIfd, in a byte order of its own and with offsets that are by so much too high.
TiffEntry Note(Order noteOrder, const Bytes& prefix, const TiffEntries& entries, std::uint32_t tooHigh = 0) {
  const auto make = [=](Order, std::uint32_t at) {
    return prefix + EncodeIfd(noteOrder, entries, at + static_cast<std::uint32_t>(prefix.size()) + tooHigh);
  };
  return {kMakerNote, 7, static_cast<std::uint32_t>(make(kBig, 0).size()), make};
}

// With offsets that count from `origin` bytes after the note's first byte.
TiffEntry NoteOfOwnOrigin(Order noteOrder, const Bytes& prefix, const TiffEntries& entries, std::uint32_t origin = 0) {
  const std::uint32_t at = static_cast<std::uint32_t>(prefix.size()) - origin;
  return Undef(kMakerNote, prefix + EncodeIfd(noteOrder, entries, at));
}

Bytes TiffHeader(Order order, std::uint32_t firstIfd = 8) {
  return Text(order == kBig ? "MM" : "II") + Put16(42, order) + Put32(firstIfd, order);
}

// An entry of each kind that offsets and byte order matter to.
TiffEntries SomeEntries() {
  return {Short(0x0005, 0x0102), Ascii(0x0009, "a text of the maker"), Long(0x000C, 0x01020304),
          Ratl(0x0084, {18, 1, 55, 1, 35, 10, 56, 10}), Undef(0x0090, Text("raw bytes"))};
}

std::string Entries(const LxMetadataPool& pool, const char* nameSpace = "generic") {
  EXPECT_TRUE(IsWellFormed(pool));
  EXPECT_NE(Find(pool, "exif", "MakerNote"), nullptr);
  return DumpPool(pool, nameSpace);
}

constexpr char kSomeEntries[] =
    "generic  0005 short 258\n"
    "generic  0009 ascii a text of the maker\n"
    "generic  000c long 16909060\n"
    "generic  0084 ratl 18 55 7/2(3.50) 28/5(5.60)\n"
    "generic  0090 undef raw bytes\n";

// The header item's bytes; a failed test where there is none.
Bytes HeaderOf(const LxMetadataPool& pool) {
  const LxMetadataItem* header = Find(pool, "makerh", "MakerNoteHeader");
  EXPECT_NE(header, nullptr);
  return header != nullptr ? ValueOf(*header) : Bytes();
}

TEST(MakerNote, AnIfdAfterASignatureOfUpTo23BytesIsReadInTheFilesOrderOrItsOwn) {
  const Bytes signatures[] = {Bytes(), Text("OLYMP") + Hex("00 01 00"), Text("twenty-two characters!") + Filled(1)};
  for (const Order order : {kLittle, kBig}) {
    for (const Order noteOrder : {kLittle, kBig}) {
      for (const Bytes& signature : signatures) {
        SCOPED_TRACE(testing::Message() << order << noteOrder << " after " << signature.size());
        const PoolPtr pool = ParsePool(Photo(order, "SONY", "DSC-F1", Note(noteOrder, signature, SomeEntries())));
        EXPECT_EQ(Entries(*pool), kSomeEntries);
        EXPECT_EQ(HeaderOf(*pool), signature);
        EXPECT_EQ((Find(*pool, "makerh", "")->flags & kLxBigEndianValue) != 0, order == kBig);
        EXPECT_EQ((Find(*pool, "generic", " 0009")->flags & kLxBigEndianValue) != 0, noteOrder == kBig);
        // The order was the note's only.
        EXPECT_STREQ(Find(*pool, "exif", "ColorSpace")->displayText, "sRGB");
      }
      // Of the models whose layout is known, nothing is guessed: the file's order holds, with a single entry too.
      const PoolPtr known = ParsePool(Photo(order, "Nikon", "E990", Note(noteOrder, {}, {Short(0x0005, 3)})));
      EXPECT_EQ(DumpPool(*known, "nikon"), noteOrder == order ? "nikon WhiteBalance short 3\n" : "");
      EXPECT_EQ(HeaderOf(*known), Bytes());
      const PoolPtr guessed = ParsePool(Photo(order, "Nikon", "E900", Note(noteOrder, {}, {Short(0x0005, 3)})));
      EXPECT_EQ(AllItems(*guessed, "makerh").size(), 0u);
    }
  }
  const PoolPtr tooLong = ParsePool(Photo(kBig, "Some maker", "model", Note(kBig, Filled(24, 'x'), SomeEntries())));
  EXPECT_EQ(Entries(*tooLong), "");
  EXPECT_EQ(AllItems(*tooLong, "makerh").size(), 0u);
}

TEST(MakerNote, ATiffHeaderOfItsOwnGivesOrderAndOrigin) {
  const Bytes signature = Text("Nikon") + Hex("00 02 10 00 00");
  for (const Order order : {kLittle, kBig}) {
    for (const Order noteOrder : {kLittle, kBig}) {
      SCOPED_TRACE(testing::Message() << order << noteOrder);
      const Bytes prefix = signature + TiffHeader(noteOrder);
      const PoolPtr pool = ParsePool(
          Photo(order, "NIKON CORPORATION", "NIKON D100 ", NoteOfOwnOrigin(noteOrder, prefix, SomeEntries(), 10)));
      EXPECT_EQ(Entries(*pool, "nikon"),
                "nikon WhiteBalance short 258\n"
                "nikon AutoFlash ascii a text of the maker\n"
                "nikon  000c long 16909060\n"
                "nikon LensInfo ratl 18-55mm f3.5-5.6\n"
                "nikon Lighting undef raw bytes\n");
      EXPECT_EQ(HeaderOf(*pool), signature);
      const LxMetadataItem* header = Find(*pool, "makerh", "MakerNoteHeader")->firstChild;
      EXPECT_STREQ(header->name, "IFDHeader");
      EXPECT_EQ(ValueOf(*header), TiffHeader(noteOrder));
      EXPECT_STREQ(header->firstChild->name, "IFD");
      // A header's order stays in force after it, where the Exif IFD's own entries are not readable in another one.
      EXPECT_EQ(Find(*pool, "exif", "ColorSpace") != nullptr, order == noteOrder);
    }
  }
  for (const Order order : {kLittle, kBig}) {
    for (const std::uint32_t at : {0u, 1u, 23u, 24u}) {
      const Bytes prefix = Filled(at) + TiffHeader(order);
      const PoolPtr pool =
          ParsePool(Photo(kBig, "Some maker", "model", NoteOfOwnOrigin(order, prefix, SomeEntries(), at)));
      EXPECT_EQ(Entries(*pool), at < 24 ? kSomeEntries : "") << at;
    }
  }
}

TEST(MakerNote, OffsetsCountFromWhereTheirValuesMakeSense) {
  // The note was moved within the file, or its maker counts from elsewhere: values stand right after the IFD, their
  // offsets do not say so.
  const Bytes signature = Text("FUJIFILM") + Hex("0C 00 00 00");
  const auto read = [](const TiffEntry& note, Order order) {
    return Entries(*ParsePool(Photo(order, "Some maker", "model", note)));
  };
  for (const Order order : {kLittle, kBig}) {
    for (const Order noteOrder : {kLittle, kBig}) {
      SCOPED_TRACE(testing::Message() << order << noteOrder);
      EXPECT_EQ(read(NoteOfOwnOrigin(noteOrder, signature, SomeEntries()), order), kSomeEntries);
      EXPECT_EQ(read(NoteOfOwnOrigin(noteOrder, signature, SomeEntries(), 6), order), kSomeEntries);
      for (const std::int64_t tooHigh : {0, 2, 20, 1000, 100000, 0x40000000, -2, -20, -70}) {
        EXPECT_EQ(read(Note(noteOrder, signature, SomeEntries(), static_cast<std::uint32_t>(tooHigh)), order),
                  kSomeEntries)
            << tooHigh;
      }
    }
    // Of a TIFF file, offsets that are too high lead to an origin in front of the file.
    const PoolPtr tiff = ParsePool(TiffBuilder(order)
                                       .Ifd0({Ascii(0x010F, "Some maker"), Ascii(0x0110, "model")})
                                       .Exif({Note(order, {}, SomeEntries(), 5000)}));
    EXPECT_EQ(Entries(*tiff), kSomeEntries);
  }
}

// The value read of a note with two values for its one long entry: `next` stands right after the IFD, as under the
// shift that the search tries; `named` where the entry's offset says.
Bytes ValueOfTwo(Order order, const TiffEntry& next, const TiffEntry& named) {
  const Bytes first = next.value(order, 0), second = named.value(order, 0);
  EXPECT_EQ(first.size(), second.size());
  const auto size = static_cast<std::uint32_t>(first.size());
  const auto make = [&](Order o, std::uint32_t at) {
    const TiffEntry entry = {2, next.type, next.count, [&](Order, std::uint32_t) { return first; }};
    return Truncated(EncodeIfd(o, {Short(1, 1), entry}, at + size), 30) + first + second;
  };
  const PoolPtr pool = ParsePool(Photo(order, "Some maker", "model", {kMakerNote, 7, 30 + 2 * size, make}));
  const LxMetadataItem* item = Find(*pool, "generic", " 0002");
  return item != nullptr ? ValueOf(*item) : Bytes();
}

TEST(MakerNote, OffsetsStayAsTheyAreUnlessAShiftMakesMoreSense) {
  // Of opaque values, any bytes below 127 make equal sense. What counts is how many do: all, all but one, half, fewer.
  const struct {
    const char *next, *named;
    bool shifted;
  } cases[] = {
      {"01 01 01 01 01 01 01 01", "02 02 02 02 02 02 02 02", false},  // Equal.
      {"F0 F0 F0 F0 F0 F0 F0 F0", "02 02 02 02 02 02 02 02", false},
      {"01 01 01 01 01 01 01 01", "F0 F0 F0 F0 F0 F0 F0 F0", true},
      {"01 01 01 01 01 01 01 01", "F0 02 02 02 02 02 02 02", true},
      {"F0 01 01 01 01 01 01 01", "F0 F0 02 02 02 02 02 02", true},
      {"F0 F0 F0 F0 01 01 01 01", "F0 F0 02 02 02 02 02 02", false},  // Equal again.
      {"F0 F0 F0 F0 01 01 01 01", "F0 F0 F0 F0 F0 02 02 02", true},
  };
  for (const Order order : {kLittle, kBig}) {
    for (const auto& c : cases) {
      EXPECT_EQ(ValueOfTwo(order, Undef(2, Hex(c.next)), Undef(2, Hex(c.named))), Hex(c.shifted ? c.next : c.named))
          << c.next << ", " << c.named;
    }
    // Without any value out of line there is nothing to shift.
    EXPECT_EQ(Entries(*ParsePool(Photo(order, "Some maker", "model", Note(order, {}, {Short(1, 2), Long(2, 70000)})))),
              "generic  0001 short 2\ngeneric  0002 long 70000\n");
  }
}

TEST(MakerNote, EachTypeHasItsOwnPlausibility) {
  const struct {
    const char* what;
    TiffEntry sense;
    TiffEntry nonsense;
  } cases[] = {
      {"bytes below 16", Byte(2, Filled(8, 15)), Byte(2, Filled(8, 16))},
      {"signed bytes below 16", Numbers(2, 6, {1, 2, 3, 4, 5, 6, 7, 15}),
       Numbers(2, 6, {-1, -1, -1, -1, -1, -1, -1, 1})},
      {"a text with its end", Ascii(2, "printed"), AsciiBytes(2, "printed ")},
      {"a text and zeros", AsciiBytes(2, std::string_view("text\0\0\0\0", 8)),
       AsciiBytes(2, std::string_view("text\0\0\0t", 8))},
      {"printable texts", Ascii(2, "printed"), Ascii(2, "\x01\x01\x01\x7F\x80\xFF\xFF")},
      {"shorts below 256", Short(2, {255, 0, 1, 2}), Short(2, {256, 0, 1, 2})},
      {"signed shorts below 256", Numbers(2, 8, {255, 0, 1, 2}), Numbers(2, 8, {-1, -2, -3, 1})},
      {"longs below 65536", Long(2, {65535, 0, 1}), Long(2, {65536, 0, 1})},
      {"signed longs below 65536", Numbers(2, 9, {65535, 0, 1}), Numbers(2, 9, {-1, -1, 1})},
      {"numerators below 65536", Ratl(2, {65535, 70000, 1, 0, 2, 70000}), Ratl(2, {65536, 1, 2, 1, 3, 1})},
      {"signed numerators", Numbers(2, 10, {1, -1, 2, -1, 3, -1}), Numbers(2, 10, {-1, 1, -1, 1, -1, 1})},
  };
  for (const auto& c : cases) {
    for (const Order order : {kLittle, kBig}) {
      SCOPED_TRACE(std::string(c.what) + (order == kBig ? " MM" : " II"));
      EXPECT_EQ(ValueOfTwo(order, c.sense, c.nonsense), c.sense.value(order, 0));
      EXPECT_EQ(ValueOfTwo(order, c.nonsense, c.sense), c.sense.value(order, 0));
    }
  }
}

TEST(MakerNote, WhatIsNoPlausibleIfdIsLeftAlone) {
  const TiffEntries two = {Short(1, 1), Short(2, 2)};
  const auto entries = [](std::size_t count) { return TiffEntries(count, Short(0x0100, 1)); };
  for (const Order order : {kLittle, kBig}) {
    const Bytes ifd = EncodeIfd(order, two, 0);
    const Bytes own = TiffHeader(order, 48) + Filled(40) + ifd;
    const auto with = [](const Bytes& bytes, std::size_t at, const Bytes& patch) {
      return WithBytes(bytes, at, patch);
    };
    const struct {
      const char* what;
      Bytes note;
      std::size_t declared;  // The length that the entry states; more bytes are there.
      const char* found;     // The item below the note's header item.
    } cases[] = {
        {"two entries", ifd, 26, "IFD"},  // The next IFD's offset is not looked for.
        {"the last type", with(ifd, 16, Put16(14, order)), 30, "IFD"},
        {"a type too high", with(ifd, 16, Put16(15, order)), 30, ""},
        {"a count too high", with(ifd, 18, Put32(65536, order)), 30, ""},
        {"one entry", with(ifd, 0, Put16(1, order)), 30, ""},
        {"256 entries", EncodeIfd(order, entries(256), 0), 256 * 12 + 2, ""},
        {"a header", own, 48 + 26, "IFDHeader"},
        {"a header, a byte less", own, 48 + 25, ""},
        {"a header, its IFD after the note", own + Filled(4000), 46, ""},
        {"a header of no order", with(own, 0, Text(order == kBig ? "IM" : "MI")), 78, ""},
        {"a header of another number", with(own, 2, Put16(43, order)), 78, ""},
        {"an odd offset", TiffHeader(order, 49) + Filled(41) + ifd, 79, ""},
        {"an offset far away", with(own, 4, Put32(0x7FFFFFFE, order)), 78, ""},
        {"an offset that wraps", with(own, 4, Put32(0xFFFFFFF8, order)), 78, ""},
    };
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(c.what) + (order == kBig ? " MM" : " II"));
      const TiffEntry note = {kMakerNote, 7, static_cast<std::uint32_t>(c.declared),
                              [&](Order, std::uint32_t) { return c.note; }};
      const PoolPtr pool = ParsePool(Photo(order, "Some maker", "model", note));
      EXPECT_TRUE(IsWellFormed(*pool));
      const LxMetadataItem* item = Find(*pool, "exif", "MakerNote");
      ASSERT_NE(item, nullptr);  // It stays whatever it holds.
      EXPECT_STREQ(item->firstChild == nullptr ? "" : item->firstChild->firstChild->name, c.found);
      EXPECT_STREQ(Find(*pool, "exif", "ColorSpace")->displayText, "sRGB");
    }
  }
}

TEST(MakerNote, TheDictionaryIsChosenByMakeAndModelAsTheyAreWritten) {
  const struct {
    const char *make, *model;
    const char *nameSpace, *name;  // Of the entries, and of tag 0x0002.
  } cases[] = {
      {"Nikon", "E990", "nikon", "ISOSetting"},
      {"NIKON CORPORATION", "NIKON D100 ", "nikon", "ISOSetting"},
      {"NIKON CORPORATION", "NIKON D100", "nikon", " 0002"},
      {"nikon", "E990", "generic", " 0002"},
      {"Canon", "Canon EOS-1Ds", "canon", " 0002"},
      {"Foveon", "any model", "foveon", "CameraSerialNumber"},
      {"PENTAX Corporation ", "PENTAX Optio S", "generic", " 0002"},
      {"SONY", "", "generic", " 0002"},
  };
  for (const auto& c : cases) {
    for (const Order order : {kLittle, kBig}) {
      SCOPED_TRACE(std::string(c.make) + "|" + c.model + "|");
      const TiffEntry note = Note(order, {}, {Short(0x0002, {7, 9}), Short(0x7001, 1)});
      const PoolPtr pool = ParsePool(Photo(order, c.make, c.model, note));
      const LxMetadataItem* entry = Find(*pool, c.nameSpace, c.name);
      ASSERT_NE(entry, nullptr) << DumpPool(*pool);
      EXPECT_EQ(entry->tagId, 2);
      EXPECT_EQ(ValueOf(*entry), Put16(7, order) + Put16(9, order));
      EXPECT_EQ(AllItems(*pool, c.nameSpace).size(), 2u);
    }
  }
  // A text without its zero byte is as long as its value, one with more after it as long as the text.
  for (const std::string_view model : {std::string_view("NIKON D1X"), std::string_view("NIKON D1X\0 II", 13)}) {
    const Bytes tiff = TiffBuilder(kBig)
                           .Ifd0({AsciiBytes(0x010F, "NIKON CORPORATION"), AsciiBytes(0x0110, model)})
                           .Exif({Note(kBig, {}, {Short(0x0002, {7, 9}), Short(0x7001, 1)})});
    EXPECT_STREQ(Find(*ParsePool(tiff), "nikon", "ISOSetting")->displayText, "9");
  }
}

TEST(MakerNote, WithoutMakeAndModelBeforeItANoteIsNotRead) {
  const TiffEntry make = Ascii(0x010F, "Canon"), model = Ascii(0x0110, "Canon EOS");
  const TiffEntry pointer = SubIfd(0x8769, {Note(kBig, {}, SomeEntries()), Short(0xA001, 1)});
  const std::pair<TiffEntries, bool> cases[] = {{{make, model, pointer}, true},
                                                {{model, pointer}, false},
                                                {{make, pointer}, false},
                                                {{make, pointer, model}, false}};
  for (const auto& [ifd0, isRead] : cases) {
    const PoolPtr pool = ParsePool(TiffBuilder(kBig).Ifd0(ifd0));
    ASSERT_NE(Find(*pool, "exif", "MakerNote"), nullptr);
    EXPECT_EQ(Find(*pool, "canon", "OwnerName") != nullptr, isRead);
    EXPECT_NE(Find(*pool, "exif", "ColorSpace"), nullptr);
  }
}

TEST(MakerNote, ThumbnailsAreThePicturesThatTwoTagsDescribe) {
  const Bytes jpeg = JpegBuilder().Comment("small").Sos().Eoi().Bare();
  const struct {
    const char *make, *model, *nameSpace, *name;
    std::uint16_t start, length;
  } cases[] = {{"PENTAX Corporation ", "PENTAX Optio S ", "pentax", "Thumbnail", 0x0004, 0x0003},
               {"Minolta Co., Ltd.", "DiMAGE", "minolta", "ThumbnailOffset", 0x0088, 0x0089}};
  for (const auto& c : cases) {
    for (const Order order : {kLittle, kBig}) {
      SCOPED_TRACE(std::string(c.nameSpace) + (order == kBig ? " MM" : " II"));
      const TiffEntry start = {c.start, 4, 1, [&](Order o, std::uint32_t at) { return Put32(at, o) + jpeg; }};
      const TiffEntry length = Long(c.length, static_cast<std::int64_t>(jpeg.size()));
      const PoolPtr pool = ParsePool(Photo(order, c.make, c.model, Note(order, {}, {start, length})));
      EXPECT_TRUE(IsWellFormed(*pool));
      const LxMetadataItem* entry = Find(*pool, c.nameSpace, c.name);
      ASSERT_TRUE(entry != nullptr && entry->firstChild != nullptr);
      EXPECT_EQ(ValueOf(*entry->firstChild), jpeg);
      EXPECT_STREQ(Find(*pool, "jpegt", "COM")->displayText, "small");
      // No stream there: of the pointer that the dictionary takes for one to an IFD, nothing is left to see.
      const PoolPtr bad =
          ParsePool(Photo(order, c.make, c.model, Note(order, {}, {Long(c.start, 2), Long(c.length, 40)})));
      EXPECT_EQ(Find(*bad, c.nameSpace, c.name) == nullptr, std::string(c.nameSpace) == "pentax");
    }
  }
}

TEST(MakerNote, AThumbnailIfdIsClosedUnlessItIsNone) {
  const Bytes prefix = Text("Nikon") + Hex("00 02 10 00 00");
  for (const bool bare : {true, false}) {
    for (const Order order : {kLittle, kBig}) {
      SCOPED_TRACE(std::string(bare ? "bare" : "header") + (order == kBig ? " MM" : " II"));
      const auto read = [&](const TiffEntry& thumbnail) {
        const TiffEntries entries = {Short(0x0002, {0, 200}), thumbnail};
        const TiffEntry note =
            bare ? Note(order, {}, entries) : NoteOfOwnOrigin(order, prefix + TiffHeader(order), entries, 10);
        PoolPtr pool = ParsePool(Photo(order, "NIKON CORPORATION", bare ? "NIKON D1X" : "NIKON D100 ", note));
        EXPECT_TRUE(IsWellFormed(*pool));
        EXPECT_STREQ(Find(*pool, "nikon", "ISOSetting")->displayText, "200");
        return pool;
      };
      const PoolPtr pool = read(SubIfd(0x0011, {Short(0x0103, 6), Short(0x0112, 1)}));
      const LxMetadataItem* thumbnail = Find(*pool, "nikon", "ThumbSubIFD");
      ASSERT_TRUE(thumbnail != nullptr && thumbnail->firstChild != nullptr);
      EXPECT_EQ(thumbnail->flags & kLxClosed, kLxClosed);
      EXPECT_STREQ(thumbnail->firstChild->name, "Compression");
      EXPECT_EQ(Find(*pool, "tiff", "Compression"), nullptr);  // Searches do not enter it.
      for (const std::uint32_t offset : {0xFFFFFF00u, 0x7FFFFFFFu, 8u}) {
        if (offset == 8 && bare) continue;  // After a header, the note's own IFD.
        EXPECT_EQ(Find(*read(Raw(0x0011, 4, 1, offset)), "nikon", "ThumbSubIFD"), nullptr) << offset;
      }
    }
  }
}

TEST(MakerNote, AChainOfIfdsIsReadToTheEighth) {
  for (const Order order : {kLittle, kBig}) {
    const TiffEntry chain = {kMakerNote, 7, 30, [](Order o, std::uint32_t at) {
                               return EncodeIfd(o, {Short(0x7000, 1), Short(0x7001, 2)}, at, at);  // Back to itself.
                             }};
    const PoolPtr pool = ParsePool(Photo(order, "Some maker", "model", chain));
    EXPECT_TRUE(IsWellFormed(*pool));
    EXPECT_EQ(AllItems(*pool, "generic", " 7000").size(), 8u);
  }
}

// An entry of four bytes names a note that goes on to the file's end; only what tells its layout is loaded.
TEST(MakerNote, LookingForALayoutReadsLittle) {
  const TiffEntry note = {kMakerNote, 7, 4, [](Order o, std::uint32_t) { return Put32(0x4000, o); }};
  Bytes file = TiffBuilder(kLittle).Ifd0({Ascii(0x010F, "Some maker"), Ascii(0x0110, "model")}).Exif({note});
  file.resize(0x4000);
  FailingStream stream(file + EncodeIfd(kLittle, SomeEntries(), 0x4000) + Filled(20'000'000));
  const PoolPtr pool = NewPool();
  ASSERT_EQ(LxParseImageFile(&stream, pool.get()), kLxOk);
  EXPECT_EQ(Entries(*pool), kSomeEntries);
  std::int64_t bytes = 0;
  for (const StreamRead& read : stream.reads()) bytes += read.bytes;
  EXPECT_LT(bytes, 100'000);
}

}  // namespace
