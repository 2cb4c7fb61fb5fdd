#!/usr/bin/env python3
"""check_exports.py LIBRARY HEADER MAP DEF: the library exports the functions of its header and no more, the lists for systems
with and without ordinals agree, and it needs no libraries but the broker's, the toolkit's and the language's own."""
import pathlib
import re
import subprocess
import sys

FIVE = ["LxInterchangeDelete", "LxInterchangeGetXMP", "LxInterchangeInit", "LxInterchangeNew", "LxInterchangeTerm"]
LIBRARIES = re.compile(r"lib(TAL|VeltoXMP|stdc\+\+|gcc_s|c|m|z|brotlidec|asan|ubsan)\.so(\.\d+)?|ld-linux.*")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


library, *texts = sys.argv[1:]
header, script, definition = (pathlib.Path(text).read_text(encoding="utf-8") for text in texts)
declared = sorted(re.findall(r"^[\w* ]+[ *](Lx\w+)\(", re.sub(r"/\*.*?\*/", "", header, flags=re.DOTALL), re.MULTILINE))
symbols = [line.split() for line in output("nm", "-D", "--defined-only", "--format=posix", library).splitlines()]
# Neither the compiler's own ends of the program's sections nor the node of a version is an export.
exported = sorted(name.partition("@")[0] for name, kind, *_ in symbols if not name.startswith("_") and kind != "A")
ordinals = re.findall(r"^\s+(\w+)\s+@(\d+)$", definition, re.MULTILINE)
needed = re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-d", library))
faults = [f"needs {name}" for name in needed if not LIBRARIES.fullmatch(name)]
if not {"libTAL.so.1", "libVeltoXMP.so.1"} <= set(needed):
    faults.append(f"needs no broker or no toolkit: {needed}")
for what, names in [("the library exports", exported), ("the map lists", re.findall(r"^\s+(Lx\w+);$", script, re.MULTILINE)),
                    ("the def lists", [name for name, _ in ordinals])]:
    if names != (FIVE if "lxbridge.h" in texts[0] else declared) or not names:
        faults.append(f"{what} {names}, the header declares {declared}")
if [int(number) for _, number in ordinals] != list(range(1, len(ordinals) + 1)):
    faults.append(f"ordinals {ordinals}")
print("\n".join(faults) or f"{len(declared)} exports")
sys.exit(bool(faults))
