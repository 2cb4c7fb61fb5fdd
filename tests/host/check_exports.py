#!/usr/bin/env python3
"""check_exports.py LIBRARY HEADER MAP DEF: the host library exports what its header declares, and both lists say so."""
import pathlib
import re
import subprocess
import sys

library, *texts = sys.argv[1:]
header, script, definition = (pathlib.Path(text).read_text(encoding="utf-8") for text in texts)
declared = sorted(re.findall(r"^(?:LxXmpStatus|uint32_t|void|const char\*) (LxXmp\w+)\(", header, re.MULTILINE))
ordinals = re.findall(r"^\s+(\w+)\s+@(\d+)$", definition, re.MULTILINE)
listed = subprocess.run(["nm", "-D", "--defined-only", "--format=posix", library], check=True, capture_output=True)
symbols = [line.split() for line in listed.stdout.decode().splitlines()]
exported = sorted(name.removesuffix("@@LXHOST_1.0") for name, kind, *_ in symbols if kind == "T")
faults = []
if len(declared) < 10:
    faults.append(f"the header declares {declared}")
for what, names in [("the library exports", exported), ("the map lists", re.findall(r"^\s+(LxXmp\w+);$", script, re.MULTILINE)),
                    ("the def lists", [name for name, _ in ordinals])]:
    if names != declared:
        faults.append(f"{what} {names}, the header declares {declared}")
if [int(number) for _, number in ordinals] != list(range(1, len(ordinals) + 1)):
    faults.append(f"ordinals {ordinals}")
print("\n".join(faults) or f"{len(declared)} exports")
sys.exit(bool(faults))
