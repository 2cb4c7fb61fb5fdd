// The command line's grammar: what is a file, what is an option, and what each mistake is called.
#include "tools/lxbridge/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lxbridge::command {
namespace {

// "xmp rdf: a.jpg b.jpg", with " all" behind the format; or the error.
std::string Parsed(const std::vector<const char*>& words) {
  std::vector<const char*> argv = {"lxbridge"};
  argv.insert(argv.end(), words.begin(), words.end());
  Options options;
  std::string error;
  if (!ParseOptions(static_cast<int>(argv.size()), argv.data(), &options, &error)) return error;
  if (options.action == Action::kHelp) return "help";
  if (options.action == Action::kVersion) return "version";
  std::string text = options.action == Action::kPool ? "pool" : "xmp";
  text += options.format == Format::kRdf ? " rdf" : options.format == Format::kText ? " text" : " json";
  if (options.all) text += " all";
  text += ':';
  for (const char* file : options.files) text += std::string(" ") + file;
  return text;
}

TEST(Options, FilesAndOptionsStandInAnyOrderBehindTheCommand) {
  const struct {
    std::vector<const char*> words;
    const char* parsed;
  } kCases[] = {
      {{"a.jpg"}, "xmp rdf: a.jpg"},
      {{"pool", "a.jpg"}, "pool text: a.jpg"},
      {{"--format", "json", "a.jpg"}, "xmp json: a.jpg"},
      {{"a.jpg", "--format=json", "b.jpg"}, "xmp json: a.jpg b.jpg"},
      {{"pool", "a.jpg", "--all", "--format", "json"}, "pool json all: a.jpg"},
      {{"xmp", "--format", "json", "--format", "rdf", "a.jpg"}, "xmp rdf: a.jpg"},
      {{"xmp", "-", "a.jpg"}, "xmp rdf: - a.jpg"},
      // Behind "--" all is a file, also what looks like an option or a command.
      {{"xmp", "--format", "json", "--", "--format", "-", "--"}, "xmp json: --format - --"},
      {{"--", "pool"}, "xmp rdf: pool"},
      {{"a.jpg", "pool"}, "xmp rdf: a.jpg pool"},
      {{"--help"}, "help"},
      {{"pool", "a.jpg", "-h"}, "help"},
      {{"xmp", "--version"}, "version"},
      {{"--", "--help"}, "xmp rdf: --help"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Parsed(c.words), c.parsed);
}

TEST(Options, EveryMistakeIsNamed) {
  const struct {
    std::vector<const char*> words;
    const char* error;
  } kCases[] = {
      {{}, "no FILE given"},
      {{"xmp", "--format", "json", "--"}, "no FILE given"},
      {{"a.jpg", ""}, "empty FILE"},
      {{"--fromat", "json", "a.jpg"}, "unknown option '--fromat'"},
      {{"--formatjson", "a.jpg"}, "unknown option '--formatjson'"},
      {{"-f", "a.jpg"}, "unknown option '-f'"},
      {{"--help=all"}, "unknown option '--help=all'"},
      {{"xmp", "--all", "a.jpg"}, "unknown option '--all'"},
      {{"--format", "text", "a.jpg"}, "unknown format 'text'"},
      {{"pool", "--format", "rdf", "a.jpg"}, "unknown format 'rdf'"},
      {{"--format", "JSON", "a.jpg"}, "unknown format 'JSON'"},
      {{"a.jpg", "--format"}, "option '--format' needs a value"},
      {{"-j", "0", "a.jpg"}, "not a number of workers from 1 to 256: '0'"},
      {{"--timeout=1s", "a.jpg"}, "not a number of seconds: '1s'"},
      {{"--timeout", "nan", "a.jpg"}, "not a number of seconds: 'nan'"},
      {{"-0", "a.jpg"}, "option '-0' needs '--files-from'"},
      {{"--files-from=", "a.jpg"}, "empty name of a list"},
      {{"--files-from", "-", "-"}, "standard input is a FILE or the list, not both"},
      {{"--format", "csv", "a.jpg"}, "a table needs '--fields'"},
      {{"--fields", "tiff:Make", "a.jpg"}, "'--fields', '--separator' and '--header' need '--format csv' or 'tsv'"},
      {{"--format=csv", "--fields", "tiff:Make,Model", "a.jpg"}, "not a field 'Model'"},
      {{"--format=csv", "--fields", "exif:Flash/", "a.jpg"}, "not a field 'exif:Flash/'"},
      {{"pool", "--fields", "tiff:Make", "a.jpg"}, "unknown option '--fields'"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Parsed(c.words), c.error);
}

}  // namespace
}  // namespace lxbridge::command
