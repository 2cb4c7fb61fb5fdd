#!/usr/bin/env python3
"""Whether the targets of the pages exist: links between them, and files of the tree that they name."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
FOLDERS = "api|bench|clients|cmake|docs|examples|fuzz|host|kit|outside|scripts|tests|tools|xmpconv"
LINK = re.compile(r"\]\((?!https?:)([^)#]+)(?:#[^)]*)?\)")
# A file by its path from the root, or a script. Patterns (*, <...>) are not looked for.
FILE = re.compile(r"`((?:" + FOLDERS + r")/[\w./-]*\.(?:h|hpp|c|cpp|py|md|txt|def|map|in)|scripts/[\w-]+)`")


def main():
    pages = [path for path in [*ROOT.glob("*.md"), *ROOT.glob("docs/**/*.md"), *ROOT.glob("bench/**/*.md")]]
    faults, checked = [], 0
    for page in pages:
        text = page.read_text(encoding="utf-8")
        targets = [(name, page.parent / name) for name in LINK.findall(text)] + [(name, ROOT / name) for name in FILE.findall(text)]
        checked += len(targets)
        faults += [f"{page.relative_to(ROOT)}: {name} is not there" for name, target in targets if not target.exists()]
    for fault in faults:
        print(fault)
    print(f"{len(pages)} pages, {checked} references, {len(faults)} faults")
    return 1 if faults or checked == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
