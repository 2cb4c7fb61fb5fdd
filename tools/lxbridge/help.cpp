// The texts of --help and --version.
#include <string>
#include <string_view>

#include "kit/readers/inflate.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

namespace {

constexpr std::string_view kGeneral = R"help(Usage: lxbridge [OPTIONS] FILE...         same as: lxbridge xmp FILE...
       lxbridge xmp    [OPTIONS] FILE...
       lxbridge pool   [OPTIONS] FILE...
       lxbridge fields [OPTIONS] [FILE...]
       lxbridge help   [COMMAND]

Reads the metadata of image files and prints it. Files are never changed.

Commands:
  xmp     the metadata as XMP: a packet, JSON, or a row of a table
  pool    the items that the readers found, before they are converted
  fields  the properties that a file can have, or that the given files have
  help    the options of a command

Common options:
  --format FORMAT      xmp: rdf (default), json, flat, csv, tsv
                       pool: text (default), json, html
                       fields: text (default), json
  -r, --recursive      read all files in folders
  --files-from LIST    read more file names from LIST, one per line; "-" is
                       standard input
  -j, --jobs N         use N processes
  -h, --help           print this text, or the options of a command
  -V, --version        print the version

FILE "-" is standard input. A file with the name of a command is given as
./pool, or after "--", which ends the options.

Results go to standard output, messages to standard error. A file that cannot
be read is reported in one line ("lxbridge: FILE: NotFound"), and the other
files are still read.

Exit status:
  0  all files were read
  1  the output is complete, but at least one file was not read
  2  the command line is wrong; nothing was done
  3  the run was cut off: the output is not complete
)help";

constexpr std::string_view kXmp = R"help(Usage: lxbridge [xmp] [OPTIONS] FILE...

Prints the metadata of each file as XMP.

Formats:
  --format rdf         one XMP packet per file (default)
  --format json        one line of JSON per file, with schemas and qualifiers
  --format flat        one line of JSON per file, with a member per property:
                       {"file": "a.jpg", "tiff:Make": "Canon", ...}
  --format csv, tsv    one row per file, with the columns of --fields
  --pretty             json, flat: indent the JSON

Properties:
  --fields LIST        csv, tsv, flat: these properties only, in this order. A
                       list such as tiff:Make,exif:Flash/exif:Fired. exif:* is
                       all known properties of a schema, all is all of them.
                       Facts of the file: file:size, file:modified, file:kind,
                       image:width, image:height, image:orientation
  --namespace P=URI    let the prefix P in --fields stand for the namespace URI
  --decimal            csv, tsv, flat: rationals as decimal numbers, GPS
                       coordinates as signed degrees, integers and booleans as
                       such. Dates stay ISO 8601 texts
  --facts              flat: add all facts of the file
  --qualifiers         flat: {"value": ..., "qualifiers": {...}} for a value
                       that has qualifiers
  --warnings           report what of a packet was skipped, and where
  --separator TEXT     csv, tsv: the text between the items of an array ("; ")
  --header             csv, tsv: print the names of the columns first
                       Cells are quoted by RFC 4180, but their text is printed
                       as it is in the file: a spreadsheet may take a cell that
                       begins with = + - or @ for a formula

Side-cars:
  --sidecar            write each packet to FILE.xmp instead
  --output FOLDER      write it below FOLDER, under the path of the file
  --overwrite          replace files that exist
)help";

constexpr std::string_view kPool = R"help(Usage: lxbridge pool [OPTIONS] FILE...

Prints the items that the readers found in each file, before they are
converted to XMP.

Formats:
  --format text        a tree, with one line per item (default)
  --format json        one line of JSON per file
  --format html        one page that shows items, bytes and XMP side by side;
                       it needs no other file and no network
  --all                text: show deleted items too
  --pretty             json: indent the JSON
)help";

constexpr std::string_view kFields = R"help(Usage: lxbridge fields [OPTIONS] [FILE...]

Without FILE, lists all properties that LxBridge knows by name: type, source
(the tag or dataset, or the XMP packet) and an example.
With FILE, lists the properties that these files have: the number of files
with the property, and an example.

Formats:
  --format text        columns (default)
  --format json        one line of JSON per property
  --pretty             json: indent the JSON
)help";

constexpr std::string_view kFiles = R"help(
Files:
  -r, --recursive      read all files in folders. Hidden files are included,
                       links are not followed, files of other kinds are ignored
  --sort               with -r: in the byte order of the paths
  --ext LIST           with -r: files with these extensions only (jpg,tif)
  --include GLOB       with -r: files whose name matches only; may be repeated
  --exclude GLOB       with -r: not files or folders whose name matches. A GLOB
                       with a slash is matched with the whole path; ** there
                       matches any number of folders
  --files-from LIST    read more file names from LIST, one per line; "-" is
                       standard input
  -0, --null           the names in LIST end in zero bytes (find -print0)

Run:
  -j, --jobs N         use N processes (1 to 256). Default: one per processor
                       for folders, lists and more than 16 files
  --timeout SECONDS    give up on a file that takes longer
  --progress           report progress on standard error
  --summary            report the number of files of each status and kind
  --color WHEN         auto (default), always or never; auto is for terminals
                       and obeys NO_COLOR
)help";

// For the commands that print a result for each file.
constexpr std::string_view kResults = R"help(  --unordered          print results as soon as they are there
  --errors             JSON: print {"file": ..., "error": ...} in place of a
                       result that is missing
)help";

}  // namespace

std::string HelpText(Action topic) {
  switch (topic) {
    case Action::kXmp:
      return std::string(kXmp).append(kFiles).append(kResults);
    case Action::kPool:
      return std::string(kPool).append(kFiles).append(kResults);
    case Action::kFields:
      return std::string(kFields).append(kFiles);
    case Action::kHelp:
    case Action::kVersion:
      break;
  }
  return std::string(kGeneral);
}

std::string VersionText() {
  std::string text = "lxbridge " LXBRIDGE_VERSION " (";
  text.append(LxHasZlib() ? "zlib, " : "no zlib, ");
  return text.append(LxHasBrotli() ? "Brotli)\n" : "no Brotli)\n");
}

}  // namespace lxbridge::command
