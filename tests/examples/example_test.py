#!/usr/bin/env python3
"""example_test.py PRINT_XMP LXBRIDGE LX_MAKE_SAMPLE: the host in C prints the packet that the command prints."""
import pathlib
import subprocess
import sys
import tempfile

print_xmp, lxbridge, make_sample = sys.argv[1:]
with tempfile.TemporaryDirectory() as folder:
    sample = pathlib.Path(folder) / "sample.jpg"
    subprocess.run([make_sample, sample], check=True)
    for file in [sample, pathlib.Path(folder) / "not there.jpg"]:
        printed = subprocess.run([print_xmp, file], check=True, capture_output=True)
        assert not printed.stderr, printed.stderr
        assert printed.stdout.startswith(b"<?xpacket"), printed.stdout
        if file.exists():
            expected = subprocess.run([lxbridge, file], check=True, capture_output=True).stdout
            assert printed.stdout == expected, f"{printed.stdout}\n{expected}"
    assert subprocess.run([print_xmp], capture_output=True).returncode == 2
print("2 files")
