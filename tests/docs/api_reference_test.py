#!/usr/bin/env python3
"""Builds the API reference: no warning of Doxygen, and every function of the C headers in it.

api_reference_test.py OUTPUT-DIRECTORY
"""
import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SKIPPED = 77


def main():
    if shutil.which("doxygen") is None:
        print("doxygen is not here: the API reference is not built")
        return SKIPPED
    output = pathlib.Path(sys.argv[1])
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir(parents=True)
    settings = (ROOT / "docs/Doxyfile").read_text(encoding="utf-8") + f"\nOUTPUT_DIRECTORY = \"{output}\"\n"
    run = subprocess.run(["doxygen", "-"], cwd=ROOT, input=settings, text=True, encoding="utf-8", stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, check=False)
    print(run.stdout, end="")

    missing = 0
    for header in ROOT.glob("*/include/lxbridge/*.h"):
        page = output / "html" / (header.name.replace(".h", "_8h.html"))
        text = page.read_text(encoding="utf-8") if page.is_file() else ""
        code = re.sub(r"/\*.*?\*/", "", header.read_text(encoding="utf-8"), flags=re.DOTALL)
        for function in re.findall(r"^[\w* ]+[ *](Lx\w+)\(", code, re.MULTILINE):
            if f">{function}()" not in text.replace("&#160;", " "):
                print(f"{header.relative_to(ROOT)}: {function} is not in the reference")
                missing += 1
    return 1 if run.returncode != 0 or run.stdout or missing else 0


if __name__ == "__main__":
    sys.exit(main())
