"""The configuration keys: where the host keeps what the module asks for, and new ones for what no host has.

The module gets a view of the configuration tree in which every key stands at the path that it uses. What the host has
at another path is shown there, the same element; it is not put into the host's tree a second time, where it would be
stored twice. A new element must be in the host's tree, since only that is stored.
"""

from __future__ import absolute_import

from Components import config as host
from enigma import eEPGCache

from ..texts import translate as _
from . import default_view, eit_blacklist
from .cache_file import CacheFile
from .readers import has_reader


def _on():
    return host.ConfigYesNo(default=True)


def _off():
    return host.ConfigYesNo(default=False)


def _selection(default, *choices):
    return lambda: host.ConfigSelection([(value, _(text)) for value, text in choices], default=default)


def _numbers(default, *numbers):
    # A number element would show leading zeros, and a choice of every number would have no end.
    return _selection(default, *[(str(number), str(number)) for number in numbers])


_views = _selection("multi", ("single", "Single EPG"), ("multi", "Multi EPG"), ("graphical", "Graphical multi EPG"))
_ages = _numbers("0", 0, 15, 30, 60, 120, 180, 240, 360, 720, 1440)  # minutes
_days = _numbers("7", 1, 2, 3, 4, 5, 6, 7, 10, 14, 21, 28)
_minutes = _numbers("0", 0, 5, 10, 15, 20, 30, 45, 60, 90, 120, 180, 240, 360, 480, 720, 1440)
_languages = _selection(
    "", ("", "None"), ("ces cze", "Czech"), ("deu ger", "German"), ("eng", "English"), ("fra fre", "French"),
    ("ita", "Italian"), ("nld dut", "Dutch"), ("pol", "Polish"), ("rus", "Russian"), ("spa", "Spanish"),
    ("tur", "Turkish"))

FILE = "misc.epgcache_filename"

# Each key: its path, where hosts have it if not there (a path, or what finds it once it is there), and how to make it if
# they have it nowhere.
KEYS = (
    ("usage.multiepg_ask_bouquet", None, _off),
    ("misc.timer_show_movie_available", None, _on),
    ("usage.epg_default_view", default_view.find, _views),
    ("usage.epg_buffer", "epg.maxdays", _days),
    ("usage.show_old_epg", "epg.histminutes", _ages),
    ("usage.show_nownext_eit", "usage.show_eit_nownext", _on),
    ("usage.autolanguage.epglanguage", "autolanguage.audio_epglanguage", _languages),
    ("usage.autolanguage.epglanguage_alternative", "autolanguage.audio_epglanguage_alternative", _languages),
    ("usage.epg.eit", "epg.eit", _on),
    ("usage.epg.mhw", "epg.mhw", _off),
    ("usage.epg.freesat", "epg.freesat", _on),
    ("usage.epg.viasat", "epg.viasat", _on),
    ("usage.epg.netmed", "epg.netmed", _on),
    ("usage.epg.virgin", "epg.virgin", _off),
    ("misc.epg_dvb_blacklist_mode", None, lambda: eit_blacklist.Mode(default=False)),
    ("misc.epg_is_client_stb", None, _off),
    ("misc.epg_data_timer", None, _minutes),
    (FILE, None, lambda: host.ConfigText(default="/media/hdd/epg.dat", fixed_size=False)),
)


# What the plug-in itself acts on; what it acts on with the host's help, and the action that belongs to it; and by which name
# code of the host asks for a key that some have and forgot.
OUR_OWN = ("misc.epg_is_client_stb", "misc.epg_data_timer", FILE)
BLACKLIST = ("misc.epg_dvb_blacklist_mode", "edit_dvb_epg_blacklist")
ASKED_FOR = {"usage.multiepg_ask_bouquet": "multiepg_ask_bouquet"}

_paths = {}
elements = []  # that rows show, but for those that are looked for each time
_idle = set()  # new keys that nothing acts on
_client = None  # the element of client mode

AT_WORK = ("misc.epg_data_timer", "misc.epg_is_client_stb", "misc.epg_dvb_blacklist_mode")


def is_set(path):
    """Whether one of AT_WORK is on, or may be; without making it, as far as the host can tell."""
    element = _find(path)
    if element is not None:
        return element.value not in (0, "0", False)
    branch, _, name = path.rpartition(".")
    # The host keeps the stored texts of keys that nobody has made, and stores nothing that is off by default.
    stored = getattr(getattr(_find(branch), "content", None), "stored_values", {name: None})
    return name in stored


def changes():
    """A view of the tree with every key in its place; nothing if all are there already."""
    global _client
    shown = {}
    for path, elsewhere, make in KEYS:
        found = _find(path)
        if found is None:
            if callable(elsewhere):
                shown[path] = Late(path, elsewhere, make)
                continue
            found = elsewhere and _find(elsewhere)
            shown[path] = found if found is not None else _create(path, make())
        element = found if found is not None else shown[path]
        _paths[id(element)] = path
        if path != FILE:
            elements.append(element)
    for name in ASKED_FOR.values():
        has_reader(name)  # takes its time, and here nobody waits for a screen
    if "misc.epg_is_client_stb" in shown:
        _stop_saving_of_clients(shown["misc.epg_is_client_stb"])
    if "misc.epg_dvb_blacklist_mode" in shown:
        eit_blacklist.begin(shown["misc.epg_dvb_blacklist_mode"])
    _client = shown.get("misc.epg_is_client_stb") or _find("misc.epg_is_client_stb")
    if shown:  # no host of that kind makes a new path count everywhere
        shown[FILE] = CacheFile(is_client)
    return {"Components.config": {"config": View(host.config, shown)}} if shown else {}


def used(element, tag):
    """The path of the key that the element is, the action's own tag for any other element; None if nothing acts on it on this
    host."""
    name = _paths.get(id(element), tag)
    return name if name not in _idle and (name not in ASKED_FOR or has_reader(ASKED_FOR[name])) else None


def is_client():
    """Whether this box is an EPG client."""
    return bool(_client.value)


class Late(object):
    """A key that some hosts make when their GUI runs, or change: looked for each time that it is asked for."""

    def __init__(self, path, find, make):
        self._path, self._look, self._make = path, find, make

    def element(self):
        """The host's element as it is now, or a new one."""
        element = self._look(_find)
        if element is None:
            element = _find(self._path)
        if element is None:
            element = _create(self._path, self._make())
        _paths[id(element)] = self._path
        return element


class View(object):
    """A branch of the tree with some elements at other places: `shown` has them by their paths from here."""

    def __init__(self, branch, shown):
        self._branch, self._late = branch, {}
        for name in set(path.split(".")[0] for path in shown):
            if isinstance(shown.get(name), Late):
                self._late[name] = shown[name]
            elif name in shown:
                setattr(self, name, shown[name])
            else:
                below = dict((path[len(name) + 1:], shown[path]) for path in shown if path.startswith(name + "."))
                setattr(self, name, View(getattr(branch, name, None), below))

    def __getattr__(self, name):
        late = self.__dict__["_late"].get(name)
        return late.element() if late is not None else getattr(self._branch, name)


def _find(path):
    """The host's element, None where it has none."""
    node = host.config
    for name in path.split("."):
        node = getattr(node, name, None)
    return node


def _create(path, element):
    """Put a new element into the host's tree, which gives it the stored value."""
    branch, names = host.config, path.split(".")
    for name in names[:-1]:
        if getattr(branch, name, None) is None:
            setattr(branch, name, host.ConfigSubsection())
        branch = getattr(branch, name)
    setattr(branch, names[-1], element)
    if path in BLACKLIST:
        _idle.update(() if eit_blacklist.is_possible() else BLACKLIST)
    elif path not in OUR_OWN:
        _idle.add(path)
    return element


def _stop_saving_of_clients(client):
    """Where the host's cache has a switch for saving, an EPG client turns it off, and back to the user's own setting."""
    if not hasattr(eEPGCache, "setSave"):
        return
    save = _find("epg.saveepg")

    def switch(*element):
        eEPGCache.getInstance().setSave(not client.value and (save is None or bool(save.value)))

    client.addNotifier(switch)
