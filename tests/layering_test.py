#!/usr/bin/env python3
"""Compares every #include "..." of the tree with the directions between its folders (docs/architecture.md)."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# The folders that each one may include besides itself. A file belongs to the longest prefix that fits.
ALLOWED = {
    "kit/base/": [],
    "kit/model/": ["kit/base/"],
    "kit/readers/": ["kit/model/", "kit/base/"],
    "clients/broker/": [],
    "clients/xmp/": ["clients/broker/"],
    "xmpconv/": ["kit/model/", "kit/base/", "clients/xmp/", "clients/broker/"],
    "api/": ["xmpconv/", "kit/readers/", "kit/model/", "kit/base/", "clients/xmp/", "clients/broker/"],
    "outside/broker/": ["clients/broker/broker_abi.h"],
    "outside/xmp/": ["clients/broker/broker_abi.h", "clients/xmp/xmp_abi.h", "kit/base/keyed_hash.h", "kit/base/utf8.h"],
    "host/": ["api/include/", "api/interchange_abi.h", "clients/xmp/", "clients/broker/", "kit/base/utf8.h"],
    "tools/json/": ["host/include/", "kit/model/", "kit/base/"],
    "tools/lxbridge/": ["tools/json/", "api/include/", "host/", "kit/readers/", "kit/model/", "kit/base/"],
    "docs/mapping/": ["api/include/", "host/", "kit/", "tests/support/"],
    "bench/": ["api/include/", "host/", "kit/", "outside/", "clients/", "tests/support/"],
    "fuzz/": ["api/", "host/", "kit/", "xmpconv/", "outside/", "clients/", "tests/support/"],
    "examples/": ["api/include/", "host/include/"],
    "python/": ["host/include/", "tools/json/", "kit/readers/", "kit/model/", "kit/base/"],
    "tests/": [""],
}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
# How public headers include each other, and how programs do that have only an installed tree.
PUBLIC = re.compile(r"^\s*#\s*include\s+<(lxbridge/[^>]+)>", re.MULTILINE)
PUBLIC_FOLDERS = ["api/include/", "host/include/"]
# One place asks for the system; the build does once more, to choose that file.
SYSTEM = re.compile(r"\b(_WIN32|_WIN64|__linux__|__unix__|__APPLE__|__MINGW32__)\b")


def folder_of(path):
    folders = [folder for folder in ALLOWED if path.startswith(folder)]
    return max(folders, key=len) if folders else None


def main():
    faults = []
    files = 0
    for file in sorted(ROOT.rglob("*")):
        path = file.relative_to(ROOT).as_posix()
        if path.startswith("build") or file.suffix not in {".h", ".hpp", ".cpp", ".c"}:
            continue
        files += 1
        own = folder_of(path)
        if own is None:
            faults.append(f"{path}: in no folder of this table")
            continue
        text = file.read_text(encoding="utf-8")
        if SYSTEM.search(text) and not path.startswith("kit/base/platform"):
            faults.append(f"{path}: asks for the system it is on")
        targets = INCLUDE.findall(text)
        if targets and any(path.startswith(folder) for folder in PUBLIC_FOLDERS):
            faults.append(f"{path}: a public header includes {targets}, which is not installed with it")
        for name in PUBLIC.findall(text):
            targets += [folder + name for folder in PUBLIC_FOLDERS if (ROOT / folder / name).is_file()] or [name]
        for target in targets:
            if not (ROOT / target).is_file():
                faults.append(f'{path}: "{target}" is not named from the root of the tree')
            elif not target.startswith(own) and not any(target.startswith(allowed) for allowed in ALLOWED[own]):
                faults.append(f"{path}: may not include {target}")
    for fault in faults:
        print(fault)
    print(f"{files} files, {len(faults)} faults")
    return 1 if faults or files == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
