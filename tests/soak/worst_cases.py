#!/usr/bin/env python3
"""worst_cases.py DIVISOR PROGRAM: hostile sizes cost what the headers say.

Runs each case of PROGRAM (WorstCases.cpp) at a quarter of its size and at the whole, which is the one
below divided by DIVISOR, and prints what both take. The answers must be right and the memory must stay
the same, or grow by no more than the case's bytes for each unit. With the whole sizes (DIVISOR 1) the
time, too, must grow no more than its share."""

import os
import resource
import subprocess
import sys
import tempfile

# Case: its size, how many bytes each unit may take, and whether it keeps its size with any divisor.
CASES = {
    "version file": (1 << 30, 0, True),
    "nested elements": (100_000, 64, True),  # of the document, which is in memory
    "stars": (100_000, 16, True),  # of the pattern
    "folder": (1_000_000, 0, False),
    "message": (1 << 32, 0, False),
    "processes": (20_000, 2048, False),
}
DIVISOR, PROGRAM = int(sys.argv[1]), sys.argv[2]
FREE_MEMORY, FREE_SECONDS = 4 << 20, 0.2  # what two runs may differ by in any case
# A sanitizer keeps freed memory for a while, which is not the program's.
ENVIRONMENT = os.environ | {"ASAN_OPTIONS": "quarantine_size_mb=1:thread_local_quarantine_size_kb=64"}


def measure(case, size):
    """The seconds of processor time and the bytes that a run takes at most; None if it skips."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    # A file system in memory: those of disks may themselves take more than their share of time.
    with tempfile.TemporaryDirectory(dir="/dev/shm") as folder:
        done = subprocess.run([PROGRAM, case, str(size), folder], stdout=subprocess.PIPE, text=True, env=ENVIRONMENT)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    if done.returncode == 77:
        print(case, size, done.stdout, end="")
        return None
    done.check_returncode()
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, int(done.stdout) << 10


wrong, skipped = [], []
for case, (size, each, is_fixed) in CASES.items():
    size //= 1 if is_fixed else DIVISOR
    small, large = (measure(case, n) for n in (size // 4, size))
    if small is None or large is None:
        skipped.append(case)
        continue
    print(f"{case} {size}: {large[0]:.2f} s, {large[1]} bytes; a quarter: {small[0]:.2f} s, {small[1]}", flush=True)
    if large[1] > small[1] + each * size + FREE_MEMORY:
        wrong.append(f"too much memory: {case}")
    if DIVISOR == 1 and large[0] > 4 * 2 * small[0] + FREE_SECONDS:
        wrong.append(f"too slow: {case}")
print(*wrong, sep="\n")
sys.exit(1 if wrong else 77 if skipped else 0)
