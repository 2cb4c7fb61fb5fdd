// The command line's grammar: files, options, and the message for each mistake.
#include "tools/lxbridge/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lxbridge::command {
namespace {

// The action, the format, whatever else is not as it is by itself, and the files; or the error.
std::string Parsed(const std::vector<const char*>& words) {
  std::vector<const char*> argv = {"lxbridge"};
  argv.insert(argv.end(), words.begin(), words.end());
  Options o;
  std::string error;
  if (!ParseOptions(static_cast<int>(argv.size()), argv.data(), &o, &error)) return error;
  constexpr const char* kActions[] = {"xmp", "pool", "fields", "help", "version"};
  constexpr const char* kFormats[] = {"rdf", "text", "json", "flat", "csv", "tsv", "html"};
  std::string text = kActions[static_cast<int>(o.action)];
  if (o.action == Action::kHelp) return text + " " + kActions[static_cast<int>(o.helpTopic)];
  if (o.action == Action::kVersion) return text;
  text += std::string(" ") + kFormats[static_cast<int>(o.format)];
  const std::pair<const char*, bool> kFlags[] = {{" all", o.all},          {" -r", o.recursive},
                                                 {" -0", o.zeroEnds},      {" decimal", o.decimal},
                                                 {" sidecar", o.sideCars}, {" always", o.colour == Colour::kAlways}};
  for (const auto& [name, set] : kFlags) text += set ? name : "";
  if (o.workers != 0) text += " -j" + std::to_string(o.workers);
  for (const std::string_view field : o.fields) text += " " + std::string(field);
  for (const std::string_view extension : o.extensions) text += " ." + std::string(extension);
  for (const auto& named : o.namespaces) text += " " + std::string(named.prefix) + "=" + std::string(named.uri);
  text += ':';
  for (const char* file : o.files) text += std::string(" ") + file;
  return text;
}

TEST(Options, FilesAndOptionsStandInAnyOrderAfterTheCommand) {
  const struct {
    std::vector<const char*> words;
    const char* parsed;
  } kCases[] = {
      {{"a.jpg"}, "xmp rdf: a.jpg"},
      {{"pool", "a.jpg"}, "pool text: a.jpg"},
      {{"fields"}, "fields text:"},
      {{"a.jpg", "--format=json", "b.jpg"}, "xmp json: a.jpg b.jpg"},
      {{"pool", "a.jpg", "--all", "--format", "html"}, "pool html all: a.jpg"},
      {{"xmp", "--format", "json", "--format", "rdf", "a.jpg"}, "xmp rdf: a.jpg"},
      {{"xmp", "-", "a.jpg"}, "xmp rdf: - a.jpg"},
      // After "--" everything is a file, even if it looks like an option or a command.
      {{"xmp", "--format", "json", "--", "--format", "-", "--"}, "xmp json: --format - --"},
      {{"--", "pool"}, "xmp rdf: pool"},
      {{"a.jpg", "pool"}, "xmp rdf: a.jpg pool"},
      {{"--", "--help"}, "xmp rdf: --help"},
      {{"--help"}, "help help"},
      {{"pool", "a.jpg", "-rh"}, "help pool"},
      {{"help", "xmp"}, "help xmp"},
      {{"xmp", "--version"}, "version"},
      // Letters in one word, the last of them with its value there or in the next.
      {{"-rj2", "a"}, "xmp rdf -r -j2: a"},
      {{"-r0j", "2", "--files-from=l"}, "xmp rdf -r -0 -j2:"},
      {{"-j=3", "a"}, "xmp rdf -j3: a"},
      {{"--format=flat", "--decimal", "--fields", "all,exif:*,a:B/c:D", "--namespace", "a=u=v", "a"},
       "xmp flat decimal all exif:* a:B/c:D a=u=v: a"},
      {{"-r", "--ext", "jpg,.tif", "--output", "o", "--color=always", "d"}, "xmp rdf -r sidecar always .jpg .tif: d"},
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
      {{"--fromat", "json", "a.jpg"}, "unknown option '--fromat'; did you mean '--format'?"},
      {{"-recursive", "a.jpg"}, "unknown option '-e'"},
      {{"--somethingelse", "a.jpg"}, "unknown option '--somethingelse'"},
      {{"-f", "a.jpg"}, "unknown option '-f'"},
      {{"-rf", "a.jpg"}, "unknown option '-f'"},
      {{"--help=all"}, "option '--help' takes no value"},
      {{"xmp", "--all", "a.jpg"}, "option '--all' is one of 'lxbridge pool'"},
      {{"fields", "--unordered"}, "option '--unordered' is one of 'lxbridge xmp' and 'lxbridge pool'"},
      {{"--format", "text", "a.jpg"}, "unknown format 'text'"},
      {{"pool", "--format", "rdf", "a.jpg"}, "unknown format 'rdf'"},
      {{"--format", "JSON", "a.jpg"}, "unknown format 'JSON'; did you mean 'json'?"},
      {{"polo", "no such file"}, "no command and no file 'polo'; did you mean 'pool'?"},
      {{"help", "feilds"}, "unknown command 'feilds'; did you mean 'fields'?"},
      {{"a.jpg", "--format"}, "option '--format' needs a value"},
      {{"a.jpg", "-rj"}, "option '-j' needs a value"},
      {{"-j", "0", "a.jpg"}, "not a number of workers from 1 to 256: '0'"},
      {{"-j257", "a.jpg"}, "not a number of workers from 1 to 256: '257'"},
      {{"--timeout=1s", "a.jpg"}, "not a number of seconds: '1s'"},
      {{"--timeout", "nan", "a.jpg"}, "not a number of seconds: 'nan'"},
      {{"--color=yes", "a.jpg"}, "not one of auto, always and never: 'yes'"},
      {{"-0", "a.jpg"}, "option '-0' needs '--files-from'"},
      {{"--files-from=", "a.jpg"}, "empty list name"},
      {{"--files-from", "-", "-"}, "standard input is a FILE or the list, not both"},
      {{"--sort", "a"}, "'--include', '--exclude', '--ext' and '--sort' need '-r'"},
      {{"-r", "--ext=jpg,", "a"}, "not a list of extensions: 'jpg,'"},
      {{"--format", "csv", "a.jpg"}, "a table needs '--fields'"},
      {{"--fields", "tiff:Make", "a.jpg"},
       "'--fields', '--namespace' and '--decimal' need '--format flat', 'csv' or 'tsv'"},
      {{"--format=csv", "--fields", "tiff:Make,Model", "a.jpg"}, "not a field 'Model'"},
      {{"--format=csv", "--fields", "exif:Flash/", "a.jpg"}, "not a field 'exif:Flash/'"},
      {{"--format=flat", "--namespace", "image=u", "a.jpg"}, "a prefix of file facts: 'image'"},
      {{"--format=flat", "--namespace", "a:b=u", "a.jpg"}, "not PREFIX=URI: 'a:b=u'"},
      {{"--format=flat", "--namespace", ",b=u", "a.jpg"}, "not PREFIX=URI: ',b=u'"},
      {{"--format=flat", "--separator=;", "a.jpg"}, "'--separator' and '--header' need '--format csv' or 'tsv'"},
      {{"--errors", "a.jpg"}, "'--errors' and '--pretty' need a JSON format"},
      {{"--overwrite", "a.jpg"}, "'--overwrite' needs '--sidecar' or '--output'"},
      {{"--sidecar", "--format=json", "a.jpg"},
       "side-cars are packets: '--sidecar' and '--output' need '--format rdf'"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Parsed(c.words), c.error);
}

}  // namespace
}  // namespace lxbridge::command
