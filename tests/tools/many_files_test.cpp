// The command over folders, lists and worker processes, from outside.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tests/support/image_builders.h"
#include "tests/support/tiff_builder.h"
#include "tests/tools/run_command.h"

namespace lxtest {
namespace {

const std::vector<std::string> kMakes = {"--format", "csv", "--fields", "tiff:Make"};

Bytes Photo(std::string_view make) {
  return JpegBuilder().App1Exif(TiffBuilder(kBig).Ifd0({Ascii(0x010F, make)}));
}

std::vector<std::string> Sorted(std::vector<std::string> lines) {
  std::sort(lines.begin(), lines.end());
  return lines;
}

// A folder with so many photographs, every seventh of them missing or broken, and the list of their names.
class Many {
 public:
  explicit Many(int count) {
    for (int i = 0; i < count; ++i) {
      const std::string name = "p" + std::to_string(i) + ".jpg";
      names.push_back(name);
      // Lengths differ so that slow files stand in front of fast ones.
      if (i % 7 == 3) {
        folder.Add(name, JpegBuilder().Comment("no frame").Bare());
      } else if (i % 7 != 5) {
        folder.Add(name, Photo("Make " + std::to_string(i) + std::string(i % 11 == 0 ? 30000 : 3, 'x')));
      }
    }
    std::string list;
    for (const std::string& name : names) list += name + "\n";
    folder.Add("list", Text(list));
  }

  TempFolder folder;
  std::vector<std::string> names;
};

// Runs a script of the shell in the folder with the command as $0. Opening a file named "stalls" waits for ever there.
// Only the command gets the preloaded library, since a sanitizer would have something to say of other programs too.
Outcome Script(const TempFolder& folder, const std::string& script) {
  std::string command = "#!/bin/sh\nexec env";
  for (const std::string& variable : Shim({"LXSHIM_STALL=stalls"})) command += " '" + variable + "'";
  const TempFile start(Text(command + " '" LX_SHARED_COMMAND "' \"$@\"\n"));
  EXPECT_EQ(chmod(start.path().c_str(), 0700), 0);
  return RunProgram("/bin/sh", {"-c", script, start.path()}, {.folder = folder.path()});
}

TEST(ManyFiles, WorkersGiveTheResultsOfOneProcessInTheSameOrder) {
  const Many many(300);
  const Surroundings there = {.folder = many.folder.path()};
  for (const auto& form : kForms) {
    Outcome one;
    for (std::size_t i = 0; i < many.names.size(); i += 10) {  // So few at a time are done without workers.
      const std::vector<std::string> some(many.names.begin() + static_cast<std::ptrdiff_t>(i),
                                          many.names.begin() + static_cast<std::ptrdiff_t>(i) + 10);
      const Outcome part = Lxbridge(With(form, some), there);
      one.out += part.out;
      one.err += WithoutPacketNote(part.err);
    }
    for (const char* workers : {"-j1", "-j2", "-j7"}) {
      const Outcome outcome = Lxbridge(With(form, {workers, "--files-from", "list"}), there);
      EXPECT_EQ(outcome.status, 1);
      EXPECT_EQ(outcome.err, one.err + (form[2] == "rdf" ? kSeveralPackets : "")) << workers;
      EXPECT_TRUE(outcome.out == one.out) << workers << " " << form[2];
    }
    if (form[2] != "json") continue;
    const Outcome loose = Lxbridge(With(form, {"--unordered", "-j3", "--files-from=list"}), there);
    EXPECT_EQ(Sorted(Lines(loose.out)), Sorted(Lines(one.out)));
    EXPECT_EQ(Sorted(Lines(loose.err)), Sorted(Lines(one.err)));
  }
}

// Each packet binds the same prefixes to namespaces of its own, and a prefix that the toolkit knows to another one.
TEST(ManyFiles, AFilesResultIsTheSameInAnyOrderAndAnyNumberOfWorkers) {
  const TempFolder folder;
  std::vector<std::string> names;
  for (int i = 0; i < 1000; ++i) {
    const std::string own = "http://example.com/" + std::to_string(i % 333) + "/";
    const std::string packet =
        R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">)"
        R"(<rdf:Description rdf:about="" xmlns:acme=")" +
        own + R"(" xmlns:tiff=")" + own + R"(t" acme:f="1" tiff:g="2">)" + R"(<acme:h xmlns:acme=")" + own +
        R"(other" acme:i="3"/></rdf:Description></rdf:RDF></x:xmpmeta>)";
    names.push_back("p" + std::to_string(i));
    folder.Add(names.back(), JpegBuilder().App1Xmp(packet).App1Exif(TiffBuilder(kBig).Ifd0({Ascii(0x010F, "M")})));
  }
  const std::filesystem::path corpus = std::filesystem::path(LX_GOLDEN_DIR) / "../../../shared/corpus";
  if (std::filesystem::is_directory(corpus)) {
    for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
      if (entry.is_regular_file()) names.push_back(std::filesystem::canonical(entry.path()).string());
    }
  }
  std::vector<std::string> first;
  std::mt19937 random(1);
  for (const char* workers : {"-j1", "-j2", "-j5"}) {
    std::string list;
    for (const std::string& name : names) list += name + "\n";
    folder.Add("list", Text(list));
    const Outcome outcome = Lxbridge({"--format", "json", workers, "--files-from", "list"}, {.folder = folder.path()});
    const std::vector<std::string> lines = Sorted(Lines(outcome.out));
    if (first.empty()) first = lines;
    EXPECT_EQ(lines.size(), names.size());
    EXPECT_TRUE(lines == first) << workers;
    std::shuffle(names.begin(), names.end(), random);
  }
  const Outcome alone = Lxbridge({"--format", "json", "p7"}, {.folder = folder.path()});
  EXPECT_TRUE(std::binary_search(first.begin(), first.end(), Lines(alone.out).at(0))) << alone.out;
  EXPECT_NE(alone.out.find(R"("acme": "http://example.com/7/")"), std::string::npos) << alone.out;
}

TEST(ManyFiles, FoldersAreWalkedWithoutLinksAndFilesOfNoKindArePassedOver) {
  const TempFolder folder;
  ASSERT_EQ(::mkdir((folder.path() + "/a").c_str(), 0700), 0);
  ASSERT_EQ(::mkdir((folder.path() + "/a/.hidden").c_str(), 0700), 0);
  ASSERT_EQ(::mkdir((folder.path() + "/a/empty").c_str(), 0700), 0);
  folder.Add("a/.hidden/.b.jpg", Photo("B"));
  folder.Add("a/line\nend \xE9.jpg", Photo("A"));
  folder.Add("a/notes.txt", Text("no picture at all, but long enough"));
  folder.Add("a/short", Text(""));
  ASSERT_EQ(::symlink("../a", (folder.path() + "/a/loop").c_str()), 0);
  ASSERT_EQ(::symlink(".hidden/.b.jpg", (folder.path() + "/a/link.jpg").c_str()), 0);
  ASSERT_EQ(::mkfifo((folder.path() + "/a/pipe").c_str(), 0600), 0);
  const Surroundings there = {.folder = folder.path()};
  const Outcome outcome = Lxbridge(With({"-r", "--summary", "--format=tsv", "--fields=tiff:Make"}, {"a"}), there);
  EXPECT_EQ(outcome.status, 0);
  const std::string quoted = "\"a/line\nend \xE9.jpg\"\tA\n";
  const std::string hidden = "a/.hidden/.b.jpg\tB\n";
  EXPECT_TRUE(outcome.out == quoted + hidden || outcome.out == hidden + quoted) << outcome.out;
  EXPECT_EQ(outcome.err, "lxbridge: 2 files: 2 OK\nlxbridge: kinds: 2 jpeg\nlxbridge: passed over: 5\n");
  // Named, a file of no kind is a file; and a folder is none without -r.
  EXPECT_EQ(Lxbridge(With(kMakes, {"-r", "a/notes.txt"}), there).out, "a/notes.txt,\r\n");
  EXPECT_EQ(Lxbridge(With(kMakes, {"-j2", "a"}), there).err, "lxbridge: a: is a directory\n");
}

TEST(ManyFiles, FilesThatMayNotBeReadHaveALineAndTheOthersAreDone) {
  if (Lxbridge({"--version"}, {.asNobody = true}).status != 0) GTEST_SKIP() << "others may not run the command here";
  const TempFolder folder;
  for (const char* name : {"/locked", "/open"}) ASSERT_EQ(::mkdir((folder.path() + name).c_str(), 0755), 0);
  folder.Add("locked/a.jpg", Photo("A"));
  folder.Add("open/b.jpg", Photo("B"));
  ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod((folder.path() + "/locked").c_str(), 0), 0);
  ASSERT_EQ(::chmod(folder.Add("secret.jpg", Photo("S")).c_str(), 0), 0);
  for (const auto& form : kForms) {
    const Surroundings there = {.asNobody = true, .folder = folder.path()};
    const Outcome outcome = Lxbridge(With(form, {"-r", "gone", "locked", "secret.jpg", "open"}), there);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, Lxbridge(With(form, {"open/b.jpg"}), there).out);
    EXPECT_EQ(
        outcome.err,
        "lxbridge: gone: NotFound\nlxbridge: locked: Permission denied\nlxbridge: secret.jpg: PermissionDenied\n");
  }
  ASSERT_EQ(::chmod((folder.path() + "/locked").c_str(), 0700), 0);
}

TEST(ManyFiles, AFolderThatVanishesWhileItIsWalkedEndsNothing) {
  const Many many(200);
  for (int i = 0; i < 40; ++i) {
    const std::string inner = many.folder.path() + "/d" + std::to_string(i);
    ASSERT_EQ(::mkdir(inner.c_str(), 0700), 0);
    many.folder.Add("d" + std::to_string(i) + "/x.jpg", Photo("X"));
  }
  const Outcome outcome =
      Script(many.folder, "\"$0\" pool --format json -j2 -r . & rm -rf d1 d2 d3 d4 d5 d6 d7 d8 d9 d3?; wait $!");
  EXPECT_LE(outcome.status, 1);
  EXPECT_EQ(outcome.signal, 0);
  for (const std::string& line : Lines(outcome.err)) {
    EXPECT_TRUE(line.ends_with(": NotFound") || line.ends_with(": No such file or directory") ||
                line.ends_with(": BadReadFormat"))
        << line;
  }
  EXPECT_NE(outcome.out.find("./p198.jpg"), std::string::npos);
}

TEST(ManyFiles, AListHoldsNamesOfAnyBytesAndEntriesThatAreNoNamesHaveALine) {
  const TempFolder folder;
  folder.Add("a.jpg", Photo("A"));
  folder.Add("two\nlines \xE9.jpg", Photo("B"));
  const std::string longest(32768, 'y');
  folder.Add("lines", Text("a.jpg\n\nmissing.jpg\n" + std::string(32769, 'x') + "\n" + longest + "\n-\na.jpg"));
  folder.Add("zeros", Bytes(Text(std::string_view("two\nlines \xE9.jpg\0\0a.jpg", 22))));
  const Outcome lines = Lxbridge(With(kMakes, {"--files-from", "-"}),
                                 {.input = folder.path() + "/lines", .inputIsPipe = true, .folder = folder.path()});
  EXPECT_EQ(lines.status, 1);
  EXPECT_EQ(lines.out, "a.jpg,A\r\na.jpg,A\r\n");
  EXPECT_EQ(lines.err,
            "lxbridge: standard input: line 2 is empty\n"
            "lxbridge: missing.jpg: NotFound\n"
            "lxbridge: standard input: line 4 is too long for a name\n"
            "lxbridge: " +
                longest +
                ": File name too long\n"
                "lxbridge: -: standard input is the list\n");
  const Outcome zeros = Lxbridge(With(kMakes, {"-0", "--files-from", "zeros"}), {.folder = folder.path()});
  EXPECT_EQ(zeros.out, "\"two\nlines \xE9.jpg\",B\r\na.jpg,A\r\n");
  EXPECT_EQ(zeros.err, "lxbridge: zeros: entry 2 is empty\n");
  EXPECT_EQ(Lxbridge(With(kMakes, {"--files-from", "gone"}), {.folder = folder.path()}).err,
            "lxbridge: gone: No such file or directory\n");
}

// Results come while the list is still open; a request to end leaves whole lines and no process.
TEST(ManyFiles, AListIsWorkedOnAsItComesAndAnEndIsAtOnce) {
  const Many many(60);
  const Outcome outcome = Script(many.folder, R"sh(
    mkfifo names; exec 3<>names; head -20 list >&3; : >out; : >err
    "$0" -j2 --files-from names --format json >out 2>err & p=$!
    until [ "$(cat out err | wc -l)" -ge 20 ]; do sleep 0.05; done
    workers=$(cat /proc/$p/task/$p/children); kill -TERM $p; wait $p; s=$?
    sleep 0.1; for w in $workers; do ! [ -e /proc/$w/exe ] || echo "left: $w"; done
    tail -c 1 out | od -An -c; exit $s)sh");
  EXPECT_EQ(outcome.status, 128 + SIGTERM);
  EXPECT_EQ(outcome.out, "  \\n\n");
}

// A write that is blocked in a pipe ends first, so the reader has whole lines.
TEST(ManyFiles, AnEndInTheMiddleOfAWriteLeavesWholeLines) {
  const Many many(300);
  const Outcome outcome = Script(many.folder, R"sh(
    mkfifo pipe; "$0" -j2 --files-from list --format json >pipe 2>err & p=$!; exec 3<pipe
    (sleep 2.5; cat <&3 >got) & c=$!; sleep 1.5; kill -TERM $p; wait $p; s=$?; wait $c
    tail -c 1 got | od -An -c; grep -vc '^{"file": "p[0-9]*.jpg", "properties": \[.*}}$' got; exit $s)sh");
  EXPECT_EQ(outcome.status, 128 + SIGTERM);
  EXPECT_EQ(outcome.out, "  \\n\n0\n");
}

// A terminal shows packets with the names of their files, and progress while results go elsewhere, and its Control-C
// ends the command and its workers.
TEST(ManyFiles, ATerminalHasProgressAndItsInterruptEndsAll) {
  if (RunProgram("/bin/sh", {"-c", "command -v script"}).status != 0) GTEST_SKIP() << "no script(1) here";
  const Many many(10);
  const Outcome outcome = Script(many.folder, R"sh(
    script -qefc "'$0' p1.jpg p2.jpg" shown >/dev/null </dev/null; grep -c 'xpacket begin' shown; grep -c '<!-- p[12].jpg' shown
    mkfifo names; exec 3<>names; (for i in $(seq 300); do echo p1.jpg >&3; sleep 0.01; done) &
    (sleep 3.2; printf '\003'; sleep 1) |
      script -qefc "'$0' -j1 --format json --files-from names >out" seen >/dev/null
    s=$?; tail -c 1 out | od -An -c
    for p in $(pgrep -x lxbridge); do ! [ "$(readlink /proc/$p/cwd)" = "$PWD" ] || echo "left: $p"; done; exit $s)sh");
  EXPECT_EQ(outcome.status, 128 + SIGINT);
  EXPECT_EQ(outcome.out, "2\n2\n  \\n\n");
  const std::string seen = AsText(ReadWholeFile(many.folder.path() + "/seen"));
  const auto count = [&seen](std::string_view text) {
    int times = 0;
    for (std::size_t at = 0; (at = seen.find(text, at)) != std::string::npos; at += text.size()) ++times;
    return times;
  };
  EXPECT_GE(count(" files, "), 3);
  EXPECT_LE(count("\r\x1B[K"), 1) << "the line stands until the end";
}

TEST(ManyFiles, AWorkerThatDiesCostsTheFileThatItWasAt) {
  const Many many(40);
  many.folder.Add("stalls", Photo("S"));
  const Outcome outcome = Script(many.folder, R"sh(
    : >out; "$0" -j1 --format csv --fields tiff:Make p0.jpg p1.jpg stalls p2.jpg p4.jpg >out 2>err & p=$!
    until [ $(wc -l <out) -ge 2 ]; do sleep 0.05; done; sleep 0.2
    kill -KILL $(cat /proc/$p/task/$p/children); wait $p; s=$?; cut -c 1-12 out; cat err >&2; exit $s)sh");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "lxbridge: stalls: crashed (signal 9)\n");
  EXPECT_EQ(outcome.out, "p0.jpg,Make \np1.jpg,Make \np2.jpg,Make \np4.jpg,Make \n");
}

// As by Control-Z and fg, or by a stranger who stops a worker for good; and when nobody is left to work for.
TEST(ManyFiles, StoppedProcessesCostNoFileAndNoWorkerOutlivesTheCommand) {
  const Many many(40);
  many.folder.Add("stalls", Photo("S"));
  const Outcome outcome = Script(many.folder, R"sh(
    run() { setsid "$0" -j2 --timeout $1 --format csv --fields tiff:Make --files-from names >out 2>err & p=$!; }
    mkfifo names; exec 3<>names; : >out; run 1.5; cat list >&3; until [ $(wc -l <out) -ge 10 ]; do sleep 0.05; done
    echo stalls >&3; sleep 0.3; kill -STOP -$p; sleep 2; kill -CONT -$p; sleep 0.3; grep stalls err; sleep 1; grep stalls err
    w=$(cat /proc/$p/task/$p/children); kill -STOP $w; cat list >&3
    for i in $(seq 150); do [ $(wc -l <out) -lt 70 ] && sleep 0.05; done; wc -l <out; kill -KILL $p
    run 100; echo stalls >&3; sleep 0.3; w=$(cat /proc/$p/task/$p/children); kill -KILL $p; sleep 0.3
    for w in $w; do ! [ -e /proc/$w/exe ] || echo "left: $w"; done)sh");
  EXPECT_EQ(outcome.out, "lxbridge: stalls: timed out\n70\n");
}

TEST(ManyFiles, AFileThatTakesTooLongIsGivenUpAlone) {
  const Many many(40);
  many.folder.Add("stalls", Photo("S"));
  const std::vector<std::string> files = {"--summary", "p1.jpg", "stalls", "p2.jpg", "stalls", "p4.jpg"};
  for (const char* workers : {"-j1", "-j3"}) {
    const Outcome outcome = Lxbridge(With(kMakes, With({workers, "--timeout", "0.4"}, files)),
                                     {.folder = many.folder.path(), .environment = Shim({"LXSHIM_STALL=stalls"})});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "p1.jpg,Make 1xxx\r\np2.jpg,Make 2xxx\r\np4.jpg,Make 4xxx\r\n");
    EXPECT_EQ(outcome.err,
              "lxbridge: stalls: timed out\nlxbridge: stalls: timed out\nlxbridge: 5 files: 3 OK, 2 timed out\n"
              "lxbridge: kinds: 3 jpeg\nlxbridge: passed over: 0\n");
  }
}

TEST(ManyFiles, ProgressIsSaidWhenAskedForAndWhenItTakesAWhile) {
  const Many many(10);
  many.folder.Add("stalls", Photo("S"));
  const Surroundings there = {.folder = many.folder.path(), .environment = Shim({"LXSHIM_STALL=stalls"})};
  const std::vector<std::string> arguments = With(kMakes, {"-j1", "--timeout", "1.5", "p1.jpg", "stalls"});
  EXPECT_EQ(Lxbridge(arguments, there).err, "lxbridge: stalls: timed out\n");
  const Outcome asked = Lxbridge(With(arguments, {"--progress"}), there);
  EXPECT_NE(asked.err.find("lxbridge: 1 of 2 files, "), std::string::npos) << asked.err;
  EXPECT_NE(asked.err.find("lxbridge: 2 of 2 files, "), std::string::npos) << asked.err;
}

// Shards of a list by GNU parallel, one of them done again: joined they equal the results of one call.
TEST(Shards, ThroughParallelTheirResultsJoinToThoseOfOneCall) {
  if (RunProgram("/bin/sh", {"-c", "command -v parallel"}).status != 0) GTEST_SKIP() << "no GNU parallel here";
  const Many many(300);
  const Outcome outcome = Script(many.folder, R"sh(
    mkdir shards; split -l 64 -d list shards/
    run='"'"$0"'" -j1 --format json --files-from {} >{}.part 2>{}.err; s=$?; [ $s -le 1 ] && mv {}.part {}.json'
    ls shards/* | grep -v '\.' | parallel --will-cite -j2 --joblog log "$run" 
    rm shards/02.json; ls shards/?? | while read s; do [ -e $s.json ] || echo $s; done | parallel --will-cite "$run"
    cat shards/*.json >joined; "$0" -j1 --format json --files-from list >whole 2>err; cmp joined whole
    cat shards/*.err | sort >errors; sort err | cmp - errors)sh");
  EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
  EXPECT_EQ(outcome.out, "");
}

}  // namespace
}  // namespace lxtest
