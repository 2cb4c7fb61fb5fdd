#!/usr/bin/env python3
"""dask_test.py EXAMPLE LX_MAKE_SAMPLE: a folder over two processes, with bad files and a file that ends its reader."""
import importlib.util
import json
import os
import pathlib
import subprocess
import sys
import tempfile

try:
    import distributed
except ImportError:
    print("skipped: no Dask here (python3-distributed)")
    sys.exit(77)

import lxbridge

EXAMPLE, MAKE_SAMPLE = sys.argv[1:]


def read_or_die(names):
    if any(name.endswith("deadly.jpg") for name in names):
        os._exit(1)
    return names


def main():
    with tempfile.TemporaryDirectory() as holder:
        folder = pathlib.Path(holder) / "photos"
        (folder / "below").mkdir(parents=True)
        subprocess.run([MAKE_SAMPLE, folder / "sample.jpg"], check=True)
        for number in range(200):  # More than one task's.
            os.link(folder / "sample.jpg", folder / "below" / f"{number:03}.jpg")
        (folder / "gone.jpg").symlink_to("nowhere.jpg")
        (folder / "zero.jpg").write_bytes(b"")
        out = pathlib.Path(holder) / "out.ndjson"
        done = subprocess.run([sys.executable, EXAMPLE, folder, out], check=False, timeout=100, stderr=subprocess.PIPE)
        names = sorted(str(file) for file in folder.rglob("*") if not file.is_dir())
        lines = [json.loads(line) for line in out.read_text(encoding="utf-8").splitlines()]
        assert [line["file"] for line in lines] == names, f"{len(lines)} lines for {len(names)} files\n{done.stderr.decode()}"
        for line in lines:
            if line["file"].endswith("gone.jpg"):
                assert line["error"].startswith("NotFoundError: "), line
            else:
                assert line == lxbridge.xmp(line["file"]), line
        assert done.returncode == 1 and b"203 files, 1 could not be read" in done.stderr, done

    specification = importlib.util.spec_from_file_location("dask_folder", EXAMPLE)
    example = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(example)
    names = ["a.jpg", "deadly.jpg", "b.jpg", "c.jpg"]
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster:
        with distributed.Client(cluster) as client:
            lines = list(example.lines_of(client, names, read=read_or_die, chunk=3))
    assert [line for line in lines if "KilledWorker" not in line] == ["a.jpg", "b.jpg", "c.jpg"], lines
    assert json.loads(lines[1])["file"] == "deadly.jpg", lines


if __name__ == "__main__":
    main()
