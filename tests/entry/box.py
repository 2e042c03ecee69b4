"""A box to put the plug-in entry on: host modules as images have them, cut down to what the entry and the module touch.

    box = Box()                  a box of this interpreter's generation: on 2.7 with classic classes, `new` and byte texts
    box = Box(contract=True)     a host that has everything the module asks for
    box.install()                its modules stand in sys.modules, `_` in the built-ins; remove() takes them out
    entry = box.plugin()         the plug-in's entry, imported as a box does it
"""

import atexit
import importlib
import os
import shutil
import sys
import tempfile
import types
import xml.etree.ElementTree as ElementTree

try:
    import builtins
except ImportError:
    import __builtin__ as builtins

PYTHON2 = sys.version_info[0] == 2
ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir))
ENTRY = os.path.join(ROOT, "plugin", "entry")
BUILD = os.path.abspath(os.environ.get("VELTRO_BUILD") or os.path.join(ROOT, "build", "py27" if PYTHON2 else "py3"))
BINARY = os.path.join(BUILD, "Veltro.so" if PYTHON2 else "Veltro.abi3.so")
PACKAGE = "Plugins.Extensions.Veltro"

_folders = []


def binary_folder():
    """A folder with the binary. Python 2.7 runs an extension's start-up once per path, so it gets a new one each time."""
    if not PYTHON2:
        return BUILD
    if not _folders:
        _folders.append(tempfile.mkdtemp(prefix="veltro-entry-"))
        atexit.register(shutil.rmtree, _folders[0])
    folder = os.path.join(_folders[0], str(len(_folders)))
    os.mkdir(folder)
    os.symlink(BINARY, os.path.join(folder, "Veltro.so"))
    _folders.append(folder)
    return folder


# --- configuration


class ConfigElement(object):
    def __init__(self, default=None):
        self.default = self._value = default
        self.saved_value = None
        self._notifiers, self._final = [], []

    @property
    def value(self):
        return self._value

    @value.setter
    def value(self, value):
        changed, self._value = value != self._value, value
        if changed or PYTHON2:  # old hosts tell every assignment
            for notifier in self._notifiers:
                notifier(self)

    def save(self):
        self.saved_value = None if self.value == self.default else str(self.value)
        for notifier in self._final:
            notifier(self)

    def load(self):
        if self.saved_value is not None:
            self._value = type(self.default)(self.saved_value)

    def cancel(self):
        self.value = self.default if self.saved_value is None else type(self.default)(self.saved_value)

    def addNotifier(self, notifier, initial_call=True, immediate_feedback=True):
        (self._notifiers if immediate_feedback else self._final).append(notifier)
        if initial_call:
            notifier(self)

    def disableSave(self):
        pass


class ConfigYesNo(ConfigElement):
    def __init__(self, default=False):
        ConfigElement.__init__(self, default)


class ConfigText(ConfigElement):
    def __init__(self, default="", fixed_size=True):
        ConfigElement.__init__(self, default)


class ConfigSelection(ConfigElement):
    def __init__(self, choices, default=None):
        pairs = [choice if isinstance(choice, tuple) else (choice, choice) for choice in choices]
        self.choices = [value for value, _ in pairs]
        self.description = dict(pairs)
        ConfigElement.__init__(self, self.choices[0] if default is None else default)

    def getIndex(self):
        return self.choices.index(self.value)


class ConfigNothing(ConfigSelection):
    def __init__(self):
        ConfigSelection.__init__(self, [("", "")])


class ConfigSubsection(object):
    """Takes elements and subsections only, and gives a new element the text stored under its name."""

    def __init__(self, stored=None):
        self.__dict__["_stored"] = stored or {}

    def __setattr__(self, name, value):
        assert isinstance(value, (ConfigElement, ConfigSubsection)), name
        self.__dict__[name] = value
        if isinstance(value, ConfigElement) and name in self._stored:
            value.saved_value = self._stored[name]
            value.load()


class ConfigFile(object):
    def __init__(self):
        self.saves = 0

    def save(self):
        self.saves += 1


# --- screens and widgets


class Component(object):
    def __init__(self, *arguments, **keywords):
        self.text = arguments[0] if arguments else ""


class ActionMap:  # a classic class on 2.7, as on the boxes
    def __init__(self, contexts=None, actions=None, prio=0):
        self.contexts, self.actions, self.prio = contexts or [], actions or {}, prio


class ListContent(object):
    def __init__(self):
        self.list, self.cursor = [], 0

    def setList(self, list):
        self.list = list

    def getCurrentSelection(self):
        return self.list[self.cursor] if self.list else None


class ConfigList(object):
    def __init__(self, list, session=None):
        self.l = ListContent()
        self.onSelectionChanged = []
        self.list = list

    def getCurrent(self):
        return self.l.getCurrentSelection()

    def move_to(self, index):
        self.l.cursor = index
        for function in self.onSelectionChanged:
            function()


class ConfigListScreen:
    def __init__(self, list, session=None, on_change=None):
        self["config"] = ConfigList(list, session)
        self.on_change = on_change

    def keyCancel(self):
        self.close()


class Screen(dict):
    def __init__(self, session, parent=None):
        dict.__init__(self)
        self.session = session
        self.onShown, self.onLayoutFinish = [], []
        self.skinName = type(self).__name__
        self.title = ""

    def setTitle(self, title):
        self.title = title

    def close(self, *result):
        session = self.session
        self.__dict__.clear()
        self.clear()
        session.close(self, *result)


class Reference(object):
    """eServiceReference"""

    isMarker, isDirectory = 64, 1

    def __init__(self, text="", flags=0):
        self.text, self.flags = text, flags

    def valid(self):
        return bool(self.text)

    def toString(self):
        return self.text


class ServiceList(object):
    def __init__(self):
        self.selected = Reference()


class ChannelSelection(Screen):
    """SimpleChannelSelection with its own keys, which come early."""

    keys = ActionMap(["ChannelSelectBaseActions"], {}, -2)

    def __init__(self, session, title):
        Screen.__init__(self, session)
        self.servicelist = self["list"] = self.new_list()
        self["ChannelSelectBaseActions"] = ActionMap(self.keys.contexts, self.keys.actions, self.keys.prio)
        self["actions"] = ActionMap(["OkCancelActions"], {}, 0)
        self.calls = []

    new_list = ServiceList

    def getCurrentSelection(self):
        return self.servicelist.selected

    def enterPath(self, ref):
        self.calls.append(("enterPath", ref, self.getCurrentSelection()))

    def setTvMode(self):
        self.calls.append("setTvMode")

    def showFavourites(self):
        self.calls.append("showFavourites")

    def showAllServices(self):
        self.calls.append("showAllServices")


class Session(object):
    """A session that runs one screen at a time; `open` on it fails as on a box while none runs."""

    def __init__(self):
        self.in_exec, self.current_dialog, self.dialog_stack, self.closed = True, "main menu", [], []

    def open(self, screen, *arguments, **keywords):
        if not self.in_exec:
            raise RuntimeError("modal open are allowed only from a screen which is modal!")
        self.dialog_stack.append(self.current_dialog)
        self.in_exec = False
        self.current_dialog = screen(self, *arguments, **keywords)
        self.current_dialog.callback = None
        self.in_exec = True
        return self.current_dialog

    def openWithCallback(self, callback, screen, *arguments, **keywords):
        dialog = self.open(screen, *arguments, **keywords)
        dialog.callback = self.callback = callback
        return dialog

    def popCurrent(self):
        self.current_dialog, self.in_exec = self.dialog_stack.pop(), True

    def close(self, screen, *result):
        self.closed.append(result)
        self.popCurrent()


class MessageBox(Screen):
    TYPE_YESNO, TYPE_INFO, TYPE_WARNING, TYPE_ERROR = range(4)

    def __init__(self, session, text, type=TYPE_YESNO):
        Screen.__init__(self, session)
        self.text, self.type = text, type


# --- enigma


class Timer(object):
    made = []

    def __init__(self):
        self.callback, self.started = [], []
        Timer.made.append(self)

    def start(self, msec, single=False):
        self.started.append((msec, single))

    def isActive(self):
        return bool(self.started)

    def fire(self):
        for function in list(self.callback):
            function()


class Cache(object):
    """What eEPGCache has on every image."""

    def __init__(self):
        self.calls = []

    def __getattr__(self, name):
        if name not in self.methods:
            raise AttributeError(name)
        return lambda *arguments: self.calls.append((name,) + arguments)


def cache_class(*methods):
    members = {"methods": ("load", "save", "setCacheFile") + methods}
    members.update((name, None) for name in methods)  # to be seen on the class
    cls = type("eEPGCache", (Cache,), members)
    for name in methods:
        setattr(cls, name, _recorded(name))
    instance = cls()
    cls.getInstance = staticmethod(lambda: instance)
    return cls


def _recorded(name):
    def method(self, *arguments):
        self.calls.append((name,) + arguments)
    return method


class Descriptor(object):
    WHERE_EXTENSIONSMENU, WHERE_MAINMENU, WHERE_PLUGINMENU, WHERE_MOVIELIST, WHERE_MENU = range(5)
    WHERE_SESSIONSTART = 7

    def __init__(self, **facts):
        self.__dict__.update(facts)


class Size(object):
    def __init__(self, width):
        self._width = width

    def size(self):
        return self

    def width(self):
        return self._width


MENU = """<menu key="mainmenu"><menu key="setup"><menu key="system">
    <menu key="epg"><item key="epg_setup"/></menu></menu></menu></menu>"""
OLD_MENU = """<menu><id val="mainmenu"/><menu><id val="setup"/><menu><id val="system"/>
    <menu><id val="gui"/><item entryID="epg_settings"/></menu></menu></menu></menu>"""


class Box(object):
    def __init__(self, contract=False, cache=("flushEPG",), width=1280, stored=None, menu=OLD_MENU if PYTHON2 else MENU):
        self.session, self.popups, self.language, self.catalogue = Session(), [], "en_GB", {}
        self.menu = ElementTree.ElementTree(ElementTree.fromstring(menu))
        self.config = _tree(stored)
        self.configfile = ConfigFile()
        self.eEPGCache = cache_class(*cache)
        self.width = width
        self.modules = self._modules()
        if contract:
            self._complete()

    def _modules(self):
        def nothing(*arguments):
            pass
        env = type("eEnv", (object,), {"resolve": staticmethod(lambda text: text.replace("${sysconfdir}", "/nowhere"))})
        center = type("eServiceCenter", (object,), {})
        reference = type("ServiceReference", (object,), {})
        enigma = {"eEPGCache": self.eEPGCache, "eTimer": Timer, "eServiceReference": Reference, "eServiceCenter": center,
                  "eEnv": env, "getDesktop": lambda number: Size(self.width)}
        # What the real one has imported for itself is seen by a wholesale import.
        channel_list = {"SimpleChannelSelection": type("SimpleChannelSelection", (ChannelSelection,), {}),
                        "eServiceReference": Reference, "eServiceCenter": center, "ServiceReference": reference,
                        "Screen": Screen, "eTimer": Timer, "eEPGCache": self.eEPGCache, "ActionMap": ActionMap,
                        "config": self.config, "_private": nothing}
        self.names = {
            "enigma": enigma, "_enigma": {}, "ServiceReference": {"ServiceReference": reference},
            "Screens": None, "Screens.Screen": {"Screen": Screen}, "Screens.ChannelSelection": channel_list,
            "Screens.MessageBox": {"MessageBox": MessageBox}, "Screens.ChoiceBox": {"ChoiceBox": Component},
            "Screens.Menu": {"mdom": self.menu},
            "Components": None, "Components.Sources": None, "Components.Label": {"Label": Component},
            "Components.ActionMap": {"ActionMap": ActionMap}, "Components.GUIComponent": {"GUIComponent": Component},
            "Components.config": {
                "config": self.config, "configfile": self.configfile, "getConfigListEntry": lambda *fields: fields,
                "ConfigSubsection": ConfigSubsection, "ConfigText": ConfigText, "ConfigNothing": ConfigNothing,
                "ConfigYesNo": ConfigYesNo, "ConfigSelection": ConfigSelection, "NoSave": lambda element: element},
            "Components.ConfigList": {"ConfigListScreen": ConfigListScreen, "ConfigList": ConfigList},
            "Components.ServiceList": {"ServiceList": ServiceList}, "Components.FileList": {"FileList": Component},
            "Components.Sources.StaticText": {"StaticText": Component}, "Components.Pixmap": {"Pixmap": Component},
            "Components.Language": {"language": self},
            "Tools": None, "Tools.LoadPixmap": {"LoadPixmap": nothing}, "Tools.Notifications": {"AddPopup": self._popup},
            "skin": {"loadSkin": nothing},
            "Plugins": None, "Plugins.Extensions": None, "Plugins.Plugin": {"PluginDescriptor": Descriptor},
        }
        return dict((name, self._module(name, names)) for name, names in self.names.items())

    @staticmethod
    def _module(name, names):
        module = types.ModuleType(name)
        if names is None:
            module.__path__ = []
        vars(module).update(names or {})
        return module

    def _complete(self):
        """Give the host all that boxes lack."""
        self.modules["new"] = types.ModuleType("new")
        self.modules["Screens.ChannelSelection"].eEnv = self.modules["enigma"].eEnv
        self.modules["Components.ConfigList"].getSelectionChoices = lambda element: ([], 0)
        self.modules["Components.ServiceList"].ServiceList = type(
            "ServiceList", (ServiceList,), {"setPythonConfig": lambda self: None})
        self.eEPGCache = self.modules["enigma"].eEPGCache = cache_class("clearDB")
        self.modules["Screens.ChannelSelection"].eEPGCache = self.eEPGCache
        usage, misc = self.config.usage, self.config.misc
        usage.epg, usage.autolanguage = ConfigSubsection(), ConfigSubsection()
        for branch, names in ((usage, "epg_default_view epg_buffer show_old_epg show_nownext_eit"),
                              (usage.epg, "eit mhw freesat viasat netmed virgin"),
                              (usage.autolanguage, "epglanguage epglanguage_alternative"),
                              (misc, "timer_show_movie_available epg_dvb_blacklist_mode epg_is_client_stb")):
            for name in names.split():
                setattr(branch, name, ConfigYesNo())
        misc.epg_data_timer = ConfigText("60")

    def _popup(self, text, type, timeout):
        self.popups.append(text)

    def getLanguage(self):
        return self.language

    def translate(self, text):
        return self.catalogue.get(text, text if text else "the catalogue's header")

    def install(self):
        Timer.made = []
        self._hidden = dict((name, sys.modules.pop(name)) for name in self.modules if name in sys.modules)
        sys.modules.update(self.modules)
        for name, module in self.modules.items():
            package, _, last = name.rpartition(".")
            if package:
                setattr(self.modules[package], last, module)
        self._translate = vars(builtins).get("_")
        builtins._ = self.translate

    def remove(self):
        for name in list(sys.modules):
            if name in self.modules or name == PACKAGE or name.startswith(PACKAGE + ".") or name == "Veltro":
                del sys.modules[name]
        sys.modules.update(self._hidden)
        if self._translate is None:
            del builtins._
        else:
            builtins._ = self._translate

    def plugin(self, *folders):
        """Import the plug-in's entry: Plugins.Extensions.Veltro.plugin. `folders` replace the one with the binary."""
        package = types.ModuleType(PACKAGE)
        package.__path__ = [ENTRY] + list(folders or [binary_folder()])
        sys.modules[PACKAGE] = package
        return importlib.import_module(PACKAGE + ".plugin")

    def part(self, name):
        """A module of the entry, such as "loading" or "bridge.guard"."""
        return importlib.import_module(PACKAGE + "." + name)


def _tree(stored):
    """The keys as images have them; `stored` are texts of config.misc in the settings file."""
    config = ConfigSubsection()
    config.misc, config.usage, config.epg, config.autolanguage = (
        ConfigSubsection(stored), ConfigSubsection(), ConfigSubsection(), ConfigSubsection())
    config.misc.epgcache_filename = ConfigText("/nowhere/epg.dat")
    config.usage.multiepg_ask_bouquet = ConfigYesNo()
    config.usage.show_eit_nownext = ConfigYesNo(True)
    config.epg.histminutes = ConfigSelection([("0", "none"), ("30", "half an hour")])
    for name in ("eit", "mhw", "freesat", "viasat", "netmed", "virgin"):
        setattr(config.epg, name, ConfigYesNo())
    config.autolanguage.audio_epglanguage = ConfigSelection([("", "none"), ("eng", "English")])
    config.autolanguage.audio_epglanguage_alternative = ConfigSelection([("", "none"), ("eng", "English")])
    return config
