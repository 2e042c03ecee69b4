"""Clocks, repetition and memory. Figures are medians of interleaved runs, since machines are noisy and drift."""

import gc
import os
import subprocess
import sys
import timeit

from tests.host_double.loader import build_folder

from . import kinds
from .operations import Bench
from .quick_host import host

SIZES = (1000, 10000, 100000)
TIMES = 300  # how often an operation that does not grow is run for one figure
RUNS = 9
clock = timeit.default_timer


def median(values):
    values = sorted(values)
    middle = len(values) // 2
    return values[middle] if len(values) % 2 else (values[middle - 1] + values[middle]) / 2.0


def once(kind, prepare, n):
    """Seconds that the prepared functions take, for one operation. The collector waits, as in timeit."""
    bench = Bench(kind)
    try:
        timed = prepare(bench, n)
        gc.collect()
        gc.disable()
        start = clock()
        for function in timed:
            function()
        return (clock() - start) / len(timed)
    finally:
        gc.enable()
        bench.close()


class Figure(object):
    """One line of the table, of all kinds side by side: `seconds` are medians, `ratios` to the floor the medians of the
    ratios run by run."""

    def __init__(self, runs):
        self.seconds = dict((kind, median([run[kind] for run in runs])) for kind in runs[0])
        self.ratios = dict((kind, median([run[kind] / run["floor"] for run in runs])) for kind in runs[0])


def figure(prepare, n, runs=RUNS):
    for kind in kinds.there():
        once(kind, prepare, n)  # warms up
    return Figure([dict((kind, once(kind, prepare, n)) for kind in kinds.there()) for _ in range(runs)])


# Imports and memory need a fresh process each.

def in_process(expression):
    command = [sys.executable] + (["-O"] if sys.flags.optimize else []) + [
        "-c", "from bench import measure; print(measure.%s)" % expression]
    return float(subprocess.check_output(command))


def import_seconds(kind):
    """Import of the module, with every host module loaded before."""
    host.reset()
    host.start()
    sys.path.insert(0, build_folder())
    try:
        with host.modules.installed():
            for name in sorted(host.modules.managed):
                __import__(name)
            if kind != "floor":
                kinds.there()  # where it is found
                start = clock()
                __import__({"module": "Veltro", "cython": "floor_cython"}[kind])
            else:
                import bench.floor  # writes the bytecode file, if it is not there
                del sys.modules["bench.floor"]
                start = clock()
                import bench.floor  # noqa: F401,F811
            return clock() - start
    finally:
        host.stop()


def import_figure(runs=15):
    return Figure([dict((kind, in_process("import_seconds(%r)" % kind)) for kind in kinds.there()) for _ in range(runs)])


def resident(field):
    """Bytes of this process: VmRSS now, VmHWM at most so far."""
    with open("/proc/self/status") as status:
        for line in status:
            if line.startswith(field + ":"):
                return int(line.split()[1]) * 1024


def peak_bytes(kind, n):
    """How far the process grows while it opens the editor on a file of n lines."""
    bench = Bench(kind)
    bench.write_blacklist(bench.services(n))
    gc.collect()
    before = resident("VmRSS")
    screen = bench.editor()
    assert len(screen.servicelist) == n
    grown = resident("VmHWM") - before
    bench.close()
    return grown


def row_bytes(n):
    """How far it grows by the rows alone, made one by one from what the host has already."""
    bench = Bench("floor")
    bench.write_blacklist(bench.services(n))
    from .quick_host import Element
    names = host.service_names
    gc.collect()
    before = resident("VmRSS")
    rows = []
    with open(bench.file) as file:
        for line in file:
            text = line[9:-1]
            rows.append((names[text], Element(), 0, text))
    grown = resident("VmRSS") - before
    bench.close()
    assert len(rows) == n
    return grown


def memory_figure(n=SIZES[-1], runs=3):
    """(module's peak, floor's peak, the rows themselves) in bytes."""
    expressions = ["peak_bytes('module', %d)" % n, "peak_bytes('floor', %d)" % n, "row_bytes(%d)" % n]
    return [median([in_process(expression) for _ in range(runs)]) for expression in expressions]


assert os.path.exists("bench"), "run it from the repository's root"
