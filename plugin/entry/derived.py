"""A layout for one of our screens, made from a screen of the skin: a copy in which the widgets have our names and which has
what ours needs more.

The kinds of what a screen has: "widget" is painted by itself and stands in a layout by name; "source" needs a renderer.
"""

from __future__ import absolute_import, division

import collections
import xml.etree.ElementTree as ElementTree

from .flat_layout import FlatLayout, Item, Unfit, as_text
from .key_row import KeyRow, is_label, name_of

LETTER = 0.56  # of the height of its font is about the width of a letter, over all letters
WIDEST = 2  # times that no letter has
SMALLEST = 0.65  # of the skin's font is still legible

# list: the skin's list widget, and ours; lines: (ours, the skin's) for lines of text that share one place, the first that
# the skin has; keys: the colours; looks: {attribute: value} for the list, None for the skin's; mark: what an attribute of
# the skin's list begins with in such screens.
Need = collections.namedtuple("Need", "list lines keys looks mark")


def derived(name, screens, parts, desktop, need, texts=None):
    """The layout as text. Unfit: it can't be made. The arguments are those of FlatLayout, a Need, and {name: text} of what
    the labels will show that must fit."""
    layout = _layout(name, screens, parts, desktop, need)
    layout.put_in_lines()
    layout.put_in_keys()
    layout.show_whole_rows()
    for name, text in (texts or {}).items():
        layout.make_fit(name, text)
    return layout.text()


def offers(name, screens, parts, desktop, need):
    """How well a screen of the skin would do: the number of what we need that it has; 0 without the list."""
    try:
        layout = _layout(name, screens, parts, desktop, need)
    except Unfit:
        return 0
    return 1 + len(layout.labels) + len(layout.lines())


def _layout(name, screens, parts, desktop, need):
    known = dict(parts)  # a skin's conditions name what our screen has under other names
    for ours, skins in reversed(need.lines + (need.list[::-1],)):
        if ours in parts:
            known.setdefault(skins, parts[ours])
    layout = _Layout(FlatLayout(name, screens, known, desktop), parts, need)
    layout.rename()
    return layout


class _Layout(KeyRow):
    def __init__(self, flat, parts, need):
        self.flat, self.parts, self.need = flat, parts, need
        self.items, self.list, self.labels = [], None, {}

    # what the skin has

    def rename(self):
        """Keep what our screen can show, under its names."""
        for item in self.flat.items:
            item = self.fitted(item)
            if item is not None:
                self.items.append(item)
        lists = [item for item in self.items if name_of(item) == self.need.list[1] and item.rect]
        if not lists:
            raise Unfit("no list %s that has a place" % self.need.list[0])
        self.list = lists[-1]
        if self.need.looks is not None:
            for key in ("itemHeight", "font", "secondfont"):
                self.list.element.attrib.pop(key, None)
                if key in self.need.looks:
                    self.list.element.set(key, self.need.looks[key])
        for colour in self.need.keys:
            name = "key_" + colour
            if not any(is_label(item, name) for item in self.items) and not self.in_addon(name):
                spares = [self.fitted(item) for part, item in self.flat.spares if part == name]
                self.items.extend(item for item in spares if item is not None)
            shown = [item for item in self.items if is_label(item, name)]
            if shown:
                self.labels[colour] = shown[-1]

    def fitted(self, item):
        """The element as our screen can have it; None for what it has not."""
        element = item.element
        if element.tag == "panel":  # as the skin has it, at a place that only the host can tell
            for inner in list(element):
                if self.fitted(Item(inner, None)) is None:
                    element.remove(inner)
            return item if len(element) else None
        if element.tag != "widget":
            return item
        if element.get("addon"):
            names = [name.strip() for name in element.get("connection", "").split(",")]
            return item if any(name in self.parts for name in names) else None
        if element.get("name"):
            return self._fitted_widget(item, element.get("name"))
        source = element.get("source", "")
        return item if "." in source else self._fitted_source(item, source)

    def _fitted_widget(self, item, name):
        if name == self.need.list[0]:
            name = self.need.list[1]
        name = self._line_for(name)
        kind, element = self._kind(name), item.element
        if kind == "widget":
            element.set("name", name)
        elif element.get("pixmap") and self._is_key(name):
            element.tag = "ePixmap"
            del element.attrib["name"]
        elif kind == "source" and not element.get("pixmap"):
            del element.attrib["name"]
            element.set("source", name)
            element.set("render", "Label")
        else:
            return None
        return item

    def _line_for(self, name):
        """The name of our line of text that stands where the skin has one which our screen has not."""
        for ours, skins in self.need.lines:
            if name == skins and skins not in self.parts:
                name = ours
        return name

    def _fitted_source(self, item, source):
        source = self._line_for(source)
        kind, element = self._kind(source), item.element
        if kind == "source":
            element.set("source", source)
            return item
        if kind == "widget" and element.get("render") == "Label" and len(element) == 0:
            for key in ("source", "render"):
                del element.attrib[key]
            element.set("name", source)
            return item
        return None

    def _kind(self, name):
        return self.parts.get(name, ("", ""))[0]

    def _is_key(self, name):
        """Whether a picture that the host's screens have by name belongs to one of our keys."""
        return any(colour in name.lower() for colour in self.need.keys)

    def lines(self):
        """The line of text that the skin has, in a list; [] where it has none."""
        names = [ours for ours, skins in self.need.lines]
        return [item for item in self.items if name_of(item) in names and item.rect and not item.get("pixmap")][:1]

    # what is put in

    def put_in_lines(self):
        if not self.need.lines:
            return
        found = self.lines()
        if not found:
            rect = self.carve(2 * self.line_height())
            found = [self.text_line(self.need.lines[0][0], rect)]
            self.items.append(found[0])
        shown = set(name_of(item) for item in self.items)
        for ours, _ in self.need.lines:
            if ours not in shown and ours in self.parts:
                line = found[0].placed(found[0].rect)
                self._show(line, ours)
                line.element.set("transparent", "1")  # it lies on the other, and only one of them has a text at a time
                line.element.set("zPosition", str(_depth(found[0]) + 1))
                self.items.append(line)

    def show_whole_rows(self):
        """The skin's list was measured for other rows than ours, or for none."""
        height = self.list.get("serviceItemHeight") or self.list.get("itemHeight") or ""
        if height.isdigit() and 0 < int(height) <= self.list.rect[3]:
            self.list.rect[3] -= self.list.rect[3] % int(height)

    def make_fit(self, name, text):
        """A smaller font for a label that is too short for its text; it ends in one line what it can't show."""
        for item in self.items:
            font, _, size = item.get("font", "").partition(";")
            if is_label(item, name) and item.rect and size.strip().isdigit():
                needed = len(text) * int(size) * LETTER
                if WIDEST * needed > item.rect[2]:
                    item.element.set("noWrap", "1")
                if needed > item.rect[2]:
                    size = int(size) * max(SMALLEST, item.rect[2] / needed)
                    item.element.set("font", "%s;%d" % (font, size))

    def carve(self, height):
        """Room below the list, cut from it by whole rows."""
        rows = self.list.get("itemHeight", "")
        if rows.isdigit() and int(rows):
            height = -(-height // int(rows)) * int(rows)
        x, y, width, whole = self.list.rect
        if whole < 3 * height:
            raise Unfit("its list is too small to share")
        self.list.rect[3] = whole - height
        return [x, y + whole - height, width, height]

    def line_height(self):
        return self.font()[1] * 4 // 3

    def font(self):
        """(name, size) of texts that are put in: that of the skin's own beside them."""
        for item in list(self.labels.values()) + [self.list]:
            name, _, size = item.get("font", "").partition(";")
            if size.strip().isdigit():
                return name, int(size)
        return "Regular", self.flat.size[1] // 34

    def text_line(self, name, rect):
        element = ElementTree.Element("widget", {"font": "%s;%d" % self.font(), "valign": "center", "transparent": "1",
                                                 "zPosition": "1"})
        item = Item(element, rect)
        self._show(item, name)
        return item

    def _show(self, item, name):
        """Make a label show another text of the screen."""
        for key in ("name", "source", "render"):
            item.element.attrib.pop(key, None)
        for child in list(item.element):
            item.element.remove(child)  # a converter knows another text
        if self._kind(name) == "source":
            item.element.set("source", name)
            item.element.set("render", "Label")
        else:
            item.element.set("name", name)

    def text(self):
        screen = ElementTree.Element("screen", dict(self.flat.element.attrib))
        for key in ("name", "title"):  # the title is the screen's own
            screen.attrib.pop(key, None)
        for item in self.items:
            if item.rect:
                item.element.set("position", "%d,%d" % tuple(item.rect[:2]))
                item.element.set("size", "%d,%d" % tuple(item.rect[2:]))
            screen.append(item.element)
        return as_text(screen)


def _depth(item):
    depth = item.get("zPosition", "0")
    return int(depth) if depth.lstrip("-").isdigit() else 0
