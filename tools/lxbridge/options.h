// The command line of `lxbridge` as a record.
//
// Parsed by hand: the grammar is two subcommands and some options, and a library for it would cost more at start-up
// than reading a photograph does.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_

#include <string>
#include <string_view>
#include <vector>

namespace lxbridge::command {

enum class Action { kXmp, kPool, kHelp, kVersion };
enum class Format { kRdf, kText, kJson, kCsv, kTsv };

inline constexpr int kMostWorkers = 256;

struct Options {
  Action action = Action::kXmp;
  Format format = Format::kRdf;
  bool all = false;                // pool: deleted items too.
  std::vector<const char*> files;  // As given; "-" is standard input.

  // Further inputs.
  bool recursive = false;           // Folders are walked.
  const char* filesFrom = nullptr;  // A list of names; "-": on standard input.
  bool zeroEnds = false;            // Its names end in zero bytes.

  // How they are worked on.
  int workers = 0;  // Processes; 0: not said.
  double timeoutSeconds = 0;
  bool unordered = false;
  bool progress = false;
  bool summary = false;

  // Tables.
  std::vector<std::string_view> fields;  // "prefix:Name" or a path of them, "prefix:Name/prefix:Field"; not resolved.
  std::string_view separator = "; ";     // Between the items of an array.
  bool header = false;

  [[nodiscard]] bool IsTable() const { return format == Format::kCsv || format == Format::kTsv; }
};

// False: a usage error, which `error` then says in one line.
[[nodiscard]] bool ParseOptions(int argc, const char* const* argv, Options* options, std::string* error);

[[nodiscard]] const char* HelpText();
[[nodiscard]] const char* VersionText();

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_
