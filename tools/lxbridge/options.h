// The command line of `lxbridge` as a record.
//
// It is parsed by hand: a library would cost more at start-up than reading a photograph.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_

#include <string>
#include <string_view>
#include <vector>

namespace lxbridge::command {

enum class Action { kXmp, kPool, kFields, kHelp, kVersion };
enum class Format { kRdf, kText, kJson, kFlat, kCsv, kTsv, kHtml };
enum class Colour { kAuto, kAlways, kNever };

inline constexpr int kMostWorkers = 256;

struct Options {
  Action action = Action::kXmp;
  Action helpTopic = Action::kHelp;  // The command for --help; kHelp: all.
  Format format = Format::kRdf;
  std::vector<const char*> files;  // As given; "-" is standard input.
  std::vector<const char*> words;  // The whole command line, which a worker parses again where it is not forked.

  // Further inputs.
  bool recursive = false;           // Folders are walked.
  bool sorted = false;              // In the byte order of the paths.
  const char* filesFrom = nullptr;  // A list of names; "-": on standard input.
  bool zeroEnds = false;            // Names in the list end in zero bytes.
  // For entries found in folders; see NameFilter.
  std::vector<std::string_view> included;
  std::vector<std::string_view> excluded;
  std::vector<std::string_view> extensions;

  // Processing.
  int workers = 0;  // Processes; 0: not given.
  double timeoutSeconds = 0;
  bool unordered = false;
  bool progress = false;
  bool summary = false;

  // The form of results.
  bool all = false;         // pool: deleted items too.
  bool decimal = false;     // Numbers and booleans as JSON values.
  bool qualifiers = false;  // flat: qualifiers too.
  bool facts = false;       // flat: facts of the file too.
  bool warnings = false;    // Skipped parts of packets, as messages.
  bool errors = false;      // JSON: a line in place of a missing result.
  bool pretty = false;      // JSON: indented.
  Colour colour = Colour::kAuto;

  // Tables and flat JSON.
  struct NamedNamespace {
    std::string_view prefix;
    std::string_view uri;
  };
  std::vector<NamedNamespace> namespaces;
  // "prefix:Name", a path ("prefix:Name/prefix:Field"), "prefix:*" or "all". Unresolved; see Columns.
  std::vector<std::string_view> fields;
  std::string_view separator = "; ";  // Between the items of an array.
  bool header = false;

  // Side-cars instead of results on standard output.
  bool sideCars = false;
  const char* outputFolder = nullptr;  // Null: next to the files.
  bool overwrite = false;

  // Settings that depend on the command's own terminals, passed to workers: see SettleTerminal.
  bool colouredResults = false;
  bool namedPackets = false;  // A comment with the file's name before each packet.

  [[nodiscard]] bool IsTable() const { return format == Format::kCsv || format == Format::kTsv; }
  [[nodiscard]] bool IsJson() const { return format == Format::kJson || format == Format::kFlat; }
  // Whether there may be more than one file.
  [[nodiscard]] bool MayBeMany() const { return recursive || filesFrom != nullptr || files.size() > 1; }
};

// False: a usage error, which `error` describes in one line.
[[nodiscard]] bool ParseOptions(int argc, const char* const* argv, Options* options, std::string* error);

// Sets the options that depend on where standard output and standard error go.
void SettleTerminal(Options* options);
// Whether messages on standard error are coloured.
[[nodiscard]] bool ColoursMessages(const Options& options);

// The text of --help for a command, or for all (Action::kHelp).
[[nodiscard]] std::string HelpText(Action topic);
// The version, and the available decompressors.
[[nodiscard]] std::string VersionText();

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_
