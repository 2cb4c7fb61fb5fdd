#!/usr/bin/env python3
"""wheel_test.py LX_MAKE_SAMPLE VERSION: a wheel of the tree, made and installed with nothing from outside, is whole by itself."""
import pathlib
import subprocess
import sys
import tempfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
MAKE_SAMPLE, VERSION = sys.argv[1:]
PROGRAM = """
import importlib.metadata, lxbridge, sys
assert lxbridge.open(sys.argv[1])["tiff:Make"] == "Example Cameras"
assert lxbridge.__version__ == importlib.metadata.version("lxbridge") == sys.argv[2], lxbridge.__version__
loaded = {line.split()[-1] for line in open("/proc/self/maps") if "libLxBridge" in line or "libVeltoXMP" in line or "libTAL" in line}
assert len(loaded) == 3 and all(name.startswith(sys.prefix) for name in loaded), loaded
"""


def run(*command, **how):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, **how)
    assert done.returncode == 0, f"{command}: {done.stdout.decode()}"


with tempfile.TemporaryDirectory() as folder:
    run(sys.executable, "-m", "pip", "wheel", "--no-build-isolation", "--no-deps", "--no-index", "-w", folder, ROOT)
    (wheel,) = pathlib.Path(folder).glob(f"lxbridge-{VERSION}-cp*-linux_*.whl")
    names = zipfile.ZipFile(wheel).namelist()
    for part in "lxbridge/py.typed", "lxbridge/_lxbridge.pyi", f"lxbridge-{VERSION}.dist-info/LICENSE":
        assert part in names, names
    run(sys.executable, "-m", "venv", f"{folder}/venv")
    run(f"{folder}/venv/bin/pip", "install", "--no-index", wheel)
    run(MAKE_SAMPLE, f"{folder}/sample.jpg")
    run(f"{folder}/venv/bin/python", "-c", PROGRAM, f"{folder}/sample.jpg", VERSION, cwd=folder)
    print(f"{wheel.name}: {wheel.stat().st_size} bytes")
