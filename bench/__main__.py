"""Prints the table of one interpreter:  python -O -m bench   (VELTRO_BUILD: the folder of the binary)"""

import sys

from bench import measure, operations


def time(seconds):
    return "%.2f ms" % (seconds * 1e3) if seconds >= 1e-3 else "%.1f us" % (seconds * 1e6)


def row(*cells):
    print("| %-30s | %8s | %11s | %11s | %8s | %7s |" % cells)
    sys.stdout.flush()


def main():
    operations.verify()
    print("\n## Python %d.%d.%d\n" % sys.version_info[:3])
    row("operation", "n", "module", "floor", "ratio", "growth")
    row("---", "---:", "---:", "---:", "---:", "---:")
    figure = measure.import_figure()
    row("import", "", time(figure.module), time(figure.floor), "%.2f" % figure.ratio, "")
    for title, grows, prepare in operations.OPERATIONS:
        if not grows:
            figure = measure.figure(prepare, measure.TIMES)
            row(title, "", time(figure.module), time(figure.floor), "%.2f" % figure.ratio, "")
            continue
        before = None
        for n in measure.SIZES:
            figure = measure.figure(prepare, n, 5 if n == measure.SIZES[-1] else measure.RUNS)
            growth = "" if before is None else "x%.1f" % (figure.module / before)
            before = figure.module
            row(title, n, time(figure.module), time(figure.floor), "%.2f" % figure.ratio, growth)
    module, floor, rows = measure.memory_figure()
    print("\nPeak memory to load %d lines: %.1f MB, %.2f times the rows themselves (%.1f MB); the floor's: %.1f MB." % (
        measure.SIZES[-1], module / 1e6, module / rows, rows / 1e6, floor / 1e6))


main()
