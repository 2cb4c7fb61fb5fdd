// Runs the built command as a user's shell would, and keeps its output. POSIX.
#ifndef LXBRIDGE_TESTS_TOOLS_RUN_COMMAND_H_
#define LXBRIDGE_TESTS_TOOLS_RUN_COMMAND_H_

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/bytes.h"

namespace lxtest {

using OrderedJson = nlohmann::ordered_json;

// The four forms of output, as arguments in front of the files.
inline const std::vector<std::vector<std::string>> kForms = {{"xmp", "--format", "rdf"},
                                                             {"xmp", "--format", "json"},
                                                             {"pool", "--format", "text"},
                                                             {"pool", "--format", "json"}};

struct Outcome {
  int status = -1;  // The exit status; -1 when a signal ended it.
  int signal = 0;
  std::string out;
  std::string err;
};

struct Surroundings {
  std::string input = "/dev/null";            // Opened as standard input.
  bool inputIsPipe = false;                   // The same bytes through a pipe.
  std::string output = "";                    // Standard output instead of Outcome::out: a path to open for writing.
  bool outputIsClosedPipe = false;            // A pipe whose reader has gone.
  bool ignoresBrokenPipe = false;             // SIGPIPE is ignored, as some parents leave it.
  bool asNobody = false;                      // With no user's rights, when the super-user runs the tests.
  std::string folder = "";                    // The working folder; "": as it is.
  std::vector<std::string> environment = {};  // Further variables, NAME=VALUE.
};

// lxbridge with these arguments, in the zone of all tests.
[[nodiscard]] Outcome Lxbridge(const std::vector<std::string>& arguments, const Surroundings& surroundings = {});
[[nodiscard]] Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                                 const Surroundings& surroundings = {});

// Said at the end when the packets of several files have been printed.
inline constexpr const char* kSeveralPackets =
    "lxbridge: printing packets of several files; use --sidecar or --format json to tell them apart\n";
// The messages without that.
[[nodiscard]] std::string WithoutPacketNote(std::string messages);

// The arguments `form`, followed by the files.
[[nodiscard]] std::vector<std::string> With(std::vector<std::string> form, const std::vector<std::string>& files);

[[nodiscard]] std::string AsText(const Bytes& bytes);
// The lines without their ends; a last line without end counts too.
[[nodiscard]] std::vector<std::string> Lines(const std::string& text);

// Variables that load fault_shim.c into the command, and further ones for it.
[[nodiscard]] std::vector<std::string> Shim(std::vector<std::string> variables);

// A folder for a test's files, removed with all in it at the end of its life.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  [[nodiscard]] const std::string& path() const { return path_; }
  // The path of a new file in it.
  std::string Add(const std::string& name, const Bytes& bytes) const;

 private:
  std::string path_;
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_TOOLS_RUN_COMMAND_H_
