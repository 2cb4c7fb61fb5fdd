#!/usr/bin/env python3
"""Converts the comments of a header to Doxygen's, since the headers have no markup for tools.

A comment directly before a declaration documents it; a separate comment (at the top of the file or of a section) goes to the
page of the file. Indented lines are shown verbatim.
"""
import re
import sys


def blocks(lines):
    """The file as (comment text lines, None) and (None, code line), in order. A comment after code stays with its line."""
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
        # Escaped, so that nothing is taken for HTML or a link.
        lines.append(line if inside else re.sub(r"([<>#@\\%])", r"\\\1", line))
    if inside:
        lines.append("@endverbatim")
    return lines


class Braces:
    """Tracks whether the code is between declarations or within the body of a function."""

    def __init__(self):
        self.stack, self.statement = [], ""

    def read(self, line):
        """Reads a line of code; whether a declaration ends in it."""
        line = re.sub(r"\s*(//|/\*).*$", "", re.sub(r'"(?!C")[^"]*"', '""', line))
        ended = False
        for character in line + " ":
            if character == "{":
                scope = re.search(r'\b(namespace|class|struct|enum|union|extern "C")', self.statement)
                self.stack.append("scope" if scope else "body")
                self.statement = ""
            elif character == "}":
                if self.stack:
                    self.stack.pop()
                ended = ended or "body" not in self.stack
                self.statement = ""
            elif character == ";":
                ended = ended or "body" not in self.stack
                self.statement = ""
            else:
                self.statement += character
        return ended and not line.startswith("#")

    def in_body(self):
        return "body" in self.stack


def declares_several(parts, at):
    """Whether a comment is directly followed by several declarations of one line, or without bodies: it documents all of them."""
    braces, ends = Braces(), 0
    for text, code in parts[at:]:
        if text is not None or not code.strip() or not braces.stack and re.match(r"\s*(\}|#(?!define))", code):
            break
        ends += code.startswith("#define")
        ends += braces.read(code) and not braces.stack
        if braces.in_body():
            return False
    return ends > 1 and not braces.stack


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        parts = list(blocks(file.read().splitlines()))
    out, braces, grouped = [], Braces(), False
    for i, (text, code) in enumerate(parts):
        if grouped and (text is not None or not code.strip() or code.lstrip().startswith("}")) and not braces.in_body():
            out.append("/**@}*/")
            grouped = False
        if text is None:
            braces.read(code)
            # A comment after a field or an enumerator.
            if not braces.in_body() and not code.startswith("#"):
                code = re.sub(r"(\S)\s+//(?![/!<]) ?(.*)$", r"\1  ///< \2", code)
                code = re.sub(r"(\S)\s+/\*(?![*!]) ?", r"\1  /**< ", code)
            out.append(code)
        elif braces.in_body():
            out.append("// " + " ".join(text))
        else:
            follows = parts[i + 1][1] if i + 1 < len(parts) else None
            alone = not follows or follows.startswith("#") and not follows.startswith("#define")
            if not alone and declares_several(parts, i + 1):
                out.append("/**@{*/")
                grouped = True
            out += ["/**", *(["@file"] if alone else []), *shown(text), "*/"]
    print("\n".join(out))


if __name__ == "__main__":
    main()
