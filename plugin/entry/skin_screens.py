"""The screens of the skin that runs, as the host keeps them: each with the folder that its pictures lie in."""

from __future__ import absolute_import

import inspect
import sys

OF_ITS_PLACE = ("name", "position", "size", "zPosition", "selectionDisabled", "conditional")


_held = _found = None


def loaded():
    """{name: (element, folder)} of the skin as it is now, to be read only. {} on a host that keeps its layouts out of
    reach."""
    global _held, _found
    holds = [(value, list(value.values()) if isinstance(value, dict) else list(value))
             for value in vars(sys.modules["skin"]).values() if isinstance(value, (dict, list))]
    if holds != _held:  # a look at each of the hundreds of screens would take longer than all else at an opening
        _held, _found = holds, _read()
    return _found


def _read():
    found = {}
    for value in list(vars(sys.modules["skin"]).values()):
        if isinstance(value, dict):
            for name, entry in value.items():
                element, folder = _entry(entry)
                if element is not None:
                    found[name] = element, folder
        elif isinstance(value, list):
            _take_roots(found, value)
    return found


def _entry(entry):
    """An element alone, or with its folder, in a tuple or a list."""
    parts = entry if isinstance(entry, (tuple, list)) else (entry,)
    elements = [part for part in parts if getattr(part, "tag", None) == "screen"]
    folders = [part for part in parts if isinstance(part, str)]
    return (elements[0] if elements else None), (folders[0] if folders else "")


def _take_roots(found, entries):
    """The oldest hosts keep a list of whole skins, (folder, root), in which the first that has a screen counts."""
    for entry in entries:
        if isinstance(entry, tuple) and len(entry) == 2 and getattr(entry[1], "tag", None) == "skin":
            for element in entry[1].findall("screen"):
                found.setdefault(element.get("name"), (element, entry[0]))


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


def parts(screen):
    """{name: (kind, classes)} of what is in a screen: a "widget" is painted by itself, a "source" by a renderer."""
    from Components.GUIComponent import GUIComponent
    from Components.Sources.Source import Source
    kinds = (("widget", GUIComponent), ("source", Source))
    found = {}
    for name in screen:
        part = screen[name]
        kind = [kind for kind, base in kinds if isinstance(part, base)]
        found[name] = kind[0] if kind else "other", [each.__name__ for each in inspect.getmro(part.__class__)]
    return found


def texts(screen):
    """{name: text} of what a screen's labels for keys and its title show."""
    found = {}
    for name in screen:
        text = getattr(screen[name], "text", None) if name.startswith("key_") or name.lower() == "title" else None
        if text:
            found[name] = text.decode("utf-8", "replace") if isinstance(text, bytes) else text
    return found
