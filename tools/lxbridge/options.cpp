// The grammar of the command line.
#include "tools/lxbridge/options.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "kit/base/platform.h"
#include "tools/lxbridge/suggestion.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

constexpr std::uint8_t kOfXmp = 1, kOfPool = 2, kOfFields = 4;
constexpr std::uint8_t kOfAll = kOfXmp | kOfPool | kOfFields;

struct CommandRow {
  std::string_view name;
  Action action;
  std::uint8_t bit;
  Format format;  // Unless --format is given.
};
constexpr CommandRow kCommands[] = {
    {"xmp", Action::kXmp, kOfXmp, Format::kRdf},
    {"pool", Action::kPool, kOfPool, Format::kText},
    {"fields", Action::kFields, kOfFields, Format::kText},
};

struct FormatRow {
  std::string_view name;
  Format format;
  std::uint8_t commands;
};
constexpr FormatRow kFormats[] = {
    {"rdf", Format::kRdf, kOfXmp},    {"json", Format::kJson, kOfAll}, {"flat", Format::kFlat, kOfXmp},
    {"csv", Format::kCsv, kOfXmp},    {"tsv", Format::kTsv, kOfXmp},   {"text", Format::kText, kOfPool | kOfFields},
    {"html", Format::kHtml, kOfPool},
};

struct FlagRow {
  std::string_view name;
  char letter;  // 0: none.
  std::uint8_t commands;
  bool Options::*flag;
};
constexpr FlagRow kFlags[] = {
    {"--recursive", 'r', kOfAll, &Options::recursive},
    {"--sort", 0, kOfAll, &Options::sorted},
    {"--null", '0', kOfAll, &Options::zeroEnds},
    {"--unordered", 0, kOfXmp | kOfPool, &Options::unordered},
    {"--progress", 0, kOfAll, &Options::progress},
    {"--summary", 0, kOfAll, &Options::summary},
    {"--errors", 0, kOfXmp | kOfPool, &Options::errors},
    {"--pretty", 0, kOfAll, &Options::pretty},
    {"--warnings", 0, kOfXmp, &Options::warnings},
    {"--all", 0, kOfPool, &Options::all},
    {"--decimal", 0, kOfXmp, &Options::decimal},
    {"--qualifiers", 0, kOfXmp, &Options::qualifiers},
    {"--facts", 0, kOfXmp, &Options::facts},
    {"--header", 0, kOfXmp, &Options::header},
    {"--sidecar", 0, kOfXmp, &Options::sideCars},
    {"--overwrite", 0, kOfXmp, &Options::overwrite},
};

enum class Value {
  kFormat,
  kFilesFrom,
  kJobs,
  kTimeout,
  kInclude,
  kExclude,
  kExtensions,
  kColour,
  kFields,
  kNamespace,
  kSeparator,
  kOutput,
};
struct ValueRow {
  std::string_view name;
  char letter;
  std::uint8_t commands;
  Value value;
};
constexpr ValueRow kValues[] = {
    {"--format", 0, kOfAll, Value::kFormat},       {"--files-from", 0, kOfAll, Value::kFilesFrom},
    {"--jobs", 'j', kOfAll, Value::kJobs},         {"--timeout", 0, kOfAll, Value::kTimeout},
    {"--include", 0, kOfAll, Value::kInclude},     {"--exclude", 0, kOfAll, Value::kExclude},
    {"--ext", 0, kOfAll, Value::kExtensions},      {"--color", 0, kOfAll, Value::kColour},
    {"--fields", 0, kOfXmp, Value::kFields},       {"--namespace", 0, kOfXmp, Value::kNamespace},
    {"--separator", 0, kOfXmp, Value::kSeparator}, {"--output", 0, kOfXmp, Value::kOutput},
};

bool Fail(std::string* error, std::string_view what, std::string_view word, std::string_view meant = "") {
  error->assign(what).append(" '").append(word).append("'").append(DidYouMean(meant));
  return false;
}

template <typename Number>
bool ParseNumber(std::string_view text, Number* number) {
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), *number);
  return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
}

// "all", "prefix:*", or "prefix:Name" steps separated by slashes. The toolkit checks the prefixes.
bool IsField(std::string_view field) {
  if (field == "all") return true;
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

// The parts of a comma-separated list.
std::vector<std::string_view> Parts(std::string_view list) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = list.find(',');
    parts.push_back(list.substr(0, end));
    if (end == std::string_view::npos) return parts;
    list.remove_prefix(end + 1);
  }
}

const CommandRow* CommandNamed(std::string_view name) {
  const auto at = std::find_if(std::begin(kCommands), std::end(kCommands),
                               [name](const CommandRow& command) { return command.name == name; });
  return at == std::end(kCommands) ? nullptr : at;
}

std::string_view NearestCommand(std::string_view word) {
  std::vector<std::string_view> names = {"help"};
  for (const CommandRow& command : kCommands) names.push_back(command.name);
  return NearestWord(word, names);
}

class Parser {
 public:
  Parser(int argc, const char* const* argv, Options* options, std::string* error)
      : argc_(argc), argv_(argv), options_(*options), error_(error) {}

  bool Parse() {
    options_.words.assign(argv_, argv_ + argc_);
    if (at_ < argc_) {  // A command is the first word; all later words are options or files.
      const std::string_view word = argv_[at_];
      if (word == "help") return ParseHelp();
      if (const CommandRow* named = CommandNamed(word)) {
        command_ = named;
        named_ = true;
        ++at_;
      }
    }
    options_.action = command_->action;
    options_.format = command_->format;
    bool onlyFiles = false;
    for (; at_ < argc_; ++at_) {
      word_ = argv_[at_];
      if (onlyFiles || word_ == "-" || word_.empty() || word_.front() != '-') {
        if (word_.empty()) return Say("empty FILE");
        options_.files.push_back(argv_[at_]);
      } else if (word_ == "--") {
        onlyFiles = true;
      } else if (!(word_.starts_with("--") ? ParseLong() : ParseLetters())) {
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

  bool ParseHelp() {
    options_.action = Action::kHelp;
    if (++at_ == argc_) return true;
    const std::string_view word = argv_[at_];
    const CommandRow* topic = CommandNamed(word);
    if (topic == nullptr) return Fail(error_, "unknown command", word, NearestCommand(word));
    options_.helpTopic = topic->action;
    return at_ + 1 == argc_ || Say("'help' takes one command");
  }

  void Help() {
    options_.action = Action::kHelp;
    if (named_) options_.helpTopic = command_->action;
  }

  // The option belongs to other commands.
  bool FailOther(std::string_view name, std::uint8_t commands) {
    error_->assign("option '").append(name).append("' is one of");
    const char* before = " ";
    for (const CommandRow& command : kCommands) {
      if ((commands & command.bit) == 0) continue;
      error_->append(before).append("'lxbridge ").append(command.name).append("'");
      before = " and ";
    }
    return false;
  }

  bool SetFlag(const FlagRow& row) {
    if ((row.commands & command_->bit) == 0) return FailOther(row.name, row.commands);
    options_.*row.flag = true;
    return true;
  }

  // `value`: the value in the same word, or null.
  bool SetValue(const ValueRow& row, std::string_view shown, const char* value) {
    if ((row.commands & command_->bit) == 0) return FailOther(row.name, row.commands);
    if (value == nullptr) {
      if (at_ + 1 == argc_) {
        error_->assign("option '").append(shown).append("' needs a value");
        return false;
      }
      value = argv_[++at_];
    }
    return Take(row.value, value);
  }

  // --name or --name=value
  bool ParseLong() {
    const std::size_t equals = word_.find('=');
    const std::string_view name = word_.substr(0, equals);
    const char* value = equals == std::string_view::npos ? nullptr : argv_[at_] + equals + 1;
    for (const ValueRow& row : kValues) {
      if (row.name == name) return SetValue(row, name, value);
    }
    const auto flag =
        std::find_if(std::begin(kFlags), std::end(kFlags), [name](const FlagRow& row) { return row.name == name; });
    const bool found = flag != std::end(kFlags) || name == "--help" || name == "--version";
    if (!found) return Fail(error_, "unknown option", name, NearestOption(name));
    if (value != nullptr) {
      error_->assign("option '").append(name).append("' takes no value");
      return false;
    }
    if (flag != std::end(kFlags)) return SetFlag(*flag);
    if (name == "--help") {
      Help();
    } else {
      options_.action = Action::kVersion;
    }
    return true;
  }

  // -r, -j2, -rj2, -rj 2: letters without values, optionally followed by one with a value.
  bool ParseLetters() {
    for (std::size_t i = 1; i < word_.size(); ++i) {
      const char letter = word_[i];
      const char shown[] = {'-', letter};
      const std::string_view option(shown, sizeof shown);
      if (letter == 'h' || letter == 'V') {
        if (letter == 'h') {
          Help();
        } else {
          options_.action = Action::kVersion;
        }
        return true;
      }
      const auto flag = std::find_if(std::begin(kFlags), std::end(kFlags),
                                     [letter](const FlagRow& row) { return row.letter == letter; });
      if (flag != std::end(kFlags)) {
        if (!SetFlag(*flag)) return false;
        continue;
      }
      const auto value = std::find_if(std::begin(kValues), std::end(kValues),
                                      [letter](const ValueRow& row) { return row.letter == letter; });
      if (value == std::end(kValues)) {
        return Fail(error_, "unknown option", option);
      }
      const char* rest = argv_[at_] + i + 1;
      if (*rest == '=') ++rest;
      return SetValue(*value, option, i + 1 == word_.size() ? nullptr : rest);
    }
    return true;
  }

  static std::string_view NearestOption(std::string_view name) {
    std::vector<std::string_view> names = {"--help", "--version"};
    for (const FlagRow& row : kFlags) names.push_back(row.name);
    for (const ValueRow& row : kValues) names.push_back(row.name);
    return NearestWord(name, names);
  }

  bool Take(Value kind, const char* value) {
    switch (kind) {
      case Value::kFormat:
        return TakeFormat(value);
      case Value::kFilesFrom:
        options_.filesFrom = value;
        return *value != '\0' || Say("empty list name");
      case Value::kJobs:
        if (ParseNumber(std::string_view(value), &options_.workers) && options_.workers >= 1 &&
            options_.workers <= kMostWorkers) {
          return true;
        }
        return Fail(error_, "not a number of workers from 1 to 256:", value);
      case Value::kTimeout: {
        constexpr double kLongest = 1e6;  // About eleven days; in milliseconds it fits an int.
        double& seconds = options_.timeoutSeconds;
        if (ParseNumber(std::string_view(value), &seconds) && seconds > 0 && seconds <= kLongest) return true;
        return Fail(error_, "not a number of seconds:", value);
      }
      case Value::kInclude:
      case Value::kExclude:
        if (*value == '\0') return Say("empty pattern");
        (kind == Value::kInclude ? options_.included : options_.excluded).emplace_back(value);
        return true;
      case Value::kExtensions:
        for (const std::string_view part : Parts(value)) {
          if (part.empty() || part == ".") return Fail(error_, "not a list of extensions:", value);
          options_.extensions.push_back(part.front() == '.' ? part.substr(1) : part);
        }
        return true;
      case Value::kColour:
        return TakeColour(value);
      case Value::kFields:
        options_.fields = Parts(value);
        for (const std::string_view field : options_.fields) {
          if (!IsField(field)) return Fail(error_, "not a field", field);
        }
        return true;
      case Value::kNamespace:
        return TakeNamespace(value);
      case Value::kSeparator:
        options_.separator = value;
        separated_ = true;
        return true;
      case Value::kOutput:
        options_.outputFolder = value;
        options_.sideCars = true;
        return *value != '\0' || Say("empty folder name");
    }
    return false;
  }

  bool TakeFormat(std::string_view name) {
    std::vector<std::string_view> names;
    for (const FormatRow& row : kFormats) {
      if ((row.commands & command_->bit) == 0) continue;
      if (row.name == name) {
        options_.format = row.format;
        return true;
      }
      names.push_back(row.name);
    }
    return Fail(error_, "unknown format", name, NearestWord(name, names));
  }

  bool TakeColour(std::string_view when) {
    constexpr std::string_view kNames[] = {"auto", "always", "never"};
    const auto at = std::find(std::begin(kNames), std::end(kNames), when);
    if (at == std::end(kNames)) return Fail(error_, "not one of auto, always and never:", when);
    options_.colour = static_cast<Colour>(at - std::begin(kNames));
    return true;
  }

  bool TakeNamespace(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == 0 || equals == std::string_view::npos || equals + 1 == text.size() ||
        text.substr(0, equals).find_first_of(":/,*") != std::string_view::npos) {
      return Fail(error_, "not PREFIX=URI:", text);
    }
    const std::string_view prefix = text.substr(0, equals);
    if (prefix == "file" || prefix == "image") return Fail(error_, "a prefix of file facts:", prefix);
    options_.namespaces.push_back({prefix, text.substr(equals + 1)});
    return true;
  }

  bool FitsTogether() {
    if (options_.files.empty() && options_.filesFrom == nullptr) {
      if (options_.action == Action::kFields) return true;  // List the table of fields.
      return Say("no FILE given");
    }
    if (!named_ && options_.files.size() > 1 && argv_[1] == options_.files.front()) {
      // "lxbridge pol a.jpg": a missing file with almost the name of a command is probably a misspelt command.
      const std::string_view word = options_.files.front();
      if (const std::string_view meant = NearestCommand(word);
          !meant.empty() && LookAtPath(options_.files.front()).kind == PathFacts::Kind::kMissing) {
        return Fail(error_, "no command and no file", word, meant);
      }
    }
    if (options_.zeroEnds && options_.filesFrom == nullptr) return Say("option '-0' needs '--files-from'");
    if (options_.filesFrom != nullptr && std::string_view(options_.filesFrom) == "-") {
      for (const char* file : options_.files) {
        if (std::string_view(file) == "-") return Say("standard input is a FILE or the list, not both");
      }
    }
    const bool filters =
        !options_.included.empty() || !options_.excluded.empty() || !options_.extensions.empty() || options_.sorted;
    if (filters && !options_.recursive) return Say("'--include', '--exclude', '--ext' and '--sort' need '-r'");
    return FormatFits() && SideCarsFit();
  }

  bool FormatFits() {
    const bool flat = options_.format == Format::kFlat;
    if (options_.format == Format::kHtml && options_.MayBeMany()) return Say("--format html takes one FILE");
    if (options_.IsTable() && options_.fields.empty()) return Say("a table needs '--fields'");
    if (!options_.IsTable() && (options_.header || separated_)) {
      return Say("'--separator' and '--header' need '--format csv' or 'tsv'");
    }
    if (!options_.IsTable() && !flat &&
        (!options_.fields.empty() || !options_.namespaces.empty() || options_.decimal)) {
      return Say("'--fields', '--namespace' and '--decimal' need '--format flat', 'csv' or 'tsv'");
    }
    if (!flat && (options_.qualifiers || options_.facts))
      return Say("'--qualifiers' and '--facts' need '--format flat'");
    if (!options_.IsJson() && (options_.errors || options_.pretty)) {
      return Say("'--errors' and '--pretty' need a JSON format");
    }
    return true;
  }

  bool SideCarsFit() {
    if (options_.overwrite && !options_.sideCars) return Say("'--overwrite' needs '--sidecar' or '--output'");
    if (!options_.sideCars) return true;
    if (options_.format != Format::kRdf)
      return Say("side-cars are packets: '--sidecar' and '--output' need '--format rdf'");
    return true;
  }

  int argc_;
  const char* const* argv_;
  Options& options_;
  std::string* error_;
  const CommandRow* command_ = &kCommands[0];
  bool named_ = false;
  int at_ = 1;
  std::string_view word_;
  bool separated_ = false;
};

// https://no-color.org: any value except an empty one. TERM=dumb means that the terminal has no colours.
bool Colours(Colour choice, std::FILE* stream) {
  if (choice != Colour::kAuto) return choice == Colour::kAlways;
  const char* no = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  return LxPlatformIsTerminal(stream) && (no == nullptr || *no == '\0') &&
         (terminal == nullptr || std::string_view(terminal) != "dumb");
}

}  // namespace

bool ParseOptions(int argc, const char* const* argv, Options* options, std::string* error) {
  *options = Options();
  return Parser(argc, argv, options, error).Parse();
}

void SettleTerminal(Options* options) {
  options->colouredResults = Colours(options->colour, stdout);
  options->namedPackets = options->MayBeMany() && LxPlatformIsTerminal(stdout);
}

bool ColoursMessages(const Options& options) {
  return Colours(options.colour, stderr);
}

}  // namespace lxbridge::command
