// The grammar of the command line.
#include "tools/lxbridge/options.h"

#include <charconv>
#include <optional>
#include <string_view>

namespace lxbridge::command {

namespace {

std::optional<Format> FormatOf(Action action, std::string_view name) {
  if (name == "json") return Format::kJson;
  if (action == Action::kXmp && name == "rdf") return Format::kRdf;
  if (action == Action::kXmp && name == "csv") return Format::kCsv;
  if (action == Action::kXmp && name == "tsv") return Format::kTsv;
  if (action == Action::kPool && name == "text") return Format::kText;
  return std::nullopt;
}

bool Fail(std::string* error, std::string_view what, std::string_view word) {
  error->assign(what);
  error->append(" '").append(word).append("'");
  return false;
}

template <typename Number>
bool ParseNumber(std::string_view text, Number* number) {
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), *number);
  return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
}

// "prefix:Name" steps between slashes. Whether the prefixes are known is the toolkit's to say.
bool IsField(std::string_view field) {
  for (;;) {
    const std::size_t end = field.find('/');
    const std::string_view step = field.substr(0, end);
    const std::size_t colon = step.find(':');
    if (colon == 0 || colon == std::string_view::npos || colon + 1 == step.size()) return false;
    if (step.find(':', colon + 1) != std::string_view::npos) return false;
    if (end == std::string_view::npos) return true;
    field.remove_prefix(end + 1);
  }
}

bool ParseFields(std::string_view list, std::vector<std::string_view>* fields, std::string* error) {
  fields->clear();
  for (;;) {
    const std::size_t end = list.find(',');
    const std::string_view field = list.substr(0, end);
    if (!IsField(field)) return Fail(error, "not a field", field);
    fields->push_back(field);
    if (end == std::string_view::npos) return true;
    list.remove_prefix(end + 1);
  }
}

class Parser {
 public:
  Parser(int argc, const char* const* argv, Options* options, std::string* error)
      : argc_(argc), argv_(argv), options_(*options), error_(error) {}

  bool Parse() {
    if (at_ < argc_) {  // A subcommand stands first or nowhere: behind it every word is an option or a file.
      const std::string_view word = argv_[at_];
      if (word == "xmp" || word == "pool") {
        options_.action = word == "xmp" ? Action::kXmp : Action::kPool;
        ++at_;
      }
    }
    options_.format = options_.action == Action::kPool ? Format::kText : Format::kRdf;
    bool onlyFiles = false;
    for (; at_ < argc_; ++at_) {
      word_ = argv_[at_];
      if (onlyFiles || word_ == "-" || word_.empty() || word_.front() != '-') {
        if (word_.empty()) return Say("empty FILE");
        options_.files.push_back(argv_[at_]);
      } else if (word_ == "--") {
        onlyFiles = true;
      } else if (!ParseOption()) {
        return false;
      }
      if (options_.action == Action::kHelp || options_.action == Action::kVersion) return true;
    }
    return FitsTogether();
  }

 private:
  bool Say(const char* what) {
    *error_ = what;
    return false;
  }

  // The word is the option NAME, alone or as NAME=VALUE; -j also as -jVALUE.
  bool Is(std::string_view name) const {
    if (!word_.starts_with(name)) return false;
    return word_.size() == name.size() || word_[name.size()] == '=' || name == "-j";
  }

  // Its value, never null behind a true.
  bool Value(std::string_view name, const char** value) {
    if (word_.size() > name.size()) {
      *value = argv_[at_] + name.size() + (word_[name.size()] == '=' ? 1 : 0);
      return true;
    }
    if (at_ + 1 == argc_) {
      error_->assign("option '").append(name).append("' needs a value");
      return false;
    }
    *value = argv_[++at_];
    return true;
  }

  bool Flag(std::string_view name, bool* flag) {
    if (word_ != name) return false;
    *flag = true;
    return true;
  }

  bool ParseOption() {
    const bool xmp = options_.action == Action::kXmp;
    const char* value = nullptr;
    if (word_ == "--help" || word_ == "-h") {
      options_.action = Action::kHelp;
      return true;
    }
    if (word_ == "--version" || word_ == "-V") {
      options_.action = Action::kVersion;
      return true;
    }
    if (!xmp && Flag("--all", &options_.all)) return true;
    if (Flag("-r", &options_.recursive) || Flag("--recursive", &options_.recursive) || Flag("-0", &options_.zeroEnds) ||
        Flag("--null", &options_.zeroEnds) || Flag("--unordered", &options_.unordered) ||
        Flag("--progress", &options_.progress) || Flag("--summary", &options_.summary) ||
        (xmp && Flag("--header", &options_.header))) {
      return true;
    }
    if (Is("--format")) {
      if (!Value("--format", &value)) return false;
      const std::optional<Format> format = FormatOf(options_.action, value);
      if (!format) return Fail(error_, "unknown format", value);
      options_.format = *format;
      return true;
    }
    if (Is("--files-from")) {
      if (!Value("--files-from", &options_.filesFrom)) return false;
      return *options_.filesFrom != '\0' || Say("empty name of a list");
    }
    for (const std::string_view name : {"-j", "--jobs"}) {
      if (!Is(name)) continue;
      if (!Value(name, &value)) return false;
      if (ParseNumber(value, &options_.workers) && options_.workers >= 1 && options_.workers <= kMostWorkers) {
        return true;
      }
      return Fail(error_, "not a number of workers from 1 to 256:", value);
    }
    if (Is("--timeout")) {
      constexpr double kLongest = 1e6;  // Days; milliseconds of it fit an int.
      if (!Value("--timeout", &value)) return false;
      double& seconds = options_.timeoutSeconds;
      if (ParseNumber(std::string_view(value), &seconds) && seconds > 0 && seconds <= kLongest) return true;
      return Fail(error_, "not a number of seconds:", value);
    }
    if (xmp && Is("--fields")) {
      return Value("--fields", &value) && ParseFields(value, &options_.fields, error_);
    }
    if (xmp && Is("--separator")) {
      if (!Value("--separator", &value)) return false;
      options_.separator = value;
      separated_ = true;
      return true;
    }
    return Fail(error_, "unknown option", word_);
  }

  bool FitsTogether() {
    if (options_.files.empty() && options_.filesFrom == nullptr) return Say("no FILE given");
    if (options_.zeroEnds && options_.filesFrom == nullptr) return Say("option '-0' needs '--files-from'");
    if (options_.filesFrom != nullptr && std::string_view(options_.filesFrom) == "-") {
      for (const char* file : options_.files) {
        if (std::string_view(file) == "-") return Say("standard input is a FILE or the list, not both");
      }
    }
    if (options_.IsTable() && options_.fields.empty()) return Say("a table needs '--fields'");
    if (!options_.IsTable() && (!options_.fields.empty() || options_.header || separated_)) {
      return Say("'--fields', '--separator' and '--header' need '--format csv' or 'tsv'");
    }
    return true;
  }

  int argc_;
  const char* const* argv_;
  Options& options_;
  std::string* error_;
  int at_ = 1;
  std::string_view word_;
  bool separated_ = false;
};

}  // namespace

bool ParseOptions(int argc, const char* const* argv, Options* options, std::string* error) {
  *options = Options();
  return Parser(argc, argv, options, error).Parse();
}

const char* HelpText() {
  return R"help(Usage: lxbridge [OPTIONS] FILE...        (the same as: lxbridge xmp FILE...)
       lxbridge xmp  [--format rdf|json] [OPTIONS] FILE...
       lxbridge xmp  --format csv|tsv --fields LIST [OPTIONS] FILE...
       lxbridge pool [--format text|json] [--all] [OPTIONS] FILE...

Reads the metadata of image files (JPEG, TIFF, PSD; the headers of PNG, BMP and GIF).

Commands:
  xmp    print each file's metadata as XMP: a packet (rdf), a line of JSON (json) or
         a row of a table (csv, tsv)
  pool   print what the readers saw in each file: a tree of items (text) or a line of
         JSON (json)

Output:
  --format FORMAT    rdf (default of xmp), csv, tsv; text (default of pool); json
  --all              pool, text: deleted items too
  --fields LIST      csv, tsv: the columns behind the file's name, between commas:
                     tiff:Make,exif:DateTimeOriginal,exif:Flash/exif:Fired. A property
                     that a file does not have is an empty cell
  --separator TEXT   csv, tsv: what stands between the items of an array ("; ")
  --header           csv, tsv: a first row with the names of the columns
                     Cells are quoted as RFC 4180 has it, in both; the rows of csv end
                     in CR LF, those of tsv in LF

Input:
  -r, --recursive    walk folders: hidden files too, links not followed. Files that no
                     reader takes are passed over; one that is named is not
  --files-from LIST  further files, one name a line of the file LIST; - is standard
                     input, and the names are worked on as they come
  -0, --null         the names of the list end in zero bytes, not in line ends
  FILE - is standard input, which has to be seekable: lxbridge - < photo.jpg
  A file named like a command is given as ./pool, or behind --.

Many files:
  -j, --jobs N       work in N processes (1 to 256; default: as many as there are
                     processors, once there are more than a few files). A file that
                     brings its process down costs nothing but itself
  --timeout SECONDS  give up a file that takes longer
  --unordered        print results as they come, not in the order of the files
  --progress         say on standard error how far it is; without it only when that is
                     a terminal, standard output is none, and it takes a while
  --summary          say on standard error, last, how many files of each status and
                     kind there were, and how many were passed over

  --help, --version  print this, or the version, and exit
  --                 end of the options

Results are on standard output, one whole packet, line or row a file. A file that
fails has one line on standard error, "lxbridge: FILE: NotFound" or what else it is:
"is a directory", "crashed (signal 11)", "timed out", for a folder what the system
says. The other files are done all the same.

Exit status: 0 every file was read;
  1 at least one was not ; 2 the command line is wrong.
)help";
}

const char* VersionText() {
  return "lxbridge " LXBRIDGE_VERSION "\n";
}

}  // namespace lxbridge::command
