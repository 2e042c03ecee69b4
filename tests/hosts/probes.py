# -*- coding: utf-8 -*-
"""Questions about a host that are asked in a real GUI and in the receiver: what happens when ...

Each probe is a generator that runs in the GUI. It yields keys to press ("down ok"), None to let the GUI do what is due, and
what it has seen in a list. The answers of both are compared; KNOWN has the differences that stay, each with its reason.
Host modules are imported in the functions: this file is also read where there is no host.
"""

from __future__ import absolute_import, print_function

import os
import sys

# (kits, probe, what differs and why it stays). docs/hosts.md shows them, and a difference that is none any more is an error.
KNOWN = (
    ("openvix", "a_screen_closes", "OpenViX leaves a closed screen its attributes but the session. The receiver clears them as the others "
     "do: what runs there runs on OpenViX."),
    ("openvix", "a_text_that_is_no_utf_8", "A lone surrogate in a reference ends OpenViX with signal 11; the receiver raises TypeError, as "
     "OpenPLi does. It is not asked there."),
    ("openpli-2.7", "two_maps_for_one_key", "Of two maps with the same priority, release 8.3 asks the newer one alone. The receiver's image is "
     "OpenPLi develop, which asks the older one first."),
    ("openpli-2.7", "the_actions_of_the_keys", "Release 8.3 has no up and down in SetupActions."),
    ("openpli-2.7", "a_value_is_assigned", "Release 8.3 calls no notifier of a text, calls the others also when nothing changed, and never calls "
     "those that wait for a save; a number in steps is a text."),
    ("openpli-2.7", "a_default_is_saved", "Release 8.3 stores yes as true, and no default of a number in steps."),
    ("openpli-2.7", "a_notifier_is_told_at_once_and_taken_away", "As above: no notifier of a text; a number in steps is a text."),
    ("openpli-2.7", "keys_change_an_element", "As above: a number in steps is a text."),
    ("openpli-2.7", "a_text_that_is_no_utf_8", "In Python 2.7 a text is bytes, and any are taken."),
)
DEADLY = (("openvix", "a_text_that_is_no_utf_8"),)


def name_of(error):
    return type(error).__name__


def native(text):
    """A text as the host's Python has them."""
    return text if sys.version_info[0] > 2 else text.encode("utf-8")


def outcome(function, *arguments, **keywords):
    """What a call returns, or the name of its exception."""
    try:
        return shown(function(*arguments, **keywords))
    except Exception as error:
        return name_of(error)


def shown(value):
    """A value as both worlds can compare it."""
    if isinstance(value, (list, tuple)):
        return [shown(each) for each in value]
    if value is None or isinstance(value, (bool, int, float)):
        return value
    if type(value).__name__ in ("str", "unicode", "long"):
        return value
    return type(value).__name__


def screen_class(**members):
    """A screen with a label and a list of what happened to it."""
    from Components.Label import Label
    from Screens.Screen import Screen

    class Probe(Screen):
        skin = '<screen name="Probe" position="0,0" size="400,200" title="Probe"><widget name="label" position="0,0" size="9,9"/></screen>'

        def __init__(self, session, log=None):
            Screen.__init__(self, session)
            self.log = [] if log is None else log
            self["label"] = Label("text")
            for hook in ("onLayoutFinish", "onFirstExecBegin", "onExecBegin", "onShow", "onShown", "onExecEnd", "onHide", "onClose"):
                getattr(self, hook).append(getattr(self, "did_" + hook))

    def recorder(hook):
        return lambda self: self.log.append(hook)
    for hook in ("onLayoutFinish", "onFirstExecBegin", "onExecBegin", "onShow", "onShown", "onExecEnd", "onHide", "onClose"):
        setattr(Probe, "did_" + hook, recorder(hook))
    for name in members:
        setattr(Probe, name, members[name])
    return Probe


# Screens

def a_screen_closes(session):
    results = []
    screen = session.openWithCallback(lambda *result: results.append(list(result)), screen_class())
    yield None
    yield [type(session.current_dialog).__name__, screen.execing, screen.shown]
    screen.close("a", 1)
    yield [results[:], session.current_dialog is screen]
    yield None
    yield [results, session.current_dialog is screen, hasattr(screen, "session"), len(screen)]
    yield ["attributes", bool(vars(screen))]


def the_order_of_callbacks(session):
    log = []
    lower = session.open(screen_class(), log)
    yield None
    log.append("--")
    upper = session.open(screen_class())
    yield None
    log.append("--")
    upper.close()
    yield None
    log.append("--")
    lower.close()
    yield None
    yield log


def a_screen_is_opened_while_another_closes(session):
    seen = []

    def opening(self):
        seen.append(outcome(session.open, other))
    other = screen_class()
    session.open(screen_class(did_onClose=opening))
    yield None
    session.current_dialog.close()
    seen.append(outcome(session.open, other))
    yield None
    yield None
    yield seen + [type(session.current_dialog).__name__ == "Probe"]
    while type(session.current_dialog).__name__ == "Probe":
        session.current_dialog.close()
        yield None


def a_screen_is_opened_in_the_result_of_another(session):
    other = screen_class()
    opened = []
    session.openWithCallback(lambda *result: opened.append(session.open(other)), screen_class())
    yield None
    session.current_dialog.close()
    yield None
    yield [len(opened), session.current_dialog is opened[0], opened[0].execing]
    opened[0].close()
    yield None


def a_screen_closes_before_it_runs(session):
    results = []

    def closing(self):
        self.close("early")
    for hook in ("did_onLayoutFinish", "did_onFirstExecBegin", "did_onShown"):
        session.openWithCallback(lambda *result: results.append(list(result)), screen_class(**{hook: closing}))
        yield None
        yield None
        yield [hook, results, type(session.current_dialog).__name__ == "Probe"]


def a_screen_that_can_not_be_built(session):
    def __init__(self, session):
        raise ValueError("no")
    depth = len(session.dialog_stack)
    yield [outcome(session.open, screen_class(__init__=__init__)), len(session.dialog_stack) - depth, session.in_exec]
    session.popCurrent()
    yield None
    yield [len(session.dialog_stack) - depth, session.in_exec]


def the_title_of_a_screen(session):
    screen = session.open(screen_class())
    yield None
    seen = [screen.getTitle(), "Title" in screen]
    screen.setTitle("Other")
    seen += [screen.getTitle(), screen["Title"].text]
    screen.title = "Third"
    seen += [screen.getTitle(), screen["Title"].text]
    screen.close()
    yield None
    yield seen


def a_component_that_is_not_there(session):
    screen = session.open(screen_class())
    yield None
    seen = [outcome(lambda: screen["nothing"]), outcome(screen.get, "nothing"), "nothing" in screen]
    screen.close()
    yield None
    yield seen


# Key maps

def binder(session, log, **keywords):
    """Binds an action map in a new screen."""
    from Components.ActionMap import ActionMap
    maps = keywords.pop("maps")

    def __init__(self, session):
        base.__init__(self, session)
        for number, (contexts, actions, prio) in enumerate(maps):
            handlers = dict((action, lambda action=action, number=number, answer=answer: log.append([number, action]) or answer)
                            for action, answer in actions.items())
            self["map%d" % number] = ActionMap(contexts, handlers, prio)
    base = screen_class()
    return session.open(type("Binder", (base,), {"__init__": __init__, "skin": base.skin}))


def two_maps_for_one_key(session):
    for first, second in ((0, 0), (0, -1), (-2, 0), (1, 2)):
        for answer in (None, 0, 1):
            log = []
            screen = binder(session, log, maps=((["OkCancelActions"], {"ok": answer}, first), (["OkCancelActions"], {"ok": None}, second)))
            yield "ok"
            yield [first, second, answer, log]
            screen.close()
            yield None


def a_map_that_is_off(session):
    log = []
    screen = binder(session, log, maps=((["OkCancelActions"], {"ok": None}, 0), (["OkCancelActions"], {"ok": None}, 1)))
    screen["map0"].setEnabled(False)
    yield "ok"
    screen["map0"].setEnabled(True)
    screen["map0"].setEnabled(True)
    yield "ok"
    screen.close()
    yield None
    yield log


def the_actions_of_the_keys(session):
    from enigma import eActionMap
    contexts = ("OkCancelActions", "ColorActions", "SetupActions", "DirectionActions", "MenuActions", "ListboxActions", "NavigationActions",
                "ChannelSelectBaseActions", "TvRadioActions", "NumberActions", "EPGSelectActions")
    keys = "ok exit up down left right red green yellow blue menu tv radio 1 0".split()
    screen = session.open(screen_class())
    yield None
    log = []

    def record(context, action):
        log.append([context, action])
        return 0
    for context in contexts:
        eActionMap.getInstance().bindAction(context, -100, record)
    for key in keys:
        del log[:]
        yield key
        yield [key, sorted(log)]
    for context in contexts:
        eActionMap.getInstance().unbindAction(context, record)
    while session.current_dialog is not screen:
        session.current_dialog.close()
        yield None
    screen.close()
    yield None


# The configuration

def elements():
    """(name, a fresh element, values to assign) of each kind that the plug-in uses."""
    from Components.config import ConfigInteger, ConfigSelection, ConfigSelectionNumber, ConfigText, ConfigYesNo
    return (
        ("text", ConfigText(default="abc", fixed_size=False), ("abc", "x", "", "y")),
        ("yes/no", ConfigYesNo(default=False), (False, True, False)),
        ("selection", ConfigSelection([("a", "A"), ("b", "B"), ("c", "C")], default="b"), ("b", "a", "nothing", "c")),
        ("number", ConfigInteger(default=5, limits=(0, 100)), (5, 6, 99)),
        ("steps", ConfigSelectionNumber(1, 28, 1, default=7), (7, 8, 28)),
    )


def a_value_is_assigned(session):
    for name, element, values in elements():
        log = []
        element.addNotifier(lambda each: log.append(["changed", shown(each.value)]), initial_call=False)
        element.addNotifier(lambda each: log.append(["saved", shown(each.value)]), initial_call=False, immediate_feedback=False)
        for value in values:
            element.value = value
            log.append(["is", shown(element.value), outcome(element.isChanged)])
        element.save()
        log.append(["stored", shown(element.saved_value), outcome(element.isChanged)])
        element.value = values[0]
        element.cancel()
        log.append(["cancelled", shown(element.value)])
        yield [name, log]


def a_default_is_saved(session):
    for name, element, values in elements():
        element.value = values[1]
        element.save()
        seen = [shown(element.saved_value)]
        element.value = element.default
        element.save()
        yield [name, seen, shown(element.saved_value)]


def a_notifier_is_told_at_once_and_taken_away(session):
    for name, element, values in elements():
        log = []

        def notifier(each):
            log.append(shown(each.value))
        element.addNotifier(notifier)
        element.value = values[1]
        element.removeNotifier(notifier)
        element.value = values[0]
        yield [name, log, outcome(element.removeNotifier, notifier) if name != "text" else ""]


def a_choice_is_out_of_range(session):
    from Components.config import ConfigSelection
    element = ConfigSelection([("a", "A"), ("b", "B")], default="a")
    element.saved_value = "zzz"
    element.load()
    yield [shown(element.value), shown(element.saved_value), element.getText(), element.getIndex()]
    element.value = "b"
    element.setChoices([("c", "C"), ("d", "D")])
    yield [shown(element.value), element.getText(), shown(list(element.choices)), element.getIndex()]
    element = ConfigSelection(["x", "y"])
    yield [shown(element.value), shown(list(element.choices)), element.getText(), "x" in element.choices, shown(element.choices[1])]
    element.saved_value = "y"
    element.load()
    yield [shown(element.value), shown(element.default)]


def keys_change_an_element(session):
    from Components.config import KEY_0, KEY_LEFT, KEY_RIGHT
    for name, element, values in elements():
        seen = []
        for key in (KEY_RIGHT, KEY_RIGHT, KEY_LEFT, KEY_0 + 4):
            if name != "number" and not (name == "text" and key > KEY_RIGHT):
                element.handleKey(key)
                seen.append(shown(element.value))
        yield [name, seen]


def rows_of_a_settings_list(session):
    from Components.ConfigList import ConfigList
    from Components.config import KEY_LEFT, ConfigYesNo, getConfigListEntry
    rows = [getConfigListEntry("one", ConfigYesNo(), "help"), getConfigListEntry("two", ConfigYesNo())]

    def __init__(self, session):
        base.__init__(self, session)
        self["config"] = ConfigList([], session)
    base = screen_class()
    screen = session.open(type("Rows", (base,), {"__init__": __init__, "skin": base.skin.replace(
        "</screen>", '<widget name="config" position="0,20" size="400,150"/></screen>')}))
    yield None
    config = screen["config"]
    seen = [shown(rows[1]), outcome(config.getCurrent), outcome(config.getCurrentIndex), outcome(config.handleKey, KEY_LEFT)]
    config.setList(rows) if hasattr(config, "setList") else setattr(config, "list", rows)
    seen += [len(config.list), config.isChanged()]
    rows[1][1].value = True
    seen += [config.isChanged()]
    screen.close()
    yield None
    yield seen


def nothing_can_be_selected(session):
    from Components.MenuList import MenuList
    empty = MenuList([])
    full = MenuList([("a", 1), "b"])
    yield [outcome(empty.getCurrent), outcome(full.getCurrent), len(full.list)]


# Files and services

def entries_of_a_directory(session):
    from Components.FileList import FileList as file_list
    folder = "/media/hdd/probe"
    for name in ("b", "a", "C", native(u"\xfc"), "empty"):
        if not os.path.isdir(os.path.join(folder, name)):
            os.makedirs(os.path.join(folder, name))
    open(folder + "/file.ts", "w").close()

    def rows(listing):
        return [[row[0][0], bool(row[0][1])] for row in listing.list if isinstance(row[0], tuple)]

    def FileList(*arguments, **keywords):
        return file_list(*arguments, showMountpoints=False, **keywords)
    listing = FileList(folder + "/", showDirectories=True, showFiles=True, inhibitMounts=[], inhibitDirs=[])
    yield rows(listing)
    yield [shown(listing.getSelection()), outcome(listing.canDescent), listing.getCurrentDirectory()]
    row = listing.list[1]
    yield [type(row).__name__, type(row[1]).__name__, [value for value in row[1] if isinstance(value, str)], outcome(listing.getSelectionIndex)]
    yield rows(FileList(folder + "/", showDirectories=True, showFiles=False))
    yield rows(FileList(folder + "/empty/", showDirectories=True, showFiles=True))
    yield rows(FileList("/media/hdd/nothing/", showDirectories=True, showFiles=True))
    yield [outcome(FileList("/media/hdd/nothing/", showDirectories=False).getSelection)]


REFERENCES = (
    "", "1:0:19:1B7B:C88:3:EB0000:0:0:0:", "1:0:19:1B7B:C88:3:EB0000:0:0:0:path:Name", "1:0:1:1:1:1:1:0:0:0", "1:0:19",
    "4097:0:1:0:0:0:0:0:0:0:http%3a//x/y:Name", "1:64:1:0:0:0:0:0:0:0::Marker", "1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"a.tv\" ORDER BY bouquet",
    "rubbish", "1:0:zz:1:1:1:1:0:0:0:", "1:0:19:1b7b:c88:3:eb0000:0:0:0:", "-1:0:0:0:0:0:0:0:0:0:", " 1:0:1:1:1:1:1:0:0:0:", "1:0:1:FFFFFFFF:1:1:1:0:0:0:",
    "1:134:1:0:0:0:0:0:0:0:x", "1:0:1:1:1:1:1:0:0:0::a:b:c", native(u"1:0:1:1:1:1:1:0:0:0::caf\xe9"), "#SERVICE 1:0:1:1:1:1:1:0:0:0:")


def texts_of_a_reference(session):
    from enigma import eServiceReference
    for text in REFERENCES:
        reference = eServiceReference(text)
        if not reference.valid():  # what else it holds is chance
            yield [text, False]
            continue
        yield [text, reference.toString(), reference.toCompareString(), bool(reference.valid()), reference.flags, reference.type,
               reference.getPath(), reference.getName(), [reference.getUnsignedData(index) for index in range(8)]]


def references_that_are_equal(session):
    from enigma import eServiceReference
    one = eServiceReference("1:0:19:1B7B:C88:3:EB0000:0:0:0:")
    same = eServiceReference("1:0:19:1B7B:C88:3:EB0000:0:0:0::Name")
    other = eServiceReference("1:0:1:1B7B:C88:3:EB0000:0:0:0:")
    marked = eServiceReference("1:64:19:1B7B:C88:3:EB0000:0:0:0:")
    yield [one == same, one == other, one == marked, one != other, one in [other, same], bool(eServiceReference())]


def a_reference_gets_a_name(session):
    from enigma import eServiceReference
    reference = eServiceReference("1:0:19:1B7B:C88:3:EB0000:0:0:0:")
    for name in ("", "a:b", "100%", "%41", native(u"caf\xe9")):
        reference.setName(name)
        yield [name, reference.getName(), reference.toString(), eServiceReference(reference.toString()).getName()]


def a_text_that_is_no_utf_8(session):
    from enigma import eServiceReference
    # How a byte that is no UTF-8 looks in Python 3.
    odd = "1:0:1:1:1:1:1:0:0:0::caf\udce9" if str is not bytes else "1:0:1:1:1:1:1:0:0:0::caf\xe9"
    yield [outcome(eServiceReference, odd), outcome(eServiceReference, None), outcome(eServiceReference, 1)]


def names_of_services(session):
    from ServiceReference import ServiceReference
    from enigma import eServiceReference
    for text in ("1:0:1:6001:3E8:2A:C00000:0:0:0:", "1:0:1:6001:3E8:2A:C00000:0:0:0::Own", "1:64:1:0:0:0:0:0:0:0::Marker"):
        yield [text, ServiceReference(text).getServiceName(), str(ServiceReference(text)),
               ServiceReference(eServiceReference(text)).ref.toString()]


def what_a_list_holds(session):
    from enigma import eServiceCenter, eServiceReference
    center = eServiceCenter.getInstance()
    for text in ('1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "bouquets.tv" ORDER BY bouquet',
                 '1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.nothing.tv" ORDER BY bouquet',
                 '1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.empty.tv" ORDER BY bouquet', ):
        services = center.list(eServiceReference(text))
        if services is None:
            yield [text, None]
            continue
        names = services.getContent("N", False)
        yield [text, [name if name == name.strip() else "odd" for name in names][:3], len(services.getContent("R", False))]
        services = center.list(eServiceReference(text))
        yield [len(services.getContent("SN", True))]
        services = center.list(eServiceReference(text))
        count = 0
        while services.getNext().valid():
            count += 1
        yield [count, outcome(services.getNext)]


# What an image has

def names_that_a_plug_in_asks_for(session):
    for what in ("Screens.ChannelSelection:eEnv", "Screens.ChannelSelection:eServiceReference", "Screens.ChannelSelection:ServiceReference",
                 "Components.ConfigList:getSelectionChoices", "Components.ServiceList:ServiceList.setPythonConfig", "Components.FileList:FileList",
                 "Components.config:ConfigSelectionNumber", "Components.config:getKeyNumber", "Tools.Notifications:AddPopup",
                 "Screens.MessageBox:MessageBox.TYPE_ERROR", "Screens.ChoiceBox:ChoiceBox", "Components.Sources.StaticText:StaticText",
                 "Components.MenuList:MenuList", "Tools.Directories:resolveFilename", "Tools.LoadPixmap:LoadPixmap", "enigma:eListboxPythonMultiContent",
                 "enigma:eTimer", "enigma:getDesktop", "enigma:quitMainloop"):
        module, _, path = what.partition(":")
        found = __import__(module, {}, {}, ["x"])
        for name in path.split("."):
            found = getattr(found, name, None)
        yield [what, found is not None]


def keys_that_a_plug_in_asks_for(session):
    from Components.config import config
    for path in ("usage.multiepg_ask_bouquet", "misc.timer_show_movie_available", "usage.epg_default_view", "usage.epg_buffer", "usage.show_old_epg",
                 "usage.show_nownext_eit", "usage.show_eit_nownext", "usage.autolanguage", "autolanguage.audio_epglanguage",
                 "autolanguage.audio_epglanguage_alternative", "usage.epg", "epg.eit", "epg.mhw", "epg.freesat", "epg.viasat", "epg.netmed",
                 "epg.virgin", "epg.histminutes", "epg.maxdays", "epg.saveepg", "misc.epg_dvb_blacklist_mode", "misc.epgcache_filename",
                 "misc.epgcachepath", "misc.epgcachefilename", "plisettings.PLIEPG_mode", "misc.hotkey.epg", "usage.defaultEPGType"):
        found = config
        for name in path.split("."):
            found = getattr(found, name, None)
        yield [path, found is not None]


def what_python_sees_of_the_epg_cache(session):
    from enigma import eEPGCache
    cache = eEPGCache.getInstance()
    yield [[name, hasattr(cache, name)] for name in ("load", "save", "setCacheFile", "clearDB", "clear", "flushEPG", "setSave", "reloadEITConfig")]
    path = "/media/hdd/probe.dat"
    cache.setCacheFile(path)
    yield [outcome(cache.flushEPG), outcome(cache.save), os.path.exists(path), outcome(cache.load)]


def a_timer(session):
    from enigma import eTimer
    log = []
    timer = eTimer()
    timer.callback.append(lambda: log.append("once"))
    seen = [timer.isActive()]
    timer.start(0, True)
    seen.append(timer.isActive())
    yield None
    seen += [timer.isActive(), log]
    timer.start(100000, True)
    seen.append(timer.isActive())
    timer.stop()
    seen += [timer.isActive(), outcome(timer.stop)]
    yield seen


# Messages and choices

def answers_of_a_question(session):
    from Screens.MessageBox import MessageBox
    for keys, options in (("ok", {}), ("down ok", {}), ("exit", {}), ("ok", {"default": False}), ("ok", {"type": MessageBox.TYPE_ERROR}),
                          ("exit", {"type": MessageBox.TYPE_INFO})):
        results = []
        session.openWithCallback(lambda *result: results.append(list(result)), MessageBox, "Text", **options)
        yield None
        yield keys
        yield [keys, sorted(options), results]


def answers_of_a_choice(session):
    from Screens.ChoiceBox import ChoiceBox
    for keys in ("ok", "down ok", "2", "exit", "red", "up ok"):
        results = []
        session.openWithCallback(lambda *result: results.append(shown(list(result))), ChoiceBox, title="Title",
                                 list=[("one", 1), ("two", 2), ("three", 3)])
        yield None
        yield keys
        yield [keys, results]


def keys_move_in_a_channel_list(session):
    from Screens.ChannelSelection import SimpleChannelSelection
    for bouquet, keys in ("", ("ok", "next", "next", "previous", "previous", "down")), ("down ", ("ok", "next", "next", "next", "previous")):
        dialog = session.open(SimpleChannelSelection, "Title")
        yield None
        dialog.showFavourites()
        yield None
        if bouquet:
            yield bouquet
        for key in keys:
            yield key
            yield [key, dialog.getCurrentSelection().toString()]
        session.current_dialog.close(None)
        yield None


PROBES = (
    a_screen_closes, the_order_of_callbacks, a_screen_is_opened_while_another_closes, a_screen_is_opened_in_the_result_of_another,
    a_screen_closes_before_it_runs, a_screen_that_can_not_be_built, the_title_of_a_screen, a_component_that_is_not_there,
    two_maps_for_one_key, a_map_that_is_off, the_actions_of_the_keys, a_value_is_assigned, a_default_is_saved,
    a_notifier_is_told_at_once_and_taken_away, a_choice_is_out_of_range, keys_change_an_element, rows_of_a_settings_list,
    nothing_can_be_selected, entries_of_a_directory, texts_of_a_reference, references_that_are_equal, a_reference_gets_a_name,
    a_text_that_is_no_utf_8, names_of_services, what_a_list_holds, names_that_a_plug_in_asks_for, keys_that_a_plug_in_asks_for,
    what_python_sees_of_the_epg_cache, keys_move_in_a_channel_list, a_timer, answers_of_a_question, answers_of_a_choice)

_running = {}


def step(session, name):
    """Run a probe to its next yield: what it yields, and whether there is more."""
    if name not in _running:
        _running[name] = dict((probe.__name__, probe) for probe in PROBES)[name](session)
    try:
        return [next(_running[name]), True]
    except StopIteration:
        del _running[name]
        return [None, False]
