"""Layouts: the screens of a skin file, with the attributes that boxes use, as plain data."""

from dataclasses import dataclass, field
import xml.etree.ElementTree as ElementTree

from receiver.picture import HEIGHT, WIDTH, ListBox

RESOLUTIONS = {"hd": (WIDTH, HEIGHT), "fhd": (1920, 1080)}


class SkinError(Exception):
    """Something in a skin that can't be shown; the rest of the screen still is."""


@dataclass
class Element:
    """A shape or widget of a screen. `component` names what it shows in the screen, None for a plain shape; `source` tells
    that the skin asks for a source (source= and render=), not for a widget (name=). `box` has its looks."""

    component: str
    source: bool
    z: int
    box: ListBox


@dataclass
class Layout:
    """One screen of a skin."""

    name: str
    title: str = ""
    x: int = 0
    y: int = 0
    width: int = WIDTH
    height: int = HEIGHT
    background: str = "#000000"
    elements: list = field(default_factory=list)


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

    def layout(self, xml, problem):
        """The layout that a <screen> element describes. What can't be used is left out and told to `problem`."""
        layout = Layout(xml.get("name"), xml.get("title", ""), *_place(xml.get("position", "0,0"),
                        xml.get("size", "%d,%d" % self.size), *self.size), self.color(xml.get("backgroundColor", "#000000")))
        for child in xml:
            try:
                if child.tag in ("widget", "eLabel"):
                    layout.elements.append(self._element(child, layout))
            except (SkinError, ValueError, KeyError) as error:
                problem("[Skin] %s: %s" % (layout.name, error))
        return layout

    def _element(self, xml, layout):
        get, source, name = xml.get, xml.get("source"), xml.get("name")
        if source and not get("render"):
            raise SkinError("source %s has no render" % source)
        if xml.tag == "widget" and not (source or name):
            raise SkinError("a widget has neither name nor source")
        transparent = get("transparent") == "1" or get("backgroundColor") is None
        font, _, font_size = get("font", "Regular;20").rpartition(";")
        box = ListBox(
            "panel", *_place(xml.attrib["position"], xml.attrib["size"], layout.width, layout.height),
            text=get("text", ""), font=font, font_size=int(font_size), foreground=self.color(get("foregroundColor", "#ffffff")),
            background=None if transparent else self.color(get("backgroundColor")), halign=get("halign", "left"),
            valign=get("valign", "top"), wrap=get("noWrap") != "1", row_height=int(get("itemHeight", "30")),
            selected_foreground=self.color(get("foregroundColorSelected", "#ffffff")),
            selected_background=self.color(get("backgroundColorSelected", "#2255aa")),
            scrollbar=get("scrollbarMode", "showNever") != "showNever")
        return Element(source or name if xml.tag == "widget" else None, bool(source), int(get("zPosition", "0")), box)

    def color(self, text):
        """A colour of the picture from a name or from "#rrggbb" or "#aarrggbb", where aa 00 is opaque."""
        text = self.colors.get(text, text)
        digits = text[1:]
        if not text.startswith("#") or len(digits) not in (6, 8):
            raise SkinError("unknown color %s" % text)
        int(digits, 16)
        alpha = 255 - int(digits[:2], 16) if len(digits) == 8 else 255
        return "#" + digits[-6:] + ("" if alpha == 255 else "%02x" % alpha)


def _place(position, size, outer_width, outer_height):
    """x, y, width, height."""
    width, height = map(int, size.split(","))
    x, y = (part.strip() for part in position.split(","))
    return ((outer_width - width) // 2 if x == "center" else int(x), (outer_height - height) // 2 if y == "center" else int(y),
            width, height)
