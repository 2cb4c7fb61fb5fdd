// Values by name: flat JSON, tables, lists of fields, side-cars, and which files of a folder are taken.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"
#include "tests/tools/run_command.h"
#include "tools/json/plain_value.h"
#include "tools/lxbridge/name_filter.h"

namespace lxtest {
namespace {

using lxbridge::json::FieldType;

std::string Packet(const std::string& description) {
  return R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description rdf:about="" xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:own="http://ns.adobe.com/xap/1.0/"
 xmlns:file="http://x.example/f/" xmlns:image="http://x.example/i/" )" +
         description + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

Bytes Photo() {
  const TiffEntries gps = {Ascii(1, "S"), Ratl(2, {33, 1, 30, 1, 0, 1}), Ascii(3, "E"),
                           Ratl(4, {151, 1, 125, 10, 0, 1})};
  return JpegBuilder()
      .App1Xmp(Packet(R"(own:Label="say &quot;a&quot;" own:Rating="4" file:size="s" image:odd="=1+1">
<dc:subject><rdf:Bag><rdf:li>one</rdf:li><rdf:li>two, three</rdf:li></rdf:Bag></dc:subject>
<dc:title><rdf:Alt><rdf:li xml:lang="x-default">Pier</rdf:li><rdf:li xml:lang="de">Steg</rdf:li></rdf:Alt></dc:title>
<dc:rights><rdf:Alt><rdf:li>A</rdf:li><rdf:li>B</rdf:li></rdf:Alt></dc:rights>
<dc:source rdf:parseType="Resource"><rdf:value>s</rdf:value><own:kind>scan</own:kind></dc:source>)"))
      .App1Exif(TiffBuilder(kBig)
                    .Ifd0({Ascii(0x010F, "Canon"), Short(0x0112, 6)})
                    .Exif({Ratl(0x829A, 1, 250), Ratl(0x829D, 1, 0), Short(0x8827, {100, 200}), Short(0x9209, 1)})
                    .Gps(gps));
}

TEST(Flat, HasAMemberForEachPropertyAndNumbersWhenAsked) {
  const TempFolder folder;
  const std::string path = folder.Add("a.jpg", Photo());
  const auto flat = [&](const std::vector<std::string>& options) {
    const Outcome outcome = Lxbridge(With(With({"--format", "flat"}, options), {path}));
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(Lines(outcome.out).size(), 1U);
    OrderedJson line = OrderedJson::parse(outcome.out);
    EXPECT_EQ(line.begin().key(), "file");
    line.erase("file");
    return line.dump();
  };
  const std::string packet =
      R"("dc:subject":["one","two, three"],"dc:title":{"x-default":"Pier","de":"Steg"},"dc:rights":["A","B"],"dc:source":)";
  const std::string start = R"({"xmp:Label":"say \"a\"","xmp:Rating":)",
                    image = R"(,"{http://x.example/f/}size":"s","image:odd":"=1+1",)";
  EXPECT_EQ(
      flat({}),
      start + R"("4")" + image + packet +
          R"("s","tiff:Make":"Canon","tiff:Orientation":"6",)"
          R"("exif:GPSLatitude":"033,30,00S","exif:GPSLongitude":"151,12.5E","exif:ExposureTime":"1/250",)"
          R"("exif:FNumber":"1/0","exif:ISOSpeedRatings":["100","200"],"exif:Flash":{"Fired":"True","Return":"0",)"
          R"("Mode":"0","Function":"False","RedEyeMode":"False"}})");
  EXPECT_EQ(flat({"--decimal", "--qualifiers"}),
            start + "4" + image + packet +
                R"({"value":"s","qualifiers":{"xmp:kind":"scan"}},"tiff:Make":"Canon","tiff:Orientation":6,)"
                R"("exif:GPSLatitude":-33.5,"exif:GPSLongitude":151.20833333333334,"exif:ExposureTime":0.004,)"
                R"("exif:FNumber":"1/0","exif:ISOSpeedRatings":[100,200],"exif:Flash":{"Fired":true,"Return":0,)"
                R"("Mode":0,"Function":false,"RedEyeMode":false}})");
  // Chosen members, in the order of the choice and each once.
  EXPECT_EQ(flat({"--fields", "exif:Flash/exif:Fired,tiff:*,dc:title,tiff:Make,image:width,dc:date", "--decimal"}),
            R"({"exif:Flash/exif:Fired":true,"tiff:Orientation":6,"dc:title":{"x-default":"Pier","de":"Steg"},)"
            R"("tiff:Make":"Canon","image:width":64})");
  EXPECT_EQ(Lxbridge({"--format=flat", "--fields=all,tiff:*,all", path}).out,
            Lxbridge({"--format=flat", "--fields=all", path}).out);
  EXPECT_EQ(flat({"--fields", "f:size,tiff:Make", "--namespace", "f=http://x.example/f/"}),
            R"({"f:size":"s","tiff:Make":"Canon"})");
  const OrderedJson facts = OrderedJson::parse(flat({"--facts"}));
  EXPECT_EQ(facts["file:size"], Photo().size());
  EXPECT_EQ(facts["file:modified"].get<std::string>().size(), std::string("2024-06-21T16:30:05Z").size());
  EXPECT_EQ(facts["file:kind"].get<std::string>() + facts["image:orientation"].get<std::string>(), "jpegrot90cw");
  EXPECT_EQ(facts["image:height"], 48);
  EXPECT_EQ(facts["tiff:Make"], "Canon");
  folder.Add("low.tif", TiffBuilder(kBig).Ifd0({Long(0x0100, 5), Long(0x0101, 0)}));  // No size without a height.
  EXPECT_EQ(Lxbridge({"--format=csv", "--fields=image:width", "low.tif"}, {.folder = folder.path()}).out,
            "low.tif,\r\n");
  const Outcome pretty = Lxbridge({"--format=flat", "--fields=dc:title", "--pretty", path});
  EXPECT_EQ(pretty.out, "{\n  \"file\": \"" + path +
                            "\",\n  \"dc:title\": {\n    \"x-default\": \"Pier\",\n    \"de\": \"Steg\"\n  }\n}\n");
}

TEST(PlainValue, TextsThatAreNoSuchValueStay) {
  const struct {
    FieldType type;
    const char* text;
    const char* value;  // "": none.
  } kCases[] = {
      {FieldType::kInteger, "-7", "-7"},
      {FieldType::kInteger, "007", "7"},
      {FieldType::kInteger, "7 ", ""},
      {FieldType::kInteger, "99999999999999999999", ""},
      {FieldType::kInteger, "", ""},
      {FieldType::kText, "7", ""},
      {FieldType::kReal, "2.50", "2.5"},
      {FieldType::kReal, "nan", ""},
      {FieldType::kReal, "inf", ""},
      {FieldType::kReal, "1e999", ""},
      {FieldType::kRational, "1/3", "0.3333333333333333"},
      {FieldType::kRational, "-1/4", "-0.25"},
      {FieldType::kRational, "0/-5", "0"},
      {FieldType::kRational, "4294967295/1", "4294967295"},
      {FieldType::kRational, "0/0", ""},
      {FieldType::kRational, "5", ""},
      {FieldType::kRational, "1/2/3", ""},
      {FieldType::kBoolean, "True", "true"},
      {FieldType::kBoolean, "False", "false"},
      {FieldType::kBoolean, "yes", ""},
      {FieldType::kCoordinate, "037,46.50N", "37.775"},
      {FieldType::kCoordinate, "122,25,30W", "-122.425"},
      {FieldType::kCoordinate, "90,0,0S", "-90"},
      {FieldType::kCoordinate, "90,0,1S", ""},
      {FieldType::kCoordinate, "180,0.0E", "180"},
      {FieldType::kCoordinate, "0,0.0S", "0"},
      {FieldType::kCoordinate, "45,30.03N", "45.5005"},
      {FieldType::kCoordinate, "1,2.1234567899N", "1.0353909464833333"},
      {FieldType::kCoordinate, "12,60.0N", ""},
      {FieldType::kCoordinate, "12,3,60N", ""},
      {FieldType::kCoordinate, "12,60,0N", ""},
      {FieldType::kCoordinate, "12,3,4", ""},
      {FieldType::kCoordinate, "12N", ""},
      {FieldType::kCoordinate, "12,nanN", ""},
      {FieldType::kCoordinate, "-1,0.0N", ""},
      {FieldType::kCoordinate, "", ""},
  };
  for (const auto& c : kCases) {
    std::string out;
    EXPECT_EQ(lxbridge::json::AppendPlainValue(c.text, c.type, &out), *c.value != '\0') << c.text;
    EXPECT_EQ(out, c.value) << c.text;
  }
}

TEST(Tables, CellsAreQuotedArraysJoinedAndMissingValuesEmpty) {
  const TempFolder folder;
  folder.Add("a,b.jpg", Photo());
  folder.Add("c\rd.jpg", JpegBuilder());
  const Surroundings there = {.folder = folder.path()};
  // A file may give a namespace any prefix.
  const std::string fields = "dc:subject,xmp:Label,dc:none,exif:Flash/exif:Fired,exif:ExposureTime,image:height";
  const Outcome csv = Lxbridge(
      {"--format=csv", "-j2", "--header", "--decimal", "--fields", fields + ",tiff:Maek", "a,b.jpg", "c\rd.jpg"},
      there);
  EXPECT_EQ(csv.out, "file," + fields +
                         ",tiff:Maek\r\n\"a,b.jpg\",\"one; two, three\",\"say \"\"a\"\"\",,true,0.004,48,\r\n"
                         "\"c\rd.jpg\",,,,,,48,\r\n");
  EXPECT_EQ(csv.err, "lxbridge: no file has dc:none\nlxbridge: no file has tiff:Maek; did you mean tiff:Make?\n");
  const Outcome tsv =
      Lxbridge({"--format", "tsv", "--separator", "|", "--fields", "dc:subject,exif:Flash", "a,b.jpg"}, there);
  EXPECT_EQ(tsv.out.substr(0, 41), "a,b.jpg\tone|two, three\texif:Fired=True|ex");
  const Outcome all = Lxbridge({"--format=tsv", "--header", "--fields", "file:*,dc:*", "a,b.jpg"}, there);
  EXPECT_TRUE(all.out.starts_with("file\tfile:size\tfile:modified\tfile:kind\tdc:contributor\t")) << all.out;
  const struct {
    const char* fields;
    const char* error;
  } kErrors[] = {
      {"tiff:Make,nope:Make", "unknown prefix 'nope'; name its namespace with '--namespace'"},
      {"tif:Make", "unknown prefix 'tif'; did you mean 'tiff'?"},
      {"xmpBJ:*", "no names of 'xmpBJ:*' are known; give them one by one"},
  };
  for (const auto& c : kErrors) {
    const Outcome outcome = Lxbridge({"--format=csv", "--fields", c.fields, "a,b.jpg"}, there);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, std::string("lxbridge: ") + c.error + "\nTry 'lxbridge --help' for more information.\n");
  }
}

TEST(Fields, AreCountedOverTheFilesOfAllWorkers) {
  const TempFolder folder;
  for (int i = 0; i < 40; ++i)
    folder.Add(std::to_string(i) + ".jpg",
               i % 4 == 0 ? Photo() : Bytes(JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({Ascii(0x010F, "\n")}))));
  const Outcome one = Lxbridge({"fields", "-rj1", folder.path()});
  EXPECT_EQ(one.err, "");
  const std::vector<std::string> lines = Lines(one.out);
  EXPECT_EQ(lines.size(), 21U) << one.out;
  EXPECT_NE(one.out.find("\n10  exif:Flash/exif:Fired       boolean           True\n"), std::string::npos) << one.out;
  EXPECT_NE(one.out.find("\n10  exif:Flash/exif:Mode        integer           0\n"), std::string::npos) << one.out;
  EXPECT_EQ(Lxbridge({"fields", "-rj3", folder.path()}).out, one.out);
  const Outcome json = Lxbridge({"fields", "--format=json", folder.path() + "/1.jpg"});
  EXPECT_EQ(json.out, R"({"name": "tiff:Make", "files": 1, "type": "text", "example": "\n"})"
                      "\n");
  const std::string list = Lxbridge({"fields"}).out;
  EXPECT_NE(list.find(" EXIF 0x829A ExposureTime "), std::string::npos) << list;
  EXPECT_NE(list.find(" IPTC 2:80 ByLine "), std::string::npos) << list;
  // A table takes every name of the built-in list.
  std::string names;
  for (const std::string& line : Lines(Lxbridge({"fields", "--format", "json"}).out))
    names += "," + OrderedJson::parse(line)["name"].get<std::string>();
  EXPECT_EQ(Lxbridge({"--format=csv", "--fields", names.substr(1), folder.path() + "/1.jpg"}).err, "");
}

TEST(SideCars, AreWrittenWholeAndReplaceNothingUnasked) {
  const TempFolder folder;
  ASSERT_EQ(::mkdir((folder.path() + "/d").c_str(), 0700), 0);
  folder.Add("d/a.jpg", Photo());
  folder.Add("b.jpg", Photo());
  folder.Add("b.jpg.xmp", Text("mine"));
  const Surroundings there = {.asNobody = false, .folder = folder.path()};
  const auto content = [&](const std::string& name) { return AsText(ReadWholeFile(folder.path() + "/" + name)); };
  const std::string packet = Lxbridge({"b.jpg"}, there).out;
  Outcome outcome = Lxbridge({"-rj2", "--sidecar", "."}, there);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "lxbridge: ./b.jpg: ./b.jpg.xmp exists\n");
  EXPECT_EQ(content("b.jpg.xmp"), "mine");
  EXPECT_EQ(content("d/a.jpg.xmp") + "\n", packet);
  outcome = Lxbridge({"-r", "--sidecar", "--overwrite", "."}, there);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(content("b.jpg.xmp") + "\n", packet);
  EXPECT_FALSE(std::filesystem::exists(folder.path() + "/d/a.jpg.xmp.xmp")) << "a side-car has none of its own";
  // The same tree elsewhere, whatever way leads to the files.
  outcome = Lxbridge({"--output", "out/x", "../" + folder.path().substr(folder.path().rfind('/') + 1) + "/d/a.jpg",
                      "./b.jpg", "d/../d/a.jpg"},
                     there);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(content("out/x/d/a.jpg.xmp") + content("out/x/b.jpg.xmp"), content("d/a.jpg.xmp") + content("b.jpg.xmp"));
  ASSERT_EQ(::mkdir((folder.path() + "/c.jpg.xmp").c_str(), 0700), 0);
  folder.Add("c.jpg", Photo());
  outcome = Lxbridge({"--sidecar", "--overwrite", "c.jpg", "-"},
                     {.input = folder.path() + "/c.jpg", .folder = folder.path()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "lxbridge: c.jpg: c.jpg.xmp: Is a directory\nlxbridge: standard input: has no side-car\n");
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
    EXPECT_EQ(entry.path().string().find(".tmp"), std::string::npos) << "a temporary file stays: " << entry.path();
  }
}

TEST(Walks, AreSortedAndFilteredByName) {
  const TempFolder folder;
  for (const char* name : {"a", "a/b", "c"}) ASSERT_EQ(::mkdir((folder.path() + "/" + name).c_str(), 0700), 0);
  for (const char* name : {"a/b/1.jpg", "a/2.JPG", "a.jpg", "a-b.tif", "c/3.jpeg", "b.jpg"}) folder.Add(name, Photo());
  const auto walked = [&](const std::vector<std::string>& options) {
    std::string names;
    for (const std::string& line :
         Lines(Lxbridge(With(With({"-rj2", "--sort", "--format=tsv", "--fields=file:kind"}, options), {"."}),
                        {.folder = folder.path()})
                   .out)) {
      names += line.substr(2, line.find('\t') - 2) + " ";
    }
    return names;
  };
  EXPECT_EQ(walked({}), "a-b.tif a.jpg a/2.JPG a/b/1.jpg b.jpg c/3.jpeg ");
  EXPECT_EQ(walked({"--ext", "jpg,.tif"}), "a-b.tif a.jpg a/2.JPG a/b/1.jpg b.jpg ");
  EXPECT_EQ(walked({"--include", "[ab].*", "--include", "?.jpeg"}), "a.jpg b.jpg c/3.jpeg ");
  EXPECT_EQ(walked({"--exclude", "b", "--exclude", "./c/**"}), "a-b.tif a.jpg a/2.JPG b.jpg ");

  const struct {
    const char* pattern;
    const char* text;
    bool matches;
  } kGlobs[] = {
      {"", "", true},
      {"*", "", true},
      {"*", "a/b", false},
      {"**", "a/b", true},
      {"a*c", "abbc", true},
      {"a*c", "abcd", false},
      {"**/x", "x", true},
      {"**/x", "a/b/x", true},
      {"**/x", "ax", false},
      {"a/**/b", "a/b", true},
      {"a/**/b", "a/c/d/b", true},
      {"a/**/b", "a/cb", false},
      {"?", "\xC3\xA9", true},
      {"?", "\xE9", true},
      {"?", "/", false},
      {"[!a-c]", "d", true},
      {"[!a-c]", "b", false},
      {"[]x]", "]", true},
      {"[a-]", "-", true},
      {"[", "[", true},
      {"[!/]", "/", false},
      {"*a*a*a*a*a*a*a*b", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", false},
  };
  for (const auto& c : kGlobs)
    EXPECT_EQ(lxbridge::command::Glob(c.pattern).Matches(c.text), c.matches) << c.pattern << " " << c.text;
}

TEST(Errors, StandAtTheFilesPlaceInTheOutput) {
  const TempFolder folder;
  folder.Add("a.jpg", JpegBuilder());
  for (const char* workers : {"-j1", "-j2"}) {
    const Outcome outcome =
        Lxbridge({"--format=flat", "--errors", workers, "a.jpg", "no\xFF", ".", "a.jpg"}, {.folder = folder.path()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out,
              "{\"file\": \"a.jpg\"}\n{\"file\": {\"hex\": \"6e6fff\"}, \"error\": \"NotFound\"}\n"
              "{\"file\": \".\", \"error\": \"is a directory\"}\n{\"file\": \"a.jpg\"}\n");
  }
}

TEST(Colour, IsThereWhenAskedForAndTheTextIsTheSame) {
  const TempFolder folder;
  const std::string path = folder.Add("a.jpg", Photo());
  const Outcome plain = Lxbridge({"pool", "--all", path});
  Outcome outcome = Lxbridge({"pool", "--all", "--color=always", path, "none"});
  EXPECT_NE(outcome.out.find("\x1B[36mtiff\x1B[0m          \x1B[1mMake\x1B[0m"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.err, "\x1B[1mlxbridge:\x1B[0m none: NotFound\n");
  for (std::size_t at; (at = outcome.out.find('\x1B')) != std::string::npos;)
    outcome.out.erase(at, outcome.out.find('m', at) + 1 - at);
  EXPECT_EQ(outcome.out, plain.out);
  EXPECT_EQ(plain.out.find('\x1B'), std::string::npos);
}

}  // namespace
}  // namespace lxtest
