#!/usr/bin/env python3
"""Generates docs/mapping.md, or shows where it is out of date.

page.py PROGRAM [--write]

PROGRAM is lx_mapping_examples, which prints the library's result for each tag of the dictionaries. The rules are read from the
tables of xmpconv/. Both must have the same tags, so no row can be missing or wrong.
"""
import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PAGE = ROOT / "docs" / "mapping.md"

# A description of each rule, by the name of its function. It is an error if one is missing.
RULES = {
    "MapText": "ASCII with a zero byte: the text before it. Without one, nothing is written",
    "MapLangAlt": "ASCII, as a language alternative with the single item `x-default`; without a zero byte, the whole value",
    "MapInteger": "a single number of an integer type (BYTE, SHORT, LONG, SBYTE, SSHORT, SLONG), in decimal",
    "MapIntegerSeq": "any number of integers, as a `seq`",
    "MapRational": "a single RATIONAL or SRATIONAL, as `numerator/denominator`, not reduced",
    "MapRationalSeq": "any number of rationals, as a `seq`",
    "MapDateTime": "ASCII of 20 bytes, `YYYY:MM:DD HH:MM:SS`, as an ISO 8601 date with the zone of OffsetTime, OffsetTimeOriginal or "
                   "OffsetTimeDigitized (Exif 2.31), else the machine's, and the fraction of the partner tag; a date that denotes no "
                   "instant is not written",
    "LxMapGPSCoordinate": "three RATIONALs and the letter of the partner tag: `DDD,MM,SSk` if all denominators are 1, else `DDD,MM.mmk` "
                          "with the number of digits that the largest denominator can resolve",
    "LxMapGPSTimeStamp": "three RATIONALs and the partner's date, as an ISO 8601 date in UTC; without the date, nothing",
    "MapGpsVersion": "four bytes, as four numbers separated by dots",
    "MapDisplayText": "the item's display text, as shown by `lxbridge pool`",
    "MapFourCharacters": "the four bytes, as a text",
    "MapFirstByte": "the first byte, as a number",
    "MapComponents": "four bytes, as a `seq` of numbers",
    "MapFlash": "the bits of a SHORT, as the fields of a struct",
    "MapNamedTable": "a record of columns, rows, the columns' names and the values, as a struct with these fields; OECF is signed",
    "MapCfaPattern": "a record of columns, rows and bytes, as a struct with these fields",
    "MapDeviceSettings": "a record of columns, rows and little-endian UTF-16 texts, as a struct with these fields",
    "LxSetXMPLangAlt": "the display text, as a language alternative; the first eight bytes of the value name its encoding",
    "LxSetXMPPrefixedText": "ASCII that begins with the row's label: the text after the label. Other texts change nothing",
    "kText": "the dataset's text, in UTF-8; of several datasets, the last",
    "kDate": "`CCYYMMDD`, as `CCYY-MM-DD`; other texts unchanged",
    "kBagItem": "each dataset, as an item of a bag without duplicates",
}
# Rows for tags that are not in the dictionary of their block: items with generated names are not converted.
UNNAMED = {("exif", 0x9214)}
PARTNERS = {
    "kSubSecTime": "SubSecTime",
    "kSubSecTimeOriginal": "SubSecTimeOriginal",
    "kSubSecTimeDigitized": "SubSecTimeDigitized",
    "kGpsLatitudeRef": "GPSLatitudeRef",
    "kGpsLongitudeRef": "GPSLongitudeRef",
    "kGpsDestLatitudeRef": "GPSDestLatitudeRef",
    "kGpsDestLongitudeRef": "GPSDestLongitudeRef",
    "kGpsDateStamp": "GPSDateStamp",
}


def fail(message):
    sys.exit(f"docs/mapping/page.py: {message}")


def source(name):
    return (ROOT / "xmpconv" / name).read_text(encoding="utf-8")


def table(text, name):
    """The rows of a constant table, as lines; the caller must parse every row."""
    found = re.search(r"\b" + name + r"\[\] = \{.*?\n(.*?)\n\};", text, re.DOTALL)
    if not found:
        fail(f"no table {name}")
    return [line.strip() for line in found.group(1).splitlines() if line.strip().startswith("{")]


def rows(text, name, pattern):
    for line in table(text, name):
        found = re.match(pattern, line)
        if not found:
            fail(f"cannot read this row of {name}: {line}")
        yield found.groups()


def special_rules():
    """Tag id -> rule, from the switch of exif_structs.cpp."""
    text = source("exif_structs.cpp")
    ids = {name: int(number, 16) for name, number in re.findall(r"^  (k\w+) = (0x[0-9A-F]{4}),$", text, re.MULTILINE)}
    switch = text[text.index("switch (item->tagId)"):]
    rules = {}
    for names, rule in re.findall(r"((?:\s*case k\w+:)+)\s*return (\w+)\(", switch):
        for name in re.findall(r"k\w+", names):
            rules[ids[name]] = rule
    if len(rules) != len(ids):
        fail("exif_structs.cpp has tags without a rule")
    return rules


def read_rules():
    """(block, tag id) -> (rule, partner, tag's name where the source has it)."""
    text = source("tiff_exif.cpp")
    special = special_rules()
    rules = {}
    row = r"\{0x([0-9A-F]{4}), (\w+)(?:,\s+LxPartner::(\w+))?\},\s*// (\w+)$"
    for block, name in (("tiff", "kTiffRows"), ("exif", "kExifRows")):
        for tag, rule, partner, tag_name in rows(text, name, row):
            tag = int(tag, 16)
            if rule == "LxMapExifSpecial":
                rule = special.pop(tag)
            rules[("gps" if block == "exif" and tag < 0x100 else block, tag)] = (rule, partner, tag_name)
    if special:
        fail("exif_structs.cpp has rules for tags that tiff_exif.cpp does not send there")
    for tag, _, _ in rows(text, "kRawRows", r'\{0x([0-9A-F]{4}), (\w+),\s+"\w+",\s+"([^"]+)"\},$'):
        rules[("exif", int(tag, 16))] = ("LxSetXMPPrefixedText", None, None)
    for name, form, dataset in rows(source("iptc.cpp"), "kDatasetRows",
                                    r'\{"(\w+)",\s+[\w"]+,\s+Form::(\w+)\},\s*// 2:(\d+)$'):
        rules[("iptc", int(dataset))] = (form, None, name)
    return rules


def rule_file(rule):
    """The file of xmpconv/ that defines the rule."""
    pattern = re.compile(r"^bool " + rule + r"\(", re.MULTILINE)
    if rule in ("kText", "kDate", "kBagItem"):
        return "iptc.cpp"
    for path in sorted((ROOT / "xmpconv").glob("*.cpp")):
        if pattern.search(path.read_text(encoding="utf-8")):
            return path.name
    fail(f"no file defines {rule}")


def read_examples(program):
    with tempfile.TemporaryDirectory() as folder:
        scratch = os.path.join(folder, "example.jpg")
        output = subprocess.run([program, scratch], env={**os.environ, "TZ": "Europe/Berlin"}, check=True, text=True,
                                encoding="utf-8", stdout=subprocess.PIPE).stdout
    examples = {}
    for line in output.splitlines():
        block, tag, name, value, prop, xmp = line.split("\t")
        examples.setdefault((block, int(tag)), (name, value, prop, xmp))
    return examples


def code(text):
    return "`" + text.replace("|", "\\|") + "`"


def rule_cell(rule, partner):
    short = re.sub(r"^(LxSetXMP|LxMap|Map|k)", "", rule)
    return short + (f" + {PARTNERS[partner]}" if partner else "")


def check(rules, examples):
    landing = {key for key, example in examples.items() if example[2]}
    for key in UNNAMED:
        if key in examples or key not in rules:
            fail(f"{key[0]} 0x{key[1]:04X} is now in the dictionary, or no longer has a rule")
        del rules[key]
    for key in sorted(landing ^ set(rules)):
        where = "becomes a property, but is in no table of xmpconv/" if key in landing else \
            "is in a table of xmpconv/, but no example of it becomes a property"
        fail(f"{key[0]} 0x{key[1]:04X} {where}")
    for key, (_, _, name) in rules.items():
        if name and name != examples[key][0]:
            fail(f"{key[0]} 0x{key[1]:04X} is {name} in xmpconv/ and {examples[key][0]} in the dictionary")
    for key, (rule, _, _) in rules.items():
        if rule not in RULES:
            fail(f"the rule {rule} is not described")


def check_known_fields(rules, examples):
    """tools/json/known_fields.cpp has a row for each mapping, with the same tag, names and example."""
    text = (ROOT / "tools" / "json" / "known_fields.cpp").read_text(encoding="utf-8")
    pattern = r'^    \{"([^"]+)",\s+(k\w+),\s+"(tiff|exif|gps|iptc)",\s+(0x[0-9A-F]{4}|\d+),\s+"(\w+)",\s+"((?:[^"\\]|\\.)*)"\},$'
    known = {(block, int(tag, 0)): (item, prop, example) for prop, _, block, tag, item, example in re.findall(pattern, text, re.MULTILINE)}
    made = {}
    for key in rules:
        name, _, prop, xmp = examples[key]
        made[key] = (name, prop, xmp)
    for key in sorted(set(known) | set(made)):
        if known.get(key) != made.get(key):
            fail(f"tools/json/known_fields.cpp has {known.get(key)} for {key[0]} 0x{key[1]:04X}, which is {made.get(key)}")


def mapped(block, rules, examples, first=0, last=0xFFFF):
    for (where, tag), (rule, partner, _) in sorted(rules.items(), key=lambda item: item[0][1]):
        if where != block or not first <= tag <= last:
            continue
        name, value, prop, xmp = examples[(block, tag)]
        number = f"2:{tag:02}" if block == "iptc" else f"0x{tag:04X}"
        yield f"| {number} | {name} | {rule_cell(rule, partner)} | `{prop}` | {code(value)} | {code(xmp)} |"


def unmapped(block, examples):
    names = [name for (where, _), (name, _, prop, _) in sorted(examples.items()) if where == block and not prop]
    lines, line = [], ""
    for i, name in enumerate(names):
        word = name + ("," if i + 1 < len(names) else ".")
        if line and len(line) + 1 + len(word) > 128:
            lines.append(line)
            line = word
        else:
            line = f"{line} {word}" if line else word
    return lines + [line]


HEAD = """# Mapping of tags to XMP properties

<!-- Made by docs/mapping/page.py; `scripts/docs mapping` updates it. A test compares it with the code. -->

Every tag that becomes an XMP property, with an example converted by the library itself: a file with the value was built and
read by `LxInterchangeNew`, and the object's property printed. Arrays are shown as `seq[…]`, `bag[…]` and `alt[…]` (with the
language), structs as `{field=value, …}`. The dates are from a machine in the zone of Berlin: a time without a zone takes the
machine's, so it is a different instant on machines elsewhere.

Of a file's TIFF directories, the first one is converted, with its EXIF and GPS directories. Sub-IFDs, IFD1 (the thumbnail),
further directories of a chain and a second Exif block are only read into the pool. Of entries with the same tag, the last one
counts. An entry without values removes the packet's property of its name; a value that a rule refuses writes nothing. PNG, WebP,
GIF, HEIF, AVIF, JPEG XL and JPEG 2000 files and side-cars give the XMP object of a JPEG file with the same blocks. All arrays of a
file together have at most 4 · 65536 items ([limits.md](limits.md)).

Order of the sources: the XMP packet is parsed first, and the properties that only an extended packet has are added. Then, if the
IPTC datasets have precedence ([formats/iptc.md](formats/iptc.md)), all `picturist:` properties are replaced. Then each TIFF, EXIF
and GPS tag replaces the property of its name."""

MAKER_NOTES = """The whole note becomes `exif:MakerNote`: its display text, which is the note itself if it is a text, else its first 24 bytes in
decimal. Its entries are items of the pool (`lxbridge pool`) but not converted, with one exception: NikonRotate sets the
Orientation ([formats/maker-notes.md](formats/maker-notes.md))."""

COLUMNS = "| tag | name | rule | property | in the file | in XMP |\n|---|---|---|---|---|---|"


def make_page(rules, examples):
    page = [HEAD, "", "## Rules", "", "The name is the function's (without `Map`, `LxMap`, `LxSetXMP`), or for IPTC that of the form in the table.", "",
            "| rule | file | input and property |", "|---|---|---|"]
    for rule, text in RULES.items():
        if any(used == rule for used, _, _ in rules.values()):
            page.append(f"| {rule_cell(rule, None)} | `xmpconv/{rule_file(rule)}` | {text} |")
    page += ["", "`Rule + Tag`: the rule looks up the second tag, and writes nothing if that is missing or invalid (the fraction of a second "
             "may be missing).", ""]
    page += ["## IFD0 (TIFF 6.0)", "", "ImageDescription is converted only if there is no better caption in an IPTC block or a newer packet "
             "([formats/iptc.md](formats/iptc.md)).", "", COLUMNS, *mapped("tiff", rules, examples), ""]
    page += ["## EXIF IFD (Exif 2.2, tables 4 and 5)", "",
             "SubjectArea (0x9214) has a rule but no name in the EXIF dictionary, and entries without a name are not converted.",
             "", COLUMNS, *mapped("exif", rules, examples, 0x100, 0xFDE7), ""]
    page += ["## Raw-converter and aux tags (in the EXIF IFD)", "",
             "Tags in which a raw converter stores its settings, as texts with a label.", "", COLUMNS,
             *mapped("exif", rules, examples, 0xFDE8), ""]
    page += ["## GPS IFD (Exif 2.2, table 12)", "", COLUMNS, *mapped("gps", rules, examples), ""]
    page += ["## IPTC-IIM, record 2", "", "Only if the datasets take precedence over the packet. Texts are converted to UTF-8 from any encoding; "
             "empty ones are skipped.", "", COLUMNS, *mapped("iptc", rules, examples), ""]
    page += ["## Maker notes", "", MAKER_NOTES, ""]
    page += ["## Tags that are read but not converted", "", "Shown by `lxbridge pool`. The rules above use SubSecTime…, the GPS reference letters and GPSDateStamp.", ""]
    for block, title in (("tiff", "TIFF"), ("exif", "EXIF"), ("gps", "GPS"), ("iptc", "IPTC")):
        lines = unmapped(block, examples)
        page += [f"**{title}**: " + lines[0], *lines[1:], ""]
    return "\n".join(page).rstrip() + "\n"


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--write"]):
        sys.exit("usage: page.py PROGRAM [--write]")
    rules, examples = read_rules(), read_examples(sys.argv[1])
    check(rules, examples)
    check_known_fields(rules, examples)
    page = make_page(rules, examples)
    if sys.argv[2:]:
        PAGE.write_text(page, encoding="utf-8")
        return 0
    old = PAGE.read_text(encoding="utf-8") if PAGE.is_file() else ""
    for line in difflib.unified_diff(old.splitlines(), page.splitlines(), "docs/mapping.md", "generated", lineterm="", n=1):
        print(line)
    if old != page:
        print("docs/mapping.md is out of date; `scripts/docs mapping` updates it")
    return 0 if old == page else 1


if __name__ == "__main__":
    sys.exit(main())
