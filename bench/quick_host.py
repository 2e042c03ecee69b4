"""A host whose operations cost next to nothing: plain classes with plain attributes, and no checks.

What is measured on it is the module's own work and the way into the host and back; any real host only adds to both sides.
It has what the measured operations use. That they do the right thing is seen on the tests' double, which checks.
"""

import contextlib
import sys
import types

from tests.host_double import loader

try:
    import builtins
except ImportError:
    import __builtin__ as builtins


class Session(object):
    pass


class Screen(dict):
    def __init__(self, session):
        self.session = session
        self.onShown = []

    def setTitle(self, title):
        self.title = title

    def close(self, *result):
        pass


class Label(object):
    def __init__(self, text=""):
        self.text = text

    def setText(self, text):
        self.text = text


class StaticText(object):
    def __init__(self, text=""):
        self.text = text


class ActionMap(object):
    def __init__(self, contexts, actions, prio=0):
        self.contexts, self.actions, self.prio = contexts, actions, prio


class ListContent(object):
    rows, index = (), 0

    def setList(self, rows):
        self.rows = rows

    def getCurrentSelection(self):
        return self.rows[self.index]


class ListInstance(object):
    moveUp, moveDown = 0, 1

    def moveSelection(self, direction):
        pass


class ConfigList(object):
    def __init__(self, rows):
        self.list, self.l, self.instance = rows, ListContent(), ListInstance()

    @property
    def _index(self):
        return self.l.index

    @_index.setter
    def _index(self, index):  # the tests' name for the selected row
        self.l.index = index


class ConfigListScreen(object):
    def __init__(self, rows, session=None, on_change=None):
        self["config"] = ConfigList(rows)

    def keyCancel(self):
        pass


class Element(object):
    def __init__(self, value=None):
        self.value = value

    def save(self):
        pass


class Branch(object):
    pass


def NoSave(element):
    return element


def getConfigListEntry(*fields):
    return fields


class eEPGCache(object):
    @staticmethod
    def getInstance():
        return cache

    def save(self):
        pass

    def setCacheFile(self, path):
        pass


cache = eEPGCache()


class eServiceReference(object):
    isDirectory, isMarker = 1, 64

    def __init__(self, text):
        self.text = text
        self.flags = int(text.split(":", 2)[1]) if text else 0

    def valid(self):
        return self.text != ""

    def toString(self):
        return self.text


class ServiceReference(object):
    names = {}

    def __init__(self, reference):
        self.ref = reference if isinstance(reference, eServiceReference) else eServiceReference(reference)

    def getServiceName(self):
        return self.names[self.ref.text]


class Content(object):
    def __init__(self, references):
        self.next = iter(references).__next__ if sys.version_info[0] > 2 else iter(references).next

    def getNext(self):
        return self.next()


class eServiceCenter(object):
    contents = {}

    @staticmethod
    def getInstance():
        return center

    def list(self, reference):
        return Content(self.contents[reference.text])


center = eServiceCenter()


class eEnv(object):
    folder = ""

    @staticmethod
    def resolve(text):
        return text.replace("${sysconfdir}", eEnv.folder)


class SimpleChannelSelection(Screen):
    def __init__(self, session, title):
        Screen.__init__(self, session)
        self.servicelist = self

    def setPythonConfig(self):
        pass

    def getCurrentSelection(self):
        return self.selection

    def showAllServices(self):
        pass


def _modules(config):
    """{name: namespace}; a package is an empty one, and what nothing calls is a plain object."""
    unused = object
    return {
        "enigma": {"eEPGCache": eEPGCache, "eTimer": unused}, "Screens": {}, "Screens.Screen": {"Screen": Screen},
        "Screens.ChannelSelection": {
            "SimpleChannelSelection": SimpleChannelSelection, "eServiceReference": eServiceReference,
            "eServiceCenter": eServiceCenter, "ServiceReference": ServiceReference, "eEnv": eEnv},
        "Screens.MessageBox": {"MessageBox": unused}, "Screens.ChoiceBox": {"ChoiceBox": unused}, "Components": {},
        "Components.Label": {"Label": Label}, "Components.ActionMap": {"ActionMap": ActionMap},
        "Components.GUIComponent": {"GUIComponent": unused}, "Components.Pixmap": {"Pixmap": unused},
        "Components.config": {
            "config": config, "getConfigListEntry": getConfigListEntry, "ConfigSubsection": Branch, "ConfigText": Element,
            "ConfigNothing": Element, "NoSave": NoSave, "ConfigSelection": Element},
        "Components.ConfigList": {
            "ConfigListScreen": ConfigListScreen, "ConfigList": ConfigList, "getSelectionChoices": unused},
        "Components.FileList": {"FileList": unused}, "Components.Sources": {},
        "Components.Sources.StaticText": {"StaticText": StaticText}, "Tools": {},
        "Tools.LoadPixmap": {"LoadPixmap": unused}, "Tools.Notifications": {}, "skin": {"loadSkin": unused}, "_enigma": {},
        "new": {},
    }


class Modules(object):
    """The host's modules, which an import finds while they are installed. The real os stays."""

    def __init__(self, config):
        self.modules = {}
        for name, namespace in _modules(config).items():
            self.modules[name] = module = types.ModuleType(name)
            vars(module).update(namespace, __path__=[])
        for name, module in self.modules.items():
            package, _, last = name.rpartition(".")
            if package:
                setattr(self.modules[package], last, module)
        self.managed = sorted(self.modules)

    @contextlib.contextmanager
    def installed(self):
        hidden = dict((name, sys.modules[name]) for name in self.modules if name in sys.modules)
        sys.modules.update(self.modules)
        try:
            yield
        finally:
            for name in self.modules:
                del sys.modules[name]
            sys.modules.update(hidden)


class QuickHost(object):
    """In the place of the tests' host, as far as the benchmark uses that one."""

    def __init__(self):
        self.texts = {}

    def reset(self, recording=False):
        from tests.host_double.configuration import KEYS
        config = Branch()
        for key, _, value in KEYS:
            branch, names = config, key.split(".")
            for name in names[:-1]:
                branch.__dict__.setdefault(name, Branch())
                branch = getattr(branch, name)
            setattr(branch, names[-1], Element(value))
        self.session, self.modules = Session(), Modules(config)
        self.service_names = ServiceReference.names = {}
        self.bouquets = eServiceCenter.contents = {}

    def start(self):
        builtins._ = self.translate

    def stop(self):
        loader.forget()
        del builtins._

    def translate(self, text):
        return self.texts.get(text, text)

    def load(self, recording_files=False):
        with self.modules.installed():
            return loader.load()

    def set_sysconfdir(self, folder):
        eEnv.folder = folder

    def reference(self, text, content=None):
        if content is not None:
            self.bouquets[text] = [eServiceReference(each) for each in content] + [eServiceReference("")]
        return eServiceReference(text)


host = QuickHost()
