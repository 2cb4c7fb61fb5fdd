// The command line of `lxbridge` as a record. Touches nothing else of the tree and prints nothing.
//
// Parsed by hand: the grammar is two subcommands and a few options, and a library for it would cost more at start-up
// than reading a photograph does.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_

#include <string>
#include <vector>

namespace lxbridge::command {

enum class Action { kXmp, kPool, kHelp, kVersion };
enum class Format { kRdf, kText, kJson };

struct Options {
  Action action = Action::kXmp;
  Format format = Format::kRdf;
  bool all = false;                // pool: deleted items too.
  std::vector<const char*> files;  // As given; "-" is standard input.
};

// False: a usage error, which `error` then says in one line.
[[nodiscard]] bool ParseOptions(int argc, const char* const* argv, Options* options, std::string* error);

[[nodiscard]] const char* HelpText();
[[nodiscard]] const char* VersionText();

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_OPTIONS_H_
