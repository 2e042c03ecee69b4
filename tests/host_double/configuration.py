"""Components.config: the configuration tree with the keys that the module uses, and nothing beside them."""

from .recorder import Strict, recorder

# Key, the kind of element that boxes have there, the value a test starts with.
KEYS = (
    ("usage.multiepg_ask_bouquet", "switch", False),
    ("misc.timer_show_movie_available", "switch", True),
    ("usage.epg_default_view", "selection", "single"),
    ("usage.epg_buffer", "number", 7),
    ("usage.show_old_epg", "number", 30),
    ("usage.show_nownext_eit", "switch", True),
    ("usage.autolanguage.epglanguage", "selection", "deu"),
    ("usage.autolanguage.epglanguage_alternative", "selection", "eng"),
    ("usage.epg.eit", "switch", True),
    ("usage.epg.mhw", "switch", False),
    ("usage.epg.freesat", "switch", True),
    ("usage.epg.viasat", "switch", True),
    ("usage.epg.netmed", "switch", True),
    ("usage.epg.virgin", "switch", True),
    ("misc.epg_dvb_blacklist_mode", "switch", False),
    ("misc.epg_is_client_stb", "switch", False),
    ("misc.epg_data_timer", "number", 30),
    ("misc.epgcache_filename", "text", "/media/hdd/epg.dat"),
)
CHOICES = [("Single view", "single"), ("Multi view", "multi"), ("Deutsch", "deu"), ("English", "eng")]


class ConfigElement(Strict):
    """What every element of the tree has: `value`, `save()` and `cancel()`."""

    settable = ("value",)

    def __init__(self, path=None, value=None):
        self._path = path or type(self).__name__
        self._value = self._saved = value

    @property
    def value(self):
        recorder.look(self._path + ".value")
        return self._value

    @value.setter
    def value(self, value):
        recorder.call(self._path + ".value =", value)
        self._value = value

    def save(self):
        recorder.call(self._path + ".save")
        self._saved = self._value

    def cancel(self):
        recorder.call(self._path + ".cancel")
        self._value = self._saved


class ConfigSelection(ConfigElement):
    _choices = CHOICES


class ConfigText(ConfigElement):
    pass


class ConfigNothing(ConfigSelection):
    """Shows nothing; on boxes, too, it derives from ConfigSelection."""

    _choices = [("", "")]

    def __init__(self):
        recorder.call("ConfigNothing")
        ConfigSelection.__init__(self, value="")


class ConfigSubsection(Strict):
    """A branch of the tree. Reading a key that it lacks fails as on a box."""

    def __init__(self, path):
        self._path = path
        self._children = {}

    def __getattr__(self, name):
        if name.startswith("_"):
            raise AttributeError(name)
        path = self._path + "." + name
        recorder.look(path)
        if name not in self._children:
            raise AttributeError("the host has no key %s" % path)
        return self._children[name]


def NoSave(element):
    recorder.call("NoSave", element)
    element._never_saved = True
    return element


def getConfigListEntry(*fields):
    recorder.call("getConfigListEntry", *fields)
    return fields


def getSelectionChoices(element):
    """Components.ConfigList: the entries to offer for a selection, and which of them is the present one."""
    recorder.call("getSelectionChoices", element)
    values = [choice[1] for choice in element._choices]
    return list(element._choices), values.index(element._value)


def branch_of(config, key, make=False):
    """The branch that holds this key ("misc.epg_data_timer") and the key's last name, without recording a look."""
    names = key.split(".")
    for name in names[:-1]:
        if make and name not in config._children:
            config._children[name] = ConfigSubsection(config._path + "." + name)
        config = config._children[name]
    return config, names[-1]


def plant(config):
    """Give the tree's root all keys anew, each with its first value."""
    kinds = {"switch": ConfigElement, "number": ConfigElement, "selection": ConfigSelection, "text": ConfigText}
    config._children = {}
    for key, kind, value in KEYS:
        branch, name = branch_of(config, key, make=True)
        branch._children[name] = kinds[kind]("config." + key, value)
