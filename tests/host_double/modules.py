"""The host's modules under the names by which they are imported, each with exactly the names that the module needs."""

import contextlib
import sys
import types

from . import configuration, files, platform_services, screens, widgets
from .recorder import recorder

try:
    from importlib.machinery import ModuleSpec
except ImportError:  # Python 2.7 asks an importer in another way
    ModuleSpec = None


class GUIComponent(object):
    pass


class Pixmap(object):
    pass


def LoadPixmap(path):
    raise AssertionError("required, but nothing uses it")


def loadSkin(name):
    raise AssertionError("required, but nothing uses it")


# What the module takes from its host, in the order in which it does so. The names of None are whole modules. Those of
# Screens.ChannelSelection come in by the wholesale import.
REQUIREMENTS = (
    ("enigma", (("eEPGCache", platform_services.eEPGCache), ("eTimer", platform_services.eTimer))),
    ("Screens.Screen", (("Screen", screens.Screen),)),
    ("Screens.ChannelSelection", (
        ("SimpleChannelSelection", screens.SimpleChannelSelection),
        ("eServiceReference", platform_services.eServiceReference),
        ("eServiceCenter", platform_services.eServiceCenter),
        ("ServiceReference", platform_services.ServiceReference),
        ("eEnv", platform_services.eEnv),
    )),
    ("Components.Label", (("Label", widgets.Label),)),
    ("Components.ActionMap", (("ActionMap", widgets.ActionMap),)),
    ("Components.GUIComponent", (("GUIComponent", GUIComponent),)),
    ("Components.config", (
        ("config", None),
        ("getConfigListEntry", configuration.getConfigListEntry),
        ("ConfigSubsection", configuration.ConfigSubsection),
        ("ConfigText", configuration.ConfigText),
        ("ConfigNothing", configuration.ConfigNothing),
        ("NoSave", configuration.NoSave),
        ("ConfigSelection", configuration.ConfigSelection),
    )),
    ("Components.ConfigList", (
        ("ConfigListScreen", screens.ConfigListScreen),
        ("ConfigList", widgets.ConfigList),
        ("getSelectionChoices", configuration.getSelectionChoices),
    )),
    ("Components.FileList", (("FileList", widgets.FileList),)),
    ("Components.Sources.StaticText", (("StaticText", widgets.StaticText),)),
    ("Components.Pixmap", (("Pixmap", Pixmap),)),
    ("Screens.MessageBox", (("MessageBox", screens.MessageBox),)),
    ("Screens.ChoiceBox", (("ChoiceBox", screens.ChoiceBox),)),
    ("Tools.LoadPixmap", (("LoadPixmap", LoadPixmap),)),
    ("Tools", (("Notifications", None),)),
    ("skin", (("loadSkin", loadSkin),)),
    ("os", (("system", files.system), ("path", files.Path()), ("unlink", files.unlink))),
    ("_enigma", ()),
    ("new", ()),
)
PACKAGES = ("Screens", "Components", "Components.Sources", "Tools")
# A submodule, which on boxes "from Tools import Notifications" finds as such.
SUBMODULES = ("Tools.Notifications",)


class HostModule(types.ModuleType):
    """A module that reports each of its names that is asked for. It has an ordinary `__dict__` to take a name from."""

    def __getattribute__(self, name):
        if not name.startswith("__"):
            recorder.look("%s.%s" % (types.ModuleType.__getattribute__(self, "__name__"), name))
        return types.ModuleType.__getattribute__(self, name)


class HostModules(object):
    """The modules of one host, by name, and the importer that serves them. A removed module can't be imported."""

    def __init__(self, config):
        names = PACKAGES + SUBMODULES + tuple(module for module, _ in REQUIREMENTS)
        self.managed = frozenset(names)
        self.modules = dict((name, HostModule(name)) for name in names)
        for name, offered in REQUIREMENTS:
            vars(self.modules[name]).update((key, value) for key, value in offered if value is not None)
        vars(self.modules["Components.config"])["config"] = config

    def __getitem__(self, name):
        """The namespace of a module, for tests that add or remove a name."""
        return vars(self.modules[name])

    def remove(self, name):
        del self.modules[name]

    @contextlib.contextmanager
    def installed(self):
        """Importable, in place of any module of the same name (os among them), until the end of the block."""
        hidden = dict((name, sys.modules.pop(name)) for name in self.managed if name in sys.modules)
        sys.meta_path.insert(0, self)
        try:
            yield
        finally:
            sys.meta_path.remove(self)
            for name in self.managed:
                sys.modules.pop(name, None)
            sys.modules.update(hidden)

    def _find(self, name):
        """Whether this importer is asked for the name. A module of a package that is not there is nowhere else either,
        so it is left to the import system to say so; any other name might stand for a real module (os does)."""
        if name in self.managed and name not in self.modules:
            recorder.call("import " + name)
            if "." not in name:
                raise ImportError("No module named %s" % name)
        return name in self.modules

    def _load(self, name):
        recorder.call("import " + name)
        return self.modules[name]

    # Python 3
    def find_spec(self, name, path=None, target=None):
        return ModuleSpec(name, self, is_package=name in PACKAGES) if self._find(name) else None

    def create_module(self, spec):
        return self._load(spec.name)

    def exec_module(self, module):
        pass

    # Python 2.7
    def find_module(self, name, path=None):
        return self if self._find(name) else None

    def load_module(self, name):
        module = self._load(name)
        module.__loader__ = self
        if name in PACKAGES:
            module.__path__ = []
        sys.modules[name] = module
        return module
