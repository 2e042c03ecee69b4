"""A skin's screen laid flat: its panels resolved, its conditions decided, every element where it stands on the screen.

A skin writes positions relative to panels, to the far edge or to the middle, and leaves out what a screen does not
have. Flat, a layout can be changed with plain numbers.
"""

from __future__ import absolute_import, division

import os
import re
import xml.etree.ElementTree as ElementTree

DEPTH = 20  # panels within panels; a skin whose panels go round in circles has no layout
CONDITIONS = ("conditional", "objectTypes", "objectTypesInverted")


class Unfit(Exception):
    """This screen of the skin can't be made into one of ours."""


class Item(object):
    """An element of a layout. rect: [x, y, width, height] on the screen, or None where that can't be told."""

    def __init__(self, element, rect):
        self.element, self.rect = element, rect

    def get(self, key, default=None):
        return self.element.get(key, default)

    def placed(self, rect):
        """A copy at another place."""
        return Item(copied(self.element), list(rect))


class Space(object):
    """The room that is left for what comes next: a panel, or the screen."""

    def __init__(self, x, y, width, height, stacked=False):
        self.x, self.y, self.width, self.height, self.stacked = x, y, width, height, stacked

    def take(self, position, size, factor):
        """[x, y, width, height] of what is written as this position and size. An edge that is taken is gone."""
        if position == "fill":
            rect = [self.x, self.y, self.width, self.height]
            if not self.stacked:
                self.width = self.height = 0
            return rect
        width, height = [coordinate(text, extent, 0, factor)
                         for text, extent in zip(_pair(size), (self.width, self.height))]
        if position in ("top", "bottom"):
            rect = [self.x, self.y if position == "top" else self.y + self.height - height, self.width, height]
            self._shrink(0, height, position == "top")
            return rect
        if position in ("left", "right"):
            rect = [self.x if position == "left" else self.x + self.width - width, self.y, width, self.height]
            self._shrink(width, 0, position == "left")
            return rect
        x, y = _pair(position)
        return [self.x + coordinate(x, self.width, width, factor), self.y + coordinate(y, self.height, height, factor),
                width, height]

    def _shrink(self, width, height, moves):
        if not self.stacked:
            self.width, self.height = self.width - width, self.height - height
            if moves:
                self.x, self.y = self.x + width, self.y + height


def _pair(text):
    parts = (text or "").split(",")
    if len(parts) != 2:
        raise ValueError("not a pair: %s" % text)
    return parts


def coordinate(text, extent, size, factor):
    """A number of a skin: 12, center, e-100, c+20, 50%, 10*f; ValueError for what needs more than these.

    extent: of what the element is in; size: the element's own, in the same direction; factor: what f stands for.
    """
    text = text.strip()
    if text.lstrip("-").isdigit():
        return int(text)
    if text == "center":
        return (extent - size) // 2
    term = text.replace("center", "(%r)" % ((extent - size) / 2)).replace("%", "*(%r)" % (extent / 100))
    for letter, value in (("e", extent), ("c", extent / 2), ("f", factor)):
        term = term.replace(letter, "(%r)" % value)
    if not re.match(r"[0-9.+\-*/() ]+$", term) or "**" in term or ")(" in term:
        raise ValueError("not a number: %s" % text)
    try:
        return int(eval(term, {"__builtins__": {}}))
    except Exception:
        raise ValueError("not a number: %s" % text)


def copied(element):
    copy = ElementTree.Element(element.tag, dict(element.attrib))
    copy.text = element.text
    for child in element:
        if isinstance(child.tag, str):
            copy.append(copied(child))
    return copy


def as_text(element):
    text = ElementTree.tostring(element)
    return text if isinstance(text, str) else text.decode("ascii")  # other characters are escaped


class FlatLayout(object):
    """name: of the skin's screen; screens: {name: (element, folder)}; parts: {name: (kind, classes)} of what is in
    the screen that will have the layout; desktop: (width, height).

    items: what shows on such a screen, in the order of painting; spares: what the skin has for a part of another class,
    as (name, item).
    """

    def __init__(self, name, screens, parts, desktop):
        self._screens, self._parts = screens, parts
        self.element, self._folder = screens[name]
        self.items, self.spares = [], []
        resolution = self.element.get("resolution")
        width, height = [int(part) for part in _pair(resolution)] if resolution else desktop
        self._factor = 1 if resolution else height / 720
        try:
            self.size = Space(0, 0, width, height).take(
                self.element.get("position", "0,0"), self.element.get("size", "e,e"), self._factor)[2:]
        except ValueError as error:
            raise Unfit("its size: %s" % error)
        self._add(self.element, Space(0, 0, self.size[0], self.size[1]), self._folder, 0)

    def _add(self, parent, space, folder, depth):
        if depth > DEPTH:
            raise Unfit("its panels are in each other")
        for element in parent:
            if not isinstance(element.tag, str) or element.tag == "applet":
                continue  # a comment; a skin's code knows another screen than ours
            part = element.get("objectTypes", "").partition(",")[0]
            if self._is_shown(element):
                if element.tag == "panel":
                    self._add_panel(element, space, folder, depth)
                else:
                    self.items.append(self._item(element, space, folder))
            elif part in self._parts and element.tag != "panel":
                self.spares.append((part, self._item(element, space, folder)))

    def _add_panel(self, panel, space, folder, depth):
        referred, place = self._screens.get(panel.get("name"), (None, None))
        if referred is not None:
            self._add(referred, space, place or folder, depth + 1)  # at its own places, not at the panel's
        if len(panel) == 0 and panel.get("position") is None:
            return
        try:
            rect = space.take(panel.get("position"), panel.get("size"), self._factor)
        except ValueError:
            inner = copied(panel)
            inner.attrib.pop("name", None)
            self.items.append(_as_written(inner, space))
            return
        self._add(panel, Space(*rect, stacked=panel.get("layout") == "stack"), folder, depth + 1)

    def _is_shown(self, element):
        """Whether the host would show the element, which its conditions say in the screen's own words."""
        wanted = element.get("conditional")
        if wanted and not any(name in self._parts for name in wanted.split(",")):
            return False
        types = element.get("objectTypes", "").split(",")
        if len(types) > 1 and not self._classes(types[0]).intersection(types[1:]):
            return False
        types = element.get("objectTypesInverted", "").split(",")
        return len(types) < 2 or types[0] in self._parts and not self._classes(types[0]).intersection(types[1:])

    def _classes(self, name):
        return set(self._parts.get(name, (None, ()))[1])

    def _item(self, element, space, folder):
        element = copied(element)
        for key in CONDITIONS:
            element.attrib.pop(key, None)
        for key, value in list(element.attrib.items()):
            if value.startswith("~/"):  # beside the skin; the host would look beside the plug-in
                element.set(key, os.path.join(folder, value[2:]))
        if element.get("position") is None:
            return Item(element, None)
        try:
            return Item(element, space.take(element.get("position"), element.get("size"), self._factor))
        except ValueError:
            return _as_written(element, space)


def _as_written(element, space):
    """For a place in letters, or in names of the skin's own: the element stays in the room that it was written for."""
    frame = ElementTree.Element("panel", {"position": "%d,%d" % (space.x, space.y), "layout": "stack",
                                          "size": "%d,%d" % (space.width, space.height)})
    frame.append(element)
    return Item(frame, None)
