"""Counts the instructions of each operation by valgrind, which are the same on every machine:  python -m bench.count

The process under valgrind marks the places between which is counted by a system call that nothing else makes.
"""

import gc
import os
import re
import shutil
import subprocess
import sys
import tempfile

from . import kinds, operations

TIMES, SIZE = 50, 1000
MARK = "getppid"


def _run():
    """In valgrind: every operation of every kind, between two marks."""
    for _, grows, prepare in operations.OPERATIONS:
        for kind in kinds.there():
            for _ in range(2):  # the first time warms up
                bench = operations.Bench(kind)
                timed = prepare(bench, SIZE if grows else TIMES)
                gc.collect()
                gc.disable()
                _between_marks(timed)
                gc.enable()
                bench.close()


def _between_marks(timed):
    os.getppid()
    for function in timed:
        function()
    os.getppid()


def instructions():
    """{title: {kind: instructions of one operation}}, or None without valgrind."""
    if not any(os.access(os.path.join(folder, "valgrind"), os.X_OK) for folder in os.environ["PATH"].split(os.pathsep)):
        return None
    folder = tempfile.mkdtemp(prefix="veltro-count-")
    try:
        subprocess.check_output(
            ["valgrind", "--tool=callgrind", "--dump-before=" + MARK, "--callgrind-out-file=%s/part" % folder, "--quiet",
             sys.executable, "-O", "-m", "bench.count"],
            env=dict(os.environ, PYTHONHASHSEED="0", PYTHONMALLOC="pymalloc"), stderr=subprocess.STDOUT)
        counted = [total(os.path.join(folder, "part.%d" % number)) for number in range(1, len(os.listdir(folder)))]
    finally:
        shutil.rmtree(folder)
    return _sorted(counted)


def total(name):
    """The instructions that one file of callgrind's has."""
    with open(name) as file:
        return int(re.search(r"^(?:totals|summary): (\d+)", file.read(), re.MULTILINE).group(1))


def _sorted(counted):
    """Each part ends at a mark: the one before the first holds the start, then counted and other parts take turns."""
    found = {}
    between = iter(counted[1::2])
    for title, grows, _ in operations.OPERATIONS:
        for kind in kinds.there():
            next(between)
            found.setdefault(title, {})[kind] = next(between) // (1 if grows else TIMES)
    return found


if __name__ == "__main__":
    _run()
