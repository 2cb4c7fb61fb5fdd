#!/usr/bin/env python3
"""thread_folder.py FOLDER [THREADS]: prints the XMP of every JPEG file in a folder as lines of JSON, using several threads.

The module releases the interpreter's lock while it reads a file, so threads use several cores; building the dicts needs that lock.
For many machines see dask_folder.py.
"""
import concurrent.futures
import json
import pathlib
import sys
import time
from typing import Any, Dict, Iterator, List, Union

import lxbridge

CHUNK = 64  # Files per task: enough to make the overhead of a task small.


def read(files: List[pathlib.Path]) -> List[Union[lxbridge.types.Xmp, Dict[str, Any]]]:
    answers: List[Union[lxbridge.types.Xmp, Dict[str, Any]]] = []
    for file in files:
        try:
            answers.append(lxbridge.xmp(file))
        except lxbridge.Error as error:
            answers.append({"file": str(file), "error": str(error)})
    return answers


def chunks(files: List[pathlib.Path]) -> Iterator[List[pathlib.Path]]:
    return (files[at:at + CHUNK] for at in range(0, len(files), CHUNK))


def main() -> None:
    folder = pathlib.Path(sys.argv[1])
    threads = int(sys.argv[2]) if len(sys.argv) > 2 else None
    files = sorted(file for file in folder.rglob("*") if file.suffix.lower() in (".jpg", ".jpeg"))
    start = time.perf_counter()
    with concurrent.futures.ThreadPoolExecutor(threads) as pool:
        for answers in pool.map(read, chunks(files)):
            for answer in answers:
                print(json.dumps(answer))
    print(f"{len(files)} files in {time.perf_counter() - start:.2f} s", file=sys.stderr)


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__.splitlines()[0])
    main()
