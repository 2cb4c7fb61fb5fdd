// A host's view over the object that the library hands out: reading, changing, writing, and what goes wrong.
#include "host/xmp_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_meta.h"
#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"

namespace lxbridge {
namespace {

using lxtest::Ascii;
using lxtest::JpegBuilder;
using lxtest::Ratl;
using lxtest::Short;
using lxtest::TempFile;
using lxtest::TiffBuilder;

constexpr const char kTiff[] = "http://ns.adobe.com/tiff/1.0/";
constexpr const char kExif[] = "http://ns.adobe.com/exif/1.0/";
constexpr const char kDc[] = "http://purl.org/dc/elements/1.1/";
constexpr const char kXmp[] = "http://ns.adobe.com/xap/1.0/";

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

// "Make=Canon", "subject{harbour,dusk}", "title<x-default'Pier>": names of another kind than array items are qualified.
std::string Shape(const XmpNode& node) {
  std::string shape = node.name.empty() ? "" : node.prefix + ":" + node.name + "=";
  std::string inside;
  for (const XmpNode& child : node.children) inside += (inside.empty() ? "" : ",") + Shape(child);
  shape += node.IsAlternative() ? "alt(" + inside + ")"
           : node.IsOrdered()   ? "seq(" + inside + ")"
           : node.IsArray()     ? "bag(" + inside + ")"
           : node.IsStruct()    ? "struct(" + inside + ")"
                                : node.value + inside;
  for (const XmpNode& qualifier : node.qualifiers) shape += "?" + Shape(qualifier);
  return shape;
}

std::vector<std::string> Shapes(const XmpView& xmp) {
  std::vector<std::string> shapes;
  for (const XmpNode& node : xmp.Properties()) shapes.push_back(Shape(node));
  return shapes;
}

std::string Get(const XmpView& xmp, const char* schema, const char* path) {
  std::string value = "(none)";
  (void)xmp.Get(schema, path, &value);
  return value;
}

// The library between its ends, the host's session within them, and one handle at a time.
class XmpViewTest : public testing::Test {
 protected:
  XmpViewTest() {
    EXPECT_TRUE(LxInterchangeInit());
    session_ = std::make_unique<HostSession>();
  }
  ~XmpViewTest() override {
    LxInterchangeDelete(handle_);
    session_.reset();
    LxInterchangeTerm();
  }

  XmpView Open(const lxtest::Bytes& bytes) {
    LxInterchangeDelete(handle_);
    handle_ = LxInterchangeNew(TempFile(bytes).path().c_str());
    return XmpView(LxInterchangeGetXMP(handle_));
  }
  XmpView OpenPhoto() {
    return Open(JpegBuilder().App1Xmp(kPacket).App1Exif(
        TiffBuilder(lxtest::kBig).Ifd0({Ascii(0x010F, "Canon")}).Exif({Short(0x9209, 0x19), Ratl(0x829D, 56, 10)})));
  }

  std::unique_ptr<HostSession> session_;
  LxInterchangeHandle handle_ = nullptr;
};

TEST_F(XmpViewTest, EveryFormOfNodeComesWithAllThatBelongsToIt) {
  const std::vector<std::string> kShapes = {
      "dc:subject=bag(harbour,dusk)",
      "dc:creator=seq(Ada)",
      "dc:title=alt(Pier?xml:lang=x-default,Steg?xml:lang=de)",
      "v:Scale=4?v:Unit=stars?v:Of=5",
      "v:Places=seq(struct(v:City=Oslo,v:Tags=bag(cold)),struct(v:City=Rome))",
      "tiff:Make=Canon",
      "exif:Flash=struct(exif:Fired=True,exif:Return=0,exif:Mode=3,exif:Function=False,exif:RedEyeMode=False)",
      "exif:FNumber=56/10",
  };
  const XmpView xmp = OpenPhoto();
  std::vector<std::string> shapes = Shapes(xmp);
  std::vector<std::string> expected = kShapes;
  std::sort(shapes.begin(), shapes.end());  // The order of the Exif directory's items is the conversion's.
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(shapes, expected);
  const std::vector<XmpNode> nodes = xmp.Properties();
  EXPECT_EQ(nodes[0].schema, kDc);
  EXPECT_EQ(nodes[0].children[0].schema, "") << "an item of an array has no name and so no schema";
}

TEST_F(XmpViewTest, TheSerialisedPacketHoldsTheSameObject) {
  const XmpView xmp = OpenPhoto();
  const std::string packet = xmp.Serialize();
  EXPECT_TRUE(packet.starts_with("<?xpacket begin="));
  EXPECT_NE(packet.find("<tiff:Make>Canon</tiff:Make>\n"), std::string::npos);
  EXPECT_EQ(xmp.Serialize(), packet);
  const std::string bare = xmp.Serialize(kXMPSerializeOmitWrapper);
  EXPECT_EQ(bare.find("xpacket"), std::string::npos);
  EXPECT_GE(xmp.Serialize(0, 2000).size(), packet.size() + 2000);

  XMPMetaHolder parsed;
  parsed.ParseFromBuffer(reinterpret_cast<const std::uint8_t*>(packet.data()), static_cast<std::int32_t>(packet.size()),
                         0);
  EXPECT_EQ(Shapes(XmpView(parsed.Meta())), Shapes(xmp));
}

TEST_F(XmpViewTest, ValuesAreFoundByPathAndWhatIsNotThereLeavesTheOutValues) {
  const XmpView xmp = OpenPhoto();
  EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon");
  EXPECT_EQ(Get(xmp, kDc, "subject[2]"), "dusk");
  EXPECT_EQ(Get(xmp, kDc, "title[?xml:lang=\"de\"]"), "Steg");
  EXPECT_EQ(Get(xmp, kExif, "Flash/exif:Fired"), "True");
  std::uint32_t options = 0;
  ASSERT_TRUE(xmp.Get(kDc, "title", nullptr, &options));
  EXPECT_TRUE((options & kXMPPropIsAlternate) != 0);
  options = 77;
  std::string value = "kept";
  EXPECT_FALSE(xmp.Get(kTiff, "Model", &value, &options));
  EXPECT_EQ(value, "kept");
  EXPECT_EQ(options, 77U);
}

TEST_F(XmpViewTest, WhatTheHostChangesIsInTheObjectThatTheLibraryHolds) {
  XmpView xmp = OpenPhoto();
  xmp.Set(kXmp, "Rating", "5");
  xmp.Set(kTiff, "Make", "Other");
  xmp.Append(kDc, "subject", kXMPPropIsArray, "night");
  xmp.Append(kXmp, "Identifier", kXMPPropIsArray, "first");
  xmp.SetLocalizedText(kDc, "rights", "", "x-default", "(c) Ada");
  xmp.Delete(kDc, "creator");
  xmp.Delete(kDc, "creator");
  xmp.Set(kDc, "language", nullptr, kXMPPropIsArray);

  const XmpView again(LxInterchangeGetXMP(handle_));
  EXPECT_EQ(Get(again, kXmp, "Rating"), "5");
  EXPECT_EQ(Get(again, kTiff, "Make"), "Other");
  EXPECT_EQ(Get(again, kDc, "subject[3]"), "night");
  EXPECT_EQ(Get(again, kXmp, "Identifier[1]"), "first");
  EXPECT_EQ(Get(again, kDc, "rights[1]/?xml:lang"), "x-default");
  EXPECT_FALSE(again.Get(kDc, "creator", nullptr));
  EXPECT_TRUE(again.Get(kDc, "language", nullptr));
  EXPECT_NE(again.Serialize().find("<xmp:Rating>5</xmp:Rating>"), std::string::npos);
}

TEST_F(XmpViewTest, WhatTheToolkitRefusesIsRaisedAndTheObjectStaysWhole) {
  XmpView xmp = OpenPhoto();
  const std::vector<std::string> before = Shapes(xmp);
  const struct {
    const char* what;
    void (*call)(XmpView* view);
  } kCases[] = {
      {"a name that is none", [](XmpView* view) { view->Set(kXmp, "no name", "x"); }},
      {"an unknown schema", [](XmpView* view) { view->Set("http://example.com/unknown/", "a", "x"); }},
      {"an item of no array", [](XmpView* view) { view->Append(kTiff, "Make", kXMPPropIsArray, "x"); }},
      {"a text for a structure", [](XmpView* view) { view->Set(kExif, "Flash", "x"); }},
  };
  for (const auto& c : kCases) {
    try {
      c.call(&xmp);
      ADD_FAILURE() << c.what << " is taken";
    } catch (const std::exception& error) {
      EXPECT_STRNE(error.what(), "") << c.what;
      EXPECT_NE(dynamic_cast<const TAL_T_NMT::CTALError*>(&error), nullptr) << c.what;
    }
    EXPECT_EQ(Shapes(xmp), before) << c.what;
  }
}

TEST_F(XmpViewTest, AVisitEndsWhereTheVisitorSaysSo) {
  const XmpView xmp = OpenPhoto();
  int visited = 0;
  xmp.Visit(
      [](void* user, const XMPVisitedNode* node) -> std::uint32_t {
        ++*static_cast<int*>(user);
        return node->depth == 1 ? 2 : 0;
      },
      &visited);
  EXPECT_EQ(visited, 2) << "the first schema and its first property";
}

// A tree as deep and as wide as a packet may make it: nothing is lost, and nodes that were added before stay in place.
TEST_F(XmpViewTest, LargeTreesAreGatheredWhole) {
  XmpView xmp = Open({});
  constexpr int kItems = 1000;
  for (int i = 0; i < kItems; ++i) xmp.Append(kDc, "subject", kXMPPropIsArray, std::to_string(i).c_str());
  std::string path = "Nested";
  for (int i = 0; i < 20; ++i) {
    xmp.Set(kXmp, path.c_str(), nullptr, kXMPPropIsStruct);
    path += "/xmp:Nested";
  }
  xmp.Set(kXmp, path.c_str(), "deep");
  const std::vector<XmpNode> nodes = xmp.Properties();
  ASSERT_EQ(nodes.size(), 2U);
  ASSERT_EQ(nodes[0].children.size(), static_cast<std::size_t>(kItems));
  for (int i = 0; i < kItems; ++i) {
    EXPECT_EQ(nodes[0].children[static_cast<std::size_t>(i)].value, std::to_string(i));
  }
  const XmpNode* node = &nodes[1];
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(node->children.size(), 1U) << "level " << i;
    node = &node->children[0];
  }
  EXPECT_EQ(node->value, "deep");
}

TEST_F(XmpViewTest, SessionsNestAndOneCanFollowAnother) {
  XmpView xmp = OpenPhoto();
  {
    const HostSession inner;
    EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon");
  }
  EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon") << "the outer session still stands";
  session_.reset();
  EXPECT_THROW((void)Get(xmp, kTiff, "Make"), std::logic_error);
  session_ = std::make_unique<HostSession>();
  EXPECT_EQ(Get(xmp, kTiff, "Make"), "Canon") << "the library kept its object alive in between";
}

TEST(HostSession, ServesAHostThatEndsTheLibraryFirst) {
  // The library starts and stops its own client; the host's own objects live on.
  const HostSession session;
  XMPMetaHolder own;
  ASSERT_TRUE(LxInterchangeInit());
  LxInterchangeDelete(LxInterchangeNew("no such file"));
  LxInterchangeTerm();
  XmpView(own.Meta()).Set(kXmp, "Rating", "3");
  EXPECT_EQ(Get(XmpView(own.Meta()), kXmp, "Rating"), "3");
}

}  // namespace
}  // namespace lxbridge
