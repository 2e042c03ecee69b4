"""Measures inside real GUIs, beside the host's own screens:  python3 -m bench.in_hosts FOLDER [KIT ...]   (see docs/performance.md)

FOLDER has the kits and their driver host.py. The package of this machine's architecture must be in dist/.
"""

import os
import shutil
import subprocess
import sys
import tempfile

from tests.hosts import channels

from .measure import median

KITS = ("openpli", "openvix", "openpli-2.7")
BY_ROW = ("open", "open, show and close", "rows", "change")
LINES = (
    ("open the settings", "open"), ("... the least that opens in this layout", "open", "null"),
    ("open, show and close", "open, show and close"), ("... the least", "open, show and close", "null"),
    ("build the rows", "rows"), ("a changed value", "change"), ("a key", "key"), ("open the chooser", "open chooser"),
    ("open the picker", "open picker"), ("open the editor", "open editor"), ("5,000 services", "5,000 services"))


def measure(folder, kit, plugin):
    """The figures of one kit."""
    from host import Host
    state, settings = tempfile.mkdtemp(), tempfile.mkdtemp()
    with open(os.path.join(os.path.dirname(__file__), "in_gui.py")) as file:
        code = file.read()
    try:
        channels.write(settings)
        texts = [channels.reference(each) for each in channels.services()]
        with Host(os.path.join(folder, kit), state, plugin=plugin, settings=settings) as host:
            found = host.python("texts = %r\n%s" % (texts, code), timeout=300)
    finally:
        shutil.rmtree(state, ignore_errors=True)
        shutil.rmtree(settings)
    if found["taken over"] != len(texts):
        raise SystemExit("bench: the editor took over %d of %d services" % (found["taken over"], len(texts)))
    return found


def table(kit, seconds, rows):
    """Medians of runs that take turns, in microseconds of the processor; the ratio is the median of the ratios run by run."""
    print("\n## In the real GUI %s\n\n| | ours (%d rows) | the host's own (%d rows) | ratio | by row |\n| --- | ---: | ---: | ---: | ---: |"
          % (kit, rows["ours"], rows["host"]))
    for title, key, who in (line if len(line) == 3 else line + ("ours",) for line in LINES):
        ours, theirs = seconds[key + " " + who], seconds.get(key + " host")
        text = "| %s | %.0f us |" % (title, 1e6 * median(ours))
        if theirs:
            ratio = median([own / host for own, host in zip(ours, theirs)])
            text += " %.0f us | %.2f | %s |" % (
                1e6 * median(theirs), ratio, "%.2f" % (ratio * rows["host"] / rows["ours"]) if key in BY_ROW else "")
        else:
            text += " | | |"
        print(text)


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
            found = measure(folder, kit, plugin)
            table(kit, found["seconds"], found["rows"])
    finally:
        shutil.rmtree(packages)


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]), *sys.argv[2:])
