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

Reads the metadata of image files and prints it. Image files are never changed.

Commands:
  xmp     the metadata as XMP: a packet, JSON, or a row of a table
  pool    the items read from a file, before they are converted to XMP
  fields  the known properties, or those of the given files
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
  3  the run was cut off; the output is not complete
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
  --fields LIST        csv, tsv, flat: only these properties, in this order,
                       such as tiff:Make,exif:Flash/exif:Fired. exif:* means
                       all known properties of a schema, all means all known
                       properties. Facts about the file: file:size,
                       file:modified, file:kind, image:width, image:height,
                       image:orientation
  --namespace P=URI    use the prefix P in --fields for the namespace URI
  --decimal            csv, tsv, flat: print rationals as decimal numbers, GPS
                       coordinates as signed degrees, and integers and booleans
                       as JSON values. Dates stay ISO 8601 texts
  --facts              flat: add all facts about the file
  --qualifiers         flat: print {"value": ..., "qualifiers": {...}} for
                       values with qualifiers
  --warnings           report the parts of packets that were skipped
  --separator TEXT     csv, tsv: the text between the items of an array ("; ")
  --header             csv, tsv: print the names of the columns first
                       Cells are quoted as in RFC 4180, but their text is not
                       changed: a spreadsheet may take a cell that begins with
                       = + - or @ for a formula

Side-cars:
  --sidecar            write each packet to FILE.xmp instead
  --output FOLDER      write it to FOLDER/FILE.xmp instead
  --overwrite          replace existing files
)help";

constexpr std::string_view kPool = R"help(Usage: lxbridge pool [OPTIONS] FILE...

Prints the items read from each file, before they are converted to XMP.

Formats:
  --format text        a tree, with one line per item (default)
  --format json        one line of JSON per file
  --format html        a self-contained page that shows items, bytes and XMP
                       side by side
  --all                text: show deleted items too
  --pretty             json: indent the JSON
)help";

constexpr std::string_view kFields = R"help(Usage: lxbridge fields [OPTIONS] [FILE...]

Without FILE, lists all known properties with type, source (the tag or dataset,
or the XMP packet) and an example.
With FILE, lists the properties of these files, with the number of files that
have them and an example.

Formats:
  --format text        columns (default)
  --format json        one line of JSON per property
  --pretty             json: indent the JSON
)help";

constexpr std::string_view kFiles = R"help(
Files:
  -r, --recursive      read all files in folders. Hidden files are included,
                       links are not followed, other kinds of files are ignored
  --sort               with -r: read files in the byte order of their paths
  --ext LIST           with -r: only files with these extensions (jpg,tif)
  --include GLOB       with -r: only files whose name matches; may be repeated
  --exclude GLOB       with -r: no files or folders whose name matches. A GLOB
                       with a slash is matched with the whole path, in which **
                       matches any number of folders
  --files-from LIST    read more file names from LIST, one per line; "-" is
                       standard input
  -0, --null           the names in LIST end in zero bytes (find -print0)

Run:
  -j, --jobs N         use N processes (1 to 256). Default: one per processor
                       for folders, lists and more than 16 files
  --timeout SECONDS    give up on files that take longer
  --progress           report progress on standard error
  --summary            report the number of files of each status and kind
  --color WHEN         auto (default), always or never; auto is for terminals
                       and obeys NO_COLOR
)help";

// For the commands that print a result for each file.
constexpr std::string_view kResults = R"help(  --unordered          print results as soon as they are ready
  --errors             JSON: print {"file": ..., "error": ...} for each file
                       without a result
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
