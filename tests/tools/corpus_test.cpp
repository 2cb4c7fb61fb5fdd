// Real photographs through the command in all its forms: valid, the same each time and by either way in; and damaged
// ones.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/pool_support.h"
#include "tests/tools/output_checks.h"
#include "tests/tools/run_command.h"

namespace lxtest {
namespace {

// One output of all files as one output a file.
std::vector<std::string> PerFile(const std::vector<std::string>& form, const std::string& output,
                                 const std::vector<std::string>& files) {
  if (form[2] == "rdf") return Packets(output);
  std::vector<std::string> parts;
  for (const std::string& line : Lines(output)) {
    if (form[2] == "json" || line.front() != ' ') parts.emplace_back();
    parts.back() += line + "\n";
  }
  return parts.size() == files.size() ? parts : std::vector<std::string>(files.size());
}

TEST(CommandCorpus, EveryFileGivesValidOutputTheSameTwiceAndThroughStandardInput) {
  const std::vector<std::string> files = CorpusFiles();
  if (files.empty()) GTEST_SKIP() << "no corpus beside the tree";
  // What the readers say about the files decides what the exit status and the messages have to be.
  std::string messages;
  std::vector<LxResult> statuses;
  for (const std::string& file : files) {
    statuses.emplace_back();
    (void)ReadPoolFromPath(file, &statuses.back());
    if (statuses.back() < 0) messages += "lxbridge: " + file + ": " + LxResultName(statuses.back()) + "\n";
  }
  for (const auto& form : kForms) {
    const bool pool = form[0] == "pool";
    SCOPED_TRACE(form[0] + " " + form[2]);
    const Outcome all = Lxbridge(With(form, files));
    EXPECT_EQ(all.status, pool && !messages.empty() ? 1 : 0);
    EXPECT_EQ(WithoutPacketNote(all.err), pool ? messages : "");
    if (form[2] == "rdf") {
      ASSERT_TRUE(IsPackets(all.out, files.size()));
    } else if (form[2] == "json") {
      ASSERT_TRUE(pool ? IsPoolJson(all.out, files) : IsXmpJson(all.out, files));
    }
    EXPECT_EQ(Lxbridge(With(form, files)).out, all.out) << "the second run differs";

    const std::vector<std::string> parts = PerFile(form, all.out, files);
    ASSERT_EQ(parts.size(), files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
      const Outcome input = Lxbridge(With(form, {"-"}), {.input = files[i]});
      EXPECT_EQ(input.out, RenamedInOutput(parts[i], files[i], "-")) << files[i];
      EXPECT_EQ(input.status, pool && statuses[i] < 0 ? 1 : 0) << files[i];
    }
  }
}

TEST(CommandCorpus, EveryPacketParsesBackToWhatTheJsonSays) {
  const std::vector<std::string> files = CorpusFiles();
  if (files.empty()) GTEST_SKIP() << "no corpus beside the tree";
  const std::vector<std::string> packets = Packets(Lxbridge(With({"xmp"}, files)).out);
  const std::vector<std::string> lines = Lines(Lxbridge(With({"xmp", "--format", "json"}, files)).out);
  ASSERT_EQ(packets.size(), files.size());
  ASSERT_EQ(lines.size(), files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    EXPECT_EQ(PropertiesOfPacket(packets[i]), OrderedJson::parse(lines[i])["properties"]) << files[i];
  }
}

constexpr int kParts = 28;

// One in so many of the photographs, cut at many lengths and with single bytes changed: all near both ends, where the
// headers and directories are, and ever fewer towards the middle.
class DamagedCorpus : public testing::TestWithParam<int> {
 protected:
  static constexpr std::size_t kFilesAtOnce = 256;

  static void ForEachDamaged(const Bytes& file, const std::function<void(const Bytes&)>& use) {
    const bool full = std::getenv("LX_FULL") != nullptr;
    const std::size_t density = full ? 10 : 4;
    for (std::size_t at = 0; at < file.size(); at += 1 + at / density) {
      use(Truncated(file, at));
      for (const std::size_t place : {at, file.size() - 1 - at}) {
        const std::uint8_t before = file[place];
        const int values[] = {0x00, 0xFF, before ^ 0x01, before ^ 0x80};
        for (int i = 0; i < 4; ++i) {
          if (full || i == static_cast<int>(at % 4)) use(WithByte(file, place, static_cast<std::uint8_t>(values[i])));
        }
      }
    }
  }

  // What the lines of `pool` say that standard error and the exit status have to be.
  static std::string MessagesFor(const std::string& output) {
    std::string messages;
    for (const std::string& line : Lines(output)) {
      int status = 0;
      char file[64] = "", name[64] = "";
      constexpr char kStart[] = R"({"file": "%63[^"]", "status": %d, "statusName": "%63[^"]")";
      if (std::sscanf(line.c_str(), kStart, file, &status, name) != 3) return "no status";
      if (status < 0) messages += std::string("lxbridge: ") + file + ": " + name + "\n";
    }
    return messages;
  }

  // Nothing crashes, hangs (the command says so of a file) or is reported by a sanitizer; what is printed is whole.
  static void ExpectSound(const TempFolder& folder, const std::vector<std::string>& files) {
    const Surroundings there = {.folder = folder.path()};
    const std::vector<std::string> limits = With({"--timeout", "10"}, files);
    const Outcome packets = Lxbridge(With({"xmp", "--format", "rdf"}, limits), there);
    EXPECT_TRUE(IsPackets(packets.out, files.size()));
    EXPECT_EQ(WithoutPacketNote(packets.err), "");
    EXPECT_EQ(packets.status, 0);
    const Outcome properties = Lxbridge(With({"xmp", "--format", "json"}, limits), there);
    EXPECT_TRUE(IsXmpJson(properties.out, files));
    EXPECT_EQ(properties.err, "");
    EXPECT_EQ(properties.status, 0);
    const Outcome pools = Lxbridge(With({"pool", "--format", "json"}, limits), there);
    EXPECT_TRUE(IsPoolJson(pools.out, files));
    EXPECT_EQ(pools.err, MessagesFor(pools.out));
    EXPECT_EQ(pools.status, pools.err.empty() ? 0 : 1);
  }
};

INSTANTIATE_TEST_SUITE_P(Parts, DamagedCorpus, testing::Range(0, kParts));

TEST_P(DamagedCorpus, GivesWholeResults) {
  const std::vector<std::string> corpus = CorpusFiles();
  if (corpus.empty()) GTEST_SKIP() << "no corpus beside the tree";
  for (auto i = static_cast<std::size_t>(GetParam()); i < corpus.size(); i += kParts) {
    SCOPED_TRACE(corpus[i]);
    std::vector<Bytes> damaged;
    const auto flush = [&] {
      const TempFolder folder;
      std::vector<std::string> files;
      for (const Bytes& bytes : damaged) {
        files.push_back(std::to_string(files.size()));
        folder.Add(files.back(), bytes);
        EXPECT_TRUE(IsWellFormed(*ParsePool(bytes))) << files.back();
      }
      ExpectSound(folder, files);
      damaged.clear();
    };
    ForEachDamaged(ReadWholeFile(corpus[i]), [&](const Bytes& bytes) {
      damaged.push_back(bytes);
      if (damaged.size() == kFilesAtOnce) flush();
    });
    if (!damaged.empty()) flush();
  }
}

}  // namespace
}  // namespace lxtest
