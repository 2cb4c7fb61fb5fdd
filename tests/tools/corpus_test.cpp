// Real photographs through the command in all its forms: valid, the same each time and by either way in.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/pool_support.h"
#include "tests/tools/output_checks.h"
#include "tests/tools/run_command.h"

namespace lxtest {
namespace {

std::vector<std::string> With(std::vector<std::string> form, const std::vector<std::string>& files) {
  form.insert(form.end(), files.begin(), files.end());
  return form;
}

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
    EXPECT_EQ(all.err, pool ? messages : "");
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

}  // namespace
}  // namespace lxtest
