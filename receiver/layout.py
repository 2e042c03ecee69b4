"""Layouts: the screens of a skin file, with the attributes that boxes use, as plain data."""

import re
import xml.etree.ElementTree as ElementTree

from receiver.picture import HEIGHT, WIDTH, Box, ScreenView

RESOLUTIONS = {"hd": (WIDTH, HEIGHT), "fhd": (1920, 1080)}


class Skin:
    """The loaded skin files: colours by name and screens by name; what is loaded later wins.

    resolution -- one of RESOLUTIONS, the desktop that the screens are laid out on
    """

    def __init__(self, resolution="hd"):
        self.size = RESOLUTIONS[resolution]
        self.colors, self.screens = {}, {}

    def load(self, path):
        """Take in a skin file. OSError or ElementTree.ParseError when it can't be read."""
        root = ElementTree.parse(path).getroot()
        self.colors.update((color.get("name"), color.get("value")) for color in root.iter("color"))
        self.screens.update((screen.get("name"), screen) for screen in root.iter("screen"))

    def layout(self, xml):
        """The layout that a <screen> element describes. What can't be used is left out, and the console says so."""
        layout = ScreenView(xml.get("name"), xml.get("title", ""), *_place(xml, self.size, "%d,%d" % self.size),
                            self.color(xml.get("backgroundColor", "#000000")), boxes=[])
        for child in xml:
            try:
                if child.tag in ("widget", "eLabel"):
                    layout.boxes.append(self._element(child, layout))
            except ValueError as error:
                print("[Skin] %s: %s" % (layout.name, error))
        layout.boxes.sort(key=lambda element: element.z)
        return layout

    def _element(self, xml, layout):
        get, source, name = xml.get, xml.get("source"), xml.get("name")
        if source and not get("render"):
            raise ValueError("source %s has no render" % source)
        if xml.tag == "widget" and not (source or name):
            raise ValueError("a widget has neither name nor source")
        transparent = get("transparent") == "1" or get("backgroundColor") is None
        font, _, font_size = get("font", "Regular;20").rpartition(";")
        return Box(
            "panel", *_place(xml, (layout.width, layout.height)), text=get("text", ""), font=font, font_size=int(font_size),
            foreground=self.color(get("foregroundColor", "#ffffff")),
            background=None if transparent else self.color(get("backgroundColor")), halign=get("halign", "left"),
            valign=get("valign", "top"), wrap=get("noWrap") != "1", row_height=int(get("itemHeight", "30")),
            selected_foreground=self.color(get("foregroundColorSelected", "#ffffff")),
            selected_background=self.color(get("backgroundColorSelected", "#2255aa")),
            scrollbar=get("scrollbarMode", "showNever") != "showNever",
            component=source or name if xml.tag == "widget" else None, source=bool(source),
            z=int(get("zPosition", "0")))

    def color(self, text):
        """A colour of the picture from a name or from "#rrggbb" or "#aarrggbb", where aa 00 is opaque."""
        text = self.colors.get(text, text)
        match = re.fullmatch("#([0-9a-fA-F]{2})?([0-9a-fA-F]{6})", text)
        if not match:
            raise ValueError("unknown color %s" % text)
        alpha = 255 - int(match[1] or "0", 16)
        return "#" + match[2] + ("" if alpha == 255 else "%02x" % alpha)


def _place(xml, outer, size=""):
    """x, y, width, height in pixels of what stands in an area of the size `outer`; without a size of its own it has `size`."""
    width, height = map(int, xml.get("size", size).split(","))
    x, y = (part.strip() for part in xml.get("position", "0,0").split(","))
    return ((outer[0] - width) // 2 if x == "center" else int(x), (outer[1] - height) // 2 if y == "center" else int(y),
            width, height)
