"""Measures inside real GUIs, beside the host's own screens:  python3 -m bench.in_hosts FOLDER [KIT ...]   (see docs/performance.md)

FOLDER has the kits and their driver host.py. The package of this machine's architecture must be in dist/.
"""

import os
import shutil
import subprocess
import sys
import tempfile

from tests.hosts import channels

from . import counting_kit
from .measure import median

KITS = ("openpli", "openvix", "openpli-2.7")
BY_ROW = ("open", "open, show and close", "rows", "change")
LINES = (
    ("open the settings", "open"), ("... the least that opens in this layout", "open", "null"),
    ("open, show and close", "open, show and close"), ("... the least", "open, show and close", "null"),
    ("build the rows", "rows"), ("a changed value", "change"), ("a key", "key"), ("open the chooser", "open chooser"),
    ("open the picker", "open picker"), ("open the editor", "open editor"), ("5,000 services", "5,000 services"))


def measure(folder, kit, plugin):
    """The figures of one kit: (seconds, instructions, rows), the first two as {name: [of each run]}."""
    texts = [channels.reference(each) for each in channels.services()]
    found = run(os.path.join(folder, kit), plugin, texts)
    if found["taken over"] != len(texts):
        raise SystemExit("bench: the editor took over %d of %d services" % (found["taken over"], len(texts)))
    counting, instructions = tempfile.mkdtemp(), {}
    try:
        if counting_kit.make(os.path.join(folder, kit), counting):
            for name, number in zip(*run(counting, plugin, None)):
                instructions.setdefault(name, []).append(number)
        else:
            print("bench: no valgrind on this machine: instructions are not counted")
    finally:
        shutil.rmtree(counting)
    return found["seconds"], instructions, found["rows"]


def run(kit, plugin, texts):
    """What in_gui.py answers in a GUI of this kit; without texts, the names of what it counts, and the numbers."""
    from host import Host
    state, settings = tempfile.mkdtemp(), tempfile.mkdtemp()
    with open(os.path.join(os.path.dirname(__file__), "in_gui.py")) as file:
        code = "texts, counting = %r, %r\n%s" % (texts, texts is None, file.read())
    try:
        channels.write(settings)
        with Host(kit, state, plugin=plugin, settings=settings) as host:
            found = host.python(code, timeout=300)
            return found if texts else (found["counted"], counting_kit.counted(host))
    finally:
        shutil.rmtree(state, ignore_errors=True)
        shutil.rmtree(settings)


def table(kit, seconds, instructions, rows):
    """Medians of runs that take turns; the ratio is the median of the ratios run by run."""
    print("\n## In the real GUI %s\n\n| | ours (%d rows) | the host's own (%d rows) | ratio | by row | instructions | | | |\n|%s"
          % (kit, rows["ours"], rows["host"], " --- |" + 8 * " ---: |"))
    for title, key, who in (line if len(line) == 3 else line + ("ours",) for line in LINES):
        cells = [title]
        for found, form, scale in ((seconds, "%.0f us", 1e6), (instructions, "%.0f k", 1e-3)):
            ours, theirs = found.get(key + " " + who), found.get(key + " host")
            ratio = median([float(own) / host for own, host in zip(ours, theirs)]) if ours and theirs else None
            cells += [form % (scale * median(each)) if each else "" for each in (ours, theirs)]
            cells += ["%.2f" % ratio if ratio else ""]
            cells += ["%.2f" % (ratio * rows["host"] / rows["ours"]) if ratio and key in BY_ROW else ""]
        print("| %s |" % " | ".join(cells))


def main(folder, *kits):
    sys.path.insert(0, folder)
    packages = tempfile.mkdtemp()
    try:
        subprocess.check_call(["tests/hosts/package", packages], stdout=subprocess.DEVNULL)
        for kit in kits or KITS:
            plugin = os.path.join(packages, "py27" if kit.endswith("-2.7") else "py3", "Veltro")
            if not os.path.exists(os.path.join(folder, kit)) or not os.path.exists(plugin):
                print("bench: %s skipped: no such kit, or no package for it" % kit)
                continue
            table(kit, *measure(folder, kit, plugin))
    finally:
        shutil.rmtree(packages)


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]), *sys.argv[2:])
