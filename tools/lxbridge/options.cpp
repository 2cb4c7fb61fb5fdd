// The grammar of the command line. Touches nothing else of the tree.
#include "tools/lxbridge/options.h"

#include <optional>
#include <string_view>

namespace lxbridge::command {

namespace {

std::optional<Format> FormatOf(Action action, std::string_view name) {
  if (name == "json") return Format::kJson;
  if (action == Action::kXmp && name == "rdf") return Format::kRdf;
  if (action == Action::kPool && name == "text") return Format::kText;
  return std::nullopt;
}

bool Fail(std::string* error, std::string_view what, std::string_view word) {
  error->assign(what);
  error->append(" '").append(word).append("'");
  return false;
}

}  // namespace

bool ParseOptions(int argc, const char* const* argv, Options* options, std::string* error) {
  *options = Options();
  int at = 1;
  if (at < argc) {  // A subcommand stands first or nowhere: behind it every word is an option or a file.
    const std::string_view word = argv[at];
    if (word == "xmp" || word == "pool") {
      options->action = word == "xmp" ? Action::kXmp : Action::kPool;
      ++at;
    }
  }
  options->format = options->action == Action::kPool ? Format::kText : Format::kRdf;

  bool onlyFiles = false;
  for (; at < argc; ++at) {
    const std::string_view word = argv[at];
    if (onlyFiles || word == "-" || word.empty() || word.front() != '-') {
      if (word.empty()) {
        *error = "empty FILE";
        return false;
      }
      options->files.push_back(argv[at]);
      continue;
    }
    if (word == "--") {
      onlyFiles = true;
    } else if (word == "--help" || word == "-h") {
      options->action = Action::kHelp;
      return true;
    } else if (word == "--version" || word == "-V") {
      options->action = Action::kVersion;
      return true;
    } else if (word == "--all" && options->action == Action::kPool) {
      options->all = true;
    } else if (word == "--format" || word.starts_with("--format=")) {
      std::string_view name;
      if (word == "--format") {
        if (at + 1 == argc) {
          *error = "option '--format' needs a value";
          return false;
        }
        name = argv[++at];
      } else {
        name = word.substr(sizeof("--format=") - 1);
      }
      const std::optional<Format> format = FormatOf(options->action, name);
      if (!format) return Fail(error, "unknown format", name);
      options->format = *format;
    } else {
      return Fail(error, "unknown option", word);
    }
  }
  if (options->files.empty()) {
    *error = "no FILE given";
    return false;
  }
  return true;
}

const char* HelpText() {
  return R"(Usage: lxbridge [OPTIONS] FILE...        (the same as: lxbridge xmp FILE...)
       lxbridge xmp  [--format rdf|json] FILE...
       lxbridge pool [--format text|json] [--all] FILE...

Reads the metadata of image files (JPEG, TIFF, PSD; the headers of PNG, BMP and GIF).

Commands:
  xmp    print each file's metadata as XMP: a packet (rdf) or a line of JSON (json)
  pool   print what the readers saw in each file: a tree of items (text) or a line of JSON (json)

Options:
  --format FORMAT  rdf (default of xmp), text (default of pool) or json
  --all            pool, text: deleted items too
  --help           print this and exit
  --version        print the version and exit
  --               end of the options

FILE - is standard input, which has to be seekable: lxbridge - < photo.jpg
A file named like a command is given as ./pool, or behind --.

Exit status: 0 every file was read; 1 at least one was not; 2 the command line is wrong.
)";
}

const char* VersionText() {
  return "lxbridge " LXBRIDGE_VERSION "\n";
}

}  // namespace lxbridge::command
