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

from tests.entry.fake_config import (
    ConfigFile, ConfigNothing, ConfigSelection, ConfigSubsection, ConfigText, ConfigYesNo)
from tests.entry.fake_screens import (
    ActionMap, ChannelSelection, Component, ConfigList, ConfigListScreen, Descriptor, MessageBox, Reference,
    Screen, ServiceList, Session, Size, Source, StaticText, Timer, cache_class, named_services)

try:
    import builtins
except ImportError:
    import __builtin__ as builtins

PYTHON2 = sys.version_info[0] == 2
ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir))
ENTRY = os.path.abspath(os.environ.get("VELTRO_ENTRY") or os.path.join(ROOT, "plugin", "entry"))
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
        self.etc, self.services = "/nowhere", {}  # services' names by their references
        self.modules = self._modules()
        if contract:
            self._complete()

    def _modules(self):
        def nothing(*arguments):
            pass
        env = type("eEnv", (object,), {"resolve": staticmethod(lambda text: text.replace("${sysconfdir}", self.etc))})
        center = type("eServiceCenter", (object,), {})
        reference = named_services(self.services)
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
            "Components.Sources.Source": {"Source": Source},
            "Components.Sources.StaticText": {"StaticText": StaticText}, "Components.Pixmap": {"Pixmap": Component},
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
