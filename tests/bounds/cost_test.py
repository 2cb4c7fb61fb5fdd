#!/usr/bin/env python3
"""Measures what hostile files cost: cost_test.py MODE PROBE, with lx_cost_probe as PROBE.

sound    Every file reads into a sound pool (any build).
bounded  A file of 10 MB (of 2 MB in proportion, unless LX_FULL is set) takes at most 2 s of the processor, and 64 bytes of
         memory for each of its bytes and 16 MB (optimised builds). On a machine that is busy with other things times say
         little: then they are printed only.
         Compressed blocks may hold 64 MiB whatever the file's size: files of such (...bomb...) take 2 s and 64 MiB beside.
linear   A file of twice the size takes at most twice the instructions (optimised builds; needs valgrind, and LX_FULL set).
"""
import os
import re
import shutil
import subprocess
import sys

MEGABYTE = 1 << 20
SKIPPED = 77

FULL = bool(os.environ.get("LX_FULL"))
LARGE = (10 if FULL else 2) * MEGABYTE
MOST_SECONDS = 0.2 * LARGE / MEGABYTE
MOST_BYTES_PER_BYTE = 64
MOST_BYTES_BESIDE = 16 * MEGABYTE
BOMB_SECONDS = 2.0
BOMB_BYTES_BESIDE = 64 * MEGABYTE
TRIES = 3

# Large enough that fixed costs do not hide those that grow with the file.
SMALL = 512 * 1024
# Hash tables grow by steps, so a doubling may cost a little more once and less the next time.
TOLERANCE = 1.15


def run(command):
    done = subprocess.run(command, capture_output=True, text=True, timeout=300)
    return done.returncode, done.stdout, done.stderr


def probe(program, name, size):
    """(seconds, peak bytes, file bytes, items), or None after a message."""
    status, out, err = run([program, name, str(size)])
    if status != 0:
        print(f"{name}: the probe ended with {status}: {err.strip()[-2000:]}")
        return None
    seconds, peak, length, items = out.split()
    return float(seconds), int(peak), int(length), int(items)


def is_busy():
    return os.getloadavg()[0] > 0.75 * (os.cpu_count() or 1)


def check_sound(program, name):
    return probe(program, name, MEGABYTE // 4) is not None


def check_bounded(program, name):
    busy = is_busy()
    bomb = "bomb" in name
    most_seconds = BOMB_SECONDS if bomb else MOST_SECONDS
    best = None
    for _ in range(TRIES):
        best = probe(program, name, LARGE)
        if best is None:
            return False
        if best[0] <= most_seconds or busy:
            break
    seconds, peak, length, items = best
    print(f"{name:34} {seconds:6.3f} s {peak / length:6.1f} bytes a byte {items:9} items")
    fine = peak <= MOST_BYTES_PER_BYTE * length + (BOMB_BYTES_BESIDE if bomb else MOST_BYTES_BESIDE)
    if not fine:
        print(f"{name}: {peak} bytes of memory for a file of {length}")
    if seconds > most_seconds:
        print(f"{name}: {seconds} s" + (", on a busy machine" if busy else ""))
        fine = fine and busy
    return fine


def instructions(program, name, size):
    status, out, err = run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
                            "--toggle-collect=LxProbedImport", program, name, str(size)])
    found = re.search(r"Collected : (\d+)", err)
    if status != 0 or found is None:
        print(f"{name}: valgrind ended with {status}: {err.strip()[-2000:]}")
        return None
    return int(found.group(1)), int(out.split()[2])


def check_linear(program, name):
    once, twice = instructions(program, name, SMALL), instructions(program, name, 2 * SMALL)
    if once is None or twice is None:
        return False
    growth = twice[0] / once[0] / (twice[1] / once[1])
    print(f"{name:34} {once[0]:12} {twice[0]:12} {growth:5.2f} of the file's growth")
    if growth > TOLERANCE:
        print(f"{name}: the cost grows faster than the file")
    return growth <= TOLERANCE


def main():
    mode, program = sys.argv[1:3]
    if mode == "linear" and not (FULL and shutil.which("valgrind")):
        print("skipped: counting instructions takes valgrind, and LX_FULL set")
        return SKIPPED
    check = {"sound": check_sound, "bounded": check_bounded, "linear": check_linear}[mode]
    names = run([program])[1].split()
    if mode == "linear":  # What bombs cost has a bound of its own, which small files reach.
        names = [name for name in names if "bomb" not in name]
    failed = [name for name in names if not check(program, name)]
    print(f"{len(names)} hostile files, {len(failed)} beyond their bounds: {' '.join(failed)}")
    return 1 if failed or not names else 0


if __name__ == "__main__":
    sys.exit(main())
