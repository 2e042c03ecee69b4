"""What `in_hosts` measures, in the GUI's main thread. The host's runner reads it as it stands; `session` is the GUI's, `texts` are
references of services, and `counting` says whether it runs under valgrind. The last expression is the answer: {name: [seconds of
each run]}, or the names of what was counted, and the numbers of rows."""

import gc
import os
import time

from Components.config import config
from Components.ConfigList import ConfigListScreen
from Components.Label import Label
from Components.Sources.StaticText import StaticText
from enigma import eServiceReference
from Plugins.Extensions.Veltro import plugin
from Screens.ChannelSelection import SimpleChannelSelection
from Screens.LocationBox import LocationBox
from Screens.Screen import Screen
from Screens.Setup import Setup

RUNS = 150
WARMING, COUNTED = 3, 5
clock = time.thread_time if hasattr(time, "thread_time") else time.clock  # of the processor: others work on the machine, too


class Null(ConfigListScreen, Screen):
    """The least that a settings screen of this host can be, in our layout: no rows, no keys."""

    def __init__(self, session):
        Screen.__init__(self, session)
        self.parsedSkin = layout
        self["status"] = Label("")
        self["key_red"], self["key_green"], self["description"] = StaticText("-"), StaticText("-"), StaticText("-")
        ConfigListScreen.__init__(self, [], session=session)


def opening(name, *screen):
    """Opens and closes it: the time until it could be shown, and of all three together."""
    def run():
        start = clock()
        dialog = session.instantiateDialog(*screen)
        opened = clock()
        dialog.show()
        session.deleteDialog(dialog)
        return {"open " + name: opened - start, "open, show and close " + name: clock() - start}
    return run


def call(name, function, prepare=tuple):
    def run():
        arguments = prepare()
        start = clock()
        function(*arguments)
        return {name: clock() - start}
    return run


def take_turns(runs, *functions):
    """The collector of garbage comes between the turns, for all alike."""
    for function in functions:
        function()
    for turn in range(runs):
        if turn % 10 == 0:
            gc.enable()
            gc.collect()
            gc.disable()
        for function in functions:
            for name, seconds in function().items():
                found.setdefault(name, []).append(seconds)
    gc.enable()


def count(*functions):
    """Runs each of (name, function) between marks, after some turns without: the names, as often as they were counted."""
    done = []
    for turn in range(WARMING + COUNTED):
        for name, function in functions:
            mark = os.getppid if turn >= WARMING else int
            gc.collect()
            gc.disable()
            mark()
            result = function()
            mark()
            gc.enable()
            if mark is os.getppid:
                done.append(name)
            if isinstance(result, Screen):
                session.deleteDialog(result)
    return done


def opened(*screen):
    return lambda: session.instantiateDialog(*screen)


def measure():
    take_turns(RUNS, opening("ours", *ours), opening("host", *theirs), opening("null", Null))
    take_turns(RUNS, call("rows ours", screen.createSetup), call("rows host", rows_of_setup))
    take_turns(RUNS, call("change ours", screen.changedEntry), call("change host", setup.changedEntry))
    take_turns(RUNS, call("key ours", screen.down))
    for name, own, hosts in (
            ("chooser ", (module.DirChoose, "/media/hdd/"), (LocationBox, "", "", "/media/hdd/")),
            ("picker ", (module.DVB_EPG_blacklist_ChannelSelection, plugin.plugin_path), (SimpleChannelSelection, "list")),
            ("editor ", (module.Edit_DVB_EPG_Blacklist, plugin.plugin_path), theirs)):
        take_turns(RUNS // 3, opening(name + "ours", *own), opening(name + "host", *hosts))
    return measure_services()


def measure_services():
    """5,000 into the editor, and into the host's channel list; the number in the editor afterwards."""
    editor = session.instantiateDialog(module.Edit_DVB_EPG_Blacklist, plugin.plugin_path)
    channels = session.instantiateDialog(SimpleChannelSelection, "list")
    references = [eServiceReference(text) for text in texts]
    root = eServiceReference("1:7:1:0:0:0:0:0:0:0:(type == 1) || (type == 17) || (type == 22) || (type == 25) ORDER BY name")

    def emptied():
        del editor.servicelist[:]
        return (references,)

    take_turns(5, call("5,000 services ours", editor.finishedChannelSelection, emptied),
               call("5,000 services host", channels.setRoot, lambda: (root,)))
    return len(editor.servicelist)


found = {}
config.usage.setup_level.value = "expert"  # all rows of the host's own screen
module = plugin.load()
ours, theirs = (module.Veltro, plugin.plugin_path), (Setup, "epgsettings")
screen, setup = session.instantiateDialog(*ours), session.instantiateDialog(*theirs)
layout = screen.parsedSkin
rows_of_setup = getattr(setup, "createSetupList", None) or setup.createSetup
rows = {"ours": len(screen["config"].list), "host": len(setup["config"].list)}
if counting:
    answer = {"rows": rows, "counted": count(
        ("open ours", opened(*ours)), ("open host", opened(*theirs)), ("open null", opened(Null)),
        ("rows ours", screen.createSetup), ("rows host", rows_of_setup),
        ("change ours", screen.changedEntry), ("change host", setup.changedEntry), ("key ours", screen.down))}
else:
    answer = {"taken over": measure(), "seconds": found, "rows": rows}
answer
