#!/usr/bin/env python3
"""Shows Doxygen the comments of a header as documentation: the headers are written for readers, without marks of any tool.

A comment directly in front of a declaration documents that; one that stands alone (the head of the file, a section's) goes to
the page of the file. Indented lines are shown as they are.
"""
import re
import sys


def blocks(lines):
    """The file as (comment text lines, None) and (None, code line), in order. A comment behind code stays with its line."""
    at = 0
    while at < len(lines):
        line = lines[at]
        start = re.match(r"\s*/\*(?![*!])", line)
        if start:
            end = at
            while "*/" not in lines[end]:
                end += 1
            text = [re.sub(r"^\s*(/\*| \*(?!/)|\*(?!/))? ?", "", part, count=1) for part in lines[at:end + 1]]
            text[-1] = text[-1].replace("*/", "").rstrip()
            yield text, None
            at = end + 1
        elif re.match(r"\s*//(?![/!])", line):
            text = []
            while at < len(lines) and re.match(r"\s*//(?![/!])", lines[at]):
                text.append(re.sub(r"^\s*// ?", "", lines[at]))
                at += 1
            yield text, None
        else:
            yield None, line
            at += 1


def shown(text):
    """The comment's lines with those that are indented between @verbatim marks."""
    lines, inside = [], False
    for line in text:
        indented = line.startswith("  ")
        if indented != inside and (indented or line):
            lines.append("@verbatim" if indented else "@endverbatim")
            inside = indented
        # What is no HTML and no link is not to be taken for one.
        lines.append(line if inside else re.sub(r"([<>#@\\%])", r"\\\1", line))
    if inside:
        lines.append("@endverbatim")
    return lines


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        parts = list(blocks(file.read().splitlines()))
    out = []
    for i, (text, code) in enumerate(parts):
        if text is None:
            # A remark behind a field or an enumerator.
            code = re.sub(r"(\S)\s+//(?![/!<]) ?(.*)$", r"\1  ///< \2", code)
            out.append(re.sub(r"(\S)\s+/\*(?![*!]) ?(.*?) ?\*/$", r"\1  /**< \2 */", code))
            continue
        follows = parts[i + 1][1] if i + 1 < len(parts) else None
        alone = not follows or follows.startswith("#")
        out += ["/**", *(["@file"] if alone else []), *shown(text), "*/"]
    print("\n".join(out))


if __name__ == "__main__":
    main()
