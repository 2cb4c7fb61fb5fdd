// The built command from outside: its output, its messages and its exit status.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"
#include "tests/tools/run_command.h"

namespace lxtest {
namespace {

Bytes Photo(std::string_view make = "Canon") {
  return JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({Ascii(0x010F, make)}).Exif({Ratl(0x829A, 1, 250)}));
}

constexpr const char kEveryNodeForm[] = R"(<x:xmpmeta xmlns:x="adobe:ns:meta/">
<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description rdf:about="" xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:xmp="http://ns.adobe.com/xap/1.0/"
    xmlns:v="http://example.com/v/">
  <xmp:Label>less &lt; "than" &amp; more</xmp:Label>
  <dc:subject><rdf:Bag><rdf:li>harbour</rdf:li><rdf:li>Dämmerung</rdf:li></rdf:Bag></dc:subject>
  <dc:creator><rdf:Seq><rdf:li>Ada</rdf:li></rdf:Seq></dc:creator>
  <dc:title><rdf:Alt><rdf:li xml:lang="x-default">Pier</rdf:li><rdf:li xml:lang="de">Steg</rdf:li></rdf:Alt></dc:title>
  <v:Place rdf:parseType="Resource"><v:City>Oslo</v:City><v:Tags><rdf:Bag/></v:Tags></v:Place>
  <v:Scale rdf:parseType="Resource"><rdf:value>4</rdf:value><v:Unit>stars</v:Unit></v:Scale>
  <v:Home rdf:resource="http://example.com/"/>
</rdf:Description></rdf:RDF></x:xmpmeta>)";

std::string ValueOf(const OrderedJson& line, std::string_view prefix, std::string_view name) {
  for (const OrderedJson& property : line["properties"]) {
    if (property["prefix"] == prefix && property["name"] == name) return property["value"].dump();
  }
  return "(none)";
}

// --- xmp -------------------------------------------------------------------------------------------------------------

TEST(CommandXmp, EveryNodeFormHasItsJsonAndItsPlaceInThePacket) {
  const TempFolder folder;
  const TiffBuilder kTiff = TiffBuilder(kLittle).Ifd0({Ascii(0x010F, "Canon")}).Exif({Ratl(0x829A, 1, 250)});
  const std::string path = folder.Add("forms.jpg", JpegBuilder().App1Xmp(kEveryNodeForm).App1Exif(kTiff));
  const Outcome outcome = Lxbridge({"xmp", "--format", "json", path});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  const OrderedJson line = OrderedJson::parse(outcome.out);
  const struct {
    const char* prefix;
    const char* name;
    const char* value;
  } kCases[] = {
      {"xmp", "Label", R"("less < \"than\" & more")"},
      {"dc", "subject", R"({"bag":["harbour","Dämmerung"]})"},
      {"dc", "creator", R"({"seq":["Ada"]})"},
      {"dc", "title",
       R"({"alt":[{"value":"Pier","qualifiers":{"xml:lang":"x-default"}},{"value":"Steg","qualifiers":{"xml:lang":"de"}}]})"},
      {"v", "Place", R"({"struct":{"v:City":"Oslo","v:Tags":{"bag":[]}}})"},
      {"v", "Scale", R"({"value":"4","qualifiers":{"v:Unit":"stars"}})"},
      {"v", "Home", R"("http://example.com/")"},
      {"tiff", "Make", R"("Canon")"},
      {"exif", "ExposureTime", R"("1/250")"},
  };
  for (const auto& c : kCases) EXPECT_EQ(ValueOf(line, c.prefix, c.name), c.value) << c.name;
  EXPECT_EQ(line["properties"].size(), std::size(kCases));
  EXPECT_NE(outcome.out.find(R"({"schema": "http://example.com/v/", "prefix": "v", "name": "Home", "value": "http)"),
            std::string::npos);

  EXPECT_EQ(line["file"], path);
  EXPECT_EQ(line["properties"][4]["schema"], "http://example.com/v/");
  EXPECT_EQ(line["namespaces"]["v"], "http://example.com/v/");

  const Outcome packet = Lxbridge({path});
  EXPECT_EQ(packet.status, 0);
  EXPECT_EQ(packet.err, "");
  EXPECT_EQ(Lxbridge({"xmp", "--format=rdf", path}).out, packet.out);
  // A person who greps for a property finds its value after it.
  EXPECT_NE(packet.out.find("<tiff:Make>Canon</tiff:Make>\n"), std::string::npos);
}

// --- pool ------------------------------------------------------------------------------------------------------------

TEST(CommandPool, DeletedItemsAreInTheJsonAndWithAllInTheText) {
  const TempFolder folder;
  const std::string path = folder.Add(
      "blank.jpg", JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({Ascii(0x010F, "   "), Ascii(0x0110, "Model One")})));
  const std::string text = Lxbridge({"pool", path}).out;
  const std::string all = Lxbridge({"pool", "--all", path}).out;
  EXPECT_EQ(text.find("Make"), std::string::npos) << text;
  EXPECT_LT(all.find(" Make "), all.find("(deleted)\n")) << all;
  EXPECT_EQ(Lines(all).size(), Lines(text).size() + 1);
  const std::string json = Lxbridge({"pool", "--format=json", path}).out;
  EXPECT_NE(json.find(R"("flags": 640, "length": 4, "value": "20202000")"), std::string::npos) << json;
}

TEST(CommandPool, TheTextIsSafeForATerminal) {
  const TempFolder folder;
  const TiffBuilder tiff = TiffBuilder(kBig).Ifd0({Ascii(0x8298, std::string(99, 'c') + "\xC3\xA9" + "end")});
  folder.Add("a.jpg",
             JpegBuilder().App1Exif(tiff).Comment("Andr\xE9").Comment("two\nlines\x1B[31m red\xC2\x9B\xE2\x80\xAE"));
  const std::string text = Lxbridge({"pool", "a.jpg"}, {.folder = folder.path()}).out;
  for (const std::string& line : {"ascii  " + std::string(99, 'c') + "...\n", std::string("undef  Andr?\n"),
                                  std::string("undef  two lines [31m red\n")}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
  }
}

TEST(CommandPool, BytesThatAreNotUtf8AreInTheJsonAsHex) {
  const TempFolder folder;
  const std::string path = folder.Add("caf\xE9 latin.jpg", JpegBuilder().Comment("Andr\xE9"));
  const Outcome outcome = Lxbridge({"pool", "--format", "json", path});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_NE(outcome.out.find(R"("display": {"hex": "416e6472e9"})"), std::string::npos);
  EXPECT_TRUE(outcome.out.starts_with(R"({"file": {"hex": ")"));
  EXPECT_TRUE(Lxbridge({"--format", "json", path}).out.starts_with(R"({"file": {"hex": ")"));
}

// --- files that fail -------------------------------------------------------------------------------------------------

TEST(CommandFailures, AFileThatCannotBeOpenedHasALineAndTheOthersAreDone) {
  const TempFolder folder;
  folder.Add("a.jpg", Photo("A"));
  folder.Add("b.jpg", Photo("B"));
  ASSERT_EQ(::symlink("nowhere", (folder.path() + "/dangling").c_str()), 0);
  ASSERT_EQ(::symlink("loop", (folder.path() + "/loop").c_str()), 0);
  const Surroundings there = {.folder = folder.path()};
  const std::vector<std::string> files = {"missing.jpg", "a.jpg", ".", "dangling", "a.jpg/", "loop", "b.jpg", "gone"};
  const std::string kMessages =
      "lxbridge: missing.jpg: NotFound\n"
      "lxbridge: .: is a directory\n"
      "lxbridge: dangling: NotFound\n"
      "lxbridge: a.jpg/: NotFound\n"
      "lxbridge: loop: Too many levels of symbolic links\n"
      "lxbridge: gone: NotFound\n";
  for (const auto& form : kForms) {
    const Outcome outcome = Lxbridge(With(form, files), there);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, kMessages + (form[2] == "rdf" ? kSeveralPackets : ""));
    const Outcome alone = Lxbridge(With(form, {"a.jpg", "b.jpg"}), there);
    EXPECT_EQ(alone.status, 0);
    EXPECT_EQ(outcome.out, alone.out);
    EXPECT_NE(alone.out, "");
  }
}

TEST(CommandFailures, OnlyThePoolTellsThatAReaderFailedAndStillHasTheLine) {
  const TempFolder folder;
  const Surroundings there = {.folder = folder.path()};
  folder.Add("broken.jpg", JpegBuilder().Comment("no frame in here").Bare());
  folder.Add("a.jpg", Photo());
  const Outcome json = Lxbridge({"pool", "--format", "json", "broken.jpg", "a.jpg"}, there);
  EXPECT_EQ(json.status, 1);
  EXPECT_EQ(json.err, "lxbridge: broken.jpg: BadReadFormat\n");
  ASSERT_EQ(Lines(json.out).size(), 2U);
  const OrderedJson line = OrderedJson::parse(Lines(json.out)[0]);
  EXPECT_EQ(line["status"], -6);
  EXPECT_EQ(line["statusName"], "BadReadFormat");
  EXPECT_EQ(line["items"], OrderedJson::array());
  EXPECT_EQ(Lxbridge({"pool", "broken.jpg"}, there).out, "broken.jpg: jpeg\n");
  const Outcome xmp = Lxbridge({"broken.jpg"}, there);
  EXPECT_EQ(xmp.status, 0);
  EXPECT_EQ(xmp.err, "");
  EXPECT_TRUE(xmp.out.starts_with("<?xpacket begin=")) << xmp.out;
}

TEST(CommandFailures, PathsOfNoFileAndFailingReadsAreToldAtOnce) {
  const TempFolder folder;
  ASSERT_EQ(::mkfifo((folder.path() + "/pipe").c_str(), 0600), 0);
  ASSERT_EQ(::symlink("/proc/self/mem", (folder.path() + "/broken").c_str()), 0);  // Its first page cannot be read.
  for (const auto& form : kForms) {
    for (const char* further : {"-j1", "-r", "--summary"}) {
      const Outcome outcome = Lxbridge(With(form, {"pipe", "/dev/null", "broken", further}), {.folder = folder.path()});
      EXPECT_EQ(outcome.status, 1);
      EXPECT_TRUE(WithoutPacketNote(outcome.err)
                      .starts_with("lxbridge: pipe: not a regular file\n"
                                   "lxbridge: /dev/null: not a regular file\nlxbridge: broken: ReadError\n"))
          << outcome.err;
      EXPECT_NE(outcome.out, "") << "the broken one was opened, and gives what there was";
    }
  }
}

TEST(CommandFailures, FilesThatHoldNothingAreReadAndEmpty) {
  const TempFolder folder;
  const std::string empty = folder.Add("empty", {});
  const std::string other = folder.Add("text", Text("no picture at all, and long enough"));
  for (const std::string& path : {empty, other}) {
    const Outcome xmp = Lxbridge({"--format", "json", path});
    EXPECT_EQ(xmp.status, 0);
    EXPECT_EQ(xmp.err, "");
    EXPECT_EQ(xmp.out, R"({"file": ")" + path + R"(", "properties": [], "namespaces": {}})" + "\n");
    const Outcome pool = Lxbridge({"pool", path});
    EXPECT_EQ(pool.status, 0);
    EXPECT_EQ(pool.err, "");
    EXPECT_EQ(pool.out, path + ": unknown\n");
  }
}

TEST(CommandFailures, AMessageStaysOneLineForAnyName) {
  constexpr const char* kNames[][2] = {
      {"two\nlines", "two\\nlines"},
      {"bell\a\x7F", "bell\\x07\\x7f"},
      {"caf\xE9.jpg", "caf\xE9.jpg"},
      {"cut\xE2\x80", "cut\xE2\\x80"},
      {"back\\slash", "back\\\\slash"},
      {"C1\xC2\x9B and \x9B, not \xC3\x9B", "C1\\x9b and \\x9b, not \xC3\x9B"},
      {"evil\xE2\x80\xAEgpj\xE2\x80\xA8\xD8\x9C\xE2\x81\xA6.jpg", "evil\\u202egpj\\u2028\\u061c\\u2066.jpg"},
  };
  std::vector<std::string> arguments = {"pool"};
  std::string messages;
  for (const auto& [name, shown] : kNames) {
    arguments.push_back(name);
    messages += std::string("lxbridge: ") + shown + ": NotFound\n";
  }
  const Outcome names = Lxbridge(arguments);
  EXPECT_EQ(names.status, 1);
  EXPECT_EQ(names.err, messages);
  EXPECT_EQ(Lxbridge({"--no\nsuch"}).err,
            "lxbridge: unknown option '--no\\nsuch'\nTry 'lxbridge --help' for more information.\n");

  const TempFolder folder;
  folder.Add("two\nlines", Photo());
  const Outcome text = Lxbridge({"pool", "two\nlines"}, {.folder = folder.path()});
  EXPECT_EQ(text.out.substr(0, text.out.find(": jpeg")), "two\\nlines");
}

// --- standard input, pipes -------------------------------------------------------------------------------------------

TEST(CommandInput, StandardInputIsReadAsAFileIs) {
  const TempFolder folder;
  const std::string path = folder.Add("photo.jpg", Photo());
  for (const auto& form : kForms) {
    const std::string once = Lxbridge(With(form, {path})).out;
    std::string renamed = once;
    if (form[2] != "rdf") renamed.replace(renamed.find(path), path.size(), "-");
    // A second time too: the position is as it was.
    const Outcome input = Lxbridge(With(form, {"-", path, "-"}), {.input = path});
    EXPECT_EQ(input.status, 0);
    EXPECT_EQ(WithoutPacketNote(input.err), "");
    EXPECT_EQ(input.out, renamed + once + renamed);
  }
}

// A pipe is copied first, so it reads as a file does, as often as it is named and whichever process reads it.
TEST(CommandInput, APipeReadsAsAFile) {
  const TempFolder folder;
  const std::string path = folder.Add("photo.jpg", Photo(std::string(60000, 'x')));
  std::string list = "missing\n";
  for (int i = 0; i < 20; ++i) list += "-\n";
  folder.Add("list", Text(list));
  for (const auto& form : kForms) {
    for (const std::vector<std::string>& files :
         {std::vector<std::string>{"-", "-"}, {"-j4", "--files-from", "list"}}) {
      const Outcome file = Lxbridge(With(form, files), {.input = path, .folder = folder.path()});
      const Outcome pipe = Lxbridge(With(form, files), {.input = path, .inputIsPipe = true, .folder = folder.path()});
      EXPECT_EQ(pipe.status, file.status);
      EXPECT_EQ(pipe.err, file.err);
      EXPECT_TRUE(pipe.out == file.out && pipe.out.find("xxxx") != std::string::npos) << form[2];
    }
  }
}

// --- output ----------------------------------------------------------------------------------------------------------

TEST(CommandOutput, AClosedPipeAndAFullDiskEndTheCommandAndItsWorkers) {
  const TempFolder folder;
  std::string list;
  for (int i = 0; i < 200; ++i) list += "photo.jpg\n";
  folder.Add("photo.jpg", Photo());
  folder.Add("list", Text(list));
  std::vector<std::vector<std::string>> calls = {{"-j2", "--format", "json", "--files-from", "list"}};
  for (const auto& form : kForms) calls.push_back(With(form, {"photo.jpg", "photo.jpg", "photo.jpg"}));
  for (const auto& arguments : calls) {
    const Outcome killed = Lxbridge(arguments, {.outputIsClosedPipe = true, .folder = folder.path()});
    EXPECT_EQ(killed.signal, SIGPIPE);
    EXPECT_EQ(killed.err, "");
    const Outcome told =
        Lxbridge(arguments, {.outputIsClosedPipe = true, .ignoresBrokenPipe = true, .folder = folder.path()});
    EXPECT_EQ(told.status, 3);
    EXPECT_EQ(told.err, "");
  }
  EXPECT_NE(Lxbridge({"--version"}).out.find("zlib"), std::string::npos);
  calls.push_back({"--help"});
  calls.push_back({"--version"});
  for (const auto& arguments : calls) {
    const Outcome outcome = Lxbridge(arguments, {.output = "/dev/full", .folder = folder.path()});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, "lxbridge: standard output: No space left on device\n");
  }
}

// Files must not get the numbers of standard streams, and results that go nowhere are an error.
TEST(CommandOutput, ClosedStandardStreamsAreErrorsAndNoFileTakesTheirPlace) {
  const TempFolder folder;
  folder.Add("a.jpg", Photo());
  const struct {
    const char* arguments;
    const char* told;
    int status;
  } kCases[] = {
      {"-j2 --format json a.jpg a.jpg >&-", "lxbridge: standard output: Bad file descriptor\n", 3},
      {"missing >&-", "lxbridge: standard output: Bad file descriptor\n", 3},
      {"--version >&-", "lxbridge: standard output: Bad file descriptor\n", 3},
      {"-j2 --format json a.jpg missing 2>&- >/dev/null", "", 1},
      {"-j2 --files-from - <&- >/dev/null", "lxbridge: standard input: Bad file descriptor\n", 1},
      {"a.jpg <&- >&- 2>&-", "", 3},
  };
  for (const auto& c : kCases) {
    const Outcome outcome =
        RunProgram("/bin/sh", {"-c", std::string("exec \"$0\" ") + c.arguments, LX_COMMAND}, {.folder = folder.path()});
    EXPECT_EQ(outcome.err, c.told) << c.arguments;
    EXPECT_EQ(outcome.status, c.status) << c.arguments;
  }
}

}  // namespace
}  // namespace lxtest
