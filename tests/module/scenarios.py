"""Every operation of the module in each situation that takes another way through it.

A scenario prepares its situation and returns the operation, ready to be called without arguments. `start` does that on
a fresh host, so that a scenario can be run as often as needed and always does the same.
"""

import os

from tests.module.case import PLUGIN_PATH, host
from tests.module.operations import PICKER, PRIVATE

ONE, TWO = "1:0:1:1:0:0:0:0:0:0:", "4097:0:1:2:0:0:0:0:0:0:"
BOUQUET, MARKER = "1:7:1:0:", "1:64:1:0:"

SCENARIOS = []  # (what runs, as its frame is named; the situation; the function that prepares it)


def start(case, prepare):
    """The operation of a scenario, ready to be called, with nothing recorded so far."""
    host.reset()
    vars(case.Veltro.epg_timer).clear()
    operation = prepare(case)
    host.recorder.clear()
    return operation


def scenario(operation, situation=""):
    def register(prepare):
        SCENARIOS.append((operation, situation, prepare))
        return prepare
    return register


def simple(class_name, opened, *operations):
    """Scenarios of operations that need nothing but their screen."""
    for operation in operations:
        scenario("Veltro.%s.%s" % (class_name, operation))(
            lambda case, operation=operation: getattr(getattr(case, opened)(), operation))


# The EPG cache and the timer

for word in ("load", "save", "cleardb", "other"):
    scenario("Veltro.doEPGAction", word)(lambda case, word=word: lambda: case.Veltro.doEPGAction(word))


@scenario("Veltro.EPGTimer.setSession")
def _(case):
    return lambda: case.Veltro.epg_timer.setSession(host.session)


def timer(operation, situation, client, period):
    def prepare(case):
        case.set_value("misc.epg_is_client_stb", client)
        case.set_value("misc.epg_data_timer", period)
        case.Veltro.epg_timer.init_timer()
        host.recorder.clear()
        return getattr(case.Veltro.epg_timer, operation)
    scenario("Veltro.EPGTimer." + operation, situation)(prepare)


for operation in ("init_timer", "do_epg_action"):
    timer(operation, "receiver", False, 30)
    timer(operation, "client", True, 30)
timer("do_epg_action", "off", False, 0)

# The settings screen

simple("Veltro", "settings", "createSetup", "up", "down", "changedEntry", "keyClose", "keySave",
       "configSelectionCallBack")


@scenario("Veltro.Veltro.__init__")
def _(case):
    return lambda: case.Veltro.Veltro(host.session, PLUGIN_PATH)


@scenario("Veltro.Veltro.createSetup", "client")
def _(case):
    return case.settings(epg_is_client_stb=True).createSetup


def pressed_ok(situation, row, **values):
    scenario("Veltro.Veltro.keyOk", situation)(lambda case: case.settings(selected=row, **values).keyOk)


pressed_ok("save", 20)
pressed_ok("load", 21)
pressed_ok("delete", 22)
pressed_ok("path", 17)
pressed_ok("blacklist", 16)
pressed_ok("selection", 3)
pressed_ok("no selection", 9)


@scenario("Veltro.Veltro.keyOk", "save on a client")
def _(case):
    screen = case.settings(selected=20)
    case.set_value("misc.epg_is_client_stb", True)
    return screen.keyOk


@scenario("Veltro.Veltro.configSelectionCallBack", "choice")
def _(case):
    screen = case.settings(selected=3)
    return lambda: screen.configSelectionCallBack(("Multi view", "multi"))


for path in ("/media/usb/epg.dat", None):
    scenario("Veltro.Veltro.gotEPGpath", str(path))(
        lambda case, path=path: lambda screen=case.settings(): screen.gotEPGpath(path))


@scenario("Veltro.Veltro.epgBackupfinished")
def _(case):
    screen = case.settings()
    return lambda: screen.epgBackupfinished("text")


for key in ("up", "down"):
    @scenario("Veltro.Veltro." + key, "empty list")
    def _(case, key=key):
        screen = case.settings()
        dict.__getitem__(screen, "config")._rows = []
        return getattr(screen, key)

# The blacklist editor


def editor(case):
    case.etc(("#SERVICE %s\n" % ONE).encode("ascii"))
    host.service_names[ONE] = "One"
    return case.editor()


def editing(*operations):
    for operation in operations:
        scenario("Veltro.Edit_DVB_EPG_Blacklist." + operation)(
            lambda case, operation=operation: getattr(editor(case), operation))


editing("setWindowTitle", "redPressed", "greenPressed", "yellowPressed", "bluePressed", "cancel", "delete", "saveFile",
        "finishedChannelSelection", "loadFile")


@scenario("Veltro.Edit_DVB_EPG_Blacklist.__init__", "no file")
def _(case):
    case.etc()
    return lambda: case.Veltro.Edit_DVB_EPG_Blacklist(host.session, PLUGIN_PATH)


@scenario("Veltro.Edit_DVB_EPG_Blacklist.__init__", "a file")
def _(case):
    case.etc(("#SERVICE %s\n#SERVICE %s\n" % (ONE, TWO)).encode("ascii"))
    host.service_names.update({ONE: "One", TWO: "Two"})
    return lambda: case.Veltro.Edit_DVB_EPG_Blacklist(host.session, PLUGIN_PATH)


@scenario("Veltro.Edit_DVB_EPG_Blacklist.finishedChannelSelection", "services")
def _(case):
    screen = editor(case)
    references = [host.reference(ONE), host.reference(TWO, "Two"), host.reference("2:0:2:", "Radio"),
                  host.reference("1:0:2:", "")]
    return lambda: screen.finishedChannelSelection(references)


@scenario("Veltro.Edit_DVB_EPG_Blacklist.loadFile", "no file")
def _(case):
    screen = editor(case)
    os.unlink(screen.filename)
    return screen.loadFile


@scenario("Veltro.Edit_DVB_EPG_Blacklist.delete", "empty list")
def _(case):
    case.etc()
    return case.editor().delete

# The channel picker


def picking(operation, situation, text, content=None):
    def prepare(case):
        selection = None if text is None else host.reference(text, content=content)
        return getattr(case.picker(selection), operation)
    scenario("Veltro.%s.%s" % (PICKER, operation.replace("_" + PICKER, "")), situation)(prepare)


for operation in (PRIVATE, "setModeTv", "setModeRadio", "cancel"):
    picking(operation, "", None)
for operation in ("doNothing", "channelSelected"):
    picking(operation, "bouquet", BOUQUET, [ONE, MARKER, TWO])
    picking(operation, "service", ONE)
    picking(operation, "marker", MARKER)
picking("doNothing", "empty bouquet", BOUQUET, [])
picking("doNothing", "no content", BOUQUET)
picking("doNothing", "nothing selected", None)


@scenario("Veltro.%s.__init__" % PICKER)
def _(case):
    return lambda: case.Veltro.DVB_EPG_blacklist_ChannelSelection(host.session, PLUGIN_PATH)

# The directory chooser


@scenario("Veltro.DirChoose.__init__")
def _(case):
    return lambda: case.Veltro.DirChoose(host.session, "/media/hdd/")


simple("DirChoose", "chooser", "cancel", "green", "up", "down", "left", "right", "updateFile", "ok")
for operation in ("green", "ok", "updateFile"):
    scenario("Veltro.DirChoose." + operation, "file")(
        lambda case, operation=operation: getattr(case.chooser(entries=[("film.ts", False)]), operation))
