// The object that the library hands out as a host has it, through the shared library's C interface and the C++ header
// over it: reading, changing, writing, failures.
#include "host/include/lxbridge/xmp.hpp"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"
#include "tests/support/xmp_dump.h"

namespace lxbridge {
namespace {

using lxtest::Ascii;
using lxtest::JpegBuilder;
using lxtest::Ratl;
using lxtest::TempFile;
using lxtest::TiffBuilder;

constexpr const char kTiff[] = LX_XMP_NS_TIFF;
constexpr const char kExif[] = LX_XMP_NS_EXIF;
constexpr const char kDc[] = LX_XMP_NS_DC;
constexpr const char kXmp[] = LX_XMP_NS_XMP;

constexpr const char kPacket[] = R"(<x:xmpmeta xmlns:x="adobe:ns:meta/">
<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description rdf:about="" xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:v="http://example.com/v/">
  <dc:subject><rdf:Bag><rdf:li>harbour</rdf:li><rdf:li>dusk</rdf:li></rdf:Bag></dc:subject>
  <dc:creator><rdf:Seq><rdf:li>Ada</rdf:li></rdf:Seq></dc:creator>
  <dc:title><rdf:Alt><rdf:li xml:lang="x-default">Pier</rdf:li><rdf:li xml:lang="de">Steg</rdf:li></rdf:Alt></dc:title>
  <v:Scale rdf:parseType="Resource"><rdf:value>4</rdf:value><v:Unit>stars</v:Unit><v:Of>5</v:Of></v:Scale>
  <v:Places><rdf:Seq>
    <rdf:li rdf:parseType="Resource"><v:City>Oslo</v:City><v:Tags><rdf:Bag><rdf:li>cold</rdf:li></rdf:Bag></v:Tags></rdf:li>
    <rdf:li rdf:parseType="Resource"><v:City>Rome</v:City></rdf:li>
  </rdf:Seq></v:Places>
</rdf:Description></rdf:RDF></x:xmpmeta>)";

// The lines of DumpXmp, sorted: the order of the Exif directory's items is the conversion's.
std::vector<std::string> Lines(const XmpView& xmp) {
  std::istringstream in(lxtest::DumpXmp(xmp.object()));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::string Get(const XmpView& xmp, const char* schema, const char* path) {
  return xmp.Get(schema, path).value_or("(none)");
}

class XmpTest : public testing::Test {
 protected:
  XmpView Open(const lxtest::Bytes& bytes) {
    file_.emplace(TempFile(bytes).path());
    return file_->Xmp();
  }
  XmpView OpenPhoto() {
    return Open(JpegBuilder().App1Xmp(kPacket).App1Exif(
        TiffBuilder(lxtest::kBig).Ifd0({Ascii(0x010F, "Canon")}).Exif({Ratl(0x829D, 56, 10)})));
  }

  std::optional<Library> library_ = std::make_optional<Library>();
  std::optional<Interchange> file_;
};

TEST_F(XmpTest, EveryFormOfNodeComesWithAllThatBelongsToIt) {
  const XmpView xmp = OpenPhoto();
  EXPECT_EQ(Lines(xmp), (std::vector<std::string>{
                            "dc:creator=seq[Ada]",
                            "dc:subject=bag[harbour, dusk]",
                            "dc:title=alt[x-default: Pier, de: Steg]",
                            "exif:FNumber=56/10",
                            "tiff:Make=Canon",
                            "v:Places=seq[{v:City=Oslo, v:Tags=bag[cold]}, {v:City=Rome}]",
                            "v:Scale=stars: 5: 4",
                        }));
  const std::vector<XmpNode> nodes = xmp.Properties(kDc);
  ASSERT_EQ(nodes.size(), 3U) << "those of one namespace";
  EXPECT_EQ(nodes[0].namespaceUri, kDc);
  EXPECT_EQ(nodes[0].children[0].namespaceUri, "") << "an item of an array has no name and so no namespace";
}

TEST_F(XmpTest, TheSerialisedPacketHoldsTheSameObject) {
  XmpView xmp = OpenPhoto();
  const std::vector<std::string> lines = Lines(xmp);
  const std::string packet = xmp.Serialize();
  EXPECT_EQ(packet.substr(0, 17), "<?xpacket begin=\"");
  EXPECT_NE(packet.find("<tiff:Make>Canon</tiff:Make>\n"), std::string::npos);
  EXPECT_EQ(xmp.Serialize(LX_XMP_OMIT_WRAPPER).find("xpacket"), std::string::npos);
  EXPECT_EQ(xmp.Serialize(LX_XMP_OMIT_WRAPPER | LX_XMP_OMIT_META).find("xmpmeta"), std::string::npos);
  EXPECT_NE(xmp.Serialize(LX_XMP_READ_ONLY).find("<?xpacket end=\"r\"?>"), std::string::npos);
  EXPECT_NE(xmp.Serialize(LX_XMP_COMPACT).find("tiff:Make=\"Canon\""), std::string::npos);
  EXPECT_GE(xmp.Serialize(0, 2000).size(), packet.size() + 2000);
  EXPECT_EQ(xmp.Serialize(LX_XMP_EXACT_LENGTH, 9000).size(), 9000U);
  EXPECT_EQ(xmp.Serialize(), packet);
  std::string again = "what it held before";
  xmp.SerializeTo(&again);
  EXPECT_EQ(again, packet);

  EXPECT_EQ(Lines(Open(JpegBuilder().App1Xmp(packet))), lines);
}

TEST_F(XmpTest, ValuesAreFoundByPathAndMissingOnesAreNoErrorsAndLeaveTheOutValues) {
  const XmpView xmp = OpenPhoto();
  EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon");
  EXPECT_EQ(Get(xmp, kDc, "subject[2]"), "dusk");
  EXPECT_EQ(Get(xmp, kDc, "subject[last()]"), "dusk");
  EXPECT_EQ(Get(xmp, kDc, "title[?xml:lang=\"de\"]"), "Steg");
  EXPECT_EQ(Get(xmp, kDc, "title[1]/?xml:lang"), "x-default");
  EXPECT_EQ(xmp.Get("http://example.com/v/", "Places[1]/v:City"), "Oslo");
  EXPECT_EQ(xmp.Get("http://example.com/v/", "Places[v:City='Rome']/v:City"), "Rome");
  EXPECT_EQ(xmp.Get("http://example.com/v/", "Places[v:City='Cid']/v:City"), std::nullopt);
  EXPECT_EQ(xmp.Get("http://example.com/v/", "Places/v:City"), std::nullopt);
  EXPECT_EQ(xmp.Get("http://example.com/v/", "Places"), "");
  EXPECT_EQ(xmp.OptionsOf(kDc, "title").value_or(0) & (LX_XMP_ARRAY | LX_XMP_ORDERED | LX_XMP_ALTERNATIVE),
            std::uint32_t{LX_XMP_ARRAY | LX_XMP_ORDERED | LX_XMP_ALTERNATIVE});
  EXPECT_EQ(xmp.OptionsOf(kTiff, "Make"), 0U);
  for (const char* path : {"Model", "Make[1]", "no name", "Make/exif:Fired"}) {
    LxXmpText value = {"kept", 4};
    std::uint32_t options = 77;
    EXPECT_EQ(LxXmpGet(xmp.object(), kTiff, path, &value, &options), LX_XMP_NOT_FOUND) << path;
    EXPECT_STREQ(value.bytes, "kept") << path;
    EXPECT_EQ(options, 77U) << path;
  }
  XmpView changed = xmp;
  for (const char* path : {"no name", "", "a[0]", "Model"}) {
    EXPECT_EQ(xmp.CountItems(kTiff, path), 0U) << path;
    EXPECT_EQ(xmp.GetLocalizedText(kTiff, path, "", "de"), std::nullopt) << path;
    changed.Delete(kTiff, path);
    changed.DeleteLocalizedText(kTiff, path, "", "de");
  }
  changed.DeleteItem(kDc, "creator", -7);
  changed.Delete("http://example.com/nobody/", "Make");
  EXPECT_FALSE(xmp.Has("http://example.com/nobody/", "Make"));
  EXPECT_TRUE(xmp.Has(kDc, "creator"));
}

TEST_F(XmpTest, ChangesOfTheHostAreInTheObjectThatTheLibraryHolds) {
  constexpr const char kOwn[] = "http://example.com/own/";
  XmpView xmp = OpenPhoto();
  xmp.Set(kXmp, "Rating", std::string("5"));
  xmp.Set(kTiff, "Make", "Other");
  xmp.Set(kXmp, "BaseURL", "http://example.com/", LX_XMP_VALUE_IS_URI);
  xmp.Append(kDc, "subject", 0, "night");
  xmp.Append(kXmp, "Identifier", LX_XMP_ARRAY, "first");
  xmp.SetLocalizedText(kDc, "rights", nullptr, "x-default", "(c) Ada");
  xmp.Delete(kDc, "creator");
  xmp.Delete(kDc, "creator");
  xmp.SetEmpty(kDc, "language", LX_XMP_ARRAY);
  EXPECT_EQ(RegisterNamespace(kOwn, "own"), "own");
  xmp.Append(kOwn, "People", LX_XMP_ORDERED, nullptr, LX_XMP_STRUCT);
  xmp.Set(kOwn, "People[1]/own:Name", "Ada");

  EXPECT_EQ(Lines(file_->Xmp()), (std::vector<std::string>{
                                     "dc:language=bag[]",
                                     "dc:rights=alt[x-default: (c) Ada]",
                                     "dc:subject=bag[harbour, dusk, night]",
                                     "dc:title=alt[x-default: Pier, de: Steg]",
                                     "exif:FNumber=56/10",
                                     "own:People=seq[{own:Name=Ada}]",
                                     "tiff:Make=Other",
                                     "v:Places=seq[{v:City=Oslo, v:Tags=bag[cold]}, {v:City=Rome}]",
                                     "v:Scale=stars: 5: 4",
                                     "xmp:BaseURL=http://example.com/",
                                     "xmp:Identifier=bag[first]",
                                     "xmp:Rating=5",
                                 }));
  EXPECT_NE(file_->Xmp().Serialize().find("<xmp:Rating>5</xmp:Rating>"), std::string::npos);
}

TEST_F(XmpTest, ItemsFieldsAndQualifiersAreReachedWithoutAPathOfTheirOwn) {
  constexpr const char kV[] = "http://example.com/v/";
  XmpView xmp = OpenPhoto();
  EXPECT_EQ(xmp.CountItems(kDc, "subject"), 2U);
  EXPECT_EQ(xmp.CountItems(kDc, "rights"), 0U);
  EXPECT_EQ(StandardForm(kDc, "subject"), std::uint32_t{LX_XMP_ARRAY});
  EXPECT_EQ(StandardForm(kDc, "rights") & LX_XMP_ALT_TEXT, std::uint32_t{LX_XMP_ALT_TEXT});
  EXPECT_EQ(StandardForm(kV, "subject"), 0U);
  EXPECT_EQ(xmp.GetItem(kDc, "subject", 1), "harbour");
  EXPECT_EQ(xmp.GetItem(kDc, "subject", -1), "dusk");
  EXPECT_EQ(xmp.GetItem(kDc, "subject", 3), std::nullopt);
  EXPECT_EQ(xmp.GetField(kV, "Places[2]", kV, "City"), "Rome");
  EXPECT_EQ(xmp.GetField(kV, "Places[2]", kDc, "City"), std::nullopt);
  EXPECT_EQ(xmp.GetQualifier(kV, "Scale", kV, "Of"), "5");
  EXPECT_EQ(xmp.GetQualifier(kTiff, "Make", kV, "Of"), std::nullopt);

  xmp.SetItem(kDc, "subject", 2, "dawn");
  xmp.InsertItem(kDc, "subject", 1, "pier");
  xmp.SetField(kV, "Places[2]", kXmp, "Rating", "3");
  xmp.SetQualifier(kDc, "creator[1]", kXmp, "Label", "painter");
  EXPECT_EQ(xmp.GetQualifier(kDc, "creator[1]", kXmp, "Label"), "painter");
  xmp.DeleteQualifier(kV, "Scale", kV, "Of");
  xmp.DeleteField(kV, "Places[1]", kV, "Tags");
  xmp.DeleteField(kV, "Places[1]", kV, "Tags");
  xmp.DeleteItem(kDc, "subject", 2);
  const std::vector<std::string> lines = Lines(xmp);
  for (const char* line :
       {"dc:subject=bag[pier, dawn]", "v:Places=seq[{v:City=Oslo}, {v:City=Rome, xmp:Rating=3}]", "v:Scale=stars: 4"}) {
    EXPECT_NE(std::find(lines.begin(), lines.end(), line), lines.end()) << line << " in " << xmp.Serialize();
  }
}

TEST_F(XmpTest, TheTextOfTheBestLanguageIsChosen) {
  XmpView xmp = OpenPhoto();
  xmp.SetLocalizedText(kDc, "title", "en", "en-GB", "Quay");
  const struct {
    const char* generic;
    const char* specific;
    const char* text;
    const char* language;
  } kCases[] = {{"de", "de", "Steg", "de"},
                {"de", "de-AT", "Steg", "de"},
                {nullptr, "de-AT", "Pier", "x-default"},
                {"en", "en-US", "Quay", "en-GB"},
                {"", "fr", "Pier", "x-default"}};
  for (const auto& c : kCases) {
    std::string language;
    EXPECT_EQ(xmp.GetLocalizedText(kDc, "title", c.generic, c.specific, &language), c.text) << c.specific;
    EXPECT_EQ(language, c.language) << c.specific;
  }
  EXPECT_EQ(xmp.GetLocalizedText(kDc, "rights", "", "de"), std::nullopt);
  xmp.DeleteLocalizedText(kDc, "title", "", "de");
  EXPECT_EQ(xmp.GetLocalizedText(kDc, "title", "de", "de"), "Pier");
}

TEST_F(XmpTest, ValuesComeAndGoAsTruthValuesNumbersAndDates) {
  XmpView xmp = OpenPhoto();
  EXPECT_EQ(xmp.GetReal(kExif, "FNumber"), 5.6) << "a rational";
  EXPECT_EQ(xmp.GetReal(kExif, "FocalLength"), std::nullopt);
  xmp.SetReal(kXmp, "Value", -0.25);
  EXPECT_EQ(Get(xmp, kXmp, "Value"), "-0.25");
  EXPECT_EQ(xmp.GetReal(kXmp, "Value"), -0.25);
  xmp.SetInteger(kXmp, "Count", -9007199254740993);
  EXPECT_EQ(xmp.GetInteger(kXmp, "Count"), -9007199254740993);
  xmp.SetBool(kXmp, "Marked", true);
  EXPECT_EQ(Get(xmp, kXmp, "Marked"), "True");
  EXPECT_EQ(xmp.GetBool(kXmp, "Marked"), true);
  xmp.SetDate(kXmp, "CreateDate", {2024, 6, 21, 18, 30, 5, 1, 2, 45, 250000000});
  EXPECT_EQ(Get(xmp, kXmp, "CreateDate"), "2024-06-21T18:30:05.25+02:45");
  const LxXmpDate date = xmp.GetDate(kXmp, "CreateDate").value_or(LxXmpDate{});
  EXPECT_EQ((std::vector<int>{date.year, date.month, date.day, date.hour, date.minute, date.second, date.zoneSign,
                              date.zoneHour, date.zoneMinute, date.nanosecond}),
            (std::vector<int>{2024, 6, 21, 18, 30, 5, 1, 2, 45, 250000000}));
  LxXmpDate now = {};
  ASSERT_EQ(LxXmpNow(&now), LX_XMP_OK);
  EXPECT_GE(now.year, 2024);
  for (const char* noRational : {"1/0", "1/", "/2", "1/2/3", "1/2 ", "x/2"}) {
    xmp.Set(kXmp, "Value", noRational);
    EXPECT_THROW((void)xmp.GetReal(kXmp, "Value"), XmpError) << noRational;
  }
}

TEST_F(XmpTest, ObjectsOfTheHostAreParsedMergedComparedAndEmptied) {
  XmpView photo = OpenPhoto();
  const XmpObject own(photo);
  EXPECT_TRUE(own.Xmp().IsEqual(photo));
  XmpView copy = own.Xmp();
  copy.Set(kTiff, "Make", "Other");
  EXPECT_FALSE(copy.IsEqual(photo));
  EXPECT_EQ(Get(photo, kTiff, "Make"), "Canon") << "a copy is its own";

  const XmpObject sideCar;
  EXPECT_TRUE(sideCar.Xmp().Properties().empty());
  sideCar.Xmp().Parse(R"(<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"><rdf:Description
      xmlns:tiff="http://ns.adobe.com/tiff/1.0/" xmlns:w="http://example.com/w/" tiff:Make="Side" w:Own="own"/></rdf:RDF>)");
  photo.Merge(sideCar.Xmp());
  EXPECT_EQ(Get(photo, kTiff, "Make"), "Canon") << "a property that is there stays";
  EXPECT_EQ(photo.Get("http://example.com/w/", "Own"), "own");
  photo.Merge(sideCar.Xmp(), LX_XMP_REPLACE);
  EXPECT_EQ(Get(photo, kTiff, "Make"), "Side");

  using Namespace = std::pair<std::string, std::string>;
  const std::vector<Namespace> namespaces = photo.Namespaces();
  for (const Namespace& one : {Namespace("dc", kDc), Namespace("w", "http://example.com/w/"), Namespace("exif", kExif),
                               Namespace("xml", "http://www.w3.org/XML/1998/namespace")}) {
    EXPECT_EQ(std::count(namespaces.begin(), namespaces.end(), one), 1) << one.first;
  }
  EXPECT_EQ(photo.GetNamespace("w"), "http://example.com/w/");
  EXPECT_EQ(photo.GetPrefix("http://example.com/w/"), "w");
  EXPECT_EQ(photo.GetNamespace("tiff"), kTiff);
  EXPECT_EQ(photo.GetPrefix("http://example.com/nobody/"), std::nullopt);
  photo.Remove("");
  photo.Remove(kDc);
  EXPECT_TRUE(photo.Properties(kDc).empty());
  EXPECT_TRUE(photo.Has(kTiff, "Make"));
  photo.Remove();
  EXPECT_TRUE(photo.IsEqual(XmpObject().Xmp()));
}

TEST_F(XmpTest, WarningsTellTheLossesOfAPacket) {
  const XmpObject object;
  object.Xmp().Parse(R"(<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description xmlns:xmp="http://ns.adobe.com/xap/1.0/"><xmp:Label>kept</xmp:Label>
  <xmp:Nickname rdf:parseType="Literal"><b/></xmp:Nickname></rdf:Description></rdf:RDF>)");
  EXPECT_EQ(Get(object.Xmp(), kXmp, "Label"), "kept");
  const std::vector<XmpWarning> warnings = object.Xmp().Warnings();
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_EQ(warnings[0].line, 3U);
  EXPECT_EQ(warnings[0].column, 3U);
  EXPECT_NE(warnings[0].text, "");
  std::uint32_t kept = 0;
  std::uint32_t total = 0;
  EXPECT_EQ(LxXmpCountWarnings(object.Xmp().object(), &kept, &total), LX_XMP_OK);
  EXPECT_EQ(total, 1U);
  LxXmpText text;
  EXPECT_EQ(LxXmpGetWarning(object.Xmp().object(), 1, nullptr, nullptr, &text), LX_XMP_NOT_FOUND);

  EXPECT_THROW(object.Xmp().Parse(R"(<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"><rdf:Description
      xmlns:xmp="http://ns.adobe.com/xap/1.0/"><xmp:Rating>5</xmp:Rating><xmp:Broken)"),
               XmpError);
  EXPECT_EQ(Get(object.Xmp(), kXmp, "Rating"), "5") << "complete before the fault";
}

TEST_F(XmpTest, TheOutcomeOfReadingIsToldAndMemoryReadsAsAFileDoes) {
  const lxtest::Bytes photo = JpegBuilder().App1Exif(TiffBuilder(lxtest::kBig).Ifd0({Ascii(0x010F, "Canon")}));
  const std::string text = "no picture at all";
  const struct {
    const char* what;
    lxtest::Bytes bytes;
    LxXmpReading reading;
  } kFiles[] = {
      {"a photograph", photo, LX_XMP_READ_WHOLE},
      {"an image without metadata", JpegBuilder().Eoi(), LX_XMP_READ_NO_METADATA},
      {"nothing", {}, LX_XMP_READ_NO_IMAGE},
      {"a document of a known kind", lxtest::Text("%PDF-1.7\n%\xE2\xE3\xCF\xD3\n1 0 obj"), LX_XMP_READ_NO_IMAGE},
      {"a text", lxtest::Bytes(text.begin(), text.end()), LX_XMP_READ_NO_IMAGE},
      {"half a photograph", lxtest::Bytes(photo.begin(), photo.begin() + 20), LX_XMP_READ_DAMAGED},
  };
  for (const auto& c : kFiles) {
    const TempFile file(c.bytes);
    const Interchange onDisk(file.path());
    const Interchange inMemory(c.bytes.data(), c.bytes.size());
    EXPECT_EQ(onDisk.Reading(), c.reading) << c.what << ": " << LxXmpReadingText(onDisk.Reading());
    EXPECT_EQ(inMemory.Reading(), c.reading) << c.what << " in memory";
    EXPECT_EQ(inMemory.Xmp().Serialize(), onDisk.Xmp().Serialize()) << c.what;
  }
  const TempFile file(photo);
  const std::string fifo = file.path() + ".fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  std::int32_t error = 0;
  EXPECT_EQ(Interchange("/nowhere/at all.jpg").Reading(&error), LX_XMP_READ_NOT_FOUND);
  EXPECT_EQ(error, ENOENT);
  EXPECT_EQ(Interchange(file.path() + "/below").Reading(), LX_XMP_READ_NOT_FOUND);
  EXPECT_EQ(Interchange("/").Reading(), LX_XMP_READ_IS_DIRECTORY);
  EXPECT_EQ(Interchange("/dev/null").Reading(), LX_XMP_READ_NO_FILE);
  EXPECT_EQ(Interchange(fifo).Reading(), LX_XMP_READ_NO_FILE) << "at once: nobody writes into it";
  EXPECT_EQ(Interchange("/proc/self/mem").Reading(), LX_XMP_READ_BROKEN) << "its first page is nobody's";
  unlink(fifo.c_str());
  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none = {0, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_EQ(Interchange(file.path()).Reading(), LX_XMP_READ_NO_DESCRIPTORS);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  ASSERT_EQ(chmod(file.path().c_str(), 0), 0);
  const uid_t user = geteuid();
  if (user != 0 || seteuid(65534) == 0) {
    EXPECT_EQ(Interchange(file.path()).Reading(), LX_XMP_READ_PERMISSION_DENIED);
    ASSERT_EQ(seteuid(user), 0);
  }
  LxInterchangeHandle handle = nullptr;
  EXPECT_EQ(LxXmpOpenMemory(nullptr, 1, &handle), LX_XMP_BAD_ARGUMENT);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Get(Interchange(photo.data(), photo.size()).Xmp(), kTiff, "Make"), "Canon");
    ReleaseThreadMemory();
  }
  const HostSession session;
  library_.reset();
  EXPECT_EQ(LxXmpReleaseThreadMemory(), LX_XMP_UNAVAILABLE);
  EXPECT_EQ(LxXmpOpenMemory(photo.data(), photo.size(), &handle), LX_XMP_UNAVAILABLE);
  EXPECT_EQ(handle, nullptr);
}

TEST_F(XmpTest, RefusalsAreRaisedAndLeaveTheObjectWhole) {
  XmpView xmp = OpenPhoto();
  const std::vector<std::string> before = Lines(xmp);
  const struct {
    const char* what;
    LxXmpStatus status;
    void (*call)(XmpView* view);
  } kCases[] = {
      {"a name that is none", LX_XMP_REFUSED, [](XmpView* view) { view->Set(kXmp, "no name", "x"); }},
      {"an unknown namespace", LX_XMP_REFUSED,
       [](XmpView* view) { view->Set("http://example.com/unknown/", "a", "x"); }},
      {"an item of no array", LX_XMP_REFUSED, [](XmpView* view) { view->Append(kTiff, "Make", LX_XMP_ARRAY, "x"); }},
      {"an array of no form", LX_XMP_REFUSED, [](XmpView* view) { view->Append(kXmp, "Label", 0, "x"); }},
      {"a text for an array", LX_XMP_REFUSED, [](XmpView* view) { view->Set(kDc, "subject", "x"); }},
      {"no language", LX_XMP_REFUSED, [](XmpView* view) { view->SetLocalizedText(kDc, "title", "", "?", "x"); }},
      {"an exact length that is too short", LX_XMP_REFUSED,
       [](XmpView* view) { (void)view->Serialize(LX_XMP_EXACT_LENGTH, 10); }},
      {"a change from within a walk", LX_XMP_REFUSED,
       [](XmpView* view) { view->Visit([&](const LxXmpNode&) { view->Delete(kDc, "creator"); }); }},
      {"a null value without a form", LX_XMP_BAD_ARGUMENT,
       [](XmpView* view) { view->Set(kXmp, "Rating", static_cast<const char*>(nullptr)); }},
      {"a null namespace", LX_XMP_BAD_ARGUMENT, [](XmpView* view) { view->Delete(nullptr, "a"); }},
      {"a null path", LX_XMP_BAD_ARGUMENT, [](XmpView* view) { (void)view->Get(kDc, nullptr); }},
      {"no object", LX_XMP_BAD_ARGUMENT, [](XmpView*) { (void)XmpView(nullptr).Serialize(); }},
      {"no prefix", LX_XMP_BAD_ARGUMENT, [](XmpView*) { (void)NamespaceOfPrefix(nullptr); }},
      {"a namespace without URI", LX_XMP_REFUSED, [](XmpView*) { (void)RegisterNamespace("", "none"); }},
      {"an item far beyond the array", LX_XMP_REFUSED, [](XmpView* view) { view->SetItem(kDc, "subject", 9, "x"); }},
      {"the count of no array", LX_XMP_REFUSED, [](XmpView* view) { (void)view->CountItems(kTiff, "Make"); }},
      {"a field of no structure", LX_XMP_REFUSED,
       [](XmpView* view) { view->SetField(kTiff, "Make", kXmp, "Rating", "1"); }},
      {"a text that is no date", LX_XMP_REFUSED, [](XmpView* view) { (void)view->GetDate(kTiff, "Make"); }},
      {"a text that is no number", LX_XMP_REFUSED, [](XmpView* view) { (void)view->GetInteger(kExif, "FNumber"); }},
      {"a date that is none", LX_XMP_REFUSED, [](XmpView* view) { view->SetDate(kXmp, "ModifyDate", {}); }},
      {"no packet", LX_XMP_REFUSED, [](XmpView* view) { view->Parse("<a"); }},
      {"unknown options", LX_XMP_REFUSED, [](XmpView* view) { view->Merge(XmpObject().Xmp(), 0x80); }},
      {"a merge of nothing", LX_XMP_BAD_ARGUMENT, [](XmpView* view) { view->Merge(XmpView(nullptr)); }},
  };
  for (const auto& c : kCases) {
    try {
      c.call(&xmp);
      ADD_FAILURE() << c.what << " is taken";
    } catch (const XmpError& error) {
      EXPECT_EQ(error.status(), c.status) << c.what << ": " << error.what();
      EXPECT_STRNE(error.what(), "") << c.what;
      EXPECT_STREQ(error.what(), LxXmpLastMessage()) << c.what;
      EXPECT_EQ(LxXmpLastError(), c.status) << c.what;
    }
    EXPECT_EQ(Lines(xmp), before) << c.what;
  }
  const std::string kept = LxXmpLastMessage();
  EXPECT_FALSE(xmp.Has(kTiff, "Model"));
  EXPECT_EQ(LxXmpLastMessage(), kept) << "a missing property is no failure";
}

// The toolkit quotes the name that it refuses.
TEST_F(XmpTest, AMessageIsOneLineOfWholeCharactersForATerminal) {
  XmpView xmp = Open({});
  const auto messageFor = [&](const std::string& name) {
    EXPECT_THROW(xmp.Set(kXmp, name.c_str(), "x"), XmpError);
    return std::string(LxXmpLastMessage());
  };
  const std::string quoted =
      messageFor("a \n\x1B\x7F\xC2\x9B\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA5\xE2\x81\xA6 \xD8\x9C\xE2\x82\xAC");
  EXPECT_EQ(quoted.find_first_of("\n\x1B\x7F"), std::string::npos) << quoted;
  for (const char* character : {"\xC2\x9B", "\xE2\x80\xA8", "\xE2\x80\xAE", "\xE2\x81\xA6", "\xD8\x9C"}) {
    EXPECT_EQ(quoted.find(character), std::string::npos) << quoted;
  }
  EXPECT_NE(quoted.find("\xE2\x81\xA5"), std::string::npos) << quoted;
  EXPECT_NE(quoted.find("\xE2\x82\xAC"), std::string::npos) << quoted;
  for (std::size_t shift = 0; shift < 4; ++shift) {
    std::string name(shift, ' ');
    while (name.size() < 600) name += "\xF0\x9F\x93\xB7";
    const std::string message = messageFor(name);
    EXPECT_GE(message.size(), 508U);
    EXPECT_LE(message.size(), 511U);
    EXPECT_EQ(message.substr(message.size() - 4), "\xF0\x9F\x93\xB7") << "shift " << shift;
  }
}

TEST_F(XmpTest, ThreadsDoNotSeeEachOthersTextsAndFailures) {
  const XmpView xmp = OpenPhoto();
  LxXmpText ours;
  ASSERT_EQ(LxXmpGet(xmp.object(), kTiff, "Make", &ours, nullptr), LX_XMP_OK);
  ASSERT_EQ(LxXmpNew(nullptr), LX_XMP_BAD_ARGUMENT);
  const std::string message = LxXmpLastMessage();
  std::thread([&] {
    EXPECT_EQ(LxXmpLastError(), LX_XMP_OK);
    EXPECT_STREQ(LxXmpLastMessage(), "");
    LxXmpText theirs;
    EXPECT_EQ(LxXmpGet(xmp.object(), kDc, "creator[1]", &theirs, nullptr), LX_XMP_OK);
    EXPECT_STREQ(ours.bytes, "Canon");
    EXPECT_EQ(LxXmpGet(xmp.object(), kTiff, "Make[", nullptr, nullptr), LX_XMP_NOT_FOUND);
    EXPECT_EQ(LxXmpSet(xmp.object(), kTiff, "no name", "x", 0), LX_XMP_REFUSED);
  }).join();
  EXPECT_STREQ(ours.bytes, "Canon");
  EXPECT_EQ(LxXmpLastMessage(), message);
}

// A damaged packet whose prefixes clash with those of other rounds, changes, a refusal, a namespace of the host's.
std::string WorkOf(int round) {
  const std::string uri = "http://" + std::to_string(round % 7) + ".example/";
  const std::string packet = "<rdf:RDF><rdf:Description xmlns:p='" + uri + "' p:a='" + std::to_string(round) +
                             "' dc:format='f'><q:b xmlns:q='" + uri +
                             "b'/><p:c xmlns:p='http://c.example/'/><none:d/></rdf:Description>" +
                             (round % 3 != 0 ? "</rdf:RDF>" : "</cut>");
  const XmpObject object;
  XmpView xmp = object.Xmp();
  (void)LxXmpParse(xmp.object(), packet.data(), packet.size());
  (void)LxXmpSet(xmp.object(), kTiff, "no name", "x", 0);
  xmp.SetDate(kXmp, "CreateDate", {2004, 3, 15 + round % 9, 1, 2, 3, 0, 0, 0, 0});
  const std::string prefix = RegisterNamespace("http://client.example/", "client");
  xmp.SetField(kDc, ("s" + std::to_string(round)).c_str(), "http://client.example/", "f", prefix.c_str());
  return xmp.Serialize() + std::to_string(xmp.Warnings().size());
}

TEST_F(XmpTest, ThreadsGetTheResultsThatTheyGetAloneAndLeaveNothing) {
  constexpr int kRounds = 200;
  std::vector<std::string> alone;
  for (int round = 0; round < kRounds; ++round) alone.push_back(WorkOf(round));
  std::atomic<int> differing = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([&, number] {
      for (int round = number; round < number + kRounds; ++round) {
        if (WorkOf(round % kRounds) != alone[static_cast<std::size_t>(round % kRounds)]) ++differing;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(differing, 0);
  const auto bytesAfter = [](int count) {
    for (int number = 0; number < count; ++number) std::thread([number] { (void)WorkOf(number); }).join();
    return mallinfo2().uordblks;
  };
  const std::size_t before = bytesAfter(100);
  EXPECT_LT(bytesAfter(1000), before + 1000);
}

TEST_F(XmpTest, AWalkGoesWhereTheVisitorSays) {
  const XmpView xmp = OpenPhoto();
  const auto walk = [&](auto next, const char* ns = nullptr, const char* path = nullptr) {
    std::string seen;
    xmp.Visit(
        [&](const LxXmpNode& node) {
          seen += std::to_string(node.depth) + (node.depth == 0 ? node.prefix : node.name) + ' ';
          return next(node);
        },
        ns, path);
    return seen;
  };
  const auto on = [](const LxXmpNode&) { return LX_XMP_GO_ON; };
  EXPECT_EQ(walk(on, kDc), "0dc 1subject 2 2 1creator 2 1title 2 3lang 2 3lang ");
  EXPECT_EQ(walk(on, kDc, "title[2]"), "1 2lang ");
  EXPECT_EQ(walk(on, kDc, "nothing"), "");
  EXPECT_EQ(walk([](const LxXmpNode& node) { return node.depth == 1 ? LX_XMP_PASS_OVER : LX_XMP_GO_ON; }, kDc),
            "0dc 1subject 1creator 1title ");
  EXPECT_EQ(walk([](const LxXmpNode& node) { return node.depth == 1 ? LX_XMP_END : LX_XMP_GO_ON; }), "0dc 1subject ");
  // A visitor may read, and its exceptions come out of the walk.
  xmp.Visit([&](const LxXmpNode& node) {
    if (node.depth != 1) return;
    EXPECT_EQ(Get(xmp, node.namespaceUri, node.name), std::string(node.value.bytes));
  });
  EXPECT_THROW(xmp.Visit([](const LxXmpNode&) { throw std::out_of_range("enough"); }), std::out_of_range);
  EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon");
}

// A tree as deep and as wide as a packet may make it: nothing is lost, and nodes that were added before stay in place.
TEST_F(XmpTest, LargeTreesAreGatheredWhole) {
  XmpView xmp = Open({});
  constexpr int kItems = 1000;
  for (int i = 0; i < kItems; ++i) xmp.Append(kDc, "subject", LX_XMP_ARRAY, std::to_string(i).c_str());
  std::string path = "Nested";
  for (int i = 0; i < 20; ++i) path += "/xmp:Nested";
  xmp.Set(kXmp, path.c_str(), "deep");  // Makes the missing structures.
  const std::vector<XmpNode> nodes = xmp.Properties();
  ASSERT_EQ(nodes.size(), 2U);
  ASSERT_EQ(nodes[0].children.size(), static_cast<std::size_t>(kItems));
  for (std::size_t i = 0; i < kItems; ++i) EXPECT_EQ(nodes[0].children[i].value, std::to_string(i));
  const XmpNode* node = &nodes[1];
  while (node->children.size() == 1) node = &node->children[0];
  EXPECT_EQ(node->value, "deep");
}

TEST_F(XmpTest, TextsOfAnyLengthAreGivenWholeOneAfterTheOther) {
  XmpView xmp = Open({});
  const std::string large(3 << 20, 'x');  // Too long to be kept for the next text.
  xmp.Set(kXmp, "Label", large);
  EXPECT_EQ(Get(xmp, kXmp, "Label"), large);
  LxXmpText text;
  ASSERT_EQ(LxXmpNamespaceOfPrefix("tiff", &text), LX_XMP_OK);
  EXPECT_STREQ(text.bytes, kTiff);
  ASSERT_EQ(LxXmpPrefixOfNamespace(kExif, &text), LX_XMP_OK);
  EXPECT_STREQ(text.bytes, "exif");
  EXPECT_EQ(text.length, 4U);
  EXPECT_EQ(NamespaceOfPrefix("nobody"), std::nullopt);
}

TEST_F(XmpTest, SessionsNestAndOneCanFollowAnother) {
  const XmpView xmp = OpenPhoto();
  {
    const HostSession inner;
    EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon");
  }
  EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon") << "the outer session still stands";
  LxXmpStop();
  LxXmpText text;
  EXPECT_EQ(LxXmpGet(xmp.object(), kTiff, "Make", &text, nullptr), LX_XMP_NO_SESSION);
  EXPECT_THROW((void)xmp.Properties(), XmpError);
  LxXmpStop();  // One too many.
  ASSERT_EQ(LxXmpStart(), LX_XMP_OK);
  EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon") << "the library kept its object alive in between";
}

TEST_F(XmpTest, TheHostsSessionAndTheLibraryStopWithoutEachOther) {
  const HostSession session;
  library_.reset();
  EXPECT_EQ(NamespaceOfPrefix("tiff"), kTiff);
  EXPECT_THROW(Interchange("photo.jpg"), XmpError) << "the library is not started";
  library_.emplace();
  Interchange first("no such file");
  EXPECT_TRUE(first.Xmp().Properties().empty());
  Interchange second = std::move(first);
  second.Xmp().Set(kXmp, "Rating", "3");
  EXPECT_EQ(Get(second.Xmp(), kXmp, "Rating"), "3");
  EXPECT_EQ(LxXmpVersion() >> 16, LX_XMP_VERSION >> 16);
}

}  // namespace
}  // namespace lxbridge
