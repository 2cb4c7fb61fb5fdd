#!/usr/bin/env python3
"""example_test.py PRINT_XMP LIST_PROPERTIES EDIT_PROPERTY KEEP_SIDECAR LXBRIDGE LX_MAKE_SAMPLE: the hosts of examples/ print
the same as the command of the same file, and README.md quotes them word for word."""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
print_xmp, list_properties, edit_property, keep_sidecar, lxbridge, make_sample = sys.argv[1:]


def run(*command, status=0):
    done = subprocess.run(command, capture_output=True, check=False)
    assert done.returncode == status, f"{command}: {done}"
    return done.stdout.decode()


def listed(nodes, depth, seen):
    """The lines of (name, node) pairs, as list_properties has them."""
    lines = []
    for name, node in nodes:
        node, qualifiers = (node["value"], node["qualifiers"]) if "qualifiers" in node else (node, {})
        form = "" if isinstance(node, str) else next(iter(node))
        lines.append("  " * depth + name + (f" = {node}" if not form else "" if form == "struct" else f" {form}"))
        lines += listed([("?" + key, value) for key, value in qualifiers.items()], depth + 1, seen)
        if form:
            seen.add(form)
            inside = node[form].items() if form == "struct" else [("-", item) for item in node[form]]
            lines += listed(inside, depth + 1, seen)
    return lines


def quotes():
    """Every block of the README that a link to an example stands in front of, with the file's name."""
    section = re.search(r"^## In your program$(.*?)^## ", (ROOT / "README.md").read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    return re.findall(r"\(examples/([\w.]+)\)[^`]*\n\n```\w+\n(.*?)```", section[1], re.DOTALL)


with tempfile.TemporaryDirectory() as folder:
    sample, missing = pathlib.Path(folder) / "sample.jpg", pathlib.Path(folder) / "not there.jpg"
    run(make_sample, sample)
    packet = run(lxbridge, sample)
    assert run(print_xmp, sample) == packet
    assert run(print_xmp, missing).startswith("<?xpacket")

    properties = json.loads(run(lxbridge, "--format", "json", sample))["properties"]
    lines, forms, schema = [], set(), None
    for found in properties:
        if found["schema"] != schema:
            schema = found["schema"]
            lines.append(schema)
        lines += listed([(f"{found['prefix']}:{found['name']}", found["value"])], 1, forms)
    assert {"seq", "struct"} <= forms, forms
    assert run(list_properties, sample).splitlines() == lines
    run(list_properties, missing, status=1)

    edited = run(edit_property, sample, "2")
    assert "<xmp:Rating>4</xmp:Rating>" in packet
    assert edited == packet.replace("<xmp:Rating>4</xmp:Rating>", "<xmp:Rating>2</xmp:Rating>")
    assert "<xmp:Rating>1</xmp:Rating>" in run(edit_property, missing, "1")
    for program in print_xmp, list_properties, edit_property, keep_sidecar:
        run(program, status=2)

    sidecar = pathlib.Path(f"{sample}.xmp")
    keepers = [[keep_sidecar]]
    if "LX_PYTHON" in os.environ:
        keepers.append([os.environ["LX_PYTHON"], ROOT / "examples/keep_sidecar.py"])
        threads = run(os.environ["LX_PYTHON"], ROOT / "examples/thread_folder.py", folder, "2")
        assert threads == run(lxbridge, "--format", "json", sample), threads
    kept = []
    for keeper in keepers:
        run(*keeper, sample, "quay", "de", "Der Hafen")
        said = run(*keeper, sample, "quay", "en", "The harbour")
        assert said == f"{sidecar}: 2 keywords\n", said
        text = sidecar.read_text(encoding="utf-8")
        for line in '<rdf:li xml:lang="de">Der Hafen</rdf:li>', '<rdf:li xml:lang="en">The harbour</rdf:li>', "<rdf:li>quay</rdf:li>":
            assert text.count(line) == 1, text
        kept.append(re.sub("<xmp:MetadataDate>[0-9T:.+Z-]+</xmp:MetadataDate>", "", text))
        sidecar.write_text("<x", encoding="utf-8")
        run(*keeper, sample, "quay", "de", "Der Hafen", status=1)
        assert sidecar.read_text(encoding="utf-8") == "<x", "what cannot be read is not written over"
        sidecar.unlink()
    assert len(set(kept)) == 1, kept
    assert sorted(file.name for file in pathlib.Path(folder).iterdir()) == ["sample.jpg"]

found = quotes()
assert [name for name, _ in found] == ["edit_property.cpp"], found
for name, text in found:
    assert text == (ROOT / "examples" / name).read_text(encoding="utf-8"), f"README.md quotes another {name}"
print(f"{len(lines)} lines, {len(found)} quotes")
