"""Measures inside real GUIs, beside the host's own screens:  python3 -m bench.in_hosts FOLDER   (see docs/performance.md)

FOLDER has the kits and their driver host.py. The package of this machine's architecture must be in dist/.
"""

import os
import shutil
import subprocess
import sys
import tempfile

from tests.hosts import channels

KITS = ("openpli", "openvix", "openpli-2.7")

# Runs in the GUI's main thread. A figure is the least of many runs, in microseconds: the GUI does other things, too.
CODE = """
import gc, time
from Components.config import config
from Plugins.Extensions.Veltro import plugin
from Plugins.Extensions.Veltro.bridge import guard
from Screens import Setup, ChannelSelection
from enigma import eServiceReference
clock = getattr(time, "perf_counter", time.time)

def least(function, runs=40, prepare=None):
    best = None
    gc.disable()
    for _ in range(runs):
        given = () if prepare is None else prepare()
        start = clock()
        function(*given)
        spent = clock() - start
        best = spent if best is None else min(best, spent)
    gc.enable()
    return round(1e6 * best, 1)

config.usage.setup_level.value = "expert"  # all rows of the host's own screen
module = plugin.load()
own = guard.session_of(session)
screen = session.instantiateDialog(module.Veltro, plugin.plugin_path)
found = {"open ours": least(lambda: session.instantiateDialog(module.Veltro, plugin.plugin_path), 15),
         "rows ours": least(screen.createSetup), "number of rows ours": len(screen["config"].list),
         "change ours": least(screen.changedEntry), "key ours": least(screen.down)}
setup = session.instantiateDialog(Setup.Setup, "epgsettings")
build = getattr(setup, "createSetupList", None) or setup.createSetup
found.update({"open host": least(lambda: session.instantiateDialog(Setup.Setup, "epgsettings"), 15), "rows host": least(build),
              "number of rows host": len(setup["config"].list), "change host": least(setup.changedEntry)})
editor = session.instantiateDialog(module.Edit_DVB_EPG_Blacklist, plugin.plugin_path)
texts = %r
references = [eServiceReference(text) for text in texts]

def emptied():
    del editor.servicelist[:]
    return (references,)
found["5,000 services ours"] = least(editor.finishedChannelSelection, 3, emptied)
found["services taken over"] = len(editor.servicelist)
channels = session.instantiateDialog(ChannelSelection.SimpleChannelSelection, "list")
root = eServiceReference("1:7:1:0:0:0:0:0:0:0:(type == 1) || (type == 17) || (type == 22) || (type == 25) ORDER BY name")
found["5,000 services host"] = least(lambda: channels.setRoot(root), 5)
found
"""

LINES = (("open the settings", "open"), ("build the rows", "rows"), ("a changed value", "change"), ("a key", "key"),
         ("5,000 services", "5,000 services"))


def measure(folder, kit, plugin):
    """The figures of one kit."""
    from host import Host
    state, settings = tempfile.mkdtemp(), tempfile.mkdtemp()
    try:
        channels.write(settings)
        texts = [channels.reference(each) for each in channels.services()]
        with Host(os.path.join(folder, kit), state, plugin=plugin, settings=settings) as host:
            return host.python(CODE % (texts,))
    finally:
        shutil.rmtree(state, ignore_errors=True)
        shutil.rmtree(settings)


def table(kit, found):
    print("\n## In the real GUI %s\n\n| | ours | rows | the host's own | rows | by row |\n| --- | ---: | ---: | ---: | ---: | ---: |" % kit)
    for title, key in LINES:
        ours, theirs = found.get(key + " ours"), found.get(key + " host")
        rows = (found["number of rows ours"], found.get("number of rows host", "")) if key in ("open", "rows", "change") else ("", "")
        ratio = "" if theirs is None else "%.2f" % (
            ours / theirs * (float(rows[1]) / rows[0] if rows[0] and rows[1] else 1))
        print("| %s | %.1f us | %s | %s | %s | %s |" % (
            title, ours, rows[0], "" if theirs is None else "%.1f us" % theirs, rows[1], ratio))


def main(folder):
    sys.path.insert(0, folder)
    packages = tempfile.mkdtemp()
    try:
        subprocess.check_call(["tests/hosts/package", packages], stdout=subprocess.DEVNULL)
        for kit in KITS:
            plugin = os.path.join(packages, "py27" if kit.endswith("-2.7") else "py3", "Veltro")
            if not os.path.exists(os.path.join(folder, kit)) or not os.path.exists(plugin):
                print("bench: %s skipped: no such kit, or no package for it" % kit)
                continue
            table(kit, measure(folder, kit, plugin))
    finally:
        shutil.rmtree(packages)


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]))
