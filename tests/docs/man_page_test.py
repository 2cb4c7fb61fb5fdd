#!/usr/bin/env python3
"""Compares the man page with the command: its options, its version; and lets mandoc and groff look at its markup.

man_page_test.py LXBRIDGE PAGE
"""
import pathlib
import re
import shutil
import subprocess
import sys


def output(*words):
    return subprocess.run(words, check=True, text=True, encoding="utf-8", stdout=subprocess.PIPE).stdout


def options_of_help(text):
    """The words that look like options, but those of an example's other programs."""
    return set(re.findall(r"(?<![\w-])(--?[a-z0-9][a-z-]*)(?!\w)", re.sub(r"Usage:.*?\n\n", "", text, count=1, flags=re.DOTALL)))


def options_of_page(text):
    options = set()
    for line in text.splitlines():
        if line.startswith(".It Fl"):
            options.update("-" + word.replace("\\-", "-") for word in re.findall(r"Fl (\S+)", line))
    return options


def main():
    command, page = sys.argv[1], pathlib.Path(sys.argv[2])
    text = page.read_text(encoding="utf-8")
    faults = []

    texts = [output(command, "help", *name) for name in ([], ["xmp"], ["pool"], ["fields"])]
    told, written = set().union(*map(options_of_help, texts)), options_of_page(text)
    faults += [f"{option} is in --help and not in the page" for option in sorted(told - written)]
    # The help names the short forms of itself and the version nowhere.
    for option in sorted(written - told - {"-h", "-V", "--"}):
        faults.append(f"{option} is in the page and not in --help")
    version = output(command, "--version").split()[1]
    if f".Os LxBridge {version}\n" not in text:
        faults.append(f"the page is not of version {version}")

    checks = {"mandoc": ["mandoc", "-Tlint", "-Wstyle", str(page)],
              "groff": ["groff", "-mandoc", "-ww", "-rCHECKSTYLE=3", "-Kutf8", "-Tutf8", "-z", str(page)]}
    for program, words in checks.items():
        if shutil.which(program) is None:
            print(f"{program} is not here: the page's markup is not looked at by it")
            continue
        lint = subprocess.run(words, text=True, encoding="utf-8", stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        # Which other pages the machine has is no matter of this one.
        faults += [line for line in lint.stdout.splitlines() if not re.search("mandoc.db|referenced manual not found", line)]

    for fault in faults:
        print(fault)
    return 1 if faults or not told else 0


if __name__ == "__main__":
    sys.exit(main())
