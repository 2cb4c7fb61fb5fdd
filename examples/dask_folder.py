#!/usr/bin/env python3
"""Reads all files in a folder on many machines with Dask, and writes a line of JSON for each, in the order of their names.

    dask_folder.py FOLDER OUT.ndjson                                  two processes on this machine
    dask_folder.py FOLDER OUT.ndjson --scheduler tcp://10.0.0.1:8786  the workers of that scheduler

Every machine needs the module lxbridge and the folder under the same name. A file that cannot be read, or that crashes its
process, gives a line with "error" instead of "properties"; other files are not affected.
"""
import argparse
import collections
import itertools
import json
import os
import sys

import distributed
import lxbridge

CHUNK = 64  # Files in one task: a file is some 50 microseconds, a task a millisecond.


def read_files(names):
    """In a worker: the lines of the files."""
    lines = []
    for name in names:
        try:
            answer = lxbridge.xmp(name)
        except (lxbridge.Error, ValueError, MemoryError) as error:
            answer = {"file": name, "error": f"{type(error).__name__}: {error}"}
        lines.append(json.dumps(answer))
    return lines


def one_by_one(client, names, read):
    """The lines of files whose task lost its worker again and again, with nothing else under way, so that the right one is blamed."""
    for name in names:
        try:
            yield from client.submit(read, [name], pure=False).result()
        except distributed.KilledWorker:
            yield json.dumps({"file": name, "error": "KilledWorker: the process that read it died"})


def lines_of(client, names, read=read_files, chunk=CHUNK):
    """The lines of all files in order. So many tasks are under way that no worker waits, and no more."""
    window = 4 * max(1, sum(client.nthreads().values()))
    pending = collections.deque()
    parts = (names[start:start + chunk] for start in range(0, len(names), chunk))
    while True:
        for part in itertools.islice(parts, window - len(pending)):
            pending.append((part, client.submit(read, part, pure=False)))
        if not pending:
            return
        part, future = pending.popleft()
        try:
            yield from future.result()
        except distributed.KilledWorker:  # Raised for all files of the dead worker.
            distributed.wait([other for _, other in pending])
            yield from one_by_one(client, part, read)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder")
    parser.add_argument("out")
    parser.add_argument("--scheduler", help="address of a Dask scheduler; without, two processes on this machine")
    options = parser.parse_args()
    names = sorted(os.path.join(folder, name) for folder, _, files in os.walk(options.folder) for name in files)
    cluster = options.scheduler or distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None)
    failed = 0
    with distributed.Client(cluster) as client, open(options.out, "w", encoding="utf-8") as out:
        for line in lines_of(client, names):
            failed += "error" in json.loads(line)
            out.write(line + "\n")
    if not options.scheduler:
        cluster.close()
    print(f"{len(names)} files, {failed} could not be read", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
