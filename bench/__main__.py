"""Prints the table of one interpreter:  python -O -m bench   (VELTRO_BUILD: the folder of the binary)"""

import sys

from bench import count, kinds, measure, operations


def time(seconds):
    return "%.2f ms" % (seconds * 1e3) if seconds >= 1e-3 else "%.1f us" % (seconds * 1e6)


def row(title, n, figure, counted, growth=""):
    """Time and instructions of each kind, each but the floor's with its ratio to that one."""
    cells = [title, n]
    for kind in kinds.there():
        cells += [time(figure.seconds[kind])] + ["%.2f" % figure.ratios[kind]] * (kind != "floor")
    for kind in kinds.there():
        cells += ["%.1f k" % (counted[kind] / 1e3) if counted else ""]
        cells += ["%.2f" % (float(counted[kind]) / counted["floor"]) if counted else ""] * (kind != "floor")
    line(cells + [growth])


def line(cells):
    print("| " + " | ".join("%s" % cell for cell in cells) + " |")
    sys.stdout.flush()


def main():
    operations.verify()
    operations.verify_replaced()
    counted = count.instructions()
    if counted is None:
        print("bench: no valgrind on this machine: instructions are not counted")
    print("\n## Python %d.%d.%d\n" % sys.version_info[:3])
    heads = [head for kind in kinds.there() for head in [kind] + ["ratio"] * (kind != "floor")]
    line(["operation", "n", "time: module"] + heads[1:] + ["instructions: module"] + heads[1:] + ["growth"])
    line(["---"] + ["---:"] * (2 + 2 * len(heads)))
    row("import", "", measure.import_figure(), None)
    for title, grows, prepare in operations.OPERATIONS:
        before = None
        for n in measure.SIZES if grows else (measure.TIMES,):
            figure = measure.figure(prepare, n, 5 if n == measure.SIZES[-1] else measure.RUNS)
            seconds = figure.seconds["module"]
            instructions = counted[title] if counted and (not grows or n == count.SIZE) else None
            row(title, n if grows else "", figure, instructions, "x%.1f" % (seconds / before) if before else "")
            before = seconds if grows else None
    module, floor, rows = measure.memory_figure()
    print("\nPeak memory to load %d lines: %.1f MB, %.2f times the rows themselves (%.1f MB); the floor's: %.1f MB." % (
        measure.SIZES[-1], module / 1e6, module / rows, rows / 1e6, floor / 1e6))


main()
