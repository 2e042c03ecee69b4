"""The screens of the skin that runs, as the host keeps them: each with the folder that its pictures lie in."""

from __future__ import absolute_import

import inspect
import os
import sys
import xml.etree.ElementTree as ElementTree

OF_ITS_PLACE = ("name", "position", "size", "zPosition", "selectionDisabled", "conditional")
LABELS = frozenset(["title", "Title"] + ["key_" + key for key in (
    "red", "green", "yellow", "blue", "menu", "info", "help", "text", "epg")])

_held, _found = {}, {}


def loaded():
    """{name: (element, folder)} of the skin as it is now, to be read only. {} on a host that keeps its layouts out of
    reach."""
    if not _held or any(_entries(_in_skin(name)) != entries for name, entries in _held.items()):
        _read()
    return _found


def state(names):
    """What tells one reading of the skin from another: how many screens it has, and those of these names. To compare them all
    takes three times as long."""
    found = []
    for table in [_in_skin(name) for name in _held]:
        if isinstance(table, dict):
            found.append(len(table))
            found.extend([table.get(name) for name in names])
        else:
            found.extend(table or ())
    return found if _held else object()  # nothing is known yet, and this equals nothing


def reach(screens, name):
    """The names of a screen and of those that its panels refer to."""
    names, waiting = [], [name]
    while waiting:
        name = waiting.pop()
        if name in screens and name not in names:
            names.append(name)
            waiting.extend(panel.get("name") for panel in screens[name][0].iter("panel"))
    return names


def _read():
    """Each of the hundreds of screens is looked at, which would take longer than all else at an opening."""
    global _held, _found
    _held, _found = {}, {}
    for name, value in list(vars(sys.modules["skin"]).items()):
        screens = _screens_in(value) if isinstance(value, dict) else _screens_of(value) if isinstance(value, list) else {}
        if screens:
            _held[name] = _entries(value)
            _found.update(screens)


def _in_skin(name):
    return getattr(sys.modules["skin"], name, None)


def _entries(value):
    return list(value.values()) if isinstance(value, dict) else list(value or ())


def _screens_in(table):
    """Of a table of screens: each an element alone, or with its folder, in a tuple or a list."""
    found = {}
    for name, entry in table.items():
        parts = entry if isinstance(entry, (tuple, list)) else (entry,)
        elements = [part for part in parts if getattr(part, "tag", None) == "screen"]
        if elements:
            found[name] = elements[0], next((part for part in parts if isinstance(part, str)), "")
    return found


def _screens_of(skins):
    """Of a list of whole skins, (folder, root), which the oldest hosts keep: the first that has a screen counts."""
    found = {}
    for entry in skins:
        if isinstance(entry, tuple) and len(entry) == 2 and getattr(entry[1], "tag", None) == "skin":
            for element in entry[1].findall("screen"):
                found.setdefault(element.get("name"), (element, entry[0]))
    return found


def has(screens, name, widget, mark=""):
    """Whether a screen has the widget itself; mark: what one of its attributes must begin with."""
    return any(element.get("name") == widget and any(key.startswith(mark) for key in element.attrib)
               for element in screens[name][0].iter("widget"))


def looks_of(screens, name, widget):
    """The attributes of a screen's widget but for its place: {} where there is no such widget."""
    element = screens[name][0] if name in screens else None
    for found in element.iter("widget") if element is not None else ():
        if found.get("name") == widget:
            return dict((key, value) for key, value in found.attrib.items() if key not in OF_ITS_PLACE)
    return {}


def signature(screen):
    """What `parts` and `texts` depend on, sooner told: screens of one signature have the same of both."""
    texts = [getattr(screen[name], "text", None) for name in LABELS.intersection(screen)]
    return list(screen), [part.__class__ for part in screen.values()], getattr(screen, "unused_parts", ()), texts


def parts(screen):
    """{name: (kind, classes)} of what is in a screen: a "widget" is painted by itself, a "source" by a renderer."""
    from Components.GUIComponent import GUIComponent
    from Components.Sources.Source import Source
    kinds = (("widget", GUIComponent), ("source", Source))
    found = {}
    for name in set(screen).difference(getattr(screen, "unused_parts", ())):
        part = screen[name]
        kind = [kind for kind, base in kinds if isinstance(part, base)]
        found[name] = kind[0] if kind else "other", [each.__name__ for each in inspect.getmro(part.__class__)]
    return found


def texts(screen):
    """{name: text} of what a screen's labels for keys and its title show."""
    found = {}
    for name in LABELS.intersection(screen):
        text = getattr(screen[name], "text", None)
        if text:
            found[name] = text.decode("utf-8", "replace") if isinstance(text, bytes) else text
    return found


def font(value):
    """The same font by a name of the skin, if it has one. The host finds that at once; any other name it looks for among all
    the faces that it has loaded."""
    try:
        face, _, size = value.partition(";")
        named = [name for name, entry in sys.modules["skin"].fonts.items() if entry[0] == face]
        return next(("%s;%s" % (name, size) for name in sorted(named) if _parsed("%s;%s" % (name, size)) == _parsed(value)), value)
    except Exception:
        return value


def _parsed(value):
    font = sys.modules["skin"].parseFont(value, ((1, 1), (1, 1)))
    return font.family, font.pointSize


def found(key, name):
    """The file that the host takes for this picture of a layout. It would look through half a dozen folders at each opening.
    The name itself where the host has no such file, or looks for it in another way."""
    try:
        path = _as_collected(key, name)
        return path if path == _as_collected(key, path) and os.path.isfile(path) else name
    except Exception:
        return name


def _as_collected(key, name):
    attributes = []
    sys.modules["skin"].collectAttributes(attributes, ElementTree.Element("widget", {key: name}), None)
    return dict(attributes)[key]
