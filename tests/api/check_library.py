#!/usr/bin/env python3
"""The shared library's outside surface: exactly five functions out, and no libraries in but the two outside ones and the
language's own. The lists for systems with and without ordinals agree. check_library.py LIBRARY API_FOLDER"""
import pathlib
import re
import subprocess
import sys

EXPORTS = ["LxInterchangeDelete", "LxInterchangeGetXMP", "LxInterchangeInit", "LxInterchangeNew", "LxInterchangeTerm"]
LIBRARIES = re.compile(r"lib(TAL|VeltoXMP|stdc\+\+|gcc_s|c|m|z|brotlidec|asan|ubsan)\.so(\.\d+)?|ld-linux.*")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def main():
    library, api = sys.argv[1], pathlib.Path(sys.argv[2])
    symbols = [line.split()[1:] for line in output("nm", "-D", "--defined-only", library).splitlines()]
    # The compiler's own ends of the program's sections are no exports.
    symbols = [symbol for symbol in symbols if not symbol[1].startswith("_")]
    faults = []
    if symbols != [["T", name] for name in EXPORTS]:
        faults.append(f"exports {symbols}")
    needed = re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-d", library))
    if not {"libTAL.so.1", "libVeltoXMP.so.1"} <= set(needed):
        faults.append(f"needs {needed}")
    faults += [f"needs {name}" for name in needed if not LIBRARIES.fullmatch(name)]
    ordinals = re.findall(r"^\s+(\w+)\s+@(\d+)$", (api / "lxbridge.def").read_text(), re.MULTILINE)
    if ordinals != [(name, str(number + 1)) for number, name in enumerate(EXPORTS)]:
        faults.append(f"lxbridge.def has {ordinals}")
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
